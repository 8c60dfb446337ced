"""The program as a person starts it: one at a time, ended by the machine, killed. Needs a screen and xdotool."""

import os
import signal
import subprocess
import sys
import time
import unittest
import unittest.mock

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "cli"))

from home import CliTest, PROGRAM, read  # noqa: E402
from patience import PATIENCE_SECONDS  # noqa: E402


def waits(condition, seconds=PATIENCE_SECONDS):
    deadline = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > deadline:
            return False
        time.sleep(0.05)
    return True


class ProgramTest(CliTest):
    def setUp(self):
        super().setUp()
        self.must("start")
        self.draft = os.path.join(self.data, "draft.json")
        self.programs = []

    def tearDown(self):
        for program in self.programs:
            program.kill()
            program.communicate()

    def start(self):
        environment = {**os.environ, "VELLORIA_HOME": self.home, "ASAN_OPTIONS": "detect_leaks=0:new_delete_type_mismatch=0"}
        program = subprocess.Popen([os.path.join(PROGRAM, "velloria")], env=environment, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.programs.append(program)
        return program

    def show(self):
        program = self.start()
        self.assertTrue(waits(lambda: self.window() or program.poll() is not None), "no window came up")
        if program.poll() is not None:
            self.fail(f"the program ended: {program.communicate()[1][-3000:]}")
        return program

    def window(self):
        search = ["xdotool", "search", "--onlyvisible", "--name", "^Velloria v2"]
        return subprocess.run(search, capture_output=True, encoding="utf-8").stdout.strip().split("\n")[0]

    def windows(self):
        search = ["xdotool", "search", "--onlyvisible", "--name", "."]
        return subprocess.run(search, capture_output=True, encoding="utf-8").stdout.split()

    def do(self, *words):
        subprocess.run(["xdotool", *map(str, words)], check=True)

    def type_title(self):
        """Begins an entry of today with a title that is not saved."""
        window = self.window()
        self.do("windowfocus", "--sync", window)
        self.do("key", "ctrl+n")
        time.sleep(1)
        self.do("type", "--delay", 20, "unsaved words")

    def drafted(self):
        return os.path.exists(self.draft) and b"unsaved words" in read(self.draft)


class Program(ProgramTest):
    def test_a_second_one_ends_at_once_and_silently(self):
        first = self.show()
        second = self.start()
        out, err = second.communicate(timeout=PATIENCE_SECONDS)
        self.assertEqual(second.returncode, 0)
        self.assertEqual(out, b"")
        self.assertNotIn("エラー".encode(), err)
        self.assertIsNone(first.poll())

    def test_a_killed_one_leaves_no_lock(self):
        self.show().kill()
        self.assertTrue(waits(lambda: not self.window()))
        self.show()

    def test_after_a_kill_the_draft_is_there(self):
        program = self.show()
        self.type_title()
        self.assertTrue(waits(self.drafted))
        program.kill()
        program.wait()
        self.assertTrue(self.drafted())
        self.assertEqual(os.stat(self.draft).st_mode & 0o777, 0o600)
        self.assertEqual(self.sql("SELECT COUNT(*) FROM Contents"), [(0,)])

    def test_the_end_of_the_machine_keeps_the_draft_and_asks_nobody(self):
        for number in (signal.SIGTERM, signal.SIGHUP):
            program = self.show()
            self.type_title()
            self.assertTrue(waits(self.drafted))
            os.remove(self.draft)  # it is not written again before the next change
            program.send_signal(number)
            program.communicate(timeout=PATIENCE_SECONDS)
            self.assertEqual(program.returncode, 0, number)
            self.assertTrue(self.drafted(), number)
            os.remove(self.draft)
            self.assertTrue(waits(lambda: not self.window()))

    def test_a_signal_while_a_question_is_open_is_no_answer(self):
        for keys in ("ctrl+n", "ctrl+q"):
            program = self.show()
            self.type_title()
            self.assertTrue(waits(self.drafted))
            before = self.windows()
            self.do("key", keys)
            self.assertTrue(waits(lambda: len(self.windows()) > len(before)), "no question")
            program.terminate()
            program.communicate(timeout=PATIENCE_SECONDS)
            self.assertEqual(program.returncode, 0, keys)
            self.assertTrue(self.drafted(), keys)
            os.remove(self.draft)
            self.assertTrue(waits(lambda: not self.window()))

    def titles(self):
        """What the window manager would show: the titles of all windows that can be seen."""
        search = ["xdotool", "search", "--onlyvisible", "--name", "."]
        windows = subprocess.run(search, capture_output=True, encoding="utf-8").stdout.split()
        names = [subprocess.run(["xdotool", "getwindowname", window], capture_output=True, encoding="utf-8").stdout
                 for window in windows]
        return {name.rstrip("\n") for name in names}

    def test_titles_of_windows_are_their_own_and_no_more(self):
        self.show()
        self.do("windowfocus", "--sync", self.window())
        self.do("key", "ctrl+f")
        self.assertTrue(waits(lambda: "検索条件の設定" in self.titles()), self.titles())
        self.do("key", "Return")
        self.assertTrue(waits(lambda: "Velloria" in self.titles()), self.titles())
        self.assertEqual(self.titles(), {"Velloria v2.2.0", "検索条件の設定", "Velloria"})

    def test_without_a_screen_it_says_so(self):
        for variable in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"):
            self.enterContext(unittest.mock.patch.dict(os.environ))
            os.environ.pop(variable, None)
        program = self.start()
        _, err = program.communicate(timeout=PATIENCE_SECONDS)
        self.assertEqual(program.returncode, 1)
        self.assertIn("velloria-cli", err.decode())

    def test_without_japanese_fonts_it_says_so(self):
        nothing = self.input_file("fonts.conf", "<?xml version='1.0'?><fontconfig></fontconfig>")
        self.enterContext(unittest.mock.patch.dict(os.environ, FONTCONFIG_FILE=nothing))
        program = self.show()
        program.terminate()
        _, err = program.communicate(timeout=PATIENCE_SECONDS)
        self.assertIn("fonts-noto-cjk", err.decode())

    def test_a_diary_that_is_none_ends_with_a_box(self):
        with open(self.database, "wb") as file:
            file.write(b"no diary")
        program = self.start()
        self.assertTrue(waits(lambda: subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--name", "^Velloria$"], capture_output=True).returncode == 0))
        # The box takes keys a little after it is seen.
        self.assertTrue(waits(lambda: self.do("key", "Return") or program.poll() is not None))
        self.assertEqual(program.returncode, 1)
        self.assertEqual(read(self.database), b"no diary")


if __name__ == "__main__":
    unittest.main()
