"""What every command promises: options, exit codes, what goes to which stream, events, answers."""

import json
import os
import pathlib
import pty
import re
import shutil
import stat
import subprocess
import time
import unittest

from home import CLI, PROGRAM, CliTest, entry, read, snapshot, write

MANUAL = pathlib.Path(__file__).resolve().parents[2] / "docs" / "velloria-cli.1"
COMMANDS = re.findall(r"^\.It Ic ([a-z0-9]+(?: [a-z0-9]+)?)", MANUAL.read_text(encoding="utf-8"), re.M)
GLOBAL_OPTIONS = ["--home", "--user", "--now", "--day", "--events", "--answers", "--yes", "--json", "--version",
                  "--help"]
VARIABLES = ["dbFileName", "MyPath", "FilePath", "FileName", "DiaryIniFile", "CustIniFile", "FrameIniFile",
             "RSSIniFile", "HaloScanIniFile", "BlogIniFile", "Today", "EnterDay", "DataPath", "FavoriteFolderPath",
             "CurrentVersion", "IsLogin", "UserID", "UserPath", "IsLarkportDll", "IsWrenportDll", "IsChimerDll",
             "IsVellInfoDll"]
MEMBERS = {"status": {"text"}, "pointer": {"shape"}, "message": {"kind", "title", "text", "buttons", "answer"},
           "input": {"title", "text", "default", "answer"}, "file": {"mode", "title", "filter", "folder", "answer"},
           "progress": {"caption", "title", "text", "max", "value", "ok"}, "navigate": {"url"}, "failure": {"text"}}


class Help(CliTest):
    def test_help_shows_every_command_and_every_global_option(self):
        text = self.must("--help").text
        for name in COMMANDS + GLOBAL_OPTIONS:
            self.assertRegex(text, rf"(?m)^  {name}( |$)")

    def test_help_stands_behind_each_command_and_starts_nothing(self):
        for name in COMMANDS:
            result = self.must(*name.split(), "--help")
            self.assertEqual(result.err, b"", name)
            shown = re.findall(r"(?m)^  ([a-z].*)$", result.text)
            self.assertEqual([line[:len(name)] for line in shown], [name], result.text)
        self.assertFalse(os.path.exists(self.data))

    def test_help_of_a_group_shows_the_group(self):
        for line in (["entry", "--help"], ["--help", "entry"]):
            shown = re.findall(r"(?m)^  ([a-z].*)$", self.must(*line).text)
            self.assertEqual(len(shown), 5, shown)
            self.assertTrue(all(line.startswith("entry ") for line in shown), shown)

    def test_help_of_nothing_is_wrong_usage(self):
        self.refused("--help", "nonsense", code=2, naming=["nonsense"])

    def test_version_is_one_line_and_needs_no_home(self):
        result = self.must("--version", home="/nowhere")
        self.assertEqual((result.text, result.err), ("velloria-cli 2.2.0\n", b""))


