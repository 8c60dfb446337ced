"""Random files in the formats of Movable Type and Hatena, in every form in which programs write them, together with the
entries that they hold: (day, title, contents, postscript, excerpt, genre, time or None, private)."""

from datetime import datetime, timedelta
from xml.sax.saxutils import escape

LINES = ["朝は晴れ。", "川まで歩いた。", "------", "---------", "-----\t", "--------\t", "TITLE: 題", "STATUS: Draft",
         "DATE: 01/01/2001 01:01:01 AM", "CATEGORY: 迷子", "COMMENT: x", "AUTHOR:", "BODY: x", "0", "", "", "  字下げ",
         "<b>強調</b>", "<pre>", "</pre>", "- - - - -", "<!-- -->", "&amp; &#9835;", "\\n", "----- x", "--------x"]
BAD_DATES = ["00/00/0000 00:00:00", "02/31/2024 01:00:00 AM", "13/01/2024 01:00:00", "9999", "0000-00-00", "昨日",
             "01/01/2024 25:00:00", "02/29/2023 01:01:01 PM", "12/32/2024 01:01", "1/1/99999 01:01"]
NOTATION = ["朝は晴れ。", "**小見出し", "- list", "|a|b|", "<b>x</b>", ">>", "<<", "((注))", "[http://x/:title=a]", "", "",
            "  字", "& < >", "&amp;", "****", "]]", "&#33;", "\"q\" 'q'", "====", "a*b*c"]
PREFORMATTED = [[">||", "*not a heading", "*1709866800*x", "||<"], [">|perl|", "*x", "|<", "||<"], [">|", "*y", "z|<"]]


def date_forms(seeds):
    """A DATE, its day and its time."""
    when = datetime(seeds.choice([1000, 1900, 1985, 2024, 9999]), seeds.randrange(1, 13), seeds.randrange(1, 29),
                    seeds.randrange(24), seeds.randrange(60), seeds.randrange(60))
    day = f"{when.month:02}/{when.day:02}/{when.year:04}"
    half = "AM" if when.hour < 12 else "PM"
    twelve = f"{when.hour % 12 or 12:02}:{when.minute:02}"
    whole = f"{when.hour:02}:{when.minute:02}"
    form = seeds.choice([f"{day} {twelve}:{when.second:02} {half}", f"{day} {whole}:{when.second:02}",
                         f"{day} {twelve}:{when.second} {half.lower()}", f"{day} {whole}",
                         f"{when.year:04}-{when.month}-{when.day} {whole}:{when.second:02}"])
    if form == f"{day} {whole}":
        when = when.replace(second=0)
    stamp = f"{when.year:04}/{when.month:02}/{when.day:02} {whole}:{when.second:02}"
    return form, stamp[:10], stamp


def as_taken(lines):
    """A piece as its reader has it: without what keeps separators apart, and without blank ends."""
    text = "\n".join(line[:-1] if line in ("-----\t", "--------\t") else line for line in lines).rstrip(" \t\n")
    kept = text.split("\n")
    while kept and not kept[0].strip(" \t"):
        kept.pop(0)
    return "\r\n".join(kept)


def movable_type_entry(seeds, counts):
    """Its lines, and the entry, None for one without a date that exists."""
    form, day, stamp = date_forms(seeds)
    is_bad = seeds.random() < 0.1
    status = seeds.choice([None, "Publish", "PUBLISH", "Draft", "Future", "Spam"])
    primary = seeds.choice([None, "主"])
    title = seeds.choice(["題名", "a: b", "", "-----x", "DATE: 1", "&lt;b&gt;"])
    head = [("TITLE", title), ("DATE", seeds.choice(BAD_DATES) if is_bad else form),
            ("CONVERT BREAKS", seeds.choice(["0", "richtext", "wysiwyg"])), ("BASENAME", "a/b"),
            ("ALLOW COMMENTS", seeds.choice("012"))]
    head += [("STATUS", status)] if status else []
    head += [("PRIMARY CATEGORY", primary)] if primary else []
    head += [("CATEGORY", seeds.choice(["日記", "a b", "x:y"])) for _ in range(seeds.randrange(3))]
    seeds.shuffle(head)
    categories = [value for name, value in head if name == "CATEGORY"]
    texts = {name: [seeds.choice(LINES) for _ in range(seeds.randrange(8))]
             for name in ("BODY", "EXTENDED BODY", "EXCERPT") if seeds.random() < 0.7}
    comments = [("COMMENT", ["AUTHOR: x", "DATE: 01/31/2024 09:02:07 PM", "いいね"])] * seeds.randrange(3)
    pings = [("PING", ["TITLE: x", "BLOG NAME: b", "", "抜き書き"])] * seeds.randrange(3)
    pieces = list(texts.items()) + comments + pings
    seeds.shuffle(pieces)
    lines = [name + seeds.choice([":", ": ", ":\t"]) + value + seeds.choice(["", " "]) for name, value in head]
    lines.append("-----" + seeds.choice(["", " "]))
    for name, text in pieces:
        lines += [""] * seeds.randrange(2) + [name + ":"] + text + ["-----"]
    lines += ["-----"] * seeds.randrange(2) + ["--------" + seeds.choice(["", " "])]
    if is_bad:
        return lines, None
    counts["コメント"] += len(comments)
    counts["トラックバック"] += len(pings)
    genre = primary or (categories + ["一般"])[0]
    body, more, excerpt = (as_taken(texts.get(name, [])) for name in ("BODY", "EXTENDED BODY", "EXCERPT"))
    return lines, (day, title, body, more, excerpt, genre, stamp, int((status or "").lower() != "publish"))


