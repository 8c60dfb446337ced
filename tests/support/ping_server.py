"""A ping server of the tests' own: what it answers is told by the path that is asked for.

    with PingServer() as server:
        server.url + "ok"
        server.calls            # of the asked paths: ("/ok", head, body)
"""

import base64
import contextlib
import pathlib
import socket
import ssl
import threading
import time

SAMPLES = pathlib.Path(__file__).parents[1] / "data" / "plugins" / "ping"
OK, FLERROR, FAULT = ((SAMPLES / f"response-{name}.xml").read_bytes() for name in ("ok", "flerror", "fault"))
LOGIN = b"Basic " + base64.b64encode("hanako:hi@mitsu".encode())


def answer(body, status="200 OK", *head):
    lines = [f"HTTP/1.1 {status}", "Content-Type: text/xml", f"Content-Length: {len(body)}", "Connection: close", *head]
    return "\r\n".join(lines).encode() + b"\r\n\r\n" + body


def moved(status, to):
    return answer(b"", status, f"Location: {to}")


def chunks(*pieces, end=b"0\r\n\r\n"):
    body = b"".join(b"%x\r\n%s\r\n" % (len(piece), piece) for piece in pieces)
    return b"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + body + end


def with_message(message, head=b"<?xml version=\"1.0\"?>"):
    return head + OK.split(b"?>", 1)[1].replace(b"Thanks for the ping.", message)


ANSWERS = {
    "ok": answer(OK),
    "flerror": answer(FLERROR),
    "fault": answer(FAULT),
    "http10": b"HTTP/1.0 200 OK\r\n\r\n" + OK,
    "continue": b"HTTP/1.1 100 Continue\r\n\r\n" + answer(OK),
    "chunked": chunks(OK[:50], OK[50:51], OK[51:]),
    "sjis": answer(with_message("受けました。ソ能表".encode("cp932"), b"<?xml version='1.0' encoding='Shift_JIS'?>")),
    "lines": answer(with_message(b"one\r\ntwo\tthree\n=== four")),
    "long": answer(with_message(b"x" * 100_000)),
    "status404": answer(b"<html>no</html>", "404 Not Found"),
    "status500": answer(FAULT, "500 Internal Server Error"),
    "status201": answer(OK, "201 Created"),
    "status204": b"HTTP/1.1 204 No Content\r\n\r\n",
    "html": answer(b"<!DOCTYPE html><html><body>flerror 0</body></html>"),
    "words": answer(b"OK"),
    "empty": answer(b""),
    "no_flag": answer(OK.replace(b"flerror", b"other")),
    "half_xml": answer(OK[:-20]),
    "bomb": answer(b"<?xml version=\"1.0\"?><!DOCTYPE a [<!ENTITY a \"aaaa\"><!ENTITY b \"" + b"&a;" * 1000 + b"\">]>" +
                   with_message(b"&b;", b"")),
    "outside": answer(b"<?xml version=\"1.0\"?><!DOCTYPE a [<!ENTITY a SYSTEM \"file:///etc/hostname\">]>" +
                      with_message(b"&a;", b"")),
    "nothing": b"",
    "no_http": OK,
    "cut": answer(OK)[:-60],
    "broken_chunk": chunks(OK[:50], end=b"zz\r\nnonsense"),
    "cut_chunk": chunks(OK, end=b""),
    "huge": answer(with_message(b"x" * (2 << 20))),
    "moved301": moved("301 Moved Permanently", "/ok"),
    "moved302": moved("302 Found", "/flerror"),
    "moved307": moved("307 Temporary Redirect", "ok"),
    "moved308": moved("308 Permanent Redirect", "/ok"),
    "loop": moved("302 Found", "/loop"),
    "to_file": moved("302 Found", "file:///etc/hostname"),
    "to_ftp": moved("302 Found", "ftp://127.0.0.1/x"),
    "to_nowhere": answer(b"", "302 Found"),
}


