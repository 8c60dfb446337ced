"""`db optimize`, and old diaries at the start of any command."""

import os
import pty
import shutil
import subprocess
import unittest

from home import CLI, NOW, CliTest, entry, read, snapshot, write

QUESTION = ("question: diary.mdbを最適化しますか？\r\n"
            "バックアップとして、現在のファイルを「diary.bak」として保存します。")
DONE = "plain: diary.mdbの最適化は完了しました。\r\n念のためにVelloriaを再起動してください。"
UPDATE = ("plain: diary.mdbがアップデートされています。\r\nデータベースをアップデートします。\r\n"
          "(念のために、今までの「diary.mdb」は「diarymdb.bak」というファイル名で保存します。)")
UPDATED = "plain: diary.mdbのアップデートは完了しました。\r\n念のためにVelloriaを再起動してください。"
LINES = ["アップデートを開始します。", "テンポラリファイル作成中。", "テンポラリファイル作成完了。",
         "日記の内容のコピーを開始。", "日記の内容のコピーを終了。", "ファイル登録データベースのコピーを開始。",
         "ファイル登録データベースのコピーを終了。", "ログ登録データベースのコピーを開始。",
         "ログ登録データベースのコピーを終了。", "ベロリアメモデータのコピーを開始。", "ベロリアメモデータのコピーを終了。",
         "Database Informationのコピーを開始。", "Database Informationのコピーを終了。", "データベースの更新終了。", "復元中。",
         "復元完了。", "テンポラリファイルの削除中。", "テンポラリファイルの削除完了。"]
SAMPLES = os.path.join(os.path.dirname(__file__), "..", "data", "jet")


