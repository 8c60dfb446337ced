"""The update ping by the plug-in that comes along, on servers that answer well and badly."""

import os
import re
import shutil
import stat
import sys
import time
import unittest
import xml.etree.ElementTree

from home import PROGRAM, CliTest, read, snapshot, write

for folder in ("support", "servers"):
    sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", folder))

from certificates import Authority
from patience import PATIENCE_SECONDS
from ping_server import PingServer

DONE, FAILED = "完了", "失敗"
NO_XML = "返事がXML-RPCの形ではありません。"


class PingTest(CliTest):
    def setUp(self):
        super().setUp()
        shutil.copy(os.path.join(PROGRAM, "Chimer.dll"), self.home)
        self.must("start")
        self.list_file, self.log_file = self.data + "PINGList.csv", self.data + "ping.log"
        self.server = self.enterContext(PingServer())

    def name_site(self, title, url):
        self.set_key("RSS.ini", "Setting", "Title", title)
        self.set_key("RSS.ini", "Setting", "DiaryURL", url)

    def ping(self, *addresses, environment=None):
        """Lines of the list, or names of answers of the server."""
        lines = [line if ":" in line or line.startswith("#") else self.server.url + line for line in addresses]
        write(self.list_file, "".join(line + "\r\n" for line in lines).encode("cp932"))
        return self.must("--events", "ping", environment=environment)

    def rows(self):
        """The last run's lines of the log: address, name, done or failed, words."""
        run = ("\n" + read(self.log_file).decode()).rsplit("\n=== ", 1)[1].splitlines()
        rows = [line.split("\t") for line in run[1:-1]]
        for row in rows:
            self.assertRegex(row[0], r"^\d{4}/\d\d/\d\d \d\d:\d\d:\d\d$")
            self.assertEqual(len(row), 5, row)
        return [tuple(row[1:]) for row in rows]

    def outcome(self):
        """By the last part of the address."""
        return {address.rpartition("/")[2]: (state, words) for address, _, state, words in self.rows()}


class Answers(PingTest):
    def test_every_kind_of_answer(self):
        expected = {
            "ok": (DONE, "Thanks for the ping."),
            "flerror": (FAILED, "The URL is not known & was not read."),
            "fault": (FAILED, "server error. requested method not found (-32601)"),
            "http10": (DONE, "Thanks for the ping."),
            "continue": (DONE, "Thanks for the ping."),
            "chunked": (DONE, "Thanks for the ping."),
            "sjis": (DONE, "受けました。ソ能表"),
            "lines": (DONE, "one two three === four"),
            "long": (DONE, "x" * 500 + "…"),
            "status404": (FAILED, "サーバーの返事は HTTP 404 です。"),
            "status500": (FAILED, "サーバーの返事は HTTP 500 です。 server error. requested method not found (-32601)"),
            "status201": (FAILED, "サーバーの返事は HTTP 201 です。 Thanks for the ping."),
            "status204": (FAILED, "サーバーの返事は HTTP 204 です。"),
            "html": (FAILED, NO_XML), "words": (FAILED, NO_XML), "half_xml": (FAILED, NO_XML),
            "bomb": (FAILED, NO_XML), "outside": (FAILED, NO_XML),
            "empty": (FAILED, "返事が空です。"),
            "no_flag": (FAILED, "返事に、受け付けたかどうかがありません。"),
            "nothing": (FAILED, "返事が途中で切れました。"), "cut": (FAILED, "返事が途中で切れました。"),
            "cut_chunk": (FAILED, "返事が途中で切れました。"), "broken_chunk": (FAILED, "返事が途中で切れました。"),
            "no_http": (FAILED, "返事がHTTPの形ではありません。"),
            "huge": (FAILED, "返事が大きすぎます。"),
            "moved301": (DONE, "Thanks for the ping."), "moved307": (DONE, "Thanks for the ping."),
            "moved308": (DONE, "Thanks for the ping."),
            "moved302": (FAILED, "The URL is not known & was not read."),
            "loop": (FAILED, "転送が多すぎます。"),
            "to_file": (FAILED, "「http://」と「https://」のほかへ転送されました。"),
            "to_ftp": (FAILED, "「http://」と「https://」のほかへ転送されました。"),
            "to_nowhere": (FAILED, "サーバーの返事は HTTP 302 です。"),
        }
        self.name_site("表の日記 & <A>", "http://www.example.com/d/?a=1&b=2")
        result = self.ping(*expected)
        outcome = self.outcome()
        for name, (state, words) in expected.items():
            self.assertEqual(outcome[name][0], state, (name, outcome[name]))
            self.assertEqual(re.sub(r" \([A-Za-z][^()]*(\([^()]*\)[^()]*)*\)$", "", outcome[name][1]), words, name)
        self.assertEqual(set(outcome), set(expected))
        done = sum(state == DONE for state, _ in expected.values())
        self.assertEqual(result.statuses[-1], f"PING: {len(expected)}件中{done}件に送信しました。理由はping.logにあります。")
        self.assertEqual((result.code, result.boxes), (0, []))
        self.assertNotIn("aaaa", read(self.log_file).decode())

    def test_a_call_is_what_servers_know(self):
        self.name_site("表の日記 & <A> 😀", "http://www.example.com/d/?a=1&b=2")
        self.ping("ok", "moved301", "moved307")
        bodies = {body for path, _, body in self.server.calls}
        self.assertEqual(len(bodies), 1, "the call goes along with every redirect")
        (body,) = bodies
        tree = xml.etree.ElementTree.fromstring(body)
        self.assertEqual((tree.tag, tree.findtext("methodName")), ("methodCall", "weblogUpdates.ping"))
        self.assertEqual([value.text for value in tree.findall("params/param/value/string")],
                         ["表の日記 & <A> 😀", "http://www.example.com/d/?a=1&b=2"])
        for path, head, _ in self.server.calls:
            self.assertTrue(head.startswith(f"POST {path} HTTP/1.1\r\n".encode()), head)
            self.assertIn(b"\r\nContent-Type: text/xml\r\n", head)
            self.assertIn(b"\r\nUser-Agent: Velloria", head)

    def test_an_empty_address_of_the_site_is_sent(self):
        self.ping("ok")
        ((_, _, body),) = self.server.calls
        self.assertIn("<string>日記</string>".encode(), body)
        self.assertIn(b"<string></string>", body)


