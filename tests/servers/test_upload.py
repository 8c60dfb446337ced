"""Uploads to real servers: what is told, what arrives, and what stays behind when something is in the way."""

import os
import unittest

from servers import ProFtpd, PureFtpd, TextVsFtpd, VsFtpd, require_servers
from upload_home import (DONE, UNKNOWN_END, UploadTest, entry, files_below, read, sending, shown, uploaded, uploading,
                         write)
from wire import Wire


def setUpModule():
    require_servers()


def parts_moves(name="a.gif"):
    return [("ファイルアップロード", uploaded("x.htm", 1, 1)),
            ("ディレクトリの移動", "pub\\DiaryPartsへ移動中"), ("ディレクトリの移動", "pub\\DiaryPartsへ移動完了"),
            ("ディレクトリの移動", sending(name, 1)), ("ディレクトリの移動", uploaded(name, 0, 1)),
            ("元のディレクトリへの移動", "pubへ移動中"), ("元のディレクトリへの移動", "pubへ移動完了")]


CONNECTED = [("接続確認中", "インターネットへの接続成功。"), ("接続確認中", "FTP接続成功。"),
             ("ディレクトリの移動", "pubへ移動中"), ("ディレクトリの移動", "pubへ移動完了")]
PAGE_SENT = [("HTMLファイルアップロード", uploading("x.htm", 0, 1)), ("HTMLファイルアップロード", uploaded("x.htm", 1, 1))]


class Uploads:
    """What holds for every server."""

    server_type = None

    def setUp(self):
        super().setUp()
        self.serve(self.server_type)

    def good_run(self, is_passive):
        self.set_mode(is_passive)
        self.save_page()
        self.without_icons()
        self.add_picture()
        self.must("site", "save")
        with Wire(self.server.address) as wire:
            result = self.must_upload("--yes")
        self.assertEqual(shown(result), CONNECTED + PAGE_SENT + parts_moves() + [("Successful", DONE)])
        self.assertEqual(result.boxes,
                         ["question: フォルダ「DiaryParts」が作成されていません。\r\n作成しますか？"])
        self.assertEqual([[line for line in session if line.startswith(b"PASS ")] for session in wire.sessions],
                         [[b"PASS " + self.server.password.encode()]])
        if hasattr(self.server, "logins"):
            self.assertEqual(self.server.logins, 1)
        data_connection = b"PASV" if is_passive else b"PORT"
        self.assertEqual(sum(line.startswith(data_connection) for line in wire.sessions[0]), 2, wire.sessions)

        page = read(self.site + "x.htm")
        self.assertGreater(page.count(b"\r\n"), 10)
        self.assertEqual(files_below(self.server.site), {
            b"x.htm": self.as_served(page), b"DiaryParts/a.gif": read(self.site + "DiaryParts/a.gif")})

    def test_a_good_run(self):
        for is_passive in (True, False):
            with self.subTest(is_passive=is_passive):
                self.doCleanups()
                self.setUp()
                self.good_run(is_passive)

    def test_what_another_client_puts_up_is_the_same(self):
        self.save_log()
        self.add_picture()
        self.add_picture("old.gif", "2004/01/15")
        self.must("site", "log", "2004", "1")
        self.save_page()
        logs = self.rows("uploadlog.tmp")
        for is_passive in (True, False):
            self.set_mode(is_passive)
            self.must_upload("--yes")
        self.assert_served(logs)
        self.assertEqual(files_below(self.server.site), self.lftp_upload(is_passive=True, logs=logs))
        self.assertEqual(files_below(self.server.site), self.lftp_upload(is_passive=False, logs=logs))
        self.assertFalse([name for name, content in files_below(self.server.site).items()
                          if name.endswith(b".htm") and b"\r\r\n" in content])

    def test_a_second_run_deletes_and_sends_the_same_again(self):
        self.save_page()
        self.without_icons()
        self.must_upload("--yes")
        write(os.path.join(self.server.site, "x.htm"), b"changed there")
        with Wire(self.server.address) as wire:
            result = self.must_upload()
        deleted = [("ファイルの削除", "pubへ移動完了"), ("ファイルの削除", "ファイル「x.htm」を削除しました。")]
        self.assertEqual(shown(result), CONNECTED + deleted + PAGE_SENT +
                         [("ファイルアップロード", uploaded("x.htm", 1, 1)), ("Successful", DONE)])
        self.assertEqual([line for line in wire.sessions[0] if line.startswith((b"DELE", b"STOR"))],
                         [b"DELE x.htm", b"STOR x.htm"])
        self.assertIn("HTMLファイル以外にアップロード対象となるファイルはありません。", result.statuses)
        self.assert_served_without_icons()

    def assert_served_without_icons(self):
        self.assertEqual(files_below(self.server.site), {b"x.htm": self.as_served(read(self.site + "x.htm"))})


