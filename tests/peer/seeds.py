"""The command line of a comparison over random seeds, and its way through them."""

import argparse
import os
import shutil
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))

from unittest_main import exit_code, take_home  # noqa: E402


class Difference(Exception):
    """What the program and the second generator do not have in common."""


def in_folder_of_its_own(options, seed, compare):
    """None when compare(folder) finds all alike, otherwise what differs; --keep keeps the folder then."""
    with tempfile.TemporaryDirectory(prefix="velloria-peer-") as root:
        root = os.path.realpath(root)
        try:
            compare(root)
            return None
        except Difference as difference:
            if options.keep:
                kept = os.path.join(options.keep, f"seed-{seed}")
                shutil.rmtree(kept, ignore_errors=True)
                shutil.copytree(root, kept)
            return str(difference)


def main(description, run_seed, reason_to_skip=lambda: None, summary=lambda: ""):
    """run_seed(options, seed) gives None or what differs; --jobs calls it in several threads. What runs has a home folder
    of its own. `summary` gives a last line. Ends the program: 1 when a seed differed."""
    parser = argparse.ArgumentParser(description=description)
    parser.add_argument("--cli", required=True, help="the command line tool")
    parser.add_argument("--factory", required=True, help="folder of the factory files")
    parser.add_argument("--seeds", required=True, help="FROM:TO, both included")
    parser.add_argument("--jobs", type=int, default=1, help="seeds at once")
    parser.add_argument("--keep", help="folder for the homes of failing seeds")
    options = parser.parse_args()
    if reason := reason_to_skip():
        sys.exit(exit_code([(os.path.basename(sys.argv[0]), reason)], is_all=True))
    first, _, last = options.seeds.partition(":")
    seeds = range(int(first), int(last or first) + 1)
    failed = 0
    with tempfile.TemporaryDirectory(prefix="velloria-home-", ignore_cleanup_errors=True) as home:
        take_home(home)
        with ThreadPoolExecutor(options.jobs) as pool:
            for seed, difference in zip(seeds, pool.map(lambda seed: run_seed(options, seed), seeds)):
                if difference:
                    failed += 1
                    print(f"seed {seed}: {difference}", flush=True)
    if summary():
        print(summary())
    print(f"{len(seeds) - failed} passed, {failed} failed")
    sys.exit(1 if failed else 0)
