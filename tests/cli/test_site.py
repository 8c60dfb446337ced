"""From the first start to the finished site, as it looks from outside."""

import os
import re
import shutil
import stat
import subprocess
import unittest

from home import PROGRAM, CliTest, entry, read, snapshot, write

UPDATE_BOX = ("plain: diary.mdbがアップデートされています。\r\nデータベースをアップデートします。\r\n"
              "(念のために、今までの「diary.mdb」は「diarymdb.bak」というファイル名で保存します。)")
DONE_BOX = "plain: diary.mdbのアップデートは完了しました。\r\n念のためにVelloriaを再起動してください。"
DATA_BOX = "critical: データ保存先フォルダが不正です。\r\n有効なデータ保存先フォルダを指定して下さい。"
WEATHER = ["Shinny.gif", "Cloudy.gif", "Rainy.gif", "Thunder.gif", "Snowy.gif"]
SETTINGS = {"Customize": "Customize/Customize.ini", "Frame": "Frame.ini", "RSS": "RSS.ini",
            "HaloScan": "HaloScan.ini", "Blog": "Blog.ini"}
NO_ENTRY = "-今月はまだ日記はありません-"


class FirstStart(CliTest):
    def test_factory_files_become_a_users_folders(self):
        write(self.home + "/Livedoor.blg", "[S]\r\nK=1\r\n")
        result = self.must("--events", "start", now="2004/05/06 08:05:09")
        variables = dict(result.rows)
        self.assertEqual(result.boxes, [])
        for name in ("diary.ini", "diary.mdb", "Customize/Customize.ini", "ExportFormat/TEXT.ini",
                     "ExportFormat/HTML.ini", "BlogTemplate/Livedoor.ini", *["DiaryParts/" + w for w in WEATHER]):
            self.assertTrue(os.path.isfile(self.data + name), name)
        self.assertEqual(os.listdir(self.data + "DiaryLog"), [])
        self.assertEqual(self.ini("diary.ini", "ALL", "DataPath"), self.data)
        for section, file in SETTINGS.items():
            self.assertEqual(self.ini("diary.ini", section, "IniFileName"), self.data + file)
        self.assertEqual({name: variables[name] for name in ("CurrentVersion", "Today", "EnterDay", "DataPath",
                                                             "UserPath", "FilePath", "FileName", "UserID")},
                         {"CurrentVersion": "220", "Today": "2004/05/06", "EnterDay": "2004/05/06",
                          "DataPath": self.data, "UserPath": self.data, "FilePath": self.data, "FileName": "",
                          "UserID": ""})
        self.assertEqual((variables["CustIniFile"], variables["RSSIniFile"]),
                         (self.data + SETTINGS["Customize"], self.data + SETTINGS["RSS"]))

    def test_the_further_customize_sets_come_with_the_first_start(self):
        shutil.copytree(os.path.join(PROGRAM, "Customize"), self.home + "/Customize")
        self.must("start")
        brought = set(os.listdir(self.data + "Customize"))
        self.assertEqual(brought, {"Customize.ini", *os.listdir(self.home + "/Customize")})
        self.assertEqual(self.ini("diary.ini", "Customize", "IniFileName"), self.data + SETTINGS["Customize"])
        os.remove(self.data + "Customize/Dark.ini")
        self.must("start")
        self.assertFalse(os.path.exists(self.data + "Customize/Dark.ini"))

    def test_the_site_folder_of_the_first_run_is_not_stored(self):
        self.must("start")
        self.assertEqual(dict(self.must("start").rows)["FilePath"], "")

    def test_a_second_start_changes_nothing(self):
        self.must("start")
        before = snapshot(self.root)
        self.must("start")
        self.assertEqual(snapshot(self.root), before)

    def test_passwords_and_the_folder_are_the_owners_alone(self):
        self.must("start")
        self.assertEqual(stat.S_IMODE(os.stat(self.data).st_mode), 0o700)
        self.assertEqual(stat.S_IMODE(os.stat(self.diary_ini).st_mode), 0o600)

    def test_files_of_an_old_layout_are_copied_and_stay(self):
        old = os.path.join(self.root, "old", "")
        os.makedirs(old)
        write(self.home + "/diary.ini", f"[ALL]\r\nDataPath={old}\r\nSaveFileName=old.htm\r\n")
        self.must("start", home=self.make_home("other"))
        shutil.copy(os.path.join(self.root, "other/UserData/diary.mdb"), self.home + "/diary.mdb")
        originals = [read(self.home + "/diary.ini"), read(self.home + "/diary.mdb")]
        variables = dict(self.must("start").rows)
        self.assertEqual((variables["DataPath"], variables["FileName"]), (old, "old.htm"))
        self.assertEqual([read(self.home + "/diary.ini"), read(self.home + "/diary.mdb")], originals)
        self.assertEqual(read(self.database), originals[1])
        self.assertTrue(os.path.exists(old + "DiaryParts/Shinny.gif"))

    def test_missing_templates_are_no_message_of_their_own(self):
        os.remove(self.home + "/default.ini")
        os.remove(self.home + "/default.mdb")
        result = self.run_cli("--events", "start", answers=[])
        self.assertEqual((result.code, result.boxes[0]), (1, DATA_BOX))

    def test_files_are_found_without_regard_to_case(self):
        for name in ("default.ini", "Customize.ini", "Shinny.gif"):
            os.rename(f"{self.home}/{name}", f"{self.home}/{name.upper()}")
        self.must("start")
        self.assertTrue(os.path.exists(self.data + "Customize/Customize.ini"))
        self.assertTrue(os.path.exists(self.data + "DiaryParts/Shinny.gif"))
        os.rename(self.data + "Customize", self.data + "CUSTOMIZE")
        os.rename(self.diary_ini, self.data + "DIARY.INI")
        self.must("start")
        self.assertFalse(os.path.exists(self.data + "Customize"))
        self.assertFalse(os.path.exists(self.diary_ini))

    def test_odd_characters_in_the_path_need_no_question(self):
        for name in ("josé", "😀", "[x];y=z", "100% 'a' \"b\""):
            home = self.make_home(name)
            for _ in range(2):
                result = self.must("--events", "start", home=home)
                self.assertEqual(result.boxes, [])
                self.assertEqual(dict(result.rows)["DataPath"], f"{home}/UserData/")
            self.must("site", "save", "--as", f"{home}/site/x.htm", home=home)
            self.assertTrue(os.path.exists(f"{home}/site/x.htm"))
            self.assertEqual(dict(self.must("start", home=home).rows)["FilePath"], f"{home}/site/")


