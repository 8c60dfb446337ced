"""Text as the program reads and writes it: code page 932, settings files, path names, HTML to text."""

import functools
import os
import re
import unicodedata

CRLF = "\r\n"


class CommandFailure(Exception):
    """The command ends with a failure. `files` is what it has written or deleted up to then."""

    def __init__(self, reason, files=None, unsettled=()):
        super().__init__(reason)
        self.files = files or {}
        self.unsettled = set(unsettled)    # files that such a run may leave old or new


def _ibm_extension():
    """Python writes the IBM extension as NEC rows ED and EE; the code page writes rows FA to FC."""
    table = {}
    for lead in range(0xFA, 0xFD):
        for trail in [*range(0x40, 0x7F), *range(0x80, 0xFD)]:
            pair = bytes([lead, trail])
            character = pair.decode("cp932", "replace")
            if len(character) == 1 and character != "\ufffd" and character.encode("cp932")[0] in (0xED, 0xEE):
                table[character] = pair
    return table


IBM_EXTENSION = _ibm_extension()
NOT_IN_PYTHON = {"\u2014": b"\x81\x5c"}    # the em dash goes to the place of U+2015


@functools.cache
def encode_character(character):
    """The bytes of one character, None when the code page lacks it."""
    if character in IBM_EXTENSION:
        return IBM_EXTENSION[character]
    if character in NOT_IN_PYTHON:
        return NOT_IN_PYTHON[character]
    if character in "\u00a5\u203e":
        return None
    try:
        return character.encode("cp932")
    except UnicodeEncodeError:
        return None


def encode_page(text):
    """Bytes of a page or list file: a missing character becomes a decimal reference."""
    out = []
    for run in re.findall(r"[\x00-\x7f]+|[^\x00-\x7f]", text):
        out.append(run.encode("ascii") if run[0] < "\x80" else encode_character(run) or b"&#%d;" % ord(run))
    return b"".join(out)


def decode_ansi(data):
    """Reading never fails: what is no character of the code page reads as U+30FB."""
    try:
        return data.decode("cp932")
    except UnicodeDecodeError:
        pass
    out = []
    i = 0
    while i < len(data):
        byte = data[i]
        if not (0x81 <= byte <= 0x9F or 0xE0 <= byte <= 0xFC):
            out.append(data[i:i + 1].decode("cp932"))
            i += 1
        elif i + 1 == len(data) or data[i + 1] == 0:
            out.append("\u30fb")
            i += 1
        else:
            pair = data[i:i + 2].decode("cp932", "replace")
            out.append(pair if len(pair) == 1 and pair != "\ufffd" else "\u30fb")
            i += 2
    return "".join(out)


def decode_references(text):
    """Turns a decimal reference back when it stands for a character that the code page lacks."""
    def back(match):
        code = int(match.group(1))
        if code > 0x10FFFF or 0xD800 <= code <= 0xDFFF or encode_character(chr(code)) is not None:
            return match.group(0)
        return chr(code)

    return re.sub(r"&#([0-9]{1,8});", back, text)


def ReadTextFile(path):
    """The whole file; "" when there is none."""
    if not path or not os.path.isfile(path):
        return ""
    with open(path, "rb") as file:
        return decode_ansi(file.read())


ASCII_LOWER = str.maketrans("ABCDEFGHIJKLMNOPQRSTUVWXYZ", "abcdefghijklmnopqrstuvwxyz")
ASCII_UPPER = str.maketrans("abcdefghijklmnopqrstuvwxyz", "ABCDEFGHIJKLMNOPQRSTUVWXYZ")
BLANKS = " \t\v"


def without_torn_reference(value, cut):
    """The text before the cut; a reference that stands for one character is never cut within."""
    for match in re.finditer(r"&#[1-9][0-9]*;", value):
        if match.start() < cut < match.end() and decode_references(match.group()) != match.group():
            return value[: match.start()]
    return value[:cut]


