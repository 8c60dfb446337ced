"""A random diary with random settings from a seed, the same for the same seed.

`python3 random_diary.py SEED` shows one.
"""

import json
import random
import sys
from dataclasses import dataclass, field
from datetime import date, timedelta

from peer_site import GetMonthDays
from peer_text import encode_page

WORDS = ["日記", "晴れのち曇", "東京", "ソース表示", "能力", "abc", "Hello", "１２３", "ｱｲｳﾞ", "①㈱", "髙﨑ⅰ", "～", "　", " ", "。", "＃"]
ODD_CHARACTERS = ["é", "😀", "𠮷", "〜", "−", "—", "‖", "¥", "‾", "¢", "£", "¬", "\u00a0", "\ufffd", "\ue000", "한", "が",
                  "\u2028", "™", "\u0300", "ヷ", "&#233;", "&#12354;"]
SIGNS = ["&", "<", ">", '"', "'", "#", "%", "&amp;", "<b>", "</b>", "\\", "{", "$1", "|"]
HTML = ["<p>", "</p>", "<P class='x'>", "<br>", "<BR />", "<b>", "</B>",
        '<a href="http://h.example/x?a=1&b=2">', "<a name='n'>", '<a href="#x">', "<a href=#x>", "<A HREF='/data a/x'>",
        "</a>", '<img src="a.gif" alt="絵">', "<img src=a.gif>",
        "<IMG ALT= 絵 SRC= a.gif>", "<hr>", "<table><tr><td>", "</td></tr></table>", "<th>", "</th>",
        "<ul>", "<li>", "</li>", "</ul>", "<dl><dt><dd>", "</dd></dt></dl>", "<blockquote>", "</blockquote>",
        "<caption>", "</caption>",
        "<strong>", "</strong>", "<span style='x'>", "</span>", "<pre>", "</pre>", "<xmp>", "</xmp>", "<sup>", "</sup>",
        "<sub>", "</sub>", "<em>", "</em>", "<ins>", "</ins>", "<del>", "</del>", "<q>", "</q>", "<u>", "</u>", "<i>",
        "</i>", "<s>", "</s>", "<tt>", "</tt>", "</ADDRESS>", "<!-- c -->", "a < b ", "(>_<)", "<3",
        "<>", ">", "&amp;", "&lt;", "&gt;", "&amp;lt;", "&quot;",
        "\r\n", "\r\n\r\n", "\r\n\r\n\r\n", "\r\n\r\n\r\n\r\n", "\n", "\r", "\t", "\x07", "\x1b"]
WEATHER = ["晴", "曇", "雨", "雪", "雷", "-", "", "暴風", "晴れ", "<x>"]

