"""Uploads that end in the middle: the program is killed in each of its phases, or the server. Afterwards lists and
register say what has really gone up, and one more run makes the server equal to the site."""

import fcntl
import json
import os
import shutil
import subprocess
import unittest

from servers import ProFtpd, PureFtpd, VsFtpd, require_servers
from upload_home import DONE, UNKNOWN_END, UploadTest, files_below, read, write

COUNT = 30  # of each kind of file: enough for a phase to last until the kill
PAGES = [f"p{number:02}.htm" for number in range(COUNT)]
LOGS = [f"l{number:02}.htm" for number in range(COUNT)]
PICTURES = [f"a{number:02}.gif" for number in range(COUNT)]
LOG_PICTURES = [f"b{number:02}.gif" for number in range(COUNT)]
LOST = ("サーバーとの接続が終了しました。", "サーバーとの接続がリセットされました。", "サーバーに接続できません。")


def setUpModule():
    require_servers()


def shows(title, text):
    return lambda event: event["event"] == "progress" and event["title"] == title and text in event["text"]


def tells(status):
    return lambda event: event["event"] == "status" and event["text"] == status


# phase: what is on the screen in the middle of it
PHASES = {
    4: shows("接続確認中", "インターネットへの接続成功。"),
    5: shows("ディレクトリの移動", "pubへ移動中"),
    6: shows("ファイルの削除", "「p05.htm」を削除しました。"),
    7: shows("HTMLファイルアップロード", "「p05.htm」をアップロード中。"),
    9: shows("ディレクトリの移動", "「a05.gif」をアップロードします。"),
    10: shows("ログ：ファイルのアップロード", "「l05.htm」をアップロードします。"),
    11: tells("Uploading b05.gif"),
}


