"""A diary whose entries go to a real blog from the windows, and words to look at both sides."""

import json
import os
import subprocess
import sys

for folder in ("cli", "support"):
    sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", folder))

from home import CliTest, read  # noqa: E402  (the folders have to be known first)
from patience import PATIENCE_SECONDS  # noqa: E402

if "VELLORIA_POST_ENTRY" not in os.environ:
    raise RuntimeError("VELLORIA_POST_ENTRY must name the program that posts from the windows")
POST_ENTRY = os.environ["VELLORIA_POST_ENTRY"]
WITH_DISPLAY = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts", "with-display")

DONE = "information: Blog投稿完了！\r\n画像ファイルは手動でアップロードしてください。"
DONE_STATUS = "日記投稿完了！画像ファイルは手動でアップロードして下さい。"
EMPTIED = "投稿しましたが、ページが本文を空にして送りました。ブログの本文を確かめてください。"
FAILED_STATUS = "日記投稿失敗！"
NO_POSTING_PAGE = "information: 投稿画面にならないので、投稿を中止します"


def stage(name):
    return f"critical: エラーが発生しました。\r\nError_Code:{name}"


class Told:
    """What a step brought."""

    def __init__(self, answer):
        self.events, self.address = answer["events"], answer["address"]

    def __repr__(self):
        return json.dumps([self.events, self.address], ensure_ascii=False, indent=1)

    def texts(self, kind):
        return [event["text"] for event in self.events if event["event"] == kind]

    @property
    def boxes(self):
        """Boxes, questions and prompts in turn."""
        return [f"{event.get('kind', 'input')}: {event['text']}" for event in self.events
                if event["event"] in ("message", "input")]

    @property
    def windows(self):
        return [event for event in self.events if event["event"] == "window"]

    @property
    def unused(self):
        return [event for event in self.events if event["event"] in ("not asked", "not shown")]


class Desktop:
    """The windows of one run of the program, as long as the `with` around it."""

    def __init__(self, home, environment):
        self.process = subprocess.Popen([WITH_DISPLAY, POST_ENTRY, home], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.PIPE, text=True, env=environment)

    def __enter__(self):
        return self

    def __exit__(self, kind, *_):
        """A person closes the main window."""
        _, said = self.process.communicate(timeout=PATIENCE_SECONDS)
        if self.process.returncode and kind is None:
            raise RuntimeError(f"the windows ended with {self.process.returncode}: {said}")

    def take(self, **step):
        print(json.dumps(step), file=self.process.stdin, flush=True)
        line = self.process.stdout.readline()
        if not line:
            raise RuntimeError("the windows have ended: " + self.process.stderr.read())
        return Told(json.loads(line))


class BlogTest(CliTest):
    """Fixture: a home whose entries go to the blog of the template `blog` with the data in `self.user`."""

    blog = None

    def setUp(self):
        super().setUp()
        self.user = {}

    def desktop(self):
        return Desktop(self.home, self.environment(TMPDIR=os.environ.get("TMPDIR")))

    def post(self, desktop, title, body="本文", entry=None, **step):
        """A new entry goes to the blog; `entry` has more members of it."""
        told = desktop.take(entry={"title": title, "body": body} | (entry or {}), blog=self.blog, user=self.user, **step)
        self.assertEqual(told.unused, [], told)
        return told

    def must_post(self, *arguments, **step):
        told = self.post(*arguments, **step)
        self.assertEqual((told.boxes[-1:], told.texts("status")[-1:]), ([DONE], [DONE_STATUS]), told)
        return told

    def posted(self):
        """The lines of "blogposts.jsonl"."""
        path = self.data + "blogposts.jsonl"
        return [json.loads(line) for line in read(path).splitlines()] if os.path.exists(path) else []

    @property
    def protocol(self):
        return read(self.data + "blog.log").decode()
