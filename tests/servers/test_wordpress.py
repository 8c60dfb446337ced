"""Entries that go to WordPress from the windows: what is told, and what the blog has of them."""

import html
import pathlib
import re
import tempfile
import unittest
import urllib.error

from blog_home import DONE, DONE_STATUS, EMPTIED, FAILED_STATUS, NO_POSTING_PAGE, BlogTest, stage
from blog_servers import WordPress, require_blog_servers

MANUAL = pathlib.Path(__file__).parents[2] / "docs" / "manual" / "manual.htm"


def of_manual(word):
    """What the manual says to put on the server, as it stands there."""
    (code,) = (html.unescape(code) for code in re.findall("<pre><code>(.*?)</code></pre>", MANUAL.read_text("utf-8"), re.S)
               if word in code)
    return code + "\n"


CLASSIC = of_manual("use_block_editor_for_post")
GENRE_CATEGORY = of_manual("wp_set_post_categories")
BODY = "<P>一行目<BR>\r\n二行目 &amp; \"引用\"</P>\r\n<P><B>次</B>の段落</P>"
STORED = "一行目\r\n二行目 & \"引用\"\r\n\r\n<B>次</B>の段落\r\n\r\n"


def setUpModule():
    require_blog_servers()
    work = unittest.enterModuleContext(tempfile.TemporaryDirectory(prefix="velloria-blog-"))
    WordPressTest.server = unittest.enterModuleContext(WordPress(work))


