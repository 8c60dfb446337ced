"""Two readers of Movable Type's text format, by the line rules of the blog programs that people take their diary to:
`wordpress` of one that goes line by line, `movable_type` of the format's own. Written independently of the plug-in."""

import json
import re
from datetime import datetime

BLANKS = " \t\n\r\0\x0b"
LONGEST_LINE = 8191
DATE = re.compile(r"^(\d{1,2})/(\d{1,2})/(\d{2}|\d{4}) (\d{1,2}):(\d{1,2}):(\d{1,2})(?: ([AaPp][Mm]))?$")


def clock(match, strict):
    """The time of a DATE; None where a strict reader gives up."""
    month, day, year, hour, minute, second = (int(part) for part in match.groups()[:6])
    half = (match[7] or "").upper()
    if half and hour > 12:
        if strict:
            return None
        half = ""
    if half:
        hour = hour % 12 + (12 if half == "PM" else 0)
    if year < 100:
        year += 2000 if year < 70 else 1900
    return datetime(year, month, day, hour, minute, second)


def php_date(text):
    match = DATE.match(text)
    when = clock(match, strict=True) if match else None
    if not match and re.match(r"^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d$", text):
        when = datetime.fromisoformat(text)
    return when.strftime("%Y-%m-%d %H:%M:%S").zfill(19) if when else "1970-01-01 00:00:00"


def physical_lines(data):
    """As a reader with a buffer of fixed length gets them."""
    for line in data.split(b"\n"):
        for begin in range(0, max(len(line), 1), LONGEST_LINE):
            yield line[begin:begin + LONGEST_LINE]


def slug(text):
    return re.sub(r"[^a-z0-9]+", "-", text.lower().replace("/", "-")).strip("-")


class Wordpress:
    """It works line by line and does not know where it is: whatever line begins with a key is one."""

    PIECES = {"BODY:": "body", "EXTENDED BODY:": "extended", "EXCERPT:": "excerpt", "KEYWORDS:": "keywords",
              "COMMENT:": "comment", "PING:": "ping"}

    def __init__(self):
        self.posts = []
        self.start()

    def start(self):
        self.context = ""
        self.comment = None
        self.texts = dict.fromkeys(["body", "extended", "excerpt", "keywords"], "")
        self.post = {"title": "", "status": "draft", "date": "", "slug": "", "cs": "open", "ps": "open", "cats": [],
                     "tags": []}
        self.basename = ""
        self.comments = []

    def read(self, data):
        for raw in physical_lines(data):
            self.line(raw.decode("utf-8", errors="surrogateescape").strip(BLANKS))
        return self.posts

    def line(self, line):
        if line == "-----":
            if self.comment:
                self.end_comment()
            self.context = ""
        elif line == "--------":
            self.end_post()
        elif line in self.PIECES:
            self.context = self.PIECES[line]
            self.comment = {"text": ""} if self.context in ("comment", "ping") else None
        elif not self.key(line) and line not in ("", "0"):
            self.text(line + "\n")
        elif line == "0":
            self.text(line)

    def text(self, text):
        if self.comment is not None:
            self.comment["text"] += text
        elif self.context:
            self.texts[self.context] += text

    def key(self, line):
        match = re.match(r"^(AUTHOR|TITLE|BASENAME|STATUS|ALLOW COMMENTS|ALLOW PINGS|PRIMARY CATEGORY|CATEGORY|DATE|"
                         r"EMAIL|IP|URL|BLOG NAME):(.*)$", line, re.S)
        if not match:
            return False
        name, value = match[1], match[2].strip(BLANKS)
        if self.comment is not None and name in ("AUTHOR", "TITLE", "DATE", "EMAIL", "IP", "URL", "BLOG NAME"):
            self.comment[name] = value
        elif name == "TITLE" and not self.context:
            self.post["title"] = value
        elif name == "DATE" and not self.context:
            self.post["date"] = php_date(value)
        elif name == "STATUS":
            self.post["status"] = value.lower() or "publish"
        elif name == "BASENAME":
            self.basename = value
        elif name == "ALLOW COMMENTS":
            self.post["cs"] = "open" if value == "1" else "closed"
        elif name == "ALLOW PINGS":
            self.post["ps"] = "open" if value == "1" else "closed"
        elif name in ("CATEGORY", "PRIMARY CATEGORY") and value and value not in self.post["cats"]:
            self.post["cats"].append(value)
        return True

    def end_comment(self):
        made = self.comment
        text = made["text"]
        if self.context == "ping":
            text = f"<strong>{made.get('TITLE', '')}</strong>\n\n{text}"
        self.comments.append(["comment", made.get("BLOG NAME" if self.context == "ping" else "AUTHOR", ""),
                              made.get("EMAIL", ""), made.get("URL", ""), made.get("IP", ""),
                              php_date(made.get("DATE", "")), text])
        self.comment = None

    def end_post(self):
        post = self.post
        body = self.texts["body"]
        if self.texts["extended"]:
            body += "\n<!--more-->\n" + self.texts["extended"]
        post["excerpt"], post["body"] = self.texts["excerpt"], body
        post["tags"] = [tag.strip() for tag in self.texts["keywords"].split(",") if tag.strip()]
        post["cats"] = sorted(post["cats"]) or ["Uncategorized"]
        post["slug"] = slug(self.basename or (post["title"] if post["status"] == "publish" else ""))
        post["comments"] = self.comments
        # Nothing is made of nothing, texts that are broken are not stored, and what has title and date of another is
        # taken for the same.
        empty = not (post["title"] or body or post["excerpt"])
        whole = all(not re.search("[\ud800-\udfff]", text) for text in (body, post["title"], post["excerpt"]))
        known = any((other["title"], other["date"]) == (post["title"], post["date"]) for other in self.posts)
        if whole and not known and not empty:
            self.posts.append(post)
        self.start()


