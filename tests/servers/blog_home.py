"""A diary whose entries go to a real blog from the windows, and words to look at both sides."""

import json
import os
import subprocess
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "cli"))

from home import CliTest, read  # noqa: E402  (the folder has to be known first)

POST_ENTRY = os.environ.get("VELLORIA_POST_ENTRY", "").split()  # with what gives it a screen

DONE = "information: Blog投稿完了！\r\n画像ファイルは手動でアップロードしてください。"
DONE_STATUS = "日記投稿完了！画像ファイルは手動でアップロードして下さい。"
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
        """Boxes and questions in turn."""
        return [f"{event['kind']}: {event['text']}" for event in self.events if event["event"] == "message"]

    @property
    def windows(self):
        return [event for event in self.events if event["event"] == "window"]

    @property
    def unused(self):
        return [event for event in self.events if event["event"] in ("not asked", "not shown")]


class Desktop:
    """The windows of one run of the program, as long as the `with` around it."""

    def __init__(self, home, environment):
        self.process = subprocess.Popen([*POST_ENTRY, home], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.PIPE, text=True, env=environment)

    def __enter__(self):
        return self

    def __exit__(self, kind, *_):
        """A person closes the main window."""
        _, said = self.process.communicate(timeout=120)
        if self.process.returncode and kind is None:
            raise RuntimeError(f"the windows ended with {self.process.returncode}: {said}")

    def take(self, **step):
        print(json.dumps(step), file=self.process.stdin, flush=True)
        line = self.process.stdout.readline()
        if not line:
            raise RuntimeError("the windows have ended: " + self.process.stderr.read())
        return Told(json.loads(line))


class BlogTest(CliTest):
    """Fixture: a home with the template `blog`, the user's data and addresses set by `tell_user`."""

    blog = None

    def setUp(self):
        super().setUp()
        self.user = {}

    def desktop(self, home=None):
        kept = ("DISPLAY", "TMPDIR", "LIBGL_ALWAYS_SOFTWARE")
        environment = {name: os.environ[name] for name in kept if name in os.environ}
        return self.enterContext(Desktop(home or self.home, self.environment(**environment)))

    def post(self, desktop, title, body="本文", **step):
        """A new entry goes to the blog; members of the entry are given as `entry`."""
        entry = {"title": title, "body": body} | step.pop("entry", {})
        told = desktop.take(entry=entry, blog=self.blog, user=step.pop("user", self.user), **step)
        self.assertEqual(told.unused, [], told)
        return told

    def must_post(self, *arguments, **step):
        told = self.post(*arguments, **step)
        self.assertEqual(told.boxes[-1:], [DONE], told)
        self.assertEqual(told.texts("status")[-1:], [DONE_STATUS], told)
        return told

    def posted(self):
        """The lines of "blogposts.jsonl"."""
        try:
            return [json.loads(line) for line in read(self.data + "blogposts.jsonl").splitlines()]
        except FileNotFoundError:
            return []

    @property
    def protocol(self):
        return read(self.data + "blog.log").decode()