class GlobalOptions(CliTest):
    def test_start_prints_the_variables_in_their_order(self):
        result = self.must("start")
        self.assertEqual([row[0] for row in result.rows], VARIABLES)
        self.assertEqual(result.err, b"")
        self.assertEqual(list(self.must("--json", "start").json), sorted(VARIABLES))

    def test_now_fixes_the_clock_and_day_only_the_entered_day(self):
        variables = dict(self.must("start", now="2011/12/31 23:59:59", day="2003/04/05").rows)
        self.assertEqual((variables["Today"], variables["EnterDay"]), ("2011/12/31", "2003/04/05"))
        variables = dict(self.must("start", now="2011/12/31 23:59:59").rows)
        self.assertEqual(variables["EnterDay"], "2011/12/31")

    def test_without_now_the_clock_runs(self):
        self.assertRegex(dict(self.must("start", now=None).rows)["Today"], r"^20\d\d/\d\d/\d\d$")

    def test_a_global_option_may_stand_behind_the_command_and_its_value_behind_an_equal_sign(self):
        result = self.must("start", "--json", f"--home={self.home}", "--day=2001/02/03")
        self.assertEqual(result.json["EnterDay"], "2001/02/03")

    def test_two_hyphens_end_the_options(self):
        file = self.input_file("a.ini", "")
        self.must("ini", "set", "--", file, "S", "--json", "--help")
        self.assertEqual(self.must("ini", "get", "--", file, "S", "--json").text, "--help\n")
        self.refused("ini", "get", "--", file, "S", "--json", "x", "--yes", code=2)

    def test_a_negative_number_is_a_value_and_no_option(self):
        file = self.input_file("a.ini", "")
        self.must("ini", "set", file, "S", "K", "-5")
        self.assertEqual(self.must("ini", "int", file, "S", "K").text, "-5\n")

    def test_the_home_is_the_option_else_the_variable_else_the_folder_of_the_program(self):
        own = os.path.join(self.root, "own")
        shutil.copytree(PROGRAM, own, ignore=shutil.ignore_patterns("UserData"))
        program = os.path.join(own, "velloria-cli")
        other = self.make_home("other")

        def home_of(*words, **environment):
            return self.execute([program, *words, "--json", "start"], environment=environment).json["MyPath"]

        self.assertEqual(home_of(), own + "/")
        self.assertEqual(home_of(VELLORIA_HOME=other), other + "/")
        self.assertEqual(home_of("--home", self.home, VELLORIA_HOME=other), self.home + "/")

    def test_a_home_without_its_last_separator_and_with_detours_is_the_same_home(self):
        for spelling in (self.home + "/", self.home + "//", self.root + "/./home/../home"):
            self.assertEqual(dict(self.must("start", home=spelling).rows)["MyPath"], self.home + "/")

    def test_a_relative_home_is_a_folder_of_the_working_directory(self):
        result = self.must("start", home="home", options={"cwd": self.root})
        self.assertEqual(dict(result.rows)["MyPath"], self.home + "/")

    def test_an_installed_program_keeps_its_home_in_the_users_data_folder(self):
        installed = os.path.join(self.root, "installed")
        shutil.copytree(PROGRAM, installed, ignore=shutil.ignore_patterns("UserData"))
        write(installed + "/a.blg", "[S]\r\nK=1\r\n")
        share = os.path.join(self.root, "share")
        os.makedirs(share)
        somebody = self.without_write_permission(installed, share)
        mine = os.path.join(share, "velloria", "")
        later = int(time.time()) + 100_000
        for _ in range(2):
            result = self.execute([installed + "/velloria-cli", "--json", "start"], **somebody)
            self.assertEqual(result.code, 0, result)
            self.assertEqual(result.json["MyPath"], mine)
            write(mine + "HTML2TXT.ini", "[MODE]\r\n")
            os.utime(installed + "/a.blg", (later, later))
        self.assertEqual(stat.S_IMODE(os.stat(mine).st_mode), 0o700)
        self.assertEqual(read(mine + "HTML2TXT.ini"), b"[MODE]\r\n", "the user's own settings stay")
        self.assertEqual(os.stat(mine + "a.blg").st_mtime, later, "a newer template comes along")