class PingServer:
    """Serves as long as the `with` around it. `certificate` is a file with key and certificate."""

    def __init__(self, certificate=None):
        self.calls = []
        self.at_once = self.most_at_once = self.expected_at_once = 0
        self.lock = threading.Condition()
        self.is_ending = threading.Event()
        self.context = None
        if certificate:
            self.context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
            self.context.load_cert_chain(certificate)

    def __enter__(self):
        self.listener = socket.create_server(("127.0.0.1", 0), backlog=2000)
        self.port = self.listener.getsockname()[1]
        self.url = f"{'https' if self.context else 'http'}://127.0.0.1:{self.port}/"
        threading.Thread(target=self.run, daemon=True).start()
        return self

    def __exit__(self, *_):
        self.is_ending.set()
        self.listener.shutdown(socket.SHUT_RDWR)
        self.listener.close()

    def run(self):
        while True:
            try:
                connection, _ = self.listener.accept()
            except OSError:
                return
            threading.Thread(target=self.serve, args=(connection,), daemon=True).start()

    def serve(self, connection):
        with contextlib.suppress(OSError), connection:
            connection.settimeout(60)
            if not self.context:
                self.answer(connection)
                connection.shutdown(socket.SHUT_WR)
                return
            with self.context.wrap_socket(connection, server_side=True) as encrypted:
                self.answer(encrypted)

    def answer(self, connection):
        head, body = self.read(connection)
        path = head.split(b" ")[1].decode()
        with self.lock:
            self.calls.append((path, head, body))
        self.speak(connection, path.strip("/").split("?")[0], head)

    @contextlib.contextmanager
    def counted(self):
        """One of those that wait for an answer at the same time."""
        with self.lock:
            self.at_once += 1
            self.most_at_once = max(self.most_at_once, self.at_once)
            self.lock.notify_all()
        try:
            yield
        finally:
            with self.lock:
                self.at_once -= 1

    def take_time(self):
        """Is over before its answer goes: whoever has one may call again at once. A slow machine is given the time to bring
        as many as the test expects."""
        with self.counted():
            with self.lock:
                self.lock.wait_for(lambda: self.most_at_once >= self.expected_at_once, 5)
            time.sleep(0.02)

    @staticmethod
    def read(connection):
        data = b""
        while b"\r\n\r\n" not in data:
            piece = connection.recv(65536)
            if not piece or not b"POST ".startswith((data + piece)[:5]):
                raise OSError("gone, or no call")
            data += piece
        head, _, body = data.partition(b"\r\n\r\n")
        sizes = [int(line.split(b":")[1]) for line in head.lower().split(b"\r\n") if line.startswith(b"content-length:")]
        while len(body) < sum(sizes):
            body += connection.recv(65536)
        return head, body

    def speak(self, connection, what, head):
        if what in ANSWERS:
            connection.sendall(ANSWERS[what])
        elif what == "silent":
            with self.counted():
                connection.recv(1)    # until nobody waits any more
        elif what == "drip":      # always something, and never an end
            connection.sendall(b"HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\n\r\n")
            while not self.is_ending.wait(0.2):
                connection.sendall(b"<")
        elif what == "endless_head":
            connection.sendall(b"HTTP/1.1 200 OK\r\n")
            while not self.is_ending.wait(0.01):
                connection.sendall(b"X-More: and more\r\n")
        elif what == "login":
            allowed = b"authorization: " + LOGIN.lower() in head.lower()
            connection.sendall(answer(OK) if allowed else answer(b"", "401 Unauthorized", "WWW-Authenticate: Basic"))
        elif what == "echo":      # the address with its login comes back, as some servers do
            connection.sendall(answer(FLERROR.replace(b"The URL", b"http://hanako:hi%40mitsu@a/ hi@mitsu")))
        else:                     # a server that takes its time
            self.take_time()
            connection.sendall(answer(OK))
