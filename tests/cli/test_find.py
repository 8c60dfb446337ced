"""The search of the diary and its page."""

import os
import unittest

from home import CliTest, entry, read


class Find(CliTest):
    def page_text(self):
        return self.page(self.data + "findtmp.htm")

    def found(self, *words):
        result = self.must("site", "find", *words)
        return int(result.text)

    def test_prints_the_count_and_says_so(self):
        self.put(entry("2004/05/06", "花見", Contents="x"), entry("2004/05/07", Contents="花"), entry("2004/05/08"))
        result = self.must("--events", "site", "find", "花")
        self.assertEqual(result.text, "2\n")
        self.assertEqual(result.events_of("message"), [])
        self.assertEqual([event["url"] for event in result.events_of("navigate")], [self.data + "findtmp.htm"])
        self.assertEqual([event["text"] for event in result.events_of("status")],
                         ["検索結果(キーワード花で2件見つかりました)"])
        self.assertEqual(self.must("--json", "site", "find", "花").json,
                         {"count": 2, "file": self.data + "findtmp.htm"})

    def test_refuses_in_order(self):
        self.must("start")
        cases = [
            (["", "--from", "x", "--to", "x", "--genre", ""], "検索語が設定されていません。"),
            (["a", "--from", "x", "--to", "x", "--genre", ""],
             "開始期間が正しく設定されていません。\r\n(YYYY/MM/DD形式で入力して下さい)"),
            (["a", "--to", "2004/1/5"], "開始期間が正しく設定されていません。\r\n(YYYY/MM/DD形式で入力して下さい)"),
            (["a", "--from", "2004/1/5", "--to", "12:30"],
             "終了期間が正しく設定されていません。\r\n(YYYY/MM/DD形式で入力して下さい)"),
            (["a", "--from", "2004/1/5"], "終了期間が正しく設定されていません。\r\n(YYYY/MM/DD形式で入力して下さい)"),
            (["a", "--from", "2004/1/5", "--to", "2004/1/4", "--genre", ""],
             "開始と終了期間が逆転しています。\r\n(正しい期間を入力し直して下さい)"),
            (["a", "--from", "2004/1/5", "--to", "2004/1/5", "--genre", ""],
             "ジャンルが選択されていません。\r\n(ジャンルを選択して下さい)"),
        ]
        for words, box in cases:
            result = self.run_cli("--events", "site", "find", *words)
            self.assertEqual((result.code, result.boxes, result.out), (1, ["critical: " + box], b""), words)
        self.assertFalse(os.path.exists(self.data + "findtmp.htm"))

    def test_a_period_is_shown_as_day_keys(self):
        self.put(*[entry(f"2004/01/0{day}", "花") for day in (4, 5, 6)])
        self.assertEqual(self.found("花", "--from", "2004/1/5", "--to", "04/1/6"), 2)
        self.assertIn("<p>期間：2004/01/05～2004/01/06</p>\r\n<hr>\r\n", self.page_text())
        self.assertEqual(self.found("花", "--from", "2003/1/1", "--to", "2003/12/31"), 0)
        self.assertIn("検索結果0件。\r\n</div><hr>\r\n</BODY></HTML>\r\n", self.page_text())

    def test_a_genre_limits_it(self):
        self.put(entry("2004/01/04", "花", Genre="旅"), entry("2004/01/05", "花", Genre="庭"),
                 entry("2004/01/06", "花", Genre=None))
        self.assertEqual(self.found("花", "--genre", "旅"), 1)
        self.assertIn("<p>ジャンル：旅</p><hr>\r\n", self.page_text())
        self.assertEqual(self.found("花"), 3)

    def test_wildcards_stand(self):
        self.put(entry("2004/01/04", "花"), entry("2004/01/05", "鳥"))
        self.assertEqual(self.found("%"), 2)

    def test_a_double_quote_is_a_failure(self):
        self.put(entry("2004/01/04", "花"))
        self.found("花")
        before = read(self.data + "findtmp.htm")
        self.refused("site", "find", 'a"b', naming=['a"b'])
        self.assertEqual(read(self.data + "findtmp.htm"), before)

    def test_the_page_goes_nowhere(self):
        self.put(entry("2004/01/04", "花"))
        self.use_site()
        self.found("花")
        self.must("site", "save", now="2004/01/06 10:00:00")
        self.assertEqual([name for name in os.listdir(self.site) if "find" in name], [])
        self.assertNotIn(b"findtmp", read(self.data + "upload.tmp"))

    def test_a_page_that_cannot_be_written_is_a_failure(self):
        self.put(entry("2004/01/04", "花"))
        os.mkdir(self.data + "findtmp.htm")
        self.refused("site", "find", "花", naming=["findtmp.htm"])


if __name__ == "__main__":
    unittest.main()
