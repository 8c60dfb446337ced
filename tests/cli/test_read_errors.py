"""Reads that the machine refuses, made by strace: what can't be read is never taken for nothing, nor replaced by it."""

import os
import unittest

from home import CliTest, entry, read, snapshot, write


class ReadErrors(CliTest):
    def environment(self, **changed):
        # A leak can't be looked for while the program is traced.
        return super().environment(ASAN_OPTIONS="detect_leaks=0", **changed)

    def refused_at(self, file, calls, fault, *words, input=b"", when=None):
        """Runs with calls that fail on the file, and must be refused with its name and nothing changed."""
        result = self.disturbed_at(file, calls, fault, words, input, when)
        self.assertIn(file, self.assert_refusal(result, 1, (words, when)))

    def disturbed_at(self, file, calls, fault, words, input=b"", when=None):
        fault += f":when={when}" if when else ""
        traced = ["strace", "-f", "-qq", "-o", "/dev/null", "-P", file, "-e", f"trace={calls}", "-e",
                  f"inject={calls}:error={fault}"]
        return self.execute([*traced, *self.command(*words)], input)

    def test_what_the_rescue_file_keeps_is_not_cut_off(self):
        for title in ("one", "two", "three", "four"):
            self.put(entry("2004/02/01", title, Number=1))
        rescue = self.data + "rescue.jsonl"
        kept = read(rescue)
        self.assertEqual(kept.count(b"\n"), 3)
        for content in (kept, kept[:-1], kept[:-9]):
            write(rescue, content)
            self.refused_at(rescue, "read,pread64", "EIO", "entry", "put",
                            input=entry("2004/02/01", "new", Number=1))
            self.assertEqual(read(rescue), content)
            self.assertEqual(self.listed(), [("2004/02/01", 1, "four")])
        self.refused_at(rescue, "openat", "EMFILE", "entry", "put", when=1,
                        input=entry("2004/02/01", "new", Number=1))
        self.assertEqual(read(rescue), kept[:-9])

    def opens_of(self, file, *words, input=b""):
        """How often a command opens the file."""
        log = os.path.join(self.inputs, "calls")
        self.execute(["strace", "-f", "-qq", "-o", log, "-P", file, "-e", "trace=openat", *self.command(*words)], input)
        return read(log).count(b"openat(")

    def test_settings_that_can_not_be_read_are_not_taken_for_missing_ones(self):
        self.use_site()
        self.put(entry("2004/02/01", "one"), entry("2004/01/01", "two"))
        frame = self.root + "/own.ini"
        write(frame, "[Frame]\r\n")
        for section, key, value in (("Frame", "IniFileName", frame), ("FTP", "URL", "127.0.0.1"), ("FTP", "ID", "me"),
                                    ("FTP", "Pass", "secret"), ("FTP2", "TLS", "2")):
            self.set_key("diary.ini", section, key, value)
        for name in ("RSS.ini", "HaloScan.ini", "Blog.ini", "Customize/Customize.ini"):  # so that no start sets them anew
            if not os.path.exists(self.data + name):
                write(self.data + name, "[s]\r\n")
        self.must("site", "save")
        settings = read(self.diary_ini)
        for words in (["start"], ["site", "save"], ["site", "log", "2004", "1"], ["upload"], ["entry", "list"]):
            opens = self.opens_of(self.diary_ini, *words)
            self.assertGreater(opens, 2, words)
            whole = snapshot(self.site)
            for when in range(1, opens + 1):
                result = self.disturbed_at(self.diary_ini, "openat", "EMFILE", words, when=when)
                self.assertEqual(read(self.diary_ini), settings, (words, when))
                # A save keeps the name that it has saved to, again: that write alone is passed over.
                if words == ["site", "save"] and result.code == 0:
                    self.assertEqual(snapshot(self.site), whole, when)
                else:
                    self.assertIn(self.diary_ini, self.assert_refusal(result, 1, (words, when)))
        for file in (frame, self.data + "RSS.ini", self.data + "Customize/Customize.ini"):
            self.refused_at(file, "read,pread64", "EIO", "start")
            self.assertEqual(read(self.diary_ini), settings, file)


if __name__ == "__main__":
    unittest.main()