class Waiting(PingTest):
    def test_nobody_is_waited_for_longer_than_ten_seconds(self):
        silent = ["silent", "drip", "endless_head", *(f"silent?{number}" for number in range(12))]
        started = time.monotonic()
        result = self.ping("ok", *silent)
        seconds = time.monotonic() - started
        self.assertGreater(seconds, 9.5)
        self.assertLess(seconds, 10 + PATIENCE_SECONDS)
        self.assertEqual(self.server.most_at_once, 13, "all the silent ones")
        outcome = self.outcome()
        self.assertEqual(outcome.pop("ok"), (DONE, "Thanks for the ping."))
        self.assertEqual(set(outcome.values()), {(FAILED, "10秒以内に返事が終わりません。")})
        self.assertEqual(len(outcome), len(silent))
        self.assertEqual(result.statuses[-1], "PING: 16件中1件に送信しました。理由はping.logにあります。")

    def test_a_thousand_servers_are_not_asked_at_once(self):
        self.server.expected_at_once = 9
        result = self.ping(*(f"server{number}" for number in range(1000)))
        self.assertEqual(result.statuses[-1], "PING: 1000件中1000件に送信しました。")
        self.assertEqual(len(self.server.calls), 1000)
        self.assertEqual(len(self.rows()), 1000)
        self.assertLessEqual(self.server.most_at_once, 16)
        self.assertGreaterEqual(self.server.most_at_once, 9)


class Logins(PingTest):
    def test_a_login_is_used_and_told_nobody(self):
        host = f"127.0.0.1:{self.server.port}"
        self.ping(f"http://hanako:hi%40mitsu@{host}/login", f"http://hanako:wrong@{host}/login?2",
                  f"http://hanako:hi%40mitsu@{host}/echo", f"ftp://hanako:hi%40mitsu@{host}/", "login?3")
        outcome = self.outcome()
        self.assertEqual(outcome["login"], (DONE, "Thanks for the ping."))
        self.assertEqual(outcome["login?2"], (FAILED, "サーバーの返事は HTTP 401 です。"))
        self.assertEqual(outcome["login?3"], (FAILED, "サーバーの返事は HTTP 401 です。"))
        self.assertEqual(outcome["echo"], (FAILED, "http://hanako:***@a/ *** is not known & was not read."))
        log = read(self.log_file).decode()
        for secret in ("mitsu", "wrong"):
            self.assertNotIn(secret, log)
        self.assertIn(f"ftp://***@{host}/", log)


