"""Every command that writes into a diary's folders: how it is called in the home of the trials, and how its effect is seen.

Each comes in two variants, 0 and 1, which do not want the same: two of them that run at once must both have their way.
"""

import glob
import json
import os
import random
import re
import shutil
import sqlite3
from contextlib import closing

from home import PROGRAM, CliTest, entry, read, write

BLOGS = ["WordPress", "tDiary"]
FIRST_TRIALS = int(os.environ.get("VELLORIA_FIRST_TRIAL", "0"))


def trials(usual):
    """The numbers of the trials to run: VELLORIA_TRIALS of them from VELLORIA_FIRST_TRIAL on, else the usual few."""
    return range(FIRST_TRIALS, FIRST_TRIALS + int(os.environ.get("VELLORIA_TRIALS", usual)))


class WritingCommand:
    """`words(trial, variant)` is the command line, `input` what it reads, `has_worked(trial, variant)` whether its effect
    is there. A command that is not `repeatable` takes another row when it runs again."""

    def __init__(self, name, words, has_worked, input=None, repeatable=True):
        self.name, self.words, self.has_worked, self.repeatable = name, words, has_worked, repeatable
        self.input = input or (lambda variant: "")


def put_line(variant, day, **members):
    return entry(f"{day}{variant + 1}", f"new {variant}", Number=1, Contents=f"new text {variant} " * 500, **members)


def tagged(variant):
    return (f"＜日付＞2004/06/0{variant + 1}＜／日付＞\n＜タイトル＞clip {variant}＜／タイトル＞\n"
            f"＜内容＞clip text {variant}＜／内容＞")


def hatena(variant):
    """Entries in the format of Hatena."""
    days = "".join(f'<day date="2004-05-1{day}" title=""><body>\n*p1*brought {variant}\n{"words " * 500}\n</body></day>\n'
                   for day in range(5))
    return f'<?xml version="1.0" encoding="UTF-8"?>\n<diary>\n{days}</diary>\n'


def movable_type(variant):
    """Entries in the format of Movable Type."""
    return "".join(f"TITLE: sent {variant}\nDATE: 05/1{day}/2004 10:00:00 AM\n-----\nBODY:\n{'words ' * 500}\n-----\n--------\n"
                   for day in range(5))


def titled(title):
    return lambda trial, variant: f"{title} {variant}" in trial.titles()


def without_title(title):
    return lambda trial, variant: f"{title} {variant}" not in trial.titles()


def months(variant):
    return [("2004", "01"), ("2003", "12")][variant]


def logs_hold(trial, name, text):
    """Whether the page is among the logs of a site: a Save As at the same time chooses another folder."""
    return any(text in trial.page(path) for path in glob.glob(f"{trial.root}/*/DiaryLog/{name}"))


def is_logged(trial, variant):
    year, month = months(variant)
    return (trial.sql("SELECT COUNT(*) FROM LogDB WHERE LogMonth = ?", f"{year}/{month}") == [(1,)]
            and logs_hold(trial, f"{year}{month}.htm", f"log {variant}")
            and f"{year}{month}.htm".encode() in read(trial.data + "uploadlog.tmp"))


def has_file(path, text=""):
    """Whether a file below the root is there and holds the text."""
    def look(trial, variant):
        name = os.path.join(trial.root, path.format(variant))
        return os.path.exists(name) and text.format(variant).encode("cp932") in read(name)
    return look


def user_command(*words, login="u{0}", answers=()):
    """A command on the accounts of the home that several people share; one of them logs in."""
    def line(trial, variant):
        script = json.dumps([answer.format(variant) for answer in ("old", *answers)])
        return ["--home", trial.shared, "--user", login.format(variant),
                "--answers", trial.input_file(f"answers{variant}.json", script),
                *(word.format(variant, root=trial.root) for word in words)]
    return line


def account(key, user, value):
    """Whether the key of a user has this value, "" for none; a password as it was typed."""
    def look(trial, variant):
        stored = trial.must("ini", "get", trial.users, user.format(variant), key).text[:-1]
        if key == "Pass":
            stored = trial.must("convert", "unscramble", input=stored).text
        return stored == value.format(variant, root=trial.root)
    return look


