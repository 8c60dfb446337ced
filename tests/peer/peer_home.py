"""Folders, settings and diary of a started program, as the site commands see them."""

import os
import sqlite3
import urllib.parse
from datetime import datetime

from peer_text import Profile, ReadTextFile, with_separator


class Home:
    """What a program started without users knows."""

    def __init__(self, home, now, enter_day=None):
        self.MyPath = with_separator(os.path.abspath(home))
        self.UserPath = self.MyPath + "UserData/"
        self.now = datetime.strptime(now, "%Y/%m/%d %H:%M:%S")
        self.Today = self.now.strftime("%Y/%m/%d")
        self.EnterDay = enter_day or self.Today
        diary = Profile(self.UserPath + "diary.ini")
        self.DataPath = with_separator(diary.text("ALL", "DataPath"))
        folder = diary.text("ALL", "SaveFilePath")
        self.FilePath = with_separator(folder) if folder.startswith("/") else ""
        self.FileName = diary.text("ALL", "SaveFileName")
        self.custom = Profile(self._settings_file(diary, "Customize", "Customize/Customize.ini"))
        self.frame = Profile(self._settings_file(diary, "Frame", "Frame.ini"))
        self.halo = Profile(self._settings_file(diary, "HaloScan", "HaloScan.ini"))
        self.RSSIniFile = self._settings_file(diary, "RSS", "RSS.ini")
        self.rss = Profile(self.RSSIniFile)
        self.endpoints = Profile(self.MyPath + "endpoints.ini")
        self.entries, self.logs = self._read_diary()

    def _settings_file(self, diary, section, default):
        path = diary.text(section, "IniFileName")
        return path if path and os.path.isfile(path) else self.DataPath + default

    def _read_diary(self):
        base = sqlite3.connect(f"file:{urllib.parse.quote(self.UserPath)}diary.mdb?mode=ro", uri=True)
        base.row_factory = sqlite3.Row
        entries = base.execute("SELECT * FROM Contents ORDER BY Day DESC, Number DESC").fetchall()
        logs = [tuple(row) for row in base.execute("SELECT LogMonth, LogFileName FROM LogDB ORDER BY rowid")]
        base.close()
        return entries, logs

    def month(self, year_month, with_private=False):
        """The month's entries, newest first."""
        return [row for row in self.entries
                if row["Day"].startswith(year_month) and (with_private or not row["Private"])]

    def piece(self, section, key):
        """A text piece: the set names it, the folder of the sets holds it."""
        name = self.custom.text(section, key)
        return ReadTextFile(f"{self.DataPath}Customize/{name}.htm") if name else ""


def days_of(rows):
    """The days of some rows, in the rows' order, each once."""
    return list(dict.fromkeys(row["Day"] for row in rows))


def day_number(row):
    return f"{row['Day']}_{row['Number']}"


def day_file(day):
    return day.replace("/", "_") + ".htm"


def page_of_days(days, term, on_top):
    """Pages of the days, newest day first, and the last page. `term` may be any number but 0."""
    pages = {}
    page = 0 if on_top == 1 else 1
    count = 1
    for day in days:
        pages[day] = page
        if count == term:
            count = 1
            page += 1
        else:
            count += 1
    if len(days) % term == 0:
        page -= 1
    return pages, page
