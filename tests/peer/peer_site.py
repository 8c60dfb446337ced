"""A second site generator: what Velloria's site commands must write, written independently of the program.

Nothing is written here: each command reads a home as it lies on disk and answers with a dictionary of
absolute paths and bytes. The value None says that the file must be gone. `compare_sites.py` holds the
answers against the program's own files.
"""

import os

from peer_feeds import FEED_ENDS, Feeds, VERSION
from peer_home import Home, day_file, day_number, days_of, page_of_days
from peer_register import Register, day_of
from peer_text import (ASCII_LOWER, CRLF, CommandFailure, GetBaseName, GetFileName, GetParentFolder, ReadTextFile,
                       encode_page, with_separator)


# ---------------------------------------------------------------------------------------------------------------------
# Calendar arithmetic
# ---------------------------------------------------------------------------------------------------------------------

def IsLeapYear(year):
    return year % 4 == 0 and year % 100 != 0 or year % 400 == 0


def GetMonthDays(year, month):
    return [31, 29 if IsLeapYear(year) else 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31][month - 1]


def GetFirstWeekday(year, month):
    """Monday 0 to Sunday 6."""
    if year < 2000:
        raise CommandFailure(f"no calendar for {year}/{month:02}")
    d = year - 2000
    n = d // 4 + (year - 1994) - d // 100 + d // 400
    m = [0, 3, 3, 6, 8, 11, 13, 16, 19, 21, 24, 26][month - 1]
    if month <= 2 and IsLeapYear(year):
        m -= 1
    return (m + n) % 7


def GetWeekdayName(index, kind):
    names = "日 月 火 水 木 金 土" if kind == "1" else "Sun Mon Tue Wed Thu Fri Sat"
    return names.split()[index] if 0 <= index <= 6 else ""


# ---------------------------------------------------------------------------------------------------------------------
# Pages
# ---------------------------------------------------------------------------------------------------------------------

class Page:
    """A page in the making: each print is text and one line end."""

    def __init__(self):
        self.parts = []

    def print(self, *parts):
        self.parts += [str(part) for part in parts]
        self.parts.append(CRLF)

    def encoded(self):
        return encode_page("".join(self.parts))


def feed_links(feed_base):
    kinds = (("rss", "RSS0.93", "_RSS091"), ("rss", "RSS1.0", "_RSS100"), ("rss", "RSS2.0", "_RSS200"),
             ("atom", "Atom0.3", "_ATOM"))
    return [f'<link rel="alternate" type="application/{kind}+xml" title="{title}" href="{feed_base}{end}.xml" />'
            for kind, title, end in kinds]


def month_title(year_month):
    return f"{int(year_month[:4])}年{int(year_month[5:7])}月"


WEATHER_PICTURES = {"晴": "Shinny.gif", "曇": "Cloudy.gif", "雨": "Rainy.gif", "雪": "Snowy.gif", "雷": "Thunder.gif"}


