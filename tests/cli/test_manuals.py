"""The manuals are what the script makes of their sources, hold all that they show, and name the commands and keys that
the program has."""

import email
import html
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
FACTORY = ROOT / "factory"
SRC = ROOT / "src"
MANUALS = {"SimpleManual.mht": "simple.htm", "Manual.mht": "manual.htm"}

MODIFIERS = ["Ctrl", "Alt", "Shift"]
# A key of its own name in the toolkit, or as it is called there.
KEYS = {name: name for name in ["Tab", "Space", "Menu", "Home", "End", "Up", "Down", "Left", "Right", "PageUp",
                                "PageDown"]} | {"Enter": "Return", "Esc": "Escape"}
# What the toolkit's own controls and menu bars do.
TOOLKIT = {"Ctrl+C", "Ctrl+X", "Ctrl+V", "Ctrl+A", "Tab", "Shift+Tab", "Alt", "Alt+F"}


def source(manual):
    return (ROOT / "docs" / "manual" / MANUALS[manual]).read_text(encoding="utf-8")


def texts(markup, page):
    return [html.unescape(re.sub(r"<.*?>", "", text)) for text in re.findall(markup, page)]


def commands(page):
    """Paths of captions: ["ファイル", "終了"]."""
    return [path.split(" → ") for path in texts(r'<b class="menu">(.*?)</b>', page)]


def keys(page):
    return texts(r"<kbd>(.*?)</kbd>", page)


def plain(caption):
    return re.sub(r"\(&.\)", "", caption).replace("&", "")


class Menu:
    """The Japanese menus by src/shell/menu_table.cpp."""

    def __init__(self):
        row = re.compile(r'\{(\d), "(\w+)"_L1, u"[^"]*", u"([^"]*)"\}')
        rows = row.findall((SRC / "shell" / "menu_table.cpp").read_text(encoding="utf-8"))
        self.paths = set()
        self.captions = {}  # by the command's name
        above = []
        for depth, name, caption in rows:
            above = above[:int(depth)] + [plain(caption)]
            self.captions[name] = plain(caption)
            # The menu of the right button has no caption on the screen.
            self.paths.add(tuple(above[1:] if above[0] == "ポップアップメニュー" else above))


class Made(unittest.TestCase):
    def test_they_are_what_the_script_makes(self):
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run([sys.executable, str(ROOT / "scripts" / "make-manuals"), folder], check=True)
            self.assertEqual(sorted(os.listdir(folder)), sorted(MANUALS))
            for name in MANUALS:
                made = (pathlib.Path(folder) / name).read_bytes()
                self.assertTrue((FACTORY / name).read_bytes() == made, f"{name}: run scripts/make-manuals")

    def test_every_line_ends_in_cr_lf_and_is_short_ascii(self):
        for name in MANUALS:
            data = (FACTORY / name).read_bytes()
            self.assertEqual(data.count(b"\n"), data.count(b"\r\n"), name)
            self.assertTrue(data.isascii(), name)
            self.assertLessEqual(max(map(len, data.split(b"\r\n"))), 78, name)

    def test_the_page_arrives_as_it_was_written_but_for_style_sheet_and_pictures(self):
        for name in MANUALS:
            page, *pictures = email.message_from_bytes((FACTORY / name).read_bytes()).get_payload()
            read = page.get_payload(decode=True).decode().replace("\r\n", "\n")
            self.assertEqual(read.partition("<body>")[2].replace("cid:", ""),
                             re.sub(r'(?<=<img src=")[^"]*/(\w+)\.gif', lambda file: file[1].lower(),
                                    source(name).partition("<body>")[2]))
            self.assertIn("<style>\nbody {", read)
            for picture in pictures:
                self.assertEqual(picture.get_payload(decode=True),
                                 (FACTORY / picture["Content-Location"]).read_bytes())

    def test_they_need_nothing_from_elsewhere_and_run_nothing(self):
        for name in MANUALS:
            page, *pictures = email.message_from_bytes((FACTORY / name).read_bytes()).get_payload()
            read = page.get_payload(decode=True).decode()
            held = {"cid:" + picture["Content-ID"].strip("<>") for picture in pictures}
            self.assertEqual(set(re.findall(r'src="(.*?)"', read)), held, name)
            self.assertNotRegex(read, r"(?i)<script|<link|<iframe|<object|\son\w+=|javascript:|url\(|@import")

    def test_they_have_no_links(self):
        """The browser window follows none in such a file, not even to a heading of the same page."""
        for name in MANUALS:
            self.assertNotIn("<a ", source(name), name)

    def test_every_topic_opens_by_its_heading(self):
        for name in MANUALS:
            page = source(name)
            topics = re.findall(r'<details(?: open)?>\n<summary><h2 id="\w+">.+</h2></summary>\n', page)
            self.assertGreater(len(topics), 5, name)
            self.assertEqual(len(topics), page.count("<h2"), name)
            self.assertEqual(len(topics), page.count("</details>"), name)