class Encrypted(PingTest):
    def setUp(self):
        super().setUp()
        self.authority = Authority(self.inputs)

    def asked(self, certificate, trust):
        with PingServer(certificate) as server:
            self.ping(server.url + "ok", environment={"SSL_CERT_FILE": self.authority.file} if trust else None)
            (row,) = self.rows()
            return row[2:], len(server.calls)

    def test_a_certificate_is_looked_at(self):
        good = self.authority.certificate("127.0.0.1")
        self.assertEqual(self.asked(good, trust=True), ((DONE, "Thanks for the ping."), 1))
        (state, words), calls = self.asked(good, trust=False)
        self.assertEqual((state, calls), (FAILED, 0))
        self.assertTrue(words.startswith("サーバーの証明書を信頼できません。"), words)
        (state, words), calls = self.asked(self.authority.certificate("127.0.0.2"), trust=True)
        self.assertEqual((state, calls), (FAILED, 0), "of another server")
        self.assertTrue(words.startswith("サーバーの証明書を信頼できません。"), words)

    def test_what_is_not_encrypted_is_told(self):
        self.ping(self.server.url.replace("http:", "https:") + "ok")
        ((_, _, state, words),) = self.rows()
        self.assertEqual(state, FAILED)
        self.assertTrue(words.startswith("暗号化した通信を始められません。"), words)


class Lists(PingTest):
    def test_names_comments_and_repeated_addresses(self):
        url = self.server.url
        self.ping("# 更新通知の送り先", "# ,", f'{url}ok?1,"先のサーバー, 甲①"', f"{url}ok?1,乙", f"{url}ok?2",
                  f"{url.upper().replace('OK', 'ok')}ok?2", "#http://127.0.0.1:1/")
        self.assertEqual(sorted(self.rows()), [(f"{url}ok?1", "先のサーバー, 甲①", DONE, "Thanks for the ping."),
                                               (f"{url}ok?2", "", DONE, "Thanks for the ping.")])
        self.assertEqual(len(self.server.calls), 2)

    def test_lines_that_are_no_address_do_not_stop_the_rest(self):
        result = self.ping("address:,名前", "ok", "http://127.0.0.1:1/RPC2,閉", "file:///etc/hostname")
        self.assertEqual([row[2] for row in self.rows()].count(DONE), 1)
        self.assertEqual(len(self.rows()), 4)
        self.assertEqual(result.statuses[-1], "PING: 4件中1件に送信しました。理由はping.logにあります。")
        self.assertEqual(read(self.list_file).count(b"\r\n"), 4, "the list stays as it is")

    def test_a_server_that_nobody_knows_is_told(self):
        self.ping(f"http://{'a' * 64}.invalid/RPC2", "ok")  # too long a name for anybody to be asked about it
        outcome = self.outcome()
        self.assertEqual(outcome["ok"], (DONE, "Thanks for the ping."))
        self.assertEqual(outcome["RPC2"][0], FAILED)
        self.assertTrue(outcome["RPC2"][1].startswith("サーバーの名前が見つかりません。"), outcome)

    def test_an_empty_list_is_told(self):
        for text in (b"", b"# none\r\n\r\n"):
            write(self.list_file, text)
            result = self.must("--events", "ping")
            self.assertEqual(result.statuses, ["PING: PINGList.csvに送り先がないので、送信しませんでした。"])
        self.assertEqual(self.rows(), [])

    def test_a_missing_list_says_what_to_write_where(self):
        self.refused("ping", naming=[self.list_file, "http://", "名前"])
        self.assertFalse(os.path.exists(self.log_file))

    def test_what_is_no_list_is_refused(self):
        for content in (b"\xff\xfeh\0t\0t\0p\0", b"\0" * 100, b"#" * (5 << 20)):
            write(self.list_file, content)
            self.refused("ping", naming=[self.list_file])
        os.remove(self.list_file)
        for make in (os.mkdir, os.mkfifo):
            make(self.list_file)
            before = snapshot(self.root)
            self.refused("ping", naming=[self.list_file])
            self.assertEqual(snapshot(self.root), before)
            (os.rmdir if make is os.mkdir else os.remove)(self.list_file)


class Logs(PingTest):
    def test_this_run_and_the_one_before_are_kept(self):
        before = time.strftime("%Y/%m/%d")
        for answer in ("ok", "flerror", "fault"):
            self.ping(answer)
        log = read(self.log_file).decode()
        self.assertEqual(re.findall(r"^--- (.*)$", log, re.M), ["1件中0件に送信しました。"] * 2)
        self.assertIn("/flerror\t", log)
        self.assertIn("/fault\t", log)
        self.assertNotIn("/ok\t", log)
        self.assertEqual(stat.S_IMODE(os.stat(self.log_file).st_mode), 0o600)
        self.assertRegex(log, rf"^=== ({before}|{time.strftime('%Y/%m/%d')}) ")

    def test_a_log_that_can_not_be_written_is_a_failure_that_says_what_was_sent(self):
        os.mkdir(self.log_file)
        write(self.list_file, f"{self.server.url}ok\n")
        line = self.refused("ping", naming=["1件中1件に送信しました。", self.log_file])
        self.assertIn("記録を書けません", line)
        self.assertEqual(len(self.server.calls), 1)


if __name__ == "__main__":
    unittest.main()
