"""Holds the program's upload against the second one's, event by event, over random homes and servers.

    compare_uploads.py --cli build/dev/velloria-cli --factory factory --seeds 1:200 [--keep DIR]

Each seed has a server of its own on port 21 of an address 127.7.x.y. Compared are the events, the exit code, the lists,
what counts as sent, the files of the site and the tree of the server. Exit code 1 on any difference.
"""

import json
import os
import re
import shutil
import sqlite3
import subprocess

from compare_sites import put_file
from peer_text import encode_page
from peer_upload import ERROR_TEXTS, Remote, Run, first_event_difference, to_page
from random_upload import RandomUpload
from seeds import Difference, in_folder_of_its_own, main
from upload_server import UploadServer, address_of, can_serve

OPERATIONS = 60
KEYS = {"progress": ("caption", "title", "text", "max", "value", "ok")}


class Trial:
    """One upload in a home of its own."""

    def __init__(self, options, upload, root, address):
        self.cli, self.upload, self.root, self.address = os.path.abspath(options.cli), upload, root, address
        self.home = os.path.join(root, "home")
        self.data = os.path.join(self.home, "UserData", "")
        shutil.copytree(options.factory, self.home, ignore=shutil.ignore_patterns("velloria", "velloria-*", "*.dll"))
        self.has_ping = False
        self.server_class = UploadServer
        self.on_command = lambda count: None    # called by the server's thread before the answer to each command
        self.server = self.events = self.result = None    # of the last upload

    def command(self, *arguments):
        return [self.cli, "--home", self.home, "--now", "2004/02/29 12:34:56", *arguments]

    def run_cli(self, *arguments, **options):
        options = {"timeout": 300} | options
        return subprocess.run(self.command(*arguments), stdin=subprocess.DEVNULL, capture_output=True, **options)

    # -- filling the home ---------------------------------------------------------------------------------------------

    def fill(self):
        upload = self.upload
        if self.run_cli("start").returncode != 0:
            raise Difference("the start failed")
        self.set_keys()
        self.put_list("upload.tmp", upload.pages)
        self.put_list("uploadold.tmp", upload.old)
        self.put_list("uploadlog.tmp", upload.logs)
        for (folder, name), content in upload.files.items():
            put_file(os.path.join(self.folder(folder), name), content)
        base = sqlite3.connect(self.data + "diary.mdb")
        with base:
            base.execute("DELETE FROM FileDB")
            for number, private in ((1, 0), (2, 1)):
                base.execute("INSERT INTO Contents (Day, Number, Title, Private) VALUES ('2004/02/01', ?, 't', ?)",
                             [number, private])
            for name, uploaded, logged in upload.registered:
                base.execute("INSERT INTO FileDB (FileName, Day, Number, Uploaded, Logged) VALUES (?, ?, ?, ?, ?)",
                             [name, *upload.owners.get(name, ("ALL", 0)), uploaded, logged])
        base.close()
        for name, place in upload.pictures_in.items():
            for side in ("", "DiaryLog/"):
                if place in ("data", "both"):
                    put_file(self.data + side + "DiaryParts/" + name, b"data " + upload.picture_bytes[name])
            for folder in range(len(upload.folders)):
                if place in ("site", "both"):
                    put_file(os.path.join(self.folder(folder), "DiaryParts", name), upload.picture_bytes[name])

    def folder(self, number):
        return os.path.join(self.root, self.upload.folders[number])

    def set_keys(self):
        upload = self.upload
        for key, value in {"ID": upload.user if upload.has_user else "", "Pass": self.scramble(upload.password),
                           "URL": self.address if upload.has_host else "", "StartFolder": upload.start,
                           "PASV": int(upload.passive), "PING": int(upload.ping),
                           "HTMLOnlyUpload": int(upload.html_only), "SoundFile": upload.sound}.items():
            self.set_value(key, str(value))

    def set_value(self, key, value):
        """A key of the upload, all of which stand in the settings file from the start."""
        with open(self.data + "diary.ini", "rb") as file:
            text = file.read()
        text, count = re.subn(rb"(?m)^%s=.*?(\r?)$" % key.encode(),
                              lambda line: key.encode() + b"=" + encode_page(value) + line[1], text)
        assert count == 1, key
        put_file(self.data + "diary.ini", text)

    def file_of(self, name):
        """A file of the user's folder, or of a full path; None when it is not there."""
        path = os.path.join(self.data, name)
        if not os.path.exists(path):
            return None
        with open(path, "rb") as file:
            return file.read()

    def scramble(self, password):
        result = subprocess.run([self.cli, "convert", "scramble"], input=password.encode(), capture_output=True)
        value = result.stdout.decode()
        return f'"{value}"' if value[:1] in "'\"" else value

    def put_list(self, name, rows):
        if rows is not None:
            put_file(self.data + name, b"".join(encode_page(f"{self.folder(folder)},{file}") + self.upload.line_end
                                                for folder, file in rows))

    # -- comparing ----------------------------------------------------------------------------------------------------

    def start_server(self):
        upload = self.upload
        words = {"user": upload.user, "password": upload.password, "cut_at": upload.cut_at,
                 "greeting": upload.greeting} | self.server_words()
        self.server = self.server_class(self.address, self.tree(), **words)
        self.server.on_command = self.on_command
        self.server.start()

    def tree(self):
        return {path.encode("cp932"): content for path, content in self.upload.tree.items()}

    def server_words(self):
        upload = self.upload
        faults = [fault | ({"name": to_page(fault["name"])} if "name" in fault else {}) for fault in upload.faults]
        return {"features": upload.features, "login": upload.login.encode(), "faults": faults, "codec": upload.codec,
                "long_replies": upload.long_replies}

    def run_upload(self, **options):
        """The program's upload; leaves `result` and `events`."""
        answers = os.path.join(self.root, "answers.json")
        put_file(answers, json.dumps(self.upload.answers).encode())
        self.start_server()
        try:
            self.result = self.run_cli("--events", "--answers", answers, "upload", **options)
        except subprocess.TimeoutExpired:
            raise Difference(f"hangs\n    {self.server.commands[-5:]}") from None
        finally:
            self.server.stop()
        self.events = program_events(self.result.stderr)

    def compare(self, **options):
        runs = self.expected_runs()
        self.run_upload(**options)
        differences = []
        for run in runs:
            difference = first_event_difference(run.events, self.events) or self.leftover_difference(run)
            if not difference:
                break
            differences.append((len(run.events), difference))
        else:
            raise Difference(min(differences)[1] + "\n    " + self.story())
        if self.server.logins > 1:
            raise Difference(f"{self.server.logins} logins")
        secret = self.upload.password.encode()
        if len(secret) > 6 and secret in self.result.stderr + self.result.stdout:
            raise Difference("the password is shown")

    def expected_runs(self):
        """Every run that the text allows; more than one where the moment of a loss is not known beforehand."""
        passive = self.upload.passive
        if self.upload.cut_at is None:
            remotes = [{}]
        else:
            remotes = [{"lost_at": number} for number in range(OPERATIONS)]
        runs = []
        for words in remotes:
            for error in (ERROR_TEXTS[12030], ERROR_TEXTS[12031]):
                for status_first in (False, True):
                    remote = Remote(self.tree(), passive=passive, cut_text=error, **words, **self.server_words())
                    runs.append(Run(self.home, remote, self.upload.answers, self.has_ping, status_first))
        return runs

    def leftover_difference(self, run):
        server = self.server
        if self.result.returncode != run.exit_code:
            return f"exit code {self.result.returncode}, expected {run.exit_code}"
        for name, wanted in run.lists.items():
            found = self.file_of(name)
            if found != wanted:
                return f"{name}: expected {wanted}, found {found}"
        base = sqlite3.connect(self.data + "diary.mdb")
        rows = base.execute("SELECT FileName, Uploaded <> 0, FileID FROM FileDB ORDER BY FileID").fetchall()
        base.close()
        for (name, was_sent, _), (_, is_sent, number) in zip(self.upload.registered, rows):
            if bool(is_sent) != (was_sent or number in run.uploaded):
                return f"{name}: Uploaded is {is_sent}"
        for path, content in run.copied.items():
            if self.file_of(path) != content:
                return f"{path} was not copied from the data folder"
        for path in sorted(run.remote.tree.keys() | server.tree.keys()):
            wanted, found = (tree.get(path, b"(missing)") for tree in (run.remote.tree, server.tree))
            if wanted != found:
                return f"on the server {path}: expected {wanted and wanted[:60]}, found {found and found[:60]}"
        return None

    def story(self):
        server = self.server
        last = [event for event in self.events if event[0] != "pointer"][-4:]
        return f"commands {server.commands[-6:]}\n    of {len(server.commands)}, last events {last}\n    faults " \
               f"{self.upload.faults} cut_at {self.upload.cut_at} features {sorted(self.upload.features)}"


def program_events(text):
    """The events from the progress window on."""
    events = []
    for line in text.decode().splitlines():
        if not line.startswith("{"):
            continue
        event = json.loads(line)
        kind = event["event"]
        if kind == "progress":
            events.append((kind, {key: plain(event[key]) for key in KEYS["progress"]}))
        elif not events:
            continue
        elif kind == "message":
            events.append((kind, event["kind"], event["title"], plain(event["text"]), event["buttons"], event["answer"]))
        elif kind == "failure":
            events.append((kind, plain(event["text"])))
        else:
            key = {"status": "text", "pointer": "shape", "sound": "command"}[kind]
            events.append((kind, plain(event[key])))
    return events


def plain(value):
    return value.replace("\r\n", "\n") if isinstance(value, str) else value


def run_seed(options, seed):
    def compare(root):
        trial = Trial(options, RandomUpload(seed), root, address_of(seed))
        trial.fill()
        trial.compare()

    return in_folder_of_its_own(options, seed, compare)


def reason_to_skip():
    return None if can_serve() else "only the superuser may serve on port 21"


if __name__ == "__main__":
    main("Compares the program's upload with the second one's.", run_seed, reason_to_skip)