class DataFolder(CliTest):
    def setUp(self):
        super().setUp()
        self.must("start")

    def test_an_invalid_folder_is_asked_for_and_cancel_ends(self):
        for stored in ("/nowhere/", "", "C:\\Velloria\\", "relative/", "~", ":/resource"):
            self.set_key("diary.ini", "ALL", "DataPath", stored)
            before = snapshot(self.root)
            result = self.run_cli("--events", "start", options={"cwd": self.root})
            self.assertEqual(result.code, 1)
            self.assertEqual(result.boxes, [
                DATA_BOX, "information: Velloriaを再起動して、データ保存先フォルダを指定してください。"])
            self.assertEqual([event["title"] for event in result.events_of("file")], ["フォルダの選択"])
            self.assertEqual(snapshot(self.root), before, stored)

    def test_a_removed_key_is_an_invalid_folder(self):
        self.must("ini", "delete", self.diary_ini, "ALL", "DataPath")
        self.assertEqual(self.run_cli("--events", "start").boxes[0], DATA_BOX)
        self.assertFalse(os.path.exists("/DiaryParts"))

    def test_the_chosen_folder_is_stored_with_its_separator(self):
        chosen = os.path.join(self.root, "chosen")
        os.makedirs(chosen)
        self.set_key("diary.ini", "ALL", "DataPath", "/nowhere/")
        self.assertEqual(dict(self.must("start", answers=[chosen]).rows)["DataPath"], chosen + "/")
        self.assertEqual(self.ini("diary.ini", "ALL", "DataPath"), chosen + "/")
        self.assertTrue(os.path.exists(chosen + "/Customize/Customize.ini"))

    def test_a_folder_without_its_separator_works_and_stays_as_it_is(self):
        self.set_key("diary.ini", "ALL", "DataPath", self.data.rstrip("/"))
        self.assertEqual(dict(self.must("start").rows)["DataPath"], self.data)
        self.assertEqual(self.ini("diary.ini", "ALL", "DataPath"), self.data.rstrip("/"))

    def test_a_folder_that_the_settings_could_not_keep_is_refused(self):
        long = os.path.join(self.root, "l" * 250)
        os.makedirs(long)
        self.set_key("diary.ini", "ALL", "DataPath", "/nowhere/")
        before = read(self.diary_ini)
        result = self.run_cli("--events", "start", answers=[long])
        self.assertEqual(result.code, 1)
        self.assertEqual(read(self.diary_ini), before)


