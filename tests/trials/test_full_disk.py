"""A writing command on a disk that has no room left at one of twenty places: it works or says why it does not, nothing
is lost, and with room again it works."""

import os
import shutil
import subprocess
import unittest

from writing_commands import COMMANDS, TrialTest, trials

PLACES = 20
STEP = 4096     # the page of the file system in memory
ROOM = 64 << 20


@unittest.skipIf(os.geteuid(), "only the superuser may mount a disk of the test's own")
class FullDisk(TrialTest):
    def setUp(self):
        super().setUp()
        subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={ROOM}", "tmpfs", self.root], check=True)
        self.addCleanup(subprocess.run, ["umount", self.root], check=True)

    def leave(self, pages):
        """Fills the disk up but for some pages."""
        free = shutil.disk_usage(self.root).free - pages * STEP
        with open(self.root + "/filler", "wb") as file:
            os.posix_fallocate(file.fileno(), 0, free)

    def test_every_writing_command(self):
        for number in trials(usual=2 * len(COMMANDS)):
            command = COMMANDS[number % len(COMMANDS)]
            place = number // len(COMMANDS) * 7 % PLACES
            what = f"trial {number}: {command.name} with {place} pages of room"
            with self.subTest(what):
                self.restore()
                self.leave(place)
                result = self.run_writing(command)
                self.assertIn(result.code, (0, 1), f"{what}: {result!r}")
                if result.code == 0:
                    self.assertTrue(command.has_worked(self, 0), what)
                else:
                    self.assertNotEqual(result.error_lines, [], what)
                os.unlink(self.root + "/filler")
                self.assert_nothing_lost(what)
                self.assert_works_again(command, what)


if __name__ == "__main__":
    unittest.main()