class MonthPages:
    """One run of MakeHTML: all files of one month."""

    def __init__(self, home, path, year_month, page_kind, with_private):
        self.home = home
        self.path = path
        self.year_month = year_month
        self.page_kind = page_kind
        self.current = page_kind == 1
        self.rows = home.month(year_month, with_private)
        self.pages = {}
        self.text = home.custom.text
        self.number = home.custom.number
        self.rss_on = False
        self.feed_base = ""

    def piece(self, page, section, key):
        page.print(self.home.piece(section, key))

    def MakeHTML(self):
        self._read_numbers()
        files = self._make_feeds()
        self._division()
        frame_on = self.frame_on
        if frame_on:
            self.diary_file = GetBaseName(self.path) + "_D.htm"
            self.calender_file = GetBaseName(self.path) + "_C.htm"
            self.MakeFrameSet()
        else:
            self.diary_file = self.calender_file = self.path
        page = self.pages[self.diary_file] = Page()
        self._head(page)
        page.print("<a name=this_month></a><H3 align=", self.text("General", "TitleAlign"), "><a name=TOP>",
                   month_title(self.year_month), "分</a></H3>")
        page.print()
        try:
            self._calendar(page)
        except CommandFailure as failure:
            raise CommandFailure(str(failure), files, {self.path} if frame_on else ())
        if self.number("DayList", "Use") != 0:
            self._day_list(page)
        self._entries(page)
        if self.current and self.number("General", "UseLog") == 1:
            self.MakeLogList(self.pages[self.calender_file])
        if frame_on:
            left = self.pages[self.calender_file]
            self.piece(left, "CalenderWindow", "DownText")
            left.print("</BODY>", CRLF, "</HTML>")
        self._tail(page)
        files.update((name, made.encoded()) for name, made in self.pages.items())
        return files

    def _read_numbers(self):
        """What the run asks for is read whether or not it is printed; a number beyond 16 bits ends it here."""
        frame = self.home.frame.number
        for section, key in (("DayList", "AddTitle"), ("DayList", "Use"), ("DayList", "MarginLeft"),
                             ("General", "UseLog"), ("General", "Genre"), ("General", "UseCategory"),
                             ("General", "VellLinkOn")):
            self.number(section, key)
        self.home.halo.number("GENERAL", "HaloScanOn")
        divided, on_top = 0, 1
        if frame("Divide", "LogDivide") == 1 or self.current:
            divided, term, on_top = (frame("Divide", key) for key in ("DiaryDivide", "DiaryTerm", "DiaryOnTop"))
            if divided == 1 and term == 1:
                frame("Divide", "UseFileName2Day")
        frame_on = False
        if self.current:
            self.home.rss.number("GENERAL", "RSSOn")
            frame_on = frame("Frame", "FrameOn") == 1
        if frame_on:
            frame("Frame", "Scrolling"), frame("Frame", "Resize")
        if self.number("Calender", "Use") == 1 or frame_on:
            frame("Frame", "FrameOn")
            for key in ("NoBorder", "BorderSize", "CellPadding", "FirstDayOfWeek"):
                self.number("Calender", key)
        if divided == 0 or on_top == 1 or self.rows:
            for section, key in (("Contents", "TableBorder"), ("Contents", "Cellspacing"), ("Contents", "TableWidth"),
                                 ("General", "Weather"), ("PageMoveLink", "PageMoveOn")):
                self.number(section, key)

    def _make_feeds(self):
        if not self.current or self.home.rss.number("GENERAL", "RSSOn") != 1:
            return {}
        feeds = Feeds(self.home)
        if not feeds.Initialize():
            return {}
        self.rss_on = True
        self.feed_base = GetBaseName(feeds.DiaryURL)
        return feeds.MakeRSS(self.path)

    def _division(self):
        divide = self.home.frame.number
        self.divided, self.term, self.on_top, self.by_day = 0, 31, 1, 0
        if self.current or self.page_kind == 2 and divide("Divide", "LogDivide") == 1:
            self.divided = divide("Divide", "DiaryDivide")
            self.term = divide("Divide", "DiaryTerm") or 31
            self.on_top = divide("Divide", "DiaryOnTop")
        # A preview in the site's own folder would overwrite the day files with private entries.
        preview_in_site = (GetFileName(self.path) in ("tmp.htm", "Customize.htm")
                           and with_separator(GetParentFolder(self.path)) == self.home.FilePath)
        if self.divided == 1 and self.term == 1 and not preview_in_site:
            self.by_day = divide("Divide", "UseFileName2Day")
        self.frame_on = self.current and divide("Frame", "FrameOn") == 1
        self.day_page, self.last_page = page_of_days(days_of(self.rows), self.term, self.on_top)

    # -- head and tail ------------------------------------------------------------------------------------------------

    def _body_line(self):
        body = {key: self.text("Body", key) for key in
                ("TextColor", "BackColor", "BackImage", "LinkColor", "ALinkColor", "VLinkColor")}
        return (f"<BODY TEXT='{body['TextColor']}' BGCOLOR='{body['BackColor']}' background='{body['BackImage']}' "
                f"link='{body['LinkColor']}' alink='{body['ALinkColor']}' vlink='{body['VLinkColor']}'>")

    def _style_sheet_line(self, page):
        if self.text("General", "StyleSheetURL"):
            page.print('<Link Rel=stylesheet type="Text/css" href=', self.text("General", "StyleSheetURL"), ">")

    def _halo_scan_on(self):
        return self.home.halo.number("GENERAL", "HaloScanOn") == 1

    def _halo_script_line(self, page):
        if self._halo_scan_on():
            page.print('<script type="text/javascript" src="', self.home.endpoints.text("HaloScan", "Script"),
                       self.home.halo.text("GENERAL", "UserName"), '"> </script>')

    def _log_script(self, page):
        if self.text("General", "LogType") == "JavaScript":
            page.print(ReadTextFile(self.home.MyPath + "JS_Log.txt"))

    def _head(self, page):
        page.print('<HTML lang="ja">')
        page.print("<HEAD>")
        page.print('<meta http-equiv=Content-Type content="text/html; charset=shift_jis">')
        page.print('<meta name=Generator content="Velloria v', VERSION, '">')
        page.print("<TITLE>", self.text("General", "HPTitle"), "</TITLE>")
        self._style_sheet_line(page)
        if not self.frame_on:
            self._log_script(page)
        if self.rss_on:
            for line in feed_links(self.feed_base):
                page.print(line)
        self._halo_script_line(page)
        self.piece(page, "General", "HeadTag")
        page.print("</HEAD>")
        page.print(self._body_line())
        page.print("<!-- 上追加テキスト(ここから) by Velloria -->")
        self.piece(page, "Body", "UpText" if self.current else "UpText_Log")
        page.print("<!-- 上追加テキスト(ここまで) by Velloria  -->")

    def _tail(self, page):
        page.print("<!-- 下追加テキスト(ここから) By Velloria -->")
        self.piece(page, "Body", "DownText" if self.current else "DownText_Log")
        page.print("<!-- 下追加テキスト(ここまで) By Velloria -->")
        if self.rss_on:
            base = self.feed_base
            page.print(f'<p align=center><a href="{base}_RSS091.xml">RSS0.91</a> | '
                       f'<a href="{base}_RSS100.xml">RSS1.0</a> | <a href="{base}_RSS200.xml">RSS2.0</a> | '
                       f'<a href="{base}_ATOM.xml">ATOM</a></p>')
        if self._halo_scan_on():
            end = self.home.endpoints.text
            page.print('<a href="', end("HaloScan", "Home"), '"><img width="88" height="31" src="',
                       end("HaloScan", "Logo"), '" border="0" alt="', end("HaloScan", "Alt"), '" /></a>')
        if self.number("General", "VellLinkOn") == 1:
            text = self.text("General", "VellLinkText")
            if "#" not in text:
                text = "<p>このサイトは#を使用しています。</p>"
            anchor = f'<a href="{self.home.endpoints.text("Maker", "HomePage")}" target=_blank>Velloria</a>'
            page.print(text.replace("#", anchor))
        page.print("</BODY>", CRLF, "</HTML>")

    # -- frames -------------------------------------------------------------------------------------------------------

    def MakeFrameSet(self):
        frame = self.home.frame
        border = {"0": "NO", "1": "YES"}.get(frame.text("Frame", "Border"), "")
        scrolling = {0: "NO", 1: "YES"}.get(frame.number("Frame", "Scrolling"), "")
        resize = {0: "NORESIZE", 1: "RESIZE"}.get(frame.number("Frame", "Resize"), "")
        base = GetBaseName(GetFileName(self.path))
        page = self.pages[self.path] = Page()
        page.print('<HTML lang="ja">')
        page.print("<HEAD>")
        page.print("<TITLE>", self.text("General", "HPTitle"), "</TITLE>")
        page.print("<FRAMESET COLS=", frame.text("Frame", "CalenderFrameSize"), ',* FRAMEBORDER="', border, '">')
        page.print('<FRAME SRC="./', base, '_C.htm" Name="CALENDER" Scrolling="', scrolling, '" ', resize, ">")
        page.print('<FRAME SRC="./', base, '_D.htm" Name="DIARY">')
        if self.rss_on:
            for line in feed_links(self.feed_base):
                page.print(line)
        page.print("</HEAD></HTML>")

    def MakeCalenderFrame(self):
        page = self.pages[self.calender_file] = Page()
        page.print('<HTML lang="ja">')
        page.print("<HEAD>")
        page.print('<meta http-equiv=Content-Type content="text/html; charset=shift_jis">')
        page.print("<TITLE>", self.text("General", "HPTitle"), "-CalenderFrame-</TITLE>")
        self._log_script(page)
        self.piece(page, "CalenderWindow", "HeadTag")
        page.print("</HEAD>")
        page.print('<BODY TEXT="', self.text("CalenderWindow", "TextColor"), '" BGColor="',
                   self.text("CalenderWindow", "BGColor"), '" background="', self.text("CalenderWindow", "BGImage"),
                   '">')
        self.piece(page, "CalenderWindow", "UpText")
        page.print("<div align=center>", month_title(self.year_month), "</div>")
        return page

    def MakeLogList(self, page):
        align = self.text("General", "LogAlign")
        kind = self.text("General", "LogType")
        framed = self.home.frame.number("Frame", "FrameOn") != 0
        page.print("<HR>")
        page.print("<P Align=", align, ">")
        if align == "Left":
            page.print("<div style=margin-left:", self.number("DayList", "MarginLeft"), "pt>")
        if kind == "Normal":
            page.print('<A HREF="#this_month">今月分</A><BR>')
            for month, name in self.home.logs:
                target = ' target="DIARY"' if framed else ""
                page.print('<A HREF="./DiaryLog/', name, '"', target, ">", month, "月分</A><BR>")
        elif kind == "JavaScript":
            page.print('<FORM name="selectionform">過去ログ　<SELECT NAME="logselect">')
            for month, name in self.home.logs:
                page.print('<OPTION VALUE="', name, '">', month)
            page.print("</SELECT>")
            frame = "parent.DIARY." if framed else ""
            page.print('<INPUT type=button value="ＯＫ" onclick="{', frame, "location.href='./DiaryLog/' + "
                       'GetSelectionText(this.form,logselect) }"></FORM>')
        if align == "Left":
            page.print("</DIV>")
        page.print("</P>")

    # -- calendar -----------------------------------------------------------------------------------------------------

    def _calendar(self, page):
        if self.number("Calender", "Use") == 1 and not self.frame_on:
            self.MakeCalender(page, "_self")
            page.print("<BR>")
        elif self.frame_on:
            self.MakeCalender(self.MakeCalenderFrame(), "DIARY")

    def MakeCalender(self, page, target):
        year, month = int(self.year_month[:4]), int(self.year_month[5:7])
        first = GetFirstWeekday(year, month)
        days = GetMonthDays(year, month)
        previous_days = GetMonthDays(year, month - 1) if month > 1 else 31
        shift = self.number("Calender", "FirstDayOfWeek")
        used = set(days_of(self.rows))
        diary_name = GetFileName(self.diary_file)

        def cell(day):
            date = f"{year}/{month:02}/{day:02}"
            if date not in used:
                return f"<td>{day}</td>"
            page_number = self.day_page[date]
            if page_number == 0 or self.divided != 1:
                link = f"{diary_name}#{date}"
            elif self.by_day == 1:
                link = day_file(date)
            else:
                link = f"{GetBaseName(diary_name)}_{page_number:02}.htm#{date}"
            return f'<td><a href=./{link} target="{target}">{day}</a></td>'

        def grey(day):
            return f"<td><font color='gray'>{day}</font></td>"

        align = self.text("Calender", "TableAlign").translate(ASCII_LOWER)
        if align in ("right", "center", "left"):
            page.print("<DIV ALIGN=", align.upper(), ">")
        border = ""
        if self.number("Calender", "NoBorder") != 1:
            border = (f" border={self.number('Calender', 'BorderSize')}"
                      f" bordercolor='{self.text('Calender', 'BorderColor')}'"
                      f" bordercolorlight='{self.text('Calender', 'BorderColorLight')}'"
                      f" bordercolordark='{self.text('Calender', 'BorderColorDark')}'")
        page.print("<table bgcolor='", self.text("Calender", "TableBGColor"), "' cellpadding=",
                   self.number("Calender", "CellPadding"), border, ">")
        names = ""
        for index in range(shift, shift + 7):
            colour = {0: "red", 6: "blue"}.get(index)
            name = GetWeekdayName(index, self.text("Calender", "Type"))
            names += f"<td><font color='{colour}'>{name}</font></td>" if colour else f"<td>{name}</td>"
        page.print("<tr align=center bgcolor='", self.text("Calender", "TRBGColorTop"), "'>", names, "</tr>")
        row_start = f"<tr align=center bgcolor='{self.text('Calender', 'TRBGColor')}'>"
        cells = [grey(day) for day in range(previous_days - (first + shift), previous_days + 1)]
        cells += [cell(c + 1) for c in range(shift, 5 - first + shift + 1)]
        page.print(row_start, *cells, "</tr>")
        next_day = 6 - first + shift + 1
        while next_day <= days:
            cells = [cell(day) if day <= days else grey(day - days) for day in range(next_day, next_day + 7)]
            page.print(row_start, *cells, "</tr>")
            next_day += 7
        page.print("</table>")
        page.print("</DIV>")

    # -- list of entries ----------------------------------------------------------------------------------------------

    def _day_list(self, page):
        kind = self.text("DayList", "Type") or "List"
        add_title = self.number("DayList", "AddTitle") == 1
        show_genre = self.number("General", "Genre") == 1
        page.print("<div style=margin-left:", self.number("DayList", "MarginLeft"), "pt>")
        if kind == "Table":
            page.print("<TABLE>")
        for row in self.rows:
            genre = ""
            if show_genre and row["Genre"] is not None:
                genre = f"[{row['Genre']}]" + ("　" if add_title else "")
            link = self._list_link(row, add_title)
            title = (row["Title"] or "") if add_title else ""
            if kind == "List":
                page.print(link, row["Day"], "</a>　", genre, title, "<br>")
            elif kind == "Table":
                title_cell = f"<TD>{title}</TD>" if add_title else ""
                page.print("<TR><TD>", link, row["Day"], "</a></TD><TD>", genre, "</TD>", title_cell, "</TR>")
        if kind == "Table":
            page.print("</TABLE>")
        if not self.rows:
            page.print("-今月はまだ日記はありません-")
        page.print("</div>")
        page.print()

    def _list_link(self, row, add_title):
        page_number = self.day_page[row["Day"]]
        if page_number == 0 or self.divided != 1:
            return f'<a href="#{day_number(row)}">'
        if self.by_day == 1:
            anchor = f"#{day_number(row)}" if add_title else ""
            return f'<a href="./{day_file(row["Day"])}{anchor}">'
        return f'<a href="./{GetBaseName(GetFileName(self.diary_file))}_{page_number:02}.htm#{day_number(row)}">'

    # -- entries ------------------------------------------------------------------------------------------------------

    def _entries(self, page):
        on_month_file = self.divided == 0 or self.on_top == 1
        if on_month_file:
            page.print("<HR>")
            page.print()
            self.MakeDiaryPage(page, 0)
        if self.divided != 0:
            for number in range(1, self.last_page + 1):
                self._divided_page(number)

    def _divided_page(self, number):
        page = self.pages[self._page_file(number)] = Page()
        suffix = "" if self.current else "_Log"
        page.print('<HTML lang="ja"><HEAD>')
        page.print('<meta http-equiv=Content-Type content="text/html; charset=shift_jis">')
        page.print('<meta name=Generator content="Velloria">')
        page.print("<TITLE>", self.text("General", "HPTitle"), "</TITLE>")
        self._style_sheet_line(page)
        self._halo_script_line(page)
        self.piece(page, "General", "HeadTag_Div" + suffix)
        page.print("</HEAD>")
        page.print(self._body_line())
        self.piece(page, "Body", "UpText_Div" + suffix)
        self.MakeDiaryPage(page, number)
        self.piece(page, "Body", "DownText_Div" + suffix)
        page.print("</BODY></HTML>")

    def _page_file(self, number):
        if self.by_day == 1:
            return f"{GetParentFolder(self.path)}/{day_file(self._day_of_page(number))}"
        return f"{GetBaseName(self.diary_file)}_{number:02}.htm"

    def _day_of_page(self, number):
        return next((day for day, page in self.day_page.items() if page == number), None)

    def MakeDiaryPage(self, page, number):
        top_link = self._top_link(number)
        show = self._table_form if self.text("Contents", "HTMLType") == "1" else self._normal_form
        for row in self.rows:
            page.print('<A Name="', row["Day"], '"></A>')
            if self.divided == 0 or self.day_page[row["Day"]] == number:
                show(page, row, top_link)
        if self.number("PageMoveLink", "PageMoveOn") == 1:
            self._page_move_links(page, number)

    def _top_link(self, number):
        anchor = '<A HREF="#this_month">top</A>'
        if self.divided != 0:
            if self.home.frame.text("Divide", "TopLink") != "TopPage":
                anchor = '<A HREF="#TOP">top</A>'
            elif number >= 1:
                anchor = f'<A HREF="./{GetFileName(self.diary_file)}#TOP">top of month</A>'
        return f'<DIV ALIGN="RIGHT">{anchor}</DIV>'

    def _look(self, *keys):
        return {key: self.text("Contents", key) for key in keys}

    def _weather_picture(self, row):
        if self.number("General", "Weather") != 1 or row["Weather"] in (None, "-"):
            return ""
        return f'<IMG SRC="./DiaryParts/{WEATHER_PICTURES.get(row["Weather"], "")}">'

    def _shows_genre(self, row):
        return self.number("General", "Genre") == 1 and row["Genre"] is not None

    @staticmethod
    def _comment_links(row):
        name = day_number(row)
        return (f"<a href=\"javascript:HaloScan('{name}');\" target=\"_self\"><script type=\"text/javascript\">"
                f"postCount('{name}');</script></a> | <a href=\"javascript:HaloScanTB('{name}');\" target=\"_self\">"
                f"<script type=\"text/javascript\">postCountTB('{name}'); </script></a>")

    def _table_form(self, page, row, top_link):
        look = self._look("TitleBGColor", "TitleFTColor", "TitleSpanTag", "DayBGColor", "DayFTColor",
                          "ContentsBGColor", "ContentsFTColor")
        columns = 2
        weather = self._weather_picture(row)
        if weather:
            weather = f"<TD width=16pt BGCOLOR={look['DayBGColor']}>{weather}</TD>"
            columns += 1
        genre = ""
        if self._shows_genre(row):
            genre = (f"<TD ALIGN=RIGHT BGCOLOR={look['DayBGColor']}><FONT COLOR={look['DayFTColor']}>"
                     f"<NOBR>[{row['Genre']}]</NOBR></FONT></TD>")
            columns += 1
        page.print("<DIV ALIGN=", self.text("Contents", "DayContentsAlign"), ">")
        page.print(entry_table_line(self.home.custom))
        page.print("<TR><TD ALIGN=", self.text("General", "DayTitleAlign"), " BGCOLOR=", look["TitleBGColor"],
                   ' WIDTH=100%><A NAME="', day_number(row), '"><FONT COLOR=', look["TitleFTColor"], '><SPAN STYLE="',
                   look["TitleSpanTag"], '">', row["Title"] or "", "</SPAN></A></FONT></TD>", genre,
                   "<TD ALIGN=RIGHT BGCOLOR=", look["DayBGColor"], "><FONT COLOR=", look["DayFTColor"], ">",
                   row["Day"], "</FONT></TD>", weather, "</TR>")
        page.print("<TR><TD COLSPAN=", columns, " BGCOLOR=", look["ContentsBGColor"], "><FONT COLOR=",
                   look["ContentsFTColor"], "><!--[Contents]--><br>", row["Contents"] or "")
        if row["Extend"] is not None:
            page.print(CRLF, "<!--[extend]--><br>", row["Extend"], "</FONT></TD></TR>")
        else:
            page.print("</FONT></TD></TR>")
        if self._halo_scan_on():
            page.print("<TR><TD ALIGN=CENTER COLSPAN=", columns, " BGCOLOR=", look["ContentsBGColor"], ">",
                       self._comment_links(row), "</TD></TR>")
        page.print("</TABLE></DIV>")
        page.print(top_link, "<BR>")

    def _normal_form(self, page, row, top_link):
        look = self._look("TitleBGColor", "TitleFTColor", "TitleSpanTag", "ContentsBGColor", "ContentsFTColor")
        genre = f"[{row['Genre']}]" if self._shows_genre(row) else ""
        page.print("<H3 ALIGN=", self.text("General", "DayTitleAlign"), ' STYLE="COLOR:', look["TitleFTColor"],
                   ";BACKGROUND:", look["TitleBGColor"], '">', genre, '<A NAME="', day_number(row), '"><SPAN STYLE="',
                   look["TitleSpanTag"], '">', row["Title"] or "", "</SPAN>(", row["Day"], ")</A>",
                   self._weather_picture(row), "</H3>")
        page.print('<DIV STYLE="COLOR:', look["ContentsFTColor"], ";BACKGROUND:", look["ContentsBGColor"], '" align=',
                   self.text("Contents", "DayContentsAlign"), ">")
        page.print("<!--[Contents]--><br>")
        page.print(row["Contents"] or "")
        if row["Extend"] is not None:
            page.print("<!--[extend]--><br>")
            page.print(row["Extend"])
        else:
            page.print()
        if self._halo_scan_on():
            page.print(self._comment_links(row))
        page.print("</DIV>")
        page.print(top_link)

    def _page_move_links(self, page, number):
        words = {"Japanese": ("戻る", "次へ", "先頭へ"), "English": ("Previous", "Next", "Top")}
        back, forward, first = words.get(self.text("PageMoveLink", "Language") or "English", ("", "", ""))
        month_file = GetFileName(self.diary_file)
        oldest = min(self.day_page, default=None)
        last_page = self.day_page[oldest] if self.divided != 0 and oldest else 0

        def link(target, word):
            if self.by_day == 1:
                day = self._day_of_page(target)
                if day:
                    page.print('<A HREF="./', day_file(day), '">', word, "</A>")
            else:
                page.print(f'<A HREF="./{GetBaseName(month_file)}_{target:02}.htm">{word}</A>')

        page.print("<div align=", self.text("PageMoveLink", "Align") or "Left", " style=margin-left:",
                   self.number("DayList", "MarginLeft"), "pt>")
        if number == 1:
            page.print('<A HREF="./', month_file, '">', back, "</A>")
        elif number != 0:
            link(number - 1, back)
        if number != 0:
            page.print(self.text("PageMoveLink", "Separetor"))
        if last_page == number:
            page.print('<A HREF="./', month_file, '">', first, "</A>")
        else:
            link(number + 1, forward)
        page.print("</DIV>")

    # -- list of files for the upload ---------------------------------------------------------------------------------

    def upload_list(self):
        """(folder, name) of each page of the run, in the order of the upload."""
        names = [GetBaseName(GetFileName(self.path)) + end for end in FEED_ENDS] if self.rss_on else []
        names.append(GetFileName(self.path))
        if self.frame_on:
            names += [GetFileName(self.diary_file), GetFileName(self.calender_file)]
        if self.divided == 1 and self.by_day == 1:
            names += [day_file(day) for day in days_of(self.rows)[1 if self.on_top == 1 else 0:]]
        elif self.divided == 1:
            names += [GetFileName(self._page_file(number)) for number in range(1, self.last_page + 1)]
        return [(GetParentFolder(self.path), name) for name in names]