class FoldersAndFiles(CliTest):
    def setUp(self):
        super().setUp()
        self.must("start")

    def test_an_export_format_comes_back_only_with_its_folder(self):
        os.remove(self.data + "ExportFormat/TEXT.ini")
        self.must("start")
        self.assertEqual(os.listdir(self.data + "ExportFormat"), ["HTML.ini"])
        shutil.rmtree(self.data + "ExportFormat")
        self.must("start")
        self.assertEqual(sorted(os.listdir(self.data + "ExportFormat")), ["HTML.ini", "TEXT.ini"])

    def test_the_sunny_picture_alone_brings_all_pictures_back(self):
        os.remove(self.data + "DiaryParts/Cloudy.gif")
        self.must("start")
        self.assertNotIn("Cloudy.gif", os.listdir(self.data + "DiaryParts"))
        os.remove(self.data + "DiaryParts/Shinny.gif")
        self.must("start")
        self.assertEqual(sorted(os.listdir(self.data + "DiaryParts")), sorted(WEATHER))

    def test_a_lost_customize_set_comes_back(self):
        os.remove(self.data + "Customize/Customize.ini")
        self.must("start")
        self.assertTrue(os.path.exists(self.data + "Customize/Customize.ini"))

    def test_a_template_is_replaced_only_by_a_newer_one(self):
        target = self.data + "BlogTemplate/a.ini"
        write(self.home + "/a.BLG", "factory")
        os.utime(self.home + "/a.BLG", (1_000_000_000, 1_000_000_000))
        write(self.data + "BlogTemplate/own.ini", "own")
        self.must("start")
        self.assertEqual(os.stat(target).st_mtime, 1_000_000_000)
        for time, kept in ((1_000_000_000, True), (1_000_000_001, True), (999_999_999, False)):
            write(target, "edited")
            os.utime(target, (time, time))
            self.must("start")
            self.assertEqual(read(target) == b"edited", kept, time)
        self.assertEqual(read(self.data + "BlogTemplate/own.ini"), b"own")

    def test_a_settings_file_that_is_lost_falls_back_to_the_default_and_stays_there(self):
        for section, file in SETTINGS.items():
            for stored in ("/nowhere/x.ini", "", "relative.ini"):
                self.set_key("diary.ini", section, "IniFileName", stored)
                self.must("start")
                self.assertEqual(self.ini("diary.ini", section, "IniFileName"), self.data + file)

    def test_a_settings_file_elsewhere_is_kept(self):
        own = os.path.join(self.root, "own.ini")
        write(own, "[General]\r\nHPTitle=own title\r\n")
        self.set_key("diary.ini", "Customize", "IniFileName", own)
        self.must("site", "preview")
        self.assertIn("<TITLE>own title</TITLE>", self.page(self.data + "tmp.htm"))

    def test_a_version_that_no_migration_knows_keeps_the_tables_and_goes_on(self):
        self.put(entry("2004/02/01", "kept"))
        self.sql("UPDATE DBInfo SET VersionInfo = 120")
        old = read(self.database)
        self.set_key("diary.ini", "Customize", "IniFileName", self.input_file("own.ini", "[S]\r\n"))
        result = self.must("--events", "start")
        self.assertEqual(result.boxes, [UPDATE_BOX, DONE_BOX])
        self.assertEqual((read(self.data + "diarymdb.bak"), read(self.database)), (old, old))
        self.assertEqual(self.ini("diary.ini", "ALL", "DBVersion"), "220")
        self.assertEqual(self.ini("diary.ini", "Customize", "IniFileName"), self.data + SETTINGS["Customize"])
        self.assertEqual([title for *_, title in self.listed()], ["kept"])

    def test_a_current_version_writes_no_settings(self):
        for version in (220, 221, 32767):
            self.sql("UPDATE DBInfo SET VersionInfo = ?", version)
            own = self.input_file("own.ini", "[S]\r\n")
            self.set_key("diary.ini", "Customize", "IniFileName", own)
            self.assertEqual(self.must("--events", "start").boxes, [])
            self.assertEqual(self.ini("diary.ini", "Customize", "IniFileName"), own)


class SiteTest(CliTest):
    """Fixture: February 2004 with a public first day and last day and a private day between them."""

    def setUp(self):
        super().setUp()
        self.use_site()
        self.put(entry("2004/02/01", "first"), entry("2004/02/29", "last"), entry("2004/02/15", "秘", Private=True))

    def frame(self, section, **keys):
        for key, value in keys.items():
            self.set_key("Frame.ini", section, key, value)

    def divide(self, **keys):
        self.frame("Divide", **({"DiaryDivide": 1, "DiaryTerm": 1, "DiaryOnTop": 1} | keys))

    def save(self, name="x.htm", **how):
        self.must("site", "save", **how)
        return self.page(self.site + name)

    def listed_files(self):
        return [line.split(",")[1] for line in read(self.data + "upload.tmp").decode("cp932").splitlines()]


class Settings(SiteTest):
    def test_a_missing_key_is_an_empty_attribute(self):
        self.must("ini", "delete", self.data + SETTINGS["Customize"], "Body", "TextColor")
        self.assertIn("<BODY TEXT='' BGCOLOR=", self.save())

    def test_a_piece_is_a_whole_file_and_one_line_end(self):
        self.customize("General", HeadTag="p")
        write(self.data + "Customize/p.htm", "X")
        self.assertIn("\r\nX\r\n</HEAD>", self.save())
        write(self.data + "Customize/p.htm", "X\nY\r\n")
        self.assertIn("\r\nX\nY\r\n\r\n</HEAD>", self.save())
        os.remove(self.data + "Customize/p.htm")
        self.assertIn("\r\n\r\n</HEAD>", self.save())

    def test_a_text_is_cut_at_255_bytes_and_never_within_a_character(self):
        for value, shown in (("a" * 300, "a" * 255), ("あ" * 200, "あ" * 127)):
            write(self.data + SETTINGS["Customize"], f"[General]\r\nHPTitle={value}\r\n".encode("cp932"))
            self.assertIn(f"<TITLE>{shown}</TITLE>", self.save())

    def test_a_hand_edit_shows_on_the_next_page(self):
        for colour in ("banana", "#123456"):
            self.customize("Body", TextColor=colour)
            self.assertIn(f"<BODY TEXT='{colour}'", self.save())


