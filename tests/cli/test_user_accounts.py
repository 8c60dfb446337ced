"""User accounts by command: made, listed, changed, deleted, and given what a single user has written."""

import concurrent.futures
import os
import stat
import unittest

from home import CliTest, entry, read, snapshot, write

CHOOSE = "ユーザーを選択してください。"
WRONG = "critical: パスワードが一致しませんでした。\r\n"


def made(name):
    return f"plain: 新しいユーザー「{name}」を作成しました。"


class AccountsTest(CliTest):
    def setUp(self):
        super().setUp()
        self.users = self.home + "/velluser.ini"

    def user(self, *words, answers=(), login=None, password="abc", **how):
        """`user ...`, with events."""
        environment = {"VELLORIA_PASSWORD": password} if login else {}
        return self.run_cli("--events", "user", *words, answers=list(answers), user=login, environment=environment, **how)

    def add(self, name, password="abc", login=None):
        result = self.user("add", name, answers=[password, password], login=login)
        self.assertEqual((result.code, result.boxes), (0, [made(name)]), result)

    def key(self, user, key):
        return self.must("ini", "get", self.users, user, key, "(missing)").text[:-1]

    def assert_refused(self, result, *boxes):
        """Refused with these boxes, and one line that says that it was."""
        self.assertEqual((result.code, result.boxes, result.out), (1, list(boxes), b""), result)
        self.assertEqual(len([line for line in result.error_lines if line.startswith("velloria-cli: ")]), 1, result)


