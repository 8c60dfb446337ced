"""Exports in Movable Type's format, read by other programs' rules: nothing of a diary is lost or swallowed there."""

import glob
import os
import random
import re
import shutil
import sqlite3
import subprocess
import tempfile
import unittest
from contextlib import closing
from html.parser import HTMLParser

from peer_movable_type import as_told, movable_type, wordpress

HERE = os.path.dirname(os.path.abspath(__file__))
SAMPLES = os.path.join(HERE, "..", "data", "exchange", "movable_type")
SAMPLE_DIARY = os.path.join(HERE, "..", "..", "demo", "make_diary.py")
PROGRAM = os.path.abspath(os.environ["VELLORIA_PROGRAM"])

LINES = ["朝は晴れ。", "川まで歩いた。", "a < b & c", "&lt;-----&gt;", "-----", "--------", " ----- ", "------", "-----\t",
         "TITLE: 題名ではない", "STATUS: Draft", "CATEGORY: 迷子", "DATE: 01/01/2001 01:01:01 AM", "BODY:", "EXTENDED BODY:",
         "COMMENT:", "KEYWORDS: a, b", "AUTHOR:", "EMAIL: x", "0", "", "", "", "  字下げ", "末尾の空き  ", "😀 絵文字",
         "<b>強調</b>", "<p>段落", "</p>", "<br>", "<ul>", "<li>一つ", "</ul>", "<table><tr><td>升", "</td></tr></table>",
         "<pre>", "  int a;", "\tb;", "", "-----", "</pre>", "<img src='a.gif' alt='-----'>", "<!-- 注 -->", "x" * 9000,
         "長い行" * 4000, "&#128512;" * 2000, "<a href='http://h.example/'>" + "つなぎ " * 3000 + "</a>"]


class Seen(HTMLParser):
    """What a page shows: tags, and texts in which blanks are one unless they stand in <pre>. Paragraph tags and
    comments do not count."""

    def __init__(self, html):
        super().__init__(convert_charrefs=True)
        self.pres = 0
        self.parts = []
        self.feed(html)
        self.close()

    def handle_starttag(self, tag, attrs):
        self.pres += tag == "pre"
        if tag != "p":
            self.parts.append((tag, attrs))

    def handle_endtag(self, tag):
        self.pres = max(0, self.pres - (tag == "pre"))
        if tag != "p":
            self.parts.append("/" + tag)

    def handle_data(self, data):
        kind = "pre:" if self.pres else "text:"
        if self.parts and isinstance(self.parts[-1], str) and self.parts[-1].startswith(kind):
            self.parts[-1] += data
        else:
            self.parts.append(kind + data)

    def shown(self):
        """Blanks next to what parts lines anyway are not seen."""
        parts = ["text:" + re.sub("[ \t\r\n\f]+", " ", part[5:]).strip(" ")
                 if isinstance(part, str) and part.startswith("text:")
                 else part.replace("\r\n", "\n") if isinstance(part, str) else part for part in self.parts]
        if parts and isinstance(parts[-1], str) and parts[-1].startswith("pre:"):
            parts[-1] = parts[-1].rstrip("\n")
        return [part for part in parts if part not in ("text:", "pre:")]


def shown(html):
    """What a page shows of a text, whose end is no part of it."""
    return Seen((html or "").rstrip("\r\n")).shown()


def random_text(seeds):
    return "\r\n".join(seeds.choice(LINES) for _ in range(seeds.randrange(12)))


def entries_of(database):
    with closing(sqlite3.connect(database)) as base:
        return base.execute("SELECT Day, Title, Contents, Extend, Excerpt, Genre, PublishTime, Private FROM Contents "
                            "ORDER BY Day, Number").fetchall()


class Readers(unittest.TestCase):
    def test_wordpress_reads_the_samples_as_the_real_one_did(self):
        told = sorted(glob.glob(os.path.join(SAMPLES, "*.wordpress.txt")))
        self.assertEqual(len(told), 4)
        for answer in told:
            with open(answer.replace(".wordpress", ""), "rb") as file:
                posts = wordpress(file.read())
            with open(answer, encoding="utf-8") as file:
                self.assertEqual(as_told(posts), file.read().splitlines()[1:], answer)

    def test_movable_type_reads_the_full_sample(self):
        with open(os.path.join(SAMPLES, "mt-full.txt"), "rb") as file:
            entries = movable_type(file.read())
        self.assertEqual([entry["title"] for entry in entries], ["冬の散歩: 川まで", "下書き"])
        self.assertEqual(entries[0]["texts"]["EXCERPT"], "川まで歩いた日のこと。")