class Words(unittest.TestCase):
    def setUp(self):
        self.menu = Menu()

    def test_the_menu_table_was_read(self):
        self.assertIn(("ファイル", "終了"), self.menu.paths)
        self.assertIn(("元に戻す",), self.menu.paths)
        self.assertIn(("ツール", "各種履歴の削除", "URL履歴の削除"), self.menu.paths)

    def test_every_command_is_in_the_menus(self):
        for name in MANUALS:
            self.assertTrue(commands(source(name)), name)
            for path in commands(source(name)):
                self.assertIn(tuple(path), self.menu.paths, f"{name}: {' → '.join(path)}")

    def test_every_key_is_one_that_the_windows_know(self):
        parts = ("desktop", "editor", "shell", "site", "browser")
        windows = "\n".join(path.read_text(encoding="utf-8") for part in parts for path in (SRC / part).rglob("*.cpp"))
        for name in MANUALS:
            self.assertTrue(keys(source(name)), name)
            for combination in set(keys(source(name))) - TOOLKIT:
                *modifiers, key = combination.split("+")
                self.assertEqual(modifiers, [word for word in MODIFIERS if word in modifiers], f"{name}: {combination}")
                self.assertTrue(key in KEYS or re.fullmatch(r"[A-Z0-9]|F[1-9]|F1[0-2]", key), f"{name}: {combination}")
                sequences = re.findall(r'u"((?:\w+\+)*\w+)"_s', windows)
                # The panes are counted from the first one's key.
                known = "1" if key in "23" else KEYS.get(key, key)
                self.assertTrue(combination in sequences or re.search(rf"\bKey_{known}\b", windows),
                                f"{name}: {combination}")

    def test_a_key_beside_a_command_is_the_one_of_the_menu(self):
        tables = "\n".join(path.read_text(encoding="utf-8") for path in SRC.glob("*/forms/*_commands.cpp"))
        shortcuts = {self.menu.captions[command]: keys.replace("CTRL", "Ctrl").replace("Key_", "").replace(" | ", "+")
                     for command, keys in re.findall(r'\{"(\w+)"_L1,\s*\{([^},]+)', tables.replace("Qt::", ""))
                     if command in self.menu.captions}
        self.assertEqual(shortcuts["日記を検索"], "Ctrl+F")
        command, key = r'<b class="menu">([^<]*)</b>', r"<kbd>([^<]*)</kbd>"
        for name in MANUALS:
            page = html.unescape(source(name))
            pairs = re.findall(f"{command}[　（]{key}", page)
            pairs += [pair[::-1] for pair in re.findall(f"<td>{key}</td><td>{command}</td>", page)]
            self.assertTrue(pairs, name)
            for path, combination in pairs:
                self.assertEqual(combination, shortcuts.get(path.split(" → ")[-1]), f"{name}: {path}")


class Templates(unittest.TestCase):
    """What the manual says of blog templates is what the program reads."""

    def setUp(self):
        page = source("Manual.mht")
        self.chapter = re.search(r'<h2 id="template">.*?</details>', page, re.S)[0]
        self.codes = set(" ".join(texts(r"<code>(.*?)</code>", self.chapter)).split())

    def constants(self, file, namespace):
        text = (SRC / file).read_text(encoding="utf-8")
        return re.findall(r'u"([^"]+)"', re.search(rf"namespace {namespace} \{{.*?\n\}} // namespace", text, re.S)[0])

    def test_every_key_is_told_and_no_other(self):
        keys = {key for key in self.constants("core/blog_keys.h", "blog_template")
                if key not in ("General", "Simple", "NAME", "SELECT", "TRUE", "FALSE", "0")}
        self.assertGreater(len(keys), 40)
        told = {code.replace("〇〇", switch) for code in self.codes for switch in ("UnderWrite", "AcceptComment", "AcceptPing")}
        self.assertEqual(keys - told, set())
        written = {code.split("=")[0] for code in told
                   if re.fullmatch(r"(RADIO_VALUE|VALUE|Type|FORM)_\w+(=.*)?|\w+URL|Check\w+|HTML2TXT|Login\w+", code)}
        self.assertEqual(written - keys, set())

    def test_every_word_is_told(self):
        words = set(self.constants("blog/template_words.h", "velloria::blog::words"))
        self.assertGreater(len(words), 15)
        for word in words:
            self.assertTrue(word in self.codes or f"「{word}」" in self.chapter or f"={word}" in self.chapter, word)

    def test_the_example_is_a_good_template(self):
        example = html.unescape(re.search(r"<pre><code>(; example.com.*?)</code></pre>", self.chapter, re.S)[1])
        with tempfile.TemporaryDirectory() as folder:
            file = pathlib.Path(folder) / "mihon.blg"
            file.write_bytes(example.encode("cp932"))
            done = subprocess.run([os.path.join(os.environ["VELLORIA_PROGRAM"], "velloria-cli"), "blog", "check", str(file)],
                                  capture_output=True, encoding="utf-8")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))


if __name__ == "__main__":
    unittest.main()
