"""Uploads by hand, against the second upload: each way in which one can end, and what makes it end badly.

The variable VELLORIA_PROGRAM names the program folder under test.
"""

import os
import queue
import resource
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import types
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))

from compare_uploads import Trial, put_file
from peer_text import encode_page
from ping_server import PingServer
from random_upload import PlainUpload
from upload_server import address_of, can_serve

PROGRAM = os.path.abspath(os.environ["VELLORIA_PROGRAM"])
OPTIONS = types.SimpleNamespace(cli=os.path.join(PROGRAM, "velloria-cli"), factory=PROGRAM)
UNKNOWN = "不明なエラーで終了しました。"
BUSY = "サーバーが混んでいる可能性もありますので、時間帯を変更してお試し下さい。"
DENIED = {"do": "refuse", "code": 550, "words": "拒否"}


def refused(verb, name=None, code=550, **more):
    return {"verb": verb} | ({"name": name} if name is not None else {}) | DENIED | {"code": code} | more


class UploadTest(unittest.TestCase):
    """Fixture: a home and a server of its own, both still to be filled."""

    next_number = 0

    def setUp(self):
        if not can_serve():
            self.skipTest("only the superuser may serve on port 21")
        self.upload = PlainUpload()
        root = os.path.realpath(self.enterContext(tempfile.TemporaryDirectory(prefix="velloria-upload-")))
        UploadTest.next_number += 1
        self.trial = Trial(OPTIONS, self.upload, root, address_of(UploadTest.next_number))
        self.data = self.trial.data

    def filled(self, **changed):
        for name, value in changed.items():
            assert hasattr(self.upload, name), name
            setattr(self.upload, name, value)
        self.trial.fill()
        return self.trial

    def ends(self, title, *lines, code=1, **changed):
        """The run is as it must be, and the window's last words are these."""
        self.filled(**changed).compare()
        self.assert_end(title, *lines, code=code)

    def assert_end(self, title, *lines, code=1):
        last = [event[1] for event in self.trial.events if event[0] == "progress"][-1]
        self.assertEqual((last["title"], last["text"].split("\n")), (title, list(lines)))
        self.assertEqual(self.trial.result.returncode, code)

    def runs_badly(self, **options):
        """An end that the second upload does not know: the failure exit, the lists kept, nobody waits."""
        self.trial.run_upload(**options)
        self.assertEqual(self.trial.result.returncode, 1, self.trial.result)
        last = [event[1] for event in self.trial.events if event[0] == "progress"][-1]
        self.assertTrue(last["text"].endswith(UNKNOWN) and last["ok"], last)
        self.assertEqual([event for event in self.trial.events if event[0] == "pointer"][-1][1], "default")
        self.assertEqual([event for event in self.trial.events if event[0] == "sound"], [])

    def sql(self, statement, *values):
        base = sqlite3.connect(self.data + "diary.mdb")
        with base:
            rows = base.execute(statement, values).fetchall()
        base.close()
        return rows

    @property
    def texts(self):
        shown = [event[1]["text"] for event in self.trial.events if event[0] == "progress"]
        return [text for at, text in enumerate(shown) if at == 0 or shown[at - 1] != text]

    @property
    def sent(self):
        return [name for verb, name in self.trial.server.commands if verb == "STOR"]

    def stored(self, path):
        return self.trial.server.tree.get(path.encode("cp932"))


