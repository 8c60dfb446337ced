#!/usr/bin/env python3
"""A blog service of this machine for the tests of posting: fake_blog.py [PORT [attached]]

It serves 127.0.0.1 at PORT, 8090 when none is given; 0 takes a free one. Once it serves it says "ready" and its port.
Nothing is kept when it ends. Attached, it ends with its input: whoever started it may die without a word.

/ctl?key=value&... changes what it does, see DEFAULTS, and answers all of it as JSON; /ctl?restart=1 forgets everything.
/log answers a JSON line for each request so far, these two addresses apart; /log?reset=1 empties the log. Field names
and values are bytes, each a character of its number: what was sent stands there as it came.

  /post     the posting page (form 0 searches, form 1 posts); `mode` says what stands there for who is not logged in
  /login    the login page
  /do       takes a post; `do` says what it answers
  /confirm  where the second form of the page behind a post leads
  /welcome, /moved, /done, /manage, /view, /link, /ad   pages that say no more than their name
  /slow     sends a page half, and the other half after `s` seconds; /hop goes on to itself until `n` is 200

Whoever posts must have been logged in. A page is UTF-8, or Shift_JIS with "cs=sjis" in its address or in /ctl.
"""

import base64
import http.server
import json
import secrets
import socket
import struct
import sys
import threading
import time
import urllib.parse

DEFAULTS = {
    "login": "off",       # "on": everybody is logged in; whatever is told, the logins so far are void
    "mode": "auto",       # who is not logged in gets at /post: auto (sent to /login), noform (a page without a form),
                          # oneform (with the search form alone), inline (with the login form alone), nocheck (the
                          # posting page without its field "check"), basic (401)
    "user": "writer", "password": "pa%ss+w&rd",
    "cookie": "lasting",  # or "session": the browser forgets the login at its end
    "after": "post",      # a login leads to post, welcome, refresh (a page that goes to /post by itself)
    "login_page": "name",  # index (fields without names), submit (nothing to click), upper (names in upper case)
    "v": "",              # of the posting page, words of PAGE_WORDS parted by commas; also in its address
    "cs": "utf8",
    "links": "30",        # so many are on the posting page
    "submitall": "on",    # and behind them one that posts by a script
    "confirm": "off",     # "on": /do answers a page with two forms
    "do": "ok",           # or 500 (with a page), 204, reset, alert, frame (one that ends before its page), hops (200
                          # pages one behind the other), endless
    "delay": "0",         # seconds before an answer
    "delayed": "/post,/login,/do,/confirm",
}
PAGE_WORDS = {
    "area",     # the title is a TEXTAREA
    "input",    # the body is an INPUT
    "names",    # the form is called "forms", its button "submit", the fields are spelt in upper case
    "frame",    # a frame ends a while before the page
    "busy",     # a frame goes 200 times to another page
    "many",     # 999 forms between the first and the posting one
    "alert",    # a box before the form is sent
    "editor",   # an editor stands for the body, and writes its own text into it before the form is sent
    "endless",  # the page never ends
    "multipart",
    "blank",    # the answer is to come in a window of its own, as the page's handler says at the last moment
    "base",     # the same, as the page says for all that it leads to
    "popup",    # another page comes in a window of its own before the form is sent
}
GENRES = ["一般", "旅", "本"]
NEVER = 600
HOPS = 200


class Blog:
    """What the service knows."""

    def __init__(self):
        self.lock = threading.Lock()
        self.restart()

    def restart(self):
        self.settings = dict(DEFAULTS)
        self.sessions = set()
        self.log = []

    def control(self, changes):
        with self.lock:
            if changes.pop("restart", None):
                self.restart()
            if unknown := changes.keys() - DEFAULTS.keys():
                raise ValueError(f"no such setting: {', '.join(sorted(unknown))}")
            if "login" in changes:
                self.sessions.clear()
            self.settings |= changes
            return dict(self.settings)

    def begin_session(self):
        with self.lock:
            session = secrets.token_hex(8)
            self.sessions.add(session)
            return session

    def add(self, line):
        with self.lock:
            self.log.append({"number": len(self.log) + 1} | line)

    def take_log(self, is_reset):
        with self.lock:
            lines = list(self.log)
            if is_reset:
                self.log.clear()
            return lines


def page(body, head="", title="Fake blog"):
    # The icon would be asked for whenever the browser has time for it.
    return f'<!DOCTYPE html><html><head><title>{title}</title><link rel="icon" href="data:,">{head}</head>' \
           f"<body>{body}</body></html>"