class WrongUsage(CliTest):
    def test_it_is_exit_code_2_with_one_line_that_names_the_culprit_and_nothing_is_started(self):
        for words, named in [
            ([], "--help"),
            ([""], "「」"),
            (["nonsense"], "nonsense"),
            (["entry"], "entry"),
            (["entry", "nonsense"], "entry nonsense"),
            (["ENTRY", "LIST"], "ENTRY"),
            (["-h"], "-h"),
            (["--nonsense", "start"], "--nonsense"),
            (["start", "--nonsense"], "--nonsense"),
            (["start", "--month", "2004/01"], "--month"),
            (["start", "argument"], "argument"),
            (["start", "--json=1"], "--json"),
            (["start", "--yes=no"], "--yes"),
            (["start", "--day"], "--day"),
            (["start", "--day", "2004/02/30"], "2004/02/30"),
            (["start", "--day", "2004/2/3"], "2004/2/3"),
            (["start", "--now", "2004/02/30 00:00:00"], "2004/02/30 00:00:00"),
            (["start", "--now", "2004/02/03"], "2004/02/03"),
            (["start", "--now", "2004/02/03 24:00:00"], "24:00:00"),
            (["start", "--now="], "--now"),
            (["start", "--home", ""], "--home"),
            (["start", "--answers", ""], "--answers"),
            (["entry", "list", "--month", "2004/13"], "2004/13"),
            (["entry", "list", "--from", "2004/02"], "2004/02"),
            (["entry", "list", "--to", ""], "「」"),
            (["entry", "show"], "entry show DAY [NUMBER]"),
            (["entry", "show", "2003/02/29"], "2003/02/29"),
            (["entry", "show", "２００４/02/01"], "２００４/02/01"),
            (["entry", "show", "2004/02/01", "0"], "「0」"),
            (["entry", "show", "2004/02/01", "-1"], "「-1」"),
            (["entry", "show", "2004/02/01", "32768"], "32768"),
            (["entry", "show", "2004/02/01", "1x"], "1x"),
            (["entry", "show", "2004/02/01", "1", "two"], "two"),
            (["entry", "delete", "2004/02/01"], "entry delete DAY NUMBER"),
            (["entry", "days"], "--month"),
            (["entry", "put", "a", "b"], "b"),
            (["site", "log", "2004"], "site log YEAR MONTH"),
            (["site", "log", "../x", "1"], "../x"),
            (["site", "log", "2004", "a/b"], "a/b"),
            (["site", "sameday", "2004/02/30"], "2004/02/30"),
            (["site", "rebuild", "--from", "2004"], "2004"),
            (["convert", "html2text"], "--ini"),
            (["convert", "html2text", "--ini", "HTML2TXT.ini", "--set", "x"], "x"),
            (["convert", "urlencode"], "sjis|eucjp|utf8"),
            (["convert", "urlencode", "big5"], "big5"),
            (["convert", "scramble", "password"], "password"),
            (["ini", "get", "a", "b"], "ini get FILE SECTION KEY [DEFAULT]"),
            (["ini", "int", "a", "b", "c", "x"], "「x」"),
            (["ini", "int", "a", "b", "c", "32768"], "32768"),
            (["ini", "set", "a", "b", "c"], "ini set FILE SECTION KEY VALUE"),
            (["ini", "sections"], "ini sections FILE"),
            (["db", "version", "a", "b"], "b"),
        ]:
            with self.subTest(words=words):
                self.refused(*words, code=2, naming=[named], options={"cwd": self.home})

    def test_answers_that_are_no_json_array_are_wrong_usage(self):
        for content in ("", "{}", '"yes"', '["yes",', "[1]x", "\xff"):
            file = self.input_file("script.json", content.encode("latin-1"))
            self.refused("--answers", file, "start", code=2, naming=[file])

    def test_answers_that_are_not_there_are_a_failure(self):
        self.refused("--answers", "/nowhere/answers", "start", naming=["/nowhere/answers"])