class GoodRuns(UploadTest):
    def test_a_whole_run_in_its_words(self):
        self.filled(old=[(0, "x.htm")], tree={"/": None, "/pub": None, "/pub/x.htm": b"old"}).compare()
        self.assertEqual(self.texts, [
            "", "インターネットへの接続成功。", "FTP接続成功。", "pubへ移動中", "pubへ移動完了",
            "ファイル「x.htm」を削除しました。", "ファイル「x.htm」をアップロード中。(0/1)",
            "ファイル「x.htm」のアップロードに成功しました。(1/1)", "pub\\DiaryPartsへ移動中", "pub\\DiaryPartsへ移動完了",
            "ファイル「a.gif」をアップロードします。(0/1)", "ファイル「a.gif」のアップロードに成功しました。(0/1)",
            "pubへ移動中", "pubへ移動完了", "pub\\DiaryLogへ移動中", "pub\\DiaryLogへ移動完了",
            "ファイル「200401.htm」をアップロードします。", "ファイル「200401.htm」のアップロードに成功しました。(1/1)",
            "pub\\DiaryLog\\DiaryPartsへ移動中", "pub\\DiaryLog\\DiaryPartsへ移動完了", "pub\\DiaryLogへ移動中",
            "ファイル「b.gif」のアップロードに成功しました。(2/1)", "日記のアップロードに成功しました。"])
        self.assertEqual(self.stored("/pub/x.htm"), b"<P>\r\n\r\ntext\r\n")
        self.assertEqual(self.stored("/pub/DiaryParts/a.gif"), self.upload.picture_bytes["a.gif"])
        self.assertEqual(self.trial.server.logins, 1)

    def test_active_mode(self):
        self.filled(passive=False).compare()
        self.assertIn("PORT", [verb for verb, _ in self.trial.server.commands])

    def test_a_second_run_sends_the_same_again(self):
        self.filled().compare()
        self.upload.tree = {path.decode("cp932"): content for path, content in self.trial.server.tree.items()}
        self.upload.logs, self.upload.registered = None, [(name, True, side) for name, _, side in self.upload.registered]
        self.trial.compare()
        self.assertIn("ファイル「x.htm」を削除しました。", self.texts)
        self.assertEqual(self.sent, [b"x.htm"])

    def test_logs_are_counted_against_the_pages(self):
        pages = [(0, f"{number}.htm") for number in range(40)]
        logs = [(1, f"20040{number}.htm") for number in range(1, 4)]
        self.filled(pages=pages, logs=logs, files=dict.fromkeys(pages + logs, b"x\r\n"), registered=[]).compare()
        self.assertIn("ファイル「200403.htm」のアップロードに成功しました。(3/40)", self.texts)

    def test_without_a_list_of_logs_their_files_wait(self):
        self.filled(logs=None).compare()
        self.assertEqual(self.sent, [b"x.htm", b"a.gif"])

    def test_pages_alone(self):
        self.filled(html_only=True, logs=None).compare()
        self.assertEqual(self.sent, [b"x.htm"])
        self.assertFalse([event for event in self.trial.events if "HTMLファイル以外" in str(event)])

    def test_start_folders(self):
        for folder in ["", "/", "..", ".", "a/b/c", "two words", "表", "/pub/", "日記/表", "-l", "*"]:
            with self.subTest(folder=folder):
                self.setUp()
                self.filled(start=folder, tree={"/": None, "/a": None, "/a/b": None, "/日記": None}).compare()

    def test_names_of_all_kinds(self):
        names = ["表示.htm", "a[1].htm", "-x.htm", "ソ.htm", "%2e%2e.htm", "x;type=i", "&#65;.htm", "#.htm", "~.htm"]
        for features in ({"PWD"}, {"PWD", "SIZE"}, {"PWD", "SIZE", "FEAT", "MLST"}):
            with self.subTest(features=features):
                self.setUp()
                pages = [(0, name) for name in names]
                tree = {"/": None, "/pub": None} | {"/pub/" + name: b"old" for name in names}
                self.filled(pages=pages, old=pages, files=dict.fromkeys(pages, b"new\r\n"), logs=None, tree=tree,
                            features=features).compare()

    def test_a_folder_that_the_code_page_lacks(self):
        self.filled(folders=["é−〜/", "site/DiaryLog/"], files={(0, "x.htm"): b"", (1, "200401.htm"): b""})
        row = f"{self.trial.root}/é−〜,x.htm\r\n".replace("−", "&#8722;").replace("〜", "&#12316;")
        put_file(self.data + "upload.tmp", encode_page(row))
        self.trial.run_upload()
        self.assertEqual(self.trial.result.returncode, 0, self.trial.result)
        self.assertEqual(self.stored("/pub/x.htm"), b"")

    def test_files_that_only_the_data_folder_has(self):
        self.filled(pictures_in={"a.gif": "data", "b.gif": "data"}).compare()
        self.assertEqual(self.sent, [b"x.htm", b"a.gif", b"200401.htm", b"b.gif"])

    def test_the_ping_runs_behind_a_closed_window(self):
        stub = os.environ.get("VELLORIA_PLUGIN_STUB")
        if not stub:
            self.skipTest("no stub of a plug-in")
        self.filled(ping=True)
        shutil.copy(stub, os.path.join(self.trial.home, "Chimer.dll"))
        self.trial.has_ping = True
        log = os.path.join(self.trial.root, "calls")
        self.trial.compare(env=os.environ | {"VELLORIA_PLUGIN_LOG": log})
        with open(log, encoding="utf-8") as file:
            calls = file.read().split("\n")
        self.assertEqual([call.split(" ")[0] for call in calls[:5]],
                         ["set_pop_up", "set_ping_list_file", "set_blog_url", "set_blog_name", "pings_execute"])
        self.assertEqual(calls[:2], ["set_pop_up 0", f"set_ping_list_file {self.data}PINGList.csv"])

    def test_the_plugin_that_comes_along_tells_the_servers(self):
        self.filled(ping=True)
        shutil.copy(os.path.join(PROGRAM, "Chimer.dll"), self.trial.home)
        with PingServer() as server:
            put_file(self.data + "PINGList.csv", f"{server.url}ok,甲\r\n{server.url}flerror\r\n".encode("cp932"))
            self.trial.run_upload()
        self.assertEqual(self.trial.result.returncode, 0, self.trial.result)
        self.assertEqual(sorted(path for path, _, _ in server.calls), ["/flerror", "/ok"])
        self.assertEqual([event[1] for event in self.trial.events if event[0] == "status"][-1],
                         "PING: 2件中1件に送信しました。理由はping.logにあります。")
        with open(self.data + "ping.log", encoding="utf-8") as log:
            self.assertIn(f"\t{server.url}ok\t甲\t完了\t", log.read())

    def test_a_list_that_is_missing_is_a_failure_behind_a_good_upload(self):
        self.filled(ping=True)
        shutil.copy(os.path.join(PROGRAM, "Chimer.dll"), self.trial.home)
        self.trial.run_upload()
        self.assertEqual(self.trial.result.returncode, 1)
        self.assertIn("PINGList.csv", self.trial.result.stderr.decode())
        self.assertIsNotNone(self.stored("/pub/x.htm"))

    def test_a_missing_plugin_is_a_failure_behind_a_good_upload(self):
        self.filled(ping=True).compare()
        self.assertEqual(self.trial.result.returncode, 1)


