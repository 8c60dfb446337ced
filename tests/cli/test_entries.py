"""Entries, genres, the rescue file and the check of the diary."""

import contextlib
import glob
import json
import os
import shutil
import sqlite3
import stat
import subprocess
import sys
import time
import unittest

from home import CliTest, entry, read, snapshot, write
from patience import PATIENCE_SECONDS

TEXTS = ["quotes \" ' ` and \\", "100% _ [a-z] *", "日記 ｶﾞ Ａ ー① 髙 é 😀", "a\r\nb\nc\rd\r\n", "\t tab", "<3 &amp; </TD>",
         "'; DROP TABLE Contents; --", "--", "\u3000", "\u0001\u007f", "NULL"]


class Saving(CliTest):
    def test_the_next_number_is_the_number_of_entries_and_one(self):
        result = self.put(entry("2004/02/01"), entry("2004/02/02"), entry("2004/02/01"))
        self.assertEqual(result.text, "2004/02/01\t1\n2004/02/02\t1\n2004/02/01\t2\n")
        self.assertEqual(self.put(entry("2004/02/01")).text, "2004/02/01\t3\n")

    def test_texts_read_back_as_they_were(self):
        for text in [*TEXTS, "長い" * 500_000]:
            fields = {name: text for name in ("Contents", "Extend", "Excerpt", "Weather", "Genre")}
            (key,) = self.keys_of(self.put(entry("2004/02/01", text, **fields), options=["--json"]))
            shown = self.must("--json", "entry", "show", key[0], str(key[1])).json
            self.assertEqual({name: shown[name] for name in fields}, fields)
            self.assertEqual(shown["Title"], text)

    def test_saving_an_existing_key_keeps_the_row_its_mark_and_its_track_back(self):
        self.put(entry("2004/02/01", "old", ImportMark="mt", PublishTime="2001/01/01 00:00:00"),
                 options=["--keep-time"])
        self.sql("UPDATE Contents SET TrackBack = 'http://example.com/'")
        before = self.sql("SELECT RecordID, TrackBack, ImportMark FROM Contents")
        self.put(entry("2004/02/01", "new", Number=1, Contents="c"))
        self.assertEqual(self.sql("SELECT RecordID, TrackBack, ImportMark FROM Contents"), before)
        self.assertEqual(self.sql("SELECT Title, Contents, PublishTime FROM Contents"),
                         [("new", "c", "2004/02/29 12:34:56")])

    def test_every_save_stamps_the_present_time_unless_times_are_kept(self):
        line = entry("2004/02/01", PublishTime="2001/02/03 04:05:06", Number=1)
        for options, time in (([], "2004/02/29 12:34:56"), (["--keep-time"], "2001/02/03 04:05:06")):
            self.put(line, options=options)
            self.assertEqual(self.sql("SELECT PublishTime FROM Contents"), [(time,)])
        self.put(entry("2004/02/01", Number=1), options=["--keep-time"])
        self.assertEqual(self.sql("SELECT PublishTime FROM Contents"), [("2004/02/29 12:34:56",)])

    def test_what_a_line_leaves_out_is_what_an_untouched_editor_saves(self):
        self.put(entry("2004/02/01"))
        self.assertEqual(self.sql("SELECT Contents, Extend, Excerpt, Weather, Genre, Private, ImportMark, TrackBack "
                                  "FROM Contents"), [("", "", "", "-", "一般", 0, "", "")])

    def test_null_is_a_missing_value_and_reads_as_its_default(self):
        self.put(entry("2004/02/01", Extend=None, Excerpt=None, Weather=None, Genre=None, Private=None, Number=None))
        self.assertEqual(self.sql("SELECT Extend, Excerpt, Weather, Genre FROM Contents"), [(None,) * 4])
        shown = self.must("--json", "entry", "show", "2004/02/01", "1").json
        self.assertEqual([shown[name] for name in ("Extend", "Excerpt", "Weather", "Genre", "Private")],
                         ["", "", "-", "一般", False])
        self.assertEqual(self.must("entry", "list").rows, [["2004/02/01", "1", "t", "一般", "-", "0"]])

    def test_one_input_is_one_transaction(self):
        good = "".join(entry("2004/02/01", str(i)) for i in range(50))
        self.must("start")
        self.refused("entry", "put", input=good + '{"Day":"2004/02/01"}', naming=["51行目"])
        self.assertEqual(self.listed(), [])

    def test_empty_lines_pass_and_count(self):
        lines = "\n\r\n" + entry("2004/02/01", "a").replace("\n", "\r\n") + "  \n" + entry("2004/02/01", "b").strip()
        self.assertEqual(len(self.put(lines).rows), 2)
        self.refused("entry", "put", input=lines + "\nx", naming=["6行目"])

    def test_a_byte_order_mark_in_front_is_no_obstacle(self):
        self.assertEqual(self.put("\ufeff" + entry("2004/02/01")).rows, [["2004/02/01", "1"]])

    def test_a_byte_order_mark_anywhere_else_is_a_character(self):
        mark = "\ufeff"
        self.put(entry("2004/02/01", mark + "t", Contents=mark, Extend=mark * 2 + "x", Genre=mark + "g"))
        for _ in range(3):
            shown = self.must("--json", "entry", "show", "2004/02/01", "1").json
            self.assertEqual([shown[name] for name in ("Title", "Contents", "Extend", "Genre")],
                             [mark + "t", mark, mark * 2 + "x", mark + "g"])
            self.put(json.dumps(shown, ensure_ascii=False), options=["--keep-time"])
        self.assertEqual(self.must("entry", "show", "2004/02/01", "1").rows[0][2], mark + "t")
        self.assertIn(mark + "g", self.must("--json", "genre", "list").json)
        self.assertEqual(self.must("site", "find", mark + "t").text, "1\n")
        self.assertEqual(self.must("site", "find", mark + "z").text, "0\n")
        os.remove(self.data + "rescue.jsonl")  # what the saves above have overwritten
        self.must("--yes", "entry", "delete", "2004/02/01", "1")
        self.must("entry", "put", self.data + "rescue.jsonl")
        self.assertEqual(self.listed(), [("2004/02/01", 1, mark + "t")])
        line = entry("2004/02/02")
        self.refused("entry", "put", input=line + mark + line, naming=["2行目"])

    def test_arguments_answers_and_password_keep_a_mark_in_front(self):
        self.must("start")
        self.must("ini", "set", self.data + "x.ini", "s", "k", "\ufeffv")
        self.assertEqual(self.must("--json", "ini", "get", self.data + "x.ini", "s", "k").json, {"value": "\ufeffv"})
        self.assertEqual(self.must("--json", "ini", "get", self.data + "x.ini", "s", "z", "\ufeff").json,
                         {"value": "\ufeff"})
        text = self.input_file("text", "x")
        self.must("import", "clipboard", "--plain", text, answers=["2004", "02", "03", "\ufefft"])
        self.assertEqual(self.listed(), [("2004/02/03", 1, "\ufefft")])

    def test_half_a_character_is_refused_with_its_line(self):
        self.must("start")
        for escape in ("\\ud800", "x\\udc00", "\\ude00\\ud83d"):
            self.refused("entry", "put", input=entry("2004/02/01") + '{"Day":"2004/02/01","Title":"%s"}' % escape,
                         naming=["2行目", "Title"])
        self.put('{"Day":"2004/02/01","Title":"\\ud83d\\ude00"}')
        self.assertEqual(self.listed(), [("2004/02/01", 1, "😀")])

    def test_a_commit_that_is_refused_saves_nothing(self):
        self.put(entry("2004/02/01", "a"))
        with contextlib.closing(sqlite3.connect(self.database, isolation_level=None)) as reader:
            reader.execute("BEGIN")
            reader.execute("SELECT * FROM Contents").fetchall()
            for words, line in ((["entry", "put"], entry("2004/02/01", "b", Number=1)),
                                (["--yes", "entry", "delete", "2004/02/01", "1"], "")):
                # Nothing in this process may open the file meanwhile: closing it would give the reader's lock away.
                self.assertIn("使用中", self.assert_refusal(self.run_cli(*words, input=line), 1, words))
                self.assertFalse(os.path.exists(self.data + "rescue.jsonl"))
        self.assertEqual(self.listed(), [("2004/02/01", 1, "a")])

    def test_an_empty_input_saves_nothing_and_is_no_failure(self):
        self.assertEqual(self.put("").out, b"")
        self.assertEqual(self.must("--json", "entry", "put").json, [])

    def test_the_input_is_a_file_or_standard_input(self):
        file = self.input_file("day.jsonl", entry("2004/02/01", "file"))
        self.must("entry", "put", file)
        self.must("entry", "put", "-", input=entry("2004/02/01", "hyphen"))
        self.must("entry", "put", input=entry("2004/02/01", "nothing"))
        self.assertEqual([title for *_, title in self.listed()], ["nothing", "hyphen", "file"])

    def test_a_number_that_would_leave_a_gap_closes_up(self):
        self.assertEqual(self.put(entry("2004/02/01", Number=7), entry("2004/02/01", Number=3)).text,
                         "2004/02/01\t2\n2004/02/01\t1\n")
        self.assert_sound()

    def test_lines_of_one_key_overwrite_one_another_in_order(self):
        self.put(entry("2004/02/01", "a", Number=1), entry("2004/02/01", "b", Number=1))
        self.assertEqual(self.listed(), [("2004/02/01", 1, "b")])

    def test_programs_that_save_at_once_lose_nothing(self):
        self.must("start")
        files = [self.input_file(f"{i}.jsonl", "".join(entry("2004/02/01", f"{i}-{k}") for k in range(20)))
                 for i in range(6)]
        runs = [subprocess.Popen(self.command("entry", "put", file), env=self.environment(), stderr=subprocess.PIPE,
                                 stdout=subprocess.DEVNULL) for file in files]
        for run in runs:
            _, error = run.communicate(timeout=600)
            self.assertEqual((run.returncode, error), (0, b""))
        self.assertEqual(len(self.listed()), 120)
        self.assert_sound()


    def test_programs_that_start_for_the_first_time_at_once_lose_nothing(self):
        runs = [subprocess.Popen(self.command("entry", "put", self.input_file(f"{i}.jsonl", entry("2004/02/01", str(i)))),
                                 env=self.environment(), stderr=subprocess.PIPE, stdout=subprocess.DEVNULL)
                for i in range(8)]
        for run in runs:
            _, error = run.communicate(timeout=600)
            self.assertEqual((run.returncode, error), (0, b""))
        self.assertEqual(sorted(title for *_, title in self.listed()), list("01234567"))
        self.assertEqual(self.ini("diary.ini", "ALL", "DataPath"), self.data)