class Output(CliTest):
    def test_results_with_json_are_one_document(self):
        self.put(entry("2004/02/01", "a"), entry("2004/02/01", "b"))
        self.use_site()
        file = self.input_file("a.ini", "[S]\r\nK=5\r\n")
        for words, kind in [(["start"], dict), (["entry", "list"], list), (["entry", "show", "2004/02/01"], list),
                            (["entry", "show", "2004/02/01", "1"], dict), (["entry", "show", "2004/02/02"], list),
                            (["entry", "days", "--month", "2004/02"], list), (["genre", "list"], list),
                            (["site", "save"], dict), (["site", "preview"], dict), (["site", "rebuild"], dict),
                            (["site", "sameday", "2004/02/01"], dict), (["ini", "get", file, "S", "K"], dict),
                            (["ini", "int", file, "S", "K"], dict), (["ini", "sections", file], list),
                            (["db", "version"], dict), (["db", "version", self.database], dict),
                            (["db", "check"], list), (["entry", "put"], list)]:
            with self.subTest(words=words):
                result = self.must("--json", *words)
                self.assertIsInstance(result.json, kind)
                self.assertTrue(result.text.endswith("\n"))
                self.assertEqual(result.err, b"")

    def test_lists_are_rows_of_fields_parted_by_tabs_and_no_field_breaks_a_row(self):
        self.put(entry("2004/02/01", "a\tb\nc\r\nd\\e", Genre="買い物", Weather="晴れ", Private=True))
        self.assertEqual(self.must("entry", "list").text,
                         "2004/02/01\t1\ta\\tb\\nc\\r\\nd\\\\e\t買い物\t晴れ\t1\n")

    def test_events_change_nothing_on_standard_output(self):
        self.put(entry("2004/02/01", "a"))
        self.use_site()
        for words in (["entry", "list"], ["site", "save"], ["site", "preview"], ["site", "rebuild"]):
            self.assertEqual(self.must(*words).out, self.must("--events", *words).out)

    def test_commands_that_succeed_say_nothing_on_standard_error(self):
        self.use_site()
        for words in (["entry", "put"], ["genre", "rebuild"], ["site", "save"], ["site", "preview"],
                      ["site", "log", "2004", "1"], ["site", "rebuild"], ["site", "sameday", "2004/02/01"],
                      ["--yes", "entry", "delete", "2004/02/01", "1"], ["db", "check"]):
            self.assertEqual(self.must(*words, input=entry("2004/02/01")).err, b"", words)

    def test_texts_are_utf_8_whatever_the_language_of_the_machine(self):
        for language in ("C", "POSIX", "ja_JP.SJIS", "nonsense"):
            environment = {"LANG": language, "LC_ALL": language}
            self.must("entry", "put", input=entry("2004/02/01", "日記😀"), environment=environment)
            result = self.must("entry", "list", environment=environment)
            self.assertIn("日記😀", result.text)
            self.assertEqual(result.err, b"")