class WordPressTest(BlogTest):
    blog = "WordPress"
    server = None

    def setUp(self):
        super().setUp()
        self.server.put_must_use(CLASSIC)
        self.server.forget_posts()
        self.server.forget_logins()
        self.user = {"LoginID": self.server.user, "Password": self.server.password,
                     "PostURL": self.server.url + "wp-admin/post-new.php"}

    def change_user(self, key, value):
        """Of the blog's one user, until the end of the test."""
        row = f"from wp_usermeta where user_id = 1 and meta_key = '{key}'"
        ((before,),) = self.server.sql(f"select meta_value {row}")
        change = "update wp_usermeta set meta_value = '{}' " + row.removeprefix("from wp_usermeta ")
        self.server.sql(change.replace("{}", value))
        self.addCleanup(self.server.sql, change.replace("{}", before))

    def assert_posts(self, *expected):
        """Each a dictionary of what matters in a post."""
        posts = self.server.posts()
        self.assertEqual([{name: post[name] for name in wanted} for post, wanted in zip(posts, expected, strict=False)],
                         list(expected))
        self.assertEqual(len(posts), len(expected), posts)
        return posts

    def test_a_post_is_as_the_entry_and_the_flags_say(self):
        desktop = self.enterContext(self.desktop())
        told = self.must_post(desktop, "海まで「行く」", BODY, entry={"genre": "旅行"})
        self.assertEqual(told.boxes, [DONE])
        self.assertEqual([text for text in told.texts("status") if text.startswith("WordPress")],
                         ["WordPressに接続中", "WordPressにログイン中", "WordPressに投稿中"])
        (post,) = self.assert_posts({"post_title": "海まで「行く」", "post_content": STORED, "post_status": "publish",
                                     "comment_status": "open", "ping_status": "open"})
        self.assertEqual(self.server.terms(post["ID"]), [("category", "未分類"), ("post_tag", "旅行")])
        page = self.server.page(f"?p={post['ID']}")
        self.assertIn("<p>一行目<br />\n二行目 &#038; &#8220;引用&#8221;</p>\n<p><B>次</B>の段落</p>", page)
        self.assertIn("海まで「行く」", self.server.page())
        self.assertEqual([(line["title"], line["blog"]) for line in self.posted()], [("海まで「行く」", "WordPress")])
        for secret in (self.server.password, "一行目", "海まで"):
            self.assertNotIn(secret, self.protocol)

        self.server.forget_posts()
        told = self.must_post(desktop, "下書き", flags={"Status": 0, "AcceptComment": 0, "AcceptTrackBack": 0})
        self.assertNotIn("WordPressにログイン中", told.texts("status"))
        (post,) = self.assert_posts({"post_title": "下書き", "post_content": "本文", "post_status": "draft",
                                     "comment_status": "closed", "ping_status": "closed"})
        with self.assertRaises(urllib.error.HTTPError) as refused:
            self.server.page(f"?p={post['ID']}")
        self.assertEqual(refused.exception.code, 404)
        self.assertNotIn("下書き", self.server.page())

        self.server.forget_posts()
        self.must_post(desktop, "混ぜて", flags={"Status": 1, "AcceptComment": 0, "AcceptTrackBack": 1})
        self.assert_posts({"post_status": "publish", "comment_status": "closed", "ping_status": "open"})

    def test_a_second_post_of_an_entry_is_told_and_goes_on(self):
        desktop = self.enterContext(self.desktop())
        self.must_post(desktop, "二度")
        told = desktop.take(blog="WordPress")
        self.assertEqual(told.boxes, [DONE])
        self.assertEqual(len([text for text in told.texts("status") if "「二度」としてWordPressへ投稿済みです。" in text]),
                         1, told)
        self.assert_posts({"post_title": "二度", "post_status": "publish"}, {"post_title": "二度"})
        self.assertEqual(len(self.posted()), 2)

    def test_a_wrong_password_posts_nothing(self):
        self.user["Password"] = "chigau kotoba"
        told = self.post(self.enterContext(self.desktop()), "題")
        self.assertEqual(told.boxes, [NO_POSTING_PAGE])
        self.assertIn("/wp-login.php", told.address)
        self.assert_posts()
        self.assertEqual(self.posted(), [])
        self.assertNotIn("chigau kotoba", self.protocol)

    def test_an_english_blog_has_a_login_page_of_one_form(self):
        work = self.enterContext(tempfile.TemporaryDirectory(prefix="velloria-blog-"))
        server = self.enterContext(WordPress(work, language=""))
        server.put_must_use(CLASSIC)
        self.user["PostURL"] = server.url + "wp-admin/post-new.php"
        desktop = self.enterContext(self.desktop())
        self.user["Password"] = "chigau kotoba"
        self.assertEqual(self.post(desktop, "題").boxes, [NO_POSTING_PAGE])
        self.user["Password"] = server.password
        self.must_post(desktop, "題")
        self.assertEqual([post["post_title"] for post in server.posts()], ["題"])

    def test_a_login_is_asked_for_once_and_lasts_over_a_restart(self):
        self.user = {"PostURL": self.user["PostURL"]}
        with self.desktop() as desktop:
            told = self.must_post(desktop, "一日目", answers=[self.server.user, self.server.password])
            self.assertEqual([box for box in told.boxes if box != DONE], [
                "input: WordPressユーザー名を入れてください", "input: WordPressパスワードを入れてください"])
        logins = self.server.log.count("wp-login.php")
        self.assertGreater(logins, 0)
        self.user |= {"LoginID": "", "Password": ""}
        with self.desktop() as desktop:
            self.assertEqual(self.must_post(desktop, "二日目").boxes, [DONE])
        self.assertEqual(self.server.log.count("wp-login.php"), logins)
        self.assert_posts({"post_title": "一日目"}, {"post_title": "二日目"})

    def test_a_private_entry_is_posted_after_a_yes_alone(self):
        question = "question: 非公開になっていますが、Blogに投稿しますか？"
        desktop = self.enterContext(self.desktop())
        self.assertEqual(self.post(desktop, "秘密", entry={"private": True}, answers=["no"]).boxes, [question])
        self.assert_posts()
        told = self.must_post(desktop, "秘密", entry={"private": True}, answers=["yes"])
        self.assertEqual(told.boxes, [question, DONE])
        self.assert_posts({"post_title": "秘密", "post_status": "publish"})

    def test_a_body_arrives_to_the_byte(self):
        desktop = self.enterContext(self.desktop())
        odd = "「\"」'\\ \\n %E3 & &nbsp; 😀\u2028髙① é</script>$1 ${x} `y` <b title=\"a'b\">c</b>"
        self.must_post(desktop, odd[:20], odd)
        large = "あいう\\'\"&😀" * 6000
        self.assertGreater(len(large.encode()), 100_000)
        self.must_post(desktop, "長い", large)
        lines = "一行目\r\n\r\n二行目\r\n"
        self.must_post(desktop, "改行", lines, flags={"Type": 0})
        self.assert_posts({"post_title": odd[:20], "post_content": odd}, {"post_content": large},
                          {"post_content": lines})

    def test_the_block_editor_is_refused(self):
        self.server.put_must_use(None)
        desktop = self.enterContext(self.desktop())
        self.assertEqual(self.post(desktop, "題").boxes, [NO_POSTING_PAGE])
        told = self.post(desktop, "題")
        self.assertEqual(told.boxes, [stage("ログイントライエラー")], "logged in, it has no form that could be filled")
        self.assertEqual(told.texts("status")[-1], FAILED_STATUS)
        self.assert_posts()
        self.assertEqual(self.posted(), [])

    def test_the_visual_editor_empties_the_body_unless_it_is_off(self):
        """By the third line of the file, or in the user's own profile."""
        self.server.put_must_use("".join(CLASSIC.splitlines(keepends=True)[:2]))
        desktop = self.enterContext(self.desktop())
        told = self.post(desktop, "一", entry={"genre": "旅行"})
        self.assertEqual(told.boxes, [DONE])
        self.assertEqual(told.texts("status")[-2:], [DONE_STATUS, EMPTIED])
        self.change_user("rich_editing", "false")
        self.must_post(desktop, "二", entry={"genre": "旅行"})
        self.assert_posts({"post_title": "一", "post_content": ""}, {"post_title": "二", "post_content": "本文"})

    def test_an_author_posts_and_a_contributor_does_not(self):
        desktop = self.enterContext(self.desktop())
        self.change_user("wp_capabilities", 'a:1:{s:6:"author";b:1;}')
        self.must_post(desktop, "作成者")
        self.change_user("wp_capabilities", 'a:1:{s:11:"contributor";b:1;}')
        self.assertEqual(self.post(desktop, "寄稿者").boxes, [stage("カテゴリ/ジャンル挿入エラー")])
        self.assert_posts({"post_title": "作成者", "post_status": "publish"})

    def test_genres_become_categories_where_the_blog_does_that(self):
        self.server.put_must_use(CLASSIC + GENRE_CATEGORY)
        desktop = self.enterContext(self.desktop())
        self.must_post(desktop, "あり", entry={"genre": "旅行"})
        self.must_post(desktop, "なし", entry={"genre": "庭"})
        first, second = self.assert_posts({"post_title": "あり"}, {"post_title": "なし"})
        self.assertEqual(self.server.terms(first["ID"]), [("category", "旅行"), ("post_tag", "旅行")])
        self.assertEqual(self.server.terms(second["ID"]), [("category", "未分類"), ("post_tag", "庭")])

    def test_the_blog_and_its_own_pages_are_shown(self):
        desktop = self.enterContext(self.desktop())
        told = desktop.take(blog="WordPress", action="閲覧", answers=[self.server.url])
        self.assertEqual(told.boxes, ["input: 接続先URLを入力してください。"])
        told = desktop.take(blog="WordPress", action="閲覧", until=self.server.url)
        self.assertEqual(told.boxes, [])
        desktop.take(blog="WordPress", action="管理", answers=[self.server.url + "wp-admin/"],
                     until=self.server.url + "wp-login.php")


if __name__ == "__main__":
    unittest.main()
