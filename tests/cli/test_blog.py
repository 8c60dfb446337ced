"""Blogs from outside: their names, what the user tells of them, the check of a template, the protocol of a post."""

import os
import pathlib
import pty
import select
import stat
import subprocess
import time
import unittest

from home import CliTest, bytes_limit, read, snapshot, write
from patience import PATIENCE_SECONDS

KEYS = ["LoginID", "Password", "PostURL", "NextURL", "ManagementURL", "AccessURL"]
HIDDEN = "********"
SECRET = "hana ko&#12539;!"

GOOD = """[General]
Blog=庭のブログ
[Simple]
PostURL=Required
LoginURL=Nothing
NextURL=Nothing
ManageURL=Required
HTML2TXT=HTML2TXT
CheckObject=title
VALUE_LoginID=id
VALUE_Password=pass
VALUE_Login=in
VALUE_Title=title
VALUE_Body=body
VALUE_Post=post
"""


def template(text=GOOD):
    return text.replace("\n", "\r\n").encode("cp932")


class BlogTest(CliTest):
    def setUp(self):
        super().setUp()
        self.must("start")
        self.templates = self.data + "BlogTemplate/"
        self.user_data = self.data + "BlogUserData.ini"

    def data_of(self, name="WordPress"):
        return dict(self.must("blog", "data", name).rows)

    def set(self, key, value, name="WordPress", **how):
        result = self.must("--events", "blog", "data", name, key, value, **how)
        self.assertEqual((result.out, result.statuses, result.boxes), (b"", [], []))

    def password(self, name="WordPress"):
        """As it was typed."""
        stored = self.must("ini", "get", self.user_data, name, "Password").out[:-1]
        return self.must("convert", "unscramble", input=stored).text


class List(BlogTest):
    def test_the_names_are_those_of_the_templates_without_their_ending(self):
        for name in ("Bee.INI", "ant.ini", "はてな.ini", "a.b.ini", "x.blg", "y.ini.bak"):
            write(self.templates + name, template())
        os.mkdir(self.templates + "folder.ini")
        self.assertEqual(self.must("blog", "list").rows,
                         [["a.b"], ["ant"], ["Bee"], ["tDiary"], ["WordPress"], ["はてな"]])

    def test_json_has_the_shown_name_too(self):
        write(self.templates + "garden.ini", template())
        write(self.templates + "nameless.ini", "")
        write(self.templates + "huge.ini", b"x" * 10_000_000)
        self.assertEqual(self.must("--json", "blog", "list").json,
                         [{"Name": "garden", "Blog": "庭のブログ"}, {"Name": "huge", "Blog": None},
                          {"Name": "nameless", "Blog": "Blog"}, {"Name": "tDiary", "Blog": "tDiary"},
                          {"Name": "WordPress", "Blog": "WordPress"}])

    def test_without_templates_there_are_no_names(self):
        for name in os.listdir(self.home):
            if name.endswith(".blg"):
                os.remove(os.path.join(self.home, name))
        for name in os.listdir(self.templates):
            os.remove(self.templates + name)
        self.assertEqual(self.must("blog", "list").out, b"")
        self.assertEqual(self.must("--json", "blog", "list").json, [])

    def test_a_template_beside_the_program_is_there_after_the_start_that_the_list_makes(self):
        write(self.home + "/new.blg", template())
        self.assertIn(["new"], self.must("blog", "list").rows)
        self.assertEqual(read(self.templates + "new.ini"), template())