class SaveHtml(SiteTest):
    def test_it_writes_the_month_of_today_and_the_preview_that_of_the_entered_day(self):
        self.put(entry("2003/12/24", "christmas"))
        self.assertIn("2004年2月分", self.save(day="2003/12/01"))
        before = read(self.data + "upload.tmp")
        self.must("site", "preview", day="2003/12/01")
        page = self.page(self.data + "tmp.htm")
        self.assertIn("2003年12月分", page)
        self.assertIn("christmas", page)
        self.assertEqual(read(self.data + "upload.tmp"), before)

    def test_the_preview_alone_shows_private_entries_and_leaves_the_upload_list_alone(self):
        self.assertNotIn("秘", self.save())
        time = os.stat(self.data + "upload.tmp").st_mtime_ns
        self.must("site", "preview")
        self.assertIn("秘", self.page(self.data + "tmp.htm"))
        self.assertEqual(os.stat(self.data + "upload.tmp").st_mtime_ns, time)

    def test_without_a_name_it_is_save_as(self):
        for path, name in ((self.site, ""), ("", "x.htm"), ("relative/", "x.htm")):
            self.set_key("diary.ini", "ALL", "SaveFilePath", path)
            self.set_key("diary.ini", "ALL", "SaveFileName", name)
            target = os.path.join(self.root, "s2", "index")
            result = self.must("--events", "site", "save", answers=[target])
            (dialog,) = result.events_of("file")
            self.assertEqual((dialog["mode"], dialog["title"], dialog["folder"]),
                             ("save", "日記の書き出し...", path if path.startswith("/") else ""))
            self.assertTrue(os.path.exists(target + ".htm"))
            self.assertEqual(self.ini("diary.ini", "ALL", "SaveFileName"), "index.htm")
            self.assertEqual(self.ini("diary.ini", "ALL", "SaveFilePath"), self.root + "/s2/")
            self.assertEqual(result.statuses[-1], f"HTMLファイル {target}.htm を保存しました。")

    def test_cancelled_it_changes_nothing(self):
        self.set_key("diary.ini", "ALL", "SaveFileName", "")
        self.refused("site", "save", answers=[None])
        self.refused("site", "rebuild", answers=[None])

    def test_the_ending_is_added_unless_it_is_htm_or_html(self):
        for name, stored in (("index", "index.htm"), ("a.htm", "a.htm"), ("a.html", "a.html"),
                             ("X.HTM", "X.HTM.htm"), ("a.b", "a.b.htm"), (".htm", ".htm")):
            self.must("site", "save", "--as", self.site + name)
            self.assertEqual(self.ini("diary.ini", "ALL", "SaveFileName"), stored)
            self.assertTrue(os.path.exists(self.site + stored))

    def test_a_relative_name_is_one_of_the_working_directory(self):
        result = self.must("site", "save", "--as", "site/rel", options={"cwd": self.root})
        self.assertEqual(result.text, self.site + "rel.htm\n")

    def test_local_pages_in_the_data_folder_are_no_names_for_a_site(self):
        for name in ("tmp.htm", "tmp", "TMP.html", "Customize.htm", "oldtmp", "findtmp.htm", "VellInfo_result.htm",
                     "tmp_01.htm", "Customize_D"):
            before = snapshot(self.root)
            result = self.run_cli("--events", "site", "save", "--as", self.data + name)
            self.assertEqual((result.code, [event["kind"] for event in result.events_of("message")]),
                             (1, ["critical"]), name)
            self.assertEqual(snapshot(self.root), before, name)
        self.must("site", "save", "--as", self.site + "tmp.htm")
        self.must("site", "save", "--as", self.data + "tmpx.htm")

    def test_registered_files_of_the_month_and_of_all_months_go_along_once(self):
        write(self.data + "DiaryParts/a.gif", "picture")
        write(self.data + "DiaryParts/all.css", "style")
        self.sql("INSERT INTO FileDB (FileName, Day, Number, Uploaded) VALUES ('a.gif', '2004/02/01', 1, 1), "
                 "('all.css', 'ALL', 0, 0), ('old.css', 'ALL', 0, 1), ('gone.gif', '2004/02/01', 1, 0), "
                 "('b.gif', '2004/01/31', 1, 0)")
        result = self.must("--events", "site", "save")
        for name in ("a.gif", "all.css", "gone.gif"):
            self.assertIn(f"Copying {self.data}DiaryParts/{name}", result.statuses)
        for name in ("old.css", "b.gif"):
            self.assertNotIn(f"Copying {self.data}DiaryParts/{name}", result.statuses)
        self.assertEqual(read(self.site + "DiaryParts/a.gif"), b"picture")
        self.assertEqual(read(self.site + "DiaryParts/all.css"), b"style")
        write(self.data + "DiaryParts/a.gif", "changed")
        result = self.must("--events", "site", "save")
        self.assertEqual(read(self.site + "DiaryParts/a.gif"), b"picture")
        self.assertEqual(result.statuses[-1], f"HTMLファイル {self.site}x.htm を保存しました。")

    def test_the_weather_pictures_go_along_and_are_registered_once(self):
        for _ in range(2):
            self.must("site", "save")
            shutil.rmtree(self.site + "DiaryParts")
        self.must("site", "save")
        self.assertEqual(sorted(os.listdir(self.site + "DiaryParts")), sorted(WEATHER))
        self.assertEqual(sorted(self.sql("SELECT FileName, Day, Number FROM FileDB")),
                         sorted((name, "ALL", 0) for name in WEATHER))

    def test_a_folder_that_is_gone_is_a_failure_that_names_it(self):
        shutil.rmtree(self.site)
        self.refused("site", "save", naming=[self.site])

    def test_private_entries_never_reach_a_file_that_the_upload_list_names(self):
        self.set_key("diary.ini", "ALL", "SaveFilePath", self.data)
        self.divide(UseFileName2Day=1)
        for frames in (0, 1):
            self.frame("Frame", FrameOn=frames)
            for words in (["site", "save"], ["site", "preview"], ["site", "preview"]):
                self.must(*words, day="2004/02/15")
            for line in read(self.data + "upload.tmp").decode("cp932").splitlines():
                self.assertNotIn("秘", self.page(line.replace(",", "/")), line)
        self.assertIn("秘", "".join(self.page(self.data + name) for name in os.listdir(self.data)
                                    if name.startswith("tmp") and name.endswith(".htm")))


