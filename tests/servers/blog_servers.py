"""Real blog servers on the loopback address, each at a free port and in a folder of its own.

The variable VELLORIA_BLOG_SERVERS names the folder that scripts/fetch-servers has filled. To try something by hand:

    VELLORIA_BLOG_SERVERS=build/blog-servers tests/servers/blog_servers.py WordPress|TDiary [USER PASSWORD]
"""

import base64
import contextlib
import glob
import json
import os
import random
import re
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import unittest
import urllib.parse
import urllib.request

import servers

UNPACKED = os.path.abspath(os.environ.get("VELLORIA_BLOG_SERVERS", ""))
HERE = os.path.dirname(os.path.abspath(__file__))


def require_blog_servers():
    """A module without them fails: no template of theirs is shipped that was not seen to work."""
    if not os.path.exists(os.path.join(UNPACKED, "complete")):
        raise RuntimeError("scripts/fetch-servers has not been able to fetch WordPress and tDiary")
    unittest.enterModuleContext(servers.guard())


def program(*path):
    return os.path.join(UNPACKED, "together", *path)


def folders(*patterns):
    return ":".join(folder for pattern in patterns for folder in glob.glob(program(pattern)))


def free_port(address):
    """None of those that the system gives to whoever asks for any: the server takes it a good while later."""
    with open("/proc/sys/net/ipv4/ip_local_port_range", encoding="ascii") as file:
        below = range(10_000, int(file.read().split()[0]))
    for port in [*random.choices(below, k=100), 0] if below else [0]:
        with contextlib.suppress(OSError), socket.create_server((address, port)) as probe:
            return probe.getsockname()[1]
    raise RuntimeError(f"{address} has no port left")


class LoopbackServer(servers.Server):
    """Whoever runs the tests may run it."""

    address = "127.0.0.1"

    def __init__(self, work):
        super().__init__(work)
        self.port = free_port(self.address)

    def environment(self):
        return {"PATH": os.environ.get("PATH", os.defpath), "LANG": "C.UTF-8", "HOME": self.work,
                "LD_LIBRARY_PATH": folders("lib/*-linux-gnu*", "usr/lib/*-linux-gnu*")}

    @property
    def url(self):
        return f"http://{self.address}:{self.port}/"

    def page(self, path="", user=None, password=None):
        """The text of a page."""
        request = urllib.request.Request(self.url + path)
        if user:
            word = base64.b64encode(f"{user}:{password}".encode()).decode()
            request.add_header("Authorization", f"Basic {word}")
        with urllib.request.urlopen(request, timeout=servers.PATIENCE_SECONDS) as answer:
            return answer.read().decode()

    def greet(self):
        """A connection; a page would keep a server that is busy with its first one."""
        socket.create_connection((self.address, self.port), 5).close()