# Kinds of settings. A kind is a list to choose from or one of the names that `Maker.value` knows.
FLAG = ["0"] * 8 + ["1"] * 11 + ["", "abc", "2", " 1 "]
# A number beyond 16 bits ends a run, so it is rare.
SIZE = ["", "0", "1", "2", "5", "40", "-3", "abc", "12abc", "1.9", "0x10"] * 30 + ["32768", "-32769"]
COLOUR = ["", "red", "#FFFFFF", "#000080", "banana", "'", "#FFF; x:y"]
ALIGN = ["Left", "Center", "Right", "left", "CENTER", "", "Middle"]
CUSTOMIZE = {
    "General": {
        "HPTitle": "text", "StyleSheetURL": ["", "", "style.css", "./a b.css", "http://h.example/日記.css"],
        "HeadTag": "piece", "HeadTag_Div": "piece", "HeadTag_Div_Log": "piece", "TitleAlign": ALIGN,
        "DayTitleAlign": ALIGN, "UseLog": FLAG, "LogType": ["Normal", "Normal", "JavaScript", "javascript", "", "Odd"],
        "LogAlign": ALIGN, "Weather": FLAG, "Genre": FLAG, "UseCategory": FLAG, "VellLinkOn": FLAG,
        "VellLinkText": ["", "no mark", "<p>#</p>", "##", "作成：#　(é😀)", "text"]},
    "Body": {
        "TextColor": COLOUR, "BackColor": COLOUR, "LinkColor": COLOUR, "ALinkColor": COLOUR, "VLinkColor": COLOUR,
        "BackImage": ["", "back.gif", "DiaryParts/背景.gif"], "UpText": "piece", "DownText": "piece",
        "UpText_Log": "piece", "DownText_Log": "piece", "UpText_Div": "piece", "DownText_Div": "piece",
        "UpText_Div_Log": "piece", "DownText_Div_Log": "piece"},
    "DayList": {"Use": FLAG, "Type": ["List"] * 6 + ["Table"] * 6 + ["", "", "table"], "AddTitle": FLAG,
                "MarginLeft": SIZE},
    "Calender": {
        "Use": FLAG, "Type": ["1", "1", "2", "", "01", "Japanese"], "FirstDayOfWeek": ["0", "0", "0", "", "1", "1"],
        "TableAlign": ["LEFT", "left", "Left", "cEnter", "right", "", "middle", "center "], "NoBorder": FLAG,
        "BorderSize": SIZE, "CellPadding": SIZE, "TableBGColor": COLOUR, "TRBGColorTop": COLOUR, "TRBGColor": COLOUR,
        "BorderColor": COLOUR, "BorderColorLight": COLOUR, "BorderColorDark": COLOUR},
    "Contents": {
        "HTMLType": ["0", "0", "1", "1", "1", "", "2", "01"],
        "TableBorder": SIZE, "Cellspacing": SIZE, "TableWidth": SIZE,
        "TableBGColor": COLOUR, "TBorderColor": COLOUR, "TitleFTColor": COLOUR, "TitleBGColor": COLOUR,
        "TitleSpanTag": ["", "font-weight:bold", "'quoted'", '"font:9pt"'], "DayBGColor": COLOUR, "DayFTColor": COLOUR,
        "ContentsBGColor": COLOUR, "ContentsFTColor": COLOUR, "DayContentsAlign": ALIGN},
    "PageMoveLink": {
        "PageMoveOn": FLAG, "Align": ALIGN, "Separetor": ["", "|", " | ", "／", "<br>", "''", '"', "text"],
        "Language": ["Japanese"] * 5 + ["English"] * 5 + ["", "", "japanese"]},
    "CalenderWindow": {"TextColor": COLOUR, "BGColor": COLOUR, "BGImage": ["", "left.gif"], "HeadTag": "piece",
                       "UpText": "piece", "DownText": "piece"},
}
FRAME = {
    "Divide": {
        "DiaryDivide": FLAG, "DiaryTerm": ["1"] * 7 + ["2", "2", "3", "7", "7", "31", "0", "", "-1", "-2", "40", "abc"],
        "DiaryOnTop": FLAG, "TopLink": ["PageTop", "TopPage", "TopPage", "", "toppage"], "LogDivide": FLAG,
        "UseFileName2Day": FLAG},
    "Frame": {
        "FrameOn": ["0"] * 10 + ["1"] * 7 + ["", "2"], "CalenderFrameSize": ["", "180", "20%"],
        "Border": ["0", "1", "2", "abc", ""], "Scrolling": FLAG, "Resize": FLAG},
}
RSS = {
    "GENERAL": {"RSSOn": FLAG},
    "Setting": {
        "Title": "text", "HPURL": ["", "http://h.example/", "http://h.example/日記/"], "Description": "text",
        "DiaryURL": [*["http://h.example/diary/index.htm"] * 6, "http://h.example/diary/", "index.html", "nodots",
                     "a/b", ""]},
    "RSS2.0": {"ManagingAuthor": ["", "a@h.example", "text"], "WebMaster": ["", "w@h.example", "text"]},
    "ATOM": {"Author": ["", "太郎", "text"]},
}
HALO = {"GENERAL": {"HaloScanOn": ["0", "0", "0", "1", "1", "2"], "UserName": ["", "taro", "太郎é"]}}
TEXT_KEYS = ["HR", "BR", "P", "IMG", "ANAME", "AHREF", "AHREFSharp"]
HTML_KEYS = ["BR", "P", "XMP", "SPAN", "S", "SUP", "SUB", "TT", "PRE", "BLOCKQUOTE", "HR", "TABLE", "LIST", "A", "EM",
             "STRONG", "INS", "DEL", "Q", "U", "I", "B"]