class MonthPage(SiteTest):
    def test_division_leaves_the_newest_day_on_the_month_file(self):
        self.divide()
        page, second = self.save(), self.page(self.site + "x_01.htm")
        self.assertIn('<A NAME="2004/02/29_1">', page)
        self.assertNotIn('<A NAME="2004/02/01_1">', page)
        self.assertIn('<A NAME="2004/02/01_1">', second)
        self.assertIn('<a href="./x_01.htm#2004/02/01_1">', page)
        self.assertEqual(read(self.data + "upload.tmp").decode(),
                         f"{self.site[:-1]},x.htm\r\n{self.site[:-1]},x_01.htm\r\n")

    def test_division_without_days_on_top_leaves_no_entry_on_the_month_file(self):
        self.divide(DiaryOnTop=0)
        page = self.save()
        self.assertNotIn("<A Name=", page)
        self.assertEqual(page.count("<HR>"), 1, "only that of the log list")
        for name, day in (("x_01.htm", "29"), ("x_02.htm", "01")):
            self.assertIn(f'<A NAME="2004/02/{day}_1">', self.page(self.site + name))
        self.assertFalse(os.path.exists(self.site + "x_03.htm"))

    def test_days_as_file_names(self):
        self.divide(UseFileName2Day=1)
        self.customize("DayList", AddTitle=0)
        page = self.save()
        self.assertIn('<a href="./2004_02_01.htm">', page)
        self.assertIn('<A NAME="2004/02/01_1">', self.page(self.site + "2004_02_01.htm"))
        self.assertEqual(self.listed_files(), ["x.htm", "2004_02_01.htm"])
        self.customize("DayList", AddTitle=1)
        self.assertIn('<a href="./2004_02_01.htm#2004/02/01_1">', self.save())

    def test_a_term_that_divides_the_days_makes_no_empty_page(self):
        self.put(entry("2004/02/10"), entry("2004/02/20"))
        self.divide(DiaryTerm=2)
        self.save()
        self.assertEqual(self.listed_files(), ["x.htm", "x_01.htm"])
        self.divide(DiaryTerm=0)
        self.save()
        self.assertEqual(self.listed_files(), ["x.htm"])

    def test_an_empty_month_says_so(self):
        for divided in (0, 1):
            self.divide(DiaryDivide=divided)
            page = self.save(now="2004/03/01 00:00:00")
            self.assertIn(NO_ENTRY, page)
            self.assertTrue(page.endswith("</BODY>\r\n</HTML>\r\n"))
        self.customize("DayList", Use=0)
        self.assertNotIn(NO_ENTRY, self.save(now="2004/03/01 00:00:00"))

    def test_entries_of_a_day_stand_newest_number_first_under_one_anchor_each(self):
        self.put(entry("2004/02/29", "second"))
        page = self.save()
        self.assertEqual(re.findall(r'NAME="(2004/02/\d\d_\d)"', page),
                         ["2004/02/29_2", "2004/02/29_1", "2004/02/01_1"])
        self.assertEqual(page.count('<A Name="2004/02/29"></A>'), 2)

    def test_a_private_day_is_nowhere_on_the_site(self):
        self.divide(DiaryOnTop=0)
        self.save()
        for name in self.listed_files():
            self.assertNotIn("2004/02/15", self.page(self.site + name))

    def test_a_character_outside_the_code_page_is_a_reference(self):
        self.put(entry("2004/02/29", "é😀髙〜"))
        self.assertIn("&#233;&#128512;髙～", self.save())