class Deleting(CliTest):
    def delete(self, day, number):
        return self.must("--yes", "entry", "delete", day, str(number))

    def test_deleting_the_middle_one_renumbers_the_rest_and_their_anchors(self):
        self.put(*[entry("2004/02/01", title) for title in ("one", "two", "three")])
        self.delete("2004/02/01", 2)
        self.assertEqual(self.listed(), [("2004/02/01", 2, "three"), ("2004/02/01", 1, "one")])
        page = self.page(self.data + "tmp.htm")
        self.assertIn("2004/02/01_2", page)
        self.assertNotIn("2004/02/01_3", page)

    def test_a_day_that_is_no_date_can_be_shown_and_deleted_as_it_is_stored(self):
        self.put(entry("2004/02/01", "stays"))
        self.sql("INSERT INTO Contents (Day, Number, Title, Contents) VALUES ('2004/02/0', 1, 'odd', 'x')")
        self.refused("--yes", "entry", "delete", "2004/02/0", "1", code=2, naming=["2004/02/0"])
        self.assertIn("odd", self.must("entry", "show", "2004/02/0", "--as-stored").text)
        self.must("--yes", "--day", "2004/02/01", "entry", "delete", "2004/02/0", "1", "--as-stored")
        self.assertEqual(self.listed(), [("2004/02/01", 1, "stays")])
        self.must("site", "preview")

    def test_deleting_the_only_entry_leaves_no_row(self):
        self.put(entry("2004/02/01"))
        self.delete("2004/02/01", 1)
        self.assertEqual(self.sql("SELECT count(*) FROM Contents"), [(0,)])
        self.assertIn("-今月はまだ日記はありません-", self.page(self.data + "tmp.htm"))

    def test_a_number_without_a_row_still_renumbers_the_day(self):
        self.put(*[entry("2004/02/01", title) for title in "ab"])
        self.sql("UPDATE Contents SET Number = 5 WHERE Title = 'b'")
        self.delete("2004/02/01", 3)
        self.assertEqual(self.listed(), [("2004/02/01", 2, "b"), ("2004/02/01", 1, "a")])

    def test_the_preview_is_of_the_month_of_the_deleted_day(self):
        self.put(entry("2003/11/05", "november"), entry("2003/11/06"))
        self.delete("2003/11/06", 1)
        self.assertIn("2003年11月分", self.page(self.data + "tmp.htm"))

    def test_the_deletion_stands_when_the_preview_fails(self):
        self.put(entry("1999/02/01"))
        result = self.run_cli("--yes", "--events", "entry", "delete", "1999/02/01", "1")
        self.assertEqual((result.code, len(result.events_of("failure"))), (1, 1), result)
        self.assertEqual(result.statuses[-1], "1999/02/01の日記を削除しました。")
        self.assertEqual([event["shape"] for event in result.events_of("pointer")][-1], "default")
        self.assertEqual(self.listed(), [])