def has_password(trial, variant):
    """Whether the blog of the variant has its own."""
    stored = trial.ini("BlogUserData.ini", BLOGS[variant], "Password")
    return trial.must("convert", "unscramble", input=stored).text == f"secret {variant}"


def has_taken(trial, variant):
    with closing(sqlite3.connect(f"{trial.shared}/u{variant}/diary.mdb")) as base:
        return base.execute("SELECT Title FROM Contents").fetchall() == [("shared",)]


def rows_of_file(trial, name):
    return trial.sql("SELECT COUNT(*) FROM FileDB WHERE FileName = ?", name)[0][0]


COMMANDS = [
    WritingCommand("put", lambda t, v: ["entry", "put", "-"], titled("new"),
                   lambda v: put_line(v, "2004/05/0", Genre=f"genre {v}")),
    WritingCommand("overwrite", lambda t, v: ["entry", "put", "-"], titled("new"), lambda v: put_line(v, "2004/02/0")),
    WritingCommand("delete", lambda t, v: ["entry", "delete", f"2004/04/0{v + 1}", "1"], without_title("gone"),
                   repeatable=False),
    WritingCommand("genres", lambda t, v: ["genre", "rebuild"], has_file("home/UserData/Genre.csv", "一般")),
    WritingCommand("save", lambda t, v: ["site", "save"], has_file("site/x.htm", "kept")),
    WritingCommand("save as", lambda t, v: ["site", "save", "--as", t.root + f"/as{v}/y.htm"],
                   has_file("as{}/y.htm", "kept")),
    WritingCommand("preview", lambda t, v: ["site", "preview"], has_file("home/UserData/tmp.htm")),
    WritingCommand("log", lambda t, v: ["site", "log", *months(v)], is_logged),
    WritingCommand("rebuild", lambda t, v: ["site", "rebuild"], lambda t, v: logs_hold(t, "200401.htm", "log 0")),
    WritingCommand("same day", lambda t, v: ["site", "sameday", "2004/02/01"], has_file("home/UserData/oldtmp.htm")),
    WritingCommand("find", lambda t, v: ["site", "find", "kept"], has_file("home/UserData/findtmp.htm", "kept")),
    WritingCommand("export", lambda t, v: ["export", "--period", "month:2004:2", "--format", "TEXT", "--contents",
                                           "raw", "--unit", "one", "--out", t.root + f"/out{v}.txt"],
                   has_file("out{}.txt", "kept")),
    WritingCommand("clipboard", lambda t, v: ["import", "clipboard", "--formatted", "-"], titled("clip"), tagged),
    WritingCommand("mt import", lambda t, v: ["mt", "import", t.inputs + f"/mt{v}.txt"], titled("sent")),
    WritingCommand("mt export", lambda t, v: ["mt", "export", t.root + f"/out{v}.mt"], has_file("out{}.mt", "kept")),
    WritingCommand("hatena import", lambda t, v: ["hatena", "import", t.inputs + f"/hatena{v}.xml"], titled("brought")),
    WritingCommand("hatena export", lambda t, v: ["hatena", "export", t.root + f"/out{v}.xml"],
                   has_file("out{}.xml", "kept")),
    WritingCommand("other diary", lambda t, v: ["--yes", "exchange", "import", "text", t.inputs + f"/diary{v}"],
                   titled("from elsewhere"), repeatable=False),
    WritingCommand("delete import", lambda t, v: ["import", "delete", f"group {v}"], without_title("imported")),
    WritingCommand("ini set", lambda t, v: ["ini", "set", t.diary_ini, "Trial", f"New{v}", "1"],
                   lambda t, v: t.ini("diary.ini", "Trial", f"New{v}").strip() == "1"),
    WritingCommand("ini delete", lambda t, v: ["ini", "delete", t.diary_ini, "Trial", f"Old{v}"],
                   lambda t, v: t.ini("diary.ini", "Trial", f"Old{v}").strip() == "", repeatable=False),
    WritingCommand("file add", lambda t, v: ["file", "add", t.inputs + f"/new{v}.gif", "2004/02/01", "1"],
                   lambda t, v: rows_of_file(t, f"new{v}.gif") == 1 and has_file("home/UserData/DiaryParts/new{}.gif",
                                                                                 "picture")(t, v)),
    WritingCommand("file delete", lambda t, v: ["file", "delete", f"old{v}.gif", "ALL", "0"],
                   lambda t, v: rows_of_file(t, f"old{v}.gif") == 0, repeatable=False),
    WritingCommand("log add", lambda t, v: ["log", "add", t.inputs + f"/page{v}.htm", "2003", f"0{v + 1}"],
                   lambda t, v: t.sql("SELECT COUNT(*) FROM LogDB WHERE LogMonth = ?", f"2003/0{v + 1}") == [(1,)]),
    WritingCommand("log delete", lambda t, v: ["log", "delete", f"registered{v}.htm"],
                   lambda t, v: t.sql("SELECT COUNT(*) FROM LogDB WHERE LogFileName = ?",
                                      f"registered{v}.htm") == [(0,)], repeatable=False),
    WritingCommand("user add", user_command("user", "add", "new{0}", answers=("{0}", "{0}")),
                   # There before the password is typed: a kill in between leaves a user without one.
                   account("ID", "new{0}", "new{0}"), repeatable=False),
    WritingCommand("user password", user_command("user", "password", answers=("new{0}", "new{0}")),
                   account("Pass", "u{0}", "new{0}"), repeatable=False),
    WritingCommand("user delete", user_command("user", "delete", "gone{0}", login="kept", answers=("old",)),
                   account("ID", "gone{0}", ""), repeatable=False),
    WritingCommand("user path", user_command("user", "path", "moved{0}", "{root}/as{0}", login="kept", answers=("old",)),
                   account("Path", "moved{0}", "{root}/as{0}/")),
    WritingCommand("user take", user_command("user", "take", "u{0}", login="kept", answers=("old",)), has_taken),
    WritingCommand("backup", lambda t, v: ["backup", "make"], has_file("home/UserData/Backup/diary-20040229.mdb")),
    WritingCommand("select set", lambda t, v: ["customize", "select", f"set{v}"],
                   lambda t, v: re.search(r"/set[01]\.ini$", t.ini("diary.ini", "Customize", "IniFileName").strip())),
    WritingCommand("import set", lambda t, v: ["customize", "import", t.inputs + f"/look{v}.cst"],
                   has_file("home/UserData/Customize/look{}.ini", "BackColor=look"), repeatable=False),
    WritingCommand("export set", lambda t, v: ["customize", "export", f"set{v}", "--format", "cst", "--name", "n",
                                               "--out", t.root + f"/set{v}"],
                   lambda t, v: has_file("set{}.cst", "HPTitle=\r\n")(t, v) and has_file("set{}.cst", "[Author]")(t, v)),
    WritingCommand("blog data", lambda t, v: ["blog", "data", BLOGS[v], "Password", "-"], has_password,
                   lambda v: f"secret {v}\n"),
]


