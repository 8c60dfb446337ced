"""What the program does with what it can't use: one clear line, the right exit code, and nothing changed."""

import contextlib
import fcntl
import json
import os
import shutil
import sqlite3
import stat
import subprocess
import sys
import threading
import time
import unittest

from home import CLI, CliTest, bytes_limit, entry, read, snapshot, write
from patience import PATIENCE_SECONDS

BINARY = b"\x7fELF\x02\x01\x01\0\0\0" + bytes(range(256)) * 8
READING = [["start"], ["entry", "list"], ["entry", "show", "2004/02/01"], ["entry", "days", "--month", "2004/02"],
           ["genre", "list"], ["db", "version"], ["db", "check"]]
WRITING = [["genre", "rebuild"], ["site", "save"], ["site", "preview"], ["site", "log", "2004", "1"],
           ["site", "rebuild"], ["site", "sameday", "2004/02/01"], ["--yes", "entry", "delete", "2004/02/01", "1"],
           ["entry", "put"]]
LINE = entry("2004/02/01", "new", Number=1)     # overwrites an entry, so the rescue file is concerned, too

HOLD_LOCK = """
import sqlite3, sys
base = sqlite3.connect(sys.argv[1], isolation_level=None)
for statement in sys.argv[2].split(";"):
    base.execute(statement).fetchall()
print(".", end="", flush=True)
sys.stdin.read()
"""


def mount(*words):
    return subprocess.run(["mount", *words], capture_output=True).returncode == 0


class BadInputTest(CliTest):
    """Fixture: a small diary with its site."""

    def setUp(self):
        super().setUp()
        self.use_site()
        self.put(entry("2004/02/01", "one", Contents="old " * 2000), entry("2004/02/01", "two"),
                 entry("2004/01/15", "january"))
        self.must("site", "rebuild")

    def assert_line(self, result, *named):
        """One line that names all this; what is on disk is the caller's to judge."""
        line = self.assert_refusal(result, 1)
        for text in named:
            self.assertIn(text, line)

    def all_refused(self, commands, *named):
        for words in commands:
            with self.subTest(words=words):
                self.refused(*words, input=LINE, naming=named)


