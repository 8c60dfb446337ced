"""The four feeds."""

import os
import re
from datetime import datetime

from peer_home import day_file, day_number, days_of, page_of_days
from peer_text import CRLF, CommandFailure, GetBaseName, HtmlToText

VERSION = "2.2.0"


def parse_date(text):
    """The date of a PublishTime, None when it is no date."""
    match = re.fullmatch(r"\s*(\d{4})[/-](\d{1,2})[/-](\d{1,2})(?:\s+(\d{1,2}):(\d{1,2})(?::(\d{1,2}))?)?\s*", text,
                         re.ASCII)
    if not match:
        return None
    try:
        return datetime(*(int(part or 0) for part in match.groups()))
    except ValueError:
        return None


WEEKDAYS = ["Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"]
MONTHS = ["Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"]


def long_date(when, weekday_length=None):
    weekday = WEEKDAYS[when.weekday()][:weekday_length]
    return f"{weekday}, {when.day} {MONTHS[when.month - 1]} {when.year} {when:%H:%M:%S}"


def iso_date(when):
    return f"{when.year:04}-{when.month:02}-{when.day:02}"


def publish_time(row, date_form):
    """PublishTime in a form of dates; a text that is no date stands as it is."""
    text = row["PublishTime"] or ""
    when = parse_date(text)
    return date_form(when) if when else text


def XmlEscape(text):
    return text.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;")


def encode_feed(text):
    """UTF-8. The old encoder tears pairs apart, so what lies above U+FFFF goes out as a decimal reference."""
    text = re.sub("[\x00-\x08\x0b\x0c\x0e-\x1f\ud800-\udfff]", "", text)
    return re.sub("[\U00010000-\U0010ffff]", lambda match: f"&#{ord(match.group())};", text).encode("utf-8")


def first_units(text, count):
    """The first UTF-16 units of a text; half a pair is left out."""
    return text.encode("utf-16-le", "surrogatepass")[:2 * count].decode("utf-16-le", "ignore")


FEED_ENDS = ("_RSS091.xml", "_RSS100.xml", "_RSS200.xml", "_ATOM.xml")