class Failures(UploadTest):
    def test_f1_nothing_set(self):
        for missing in ("has_host", "has_user"):
            with self.subTest(missing=missing):
                self.setUp()
                self.ends("エラー", "FTPのIDもしくはURLが設定されていません。", "(FTP_ID or FTP_URL is not invalid.)",
                          **{missing: False})
                self.assertEqual([event for event in self.trial.events if event[0] == "pointer"], [])

    def test_f2_no_list(self):
        self.ends("エラー", "アップロードするファイルのリストが存在しません。", "(Upload.tmp is not exist.)", pages=None)

    def test_f3_a_page_is_missing(self):
        self.ends("エラー", "アップロードするファイルが存在しません。", "(y.htm is not exist.)",
                  pages=[(0, "x.htm"), (0, "y.htm"), (0, "z.htm")])
        self.assertEqual(self.trial.server.commands, [])

    def test_f3_a_folder_with_a_comma(self):
        self.upload.folders[0] = "a,b/"
        self.ends("エラー", "アップロードするファイルが存在しません。", "(b/ is not exist.)")

    def test_f4_a_log_is_missing(self):
        self.ends("エラー", "アップロードするログファイルが存在しません。", "(y.htm is not exist.)",
                  logs=[(1, "200401.htm"), (1, "y.htm")])

    def test_f6_no_login(self):
        for fault in (refused("PASS", code=530), refused("USER", code=421), {"verb": "PASS", "do": "cut"}):
            with self.subTest(fault=fault):
                self.setUp()
                self.ends("エラー", "FTPサーバーへの接続失敗。", "(FTP Connect Error.)", UNKNOWN, faults=[fault])

    def test_f6_a_host_is_used_as_it_stands(self):
        address = self.trial.address
        for host in ("ftp://" + address, address + "/", address + ":21", "u@" + address, address + " x", "127.7.254.254",
                     "x" * 64 + ".invalid", "a..b", "表", "x" * 250, "[::1]", "%31"):
            with self.subTest(host=host):
                self.setUp()
                self.filled()
                self.trial.set_value("URL", host)
                self.runs_badly()
                self.assert_end("エラー", "FTPサーバーへの接続失敗。", "(FTP Connect Error.)", UNKNOWN)
                self.assertEqual(self.trial.server.commands, [])
                self.assertIn(("status", "Can't connect to " + host), self.trial.events)

    def test_f7_a_deletion_is_refused(self):
        self.ends("エラー", "ファイルの削除に失敗。", "(x.htm delete is missed.)", UNKNOWN, old=[(0, "x.htm")],
                  tree={"/": None, "/pub": None, "/pub/x.htm": b"old"}, faults=[refused("DELE")])
        self.assertIn(("status", "550 拒否"), self.trial.events)

    def test_f8_a_search_fails(self):
        self.ends("エラー", "その他のエラー(FileDelete)。", "(421 拒否)", UNKNOWN, old=[(0, "x.htm")],
                  faults=[refused("SIZE", code=421)])

    def test_f9_a_page_is_refused(self):
        self.ends("HTMLアップロードエラー", "その他のエラー(FileUpload)。", "(552 拒否)", UNKNOWN,
                  faults=[refused("STOR", "x.htm", 552)])

    def test_f10_a_file_is_refused(self):
        self.ends("ファイルアップロードエラー", "その他のエラー(OtherFileUpload)。", "(a.gif:550 拒否)", UNKNOWN,
                  faults=[refused("STOR", "a.gif")])
        self.assertEqual(self.sent, [b"x.htm", b"a.gif"])

    def test_f10_rows_that_went_up_stay_sent(self):
        self.ends("ファイルアップロードエラー", "その他のエラー(OtherFileUpload)。", "(表.gif:550 拒否)", UNKNOWN,
                  registered=[(name, False, False) for name in ("1.gif", "2.gif", "表.gif", "4.gif")],
                  pictures_in=dict.fromkeys(("1.gif", "2.gif", "表.gif", "4.gif"), "site"),
                  picture_bytes=dict.fromkeys(("1.gif", "2.gif", "表.gif", "4.gif"), b"x"),
                  faults=[refused("STOR", "表.gif")])
        self.assertEqual(self.sql("SELECT Uploaded <> 0 FROM FileDB ORDER BY FileID"), [(1,), (1,), (0,), (0,)])

    def test_f10_a_file_that_is_nowhere(self):
        self.ends("ファイルアップロードエラー", "その他のエラー(OtherFileUpload)。", "(a.gif:その他のエラー(&H2))", UNKNOWN,
                  pictures_in={"a.gif": "none", "b.gif": "none"})

    def test_f11_a_file_of_the_logs_is_refused(self):
        self.ends("エラー", "ファイル「b.gif」のアップロードに失敗。", "(200401.htm delete is missed.)", BUSY, UNKNOWN,
                  faults=[refused("STOR", "b.gif")])

    def test_a_log_is_refused(self):
        self.ends("ログ：ファイルのアップロード", "ファイル「200401.htm」をアップロードします。", UNKNOWN,
                  faults=[refused("STOR", "200401.htm")])
        self.assertTrue(os.path.exists(self.data + "uploadlog.tmp"))

    def test_pages_alone_with_logs(self):
        self.ends("ログ：ファイルのアップロード", "ファイル「200401.htm」のアップロードに成功しました。(1/1)", UNKNOWN,
                  html_only=True)

    def test_folders(self):
        for name, shown, title in (("pub", "pub", "ディレクトリの移動"),
                                   ("DiaryParts", "pub\\DiaryParts", "ディレクトリの移動"),
                                   ("DiaryLog", "pub\\DiaryLog", "ログ：DiaryLogディレクトリへの移動")):
            for faults, answers in (([], ["no"] * 3), ([refused("MKD", name)], ["yes"] * 3),
                                    ([refused("CWD", name)], ["yes"] * 3), ([refused("MLST", name, 530)], ["yes"] * 3)):
                with self.subTest(name=name, faults=faults):
                    self.setUp()
                    made = {"pub": [], "DiaryParts": ["pub"], "DiaryLog": ["pub", "pub/DiaryParts"]}[name]
                    tree = {"/": None} | {"/" + folder: None for folder in made}
                    self.ends(title, shown + "へ移動失敗", UNKNOWN, faults=faults, answers=answers, tree=tree)

    def test_the_way_back_is_refused(self):
        self.ends("元のディレクトリへの移動", "pubへ移動失敗", UNKNOWN, faults=[refused("CWD", "..")])

    def test_an_answer_at_the_bound(self):
        for length, shown in ((254, "550 " + "x" * 250), (255, " " * 255)):
            with self.subTest(length=length):
                self.setUp()
                self.ends("HTMLアップロードエラー", "その他のエラー(FileUpload)。", f"({shown})", UNKNOWN,
                          faults=[refused("STOR", "x.htm", words="x" * (length - 4))])

    def test_encryption_that_is_required_and_not_offered(self):
        self.filled()
        with open(self.data + "diary.ini", "rb") as file:
            text = file.read().replace(b"[FTP2]", b"[FTP2]\r\nTLS=2", 1)
        put_file(self.data + "diary.ini", text)
        self.runs_badly()
        self.assert_end("エラー", "FTPサーバーへの接続失敗。", "(FTP Connect Error.)", UNKNOWN)
        self.assertFalse({"USER", "PASS"} & {verb for verb, _ in self.trial.server.commands})


    def test_a_word_for_a_number_never_sends_the_password_in_clear(self):
        for value in ("yes", "on", "２", "true", "0 yes"):
            with self.subTest(value=value):
                self.setUp()
                self.filled()
                with open(self.data + "diary.ini", "rb") as file:
                    text = file.read().replace(b"[FTP2]", b"[FTP2]\r\nTLS=" + value.encode("cp932"), 1)
                put_file(self.data + "diary.ini", text)
                self.runs_badly()
                self.assertFalse({"USER", "PASS"} & {verb for verb, _ in self.trial.server.commands})

    def test_every_failure_has_its_reason_on_standard_error(self):
        for faults, tree in (([refused("DELE")], {"/": None, "/pub": None, "/pub/x.htm": b"old"}),
                             ([refused("STOR", "b.gif")], None), ([refused("MKD", "pub")], {"/": None}),
                             ([refused("CWD", "pub")], None), ([refused("STOR", "200401.htm")], None),
                             ([refused("PASS", code=530)], None), ([refused("STOR", "x.htm", words="拒否" * 200)], None)):
            with self.subTest(faults=faults):
                self.setUp()
                self.filled(old=[(0, "x.htm")], faults=faults, tree=tree or self.upload.tree)
                self.trial.start_server()
                result = self.trial.run_cli("--yes", "upload")
                self.trial.server.stop()
                self.assertEqual((result.returncode, result.stdout), (1, b""))
                self.assertIn("拒否", result.stderr.decode().splitlines()[-1])

    def test_the_log_has_no_password(self):
        for words in ("拒否", "user u with secret word"):
            self.setUp()
            self.filled(faults=[refused("PASS", code=530, words=words)])
            self.runs_badly()
            log = self.trial.file_of("upload.log").decode()
            self.assertIn("> USER u\n", log)
            self.assertIn("> PASS ****\n", log)
            self.assertIn("< 530 " + words.replace("secret word", "****"), log)
            for text in (log, self.trial.result.stderr.decode()):
                self.assertNotIn("secret word", text)


