"""Holds the update of old diaries against the second reading of its rules: every value of every row, and the options.

    compare_migrations.py --cli build/dev/Velloria/velloria-cli --factory build/dev/Velloria --seeds 1:1000

The first seeds are the files of tests/data/jet, the others random diaries of older versions in the present engine.
"""

import json
import pathlib
import shutil
import sqlite3
import subprocess
from contextlib import closing

from peer_migration import COUNTING, new_rows, option_files
from random_old_diary import OldDiary
from seeds import Difference, in_folder_of_its_own, main

JET = pathlib.Path(__file__).resolve().parents[1] / "data" / "jet"
JET_FILES = sorted(JET.glob("v*.mdb"))
DONE = "diary.mdbのアップデートは完了しました。"


def old_diary(seed, diary):
    """Puts the seed's diary there; its name, version and tables."""
    if seed <= len(JET_FILES):
        file = JET_FILES[seed - 1]
        shutil.copyfile(file, diary)
        description = json.loads(file.with_suffix(".json").read_text("utf-8"))
        return file.name, description["version"], description["tables"]
    made = OldDiary(seed)
    made.write(diary)
    return f"version {made.version}", made.version, made.tables


def rows_of(diary, expected):
    """The rows of the new tables, their own numbers left out."""
    rows = {}
    with closing(sqlite3.connect(f"file:{diary}?mode=ro", uri=True)) as base:
        base.row_factory = sqlite3.Row
        for table in expected:
            found = base.execute(f"SELECT * FROM {table} ORDER BY rowid").fetchall()
            rows[table] = [{name: row[name] for name in row.keys() if name != COUNTING.get(table)} for row in found]
    return rows


def sorted_if_unordered(table, rows):
    return rows if table in COUNTING else sorted(rows, key=lambda row: repr(sorted(row.items())))


def compare_rows(table, found, expected):
    if len(found) != len(expected):
        raise Difference(f"{table} has {len(found)} rows, not {len(expected)}")
    for place, (one, other) in enumerate(zip(sorted_if_unordered(table, found), sorted_if_unordered(table, expected))):
        for column in sorted(one.keys() | other.keys()):
            if one.get(column) != other.get(column) or type(one.get(column)) is not type(other.get(column)):
                raise Difference(f"{table} row {place} {column}: {one.get(column)!r:.200}, expected {other.get(column)!r:.200}")


def run_seed(options, seed):
    def compare(root):
        home = pathlib.Path(root) / "home"
        shutil.copytree(options.factory, home, ignore=shutil.ignore_patterns("velloria*", "UserData", "*.dll"))
        user = home / "UserData"
        user.mkdir()
        name, version, tables = old_diary(seed, user / "diary.mdb")
        words = [options.cli, "--home", home, "--now", "2004/02/29 12:34:56", "--events", "start"]
        done = subprocess.run([str(word) for word in words], stdin=subprocess.DEVNULL, capture_output=True, encoding="utf-8",
                              timeout=300)
        if done.returncode or DONE not in done.stderr:
            raise Difference(f"{name}: exit code {done.returncode}: {done.stderr[-1000:]}")
        expected = new_rows(version, tables)
        found = rows_of(user / "diary.mdb", expected)
        for table in expected:
            try:
                compare_rows(table, found[table], expected[table])
            except Difference as difference:
                raise Difference(f"{name}: {difference}") from None
        for file, content in option_files(version, tables).items():
            if (written := (user / "Customize" / file).read_bytes()) != content:
                raise Difference(f"{name}: {file} is {written[-200:]!r}, expected {content[-200:]!r}")

    return in_folder_of_its_own(options, seed, compare)


if __name__ == "__main__":
    main(__doc__.splitlines()[0], run_seed)