class Events(CliTest):
    def events_in(self, result):
        """The events of a run; every other line must be the reason of its end."""
        for line in result.error_lines:
            self.assertTrue(line.startswith(("{", "velloria-cli: ")), result)
        for event in result.events:
            self.assertEqual(set(event) - {"event"}, MEMBERS[event["event"]], event)
        return result.events

    def test_each_event_has_its_members_and_no_others(self):
        self.put(entry("2003/12/01", "b"), entry("2004/02/01", "a"))
        runs = [(["site", "save"], {"answers": [self.site + "x"]}), (["site", "rebuild"], {}),
                (["site", "log", "2004", "1"], {}), (["genre", "rebuild"], {}), (["site", "log", "1999", "12"], {}),
                (["entry", "delete", "2004/02/01", "1"], {})]
        seen = set()
        for words, how in runs:
            seen |= {event["event"] for event in self.events_in(self.run_cli("--events", *words, **how))}
        self.use_users()
        seen |= {event["event"] for event in self.events_in(
            self.run_cli("--events", "start", user="taro", answers=["secret"]))}
        self.assertEqual(seen, set(MEMBERS))

    def use_users(self):
        write(self.home + "/velluser.ini", "[taro]\r\nID=taro\r\nPass=ufsdft\r\n")

    def test_a_question_tells_its_answer(self):
        self.put(entry("2004/02/01", "a"))
        for answer in ("no", "yes"):
            result = self.run_cli("--events", "entry", "delete", "2004/02/01", "1", answers=[answer])
            self.assertIn({"event": "message", "kind": "question", "title": "Velloria", "buttons": "yesno",
                           "text": "2004/02/01の1番目の日記を削除します。", "answer": answer}, self.events_in(result))

    def test_a_box_with_ok_alone_is_answered_ok(self):
        self.assertIn({"event": "message", "kind": "information", "title": "Velloria", "buttons": "ok",
                       "text": "完了！", "answer": "ok"}, self.must("--events", "genre", "rebuild").events)

    def test_a_file_dialog_tells_all_that_it_shows(self):
        target = self.site + "index"
        result = self.must("--events", "site", "save", answers=[target])
        self.assertEqual(result.events_of("file"), [{
            "event": "file", "mode": "save", "title": "日記の書き出し...",
            "filter": "HTML Files(*.htm;*.html)|*.htm;*html|", "folder": self.data, "answer": target}])
        result = self.run_cli("--events", "site", "save", "--as", "", answers=[None])
        self.assertEqual(result.code, 1)

    def test_a_cancelled_dialog_answers_null(self):
        result = self.run_cli("--events", "site", "save", answers=[None])
        self.assertEqual([event["answer"] for event in result.events_of("file")], [None])
        self.assertEqual(result.code, 1)

    def test_a_folder_dialog_says_so(self):
        self.must("start")
        self.set_key("diary.ini", "ALL", "DataPath", "/nowhere/")
        result = self.run_cli("--events", "start", answers=[self.root])
        self.assertEqual([(event["mode"], event["title"], event["answer"]) for event in result.events_of("file")],
                         [("folder", "フォルダの選択", self.root)])

    def test_a_typed_password_is_no_part_of_an_event(self):
        self.use_users()
        result = self.run_cli("--events", "start", user="taro", answers=["tecres"])
        self.assertEqual(len(result.events_of("input")), 1, result)
        self.assertNotIn("tecres", result.error_text)

    def test_the_pointer_is_normal_again_at_the_end_of_each_command(self):
        self.put(entry("2004/02/01", "a"))
        self.use_site()
        for words in (["start"], ["site", "save"], ["site", "preview"], ["site", "log", "1999", "12"],
                      ["site", "rebuild"], ["--yes", "entry", "delete", "2004/02/01", "1"]):
            shapes = [event["shape"] for event in self.run_cli("--events", *words).events_of("pointer")]
            self.assertEqual(shapes[-1], "default", words)
            self.assertEqual(shapes.count("hourglass"), shapes.count("default"), words)

    def test_the_hourglass_of_logs_stands_until_the_preview_is_shown(self):
        self.put(entry("2003/12/01", "a"), entry("2004/02/01", "b"))
        self.use_site()
        for words in (["site", "log", "2003", "12"], ["site", "rebuild"]):
            events = [event.get("shape", event["event"]) for event in self.must("--events", *words).events
                      if event["event"] in ("pointer", "message", "navigate")]
            self.assertEqual(events[-4:], ["hourglass", "message", "navigate", "default"], words)

    def test_a_failure_is_an_event_and_in_every_mode_a_line(self):
        result = self.run_cli("--events", "site", "log", "1999", "12")
        self.assertEqual((result.code, len(result.events_of("failure"))), (1, 1), result)
        self.assertIn("1999年12月", result.events_of("failure")[0]["text"])
        self.assertIn("1999年12月", result.error_lines[-1])
        self.assertTrue(result.error_lines[-1].startswith("velloria-cli: "))
        plain = self.run_cli("site", "log", "1999", "12")
        self.assertEqual(plain.error_lines, result.error_lines[-1:])

    def test_navigation_is_an_event_and_nothing_else(self):
        result = self.must("--events", "site", "preview")
        self.assertEqual(result.events_of("navigate"), [{"event": "navigate", "url": self.data + "tmp.htm"}])

    def test_deleting_tells_its_steps_in_order(self):
        self.put(entry("2004/02/01", "a"))
        result = self.must("--events", "--yes", "entry", "delete", "2004/02/01", "1")
        steps = [event.get("text") or event.get("url") for event in result.events if event["event"] != "pointer"]
        self.assertEqual(steps, ["2004/02/01の1番目の日記を削除します。", "Webページ表示中...",
                                 self.data + "tmp.htm#2004/02/01", "2004/02/01の日記を削除しました。"])

    def test_a_rebuild_tells_how_far_it_is(self):
        self.use_site()
        self.put(*[entry(f"2003/{month:02}/01") for month in range(1, 7)])
        values = [(event["value"], event["max"])
                  for event in self.must("--events", "site", "rebuild").events_of("progress")]
        self.assertEqual(values, sorted(values))
        self.assertEqual(values[-1][0], values[-1][1])
        self.assertGreaterEqual(len(values), 6)