class Looking(CliTest):
    def setUp(self):
        super().setUp()
        self.put(entry("2004/01/31", "a"), entry("2004/02/01", "b"), entry("2004/02/01", "c", Private=True),
                 entry("2004/02/15", "d", Private=True), entry("2005/02/01", "e"))

    def test_the_list_begins_with_the_newest_day_and_the_highest_number(self):
        self.assertEqual([title for *_, title in self.listed()], list("edcba"))

    def test_the_list_is_narrowed_by_month_and_days(self):
        for words, titles in [(["--month", "2004/02"], "dcb"), (["--from", "2004/02/01"], "edcb"),
                              (["--to", "2004/02/01"], "cba"), (["--from", "2004/02/01", "--to", "2004/02/14"], "cb"),
                              (["--month", "2004/02", "--from", "2004/02/02"], "d"), (["--month", "2003/02"], ""),
                              (["--from", "2004/03/01", "--to", "2004/02/01"], "")]:
            self.assertEqual("".join(title for *_, title in self.listed(*words)), titles, words)

    def test_days_of_a_month(self):
        self.assertEqual(self.must("entry", "days", "--month", "2004/02").text, "2004/02/01\n2004/02/15\n")
        self.assertEqual(self.must("entry", "days", "--month", "2004/02", "--public").text, "2004/02/01\n")
        self.assertEqual(self.must("--json", "entry", "days", "--month", "1999/01").json, [])

    def test_a_day_shows_its_highest_number_first(self):
        self.assertEqual([row["Title"] for row in self.must("--json", "entry", "show", "2004/02/01").json],
                         ["c", "b"])
        self.assertEqual(self.must("--json", "entry", "show", "2004/03/01").json, [])

    def test_an_entry_that_is_not_there_is_refused(self):
        self.refused("entry", "show", "2004/02/01", "3", naming=["2004/02/01", "3"])


