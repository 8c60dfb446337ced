#!/usr/bin/env python3
"""An FTP server that misbehaves on demand: fault_server.py PORT ROOT RULES LOG

It serves ROOT. RULES is a JSON file that is read again for every command; a key is a command ("GREETING" for the start),
a value says what happens instead of the right thing:
  reply   raw text of the answer           stall   true: no answer, ever         cut  true: the connection ends
  after   how many of them go well first
of STOR also: stop_at N and then "cut" or "stall"; "silent": true takes all and never confirms; "reply_after": the last
answer. "features" lists what FEAT tells, "pasv" the answer to PASV with another address in it. "certificate" names a
file with key and certificate: AUTH begins encryption then, and "clear" lets the files go without it all the same.
LOG gets a line a connection and a command.

Once it serves it says "ready" and its address, which no other server has at that time. PORT may be "proxy" for who must
not open port 21: the address is reached through a SOCKS proxy then, on a port that stands behind it."""

import errno
import json
import os
import pathlib
import random
import socket
import ssl
import sys
import threading
import time

port, root, rules_file, log_file = sys.argv[1:]
root = os.fsencode(root)
log_lock = threading.Lock()


def log(line):
    with log_lock, open(log_file, "ab") as out:
        out.write(line + b"\n")


class Gone(Exception):
    pass


class Session:
    def __init__(self, connection):
        self.control = connection
        self.file = connection.makefile("rb")
        self.directory = b"/"
        self.type = b"A"
        self.listener = None
        self.active = None
        self.counts = {}
        self.is_protected = False

    def say(self, text):
        self.control.sendall(text if isinstance(text, bytes) else text.encode("utf-8", "surrogateescape"))

    def setting(self, name, when_missing=None):
        return json.loads(pathlib.Path(rules_file).read_text()).get(name, when_missing)

    def rule(self, command):
        rule = self.setting(command)
        if not isinstance(rule, dict):
            return {}
        count = self.counts[command] = self.counts.get(command, 0) + 1
        return rule if count > rule.get("after", 0) else {}

    def misbehave(self, rule):
        """True when the command has been answered."""
        if "reply" in rule:
            self.say(rule["reply"])
        if rule.get("repeat"):
            for _ in range(rule["repeat"]):
                self.say(rule["line"])
            self.say(rule["end"])
        if rule.get("cut"):
            raise Gone
        if rule.get("stall"):
            time.sleep(120)
            raise Gone
        return "reply" in rule or "repeat" in rule

    def place(self, name):
        path = name if name.startswith(b"/") else self.directory.rstrip(b"/") + b"/" + name
        return os.path.normpath(path)

    def disk(self, name):
        return root + self.place(name)

    def data(self):
        if self.listener:
            connection, _ = self.listener.accept()
            self.listener.close()
            self.listener = None
        else:
            connection = socket.socket()
            connection.bind((address, 0))
            connection.connect(self.active)
        return self.encrypted(connection) if self.is_protected and not self.setting("clear") else connection

    def encrypted(self, connection):
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(self.setting("certificate"))
        return context.wrap_socket(connection, server_side=True)

    def run(self):
        if not self.misbehave(self.rule("GREETING")):
            self.say("220 ready\r\n")
        while True:
            line = self.file.readline()
            if not line:
                raise Gone
            line = line.rstrip(b"\r\n")
            log(line)
            command, _, argument = line.partition(b" ")
            command = command.decode().upper()
            rule = self.rule(command)
            if "stop_at" not in rule and "silent" not in rule and "reply_after" not in rule and self.misbehave(rule):
                continue
            handler = getattr(self, "do_" + command, None)
            if handler is None:
                self.say("502 not here\r\n")
            else:
                handler(argument, rule)

    def do_USER(self, argument, rule):
        self.say("331 password\r\n")

    def do_PASS(self, argument, rule):
        self.say("230 in\r\n")

    def do_AUTH(self, argument, rule):
        if not self.setting("certificate"):
            return self.say("502 not here\r\n")
        self.say("234 go on\r\n")
        self.control = self.encrypted(self.control)
        self.file = self.control.makefile("rb")

    def do_PBSZ(self, argument, rule):
        self.say("200 size\r\n")

    def do_PROT(self, argument, rule):
        self.is_protected = argument == b"P"
        self.say("200 protected\r\n")

    def do_PWD(self, argument, rule):
        self.say(b'257 "' + self.directory.replace(b'"', b'""') + b'" is current\r\n')

    def do_NOOP(self, argument, rule):
        self.say("200 ok\r\n")

    def do_TYPE(self, argument, rule):
        self.type = argument
        self.say("200 type\r\n")

    def do_CWD(self, argument, rule):
        if not os.path.isdir(self.disk(argument)):
            return self.say("550 no such directory\r\n")
        self.directory = self.place(argument)
        self.say("250 moved\r\n")

    def do_MKD(self, argument, rule):
        try:
            os.mkdir(self.disk(argument))
            self.say("257 made\r\n")
        except OSError:
            self.say("550 can't make it\r\n")

    def do_DELE(self, argument, rule):
        try:
            os.remove(self.disk(argument))
            self.say("250 deleted\r\n")
        except OSError:
            self.say("550 can't delete it\r\n")

    def do_SIZE(self, argument, rule):
        if self.type != b"I":
            return self.say("550 SIZE not allowed in ASCII mode\r\n")
        if not os.path.isfile(self.disk(argument)):
            return self.say("550 no such file\r\n")
        self.say("213 %d\r\n" % os.path.getsize(self.disk(argument)))

    def do_REST(self, argument, rule):
        self.say("350 ok\r\n")

    def do_FEAT(self, argument, rule):
        features = self.setting("features")
        if features is None:
            return self.say("500 what?\r\n")
        self.say("211-Features:\r\n" + "".join(" %s\r\n" % f for f in features) + "211 End\r\n")

    def do_MLST(self, argument, rule):
        if not os.path.isdir(self.disk(argument)):
            return self.say("550 no such thing\r\n")
        self.say(b"250-Begin\r\n type=dir; " + argument + b"\r\n250 End\r\n")

    def do_PASV(self, argument, rule):
        self.listener = socket.socket()
        self.listener.bind((address, 0))
        self.listener.listen(1)
        number = self.listener.getsockname()[1]
        shown = self.setting("pasv", address)
        self.say("227 here (%s,%d,%d)\r\n" % (shown.replace(".", ","), number >> 8, number & 255))

    def do_PORT(self, argument, rule):
        parts = argument.decode().split(",")
        self.active = (".".join(parts[:4]), int(parts[4]) * 256 + int(parts[5]))
        self.say("200 port\r\n")

    def do_LIST(self, argument, rule):
        names = sorted(os.listdir(root + self.directory))
        if argument:
            names = [n for n in names if n == argument]
        self.say("150 list\r\n")
        with self.data() as connection:
            if not argument:
                connection.sendall(b"total 1\r\n")
            for name in names:
                connection.sendall(self.shown(name) + b"\r\n")
        self.say("226 done\r\n")

    def shown(self, name):
        path = root + self.directory.rstrip(b"/") + b"/" + name
        if os.path.islink(path):
            return b"lrwxrwxrwx 1 u u 1 Jan 1 00:00 " + name + b" -> " + os.readlink(path)
        return b"-rw-r--r-- 1 u u 1 Jan 1 00:00 " + name

    def do_STOR(self, argument, rule):
        try:
            out = open(self.disk(argument), "wb")
        except OSError:
            return self.say("553 can't write it\r\n")
        self.say("150 send\r\n")
        with out, self.data() as connection:
            taken = 0
            while True:
                piece = connection.recv(65536)
                if not piece:
                    break
                out.write(piece)
                taken += len(piece)
                if taken >= rule.get("stop_at", 1 << 62):
                    if rule.get("refuse"):
                        break
                    self.misbehave(rule)
        if rule.get("silent"):
            time.sleep(120)
        self.say(rule.get("reply_after", "226 done\r\n"))

    def do_QUIT(self, argument, rule):
        self.say("221 bye\r\n")
        raise Gone


