"""Several users of one program: login, folders, what stays apart."""

import os
import stat
import unittest

from home import CliTest, entry, read, snapshot, write

WRONG_BOX = "critical: 不正なユーザもしくはパスワードです。\r\nVelloriaを終了します。"


class UsersTest(CliTest):
    """Fixture: the users taro and 花子 with passwords; the single user's data lies there, too."""

    def setUp(self):
        super().setUp()
        self.must("start")
        self.users = self.home + "/velluser.ini"
        for user, password in (("taro", "secret"), ("花子", "!ひみつ!")):
            self.add_user(user, password)

    def add_user(self, user, password):
        scrambled = self.must("convert", "scramble", input=password).text
        for key, value in (("ID", user), ("Pass", scrambled), ("Path", f"{self.home}/{user}/")):
            self.must("ini", "set", self.users, user, key, value)

    def start(self, user, password, *words, **how):
        return self.run_cli("--events", *words, "start", user=user, environment={"VELLORIA_PASSWORD": password}, **how)


class Login(UsersTest):
    def test_a_wrong_id_or_password_ends_with_one_box(self):
        for user, password in (("taro", "wrong"), ("taro", ""), ("taro", "Secret"), ("jiro", "secret"),
                               ("Taro", "secret"), ("taro ", "secret"), ("", "secret"),
                               ("Previous", ""), ("previous", ""),
                               ("taro", "花子")):
            result = self.start(user, password)
            self.assertEqual((result.code, result.boxes, result.out), (1, [WRONG_BOX], b""), (user, password))
            self.assertEqual(self.must("ini", "get", self.users, "Previous", "ID").text[:-1], user.strip())

    def test_without_a_user_every_start_is_refused(self):
        self.refused("start", naming=["--user"])
        self.refused("entry", "list", naming=["--user"])

    def test_a_user_file_that_names_nobody_still_asks_for_a_user(self):
        write(self.users, "")
        self.refused("start", naming=["--user"])

    def test_a_user_without_a_user_file_is_refused(self):
        os.remove(self.users)
        self.refused("start", user="taro", naming=["velluser.ini", "--user"])

    def test_the_right_password_leads_to_the_users_own_folder(self):
        for user, password in (("taro", "secret"), ("花子", "!ひみつ!")):
            result = self.start(user, password, answers=[self.make_data(user)])
            variables = dict(result.rows)
            self.assertEqual(result.code, 0, result)
            self.assertEqual((variables["IsLogin"], variables["UserID"], variables["UserPath"]),
                             ("true", user, f"{self.home}/{user}/"))

    def make_data(self, user):
        folder = os.path.join(self.root, "data-" + user)
        os.makedirs(folder, exist_ok=True)
        return folder

    def test_the_password_is_asked_for_when_the_variable_is_missing(self):
        for typed, code in (("secret", 0), ("wrong", 1)):
            result = self.run_cli("--events", "start", user="taro", answers=[typed, self.make_data("taro")])
            self.assertEqual(result.code, code, result)
            self.assertEqual(len(result.events_of("input")), 1)
        result = self.run_cli("--events", "start", user="taro")
        self.assertEqual((result.code, result.boxes), (1, []), "cancelled: a silent end")

    def test_an_empty_id_with_an_empty_password_is_refused(self):
        before = snapshot(self.home)
        result = self.start("", "", answers=[self.make_data("nobody")])
        self.assertEqual((result.code, result.out, result.boxes), (1, b"", []))
        self.assertIn("--user", result.error_text)
        result = self.run_cli("--events", "start", user="", answers=["", self.root])
        self.assertEqual(result.code, 1)
        self.assertEqual(snapshot(self.home), before)

    def test_a_deleted_user_is_gone_and_made_again_has_the_old_folder(self):
        self.start("taro", "secret", answers=[self.make_data("taro")])
        for key in ("ID", "Pass"):
            self.must("ini", "delete", self.users, "taro", key)
        self.assertEqual(self.start("taro", "secret").boxes, [WRONG_BOX])
        self.assertEqual(self.start("taro", "").boxes, [WRONG_BOX])
        self.add_user("taro", "new")
        self.assertEqual(self.start("taro", "new").code, 0)


class UserFolder(UsersTest):
    def test_a_user_without_any_file_is_asked_for_a_folder_and_gets_an_empty_diary(self):
        data = os.path.join(self.root, "data")
        os.makedirs(data)
        result = self.start("taro", "secret", answers=[data])
        self.assertEqual([box.split("\r\n")[0] for box in result.boxes],
                         ["critical: データ保存先フォルダが不正です。",
                          "plain: diary.mdbがアップデートされています。",
                          "plain: diary.mdbのアップデートは完了しました。"])
        folder = self.home + "/taro/"
        self.assertEqual(sorted(os.listdir(folder)), ["diary.ini", "diary.mdb"])
        self.assertEqual(stat.S_IMODE(os.stat(folder).st_mode), 0o700)
        self.assertEqual(stat.S_IMODE(os.stat(folder + "diary.ini").st_mode), 0o600)
        self.assertTrue(os.path.exists(data + "/Customize/Customize.ini"))
        again = self.start("taro", "secret")
        self.assertEqual((again.code, again.boxes), (0, []))

    def test_a_cancelled_folder_ends(self):
        result = self.start("taro", "secret", answers=[])
        self.assertEqual((result.code, len(result.boxes)), (1, 2))

    def test_a_path_that_is_not_absolute_counts_as_unset(self):
        for path in ("C:\\taro\\", "", "relative"):
            self.must("ini", "set", self.users, "taro", "Path", path)
            result = self.start("taro", "secret", answers=[], options={"cwd": self.root})
            self.assertEqual([event["folder"] for event in result.events_of("file")], [self.home + "/taro/"])
            self.assertEqual(sorted(os.listdir(self.root)), ["home"])

    def test_users_keep_their_diaries_apart(self):
        diaries = {"taro": "secret", "花子": "!ひみつ!"}
        for user, password in diaries.items():
            data = os.path.join(self.root, "data-" + user)
            os.makedirs(data)
            self.start(user, password, answers=[data])
            result = self.run_cli("entry", "put", user=user, input=entry("2004/02/01", user),
                                  environment={"VELLORIA_PASSWORD": password})
            self.assertEqual(result.code, 0, result)
        for user, password in diaries.items():
            result = self.run_cli("entry", "list", user=user, environment={"VELLORIA_PASSWORD": password})
            self.assertEqual([row[2] for row in result.rows], [user])
        os.remove(self.users)
        self.assertEqual(self.listed(), [])

    def test_the_site_of_a_user_stays_at_the_end_of_a_run(self):
        data = os.path.join(self.root, "data", "")
        os.makedirs(data)
        self.start("taro", "secret", answers=[data])
        write(data + "foreign.htm", "mine")
        result = self.run_cli("--events", "site", "save", "--as", data + "index.htm", user="taro",
                              environment={"VELLORIA_PASSWORD": "secret"})
        self.assertEqual(result.code, 0, result)
        self.assertIn("データフォルダに保存したページは、終了時に削除されます。", result.statuses)
        self.start("taro", "secret")
        self.assertEqual(read(data + "foreign.htm"), b"mine")
        self.assertTrue(os.path.exists(data + "index.htm"))

    def test_a_start_with_a_user_makes_no_preview(self):
        data = os.path.join(self.root, "data", "")
        os.makedirs(data)
        self.start("taro", "secret", answers=[data])
        self.assertFalse(os.path.exists(data + "tmp.htm"))


if __name__ == "__main__":
    unittest.main()