class TrialTest(CliTest):
    """Fixture: a diary with something in it for every command, kept whole to begin each trial with."""

    def setUp(self):
        super().setUp()
        for plugin in ("Larkport.dll", "Wrenport.dll"):
            shutil.copy2(os.path.join(PROGRAM, plugin), self.home)
        self.use_site()
        rows = [entry(f"2004/02/0{i + 1}", f"kept {i}", Contents=f"old text {i} " * 500) for i in range(8)]
        for i in range(2):
            rows.append(entry(f"2004/04/0{i + 1}", f"gone {i}", Contents="gone " * 500))
            rows.append(entry(f"2004/03/0{i + 1}", f"imported {i}", ImportMark=f"group {i}"))
            rows.append(entry("/".join(months(i)) + "/05", f"log {i}", Contents="log text " * 500))
            write(self.inputs + f"/new{i}.gif", f"picture {i} " * 4000)
            write(self.inputs + f"/old{i}.gif", f"old picture {i} " * 400)
            write(self.inputs + f"/page{i}.htm", f"<p>page {i}</p>\r\n")
            write(self.inputs + f"/registered{i}.htm", f"<p>registered {i}</p>\r\n")
            write(self.inputs + f"/mt{i}.txt", movable_type(i))
            write(self.inputs + f"/hatena{i}.xml", hatena(i))
            write(self.inputs + f"/diary{i}/2004-06-0{i + 3} from elsewhere {i}.txt", f"from elsewhere {i} " * 500)
            write(self.inputs + f"/look{i}.cst", f"[Body]\r\nBackColor=look{i}\r\n")
            write(self.data + f"Customize/set{i}.ini", f"[General]\r\nHPTitle=set {i}\r\n" + "; line\r\n" * 4000)
            os.makedirs(self.root + f"/as{i}")
        self.put(*rows, options=["--keep-time"])
        for i in range(2):
            self.must("file", "add", self.inputs + f"/old{i}.gif", "ALL", "0")
            self.must("log", "add", self.inputs + f"/registered{i}.htm", "2002", f"0{i + 1}")
            self.set_key("diary.ini", "Trial", f"Old{i}", 1)
        self.must("site", "save")
        self.make_users()
        self.kept = os.path.join(self.temporary_folder(), "kept")
        shutil.copytree(self.root, self.kept)

    def make_users(self):
        self.shared = self.make_home("shared")
        self.users = self.shared + "/velluser.ini"
        self.put(entry("2004/02/01", "shared", Contents="shared text " * 500), home=self.shared)
        self.must("user", "add", "kept", home=self.shared, answers=["old", "old"])
        for user in [f"{name}{i}" for name in ("u", "gone", "moved") for i in range(2)]:
            self.must("user", "add", user, home=self.shared, user="kept", answers=["old", "old", "old"])

    def environment(self, **changed):
        # A leak can't be looked for while the program is traced or about to be killed.
        return super().environment(ASAN_OPTIONS="detect_leaks=0", **changed)

    def restore(self):
        """The folders as they were, in place: a root that is a mount point stays one."""
        for name in os.listdir(self.root):
            path = os.path.join(self.root, name)
            shutil.rmtree(path) if os.path.isdir(path) else os.unlink(path)
        shutil.copytree(self.kept, self.root, dirs_exist_ok=True)

    def words(self, command, variant=0):
        """What is asked about is answered Yes."""
        return self.command("--yes", *command.words(self, variant))

    def run_writing(self, command, variant=0):
        return self.execute(self.words(command, variant), command.input(variant))

    def titles(self):
        return {title for title, in self.sql("SELECT Title FROM Contents")}

    # -- what must hold whatever happened --------------------------------------------------------------------------------

    def assert_nothing_lost(self, what):
        """Each text that the diary held is in it or in the rescue file, the diary is whole, settings and lists can be
        read, nothing half written lies about."""
        with closing(sqlite3.connect(f"file:{self.kept}/home/UserData/diary.mdb?mode=ro", uri=True)) as base:
            old = set(base.execute("SELECT Title, Contents FROM Contents"))
        now = set(self.sql("SELECT Title, Contents FROM Contents"))
        path = self.data + "rescue.jsonl"
        lines = read(path).decode().splitlines() if os.path.exists(path) else []
        rescued = {(line["Title"], line["Contents"]) for line in map(json.loads, lines)}
        self.assertEqual(old - now - rescued, set(), what)
        self.assert_sound()
        self.assertIn(self.ini("diary.ini", "ALL", "SaveFilePath").strip(),
                      (self.site, self.root + "/as0/", self.root + "/as1/"), what)
        self.assertTrue(account("Pass", "kept", "old")(self, 0), f"{what}: users")
        for name, in self.sql("SELECT FileName FROM FileDB"):
            self.assertTrue(os.path.exists(self.data + "DiaryParts/" + name), f"{what}: {name} is registered and missing")
        for list_name in ("upload.tmp", "uploadlog.tmp"):
            if os.path.exists(self.data + list_name):
                for row in read(self.data + list_name).decode("cp932").splitlines():
                    self.assertTrue(os.path.exists(os.path.join(*row.rsplit(",", 1))), f"{what}: {list_name}: {row}")

    def assert_works_again(self, command, what):
        """The command has its effect in the end: at once or when it is given once more."""
        if command.repeatable or not command.has_worked(self, 0):
            result = self.run_writing(command)
            self.assertEqual(result.code, 0, f"{what}: {result!r}")
        self.assertTrue(command.has_worked(self, 0), what)
        self.assert_nothing_lost(what)
        self.assertEqual(self.leftovers(), [], what)

    def leftovers(self):
        """What a killed run has left half written."""
        return [os.path.join(folder, name) for folder, _, names in os.walk(self.root) for name in names
                if name.startswith(".vell") or name.endswith("-journal")]


def choice(number):
    """Everything random in the trial of this number."""
    return random.Random(number)