def serve(connection):
    log(b"connected")
    session = Session(connection)
    try:
        session.run()
    except (Gone, OSError):
        pass
    session.control.close()


def pass_on(source, target):
    try:
        while piece := source.recv(65536):
            target.sendall(piece)
        target.shutdown(socket.SHUT_WR)
    except OSError:
        pass


def proxy(client):
    """SOCKS, version 5, without a login: CONNECT to an address or name. Port 21 is that of the server here."""
    def take(count):
        return client.recv(count, socket.MSG_WAITALL)

    take(take(2)[1])
    client.sendall(b"\5\0")
    kind = take(4)[3]
    take(4 if kind == 1 else take(1)[0])
    wanted = int.from_bytes(take(2), "big")
    try:
        target = socket.create_connection((address, listener.getsockname()[1] if wanted == 21 else wanted))
    except OSError:
        client.close()
        return
    client.sendall(b"\5\0\0\1" + bytes(6))
    threading.Thread(target=pass_on, args=(target, client), daemon=True).start()
    pass_on(client, target)


def listen(address, port):
    listener = socket.socket()
    listener.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
    listener.bind((address, port))
    listener.listen(16)
    return listener


def accept_all(listener, handler):
    while True:
        accepted, _ = listener.accept()
        threading.Thread(target=handler, args=(accepted,), daemon=True).start()


def listen_where_nobody_does(port):
    for tries_left in reversed(range(1000)):    # somebody may hold the port on every address
        number = random.randrange(250 * 250)
        try:
            return listen(f"127.5.{number // 250}.{number % 250 + 1}", port)
        except OSError as error:
            if error.errno != errno.EADDRINUSE or not tries_left:
                raise


listener = listen_where_nobody_does(0 if port == "proxy" else int(port))
address = listener.getsockname()[0]
if port == "proxy":
    door = listen(address, 0)
    threading.Thread(target=accept_all, args=(door, proxy), daemon=True).start()
    print("ready", address, door.getsockname()[1], flush=True)
else:
    print("ready", address, flush=True)
accept_all(listener, serve)