class Ends:
    server_type = None

    def setUp(self):
        super().setUp()
        self.serve(self.server_type)
        for side in ("DiaryParts", "DiaryLog/DiaryParts"):
            os.makedirs(self.site + side)
        self.register = "INSERT INTO FileDB (FileName, Day, Number, Uploaded, Logged) VALUES (?, '2004/02/29', 1, 0, ?)"
        for folder, names, is_logged in (("DiaryParts/", PICTURES, 0), ("DiaryLog/DiaryParts/", LOG_PICTURES, 1)):
            for name in names:
                write(self.site + folder + name, os.urandom(20000))
                self.sql(self.register, name, is_logged)

    def prepare(self):
        """The server has an older state of the site: other texts, pages that are gone here, logs, no pictures."""
        for name in os.listdir(self.server.site):
            shutil.rmtree(os.path.join(self.server.site, name), ignore_errors=True)
        old = [*PAGES[:20], "gone1.htm", "gone2.htm"]
        self.server.make_folder("pub/DiaryLog")
        for name in [*old, *(f"DiaryLog/{log}" for log in LOGS)]:
            path = os.path.join(self.server.site, name)
            write(path, b"older and longer than the new one " * 1000)
            os.chown(path, self.server.owner, self.server.owner)
        self.list_pages([f"DiaryLog/{log}" for log in LOGS])
        write(self.data + "uploadlog.tmp", "".join(f"{self.site}DiaryLog,{log}\r\n" for log in LOGS))
        write(self.data + "uploadold.tmp", "".join(f"{self.site},{name}\r\n" for name in old))
        self.list_pages(PAGES)
        self.sql("UPDATE FileDB SET Uploaded = (Day = 'ALL')")
        self.older = files_below(self.server.site)

    def upload_until(self, matches, then):
        """Runs, and does `then` with the program as soon as an event is there. Returns the events of the whole run. The
        program is never far ahead of the event, however slow this is: what it may tell unread is a page, and unbuffered."""
        program = subprocess.Popen(self.command("--yes", "--events", "upload"), env=self.environment(), bufsize=0,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        fcntl.fcntl(program.stderr, fcntl.F_SETPIPE_SZ, 4096)
        events, is_there = [], False
        with program:
            for line in program.stderr:
                if not line.startswith(b"{") or not line.endswith(b"\n"):
                    continue
                events.append(json.loads(line))
                if not is_there and matches(events[-1]):
                    is_there = True
                    then(program)
        self.assertTrue(is_there, events[-3:])
        return program.returncode, events

    def phase(self, events):
        """The last phase that has begun. Phase 8 is the short moment after the last page."""
        titles = [event["title"] for event in events if event["event"] == "progress"]
        if any(tells(f"Uploading {LOG_PICTURES[0]}")(event) for event in events):
            return 11
        for phase, title in ((10, "ログ：DiaryLogディレクトリへの移動"), (9, "ファイルアップロード"),
                             (7, "HTMLファイルアップロード"), (6, "ファイルの削除"), (5, "ディレクトリの移動")):
            if title in titles:
                return phase
        return 4

    def assert_state(self, events, before):
        """The table of what a run leaves behind, by how far it got."""
        phase = self.phase(events)
        uploaded = [event for event in events if tells("Upload Successful!")(event)]
        pages = [event for event in events if shows("HTMLファイルアップロード", "成功しました。")(event)]
        lists = self.lists()
        self.assertEqual(lists["upload.tmp"], before["upload.tmp"])
        self.assertEqual(lists["uploadlog.tmp"], before["uploadlog.tmp"])
        if len(pages) < COUNT:
            self.assertEqual(lists["uploadold.tmp"], before["uploadold.tmp"])
        elif phase > 7:
            self.assertEqual(lists["uploadold.tmp"], before["upload.tmp"])
        # What is told comes just before what is written down.
        marked = self.sql("SELECT FileName FROM FileDB WHERE Uploaded AND Day != 'ALL' ORDER BY FileID")
        done = len(uploaded)
        self.assertIn(len(marked), (max(0, done - 1), done), phase)
        self.assertEqual([name for name, in marked], [*PICTURES, *LOG_PICTURES][:len(marked)])

        served = files_below(self.server.site)
        for number, (name,) in enumerate(marked):
            side = "DiaryParts/" if number < COUNT else "DiaryLog/DiaryParts/"
            self.assertEqual(served[(side + name).encode()], read(self.site + side + name), name)
        for name in PAGES[:len(pages)]:
            self.assertEqual(served[name.encode()], self.as_served(read(self.site + name)), name)
        if phase < 6:
            self.assertEqual(served, self.older)
        return phase

    def assert_repeated(self):
        logs = self.rows("uploadlog.tmp")
        result = self.must_upload("--yes")
        self.assertEqual(result.events_of("progress")[-1]["text"], DONE)
        self.assert_served_all(logs)
        self.assertIsNone(self.lists()["uploadlog.tmp"])
        self.assertEqual(self.waiting(), [])

    def assert_served_all(self, logs):
        found = files_below(self.server.site)
        expected = {name.encode(): self.as_served(read(self.site + name)) for name in PAGES}
        expected |= {b"DiaryLog/" + name.encode(): self.as_served(read(folder + name)) for folder, name in logs}
        expected |= {path.encode(): read(self.site + path)
                     for path in [*(f"DiaryParts/{name}" for name in PICTURES),
                                  *(f"DiaryLog/DiaryParts/{name}" for name in LOG_PICTURES)]}
        self.assertEqual(sorted(found), sorted(expected))
        for name in found:
            self.assertEqual(found[name], expected[name], name)

    def test_killed_in_each_phase(self):
        for phase, matches in PHASES.items():
            with self.subTest(phase=phase):
                for _ in range(20):  # a kill may come late
                    self.prepare()
                    before = self.lists()
                    code, events = self.upload_until(matches, lambda program: program.kill())
                    if code != -9:
                        continue
                    reached = self.assert_state(events, before)
                    self.assert_repeated()
                    if reached == phase or reached < 6 and phase < 6:  # what is before the first change is short
                        break
                else:
                    self.fail("no kill came in time")

    def test_killed_again_and_again(self):
        self.prepare()
        logs = self.rows("uploadlog.tmp")
        for matches in PHASES.values():
            self.upload_until(matches, lambda program: program.kill())
        self.must_upload("--yes")
        self.assert_served_all(logs)

    def end_server(self, phase):
        """The server dies in that phase; returns what stood in the progress window at the end."""
        self.prepare()
        before = self.lists()
        code, events = self.upload_until(PHASES[phase], lambda _program: self.server.stop())
        self.assertEqual(code, 1)
        self.assertEqual(self.assert_state(events, before), phase)
        last = [event for event in events if event["event"] == "progress"][-1]
        self.assertTrue(last["ok"])
        self.assertNotIn("sound", [event["event"] for event in events])
        self.server.start()
        self.assert_repeated()
        return last["title"], last["text"]

    def test_the_server_ends_among_the_pages(self):
        self.assertIn(self.end_server(7), [("HTMLアップロードエラー", "その他のエラー(FileUpload)。\r\n"
                                            f"({error})\r\n{UNKNOWN_END}") for error in LOST])

    def test_the_server_ends_among_the_pictures(self):
        self.assertIn(self.end_server(9),
                      [("ファイルアップロードエラー", "その他のエラー(OtherFileUpload)。\r\n"
                        f"({name}:{error})\r\n{UNKNOWN_END}") for error in LOST for name in PICTURES])


class OnVsFtpd(Ends, UploadTest):
    server_type = VsFtpd


class OnPureFtpd(Ends, UploadTest):
    server_type = PureFtpd


class OnProFtpd(Ends, UploadTest):
    server_type = ProFtpd


if __name__ == "__main__":
    unittest.main()
