"""Random uploads: a home's lists, files and register, and a server with its faults."""

import random

NAMES = ["x.htm", "y.htm", "表示.htm", "a[1].htm", "-x.htm", "2004_02.html", "b c.htm", "日記.html", "x;type=i.htm",
         "50%41.htm", "#1.htm", "a?b=c.htm", "~u.htm", "*.htm", "'q'.htm", "&#65;.htm", "rss.xml", "ソ.htm"]
PLAIN_NAMES = ["x.htm", "y.htm", "2004_02.html", "日記.html", "rss.xml"]
PICTURES = ["a.gif", "b.JPG", "表.png", "[2].gif", "-l.gif", "Cloudy.gif", "c d.gif", "日.htm", "x;type=a.gif"]
FOLDERS = ["", "", "pub", "pub", "pub/", "/pub", "a/b", "a/c", "表", "new folder", "/", "..", ".", "日記", "pub/DiaryLog"]
REFUSALS = ["denied", "permission denied by the server's rules", "拒否されました。", "quota exceeded\nask the owner\nnow",
            "x" * 300, "表"]
PASSWORDS = ["p", "secret word", "a&b=c;d", "パスワード", "%41@host/x:y", "'\"'"]


class PlainUpload:
    """A home with a page, a log and a picture beside each, and a server without faults that lacks the folders."""

    def __init__(self):
        self.user, self.password, self.start, self.sound = "u", "secret word", "pub", "ding.wav"
        self.passive, self.html_only, self.ping, self.has_host, self.has_user = True, False, False, True, True
        self.folders = ["site/", "site/DiaryLog/"]
        self.pages, self.old, self.logs = [(0, "x.htm")], None, [(1, "200401.htm")]
        self.line_end = b"\r\n"
        self.files = {(0, "x.htm"): b"<P>\r\n\r\ntext\n", (1, "200401.htm"): b"log\r\n"}
        self.registered = [("a.gif", False, False), ("b.gif", False, True)]
        self.owners = {}        # days and numbers of registered files that are not of all months
        self.pictures_in = {"a.gif": "site", "b.gif": "site"}
        self.picture_bytes = {"a.gif": b"GIF\r\n\0", "b.gif": b"\xff\n"}
        self.features, self.login, self.codec = {"FEAT", "MLST", "SIZE", "PWD"}, "/", "utf-8"
        self.long_replies, self.greeting = False, b"220 ready\r\n"
        self.tree, self.faults, self.cut_at, self.answers = {"/": None, "/pub": None}, [], None, ["yes"] * 4