def entry_table_line(custom):
    text, number = custom.text, custom.number
    return (f"<TABLE BORDER={number('Contents', 'TableBorder')} BGCOLOR=\"{text('Contents', 'TableBGColor')}\""
            f" CELLSPACING={number('Contents', 'Cellspacing')} BORDERCOLOR={text('Contents', 'TBorderColor')}"
            f" width={number('Contents', 'TableWidth') or 100}%>")


# ---------------------------------------------------------------------------------------------------------------------
# Commands
# ---------------------------------------------------------------------------------------------------------------------

def encode_upload_list(rows):
    return encode_page("".join(f"{folder},{name}{CRLF}" for folder, name in rows))


def MakeHTML(home, path, year_month, page_kind, with_private, list_file=None):
    run = MonthPages(home, path, year_month, page_kind, with_private)
    files = run.MakeHTML()
    rows = run.upload_list()
    if list_file:
        files[home.UserPath + list_file] = encode_upload_list(rows)
    return files, rows


WEATHER = ("Shinny.gif", "Cloudy.gif", "Rainy.gif", "Thunder.gif", "Snowy.gif")


def content_of(path):
    with open(path, "rb") as file:
        return file.read()


def has_file(path):
    """On a disk that knows no case."""
    folder, name = os.path.split(path)
    names = os.listdir(folder) if os.path.isdir(folder) else []
    if name in names:
        return os.path.isfile(path)
    alike = [found for found in names if found.lower() == name.lower()]
    return len(alike) == 1 and os.path.isfile(os.path.join(folder, alike[0]))


