"""Real servers on addresses of their own, each for one test in a folder of its own.

The variable VELLORIA_SERVERS names the folder that scripts/fetch-servers has filled. Port 21 needs root.
"""

import contextlib
import fcntl
import glob
import os
import signal
import socket
import subprocess
import sys
import time
import unittest

for folder in ("peer", "support"):
    sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", folder))

from patience import PATIENCE_SECONDS
from upload_server import can_serve

SERVERS = os.environ.get("VELLORIA_SERVERS", "")
LOCK = "/tmp/velloria-servers.lock"  # the same for everybody, wherever their temporary files lie
NOBODY = 65534


def require_servers():
    """Skips the module where the servers can't run, else has them to itself until its end."""
    if os.geteuid() != 0:
        raise unittest.SkipTest("only root may serve port 21")
    if not can_serve():    # another server of this machine may have all addresses
        raise unittest.SkipTest("port 21 is another server's")
    if not os.path.exists(os.path.join(SERVERS, "complete")):
        raise unittest.SkipTest("scripts/fetch-servers has not been able to fetch the servers")
    try:
        socket.socket(socket.AF_PACKET, socket.SOCK_DGRAM).close()
    except PermissionError:
        raise unittest.SkipTest("what travels can't be watched here") from None
    unittest.enterModuleContext(alone())


@contextlib.contextmanager
def alone():
    """Keeps whoever else wants to start these servers waiting."""
    with open(LOCK, "w") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        with guard(lock):
            yield


def program(*path):
    return os.path.join(SERVERS, *path)


def environment():
    """The path of a server's libraries, and nothing else of whoever runs the tests."""
    folders = [folder for path in ("lib", "usr/lib") for folder in glob.glob(program("together", path, "*-linux-gnu*"))]
    return {"PATH": os.environ.get("PATH", os.defpath), "LD_LIBRARY_PATH": ":".join(folders)}


def processes():
    """Parent and session of every process."""
    found = {}
    for path in glob.glob("/proc/[0-9]*/stat"):
        with contextlib.suppress(OSError), open(path, encoding="utf-8", errors="replace") as file:
            fields = file.read().rsplit(")", 1)[1].split()
            found[int(path.split("/")[2])] = int(fields[1]), int(fields[3])
    return found


def family(leader):
    """Whoever descends from the process or is of its session."""
    found, everyone = {leader}, processes()
    while more := {pid for pid, (parent, session) in everyone.items()
                   if (parent in found or session == leader) and pid not in found}:
        found |= more
    return found


def end(leader):
    """Ends the process and all that came of it."""
    for how in (signal.SIGSTOP, signal.SIGKILL):  # none of them sees another one end
        for pid in family(leader):
            with contextlib.suppress(ProcessLookupError):
                os.kill(pid, how)


GUARD = None


@contextlib.contextmanager
def guard(*kept):
    """A process that ends the servers when the test program is killed. Files of `kept` stay open until then."""
    global GUARD
    with subprocess.Popen([sys.executable, "-B", "-c", "import servers; servers.stand_guard()"], stdin=subprocess.PIPE,
                          cwd=os.path.dirname(os.path.abspath(__file__)), start_new_session=True, text=True,
                          pass_fds=[file.fileno() for file in kept]) as process:
        GUARD = process.stdin
        try:
            yield
        finally:
            GUARD = None


def stand_guard():
    """Hears of every server that starts, and of its end by the number below 0."""
    running = set()
    for line in sys.stdin:
        leader = int(line)
        if leader > 0:
            running.add(leader)
        else:
            running.discard(-leader)
    for leader in running:
        end(leader)


def tell_guard(number):
    if GUARD:
        print(number, file=GUARD, flush=True)