class RandomUpload(PlainUpload):
    def __init__(self, seed):
        super().__init__()
        draw = self.draw = random.Random(seed)
        self.names = draw.sample(NAMES, 6)
        self.pictures = draw.sample(PICTURES, 4)
        self.keys()
        self.local()
        self.server()
        self.answers = [draw.choice(["yes", "yes", "yes", "no"]) for _ in range(4)]

    def chance(self, one_in):
        return self.draw.randrange(one_in) == 0

    def keys(self):
        draw = self.draw
        self.user, self.password = draw.choice(["u", "name@host", "利用者", "a b"]), draw.choice(PASSWORDS)
        self.start = draw.choice(FOLDERS)
        self.passive = draw.random() < 0.5
        self.html_only = self.chance(6)
        self.ping = self.chance(10)
        self.sound = draw.choice(["", "ding.wav", "/音/a b.mp3"])
        self.has_host, self.has_user = not self.chance(60), not self.chance(60)

    def content(self):
        draw = self.draw
        size = draw.choice([0, 1, 10, 300, 3000, 3000, 70000])
        lines, length = [], 0
        while length < size:
            lines.append(draw.choice([b"line of text", b"", b"\x93\xfa\x96\x7b", b"<P>", b"\x00\xff"])
                         + draw.choice([b"\r\n", b"\r\n", b"\n", b"\r", b"\r\r\n"]))
            length += len(lines[-1])
        return b"".join(lines)

    # A row is (index of the folder, name); a file that no row needs may be missing.
    def local(self):
        draw = self.draw
        self.folders = [draw.choice(["site", "site/", "サイト/", "b\u00e9/"]), draw.choice(["other/", "other"])]
        if self.chance(40):
            self.folders[0] = "with,comma/"
        self.pages = None if self.chance(40) else self.rows(1 if draw.random() < 0.95 else 0, 5)
        self.old = self.rows(0, 4) if draw.random() < 0.6 else None
        self.logs = self.rows(0 if self.chance(10) else 1, 4) if draw.random() < 0.5 else None
        self.line_end = draw.choice([b"\r\n", b"\r\n", b"\n"])
        self.files = {}
        for rows in (self.pages, self.logs):
            for row in rows or []:
                if not self.chance(80):
                    self.files[row] = self.content()
        self.registered = []
        for name in draw.sample(self.pictures, draw.choice([0, 0, 1, 2, 3])):
            self.registered.append((name, self.chance(8), draw.random() < 0.4))
        # The second entry of the day is private.
        self.owners = {name: ("2004/02/01", draw.choice([1, 2])) for name, _, _ in self.registered if self.chance(3)}
        self.pictures_in = {name: draw.choice(["site", "site", "site", "both", "data"] + ["none"] * self.chance(4))
                            for name in self.pictures}
        self.picture_bytes = {name: self.content() for name in self.pictures}

    def rows(self, least, most):
        draw = self.draw
        return [(0 if draw.random() < 0.8 else 1, draw.choice(self.names)) for _ in range(draw.randint(least, most))]

    def server(self):
        draw = self.draw
        self.features = draw.choice([{"FEAT", "MLST", "SIZE", "PWD"}, {"FEAT", "MLST", "SIZE", "PWD"},
                                     {"FEAT", "SIZE", "PWD"}, {"SIZE", "PWD"}, {"FEAT", "MLST", "PWD"}, {"PWD"}])
        self.login = draw.choice(["/", "/home/u"])
        self.codec = draw.choice(["utf-8", "cp932"])
        self.long_replies = self.chance(4)
        self.greeting = draw.choice([b"220 ready\r\n", b"220-Welcome\r\n  230 no\r\n220 \x93\xfa\x96\x7b\r\n"])
        start = self.start if self.start.startswith("/") else self.login.rstrip("/") + "/" + self.start
        self.tree = {self.login: None, "/home": None}
        if draw.random() < 0.7 and self.start not in ("..", "."):
            self.add_folder(start)
        below = {"..": "/home" if self.login == "/home/u" else "/", ".": self.login}.get(self.start, start)
        below = "/" + below.strip("/")
        if draw.random() < 0.6:
            for folder in ("DiaryParts", "DiaryLog", "DiaryLog/DiaryParts"):
                if draw.random() < 0.7:
                    self.add_folder(below.rstrip("/") + "/" + folder)
        for name in self.names:
            for folder in (below, below.rstrip("/") + "/DiaryLog"):
                if draw.random() < 0.4 and self.tree.get(folder, 0) is None:
                    self.tree[folder.rstrip("/") + "/" + name] = b"old " + name.encode()
        self.faults, self.cut_at = [], None
        kind = draw.randrange(10)
        if kind == 0:
            self.cut_at = draw.randrange(0, 60)
        elif kind < 6:
            self.faults = [self.fault() for _ in range(draw.choice([1, 1, 2]))]

    def add_folder(self, path):
        parts = path.strip("/").split("/")
        for count in range(1, len(parts) + 1):
            if parts[0]:
                self.tree["/" + "/".join(parts[:count])] = None

    def fault(self):
        draw = self.draw
        verb = draw.choice(["SIZE", "DELE", "STOR", "STOR", "STOR", "CWD", "MLST", "MKD", "DATA", "PASS", "LIST", "FEAT"])
        words = draw.choice(REFUSALS)
        cut = {"verb": verb, "do": "cut"}
        if verb == "PASS":
            return {"verb": "PASS", "do": "refuse", "code": 530, "words": words} if self.chance(3) else cut
        if verb == "FEAT":
            code = draw.choice([421, 500, 502, 530, 550])
            return cut if self.chance(4) else {"verb": "FEAT", "do": "refuse", "code": code, "words": words}
        if verb == "DATA":
            return {"verb": "PASV" if self.passive else "PORT", "do": "refuse", "code": draw.choice([421, 500, 425]),
                    "words": words, "after": draw.randrange(3)}
        if verb in ("CWD", "MLST", "MKD"):
            name = draw.choice([self.start, "DiaryParts", "DiaryLog", ".."])
            codes = [550, 550, 421, 530, 450]
        else:
            name = draw.choice(self.names + (self.pictures if verb == "STOR" else []))
            codes = {"SIZE": [550, 550, 421, 530, 500, 504], "LIST": [450, 550, 502, 530],
                     "DELE": [550, 450, 421]}.get(verb, [550, 552, 553, 452, 421, 532])
        if verb == "LIST":    # a name with signs of its own to a listing is looked for among all
            name = draw.choice(PLAIN_NAMES)
        named = {"verb": verb, "name": name}
        if self.chance(5):
            return named | {"do": "cut"}
        if verb == "SIZE" and self.chance(3):
            return named | {"do": "lie", "reply": draw.choice([b"213 999999999999\r\n", b"213 0\r\n", b"213 -1\r\n",
                                                               b"213 much\r\n", b"213-a\r\n213 7\r\n"])}
        if verb == "STOR":
            do = draw.choice(["refuse", "refuse", "end_refuse", "no_reply", "cut_data"])
            if do == "no_reply":
                return named | {"do": do}
            if do == "cut_data":
                return named | {"do": do, "bytes": draw.choice([0, 1, 100, 5000])}
            return named | {"do": do, "code": draw.choice(codes), "words": words}
        return named | {"do": "refuse", "code": draw.choice(codes), "words": words}
