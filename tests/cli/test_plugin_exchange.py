"""Import and export through plug-ins. VELLORIA_PLUGIN_STUB names the plug-in that writes down its calls."""

import os
import shutil
import sqlite3
import unittest
from contextlib import closing

from home import CliTest, entry, read, write

STUB = os.environ["VELLORIA_PLUGIN_STUB"]
WORDS = {"mt": "Larkport.dll", "hatena": "Wrenport.dll"}
READING = {"mt": ["read_entries", "finish"], "hatena": ["finish"]}
WRITING = {"mt": ["set_user_id ", "write_entries", "finish"], "hatena": ["write_entries", "finish"]}


class PluginExchange(CliTest):
    def setUp(self):
        super().setUp()
        for plugin in WORDS.values():
            path = os.path.join(self.home, plugin)
            if os.path.exists(path):
                os.unlink(path)
            shutil.copy(STUB, path)
        self.log = os.path.join(self.inputs, "calls.txt")
        self.source = self.input_file("source.txt", "x")
        self.target = os.path.join(self.root, "out", "x.txt")
        os.mkdir(os.path.dirname(self.target))
        self.put(entry("2004/05/06", "own", Genre="own"))

    def exchange(self, *words, answers=(), options=(), stub=None, **how):
        """The command with the stub told by `stub`, as {"FAILS": "finish"}."""
        environment = {"VELLORIA_PLUGIN_LOG": self.log}
        environment |= {"VELLORIA_PLUGIN_" + name: value for name, value in (stub or {}).items()}
        return self.run_cli("--events", *options, *words, answers=list(answers), environment=environment, **how)

    def take_calls(self):
        calls = read(self.log).decode().splitlines() if os.path.exists(self.log) else []
        write(self.log, "")
        return calls

    def opening(self, direction, file, database=None):
        flag = {"import": 0, "export": 1}[direction]
        return [f"connect {database or self.database}", f"prepare_{direction}", f"open_file {file} {flag}"]

    def genres(self):
        with open(self.data + "Genre.csv", encoding="cp932", newline="") as file:
            return file.read().split()

    def counts(self):
        with closing(sqlite3.connect(self.database)) as base:
            return dict(base.execute("SELECT Day, COUNT(*) FROM Contents GROUP BY Day"))


