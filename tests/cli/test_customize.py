"""Customize sets and their exchange, from outside."""

import os
import unittest

from home import CliTest, entry, read, snapshot, write

SET = b"[General]\r\nHPTitle=Mine\r\nHeadTag_Div_Log=piece\r\n[Body]\r\nTextColor=#123456\r\nUpText=top\r\n"
SIGNATURE = b"[Author]\r\nName=n\r\nURL=u\r\nE-mail=e\r\n"
REPLACE = "question: 同名のファイルが存在します。\r\n上書きしますか？"
DONE_IN, FAILED_IN = "カスタマイズファイルの読み込みに成功しました。", "カスタマイズファイルの読み込みに失敗しました。"
DONE_OUT, FAILED_OUT = "カスタマイズファイルの出力に成功しました。", "カスタマイズファイルの出力に失敗しました。"


class CustomizeTest(CliTest):
    def setUp(self):
        super().setUp()
        self.must("start")
        self.sets = self.data + "Customize/"
        self.out = self.root + "/out/"
        os.mkdir(self.out)
        write(self.sets + "mine.ini", SET)

    def selected(self):
        return [name for name, is_selected in self.must("customize", "list").rows if is_selected == "1"]

    def export(self, name, kind, *options, code=0, **how):
        result = self.run_cli("--events", "customize", "export", name, "--format", kind, *options, **how)
        self.assertEqual(result.code, code, result)
        return result

    def key(self, path, section, key):
        return self.must("ini", "get", path, section, key, "none").text[:-1]


class Selection(CustomizeTest):
    def test_the_list_leaves_the_feeds_out_and_marks_the_selected_set(self):
        write(self.sets + "RSS.ini", b"")
        self.assertIn(["Customize", "1"], self.must("customize", "list").rows)
        self.assertIn(["mine", "0"], self.must("customize", "list").rows)
        self.assertNotIn("RSS", [row["Name"] for row in self.must("--json", "customize", "list").json])
        self.assertIn({"Name": "mine", "Selected": False}, self.must("--json", "customize", "list").json)

    def test_a_selection_lasts_and_shows_its_preview(self):
        result = self.must("--events", "customize", "select", "MINE", day="2004/02/03")
        self.assertEqual(self.ini("diary.ini", "Customize", "IniFileName"), self.sets + "mine.ini")
        self.assertEqual(self.selected(), ["mine"])
        self.assertIn("TEXT='#123456'", self.page(self.data + "tmp.htm"))
        self.assertEqual([event["url"] for event in result.events_of("navigate")], [self.data + "tmp.htm#2004/02/03"])
        self.assertEqual(result.statuses, ["Webページ表示中..."])

    def test_what_is_no_set_is_refused(self):
        write(self.sets + "RSS.ini", b"")
        write(self.data + "outside.ini", SET)
        for name in ("missing", "", "RSS", "../outside", "mine.ini", "😀"):
            self.refused("customize", "select", name, naming=[name])
        self.assertEqual(self.selected(), ["Customize"])

    def test_a_set_that_no_start_could_read_is_not_selected(self):
        self.must("customize", "import", self.input_file("wide.cst", SET.decode().encode("utf-16")))
        self.refused("customize", "select", "wide", naming=["wide.ini", "テキストではありません"])
        self.assertEqual(self.selected(), ["Customize"])

    def test_settings_that_cant_be_written_keep_the_old_set(self):
        os.chmod(self.diary_ini, 0o400)
        self.refused("customize", "select", "mine", naming=["diary.ini"])
        self.assertEqual(self.selected(), ["Customize"])


class Import(CustomizeTest):
    def test_a_file_becomes_a_set_that_is_not_selected(self):
        result = self.must("--events", "customize", "import", self.input_file("look.CST", SET))
        self.assertEqual(result.text.strip(), self.sets + "look.ini")
        self.assertEqual(read(self.sets + "look.ini"), SET)
        self.assertEqual(result.statuses, [DONE_IN])
        self.assertEqual(result.events_of("file"), [], "what the command line names is not asked again")
        self.assertEqual(self.selected(), ["Customize"])

    def test_a_relative_file_is_found_and_its_folder_kept(self):
        self.input_file("look.ini", SET)
        self.must("customize", "import", "look.ini", options={"cwd": self.inputs})
        self.assertEqual(self.ini("diary.ini", "ALL", "LoadCustPath"), self.inputs)

    def test_a_name_that_is_taken_is_asked_for(self):
        source = self.input_file("mine.cst", b"[Body]\r\n")
        result = self.must("--events", "customize", "import", source, answers=["other"])
        self.assertEqual([event["text"] for event in result.events_of("input")],
                         ["同じ名称の物が存在します。\r\n新しい名前を入力して下さい。"])
        self.assertEqual(read(self.sets + "other.ini"), b"[Body]\r\n")
        before = snapshot(self.root)
        for answers in ([""], ["mine"], ["a/b"], [None], []):
            result = self.run_cli("--events", "customize", "import", source, answers=answers)
            self.assertEqual((result.code, result.out), (1, b""))
            self.assertEqual(result.statuses, [FAILED_IN])
        self.assertEqual(snapshot(self.root), before)
        self.assertEqual(read(self.sets + "mine.ini"), SET)

    def test_what_is_no_set_is_copied_and_named(self):
        for name, content in {"a": b"\x00\xff no settings", "b": b"[FTP]\r\nURL=x\r\n", "c": SET + b" " * 1024 * 1024}.items():
            result = self.must("customize", "import", self.input_file(name + ".cst", content))
            self.assertEqual(read(f"{self.sets}{name}.ini"), content)
            self.assertIn("カスタマイズの項目が見つかりませんでした", result.error_text)

    def test_what_cant_be_read_is_refused(self):
        os.mkfifo(self.inputs + "/pipe.ini")
        for path in (self.inputs + "/missing.ini", self.inputs, self.inputs + "/pipe.ini", ""):
            self.refused("customize", "import", path)