class Parts:
    """The registered files of a home on their way to the site."""

    def __init__(self, home):
        self.home, self.source = home, home.DataPath + "DiaryParts/"
        self.register = Register(home.MyPath)
        self.files = {}

    def copy(self, name, folder, replaces=False):
        if os.path.isfile(self.source + name) and (
                replaces or not (has_file(folder + name) or folder + name in self.files)):
            self.files[folder + name] = content_of(self.source + name)

    def place_weather(self):
        """Returns the pictures that are registered by that."""
        placed = []
        for name in WEATHER:
            target = self.home.FilePath + "DiaryParts/" + name
            if os.path.isfile(self.source + name) and not (
                    self.home.FilePath and has_file(target) and not os.path.samefile(self.source + name, target)):
                placed.append(name)
                if self.home.FilePath:
                    self.copy(name, self.home.FilePath + "DiaryParts/")
        return placed

    def save(self):
        self.place_weather()
        month = self.home.Today[:7]
        for row in self.register.rows:
            is_of_month = day_of(row["Day"])[:7] == month
            if self.register.goes(row) and (is_of_month or row["Day"] == "ALL" and not row["Uploaded"]):
                self.copy(row["FileName"], self.home.FilePath + "DiaryParts/")
        return self.files

    def log(self, month, last_day):
        names = self.place_weather()
        for row in self.register.rows:
            if self.register.goes(row) and f"{month}/01" <= row["Day"] <= f"{month}/{last_day}" and not row["Logged"]:
                for root in self.roots():
                    self.copy(row["FileName"], root, True)
        names += [row["FileName"] for row in self.register.rows if row["Day"] == "ALL" and self.register.goes(row)]
        for name in names:
            for root in self.roots():
                self.copy(name, root)
        return self.files

    def roots(self):
        return [root + "DiaryLog/DiaryParts/" for root in (self.home.FilePath, self.home.DataPath) if root]


