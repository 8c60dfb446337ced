"""A program folder of its own for one test, and words to run velloria-cli in it and to look at what it left behind.

The variable VELLORIA_PROGRAM names the program folder under test.
"""

import hashlib
import json
import os
import resource
import shutil
import sqlite3
import stat
import subprocess
import tempfile
import unittest

if "VELLORIA_PROGRAM" not in os.environ:
    raise RuntimeError("VELLORIA_PROGRAM must name the program folder under test")
PROGRAM = os.path.abspath(os.environ["VELLORIA_PROGRAM"])
CLI = os.path.join(PROGRAM, "velloria-cli")
NOW = "2004/02/29 12:34:56"
NOBODY = 65534


def entry(day, title="t", **members):
    """A line for `entry put`."""
    return json.dumps({"Day": day, "Title": title, **members}, ensure_ascii=False) + "\n"


def write(path, content):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as file:
        file.write(content.encode() if isinstance(content, str) else content)


def read(path):
    with open(path, "rb") as file:
        return file.read()


def snapshot(folder):
    """Every file and folder below `folder`, with what is in it, but the day's copy of the diary: whichever start is the
    first of a day makes it."""
    found = {}
    for parent, folders, names in os.walk(folder):
        if os.path.basename(parent) == "UserData" and "Backup" in folders:
            folders.remove("Backup")
        for name in folders:
            found[os.path.relpath(os.path.join(parent, name), folder)] = "folder"
        for name in names:
            path = os.path.join(parent, name)
            is_file = stat.S_ISREG(os.lstat(path).st_mode)
            found[os.path.relpath(path, folder)] = hashlib.sha256(read(path)).hexdigest() if is_file else "special"
    return found


def bytes_limit(count):
    """For subprocess: no file may grow beyond `count` bytes. The finished program has no disk of the tests inside it, so
    here the system refuses; it is the limit that a shell sets with ulimit, and an error of its own."""
    return lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (count, resource.RLIM_INFINITY))


class Result:
    """What a run of the program gave."""

    def __init__(self, code, out, err):
        self.code, self.out, self.err = code, out, err

    def __repr__(self):
        return f"exit code {self.code}\n{self.out[-600:].decode('utf-8', 'replace')}\n{self.error_text[-2000:]}"

    @property
    def text(self):
        return self.out.decode()

    @property
    def rows(self):
        return [line.split("\t") for line in self.text.splitlines()]

    @property
    def json(self):
        return json.loads(self.out)

    @property
    def error_text(self):
        return self.err.decode("utf-8", "replace")

    @property
    def error_lines(self):
        return self.error_text.splitlines()

    @property
    def events(self):
        return [json.loads(line) for line in self.error_lines if line.startswith("{")]

    def events_of(self, kind):
        return [event for event in self.events if event["event"] == kind]

    @property
    def statuses(self):
        return [event["text"] for event in self.events_of("status")]

    @property
    def boxes(self):
        return [f"{event['kind']}: {event['text']}" for event in self.events_of("message")]