class Export(CustomizeTest):
    SIGNED = ["--name", "n", "--url", "u", "--email", "e"]

    def test_a_set_for_others_lacks_what_is_personal(self):
        result = self.export("mine", "cst", *self.SIGNED, "--out", self.out + "a")
        path = self.out + "a.cst"
        self.assertEqual(result.text.strip(), path)
        self.assertEqual(result.statuses, [DONE_OUT])
        self.assertEqual([self.key(path, *key) for key in (("General", "HPTitle"), ("Body", "UpText"),
                                                           ("CalenderWindow", "HeadTag"))], ["", "", ""])
        self.assertEqual(self.key(path, "General", "HeadTag_Div_Log"), "piece")
        self.assertEqual(self.key(path, "Body", "TextColor"), "#123456")
        self.assertEqual([self.key(path, "Author", key) for key in ("Name", "URL", "E-mail")], ["n", "u", "e"])
        self.assertEqual(read(self.sets + "mine.ini"), SET)

    def test_who_does_not_say_who_they_are_signs_with_nothing_and_the_window_keeps_its_author(self):
        self.set_key("diary.ini", "ExportCustFile", "Name", "kept")
        self.export("mine", "ini", "--email", "e", "--out", self.out + "a.ini")
        self.assertEqual(read(self.out + "a.ini"), SET + b"[Author]\r\nName=\r\nURL=\r\nE-mail=e\r\n")
        self.assertEqual(self.ini("diary.ini", "ExportCustFile", "Name"), "kept")
        self.assertEqual(self.ini("diary.ini", "ExportCustFile", "E-Mail"), "")

    def test_a_file_that_is_there_is_asked_about(self):
        write(self.out + "a.ini", b"[General]\r\nHPTitle=Old\r\n")
        result = self.export("mine", "ini", *self.SIGNED, "--out", self.out + "a", answers=["no"])
        self.assertEqual((result.boxes, result.statuses), ([REPLACE], [DONE_OUT]))
        self.assertEqual(read(self.out + "a.ini"), b"[General]\r\nHPTitle=Old\r\n" + SIGNATURE)
        self.export("mine", "ini", *self.SIGNED, "--out", self.out + "a", answers=["yes"])
        self.assertEqual(read(self.out + "a.ini"), SET + SIGNATURE)

    def test_a_set_over_its_own_file_stays_whole(self):
        self.export("mine", "ini", *self.SIGNED, "--out", self.sets + "mine.ini", answers=["yes"])
        self.assertEqual(read(self.sets + "mine.ini"), SET + SIGNATURE)

    def test_what_goes_out_comes_in_again(self):
        self.export("mine", "cst", "--out", self.out + "look")
        self.must("customize", "import", self.out + "look.cst")
        self.must("customize", "select", "look")
        self.put(entry("2004/02/01"))
        self.assertIn("TEXT='#123456'", self.page(self.must("site", "preview").text.strip()))

    def test_wrong_words_are_wrong_usage_and_wrong_names_refused(self):
        self.refused("customize", "export", "mine", "--format", "txt", "--out", self.out + "a", code=2, naming=["txt"])
        self.refused("customize", "export", "mine", "--format", "ini", code=2, naming=["--out"])
        self.refused("customize", "export", "missing", "--format", "ini", "--out", self.out + "a", naming=["missing"])
        self.refused("customize", "export", "../diary", "--format", "ini", "--out", self.out + "a")
        self.refused("customize", "export", "mine", "--format", "ini", "--out", "")
        self.refused("--yes", "customize", "export", "mine", "--format", "ini", "--out", self.diary_ini)
        self.refused("customize", "export", "mine", "--format", "ini", "--out", self.root + "/nowhere/a")
        self.refused("customize", "export", "mine", "--format", "ini", "--out", self.out, naming=["ファイル名がありません"])
        result = self.run_cli("--events", "customize", "export", "mine", "--format", "ini", "--out", "")
        self.assertEqual(result.statuses, [FAILED_OUT])


if __name__ == "__main__":
    unittest.main()
