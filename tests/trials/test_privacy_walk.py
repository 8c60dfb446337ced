"""A random walk through everything that makes or sends pages, in a diary with private entries and private pictures:
what was never public lies in no folder that is published, is in no list of what goes up, and on no server."""

import os
import unittest

from home import CliTest, entry, read, write
from upload_server import UploadServer, address_of, can_serve
from writing_commands import choice, trials

DAYS = [f"2004/{month:02}/{day:02}" for month in (1, 2) for day in (3, 4, 28)]
FOLDERS = (b"/", b"/pub", b"/pub/DiaryParts", b"/pub/DiaryLog", b"/pub/DiaryLog/DiaryParts")
# Pages for the person's own screen lie where the data lies, and are no part of the site.
LOCAL_PAGES = {"tmp.htm", "oldtmp.htm", "findtmp.htm", "Customize.htm"}


class PrivacyWalk(CliTest):
    def setUp(self):
        super().setUp()
        if not can_serve():
            self.skipTest("only the superuser may serve on port 21")
        self.use_site()
        self.random = choice(int(os.environ.get("VELLORIA_FIRST_TRIAL", "0")))
        self.folders = {self.site}
        self.entries = {}       # (day, number): [mark, is private, was public, pictures]
        self.deleted = []       # the same of those that are gone
        self.marks = 0
        self.server = UploadServer(address_of(211), dict.fromkeys(FOLDERS), features=("SIZE", "FEAT", "PWD"))
        self.server.start()
        self.addCleanup(self.server.stop)
        for key, value in {"ID": "u", "URL": self.server.listener.getsockname()[0], "StartFolder": "pub"}.items():
            self.set_key("diary.ini", "FTP", key, value)
        scrambled = self.must("convert", "scramble", input="p").text
        self.set_key("diary.ini", "FTP", "Pass", scrambled)
        for key in ("DiaryDivide", "DiaryOnTop", "UseFileName2Day"):
            self.set_key("Frame.ini", "Divide", key, 1)
        self.set_key("RSS.ini", "GENERAL", "RSSOn", 1)
        self.set_key("RSS.ini", "Setting", "DiaryURL", "http://example.com/x.htm")

    # -- steps --------------------------------------------------------------------------------------------------------

    def put_entry(self):
        day = self.random.choice(DAYS)
        number = 1 + self.count(day)
        self.marks += 1
        state = [f"mark{self.marks}end", self.random.random() < 0.5, False, []]
        self.entries[day, number] = state
        self.write_entry(day, number, state)

    def count(self, day):
        return sum(1 for other, _ in self.entries if other == day)

    def delete_entry(self):
        """The entries behind it move up."""
        if self.entries:
            day, number = self.random.choice(sorted(self.entries))
            self.must("--yes", "entry", "delete", day, str(number))
            self.deleted.append(self.entries.pop((day, number)))
            for later in range(number + 1, self.count(day) + 2):
                self.entries[day, later - 1] = self.entries.pop((day, later))

    def write_entry(self, day, number, state):
        mark, is_private, _, pictures = state
        state[2] = state[2] or not is_private
        tags = "".join(f'<img src="DiaryParts/{name}">' for name in pictures)
        self.put(entry(day, "title" + mark, Number=number, Contents="text" + mark + tags, Extend="more" + mark,
                       Excerpt="short" + mark, Private=is_private, Genre="genre" + mark))

    def turn_entry(self):
        if self.entries:
            (day, number), state = self.random.choice(sorted(self.entries.items()))
            state[1] = not state[1]
            self.write_entry(day, number, state)

    def add_picture(self):
        if self.entries:
            (day, number), state = self.random.choice(sorted(self.entries.items()))
            name = f"picture{state[0]}{len(state[3])}.gif"
            state[3].append(name)
            write(self.inputs + "/" + name, "picture of " + state[0])
            self.must("file", "add", self.inputs + "/" + name, day, str(number))
            self.write_entry(day, number, state)

    def save_as(self):
        folder = self.random.choice([self.site, self.data, os.path.join(self.root, "other", "")])
        os.makedirs(folder, exist_ok=True)
        self.folders.add(folder)
        self.must("--yes", "site", "save", "--as", folder + self.random.choice(["x.htm", "y.htm"]))

    def upload(self):
        self.must("upload")

    def run_site(self, *words):
        return lambda: self.must("--yes", "site", *words, day=self.random.choice(DAYS))

    # -- what must hold -----------------------------------------------------------------------------------------------

    def published(self):
        """Each file that is or may be published: the site's folders, the listed pages, and the server's."""
        found = {"server:" + path.decode("cp932"): content or b"" for path, content in self.server.tree.items()}
        for folder in self.folders - {self.data}:
            for parent, _, names in os.walk(folder):
                found.update((path, read(path)) for path in (os.path.join(parent, name) for name in names))
        for name in os.listdir(self.data):
            if name.endswith((".htm", ".xml")) and name not in LOCAL_PAGES and self.data in self.folders:
                found[self.data + name] = read(self.data + name)
        for name in os.listdir(self.data + "DiaryLog"):
            if os.path.isfile(self.data + "DiaryLog/" + name):
                found[self.data + "DiaryLog/" + name] = read(self.data + "DiaryLog/" + name)
        return found

    def assert_private(self, walk):
        entries = [*self.entries.values(), *self.deleted]
        secrets = [mark for mark, _, was_public, _ in entries if not was_public]
        for path, content in self.published().items():
            for mark in secrets:
                self.assertNotIn(mark.encode(), content, f"{path} tells {mark}\n{walk}")
                self.assertNotIn("picture" + mark, path, walk)

    def test_nothing_private_is_published(self):
        steps = {"put": (self.put_entry, 6), "turn": (self.turn_entry, 2), "delete": (self.delete_entry, 3),
                 "picture": (self.add_picture, 6), "save": (self.run_site("save"), 3), "save as": (self.save_as, 1),
                 "log": (self.run_site("log", "2004", "01"), 2), "rebuild": (self.run_site("rebuild"), 2),
                 "preview": (self.run_site("preview"), 3), "same day": (self.run_site("sameday", "2005/01/03"), 1),
                 "find": (self.run_site("find", "mark"), 1), "upload": (self.upload, 2)}
        names = [name for name, (_, weight) in steps.items() for _ in range(weight)]
        walk = []
        self.put(*[entry(f"2004/0{month}/01", "public") for month in (1, 2)])    # a feed needs one
        self.must("site", "save")
        for _ in trials(usual=100):
            walk.append(self.random.choice(names))
            steps[walk[-1]][0]()
            self.assert_private(walk)


if __name__ == "__main__":
    unittest.main()
