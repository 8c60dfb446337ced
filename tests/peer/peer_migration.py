"""What an update makes of an old diary: the rows of the new tables and the texts of the old options.

A table is a dict of `columns` and `rows`, a row a dict; `tables` has those of the old file by name.
"""

import re
import unicodedata

from peer_text import CRLF, encode_page

DAY = re.compile(r"(\d{1,4})([/.-])(\d{1,2})\2(\d{1,2})|(\d{1,4})年(\d{1,2})月(\d{1,2})日")
OPTION_FILES = {"Header": "default_up.htm", "Footer": "default_down.htm", "Header_Log": "default_up_log.htm",
                "Footer_Log": "default_down_log.htm"}
COUNTING = {"Contents": "RecordID", "FileDB": "FileID"}


def day_of_date(text):
    """yyyy/mm/dd; a text that is no date stays."""
    found = DAY.fullmatch(unicodedata.normalize("NFKC", text))
    if not found:
        return text
    year, month, day = (int(part) for part in found.groups() if part and part.isdigit())
    if len(found[1] or found[5]) <= 2:
        year += 2000 if year < 30 else 1900
    return f"{year:04}/{month:02}/{day:02}"


def flag(value):
    return int(bool(value))


def empty_for_none(value):
    return "" if value is None else value


def contents_row(v, row):
    day = empty_for_none(row["Day"])
    since = lambda version, column, otherwise: row[column] if v >= version else otherwise  # noqa: E731
    number = since(150, "Number", 1)
    return {
        "Day": day_of_date(day), "Title": row["Title"], "Contents": row["Contents"],
        "Weather": since(110, "Weather", "-"), "Genre": since(110, "Genre", "一般"),
        "Number": 1 if number is None else number, "PublishTime": since(150, "PublishTime", day + " 00:00:00"),
        "Private": flag(since(200, "Private", False)), "TrackBack": since(200, "TrackBack", ""),
        "Extend": since(200, "Extend", ""), "Excerpt": since(200, "Excerpt", ""),
        "ImportMark": since(210, "ImportMark", "")}


def file_row(v, row):
    number = row["Number"] if v >= 150 else 0 if row["Day"] == "ALL" else 1
    return {"FileName": row["FileName"], "Day": row["Day"], "Uploaded": flag(row["Uploaded"]),
            "Logged": flag(row["Logged"]), "Number": 0 if number is None else number}


def log_row(_, row):
    return {"LogMonth": row["LogMonth"], "LogFileName": row["LogFileName"]}


def memo_row(_, row):
    return {"PublishTime": row["PublishTime"], "Title": row["Title"], "Memo": row["Memo"], "No": 0, "Category": "", "IsPass": 0}


TABLES = {"Contents": (0, contents_row), "FileDB": (0, file_row), "LogDB": (100, log_row), "Memo": (220, memo_row)}


def in_order(table, rows):
    """By the counting column; rows of a table that has none have no order of their own."""
    return sorted(rows, key=lambda row: row[COUNTING[table]]) if table in COUNTING else rows


def new_rows(v, tables):
    """The rows of each table of the new diary, without the numbers that it gives them itself."""
    made = {}
    for table, (since, make) in TABLES.items():
        old = in_order(table, tables[table]["rows"]) if v >= since else []
        made[table] = [make(v, row) for row in old]
    passes = tables["DBInfo"]["rows"][0] if v >= 220 else {"IsMemoPass": False, "IsPass": False}
    made["DBInfo"] = [{"VersionInfo": 220, "IsMemoPass": flag(passes["IsMemoPass"]), "IsPass": flag(passes["IsPass"])}]
    return made


def option_files(v, tables):
    """What lies in "Customize" then, by name."""
    if v >= 101:
        return {}
    row = tables["Option"]["rows"][0]
    return {name: encode_page(empty_for_none(row[column]) + CRLF) for column, name in OPTION_FILES.items()}
