"""Random files of other services come in as their writer meant them, and out and in again the same."""

import os
import random
import re
import shutil
import sqlite3
import subprocess
import tempfile
import unittest
from contextlib import closing

from random_exchange import hatena_file, movable_type_file

PROGRAM = os.path.abspath(os.environ["VELLORIA_PROGRAM"])
FILES = 10


class RandomImports(unittest.TestCase):
    def setUp(self):
        folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, folder)
        self.home = os.path.join(folder, "home")
        shutil.copytree(PROGRAM, self.home, ignore=shutil.ignore_patterns("UserData"))
        self.run_cli("start")
        self.data = os.path.join(self.home, "UserData")
        self.file = os.path.join(folder, "file")
        # The program offers its backups to who has an empty diary.
        with closing(sqlite3.connect(os.path.join(self.data, "diary.mdb"))) as base, base:
            base.execute("INSERT INTO Contents (Day, Number, Title) VALUES ('2001/01/01', 1, 'stays')")

    def run_cli(self, *words):
        result = subprocess.run([os.path.join(PROGRAM, "velloria-cli"), "--home", self.home, *words],
                                capture_output=True, check=False, timeout=120)
        self.assertEqual(result.returncode, 0, (words, result.stderr.decode()))
        return result.stderr.decode()

    def imported(self, service):
        """What an import asks, and the entries that it makes."""
        database = os.path.join(self.data, "diary.mdb")
        with closing(sqlite3.connect(database)) as base, base:
            base.execute("DELETE FROM Contents WHERE Title IS NOT 'stays'")
        asked = self.run_cli("--events", "--yes", service, "import", self.file)
        with closing(sqlite3.connect(database)) as base:
            return asked, base.execute("SELECT Day, Title, Contents, Extend, Excerpt, Genre, PublishTime, Private "
                                       "FROM Contents WHERE Title IS NOT 'stays' ORDER BY Day, Number").fetchall()

    def compare(self, service, make):
        seeds = random.Random(11)
        for _ in range(FILES):
            data, entries, counts = make(seeds)
            if not entries:
                continue
            with open(self.file, "wb") as file:
                file.write(data)
            asked, read = self.imported(service)
            self.assertEqual(read, entries, data)
            for what, count in counts.items():
                told = re.search(what + r" (\d+)件", asked)
                self.assertEqual(int(told[1]) if told else 0, count, asked)
            self.run_cli(service, "export", self.file)
            self.assertEqual(self.imported(service)[1], read, data)

    def test_of_movable_type(self):
        self.compare("mt", movable_type_file)

    def test_of_hatena_with_its_notation(self):
        with open(os.path.join(self.data, "Wrenport.ini"), "w", encoding="ascii") as file:
            file.write("[Import]\nNotation=keep\n")
        self.compare("hatena", hatena_file)


if __name__ == "__main__":
    unittest.main()
