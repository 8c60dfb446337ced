"""Starts the program on damaged old diaries: it brings every row along or refuses, and then leaves the diary as it is.

    damage_old_diaries.py --cli build/dev/Velloria/velloria-cli --factory build/dev/Velloria --seeds 1:5000 [--jobs 2]

Each seed is a whole file of tests/data/jet with a random damage. What must hold: the start ends within two minutes with exit code 0 or 1; when
it says that the update is done, each table has the rows that the whole file had, and the damaged file lies beside the new
diary; otherwise "diary.mdb" is that file, byte for byte, and a failure says why. The program that reads the file for it
is tried alone as well, where a crash shows.
"""

import json
import os
import pathlib
import random
import shutil
import sqlite3
import subprocess
from collections import Counter
from contextlib import closing
from functools import cache

from jet_damage import damage
from seeds import Difference, in_folder_of_its_own, main

JET = pathlib.Path(__file__).resolve().parents[1] / "data" / "jet"
LONGEST_SECONDS = 120
DONE = "diary.mdbのアップデートは完了しました。"
SQLITE_HEAD = b"SQLite format 3\0"
SANITIZER_WORDS = (b"Sanitizer", b"runtime error")
outcomes = []


@cache
def whole_files():
    """File and description of each, by name."""
    files = []
    for file in sorted(JET.glob("v*.mdb")):
        files.append((file.name, file.read_bytes(), json.loads(file.with_suffix(".json").read_text("utf-8"))))
    return files


def expected_counts(description):
    """How many rows each table of the new diary has: a table that the file lacks stays empty, but `DBInfo` has its row."""
    tables = description["tables"]
    counts = {name: len(tables[name]["rows"]) if name in tables else 0 for name in ("Contents", "FileDB", "LogDB", "Memo")}
    return counts | {"DBInfo": 1}


def counts_of(diary):
    with closing(sqlite3.connect(f"file:{diary}?mode=ro", uri=True)) as base:
        if base.execute("PRAGMA integrity_check").fetchall() != [("ok",)]:
            raise Difference("the new diary is not sound")
        return {table: base.execute(f"SELECT count(*) FROM {table}").fetchone()[0]
                for table in ("Contents", "FileDB", "LogDB", "Memo", "DBInfo")}


def run(words):
    try:
        return subprocess.run([str(word) for word in words], stdin=subprocess.DEVNULL, capture_output=True,
                              timeout=LONGEST_SECONDS)
    except subprocess.TimeoutExpired:
        raise Difference(f"{os.path.basename(words[0])} does not end") from None


def check_reader(options, file, description):
    """The reading program alone: nothing but its own word ends it, and no sanitizer has anything to say."""
    reader = pathlib.Path(options.cli).with_name("velloria-jet")
    calls = [["version", file]]
    for table, one in description["tables"].items():
        calls.append(["table", file, table, *(column["name"] for column in one["columns"])])
    for words in calls:
        done = run([reader, *words])
        if done.returncode != 0 or any(word in done.stderr for word in SANITIZER_WORDS):
            raise Difference(f"velloria-jet {words[0]} ends with {done.returncode}: {done.stderr[-3000:].decode(errors='replace')}")


def failures(events):
    return [event["text"] for event in events if event["event"] == "failure"]


def check_start(options, home, damaged, expected):
    user = home / "UserData"
    diary = user / "diary.mdb"
    done = run([options.cli, "--home", home, "--now", "2004/02/29 12:34:56", "--events", "start"])
    lines = done.stderr.decode(errors="replace").splitlines()
    events = [json.loads(line) for line in lines if line.startswith("{")]
    if done.returncode not in (0, 1) or any(word in done.stderr for word in SANITIZER_WORDS):
        raise Difference(f"exit code {done.returncode}: " + "\n".join(lines[-30:]))
    is_done = any(event["event"] == "message" and DONE in event["text"] for event in events)
    if is_done != (done.returncode == 0):
        raise Difference(f"exit code {done.returncode} {'with' if is_done else 'without'} the word of success: {lines[-1:]}")
    if not is_done:
        if diary.read_bytes() != damaged:
            raise Difference("refused, and the diary is not as it was")
        if not any(failures(events)):
            raise Difference("refused without a reason")
        return "refused"
    counts = counts_of(diary)
    if counts != expected:
        raise Difference(f"success with {counts} rows of {expected}")
    if (user / "diary_jet.mdb").read_bytes() != damaged:
        raise Difference("the old diary was not kept")
    if left := [name for name in ("old.mdb", "new.mdb", "diary.mdb-journal") if (user / name).exists()]:
        raise Difference(f"left behind: {left}")
    return "done"


def run_seed(options, seed):
    dice = random.Random(seed)
    name, whole, description = dice.choice(whole_files())
    damaged = bytearray(whole)
    told = damage(damaged, dice)

    def compare(root):
        home = pathlib.Path(root) / "home"
        shutil.copytree(options.factory, home, ignore=shutil.ignore_patterns("velloria*", "UserData", "*.dll"))
        (home / "UserData").mkdir()
        (home / "UserData" / "diary.mdb").write_bytes(damaged)
        check_reader(options, home / "UserData" / "diary.mdb", description)
        outcomes.append(check_start(options, home, bytes(damaged), expected_counts(description)))

    difference = in_folder_of_its_own(options, seed, compare)
    return difference and f"{name}, {told}: {difference}"


if __name__ == "__main__":
    main(__doc__.splitlines()[0], run_seed,
         summary=lambda: ", ".join(f"{count} {outcome}" for outcome, count in sorted(Counter(outcomes).items())))
