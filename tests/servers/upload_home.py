"""A diary that goes to a real server, and words to look at both sides."""

import os
import shutil
import subprocess
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "cli"))

from home import CliTest, entry, read, write  # noqa: E402  (the folder has to be known first)

DONE = "日記のアップロードに成功しました。"
SCRAMBLED = {}
UNKNOWN_END = "不明なエラーで終了しました。"


def uploading(name, done, total):
    return f"ファイル「{name}」をアップロード中。({done}/{total})"


def sending(name, total):
    return f"ファイル「{name}」をアップロードします。(0/{total})"


def uploaded(name, done, total):
    return f"ファイル「{name}」のアップロードに成功しました。({done}/{total})"


def files_below(folder):
    """Content by path, both as bytes: servers keep names as they come."""
    found = {}
    for parent, _folders, names in os.walk(os.fsencode(folder)):
        for name in names:
            path = os.path.join(parent, name)
            found[os.path.relpath(path, os.fsencode(folder))] = read(path)
    return found


def shown(result):
    """What the progress window showed, one (title, text) after the other."""
    pairs = []
    for event in result.events_of("progress"):
        pair = event["title"], event["text"]
        if pair != ("", "") and pair not in pairs[-1:]:
            pairs.append(pair)
    return pairs


class UploadTest(CliTest):
    """Fixture: a diary of the month of 2004/02 with a page to upload and no server yet."""

    def setUp(self):
        super().setUp()
        self.use_site()
        self.server = None

    def temporary_folder(self):
        path = super().temporary_folder()
        os.chmod(path, 0o755)  # servers change to a user of their own
        return path

    # -- the server ---------------------------------------------------------------------------------------------------

    def serve(self, server_type, **options):
        """Starts the server and tells the program about it."""
        self.server = self.enterContext(server_type(self.temporary_folder(), **options))
        self.use_server(self.server.address, self.server.user, self.server.password)
        return self.server

    def use_server(self, host, user, password):
        if password not in SCRAMBLED:
            SCRAMBLED[password] = self.must("convert", "scramble", input=password).text
        self.set_ftp(URL=host, ID=user, Pass=SCRAMBLED[password], StartFolder="pub", PASV="1")

    def set_ftp(self, **keys):
        """Keys of the section that the first start has written, all at once: a run of the program for each takes time."""
        head, _, rest = read(self.diary_ini).decode("cp932").partition("[FTP]\r\n")
        section, _, tail = rest.partition("\r\n\r\n")
        values = dict(line.split("=", 1) for line in section.split("\r\n")) | keys
        section = "\r\n".join(f"{key}={value}" for key, value in values.items())
        write(self.diary_ini, f"{head}[FTP]\r\n{section}\r\n\r\n{tail}".encode("cp932"))

    def set_mode(self, is_passive):
        self.set_ftp(PASV=str(int(is_passive)))

    def upload(self, *options, **how):
        return self.run_cli(*options, "--events", "upload", **how)

    def must_upload(self, *options, **how):
        result = self.upload(*options, **how)
        self.assertEqual((result.code, result.out), (0, b""), f"{result!r}\n{self.server.log[-2000:]}")
        return result

    # -- the diary ----------------------------------------------------------------------------------------------------

    def save_page(self, text="本文"):
        self.put(entry("2004/02/29", "題", Number=1, Contents=text))
        self.must("site", "save")

    def add_picture(self, name="a.gif", day="2004/02/29", **how):
        picture = self.input_file(name, b"GIF89a\r\n\n\r\x00\xff" + os.urandom(5000))
        self.must("file", "add", picture, day, "0" if day == "ALL" else "1", **how)

    def without_icons(self):
        """Leaves no picture to upload but those that come later."""
        self.sql("UPDATE FileDB SET Uploaded = 1 WHERE Day = 'ALL'")

    def save_log(self):
        """The log of January, with its entry."""
        self.put(entry("2004/01/15", "冬", Number=1, Contents="ログ"))
        self.must("site", "log", "2004", "1")

    def list_pages(self, names, list_name="upload.tmp"):
        """Makes pages in the site folder and the list of them."""
        for name in names:
            write(self.site + name, f"<html>\r\n{name}\r\n表示</html>\r\n".encode("cp932"))
        rows = "".join(f"{self.site},{name}\r\n" for name in names)
        write(self.data + list_name, rows.encode("cp932"))

    # -- looking ------------------------------------------------------------------------------------------------------

    def as_served(self, content):
        """How the server keeps a text that has been sent right."""
        return content.replace(b"\r\n", b"\n").replace(b"\n", self.server.text_line_end)

    def rows(self, list_name):
        """(folder, name) of a list of files."""
        rows = read(self.data + list_name).decode("cp932").splitlines()
        return [(os.path.join(row.split(",")[0], ""), row.split(",")[1]) for row in rows]

    def expected_files(self, logs=()):
        """What the server must hold of the lists and of the registered files, all of them sent."""
        expected = {name.encode("cp932"): self.as_served(read(folder + name))
                    for folder, name in self.rows("upload.tmp")}
        for folder, name in logs:
            expected[b"DiaryLog/" + name.encode("cp932")] = self.as_served(read(folder + name))
        for name, is_logged in self.sql("SELECT FileName, Logged FROM FileDB"):
            if is_logged and not logs:
                continue
            side = "DiaryLog/DiaryParts/" if is_logged else "DiaryParts/"
            expected[(side + name).encode("cp932")] = read(self.site + side + name)
        return expected

    def assert_served(self, logs=()):
        self.maxDiff = 2000
        found, expected = files_below(self.server.site), self.expected_files(logs)
        self.assertEqual(sorted(found), sorted(expected))
        for name in found:
            self.assertEqual(found[name], expected[name], name)

    def waiting(self):
        """Names of registered files that are still to be sent."""
        return [name for name, in self.sql("SELECT FileName FROM FileDB WHERE NOT Uploaded ORDER BY FileID")]

    def lists(self):
        names = ("upload.tmp", "uploadold.tmp", "uploadlog.tmp")
        return {name: read(self.data + name) if os.path.exists(self.data + name) else None for name in names}

    # -- another client -----------------------------------------------------------------------------------------------

    def lftp_upload(self, is_passive, logs=()):
        """The same files by lftp into the folder "peer" beside; returns what is in it then. It takes texts with LF and
        makes their line ends itself."""
        folder, texts = self.server.make_folder("peer"), self.temporary_folder()
        script = [f"set ftp:passive-mode {int(is_passive)}", "set ftp:ssl-allow no", "set ftp:use-utf8 no",
                  "set net:max-retries 1", "set cmd:fail-exit yes",
                  f'open -u {self.server.user},"{self.server.password}" ftp://{self.server.address}', "cd peer"]
        for number, (side, source) in enumerate([("", row) for row in self.rows("upload.tmp")] +
                                                [("DiaryLog/", row) for row in logs]):
            text = os.path.join(texts, str(number))
            write(text, read("".join(source)).replace(b"\r\n", b"\n"))
            script += [f'put -a {text} -o "{side}{source[1]}"']
        folders = ["DiaryParts", *(["DiaryLog", "DiaryLog/DiaryParts"] if logs else [])]
        script[7:7] = [f"mkdir {name}" for name in folders]
        for name, is_logged in self.sql("SELECT FileName, Logged FROM FileDB"):
            path = ("DiaryLog/" if is_logged else "") + "DiaryParts/" + name
            if logs or not is_logged:
                script += [f'put "{self.site}{path}" -o "{path}"']
        line = "\n".join(script).encode("cp932")
        subprocess.run(["lftp", "-f", self.input_file("script", line)], check=True, timeout=600,
                       env={"HOME": self.root, "LANG": "C", "PATH": os.environ["PATH"]})
        found = files_below(folder)
        shutil.rmtree(folder)
        return found
