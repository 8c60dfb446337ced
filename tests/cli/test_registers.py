"""The registers of files and logs, from outside."""

import os
import subprocess
import unittest

from home import CliTest, entry, read, snapshot, write

DAY, OTHER_DAY = "2004/05/06", "2004/05/07"
ASK = "question: すでに登録済みのファイルです。\r\n上書きしますか？"
ASK_DELETE = "question: 本当に削除しますか？"
ASK_FILE = "question: このファイルは他の日付等で使用されていません。\r\n削除しますか？"
ASK_PAGES = "question: ファイルも削除しますか？"
NO_FILE = "exclamation: ファイルがありませんでした。"


class RegisterTest(CliTest):
    def setUp(self):
        super().setUp()
        self.must("start")
        self.parts = self.data + "DiaryParts/"

    def events(self, *words, code=0, **how):
        result = self.run_cli("--events", *words, **how)
        self.assertEqual(result.code, code, result)
        return result

    def add(self, path, day=DAY, number="1", *options, **how):
        return self.must("file", "add", path, day, number, *options, **how)

    def files(self):
        return [tuple(row[:3]) for row in self.must("file", "list").rows]

    def logs(self):
        return [tuple(row) for row in self.must("log", "list").rows]


class Files(RegisterTest):
    def test_a_name_has_one_copy_and_a_row_for_each_entry(self):
        result = self.add(self.input_file("a/x.gif", "one"))
        self.assertEqual((result.out, result.err), (b"", b""))
        self.add(self.input_file("b/x.gif", "two"), OTHER_DAY, "2")
        self.assertEqual(read(self.parts + "x.gif"), b"one")
        self.assertEqual(self.files(), [(DAY, "1", "x.gif"), (OTHER_DAY, "2", "x.gif")])
        self.assertEqual(self.must("--json", "file", "list").json[0],
                         {"Day": DAY, "Number": 1, "FileName": "x.gif", "Uploaded": False, "Logged": False})

    def test_the_panel_says_which_file_is_used_and_whether_it_goes_up(self):
        self.add(self.input_file("x.gif", "one"))
        known = self.events("file", "add", self.input_file("x.gif", "two"), OTHER_DAY, "1")
        self.assertIn("DiaryPartsにあるファイルを使い", known.statuses[-1])
        self.sql("UPDATE FileDB SET Uploaded = 1")
        replaced = self.events("file", "add", self.inputs + "/x.gif", DAY, "1", answers=["yes"])
        self.assertIn("サーバーのファイルは変わりません", replaced.statuses[-1])

    def test_the_same_entry_is_asked_about(self):
        self.add(self.input_file("x.gif", "one"))
        source = self.input_file("x.gif", "two")
        result = self.events("file", "add", source, DAY, "1", answers=["no"], code=1)
        self.assertEqual(result.boxes, [ASK])
        self.assertEqual(result.events_of("message")[0]["title"], "Resist Files")
        self.assertEqual(read(self.parts + "x.gif"), b"one")
        self.add(source, answers=["yes"])
        self.assertEqual(read(self.parts + "x.gif"), b"two")
        self.assertEqual(self.files(), [(DAY, "1", "x.gif")])

    def test_a_file_of_diaryparts_itself_is_a_row_and_then_a_refusal(self):
        write(self.parts + "x.gif", "one")
        self.add(self.parts + "x.gif")
        self.refused("--yes", "file", "add", self.parts + "x.gif", DAY, "1",
                     naming=["同じフォルダの同じファイルを指定しました。"])
        result = self.events("--yes", "file", "add", self.parts + "x.gif", DAY, "1", code=1)
        self.assertEqual(len(result.events_of("failure")), 1)
        self.assertEqual(result.events_of("pointer")[-1]["shape"], "default")

    def test_a_path_is_that_of_the_working_directory(self):
        write(self.parts + "x.gif", "one")
        self.must("file", "add", "x.gif", DAY, "1", options={"cwd": self.parts})
        self.must("file", "add", "../DiaryParts/./x.gif", OTHER_DAY, "1", options={"cwd": self.parts})
        self.assertEqual(len(self.files()), 2)
        self.assertEqual(read(self.parts + "x.gif"), b"one")

    def test_all_is_number_0(self):
        self.add(self.input_file("x.css", "one"), "ALL", "0")
        self.assertEqual(self.files(), [("ALL", "0", "x.css")])

    def test_another_name_is_given_by_an_option(self):
        self.add(self.input_file("x.gif", "one"), DAY, "1", "--as", "y.gif")
        self.assertEqual(self.files(), [(DAY, "1", "y.gif")])
        self.assertEqual(read(self.parts + "y.gif"), b"one")
        self.add(self.parts + "y.gif", DAY, "1", "--as", "z.gif")
        self.assertEqual(self.files()[1], (DAY, "1", "z.gif"))
        self.assertFalse(os.path.exists(self.parts + "z.gif"))

    def test_what_cannot_be_registered_is_refused_and_changes_nothing(self):
        os.mkfifo(self.inputs + "/pipe.gif")
        os.mkdir(self.inputs + "/folder.gif")
        plain = self.input_file("x.gif", "one")
        for name in ("pipe.gif", "folder.gif", "no.gif"):
            self.refused("file", "add", f"{self.inputs}/{name}", DAY, "1", naming=[name])
        for name in ("é.gif", "😺.gif", 'a"b.gif'):
            self.refused("file", "add", self.input_file(name, "one"), DAY, "1", naming=[name])
        for name in ("é.gif", "../x.gif", "a/b.gif", ".."):
            self.refused("file", "add", plain, DAY, "1", "--as", name, naming=[name])

    def test_wrong_usage_starts_nothing(self):
        plain = self.input_file("x.gif", "one")
        home = self.make_home("fresh")
        for words, named in [(["add", plain, DAY], "file add PATH DAY|ALL NUMBER"), (["add", plain, DAY, "0"], "0"),
                             (["add", plain, DAY, "x"], "x"), (["add", plain, "ALL", "1"], "1"),
                             (["add", plain, "2004/5/6", "1"], "2004/5/6"), (["add", plain, "all", "0"], "all"),
                             (["add", "", DAY, "1"], "空"), (["add", plain, DAY, "1", "--as", ""], "--as"),
                             (["delete", "x.gif", DAY], "file delete"), (["delete", "x.gif", DAY, "one"], "one"),
                             (["list", "x"], "x"), (["nonsense"], "nonsense")]:
            with self.subTest(words=words):
                self.refused("file", *words, code=2, naming=[named], home=home)
        self.assertFalse(os.path.exists(home + "/UserData"))

    def test_deleting_asks_about_the_file_with_the_last_row_alone(self):
        source = self.input_file("x.gif", "one")
        self.add(source)
        self.add(source, OTHER_DAY)
        first = self.events("file", "delete", "x.gif", DAY, "1", answers=["yes"])
        self.assertEqual(first.boxes, [ASK_DELETE])
        kept = self.events("file", "delete", "x.gif", OTHER_DAY, "1", answers=["no"], code=1)
        self.assertEqual((kept.boxes, self.files()), ([ASK_DELETE], [(OTHER_DAY, "1", "x.gif")]))
        last = self.events("file", "delete", "x.gif", OTHER_DAY, "1", answers=["yes", "yes"])
        self.assertEqual(last.boxes, [ASK_DELETE, ASK_FILE])
        self.assertEqual((self.files(), os.path.exists(self.parts + "x.gif")), ([], False))

    def test_deleting_keeps_the_file_on_no_and_says_when_it_is_gone(self):
        source = self.input_file("x.gif", "one")
        self.add(source)
        self.must("file", "delete", "x.gif", DAY, "1", answers=["yes", "no"])
        self.assertEqual((self.files(), read(self.parts + "x.gif")), ([], b"one"))
        self.add(self.parts + "x.gif")
        os.remove(self.parts + "x.gif")
        gone = self.events("--yes", "file", "delete", "x.gif", DAY, "1")
        self.assertEqual(gone.boxes, [ASK_DELETE, ASK_FILE, NO_FILE])

    def test_only_what_is_registered_can_be_deleted(self):
        write(self.parts + "x.gif", "one")
        for words in (["x.gif", DAY, "1"], ["../diary.ini", "ALL", "0"]):
            self.refused("--yes", "file", "delete", *words, naming=[words[0]])

    def test_names_with_colons_and_blanks_are_told_apart(self):
        for name in ("a.gif", "b : a.gif", " a.gif", "a.gif "):
            self.add(self.input_file(name, name))
        self.must("--yes", "file", "delete", "b : a.gif", DAY, "1")
        self.assertEqual(sorted(name for _, _, name in self.files()), [" a.gif", "a.gif", "a.gif "])
        self.assertFalse(os.path.exists(self.parts + "b : a.gif"))
        self.assertEqual(read(self.parts + "a.gif"), b"a.gif")

    def test_a_row_without_a_number_is_listed_and_deleted_as_0(self):
        self.sql("INSERT INTO FileDB (FileName, Day, Number) VALUES ('old.gif', ?, NULL)", DAY)
        self.assertEqual(self.files(), [(DAY, "0", "old.gif")])
        self.must("file", "delete", "old.gif", DAY, "0", answers=["yes", "no"])
        self.assertEqual(self.files(), [])

    def test_a_registered_file_goes_to_the_site_and_into_the_log(self):
        self.put(entry("2004/02/03"), entry("2004/01/03"))
        self.use_site()
        self.add(self.input_file("now.gif", "now"), "2004/02/03")
        self.add(self.input_file("then.gif", "then"), "2004/01/03")
        self.must("site", "save")
        self.assertEqual(read(self.site + "DiaryParts/now.gif"), b"now")
        self.must("site", "log", "2004", "1")
        self.assertEqual(read(self.site + "DiaryLog/DiaryParts/then.gif"), b"then")