class Data(BlogTest):
    def test_what_nobody_has_told_is_empty(self):
        self.assertEqual(self.must("blog", "data", "WordPress").rows, [[key, ""] for key in KEYS])
        self.assertEqual(self.must("--json", "blog", "data", "WordPress").json, {key: "" for key in KEYS})
        self.assertEqual(self.must("blog", "data", "WordPress", "LoginID").out, b"\n")
        self.assertEqual(self.must("blog", "data", "WordPress", "Password").out, b"\n")
        self.assertFalse(os.path.exists(self.user_data), "looking makes no file")

    def test_each_key_is_kept_and_printed(self):
        values = {key: f"http://example.com/{key}?a=b&c=%20" for key in KEYS} | {"LoginID": "花子 é😀〜"}
        for key, value in values.items():
            self.set(key, value)
        shown = values | {"Password": HIDDEN}
        self.assertEqual(self.data_of(), shown)
        self.assertEqual(self.must("--json", "blog", "data", "WordPress").json, shown)
        for key in KEYS:
            self.assertEqual(self.must("blog", "data", "WordPress", key.upper()).text, shown[key] + "\n")
            self.assertEqual(self.must("--json", "blog", "data", "WordPress", key).json, {"value": shown[key]})
        self.assertEqual(self.must("blog", "data", "tDiary").rows, [[key, ""] for key in KEYS], "another one's are not")
        self.assertEqual(self.password(), values["Password"])

    def test_an_empty_value_takes_the_old_one_away(self):
        self.set("LoginID", "hanako")
        self.set("LoginID", "")
        self.set("Password", "secret")
        self.set("Password", "-", input="\n")
        self.assertEqual(self.data_of(), {key: "" for key in KEYS})

    def test_a_value_that_would_not_come_back_is_refused_and_the_old_one_stays(self):
        for key in KEYS:
            self.set(key, "old")
        for key in KEYS:
            for value in ("x" * 256, "あ" * 128, "a\nb", "a\rb"):
                self.refused("blog", "data", "WordPress", key, value, naming=[key])
        for value in ("é", "😀", "〜", "a\tb"):
            self.refused("blog", "data", "WordPress", "Password", value, naming=["Password"])
        self.assertEqual(self.data_of(), {key: "old" for key in KEYS} | {"Password": HIDDEN})

    def test_blanks_around_a_value_are_no_part_of_it(self):
        for key in KEYS:
            self.set(key, "  a b ")
        self.assertEqual(self.data_of(), {key: "a b" for key in KEYS} | {"Password": HIDDEN})
        self.assertEqual(self.password(), "  a b ")

    def test_values_of_the_longest_kind_are_kept(self):
        for key, value in (("LoginID", "あ" * 127), ("PostURL", "http://a.example/" + "x" * 238),
                           ("Password", "z" * 255)):
            self.set(key, value)
            self.assertEqual(self.data_of()[key], HIDDEN if key == "Password" else value)
        self.assertEqual(self.password(), "z" * 255)

    def test_who_is_not_there_is_refused(self):
        for name in ("nowhere", "", "../BlogUserData", "wordpress", "WordPress.ini", "😀"):
            self.refused("blog", "data", name, naming=[name])
            self.refused("blog", "data", name, "LoginID", "me", naming=[name])
        for key in ("Login", "", "LoginID=", "Blog", "パスワード"):
            self.refused("blog", "data", "WordPress", key, naming=[key, "ManagementURL"])
            self.refused("blog", "data", "WordPress", key, "x", naming=[key])

    def test_a_name_may_be_any_that_a_section_can_bear(self):
        names = ("はてな ブログ", "[a", "a=b", ";a", "ゾ", "é😀", "a.b")
        for name in names:
            write(self.templates + name + ".ini", template())
            self.set("LoginID", "me at " + name, name=name)
        for name in names:
            self.assertEqual(self.data_of(name)["LoginID"], "me at " + name)

    def test_a_name_that_no_section_bears_takes_nothing_of_another_blog(self):
        for name in ("Word]Press", "WordPress]", "a]", " WordPress", "WordPress "):
            write(self.templates + name + ".ini", template())
        self.set("Password", "secret")
        for name in ("Word]Press", "WordPress]", "a]"):
            self.refused("blog", "data", name, "Password", "other", naming=[name])
            self.assertEqual(self.data_of(name), {key: "" for key in KEYS})
        for name in (" WordPress", "WordPress "):
            self.refused("blog", "data", name, "Password", "other", naming=[name])
        self.assertEqual(self.password(), "secret")

    def test_what_a_command_line_can_not_mean_is_wrong_usage(self):
        self.refused("blog", "data", code=2)
        self.refused("blog", "data", "WordPress", "LoginID", "a", "b", code=2)
        self.refused("blog", code=2)
        self.refused("blog", "list", "x", code=2)
        self.refused("blog", "check", code=2)
        self.refused("blog", "log", "x", code=2)