class Home(CliTest):
    def test_a_home_that_is_no_folder_is_refused(self):
        file = self.input_file("file", "x")
        for home in ("/nowhere/home", file, file + "/below", "a" * 5000):
            for words in (["start"], ["entry", "put"], ["site", "save"]):
                self.refused(*words, home=home, input=LINE, naming=["--home", home])

    def test_a_variable_that_names_no_folder_is_refused(self):
        self.assert_refusal(self.execute([CLI, "start"], environment={"VELLORIA_HOME": "/nowhere/home"}), 1)

    def test_a_home_that_is_not_writable_is_refused(self):
        self.must("start")
        somebody = self.without_write_permission(self.home, self.home)
        for words in READING + WRITING:
            self.refused(*words, input=LINE, naming=[self.home, "--home"], options=somebody)

    def test_a_home_that_neither_settings_nor_lists_can_name_is_refused_the_first_time(self):
        deep = os.path.join(self.root, "x" * 120)
        os.makedirs(deep)
        for name, reason in (("line\nbreak", "改行"), ("carriage\rreturn", "改行"), (deep + "/" + "y" * 120, "長すぎ")):
            home = self.make_home(name)
            for words in (["start"], ["site", "save"]):
                self.refused(*words, home=home, naming=[reason])

    def test_a_home_that_is_not_named_in_utf_8_is_told_so(self):
        home = os.fsencode(self.root) + b"/\xff\xfe"
        os.makedirs(home)
        os.makedirs(self.root + "/\ufffd\ufffd")  # what becomes of such a name is another folder
        result = self.execute([CLI, "start"], environment={"VELLORIA_HOME": os.fsdecode(home)})
        self.assertIn("UTF-8", self.assert_refusal(result, 1))
        self.assertEqual(os.listdir(self.root + "/\ufffd\ufffd"), [])

    def test_a_program_in_a_folder_that_is_not_named_in_utf_8_makes_nothing(self):
        program = os.fsencode(self.root) + b"/\xff"
        os.makedirs(program)
        shutil.copy2(CLI, os.fsdecode(program))
        result = self.execute([program + b"/velloria-cli", "start"], cwd=self.inputs)
        self.assertIn("UTF-8", self.assert_refusal(result, 1))
        self.assertEqual(os.listdir(self.inputs), [])

    def test_words_of_other_bytes_than_utf_8_are_refused_with_their_place(self):
        self.must("start")
        target = os.fsencode(self.root) + b"/nu\xff"
        for words, place in ((["site", "save", "--as", target + b"/x.htm"], 8), (["export", "--out", target], 7),
                             (["ini", "set", self.diary_ini, "S", "K", b"\xff"], 10), ([b"\xff"], 5)):
            self.refused(*words, code=2, naming=[f"{place}番目", "UTF-8"])

    def test_links_that_lead_nowhere_are_named_with_both_ends(self):
        self.must("start")
        self.must("entry", "put", input=LINE)
        self.use_site()
        self.must("site", "save")
        disk = os.path.join(self.root, "disk")
        os.makedirs(disk)
        for name, words in (("UserData/diary.ini", ["start"]), ("velluser.ini", ["start"]),
                            ("UserData/Customize/Customize.ini", ["site", "save"]),
                            ("UserData/Frame.ini", ["start"]), ("UserData/RSS.ini", ["start"]),
                            ("UserData/Genre.csv", ["genre", "list"]), ("UserData/Genre.csv", ["genre", "rebuild"]),
                            ("UserData/Genre.csv", ["entry", "put"]), ("UserData/upload.tmp", ["site", "save"]),
                            ("UserData/uploadlog.tmp", ["site", "log", "2004", "1"]),
                            ("UserData/rescue.jsonl", ["--yes", "entry", "delete", "2004/02/01", "1"])):
            path = os.path.join(self.home, name)
            kept = os.path.exists(path) and read(path)
            if kept is not False:
                os.remove(path)
            os.symlink(disk + "/gone", path)
            result = self.run_cli(*words, input=entry("2004/02/01", "new", Genre="新しい"))
            self.assertEqual(result.code, 1, (name, words, result))
            self.assertIn(path, result.error_text)
            self.assertIn(disk + "/gone", result.error_text)
            self.assertEqual(os.listdir(disk), [], (name, words))
            self.assertTrue(os.path.islink(path), (name, words))
            os.remove(path)
            if kept is not False:
                write(path, kept)

    def test_first_files_behind_links_that_lead_nowhere_are_not_made_anew(self):
        disk = os.path.join(self.root, "disk", "gone")
        for number, name in enumerate(("diary.ini", "default.ini", "diary.mdb", "default.mdb", "Customize.ini", "TEXT.txt",
                                       "UserData", "UserData/DIARY.MDB", "UserData/ExportFormat", "UserData/DiaryParts")):
            home = self.make_home(f"new{number}")
            path = os.path.join(home, name)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            if os.path.exists(path):
                os.remove(path)
            os.symlink(disk, path)
            line = self.assert_refusal(self.run_cli("start", home=home), 1, name)
            self.assertIn(path, line)
            self.assertIn(disk, line)
            self.assertTrue(os.path.islink(path), name)
            os.remove(path)
            self.assertFalse(os.path.lexists(os.path.join(home, "UserData", "diary.mdb")) and name.endswith("mdb"), name)
            if name not in ("default.ini", "default.mdb"):
                self.must("start", home=home)

    def test_a_pipe_in_the_place_of_the_diary_is_no_diary(self):
        os.makedirs(self.data)
        os.mkfifo(self.database)
        for words in (["start"], ["db", "version", self.database]):
            line = self.assert_refusal(self.run_cli(*words, options={"timeout": 60}), 1, words)
            self.assertIn(self.database, line)
            self.assertIn("日記データベースを開けません", line)
        self.assertTrue(stat.S_ISFIFO(os.lstat(self.database).st_mode))
        os.remove(self.database)
        self.must("start")
        os.mkfifo(self.inputs + "/pipe")
        self.refused("db", "restore", self.inputs + "/pipe", naming=[self.inputs + "/pipe"], options={"timeout": 60})

    def test_pipes_and_devices_in_the_place_of_settings_and_lists_hold_nobody_up(self):
        self.must("start")
        self.use_site()
        for name in ("Frame.ini", "RSS.ini", "HaloScan.ini", "Genre.csv", "upload.tmp", "draft.json", "URLHist.txt"):
            for make in (os.mkfifo, lambda path: os.symlink("/dev/zero", path)):
                path = self.data + name
                if os.path.exists(path):
                    os.remove(path)
                make(path)
                for words in (["start"], ["site", "save"], ["genre", "list"]):
                    self.run_cli(*words, options={"timeout": 60})
                self.assertFalse(os.path.isfile(path), name)
                os.remove(path)
        os.remove(self.diary_ini)
        os.mkfifo(self.diary_ini)
        self.refused("start", naming=[self.diary_ini], options={"timeout": 60})

    def test_a_folder_that_another_program_keeps_locked_is_named(self):
        self.must("start")
        folder = os.open(self.data, os.O_RDONLY)
        self.addCleanup(os.close, folder)
        fcntl.flock(folder, fcntl.LOCK_EX)
        self.refused("ini", "set", self.diary_ini, "S", "K", "v", naming=[self.data.rstrip("/"), "使用中"])
        fcntl.flock(folder, fcntl.LOCK_UN)
        self.must("ini", "set", self.diary_ini, "S", "K", "v")

    def test_files_in_the_place_of_folders_are_named(self):
        for name in ("UserData", "UserData/Customize", "UserData/DiaryLog"):
            self.must("start")
            path = os.path.join(self.home, name)
            shutil.rmtree(path)
            write(path, "a file")
            self.refused("start", naming=[path])
            os.remove(path)

    def test_folders_in_the_place_of_files_are_named(self):
        self.must("start")
        os.remove(self.database)
        os.makedirs(self.database)
        self.refused("entry", "list", naming=[self.database])
        self.refused("db", "version", self.database, naming=[self.database])
        os.rmdir(self.database)
        os.makedirs(self.data + "tmp.htm")
        self.must("start")
        self.refused("site", "preview", naming=["tmp.htm"])