class Feeds:
    def __init__(self, home):
        self.home = home
        rss = home.rss
        self.Title = rss.text("Setting", "Title", "日記")
        self.HPURL = rss.text("Setting", "HPURL")
        self.DiaryURL = rss.text("Setting", "DiaryURL")
        self.Description = rss.text("Setting", "Description", "日記です。")
        self.ManagingAuthor = rss.text("RSS2.0", "ManagingAuthor")
        self.WebMaster = rss.text("RSS2.0", "WebMaster")
        self.Author = rss.text("ATOM", "Author")

    def Initialize(self):
        return os.path.isfile(self.home.RSSIniFile) and self.DiaryURL != ""

    def MakeRSS(self, path):
        prefix = GetBaseName(path)
        files = {prefix + end: None for end in FEED_ENDS}
        public = [row for row in self.home.entries if not row["Private"]]
        if not public:
            raise CommandFailure("no public entry for the feeds", files)
        month = max(row["Day"] for row in public)[:7]
        rows = self.home.month(month)
        self.items = list(zip(rows[:10], self._item_addresses(rows)))
        converter_file = self.home.MyPath + "HTML2TXT_RSS.ini"
        if not os.path.isfile(converter_file):
            return {name: b"" for name in files}
        self.converter = HtmlToText(converter_file)
        texts = (self._rss091(), self._rss100(), self._rss200(), self._atom())
        return {name: encode_feed(text) for name, text in zip(files, texts)}

    def _item_addresses(self, rows):
        """Addresses as the readers of the feeds know them; some combinations point past the files."""
        frame_ini = self.home.frame
        frame_on = frame_ini.number("Frame", "FrameOn") == 1
        divided = frame_ini.number("Divide", "DiaryDivide") == 1
        term = frame_ini.number("Divide", "DiaryTerm") or 31
        by_day = frame_ini.number("Divide", "UseFileName2Day") if divided and term == 1 else 0
        url = self.DiaryURL
        cut = GetBaseName(url)
        folder = url[:url.rfind("/") + 1]
        if frame_on:
            base = folder if by_day == 1 else cut + "_D_"
        else:
            base = folder if by_day == 0 else cut + "_"
        pages = {}
        if divided and by_day != 0:
            on_top = frame_ini.number("Divide", "DiaryOnTop")
            pages, _ = page_of_days(days_of(rows), term, on_top)
        addresses = []
        for row in rows[:10]:
            day = row["Day"]
            page = pages.get(day, 0)
            if page != 0 and divided:
                start = base + day_file(day) if by_day == 1 else f"{base}{page:02}.htm"
            elif page == 0 and divided and frame_on:
                start = cut + "_D.htm"
            else:
                start = url
            addresses.append(f"{start}#{day_number(row)}")
        return addresses

    def _plain(self, row, cut=True):
        text = self.converter.Execute(row["Contents"] or "").replace(CRLF, "")
        return XmlEscape(first_units(text, 500) if cut else text)

    @staticmethod
    def _title(row):
        return row["Title"] or ""

    @staticmethod
    def _genre(row):
        return "一般" if row["Genre"] is None else row["Genre"]

    def _rss091(self):
        lines = ['<?xml version="1.0" encoding="UTF-8" ?>', '<rss version="0.91">', "<channel>",
                 f"<title>{self.Title}</title>", f"<link>{self.DiaryURL}</link>",
                 f"<description>{self.Description}</description>", "<language>ja</language>",
                 f"<lastBuildDate>{long_date(self.home.now)} +0900</lastBuildDate>",
                 "<docs>http://backend.userland.com/rss091</docs>"]
        for row, address in self.items:
            lines += ["<item>", f"<title>{self._title(row)}</title>", f"<link>{address}</link>",
                      f"<description>{self._plain(row)}</description>", "</item>"]
        return CRLF.join(lines + ["</channel>", "</rss>"])

    def _rss100(self):
        lines = ['<?xml version="1.0" encoding="UTF-8" ?>',
                 '<rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#" '
                 'xmlns:dc="http://purl.org/dc/elements/1.1/" xmlns="http://purl.org/rss/1.0/" xml:lang="ja">',
                 f'<channel rdf:about="{self.HPURL}">', f"<title>{self.Title}</title>",
                 f"<link>{self.DiaryURL}</link>", f"<description>{self.Description}</description>", "<items>",
                 "<rdf:Seq>"]
        # The list begins with an empty line, and its last line runs into the end of the sequence.
        items = "".join(f'{CRLF}<rdf:li rdf:resource="{address}" />' for _, address in self.items)
        lines += [items + "</rdf:Seq>", "</items>", "</channel>"]
        for row, address in self.items:
            time = (row["PublishTime"] or "")[-8:]
            lines += [f'<item rdf:about="{address}">', f"<title>{self._title(row)}</title>", f"<link>{address}</link>",
                      f"<description>{self._plain(row)}</description>",
                      f"<dc:date>{publish_time(row, iso_date)}T{time} +09:00</dc:date>", "</item>"]
        return CRLF.join(lines + ["</rdf:RDF>"])

    def _rss200(self):
        def short_date(when):
            return long_date(when, 3)

        lines = ['<?xml version="1.0" encoding="UTF-8" ?>', '<rss version="2.0">', "<channel>",
                 f"<title>{self.Title}</title>", f"<link>{self.DiaryURL}</link>",
                 f"<description>{self.Description}</description>", "<language>ja</language>",
                 f"<managingEditor>{self.ManagingAuthor}</managingEditor>", f"<webMaster>{self.WebMaster}</webMaster>",
                 f"<lastBuildDate>{short_date(self.home.now)} +0900</lastBuildDate>",
                 f"<generator>Velloria v{VERSION}</generator>",
                 "<docs>http://blogs.law.harvard.edu/tech/rss</docs>"]
        for row, address in self.items:
            lines += ["<item>", f"<title>{self._title(row)}</title>", f"<link>{address}</link>",
                      f"<description>{self._plain(row, cut=False)}</description>",
                      f"<author>{self.ManagingAuthor}</author><category>{self._genre(row)}</category>"
                      f"<guid>{address}</guid><pubDate>{publish_time(row, short_date)} +0900</pubDate></item>"]
        return CRLF.join(lines + ["</channel>", "</rss>"])

    def _atom(self):
        now = f"{iso_date(self.home.now)}T{self.home.now:%H:%M:%S}"
        text = CRLF.join([
            '<?xml version="1.0" encoding="UTF-8" ?>',
            '<feed xmlns:dc="http://purl.org/dc/elements/1.1/" version="0.3" xml:lang="ja" '
            'xmlns="http://purl.org/atom/ns#">',
            f"<title>{self.Title}</title>",
            f'<link rel="alternate" type="text/html" href="{self.DiaryURL}" title="{self.Title}"/>',
            f"<modified>{now}+09:00</modified>", f"<tagline>{self.DiaryURL}</tagline>",
            f"<generator>Velloria v{VERSION}</generator>", "<author>", f"<name>{self.Author}</name>",
            f"<email>{self.ManagingAuthor}</email>", "</author>", f"<id>{self.DiaryURL}</id>"])
        for row, address in self.items:
            time = (row["PublishTime"] or "")[-8:]
            text += CRLF.join([
                "<entry>", f"<title>{self._title(row)}</title>", f"<dc:subject>{self._genre(row)}</dc:subject>",
                f'<link rel="alternate" type="text/html" href="{address}" title="{self._title(row)}"/>',
                f"<id>{address}</id><modified>{publish_time(row, iso_date)}T{time}+09:00</modified>"
                f"<issued>{now}+09:00</issued>"
                f'<summary mode="escaped" type="text/html">{self._plain(row)}</summary>',
                f'<content mode="escaped" type="text/html" xml:lang="ja">{XmlEscape(row["Contents"] or "")}</content>',
                "</entry>", ""])
        return text + "</feed>"