class Genres(CliTest):
    def genres(self):
        return read(self.data + "Genre.csv").decode("cp932").splitlines()

    def test_a_genre_is_added_once_whatever_its_width_case_and_kana(self):
        for genre in ("Ａｂ", "ab", "AB", "ｱ", "あ", "ア", "一般", "", "は", "ば"):
            self.put(entry("2004/02/01", Genre=genre))
        self.assertEqual(self.must("genre", "list").text.splitlines(), ["一般", "Ａｂ", "ｱ", "は", "ば"])

    def test_a_genre_that_the_code_page_lacks_is_added_once(self):
        for _ in range(3):
            self.put(entry("2004/02/01", Genre="café"), entry("2004/02/01", Genre="😀"), entry("2004/02/01", Genre="〜"))
        self.assertEqual(sorted(self.must("--json", "genre", "list").json), ["café", "一般", "～", "😀"])
        self.assertEqual(len(self.genres()), 4)

    def test_the_list_is_made_anew_from_the_diary(self):
        self.put(*[entry("2004/02/01", Genre=genre) for genre in ("う", "ア", "い", "一般")])
        write(self.data + "Genre.csv", "gone\r\n")
        result = self.must("--events", "genre", "rebuild")
        self.assertEqual(self.genres(), ["一般", "ア", "い", "う"])
        self.assertEqual((result.statuses, result.boxes), (["ジャンルの再構成が完了しました。"], ["information: 完了！"]))

    def test_an_empty_diary_knows_the_default_genre(self):
        self.assertEqual(self.must("genre", "list").text, "一般\n")