class Add(AccountsTest):
    def test_the_first_user_makes_the_file(self):
        result = self.user("add", "taro", answers=["abc", "abc"])
        self.assertEqual((result.code, result.out, result.boxes), (0, b"", [made("taro")]))
        self.assertEqual(read(self.users).decode(), f"[taro]\r\nID=taro\r\nPass=dcb\r\nPath={self.home}/taro/\r\n")
        self.assertEqual(stat.S_IMODE(os.stat(self.users).st_mode), 0o600)
        self.assertEqual(stat.S_IMODE(os.stat(self.home + "/taro").st_mode), 0o700)
        self.refused("entry", "list", naming=["--user"])

    def test_the_name_is_not_asked_for_and_the_password_twice_behind_asterisks(self):
        result = self.user("add", "taro", answers=["abc", "abc"])
        self.assertEqual([(event["title"], event["text"], event["answer"]) for event in result.events_of("input")],
                         [("パスワードの入力", "パスワード", "***"), ("パスワードの入力", "パスワード（確認用）", "***")])

    def test_a_folder_that_is_there_is_used(self):
        write(self.home + "/taro/x", "x")
        result = self.user("add", "taro", answers=["abc", "abc"])
        self.assertEqual(result.boxes, ["information: ユーザーフォルダはすでに存在するので、そのまま使用します。", made("taro")])

    def test_without_a_password_the_user_stays(self):
        self.assert_refused(self.user("add", "taro", answers=[None]))
        self.assertEqual(read(self.users), b"[taro]\r\nID=taro\r\n")
        self.assertEqual(self.user("list", login="taro", password="").code, 0)

    def test_a_slip_with_the_first_user_leaves_no_file(self):
        self.assert_refused(self.user("add", "taro", answers=["abc", "abd"]))
        self.assertFalse(os.path.exists(self.users))
        self.assertFalse(os.path.exists(self.home + "/taro"))
        self.must("entry", "list")

    def test_a_slip_with_the_second_leaves_the_first(self):
        self.add("taro")
        before = read(self.users)
        self.assert_refused(self.user("add", "hanako", answers=["abc", "abd"], login="taro"))
        self.assertEqual(self.key("hanako", "ID"), "(missing)")
        self.assertTrue(read(self.users).startswith(before))

    def test_a_second_user_needs_a_login(self):
        self.add("taro")
        self.refused("user", "add", "hanako", naming=["--user"])
        self.add("hanako", login="taro")
        self.assertEqual([row[0] for row in self.user("list", login="taro").rows], ["taro", "hanako"])

    def test_names_that_are_taken_or_mean_something_else(self):
        self.add("Taro")
        before = snapshot(self.home)
        for name in ("Taro", "taro", "TARO"):
            self.assert_refused(self.user("add", name, login="Taro"), "critical: すでにそのユーザーは存在します。")
        for name in ("", " ", "Previous", "userdata", "a/b", "a\\b", "a[b", "a]b", "a=b", "a\tb", "..", "😀", "é", "〜",
                     "x" * 300, "あ" * 200, "default.ini"):
            self.assert_refused(self.user("add", name, login="Taro"), "critical: その名前は使用できません。")
        after = snapshot(self.home)
        self.assertEqual({name for name in after if before.get(name) != after[name]} - {"velluser.ini"}, set())
        self.assertEqual([row[0] for row in self.user("list", login="Taro").rows], ["Taro"])

    def test_passwords_that_would_not_come_back(self):
        for password in ("é", "😀", "x" * 256):
            self.assert_refused(self.user("add", "taro", answers=[password, password]),
                                "critical: そのパスワードは使用できません。")
            self.assertFalse(os.path.exists(self.users))

    def test_odd_passwords_log_in(self):
        self.add("taro")
        for name, password in (("a", "!a!"), ("b", "&a&"), ("c", "ひみつ×ん円改ﾟ"), ("d", ' "x" ')):
            self.add(name, password, login="taro")
            self.assertEqual(self.user("list", login=name, password=password).code, 0, password)

    def test_after_the_last_user_no_login_is_needed(self):
        self.add("taro")
        self.user("delete", "taro", answers=["abc"], login="taro")
        self.refused("entry", "list", naming=["--user"])
        result = self.user("add", "taro", answers=["new", "new"])
        self.assertEqual(result.boxes[-1], made("taro"))
        self.assertEqual(self.user("list", login="taro", password="new").rows, [["taro", self.home + "/taro/"]])

    def test_of_the_same_name_at_once_one_is_made(self):
        self.add("taro")
        for name in ("a", "b", "c"):
            line = self.command("--events", "user", "add", name, answers=["p", "p"], user="taro")
            with concurrent.futures.ThreadPoolExecutor(8) as pool:
                results = list(pool.map(lambda _: self.execute(line, environment={"VELLORIA_PASSWORD": "abc"}), range(8)))
            self.assertEqual(sorted(result.boxes for result in results),
                             [["critical: すでにそのユーザーは存在します。"]] * 7 + [[made(name)]])
            self.assertEqual([result.code for result in results].count(0), 1)

    def test_a_read_only_file(self):
        self.add("taro")
        os.chmod(self.users, 0o400)
        before = read(self.users)
        result = self.user("add", "hanako", answers=["abc", "abc"], login="taro")
        self.assertEqual((result.code, len(result.events_of("failure"))), (1, 1), result)
        self.assertEqual(read(self.users), before)
        self.assertFalse(os.path.exists(self.home + "/hanako"))

    def test_wrong_usage(self):
        self.refused("user", "add", code=2)
        self.refused("user", "path", "taro", code=2)
        self.refused("user", "list", "x", code=2)


class Listing(AccountsTest):
    def test_nobody(self):
        self.assertEqual(self.user("list").out, b"")
        self.assertEqual(self.run_cli("--json", "user", "list").json, [])

    def test_ids_and_folders(self):
        self.add("taro")
        result = self.run_cli("--json", "user", "list", user="taro", environment={"VELLORIA_PASSWORD": "abc"})
        self.assertEqual(result.json, [{"ID": "taro", "Path": self.home + "/taro/"}])

    def test_a_thousand_users(self):
        write(self.users, "".join(f"[user{i}]\r\nID=user{i}\r\n" for i in range(1000)))
        rows = self.user("list", login="user999", password="").rows
        self.assertEqual((len(rows), rows[-1][0]), (1000, "user999"))
        self.assert_refused(self.user("add", "USER999", login="user0", password=""),
                            "critical: すでにそのユーザーは存在します。")


