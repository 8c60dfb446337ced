"""The upload run, written independently of the program: what is shown in which order, and what is left behind.

`predict` takes the folder of a started home and a `Remote`, and gives a `Run`. The remote is a model of the server of
upload_server.py, by operations and not by commands of the wire.
"""

import os
import posixpath
import re

from peer_register import Register
from peer_text import Profile, decode_ansi, decode_references, encode_character, with_separator

ERROR_TEXTS = {2: "その他のエラー(&H2)", 5: "その他のエラー(&H5)", 12002: "タイムアウトです。",
               12030: "サーバーとの接続が終了しました。", 12031: "サーバーとの接続がリセットされました。"}
BUSY = "サーバーが混んでいる可能性もありますので、時間帯を変更してお試し下さい。"
UNKNOWN = "不明なエラーで終了しました。"
NO_FILE = 18
ANY = None


def to_page(text):
    return b"".join(encode_character(character) or b"?" for character in text)


def on_the_wire(content):
    """A text as a transfer in ASCII carries it."""
    return re.sub(rb"\r?\n", b"\r\n", content)


# -- the server -----------------------------------------------------------------------------------------------------------


class OperationError(Exception):
    """`text` is what a window shows, "" where it shows none; `reason` all that is known, None for what depends on the
    moment."""

    def __init__(self, text, reason=""):
        super().__init__(text)
        self.text, self.reason = text, text if reason == "" else reason


class Remote:
    """What the operations of the internet layer find on the server."""

    def __init__(self, tree, features=(), login=b"/", faults=(), codec="utf-8", long_replies=False, lost_at=None,
                 passive=False, cut_text=ERROR_TEXTS[12030]):
        self.tree = dict(tree)
        self.tree.setdefault(b"/", None)
        self.features, self.cwd, self.faults = set(features), login, list(faults)
        self.codec, self.long_replies, self.lost_at = codec, long_replies, lost_at
        self.passive, self.cut_text = passive, cut_text
        self.operations = 0
        self.counts = {}
        self.knows_facts = None

    def begin(self):
        if self.operations == self.lost_at:
            raise OperationError(ERROR_TEXTS[12030])
        self.operations += 1

    def refusal(self, fault):
        """What is shown of a reply, and all of it in one line."""
        lines = fault["words"].split("\n")
        code = fault["code"]
        if self.long_replies and len(lines) == 1:
            lines = ["first", "", *lines]
        shown = [f"{code}-{lines[0]}"] if len(lines) > 1 else []
        shown += [" " + line for line in lines[1:-1]] + [f"{code} {lines[-1]}"]
        size = sum(len(line.encode(self.codec)) + 2 for line in shown) - 2
        whole = "\n".join(shown)
        return (whole, whole) if size <= 254 else (" " * 255, " ".join(whole.split()))

    def fault(self, verb, name):
        for number, fault in enumerate(self.faults):
            if fault["verb"] == verb and fault.get("name", name) == name:
                self.counts[number] = self.counts.get(number, 0) + 1
                if self.counts[number] > fault.get("after", 0):
                    if fault["do"] == "cut":
                        raise OperationError(ERROR_TEXTS[12030])
                    return fault
        return {"do": None, "code": 0}

    def refuse(self, fault):
        raise OperationError(*self.refusal(fault))

    def path(self, name):
        return posixpath.normpath(posixpath.join(self.cwd, name)).replace(b"//", b"/")

    def connect(self):
        self.begin()
        for verb in ("USER", "PASS"):
            fault = self.fault(verb, None)
            if fault["do"] == "refuse":
                words = self.refusal(fault)[1]
                if fault["code"] != 421:
                    words = "FTPサーバーへのログオンに失敗しました。 " + " ".join(words.split())
                raise OperationError("", words)
            if fault["do"]:
                raise OperationError("", None)

    def has_file(self, name):
        self.begin()
        fault = self.fault("SIZE", name)
        is_there = self.tree.get(self.path(name)) is not None
        if fault["do"] == "lie":
            return True
        if fault["do"] == "refuse":
            if fault["code"] == 550:
                return False
            if fault["code"] in (421, 425, 426, 530):
                self.refuse(fault)
        elif "SIZE" in self.features:
            return is_there
        self.open_data()
        fault = self.fault("LIST", name)
        if fault["do"] and fault["code"] not in (450, 550):
            self.refuse(fault)
        return is_there and not fault["do"]

    def has_folder(self, name):
        self.begin()
        path = self.path(name)
        if self.knows_facts is None:
            fault = self.fault("FEAT", b"")
            if fault["code"] == 421:
                self.refuse(fault)
            self.knows_facts = not fault["do"] and {"MLST", "FEAT"} <= self.features
        if self.knows_facts:
            fault = self.fault("MLST", name)
            if fault["do"] and fault["code"] != 550:
                self.refuse(fault)
            return not fault["do"] and path in self.tree
        fault = self.fault("CWD", name)
        if fault["do"] and fault["code"] != 550:
            self.refuse(fault)
        return not fault["do"] and self.tree.get(path, b"") is None

    def change(self, name):
        self.begin()
        fault = self.fault("CWD", name)
        if fault["do"]:
            self.refuse(fault)
        if self.tree.get(self.path(name), b"") is not None:
            self.refuse({"code": 550, "words": "no such folder"})
        self.cwd = self.path(name)

    def make(self, name):
        self.begin()
        fault = self.fault("MKD", name)
        if fault["do"]:
            self.refuse(fault)
        path = self.path(name)
        if path in self.tree or self.tree.get(posixpath.dirname(path), b"") is not None:
            self.refuse({"code": 550, "words": "cannot make it"})
        self.tree[path] = None

    def delete(self, name):
        self.begin()
        fault = self.fault("DELE", name)
        if fault["do"]:
            self.refuse(fault)
        if self.tree.get(self.path(name)) is None:
            self.refuse({"code": 550, "words": "no such file"})
        del self.tree[self.path(name)]

    def open_data(self):
        fault = self.fault("PASV" if self.passive else "PORT", None)
        if fault["do"]:
            self.refuse(fault)

    def put(self, name, content):
        self.begin()
        self.open_data()
        fault = self.fault("STOR", name)
        if fault["do"] in ("refuse", "end_refuse"):
            self.refuse(fault)
        if fault["do"] in ("no_reply", "cut_data"):
            raise OperationError(self.cut_text if fault["do"] == "cut_data" else ERROR_TEXTS[12030])
        if fault["do"] == "silent":
            raise OperationError(ERROR_TEXTS[12002])
        path = self.path(name)
        if self.tree.get(path, b"") is None:
            self.refuse({"code": 553, "words": "not a file"})
        self.tree[path] = content