def encoded(text, encodings):
    for encoding in encodings:
        try:
            return text.encode(encoding)
        except UnicodeEncodeError:
            pass
    raise ValueError(encodings)


def movable_type_file(seeds):
    """The bytes, the entries, and how many comments and pings are dropped."""
    lines, entries, counts = ["AUTHOR: 日本語を書く人"], [], {"コメント": 0, "トラックバック": 0}
    for _ in range(seeds.randrange(2, 10)):
        more, entry = movable_type_entry(seeds, counts)
        lines += more
        entries += [entry] if entry else []
    text = seeds.choice(["\n", "\r\n", "\r"]).join(lines + [""])
    entries.sort(key=lambda entry: (entry[0], entry[6]))
    return encoded(text, [seeds.choice(["utf-8", "utf-8-sig", "cp932", "euc_jp"]), "utf-8"]), entries, counts


def hatena_day(seeds, day):
    """The body of a day, and its entries with notation as it was typed."""
    body, entries = [], []
    for _ in range(seeds.randrange(1, 5)):
        genres = [seeds.choice(["旅", "海", "a b"]) for _ in range(seeds.randrange(3))]
        title = seeds.choice(["海まで", "", "x: y", "夜*", "[]x", "夜&<>"])
        label = seeds.choice(["", "", "p1*", f"{seeds.randrange(10**8, 2 * 10**9)}*"])
        lines = []
        for _ in range(seeds.randrange(5)):
            lines += seeds.choice(PREFORMATTED) if seeds.random() < 0.2 else [seeds.choice(NOTATION)]
        body += ["*" + label + "".join(f"[{genre}]" for genre in genres) + title] + lines
        seconds = label.rstrip("*")
        stamp = None
        if seconds.isdigit():
            stamp = (datetime(1970, 1, 1, 9) + timedelta(seconds=int(seconds))).strftime("%Y/%m/%d %H:%M:%S")
        entries.append((day, title, "\r\n".join(lines), None, None, (genres + ["一般"])[0], stamp, 0))
    return "\n".join(body), entries


def xml_text(seeds, text):
    if seeds.random() < 0.2 and "]]>" not in text:
        return f"<![CDATA[{text}]]>"
    return "".join(f"&#{ord(c)};" if ord(c) > 127 and seeds.random() < 0.1 else escape(c) for c in text)


def hatena_file(seeds):
    """The bytes, the entries, and how many comments are dropped."""
    days, entries, comments = [], [], 0
    for number in seeds.sample(range(1, 29), seeds.randrange(1, 8)):
        body, read = hatena_day(seeds, f"2009/02/{number:02}")
        quote = seeds.choice("\"'")
        attributes = [f"date={quote}2009-02-{number:02}{quote}", f"title = {quote}{quote}", "extra='1'"]
        seeds.shuffle(attributes)
        count = seeds.randrange(3)
        comment = f"<comment>\n<username>太郎</username>\n<body>{xml_text(seeds, 'いい & <b>')}</body>\n</comment>\n"
        inner = [f"<body >\n{xml_text(seeds, body)}\n</body>\n",
                 "<comments><!-- & -->\n" + comment * count + "</comments>\n" if count else ""]
        seeds.shuffle(inner)
        days.append("<day " + seeds.choice([" ", "\n"]).join(attributes) + ">\n" + "".join(inner) + "</day>\n")
        entries += read
        comments += count
    entries.sort(key=lambda entry: entry[0])
    text = ("<?xml version=\"1.0\"?>\n" + seeds.choice(["", "<!-- & -->\n", "<?pi x?>\n"]) + "<diary>\n" + "".join(days) +
            "<!-- 日本語の長い注釈 --></diary>\n").replace("\n", seeds.choice(["\n", "\r\n", "\r"]))
    return encoded(text, [seeds.choice(["utf-8", "utf-8-sig", "euc_jp"]), "utf-8"]), entries, {"コメント": comments}
