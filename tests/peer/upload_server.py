"""A small FTP server with its tree in memory, which can be told to misbehave.

Names and paths are bytes, as they come. A fault is a dictionary: `verb`, optionally `name` (bytes) and `after` (how many
matching commands pass before it fires; it then stays), and `do`:

    refuse       answers `code` with `words`; a STOR so refused opens no data connection
    end_refuse   takes the data, stores nothing, answers `code` with `words`
    cut          closes the control connection without an answer
    cut_data     reads `bytes` of the data, closes both data connection and control connection
    no_reply     takes the data, then closes the control connection without the final reply
    silent       takes the data, then never answers
    lie          answers the text `reply` in place of a true SIZE

`cut_at` closes the control connection at the command of that number (0 is the first), whatever it is.
"""

import ctypes
import fcntl
import functools
import os
import posixpath
import socket
import struct
import threading

TIMEOUT = 40


@functools.cache
def own_network():
    """The number of a network that no other of these programs has, as long as this one lives, and what holds it."""
    for attempt in range(250):
        number = (os.getpid() + attempt) % 250
        claim = socket.socket(socket.AF_UNIX)
        try:
            claim.bind(f"\0velloria-tests-127.7.{number}")    # a name without a file, gone with its holder
            return number, claim
        except OSError:
            claim.close()
    raise RuntimeError("250 other programs serve at the same time")


def address_of(number):
    """One of 250 addresses of this program alone."""
    return f"127.7.{own_network()[0]}.{number % 250 + 1}"


def can_serve():
    """Where port 21 is another server's on all addresses, or root's alone, this goes to a network of its own."""
    return can_open_port() or (enter_own_network() and can_open_port())


def can_open_port():
    try:
        socket.create_server((address_of(0), 21)).close()
        return True
    except OSError:
        return False


def enter_own_network():
    """False where the system gives none. Who is not root is root in there, with no more rights outside."""
    new_user, new_network, set_flags, up = 0x10000000, 0x40000000, 0x8914, 1
    user, group = os.geteuid(), os.getegid()
    if ctypes.CDLL(None).unshare(new_network | (new_user if user else 0)) != 0:
        return False
    try:
        if user:
            for name, text in (("setgroups", "deny"), ("uid_map", f"0 {user} 1"), ("gid_map", f"0 {group} 1")):
                with open(f"/proc/self/{name}", "w", encoding="ascii") as file:
                    file.write(text)
        with socket.socket() as any_socket:
            fcntl.ioctl(any_socket, set_flags, struct.pack("16sH14x", b"lo", up))
    except OSError:
        return False
    return True


class UploadServer(threading.Thread):
    waits_for_sessions = True

    def __init__(self, address, tree, features=(), user="u", password="p", login=b"/", faults=(), greeting=None,
                 codec="utf-8", long_replies=False, cut_at=None):
        """`tree` maps a path to the content of a file, or None for a folder. Features: MLST, SIZE, FEAT, PWD."""
        super().__init__(daemon=True)
        self.tree = dict(tree)
        self.tree.setdefault(b"/", None)
        self.features = set(features)
        self.account = (user.encode("cp932"), password.encode("cp932"))
        self.login, self.faults, self.codec = login, list(faults), codec
        self.greeting = greeting or b"220 ready\r\n"
        self.long_replies, self.cut_at = long_replies, cut_at
        self.commands = []
        self.logins = 0
        self.on_command = lambda count: None    # called with the number of the command
        self.listener = socket.create_server((address, 21), backlog=8)
        self.open_sockets = []
        self.sessions = []
        self.is_stopping = False

    def run(self):
        while not self.is_stopping:
            try:
                control, _ = self.listener.accept()
            except OSError:
                return
            control.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
            self.open_sockets.append(control)
            self.sessions.append(threading.Thread(target=self.serve, args=(control,), daemon=True))
            self.sessions[-1].start()

    def stop(self):
        self.is_stopping = True
        self.listener.shutdown(socket.SHUT_RDWR)    # a close alone does not wake who waits for a client
        self.join()
        self.listener.close()
        for each in self.open_sockets:
            try:
                each.shutdown(socket.SHUT_RDWR)
            except OSError:
                pass
            each.close()
        # What came before a client's sudden end may still be on its way into the tree.
        for each in self.sessions if self.waits_for_sessions else ():
            each.join()

    def serve(self, control):
        session = self.session(self, control)
        try:
            session.run()
        except OSError:
            pass
        finally:
            control.close()
            session.close_passive()


