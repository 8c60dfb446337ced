"""The commands that change the diary as a file - the update of an old one at the start, optimising, repair, and the copies
that are made of it and put in its place - killed at any moment, the reader of old formats killed beneath them, and on a disk with room for a tenth of the diary: the next
start has the whole old or the whole new diary, every row of it, and the command works in the end."""

import glob
import os
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time
import unittest
from contextlib import closing

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))

from home import CliTest, read
from patience import PATIENCE_SECONDS
from test_kills_at_calls import CALLS
from writing_commands import choice, trials

OLD_DIARIES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "data", "jet")
JET = b"\0\1\0\0Standard Jet DB"
ROOM = 256 << 20
KEPT_COPY = "diary-20030101.mdb"
JET_VERSIONS = ("v0", "v0-jet3", "v100", "v100-jet3", "v101", "v110", "v150", "v200", "v210", "v220")
OLD_TABLES = """
    CREATE TABLE Contents (RecordID INTEGER PRIMARY KEY, Day TEXT, Number INTEGER, Title TEXT, Contents TEXT,
                           Weather TEXT, Genre TEXT, PublishTime TEXT);
    CREATE TABLE FileDB (FileID INTEGER PRIMARY KEY, FileName TEXT, Day TEXT, Number INTEGER, Uploaded INTEGER,
                         Logged INTEGER);
    CREATE TABLE LogDB (LogMonth TEXT, LogFileName TEXT);
    CREATE TABLE DBInfo (VersionInfo INTEGER);
    INSERT INTO DBInfo VALUES (150);"""


def rows_of(path):
    """All rows of a diary in SQLite, as whoever opens it next finds them; a copy is opened."""
    with tempfile.TemporaryDirectory() as folder:
        copy = os.path.join(folder, "x.mdb")
        shutil.copy(path, copy)
        for ending in ("-journal", "-wal"):
            if os.path.exists(path + ending):
                shutil.copy(path + ending, copy + ending)
        with closing(sqlite3.connect(copy)) as base:
            base.text_factory = bytes
            if base.execute("PRAGMA integrity_check").fetchall() != [(b"ok",)]:
                raise AssertionError(f"{path} is damaged")
            tables = [name.decode() for name, in
                      base.execute("SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite%'")]
            return {table: sorted(base.execute(f"SELECT * FROM {table}"), key=repr) for table in sorted(tables)}


def state_of(path):
    """What a diary holds: its rows, or the bytes of one in the old format."""
    if not os.path.exists(path):
        return "missing"
    content = read(path)
    return content if content.startswith(JET) else rows_of(path)


class Case:
    """A command and the diary that it changes. `fill(trial)` makes the diary; the rest of the folder is as it was. `copy` is
    the file that holds the diary, too, when the command is done."""

    def __init__(self, name, words, fill, is_update=False, is_jet=False, copy=None):
        self.name, self.words, self.fill = name, words, fill
        self.is_update, self.is_jet, self.copy = is_update, is_jet, copy


def jet(version):
    def fill(trial):
        shutil.copy(os.path.join(OLD_DIARIES, version + ".mdb"), trial.database)
    return Case(f"update of {version}", ["start"], fill, is_update=True, is_jet=True)


def old_sqlite(trial):
    os.unlink(trial.database)
    with closing(sqlite3.connect(trial.database)) as base, base:
        base.executescript(OLD_TABLES)
        base.executemany("INSERT INTO Contents (Day, Number, Title, Contents, Weather, Genre, PublishTime) "
                         "VALUES (?, 1, ?, ?, '晴', '一般', '2003/01/01 00:00:00')",
                         [(f"20{y:02}/{m}/{d}", f"old {y} {m} {d}", f"text {d} " * 200)
                          for y in range(3) for m in range(1, 13) for d in range(1, 29)])
        base.execute("INSERT INTO FileDB VALUES (1, 'a.gif', 'ALL', 0, 1, 0)")
        base.execute("INSERT INTO LogDB VALUES ('2001/01', '200101.htm')")


def out_of_order(trial):
    with closing(sqlite3.connect(trial.database)) as base, base:
        base.execute("UPDATE Contents SET Number = Number + 1 WHERE Day LIKE '%/01'")
        base.execute("UPDATE Contents SET Day = replace(Day, '/', '-') WHERE Day LIKE '%/02'")


def with_gaps(trial):
    """Rows that are gone leave room in the file."""
    with closing(sqlite3.connect(trial.database)) as base, base:
        base.execute("DELETE FROM Contents WHERE Day LIKE '%/03'")