class Calls(PluginExchange):
    def test_come_in_the_order_of_each_format(self):
        for word in WORDS:
            result = self.exchange(word, "import", self.source)
            self.assertEqual((result.code, result.out, result.boxes), (0, b"", []), result)
            self.assertEqual(self.take_calls(), self.opening("import", self.source) + READING[word] + ["release"])
            result = self.exchange(word, "export", self.target)
            self.assertEqual((result.code, result.out, result.boxes), (0, b"", []), result)
            self.assertEqual(self.take_calls(), self.opening("export", self.target) + WRITING[word] + ["release"])
            self.assertEqual([result.events_of(kind) for kind in ("file", "failure", "input")], [[], [], []])

    def test_get_full_paths(self):
        for word in WORDS:
            for direction in ("import", "export"):
                result = self.exchange(word, direction, "日記 1.txt")
                self.assertEqual(result.code, 0, result)
                (opened,) = [call for call in self.take_calls() if call.startswith("open_file ")]
                path = opened.split(" ", 1)[1].rsplit(" ", 1)[0]
                self.assertTrue(os.path.isabs(path) and path.endswith("/日記 1.txt"), opened)

    def test_get_the_diary_and_the_name_of_the_user(self):
        self.must("user", "add", "太郎", answers=["old", "old"])
        shutil.copytree(self.data, os.path.join(self.home, "太郎"), dirs_exist_ok=True)
        result = self.exchange("mt", "export", self.target, answers=["old"], user="太郎")
        self.assertEqual(result.code, 0, result)
        calls = self.take_calls()
        self.assertIn("set_user_id 太郎", calls)
        self.assertTrue(calls[0].endswith("/太郎/diary.mdb"), calls)

    def test_end_with_the_first_no(self):
        for word in WORDS:
            for place, call in enumerate(READING[word]):
                result = self.exchange(word, "import", self.source, stub={"DENIES": call})
                self.assert_quiet_end(result)
                self.assertEqual(self.take_calls(),
                                 self.opening("import", self.source) + READING[word][:place + 1] + ["release"])
            for call in ("write_entries", "finish"):
                result = self.exchange(word, "export", self.target, stub={"DENIES": call})
                self.assert_quiet_end(result)
                calls = WRITING[word][:WRITING[word].index(call) + 1]
                self.assertEqual(self.take_calls(), self.opening("export", self.target) + calls + ["release"])

    def test_end_with_the_box_of_a_file_that_is_none(self):
        boxes = {"import": "critical: 入力パスのエラーです", "export": "critical: 出力先パスのエラーです"}
        write(self.target, "old")
        for word in WORDS:
            for direction, file in (("import", self.source), ("export", self.target)):
                os.unlink(self.data + "Genre.csv")
                result = self.exchange(word, direction, file, stub={"DENIES": "open_file"})
                self.assertEqual((result.code, result.out, result.boxes), (1, b"", [boxes[direction]]), result)
                self.assertEqual(self.take_calls(), self.opening(direction, file) + ["release"])
                self.must("genre", "rebuild")
        self.assertEqual(read(self.target), b"old")

    def assert_quiet_end(self, result, reason=None):
        """Code 1, the reason on standard error, nothing in a box."""
        self.assertEqual((result.code, result.out, result.boxes, result.events_of("failure")), (1, b"", [], []), result)
        self.assertTrue(result.error_lines[-1].startswith("velloria-cli: "), result)
        if reason:
            self.assertIn(reason, result.error_lines[-1])
            self.assertIn(reason, result.statuses[-1])

    def test_that_fail_are_silent_in_a_box_and_say_why(self):
        for word, plugin in WORDS.items():
            for direction, file in (("import", self.source), ("export", self.target)):
                write(self.target, "old")
                steps = {"import": READING, "export": WRITING}[direction][word]
                for call in ["create", "connect", "prepare_" + direction, "open_file", *(step.strip() for step in steps)]:
                    for how, reason in (("FAILS", "the stub fails"), ("THROWS", "the stub throws")):
                        with self.subTest(word=word, direction=direction, call=call, how=how):
                            result = self.exchange(word, direction, file, stub={how: call, "WRITES": "half of"})
                            self.assert_quiet_end(result, reason)
                            self.assertIn(plugin, result.error_lines[-1])
                            calls = self.take_calls()
                            self.assertEqual(calls[-1:], [] if call == "create" else ["release"])
                            self.assertEqual(read(self.target), b"old")
                            self.assertEqual(os.listdir(os.path.dirname(self.target)), ["x.txt"])

    def test_are_not_made_without_a_file_or_a_plugin(self):
        for word, plugin in WORDS.items():
            for direction in ("import", "export"):
                self.refused(word, direction, code=2)
                self.refused(word, direction, "a", "b", code=2)
                self.refused(word, direction, "")
            path = os.path.join(self.home, plugin)
            for content in (b"", b"MZ not for here", read(STUB)[:2000], None):
                if content is None:
                    os.unlink(path)
                else:
                    write(path, content)
                for direction, file in (("import", self.source), ("export", self.target)):
                    result = self.exchange(word, direction, file)
                    self.assert_quiet_end(result, path)
        self.assertEqual(self.take_calls(), [])