class Passwords(BlogTest):
    def test_a_password_is_scrambled_and_readable_by_its_owner_alone(self):
        old = os.umask(0)
        try:
            self.set("Password", SECRET)
        finally:
            os.umask(old)
        self.assertEqual(stat.S_IMODE(os.stat(self.user_data).st_mode), 0o600)
        self.assertNotIn(SECRET[:4].encode(), read(self.user_data))
        os.chmod(self.user_data, 0o644)  # as it comes with a folder from elsewhere
        self.set("LoginID", "hanako")
        self.assertEqual(stat.S_IMODE(os.stat(self.user_data).st_mode), 0o600)
        self.assertEqual(self.password(), SECRET)

    def test_it_comes_from_standard_input_where_nobody_sees_it(self):
        for given, kept in ((SECRET + "\n", SECRET), (SECRET + "\r\n", SECRET), (SECRET, SECRET),
                            (SECRET + "\nrest\n", SECRET), ("-\n", "-"), (" a \n", " a "), ("日本\n", "日本")):
            self.set("Password", "-", input=given)
            self.assertEqual(self.password(), kept)

    def test_one_line_is_enough(self):
        """A script that goes on to talk on the same pipe is not kept waiting."""
        process = subprocess.Popen(self.command("blog", "data", "WordPress", "Password", "-"), stdin=subprocess.PIPE,
                                   env=self.environment())
        process.stdin.write(SECRET.encode() + b"\n")
        process.stdin.flush()
        self.assertEqual(process.wait(timeout=60), 0)
        process.stdin.close()
        self.assertEqual(self.password(), SECRET)

    def test_no_line_is_no_empty_password(self):
        self.set("Password", SECRET)
        self.refused("blog", "data", "WordPress", "Password", "-", input="")
        self.refused("blog", "data", "WordPress", "Password", "-", input=b"\xff\n")
        self.refused("blog", "data", "WordPress", "Password", "-", input="é\n", naming=["Password"])
        self.refused("blog", "data", "WordPress", "Password", "-", input="x" * 256 + "\n", naming=["Password"])
        self.assertEqual(self.password(), SECRET)

    def test_another_key_takes_the_hyphen_as_it_is(self):
        self.set("LoginID", "-", input="x\n")
        self.assertEqual(self.data_of()["LoginID"], "-")

    def test_on_a_terminal_it_is_asked_for_and_not_shown(self):
        process, terminal = pty.fork()
        if process == 0:
            line = self.command("blog", "data", "WordPress", "Password", "-")
            os.execve(line[0], line, self.environment())
        shown = self.read_until(terminal, ": ")
        os.write(terminal, SECRET.encode() + b"\n")
        shown += self.read_until(terminal, None)
        self.assertEqual(os.waitstatus_to_exitcode(os.waitpid(process, 0)[1]), 0, shown)
        os.close(terminal)
        self.assertIn("パスワード", shown)
        self.assertNotIn(SECRET, shown)
        self.assertEqual(self.password(), SECRET)

    def read_until(self, terminal, end):
        shown = b""
        deadline = time.monotonic() + PATIENCE_SECONDS
        while time.monotonic() < deadline and not (end and shown.decode(errors="replace").endswith(end)):
            if select.select([terminal], [], [], 0.1)[0]:
                try:
                    shown += os.read(terminal, 4096)
                except OSError:  # the program has ended
                    break
        return shown.decode()

    def test_it_is_in_no_output_and_in_no_file_in_clear(self):
        word = "Yuyake4711"
        self.set("Password", word)
        for words in (["data", "WordPress"], ["data", "WordPress", "Password"], ["data", "tDiary"], ["list"], ["log"],
                      ["data", "WordPress", "Password", word + "é"], ["data", "WordPress", "Passwort", word],
                      ["data", "nowhere", "Password", word], ["data", "WordPress", "Password", "-"]):
            for options in ([], ["--json"], ["--events"], ["--json", "--events"]):
                result = self.run_cli(*options, "blog", *words, input=word + "é\n")
                self.assertNotIn(word.encode(), result.out + result.err, words)
        for folder, _, names in os.walk(self.home):
            for name in names:
                self.assertNotIn(word.encode(), read(os.path.join(folder, name)), name)
        self.assertEqual(self.password(), word)


class Refusals(BlogTest):
    def test_a_full_disk_leaves_what_was_there(self):
        self.set("LoginID", "hanako")
        write(self.user_data, read(self.user_data) + b"; " + b"x" * 2_000_000 + b"\r\n")
        self.refused("blog", "data", "WordPress", "LoginID", "taro", naming=["BlogUserData.ini"],
                     options={"preexec_fn": bytes_limit(1_000_000)})
        self.assertEqual(self.data_of()["LoginID"], "hanako")

    def test_a_file_that_takes_nothing_is_named(self):
        self.set("LoginID", "hanako")
        os.chmod(self.user_data, 0o400)
        self.refused("blog", "data", "WordPress", "LoginID", "taro", naming=["BlogUserData.ini"])
        os.remove(self.user_data)
        os.mkdir(self.user_data)
        self.refused("blog", "data", "WordPress", "LoginID", "taro", naming=["BlogUserData.ini"])
        self.refused("blog", "data", "WordPress", naming=["BlogUserData.ini"])

    def test_a_result_that_can_not_be_printed_is_a_failure(self):
        with open("/dev/full", "wb") as full:
            for words in (["list"], ["data", "WordPress"], ["data", "WordPress", "LoginID"]):
                result = self.run_cli("blog", *words, options={"stdout": full})
                self.assertEqual((result.code, len(result.error_lines)), (1, 1), words)

    def test_each_user_has_their_own(self):
        self.must("user", "add", "hanako", answers=["a", "a"])
        self.must("user", "add", "taro", user="hanako", answers=["a", "b", "b"])
        self.refused("blog", "list")
        for user, password in (("hanako", "a"), ("taro", "b")):
            folder = f"{self.home}/{user}"
            self.must("blog", "data", "WordPress", "LoginID", user, user=user, answers=[password, folder])
            self.assertEqual(stat.S_IMODE(os.stat(folder + "/BlogUserData.ini").st_mode), 0o600)
        for user, password in (("hanako", "a"), ("taro", "b")):
            found = self.must("blog", "data", "WordPress", "LoginID", user=user, answers=[password])
            self.assertEqual(found.text, user + "\n")


