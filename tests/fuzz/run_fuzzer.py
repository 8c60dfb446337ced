#!/usr/bin/env python3
"""Runs a fuzzer, beginning with a copy of its corpus: a number of inputs, the same each time, or with --seconds new ones.
What breaks the reader stays, and is named."""

import argparse
import pathlib
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))

from patience import PATIENCE_SECONDS  # noqa: E402


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("program", type=pathlib.Path)
    parser.add_argument("corpus", type=pathlib.Path)
    parser.add_argument("--runs", type=int, default=8000)
    parser.add_argument("--seconds", type=int)
    asked = parser.parse_args()
    if not asked.program.is_file():
        sys.exit(f"{asked.program} was not built: that needs clang (scripts/setup test installs it)")
    if not any(asked.corpus.iterdir()):
        sys.exit(f"{asked.corpus} is empty")
    # What depends on the time that an input takes, and on where things lie in memory, makes each run another one.
    the_same = ["-seed=1", "-entropic=0", "-use_cmp=0", "-reload=0", f"-runs={asked.runs}"]
    extent = [f"-max_total_time={asked.seconds}"] if asked.seconds else the_same
    found = asked.program.with_suffix(".found")
    found.mkdir(exist_ok=True)
    with tempfile.TemporaryDirectory() as folder:
        corpus = pathlib.Path(folder) / "corpus"
        shutil.copytree(asked.corpus, corpus)
        result = subprocess.run(
            [asked.program, corpus, *extent, f"-timeout={PATIENCE_SECONDS}", "-rss_limit_mb=2048",
             "-max_len=65536", "-print_final_stats=1", f"-artifact_prefix={found}/"], check=False)
    if result.returncode != 0:
        sys.exit(f"{asked.program.name} has found something: see {found}")


if __name__ == "__main__":
    main()