class Logs(RegisterTest):
    def setUp(self):
        super().setUp()
        self.own = self.data + "DiaryLog/"
        self.theirs = self.site + "DiaryLog/"

    def test_a_page_lies_in_both_places(self):
        self.use_site()
        self.must("log", "add", self.input_file("x.htm", "one"), "2004", "3")
        self.assertEqual((read(self.own + "x.htm"), read(self.theirs + "x.htm")), (b"one", b"one"))
        self.assertEqual(self.logs(), [("2004/03", "x.htm")])
        self.assertEqual(self.must("--json", "log", "list").json, [{"LogMonth": "2004/03", "LogFileName": "x.htm"}])
        self.assertEqual(self.ini("diary.ini", "ALL", "LogResistPath"), self.inputs)

    def test_without_a_site_it_lies_in_the_data_folder(self):
        self.must("log", "add", self.input_file("x.htm", "one"), "2004", "03", options={"cwd": self.root})
        self.assertEqual(read(self.own + "x.htm"), b"one")
        self.assertEqual(os.listdir(self.root), ["home"])
        self.assertEqual(self.logs(), [("2004/03", "x.htm")])

    def test_a_site_that_is_the_data_folder_keeps_its_page(self):
        self.set_key("diary.ini", "ALL", "SaveFilePath", self.data)
        self.must("log", "add", self.input_file("x.htm", "one"), "2004", "3")
        self.must("--yes", "log", "add", self.input_file("x.htm", "two"), "2004", "3")
        self.assertEqual(read(self.own + "x.htm"), b"two")

    def test_the_same_name_for_another_month_is_the_same_log(self):
        self.must("log", "add", self.input_file("x.htm", "one"), "2004", "3")
        source = self.input_file("x.htm", "two")
        no = self.events("log", "add", source, "2004", "4", answers=["no"], code=1)
        self.assertEqual((no.boxes, no.events_of("message")[0]["title"]), ([ASK], "Resist Log Files"))
        self.must("log", "add", source, "2004", "4", answers=["yes"])
        self.assertEqual((self.logs(), read(self.own + "x.htm")), ([("2004/03", "x.htm")], b"two"))

    def test_a_page_is_not_copied_onto_itself(self):
        self.must("log", "add", self.input_file("x.htm", "one"), "2004", "3")
        result = self.events("--yes", "log", "add", self.own + "x.htm", "2004", "3", code=1)
        box = result.events_of("message")[1]
        self.assertEqual((box["title"], box["text"]),
                         ("Resist Files", "同じフォルダの同じファイルを指定しました。\r\nコピーできません。"))
        self.assertEqual(read(self.own + "x.htm"), b"one")

    def test_the_year_is_tested(self):
        source = self.input_file("x.htm", "one")
        for year, text in [("x", "半角数字を入力してください。"), ("-1", "半角で西暦を入力してください。"),
                           ("12", "半角で4桁の西暦を入力してください。")]:
            before = snapshot(self.root)
            result = self.events("log", "add", source, year, "3", code=1)
            self.assertEqual(result.boxes, ["critical: 不正な文字が入力されました。" + text])
            self.assertEqual(snapshot(self.root), before)
        self.must("log", "add", source, "123", "3")
        self.assertEqual(self.logs(), [("123/03", "x.htm")])

    def test_without_year_or_month_nothing_happens(self):
        source = self.input_file("x.htm", "one")
        for year, month in (("", "3"), ("2004", ""), ("", "")):
            self.refused("log", "add", source, year, month)

    def test_wrong_usage_starts_nothing(self):
        source = self.input_file("x.htm", "one")
        home = self.make_home("fresh")
        for words, named in [(["add", source, "2004"], "log add PATH YEAR MONTH"), (["add", source, "2004", "13"], "13"),
                             (["add", source, "2004", "003"], "003"), (["add", source, "../x", "3"], "../x"),
                             (["add", "", "2004", "3"], "空"), (["delete"], "log delete NAME")]:
            with self.subTest(words=words):
                self.refused("log", *words, code=2, naming=[named], home=home)
        self.assertFalse(os.path.exists(home + "/UserData"))

    def test_what_cannot_be_registered_is_refused_and_changes_nothing(self):
        os.mkfifo(self.inputs + "/pipe.htm")
        for name in ("pipe.htm", "no.htm"):
            self.refused("log", "add", f"{self.inputs}/{name}", "2004", "3", naming=[name])
        self.refused("log", "add", self.input_file("é.htm", "one"), "2004", "3", naming=["é.htm"])
        self.refused("log", "add", self.input_file('a"b.htm', "one"), "2004", "3", naming=['a"b.htm'])

    def test_deleting_asks_three_times(self):
        self.use_site()
        source = self.input_file("x.htm", "one")
        for answers, code, boxes, remains in [
            (["no"], 1, [ASK_DELETE], True), (["yes", "no"], 0, [ASK_DELETE, ASK_PAGES], True),
            (["yes", "yes", "no"], 0, [ASK_DELETE, ASK_PAGES, ASK_DELETE], True),
            (["yes", "yes", "yes"], 0, [ASK_DELETE, ASK_PAGES, ASK_DELETE], False),
        ]:
            self.sql("DELETE FROM LogDB")
            self.must("log", "add", source, "2004", "3")
            result = self.events("log", "delete", "x.htm", answers=answers, code=code)
            self.assertEqual(result.boxes, boxes)
            self.assertEqual(len(self.logs()), code)
            for place in (self.own, self.theirs):
                self.assertEqual(os.path.exists(place + "x.htm"), remains)

    def test_each_place_without_the_page_says_so(self):
        self.use_site()
        self.must("log", "add", self.input_file("x.htm", "one"), "2004", "3")
        os.remove(self.own + "x.htm")
        os.remove(self.theirs + "x.htm")
        self.assertEqual(self.events("--yes", "log", "delete", "x.htm").boxes[3:], [NO_FILE, NO_FILE])

    def test_only_what_is_registered_can_be_deleted(self):
        write(self.own + "x.htm", "one")
        self.refused("--yes", "log", "delete", "x.htm", naming=["x.htm"])

    def test_the_newest_month_stands_first(self):
        for year, month in (("2003", "12"), ("2004", "10"), ("2004", "2")):
            self.must("log", "add", self.input_file(f"{year}{month}.htm", "one"), year, month)
        self.assertEqual([month for month, _ in self.logs()], ["2004/10", "2004/02", "2003/12"])


if __name__ == "__main__":
    unittest.main()