class Calendar(SiteTest):
    def rows(self, month):
        """Rows of the calendar, each a list of (text, is it grey)."""
        page = self.save(now=f"{month}/01 00:00:00")
        table = re.search(r"<table bgcolor.*?</table>", page, re.S).group()
        return [[(re.sub(r"<[^>]*>", "", cell), "gray" in cell) for cell in re.findall(r"<td>(.*?)</td>", row)]
                for row in table.split("\r\n")[2:-1]]

    def test_a_month_begins_and_ends_where_it_should(self):
        for month, first, last, rows in [
                ("2004/02", [str(day) for day in range(25, 32)], ["1", "2", "3", "4", "5", "6"], 6),    # Sunday
                ("2004/03", ["29"], ["1", "2", "3"], 5),                                                # Monday
                ("2004/05", ["25", "26", "27", "28", "29", "30"], ["1", "2", "3", "4", "5"], 6),        # Saturday
                ("2004/07", ["27", "28", "29", "30"], [], 5)]:                                          # to Saturday
            table = self.rows(month)
            grey = [text for row in table for text, is_grey in row if is_grey]
            self.assertEqual(grey, first + last, month)
            self.assertEqual([len(row) for row in table], [7] * rows, month)
            days = [text for row in table for text, is_grey in row if not is_grey]
            self.assertEqual(days, [str(day + 1) for day in range(len(days))], month)

    def test_names_of_the_days(self):
        self.customize("Calender", Type=2)
        page = self.save()
        heads = re.findall(r"<td>(?:<font[^>]*>)?(...)(?:</font>)?</td>", page)[:7]
        self.assertEqual(heads, ["Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"])

    def test_days_with_entries_are_links(self):
        page = self.save()
        self.assertIn('<td><a href=./x.htm#2004/02/01 target="_self">1</a></td>', page)
        self.divide()
        self.assertIn('<td><a href=./x_01.htm#2004/02/01 target="_self">1</a></td>', self.save())
        self.divide(UseFileName2Day=1)
        self.assertIn('<td><a href=./2004_02_01.htm target="_self">1</a></td>', self.save())

    def test_links_follow_the_ending_of_the_month_file(self):
        self.use_site("index.html")
        page = self.save("index.html")
        self.assertIn("href=./index.html#2004/02/01 ", page)
        self.assertNotIn("index.htm#", page)

    def test_before_2000_there_is_no_calendar(self):
        self.save()
        before = snapshot(self.root)
        result = self.run_cli("--events", "site", "save", now="1999/12/31 12:00:00")
        self.assertEqual((result.code, len(result.events_of("failure"))), (1, 1))
        self.assertIn("1999年12月", result.error_lines[-1])
        self.assertEqual(snapshot(self.root), before)
        self.customize("Calender", Use=0)
        self.assertIn("1999年12月分", self.save(now="1999/12/31 12:00:00"))


class Frames(SiteTest):
    def setUp(self):
        super().setUp()
        self.frame("Frame", FrameOn=1, CalenderFrameSize="20%", Border=0)

    def test_there_are_three_files(self):
        frameset = self.save()
        diary, column = self.page(self.site + "x_D.htm"), self.page(self.site + "x_C.htm")
        self.assertTrue(frameset.endswith("</HEAD></HTML>\r\n"))
        self.assertNotIn("</FRAMESET>", frameset)
        self.assertIn('<FRAMESET COLS=20%,* FRAMEBORDER="NO">', frameset)
        self.assertIn('<FRAME SRC="./x_C.htm" Name="CALENDER" Scrolling="NO" NORESIZE>', frameset)
        self.assertIn('<a href=./x_D.htm#2004/02/01 target="DIARY">1</a>', column)
        self.assertTrue(column.endswith("</BODY>\r\n</HTML>\r\n"))
        self.assertIn('<A NAME="2004/02/29_1">', diary)
        self.assertEqual(self.listed_files(), ["x.htm", "x_D.htm", "x_C.htm"])

    def test_divided_pages_hang_on_the_diary_file(self):
        self.divide()
        self.save()
        self.assertEqual(self.listed_files(), ["x.htm", "x_D.htm", "x_C.htm", "x_D_01.htm"])
        self.assertTrue(os.path.exists(self.site + "x_D_01.htm"))

    def test_the_feed_links_stand_behind_the_frames(self):
        self.set_key("RSS.ini", "GENERAL", "RSSOn", 1)
        self.set_key("RSS.ini", "Setting", "DiaryURL", "http://example.com/x.htm")
        page = self.save()
        self.assertGreater(page.index("_RSS091.xml"), page.rindex("<FRAME SRC"))
        self.assertEqual(page.count("<link"), 4, page)

    def test_logs_are_in_the_left_frame_and_never_framed(self):
        self.must("site", "log", "2004", "1")
        self.save()
        self.assertIn('<A HREF="./DiaryLog/200401.htm" target="DIARY">', self.page(self.site + "x_C.htm"))
        self.assertNotIn("FRAMESET", self.page(self.site + "DiaryLog/200401.htm"))

    def test_the_select_box_of_logs(self):
        self.must("site", "log", "2004", "1")
        self.customize("General", LogType="JavaScript")
        self.save()
        column = self.page(self.site + "x_C.htm")
        for part in ("過去ログ　", "ＯＫ", "200401.htm", "parent.DIARY.location.href="):
            self.assertIn(part, column)