class Server:
    """A server that runs as long as the `with` around it. What it serves to its user lies in `root`, what it has
    logged in the text `log`."""

    address = port = None

    def __init__(self, work):
        self.work = work
        self.root = self.path("root")
        os.chmod(work, 0o755)
        os.makedirs(self.root)
        self.process = None

    def path(self, name):
        return os.path.join(self.work, name)

    def write(self, name, text, mode=0o600):
        path = self.path(name)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        os.chmod(path, mode)
        return path

    def command(self):
        raise NotImplementedError

    def environment(self):
        return environment()

    def __enter__(self):
        self.start()
        return self

    def start(self):
        """Begins to serve, once more after a stop."""
        self.output = open(self.path("output"), "ab")
        self.process = subprocess.Popen(
            self.command(), cwd=self.work, start_new_session=True, stdin=subprocess.DEVNULL, stdout=self.output,
            stderr=subprocess.STDOUT, env=self.environment())
        tell_guard(self.process.pid)
        try:
            self.wait()
        except BaseException:
            self.stop()
            raise

    def __exit__(self, *_):
        self.stop()

    def wait(self):
        deadline = time.monotonic() + PATIENCE_SECONDS
        while True:
            if self.process.poll() is not None or time.monotonic() > deadline:
                raise RuntimeError(f"{type(self).__name__} does not serve {self.address}:{self.port}: {self.log}")
            with contextlib.suppress(OSError):
                return self.greet()
            time.sleep(0.02)

    def greet(self):
        with socket.create_connection((self.address, self.port), 5) as connection:
            if not connection.recv(3):
                raise ConnectionError("no greeting")
            connection.sendall(b"QUIT\r\n")

    def stop(self):
        """Ends it at once, with whatever it is serving."""
        end(self.process.pid)
        self.process.wait()
        tell_guard(-self.process.pid)
        self.output.close()

    @property
    def log(self):
        text = ""
        for name in ("output", "log"):
            with contextlib.suppress(FileNotFoundError), open(self.path(name), errors="replace") as file:
                text += file.read()
        return text


class FtpServer(Server):
    """`site` is its folder "pub", writable for the user."""

    port = 21
    user, password = "u", "secret words"
    text_line_end = b"\n"  # how it keeps what came as text
    owner = NOBODY

    def __init__(self, work, certificate=None, without_pub=False):
        """`certificate` is the file with key and certificate that it has for encrypted connections."""
        super().__init__(work)
        self.certificate = certificate
        self.site = os.path.join(self.root, "pub")
        os.chown(self.root, self.owner, self.owner)
        if not without_pub:
            self.make_folder("pub")

    def make_folder(self, name):
        path = os.path.join(self.root, name)
        os.mkdir(path)
        os.chown(path, self.owner, self.owner)
        return path


class VsFtpd(FtpServer):
    address = "127.0.0.2"
    user, password = "anonymous", "me@example.com"
    text_line_end = b"\r\n"
    owner = 1  # daemon
    options = {}

    def command(self):
        os.chown(self.root, 0, 0)  # it refuses a root that its user may write
        os.makedirs(self.path("empty"), exist_ok=True)
        settings = {
            "listen": "YES", "listen_address": self.address, "background": "NO", "anonymous_enable": "YES",
            "local_enable": "NO", "write_enable": "YES", "anon_upload_enable": "YES", "anon_mkdir_write_enable": "YES",
            "anon_other_write_enable": "YES", "anon_root": self.root, "ftp_username": "daemon",
            "secure_chroot_dir": self.path("empty"), "seccomp_sandbox": "NO", "xferlog_enable": "YES",
            "vsftpd_log_file": self.path("log"), "log_ftp_protocol": "YES"}
        if self.certificate:
            settings |= {"ssl_enable": "YES", "allow_anon_ssl": "YES", "rsa_cert_file": self.certificate,
                         "force_anon_logins_ssl": "YES", "force_anon_data_ssl": "YES"}
        text = "".join(f"{key}={value}\n" for key, value in (settings | self.options).items())
        return [program("vsftpd/usr/sbin/vsftpd"), self.write("vsftpd.conf", text)]

    @property
    def logins(self):
        return self.log.count("OK LOGIN")


class TextVsFtpd(VsFtpd):
    """Translates text instead of keeping it as it comes."""

    text_line_end = b"\n"
    options = {"ascii_upload_enable": "YES"}


