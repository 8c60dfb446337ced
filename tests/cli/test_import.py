"""Entries from the clipboard's text, and imports that go again as a whole."""

import json
import os
import signal
import subprocess
import time
import unittest

from home import CliTest, entry, read

DAY = "2004/05/06"
TAKEN = "question: 2004/05/06は、すでに入力済みです。\r\n上書きしますか？"
OTHER_DAY = "question: その内容は、別の日の内容にしますか？(タイトルは以下の通りです)\r\n[タイトル：t]"


def tagged(day, title="t", contents="c"):
    return f"＜日付＞{day}＜／日付＞\n＜タイトル＞{title}＜／タイトル＞\n＜内容＞{contents}＜／内容＞"


def five_thousand():
    return "\n".join(tagged(f"{1990 + i // 336}/{i % 336 // 28 + 1:02}/{i % 28 + 1:02}", str(i), "本文です。" * 60)
                     for i in range(5000))


class ImportTest(CliTest):
    def clipboard(self, kind, text, *options, answers=None, now="2004/05/06 10:00:00"):
        return self.run_cli("--events", *options, "import", "clipboard", "--" + kind, "-", input=text,
                            answers=answers or [], now=now)

    def told(self, result):
        """Boxes and prompts in order."""
        return [event.get("kind", event["event"]) + ": " + event["text"] for event in result.events
                if event["event"] in ("message", "input")]

    def rows(self):
        return self.sql("SELECT Day, Number, Title, Contents FROM Contents ORDER BY Day, Number")