class MariaDb(LoopbackServer):
    """Serves a socket of its own and no port."""

    def __init__(self, work):
        super().__init__(work)
        # A socket's name has room for little more than 100 letters, and `work` may be long.
        self.folder = tempfile.TemporaryDirectory(prefix="velloria-db-", dir="/tmp")
        self.socket = os.path.join(self.folder.name, "socket")

    @property
    def options(self):
        """What is lost with the machine is missed by nobody, so nothing waits for the disk."""
        return ["--no-defaults", f"--basedir={program('usr')}", f"--datadir={self.root}",
                *(["--user=root"] if os.geteuid() == 0 else []), "--innodb-log-file-size=8M",
                "--innodb-buffer-pool-size=32M", "--innodb-use-native-aio=0", "--innodb-flush-method=nosync",
                "--innodb-flush-log-at-trx-commit=0"]

    def command(self):
        if not os.listdir(self.root):
            subprocess.run([program("usr/bin/mariadb-install-db"), *self.options, "--force", "--skip-test-db",
                            "--auth-root-authentication-method=normal", "--skip-name-resolve"],
                           env=self.environment(), stdin=subprocess.DEVNULL, stdout=self.output,
                           stderr=subprocess.STDOUT, check=True)
        return [program("usr/sbin/mariadbd"), *self.options, f"--socket={self.socket}", "--skip-networking",
                f"--pid-file={self.path('pid')}", "--lc-messages-dir", program("usr/share/mysql")]

    def rows(self, query, database=""):
        """Each row a list of texts, as the server gives them."""
        result = subprocess.run(
            [program("usr/bin/mariadb"), "--no-defaults", "-uroot", "-S", self.socket, "-N", "-B", "--raw",
             "--default-character-set=utf8mb4", database], input=query, env=self.environment(), text=True,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
        if result.returncode:
            raise ConnectionError(result.stderr)
        return [line.split("\t") for line in result.stdout.splitlines()]

    def greet(self):
        self.rows("select 1")

    def stop(self):
        super().stop()
        self.folder.cleanup()


class WordPress(LoopbackServer):
    """A blog in Japanese. `language` "" is English."""

    user, password = "hanako", "himitsu no kotoba"

    def __init__(self, work, language="ja"):
        super().__init__(work)
        self.language = language
        os.makedirs(self.path("database"))
        self.database = MariaDb(self.path("database"))

    def environment(self):
        return super().environment() | {"WORDPRESS_SOCKET": self.database.socket, "WORDPRESS_URL": self.url[:-1],
                                        "PHP_CLI_SERVER_WORKERS": "3"}

    def php(self, *arguments):
        extensions = ["ctype", "mbstring", "mysqlnd", "mysqli", "tokenizer", "xml"]
        (folder,) = glob.glob(program("usr/lib/php/2*"))
        return [program("usr/bin/php8.2"), "-n", "-d", f"extension_dir={folder}", "-d", "zend_extension=opcache",
                *(part for name in extensions for part in ("-d", f"extension={name}")),
                "-d", "memory_limit=256M", "-d", "post_max_size=64M", "-d", "opcache.revalidate_freq=0", *arguments]

    def command(self):
        if not os.listdir(self.root):
            self.install()
        return self.php("-S", f"{self.address}:{self.port}", "-t", self.root,
                        os.path.join(HERE, "wordpress/router.php"))

    def install(self):
        self.database.rows("create database wp character set utf8mb4; create user wp@localhost identified by 'wp';"
                           "grant all on wp.* to wp@localhost")
        # The package links to others beside it, and once into /etc.
        subprocess.run(["cp", "-rL", program("usr/share/wordpress") + "/.", self.root], stderr=self.output, check=False)
        shutil.copy(os.path.join(HERE, "wordpress/wp-config.php"), self.root)
        subprocess.run(self.php(os.path.join(HERE, "wordpress/install.php"), self.user, self.password, self.language),
                       cwd=self.root, env=self.environment(), stdin=subprocess.DEVNULL, stdout=self.output,
                       stderr=subprocess.STDOUT, check=True)

    def start(self):
        self.database.start()
        try:
            super().start()
        except BaseException:
            self.database.stop()
            raise

    def stop(self):
        super().stop()
        self.database.stop()

    def put_must_use(self, text):
        """The text of a file that changes the blog for all users; none without one."""
        folder = os.path.join(self.root, "wp-content/mu-plugins")
        shutil.rmtree(folder, ignore_errors=True)
        if text is not None:
            os.makedirs(folder)
            with open(os.path.join(folder, "classic-form.php"), "w", encoding="utf-8") as file:
                file.write(text)

    def sql(self, query):
        return self.database.rows(query, "wp")

    def posts(self):
        """All that were saved, the oldest first. Texts are in hexadecimal on the way, so breaks in them matter not."""
        fields = ["ID", "post_title", "post_content", "post_status", "comment_status", "ping_status"]
        names = ", ".join(f"hex(concat({name}))" for name in fields)
        rows = self.sql(f"select {names} from wp_posts where post_type = 'post' and post_status <> 'auto-draft' "
                        "and ID > 1 order by ID")
        return [dict(zip(fields, (bytes.fromhex(text).decode() for text in row), strict=True)) for row in rows]

    def terms(self, post):
        """Categories and tags of a post, as pairs of kind and name."""
        return [tuple(row) for row in self.sql(
            "select taxonomy, name from wp_terms join wp_term_taxonomy using (term_id) join wp_term_relationships "
            f"using (term_taxonomy_id) where object_id = {int(post)} order by taxonomy, name")]

    def forget_posts(self):
        self.sql("delete from wp_posts where post_type = 'post' and ID > 1")

    def forget_logins(self):
        self.sql("delete from wp_usermeta where meta_key = 'session_tokens'")


class TDiary(LoopbackServer):
    """A diary in tDiary's own style. Its own pages ask for `user` and `password` where there are any."""

    def __init__(self, work, user=None, password=None):
        super().__init__(work)
        self.user, self.password = user, password
        self.data = self.path("data")

    def environment(self):
        return super().environment() | {
            "TDIARY_DATA": self.data,
            "RUBYLIB": folders("usr/lib/ruby/vendor_ruby", "usr/lib/*/ruby/vendor_ruby/3.*", "usr/lib/ruby/3.*",
                               "usr/lib/*/ruby/3.*"),
            "GEM_PATH": folders("usr/share/rubygems-integration/all", "usr/share/rubygems-integration/3.*")}

    def command(self):
        if not os.path.exists(self.data):
            os.makedirs(self.data)
            shutil.copy(os.path.join(HERE, "tdiary/tdiary.conf"), self.root)
            for name in ("index.rb", "update.rb", "theme"):
                os.symlink(program("usr/share/tdiary", name), os.path.join(self.root, name))
        login = [self.user, self.password] if self.user else []
        return [program("usr/bin/ruby3.1"), os.path.join(HERE, "tdiary/server.rb"), self.root, str(self.port), *login]

    def start(self):
        super().start()
        # The very first call answers that it goes elsewhere.
        self.page("update.rb", self.user, self.password)

    def made_page(self, path=""):
        """A page of what it holds now. It keeps pages by their second, and the browser asks for one beside a post."""
        shutil.rmtree(os.path.join(self.data, "cache"), ignore_errors=True)
        return self.page(path)

    def days(self):
        """What its files hold, by date: head lines, and the body as it was typed."""
        found = {}
        for path in glob.glob(os.path.join(self.data, "*/*.td2")):
            with open(path, encoding="utf-8", newline="") as file:
                text = file.read()
            for day in re.split(r"^\.\n", text.split("\n", 1)[1], flags=re.MULTILINE)[:-1]:
                head, body = day.split("\n\n", 1)
                fields = dict(line.split(": ", 1) for line in head.splitlines() if ": " in line)
                fields["body"] = re.sub(r"^\.", "", body, flags=re.MULTILINE)
                found[fields["Date"]] = fields
        return found


def serve_by_hand(kind, *login):
    with tempfile.TemporaryDirectory() as work, servers.guard(), globals()[kind](work, *login) as server:
        print(json.dumps({"url": server.url, "user": server.user, "password": server.password, "folder": work}),
              flush=True)
        signal.signal(signal.SIGTERM, lambda *_: sys.exit())
        with contextlib.suppress(KeyboardInterrupt):
            signal.pause()


if __name__ == "__main__":
    serve_by_hand(*sys.argv[1:])
