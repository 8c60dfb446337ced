"""Holds the program's site against the second generator's, byte for byte, over random diaries.

    compare_sites.py --cli build/dev/velloria-cli --factory factory --seeds 1:200 [--keep DIR]

For each seed a home is made, filled through the command line tool, and `site save`, `site preview`, `site log`,
`site sameday`, `site find` and `export` run in it. Registered files count as well. A failing seed's folder goes to DIR, with the page that was expected in "expected".
Exit code 1 on any difference.
"""

import json
import os
import re
import shutil
import sqlite3
import subprocess
import xml.parsers.expat

import peer_export
import peer_feeds
import peer_find
import peer_site
from peer_home import Home
from peer_text import CommandFailure, encode_page
from random_diary import random_diary
from seeds import Difference, in_folder_of_its_own, main

COMPARED = (".htm", ".html", ".xml", ".tmp", ".txt", ".csv")


class Trial:
    """One random diary in a home of its own."""

    def __init__(self, options, seed, root):
        self.cli = os.path.abspath(options.cli)
        self.diary = random_diary(seed)
        self.root = root
        self.home = os.path.join(root, "home")
        shutil.copytree(options.factory, self.home, ignore=shutil.ignore_patterns("velloria", "velloria-*"))

    def run_cli(self, *arguments):
        command = [self.cli, "--home", self.home, "--now", self.diary.now, "--day", self.diary.enter_day, "--yes"]
        return subprocess.run([*command, *arguments], stdin=subprocess.DEVNULL, capture_output=True, timeout=120)

    def must_run(self, *arguments):
        result = self.run_cli(*arguments)
        if result.returncode != 0:
            raise Difference(f"{' '.join(arguments)}: exit code {result.returncode}\n{tail_of(result)}")

    def started_home(self):
        return Home(self.home, self.diary.now, self.diary.enter_day)

    # -- filling the home ---------------------------------------------------------------------------------------------

    def fill(self):
        diary = self.diary
        self.must_run("start")
        data = self.started_home().DataPath
        if diary.entries:
            lines = os.path.join(self.root, "entries.jsonl")
            with open(lines, "w", encoding="utf-8", newline="\n") as file:
                file.writelines(json.dumps(entry, ensure_ascii=False) + "\n" for entry in diary.entries)
            self.must_run("entry", "put", "--keep-time", lines)
        base = sqlite3.connect(os.path.join(self.home, "UserData", "diary.mdb"))
        with base:
            for statement, values in diary.sql:
                base.execute(statement, values)
        base.close()
        for folder, files in ((self.home, diary.home_files), (data, diary.data_files)):
            for name, content in files.items():
                put_file(os.path.join(folder, name), content)
        self.set_target(data)

    def set_target(self, data):
        """Writes the target of Save HTML into the first section ALL, before all other keys."""
        folder = self.diary.site_folder
        if folder:
            folder = data if folder == "=" else os.path.join(self.root, folder, "")
            os.makedirs(folder, exist_ok=True)
            if not self.diary.final_separator:
                folder = folder.rstrip("/")
        keys = encode_page(f"SaveFilePath={folder}\r\nSaveFileName={self.diary.file_name}\r\n")
        path = os.path.join(self.home, "UserData", "diary.ini")
        with open(path, "rb") as file:
            text = file.read()
        head = re.search(rb"(?im)^[ \t]*\[ALL\][^\r\n]*(\r\n|\r|\n)", text)
        at = head.end() if head else 0
        with open(path, "wb") as file:
            file.write(text[:at] + (b"" if head else b"[ALL]\r\n") + keys + text[at:])

    # -- comparing ----------------------------------------------------------------------------------------------------

    def compare_all(self):
        diary = self.diary
        arguments = (self.home, diary.now, diary.enter_day)
        if diary.site_folder:
            self.compare(["site", "save"], peer_site.save, *arguments)
        self.compare(["site", "preview"], peer_site.preview, *arguments)
        self.compare(["site", "log", *diary.log_month], peer_site.log, *arguments, *diary.log_month)
        self.compare(["site", "sameday", diary.same_day], peer_site.sameday, *arguments, diary.same_day)
        self.compare_find(arguments)
        self.compare_export(arguments)

    def compare_find(self, arguments):
        word, first, last, genre = self.diary.find
        command = ["site", "find", word]
        if first:
            command += ["--from", first, "--to", last]
        if genre:
            command += ["--genre", genre]
        self.compare(command, peer_find.find, *arguments, word, first, last, genre)

    def compare_export(self, arguments):
        choices = dict(self.diary.export)
        choices["out"] = os.path.join(self.root, choices["out"])
        if choices["unit"] == "divide" and not choices["period"].startswith("day"):
            os.makedirs(choices["out"])
        command = ["export"] + [part for name, value in choices.items() for part in ("--" + name, value)]
        self.compare(command, peer_export.export, *arguments, choices)

    def compare(self, command, peer, *arguments):
        exit_code, unsettled = 0, set()
        try:
            expected = peer(*arguments)
        except CommandFailure as failure:
            exit_code, expected, unsettled = 1, failure.files, failure.unsettled
        before = self.snapshot()
        result = self.run_cli(*command)
        after = self.snapshot()
        label = " ".join(command)
        if result.returncode != exit_code:
            raise Difference(f"{label}: exit code {result.returncode}, expected {exit_code}\n{tail_of(result)}")
        touched = {path for path in before.keys() | after.keys() if before.get(path) != after.get(path)}
        for path in sorted(expected.keys() | touched - unsettled):
            wanted = expected.get(path, before.get(path))
            if after.get(path) != wanted:
                if wanted is not None:
                    put_file(os.path.join(self.root, "expected", os.path.basename(path)), wanted)
                raise Difference(f"{label}: {path[len(self.root) + 1:]}\n{first_difference(wanted, after.get(path))}")
        self.check_feeds(label, {path: data for path, data in expected.items() if path.endswith(".xml") and data})

    def snapshot(self):
        files = {}
        for folder, _, names in os.walk(self.root):
            for name in names:
                if name.lower().endswith(COMPARED) or "." not in name or os.path.basename(folder) == "DiaryParts":
                    path = os.path.join(folder, name)
                    with open(path, "rb") as file:
                        files[path] = file.read()
        return files

    def check_feeds(self, label, feeds):
        home = self.started_home()
        texts = [text for text in vars(peer_feeds.Feeds(home)).values() if isinstance(text, str)]
        texts += [row[column] or "" for row in home.entries for column in ("Title", "Genre")]
        if any(sign in text for text in texts for sign in '&<"'):
            return
        for path, data in feeds.items():
            try:
                xml.parsers.expat.ParserCreate().Parse(data, True)
            except xml.parsers.expat.ExpatError as error:
                raise Difference(f"{label}: {path[len(self.root) + 1:]} is no well-formed feed: {error}") from None