class Hangup(OSError):
    pass


class Session:
    def __init__(self, server, control):
        self.server, self.control = server, control
        self.cwd = server.login
        self.user = None
        self.is_in = False
        self.is_text = True
        self.passive = self.active = None
        self.counts = {}

    def run(self):
        self.control.settimeout(TIMEOUT * 10)
        if self.server.cut_at == 0:
            raise Hangup
        self.control.sendall(self.server.greeting)
        pending = b""
        while True:
            while b"\r\n" not in pending:
                piece = self.control.recv(65536)
                if not piece:
                    return
                pending += piece
            line, pending = pending.split(b"\r\n", 1)
            verb, _, name = line.partition(b" ")
            verb = verb.decode("ascii", "replace").upper()
            self.server.commands.append((verb, name))
            self.server.on_command(len(self.server.commands))
            if self.server.cut_at is not None and len(self.server.commands) >= self.server.cut_at:
                raise Hangup
            if verb == "QUIT":
                self.reply(221, "bye")
                return
            self.answer(verb, name)

    def reply(self, code, words):
        lines = words.split("\n")
        if self.server.long_replies and len(lines) == 1:
            lines = ["first", "", words]
        text = "".join(f"{code}-{line}\r\n" if i == 0 else f" {line}\r\n" for i, line in enumerate(lines[:-1]))
        self.control.sendall((text + f"{code} {lines[-1]}\r\n").encode(self.server.codec))

    def fault(self, verb, name):
        for number, fault in enumerate(self.server.faults):
            if fault["verb"] == verb and fault.get("name", name) == name:
                self.counts[number] = self.counts.get(number, 0) + 1
                if self.counts[number] > fault.get("after", 0):
                    return fault
        return {"do": None}

    def path(self, name):
        return posixpath.normpath(posixpath.join(self.cwd, name)).replace(b"//", b"/")

    def answer(self, verb, name):
        fault = self.fault(verb, name)
        if fault["do"] == "cut":
            raise Hangup
        if fault["do"] == "refuse":
            return self.reply(fault["code"], fault["words"])
        if fault["do"] == "lie":
            return self.control.sendall(fault["reply"])
        if verb not in ("USER", "PASS", "FEAT", "AUTH") and not self.is_in:
            return self.reply(530, "log in first")
        handler = getattr(self, "do_" + verb, None)
        if verb in ("MLST", "SIZE", "FEAT", "PWD") and verb not in self.server.features or not handler:
            return self.reply(502, "no such command")
        return handler(name, fault)

    def do_USER(self, name, _):
        self.user = name
        self.reply(331, "password")

    def do_PASS(self, name, _):
        if (self.user, name) != self.server.account:
            return self.reply(530, "wrong")
        self.is_in = True
        self.server.logins += 1
        self.reply(230, "in")

    def do_FEAT(self, *_):
        lines = [f" {name}\r\n" for name in sorted(self.server.features - {"FEAT", "PWD"})]
        self.control.sendall(f"211-Features:\r\n{''.join(lines)}211 End\r\n".encode())

    def do_PWD(self, *_):
        self.control.sendall(b'257 "' + self.cwd.replace(b'"', b'""') + b'" here\r\n')

    def do_NOOP(self, *_):
        self.reply(200, "ok")

    def do_SYST(self, *_):
        self.reply(215, "UNIX Type: L8")

    def do_TYPE(self, name, _):
        self.is_text = name[:1].upper() == b"A"
        self.reply(200, "type")

    def do_CWD(self, name, _):
        path = self.path(name)
        if self.server.tree.get(path, b"") is not None:
            return self.reply(550, "no such folder")
        self.cwd = path
        self.reply(250, "moved")

    def do_MKD(self, name, _):
        path = self.path(name)
        if path in self.server.tree or self.server.tree.get(posixpath.dirname(path), b"") is not None:
            return self.reply(550, "cannot make it")
        self.server.tree[path] = None
        self.control.sendall(b'257 "' + path + b'" made\r\n')

    def do_DELE(self, name, _):
        if self.server.tree.get(self.path(name)) is None:
            return self.reply(550, "no such file")
        del self.server.tree[self.path(name)]
        self.reply(250, "gone")

    def do_SIZE(self, name, _):
        content = self.server.tree.get(self.path(name))
        if content is None or self.is_text:
            return self.reply(550, "no such file")
        self.reply(213, str(len(content)))

    def do_MLST(self, name, _):
        path = self.path(name)
        if path not in self.server.tree:
            return self.reply(550, "no such thing")
        kind = b"dir" if self.server.tree[path] is None else b"file"
        self.control.sendall(b"250-here\r\n type=" + kind + b"; " + path + b"\r\n250 end\r\n")

    def do_PASV(self, *_):
        host = self.listen()
        port = self.passive.getsockname()[1]
        self.control.sendall(f"227 Go ({host.replace('.', ',')},{port >> 8},{port & 255})\r\n".encode())

    def do_EPSV(self, *_):
        self.listen()
        self.control.sendall(f"229 Go (|||{self.passive.getsockname()[1]}|)\r\n".encode())

    def listen(self):
        host = self.control.getsockname()[0]
        self.close_passive()
        self.passive = socket.create_server((host, 0))
        self.passive.settimeout(TIMEOUT)
        self.active = None
        return host

    def close_passive(self):
        if self.passive:
            self.passive.close()
        self.passive = None

    def do_PORT(self, name, _):
        parts = name.decode().split(",")
        self.active = (".".join(parts[:4]), int(parts[4]) << 8 | int(parts[5]))
        self.close_passive()
        self.reply(200, "port")

    def do_EPRT(self, name, _):
        _, _, host, port, _ = name.decode().split("|")
        self.active = (host, int(port))
        self.close_passive()
        self.reply(200, "port")

    def open_data(self):
        if self.passive:
            self.reply(150, "go")
            data, _ = self.passive.accept()
        elif self.active:
            self.reply(150, "go")
            data = socket.create_connection(self.active, TIMEOUT)
        else:
            return self.reply(425, "no data connection")
        self.close_passive()
        self.active = None
        data.settimeout(TIMEOUT)
        self.server.open_sockets.append(data)
        return data

    def do_LIST(self, name, _):
        data = self.open_data()
        if not data:
            return
        shown = [self.path(name)] if name else [path for path in self.server.tree
                                                if posixpath.dirname(path) == self.cwd and path != b"/"]
        for path in shown:
            content = self.server.tree.get(path)
            if content is not None or not name:
                kind = b"drwxr-xr-x" if content is None else b"-rw-r--r--"
                shown_name = name or posixpath.basename(path)
                data.sendall(b"%s 1 u g %9d Jan  1  2004 %s\r\n" % (kind, len(content or b""), shown_name))
        data.close()
        self.reply(226, "listed")

    def do_STOR(self, name, fault):
        path = self.path(name)
        if self.server.tree.get(path, b"") is None or self.server.tree.get(posixpath.dirname(path), b"") is not None:
            return self.reply(553, "not a file")
        data = self.open_data()
        if not data:
            return
        left = fault["bytes"] if fault["do"] == "cut_data" else None
        content = b""
        while left is None or len(content) < left:
            piece = data.recv(65536 if left is None else min(65536, left - len(content)))
            if not piece:
                break
            content += piece
        data.close()
        if fault["do"] in ("cut_data", "no_reply"):
            raise Hangup
        if fault["do"] == "silent":
            self.control.recv(1)
            raise Hangup
        if fault["do"] == "end_refuse":
            return self.reply(fault["code"], fault["words"])
        self.server.tree[path] = content
        self.reply(226, "stored")


UploadServer.session = Session
