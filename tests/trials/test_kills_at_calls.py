"""A writing command killed at one of its system calls: nothing is lost, and the next run has the command's effect."""

import os
import shutil
import signal
import unittest

from home import snapshot
from writing_commands import COMMANDS, TrialTest, choice, trials

CALLS = ("openat,open,creat,write,pwrite64,writev,rename,renameat,renameat2,unlink,unlinkat,link,linkat,mkdir,mkdirat,"
         "ftruncate,fsync,fdatasync,copy_file_range,sendfile,chmod,fchmod")


class KillsAtCalls(TrialTest):
    def traced(self, words, when=None):
        """The command line under strace, killed before the call of that number."""
        log = os.path.join(self.inputs, "calls")
        kill = ["-e", f"inject={CALLS}:signal=KILL:when={when}"] if when else []
        return ["strace", "-f", "-qq", "-o", log, "-e", f"trace={CALLS}", *kill, *words], log

    def count_calls(self, words, input):
        """What the calls that may change something begin at, and how many there are."""
        line, log = self.traced(words)
        result = self.execute(line, input)
        self.assertEqual(result.code, 0, f"{words}: {result!r}")
        with open(log, encoding="utf-8", errors="replace") as calls:
            lines = [call for call in calls if "(" in call]
        first = next(at for at, call in enumerate(lines) if self.root in call)
        return first + 1, len(lines)

    def kill_at(self, words, input, when):
        result = self.execute(self.traced(words, when)[0], input)
        self.assertIn(result.code, (0, -signal.SIGKILL, 128 + signal.SIGKILL), f"{words}: {result!r}")

    def test_every_writing_command(self):
        spans = {}
        for number in trials(usual=60):
            command = COMMANDS[number % len(COMMANDS)]
            words, input = self.words(command), command.input(0)
            if command.name not in spans:
                self.restore()
                spans[command.name] = self.count_calls(words, input)
            when = choice(number).randint(*spans[command.name])
            what = f"trial {number}: {command.name} killed at call {when} of {spans[command.name]}"
            with self.subTest(what):
                self.restore()
                self.kill_at(words, input, when)
                self.must("start")
                self.assert_nothing_lost(what)
                self.assert_works_again(command, what)

    def test_the_first_start(self):
        shutil.rmtree(self.root)
        home = self.make_home("home")
        words, bare = self.command("start"), os.path.join(self.inputs, "bare")
        shutil.copytree(home, bare)
        first, last = self.count_calls(words, "")
        whole = snapshot(home)
        for number in trials(usual=15):
            when = choice(number).randint(first, last)
            with self.subTest(trial=number, call=when, calls=last):
                shutil.rmtree(home)
                shutil.copytree(bare, home)
                self.kill_at(words, "", when)
                self.must("start")
                differing = {name for name in whole.keys() | snapshot(home).keys()
                             if whole.get(name) != snapshot(home).get(name)}
                self.assertEqual(differing - {"UserData/diary.mdb"}, set())
                self.assert_sound()


if __name__ == "__main__":
    unittest.main()
