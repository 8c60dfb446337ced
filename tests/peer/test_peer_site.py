"""Checks of the second generator itself: python3 -m unittest, in this folder."""

import os
import re
import sqlite3
import tempfile
import unittest

import peer_site
import peer_text
from peer_home import page_of_days

PLATFORM = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "data", "platform")
ESCAPES = {"\\": "\\", "r": "\r", "n": "\n", "t": "\t", "0": "\0"}


def unescape(cell):
    if cell == "\\N":
        return None
    return re.sub(r"\\(x[0-9A-F]{2}|u[0-9A-F]{4}|.)",
                  lambda match: ESCAPES.get(match.group(1)) or chr(int(match.group(1)[1:], 16)), cell)


def vectors(name):
    with open(os.path.join(PLATFORM, name), encoding="utf-8", newline="\n") as file:
        lines = file.read().split("\n")[1:]
    return [[unescape(cell) for cell in line.split("\t")] for line in lines if line]


def bare_home(folder):
    """A started home with an empty diary and no settings but its folder."""
    data = os.path.join(folder, "UserData", "")
    os.makedirs(data + "Customize")
    with open(data + "diary.ini", "wb") as file:
        file.write(b"[ALL]\r\nDataPath=" + data.encode() + b"\r\nSaveFilePath=/site\r\nSaveFileName=x\r\n")
    base = sqlite3.connect(data + "diary.mdb")
    base.executescript("""
        CREATE TABLE Contents (RecordID INTEGER PRIMARY KEY, Day TEXT, Number INTEGER, Title TEXT, Contents TEXT,
            Extend TEXT, Excerpt TEXT, Weather TEXT, Genre TEXT, PublishTime TEXT, Private INTEGER DEFAULT 0,
            TrackBack TEXT, ImportMark TEXT);
        CREATE TABLE FileDB (FileID INTEGER PRIMARY KEY, FileName TEXT, Day TEXT, Number INTEGER, Uploaded INTEGER, Logged INTEGER);
        CREATE TABLE LogDB (LogMonth TEXT, LogFileName TEXT);""")
    base.close()
    return data


class TextTest(unittest.TestCase):
    def with_file(self, text):
        path = os.path.join(self.enterContext(tempfile.TemporaryDirectory()), "a.ini")
        if text is not None:
            with open(path, "wb") as file:
                file.write(b"".join(bytes([ord(c)]) if "\x80" <= c <= "\xff" else peer_text.encode_page(c)
                                    for c in text))
        return peer_text.Profile(path)

    def test_profile_reads_as_the_platform_does(self):
        for file, section, key, default, result, _ in vectors("profile_read.tsv"):
            # Names with blanks around them and the cut of a default concern callers that the generator has not.
            if section.strip() == section and key.strip() == key and section and default.rstrip(" ") == default \
                    and len(default) < 200 and key != ";k":
                with self.subTest(file=file[:60] if file else file, key=key):
                    self.assertEqual(self.with_file(file).text(section, key, default), result)

    def test_profile_reads_numbers_as_the_platform_does(self):
        for file, section, key, default, _, result, _ in vectors("profile_int.tsv"):
            with self.subTest(file=file):
                profile = self.with_file(file)
                if result == "overflow":
                    self.assertRaises(peer_text.CommandFailure, profile.number, section, key, int(default))
                else:
                    self.assertEqual(profile.number(section, key, int(default)), int(result))

    def test_a_reference_in_a_setting_turns_back_when_the_code_page_lacks_its_character(self):
        profile = self.with_file("[s]\r\nk=caf&#233; &#128512; &#26085; &#8212;")
        self.assertEqual(profile.text("s", "k"), "café 😀 &#26085; &#8212;")

    def test_pages_keep_what_the_code_page_lacks_as_references(self):
        self.assertEqual(peer_text.encode_page("日é😀¥‾"), b"\x93\xfa&#233;&#128512;&#165;&#8254;")
        self.assertEqual(peer_text.encode_page("—‖−〜髙ⅰ≒"),
                         b"\x81\x5c\x81\x61\x81\x7c\x81\x60\xfb\xfc\xfa\x40\x81\xe0")

    def test_reading_never_fails(self):
        for direction, code, _, data, _, _ in vectors("cp932_differences.tsv"):
            if direction != "from bytes" or "lead" in data:
                continue
            low, _, high = data.partition("-")
            for value in range(int(low, 16), int(high or low, 16) + 1):
                if value & 0xFF != 0x7F:
                    pair = value.to_bytes(len(low) // 2, "big")
                    self.assertEqual(peer_text.decode_ansi(b"a" + pair + b"b"), f"a{chr(int(code[2:], 16))}b")
        self.assertEqual(peer_text.decode_ansi(b"\x81 a\x81"), "・a・")

    def test_html_to_text_of_the_feeds(self):
        converter = peer_text.HtmlToText("")
        for html, text in [
                ("<p>one</p><p>two</p>", "one\r\ntwo\r\n"), ('<a href="u">x</a>', "[リンク:u]x"),
                ('<img src="a" alt="b">', "[イメージ:b:a]"), ("<img src=a.gif>", "[イメージ::]"), ("<hr>", "-----\r\n"),
                ("a\r\n\r\n\r\n\r\nb", "a\r\n\r\nb"), ("&amp;lt;", "<"), ("1 < 2", "1 < 2"), ("a < b <br>c", "a c")]:
            self.assertEqual(converter.Execute(html), text)


class PagesTest(unittest.TestCase):
    def test_calendar_arithmetic(self):
        for year, month, weekday in [(2000, 1, 5), (2004, 2, 6), (2100, 1, 4)]:
            self.assertEqual(peer_site.GetFirstWeekday(year, month), weekday)
        self.assertRaises(peer_site.CommandFailure, peer_site.GetFirstWeekday, 1999, 12)

    def test_days_spread_over_pages(self):
        days = ["29", "15", "02", "01"]
        self.assertEqual(page_of_days(days, 2, 1), ({"29": 0, "15": 0, "02": 1, "01": 1}, 1))
        self.assertEqual(page_of_days(days, 3, 0), ({"29": 1, "15": 1, "02": 1, "01": 2}, 2))
        self.assertEqual(page_of_days([], 31, 1), ({}, -1))

    def test_an_entry_of_a_bare_home(self):
        with tempfile.TemporaryDirectory() as folder:
            data = bare_home(folder)
            base = sqlite3.connect(data + "diary.mdb")
            base.execute("INSERT INTO Contents (Day, Number, Title, Contents, Private) VALUES (?, 1, 'T', 'C', 1)",
                         ["2004/05/06"])
            base.commit()
            base.close()
            now = "2004/05/06 08:05:09"
            site = peer_site.save(folder, now)
            self.assertEqual(sorted(site), ["/site/x.htm", data + "upload.tmp"])
            self.assertEqual(site[data + "upload.tmp"], b"/site,x.htm\r\n")
            self.assertNotIn(b"2004/05/06", site["/site/x.htm"])
            preview = peer_site.preview(folder, now)[data + "tmp.htm"].decode("cp932")
            self.assertIn("<H3 align=><a name=TOP>2004年5月分</a></H3>\r\n\r\n<HR>\r\n\r\n", preview)
            self.assertIn('<A NAME="2004/05/06_1"><SPAN STYLE="">T</SPAN>(2004/05/06)</A></H3>\r\n', preview)


if __name__ == "__main__":
    unittest.main()