class Logs(SiteTest):
    def setUp(self):
        super().setUp()
        self.put(entry("2004/01/10", "january"), entry("2004/01/11", "秘", Private=True))

    def log_rows(self):
        return self.sql("SELECT LogMonth, LogFileName FROM LogDB")

    def test_a_month_becomes_a_log_in_both_folders(self):
        result = self.must("--events", "site", "log", "2004", "1")
        page = read(self.data + "DiaryLog/200401.htm")
        self.assertEqual(read(self.site + "DiaryLog/200401.htm"), page)
        self.assertIn("january", page.decode("cp932"))
        self.assertNotIn("秘", page.decode("cp932"))
        self.assertEqual(self.log_rows(), [("2004/01", "200401.htm")])
        self.assertEqual(read(self.data + "uploadlog.tmp").decode(), f"{self.data}DiaryLog,200401.htm\r\n")
        self.assertIn("2004/01の日記をLog化しました。", result.statuses)
        self.assertEqual(result.boxes, ["information: Logファイル化しました。"])
        self.assertEqual(result.statuses[-1], "Webページ表示中...")
        self.assertEqual(result.events_of("navigate")[0]["url"], self.data + "tmp.htm#2004/02/29")
        self.assertIn("200401.htm", self.page(self.data + "tmp.htm"))

    def test_twice_the_list_grows_and_the_register_does_not(self):
        for _ in range(2):
            self.must("site", "log", "2004", "01")
        self.assertEqual(len(read(self.data + "uploadlog.tmp").splitlines()), 2)
        self.assertEqual(len(read(self.data + "uplogtmp.tmp").splitlines()), 1)
        self.assertEqual(len(self.log_rows()), 1)

    def test_a_missing_picture_has_its_box_and_stays_unlogged(self):
        self.sql("INSERT INTO FileDB (FileName, Day, Number, Uploaded) VALUES ('gone.gif', '2004/01/10', 1, 1), "
                 "('here.gif', '2004/01/10', 1, 1)")
        write(self.data + "DiaryParts/here.gif", "picture")
        result = self.must("--events", "site", "log", "2004", "1")
        self.assertEqual(result.boxes[0], "critical: 01月分として登録されたファイル[gone.gif]が見つかりません。\r\n"
                                          "[UserData\\DiaryParts]フォルダに該当ファイルをコピーして、再度ログ化して下さい。")
        self.assertEqual(self.sql("SELECT FileName, Logged, Uploaded FROM FileDB WHERE Day <> 'ALL' ORDER BY 1"),
                         [("gone.gif", 0, 1), ("here.gif", 1, 0)])
        for folder in (self.data, self.site):
            self.assertEqual(read(folder + "DiaryLog/DiaryParts/here.gif"), b"picture")
        self.assertTrue(os.path.exists(self.data + "DiaryParts/here.gif"))

    def test_files_of_all_months_reach_the_logs_and_their_server(self):
        self.must("site", "save")
        for _ in range(2):
            self.must("site", "log", "2004", "1")
        for folder in (self.data, self.site):
            self.assertEqual(sorted(os.listdir(folder + "DiaryLog/DiaryParts")), sorted(WEATHER))
        self.assertEqual(self.sql("SELECT FileName, Logged, Uploaded FROM FileDB ORDER BY FileName, Logged"),
                         [(name, logged, 0) for name in sorted(WEATHER) for logged in (0, 1)])

    def test_a_site_in_the_data_folder_keeps_its_log_page(self):
        self.set_key("diary.ini", "ALL", "SaveFilePath", self.data)
        self.must("site", "log", "2004", "1")
        self.assertIn("january", self.page(self.data + "DiaryLog/200401.htm"))

    def test_without_a_site_folder_the_log_stays_in_the_data_folder(self):
        self.set_key("diary.ini", "ALL", "SaveFilePath", "")
        work = os.path.join(self.root, "work")
        os.makedirs(work)
        result = self.must("--events", "site", "log", "2004", "1", options={"cwd": work})
        self.assertTrue(os.path.exists(self.data + "DiaryLog/200401.htm"))
        self.assertEqual(os.listdir(work), [])
        self.assertTrue(any("データフォルダにだけ" in text for text in result.statuses))

    def test_an_empty_month_and_the_present_one_can_be_logged(self):
        self.must("site", "log", "2003", "7")
        self.assertIn(NO_ENTRY, self.page(self.site + "DiaryLog/200307.htm"))
        self.must("site", "log", "2004", "2")
        self.assertEqual(self.log_rows(), [("2003/07", "200307.htm"), ("2004/02", "200402.htm")])

    def test_a_month_that_is_none_fails_behind_its_page(self):
        for month in ("13", "ab"):
            result = self.run_cli("site", "log", "2004", month)
            self.assert_refusal(result, 1)
            self.assertTrue(os.path.exists(f"{self.site}DiaryLog/2004{month}.htm"))
        self.assertEqual(self.log_rows(), [])

    def test_a_log_is_divided_only_on_request(self):
        self.put(entry("2004/01/09", "ninth"))
        self.divide()
        self.must("site", "log", "2004", "1")
        self.assertFalse(os.path.exists(self.site + "DiaryLog/200401_01.htm"))
        self.frame("Divide", LogDivide=1)
        self.must("site", "log", "2004", "1")
        self.assertTrue(os.path.exists(self.site + "DiaryLog/200401_01.htm"))


