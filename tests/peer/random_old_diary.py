"""A random diary of an older version as a database of this program's engine, the same for the same seed."""

import random
import sqlite3
from contextlib import closing

VERSIONS = [0, 100, 101, 110, 150, 200, 210]
TEXT, FLAG, NUMBER, COUNTER = "TEXT", "FLAG", "NUMBER", "COUNTER"
COLUMNS = {
    "Contents": [(0, "RecordID", COUNTER), (0, "Day", "DAY"), (0, "Title", TEXT), (0, "Contents", TEXT),
                 (110, "Weather", TEXT), (110, "Genre", TEXT), (150, "Number", NUMBER), (150, "PublishTime", TEXT),
                 (200, "Private", FLAG), (200, "TrackBack", TEXT), (200, "Extend", TEXT), (200, "Excerpt", TEXT),
                 (210, "ImportMark", TEXT)],
    "FileDB": [(0, "FileID", COUNTER), (0, "FileName", TEXT), (0, "Day", "FILE_DAY"), (0, "Uploaded", FLAG),
               (0, "Logged", FLAG), (150, "Number", NUMBER)],
    "LogDB": [(100, "LogMonth", TEXT), (100, "LogFileName", TEXT)],
    "DBInfo": [(100, "VersionInfo", NUMBER)],
    "Option": [(0, "Header", TEXT), (0, "Footer", TEXT), (0, "Header_Log", TEXT), (0, "Footer_Log", TEXT)],
}
SINCE = {"Contents": 0, "FileDB": 0, "LogDB": 100, "DBInfo": 100, "Option": 0}
TYPES = {COUNTER: "INTEGER PRIMARY KEY AUTOINCREMENT", FLAG: "INTEGER", NUMBER: "INTEGER"}
PIECES = ["日記", "表ソ能", "①㈱髙～", "𠮷😀", "é", "'", '"', "%", "_", "*", "\r\n", "\n", "\t", " ", "　", "<b>", "&amp;", "\\", "abc", "ｱｲｳﾞ",
          ";--", "NULL", "0", "\ufffd", "が"]
NO_DAYS = ["", "日記", "ALL", "2003/13/32", "いつか", " "]


class OldDiary:
    def __init__(self, seed):
        self.dice = random.Random(seed)
        self.version = self.dice.choice(VERSIONS)
        self.has_nulls = self.dice.random() < 0.6
        self.tables = {}
        for name, columns in COLUMNS.items():
            if self.version < SINCE[name] or name == "Option" and self.version > 100:
                continue
            columns = [(column, kind) for since, column, kind in columns if since <= self.version]
            self.dice.shuffle(columns)
            count = 1 if name in ("DBInfo", "Option") else self.dice.choice([0, 1, 3, 10, 40])
            self.tables[name] = {"columns": columns, "rows": [self.row(columns, place) for place in range(count)]}
            self.dice.shuffle(self.tables[name]["rows"])
        if self.version:
            self.tables["DBInfo"]["rows"][0]["VersionInfo"] = self.version

    def row(self, columns, place):
        return {column: self.value(kind, place) for column, kind in columns}

    def value(self, kind, place):
        dice = self.dice
        if kind == COUNTER:
            return 2 * place + 1 + dice.randrange(2)
        if self.has_nulls and dice.random() < 0.1:
            return None
        if kind == FLAG:
            return dice.randrange(2)
        if kind == NUMBER:
            return dice.choice([0, 1, 2, 3, 12, 255, 32767, -1])
        if kind == "FILE_DAY":
            return dice.choice(["ALL", "2003/01/05", "2003/1/6", "all", ""])
        return self.day() if kind == "DAY" else self.text()

    def day(self):
        dice = self.dice
        year, month, day = dice.randint(1985, 2029), dice.randint(1, 12), dice.randint(1, 28)
        return dice.choice([
            f"{year}/{month:02}/{day:02}", f"{year}/{month:02}/{day:02}", f"{year}/{month}/{day}", f"{year}-{month}-{day}",
            f"{year % 100:02}/{month}/{day}" if year % 100 > 12 else f"{year}/{month}/{day}", f"{year}年{month}月{day}日",
            dice.choice(NO_DAYS)])

    def text(self):
        if self.dice.random() < 0.02:
            return self.dice.choice(PIECES) * 40_000
        return "".join(self.dice.choice(PIECES) for _ in range(self.dice.choice([0, 1, 3, 10, 100])))

    def write(self, path):
        with closing(sqlite3.connect(path)) as base, base:
            base.execute(f"PRAGMA page_size = {self.dice.choice([512, 4096, 65536])}")
            for name, table in self.tables.items():
                columns = table["columns"]
                described = ", ".join(f"{column} {TYPES.get(kind, 'TEXT')}" for column, kind in columns)
                base.execute(f'CREATE TABLE "{name}" ({described})')
                for row in table["rows"]:
                    marks = ", ".join("?" * len(columns))
                    named = ", ".join(f'"{column}"' for column, _ in columns)
                    base.execute(f'INSERT INTO "{name}" ({named}) VALUES ({marks})', [row[column] for column, _ in columns])