class Check(BlogTest):
    def check(self, text=GOOD, name="garden.blg", code=1, **how):
        file = self.input_file(name, text if isinstance(text, bytes) else template(text))
        result = self.run_cli("--json", "blog", "check", file, **how)
        self.assertEqual(result.code, code, result)
        return [(found["Kind"], found["Key"], found["Value"]) for found in result.json]

    def test_a_good_template_is_passed_in_silence(self):
        file = self.input_file("garden.blg", template())
        result = self.must("blog", "check", file)
        self.assertEqual((result.out, result.err), (b"", b""))
        self.assertEqual(self.must("--json", "blog", "check", file).json, [])
        self.assertEqual(self.must("blog", "check", "-", input=template()).out, b"")

    def test_the_shipped_ones_are_good(self):
        for name in ("WordPress.blg", "tDiary.blg"):
            findings = self.must("--json", "blog", "check", os.path.join(self.home, name)).json
            self.assertNotIn("error", [finding["Kind"] for finding in findings])

    def test_an_error_ends_with_1_and_a_hint_does_not(self):
        self.assertEqual(self.check(GOOD.replace("ManageURL=Required\n", ""), code=0), [("hint", "ManageURL", "")])
        text = GOOD.replace("NextURL=Nothing\n", "").replace("HTML2TXT=HTML2TXT\n", "HTML2TXT=nowhere\n")
        self.assertEqual(self.check(text), [("error", "NextURL", ""), ("hint", "HTML2TXT", "nowhere")])
        result = self.run_cli("blog", "check", self.inputs + "/garden.blg")
        self.assertEqual([row[:3] for row in result.rows], [["誤り", "NextURL", ""], ["注意", "HTML2TXT", "nowhere"]])
        self.assertTrue(all(len(row) == 4 and row[3].endswith("。") for row in result.rows), result)
        self.assertEqual(result.error_lines, ["velloria-cli: テンプレートに1件の誤りがあります。"])

    def test_what_a_post_would_stumble_over_is_found(self):
        for changed, key, value in (
                (("VALUE_Title=title", "VALUE_Title="), "VALUE_Title", ""),
                (("VALUE_Post=post", "VALUE_Pots=post\nType_Post=SUBMIT"), "VALUE_Pots", "post"),
                (("VALUE_Body=body", "VALUE_Body=body\nType_Body=TEXTAREA"), "VALUE_Body", "body"),
                (("VALUE_Post=post", "VALUE_Post=post\nType_UnderWrite=SELECT\nRADIO_VALUE_UnderWrite_YES=x\n"
                                     "RADIO_VALUE_UnderWrite_No=y"),
                 "VALUE_UnderWrite_Yes", ""),
                (("VALUE_Post=post", "VALUE_Post=post\nType_AcceptPing=SELECT"), "Type_AcceptPing", "SELECT"),
                (("CheckObject=title", "CheckObject=title\nAutoLoginURL=False"), "AutoLoginURL", "False"),
                (("PostURL=Required", "PostURL=javascript:alert(1)"), "PostURL", "javascript:alert(1)"),
                (("[Simple]", "[Simple]\nFORM_POST=x"), "FORM_POST", "x")):
            with self.subTest(changed):
                self.assertEqual(self.check(GOOD.replace(*changed)), [("error", key, value)])

    def test_what_is_no_template_is_told(self):
        for content in (b"", b"\0\1\2", b"x" * 10_000_000, "ひなた".encode(), "[Simple]".encode("utf-16")):
            found = self.check(content)
            self.assertEqual([kind for kind, _, _ in found][0], "error")
            self.assertLess(len(found), 4)
        self.assertEqual(self.check(GOOD.encode())[0], ("error", "", ""))
        self.assertEqual(self.check(name="a]b.blg"), [("error", "", "a]b.blg")])
        self.refused("blog", "check", self.inputs + "/nowhere.blg", naming=["nowhere.blg"])
        self.refused("blog", "check", self.inputs, naming=[self.inputs])
        self.refused("blog", "check", "/dev/zero", naming=["/dev/zero"])
        os.mkfifo(self.inputs + "/pipe.blg")
        self.refused("blog", "check", self.inputs + "/pipe.blg", naming=["pipe.blg"])

    def test_nothing_is_started_and_nothing_changed(self):
        os.mkdir(self.root + "/empty")
        before = snapshot(self.root)
        self.assertEqual(self.check(code=0, home=self.root + "/empty"), [("hint", "HTML2TXT", "HTML2TXT")])
        self.assertEqual(snapshot(self.root), before)
        self.must("user", "add", "hanako", answers=["a", "a"])
        self.assertEqual(self.check(code=0), [], "asks for no user")

    def test_a_strangers_text_does_not_command_the_terminal(self):
        text = GOOD.replace("VALUE_Post=post", "VALUE_Post=post\n\x1b[31mX=\x1b]0;title\x07")
        file = self.input_file("garden.blg", template(text))
        process, terminal = pty.fork()
        if process == 0:
            line = self.command("blog", "check", file)
            os.execve(line[0], line, self.environment())
        shown = b""
        try:
            while block := os.read(terminal, 4096):
                shown += block
        except OSError:
            pass
        os.waitpid(process, 0)
        os.close(terminal)
        self.assertIn(b"\\u001b", shown)
        self.assertNotIn(b"\x1b", shown)