class Rescue(CliTest):
    def setUp(self):
        super().setUp()
        self.rescue = self.data + "rescue.jsonl"
        self.put(entry("2004/02/01", "one", Contents="日記\r\n\"x\""), entry("2004/02/01", "two"))

    def lines(self):
        return [json.loads(line) for line in read(self.rescue).decode().splitlines()]

    def test_what_is_overwritten_is_kept(self):
        self.put(entry("2004/02/01", "new", Number=1))
        (line,) = self.lines()
        self.assertEqual((line["Title"], line["Contents"], line["Time"]),
                         ("one", "日記\r\n\"x\"", "2004/02/29 12:34:56"))
        self.assertTrue(line["Reason"])
        self.assertEqual(stat.S_IMODE(os.stat(self.rescue).st_mode), 0o600)

    def test_what_is_deleted_is_kept_and_comes_back(self):
        self.must("--yes", "entry", "delete", "2004/02/01", "1")
        self.must("entry", "put", self.rescue)
        self.assertEqual(self.listed(), [("2004/02/01", 2, "one"), ("2004/02/01", 1, "two")])
        self.assertEqual(self.must("--json", "entry", "show", "2004/02/01", "2").json["Contents"], "日記\r\n\"x\"")
        self.assertEqual(len(self.lines()), 1)

    def test_a_line_that_comes_back_overwrites_neither_the_diary_nor_another_line(self):
        for _ in range(2):
            self.must("--yes", "entry", "delete", "2004/02/01", "1")
        self.put(entry("2004/02/01", "three"))
        self.put(entry("2004/02/01", "four", Number=1))
        self.assertEqual([line["Number"] for line in self.lines()], [1, 1, 1])
        self.must("entry", "put", self.rescue)
        self.assertEqual(sorted(title for *_, title in self.listed()), ["four", "one", "three", "two"])
        self.assertEqual(len(self.lines()), 3, "nothing was overwritten once more")

    def test_lines_of_an_empty_day_keep_their_order(self):
        for number in (2, 1):
            self.must("--yes", "entry", "delete", "2004/02/01", str(number))
        self.must("entry", "put", self.rescue)
        self.assertEqual(self.listed(), [("2004/02/01", 2, "two"), ("2004/02/01", 1, "one")])

    def test_a_number_that_another_program_takes_meanwhile_is_taken(self):
        self.put(entry("2004/02/05", "old"))
        self.must("--yes", "entry", "delete", "2004/02/05", "1")
        with contextlib.closing(sqlite3.connect(self.database, isolation_level=None)) as other:
            other.execute("BEGIN IMMEDIATE")
            waiting = subprocess.Popen(self.command("entry", "put", self.rescue), env=self.environment(),
                                       stdout=subprocess.PIPE)
            time.sleep(1)  # by now it waits for the diary
            other.execute("INSERT INTO Contents (Day, Number, Title) VALUES ('2004/02/05', 1, 'other')")
            other.execute("COMMIT")
        waiting.communicate(timeout=PATIENCE_SECONDS)
        self.assertEqual(waiting.returncode, 0)
        self.assertEqual(self.sql("SELECT Number, Title FROM Contents WHERE Day = '2004/02/05' ORDER BY Number"),
                         [(1, "other"), (2, "old")])

    def test_a_line_without_a_number_in_front_is_safe_from_one_that_comes_back(self):
        self.must("--yes", "entry", "delete", "2004/02/01", "2")
        self.must("--yes", "entry", "delete", "2004/02/01", "1")
        self.put(entry("2004/02/01", "fresh"), read(self.rescue).decode())
        self.assertEqual(sorted(title for *_, title in self.listed()), ["fresh", "one", "two"])

    def test_a_refused_change_leaves_no_line(self):
        self.refused("entry", "put", input=entry("2004/02/01", "new", Number=1) + "x")
        self.refused("entry", "delete", "2004/02/01", "1")
        self.assertFalse(os.path.exists(self.rescue))

    def test_it_can_be_switched_off(self):
        self.set_key("diary.ini", "ALL", "Rescue", "0")
        self.put(entry("2004/02/01", "new", Number=1))
        self.must("--yes", "entry", "delete", "2004/02/01", "1")
        self.assertFalse(os.path.exists(self.rescue))

    def test_a_line_torn_by_a_crash_spoils_no_later_one(self):
        self.put(entry("2004/02/01", "new", Number=1))
        with open(self.rescue, "ab") as file:
            file.write(b'{"Day":"2004/02/01","Title":"to')
        self.must("--yes", "entry", "delete", "2004/02/01", "2")
        self.assertEqual([line["Title"] for line in self.lines()], ["one", "two"])
        self.assertEqual(read(self.data + "rescue.damaged"), b'{"Day":"2004/02/01","Title":"to\n')

    def test_above_twenty_megabytes_the_oldest_lines_go(self):
        for i in range(6):
            self.put(entry("2004/02/01", str(i), Number=1, Contents="x" * 4_500_000))
        self.assertEqual([line["Title"] for line in self.lines()], ["1", "2", "3", "4"])
        self.assertLessEqual(os.path.getsize(self.rescue), 20_000_000)
        self.assertEqual(stat.S_IMODE(os.stat(self.rescue).st_mode), 0o600)


