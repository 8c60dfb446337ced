"""Runs the tests of a program in several processes at once: for tests that wait more than they work.

    side_by_side.py FILTER COMMAND...

FILTER and COMMAND are those of Google Test. Few tests have a process each. Many share some, since the browser engine takes
longer to start than most tests last. What a process told is told when it ends; the exit code is 1 when one failed.
"""

import concurrent.futures
import os
import subprocess
import sys

AT_ONCE = 2 * (os.cpu_count() or 1)
PROCESSES = 2 * AT_ONCE    # so that none works alone in the end


def tests(choice, command):
    """The full names: a suite is a line "Suite.", each of its tests one "  Test"."""
    listing = subprocess.run([*command, f"--gtest_filter={choice}", "--gtest_list_tests"], stdout=subprocess.PIPE,
                             encoding="utf-8", check=True).stdout
    suite, names = None, []
    for line in listing.splitlines():
        word = line.split("#")[0].strip()
        if line.startswith("  "):
            names.append(suite + word)
        elif word.endswith("."):
            suite = word
    return names


def run(names, command):
    choice = f"--gtest_filter={':'.join(names)}"
    done = subprocess.run([*command, choice], stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    return done.returncode, done.stdout


def main():
    choice, *command = sys.argv[1:]
    names = tests(choice, command)
    # Neighbours are alike, and the long ones of them share no process.
    groups = [group for group in (names[first::PROCESSES] for first in range(PROCESSES)) if group]
    failed = []
    with concurrent.futures.ThreadPoolExecutor(AT_ONCE) as pool:
        runs = {pool.submit(run, group, command): " ".join(group) for group in groups}
        for done in concurrent.futures.as_completed(runs):
            code, output = done.result()
            sys.stdout.buffer.write(output)
            sys.stdout.buffer.flush()
            if code != 0:
                failed.append(f"{runs[done]} ended with {code}")
    print(*failed, f"{len(names)} tests in {len(groups)} processes, {len(failed)} of which failed", sep="\n", flush=True)
    return 1 if failed or not names else 0


sys.exit(main())
