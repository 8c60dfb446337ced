#!/usr/bin/env python3
"""Runs a fuzzer for some seconds, beginning with a copy of its corpus. What breaks the reader stays, and is named."""

import argparse
import pathlib
import shutil
import subprocess
import sys
import tempfile


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("program", type=pathlib.Path)
    parser.add_argument("corpus", type=pathlib.Path)
    parser.add_argument("--seconds", type=int, default=20)
    asked = parser.parse_args()
    if not asked.program.is_file():
        sys.exit(f"{asked.program} was not built: that needs clang (scripts/setup test installs it)")
    if not any(asked.corpus.iterdir()):
        sys.exit(f"{asked.corpus} is empty")
    found = asked.program.with_suffix(".found")
    found.mkdir(exist_ok=True)
    with tempfile.TemporaryDirectory() as folder:
        corpus = pathlib.Path(folder) / "corpus"
        shutil.copytree(asked.corpus, corpus)
        result = subprocess.run(
            [asked.program, corpus, f"-max_total_time={asked.seconds}", "-timeout=10", "-rss_limit_mb=2048",
             "-max_len=65536", "-print_final_stats=1", f"-artifact_prefix={found}/"], check=False)
    if result.returncode != 0:
        sys.exit(f"{asked.program.name} has found something: see {found}")


if __name__ == "__main__":
    main()
