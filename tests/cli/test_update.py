"""The check for a newer program against a web server of this test, and how it ends."""

import http.server
import os
import shutil
import ssl
import subprocess
import threading
import time
import unittest

from home import CliTest, read, snapshot, write
from patience import PATIENCE_SECONDS

HOST = "127.6.5.3"
BUSY = "サーバーが混んでいる可能性もありますので、時間帯を変更してお試し下さい。"
NOTHING_NEWER = "information: 確認しましたが、新しいバージョンはありませんでした。"
OFFERED = "question: 新しいバージョンが存在します(2.2.1)。\r\nダウンロードしますか？"
COMPLETE = "information: ダウンロードが完了しました。"
LAUNCH = "question: VelloriaUpdaterを起動しますか？\r\n(Velloriaは終了します。)"
NO_CONNECTION = "critical: サーバーに接続できませんでした。\r\n" + BUSY
NO_BYTES = "critical: update.txtをダウンロードできませんでした。\r\n" + BUSY
NO_OFFERS = "critical: update.txtの取得に失敗しました。"
FAILED = "critical: ダウンロードに失敗しました。"


class Site(http.server.ThreadingHTTPServer):
    """Answers with what `pages` has: (status, bytes to send, length told), or a function that writes to the socket."""

    daemon_threads = True

    def __init__(self, context=None):
        self.pages, self.requests = {}, []
        super().__init__((HOST, 0), Answer)
        if context:
            self.socket = context.wrap_socket(self.socket, server_side=True)
        threading.Thread(target=self.serve_forever, args=(0.02,), daemon=True).start()

    def handle_error(self, request, client_address):
        pass  # a client that goes away is what some tests want

    @property
    def address(self):
        return f"http://{HOST}:{self.server_port}/"

    def put(self, name, content, length=None, status=200):
        self.pages["/" + name] = (status, content, len(content) if length is None else length)