class Log(BlogTest):
    LINES = ["2004/02/29 12:34:56 テンプレート: WordPress", "2004/02/29 12:34:57 段階: 初期化エラー"]

    def test_before_the_first_post_there_is_none(self):
        self.assertIn("まだありません", self.refused("blog", "log"))
        self.assertIn("まだありません", self.refused("--json", "blog", "log"))

    def test_the_last_one_is_printed_line_by_line(self):
        write(self.data + "blog.log", "\n".join(self.LINES) + "\n")
        self.assertEqual(self.must("blog", "log").text.splitlines(), self.LINES)
        self.assertEqual(self.must("--json", "blog", "log").json, self.LINES)

    def test_it_can_be_read_where_the_diary_can_not_be_opened(self):
        write(self.data + "blog.log", self.LINES[0] + "\n")
        write(self.database, "damaged")
        self.assertEqual(self.must("blog", "log").text, self.LINES[0] + "\n")

    def test_one_that_can_not_be_read_is_a_failure(self):
        os.mkdir(self.data + "blog.log")
        self.refused("blog", "log", naming=["blog.log"])


class Installing(BlogTest):
    def age(self, path, time):
        os.utime(path, (time, time))

    def test_a_template_that_can_not_be_brought_is_told_and_the_start_goes_on(self):
        write(self.home + "/a.blg", template())
        write(self.home + "/z.blg", template())
        os.mkdir(self.templates + "a.ini")
        self.age(self.templates + "a.ini", 1)
        result = self.must("--events", "start")
        self.assertIn("a.ini", " ".join(result.statuses))
        self.assertIn("a.ini", [line for line in result.error_lines if not line.startswith("{")][0])
        self.assertEqual(read(self.templates + "z.ini"), template())

    def test_an_edit_lives_until_a_newer_one_is_shipped(self):
        shipped, mine = self.home + "/WordPress.blg", self.templates + "WordPress.ini"
        time = int(os.stat(shipped).st_mtime)
        self.assertEqual(os.stat(mine).st_mtime, os.stat(shipped).st_mtime)
        write(mine, template())
        self.must("start")
        self.assertEqual(read(mine), template())
        os.utime(shipped, (time, os.stat(mine).st_mtime + 1))
        self.must("start")
        self.assertEqual(read(mine), read(shipped), "without a question")

    def test_one_that_its_owner_deleted_comes_back_and_one_of_their_own_stays(self):
        os.remove(self.templates + "tDiary.ini")
        write(self.templates + "own.ini", "mine")
        self.must("start")
        self.assertEqual(read(self.templates + "tDiary.ini"), read(self.home + "/tDiary.blg"))
        self.assertEqual(read(self.templates + "own.ini"), b"mine")


if __name__ == "__main__":
    unittest.main()