def save(home_folder, now, enter_day=None):
    """Save HTML: the month of today into the site folder."""
    home = Home(home_folder, now, enter_day)
    if not home.FilePath or not home.FileName:
        raise CommandFailure("no target: Save HTML turns into Save HTML As")
    name = home.FileName if home.FileName.endswith((".htm", ".html")) else home.FileName + ".htm"
    return MakeHTML(home, home.FilePath + name, home.Today[:7], 1, False, "upload.tmp")[0] | Parts(home).save()


def SaveTmpFile(home):
    return MakeHTML(home, home.DataPath + "tmp.htm", home.EnterDay[:7], 1, True)[0]


def preview(home_folder, now, enter_day=None):
    """The preview: the month of the open day, private entries too."""
    return SaveTmpFile(Home(home_folder, now, enter_day))


def log(home_folder, now, enter_day, year, month):
    """The log archive of a month, with the preview that follows it."""
    home = Home(home_folder, now, enter_day)
    month = month.rjust(2, "0") if len(month) == 1 else month
    log_name = f"{year}{month}.htm"
    files, rows = MakeHTML(home, f"{home.DataPath}DiaryLog/{log_name}", f"{year}/{month}", 2, False, "uplogtmp.tmp")
    if home.FilePath:
        for folder, name in rows:
            files[f"{home.FilePath}DiaryLog/{name}"] = files[f"{folder}/{name}"]
    waiting = home.UserPath + "uploadlog.tmp"
    earlier = b""
    if os.path.isfile(waiting):
        with open(waiting, "rb") as file:
            earlier = file.read()
    files[waiting] = earlier + encode_upload_list(rows)
    files.update(Parts(home).log(f"{year}/{month}", GetMonthDays(int(year), int(month))))
    if f"{year}/{month}" not in [logged for logged, _ in home.logs]:
        home.logs.append((f"{year}/{month}", log_name))
    try:
        files.update(SaveTmpFile(home))
    except CommandFailure as failure:
        raise CommandFailure(str(failure), {**files, **failure.files}, failure.unsettled)
    return files