class Places(CliTest):
    """A diary behind a link, and a backup in its place."""

    def setUp(self):
        super().setUp()
        self.put(entry("2004/02/01", "old"))
        self.backup = self.data + "diarymdb.bak"
        shutil.copy(self.database, self.backup)
        self.put(entry("2004/02/01", "new"))

    def move_behind_link(self):
        self.end = os.path.join(self.root, "disk", "real.mdb")
        os.makedirs(os.path.dirname(self.end))
        os.rename(self.database, self.end)
        os.symlink(self.end, self.database)

    def tear(self):
        """A program that is killed in the middle of a large change."""
        script = ("import os, sqlite3, sys; base = sqlite3.connect(sys.argv[1], isolation_level=None);"
                  "base.execute('PRAGMA cache_size = 2'); base.execute('BEGIN IMMEDIATE');"
                  "base.executemany('INSERT INTO Contents (Day, Number, Title, Contents) VALUES (?, ?, ?, ?)',"
                  "[('2004/02/01', i + 3, 'half', 'x' * 2000) for i in range(300)]); os._exit(0)")
        subprocess.run([sys.executable, "-c", script, self.database], check=True)

    def titles(self):
        return sorted(title for *_, title in self.listed())

    def test_every_command_rolls_a_kill_behind_a_link_back(self):
        self.move_behind_link()
        for words in (["entry", "list"], ["db", "check"], ["db", "version"], ["site", "preview"], ["start"],
                      ["file", "list"], ["genre", "rebuild"]):
            self.tear()
            self.assertTrue(os.path.exists(self.end + "-journal"))
            self.must(*words)
            self.assertFalse(os.path.exists(self.end + "-journal"), words)
            self.assertEqual(self.titles(), ["new", "old"])
        self.tear()
        self.assertEqual(self.must("db", "version", self.database).text, "220\n")
        self.assertTrue(os.path.exists(self.end + "-journal"), "a file that is named stays as it is")
        self.put(entry("2004/02/01", "more"))
        self.assertEqual(self.titles(), ["more", "new", "old"])

    def test_a_link_that_leads_nowhere_is_named_with_both_ends(self):
        self.move_behind_link()
        os.rename(os.path.dirname(self.end), os.path.join(self.root, "away"))
        for words in (["start"], ["entry", "list"], ["entry", "put"], ["db", "check"], ["db", "restore"]):
            self.refused(*words, input=entry("2004/02/01", "lost"), naming=[self.database, self.end])
        os.rename(os.path.join(self.root, "away"), os.path.dirname(self.end))
        self.assertEqual(self.titles(), ["new", "old"])

    def test_a_lost_link_of_the_old_layout_or_to_the_users_folder_gets_no_new_diary(self):
        home = self.make_home("other")
        end = os.path.join(self.root, "nowhere", "diary.mdb")
        os.symlink(end, os.path.join(home, "diary.mdb"))
        result = self.run_cli("start", home=home)
        self.assertIn(end, self.assert_refusal(result, 1))
        self.assertFalse(os.path.exists(os.path.join(home, "UserData", "diary.mdb")))
        home = self.make_home("third")
        os.symlink(os.path.dirname(end), os.path.join(home, "UserData"))
        self.assertIn(os.path.dirname(end), self.assert_refusal(self.run_cli("start", home=home), 1))
        self.assertFalse(os.path.exists(os.path.dirname(end)))

    def test_a_backup_takes_the_diarys_place(self):
        result = self.must("--events", "db", "restore")
        kept = self.data + "diarymdb.replaced.bak"
        self.assertEqual(result.text, kept + "\n")
        self.assertEqual(result.statuses, ["diarymdb.bakを復元しました。今までの日記は「diarymdb.replaced.bak」に残しました。"])
        self.assertEqual(self.titles(), ["old"])
        self.assertEqual(self.must("--json", "db", "restore", kept).json,
                         {"kept": self.data + "diarymdb.replaced-2.bak"})
        self.assertEqual(self.titles(), ["new", "old"])

    def test_a_backup_takes_a_damaged_diarys_place_and_no_journal_undoes_it(self):
        self.tear()
        damaged = bytearray(read(self.database))
        damaged[:100] = b"\xff" * 100
        write(self.database, bytes(damaged))
        self.assertIn("db restore", self.refused("entry", "list"))
        self.must("db", "restore")
        self.assertEqual(self.titles(), ["old"])
        self.assert_sound()
        self.assertEqual(read(self.data + "diarymdb.replaced.bak"), bytes(damaged))
        self.assertTrue(os.path.exists(self.data + "diarymdb.replaced.bak-journal"))

    def test_what_is_no_backup_is_refused(self):
        self.refused("db", "restore", self.input_file("x.bak", "no diary"), naming=["x.bak"])
        self.refused("db", "restore", os.path.join(self.inputs, "missing"), naming=["missing"])
        self.refused("db", "restore", self.database)
        os.remove(self.backup)
        self.refused("db", "restore", naming=["diarymdb.bak"])

    def test_a_write_ahead_log_of_another_tool_is_taken_in(self):
        tool = sqlite3.connect(self.database, isolation_level=None)
        tool.execute("PRAGMA journal_mode = WAL")
        tool.execute("UPDATE Contents SET Title = 'changed' WHERE Title = 'new'")
        self.assertEqual(self.titles(), ["changed", "old"])
        self.put(entry("2004/02/01", "both"))
        self.assertEqual(tool.execute("SELECT count(*) FROM Contents").fetchall(), [(3,)])
        self.assertIn("使用中", self.assert_refusal(self.run_cli("db", "restore"), 1))
        tool.close()
        self.must("start")
        alone = self.input_file("alone.mdb", read(self.database))
        self.assertEqual(read(alone)[18], 1)
        self.assertEqual(self.must("db", "version", alone).text, "220\n")