def marked(mark):
    return page(f'<p id="mark">{mark}</p>')


def refresh(address):
    return page("", f'<meta http-equiv="refresh" content="0;url={address}">')


SEARCH_FORM = """<form name="search" action="/search">
<input name="q"><input name="title"><textarea name="body"></textarea>
<input type="checkbox" name="draft" value="1"><input type="submit" name="post" value="search"></form>"""


def login_form(variant):
    """INPUT 0 to 3. What the page's handler has done stands in "handler", behind them."""
    name = {"index": lambda field: "", "upper": lambda field: f'name="{field.upper()}"'}.get(
        variant, lambda field: f'name="{field}"')
    # Fields without names get theirs when the form is sent by a click.
    naming = "this[1].name = 'id'; this[2].name = 'pass';" if variant == "index" else ""
    button = f'<input {name("in")}>' if variant == "submit" else f'<input type="submit" {name("in")} value="in">'
    return f"""<form action="/login" method="post" onsubmit="{naming} this[4].value = 'ran'">
<input type="hidden" {name("next")} value="of the page"><input {name("id")}><input type="password" {name("pass")}>
{button}
<input type="hidden" name="handler"></form>"""


def switch(name, before):
    """Two boxes of opposite sense, a pair of texts."""
    return f"""{before}<input type="checkbox" name="{name}" value="1"><input type="checkbox" name="no{name}" value="1">
<input name="{name}_yes" value="page"><input name="{name}_no" value="page">"""


def select(name, options, chosen):
    texts = "".join(f"<option{' selected' if text == chosen else ''}>{text}</option>" for text in options)
    return f'<select name="{name}">{texts}</select>'


def posting_form(words, has_check):
    """The INPUT tags are 4 to 26, those before are of the search form; the TEXTAREA tags begin with 1."""
    spare = '<input type="hidden" name="spare">'
    title = spare + '<textarea name="title"></textarea>' if "area" in words else '<input name="title">'
    body = '<input name="body">' if "input" in words else spare + '<textarea name="body"></textarea>'
    check = '<div><span></span></div><select name="check"><option>here</option></select>' if has_check else ""
    before = "alert('left?');" if "alert" in words else ""
    before += "this.body.value = ''; this.genre2.value = '';" if "editor" in words else ""
    before += "this.target = '_blank';" if "blank" in words else ""
    before += "window.open('/ad');" if "popup" in words else ""
    multipart = 'enctype="multipart/form-data"' if "multipart" in words else ""
    form = f"""<form id="entry" action="/do" method="post" {multipart} oninput="note(event)" onchange="note(event)"
 onsubmit="{before} document.getElementById('handler').value = 'ran'">
<input type="hidden" name="handler" id="handler">{title}{body}{check}
{select("genre", GENRES, "本")}<input type="hidden" name="genre2" value="page">
{switch("draft", '<input type="radio" name="state" value="public"><input type="radio" name="state" value="private">')}
{select("status", ["選択", "公開", "下書き"], "選択")}
{switch("comment", '<input type="hidden" name="comment" value="0">')}
{select("comments", ["選択", "受け付ける", "受け付けない"], "受け付けない")}
{switch("ping", "")}
<input type="image" name="post" alt="post" src="data:image/gif;base64,R0lGODlhAQABAAAAACw=">
<input type="submit" name="post" value="post"><input type="submit" name="save" id="save-draft" value="draft">
<textarea name="events"></textarea></form>"""
    if "names" in words:
        for name in ("title", "body"):
            form = form.replace(f'name="{name}"', f'name="{name.upper()}"')
        form = form.replace('id="entry"', 'name="forms"').replace('type="submit" name="post"',
                                                                  'type="submit" name="submit"')
    return form


SCRIPTS = """<script>
function note(event) {
    event.target.form.events.value += event.type + ' ' + event.target.name + ' ';
}
function ask(number) {
    document.getElementById('handler').form.title.value = 'asked too late';
    const request = new XMLHttpRequest();
    request.open('GET', '/link?n=' + number, false);
    request.send();
}
function submitAll() {
    const form = document.getElementById('handler').form;
    document.getElementById('handler').value = 'script link';
    HTMLFormElement.prototype.submit.call(form);
}
</script>"""


