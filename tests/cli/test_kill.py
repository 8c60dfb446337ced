"""kill -9 at random moments: every file is wholly the old or wholly the new one, no text is lost, and the next command
works. Fifty kills for each command that changes the diary, its site or its settings, ten for what can be made again."""

import contextlib
import json
import os
import random
import shutil
import sqlite3
import subprocess
import time
import unittest

from home import CliTest, entry, read, snapshot, write

KILLS = 50


class KillTest(CliTest):
    def setUp(self):
        super().setUp()
        self.random = random.Random(29)
        self.use_site()

    def environment(self, **changed):
        # A leak can't be looked for in a program that is killed, and in the others of these commands others look for it.
        return super().environment(ASAN_OPTIONS="detect_leaks=0", **changed)

    def run_and_kill(self, words, seconds):
        """At a random moment of these seconds. Returns whether the kill came before the end, and its moment."""
        program = subprocess.Popen(self.command(*words), env=self.environment(), stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        moment = self.random.random() * seconds
        time.sleep(moment)
        program.kill()
        error = program.communicate()[1]
        self.assertIn(program.returncode, (0, -9), error)
        return program.returncode == -9, moment

    def kill_often(self, words, prepare, check, kills=KILLS):
        """Prepares, kills the command at a random moment of its run and checks, until it was killed that often."""
        spans = []
        for _ in range(3):
            prepare()
            start = time.monotonic()
            self.must(*words)
            spans.append(time.monotonic() - start)
        span = min(spans)
        killed = 0
        for _ in range(10 * kills):
            prepare()
            was_killed, moment = self.run_and_kill(words, span)
            if was_killed:
                killed += 1
                check()
            else:   # a busy machine may have become idle since
                span = min(span, moment)
            if killed == kills:
                return
        self.fail(f"the command was too fast to be killed: {spans}, at last {span}")

    def assert_works(self):
        """The next command works and leaves a diary that is whole without any file beside it: people copy it alone."""
        self.assertEqual(self.must("db", "check").out, b"")
        alone = os.path.join(self.inputs, "alone.mdb")
        shutil.copy(self.database, alone)
        with contextlib.closing(sqlite3.connect(alone)) as base:
            self.assertEqual(base.execute("PRAGMA integrity_check").fetchall(), [("ok",)])
            self.assertEqual(sorted(title for title, in base.execute("SELECT Title FROM Contents")), self.titles())
        self.assert_sound()

    def titles(self):
        return sorted(title for title, in self.sql("SELECT Title FROM Contents"))

    def rescued(self):
        """The titles of the rescue file's whole lines."""
        path = self.data + "rescue.jsonl"
        lines = read(path).decode("utf-8", "replace").split("\n")[:-1] if os.path.exists(path) else []
        return [json.loads(line)["Title"] for line in lines]


class Entries(KillTest):
    def keep_diary(self):
        """What `prepare` puts back."""
        kept = os.path.join(self.inputs, "kept")
        shutil.copytree(self.data, kept)

        def restore():
            shutil.rmtree(self.data)
            shutil.copytree(kept, self.data)
        return restore

    def test_in_the_middle_of_entry_put(self):
        self.put(*[entry(f"2003/01/{day:02}", f"old {day}", Contents="old " * 1000) for day in range(1, 29)])
        old = self.titles()
        overwriting = [entry(f"2003/01/{day:02}", "new", Number=1) for day in range(1, 29)]
        fresh = [entry(f"2004/01/{i % 28 + 1:02}", f"new {i}", Contents="new " * 50, Genre=f"g{i % 9}")
                 for i in range(5000 - len(overwriting))]
        file = self.input_file("new.jsonl", "".join(overwriting + fresh))

        def check():
            self.assert_works()
            titles = self.titles()
            if titles != old:
                self.assertEqual(len(titles), 5000)
                self.assertEqual(sorted(self.rescued()), sorted(old))
        self.kill_often(["entry", "put", file], self.keep_diary(), check)

    def test_in_the_middle_of_entry_delete(self):
        self.put(*[entry("2004/02/01", f"old {i}", Contents=f"{i} " * 3000) for i in range(60)])
        self.must("site", "preview", day="2004/02/01")
        old, old_page = self.titles(), read(self.data + "tmp.htm")
        new = [title for title in old if title != "old 0"]

        def check():
            page = read(self.data + "tmp.htm")
            self.assert_works()
            self.assertIn(self.titles(), (old, new))
            self.assertLessEqual(set(self.rescued()), {"old 0"})
            if self.titles() == new:
                self.assertEqual(self.rescued(), ["old 0"])
            if page != old_page:
                self.must("site", "preview", day="2004/02/01")
                self.assertEqual(read(self.data + "tmp.htm"), page)
        self.kill_often(["--yes", "entry", "delete", "2004/02/01", "1"], self.keep_diary(), check)


class Files(KillTest):
    def test_in_the_middle_of_site_save(self):
        for key in ("DiaryDivide", "DiaryTerm", "DiaryOnTop", "UseFileName2Day"):
            self.set_key("Frame.ini", "Divide", key, 1)
        self.set_key("Frame.ini", "Frame", "FrameOn", 1)
        self.set_key("RSS.ini", "GENERAL", "RSSOn", 1)
        self.set_key("RSS.ini", "Setting", "DiaryURL", "http://example.com/x.htm")
        states = {}
        for state in ("old", "new"):
            self.put(*[entry(f"2004/02/{day:02}", state, Number=1, Contents=f"{state} " * 3000)
                       for day in range(1, 30)])
            self.must("site", "save")
            states[state] = self.saved_files()
            shutil.copytree(self.root, os.path.join(self.inputs, state), dirs_exist_ok=True)
        self.assertGreater(len(states["old"]), 35)

        def prepare():
            for folder, state in ((self.site, "old"), (self.data, "new")):
                shutil.rmtree(folder)
                shutil.copytree(folder.replace(self.root, os.path.join(self.inputs, state)), folder)
            shutil.copy(os.path.join(self.inputs, "old/home/UserData/upload.tmp"), self.data)

        def check():
            for path, content in self.saved_files().items():
                self.assertIn(content, (states["old"].get(path), states["new"].get(path)), path)
            missing = states["old"].keys() - self.saved_files().keys()
            self.assertTrue(all(path.endswith(".xml") for path in missing), missing)
            self.must("site", "save")
            self.assertEqual(self.saved_files(), states["new"])
            self.assertFalse([name for name in os.listdir(self.site) if name.startswith(".vell")])
            self.assert_works()
        self.kill_often(["site", "save"], prepare, check)

    def saved_files(self):
        names = [self.site + name for name in os.listdir(self.site) if name.endswith((".htm", ".xml"))]
        return {path: read(path) for path in [*names, self.data + "upload.tmp", self.diary_ini]}

    def test_in_the_middle_of_ini_set(self):
        old = "".join(f"[S{i}]\r\n" + "".join(f"K{k}={'v' * 100}\r\n" for k in range(50)) for i in range(50)).encode()
        new = old.replace(b"[S25]\r\nK0=" + b"v" * 100, b"[S25]\r\nK0=new")
        file = self.input_file("large.ini", old)

        def check():
            self.assertIn(read(file), (old, new))
            self.must("ini", "set", file, "S25", "K0", "new")
            self.assertEqual(read(file), new)
            self.assertFalse([name for name in os.listdir(self.inputs) if name.startswith(".vell")])
        self.kill_often(["ini", "set", file, "S25", "K0", "new"], lambda: write(file, old), check)


class FirstStart(KillTest):
    def test_in_the_middle_of_the_first_start(self):
        shutil.rmtree(self.data)
        self.must("start")
        whole = {path: content for path, content in snapshot(self.data).items()}

        def prepare():
            shutil.rmtree(self.data, ignore_errors=True)

        def check():
            self.must("start")
            self.assertEqual(snapshot(self.data), whole)
        self.kill_often(["start"], prepare, check)


class Exports(KillTest):
    def setUp(self):
        super().setUp()
        self.put(*[entry(f"2004/01/{i % 28 + 1:02}", f"t{i}", Contents=f"{i} " * 4000) for i in range(1500)])
        self.out = os.path.join(self.root, "out", "")

    def old_and_new(self, words, names):
        """Every file in the states before and after the export."""
        os.makedirs(self.out)
        self.must(*words)
        new = {name: read(self.out + name) for name in os.listdir(self.out)}
        self.assertEqual(sorted(new), sorted(names))
        return {name: b"old " + name.encode() for name in names}, new

    def kill_export(self, unit, out, names):
        words = ["export", "--period", "month:2004:1", "--format", "TEXT", "--contents", "text", "--unit", unit,
                 "--name", "title", "--out", out]
        old, new = self.old_and_new(words, names)

        def prepare():
            shutil.rmtree(self.out)
            for name, content in old.items():
                write(self.out + name, content)

        def check():
            for name in names:
                self.assertIn(read(self.out + name), (old[name], new[name]), name)
            self.must(*words)
            self.assertEqual({name: read(self.out + name) for name in os.listdir(self.out)}, new)
            self.assert_works()
        self.kill_often(words, prepare, check, kills=10)

    def test_in_the_middle_of_a_folder_of_markdown(self):
        """The folder is missing or whole, and nothing unfinished outlives the next export."""
        words = ["exchange", "export", "markdown", self.out]

        def check():
            if os.path.exists(self.out):
                self.assertEqual(len(os.listdir(self.out)), 1500)
                shutil.rmtree(self.out)
            self.must(*words)
            self.assertEqual(len(os.listdir(self.out)), 1500)
            self.assertFalse([name for name in os.listdir(self.root) if name.startswith(".vell")])
            self.assert_works()
        self.kill_often(words, lambda: shutil.rmtree(self.out, ignore_errors=True), check, kills=10)

    def test_in_the_middle_of_one_file(self):
        self.kill_export("one", self.out + "x.txt", ["x.txt"])

    def test_in_the_middle_of_divided_files(self):
        self.kill_export("divide", self.out, [f"t{i}.txt" for i in range(1500)])


if __name__ == "__main__":
    unittest.main()
