"""Which registered files go to the site, written independently of the program."""

import re
import sqlite3
import urllib.parse

from peer_text import Profile, fold, with_separator


def day_of(text):
    """A day in the form of the diary's keys; other texts as they stand."""
    numbers = re.fullmatch(r"(\d{4})/(\d{1,2})/(\d{1,2})", text or "")
    return "{}/{:0>2}/{:0>2}".format(*numbers.groups()) if numbers else text or ""


class Register:
    """The rows of FileDB as they are now, in the order in which they were made."""

    def __init__(self, home_folder):
        user_path = with_separator(home_folder) + "UserData/"
        base = sqlite3.connect(f"file:{urllib.parse.quote(user_path)}diary.mdb?mode=ro", uri=True)
        base.row_factory = sqlite3.Row
        self.rows = base.execute("SELECT FileID, FileName, Day, Number, Uploaded, Logged FROM FileDB "
                                 "ORDER BY FileID").fetchall()
        self.private = {(day_of(day), number) for day, number, private
                        in base.execute("SELECT Day, Number, Private FROM Contents") if private}
        base.close()
        self.takes_private = Profile(user_path + "diary.ini").number("ALL", "PrivateFiles") == 1
        self.public_names = {fold(row["FileName"] or "") for row in self.rows if not self.is_private(row)}

    def is_private(self, row):
        return (day_of(row["Day"]), row["Number"]) in self.private

    def goes(self, row):
        return self.is_name(row) and (self.takes_private or fold(row["FileName"]) in self.public_names)

    @staticmethod
    def is_name(row):
        name = row["FileName"] or ""
        return name not in ("", ".", "..") and not re.search(r"[\0-\x1f/\\]|^[A-Za-z]:", name)

    def told(self, rows):
        """The texts about rows that were looked at: names that are none, and what has gone out of private entries."""
        lines = []
        none = dict.fromkeys(row["FileName"] or "" for row in rows if not self.is_name(row))
        sent = dict.fromkeys(row["FileName"] for row in rows
                             if self.is_name(row) and not self.goes(row) and row["Uploaded"])
        if none:
            shown = "".join(f"「{re.sub('[^ -￿]', '?', name)}」" for name in none)
            lines.append(f"登録された{shown}はファイルの名前ではないので、サイトに入れていません。")
        if sent:
            shown = "".join(f"「{name}」" for name in sent)
            lines.append(f"{shown}は非公開の日記だけのファイルですが、公開したものがサイトに残っています。")
        return ["".join(lines)] if lines else []
