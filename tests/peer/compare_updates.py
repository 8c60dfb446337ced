"""Holds the check for a newer program against the second one, event by event, over random offers and web servers.

    compare_updates.py --cli build/dev/velloria-cli --factory factory --seeds 1:100

Compared are the events, the exit code, the files in the program's folder and whether the updater ran. Exit code 1 on
any difference.
"""

import gzip
import json
import os
import random
import re
import shutil
import socketserver
import subprocess
import tempfile
import threading
import time

from compare_sites import put_file
from peer_text import Profile, encode_page
from peer_update import VERSION, Page, Run
from seeds import Difference, main

from patience import PATIENCE_SECONDS    # seeds knows the way there

HOST = "127.6.5.4"
UPDATER = b'#!/bin/sh\necho ran > "${0%/*}/mark"\n'
NEWER = ["2.2.1", "2.3", "3", "2.2.0a", "9.0.0", "新", "2.2.0 ", "é2"]
OLDER = ["2.2.0", "2.1.9", "2.10.0", "2.2", "", "10.0.0", "1.6.0", " 2.1"]
SIZES = [0, 1, 1023, 1024, 1025, 2048, 32766, 32767, 100000]
REFUSED_NAMES = ["", "../x.lzh", "a/b.lzh", "a\\b.lzh", "a..b", "endpoints.ini", "UserData", "VellUpdater.exe",
                 "update.txt", "/etc/x", "..", "Chimer.dll", "velluser.ini", "VELLUPTMP.EXE", "VellMemo.exe", "diary.mdb", "x.blg",
                 "a b", ".lzh", "c:v.lzh", "v.lzh.", "velloria-cli.exe"]
ARCHIVE_NAMES = ["v.lzh", "表.LZH", "a b.zip", "é.tar.gz", "Velloria23.exe", "velloria.deb"]
LINES = ["; 版の案内", "[Other]", "k=v", "", "ただの行", "[", "=x"]


class Site(socketserver.ThreadingTCPServer):
    """Sends what `answers` has for a path, byte for byte, and ends the connection."""

    daemon_threads = True

    def __init__(self):
        self.answers = {}
        super().__init__((HOST, 0), Answer)
        self.address = f"http://{HOST}:{self.server_address[1]}/"
        threading.Thread(target=self.serve_forever, args=(0.02,), daemon=True).start()


class Answer(socketserver.StreamRequestHandler):
    def handle(self):
        path = self.rfile.readline().split()[1].decode()
        while self.rfile.readline().strip():
            pass
        self.wfile.write(self.server.answers.get(path, b"HTTP/1.1 404 Not Found\r\nContent-Length: 5\r\n\r\nsorry"))


