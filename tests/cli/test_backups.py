"""Copies of the diary, and the start of somebody who lost theirs, from outside."""

import os
import pty
import shutil
import subprocess
import unittest

from home import CliTest, entry, read, snapshot, write

SAMPLES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "data", "jet")
NEXT = "2004/03/01 00:00:01"


class BackupTest(CliTest):
    def setUp(self):
        super().setUp()
        self.folder = self.data + "Backup/"
        self.put(entry("2004/02/28", "old"))
        self.must("start")  # makes the copy of the day
        self.put(entry("2004/02/28", "new"))

    def titles(self, database=None):
        return [row["Title"] for row in self.must("--json", "entry", "list").json]

    def names(self):
        return [row["Name"] for row in self.must("--json", "backup", "list").json]


class Copies(BackupTest):
    def test_the_list_tells_name_date_size_entries_and_last_title(self):
        size = os.path.getsize(self.folder + "diary-20040229.mdb")
        self.assertEqual(self.must("backup", "list").rows,
                         [["diary-20040229.mdb", "2004/02/29 00:00", str(size), "1", "old"]])
        self.assertEqual(self.must("--json", "backup", "list").json,
                         [{"Name": "diary-20040229.mdb", "Date": "2004/02/29 00:00", "Size": size, "Entries": 1,
                           "Title": "old", "Problem": None}])

    def test_a_file_that_cant_be_read_is_listed_as_such(self):
        write(self.folder + "diary-20040228.mdb", "no diary")
        row = self.must("backup", "list").rows[1]
        self.assertEqual((row[0], row[3]), ("diary-20040228.mdb", ""))
        self.assertIn("読み込めません", row[4])
        json = self.must("--json", "backup", "list").json[1]
        self.assertEqual((json["Entries"], json["Title"]), (None, None))
        self.assertIn("日記データベースではありません", json["Problem"])

    def test_make_prints_the_file_and_keeps_what_it_displaces(self):
        self.assertEqual(self.must("backup", "make").text, self.folder + "diary-20040229.mdb\n")
        self.assertEqual(self.names(), ["diary-20040229.mdb", "diary-20040229-2.mdb"])
        self.assertEqual(self.must("--json", "backup", "make").json, {"file": self.folder + "diary-20040229.mdb"})
        self.assertEqual(len(self.names()), 2)

    def test_an_empty_diary_is_not_copied(self):
        for _ in range(2):
            self.must("--yes", "entry", "delete", "2004/02/28", "1")
        self.assertIn("日記がない", self.refused("backup", "make"))

    def test_restore_asks_and_keeps_the_present_diary(self):
        self.assertIn("復元を中止しました。", self.refused("backup", "restore", "diary-20040229.mdb", answers=["no"]))
        result = self.must("--events", "backup", "restore", "diary-20040229.mdb", answers=["yes"], now=NEXT)
        self.assertEqual(result.text, self.data + "diarymdb.replaced.bak\n")
        self.assertEqual(len(result.boxes), 1)
        self.assertIn("日記: 1件", result.boxes[0])
        self.assertEqual(self.titles(), ["old"])
        result = self.must("--json", "--yes", "backup", "restore", "diary-20040301.mdb", now=NEXT)
        self.assertEqual(result.json, {"kept": self.folder + "diary-20040229.mdb"})
        self.assertEqual(sorted(self.titles()), ["new", "old"])

    def test_names_outside_the_list_are_refused(self):
        for name in ("diary.mdb", "../diary.mdb", self.folder + "diary-20040229.mdb", "diary-20040228.mdb", ""):
            self.refused("--yes", "backup", "restore", name)

    def test_a_damaged_diary_can_be_listed_and_restored(self):
        write(self.database, "damaged")
        self.assertEqual(self.names(), ["diary-20040229.mdb"])
        self.must("--yes", "backup", "restore", "diary-20040229.mdb")
        self.assertEqual(self.titles(), ["old"])
        self.assertEqual(read(self.data + "diarymdb.replaced.bak"), b"damaged")

    def test_an_old_diary_is_restored_and_brought_up_to_date(self):
        for name in ("v150.mdb", "damaged-cut-half-odd.mdb"):
            shutil.copy(os.path.join(SAMPLES, name), self.data + f"diary_jet-{name[0]}.mdb")
        rows = {row["Name"]: row for row in self.must("--json", "backup", "list").json}
        self.assertEqual(rows["diary_jet-v.mdb"]["Entries"], 51)
        self.assertIsNotNone(rows["diary_jet-d.mdb"]["Problem"])
        self.refused("--yes", "backup", "restore", "diary_jet-d.mdb")
        self.must("--yes", "backup", "restore", "diary_jet-v.mdb")
        self.assertEqual(self.must("db", "version").text, "220\n")
        self.assertEqual(len(self.titles()), 51)
        self.must("--yes", "backup", "restore", "diary-20040229.mdb")
        self.assertEqual(sorted(self.titles()), ["new", "old"])

    def test_an_emptied_diary_is_told_of_where_nobody_answers(self):
        for _ in range(2):
            self.must("--yes", "entry", "delete", "2004/02/28", "1")
        result = self.must("entry", "list")
        self.assertEqual(result.text, "")
        self.assertIn("「diary-20040229.mdb」を復元できます", result.error_text)

    def test_a_normal_day_reads_nothing_of_the_backups(self):
        write(self.folder + "diary-20040229.mdb", "who reads this as a diary fails")
        before = snapshot(self.folder)
        self.assertEqual(self.put(entry("2004/02/28", "third")).error_text, "")
        self.assertEqual(snapshot(self.folder), before)

    def test_a_copy_that_fails_is_told_and_stops_nothing(self):
        os.rename(self.folder, self.data + "away")
        write(self.data + "Backup", "in its place")
        result = self.must("entry", "list")
        self.assertIn("日記のバックアップを作成できません", result.error_text)
        self.assertEqual(len(result.rows), 2)


class Lost(BackupTest):
    def setUp(self):
        super().setUp()
        os.remove(self.database)

    def test_a_scheduled_run_ends_with_one_and_makes_nothing(self):
        line = self.refused("entry", "put", input=entry("2004/02/01", "x"))
        self.assertIn("diary-20040229.mdb", line)
        self.refused("site", "save", answers=["no", "no"])

    def test_a_yes_restores_the_copy(self):
        self.must("--yes", "start")
        self.assertEqual(self.titles(), ["old"])

    def test_an_empty_diary_needs_a_second_word(self):
        result = self.must("--events", "start", answers=["no", "yes"])
        self.assertEqual(len(result.boxes), 2)
        self.assertEqual(self.must("entry", "list", answers=["no"]).rows, [])
        self.assertEqual(self.names(), ["diary-20040229.mdb"])

    def test_commands_on_users_and_databases_ask_nothing(self):
        for words in (["backup", "list"], ["backup", "restore", "diary-20040229.mdb"]):
            result = self.must("--events", "--yes", *words)
            self.assertNotIn("がありません", result.error_text)
        self.assertEqual(self.titles(), ["old"])
        os.remove(self.database)
        self.refused("db", "check")
        self.must("user", "add", "taro", answers=["p", "p"])
        self.assertFalse(os.path.exists(self.database))

    def test_the_question_comes_to_a_terminal(self):
        master, terminal = pty.openpty()
        os.write(master, b"y\n")
        done = subprocess.run(self.command("start"), stdin=terminal, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              env=self.environment(), timeout=600)
        os.close(terminal)
        os.close(master)
        self.assertEqual(done.returncode, 0, done.stderr.decode())
        self.assertEqual(self.titles(), ["old"])


if __name__ == "__main__":
    unittest.main()