class OptimizeTest(CliTest):
    def setUp(self):
        super().setUp()
        self.put(*[entry("2004/02/28", f"t{number}", Contents="x" * 3000) for number in range(30)])

    def updater(self, result):
        return [event for event in result.events_of("progress") if event["caption"] == "Velloria DB Updater"]

    def optimize(self, *answers):
        return self.run_cli("--events", "db", "optimize", answers=list(answers))

    def rows(self):
        return self.sql("SELECT Day, Number, Title, Contents FROM Contents ORDER BY RecordID")

    def test_yes_makes_the_file_small_and_keeps_every_row(self):
        for _ in range(20):
            self.must("--yes", "entry", "delete", "2004/02/28", "1")
        self.sql("INSERT INTO Memo VALUES ('a', 'b', 'c', 7, 'd', 1)")
        rows, size, before = self.rows(), os.path.getsize(self.database), read(self.database)
        result = self.optimize("yes")
        self.assertEqual((result.code, result.boxes, result.out), (0, [QUESTION, DONE], b""), result)
        shown = self.updater(result)
        self.assertEqual(shown[0]["text"], LINES[0])
        self.assertEqual(shown[-1]["text"].split("\r\n"), LINES)
        self.assertIn((10, 10), [(event["max"], event["value"]) for event in shown])
        self.assertEqual(self.rows(), rows)
        self.assertEqual(self.sql("SELECT * FROM Memo"), [("a", "b", "c", 0, "", 0)])
        self.assertLess(os.path.getsize(self.database), size)
        self.assertEqual(read(self.data + "diarymdb.bak"), before)
        self.assertFalse({"old.mdb", "new.mdb"} & set(os.listdir(self.data)))
        self.assert_sound()

    def test_no_leaves_everything(self):
        self.must("start")
        before = snapshot(self.root)
        for answers in (["no"], []):
            result = self.optimize(*answers)
            self.assertEqual((result.code, result.boxes),
                             (1, [QUESTION, "plain: diary.mdbの最適化を中止しました。"]), result)
            self.assertEqual(self.updater(result), [])
            self.assertEqual(snapshot(self.root), before)

    def test_a_refusal_says_so_and_leaves_everything(self):
        self.sql("CREATE TABLE Photos (x)")
        self.sql("INSERT INTO Photos VALUES (1)")
        self.refused("--yes", "db", "optimize", naming=["Photos", self.database])

    def test_without_a_template_the_diary_stays(self):
        template = os.path.join(self.home, "default.mdb")
        shutil.move(template, self.inputs)
        before = read(self.database)
        result = self.run_cli("--yes", "db", "optimize")
        self.assertEqual(result.code, 1, result)
        self.assertIn("default.mdb", result.error_text)
        self.assertEqual(read(self.database), before)
        self.assertTrue(os.path.exists(self.data + "old.mdb"))
        shutil.move(os.path.join(self.inputs, "default.mdb"), template)
        self.must("--yes", "db", "optimize")
        self.assertFalse(os.path.exists(self.data + "old.mdb"))

    def test_a_terminal_sees_how_far_it_is_in_one_line(self):
        parent, child = pty.openpty()
        try:
            result = self.run_cli("--yes", "db", "optimize", options={"stderr": child})
            self.assertEqual(result.code, 0)
            shown = os.read(parent, 1 << 20).decode()
        finally:
            os.close(parent)
            os.close(child)
        self.assertIn("テンポラリファイルの削除完了。", shown)
        self.assertNotIn("アップデートを開始します。 テンポラリ", shown)

    def test_nobody_sees_a_word_of_it_where_nobody_looks(self):
        result = self.must("--yes", "db", "optimize")
        self.assertEqual((result.out, result.error_lines), (b"", DONE.removeprefix("plain: ").split("\r\n")), result)

    def test_any_command_updates_an_old_diary_first(self):
        shutil.copyfile(os.path.join(SAMPLES, "v150.mdb"), self.database)
        result = self.run_cli("--events", "--json", "entry", "list")
        self.assertEqual((result.code, result.boxes), (0, [UPDATE, UPDATED]), result)
        self.assertEqual(self.must("db", "version").text, "220\n")
        self.assertEqual(read(self.data + "diary_jet.mdb"), read(os.path.join(SAMPLES, "v150.mdb")))
        self.assertEqual(self.run_cli("--events", "--json", "entry", "list").boxes, [])
        self.assertTrue(result.json)

    def test_programs_that_meet_an_old_diary_at_once_lose_nothing(self):
        for sample in ("v220.mdb", "v0.mdb") * 3:
            shutil.copyfile(os.path.join(SAMPLES, sample), self.database)
            lines = [os.path.join(self.inputs, f"{number}.jsonl") for number in range(3)]
            for number, name in enumerate(lines):
                write(name, entry("2010/01/01", f"t{number}"))
            runs = [subprocess.Popen([CLI, "--home", self.home, "--now", NOW, "entry", "put", name],
                                     stdout=subprocess.PIPE, stderr=subprocess.PIPE) for name in lines]
            ends = [(run.communicate()[1].decode(), run.returncode) for run in runs]
            self.assertEqual([code for _, code in ends], [0, 0, 0], ends)
            self.assertEqual(sorted(self.sql("SELECT Title FROM Contents WHERE Day = '2010/01/01'")),
                             [("t0",), ("t1",), ("t2",)])

    def test_an_old_diary_is_updated_ahead_of_the_question(self):
        shutil.copyfile(os.path.join(SAMPLES, "v110.mdb"), self.database)
        result = self.optimize("yes")
        self.assertEqual((result.code, result.boxes), (0, [UPDATE, UPDATED, QUESTION, DONE]), result)
        self.assertEqual(read(self.data + "diary_jet.mdb"), read(os.path.join(SAMPLES, "v110.mdb")))

    def test_a_damaged_old_diary_stays_as_it_is(self):
        damaged = os.path.join(SAMPLES, "damaged-cut-half-odd.mdb")
        shutil.copyfile(damaged, self.database)
        result = self.run_cli("--events", "entry", "list")
        self.assertEqual((result.code, result.out), (1, b""), result)
        self.assertNotIn(UPDATED, result.boxes)
        self.assertEqual(read(self.database), read(damaged))


if __name__ == "__main__":
    unittest.main()