def put_file(path, content):
    if content is None:
        if os.path.exists(path):
            os.remove(path)
        return
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as file:
        file.write(content)


def tail_of(result):
    return "    " + result.stderr.decode("utf-8", "replace").strip()[-500:]


def first_difference(wanted, found):
    if wanted is None:
        return "    the program left a file that must not be there"
    if found is None:
        return "    the program did not write this file"
    wanted_lines, found_lines = wanted.split(b"\n"), found.split(b"\n")
    number = next((i for i, pair in enumerate(zip(wanted_lines, found_lines)) if pair[0] != pair[1]),
                  min(len(wanted_lines), len(found_lines)))
    shown = [lines[number] + b"\n" if number < len(lines) else b"" for lines in (wanted_lines, found_lines)]
    column = len(os.path.commonprefix(shown))
    start = max(0, column - 40)
    report = [f"    line {number + 1}, byte {column + 1}"]
    for name, line in zip(("expected", "program "), shown):
        part = line[start:column + 60]
        report += [f"    {name} {part!r}", f"             {part.decode('cp932', 'replace').strip()}"]
    return "\n".join(report)


def run_seed(options, seed):
    def compare(root):
        trial = Trial(options, seed, root)
        try:
            trial.fill()
            trial.compare_all()
        except subprocess.TimeoutExpired as late:
            raise Difference(str(late)) from late

    return in_folder_of_its_own(options, seed, compare)


if __name__ == "__main__":
    main("Compares the program's site with the second generator's.", run_seed)
