"""The export of a period, written independently of the program."""

import os

from peer_home import Home
from peer_text import CRLF, CommandFailure, HtmlToText, ReadTextFile, encode_page

ENDS = {"TEXT": ".txt", "HTML": ".htm"}


def template_of(home, name):
    for end in (".txt", ".ini"):
        path = f"{home.DataPath}ExportFormat/{name}{end}"
        if os.path.isfile(path):
            return ReadTextFile(path)
    raise CommandFailure("no template")


def rows_of(home, kind, values, is_descending):
    tests = {"user": lambda day: values[0] <= day <= values[1],
             "month": lambda day: day.startswith(f"{values[0]}/{int(values[1]):02}/"),
             "day": lambda day: day == values[0]}
    rows = sorted((row for row in home.entries if tests[kind](row["Day"])), key=lambda row: row["Number"])
    return sorted(rows, key=lambda row: row["Day"], reverse=is_descending and kind != "day")


def export(home_folder, now, enter_day, choices):
    """`choices` as the command line takes them; "out" is a file, or a folder for more than one day divided."""
    home = Home(home_folder, now, enter_day)
    kind, *values = choices["period"].split(":")
    divided = choices["unit"] == "divide"
    out, format_name, user_end = choices["out"], choices["format"], ""
    if format_name not in ENDS:
        format_name, _, end = format_name.rpartition(".")
        user_end = "." + end
    if (kind == "day" or not divided) and out[-4:].upper() not in (".TXT", ".HTM"):
        out += ENDS.get(format_name, "")
    template = template_of(home, format_name)
    converter = HtmlToText(home.MyPath + "HTML2TXT.ini") if choices["contents"] == "text" else None

    def printed(row):
        text = template
        for mark, value in (("TITLE", row["Title"] or ""), ("DAY", row["Day"]),
                            ("GENRE", "一般" if row["Genre"] is None else row["Genre"]),
                            ("WEATHER", "-" if row["Weather"] is None else row["Weather"])):
            text = text.replace(f"<--{mark}-->", value)
        contents = row["Contents"] or ""
        return encode_page(text.replace("<--CONTENTS-->", converter.Execute(contents) if converter else contents)
                           + CRLF)

    rows = rows_of(home, kind, values, choices["sort"] == "desc")
    if not divided:
        return {out: b"".join(map(printed, rows))}
    folder = os.path.dirname(out) if kind == "day" else out.rstrip("/")
    files = {}
    for row in rows:
        name = row["Day"].replace("/", "_") if choices["name"] == "day" else row["Title"] or ""
        name += ENDS.get(format_name, user_end)
        if "/" in name or "\0" in name or len(name.encode()) > 255:
            raise CommandFailure("no file can have this name", files)
        files[f"{folder}/{name}"] = printed(row)
    return files