class Formatted(ImportTest):
    def test_each_entry_becomes_a_row_and_the_preview_follows(self):
        result = self.clipboard("formatted", "x" + tagged(DAY, "t1", "a\nb") + tagged("2004/05/07", "t2") + "y")
        self.assertEqual((result.code, result.rows), (0, [[DAY], ["2004/05/07"]]))
        self.assertEqual(self.told(result), ["information: 読み込み完了!\r\n2004/05/06\r\n2004/05/07"])
        self.assertEqual([event["text"] for event in result.events_of("status")],
                         ["Clipboardから読み込み完了！", "Webページ表示中..."])
        self.assertEqual([event["url"] for event in result.events_of("navigate")], [self.data + "tmp.htm#" + DAY])
        self.assertEqual(self.rows(), [(DAY, 1, "t1", "a\r\nb"), ("2004/05/07", 1, "t2", "c")])
        self.assertEqual(self.sql("SELECT DISTINCT Weather, Genre, PublishTime, Extend, Private, ImportMark FROM "
                                  "Contents"), [(None, None, None, None, 0, "")])
        self.assertIn("t1", self.page(self.data + "tmp.htm"))

    def test_what_holds_no_entry_is_refused(self):
        for text, box in (("", "クリップボードの中に何も入っていません。"),
                          ("abc", "クリップボードの中に有効なデータがありませんでした。"),
                          ("\0" * 5_000_000, "クリップボードの中に有効なデータがありませんでした。")):
            result = self.clipboard("formatted", text)
            self.assertEqual((result.code, self.told(result), result.out), (1, ["critical: " + box], b""))
            self.assertEqual(result.events_of("navigate"), [])

    def test_a_taken_day_asks_in_turn(self):
        self.put(entry(DAY, "old"))
        cases = [
            (["no", "no"], [TAKEN, OTHER_DAY]),
            (["no", "yes", "2004", "3", "5"], ["critical: そのフォーマットは正しくありません。その日付の登録は中止します。"]),
            (["no", "yes", "2004", "05", "06"],
             ["critical: その日付(2004/05/06)は存在します。その日付の登録は中止します。"]),
            (["no", "yes", "2004", "", "06"], ["information: 2004//06の入力を中止します。"]),
            (["no", "yes", None, None, None], ["information: //の入力を中止します。"]),
        ]
        for answers, told in cases:
            result = self.clipboard("formatted", tagged(DAY), answers=answers)
            self.assertEqual(result.code, 0)
            for text in told:
                self.assertIn(text, self.told(result))
            self.assertEqual(self.told(result)[-1], "information: 読み込み完了!")
            self.assertEqual([row[2] for row in self.rows()], ["old"], answers)
        result = self.clipboard("formatted", tagged(DAY), answers=["no", "yes", "2004", "05", "08"])
        self.assertEqual([(event["text"], event["default"]) for event in result.events_of("input")],
                         [("年を入力してください(例:2003)。", "2004"), ("月を入力してください(例:03)。", "05"),
                          ("日を入力してください(例:01)。", "06")])
        self.assertEqual(self.rows()[1:], [("2004/05/08", 1, "t", "c")])

    def test_an_overwritten_row_is_in_the_rescue_file(self):
        self.put(entry(DAY, "old", Weather="雨"))
        self.assertEqual(self.clipboard("formatted", tagged(DAY), answers=["yes"]).code, 0)
        self.assertEqual(self.sql("SELECT Title, Weather FROM Contents"), [("t", "雨")])
        lines = [json.loads(line) for line in read(self.data + "rescue.jsonl").splitlines()]
        self.assertEqual([line["Title"] for line in lines], ["old"])

    def test_half_an_entry_is_a_failure_that_keeps_what_came_before(self):
        result = self.clipboard("formatted", tagged(DAY) + "＜日付＞2004/05/07")
        self.assertEqual((result.code, len(result.events_of("failure"))), (1, 1))
        self.assertEqual(result.rows, [[DAY]])
        self.assertEqual([row[0] for row in self.rows()], [DAY])
        self.assertEqual(result.events_of("navigate"), [])

    def test_the_settings_make_paragraphs(self):
        self.must("start")
        self.set_key("diary.ini", "ALL", "ClipWithHTML", 2)
        self.clipboard("formatted", tagged(DAY, contents="a\n\nb"))
        self.assertEqual(self.rows()[0][3], "<P>a</P>\r\n<P>b</P>")

    def test_a_day_that_is_none_is_reported_by_the_check(self):
        result = self.clipboard("formatted", tagged("2004/3/5"))
        self.assertEqual((result.code, result.rows), (0, [["2004/3/5"]]))
        self.assertIn("2004/3/5", self.run_cli("db", "check").text)

    def test_five_thousand_entries_come_in_at_once(self):
        self.must("start")
        result = self.clipboard("formatted", five_thousand())
        self.assertEqual((result.code, len(result.rows)), (0, 5000))
        self.assertEqual(self.sql("SELECT count(*), count(DISTINCT Day), max(Number) FROM Contents"), [(5000, 5000, 1)])

    def test_a_killed_run_leaves_whole_entries(self):
        self.must("start")
        text = "\n".join(tagged(f"{i:010}", str(i), "x" * 2000) for i in range(20000))
        path = self.input_file("clipboard.txt", text)
        for delay in (0.15, 0.3, 0.5):
            run = subprocess.Popen(self.command("import", "clipboard", "--formatted", path), env=self.environment(),
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            time.sleep(delay)
            run.send_signal(signal.SIGKILL)
            run.wait()
            self.must("entry", "list")
            count, last = self.sql("SELECT count(*), max(Day) FROM Contents")[0]
            self.assertEqual(int(last or -1), count - 1)
            self.assertEqual(self.sql("SELECT count(*) FROM Contents WHERE length(Contents) <> 2000"), [(0,)])
            self.assert_sound()
            self.sql("DELETE FROM Contents")


class Plain(ImportTest):
    def test_the_whole_text_becomes_one_entry(self):
        result = self.clipboard("plain", "a\n\nb", answers=["2004", "05", "06", "題"])
        self.assertEqual((result.code, result.rows), (0, [[DAY]]))
        self.assertEqual(self.told(result),
                         ["input: 年を入力してください(例:2003)。", "input: 月を入力してください(例:03)。",
                          "input: 日を入力してください(例:01)。", "input: タイトルを入力してください。",
                          "information: 読み込み完了!\r\n2004/05/06"])
        self.assertEqual(result.events_of("input")[3]["default"], "デフォルトのタイトル")
        self.assertEqual(self.rows(), [(DAY, 1, "題", "a\r\n\r\nb")])

    def test_a_cancelled_title_takes_the_default(self):
        self.clipboard("plain", "a", answers=["2004", "05", "06", None])
        self.assertEqual(self.rows()[0][2], "デフォルトのタイトル")

    def test_no_day_of_ten_characters_is_refused(self):
        result = self.clipboard("plain", "a", answers=["2004", "3", "5"])
        self.assertEqual((result.code, self.told(result)[-1]),
                         (1, "critical: そのフォーマットは正しくありません。その日付の登録は中止します。"))
        self.assertEqual((self.rows(), result.events_of("navigate")), ([], []))

    def test_no_ends_it(self):
        self.put(entry(DAY, "old"))
        result = self.clipboard("plain", "a", answers=["2004", "05", "06", "no"])
        self.assertEqual((result.code, self.told(result)[-1], result.out), (1, TAKEN, b""))
        self.assertEqual(result.events_of("navigate"), [])

    def test_one_form_must_be_named(self):
        for words in (["x.txt"], ["--plain", "--formatted", "x.txt"], ["--plain"], ["--plain", "a", "b"]):
            self.refused("import", "clipboard", *words, code=2)

    def test_a_file_that_is_no_text_is_refused(self):
        self.must("start")
        self.refused("import", "clipboard", "--plain", self.input_file("x", b"\x88\xea\xff"), naming=["UTF-8"])
        self.refused("import", "clipboard", "--plain", self.inputs + "/none")


class Groups(ImportTest):
    def setUp(self):
        super().setUp()
        lines = [entry(DAY, "own", Genre="手"), entry(DAY, "imported", Genre="旅", ImportMark="2004/05/01 mt"),
                 entry(DAY, "own too", Genre="手"), entry("2004/05/08", "other", ImportMark="2004/05/02 htn"),
                 entry("2004/05/09", "whole day", ImportMark="2004/05/01 mt")]
        self.put(*lines, options=["--keep-time"])

    def test_are_listed_last_first(self):
        self.assertEqual(self.must("import", "groups").rows, [["2004/05/02 htn"], ["2004/05/01 mt"]])
        self.assertEqual(self.must("--json", "import", "groups").json, ["2004/05/02 htn", "2004/05/01 mt"])

    def test_go_as_a_whole_and_numbers_close_up(self):
        result = self.must("--events", "import", "delete", "2004/05/01 mt")
        self.assertEqual((result.rows, self.told(result)), ([[DAY], ["2004/05/09"]], ["information: 完了！"]))
        self.assertEqual([row[:3] for row in self.rows()],
                         [(DAY, 1, "own"), (DAY, 2, "own too"), ("2004/05/08", 1, "other")])
        self.assertEqual(read(self.data + "Genre.csv").decode("cp932"), "一般\r\n手\r\n")
        lines = [json.loads(line) for line in read(self.data + "rescue.jsonl").splitlines()]
        self.assertEqual([(line["Title"], line["ImportMark"]) for line in lines],
                         [("imported", "2004/05/01 mt"), ("whole day", "2004/05/01 mt")])
        self.assertEqual(self.must("import", "groups").rows, [["2004/05/02 htn"]])

    def test_an_empty_name_deletes_nothing(self):
        before = self.rows()
        result = self.run_cli("--events", "import", "delete", "")
        self.assertEqual((result.code, self.told(result)),
                         (1, ["critical: 削除するグループが選択されていないため、終了します。"]))
        self.assertEqual(self.rows(), before)

    def test_an_unknown_name_changes_nothing(self):
        before = self.rows()
        self.assertEqual(self.must("import", "delete", "nobody").out, b"")
        self.assertEqual(self.rows(), before)

    def test_a_double_quote_is_a_failure(self):
        before = self.rows()
        result = self.run_cli("import", "delete", '2004/05/01 mt" OR "a"="a')
        self.assertEqual((result.code, self.rows()), (1, before))

    def test_a_genre_list_that_cannot_be_made_says_that_the_entries_are_gone(self):
        os.remove(self.data + "Genre.csv")
        os.mkdir(self.data + "Genre.csv")
        result = self.run_cli("import", "delete", "2004/05/01 mt")
        self.assertEqual(result.code, 1)
        self.assertIn("グループの日記は削除しました", result.error_text)
        self.assertEqual(result.rows, [[DAY], ["2004/05/09"]])
        self.assertEqual(len(self.rows()), 3)


if __name__ == "__main__":
    unittest.main()