class NewestTlsVsFtpd(VsFtpd):
    """Has no cipher that goes with its certificate for anything older than TLS 1.3."""

    options = {"ssl_ciphers": "ECDHE-ECDSA-AES256-GCM-SHA384", "require_ssl_reuse": "NO"}


class PureFtpd(FtpServer):
    address = "127.0.0.3"

    def command(self):
        digest = password_digest(self.password)
        users = self.write("users", f"{self.user}:{digest}:{self.owner}:{self.owner}::{self.root}/./::::::::::::\n")
        database = self.path("users.pdb")
        subprocess.run([program("pure-ftpd/usr/bin/pure-pw"), "mkdb", database, "-f", users], check=True,
                       env=environment())
        encryption = ["-Y", "1", "-2", self.certificate] if self.certificate else []
        return [program("pure-ftpd/usr/sbin/pure-ftpd"), "-S", f"{self.address},{self.port}", "-l",
                f"puredb:{database}", "-A", "-u", "1", "-E", "-H", "-g", self.path("pid"), *encryption]


class ProFtpd(FtpServer):
    address = "127.0.0.4"

    def command(self):
        digest = password_digest(self.password)
        users = self.write("users", f"{self.user}:{digest}:{self.owner}:{self.owner}::{self.root}:/bin/false\n")
        encryption = ""
        if self.certificate:
            encryption = f"""
                ModulePath {program("proftpd-mod-crypto/usr/lib/proftpd")}
                LoadModule mod_tls.c
                TLSEngine on
                TLSLog {self.path("tls.log")}
                TLSRequired on
                TLSRSACertificateFile {self.certificate}
                TLSRSACertificateKeyFile {self.certificate}
                """
        configuration = f"""
            ServerType standalone
            DefaultAddress {self.address}
            SocketBindTight on
            Port {self.port}
            UseIPv6 off
            User nobody
            Group nogroup
            PidFile {self.path("pid")}
            ScoreboardFile {self.path("scoreboard")}
            SystemLog {self.path("log")}
            AuthOrder mod_auth_file.c
            AuthUserFile {users}
            RequireValidShell off
            DefaultRoot ~
            AllowOverwrite on
            WtmpLog off
            TransferLog none
            UseReverseDNS off
            DelayEngine off
            {encryption}
"""
        return [program("proftpd-core/usr/sbin/proftpd"), "-n", "-c", self.write("proftpd.conf", configuration)]

    @property
    def logins(self):
        return self.log.count("Login successful")


class Nginx(Server):
    """Serves `root` by HTTP, and by HTTPS too where it has a certificate. "/moved/" leads to HTTPS."""

    address = "127.0.0.5"
    port = 80

    def __init__(self, work, certificate=None):
        super().__init__(work)
        self.certificate = certificate

    def command(self):
        secure = ""
        if self.certificate:
            secure = f"listen {self.address}:443 ssl; ssl_certificate {self.certificate}; " \
                     f"ssl_certificate_key {self.certificate};"
        folders = " ".join(f"{kind}_temp_path {self.path(kind)};"
                           for kind in ("client_body", "proxy", "fastcgi", "uwsgi", "scgi"))
        configuration = f"""
            daemon off;
            user nobody nogroup;
            pid {self.path("pid")};
            error_log {self.path("log")};
            events {{}}
            http {{
                access_log off;
                {folders}
                server {{
                    listen {self.address}:{self.port};
                    {secure}
                    root {self.root};
                    location /moved/ {{ rewrite ^/moved/(.*)$ https://{self.address}/$1 redirect; }}
                }}
            }}
            """
        return [program("nginx/usr/sbin/nginx"), "-e", self.path("log"), "-c", self.write("nginx.conf", configuration)]

    def greet(self):
        with socket.create_connection((self.address, self.port), 5) as connection:
            connection.sendall(b"HEAD / HTTP/1.0\r\n\r\n")
            if not connection.recv(4):
                raise ConnectionError("no answer")


def password_digest(password):
    return subprocess.run(["openssl", "passwd", "-6", "-stdin"], input=password, text=True, check=True,
                          stdout=subprocess.PIPE).stdout.strip()