class Answer(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        self.server.requests.append((self.path, dict(self.headers)))
        page = self.server.pages.get(self.path, (404, b"sorry", 5))
        if callable(page):
            page(self)
            return
        status, content, length = page
        self.send_response(status)
        self.send_header("Content-Length", str(length))
        self.end_headers()
        self.wfile.write(content)
        self.close_connection = True

    def log_message(self, *arguments):
        pass


def endless(length, sent=None):
    """A page of so many bytes, which nobody has to hold. `sent` gets an item for each megabyte on its way."""
    sent = [] if sent is None else sent

    def send(answer):
        answer.send_response(200)
        answer.send_header("Content-Length", str(length))
        answer.end_headers()
        block = b"x" * (1 << 20)
        for _ in range(length >> 20):
            answer.wfile.write(block)
            sent.append(len(block))
    return send


def redirect(target):
    def send(answer):
        answer.send_response(302)
        answer.send_header("Location", target)
        answer.send_header("Content-Length", "0")
        answer.end_headers()
    return send


class UpdateTest(CliTest):
    """Fixture: a started home whose maker is a server of the test's own."""

    def setUp(self):
        super().setUp()
        self.site = self.enterContext(Site())
        self.addCleanup(self.site.shutdown)
        self.must("start")
        self.endpoint("UpdateFolder", self.site.address + "up/")
        self.endpoint("Software", "http://127.0.0.1/news.htm")
        self.working = self.temporary_folder()

    def endpoint(self, key, value):
        self.must("ini", "set", os.path.join(self.home, "endpoints.ini"), "Maker", key, value)

    def offer(self, text):
        self.site.put("up/update.txt", text.replace("\n", "\r\n").encode("cp932"))

    def offer_release(self, content=b"archive", name="v.lzh", **how):
        self.offer(f"[Release]\nversion=2.2.1\nURL_Full={self.site.address}v.lzh\nFileName={name}\n")
        self.site.put("v.lzh", content, **how)

    def put_updater(self):
        self.put_file("UnLHA32.DLL", b"")
        self.put_file("VellUpdater.exe", b'#!/bin/sh\necho "$0" > "${0%/*}/mark"\n')

    def put_file(self, name, content):
        write(os.path.join(self.home, name), content)

    def file(self, name):
        return os.path.join(self.home, name)

    def check(self, *answers, options=(), aliases=None):
        return self.run_cli("--events", *options, "update", "check", answers=list(answers),
                            environment={"HOSTALIASES": aliases}, options={"cwd": self.working})

    def assert_ended(self, result, code, boxes, reason=None):
        self.assertEqual(result.code, code, result)
        self.assertEqual(result.out, b"")
        self.assertEqual(result.boxes, boxes)
        self.assertEqual(result.events_of("pointer")[-1]["shape"], "default")
        plain = [line for line in result.error_lines if not line.startswith("{")]
        self.assertEqual(plain, [f"velloria-cli: {reason}"] if reason else [])

    def wait_for(self, name):
        deadline = time.monotonic() + PATIENCE_SECONDS
        while time.monotonic() < deadline:
            if os.path.exists(self.file(name)) and read(self.file(name)):
                return read(self.file(name)).decode()
            time.sleep(0.02)
        self.fail(f"{name} does not come")


class Update(UpdateTest):
    # -- the way to the updater ---------------------------------------------------------------------------------------

    def test_fetches_the_archive_and_starts_the_updater(self):
        archive = os.urandom(3_000_000)
        self.offer_release(archive)
        self.put_updater()
        result = self.check("yes", "yes")
        self.assert_ended(result, 0, [OFFERED, COMPLETE, LAUNCH])
        offers, url, target = self.site.address + "up/update.txt", self.site.address + "v.lzh", self.file("v.lzh")
        self.assertEqual(result.statuses, [
            "Openning Internet", "Downloading update.txt", f"Connectiong to {offers}", f"Connected to {offers}",
            f"Downloading {offers}", f"Saveing {offers} to {self.file('update.txt')}",
            f"Downloading {offers} is Succeeded!", "ダウンロード実行中...", f"Connectiong to {url}",
            f"Connected to {url}", f"Downloading {url}", f"Saveing {url} to {target}",
            f"Downloading {url} is Succeeded!"])
        self.assertEqual(read(target), archive)
        self.assertEqual(self.wait_for("mark"), self.file("VellUpTmp.exe") + "\n")
        self.assertEqual(read(self.file("VellUpTmp.exe")), read(self.file("VellUpdater.exe")))
        opening = result.events.index({"event": "status", "text": "Openning Internet"})
        self.assertEqual(result.events[opening - 2:opening], [
            {"event": "navigate", "url": "http://127.0.0.1/news.htm"}, {"event": "pointer", "shape": "hourglass"}])

        shown = result.events_of("progress")
        self.assertEqual({event["title"] for event in shown[1:]}, {"ダウンロード on HTTP"})
        self.assertEqual(shown[1]["text"], f"ダウンロード中...\r\n{target}")
        self.assertRegex(shown[2]["text"], rf"^ダウンロード中\.\.\.\r\n{target}\r\n"
                                           r"\.\.\.1024 bytes received\(\d+\.\dkbps\)\.$")
        self.assertRegex(shown[-1]["text"], rf"^ダウンロード完了！\r\n{target}\r\n"
                                            r"3000000bytes received\(\d+\.\dkbps\)\.$")
        self.assertEqual([event["ok"] for event in shown], [False] * (len(shown) - 1) + [True])
        self.assertEqual(len(shown), 1 + 1 + 2930 + 2)
        self.assertEqual([path for path, _ in self.site.requests], ["/up/update.txt", "/v.lzh"])
        for _, headers in self.site.requests:
            self.assertEqual((headers["User-Agent"], headers["Pragma"]), ("Velloria", "no-cache"))

    def test_writes_its_own_version_into_the_offers(self):
        self.offer("[CurrentVersion]\nversion=9.9.9\n[Release]\nversion=2.2.0\n次=表")
        self.assert_ended(self.check(), 0, [NOTHING_NEWER])
        self.assertEqual(read(self.file("update.txt")).decode("cp932"),
                         "[CurrentVersion]\r\nversion=2.2.0\r\n[Release]\r\nversion=2.2.0\r\n次=表")
        self.assertFalse(os.path.exists(os.path.join(self.working, "update.txt")))

    def test_compares_versions_as_text(self):
        for offers in ("[Release]\nversion=2.10.0", "[Release]\nversion=2.2.0", "[Release]\nversion=2.1.9", "[x]\ny=z",
                       "[Patch]\nversion=2.2.5\nrequiredversion=2.2.0"):
            self.offer(offers)
            result = self.check()
            self.assert_ended(result, 0, [NOTHING_NEWER])
            self.assertEqual(result.statuses[-1], "Sorry,New Version is not released!")
        for offers in ("[Release]\nversion=2.2.1", "[Patch]\nversion=2.2.1\nrequiredversion=2.1.9",
                       "[Patch]\nversion=2.2.1"):
            self.offer(offers)
            self.assert_ended(self.check("no"), 1, [OFFERED], "ダウンロードを中止しました。")

    def test_without_answers_nothing_is_fetched(self):
        self.offer_release()
        result = self.run_cli("update", "check")
        self.assertEqual((result.code, result.out), (1, b""))
        self.assertEqual(result.error_lines, ["velloria-cli: ダウンロードを中止しました。"])
        self.assertFalse(os.path.exists(self.file("v.lzh")))

    def test_yes_answers_all(self):
        self.offer_release()
        self.put_updater()
        result = self.run_cli("--yes", "update", "check", options={"cwd": self.working})
        self.assertEqual((result.code, result.out, result.error_lines), (0, b"", []), result)
        self.wait_for("mark")

    def test_the_updater_may_wait(self):
        self.offer_release()
        self.put_updater()
        self.assert_ended(self.check("yes", "no"), 0, [OFFERED, COMPLETE, LAUNCH])
        self.assertFalse(os.path.exists(self.file("VellUpTmp.exe")))

    def test_without_updater_or_library_the_archive_stays(self):
        self.offer_release()
        self.assert_ended(self.check("yes"), 1, [OFFERED, COMPLETE, "critical: Velloria Updaterが見つかりません。"],
                          "Velloria Updaterが見つかりません。")
        self.put_updater()
        os.remove(self.file("UnLHA32.DLL"))
        self.assert_ended(self.check("yes", "yes"), 1, [
            OFFERED, COMPLETE, LAUNCH,
            "critical: 「UNLHA32.DLL」が存在しません。\r\nインストール後、再度実行してください。"],
            "「UNLHA32.DLL」が存在しません。")
        self.assertEqual(read(self.file("v.lzh")), b"archive")

    def test_an_updater_that_does_not_run_is_a_failure(self):
        self.offer_release()
        self.put_updater()
        self.put_file("VellUpdater.exe", b"MZ not for here")
        result = self.check("yes", "yes")
        self.assertEqual(result.code, 1)
        self.assertIn("VellUpTmp.exe", result.events_of("failure")[0]["text"])
        self.assertIn("VellUpTmp.exe", result.error_lines[-1])

    # -- what does not come -------------------------------------------------------------------------------------------

    def test_an_answer_without_a_file_is_a_failure(self):
        for status in (404, 500, 204):
            self.site.put("up/update.txt", b"" if status == 204 else b"sorry", status=status)
            self.assert_ended(self.check(), 1, [NO_BYTES, NO_OFFERS], "update.txtの取得に失敗しました。")
        self.assertFalse(os.path.exists(self.file("update.txt")))

    def test_servers_that_can_not_be_reached_are_a_failure(self):
        # What is too long to be a name: a resolver that answers every question is not asked.
        aliases = self.input_file("aliases", f"nohost {'x' * 64}.invalid\n")
        for folder, reason in ((f"http://{HOST}:9/", "サーバーに接続できません。"),
                               ("http://nohost/", "サーバー名が認識出来ません。"),
                               ("file:///etc/", "The URL scheme could not be recognized, or is not supported."),
                               ("maker", "URLが無効です。")):
            self.endpoint("UpdateFolder", folder)
            self.assert_ended(self.check(aliases=aliases), 1, [NO_CONNECTION, NO_OFFERS],
                              "update.txtの取得に失敗しました。 " + reason)

    def test_an_archive_that_does_not_come_is_a_failure(self):
        self.offer_release()
        del self.site.pages["/v.lzh"]
        result = self.check("yes")
        self.assert_ended(result, 1, [OFFERED, NO_BYTES, FAILED], "ダウンロードに失敗しました。")
        self.assertEqual(result.events_of("progress")[-1]["text"], "ダウンロード失敗\r\n" + BUSY)
        self.assertFalse(os.path.exists(self.file("v.lzh")))

    def test_what_arrived_of_a_cut_file_is_the_file(self):
        self.offer_release(b"x" * 1500, length=5000)
        self.assert_ended(self.check("yes"), 1, [OFFERED, COMPLETE, "critical: Velloria Updaterが見つかりません。"],
                          "Velloria Updaterが見つかりません。")
        self.assertEqual(read(self.file("v.lzh")), b"x" * 1500)

    def test_an_empty_archive_leaves_the_earlier_one(self):
        self.offer_release()
        self.check("yes")
        self.offer_release(b"second")
        self.check("yes")
        self.assertEqual(read(self.file("v.lzh")), b"second")
        self.offer_release(b"")
        self.assert_ended(self.check("yes"), 1, [OFFERED, NO_BYTES, FAILED], "ダウンロードに失敗しました。")
        self.assertEqual(read(self.file("v.lzh")), b"second")

    def test_a_name_that_leaves_the_folder_is_refused(self):
        self.offer("[Release]\nversion=1\n")
        self.check()
        for name in ("../v.lzh", "UserData/diary.mdb", "..\\v.lzh", "default.ini", "VELLUPDATER.EXE", "update.txt", "",
                     "Chimer.dll", "velluser.ini", "VellUpTmp.exe", "diary.mdb", "x.blg", "archive"):
            self.put_file("VellUpdater.exe", b"mine")
            self.offer_release(name=name)
            before = snapshot(self.root)
            self.assert_ended(self.check("yes"), 1, [OFFERED, FAILED], "ダウンロードに失敗しました。")
            after = snapshot(self.root)
            changed = {path for path in before | after if before.get(path) != after.get(path)}
            self.assertLessEqual(changed, {"home/update.txt"}, name)
        self.assertNotIn("/v.lzh", [path for path, _ in self.site.requests])

    def test_without_an_update_folder_there_is_nothing_newer(self):
        self.endpoint("UpdateFolder", "")
        self.assert_ended(self.check(), 0, [NOTHING_NEWER])
        self.assertEqual(self.site.requests, [])

    def test_a_folder_without_its_slash_gets_one(self):
        self.endpoint("UpdateFolder", self.site.address + "up")
        self.offer("[Release]\nversion=1\n")
        self.assert_ended(self.check(), 0, [NOTHING_NEWER])

    # -- bad servers --------------------------------------------------------------------------------------------------

    def test_offers_of_a_gigabyte_are_given_up_early(self):
        self.put_file("update.txt", b"old")
        sent = []
        self.site.pages["/up/update.txt"] = endless(1 << 30, sent)
        result = self.check()
        self.assertLess(len(sent), 64, "megabytes")
        self.assertEqual(result.code, 1)
        self.assertEqual(result.boxes, [])
        self.assertIn("大きすぎる", result.events_of("failure")[0]["text"])
        self.assertEqual(result.events_of("pointer")[-1]["shape"], "default")
        self.assertEqual(read(self.file("update.txt")), b"old")

    def test_redirections_stay_within_the_web(self):
        self.offer("[Release]\nversion=1\n")
        self.site.pages["/a/update.txt"] = redirect("/up/update.txt")
        self.endpoint("UpdateFolder", self.site.address + "a/")
        self.assert_ended(self.check(), 0, [NOTHING_NEWER])
        for target in ("file:///etc/hostname", "/a/update.txt", "ftp://127.0.0.1/x"):
            self.site.pages["/a/update.txt"] = redirect(target)
            result = self.check()
            self.assertEqual((result.code, result.boxes), (1, [NO_CONNECTION, NO_OFFERS]), target)

    def certificate(self, host=HOST, is_expired=False):
        """A certificate that vouches for itself, and the context of a server with it."""
        key, certificate = os.path.join(self.inputs, "key.pem"), os.path.join(self.inputs, "certificate.pem")
        subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
                        "-days", "2", "-subj", f"/CN={host}", "-addext", f"subjectAltName=IP:{host}",
                        "-keyout", key, "-out", certificate], check=True, capture_output=True)
        if is_expired:
            subprocess.run(["openssl", "x509", "-in", certificate, "-signkey", key, "-days", "-1", "-out", certificate],
                           check=True, capture_output=True)
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(certificate, key)
        return certificate, context

    def encrypted_site(self, context):
        site = self.enterContext(Site(context))
        self.addCleanup(site.shutdown)
        site.put("update.txt", b"[Release]\r\nversion=1\r\n")
        return site, f"https://{HOST}:{site.server_port}/"

    def check_trusting(self, certificate, folder):
        self.endpoint("UpdateFolder", folder)
        environment = {"SSL_CERT_FILE": certificate} if certificate else {}
        return self.run_cli("--events", "update", "check", environment=environment)

    def test_certificates_that_are_not_taken_are_told_apart(self):
        for case, reason in ((("127.0.0.99",), f"サーバーの証明書は「{HOST}」のものではありません。"),
                             ((HOST, True), "サーバーの証明書の有効期限が切れています。"),
                             (None, "サーバーの証明書を発行したところを信頼できません。")):
            certificate, context = self.certificate(*(case or ()))
            site, folder = self.encrypted_site(context)
            self.endpoint("UpdateFolder", folder)
            result = self.check_trusting(certificate if case else None, folder)
            self.assertEqual((result.code, result.boxes), (1, [NO_CONNECTION, NO_OFFERS]))
            self.assertIn(reason, result.error_lines[-1])
            self.assertEqual(site.requests, [])

    def test_no_redirection_leads_from_encryption_to_none(self):
        certificate, context = self.certificate()
        site, folder = self.encrypted_site(context)
        self.assert_ended(self.check_trusting(certificate, folder), 0, [NOTHING_NEWER])
        self.site.pages["/in/update.txt"] = redirect(folder + "update.txt")
        self.assert_ended(self.check_trusting(certificate, self.site.address + "in/"), 0, [NOTHING_NEWER])
        self.site.put("plain/update.txt", b"[Release]\r\nversion=9\r\n")
        site.pages["/update.txt"] = redirect(self.site.address + "plain/update.txt")
        for start in (folder, self.site.address + "in/"):
            result = self.check_trusting(certificate, start)
            self.assertEqual((result.code, result.boxes), (1, [NO_CONNECTION, NO_OFFERS]))
            self.assertIn("暗号化しない接続への転送には応じません", result.error_lines[-1])
        self.assertNotIn("/plain/update.txt", [path for path, _ in self.site.requests])
        site.pages["/update.txt"] = redirect("/there")
        site.pages["/there"] = (200, b"[Release]\r\nversion=1\r\n", 22)
        self.assert_ended(self.check_trusting(certificate, folder), 0, [NOTHING_NEWER])

    def test_a_folder_that_can_not_be_written_is_a_failure(self):
        self.offer("[Release]\nversion=1\n")
        os.mkdir(self.file("update.txt"))
        result = self.check()
        self.assertEqual(result.code, 1)
        self.assertIn(self.file("update.txt"), result.events_of("failure")[0]["text"])
        self.assertEqual(result.events_of("pointer")[-1]["shape"], "default")

    def test_takes_no_words(self):
        self.refused("update", "check", "now", code=2)
        self.refused("update", code=2)


if __name__ == "__main__":
    unittest.main()