class RandomOffer:
    """The pages of a site, as bytes on the wire in `answers` and as a client sees them in `pages`."""

    def __init__(self, seed, address):
        draw = self.draw = random.Random(seed)
        self.address, self.answers, self.pages, self.kinds = address, {}, {}, {}
        self.replies = [draw.choice(["yes", "yes", "yes", "no"]) for _ in range(2)]
        self.has_updater, self.has_library = draw.random() < 0.8, draw.random() < 0.7
        self.folder = f"{address}{seed}/"
        self.name = draw.choice(REFUSED_NAMES if draw.random() < 0.15 else ARCHIVE_NAMES)
        # A file of the archive's name may lie there already: from an earlier check, or the user's own.
        self.earlier = self.name if self.name in ARCHIVE_NAMES and draw.random() < 0.3 else None
        self.is_users_own = draw.random() < 0.3
        urls = [self.folder + name for name in ("v.lzh", "missing.lzh", "x?y=z&a=%41")]
        for url in (urls[0], urls[2]):
            self.serve(url, draw.randbytes(draw.choice(SIZES)))
        self.url = draw.choice([urls[0]] * 12 + [urls[2]] * 4 + [urls[1], "", "ftp://127.6.5.4/x", "file:///etc/passwd",
                                f"http://{HOST}:1/x", "v.lzh", "http://"])
        self.pages.setdefault(urls[1], Page(b"", 404))
        text = self.text()
        if draw.random() < 0.1:
            text = b""
        self.serve(self.folder + "update.txt", text)

    def text(self):
        """The list of offers."""
        draw = self.draw
        lines = draw.sample(LINES, draw.randrange(4))
        for section in draw.sample(["Patch", "Release", "CurrentVersion"], draw.choice([1, 2, 2, 3, 3])):
            lines.append(draw.choice([f"[{section}]", f" [ {section} ] ", f"[{section.upper()}]"]))
            keys = {"version": draw.choice(NEWER * 3 + OLDER)}
            if section != "CurrentVersion":
                keys |= {"URL_Full": self.url, "FileName": self.name}
            if section == "Patch":
                keys["requiredversion"] = draw.choice(OLDER + NEWER[:2])
            for key, value in keys.items():
                if draw.random() < 0.95:
                    quote = draw.choice(["", "", "", "", '"', "'"])
                    lines.append(draw.choice([key, key.lower(), f" {key} "]) + "=" + quote + value + quote)
            lines += draw.sample(LINES[:1] + LINES[3:5], draw.randrange(2))
        content = b"".join(encode_page(line) + draw.choice([b"\r\n", b"\r\n", b"\r\n", b"\n"]) for line in lines)
        if draw.random() < 0.2:    # bytes that are no character
            content += draw.choice([b";\x81\r\n", b"; \xfc\xfc\x80\xa0\xfd\r\n", b";\xed\x40\xee\xfc", b"; \x81\xad"])
        return content

    def serve(self, url, content):
        self.answers["/" + url.removeprefix(self.address)], self.pages[url] = self.wire(url, content)

    def wire(self, url, content):
        kind = self.draw.choice(["plain"] * 28 + ["old", "chunked", "gzip", "short", "long", "broken chunk", "error",
                                                   "redirect", "loop", "no target", "no header end", "nothing", "words"])
        self.kinds[url] = kind
        length = b"Content-Length: %d\r\n" % len(content)
        head, gone = b"HTTP/1.1 200 OK\r\n", Page(None)
        if kind == "old":
            return b"HTTP/1.0 200 OK\r\n\r\n" + content, Page(content)
        if kind in ("chunked", "broken chunk"):
            pieces = [content[at:at + 1500] for at in range(0, len(content), 1500)]
            chunks = b"".join(b"%x\r\n%s\r\n" % (len(piece), piece) for piece in pieces)
            end = b"0\r\n\r\n" if kind == "chunked" else b"5\r\n"
            return head + b"Transfer-Encoding: chunked\r\n\r\n" + chunks + end, Page(content)
        if kind == "gzip":
            packed = gzip.compress(content)
            return head + b"Content-Encoding: gzip\r\nContent-Length: %d\r\n\r\n" % len(packed) + packed, Page(packed)
        if kind == "short":
            return head + length + b"\r\n" + content + b"more", Page(content)
        if kind == "long":
            return head + b"Content-Length: %d\r\n\r\n" % (len(content) + 9) + content, Page(content)
        if kind == "error":
            status = self.draw.choice([400, 403, 404, 410, 500, 503])
            return b"HTTP/1.1 %d No\r\n" % status + length + b"\r\n" + content, Page(content, status)
        if kind in ("redirect", "loop"):
            target = url + "-moved" if kind == "redirect" else url
            to = self.draw.choice([target, target.removeprefix(self.address.rstrip("/"))])
            answer = b"HTTP/1.1 %d Moved\r\nLocation: %s\r\nContent-Length: 4\r\n\r\nmove"
            answer %= (self.draw.choice([301, 302, 303, 307, 308]), to.encode())
            self.answers["/" + target.removeprefix(self.address)] = head + length + b"\r\n" + content
            return answer, Page(content) if kind == "redirect" else gone
        if kind == "no target":
            return b"HTTP/1.1 300 Multiple Choices\r\n" + length + b"\r\n" + content, Page(content)
        if kind == "no header end":
            return b"HTTP/1.1 200 OK\r\nContent-Le", gone
        if kind == "nothing":
            return b"", gone
        if kind == "words":
            return b"nobody\r\n" + content, gone
        return head + length + b"Connection: close\r\n\r\n" + content, Page(content)


