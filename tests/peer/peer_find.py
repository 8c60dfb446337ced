"""The page of search results, written independently of the program."""

import re

from peer_home import Home, day_number
from peer_site import WEATHER_PICTURES, Page, entry_table_line
from peer_text import CRLF, CommandFailure, fold

CLOSE_BUTTON = CRLF.join(['<p align=center><INPUT type=button name=Close value="Close Window">',
                          '<SCRIPT LANGUAGE="VBScript">', "Sub Close_OnClick()", 'location.HREF = "Event:Close"',
                          "End Sub", "</SCRIPT>", "</p>"])


def like(text, pattern):
    """Whether the pattern is the whole text; a missing text is never."""
    if text is None:
        return False
    signs = {"%": ".*", "_": "."}
    expression = "".join(signs.get(sign) or re.escape(sign) for sign in fold(pattern))
    return re.fullmatch(expression, fold(text), re.DOTALL) is not None


def find(home_folder, now, enter_day, word, first="", last="", genre=""):
    """`first` and `last` are both day keys or both empty."""
    if '"' in word or '"' in genre:
        raise CommandFailure("a literal of the statement ends early")
    home = Home(home_folder, now, enter_day)
    rows = [row for row in home.entries
            if (like(row["Contents"], f"%{word}%") or like(row["Title"], f"%{word}%"))
            and (not genre or like(row["Genre"], genre)) and (not first or first <= row["Day"] <= last)]
    rows.sort(key=lambda row: row["Number"])
    rows.sort(key=lambda row: row["Day"], reverse=True)
    return {home.DataPath + "findtmp.htm": FindPage(home.custom, word).page_of(rows, first, last, genre).encoded()}


class FindPage:
    def __init__(self, custom, word):
        self.custom = custom
        self.word = word
        self.page = Page()

    def contents(self, key):
        return self.custom.text("Contents", key)

    def page_of(self, rows, first, last, genre):
        out, text = self.page.print, self.custom.text
        out('<HTML lang="ja"><HEAD><TITLE>検索結果</TITLE></HEAD>')
        out("<BODY TEXT='", text("Body", "TextColor"), "' BGCOLOR='", text("Body", "BackColor"), "' background='",
            text("Body", "BackImage"), "'>")
        out(CLOSE_BUTTON)
        out("<p>キーワード：", self.word, "</p>")
        out(f"<p>期間：{first}～{last}</p>" if first else "")
        out(f"<p>ジャンル：{genre}</p><hr>" if genre else "<hr>")
        with_title = self.custom.number("DayList", "AddTitle") == 1
        for key in ("Weather", "Genre"):
            self.custom.number("General", key)
        entry_table_line(self.custom)  # its numbers are read in both forms
        if self.custom.number("DayList", "Use") != 0:
            for row in rows:
                title = row["Title"] or "" if with_title else ""
                out(f'<a href="#{day_number(row)}">[{row["Day"]}]{title}</a><br>')
            if not rows:
                out("検索結果0件。")
            out("</div><hr>")
        for row in rows:
            out(f'<A Name="{row["Day"]}"></A>')
            (self.table if self.contents("HTMLType") == "1" else self.headings)(row)
        out("</BODY></HTML>")
        return self.page

    def body(self, row):
        text = row["Contents"] or ""
        if row["Extend"] is not None:
            text = CRLF + "<br>" + text + row["Extend"]
        marked = f"<span style='font-style:italic;color:RED;background-color:YELLOW'>{self.word}</span>"
        return text.replace(self.word, marked).replace("/DiaryParts", "/DiaryLog/DiaryParts")

    def picture(self, row):
        if self.custom.number("General", "Weather") != 1 or row["Weather"] in (None, "-"):
            return ""
        return f'<IMG SRC="./DiaryParts/{WEATHER_PICTURES.get(row["Weather"], "Shinny.gif")}">'

    def genre(self, row):
        return row["Genre"] if self.custom.number("General", "Genre") == 1 else None

    def table(self, row):
        out, align = self.page.print, self.custom.text("General", "DayTitleAlign")
        day_look = self.contents("DayBGColor"), self.contents("DayFTColor")
        cells = []
        if self.genre(row) is not None:
            cells.append("<TD ALIGN=RIGHT BGCOLOR={}><FONT COLOR={}><NOBR>[{}]</NOBR></FONT></TD>"
                         .format(*day_look, row["Genre"]))
        cells.append("<TD ALIGN=RIGHT BGCOLOR={}><FONT COLOR={}>{}</FONT></TD>".format(*day_look, row["Day"]))
        if self.picture(row):
            cells.append(f"<TD width=16pt BGCOLOR={day_look[0]}>{self.picture(row)}</TD>")
        out("<DIV ALIGN=", self.contents("DayContentsAlign"), ">")
        out(entry_table_line(self.custom))
        out("<TR><TD ALIGN=", align, " BGCOLOR=", self.contents("TitleBGColor"), ' WIDTH=100%><A NAME="',
            day_number(row), '"><FONT COLOR=', self.contents("TitleFTColor"), '><SPAN STYLE="',
            self.contents("TitleSpanTag"), '">', row["Title"] or "", "</SPAN></A></FONT></TD>", *cells, "</TR>")
        out("<TR><TD COLSPAN=", len(cells) + 1, " BGCOLOR=", self.contents("ContentsBGColor"), "><FONT COLOR=",
            self.contents("ContentsFTColor"), "><!--[Contents]--><br>", self.body(row))
        out("</FONT></TD></TR>")
        out("</TABLE></DIV>")
        out('<DIV ALIGN="RIGHT"><A HREF="#TOP">top</A></DIV><BR>')

    def headings(self, row):
        out = self.page.print
        genre = f"[{row['Genre']}]" if self.genre(row) is not None else ""
        out("<H3 ALIGN=", self.custom.text("General", "DayTitleAlign"), ' STYLE="COLOR:', self.contents("TitleFTColor"),
            ";BACKGROUND:", self.contents("TitleBGColor"), '">', genre, '<A NAME="', day_number(row),
            '"><SPAN STYLE="', self.contents("TitleSpanTag"), '">', row["Title"] or "", "</SPAN>(", row["Day"], ")</A>",
            self.picture(row), "</H3>")
        out('<DIV STYLE="COLOR:', self.contents("ContentsFTColor"), ";BACKGROUND:", self.contents("ContentsBGColor"),
            '" align=', self.contents("DayContentsAlign"), ">")
        out("<!--[Contents]--><br>")
        out(self.body(row))
        out()
        out("</DIV>")
        out('<DIV ALIGN="RIGHT"><A HREF="#TOP">top</A></DIV>')
