"""Runs the tests of a program each in a process of its own, several at once: for tests that wait more than they work.

    side_by_side.py FILTER COMMAND...

FILTER and COMMAND are those of Google Test. What each test told is told when it ends; the exit code is 1 when one failed.
"""

import concurrent.futures
import os
import subprocess
import sys

AT_ONCE = 2 * (os.cpu_count() or 1)


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


def run(name, command):
    done = subprocess.run([*command, f"--gtest_filter={name}"], stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    return done.returncode, done.stdout


def main():
    choice, *command = sys.argv[1:]
    names = tests(choice, command)
    failed = []
    with concurrent.futures.ThreadPoolExecutor(AT_ONCE) as pool:
        runs = {pool.submit(run, name, command): name for name in names}
        for done in concurrent.futures.as_completed(runs):
            code, output = done.result()
            sys.stdout.buffer.write(output)
            sys.stdout.buffer.flush()
            if code != 0:
                failed.append(f"{runs[done]} ended with {code}")
    print(*failed, f"{len(names)} tests, {len(failed)} of them failed", sep="\n", flush=True)
    return 1 if failed or not names else 0


sys.exit(main())