# -- the run --------------------------------------------------------------------------------------------------------------


class FailureExit(Exception):
    """The run goes to the failure exit."""


class PlainExit(Exception):
    """The run ends as it stands."""


class Run:
    """The run. `events` are tuples; ("progress", must, state) may be passed over when `must` is not set."""

    def __init__(self, home, remote, answers=(), has_ping=False, status_first=False):
        self.user_path = with_separator(os.path.abspath(home)) + "UserData/"
        self.remote, self.answers = remote, list(answers)
        self.has_ping, self.status_first = has_ping, status_first
        self.events = []
        self.state = {"caption": "FTP by Velloria", "title": ANY, "text": ANY, "max": ANY, "value": ANY, "ok": False}
        self.exit_code = 0
        self.uploaded = set()     # FileIDs
        self.copied = {}          # local paths and contents
        self.lists = {name: self.stored_list(name) for name in ("upload.tmp", "uploadold.tmp", "uploadlog.tmp")}
        self.last = ("", "")
        self.register, self.looked_at = Register(home), []
        diary = Profile(self.user_path + "diary.ini")
        self.data_path = with_separator(diary.text("ALL", "DataPath"))
        self.host, self.id = diary.text("FTP", "URL"), diary.text("FTP", "ID")
        self.start = diary.text("FTP", "StartFolder")
        self.ping = diary.number("FTP", "PING") != 0
        self.html_only = diary.number("FTP2", "HTMLOnlyUpload") != 0
        self.sound = diary.text("FTP2", "SoundFile")
        self.execute()

    # -- what is shown

    def show(self, must=True, **changes):
        self.state = self.state | changes
        self.events.append(("progress", must, self.state))

    def status(self, text):
        self.events.append(("status", text))

    def box(self, kind, *lines, buttons="ok"):
        answer = "ok"
        if buttons == "yesno":
            answer = self.answers.pop(0) if self.answers else "no"
        self.events.append(("message", kind, "Velloria", "\n".join(lines), buttons, answer))
        return answer

    def end_with(self, status, title, *lines):
        """Title, text and status of a failure; which comes first is open."""
        if self.status_first:
            self.status(status)
        self.show(title=title, text="\n".join(lines))
        if not self.status_first:
            self.status(status)

    def explain(self, error):
        """What is known beyond the text that stands on the status panel."""
        if error.reason != error.text:
            self.status("エラー：" + error.reason)

    def fail(self, error, *arguments):
        self.end_with(*arguments)
        self.explain(error)
        raise FailureExit

    # -- lists

    def stored_list(self, name):
        try:
            with open(self.user_path + name, "rb") as file:
                return file.read()
        except FileNotFoundError:
            return None

    def rows(self, name):
        lines = re.split(r"\r\n|\r|\n", decode_ansi(self.lists[name]))
        for line in lines[:-1] if lines[-1] == "" else lines:
            folder, file = [decode_references(field) for field in line.split(",")[:2]]
            self.last = (with_separator(folder), file)
            yield self.last

    def count_local(self, name, kind):
        total = 0
        for folder, file in self.rows(name):
            if not os.path.isfile(folder + file):
                self.end_with("Upload File not exist!...Upload Failed.", "エラー",
                              f"アップロードする{kind}が存在しません。", f"({file} is not exist.)")
                raise PlainExit
            total += 1
        return total

    # -- folders

    def check_folder(self, name):
        self.status(f'Checking Folder "{name}" !')
        try:
            if self.remote.has_folder(to_page(name)):
                return True
        except OperationError as error:
            self.status(error.text)
            self.explain(error)
            self.box("critical", error.text)
            return False
        if self.box("question", f"フォルダ「{name}」が作成されていません。", "作成しますか？", buttons="yesno") == "no":
            self.box("information", "フォルダは作成しませんでした。",
                     f"日記保存先に「{name}」フォルダをご自分で作成して下さい。")
            return False
        try:
            self.remote.make(to_page(name))
        except OperationError as error:
            self.status(error.text)
            self.explain(error)
            self.box("critical", "フォルダの作成に失敗しました。", BUSY)
            return False
        self.status("Making Folder Successful!")
        return True

    def change_folder(self, path, name):
        shown = path[:path.rfind("/") + 1] if name == ".." else path + name
        self.status("Moving to " + shown)
        try:
            self.remote.change(to_page(name))
        except OperationError as error:
            self.status(error.text)
            self.explain(error)
            self.box("critical", "ディレクトリ変更ができませんでした。", BUSY)
            return False
        self.status(f"Change Directory {shown} is Completed!")
        return True

    def enter(self, path, name, shown, title):
        self.show(title=title, text=shown + "へ移動中")
        if not (self.check_folder(name) and self.change_folder(path, name)):
            self.show(text=shown + "へ移動失敗")
            raise FailureExit
        self.show(text=shown + "へ移動完了")

    # -- the phases

    def execute(self):
        self.show()
        try:
            self.phases()
        except PlainExit:
            self.exit_code = 1
            return
        except FailureExit:
            self.exit_code = 1
            self.show(must=False, text=self.state["text"] + "\n" + UNKNOWN)
            self.show(ok=True)
            self.events.append(("pointer", "default"))
            return
        self.finish()

    def phases(self):
        self.pre_flight()
        self.connect()
        if self.start:
            self.enter("", self.start, self.start, "ディレクトリの移動")
        if self.lists["uploadold.tmp"] is not None:
            self.delete_old()
        self.put_pages()
        self.lists["uploadold.tmp"] = self.lists["upload.tmp"]
        if not self.html_only:
            self.put_files()
        if self.lists["uploadlog.tmp"] is not None:
            self.put_logs()
            if self.html_only:
                raise FailureExit
            self.put_log_files()
            self.lists["uploadlog.tmp"] = None

    def pre_flight(self):
        if not self.host or not self.id:
            self.end_with("FTP_ID or FTP_URL is not invalid....Upload Failed.", "エラー",
                          "FTPのIDもしくはURLが設定されていません。", "(FTP_ID or FTP_URL is not invalid.)")
            raise PlainExit
        self.events.append(("pointer", "hourglass"))
        self.status("Checking...")
        if self.lists["upload.tmp"] is None:
            self.end_with("Upload File not exist!...Upload Failed.", "エラー",
                          "アップロードするファイルのリストが存在しません。", "(Upload.tmp is not exist.)")
            raise PlainExit
        self.pages = self.count_local("upload.tmp", "ファイル")
        self.logs = 0 if self.lists["uploadlog.tmp"] is None else self.count_local("uploadlog.tmp", "ログファイル")

    def connect(self):
        self.status("Starting Connection to " + self.host)
        self.show(title="接続確認中", text="インターネットへの接続成功。")
        try:
            self.remote.connect()
        except OperationError as error:
            self.end_with("Can't connect to " + self.host, "エラー", "FTPサーバーへの接続失敗。", "(FTP Connect Error.)")
            # These texts give no reason: it always comes after them. That of a lost connection depends on the moment.
            is_known = error.text == "" and error.reason
            self.events.append(("status", "エラー：" + error.reason) if is_known else ("status",))
            raise FailureExit from None
        self.show(text="FTP接続成功。")
        self.status("Connected to " + self.host)

    def find(self, file):
        try:
            return self.remote.has_file(to_page(file))
        except OperationError as error:
            self.fail(error, error.text, "エラー", "その他のエラー(FileDelete)。", f"({error.text})")

    def delete(self, file):
        try:
            self.remote.delete(to_page(file))
        except OperationError as error:
            self.fail(error, error.text, "エラー", "ファイルの削除に失敗。", f"({file} delete is missed.)")
        self.show(text=f"ファイル「{file}」を削除しました。")
        self.status(f"Deleting {file} is Completed!")

    def delete_old(self):
        self.show(must=False, title="ファイルの削除")
        for _, file in self.rows("uploadold.tmp"):
            if self.find(file):
                self.delete(file)

    def put(self, folder, file, is_text):
        """Sends a file, which was seen to be there."""
        with open(folder + file, "rb") as source:
            content = source.read()
        self.remote.put(to_page(file), on_the_wire(content) if is_text else content)

    def put_pages(self):
        self.show(must=False, max=max(self.pages, 1), value=0)
        done = 0
        for folder, file in self.rows("upload.tmp"):
            self.show(title="HTMLファイルアップロード",
                      text=f"ファイル「{file}」をアップロード中。({done}/{self.pages})")
            try:
                self.put(folder, file, True)
            except OperationError as error:
                self.fail(error, error.text, "HTMLアップロードエラー", "その他のエラー(FileUpload)。", f"({error.text})")
            done += 1
            self.show(value=done, text=f"ファイル「{file}」のアップロードに成功しました。({done}/{self.pages})")
            self.status(f'Upload "{file}" is Succeeded!')

    def waiting(self, logged):
        rows = [row for row in self.register.rows if not row["Uploaded"] and bool(row["Logged"]) == logged]
        self.looked_at += rows
        return [(row["FileID"], row["FileName"]) for row in rows if self.register.goes(row)]

    def put_registered(self, side, file):
        """A file that the site lacks is first copied from the data folder."""
        path, source = self.last[0] + "DiaryParts/" + file, self.data_path + side + "DiaryParts/" + file
        if path not in self.copied and not os.path.isfile(path):
            if not os.path.isfile(source):
                raise OperationError(ERROR_TEXTS[2])
            with open(source, "rb") as content:
                self.copied[path] = content.read()
        content = self.copied.get(path)
        if content is None:
            with open(path, "rb") as stored:
                content = stored.read()
        self.remote.put(to_page(file), content)

    def put_files(self):
        self.show(must=False, title="ファイルアップロード")
        self.looked_at += [row for row in self.register.rows if row["Uploaded"]]
        rows = self.waiting(False)
        if not rows:
            self.status("HTMLファイル以外にアップロード対象となるファイルはありません。")
            return
        self.enter(self.start, "DiaryParts", self.start + "\\DiaryParts", "ディレクトリの移動")
        self.show(must=False, max=len(rows), value=ANY)
        for number, file in rows:
            self.status("Uploading " + file)
            self.show(text=f"ファイル「{file}」をアップロードします。(0/{len(rows)})")
            try:
                self.put_registered("", file)
            except OperationError as error:
                self.fail(error, error.text, "ファイルアップロードエラー", "その他のエラー(OtherFileUpload)。",
                          f"({file}:{error.text})")
            self.show(value=0, text=f"ファイル「{file}」のアップロードに成功しました。(0/{len(rows)})")
            self.status("Upload Successful!")
            self.uploaded.add(number)
        self.show(title="元のディレクトリへの移動", text=self.start + "へ移動中")
        if not self.change_folder(self.start + "DiaryParts/", ".."):
            self.show(text=self.start + "へ移動失敗")
            raise FailureExit
        self.show(text=self.start + "へ移動完了")

    def put_logs(self):
        self.enter(self.start, "DiaryLog", self.start + "\\DiaryLog", "ログ：DiaryLogディレクトリへの移動")
        self.done = 0
        self.show(title="ログ：ファイルのアップロード", max=max(self.logs, 1), value=0)
        for folder, file in self.rows("uploadlog.tmp"):
            if self.find(file):
                self.show(text=f"ファイル「{file}」を削除しています。")
                self.delete(file)
            self.show(text=f"ファイル「{file}」をアップロードします。")
            try:
                self.put(folder, file, True)
            except OperationError as error:
                self.status(error.text)
                self.explain(error)
                raise FailureExit from None
            self.done += 1
            self.show(value=self.done,
                      text=f"ファイル「{file}」のアップロードに成功しました。({self.done}/{self.pages})")
            self.status(f'Upload "{file}" is Succeeded!')

    def put_log_files(self):
        rows = self.waiting(True)
        if not rows:
            return
        shown = self.start + "\\DiaryLog"
        self.enter(self.start + "DiaryLog/", "DiaryParts", shown + "\\DiaryParts",
                   "ログ：DiaryPartsディレクトリへの移動")
        self.show(text=shown + "へ移動中")
        self.show(title="ログ：ファイルのアップロード", max=len(rows), value=0)
        for number, file in rows:
            self.status("Uploading " + file)
            try:
                self.put_registered("DiaryLog/", file)
            except OperationError as error:
                self.fail(error, error.text, "エラー", f"ファイル「{file}」のアップロードに失敗。",
                          f"({self.last[1]} delete is missed.)", BUSY)
            self.done += 1
            self.show(value=min(self.done, len(rows)),
                      text=f"ファイル「{file}」のアップロードに成功しました。({self.done}/{len(rows)})")
            self.status("Upload Successful!")
            self.uploaded.add(number)

    def finish(self):
        self.status("Uploading Files is Success!")
        self.events.append(("sound", f'Play "{self.sound}"'))
        self.show(title="Successful", text="日記のアップロードに成功しました。")
        self.show(must=not self.ping, ok=True)
        self.events.append(("pointer", "default"))
        self.events += [("status", text) for text in self.register.told(self.looked_at)]
        if self.ping and not self.has_ping:
            self.events += [("failure",), ("status", "エラー：プラグインを使用できません。")]
            self.exit_code = 1