class Answers(CliTest):
    def setUp(self):
        super().setUp()
        self.put(*[entry("2004/02/01", title) for title in "abc"])

    def delete(self, *words, **how):
        return self.run_cli(*words, "entry", "delete", "2004/02/01", "1", **how)

    def titles(self):
        return [title for _, _, title in self.listed()]

    def test_yes_means_yes_and_everything_else_no(self):
        for answer in ("no", "", "YES", "y", None, 1, True, ["yes"]):
            self.assertEqual(self.delete(answers=[answer]).code, 1, answer)
        self.assertEqual(self.titles(), ["c", "b", "a"])
        self.assertEqual(self.delete(answers=["yes"]).code, 0)
        self.assertEqual(self.titles(), ["c", "b"])

    def test_when_the_answers_are_used_up_it_is_no(self):
        self.assertEqual(self.delete(answers=[]).code, 1)
        self.assertEqual(len(self.titles()), 3)

    def test_the_option_yes_answers_questions_and_takes_no_element_for_them(self):
        self.assertEqual(self.delete("--yes").code, 0)
        self.assertEqual(self.delete("--yes", answers=["no"]).code, 0)
        self.assertEqual(self.titles(), ["c"])

    def test_a_no_that_means_stop_is_a_refusal(self):
        self.refused("entry", "delete", "2004/02/01", "1", answers=["no"])

    def test_boxes_with_ok_alone_take_no_element(self):
        self.must("start")
        self.set_key("diary.ini", "ALL", "DataPath", "/nowhere/")
        self.must("start", answers=[self.data])
        self.assertEqual(self.ini("diary.ini", "ALL", "DataPath"), self.data)

    def test_each_question_takes_the_next_element_in_order(self):
        self.set_key("diary.ini", "ALL", "DataPath", "/nowhere/")
        self.assertEqual(self.delete(answers=[self.data, "yes"]).code, 0)
        self.assertEqual(len(self.titles()), 2)

    def test_what_the_command_line_names_is_not_asked_again(self):
        result = self.must("--events", "site", "save", "--as", self.site + "x.htm", answers=["/nowhere/y.htm"])
        self.assertEqual(result.events_of("file"), [])
        self.assertEqual(self.ini("diary.ini", "ALL", "SaveFileName"), "x.htm")

    def test_a_standard_input_that_is_no_terminal_counts_as_no(self):
        self.assertEqual(self.delete(input="y\nyes\n").code, 1)
        self.assertEqual(self.run_cli("site", "save", input=self.site + "x.htm\n").code, 1)
        self.assertEqual(len(self.titles()), 3)