class Exports(unittest.TestCase):
    def setUp(self):
        self.home = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.home)
        for name in os.listdir(PROGRAM):
            path = os.path.join(PROGRAM, name)
            if name not in ("UserData", "velloria", "vellmemo"):
                copy = shutil.copytree if os.path.isdir(path) else shutil.copy
                copy(path, os.path.join(self.home, name))
        self.run_cli("start")
        self.database = os.path.join(self.home, "UserData", "diary.mdb")
        self.file = os.path.join(self.home, "out.txt")

    def run_cli(self, *words, lines=b""):
        result = subprocess.run([os.path.join(PROGRAM, "velloria-cli"), "--home", self.home, *words],
                                input=lines, capture_output=True, check=False, timeout=120)
        self.assertEqual(result.returncode, 0, (words, result.stderr.decode()))

    def fill(self, rows):
        with closing(sqlite3.connect(self.database)) as base, base:
            base.execute("DELETE FROM Contents")
            base.executemany("INSERT INTO Contents (Day, Number, Title, Contents, Extend, Excerpt, Weather, Genre, "
                             "PublishTime, Private) VALUES (?,?,?,?,?,?,'-',?,?,?)", rows)

    def exported(self):
        if os.path.exists(self.file):
            os.unlink(self.file)
        self.run_cli("mt", "export", self.file)
        with open(self.file, "rb") as file:
            return file.read()

    def compare(self, data):
        entries = entries_of(self.database)
        posts, own = wordpress(data), movable_type(data)
        self.assertEqual(len(posts), len(entries))
        self.assertEqual(len(own), len(entries))
        for (day, title, contents, extend, excerpt, genre, _, private), post, mine in zip(entries, posts, own):
            self.assertEqual(post["title"], title.strip())
            self.assertEqual(mine["title"], title.strip())
            self.assertEqual(post["date"][:10], day.replace("/", "-"))
            self.assertEqual(mine["date"].strftime("%Y/%m/%d"), day)
            self.assertEqual(post["status"], "draft" if private else "publish")
            self.assertEqual(mine["status"], "draft" if private else "publish")
            self.assertEqual(post["cats"], [genre])
            self.assertEqual(mine["cats"], [genre])
            self.assertEqual(mine["breaks"], "0")
            body, _, more = post["body"].partition("\n<!--more-->\n")
            self.assertEqual(shown(body), shown(contents))
            self.assertEqual(shown(more), shown(extend))
            self.assertEqual(shown(post["excerpt"]), shown(excerpt))
            for name, text in {"BODY": contents, "EXTENDED BODY": extend, "EXCERPT": excerpt}.items():
                self.assertEqual(shown(mine["texts"][name]), shown(text))

    def test_lose_nothing_of_random_diaries(self):
        seeds = random.Random(4)
        for _ in range(15):
            rows = []
            for number in range(1, seeds.randrange(2, 12)):
                rows.append((f"2024/02/{seeds.randrange(1, 29):02}", number, seeds.choice(["", "題名", "a: b", " x "]),
                             random_text(seeds), random_text(seeds), random_text(seeds),
                             seeds.choice(["一般", "散歩", "a, b"]), "2024/02/01 10:00:00", seeds.randrange(2)))
            self.fill(rows)
            self.compare(self.exported())

    def test_lose_nothing_of_the_sample_diary_and_bring_it_back(self):
        lines = subprocess.run(["python3", SAMPLE_DIARY], capture_output=True, check=True).stdout
        self.run_cli("entry", "put", "--keep-time", lines=lines)
        diary = entries_of(self.database)
        self.assertGreater(len(diary), 100)
        self.compare(self.exported())
        with closing(sqlite3.connect(self.database)) as base, base:
            base.execute("DELETE FROM Contents WHERE Day > (SELECT min(Day) FROM Contents)")
        self.run_cli("--yes", "mt", "import", self.file)
        self.assertEqual(entries_of(self.database)[1:], diary)

    def test_show_paragraphs_where_lines_are_empty(self):
        self.fill([("2024/02/01", 1, "t", "a\r\n\r\nb", "", "", "一般", "2024/02/01 10:00:00", 0)])
        self.assertEqual(wordpress(self.exported())[0]["body"], "a\n<p><!-- -->b\n")

    def test_keep_entries_apart_that_differ_in_nothing_but_their_text(self):
        self.fill([("2024/02/01", number, "", str(number), "", "", "一般", "2024/02/01 10:00:00", 0)
                   for number in range(1, 51)])
        self.assertEqual([post["body"] for post in wordpress(self.exported())], [f"{n}\n" for n in range(1, 51)])


if __name__ == "__main__":
    unittest.main()
