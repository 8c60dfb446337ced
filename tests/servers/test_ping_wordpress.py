"""The update ping to a real blog: what WordPress makes of our call, and what we make of its answers."""

import json
import os
import shutil
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "cli"))

from blog_servers import WordPress, require_blog_servers
from home import PROGRAM, CliTest, read, write

# WordPress sends update pings and takes them where a plug-in of it says so, by its own hook for further methods. What
# arrives goes into a file, through its own reader of calls.
TAKES_PINGS = """<?php
function take_ping($call) {
    if ($call[0] === 'FAULT') {
        return new IXR_Error(7, 'not <today> & never');
    }
    file_put_contents(ABSPATH . 'pinged.json', json_encode($call) . "\\n", FILE_APPEND);
    return ['flerror' => false, 'message' => 'ありがとう <' . $call[0] . '> & more', 'legal' => 'x'];
}
add_filter('xmlrpc_methods', function ($methods) {
    return $methods + ['weblogUpdates.ping' => 'take_ping'];
});
"""


def setUpModule():
    require_blog_servers()
    work = unittest.enterModuleContext(tempfile.TemporaryDirectory(prefix="velloria-blog-"))
    PingWordPress.server = unittest.enterModuleContext(WordPress(work))


class PingWordPress(CliTest):
    server = None

    def setUp(self):
        super().setUp()
        shutil.copy(os.path.join(PROGRAM, "Chimer.dll"), self.home)
        self.must("start")

    def ping(self, title, address, page="xmlrpc.php"):
        """How the blog has taken it: done or failed, and its words."""
        self.set_key("RSS.ini", "Setting", "Title", title)
        self.set_key("RSS.ini", "Setting", "DiaryURL", address)
        write(self.data + "PINGList.csv", f"{self.server.url}{page},ブログ\r\n".encode("cp932"))
        self.must("ping")
        *_, line, _ = read(self.data + "ping.log").decode().splitlines()
        return tuple(line.split("\t")[3:])

    def test_a_blog_that_takes_pings_gets_name_and_address(self):
        self.server.put_must_use(TAKES_PINGS)
        title, address = "表の日記 & <A> \"B\" 😀", "http://www.example.com/d/?a=1&b=2"
        self.assertEqual(self.ping(title, address), ("完了", f"ありがとう <{title}> & more"))
        self.assertEqual(self.ping("日記", ""), ("完了", "ありがとう <日記> & more"))
        arrived = os.path.join(self.server.root, "pinged.json")
        with open(arrived, encoding="utf-8") as file:
            self.assertEqual([json.loads(line) for line in file], [[title, address], ["日記", ""]])
        os.remove(arrived)

    def test_its_refusals_are_told_in_its_words(self):
        self.server.put_must_use(TAKES_PINGS)
        self.assertEqual(self.ping("FAULT", "http://a.example/"), ("失敗", "not <today> & never (7)"))

    def test_a_blog_that_takes_none_says_so(self):
        self.server.put_must_use(None)
        state, words = self.ping("日記", "http://a.example/")
        self.assertEqual(state, "失敗")
        self.assertIn("weblogUpdates.ping", words)
        self.assertTrue(words.endswith("(-32601)"), words)

    def test_other_pages_of_it_are_no_answers(self):
        self.server.put_must_use(None)
        self.assertEqual(self.ping("日記", "http://a.example/", "wp-login.php")[0], "失敗")
        self.assertEqual(self.ping("日記", "http://a.example/", "no-such-page")[0], "失敗")


if __name__ == "__main__":
    unittest.main()