class BinarySettings(BadInputTest):
    def test_every_start_refuses_a_settings_file_that_is_binary(self):
        for name in ("diary.ini", "Customize/Customize.ini", "Frame.ini", "RSS.ini", "HaloScan.ini", "Blog.ini"):
            path = self.data + name
            before = read(path) if os.path.exists(path) else b""
            write(path, BINARY)
            # A check is for a diary whose home is in disorder, too: it asks who the user is and no more.
            commands = [words for words in READING + WRITING if name == "diary.ini" or words != ["db", "check"]]
            self.all_refused(commands, path)
            write(path, before)
        self.must("start")

    def test_a_first_start_refuses_a_binary_template(self):
        home = self.make_home("other")
        write(home + "/default.ini", BINARY)
        self.assert_line(self.run_cli("start", home=home), "default.ini")
        self.assertFalse(os.path.exists(home + "/UserData/diary.ini"))

    def test_a_login_refuses_a_binary_user_file(self):
        write(self.home + "/velluser.ini", BINARY)
        self.refused("start", user="taro", environment={"VELLORIA_PASSWORD": "x"}, naming=["velluser.ini"])

    def test_the_settings_commands_refuse_a_binary_file(self):
        file = self.input_file("binary.ini", BINARY)
        for words in (["get", file, "S", "K"], ["int", file, "S", "K"], ["set", file, "S", "K", "v"],
                      ["delete", file, "S", "K"], ["sections", file]):
            self.refused("ini", *words, naming=[file])
        self.assertEqual(read(file), BINARY)

    def test_the_converter_refuses_a_binary_or_missing_settings_file(self):
        for file in (self.input_file("binary.ini", BINARY), "/nowhere/a.ini", self.inputs):
            self.refused("convert", "html2text", "--ini", file, input="<b>a</b>", naming=[file])

    def test_a_number_that_no_setting_can_be_is_named(self):
        self.set_key("Frame.ini", "Divide", "DiaryTerm", "40000")
        self.refused("site", "save", naming=["Frame.ini", "DiaryTerm", "40000"])