HTML2TEXT = {
    "GENERAL": {"MODE": ["TEXT", "TEXT", "HTML", "text"], "ENTER": ["0", "1", ""],
                "A_LINK_TAG_TYPE": ["0", "1", "2", "3"]},
    "HR": {"NUM": ["0", "1", "5"]}, "HTML": {key: ["0", "1", "1", "-1"] for key in TEXT_KEYS},
    "HTML2HTML": {**{key: ["0", "0", "1", "-1"] for key in HTML_KEYS}, "HR_Num": ["0", "3"]},
}
PIECES = ["up", "down", "見出し", "café", "longpiece", "lineless", "empty", "rawbytes"]


@dataclass
class Diary:
    seed: int
    now: str = ""
    enter_day: str = ""
    log_month: tuple = ()                                # year and month as typed
    same_day: str = ""
    find: tuple = ()                                     # word, first day, last day, genre; empty when not asked for
    export: dict = field(default_factory=dict)           # options of the command; "out" is a name in the root
    entries: list = field(default_factory=list)          # lines for `entry put --keep-time`
    sql: list = field(default_factory=list)              # (statement, values): what that command can't make
    data_files: dict = field(default_factory=dict)       # path below DataPath: bytes
    home_files: dict = field(default_factory=dict)       # path below the home: bytes, None takes the file away
    site_folder: str = ""                                # name beside the home, "=" is DataPath, "" unset
    final_separator: bool = True                         # how the setting spells the site folder
    file_name: str = ""


