"""A check for a newer program, written independently of the program: what it shows and leaves for one offer."""

import os
import re

from peer_text import CRLF, Profile, decode_ansi, encode_page

VERSION = "2.2.0"
BUSY = "サーバーが混んでいる可能性もありますので、時間帯を変更してお試し下さい。"
BLOCK = 1024


class Page:
    """What a URL gives to a client that goes by the standard. `content` is None when no answer can be had at all."""

    def __init__(self, content, status=200):
        self.content = content if status < 400 else b""
        self.is_answer = content is not None


class Run:
    """Leaves `events`, `exit_code`, `launches` and `files`, what it writes into the program's folder, by name.

    `present` is what the folder holds, `earlier` those of its files that are archives of earlier checks. Speeds in the
    progress texts stand as "{speed}"."""

    def __init__(self, home, addresses, pages, answers, present, earlier):
        self.home, self.pages, self.answers = os.path.join(home, ""), pages, list(answers)
        self.present, self.earlier = present, earlier
        self.events, self.files, self.exit_code, self.launches = [], {}, 1, False
        self.check(addresses)

    # -- what is shown ------------------------------------------------------------------------------------------------

    def status(self, text):
        self.events.append(("status", text))

    def box(self, kind, *lines):
        self.events.append(("message", kind, "Velloria", CRLF.join(lines), "ok", "ok"))

    def asks(self, *lines):
        answer = self.answers.pop(0) if self.answers else "no"
        self.events.append(("message", "question", "Velloria", CRLF.join(lines), "yesno", answer))
        return answer == "yes"

    def progress(self, is_done, *lines):
        self.events.append(("progress", "ダウンロード on HTTP", CRLF.join(lines), is_done))

    # -- the check ----------------------------------------------------------------------------------------------------

    def check(self, addresses):
        self.events.append(("navigate", addresses["Software"]))
        self.events.append(("pointer", "hourglass"))
        self.status("Openning Internet")
        self.look(addresses["UpdateFolder"])
        self.events.append(("pointer", "default"))

    def look(self, folder):
        self.status("Downloading update.txt")
        page = self.download(folder + "update.txt", "update.txt", shows=False)
        if not page:
            self.box("critical", "update.txtの取得に失敗しました。")
            return
        self.files["update.txt"] = encode_page(decode_ansi(page))
        offers = self.read_offers(self.files["update.txt"])

        def is_newer(section):
            return offers.text(section, "version", "1.6.0") > VERSION

        if is_newer("Patch") and VERSION > offers.text("Patch", "requiredversion", "1.6.0"):
            self.offer(offers, "Patch")
        elif is_newer("Release"):
            self.offer(offers, "Release")
        else:
            self.status("Sorry,New Version is not released!")
            self.box("information", "確認しましたが、新しいバージョンはありませんでした。")
            self.exit_code = 0

    def read_offers(self, content):
        path = os.path.join(self.home, "expected update.txt")
        with open(path, "wb") as file:
            file.write(content)
        offers = Profile(path)
        os.remove(path)
        return offers

    def offer(self, offers, section):
        version, url, name = (offers.text(section, key, default) for key, default in
                              (("version", "1.6.0"), ("URL_Full", ""), ("FileName", "")))
        if not self.asks(f"新しいバージョンが存在します({version})。", "ダウンロードしますか？"):
            return
        self.status("ダウンロード実行中...")
        archive = self.download(url, name, shows=True) if self.may_be_saved(name) else b""
        if not archive:
            self.box("critical", "ダウンロードに失敗しました。")
            return
        self.files[name] = archive
        self.files["update.lst"] = encode_page(name + CRLF)    # what a later check may replace
        self.box("information", "ダウンロードが完了しました。")
        if "VellUpdater.exe" not in self.present:
            self.box("critical", "Velloria Updaterが見つかりません。")
        elif not self.asks("VelloriaUpdaterを起動しますか？", "(Velloriaは終了します。)"):
            self.exit_code = 0
        elif "UnLHA32.DLL" not in self.present:
            self.box("critical", "「UNLHA32.DLL」が存在しません。", "インストール後、再度実行してください。")
        else:
            self.launches, self.exit_code = True, 0

    def may_be_saved(self, name):
        """An archive by its ending, and none of the programs; of files that are there an earlier archive alone."""
        plain = re.fullmatch(r"[^./\\:*?\"<>|\0-\x1f\x7f][^/\\:*?\"<>|\0-\x1f\x7f]*\.(lzh|zip|exe|deb|tar\.gz)", name, re.I)
        programs = r"(velloria(-cli|-sound)?|vellupdater|velluptmp|vellmemo)\.exe"
        if not plain or ".." in name or re.fullmatch(programs, name, re.I):
            return False
        return name not in self.present | set(self.files) or name in self.earlier

    # -- the download -------------------------------------------------------------------------------------------------

    def download(self, url, name, shows):
        file = self.home + name
        self.status(f"Connectiong to {url}")
        page = self.pages.get(url, Page(None))
        if not page.is_answer:
            self.status(f"Can't connect to {url}")
            self.box("critical", "サーバーに接続できませんでした。", BUSY)
            return b""
        self.status(f"Connected to {url}")
        if shows:
            self.progress(False, "ダウンロード中...", file)
        self.status(f"Downloading {url}")
        size = len(page.content)
        if shows:
            for count in [*range(BLOCK, size, BLOCK), *([size] if size else [])]:
                self.progress(False, "ダウンロード中...", file, f"...{count} bytes received({{speed}}kbps).")
        self.status(f"Saveing {url} to {file}")
        if page.content:
            if shows:
                self.progress(True, "ダウンロード完了！", file, f"{size}bytes received({{speed}}kbps).")
            self.status(f"Downloading {url} is Succeeded!")
            return page.content
        self.status(f"Can't download {url}")
        if shows:
            self.progress(True, "ダウンロード失敗", BUSY)
        self.box("critical", "update.txtをダウンロードできませんでした。", BUSY)
        return b""