class Input(BadInputTest):
    def test_a_bad_line_refuses_the_whole_input_by_its_number(self):
        good = entry("2004/02/03") + LINE
        day = '{"Day":"2004/02/03","Title":"x",'
        for bad in ['{"Day":"2004/02/03","Title":"x"', '{"Day":"2004/02/03","Title":"x', '{', 'null', '3', '"x"', '[]',
                    'nonsense', '{"Day":"2004/02/03","Title":"x"}}', '{"Day":"2004/02/03","Title":"x"}{}',
                    *[json.dumps({"Day": impossible, "Title": "x"}) for impossible in
                      ("2004/02/30", "2003/02/29", "2004/2/3", "2004-02-03", "2004/02/03 ", "0000/01/01", "",
                       "２００４/02/03", 20040203, None)],
                    '{"Title":"x"}', '{}', '{"Day":"2004/02/03"}',
                    *['{"Day":"2004/02/03","Title":%s}' % title for title in ('""', "null", "5", "[]")],
                    *[day + '"Number":%s}' % number for number in
                      ("0", "-1", "1.5", '"1"', "32768", "1e99", "true", "[1]")],
                    *[day + '"Private":%s}' % flag for flag in ("1", '"true"', "{}")],
                    *[day + '"%s":5}' % name for name in ("Contents", "Extend", "Excerpt", "Weather", "Genre", "Time",
                                                          "PublishTime", "ImportMark", "Reason", "Nonsense", "day")]]:
            with self.subTest(bad):
                self.refused("entry", "put", input=good + bad + "\n" + good, naming=["3行目", "標準入力"])
        file = self.input_file("bad.jsonl", good + "x")
        self.refused("entry", "put", "--keep-time", file, naming=["3行目", file])

    def test_lines_that_are_no_utf_8_are_refused(self):
        for bad in (b'{"Day":"2004/02/03","Title":"\xff"}', '{"Day":"2004/02/03","Title":"日記"}'.encode("cp932"),
                    b'{"Day":"2004/02/03","Title":"\xed\xa0\xbd"}', b"\0", BINARY.replace(b"\n", b"")):
            self.refused("entry", "put", input=bad, naming=["1行目"])

    def test_texts_that_are_no_utf_8_are_refused(self):
        ini = os.path.join(self.home, "HTML2TXT.ini")
        for words in (["urlencode", "utf8"], ["urlencode", "sjis"], ["html2text", "--ini", ini], ["scramble"],
                      ["unscramble"]):
            for bad in (b"a\xff", "日記".encode("cp932"), b"\xe6\x97", b"\xed\xa0\xbd"):
                self.refused("convert", *words, input=bad, naming=["標準入力", "UTF-8"])
        file = self.input_file("sjis.txt", "日記".encode("cp932"))
        self.refused("convert", "urlencode", "sjis", file, naming=[file, "UTF-8"])

    def test_an_input_that_can_not_be_read_is_named(self):
        ini = os.path.join(self.home, "HTML2TXT.ini")
        for file in ("/nowhere/a.jsonl", self.inputs):
            self.refused("entry", "put", file, naming=[file])
            self.refused("convert", "urlencode", "utf8", file, naming=[file])
            self.refused("convert", "html2text", "--ini", ini, file, naming=[file])
        folder = os.open(self.inputs, os.O_RDONLY)
        self.addCleanup(os.close, folder)
        for words in (["entry", "put"], ["convert", "scramble"]):
            self.refused(*words, naming=["標準入力"], options={"stdin": folder})

    def test_a_target_that_can_not_be_made_is_named(self):
        file = self.input_file("file", "x")
        self.refused("site", "save", "--as", file + "/x.htm", naming=[file])
        self.refused("site", "save", "--as", self.site + "n" * 300 + ".htm", naming=["n" * 300])


class Streams(BadInputTest):
    def test_results_that_can_not_be_written_are_a_failure(self):
        def closed():
            os.close(1)
        reader, broken = os.pipe()
        os.close(reader)
        self.addCleanup(os.close, broken)
        with open("/dev/full", "wb") as full:
            for how in ({"preexec_fn": closed}, {"stdout": full}, {"stdout": broken}):
                for words in (*READING[:-1], ["ini", "get", self.diary_ini, "ALL", "DataPath"], ["--help"],
                              ["--version"], ["convert", "urlencode", "utf8"]):
                    self.refused(*words, input=LINE, naming=["標準出力"], options=how)

    def test_entries_that_were_saved_without_a_word_are_not_to_be_saved_again(self):
        with open("/dev/full", "wb") as full:
            result = self.run_cli("entry", "put", input=entry("2004/02/05"), options={"stdout": full})
        self.assert_line(result, "日記は保存しました", "標準出力")
        self.assertEqual(self.sql("SELECT count(*) FROM Contents WHERE Day = '2004/02/05'"), [(1,)])
        self.assert_sound()

    def test_a_closed_stream_never_becomes_a_file_of_the_diary(self):
        for closed in ([0], [1], [2], [0, 1], [1, 2], [0, 1, 2]):
            def close(numbers=tuple(closed)):
                for number in numbers:
                    os.close(number)
            for words in READING + WRITING[:-1]:
                self.run_cli(*words, options={"preexec_fn": close})
            for path in (self.diary_ini, self.data + "tmp.htm", self.data + "Genre.csv", self.site + "x.htm"):
                self.assertNotIn(b"velloria-cli:", read(path))
                self.assertNotIn(b"dbFileName", read(path))
            self.assert_sound()

    def test_a_closed_standard_input_can_not_be_read(self):
        self.refused("entry", "put", naming=["標準入力"], options={"preexec_fn": lambda: os.close(0)})

    def test_a_closed_standard_error_changes_no_exit_code(self):
        for words, code in ((["entry", "list"], 0), (["nonsense"], 2), (["entry", "show", "2004/02/02", "1"], 1)):
            result = self.run_cli(*words, options={"preexec_fn": lambda: os.close(2)})
            self.assertEqual(result.code, code)