class Maker:
    def __init__(self, seed):
        self.rng = random.Random(seed)
        self.diary = Diary(seed)
        self.clean_titles = self.rng.random() < 0.6      # no title, genre or channel text that breaks a feed
        self.missing = self.rng.choice([0.0, 0.05, 0.05, 0.3])

    def chance(self, probability):
        return self.rng.random() < probability

    # -- texts --------------------------------------------------------------------------------------------------------

    def title(self):
        parts = [self.rng.choice(WORDS) for _ in range(self.rng.randint(1, 4))]
        if self.chance(0.3):
            parts.append(self.rng.choice([c for c in ODD_CHARACTERS if not (self.clean_titles and c[0] == "&")]))
        if not self.clean_titles and self.chance(0.4):
            parts.append(self.rng.choice(SIGNS))
        self.rng.shuffle(parts)
        text = "".join(parts)
        return text if text.strip() else "題" + text

    def body(self):
        kind = self.rng.random()
        if kind < 0.1:
            return ""
        if kind < 0.3:      # about the cut of the feeds at 500
            text = self.rng.choice(["あ", "字", "x", "é"]) * self.rng.choice([248, 250, 497, 498, 499, 500, 501, 600])
            tail = self.rng.choice(["", "😀", "😀😀", "&amp;", "終\r\nわり", "<br>", "A😀B"])
            return text + tail + self.rng.choice(["", "続き"])
        parts = []
        for _ in range(self.rng.randint(1, 25)):
            parts.append(self.rng.choice(self.rng.choice([WORDS, WORDS, HTML, HTML, ODD_CHARACTERS, SIGNS])))
        return "".join(parts)

    # -- days and entries ---------------------------------------------------------------------------------------------

    def days_of_month(self, year, month):
        last = GetMonthDays(year, month)
        kind = self.rng.choice(["empty", "one", "one", "few", "few", "few", "many", "full", "ends"])
        if kind == "empty":
            return []
        if kind == "full":
            return list(range(1, last + 1))
        if kind == "ends":
            return [1, last]
        count = {"one": 1, "few": self.rng.randint(2, 8), "many": self.rng.randint(10, 25)}[kind]
        return sorted(self.rng.sample(range(1, last + 1), count))

    def calendar_of_diary(self):
        rng = self.rng
        year, month = rng.randint(2000, 2060), rng.randint(1, 12)
        if self.chance(0.03):
            year = 1999
        elif self.chance(0.05):
            year, month = rng.choice([2000, 2004, 2100]), 2
        today = date(year, month, rng.randint(1, GetMonthDays(year, month)))
        months = {(year, month)}
        for _ in range(rng.randint(0, 3)):
            earlier = today - timedelta(days=rng.randint(0, 300))
            months.add((earlier.year, earlier.month))
        if self.chance(0.1):
            later = today + timedelta(days=rng.randint(20, 60))
            months.add((later.year, later.month))
        months = sorted(months)
        log_year, log_month = rng.choice(months)
        self.diary.now = f"{today:%Y/%m/%d} {rng.randint(0, 23):02}:{rng.randint(0, 59):02}:{rng.randint(0, 59):02}"
        self.diary.log_month = (str(log_year), rng.choice([str(log_month), f"{log_month:02}"]))
        open_year, open_month = rng.choice([(year, month), rng.choice(months)])
        open_day = date(open_year, open_month, rng.randint(1, GetMonthDays(open_year, open_month)))
        self.diary.enter_day = f"{open_day:%Y/%m/%d}"
        same_day = date(2004, 2, 29) if self.chance(0.1) else open_day
        self.diary.same_day = f"{same_day:%Y/%m/%d}"
        days = [f"{y}/{m:02}/{d:02}" for y, m in months for d in self.days_of_month(y, m)]
        for _ in range(rng.randint(0, 4)):
            other = same_day.year + rng.choice([-9, -8, -4, -2, -1, 1, 4])
            if same_day.day <= GetMonthDays(other, same_day.month):
                days.append(f"{other}/{same_day:%m/%d}")
        return sorted(set(days))

    def make_entries(self):
        private = self.rng.choice([0, 0, 0.2, 0.2, 0.5, 1] if self.chance(0.3) else [0, 0.2, 0.2, 0.5])
        genres = ["一般", "映画", ""] + [self.title() for _ in range(3)]
        for day in self.calendar_of_diary():
            whole_day_private = self.chance(private / 2)
            for number in range(1, self.rng.choice([1, 1, 1, 2, 3]) + 1):
                self.diary.entries.append(self.entry(day, number, genres, whole_day_private or self.chance(private)))
        for entry in self.diary.entries:
            if self.chance(0.15):
                self.make_odd_row(entry)

    def entry(self, day, number, genres, private):
        entry = {"Day": day, "Number": number, "Title": self.title(), "Contents": self.body(), "Private": private,
                 "Weather": self.rng.choice(WEATHER), "Genre": self.rng.choice(genres), "ImportMark": "",
                 "PublishTime": f"{day} {self.rng.randint(0, 23):02}:{self.rng.randint(0, 59):02}:07"}
        if self.chance(0.6):
            entry["Extend"] = self.body()
        if self.chance(0.2):
            entry["Excerpt"] = self.body()
        return entry

    def make_odd_row(self, entry):
        column = self.rng.choice(["Title", "Contents", "Extend", "Extend", "Excerpt", "Weather", "Genre",
                                  "PublishTime", "PublishTime", "ImportMark"])
        value = None
        if column == "PublishTime" and self.chance(0.6):
            value = self.rng.choice(["", "2001/3/4 00:00:00", "2001/3/4 1:02:03", "abc", "2004/02/30 10:00:00",
                                     "2004/05/06", "2004-05-06 07:08:09", "2004/05/06 07:08"])
        elif column == "Title" and self.chance(0.5):
            value = ""
        self.diary.sql.append((f"UPDATE Contents SET {column} = ? WHERE Day = ? AND Number = ?",
                               [value, entry["Day"], entry["Number"]]))

    def make_registers(self):
        rng = self.rng
        for _ in range(rng.choice([0, 0, 1, 3, 8])):
            month = f"{rng.randint(1999, 2030)}/{rng.randint(1, 12):02}"
            name = rng.choice([month.replace("/", "") + ".htm", "古い日記.htm", "é.htm", "a b.htm"])
            self.diary.sql.append(("INSERT INTO LogDB (LogMonth, LogFileName) VALUES (?, ?)", [month, name]))
        if self.chance(0.3):
            year, month = self.diary.log_month
            self.diary.sql.append(("INSERT INTO LogDB (LogMonth, LogFileName) VALUES (?, ?)",
                                   [f"{year}/{month:0>2}", "kept.htm"]))
        days = ["ALL", "2004/5/3", self.diary.enter_day, self.diary.now[:10],
                "{}/{:0>2}/01".format(*self.diary.log_month)]
        for _ in range(rng.choice([0, 0, 1, 4])):
            name = rng.choice(["a.gif", "絵.png", "all.css", "lost.jpg"])
            day = rng.choice(days)
            if name != "lost.jpg":
                self.diary.data_files["DiaryParts/" + name] = b"GIF89a " + name.encode()
            statement = "INSERT INTO FileDB (FileName, Day, Number, Uploaded, Logged) VALUES (?, ?, ?, ?, ?)"
            self.diary.sql.append((statement,
                                   [name, day, 0 if day == "ALL" else 1, rng.randint(0, 1), rng.randint(0, 1)]))

    # -- settings -----------------------------------------------------------------------------------------------------

    def value(self, kind):
        value = self.rng.choice(kind) if isinstance(kind, list) else kind
        if value == "piece":
            return self.rng.choice(PIECES + ["", "missing"])
        if value == "text":
            text = self.title()
            return text * 40 if self.chance(0.1) else text
        return value

    def ini(self, sections):
        """A settings file as programs, editors and people leave it."""
        rng = self.rng
        tidy = self.chance(0.6)
        lines = []
        for section, keys in sections.items():
            if self.chance(self.missing / 3):
                continue
            head, name = "[{}]", section
            if not tidy and self.chance(0.3):
                head = rng.choice(["[{}]", " [ {} ] x", "[{}"])
                name = rng.choice([section, section.upper(), section.lower()])
            lines.append(head.format(name))
            items = list(keys.items())
            rng.shuffle(items)
            for key, kind in items:
                if not self.chance(self.missing):
                    lines += self.key_lines(key, self.value(kind), tidy)
            if not tidy and self.chance(0.3):
                lines += [f"[{section}]", *(f"{key}=later section" for key in keys)]
            lines += [""] * rng.randint(0, 1)
        return encode_page("".join(line + ("\r\n" if tidy else rng.choice(["\r\n", "\r\n", "\n"])) for line in lines))

    def key_lines(self, key, value, tidy):
        if tidy:
            return [f"{key}={value}"]
        lines = []
        if self.chance(0.1):
            lines += [f";{key}=comment", key]
        spelling = self.rng.choice([key, key, key.upper(), key.lower()])
        form = self.rng.choice(["{}={}"] * 6 + ["{} = {}", "\t{}=\t{} ", '{}="{}"', "{}='{}'", '{}= " {} "'])
        lines.append(form.format(spelling, value))
        if self.chance(0.1):
            lines.append(f"{key}=later key")
        return lines

    def make_settings(self):
        files = self.diary.data_files
        files["Customize/Customize.ini"] = self.ini(CUSTOMIZE)
        files["Frame.ini"] = self.ini(FRAME)
        files["HaloScan.ini"] = self.ini(HALO)
        if not self.chance(0.05):
            rss = dict(RSS)
            if self.chance(0.1):
                rss["Setting"] = {key: RSS["Setting"][key] for key in ("HPURL", "DiaryURL")}
            files["RSS.ini"] = self.ini(rss)
        for name in PIECES:
            if not self.chance(self.missing):
                files[f"Customize/{name}.htm"] = self.piece(name)
        home = self.diary.home_files
        if self.chance(0.3):
            home["HTML2TXT_RSS.ini"] = self.ini(HTML2TEXT)
        elif self.chance(0.1):
            home["HTML2TXT_RSS.ini"] = None
        if self.chance(0.2):
            home["JS_Log.txt"] = self.rng.choice([None, b"", b"<script>x</script>", b"<script>\r\n</script>\r\n"])
        if self.chance(0.1):
            home["endpoints.ini"] = encode_page(
                "[Maker]\r\nHomePage=http://maker.example/#日記\r\n[HaloScan]\r\nScript=http://c.example/load/\r\n"
                "Home=http://c.example/\r\nLogo=http://c.example/halolink.gif\r\nAlt=コメント　é\r\n")

    def make_leftovers(self):
        """Files of earlier runs."""
        for name in ("upload.tmp", "uploadlog.tmp", "uplogtmp.tmp"):
            if self.chance(0.3):
                self.diary.home_files["UserData/" + name] = b"/old folder,old.htm\r\n"
        for name in ("tmp.htm", "tmp_RSS091.xml", "tmp_ATOM.xml", "tmp_01.htm", "oldtmp.htm"):
            if self.chance(0.3):
                self.diary.data_files[name] = b"left over\r\n"

    def piece(self, name):
        if name == "empty":
            return b""
        if name == "rawbytes":
            return self.rng.choice([b"\x81\xad \xfc\x4c", b"\x81 a", b"end \x81",
                                    b"\x87\x90\xfd\xa0\x80\xed\x40\xf0\x40"])
        if name == "lineless":
            return encode_page(self.title())
        text = "".join(self.body() + self.rng.choice(["\r\n", "\r\n", "\n"]) for _ in range(self.rng.randint(1, 3)))
        return encode_page(text * (30 if name == "longpiece" else 1))

    def make_site(self):
        self.diary.site_folder = self.rng.choice(["site"] * 10 + ["サイト", "my site", "=", "=", "=", ""])
        self.diary.final_separator = self.chance(0.6)
        self.diary.file_name = self.rng.choice(["index.htm", "index.htm", "index.html", "日記.htm", "a.b.html",
                                                "X.HTM", "site", "my diary.htm", "café.htm"])


    # -- finding and exporting ----------------------------------------------------------------------------------------

    def a_day(self):
        days = [entry["Day"] for entry in self.diary.entries]
        return self.rng.choice(days + ["2004/02/29"])

    def make_find(self):
        rng = self.rng
        texts = [entry[column] for entry in self.diary.entries for column in ("Title", "Contents")]
        text = rng.choice([text for text in texts if text] + ["日記"])
        at = rng.randrange(len(text))
        word = rng.choice([rng.choice(WORDS), text[at:at + rng.randint(1, 3)], text[at:at + 1]])
        if self.chance(0.1):
            word = rng.choice(["%", word + "%" + text[:1], "_", "IMG", "カタ", '"', "DiaryParts"])
        # A "[" begins a list of characters, and a word of the command line is no option.
        word = word.replace("[", "").replace("\0", "").lstrip("-") or "日"
        first = last = genre = ""
        if self.chance(0.5):
            first, last = sorted([self.a_day(), self.a_day()])
        if self.chance(0.4):
            genres = [entry["Genre"] for entry in self.diary.entries if entry["Genre"]]
            genre = rng.choice(genres + ["一般"]).replace("[", "") or "一般"
        self.diary.find = (word, first, last, genre)

    def make_export(self):
        rng = self.rng
        day = self.a_day()
        period = rng.choice(["user:" + ":".join(sorted([self.a_day(), self.a_day()], reverse=self.chance(0.1))),
                             f"month:{day[:4]}:{rng.choice([day[5:7], str(int(day[5:7]))])}", "day:" + day])
        self.diary.export = {
            "period": period, "format": rng.choice(["TEXT", "HTML", "形.txt", "other.csv", "no.such"]),
            "contents": rng.choice(["raw", "text"]), "unit": rng.choice(["one", "divide"]),
            "name": rng.choice(["day", "day", "title"]), "sort": rng.choice(["asc", "desc"]),
            "out": rng.choice(["out", "out.txt", "out.HTM", "書き出し", "a.html"])}
        template = "".join(rng.choice(["<--TITLE-->", "<--DAY-->", "<--GENRE-->", "<--WEATHER-->", "<--CONTENTS-->",
                                       "<--contents-->", "\r\n", "題：", "&#233;", "<b>"]) for _ in range(8))
        for name in ("形.txt", "other.csv", "other.ini"):
            self.diary.data_files["ExportFormat/" + name] = encode_page(template)
        if self.chance(0.5):
            self.diary.home_files["HTML2TXT.ini"] = self.ini(HTML2TEXT)


def random_diary(seed):
    maker = Maker(seed)
    maker.make_entries()
    maker.make_registers()
    maker.make_settings()
    maker.make_leftovers()
    maker.make_site()
    maker.make_find()
    maker.make_export()
    return maker.diary


def main():
    diary = random_diary(int(sys.argv[1]))
    print(f"now {diary.now}, open day {diary.enter_day}, log {'/'.join(diary.log_month)}, same day {diary.same_day}, "
          f"site {diary.site_folder!r} {diary.file_name!r}")
    for entry in diary.entries:
        print(json.dumps(entry, ensure_ascii=False))
    for statement, values in diary.sql:
        print(statement, values)
    for name, data in {**diary.home_files, **diary.data_files}.items():
        print(f"--- {name}")
        print("(none)" if data is None else data.decode("cp932", "replace"))


if __name__ == "__main__":
    main()