class Imports(PluginExchange):
    BRINGS = {"BRINGS": "2004/05/06 2004/05/08 2004/05/07 2004/05/06", "NOTES": "コメント 2件"}
    QUESTION = ("question: Stubから4件の日記をインポートします。\r\n日付: 2004/05/06, 2004/05/07, 2004/05/08 (3日)\r\n"
                "すでに日記がある日: 1日 (今の日記の後ろに追加します)\r\nコメント 2件\r\n\r\nインポートしますか？")
    DAYS = [["2004/05/06"], ["2004/05/07"], ["2004/05/08"]]

    def test_ask_first_and_print_the_days(self):
        for number, word in enumerate(WORDS, 1):
            result = self.exchange(word, "import", self.source, answers=["yes"], stub=self.BRINGS)
            self.assertEqual((result.code, result.rows, result.boxes[-1]), (0, self.DAYS, self.QUESTION if number == 1 else
                             self.QUESTION.replace("1日 (今", "3日 (今")), result)
            self.assertEqual(self.genres(), ["一般", "genre", "of", "the", "stub", "own"])
            self.assert_sound()
        self.assertEqual(self.counts(), {"2004/05/06": 5, "2004/05/07": 2, "2004/05/08": 2})
        first, second = "2004/02/29 Stub", "2004/02/29 Stub(2)"
        self.assertEqual(self.must("import", "groups").rows, [[second], [first]])
        self.assertEqual(self.must("import", "delete", second).rows, self.DAYS)
        self.assertEqual(self.must("import", "delete", first).rows, self.DAYS)
        self.assertEqual(self.counts(), {"2004/05/06": 1})
        self.assert_sound()

    def test_print_the_days_as_json(self):
        result = self.exchange("mt", "import", self.source, options=["--yes", "--json"], stub=self.BRINGS)
        self.assertEqual((result.code, result.json), (0, [day for day, in self.DAYS]), result)

    def test_change_nothing_after_a_no(self):
        for word in WORDS:
            for answers in (["no"], []):
                self.must("genre", "rebuild")
                os.unlink(self.data + "Genre.csv")
                result = self.exchange(word, "import", self.source, answers=answers, stub=self.BRINGS)
                self.assertEqual((result.code, result.boxes), (1, [self.QUESTION]), result)
                self.assertEqual(self.counts(), {"2004/05/06": 1})
                self.assertIn("no mark", self.take_calls())
                self.assertEqual(self.genres(), ["一般", "own"], "made anew: the file was opened")

    def test_ask_without_a_terminal_and_take_it_for_a_no(self):
        result = self.run_cli("mt", "import", self.source, environment={
            "VELLORIA_PLUGIN_LOG": self.log, "VELLORIA_PLUGIN_BRINGS": "2004/05/07"})
        self.assertEqual((result.code, result.out), (1, b""), result)
        self.assertEqual(self.counts(), {"2004/05/06": 1})

    def test_make_the_genres_once_the_file_was_opened(self):
        for word in WORDS:
            for stub, is_made in (({"FAILS": "open_file"}, False), ({"DENIES": "open_file"}, False),
                                  ({"FAILS": "prepare_import"}, False), ({"DENIES": "finish"}, True),
                                  ({"FAILS": "finish"}, True), ({"THROWS": "finish 7"}, True),
                                  *([({"DENIES": "read_entries"}, True), ({"FAILS": "read_entries"}, True)]
                                    if word == "mt" else [])):
                write(self.data + "Genre.csv", "as it was\r\n")
                self.exchange(word, "import", self.source, stub=stub)
                self.assertEqual(self.genres(), ["一般", "own"] if is_made else ["as", "it", "was"], (word, stub))

    def test_tell_the_days_though_the_genres_cant_be_made(self):
        os.unlink(self.data + "Genre.csv")
        os.mkdir(self.data + "Genre.csv")
        result = self.exchange("mt", "import", self.source, answers=["yes"], stub=self.BRINGS)
        self.assertEqual((result.code, result.rows), (1, self.DAYS), result)
        self.assertIn("Genre.csv", result.error_lines[-1])


class Exports(PluginExchange):
    def test_find_their_place_free(self):
        for word in WORDS:
            write(self.target, "old")
            os.chmod(self.target, 0o600)
            result = self.exchange(word, "export", self.target, stub={"WRITES": "new"})
            self.assertEqual(result.code, 0, result)
            self.assertEqual(self.take_calls()[2], f"open_file {self.target} 1", "nothing is in the way")
            self.assertEqual(read(self.target), b"new")
            self.assertEqual(os.stat(self.target).st_mode & 0o777, 0o600)
            self.assertEqual(os.listdir(os.path.dirname(self.target)), ["x.txt"])

    def test_replace_no_file_of_the_program(self):
        os.symlink(self.database, self.target)
        for word in WORDS:
            for file in (self.database, self.diary_ini, os.path.join(self.home, "Larkport.dll"), self.target,
                         os.path.relpath(self.database)):
                before = read(file) if os.path.isabs(file) else None
                result = self.exchange(word, "export", file)
                self.assertEqual((result.code, result.out, result.boxes), (1, b"", []), result)
                self.assertIn("日記に必要なファイルです", result.error_lines[-1])
                if before:
                    self.assertEqual(read(file), before)
        self.assertEqual(self.take_calls(), [])
        self.assert_sound()


if __name__ == "__main__":
    unittest.main()