class Password(AccountsTest):
    def test_of_the_logged_in_user(self):
        self.add("taro")
        result = self.user("password", answers=["new", "new"], login="taro")
        self.assertEqual((result.code, result.boxes), (0, ["plain: パスワードの変更が完了しました！"]))
        self.assertEqual({event["title"] for event in result.events_of("input")}, {"新しいパスワードの入力"})
        self.assertEqual(self.user("list", login="taro", password="new").code, 0)
        self.assertEqual(self.user("list", login="taro", password="abc").code, 1)

    def test_refusals(self):
        self.assert_refused(self.user("password"), "critical: ユーザー名が空白の場合は、パスワードの変更はできません。")
        self.add("taro")
        for answers, boxes in (([], []), (["x", None], []),
                               (["x", "y"], ["critical: 入力したパスワードが一致しません。\r\n変更はキャンセルします。"]),
                               (["é", "é"], ["critical: そのパスワードは使用できません。"])):
            self.assert_refused(self.user("password", answers=answers, login="taro"), *boxes)
            self.assertEqual(self.key("taro", "Pass"), "dcb")


class Delete(AccountsTest):
    DONE = "plain: ユーザーの削除が完了しました。\r\nユーザーフォルダはご自分で削除してください。"

    def setUp(self):
        super().setUp()
        self.add("taro")
        self.add("hanako", "xyz", login="taro")

    def test_another_user(self):
        result = self.user("delete", "hanako", answers=["xyz"], login="taro")
        self.assertEqual((result.code, result.boxes), (0, [self.DONE]))
        self.assertEqual([self.key("hanako", key) for key in ("ID", "Pass", "Path")],
                         ["(missing)", "(missing)", self.home + "/hanako/"])
        self.assertTrue(os.path.isdir(self.home + "/hanako"))

    def test_oneself(self):
        result = self.user("delete", "taro", answers=["abc"], login="taro")
        self.assertEqual(result.boxes, [self.DONE, "plain: Velloriaを再起動してください。"])

    def test_refusals(self):
        for answers, boxes in ((["abc"], [WRONG + "ユーザーの削除を中止します。"]), ([None], [])):
            self.assert_refused(self.user("delete", "hanako", answers=answers, login="taro"), *boxes)
            self.assertEqual(self.key("hanako", "ID"), "hanako")
        for name in ("nobody", "Hanako", "Previous"):
            result = self.user("delete", name, answers=["xyz"], login="taro")
            self.assert_refused(result)
            self.assertIn(name, result.error_lines[-1])
        self.assert_refused(self.user("delete", "", login="taro"), "critical: " + CHOOSE)


class Path(AccountsTest):
    def setUp(self):
        super().setUp()
        self.add("taro")
        self.add("hanako", "xyz", login="taro")
        self.folder = os.path.join(self.root, "new")
        os.makedirs(self.folder)

    def test_a_folder_that_is_named_is_not_asked_for(self):
        for folder in (self.folder, self.folder + "/", "new"):
            result = self.user("path", "taro", folder, answers=["abc"], login="taro", options={"cwd": self.root})
            self.assertEqual((result.code, result.boxes, result.events_of("file")),
                             (0, ["plain: ユーザーパスの変更が完了しました。"], []), result)
            self.assertEqual(self.key("taro", "Path"), self.folder + "/")
        result = self.run_cli("start", user="taro", answers=[self.folder], environment={"VELLORIA_PASSWORD": "abc"})
        self.assertEqual((result.code, dict(result.rows)["UserPath"]), (0, self.folder + "/"))

    def test_refusals(self):
        long = self.folder + "/x" * 120
        os.makedirs(long)
        invalid = "critical: パスが不正なため、ユーザーパスの変更を中止します。"
        others = "critical: ほかのユーザーのフォルダは指定できません。\r\n別のフォルダを指定してください。"
        os.makedirs(self.home + "/hanako/inner")
        for folder, answers, boxes in (
                (self.folder, ["xyz"], [WRONG + "ユーザーパスの変更を中止します。"]), (self.folder, [], []),
                ("", ["abc"], [invalid]), (self.root + "/missing", ["abc"], [invalid]),
                (self.users, ["abc"], [invalid]), (self.home + "/hanako", ["abc"], [others]),
                (self.home + "/hanako/inner", ["abc"], [others]),
                (long, ["abc"], ["critical: フォルダの名前が長すぎて設定に保存できません。\r\n"
                                 "もっと短い名前のフォルダを指定して下さい。"])):
            self.assert_refused(self.user("path", "taro", folder, answers=answers, login="taro"), *boxes)
            self.assertEqual(self.key("taro", "Path"), self.home + "/taro/", folder)
        self.assert_refused(self.user("path", "", self.folder, login="taro"), "critical: " + CHOOSE)

    def test_without_a_login(self):
        os.rename(self.users, self.users + ".away")
        result = self.user("path", "", self.folder)
        self.assert_refused(result, "critical: " + CHOOSE)
        self.assertIn("taro", self.refused("user", "path", "taro", self.folder))