class Database(BadInputTest):
    def lock(self, statements):
        """Runs the statements in another program, which holds its locks until the returned function is called. (In
        this one, looking at the file would release them.)"""
        program = subprocess.Popen([sys.executable, "-c", HOLD_LOCK, self.database, statements],
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.assertEqual(program.stdout.read(1), b".")

        def release():
            program.communicate()
        self.addCleanup(release)
        return release

    def test_a_locked_one_is_waited_for_and_then_named(self):
        release = self.lock("BEGIN EXCLUSIVE")
        before = snapshot(self.root)
        results = {}

        def run(words):
            results[tuple(words)] = self.run_cli(*words, input=LINE)
        threads = [threading.Thread(target=run, args=[words]) for words in READING + WRITING]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        for words, result in results.items():
            with self.subTest(words=words):
                self.assert_line(result, self.database, "使用中")
        self.assertEqual(snapshot(self.root), before)
        release()
        self.must("entry", "list")

    def test_a_reader_keeps_writers_out_and_their_changes_undone(self):
        self.lock("BEGIN; SELECT count(*) FROM Contents")
        self.must("entry", "list")
        self.refused("entry", "put", input=LINE, naming=[self.database, "使用中"])

    def test_a_short_lock_is_waited_out(self):
        release = self.lock("BEGIN EXCLUSIVE")
        program = subprocess.Popen(self.command("entry", "put"), env=self.environment(), stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        program.stdin.write(entry("2004/02/05").encode())
        program.stdin.close()
        deadline = time.monotonic() + PATIENCE_SECONDS
        while not self.has_open(program, self.database) and time.monotonic() < deadline:
            time.sleep(0.01)
        time.sleep(0.5)
        self.assertIsNone(program.poll(), "it has the diary open and waits")
        release()
        self.assertEqual(program.wait(), 0, program.stderr.read())
        program.stdout.close()
        program.stderr.close()
        self.assertEqual(self.sql("SELECT count(*) FROM Contents WHERE Day = '2004/02/05'"), [(1,)])

    def has_open(self, program, file):
        folder = f"/proc/{program.pid}/fd"
        with contextlib.suppress(OSError):
            return any(os.readlink(os.path.join(folder, name)) == file for name in os.listdir(folder))
        return False

    def test_a_truncated_one_is_named(self):
        whole = read(self.database)
        shutil.rmtree(self.data + "Backup", ignore_errors=True)  # else an empty one is offered its copy
        for size in (len(whole) - 1, len(whole) - 4096, len(whole) // 2, 4096, 1000, 100, 16, 15, 1, 0):
            write(self.database, whole[:size])
            write(self.data + "diarymdb.bak", b"the last good backup")
            self.all_refused(READING + WRITING, self.database, "diarymdb.bak")
            self.refused("db", "version", self.database, naming=[self.database])
        write(self.database, whole)
        self.must("entry", "list")

    def test_a_foreign_file_is_named(self):
        base = os.path.join(self.inputs, "other.db")
        sqlite3.connect(base).executescript("CREATE TABLE Other (a); INSERT INTO Other VALUES (1);")
        for foreign in (BINARY, b"\x89PNG\r\n\x1a\n" * 1000, "日記です。".encode() * 100, b"\0" * 40960, read(base)):
            write(self.database, foreign)
            self.all_refused(READING + WRITING, self.database)

    def test_a_damaged_one_is_named_where_the_damage_is_met(self):
        self.put(*[entry(f"2004/02/{day:02}", str(day), Contents="x" * 3000) for day in range(2, 29)])
        whole = read(self.database)
        (root,), = self.sql("SELECT rootpage FROM sqlite_master WHERE name = 'Contents'")
        start = (root - 1) * 4096
        write(self.database, whole[:start] + b"\xa5" * 4096 + whole[start + 4096:])
        self.all_refused([["entry", "list"], ["entry", "show", "2004/02/01"], ["entry", "put"], ["site", "save"],
                          ["site", "preview"], ["--yes", "entry", "delete", "2004/02/01", "1"]], self.database)
        before = snapshot(self.root)
        self.assertIn("異常", self.run_cli("db", "check").text)
        self.assertEqual(snapshot(self.root), before)

    def test_one_of_a_future_version_is_accepted(self):
        self.sql("UPDATE DBInfo SET VersionInfo = 221")
        for words in READING + WRITING:
            self.assertEqual(self.must(*words, input=LINE).err, b"")
        self.assertEqual(self.sql("SELECT VersionInfo FROM DBInfo"), [(221,)])

    def test_one_that_says_an_old_version_and_lacks_its_tables_is_named_and_stays_as_it_is(self):
        for version in (0, 100):
            self.sql("UPDATE DBInfo SET VersionInfo = ?", version)
            before = read(self.database)
            result = self.run_cli("--events", "start")
            self.assertEqual((result.code, len(result.boxes), len(result.events_of("failure"))), (1, 1, 1), result)
            self.assertIn("Option", result.error_lines[-1])
            self.assertEqual((read(self.database), read(self.data + "diarymdb.bak")), (before, before))

    def test_a_version_that_is_no_number_of_16_bits_is_refused(self):
        for version in (40000, -40000, 2**40):
            self.sql("UPDATE DBInfo SET VersionInfo = ?", version)
            self.all_refused(READING + WRITING, self.database, str(version))

    def test_one_that_lacks_a_table_is_named(self):
        self.sql("DROP TABLE Contents")
        self.all_refused([["entry", "list"], ["entry", "put"], ["site", "save"], ["site", "preview"]], self.database,
                         "Contents")

    def test_one_that_is_read_only_is_read_and_not_written(self):
        os.chmod(self.database, 0o400)
        for words in READING:
            self.must(*words)
        # Root may write whatever a mode says, unless that right is taken away.
        as_others = ["setpriv", "--bounding-set=-dac_override"] if os.geteuid() == 0 else []
        before = snapshot(self.root)
        self.assert_line(self.execute([*as_others, *self.command("entry", "put")], LINE), self.database)
        self.assertEqual(snapshot(self.root), before)


class FullDisk(CliTest):
    """Each command on a disk that is full sooner or later: it succeeds, or it is refused and all files are whole."""

    def prepare(self):
        self.use_site()
        self.put(*[entry(f"2004/02/{day:02}", "old", Contents="old " * 200, Genre="g1") for day in range(1, 20)])
        self.set_key("diary.ini", "ALL", "Rescue", "1")
        self.must("site", "rebuild")
        self.lines = "".join(entry(f"2004/02/{day:02}", "new", Contents="new " * 4000, Genre="g2", Number=1)
                             for day in range(1, 20))

    def check(self, **how):
        """Returns how many commands were refused."""
        refusals = 0
        for words in [["entry", "put"], ["--yes", "entry", "delete", "2004/02/05", "1"], ["genre", "rebuild"],
                      ["site", "preview"], ["site", "save"], ["site", "log", "2004", "2"]]:
            before = snapshot(self.root)
            pages = {path: read(path) for path in (self.data + "tmp.htm", self.site + "x.htm", self.diary_ini)}
            titles = self.sql("SELECT Day, Number, Title FROM Contents ORDER BY 1, 2")
            result = self.run_cli(*words, input=self.lines, **how)
            if result.code != 0:
                refusals += 1
                self.assert_refused_whole(words, result, before, titles)
            self.assert_sound()
            for path, content in pages.items():
                if read(path) != content:
                    self.assertTrue(read(path).endswith(b"</HTML>\r\n"), f"{words}: {path} is no whole page")
            self.assertFalse([name for name in snapshot(self.root) if "/.vell" in name], words)
        return refusals

    def assert_refused_whole(self, words, result, before, titles):
        self.assertEqual(result.code, 1, result)
        self.assertIn(self.root, result.error_text)
        after = self.sql("SELECT Day, Number, Title FROM Contents ORDER BY 1, 2")
        if after != titles:
            self.assertRegex(result.error_text, "日記は(保存|削除)しました", "what followed the change has failed")
            return
        self.assertEqual(len(result.error_lines), 1, result)
        if "entry" in words or "genre" in words or "preview" in words:
            self.assertEqual(snapshot(self.root), before, result)

    def test_of_a_small_disk(self):
        disk = os.path.join(self.root, "disk")
        os.makedirs(disk)
        if os.geteuid() != 0 or not mount("-t", "tmpfs", "-o", "size=1200k", "tmpfs", disk):
            self.skipTest("needs the right to mount")
        self.addCleanup(subprocess.run, ["umount", disk])
        self.home = self.make_home("disk/home")
        self.data = self.home + "/UserData/"
        self.site = disk + "/site/"
        self.diary_ini, self.database = self.data + "diary.ini", self.data + "diary.mdb"
        self.prepare()
        original = os.path.join(self.inputs, "original")
        shutil.copytree(disk, original)
        refusals = 0
        for free in (0, 4, 8, 16, 32, 64, 128, 256):
            for name in ("home", "site"):
                shutil.rmtree(os.path.join(disk, name))
                shutil.copytree(os.path.join(original, name), os.path.join(disk, name))
            room = os.statvfs(disk)
            filler = room.f_bavail * room.f_frsize - free * 1024
            write(disk + "/filler", b"\0" * max(filler, 0))
            refusals += self.check()
            os.remove(disk + "/filler")
        self.assertGreater(refusals, 10)

    def test_of_files_that_may_not_grow(self):
        self.prepare()
        original = os.path.join(self.inputs, "original")
        shutil.copytree(self.root, original)
        refusals = 0
        for limit in (0, 10, 1000, 5000, 30_000, 60_000, 100_000, 300_000):
            shutil.rmtree(self.home)
            shutil.rmtree(self.site)
            shutil.copytree(original, self.root, dirs_exist_ok=True)
            refusals += self.check(options={"preexec_fn": bytes_limit(limit)})
        self.assertGreater(refusals, 10)


class Large(CliTest):
    def test_a_text_piece_of_100_megabytes_goes_onto_the_page(self):
        self.must("site", "preview")
        self.customize("Body", UpText="large")
        write(self.data + "Customize/large.htm", b"<!-- piece -->" * 7_500_000)
        self.refused("site", "preview", naming=["tmp.htm"], options={"preexec_fn": bytes_limit(50_000_000)})
        self.must("site", "preview")
        page = read(self.data + "tmp.htm")
        self.assertEqual(page.count(b"<!-- piece -->"), 7_500_000)
        self.assertTrue(page.endswith(b"</BODY>\r\n</HTML>\r\n"))

    def test_an_entry_of_50_megabytes_is_kept(self):
        text = "日記" * 8_000_000
        self.put(entry("2004/02/01", Contents=text))
        self.assertEqual(self.must("--json", "entry", "show", "2004/02/01", "1").json["Contents"], text)
        self.must("site", "preview")
        self.assertIn(text[:1000].encode("cp932"), read(self.data + "tmp.htm"))

    def test_a_diary_of_100_000_entries_works(self):
        self.use_site()
        lines = "".join(entry(f"{year}/{month:02}/{day:02}", "t", Contents="text " * 20, Genre=f"g{day}")
                        for year in range(1990, 2005) for month in range(1, 13) for day in range(1, 29)
                        for _ in range(20))
        self.assertEqual(self.put(lines).text.count("\n"), 100_800)
        self.must("start")
        self.assertEqual(self.must("entry", "list").text.count("\n"), 100_800)
        self.assertEqual(len(self.must("--json", "entry", "list", "--month", "2004/02").json), 560)
        self.must("site", "save")
        self.assertEqual(read(self.site + "x.htm").count(b'<A NAME="'), 560)
        self.must("site", "preview")
        self.assertEqual(self.must("entry", "put", input=entry("2004/02/01")).text, "2004/02/01\t21\n")
        self.must("--yes", "entry", "delete", "2004/02/01", "1")
        self.must("genre", "rebuild")
        self.assertEqual(self.must("db", "check").out, b"")


if __name__ == "__main__":
    unittest.main()