# -- comparing ------------------------------------------------------------------------------------------------------------


def fits(expected, found):
    return all(expected[key] is ANY or expected[key] == found[key] for key in expected)


def is_between(before, after, found):
    return all(found[key] in (before[key], after[key]) or after[key] is ANY for key in found)


def first_event_difference(expected, found):
    """None when the program's events are the expected ones, otherwise what differs."""
    at, before = 0, None
    for number, event in enumerate(found):
        if event[0] != "progress":
            while at < len(expected) and expected[at][0] == "progress" and not expected[at][1]:
                at += 1
            if at == len(expected):
                return f"one too many: {event}"
            wanted = expected[at]
            if event[:len(wanted)] != wanted:
                return f"event {number}: expected {wanted}, found {event}"
            at += 1
            continue
        state = event[1]
        ahead = at
        while ahead < len(expected) and expected[ahead][0] == "progress":
            if fits(expected[ahead][2], state):
                at, before = ahead + 1, state
                break
            if expected[ahead][1]:
                ahead = len(expected)
            ahead += 1
        else:
            if before is None or not (fits(before, state) or any(
                    is_between(before, wanted[2], state) for wanted in expected[at:] if wanted[0] == "progress")):
                wanted = expected[at] if at < len(expected) else "nothing"
                return f"event {number}: expected {wanted}, found {event}"
    left = [event for event in expected[at:] if event[0] != "progress" or event[1]]
    return f"not shown: {left[0]}" if left else None
