"""The export: all periods, formats and units, what it replaces, and what it refuses."""

import itertools
import os
import stat
import unittest

from home import CliTest, bytes_limit, entry, read, snapshot, write

DAYS = ["2004/01/31", "2004/02/01", "2004/02/10", "2004/02/10", "2004/02/29", "2004/03/01"]
PERIODS = {
    "month:2004:2": DAYS[1:5], "month:2004:02": DAYS[1:5], "month:2004:12": [], "day:2004/02/10": DAYS[2:4],
    "day:2004/02/11": [], "user:2004/01/31:2004/02/01": DAYS[0:2], "user:2004/02/10:2004/02/10": DAYS[2:4],
    "user:2004/02/29:2004/02/01": [], "user:0100/01/01:9999/12/31": DAYS,
}
TEMPLATE = "{<--DAY-->,<--TITLE-->,<--GENRE-->,<--WEATHER-->,<--CONTENTS-->}"


class Export(CliTest):
    def setUp(self):
        super().setUp()
        self.must("start")
        self.out = os.path.join(self.root, "out", "")
        os.mkdir(self.out)
        self.formats = os.path.join(self.data, "ExportFormat", "")

    def fill(self):
        self.put(*[entry(day, f"題{index}", Contents=f"<P>{index}</P>") for index, day in enumerate(DAYS)])
        for name in ("TEXT.txt", "HTML.txt", "mine.txt"):
            write(self.formats + name, name + TEMPLATE)

    def words(self, period="month:2004:2", format="TEXT", contents="raw", unit="one", out=None, **more):
        words = ["export", "--period", period, "--format", format, "--contents", contents, "--unit", unit,
                 "--out", self.out + "x.txt" if out is None else out]
        return words + [word for name, value in more.items() for word in (f"--{name}", value)]

    def export(self, *words, options=("--events",), **how):
        return self.must(*options, *self.words(*words, **how))

    def line(self, number, format="TEXT", contents="raw"):
        text = f"<P>{number}</P>" if contents == "raw" else f"{number}\r\n"
        return f"{format}.txt{{{DAYS[number]},題{number},一般,-,{text}}}\r\n".encode("cp932")

    def files(self):
        return {name: read(self.out + name) for name in os.listdir(self.out)}

    def clear(self):
        for name in os.listdir(self.out):
            os.remove(self.out + name)


class Everything(Export):
    def test_all_periods_formats_contents_units_and_names(self):
        self.fill()
        choices = itertools.product(PERIODS, ("TEXT", "HTML", "mine.dat"), ("raw", "text"), ("one", "divide"),
                                    ("day", "title"), ("asc", "desc"))
        for period, format, contents, unit, name, sort in choices:
            with self.subTest(period=period, format=format, contents=contents, unit=unit, name=name, sort=sort):
                # Every choice of names and orders once is enough for the larger part.
                if (name == "title" or sort == "desc") and (format != "HTML" or contents != "raw"):
                    continue
                self.clear()
                wanted = PERIODS[period]
                numbers = [index for index, day in enumerate(DAYS) if day in wanted]
                if sort == "desc" and not period.startswith("day"):
                    numbers = [index for day in reversed(sorted(set(wanted)))
                               for index, other in enumerate(DAYS) if other == day]
                base = format.removesuffix(".dat")
                lines = [self.line(index, base, contents) for index in numbers]
                ending = {"TEXT": ".txt", "HTML": ".htm", "mine": ".dat"}[base]
                is_file = unit == "one" or period.startswith("day")
                out = self.out + "chosen" if is_file else self.out
                result = self.export(period=period, format=format, contents=contents, unit=unit, out=out, name=name,
                                     sort=sort)
                self.assertEqual(result.boxes, ["information: 完了！"])
                if unit == "one":
                    chosen = "chosen" + (ending if base != "mine" else "")
                    self.assertEqual(self.files(), {chosen: b"".join(lines)})
                    self.assertEqual(result.text, self.out + chosen + "\n")
                else:
                    names = [DAYS[index].replace("/", "_") if name == "day" else f"題{index}" for index in numbers]
                    self.assertEqual(self.files(), {each + ending: line for each, line in zip(names, lines)})

    def test_private_entries_come_along(self):
        self.put(entry("2004/02/01", "秘密", Private=True))
        self.export()
        self.assertIn("秘密", self.page(self.out + "x.txt"))

    def test_missing_values(self):
        self.put(entry("2004/02/01", Weather=None, Genre=None))
        self.sql("UPDATE Contents SET Contents = NULL, Title = NULL")
        write(self.formats + "TEXT.txt", TEMPLATE)
        self.export()
        self.assertEqual(self.page(self.out + "x.txt"), "{2004/02/01,,一般,-,}\r\n")

    def test_a_fresh_home_exports_both_formats(self):
        self.put(entry("2004/02/01", "花見", Contents="<P>桜</P>"))
        self.export(contents="text")
        text = self.page(self.out + "x.txt")
        self.assertIn("花見", text)
        self.assertIn("桜", text)
        self.export(format="HTML", out=self.out + "page.htm")
        self.assertIn("<P>桜</P>", self.page(self.out + "page.htm"))
        for page in (text, self.page(self.out + "page.htm")):
            self.assertNotIn("<--", page)


