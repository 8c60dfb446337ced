"""Diaries of other programs, from outside."""

import os
import subprocess
import unittest

from home import CliTest, bytes_limit, entry, read, snapshot, write

PICTURE = b"\x89PNG picture"


class Exchange(CliTest):
    def setUp(self):
        super().setUp()
        self.put(entry("2024/03/09", "mine"))
        self.folder = os.path.join(self.inputs, "notes", "")
        write(self.folder + "2024-03-09 first.txt", "text\n")
        write(self.folder + "2024-03-10.txt", "two\n")

    def take(self, format, path, answers=("yes",), **how):
        return self.run_cli("--events", "exchange", "import", format, path, answers=list(answers), **how)

    def titles(self):
        return self.sql("SELECT Day, Number, Title FROM Contents ORDER BY Day, Number")


class Import(Exchange):
    def test_adds_behind_what_is_there_and_prints_the_days(self):
        result = self.take("text", self.folder)
        self.assertEqual((result.code, result.rows), (0, [["2024/03/09"], ["2024/03/10"]]), result)
        self.assertEqual(result.boxes, ["question: テキストから2件の日記をインポートします。\r\n日付: 2024/03/09, 2024/03/10 (2日)\r\n"
                                        "すでに日記がある日: 1日 (今の日記の後ろに追加します)\r\n\r\nインポートしますか？"])
        self.assertEqual(self.titles(), [("2024/03/09", 1, "mine"), ("2024/03/09", 2, "first"), ("2024/03/10", 1, "無題")])
        self.assertEqual(self.must("import", "groups").rows, [["2004/02/29 テキスト"]])
        self.must("import", "delete", "2004/02/29 テキスト")
        self.assertEqual(self.titles(), [("2024/03/09", 1, "mine")])

    def test_no_changes_nothing(self):
        before = snapshot(self.home)
        for answers in (["no"], []):
            result = self.take("text", self.folder, answers=answers)
            self.assertEqual((result.code, result.out), (1, b""))
            self.assertIn("日記のインポートを中止しました。", result.error_text)
        self.assertEqual(snapshot(self.home), before)

    def test_an_unknown_format_is_wrong_usage_and_names_the_others(self):
        result = self.take("nothing", self.folder)
        self.assertEqual(result.code, 2)
        for format in ("rednotebook", "jrnl", "text"):
            self.assertIn(format, result.error_text)
        self.assertEqual(self.run_cli("exchange", "import", "text").code, 2)

    def test_what_brings_no_entry_is_refused(self):
        empty = os.path.join(self.inputs, "empty")
        os.mkdir(empty)
        encrypted = self.input_file("journal.txt", "gAAAAABl" * 10)
        broken = os.path.join(self.inputs, "broken", "")
        write(broken + "2024-03.txt", "1:\n  text: 'cut")
        before = snapshot(self.home)
        for format, path, reason in (("text", empty, "日記が見つかりません"), ("rednotebook", empty, "日記が見つかりません"),
                                     ("rednotebook", self.folder + "2024-03-10.txt", "フォルダではありません"),
                                     ("jrnl", self.folder, "フォルダです"), ("jrnl", encrypted, "暗号化"),
                                     ("rednotebook", broken, "2024-03.txt"), ("text", "/nowhere", "見つかりません")):
            result = self.take(format, path, answers=[])
            self.assertEqual((result.code, result.out, len(result.events_of("failure"))), (1, b"", 1), result)
            self.assertIn(reason, result.error_text)
        self.assertEqual(snapshot(self.home), before)

    def test_pictures_are_registered_for_their_entry(self):
        write(self.folder + "pics/ume 1.png", PICTURE)
        write(self.folder + "2024-03.txt",
              f"9:\n  text: '[\"\"file://{self.folder}pics/ume 1\"\".png?300]'\n")
        result = self.take("rednotebook", self.folder)
        self.assertEqual(result.code, 0, result)
        self.assertEqual(self.sql("SELECT FileName, Day, Number, Uploaded, Logged FROM FileDB WHERE Day <> 'ALL'"),
                         [("ume_1.png", "2024/03/09", 2, 0, 0)])
        self.assertEqual(read(self.data + "DiaryParts/ume_1.png"), PICTURE)
        self.assertEqual(self.sql("SELECT Contents FROM Contents WHERE Number = 2"),
                         [('<p><img src="./DiaryParts/ume_1.png" width="300" alt=""></p>',)])

    def test_an_import_that_is_taken_back_leaves_every_row(self):
        self.put(entry("2024/03/10", "a", Contents="x"), entry("2024/03/10", "b", Genre="g", Private=True))
        write(self.folder + "2024-03-09_1.txt", "1")
        rows = "SELECT * FROM Contents ORDER BY RecordID"
        before = self.sql(rows)
        for format in ("text", "text"):
            self.assertEqual(self.take(format, self.folder).code, 0)
        groups = [group for group, in self.must("import", "groups").rows]
        self.assertEqual(groups, ["2004/02/29 テキスト(2)", "2004/02/29 テキスト"])
        for group in reversed(groups):
            self.must("import", "delete", group)
        self.assertEqual(self.sql(rows), before)

    def test_a_diary_of_somebody_else_at_work_is_left_alone(self):
        holder = subprocess.Popen(["sqlite3", self.database], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        try:
            holder.stdin.write("BEGIN EXCLUSIVE; SELECT 1;\n")
            holder.stdin.flush()
            self.assertEqual(holder.stdout.readline(), "1\n")
            self.assertEqual(self.take("text", self.folder).code, 1)
        finally:
            holder.communicate("ROLLBACK;\n.quit\n")
        self.assertEqual(self.titles(), [("2024/03/09", 1, "mine")])

    def test_a_disk_that_takes_no_more_leaves_the_diary(self):
        write(self.folder + "2024-03-11.txt", "x" * 4_000_000)
        size = os.path.getsize(self.database)
        result = self.take("text", self.folder, options={"preexec_fn": bytes_limit(size + 1_000_000)})
        self.assertEqual((result.code, result.out), (1, b""), result)
        self.assertEqual(self.titles(), [("2024/03/09", 1, "mine")])
        self.assertEqual(self.must("db", "check").code, 0)


if __name__ == "__main__":
    unittest.main()