CASES = [jet(version) for version in JET_VERSIONS]
CASES += [Case("update of an older one of ours", ["start"], old_sqlite, is_update=True),
          Case("optimize", ["db", "optimize"], with_gaps),
          Case("repair", ["db", "check", "--repair"], out_of_order),
          Case("backup make", ["backup", "make"], with_gaps, copy="Backup/diary-20040229.mdb"),
          Case("backup restore", ["backup", "restore", KEPT_COPY], with_gaps, copy="Backup/" + KEPT_COPY)]


class WholeDiaryTest(CliTest):
    """Fixture: a home with a diary of some 700 entries and one backup of another state, kept to begin each trial with."""

    def setUp(self):
        super().setUp()
        self.must("start")
        with closing(sqlite3.connect(self.database)) as base, base:
            base.executemany("INSERT INTO Contents (Day, Number, Title, Contents, PublishTime, Private, Genre) "
                             "VALUES (?, 1, ?, ?, '2003/01/01 00:00:00', 0, '一般')",
                             [(f"20{y:02}/{m:02}/{d:02}", f"title {y} {m} {d}", f"text {d} " * 400)
                              for y in range(2) for m in range(1, 13) for d in range(1, 29)])
            base.execute("INSERT INTO Memo (Title, Memo) VALUES ('memo', 'text')")
        os.makedirs(self.data + "Backup", exist_ok=True)
        shutil.copy(self.database, self.data + "Backup/" + KEPT_COPY)
        self.kept = os.path.join(self.temporary_folder(), "kept")
        shutil.copytree(self.root, self.kept)
        self.known = {}

    def environment(self, **changed):
        return super().environment(ASAN_OPTIONS="detect_leaks=0", **changed)

    def prepare(self, case):
        """In place: a root that is a mount point stays one."""
        for name in os.listdir(self.root):
            path = os.path.join(self.root, name)
            shutil.rmtree(path) if os.path.isdir(path) else os.unlink(path)
        shutil.copytree(self.kept, self.root, dirs_exist_ok=True)
        case.fill(self)

    def line(self, case):
        return self.command("--yes", *case.words)

    def learn(self, case):
        """The states before and after the command when nothing disturbs it, and how long it takes."""
        if case.name not in self.known:
            self.prepare(case)
            old = state_of(self.database)
            start = time.monotonic()
            result = self.execute(self.line(case))
            span = time.monotonic() - start
            self.assertEqual(result.code, 0, f"{case.name}: {result!r}")
            self.known[case.name] = old, state_of(self.database), span
        return self.known[case.name]

    # -- what must hold -----------------------------------------------------------------------------------------------

    def assert_whole(self, case, what):
        old, new, _ = self.known[case.name]
        now = state_of(self.database)
        self.assertTrue(now in (old, new), f"{what}: the diary is neither the old nor the new one")
        for name in glob.glob(self.data + "Backup/*.mdb") + [self.data + "diarymdb.bak"]:
            if os.path.exists(name):
                self.assertNotEqual(state_of(name), "missing", what)
        if now != old:     # where the old one is to be found from now on
            kept = [state_of(name) for name in glob.glob(self.data + "*.bak*") + glob.glob(self.data + "Backup/*.mdb")
                    + glob.glob(self.data + "diary_jet*.mdb")]
            self.assertIn(old, kept, f"{what}: the old diary is nowhere")

    def assert_works_again(self, case, what):
        """The next start has the diary, and the command its effect when it is given once more."""
        self.must("--yes", "start")
        self.assert_whole(case, what)
        _, new, _ = self.known[case.name]
        if case.is_update:
            self.assertTrue(state_of(self.database) == new, f"{what}: the next start has not made the update")
            # Of one that was killed behind its last step they stay: only an update knows them for its own.
            self.must("--yes", "db", "optimize")
        else:
            result = self.execute(self.line(case))
            self.assertEqual(result.code, 0, f"{what}: {result!r}")
            self.assert_whole(case, what)
            self.assertTrue(state_of(self.database) == new, f"{what}: the next command has no effect")
        self.assertEqual(self.leftovers(), [], what)
        if case.copy:
            self.assertTrue(state_of(self.data + case.copy) == new, f"{what}: the copy is another one")
        if case.is_jet:
            self.assertEqual(read(self.data + "diary_jet.mdb"), self.known[case.name][0], what)

    def leftovers(self):
        names = {os.path.basename(path) for path in glob.glob(self.data + "*") + glob.glob(self.data + "Backup/*")}
        return sorted(name for name in names if name in ("old.mdb", "new.mdb") or name.endswith((".tmp", "-journal"))
                      and not name.startswith("upload"))