class Endings(Export):
    def test_only_the_last_four_characters_tell(self):
        self.fill()
        for format, out, written in [("TEXT", "a", "a.txt"), ("TEXT", "a.TXT", "a.TXT"), ("TEXT", "a.htm", "a.htm"),
                                     ("HTML", "a.html", "a.html.htm"), ("HTML", "a.HTM", "a.HTM"),
                                     ("HTML", "a.txt", "a.txt"), ("mine.dat", "a", "a"), ("mine.dat", "a.x", "a.x")]:
            self.clear()
            self.assertEqual(self.export(format=format, out=self.out + out).text, self.out + written + "\n")
            self.assertEqual(os.listdir(self.out), [written])

    def test_a_name_without_a_folder_is_in_the_working_folder(self):
        self.fill()
        for unit in ("one", "divide"):
            self.clear()
            self.must(*self.words(period="day:2004/02/29", unit=unit, out="x"), options={"cwd": self.out})
            self.assertEqual(os.listdir(self.out), ["x.txt" if unit == "one" else "2004_02_29.txt"])


class Losses(Export):
    def test_entries_of_one_name_are_told(self):
        self.fill()
        result = self.export(unit="divide", out=self.out)
        self.assertEqual(sorted(self.files()), ["2004_02_01.txt", "2004_02_10.txt", "2004_02_29.txt"])
        self.assertEqual(self.files()["2004_02_10.txt"], self.line(3))
        self.assertEqual(result.events[-1], {"event": "status", "text":
                         "4件の日記をエクスポートしました。同じ名前のため1個のファイルを上書きし、1件の日記が残っていません。"})
        self.clear()
        plain = self.export(unit="divide", out=self.out, options=["--json"])
        self.assertIn("1件の日記が残っていません", plain.error_text)
        self.assertEqual(plain.json, {"path": self.out, "entries": 4, "replaced": 0, "overwritten": 1, "lost": 1,
                                      "references": 0})

    def test_one_day_divided_goes_to_the_folder_of_the_chosen_file(self):
        self.fill()
        self.export(period="day:2004/02/10", unit="divide", name="title", out=self.out + "chosen")
        self.assertEqual(self.files(), {"題2.txt": self.line(2), "題3.txt": self.line(3)})

    def test_characters_outside_the_code_page_are_references(self):
        self.put(entry("2004/02/01", "é😀〜", Contents="&#233;"))
        write(self.formats + "TEXT.txt", TEMPLATE)
        result = self.export()
        self.assertEqual(self.page(self.out + "x.txt"), "{2004/02/01,&#233;&#128512;～,一般,-,&#233;}\r\n")
        self.assertIn("2文字を文字参照で", result.statuses[-1])


    def test_a_period_backwards_is_told(self):
        self.fill()
        told = "期間の開始が終了より後になっています。"
        result = self.export(period="user:2004/02/29:2004/02/01")
        self.assertEqual(result.statuses[-1], "0件の日記をエクスポートしました。" + told)
        self.assertEqual(self.files(), {"x.txt": b""})
        self.clear()
        plain = self.export(period="user:2004/02/29:2004/02/01", options=())
        self.assertEqual(plain.error_lines, ["0件の日記をエクスポートしました。" + told])
        self.clear()
        self.assertEqual(self.export(period="user:2004/02/01:2004/02/01", options=()).error_lines, [])