class Terminal(CliTest):
    def on_terminal(self, *words, typed="", **how):
        """Runs with a terminal on all three streams. Returns the exit code and all that was shown."""
        master, slave = pty.openpty()
        try:
            program = subprocess.Popen(self.command(*words, **how), env=self.environment(), stdin=slave, stdout=slave,
                                       stderr=slave, start_new_session=True)
            os.close(slave)
            os.write(master, typed.encode())
            shown = b""
            try:
                while block := os.read(master, 4096):
                    shown += block
            except OSError:
                pass    # the far end is closed
            return program.wait(600), shown.decode()
        finally:
            os.close(master)

    def test_a_question_is_asked_on_the_terminal(self):
        self.put(entry("2004/02/01", "a"))
        code, shown = self.on_terminal("entry", "delete", "2004/02/01", "1", typed="n\n")
        self.assertEqual((code, len(self.listed())), (1, 1))
        self.assertIn("2004/02/01の1番目の日記を削除します。", shown)
        code, shown = self.on_terminal("entry", "delete", "2004/02/01", "1", typed="y\n")
        self.assertEqual((code, len(self.listed())), (0, 0), shown)

    def test_the_end_of_the_input_is_no(self):
        self.put(entry("2004/02/01", "a"))
        code, _ = self.on_terminal("entry", "delete", "2004/02/01", "1", typed="\x04")
        self.assertEqual((code, len(self.listed())), (1, 1))

    def test_a_stored_name_does_not_command_the_terminal(self):
        self.put(entry("2004/02/01", "x\x1b[31m"))
        self.assertIn("x\\u001b[31m", self.on_terminal("entry", "list")[1])

    def test_a_file_is_asked_for_on_the_terminal(self):
        code, shown = self.on_terminal("site", "save", typed=self.site + "y.htm\n")
        self.assertEqual(code, 0, shown)
        self.assertTrue(os.path.exists(self.site + "y.htm"))

    def test_long_work_shows_how_far_it_is(self):
        self.use_site()
        self.put(*[entry(f"2003/{month:02}/01") for month in range(1, 7)])
        code, shown = self.on_terminal("site", "rebuild")
        self.assertEqual(code, 0, shown)
        self.assertIn("2003/03 3/", shown)

    def test_a_new_password_is_asked_for_twice_and_not_shown(self):
        master, slave = pty.openpty()
        self.addCleanup(os.close, master)
        program = subprocess.Popen(self.command("user", "add", "taro"), env=self.environment(), stdin=slave,
                                   stdout=slave, stderr=slave, start_new_session=True)
        os.close(slave)
        shown = ""
        for prompt in ("パスワードの入力 - パスワード: ", "パスワードの入力 - パスワード（確認用）: "):
            while not shown.endswith(prompt):
                shown += os.read(master, 4096).decode()
            os.write(master, b"tecres\n")
        try:
            while block := os.read(master, 4096):
                shown += block.decode()
        except OSError:
            pass
        self.assertEqual(program.wait(600), 0, shown)
        self.assertNotIn("tecres", shown)
        self.assertIn("Pass=tfsdfu", read(self.home + "/velluser.ini").decode())

    def test_a_user_without_a_password_presses_enter(self):
        write(self.home + "/velluser.ini", "[taro]\r\nID=taro\r\n")
        master, slave = pty.openpty()
        self.addCleanup(os.close, master)
        program = subprocess.Popen(self.command("user", "list", user="taro"), env=self.environment(), stdin=slave,
                                   stdout=slave, stderr=slave, start_new_session=True)
        os.close(slave)
        os.read(master, 4096)
        os.write(master, b"\n")
        self.assertEqual(program.wait(600), 0)

    def test_a_password_is_not_shown(self):
        write(self.home + "/velluser.ini", "[taro]\r\nID=taro\r\nPass=ufsdft\r\n")
        master, slave = pty.openpty()
        self.addCleanup(os.close, master)
        program = subprocess.Popen(self.command("start", user="taro"), env=self.environment(), stdin=slave,
                                   stdout=slave, stderr=slave, start_new_session=True)
        os.close(slave)
        shown = os.read(master, 4096)           # the prompt: from here on nothing is echoed
        os.write(master, b"tecres\n")
        try:
            while block := os.read(master, 4096):
                shown += block
        except OSError:
            pass
        self.assertEqual(program.wait(600), 1)  # logged in, but a user without any file has no data folder
        self.assertNotIn("tecres", shown.decode())


class StartsNothing(CliTest):
    def test_commands_that_need_no_diary_leave_the_home_alone(self):
        file = self.input_file("a.ini", "[S]\r\nK=1\r\n")
        database = os.path.join(self.home, "default.mdb")
        before = snapshot(self.home)
        for words in (["ini", "get", file, "S", "K"], ["ini", "int", file, "S", "K"], ["ini", "sections", file],
                      ["ini", "set", file, "S", "K", "2"], ["ini", "delete", file, "S", "K"],
                      ["db", "version", database], ["convert", "scramble"], ["convert", "unscramble"],
                      ["convert", "urlencode", "utf8"],
                      ["convert", "html2text", "--ini", os.path.join(self.home, "HTML2TXT.ini")],
                      ["--version"], ["--help"]):
            self.must(*words)
        self.assertEqual(snapshot(self.home), before)

    def test_they_ask_for_no_user_either(self):
        write(self.home + "/velluser.ini", "[taro]\r\nID=taro\r\n")
        self.must("db", "version", os.path.join(self.home, "default.mdb"))
        self.must("convert", "scramble")
        self.refused("start", naming=["--user"])
        self.refused("db", "version", naming=["--user"])


if __name__ == "__main__":
    unittest.main()