class Profile:
    """A settings file. The first section of a name counts, and in it the first key of a name."""

    def __init__(self, path):
        self.sections = {}
        if not path or not os.path.isfile(path):
            return
        keys = None
        with open(path, "rb") as file:
            text = decode_ansi(file.read())
        for line in re.split(r"\r\n|\r|\n", text):
            line = line.strip(BLANKS)
            if line.startswith(";"):
                continue
            if line.startswith("["):
                name = line[1:].split("]")[0].strip(BLANKS).translate(ASCII_LOWER)
                keys = {}
                self.sections.setdefault(name, keys)    # the keys of a second section of the name are lost
            elif keys is not None and "=" in line:
                key, value = line.split("=", 1)
                keys.setdefault(key.strip(BLANKS).translate(ASCII_LOWER), value.strip(BLANKS))

    def stored(self, section, key):
        value = self.sections.get(section.translate(ASCII_LOWER), {}).get(key.translate(ASCII_LOWER))
        if value is not None and len(value) >= 2 and value[0] == value[-1] and value[0] in "\"'":
            value = value[1:-1]
        return value

    def text(self, section, key, default=""):
        value = self.stored(section, key)
        if value is None:
            return default
        length = 0
        for i, character in enumerate(value):
            length += len(encode_character(character) or b"?")
            if length > 255:
                value = without_torn_reference(value, i)
                break
        return decode_references(value.split("\0")[0])

    def number(self, section, key, default=0):
        value = self.stored(section, key)
        if value is None:
            return default
        match = re.match(r"[ \t\v]*([+-]?)(0[xX][0-9a-fA-F]+|[0-9]+)", value)
        if not match:
            return 0
        digits = match.group(2)
        number = int(digits, 16 if digits[:2] in ("0x", "0X") else 10)
        number = (-number if match.group(1) == "-" else number) & 0xFFFFFFFF
        if number >= 0x80000000:
            number -= 0x100000000
        if not -32768 <= number <= 32767:
            raise CommandFailure(f"{section}/{key} is no 16-bit integer")
        return number


def GetFileName(path):
    return path.replace("\\", "/").rsplit("/", 1)[-1]


def GetBaseName(path):
    """The text before the last ".", wherever that stands."""
    return path.rsplit(".", 1)[0]


def GetParentFolder(path):
    at = path.replace("\\", "/").rfind("/")
    return path[:at] if at >= 0 else ""


def with_separator(folder):
    return folder + "/" if folder and not folder.endswith("/") else folder


# Prefixes by length; each drops its tag when the flag behind it is on. "*" marks what is more than a drop.
TAG_GROUPS = [
    {"<BLOCKQUOTE": "BLOCKQUOTE", "</BLOCKQUOT": "BLOCKQUOTE"},
    {"<CAPTION": "TABLE", "</CAPTIO": "TABLE"},
    {"<STRONG": "STRONG", "</STRON": "STRONG"},
    {"<TABLE": "TABLE", "</TABL": "TABLE"},
    {"<SPAN": "SPAN", "</SPA": "SPAN"},
    {"</TD": "TABLE", "</TR": "TABLE", "</TH": "TABLE", "</TT": "TT", "</UL": "LIST", "</OL": "LIST", "</DL": "LIST",
     "</DT": "LIST", "</DD": "LIST", "</LI": "LIST", "</EM": "EM", "<XMP": "XMP", "</XM": "XMP", "<SUP": "SUP",
     "<SUB": "SUB", "<PRE": "PRE", "</PR": "PRE", "<INS": "INS", "</IN": "INS", "<DEL": "DEL", "</DE": "DEL"},
    {"</S": "S", "</P": "P*", "</Q": "Q", "</U": "U", "</I": "I", "</B": "B", "<BR": "BR*", "<TT": "TT", "<HR": "HR*",
     "<TD": "TABLE", "<TR": "TABLE", "<TH": "TABLE", "<LI": "LIST*", "<UL": "LIST", "<OL": "LIST", "<DL": "LIST",
     "<DT": "LIST", "<DD": "LIST", "<EM": "EM"},
    {"<P": "P", "<S": "S", "<Q": "Q", "<U": "U", "<I": "I", "<B": "B"},
]