class Refusals(Export):
    def test_a_missing_format_is_named(self):
        self.fill()
        os.remove(self.formats + "TEXT.txt")
        self.export()
        for format, name in [("TEXT", "TEXT"), ("HTML", "HTML"), ("gone.dat", "gone"), ("a.b.c", "a.b")]:
            for ending in (".txt", ".ini"):
                if os.path.exists(self.formats + name + ending):
                    os.remove(self.formats + name + ending)
            self.refused(*self.words(format=format), naming=[f"ExportFormat/{name}.txt"])

    def test_an_empty_format_has_its_box(self):
        before = snapshot(self.root)
        result = self.run_cli("--events", *self.words(format=""))
        self.assertEqual((result.code, result.boxes), (1, ["critical: 定義ファイルが指定されていません。"]))
        self.assertEqual(snapshot(self.root), before)

    def test_an_empty_path_is_a_cancel(self):
        before = snapshot(self.root)
        result = self.run_cli("--events", *self.words(out=""))
        self.assertEqual((result.code, result.boxes), (1, ["information: キャンセルしました"]))
        self.assertEqual(snapshot(self.root), before)

    def test_missing_converter_settings_have_their_box(self):
        self.fill()
        os.remove(os.path.join(self.home, "HTML2TXT.ini"))
        before = snapshot(self.root)
        for contents in ("raw", "text"):
            result = self.run_cli("--events", *self.words(contents=contents))
            self.assertEqual((result.code, result.boxes),
                             (1, ["critical: HTML2TXT Initializeファイル読み込みエラー"]))
            self.assertEqual(snapshot(self.root), before)

    def test_words_for_numbers_in_the_converter_settings_are_off_and_numbers_out_of_range_a_failure(self):
        self.fill()
        settings = os.path.join(self.home, "HTML2TXT.ini")
        write(settings, "[HTML]\r\nP=on\r\n")
        self.export(contents="text", period="day:2004/02/29")
        self.assertEqual(self.page(self.out + "x.txt"), "TEXT.txt{2004/02/29,題4,一般,-,4}\r\n")
        write(settings, "[HR]\r\nNUM=40000\r\n")
        self.refused(*self.words())

    def test_titles_that_are_no_file_names(self):
        for title in ("a/b", "../escaped", "長" * 100, "a\0b"):
            with self.subTest(title=title):
                self.clear()
                self.sql("DELETE FROM Contents")
                self.put(entry("2004/02/01", "good"), entry("2004/02/02", title), entry("2004/02/03", "behind"))
                result = self.run_cli(*self.words(unit="divide", name="title", out=self.out))
                self.assert_refusal(result, 1)
                self.assertIn("2004/02/02", result.error_text)
                self.assertEqual(os.listdir(self.out), ["good.txt"])
        self.assertFalse(os.path.exists(os.path.join(self.root, "escaped.txt")))

    def test_what_is_no_file_or_belongs_to_the_diary_stays(self):
        self.fill()
        for name in ("Genre.csv", "rescue.jsonl", "uploadlog.tmp"):
            write(self.data + name, "old")
        pipe = self.out + "pipe"
        os.mkfifo(pipe)
        for out in (self.out, self.out + "none/x", pipe, self.database, self.diary_ini,
                    self.formats + "mine.txt", self.formats + "HTML.ini", os.path.join(self.home, "HTML2TXT.ini"),
                    self.data + "Genre.csv", self.data + "rescue.jsonl", self.data + "uploadlog.tmp"):
            self.refused(*self.words(format="mine.dat", out=out))
        self.assertTrue(stat.S_ISFIFO(os.stat(pipe).st_mode))
        self.refused(*self.words(unit="divide", out=self.out + "none"), naming=["2004_02_01.txt"])

    def test_a_full_disk_leaves_the_old_file(self):
        self.put(*[entry("2004/02/01", Contents="x" * 100_000) for _ in range(30)])
        write(self.out + "x.txt", "old")
        self.must("start")  # has made the day's copy of the diary
        self.refused(*self.words(), naming=["x.txt"], options={"preexec_fn": bytes_limit(1_000_000)})
        self.assertEqual(self.files(), {"x.txt": b"old"})

    def test_wrong_usage_starts_nothing(self):
        good = {"period": "month:2004:2", "format": "TEXT", "contents": "raw", "unit": "one", "out": "/tmp/x"}
        wrong = [{"period": period} for period in
                 ("", "month", "month:2004", "month:2004:", "month:x:1", "day", "day:2004/02/30", "day:2004/2/1",
                  "user:2004/02/01", "user:2004/02/01:x", "year:2004", "day:2004/02/01:2004/02/02")]
        wrong += [{"contents": "RAW"}, {"unit": "two"}, {"name": "Day"}, {"sort": ""}, {"format": "../TEXT.txt"}]
        home = self.make_home("fresh")
        before = snapshot(home)
        for change in wrong:
            words = [word for name, value in (good | change).items() for word in (f"--{name}", value)]
            self.assert_refusal(self.run_cli("export", *words, home=home), 2, words)
        for missing in good:
            words = [word for name, value in good.items() if name != missing for word in (f"--{name}", value)]
            self.assert_refusal(self.run_cli("export", *words, home=home), 2, words)
        self.assertEqual(snapshot(home), before)


class Genres(CliTest):
    def test_the_list_is_made_anew_from_the_diary(self):
        self.put(entry("2004/02/01", Genre="旅"), entry("2004/02/01", Genre=None), entry("2004/02/02", Genre="食"))
        write(self.data + "Genre.csv", "old\r\n")
        result = self.must("--events", "genre", "rebuild")
        self.assertEqual(self.page(self.data + "Genre.csv"), "一般\r\n食\r\n旅\r\n")
        self.assertEqual(result.statuses[-1], "ジャンルの再構成が完了しました。")
        self.assertEqual(result.boxes, ["information: 完了！"])


if __name__ == "__main__":
    unittest.main()