def sameday(home_folder, now, enter_day, day):
    """This day of other years: newest year first, within a day in the order of writing."""
    home = Home(home_folder, now, enter_day)
    text, number = home.custom.text, home.custom.number
    rows = sorted((row for row in home.entries if row["Day"].endswith(day[4:]) and row["Day"] != day),
                  key=lambda row: row["Number"])
    rows.sort(key=lambda row: row["Day"], reverse=True)
    look = {key: text("Contents", key) for key in
            ("TitleBGColor", "TitleFTColor", "DayBGColor", "DayFTColor", "ContentsBGColor", "ContentsFTColor")}
    add_title = number("DayList", "AddTitle") == 1
    entry_table_line(home.custom)  # its numbers are read in both forms
    page = Page()
    page.print('<HTML lang="ja"><HEAD><TITLE>', day[5:], "の日記</TITLE></HEAD>")
    page.print("<BODY TEXT='", text("Body", "TextColor"), "' BGCOLOR='", text("Body", "BackColor"), "' background='",
               text("Body", "BackImage"), "'>")
    page.print(CRLF.join(['<p align=center><INPUT type=button name=Close value="Close Window">',
                          '<SCRIPT LANGUAGE="VBScript">', "Sub Close_OnClick()", 'location.HREF = "Event:Close"',
                          "End Sub", "</SCRIPT>", "</p>"]))
    if number("DayList", "Use") != 0:
        for row in rows:
            title = f"　{row['Title'] or ''}" if add_title else ""
            page.print(f'<a href="#{row["Day"]}">{row["Day"]}</a>{title}<br>')
        if not rows:
            page.print("以前の同じ日の日記はありません。")
        page.print("</div><hr>")
        page.print()
    show = _same_day_table_form if text("Contents", "HTMLType") == "1" else _same_day_normal_form
    for row in rows:
        show(page, home.custom, look, row)
    page.print("</BODY></HTML>")
    return {home.DataPath + "oldtmp.htm": page.encoded()}