def wordpress(data):
    """The posts that come of a file."""
    return Wordpress().read(data)


def as_told(posts):
    """The posts in the form of the samples' answers."""
    lines = []
    for post in posts:
        shown = {name: value for name, value in post.items() if name != "comments"}
        lines.append(json.dumps(shown, ensure_ascii=False, separators=(",", ":")))
        lines += ["   C " + json.dumps(comment, ensure_ascii=False, separators=(",", ":"))
                  for comment in post["comments"]]
    return lines


class Stopped(Exception):
    """The whole import is refused."""


def movable_type(data):
    """The entries that the format's own reader makes of a file; it looks for separators with LF alone."""
    entries = []
    for chunk in data.decode("utf-8").split("\n--------\n"):
        if not chunk.strip():
            continue
        pieces = re.split(r"(?:^|\n)-----(?:\n|$)", chunk)
        entry = {"status": "publish", "cats": [], "texts": {}}
        for line in pieces[0].split("\n"):
            name, _, value = (part.strip() for part in line.partition(":"))
            if name == "TITLE":
                entry["title"] = value
            elif name == "STATUS":
                if value.lower() not in ("publish", "draft", "future", "review", "unpublish", "spam", "junk"):
                    raise Stopped(line)
                entry["status"] = value.lower()
            elif name in ("ALLOW PINGS",) and value not in ("0", "1"):
                raise Stopped(line)
            elif name in ("CATEGORY", "PRIMARY CATEGORY") and value not in entry["cats"]:
                entry["cats"].append(value)
            elif name == "CONVERT BREAKS":
                entry["breaks"] = value
            elif name == "DATE":
                match = DATE.match(value)
                if not match:
                    raise Stopped(line)
                entry["date"] = clock(match, strict=False)
        for piece in pieces[1:]:
            name, _, text = piece.partition("\n")
            if name in ("BODY:", "EXTENDED BODY:", "EXCERPT:", "KEYWORDS:"):
                entry["texts"][name[:-1]] = text.strip()
        entries.append(entry)
    return entries