class HtmlToText:
    def __init__(self, path):
        ini = Profile(path)
        self.mode = ini.text("GENERAL", "MODE", "TEXT")
        self.enter = ini.number("GENERAL", "ENTER", 1)
        self.link_type = ini.number("GENERAL", "A_LINK_TAG_TYPE", 1)
        self.hr_num = ini.number("HR", "NUM", 5)
        self.on = {key: ini.number("HTML", key, 1) for key in ("HR", "BR", "P", "IMG", "ANAME", "AHREF", "AHREFSharp")}
        flags = {flag.rstrip("*") for group in TAG_GROUPS for flag in group.values()}
        self.drop = {flag: ini.number("HTML2HTML", flag) for flag in flags}
        self.html_hr_num = ini.number("HTML2HTML", "HR_Num")

    def Execute(self, html):
        text = self._text_scan(html) if self.mode == "TEXT" else self._html_scan(html)
        text = re.sub(r"\r\n|\r|\n", CRLF, text)
        if self.enter:
            while CRLF * 3 in text:
                text = text.replace(CRLF * 3, CRLF)
        return text.replace("&amp;", "&").replace("&lt;", "<").replace("&gt;", ">")

    @staticmethod
    def _pieces(html):
        """Runs of text and whole tags; a "<" that never closes is text to the end."""
        return re.findall(r"<[^>]*>|<[^>]*\Z|[^<]+", html)

    @staticmethod
    def _is_tag(piece):
        return piece[0] == "<" and piece[-1] == ">"

    def _text_scan(self, html):
        out = []
        link = ""
        for piece in self._pieces(html):
            if not self._is_tag(piece):
                out.append(piece)
                continue
            upper = piece.translate(ASCII_UPPER)
            start = upper[:3]
            if start == "<HR":
                out.append("-" * self.hr_num + CRLF if self.on["HR"] else "")
            elif start == "<BR":
                out.append(CRLF if self.on["BR"] else "")
            elif start == "</P":
                out.append(CRLF if self.on["P"] else "")
            elif start == "<IM":
                if self.on["IMG"]:
                    values = self._attributes(piece, "IMG ", "img ")
                    out.append(f"[イメージ:{values.get('ALT=', '')}:{values.get('SRC=', '')}]")
            elif start == "<A ":
                if upper.startswith("<A NAME") and self.on["ANAME"]:
                    continue
                if upper.startswith(('<A HREF="#', "<A HREF=#")) and self.on["AHREFSharp"]:
                    continue
                if not self.on["AHREF"]:
                    continue
                link = self._attributes(piece, "A ", "a ").get("HREF=", "")
                out.append({0: piece, 1: f"[リンク:{link}]"}.get(self.link_type, ""))
            elif start == "</A":
                out.append({0: "</a>", 2: f"({link})"}.get(self.link_type, ""))
                link = ""
        return "".join(out)

    @staticmethod
    def _attributes(tag, *words):
        """Values by the upper-cased name with its "="; found only where quotes or blanks part them from it."""
        text = tag.replace("<", "").replace(">", "").replace("'", '"')
        for word in words:
            text = text.replace(word, "")
        parts = text.split('"' if '"' in text else " ")
        return {name.translate(ASCII_UPPER).replace(" ", ""): value for name, value in zip(parts, parts[1:])}

    def _html_scan(self, html):
        out = []
        for piece in self._pieces(html):
            out.append(self._html_tag(piece) if self._is_tag(piece) else piece)
        return "".join(out)

    def _html_tag(self, tag):
        upper = tag.translate(ASCII_UPPER)
        for group in TAG_GROUPS:
            for prefix, flag in group.items():
                if upper.startswith(prefix):
                    if self.drop[flag.rstrip("*")]:
                        return {"<HR": "-" * self.html_hr_num + CRLF, "<LI": CRLF + "・"}.get(prefix, CRLF) \
                            if flag.endswith("*") else ""
                    break
        return tag


# What input methods type for a sign of the code page.
SIGNS = str.maketrans("\u2016\u2212\u301c", "\u2225\uff0d\uff5e")


def fold(text):
    """Without regard to case, width and kana type."""
    text = text.translate(SIGNS)
    text = re.sub("[\uff61-\uff9f]+", lambda run: unicodedata.normalize("NFKC", run[0]), text)
    text = re.sub("[\uff01-\uff5e]", lambda sign: chr(ord(sign[0]) - 0xFEE0), text).replace("\u3000", " ")
    text = re.sub("[\u30a1-\u30f4\u30fd\u30fe]", lambda kana: chr(ord(kana[0]) - 0x60), text)
    return text.lower()