def _same_day_normal_form(page, custom, look, row):
    page.print("<H3 ALIGN=", custom.text("General", "DayTitleAlign"), ' STYLE="COLOR:', look["TitleFTColor"],
               ";BACKGROUND:", look["TitleBGColor"], '"><A NAME="', row["Day"], '">', row["Title"] or "", "(",
               row["Day"], ")</A></H3>")
    page.print('<DIV STYLE="COLOR:', look["ContentsFTColor"], ";BACKGROUND:", look["ContentsBGColor"], '" align=',
               custom.text("Contents", "DayContentsAlign"), ">")
    if row["Contents"] is not None:
        page.print(row["Contents"])
    if row["Extend"] is not None:
        page.print("<BR>")
        page.print(row["Extend"])
    page.print("</DIV>")
    page.print('<DIV ALIGN="RIGHT"><A HREF="#TOP">top</A></DIV>')


def _same_day_table_form(page, custom, look, row):
    page.print("<DIV ALIGN=", custom.text("Contents", "DayContentsAlign"), ">")
    page.print(entry_table_line(custom))
    page.print("<TR><TD ALIGN=", custom.text("General", "DayTitleAlign"), " BGCOLOR=", look["TitleBGColor"],
               '><A NAME="', row["Day"], '"><FONT COLOR=', look["TitleFTColor"], ">", row["Title"] or "",
               "</FONT></TD><TD ALIGN=RIGHT BGCOLOR=", look["DayBGColor"], "><FONT COLOR=", look["DayFTColor"], ">",
               row["Day"], "</a></FONT></TD></TR>")
    page.print("<TR><TD COLSPAN=2 BGCOLOR=", look["ContentsBGColor"], "><FONT COLOR=", look["ContentsFTColor"], ">")
    if row["Contents"] is not None:
        page.print(row["Contents"])
    extend = "" if row["Extend"] is None else f"<br>{row['Extend']}"
    page.print(extend, "</FONT></TD></TR>")
    page.print("</TABLE></DIV>")
    page.print('<DIV ALIGN="RIGHT"><A HREF="#TOP">top</A></DIV><BR>')