class MoreUploads(Uploads):
    """What need not be tried with every way of setting a server up."""

    def test_makes_a_missing_folder_only_when_the_user_wants_it(self):
        os.rmdir(self.server.site)
        self.save_page()
        self.without_icons()
        self.assertNotEqual(self.upload(answers=["no"]).code, 0)
        self.assertFalse(os.path.exists(self.server.site))
        result = self.upload(answers=["no"])
        self.assertEqual(result.boxes, ["question: フォルダ「pub」が作成されていません。\r\n作成しますか？",
                                        "information: フォルダは作成しませんでした。\r\n"
                                        "日記保存先に「pub」フォルダをご自分で作成して下さい。"])
        self.assertEqual(shown(result)[-1], ("ディレクトリの移動", f"pubへ移動失敗\r\n{UNKNOWN_END}"))
        if self.server_type is VsFtpd:
            return  # its root is nobody's
        result = self.must_upload(answers=["yes"])
        self.assertIn("Making Folder Successful!", result.statuses)
        self.assert_served_without_icons()

    def test_does_not_ask_about_an_empty_folder(self):
        self.server.make_folder("pub/DiaryParts")
        self.save_page()
        self.assertEqual(self.must_upload(answers=[]).boxes, [])
        self.assert_served()

    def test_replaces_logs_one_by_one(self):
        self.save_log()
        self.save_page()
        self.list_pages(["x.htm", "y.htm", "z.htm"])
        logs = self.rows("uploadlog.tmp")
        kept = read(self.data + "uploadlog.tmp")
        (_, log), = logs
        self.must_upload("--yes")
        self.assertFalse(os.path.exists(self.data + "uploadlog.tmp"))
        write(self.data + "uploadlog.tmp", kept)
        result = self.must_upload("--yes")
        moves = "ログ：DiaryLogディレクトリへの移動"
        files = "ログ：ファイルのアップロード"
        self.assertEqual(shown(result)[shown(result).index((moves, "pub\\DiaryLogへ移動中")):],
                         [(moves, "pub\\DiaryLogへ移動中"), (moves, "pub\\DiaryLogへ移動完了"),
                          (files, "pub\\DiaryLogへ移動完了"), (files, f"ファイル「{log}」を削除しています。"),
                          (files, f"ファイル「{log}」を削除しました。"), (files, f"ファイル「{log}」をアップロードします。"),
                          (files, uploaded(log, 1, 3)), ("Successful", DONE)])
        self.assertFalse(os.path.exists(self.data + "uploadlog.tmp"))
        self.assert_served(logs)

    def test_a_page_that_is_gone_here_goes_from_the_server(self):
        self.set_key("Frame.ini", "Divide", "DiaryDivide", 1)
        self.put(*[entry(f"2004/02/{day:02}", f"t{day}") for day in (3, 14, 25)])
        self.must("site", "save")
        before = {name.encode() for _, name in self.rows("upload.tmp")}
        self.must_upload("--yes")
        self.assertLessEqual(before, set(files_below(self.server.site)))
        self.set_key("Frame.ini", "Divide", "DiaryDivide", 0)
        self.must("site", "save")
        after = {name.encode() for _, name in self.rows("upload.tmp")}
        self.assertGreater(len(before), len(after))
        self.must_upload()
        self.assert_served()

    picture_name = "表.gif"
    names = ["表示.htm", "a[1].htm", "-x.htm", "ソ ー.htm", "a b.htm", "*.htm"]

    def test_sends_names_as_they_stand(self):
        names = self.names
        self.list_pages(names)
        write(self.data + "uploadold.tmp", read(self.data + "upload.tmp"))
        self.without_icons()
        self.add_picture(self.picture_name)
        self.must_upload("--yes")
        for _ in range(2):
            self.assert_served()
            for name in files_below(self.server.site):
                if name.endswith(b".htm"):
                    os.remove(os.path.join(os.fsencode(self.server.site), name))
                    write(os.path.join(os.fsencode(self.server.site), name), b"old")
            os.chmod(self.server.site, 0o777)
            result = self.must_upload()
            self.assertEqual([status for status in result.statuses if status.startswith("Deleting ")],
                             [f"Deleting {name} is Completed!" for name in names])

    def test_sends_the_pictures_of_another_month_and_the_icons_on_both_sides(self):
        self.put(entry("2004/01/31", "晦日", Contents="x", Weather="晴れ"))
        self.add_picture("last.gif", "2004/01/31", now="2004/01/31 23:00:00")
        self.put(entry("2004/02/01", "朔日", Contents="x", Weather="曇り"), now="2004/02/01 09:00:00")
        self.must("site", "save", now="2004/02/01 09:00:00")
        self.assertFalse(os.path.exists(self.site + "DiaryParts/last.gif"))
        self.must_upload("--yes", now="2004/02/01 09:00:00")
        self.assert_served()
        self.assertIn(b"DiaryParts/last.gif", files_below(self.server.site))
        self.assertIn(b"DiaryParts/Shinny.gif", files_below(self.server.site))

        self.must("site", "log", "2004", "1", now="2004/02/01 10:00:00")
        logs = self.rows("uploadlog.tmp")
        self.must_upload("--yes", now="2004/02/01 10:00:00")
        served = files_below(self.server.site)
        self.assertEqual(served[b"DiaryLog/DiaryParts/Shinny.gif"], read(self.site + "DiaryParts/Shinny.gif"))
        self.assertEqual(served[b"DiaryLog/DiaryParts/last.gif"], read(self.data + "DiaryLog/DiaryParts/last.gif"))
        self.assertEqual(served[b"DiaryLog/" + logs[0][1].encode()], self.as_served(read("".join(logs[0]))))
        self.assertEqual(self.waiting(), [])

    def test_pages_alone(self):
        self.set_key("diary.ini", "FTP2", "HTMLOnlyUpload", 1)
        self.save_page()
        waiting = self.waiting()
        self.assertTrue(waiting)
        result = self.must_upload()
        self.assertEqual(shown(result), CONNECTED + PAGE_SENT + [("Successful", DONE)])
        self.assertNotIn("HTMLファイル以外にアップロード対象となるファイルはありません。", result.statuses)
        self.assert_served_without_icons()

        self.save_log()
        logs = self.rows("uploadlog.tmp")
        before = self.lists()
        result = self.upload("--yes")
        self.assertEqual(result.code, 1, result)
        self.assertEqual(shown(result)[-1][1], uploaded(logs[-1][1], len(logs), 1) + f"\r\n{UNKNOWN_END}")
        self.assertEqual((self.lists(), self.waiting()[:len(waiting)]), (before, waiting))
        self.assertIn(b"DiaryLog/" + logs[0][1].encode(), files_below(self.server.site))

    def lock(self, folder):
        """Takes the right to write from the server's user."""
        os.chown(folder, 0, 0)
        os.chmod(folder, 0o755)

    def assert_refused(self, result, title, text, command):
        """The run ended with that, and the status panel has the server's own words."""
        words = result.statuses[-1]
        self.assertRegex(words, r"^55\d .")
        self.assertEqual(shown(result)[-1], (title, text.format(words=words) + f"\r\n{UNKNOWN_END}"))
        self.assertEqual(result.code, 1)
        self.assertNotIn("sound", [event["event"] for event in result.events])
        replies = [line for line in self.replies if line == words.encode()]
        self.assertTrue(replies, f"{command}: {words} is not among {self.replies}")

    def upload_watched(self, *options):
        with Wire(self.server.address) as wire:
            result = self.upload(*options)
        self.replies = wire.bytes.replace(b"\n", b"\r\n").splitlines()
        return result

    def test_tells_a_refusal_in_the_words_of_the_server(self):
        self.save_page()
        self.without_icons()
        self.add_picture()
        self.must("site", "save")
        self.lock(self.server.site)
        before = self.lists()
        result = self.upload_watched("--yes")
        self.assert_refused(result, "HTMLアップロードエラー", "その他のエラー(FileUpload)。\r\n({words})", "STOR")
        self.assertEqual((self.lists(), self.waiting()), (before, ["a.gif"]))

        os.chown(self.server.site, self.server.owner, self.server.owner)
        self.lock(self.server.make_folder("pub/DiaryParts"))
        result = self.upload_watched("--yes")
        self.assert_refused(result, "ファイルアップロードエラー", "その他のエラー(OtherFileUpload)。\r\n(a.gif:{words})",
                            "STOR")
        self.assertEqual(self.waiting(), ["a.gif"])
        self.assertEqual(self.lists()["uploadold.tmp"], self.lists()["upload.tmp"])

        self.lock(self.server.site)
        before = self.lists()
        result = self.upload_watched("--yes")
        self.assert_refused(result, "エラー", "ファイルの削除に失敗。\r\n(x.htm delete is missed.)", "DELE")
        self.assertEqual((self.lists(), self.waiting()), (before, ["a.gif"]))
        self.assertEqual(files_below(self.server.site), {b"x.htm": self.as_served(read(self.site + "x.htm"))})

    def test_tells_a_wrong_password(self):
        self.use_server(self.server.address, "nobody", "wrong")
        self.save_page()
        result = self.upload()
        self.assertEqual(result.code, 1)
        self.assertEqual(shown(result)[-1], ("エラー", "FTPサーバーへの接続失敗。\r\n(FTP Connect Error.)"
                                                       f"\r\n{UNKNOWN_END}"))
        self.assertIn("FTPサーバーへのログオンに失敗しました。", result.error_text)


