"""What a build with sanitizers can't show: these take memory and time of their own, and write files."""

import os
import resource
import subprocess
import unittest

import test_import
import test_registers
import test_update
from home import CLI, CliTest, bytes_limit, read, snapshot, write


class Memory(test_update.UpdateTest):
    def test_an_archive_is_not_held_in_memory(self):
        self.offer_release()
        self.site.pages["/v.lzh"] = test_update.endless(300 << 20)
        process = subprocess.Popen(self.command("update", "check", answers=["yes"]), env=self.environment(),
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        self.assertEqual(os.path.getsize(self.file("v.lzh")), 300 << 20)
        self.assertLess(usage.ru_maxrss, 150 << 10)

    def test_a_page_that_does_not_fit_is_a_failure(self):
        self.must("site", "preview")
        self.customize("Body", UpText="large")
        write(self.data + "Customize/large.htm", b"<!-- piece -->" * 7_500_000)
        self.refused("site", "preview", naming=["メモリ"], options={
            "preexec_fn": lambda: resource.setrlimit(resource.RLIMIT_AS, (150_000_000, resource.RLIM_INFINITY))})


class Disk(test_registers.RegisterTest):
    def test_a_full_disk_leaves_everything_as_it_was(self):
        self.add(self.input_file("x.gif", "one"))
        large = self.input_file("large.gif", b"x" * 3_000_000)
        before = snapshot(self.data)
        result = self.run_cli("file", "add", large, test_registers.DAY, "1",
                              options={"preexec_fn": bytes_limit(1_000_000)})
        self.assertEqual(result.code, 1)
        self.assertIn("large.gif", result.error_text)
        self.assertEqual(snapshot(self.data), before)


class Time(test_import.ImportTest):
    def test_five_thousand_entries_take_less_than_five_seconds_of_the_processor(self):
        self.must("start")
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        result = self.clipboard("formatted", test_import.five_thousand())
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        self.assertEqual((result.code, len(result.rows)), (0, 5000))
        self.assertLess(after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime, 5)


class Build(CliTest):
    def test_it_has_no_sanitizers(self):
        self.assertNotIn(b"__asan_init", read(CLI))


if __name__ == "__main__":
    unittest.main()