class Killed(WholeDiaryTest):
    def run_killed(self, case, seconds):
        """Returns whether the kill came before the end."""
        program = subprocess.Popen(self.line(case), env=self.environment(), stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        time.sleep(seconds)
        program.kill()
        program.communicate()
        self.wait_for_readers()
        return program.returncode == -signal.SIGKILL

    def readers(self):
        """The processes of this test's readers of old formats."""
        found = []
        for folder in glob.glob("/proc/[0-9]*"):
            try:
                words = read(folder + "/cmdline").split(b"\0")
            except OSError:
                continue
            if words[0].endswith(b"/velloria-jet") and any(self.root.encode() in word for word in words[1:]):
                found.append(int(os.path.basename(folder)))
        return found

    def wait_for_readers(self):
        """One whose program is gone ends by itself."""
        end = time.monotonic() + PATIENCE_SECONDS
        while self.readers():
            self.assertLess(time.monotonic(), end, "a reader outlives its program")
            time.sleep(0.01)

    def run_with_killed_reader(self, case, seconds):
        """Returns whether a reader was killed; the program then says that it failed."""
        program = subprocess.Popen(self.line(case), env=self.environment(), stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        killed = False
        end = time.monotonic() + PATIENCE_SECONDS
        while program.poll() is None and not killed:
            for reader in self.children(program.pid):
                time.sleep(seconds)
                try:
                    os.kill(reader, signal.SIGKILL)
                    killed = True
                except ProcessLookupError:
                    pass
            self.assertLess(time.monotonic(), end, "the program hangs")
            time.sleep(0.001)
        error = program.communicate(timeout=600)[1].decode()
        self.assertIn(program.returncode, (0, 1), error)
        if program.returncode:
            self.assertNotEqual(error, "")
        return killed and program.returncode == 1

    def children(self, pid):
        try:
            return [int(child) for child in read(f"/proc/{pid}/task/{pid}/children").split()]
        except OSError:
            return []

    def traced(self, case, when=None):
        log = os.path.join(self.inputs, "calls")
        kill = ["-e", f"inject={CALLS}:signal=KILL:when={when}"] if when else []
        return ["strace", "-f", "-qq", "-o", log, "-e", f"trace={CALLS}", *kill, *self.line(case)], log

    def count_calls(self, case):
        self.prepare(case)
        line, log = self.traced(case)
        result = self.execute(line)
        self.assertEqual(result.code, 0, f"{case.name}: {result!r}")
        with open(log, encoding="utf-8", errors="replace") as calls:
            return sum(1 for call in calls if "(" in call)

    def kill(self, case, random, calls):
        """In one of three ways. Returns what was done, and whether something was killed."""
        span = self.known[case.name][2]
        way = random.choice(["program", "reader", "call"] if case.is_jet else ["program", "call"])
        if way == "program":
            seconds = random.random() * span
            return f"killed after {seconds:.3f} s", self.run_killed(case, seconds)
        if way == "reader":
            seconds = random.random() * span / 10
            return f"reader killed after {seconds:.3f} s", self.run_with_killed_reader(case, seconds)
        when = random.randint(1, calls)
        result = self.execute(self.traced(case, when)[0])
        self.wait_for_readers()
        self.assertIn(result.code, (0, 1, -signal.SIGKILL, 128 + signal.SIGKILL), repr(result))
        return f"killed at call {when} of {calls}", result.code != 0

    def test_at_any_moment(self):
        calls = {}
        kills = 0
        for number in trials(usual=2 * len(CASES)):
            case = CASES[number % len(CASES)]
            self.learn(case)
            if case.name not in calls:
                calls[case.name] = self.count_calls(case)
            self.prepare(case)
            done, was_killed = self.kill(case, choice(number), calls[case.name])
            kills += was_killed
            what = f"trial {number}: {case.name} {done}"
            with self.subTest(what):
                self.assert_whole(case, what)
                self.assert_works_again(case, what)
        print(f"KILLS {kills}", flush=True)


@unittest.skipIf(os.geteuid(), "only the superuser may mount a disk of the test's own")
class WithoutRoom(WholeDiaryTest):
    def setUp(self):
        super().setUp()
        subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={ROOM}", "tmpfs", self.root], check=True)
        self.addCleanup(subprocess.run, ["umount", self.root], check=True)

    def test_with_room_for_a_tenth_of_the_diary(self):
        for case in CASES:
            with self.subTest(case.name):
                self.learn(case)
                self.prepare(case)
                room = os.path.getsize(self.database) // 10
                free = shutil.disk_usage(self.root).free - room
                with open(self.root + "/filler", "wb") as file:
                    os.posix_fallocate(file.fileno(), 0, free)
                before = read(self.database)
                result = self.execute(self.line(case))
                self.assertIn(result.code, (0, 1), f"{case.name}: {result!r}")
                if result.code:
                    self.assertNotEqual(result.error_lines, [], case.name)
                    self.assertEqual(read(self.database), before, f"{case.name}: {result!r}")
                self.assert_whole(case, case.name)
                os.unlink(self.root + "/filler")
                self.assert_works_again(case, case.name)


if __name__ == "__main__":
    unittest.main()