class Take(AccountsTest):
    QUESTION = ("question: 選択しているユーザー(taro)にシングルユーザー時のデータを移行します。\r\n"
                "基本的に上書きとなるので、データの消失にご注意下さい（現在のファイルは「_BackUp」として残します。")
    DONE = "plain: 完了しました！"
    SELF = "plain: 現在ログインしたユーザーにデータを移行したので、Velloriaを再起動してください。"

    def setUp(self):
        super().setUp()
        self.must("start")
        self.put(entry("2004/02/01", "single"))
        self.set_key("diary.ini", "RSS", "IniFileName", "/elsewhere/RSS.ini")
        self.add("taro")
        self.taro = self.home + "/taro/"

    def take(self, answers=("abc", "yes")):
        return self.user("take", "taro", answers=answers, login="taro")

    def taros(self):
        result = self.run_cli("--json", "entry", "list", user="taro", environment={"VELLORIA_PASSWORD": "abc"})
        self.assertEqual(result.code, 0, result)
        return [row["Title"] for row in result.json]

    def key_of(self, section, key="IniFileName"):
        return self.must("ini", "get", self.taro + "diary.ini", section, key).text[:-1]

    def test_diary_and_settings_come_along(self):
        result = self.take()
        self.assertEqual((result.code, result.boxes), (0, [self.QUESTION, self.DONE, self.SELF]), result)
        self.assertEqual(result.statuses[-1], "設定と日記を移行しました。画像、カスタマイズのテキスト、登録したファイルは"
                                              f"「{self.data}」に残っています。")
        self.assertEqual(sorted(os.listdir(self.taro)), ["diary.ini", "diary.mdb"])
        self.assertEqual([self.key_of("ALL", "DataPath"), *map(self.key_of, ("Customize", "Frame", "HaloScan", "Blog", "RSS"))],
                         [self.taro, self.taro + "Customize/Customize.ini", self.taro + "Frame.ini",
                          self.taro + "HaloScan.ini", self.taro + "Blog.ini", "/elsewhere/RSS.ini"])
        self.assertEqual(self.taros(), ["single"])

    def test_twice_the_first_backup_still_exists(self):
        write(self.taro + "diary.ini", "[FTP]\r\nID=real\r\n")
        self.take()
        first = read(self.taro + "diary_BackUp.ini")
        self.assertIn(b"ID=real", first)
        self.run_cli("entry", "put", user="taro", input=entry("2004/02/02", "later"),
                     environment={"VELLORIA_PASSWORD": "abc"})
        self.take()
        self.assertEqual(read(self.taro + "diary_BackUp2.ini"), first)
        self.assertEqual(self.taros(), ["single"])
        self.assertEqual(sorted(name for name in os.listdir(self.taro) if "BackUp" in name),
                         ["diary_BackUp.ini", "diary_BackUp.mdb", "diary_BackUp2.ini"])

    def test_refusals(self):
        before = snapshot(self.taro)
        for answers, boxes in ((["x"], [WRONG + "データの移行を中止します。"]), ([], []), (["abc", "no"], [self.QUESTION]),
                               (["abc"], [self.QUESTION])):
            self.assert_refused(self.take(answers), *boxes)
            self.assertEqual(snapshot(self.taro), before)
        self.assert_refused(self.user("take", "", login="taro"), "critical: データを移行するユーザーが選択されていません。")
        for name in ("diary.ini", "diary.mdb"):
            os.remove(self.data + name)
        self.assert_refused(self.take(), self.QUESTION, "critical: 移行するデータがありません。")
        self.assertEqual(snapshot(self.taro), before)

    def test_a_damaged_diary_moves_nothing(self):
        write(self.database, b"no diary at all" * 100)
        before = snapshot(self.taro)
        result = self.take()
        self.assertEqual((result.code, len(result.events_of("failure"))), (1, 1), result)
        self.assertEqual(snapshot(self.taro), before)


if __name__ == "__main__":
    unittest.main()