class TwoAtOnce(UploadTest):
    def test_the_second_ends_before_the_network(self):
        self.filled()
        seconds = []

        def run_second(_):
            if self.sent and not seconds:
                seconds.append(None)
                seconds[0] = self.trial.run_cli("upload")

        self.trial.on_command = run_second
        self.trial.compare()
        self.assertEqual(seconds[0].returncode, 1)
        self.assertIn("ほかのVelloriaがアップロードしています。", seconds[0].stderr.decode())
        self.assertEqual(self.trial.server.logins, 1)
        self.assertNotIn("upload.lock", os.listdir(self.data))


class BadInput(UploadTest):
    def test_lists_that_are_none(self):
        page = encode_page(f"{self.trial.root}/site,x.htm\r\n")
        for content in (b"\x7fELF" + bytes(range(256)) * 8, page + page[:-9], page + b"\r\n", b",\r\n", b"\0" * 100):
            with self.subTest(content=content[:20]):
                self.setUp()
                page = encode_page(f"{self.trial.root}/site,x.htm\r\n")
                self.filled()
                put_file(self.data + "upload.tmp", content)
                self.trial.run_upload()
                self.assertEqual(self.trial.result.returncode, 1)
                self.assertEqual(self.trial.events[-1], ("status", "Upload File not exist!...Upload Failed."))
                self.assertEqual(self.trial.server.commands, [])

    def test_an_old_list_that_is_cut_does_not_end_every_run(self):
        self.filled()
        put_file(self.data + "uploadold.tmp", b"/site,x.htm\r\n\r\n/si")
        self.trial.run_upload()
        self.assertEqual(self.trial.result.returncode, 0, self.trial.result)

    def test_a_pipe_or_a_folder_for_a_file(self):
        for make in (os.mkfifo, os.mkdir):
            for name in ("home/UserData/upload.tmp", "site/x.htm", "site/DiaryParts/a.gif",
                         "site/DiaryLog/DiaryParts/b.gif"):
                with self.subTest(make=make.__name__, name=name):
                    self.setUp()
                    self.filled()
                    os.remove(os.path.join(self.trial.root, name))
                    make(os.path.join(self.trial.root, name))
                    self.trial.run_upload()
                    self.assertEqual(self.trial.result.returncode, 1)

    def test_a_pipe_in_the_data_folder(self):
        self.filled(pictures_in={"a.gif": "none", "b.gif": "none"})
        os.makedirs(self.data + "DiaryParts", exist_ok=True)
        os.mkfifo(self.data + "DiaryParts/a.gif")
        self.runs_badly()

    def test_a_hundred_thousand_rows(self):
        self.filled()
        put_file(self.data + "upload.tmp", encode_page(f"{self.trial.root}/site,x.htm\r\n") * 100000)
        self.runs_badly()
        self.assertEqual(self.trial.server.commands, [])

    def test_registered_names_that_are_none(self):
        secret = os.path.join(self.trial.root, "site", "secret")
        put_file(secret, b"secret")
        for name in ("../secret", "../../site/secret", secret, "..", ".", "", "..\\secret", "C:secret", "a\nb",
                     "a\r\nDELE x.htm", "a\0b"):
            with self.subTest(name=name):
                self.setUp()
                self.filled(registered=[(name, False, False)], logs=None)
                put_file(os.path.join(self.trial.root, "site", "secret"), b"secret")
                self.trial.compare()
                self.assertEqual(self.sent, [b"x.htm"])
        with self.subTest(name="é.gif"):
            self.setUp()
            self.filled(registered=[("é.gif", False, False)])
            put_file(os.path.join(self.trial.root, "site/DiaryParts/é.gif"), b"GIF")
            self.runs_badly()
            self.assertIn("URLが無効です。", self.texts[-1])
            self.assertEqual(self.sent, [b"x.htm"])

    def test_accounts_with_line_ends(self):
        self.filled()
        for key in ("ID", "StartFolder"):
            with self.subTest(key=key):
                # A reference is what a settings file may hold a line end in; it stays the text that it is.
                self.trial.set_value(key, "u&#13;&#10;DELE x.htm")
                self.runs_badly()
                self.assertNotIn("DELE", [verb for verb, _ in self.trial.server.commands])

    def test_a_full_disk(self):
        for size, rows in ((4096, 400), (8192, 1)):
            with self.subTest(size=size):
                self.setUp()
                pages = [(0, "x.htm")] * rows
                self.filled(pages=pages, pictures_in={"a.gif": "data", "b.gif": "site"},
                            picture_bytes={"a.gif": b"x" * 100000, "b.gif": b""})
                before = self.trial.file_of("upload.tmp")
                # The finished program has no disk of the tests inside it, so the system refuses.
                self.runs_badly(preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (size, -1)))
                self.assertEqual(self.trial.file_of("upload.tmp"), before)
                self.assertEqual(self.trial.file_of("uploadold.tmp"), None if rows > 1 else before)
                self.assertEqual(os.listdir(os.path.join(self.trial.root, "site", "DiaryParts")), ["b.gif"])

    def test_a_database_that_is_locked_or_lacks_its_columns(self):
        self.filled()
        holder = sqlite3.connect(self.data + "diary.mdb", isolation_level=None, check_same_thread=False)

        def lock(_):
            if self.sent and not holder.in_transaction:
                holder.execute("BEGIN EXCLUSIVE")

        self.trial.on_command = lock
        self.runs_badly()
        holder.close()
        self.trial.on_command = lambda count: None
        self.sql("ALTER TABLE FileDB DROP COLUMN Uploaded")
        self.runs_badly()
        self.assertEqual(self.sent, [b"x.htm"])

    def test_a_database_that_locks_behind_a_file(self):
        self.filled()
        holder = sqlite3.connect(self.data + "diary.mdb", isolation_level=None)
        holder.execute("BEGIN IMMEDIATE")
        self.runs_badly()
        holder.close()
        self.assertEqual(self.sent, [b"x.htm", b"a.gif"])
        self.assertEqual(self.sql("SELECT Uploaded FROM FileDB WHERE FileName = 'a.gif'"), [(0,)])


