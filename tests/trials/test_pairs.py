"""Two processes of every pair of writing commands at once: both have their way, and nothing of either is lost."""

import itertools
import subprocess
import unittest

from writing_commands import COMMANDS, TrialTest, choice, trials

# A log takes along what is registered when it looks. A file that goes in that moment may stand among its files afterwards,
# or be missing when it is copied: the person says so themselves, twice at once.
CONFLICTS = ({"log", "file delete"},)
PAIRS = [pair for pair in itertools.combinations_with_replacement(COMMANDS, 2)
         if {command.name for command in pair} not in CONFLICTS]


class Pairs(TrialTest):
    def test_both_have_their_way(self):
        order = list(range(len(PAIRS)))
        choice(0).shuffle(order)
        for number in trials(usual=50):
            pair = PAIRS[order[number % len(PAIRS)]]
            with self.subTest(trial=number, pair=" and ".join(command.name for command in pair)):
                self.run_together(pair, number)

    def run_together(self, pair, number):
        self.restore()
        what = f"trial {number}: " + " and ".join(command.name for command in pair)
        programs = []
        for variant, command in enumerate(pair):
            program = subprocess.Popen(self.words(command, variant), env=self.environment(), stdin=subprocess.PIPE,
                                       stdout=subprocess.PIPE, stderr=subprocess.PIPE)
            program.stdin.write(command.input(variant).encode())
            programs.append(program)
        for program in programs:
            program.stdin.close()
            program.stdin = None
        for program, command in zip(programs, pair):
            error = program.communicate(timeout=600)[1].decode()
            self.assertEqual(program.returncode, 0, f"{what}: {command.name}: {error}")
        for variant, command in enumerate(pair):
            self.assertTrue(command.has_worked(self, variant), f"{what}: {command.name} has no effect")
        self.assert_nothing_lost(what)
        self.assertEqual(self.leftovers(), [], what)


if __name__ == "__main__":
    unittest.main()
