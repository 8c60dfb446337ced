"""Uploads with encryption: files arrive, and where it can't be had nothing of the login goes out in clear."""

import tempfile
import unittest

from certificates import Authority
from servers import NewestTlsVsFtpd, ProFtpd, PureFtpd, VsFtpd, require_servers
from upload_home import DONE, UNKNOWN_END, UploadTest, files_below, read, shown
from wire import Wire

OFF, WHEN_OFFERED, REQUIRED = 0, 1, 2
UNTRUSTED = "The function is unfamiliar with the Certificate Authority that generated the server's certificate."
AUTHORITIES = {}
NO_CONNECTION = ("エラー", f"FTPサーバーへの接続失敗。\r\n(FTP Connect Error.)\r\n{UNKNOWN_END}")


def setUpModule():
    require_servers()
    for name in ("trusted", "foreign"):
        folder = unittest.enterModuleContext(tempfile.TemporaryDirectory(prefix="velloria-servers-"))
        AUTHORITIES[name] = Authority(folder)


class TlsTest(UploadTest):
    def setUp(self):
        super().setUp()
        self.save_page()
        self.without_icons()
        self.add_picture("a.gif")
        self.add_picture("b.gif")
        self.must("site", "save")

    def serve_with_tls(self, server_type, authority="trusted", address=None):
        certificate = AUTHORITIES[authority].certificate(address or server_type.address)
        return self.serve(server_type, certificate=certificate)

    def upload_with(self, tls):
        """Returns the result, and all that travelled."""
        self.set_key("diary.ini", "FTP2", "TLS", tls)
        with Wire(self.server.address) as wire:
            result = self.upload("--yes", environment={"SSL_CERT_FILE": AUTHORITIES["trusted"].file})
        return result, wire

    def assert_served_both(self):
        self.assertEqual(files_below(self.server.site), {
            b"x.htm": self.as_served(read(self.site + "x.htm")),
            b"DiaryParts/a.gif": read(self.site + "DiaryParts/a.gif"),
            b"DiaryParts/b.gif": read(self.site + "DiaryParts/b.gif")})

    def assert_secret(self, wire):
        """Nothing of login, names and files could be read on the way."""
        travelled = wire.bytes
        self.assertIn(b"AUTH TLS", travelled)
        for secret in (self.server.password.encode(), b"PASS", b"USER", b"x.htm", b"DiaryParts",
                       read(self.site + "x.htm")[:50], read(self.site + "DiaryParts/a.gif")[20:60]):
            self.assertNotIn(secret, travelled)

    def assert_not_served(self, result, why):
        self.assertEqual(result.code, 1, result)
        self.assertEqual(shown(result)[-1], NO_CONNECTION)
        self.assertIn(why, result.error_lines[-1])
        self.assertEqual(files_below(self.server.site), {})


class Encrypted:
    server_type = None

    def good_run(self, tls, is_passive):
        self.serve_with_tls(self.server_type)
        self.set_mode(is_passive)
        result, wire = self.upload_with(tls)
        self.assertEqual(result.code, 0, f"{result!r}\n{self.server.log[-2000:]}")
        self.assertEqual(shown(result)[-1], ("Successful", DONE))
        self.assert_served_both()
        self.assert_secret(wire)
        self.assertEqual(len(wire.sessions), 1)

    def test_sends_all_encrypted_when_that_is_required(self):
        self.good_run(REQUIRED, is_passive=True)

    def test_sends_all_encrypted_where_active_mode_is_set(self):
        self.good_run(REQUIRED, is_passive=False)

    def test_sends_all_encrypted_when_that_is_offered(self):
        self.good_run(WHEN_OFFERED, is_passive=True)

    def test_sends_nothing_in_clear_when_encryption_is_required(self):
        self.serve(self.server_type)
        result, wire = self.upload_with(REQUIRED)
        self.assert_not_served(result, "セキュリティチェックの為、失敗しました。")
        (session,) = wire.sessions
        self.assertEqual(session[0], b"AUTH TLS")
        self.assertFalse([line for line in session if line.startswith((b"USER", b"PASS"))])
        self.assertNotIn(self.server.password.encode(), wire.bytes)

    def test_goes_on_in_clear_when_that_is_allowed(self):
        self.serve(self.server_type)
        result, wire = self.upload_with(WHEN_OFFERED)
        self.assertEqual(result.code, 0, result)
        self.assert_served_both()
        self.assertEqual(wire.sessions[0][0], b"AUTH TLS")

    def test_gives_nothing_to_a_server_that_nobody_vouches_for(self):
        for tls in (WHEN_OFFERED, REQUIRED):
            with self.subTest(tls=tls):
                self.serve_with_tls(self.server_type, authority="foreign")
                result, wire = self.upload_with(tls)
                self.assert_not_served(result, UNTRUSTED)
                self.assert_secret(wire)
                self.server.stop()

    def test_gives_nothing_to_a_server_of_another_name(self):
        self.serve_with_tls(self.server_type, address="127.0.0.99")
        result, wire = self.upload_with(REQUIRED)
        self.assert_not_served(result, f"サーバーの証明書は「{self.server.address}」のものではありません。")
        self.assert_secret(wire)


class OnNewestTls(TlsTest):
    def test_does_not_begin_anew_with_a_server_that_knows_no_older_encryption(self):
        self.serve_with_tls(NewestTlsVsFtpd)
        result, wire = self.upload_with(REQUIRED)
        self.assert_not_served(result, "サーバーに接続できません。")
        self.assertEqual([session[0] for session in wire.sessions], [b"AUTH TLS"])
        self.assertEqual(self.server.logins, 0)


class OnVsFtpd(Encrypted, TlsTest):
    server_type = VsFtpd


class OnPureFtpd(Encrypted, TlsTest):
    server_type = PureFtpd


class OnProFtpd(Encrypted, TlsTest):
    server_type = ProFtpd


if __name__ == "__main__":
    unittest.main()