class Checking(CliTest):
    def setUp(self):
        super().setUp()
        self.put(*[entry("2004/02/01", title) for title in "abc"])

    def findings(self):
        before = snapshot(self.root)
        result = self.run_cli("--json", "db", "check")
        found = result.json
        self.assertEqual(snapshot(self.root), before, "the check changed something")
        self.assertEqual(result.code, 1 if found else 0, result)
        self.assertEqual(len(result.error_lines), result.code, result)
        return found

    def test_a_sound_diary_has_no_findings(self):
        self.assertEqual(self.findings(), [])
        self.assertEqual(self.must("db", "check").out, b"")

    def test_what_a_name_holds_does_not_command_the_terminal(self):
        name = "x\x1b[31m\x9b1m\x7f"
        self.sql(f'CREATE TRIGGER "{name}" AFTER INSERT ON Contents BEGIN SELECT 1; END')
        result = self.run_cli("db", "check")
        self.assertEqual(result.code, 1, result)
        self.assertIn("「x\\\\u001b[31m\\\\u009b1m\\\\u007f」", result.text)
        self.assertIn(name, self.findings()[0])
        self.sql(f'DROP TRIGGER "{name}"')
        self.put(entry("2004/02/02", name))
        self.assertIn(name, self.must("entry", "list").text)  # a script gets what is stored
        self.sql("INSERT INTO FileDB (FileName, Day) VALUES (?, 'ALL')", name)
        self.use_site()
        self.must("site", "save")
        refusals = [self.run_cli("file", "delete", name, "ALL", "0"), self.run_cli("file", "add", name, "ALL", "0"),
                    self.run_cli("--events", "site", "save")]
        for result in refusals:
            self.assertFalse(set("\x1b\x9b\x7f") & set(result.error_text), result)

    def test_a_diary_that_the_start_refuses_is_checked(self):
        self.sql("DROP TABLE DBInfo")
        self.sql("CREATE VIEW DBInfo AS SELECT 220 AS VersionInfo")
        self.assertIn("「DBInfo」", "".join(self.findings()))

    def test_it_reports_numbers_that_are_not_1_to_n(self):
        for statement in ("UPDATE Contents SET Number = 5 WHERE Title = 'c'",
                          "UPDATE Contents SET Number = 2 WHERE Title = 'c'",
                          "UPDATE Contents SET Number = Number - 1"):
            with self.subTest(statement):
                self.sql(statement)
                (finding,) = self.findings()
                self.assertIn("2004/02/01", finding)

    def test_it_reports_day_keys_that_are_no_dates(self):
        for day in ("2004/3/5", "2004/02/30", "", "nonsense"):
            self.sql("UPDATE Contents SET Day = ?, Number = 1 WHERE Title = 'c'", day)
            (finding,) = self.findings()
            self.assertIn(f"「{day}」", finding)

    def test_it_reports_registered_files_that_point_nowhere(self):
        for name in ("a.gif", "b.gif", "c.css", "d.gif"):
            write(self.data + "DiaryParts/" + name, name)
        self.sql("INSERT INTO FileDB (FileName, Day, Number) VALUES ('a.gif', '2004/02/01', 4), "
                 "('b.gif', '2004/02/01', 3), ('c.css', 'ALL', 0), ('d.gif', '2004/02/02', 1)")
        found = self.findings()
        self.assertEqual(len(found), 2, found)
        self.assertIn("a.gif", found[0])
        self.assertIn("d.gif", found[1])

    def test_it_reports_what_is_registered_and_not_on_the_disk(self):
        self.sql("INSERT INTO FileDB (FileName, Day, Number) VALUES ('gone.gif', '2004/02/01', 1)")
        self.sql("INSERT INTO LogDB VALUES ('2004/01', '200401.htm')")
        self.assertEqual(self.findings(), ["ディスクにない登録ファイル: gone.gif (2004/02/01 1)",
                                           "ディスクにない登録ログ: 200401.htm (2004/01)"])

    def test_it_reports_rows_that_lack_something_or_stand_alone(self):
        self.sql("UPDATE Contents SET Title = '', Contents = '\ufffd', ImportMark = 'alone', PublishTime = NULL "
                 "WHERE Title = 'b'")
        self.assertEqual(self.findings(), ["値のない日記: 2004/02/01 2 (保存日時)", "文字の壊れた日記: 2004/02/01 2 (内容)",
                                           "タイトルのない日記: 2004/02/01 2",
                                           "日記が一つだけの読み込みグループ: 「alone」(2004/02/01 2)"])

    def test_an_old_diary_is_not_checked_before_it_is_converted(self):
        self.sql("UPDATE DBInfo SET VersionInfo = 200")
        for words in (["db", "check"], ["db", "check", "--repair"]):
            self.refused(*words, naming=[self.database, "バージョン200", "変換"])
        write(self.database, b"\0\1\0\0Standard Jet DB" + bytes(4077))
        for words in (["db", "check"], ["db", "check", "--repair"]):
            self.refused(*words, naming=[self.database, "Jet", "変換"])

    def test_what_has_one_right_answer_is_mended_behind_a_backup(self):
        self.sql("UPDATE Contents SET Number = 5 WHERE Title = 'c'")
        self.sql("UPDATE Contents SET Day = '2004/2/1', Number = 1 WHERE Title = 'b'")
        self.assertEqual(len(self.findings()), 2)
        lines = ["日付の形を直しました: 「2004/2/1」→2004/02/01 (1件)",
                 "番号を付け直しました: 2004/02/01 (「2004/2/1」の1→2、5→3)"]
        before = read(self.database)
        self.assertEqual(self.must("db", "check", "--repair").text.splitlines(), lines)
        self.assertEqual(self.listed(), [("2004/02/01", 3, "c"), ("2004/02/01", 2, "b"), ("2004/02/01", 1, "a")])
        self.assert_sound()
        (backup,) = glob.glob(self.data + "Backup/*.mdb")
        write(self.database, before)
        self.assertEqual(self.sql("SELECT Day, Number, Title FROM Contents ORDER BY Title"),
                         [("2004/02/01", 1, "a"), ("2004/2/1", 1, "b"), ("2004/02/01", 5, "c")])
        self.assertEqual(self.must("--json", "db", "check", "--repair").json, {"mended": lines, "remaining": []})
        self.assertEqual(self.findings(), [])
        os.remove(backup)
        before = snapshot(self.root)
        self.assertEqual(self.must("db", "check", "--repair").out, b"")
        self.assertEqual(snapshot(self.root), before, "there was nothing to mend")

    def test_what_can_not_be_mended_remains_and_is_a_refusal(self):
        self.sql("UPDATE Contents SET Number = 5 WHERE Title = 'c'")
        self.sql("UPDATE Contents SET Title = '' WHERE Title = 'a'")
        result = self.run_cli("db", "check", "--repair")
        self.assertEqual(result.code, 1, result)
        self.assertEqual(result.text.splitlines(), ["番号を付け直しました: 2004/02/01 (5→3)",
                                                    "タイトルのない日記: 2004/02/01 1"])
        self.assertEqual(len(result.error_lines), 1, result)

    def test_a_repair_of_a_damaged_or_busy_diary_is_refused(self):
        self.sql("UPDATE Contents SET Number = 5 WHERE Title = 'c'")
        with contextlib.closing(sqlite3.connect(self.database, isolation_level=None)) as other:
            other.execute("BEGIN IMMEDIATE")
            result = self.run_cli("db", "check", "--repair")
            self.assertIn("使用中", self.assert_refusal(result, 1))
            other.execute("ROLLBACK")
        self.put(*[entry("2004/02/02", str(i), Contents="x" * 2000) for i in range(100)])
        base = bytearray(read(self.database))
        middle = len(base) // 2 // 4096 * 4096
        base[middle:middle + 4096] = b"\xa5" * 4096
        write(self.database, bytes(base))
        self.refused("db", "check", "--repair", naming=[self.database, "db restore"])

    def test_it_reports_triggers_and_views_which_do_nothing(self):
        self.sql("CREATE TRIGGER evil AFTER INSERT ON Contents BEGIN DELETE FROM Contents WHERE Title = 'a'; END")
        self.sql("CREATE VIEW look AS SELECT 1")
        found = self.findings()
        self.assertEqual(len(found), 2, found)
        self.assertIn("「evil」", found[0])
        self.assertIn("「look」", found[1])
        self.put(entry("2004/02/01", "d"))
        self.assertEqual(len(self.listed()), 4)

    def test_it_reports_a_damaged_file(self):
        self.put(*[entry("2004/02/02", str(i), Contents="x" * 2000) for i in range(100)])
        base = bytearray(read(self.database))
        middle = len(base) // 2 // 4096 * 4096
        base[middle:middle + 4096] = b"\xa5" * 4096
        write(self.database, bytes(base))
        self.assertTrue(any("Page " in finding for finding in self.findings()))

    def test_the_version_is_that_of_the_table(self):
        self.assertEqual(self.must("db", "version").text, "220\n")
        self.sql("UPDATE DBInfo SET VersionInfo = 221")
        self.assertEqual(self.must("db", "version", self.database).text, "221\n")
        self.assertEqual(self.must("--json", "db", "version", self.data + "nothing").json, {"version": 0})
        self.assertFalse(os.path.exists(self.data + "nothing"))
        self.sql("DROP TABLE DBInfo")
        self.assertEqual(self.must("db", "version", self.database).text, "0\n")


if __name__ == "__main__":
    unittest.main()