class Rebuild(SiteTest):
    def setUp(self):
        super().setUp()
        self.put(entry("2003/11/05"), entry("2004/01/10"), entry("2004/03/01", "future"))

    def test_past_months_become_logs_oldest_first_and_then_the_present_one_is_saved(self):
        result = self.must("--events", "--json", "site", "rebuild")
        self.assertEqual(result.json, {"logs": 2, "failures": 0})
        self.assertEqual(self.sql("SELECT LogMonth FROM LogDB ORDER BY rowid"), [("2003/11",), ("2004/01",)])
        self.assertEqual(len(result.events_of("navigate")), 1)
        self.assertIn("200311.htm", self.page(self.site + "x.htm"))
        self.assertNotIn("future", self.page(self.site + "x.htm"))
        self.assertEqual(self.listed_files(), ["x.htm"])

    def test_the_present_month_is_saved_without_entries(self):
        self.must("site", "rebuild", now="2004/07/01 00:00:00")
        self.assertIn(NO_ENTRY, self.page(self.site + "x.htm"))
        self.assertEqual(len(self.sql("SELECT * FROM LogDB")), 4)

    def test_it_is_narrowed_by_months(self):
        self.assertEqual(self.must("--json", "site", "rebuild", "--to", "2003/12").json["logs"], 1)
        self.assertEqual(self.must("--json", "site", "rebuild", "--from", "2003/12").json["logs"], 1)
        self.assertEqual(self.must("--json", "site", "rebuild", "--from", "2004/02").json["logs"], 0)

    def test_a_month_that_fails_is_reported_and_the_rest_goes_on(self):
        self.put(entry("1999/05/01"), entry("1998/05/01"))
        result = self.run_cli("--events", "--json", "site", "rebuild")
        self.assertEqual((result.code, result.json), (1, {"logs": 2, "failures": 2}))
        self.assertEqual(len(result.events_of("failure")), 2)
        self.assertTrue(os.path.exists(self.site + "x.htm"))
        plain = self.run_cli("site", "rebuild")
        self.assertEqual(len(plain.error_lines), 3)
        for line, named in zip(plain.error_lines, ("1998/05", "1999/05", "2")):
            self.assertIn(named, line)

    def test_two_runs_give_the_same_site(self):
        self.must("site", "rebuild")
        before = snapshot(self.site)
        self.must("site", "rebuild")
        self.assertEqual(snapshot(self.site), before)


class AtTheSameTime(SiteTest):
    """Commands that run side by side in one home."""

    ROUNDS = 10

    def setUp(self):
        super().setUp()
        self.months = ["2003/10", "2003/11", "2003/12", "2004/01"]
        self.put(*[entry(f"{month}/{day:02}", Contents="text " * 500) for month in self.months for day in range(1, 20)])

    def run_together(self, *commands):
        programs = [subprocess.Popen(self.command(*words), env=self.environment(), stdin=subprocess.DEVNULL,
                                     stdout=subprocess.DEVNULL, stderr=subprocess.PIPE) for words in commands]
        for words, program in zip(commands, programs):
            error = program.communicate()[1]
            self.assertEqual(program.returncode, 0, (words, error))

    def assert_logged(self):
        names = [month.replace("/", "") + ".htm" for month in self.months]
        rows = sorted(set(read(self.data + "uploadlog.tmp").decode().splitlines()))
        self.assertEqual(rows, [f"{self.data}DiaryLog,{name}" for name in names])
        self.assertEqual(sorted(self.sql("SELECT LogMonth FROM LogDB")), [(month,) for month in self.months])
        for name in names:
            self.assertEqual(read(self.site + "DiaryLog/" + name), read(self.data + "DiaryLog/" + name))
        self.assertEqual(len(self.sql("SELECT * FROM FileDB")), 2 * len(WEATHER))
        self.assertEqual([name for name in os.listdir(self.data) if name.startswith(".vell")], [])

    def test_logs_lose_no_page(self):
        commands = [("site", "log", *month.split("/")) for month in self.months]
        for _ in range(self.ROUNDS):
            for folder in (self.data + "DiaryLog", self.site + "DiaryLog", self.site + "DiaryParts"):
                shutil.rmtree(folder, ignore_errors=True)
            self.sql("DELETE FROM LogDB")
            self.sql("DELETE FROM FileDB")
            if os.path.exists(self.data + "uploadlog.tmp"):
                os.remove(self.data + "uploadlog.tmp")
            self.run_together(*commands)
            self.assert_logged()
            self.assertEqual(len(read(self.data + "uploadlog.tmp").splitlines()), len(self.months))

    def test_logs_beside_a_rebuild_and_a_save(self):
        self.must("start")
        for _ in range(self.ROUNDS // 3):
            self.run_together(("site", "rebuild"), ("site", "log", "2003", "10"), ("site", "save"),
                              ("site", "log", "2003", "10"))
            self.assert_logged()


class SameDay(CliTest):
    def page_of(self, day):
        result = self.must("--events", "site", "sameday", day)
        self.assertEqual(result.events_of("navigate"), [{"event": "navigate", "url": self.data + "oldtmp.htm"}])
        return self.page(self.data + "oldtmp.htm")

    def test_other_years_stand_newest_first_and_within_a_day_lowest_number_first(self):
        self.put(entry("2003/02/01", "B"), entry("2003/02/01", "C", Private=True), entry("2002/02/01", "D"),
                 entry("2004/02/01", "A"), entry("2003/01/02", "E"))
        page = self.page_of("2004/02/01")
        self.assertIn("02/01の日記", page)
        self.assertTrue(page.index(">B<") < page.index(">C<") < page.index(">D<"))
        self.assertNotIn(">A<", page)
        self.assertNotIn(">E<", page)

    def test_a_leap_day_meets_leap_days_alone(self):
        self.put(entry("2003/02/28", "B"), entry("2004/02/29", "A"), entry("2003/03/01", "C"))
        self.assertIn("以前の同じ日の日記はありません。", self.page_of("2004/02/29"))
        self.put(entry("2000/02/29", "D"))
        self.assertIn(">D<", self.page_of("2004/02/29"))


if __name__ == "__main__":
    unittest.main()
