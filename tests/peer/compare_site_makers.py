#!/usr/bin/env python3
"""Exports random diaries as Markdown, lets Hugo and Jekyll make sites of them, and compares what both show with what the
entries hold: title, day, private or not, and every character of the texts. By hand, where both are installed:

    compare_site_makers.py --cli PROGRAM_FOLDER/velloria-cli --factory PROGRAM_FOLDER --seeds 1:20
"""

import argparse
import html.parser
import json
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import tempfile

PIECES = ["今日は晴れ。", "\r\n", "\r\n\r\n", " ", "<P>", "</P>", "<b>太字</b>", "<br>", "<i>", "</i>", "<ul><li>一<li>二</ul>", "---", "# 見出し",
          "- 項目", "* *強調* _下線_", "1. 番号", "> 引用", "    字下げ", "`code`", "{{< figure >}}", "{{% x %}}", "{{ page.title }}", "{% if x %}",
          "&lt;b&gt;", "&amp;", '"quoted"', "it's -- ...", "3 < 4", "|a|b|", "~~x~~", "http://www.example.com/", ":smile:", "$$x$$",
          "<pre>\r\n  a\r\n\r\n    b\r\n</pre>", "<div>", "</div>", "<table><tr><td>甲<tr><td>乙</table>", "[^1]", "[a](b)", "<!-- 注 -->", "😂",
          "<font color=red>赤</font>", "\\", "<script>var a = 1 < 2;</script>"]

HUGO = {"config.toml": 'baseURL = "http://x/"\ntimeZone = "Asia/Tokyo"\nbuildFuture = true\n',
        "layouts/_default/single.html": "<h1>{{ .Title }}</h1><time>{{ .Date.Format \"2006/01/02\" }}</time><article>{{ .Content }}</article>",
        "layouts/_default/list.html": "list"}
JEKYLL = {"_config.yml": 'timezone: Asia/Tokyo\nfuture: true\npermalink: "/:year-:month-:day-:title.html"\n'
                         'defaults:\n  - scope: {path: ""}\n    values: {layout: default}\n',
          "_layouts/default.html": '<h1>{{ page.title | escape }}</h1><time>{{ page.date | date: "%Y/%m/%d" }}</time>'
                                   "<article>{{ content }}</article>"}


class Text(html.parser.HTMLParser):
    """What a page reads like, blanks apart."""

    def __init__(self, page):
        super().__init__()
        self.data = []
        self.feed(page)
        self.close()

    def handle_data(self, data):
        self.data.append(data)

    @staticmethod
    def of(page):
        return re.sub(r"\s+", "", "".join(Text(page).data))


def random_entry(chance):
    texts = ["".join(chance.choices(PIECES, k=chance.randint(0, 25))) for _ in range(2)]
    return {"Day": f"{chance.randint(1990, 2030)}/{chance.randint(1, 12):02}/{chance.randint(1, 28):02}", "Contents": texts[0],
            "Title": "題" + chance.choice(["", ": 朝", ' "x"', " & <b>", " #1", " {{ x }}"]), "Extend": chance.choice(["", texts[1]]),
            "Private": chance.random() < 0.2}


def wanted(entry):
    return entry["Title"].replace(" ", ""), entry["Day"], Text.of(entry["Contents"]) + Text.of(entry["Extend"])


def shown(page):
    title, day, article = re.search(r"<h1>(.*?)</h1><time>(.*?)</time><article>(.*)</article>", page, re.S).groups()
    return Text.of(title), day, Text.of(article)


def make(site, files, posts, source, command):
    for name, text in files.items():
        (site / name).parent.mkdir(parents=True, exist_ok=True)
        (site / name).write_text(text, encoding="utf-8")
    shutil.copytree(source, site / posts)
    result = subprocess.run(command, cwd=site, capture_output=True, encoding="utf-8", check=False,
                            env={**os.environ, "LANG": "C.UTF-8"})
    if result.returncode:
        sys.exit(f"{command[0]}: {result.stdout}{result.stderr}")


def compare(arguments, seed, work):
    chance = random.Random(seed)
    home = work / "home"
    shutil.copytree(arguments.factory, home, symlinks=True)
    run = [arguments.cli, "--home", str(home)]
    entries = [random_entry(chance) for _ in range(30)]
    lines = "".join(json.dumps(entry) + "\n" for entry in entries)
    keys = json.loads(subprocess.run([*run, "--json", "entry", "put"], input=lines.encode(), check=True, capture_output=True).stdout)
    subprocess.run([*run, "exchange", "export", "markdown", str(work / "out")], check=True, capture_output=True)
    make(work / "hugo", HUGO, "content/posts", work / "out", ["hugo"])
    make(work / "jekyll", JEKYLL, "_posts", work / "out", ["jekyll", "build"])
    failures = 0
    for entry, key in zip(entries, keys):
        name = f"{key['Day'].replace('/', '-')}-{key['Number']}"
        for page in (work / "hugo/public/posts" / name / "index.html", work / "jekyll/_site" / f"{name}.html"):
            if page.exists() == entry["Private"]:
                print(f"seed {seed}: {page} should {'not ' if entry['Private'] else ''}be there")
                failures += 1
            elif page.exists() and shown(page.read_text(encoding="utf-8")) != wanted(entry):
                print(f"seed {seed}: {page}\n  {shown(page.read_text(encoding='utf-8'))}\n  {wanted(entry)}\n  {entry['Contents']!r}")
                failures += 1
    return failures


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--cli", required=True)
    parser.add_argument("--factory", required=True)
    parser.add_argument("--seeds", default="1:20")
    arguments = parser.parse_args()
    first, last = map(int, arguments.seeds.split(":"))
    failures = 0
    for seed in range(first, last + 1):
        with tempfile.TemporaryDirectory() as work:
            failures += compare(arguments, seed, pathlib.Path(work))
    print(f"{last - first + 1} diaries, {failures} differences")
    return failures != 0


if __name__ == "__main__":
    sys.exit(main())