def posting_page(words, settings, has_check=True):
    """In two halves: a frame is whole before the second begins."""
    links = "".join(f'<a name="mark{n}">{n}</a><a href="javascript:ask({n})">link {n}</a>\n'
                    for n in range(1, int(settings["links"]) + 1))
    if settings["submitall"] == "on":
        links += '<a href="javascript:submitAll()">post</a>'
    others = "<form></form>" * 999 if "many" in words else ""
    frame = '<base target="answer">' if "base" in words else ""
    frame += '<iframe src="/ad"></iframe>' if "frame" in words else ""
    frame += '<iframe src="/hop?n=1"></iframe>' if "busy" in words else ""
    text = page(f"{frame}<!--half-->{SEARCH_FORM}{others}{posting_form(words, has_check)}{links}", SCRIPTS)
    return text.split("<!--half-->")


CONFIRM_PAGE = """<form action="/cancel" method="post"><input type="submit" name="ok" value="no"></form>
<form action="/confirm" method="post" onsubmit="this.handler.value = 'ran'"><input type="hidden" name="handler">
<input type="submit" name="ok" value="yes"></form>"""


def multipart_fields(content_type, body):
    boundary = b"--" + content_type.partition("boundary=")[2].encode()
    for part in body.split(boundary)[1:-1]:
        head, _, value = part.removeprefix(b"\r\n").partition(b"\r\n\r\n")
        yield head.partition(b'name="')[2].partition(b'"')[0], value.removesuffix(b"\r\n")


def fields_of(content_type, body):
    if content_type.startswith("multipart/form-data"):
        pairs = multipart_fields(content_type, body)
    else:
        halves = (pair.partition(b"=") for pair in body.split(b"&") if pair)
        pairs = ([urllib.parse.unquote_to_bytes(half.replace(b"+", b" ")) for half in (name, value)]
                 for name, _, value in halves)
    return [[name.decode("latin-1"), value.decode("latin-1")] for name, value in pairs]