class Kills(UploadTest):
    def test_a_run_that_is_killed_at_any_command_is_completed_by_the_next(self):
        self.filled(old=[(0, "x.htm")], tree={"/": None, "/pub": None, "/pub/x.htm": b"old"}).compare()
        commands, whole = len(self.trial.server.commands), self.trial.server.tree
        self.assertGreater(commands, 20)
        for number in range(1, commands):
            with self.subTest(number=number):
                self.setUp()
                self.filled(old=[(0, "x.htm")], tree={"/": None, "/pub": None, "/pub/x.htm": b"old"})
                running = queue.SimpleQueue()    # the program may have a word with the server before it is in a variable
                self.trial.on_command = lambda count: running.get().kill() if count == number else None
                self.trial.start_server()
                line = self.trial.command("--yes", "upload")
                process = subprocess.Popen(line, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
                running.put(process)
                self.assertEqual(process.wait(600), -signal.SIGKILL)
                self.trial.server.stop()
                self.trial.on_command = lambda count: None
                self.upload.tree = {path.decode("cp932"): content for path, content in self.trial.server.tree.items()}
                self.trial.run_upload()
                self.assertEqual(self.trial.result.returncode, 0, self.trial.result)
                self.assertEqual(self.trial.server.tree, whole)
                self.assertIsNone(self.trial.file_of("uploadlog.tmp"))
                self.assertEqual(self.trial.file_of("uploadold.tmp"), self.trial.file_of("upload.tmp"))


if __name__ == "__main__":
    unittest.main()
