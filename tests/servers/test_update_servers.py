"""The check for updates against a real web server, in clear and encrypted."""

import os
import socket
import tempfile
import threading
import unittest

from certificates import Authority
from servers import Nginx, require_servers
from upload_home import CliTest, read, write

ARCHIVE_BYTES = 3_000_000
OFFERED = "question: 新しいバージョンが存在します(2.2.1)。\r\nダウンロードしますか？"
DOWNLOADED = "information: ダウンロードが完了しました。"
NO_UPDATER = "critical: Velloria Updaterが見つかりません。"
BUSY = "サーバーが混んでいる可能性もありますので、時間帯を変更してお試し下さい。"
NOT_FETCHED = "critical: update.txtの取得に失敗しました。"
NO_SERVER = f"critical: サーバーに接続できませんでした。\r\n{BUSY}"
AUTHORITIES = {}


def setUpModule():
    require_servers()
    for name in ("trusted", "foreign"):
        folder = unittest.enterModuleContext(tempfile.TemporaryDirectory(prefix="velloria-servers-"))
        AUTHORITIES[name] = Authority(folder)


class Updates(CliTest):
    def setUp(self):
        super().setUp()
        self.must("start")
        self.archive = os.urandom(ARCHIVE_BYTES)

    def serve(self, authority="trusted"):
        self.server = self.enterContext(
            Nginx(self.temporary_folder(), certificate=AUTHORITIES[authority].certificate(Nginx.address)))

    def offer(self, archive_url):
        write(os.path.join(self.server.root, "update.txt"),
              f"[Release]\r\nversion=2.2.1\r\nURL_Full={archive_url}\r\nFileName=v.lzh\r\n")
        write(os.path.join(self.server.root, "v.lzh"), self.archive)

    def check(self, folder_url, trusts=True):
        self.must("ini", "set", os.path.join(self.home, "endpoints.ini"), "Maker", "UpdateFolder", folder_url)
        environment = {"SSL_CERT_FILE": AUTHORITIES["trusted"].file} if trusts else {}
        return self.run_cli("--yes", "--events", "update", "check", environment=environment)

    def saved(self):
        return read(os.path.join(self.home, "v.lzh"))

    def assert_downloaded(self, result, archive_url):
        self.assertEqual(result.boxes, [OFFERED, DOWNLOADED, NO_UPDATER])
        self.assertIn(f"Downloading {archive_url} is Succeeded!", result.statuses)
        last = result.events_of("progress")[-1]
        self.assertEqual((last["title"], last["ok"]), ("ダウンロード on HTTP", True))
        file = os.path.join(self.home, "v.lzh")
        self.assertRegex(last["text"], rf"^ダウンロード完了！\r\n{file}\r\n"
                                       rf"{ARCHIVE_BYTES}bytes received\([0-9]+\.[0-9]kbps\)\.$")
        self.assertEqual(self.saved(), self.archive)

    def test_downloads_in_clear(self):
        self.serve()
        self.offer("http://127.0.0.5/v.lzh")
        self.assert_downloaded(self.check("http://127.0.0.5/"), "http://127.0.0.5/v.lzh")

    def test_downloads_encrypted(self):
        self.serve()
        self.offer("https://127.0.0.5/v.lzh")
        self.assert_downloaded(self.check("https://127.0.0.5/"), "https://127.0.0.5/v.lzh")

    def test_follows_to_encryption(self):
        self.serve()
        self.offer("http://127.0.0.5/moved/v.lzh")
        self.assert_downloaded(self.check("http://127.0.0.5/moved/"), "http://127.0.0.5/moved/v.lzh")

    def test_takes_nothing_from_a_server_that_nobody_vouches_for(self):
        for authority, trusts in (("foreign", True), ("trusted", False)):
            with self.subTest(authority=authority, trusts=trusts):
                self.serve(authority)
                self.offer("https://127.0.0.5/v.lzh")
                result = self.check("https://127.0.0.5/", trusts)
                self.assertEqual(result.boxes, [NO_SERVER, NOT_FETCHED])
                self.assertEqual(result.code, 1)
                self.assertIn("Certificate Authority", result.error_lines[-1])
                self.assertFalse(os.path.exists(os.path.join(self.home, "v.lzh")))
                self.server.stop()

    def test_takes_no_page_of_an_error_for_a_file(self):
        self.serve()
        result = self.check("http://127.0.0.5/")
        self.assertEqual(result.boxes,
                         [f"critical: update.txtをダウンロードできませんでした。\r\n{BUSY}", NOT_FETCHED])
        self.assertFalse(os.path.exists(os.path.join(self.home, "update.txt")))

    def test_keeps_what_came_of_a_file_that_breaks_off(self):
        self.serve()
        listener = self.enterContext(socket.create_server(("127.0.0.5", 0)))
        part = self.archive[:100_000]

        def answer_once():
            connection, _ = listener.accept()
            with connection:
                connection.recv(65536)
                connection.sendall(b"HTTP/1.1 200 OK\r\nContent-Length: 3000000\r\n\r\n" + part)

        thread = threading.Thread(target=answer_once)
        thread.start()
        self.offer(f"http://127.0.0.5:{listener.getsockname()[1]}/v.lzh")
        result = self.check("http://127.0.0.5/")
        thread.join()
        self.assertEqual(result.boxes, [OFFERED, DOWNLOADED, NO_UPDATER])
        self.assertEqual(self.saved(), part)


if __name__ == "__main__":
    unittest.main()