class Handler(http.server.BaseHTTPRequestHandler):
    blog = Blog()

    def log_message(self, *arguments):
        pass

    def do_GET(self):
        self.serve(b"")

    def do_POST(self):
        self.serve(self.rfile.read(int(self.headers.get("Content-Length", 0))))

    def serve(self, body):
        self.path, _, self.query_text = self.path.partition("?")
        self.query = dict(urllib.parse.parse_qsl(self.query_text, keep_blank_values=True))
        try:
            if self.path in ("/ctl", "/log"):
                return getattr(self, f"serve_{self.path[1:]}")()
            self.settings = dict(self.blog.settings)
            self.session = self.headers.get("Cookie", "").partition("session=")[2].partition(";")[0]
            self.fields = fields_of(self.headers.get("Content-Type", ""), body)
            self.blog.add({"method": self.command, "path": self.path, "query": self.query_text, "fields": self.fields,
                           "user": self.settings["user"] if self.is_logged_in() else "",
                           "referer": self.headers.get("Referer", "")})
            if self.path in self.settings["delayed"].split(","):
                self.wait(float(self.settings["delay"]))
            handler = getattr(self, f"serve_{self.path[1:]}", None)
            if handler:
                handler()
            elif self.path in ("/welcome", "/done", "/manage", "/view", "/link", "/ad", "/search", "/cancel"):
                self.send(marked(self.path[1:]))
            else:
                self.send(marked("nothing here"), 404)
        except OSError:
            pass    # the browser has left

    def wait(self, seconds):
        """Ends early when nobody waits any more."""
        end = time.monotonic() + seconds
        while (left := end - time.monotonic()) > 0:
            self.connection.settimeout(left)
            try:
                if not self.connection.recv(1, socket.MSG_PEEK):
                    raise ConnectionError
            except TimeoutError:
                pass
        self.connection.settimeout(None)

    def encoded(self, text):
        return text.encode(self.charset(), "xmlcharrefreplace")

    def charset(self):
        return "cp932" if self.query.get("cs", self.settings["cs"]) == "sjis" else "utf-8"

    def begin(self, status=200, headers=()):
        self.send_response(status)
        self.send_header("Content-Type", f"text/html; charset={self.charset().replace('cp932', 'Shift_JIS')}")
        self.send_header("Cache-Control", "no-store")
        for name, value in headers:
            self.send_header(name, value)
        self.end_headers()

    def send(self, text, status=200, headers=()):
        self.begin(status, headers)
        self.wfile.write(self.encoded(text))

    def send_halves(self, first, second, pause=1.0):
        self.begin()
        self.wfile.write(self.encoded(first))
        self.wfile.flush()
        self.wait(pause)
        self.wfile.write(self.encoded(second))

    def go(self, address, headers=()):
        self.send("", 302, [("Location", address), *headers])

    # ---- who it is

    def is_logged_in(self):
        if self.settings["login"] == "on" or self.session in self.blog.sessions:
            return True
        kind, _, value = self.headers.get("Authorization", "").partition(" ")
        return kind == "Basic" and base64.b64decode(value).decode() == self.right_login()

    def right_login(self):
        return f'{self.settings["user"]}:{self.settings["password"]}'

    def serve_login(self):
        # Whatever they are called: by their places, as a browser sends them.
        sent = {name.lower(): value for name, value in self.fields}
        if self.command == "GET" or f'{sent.get("id")}:{sent.get("pass")}' != self.right_login():
            return self.send(page(login_form(self.query.get("v", self.settings["login_page"]))))
        lasting = "; Max-Age=31536000" if self.settings["cookie"] == "lasting" else ""
        cookie = [("Set-Cookie", f"session={self.blog.begin_session()}; Path=/{lasting}")]
        if self.settings["after"] == "refresh":
            self.send(refresh("/post"), headers=cookie)
        else:
            self.go(f'/{self.settings["after"]}', cookie)

    # ---- posting

    def serve_post(self):
        words = set(filter(None, self.query.get("v", self.settings["v"]).split(",")))
        if words - PAGE_WORDS:
            return self.send(marked("no such page"), 404)
        if self.is_logged_in():
            return self.send_posting_page(words)
        mode = self.settings["mode"]
        if mode == "auto":
            self.go("/login")
        elif mode == "basic":
            self.send(marked("401"), 401, [("WWW-Authenticate", 'Basic realm="Fake blog"')])
        elif mode == "nocheck":
            self.send("".join(posting_page(words, self.settings, has_check=False)))
        else:
            self.send(page({"noform": "<p>nothing</p>", "oneform": SEARCH_FORM,
                            "inline": login_form(self.settings["login_page"])}[mode]))

    def send_posting_page(self, words):
        first, second = posting_page(words, self.settings)
        if "endless" in words:
            self.send_halves(first + second, "", NEVER)
        elif "frame" in words:
            self.send_halves(first, second)
        else:
            self.send(first + second)

    def serve_do(self):
        answer = self.settings["do"]
        behind = page(CONFIRM_PAGE) if self.settings["confirm"] == "on" else marked("done")
        if not self.is_logged_in():
            self.send(marked("not logged in"), 403)
        elif answer == "500":
            self.send(page("<p>broken</p>" + CONFIRM_PAGE), 500)
        elif answer == "204":
            self.begin(204)
        elif answer == "reset":
            self.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
            self.close_connection = True
            self.connection.close()
        elif answer == "alert":
            self.send(page(CONFIRM_PAGE, "<script>alert('posted')</script>"))
        elif answer == "frame":
            first, body, second = behind.partition("<body>")
            self.send_halves(first + body + '<iframe src="/ad"></iframe>', second)
        elif answer == "hops":
            self.go("/hop?n=1")
        elif answer == "endless":
            self.send_halves(behind, "", NEVER)
        elif self.settings["confirm"] == "on":
            self.send(behind)
        else:
            self.go("/done")

    def serve_confirm(self):
        self.send(marked("confirmed"))

    # ---- pages that load oddly

    def serve_slow(self):
        first, second = page("<p>one</p><!--half--><p>two</p>").split("<!--half-->")
        self.send_halves(first, second, float(self.query.get("s", NEVER)))

    def serve_hop(self):
        number = int(self.query["n"])
        hop = f"onload = () => setTimeout(() => location.replace('/hop?n={number + 1}'))"
        self.send(page("", f"<script>{hop}</script>") if number < HOPS else marked("hopped"))

    # ---- for the tests

    def answer(self, text, status=200):
        self.send_response(status)
        self.end_headers()
        self.wfile.write(text.encode())

    def serve_ctl(self):
        try:
            self.answer(json.dumps(self.blog.control(self.query)))
        except ValueError as error:
            self.answer(str(error), 400)

    def serve_log(self):
        self.answer("".join(json.dumps(line) + "\n" for line in self.blog.take_log("reset" in self.query)))


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True
    request_queue_size = 64

    def handle_error(self, request, client_address):
        if not isinstance(sys.exc_info()[1], OSError):    # the browser has left
            super().handle_error(request, client_address)


def main():
    server = Server(("127.0.0.1", int(sys.argv[1]) if len(sys.argv) > 1 else 8090), Handler)
    print("ready", server.server_address[1], flush=True)
    if sys.argv[2:] == ["attached"]:
        threading.Thread(target=server.serve_forever, daemon=True).start()
        sys.stdin.buffer.read()
    else:
        server.serve_forever()


if __name__ == "__main__":
    main()
