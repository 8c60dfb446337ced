"""The whole diary for other programs, and its way back."""

import os
import unittest

from home import CliTest, bytes_limit, entry, read, snapshot, write


class ExchangeExport(CliTest):
    def setUp(self):
        super().setUp()
        self.must("start")
        self.put(entry("2004/02/10", "題", Contents="<P>一\r\n\r\n二", Extend="続き", Genre="旅", Private=True),
                 entry("2004/02/10", "二", Contents='<img src="./DiaryParts/a.png">'))
        write(self.data + "DiaryParts/a.png", b"p")
        self.out = os.path.join(self.root, "out")

    def entries(self):
        return self.sql("SELECT Day, Number, Title, Contents, Extend, Excerpt, Weather, Genre, PublishTime, Private "
                        "FROM Contents ORDER BY Day, Number")

    def test_a_folder_of_markdown_comes_back(self):
        before = self.entries()
        result = self.must("--json", "exchange", "export", "markdown", self.out)
        self.assertEqual(result.json, {"path": self.out, "entries": 2, "pictures": 1, "missing": [], "oddDays": []})
        self.assertEqual(sorted(os.listdir(self.out)), ["2004-02-10-1.md", "2004-02-10-2.md", "DiaryParts"])
        for number in (2, 1):
            self.must("--yes", "entry", "delete", "2004/02/10", str(number))
        # The start offers the backup of the diary that is empty now.
        self.must("exchange", "import", "markdown", self.out, answers=["no", "yes"])
        self.assertEqual(self.entries(), before)

    def test_lines_of_json_come_back(self):
        before = self.entries()
        self.assertEqual(self.must("exchange", "export", "json", self.out).text, self.out + "\n")
        for number in (2, 1):
            self.must("--yes", "entry", "delete", "2004/02/10", str(number))
        self.must("entry", "put", "--keep-time", self.out)
        self.assertEqual(self.entries(), before)

    def test_what_is_missing_is_told(self):
        os.remove(self.data + "DiaryParts/a.png")
        result = self.must("exchange", "export", "markdown", self.out)
        self.assertIn("DiaryPartsにありません (a.png)", result.error_text)

    def test_refusals_leave_what_is_there(self):
        write(self.out + "/mine.md", "mine")
        before = snapshot(self.root)
        result = self.run_cli("exchange", "export", "markdown", self.out)
        self.assertEqual(result.code, 1)
        self.assertIn("空ではありません", result.error_text)
        self.assertEqual(self.run_cli("exchange", "export", "json", self.database).code, 1)
        self.assertEqual(self.run_cli("exchange", "export", "json", self.out).code, 1)
        self.assertEqual(self.run_cli("exchange", "export", "json", self.out + "/mine.md").code, 1)
        self.assertEqual(self.run_cli("exchange", "export", "json", "").code, 1)
        self.assertEqual(self.run_cli("exchange", "export", "csv", self.out).code, 2)
        self.assertEqual(snapshot(self.root), before)

    def test_a_full_disk_leaves_nothing(self):
        self.put(entry("2004/02/11", "長い", Contents="あ" * 100_000))
        write(self.out + ".jsonl", "old")
        for words in (["markdown", self.out], ["json", self.out + ".jsonl"]):
            result = self.run_cli("--yes", "exchange", "export", *words,
                                  options={"preexec_fn": bytes_limit(100_000)})
            self.assertEqual(result.code, 1, result)
        self.assertFalse(os.path.exists(self.out))
        self.assertEqual(read(self.out + ".jsonl"), b"old")

    def test_a_file_is_replaced_after_a_question(self):
        write(self.out, "old")
        result = self.run_cli("--events", "exchange", "export", "json", self.out, answers=["no"])
        self.assertEqual((result.code, result.boxes, read(self.out)),
                         (1, ["question: 同名のファイルが存在します。\r\n上書きしますか？"], b"old"))
        self.must("exchange", "export", "json", self.out, answers=["yes"])
        self.assertEqual(read(self.out).count(b"\n"), 2)


if __name__ == "__main__":
    unittest.main()
