"""The main window on a small screen whose window manager gives it a frame: all of it is on the screen. Needs a screen of
1024 by 600 with a window manager, xdotool, xwininfo and xprop."""

import re
import subprocess
import unittest

from test_program import ProgramTest, waits

SCREEN = (1024, 600)


def tells(*words):
    return subprocess.run(words, capture_output=True, encoding="utf-8").stdout


class Frame(ProgramTest):
    def frame(self):
        """Left, top, right and bottom of the window with its frame, once it stays where it is."""
        def look():
            window = self.window()
            told = tells("xwininfo", "-id", window)
            numbers = [re.search(rf"{name}: +(-?\d+)", told) for name in
                       ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")]
            around = re.search(r"= (\d+), (\d+), (\d+), (\d+)", tells("xprop", "-id", window, "_NET_FRAME_EXTENTS"))
            return [int(number[1]) for number in numbers] + [int(side) for side in around.groups()] \
                if all(numbers) and around else None

        seen = []

        def stays():
            seen.append(look())
            return seen[-1] and seen[-20:] == [seen[-1]] * 20

        self.assertTrue(waits(stays), seen[-3:])
        left, top, width, height, *around = seen[-1]
        self.assertGreater(around[2], 10, "it has a title bar")
        return left - around[0], top - around[2], left + width + around[1], top + height + around[3]

    def check(self, place=None):
        """Where it is once it is whole on the screen, and there at `place` (its left and top): a slow machine leaves it
        for a while where the manager has put it first."""
        seen = []

        def fits():
            seen[:] = self.frame()
            left, top, right, bottom = seen
            return left >= 0 and top >= 0 and right <= SCREEN[0] and bottom <= SCREEN[1] and \
                (place is None or seen[:len(place)] == list(place))

        self.assertTrue(waits(fits), (seen, place))
        return tuple(seen)

    def end(self, program):
        program.terminate()
        program.communicate(timeout=60)

    def test_the_first_start_keeps_its_frame_in_mind(self):
        program = self.show()
        first = self.check()
        self.end(program)
        self.show()
        self.check(first)  # and comes back where it was

    def test_a_window_that_was_left_on_a_larger_screen_comes_back_whole(self):
        for name, value in (("Left", 9000), ("Top", 6000), ("Width", 30000), ("Height", 20000)):
            self.must("ini", "set", self.diary_ini, "ParentForm", name, str(value))
        self.show()
        self.check()

    def test_an_edge_of_zero_stays_where_the_manager_puts_it(self):
        for name, value in (("Width", 7500), ("Height", 6000)):
            self.must("ini", "set", self.diary_ini, "ParentForm", name, str(value))
        program = self.show()
        left, top = self.check()[:2]
        self.end(program)
        for told, place in ((("Left", 4500), (300, top)), (("Top", 1500), (left, 100))):
            for name in ("Left", "Top"):
                self.must("ini", "set", self.diary_ini, "ParentForm", name, str(told[1] if name == told[0] else 0))
            program = self.show()
            self.check(place)
            self.end(program)


if __name__ == "__main__":
    unittest.main()