class CliTest(unittest.TestCase):
    """Fixture: an unstarted home with every factory file below `self.root`, beside it room for a site. What tests hand
    to the program lies in `self.inputs`."""

    def setUp(self):
        self.root = self.temporary_folder()
        self.inputs = self.temporary_folder()
        self.home = self.make_home("home")
        self.data = os.path.join(self.home, "UserData", "")
        self.site = os.path.join(self.root, "site", "")
        self.diary_ini = self.data + "diary.ini"
        self.database = self.data + "diary.mdb"

    def temporary_folder(self):
        return os.path.realpath(self.enterContext(tempfile.TemporaryDirectory(prefix="velloria-cli-")))

    def make_home(self, name):
        home = os.path.join(self.root, name)
        os.makedirs(home)
        for file in os.listdir(PROGRAM):
            path = os.path.join(PROGRAM, file)
            # Neither the programs themselves nor plug-ins, which a test puts there when it wants one.
            if os.path.isfile(path) and not file.startswith("velloria") and not file.endswith((".dll", ".exe")):
                shutil.copy2(path, home)
        return home

    def without_write_permission(self, folder, *own):
        """Takes it from whoever the returned options for subprocess make run a program: root may write everywhere, so
        nobody in particular runs it in their place. `own` belongs to them."""
        os.chmod(folder, 0o555)
        self.addCleanup(os.chmod, folder, 0o755)
        if os.geteuid() != 0:
            return {}
        os.chmod(self.root, 0o755)
        for top in own:
            for path in [top, *(os.path.join(parent, name) for parent, folders, names in os.walk(top)
                                for name in folders + names)]:
                os.chown(path, NOBODY, NOBODY, follow_symlinks=False)
        return {"user": NOBODY, "group": NOBODY, "extra_groups": []}

    # -- running ------------------------------------------------------------------------------------------------------

    def command(self, *words, home=None, now=NOW, day=None, answers=None, user=None):
        """The command line; `answers` is the script's content."""
        line = [CLI, "--home", home or self.home]
        if now:
            line += ["--now", now]
        if day:
            line += ["--day", day]
        if user is not None:
            line += ["--user", user]
        if answers is not None:
            line += ["--answers", self.input_file("answers.json", json.dumps(answers))]
        return [*line, *words]

    def environment(self, **changed):
        """Nothing of whoever runs the tests but what sanitizers want; a value of None takes a variable away."""
        kept = {name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS") or name == "PATH"}
        kept |= {"HOME": self.root, "XDG_DATA_HOME": os.path.join(self.root, "share"), "LANG": "C.UTF-8"} | changed
        return {name: value for name, value in kept.items() if value is not None}

    def execute(self, line, input=b"", environment=None, **options):
        if isinstance(input, str):
            input = input.encode()
        options = {"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, "timeout": 600} | options
        if "stdin" not in options:
            options["input"] = input
        done = subprocess.run(line, env=self.environment(**(environment or {})), **options)
        return Result(done.returncode, done.stdout or b"", done.stderr or b"")

    def run_cli(self, *words, input=b"", environment=None, options=None, **line):
        return self.execute(self.command(*words, **line), input, environment, **(options or {}))

    def must(self, *words, **how):
        """Runs and must succeed."""
        result = self.run_cli(*words, **how)
        self.assertEqual(result.code, 0, f"{words}: {result!r}")
        return result

    def refused(self, *words, code=1, naming=(), **how):
        """Runs and must be refused: nothing on standard output, one line on standard error that holds each text of
        `naming`, and nothing changed on disk. Returns that line."""
        before = snapshot(self.root)
        result = self.run_cli(*words, **how)
        line = self.assert_refusal(result, code, words)
        for text in naming:
            self.assertIn(text, line, words)
        self.assertEqual(snapshot(self.root), before, f"{words}: something was changed")
        return line

    def assert_refusal(self, result, code, words=()):
        self.assertEqual(result.code, code, f"{words}: {result!r}")
        self.assertEqual(result.out, b"", words)
        self.assertEqual(len(result.error_lines), 1, f"{words}: {result!r}")
        self.assertTrue(result.error_text.startswith("velloria-cli: ") and result.error_text.endswith("\n"), result)
        return result.error_text.strip()

    def input_file(self, name, content):
        path = os.path.join(self.inputs, name)
        write(path, content)
        return path

    # -- filling ------------------------------------------------------------------------------------------------------

    def put(self, *lines, options=(), **how):
        return self.must("entry", "put", *options, input="".join(lines), **how)

    def set_key(self, file, section, key, value):
        """A settings key; `file` is relative to the data folder."""
        self.must("ini", "set", os.path.join(self.data, file), section, key, str(value))

    def customize(self, section, **keys):
        for key, value in keys.items():
            self.set_key("Customize/Customize.ini", section, key, value)

    def use_site(self, name="x.htm"):
        """The site folder, made and set as the target of Save HTML."""
        os.makedirs(self.site, exist_ok=True)
        if not os.path.exists(self.diary_ini):
            self.must("start")
        self.set_key("diary.ini", "ALL", "SaveFilePath", self.site)
        self.set_key("diary.ini", "ALL", "SaveFileName", name)

    def sql(self, statement, *values):
        base = sqlite3.connect(self.database)
        try:
            with base:
                return base.execute(statement, values).fetchall()
        finally:
            base.close()

    # -- looking ------------------------------------------------------------------------------------------------------

    def keys_of(self, result):
        return [(row["Day"], row["Number"]) for row in result.json]

    def listed(self, *words):
        return [(row["Day"], row["Number"], row["Title"]) for row in self.must("--json", "entry", "list", *words).json]

    def page(self, path):
        """A page as text, line ends as they are."""
        return read(path).decode("cp932")

    def ini(self, file, section, key):
        return self.must("ini", "get", os.path.join(self.data, file), section, key).text[:-1]

    def assert_sound(self):
        """The diary is whole, and its days are numbered 1..n."""
        self.assertEqual(self.sql("PRAGMA integrity_check"), [("ok",)])
        for day, numbers in self.sql("SELECT Day, group_concat(Number) FROM "
                                     "(SELECT * FROM Contents ORDER BY Day, Number) GROUP BY Day"):
            numbers = [int(number) for number in numbers.split(",")]
            self.assertEqual(numbers, list(range(1, len(numbers) + 1)), day)