class Trial:
    """A started home, and one check in it a seed."""

    def __init__(self, options, root, site):
        self.cli, self.root, self.site = os.path.abspath(options.cli), root, site
        self.home = os.path.join(root, "home")
        # A proxy of whoever runs this does not know the site.
        self.environment = {name: value for name, value in os.environ.items() if not name.lower().endswith("_proxy")}
        shutil.copytree(options.factory, self.home, ignore=shutil.ignore_patterns("velloria", "velloria-*", "*.dll"))
        if self.run_cli("start").returncode != 0:
            raise Difference("the start failed")
        self.factory = set(os.listdir(self.home))

    def run_cli(self, *words):
        return subprocess.run([self.cli, "--home", self.home, "--now", "2004/02/29 12:34:56", *words], timeout=300,
                              stdin=subprocess.DEVNULL, capture_output=True, cwd=self.root, env=self.environment)

    def compare(self, seed):
        offer = RandomOffer(seed, self.site.address)
        self.site.answers = offer.answers
        self.fill(offer)
        present = set(os.listdir(self.home))
        addresses = {"Software": self.site.address + "news", "UpdateFolder": offer.folder}
        earlier = set() if offer.is_users_own else {offer.earlier}
        run = Run(self.home, addresses, offer.pages, offer.replies, present, earlier)
        put_file(os.path.join(self.root, "answers.json"), json.dumps(offer.replies).encode())
        result = self.run_cli("--events", "--answers", os.path.join(self.root, "answers.json"), "update", "check")
        found = program_events(result.stderr)
        for number, (wanted, got) in enumerate(zip([*run.events, None], [*found, None])):
            if wanted != got:
                raise Difference(f"event {number}: expected {wanted}\n    found {got}\n    {offer.kinds}")
        if result.returncode != run.exit_code:
            raise Difference(f"exit code {result.returncode}, expected {run.exit_code}")
        self.compare_files(run, present)

    def fill(self, offer):
        """Only what this offer's home has."""
        for name in set(os.listdir(self.home)) - self.factory:
            os.remove(os.path.join(self.home, name))
        put_file(os.path.join(self.home, "endpoints.ini"), f"[Maker]\r\nSoftware={self.site.address}news\r\n"
                 f"UpdateFolder={offer.folder.rstrip('/') if offer.has_library else offer.folder}\r\n".encode())
        if offer.has_updater:
            put_file(os.path.join(self.home, "VellUpdater.exe"), UPDATER)
            put_file(os.path.join(self.home, "VellUpTmp.exe"), b"old")
        if offer.has_library:
            put_file(os.path.join(self.home, "UnLHA32.DLL"), b"")
        if offer.earlier:
            put_file(os.path.join(self.home, offer.earlier), b"earlier")
            if not offer.is_users_own:
                put_file(os.path.join(self.home, "update.lst"), encode_page(offer.earlier + "\r\n"))

    def compare_files(self, run, present):
        wanted = present | set(run.files)
        if run.launches:
            wanted.add("mark")
            self.wait_for("mark")
        names = set(os.listdir(self.home))
        if names != wanted:
            raise Difference(f"files {names ^ wanted} too many or missing")
        for name, content in run.files.items():
            with open(os.path.join(self.home, name), "rb") as file:
                found = file.read()
            if name == "update.txt":
                self.compare_offers(content, found)
            elif found != content:
                raise Difference(f"{name}: {len(found)} bytes differ from the {len(content)} of the server")
        if run.launches:
            with open(os.path.join(self.home, "VellUpTmp.exe"), "rb") as file:
                if file.read() != UPDATER:
                    raise Difference("VellUpTmp.exe is no fresh copy")

    def compare_offers(self, content, found):
        """The list as it came, with the program's version: nothing else was touched."""
        if Profile(os.path.join(self.home, "update.txt")).stored("CurrentVersion", "version") != VERSION:
            raise Difference("update.txt lacks the own version")
        lines = [re.split(rb"\r\n|\n", text) for text in (content, found)]
        missing = [line for line in lines[0] if line not in lines[1]]
        if len(missing) > 1 or (missing and b"version" not in missing[0].lower()):
            raise Difference(f"update.txt lost {missing}")

    def wait_for(self, name):
        until = time.monotonic() + PATIENCE_SECONDS
        while not os.path.exists(os.path.join(self.home, name)):
            if time.monotonic() > until:
                raise Difference(f"{name} did not come")
            time.sleep(0.01)


def program_events(text):
    """The events from the first page shown on, speeds taken out of them."""
    events = []
    for line in text.decode().splitlines():
        event = json.loads(line) if line.startswith("{") else {"event": "line"}
        kind = event["event"]
        if kind == "navigate":
            events = [(kind, event["url"])]
        elif kind == "progress":
            words = re.sub(r"\([0-9]+\.[0-9]kbps\)", "({speed}kbps)", event["text"])
            if events[-1][0] == kind and events[-1][2] in ("", words):
                events.pop()    # one piece of the window after the other
            events.append((kind, event["title"], words, event["ok"]))
        elif kind == "message":
            events.append((kind, *(event[key] for key in ("kind", "title", "text", "buttons", "answer"))))
        elif kind == "pointer":
            events.append((kind, event["shape"]))
        elif kind in ("status", "failure"):
            events.append((kind, event["text"]))
    return events


def main_over_one_home():
    with tempfile.TemporaryDirectory(prefix="velloria-peer-") as root:
        started = []

        def run_seed(options, seed):
            if not started:
                started.append(Trial(options, os.path.realpath(root), Site()))
            try:
                started[0].compare(seed)
                return None
            except Difference as difference:
                return str(difference)

        main("Compares the check for a newer program with the second one.", run_seed)


if __name__ == "__main__":
    main_over_one_home()