class OnVsFtpd(MoreUploads, UploadTest):
    server_type = VsFtpd


class OnTextVsFtpd(Uploads, UploadTest):
    server_type = TextVsFtpd


class OnPureFtpd(MoreUploads, UploadTest):
    server_type = PureFtpd
    # It takes no name with the byte of a backslash in it, from anybody.
    picture_name = "日.gif"
    names = ["日記.htm", "a[1].htm", "-x.htm", "ー ー.htm", "a b.htm", "*.htm"]

    def test_goes_on_as_soon_as_the_server_has_answered(self):
        self.list_pages([f"p{number:03}.htm" for number in range(150)])
        self.without_icons()
        with Wire(self.server.address) as wire:
            self.must_upload()
        pauses = wire.pauses_behind(b"227 ")
        self.assertEqual(len(pauses), 150)
        # Who waits until nothing comes any more waits each time; a busy machine is late at times.
        self.assertGreater(sum(pause < 0.03 for pause in pauses), 50, sorted(pauses))

    def test_tells_that_the_server_refuses_a_name(self):
        self.list_pages(["x.htm", "表示.htm"])
        self.without_icons()
        result = self.upload_watched()
        self.assertEqual(result.statuses[-1], "553 Prohibited file name: 表示.htm")
        self.assertEqual(shown(result)[-1], ("HTMLアップロードエラー", "その他のエラー(FileUpload)。\r\n"
                                             f"(553 Prohibited file name: 表示.htm)\r\n{UNKNOWN_END}"))
        self.assertEqual(list(files_below(self.server.site)), [b"x.htm"])


class OnProFtpd(MoreUploads, UploadTest):
    server_type = ProFtpd


if __name__ == "__main__":
    unittest.main()
