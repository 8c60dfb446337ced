"""The update ping through the plug-in. VELLORIA_PLUGIN_STUB names the plug-in that writes down its calls."""

import os
import shutil
import unittest

from home import CLI, CliTest, read, write

STUB = os.environ["VELLORIA_PLUGIN_STUB"]


class Ping(CliTest):
    def setUp(self):
        super().setUp()
        self.plugin = os.path.join(self.home, "Chimer.dll")
        self.log = os.path.join(self.inputs, "calls.txt")
        shutil.copy(STUB, self.plugin)
        self.must("start")

    def ping(self, **changed):
        return self.run_cli("--events", "ping", environment={"VELLORIA_PLUGIN_LOG": self.log} | changed)

    @property
    def calls(self):
        return read(self.log).decode().splitlines()

    def test_makes_the_five_calls_in_order(self):
        feed = self.ini("diary.ini", "RSS", "IniFileName")
        feed = feed if os.path.isabs(feed) else os.path.join(self.data, "Customize", feed or "RSS.ini")
        self.must("ini", "set", feed, "Setting", "Title", "表の日記")
        self.must("ini", "set", feed, "Setting", "DiaryURL", "http://127.0.0.1/d/")
        result = self.run_cli("ping", environment={"VELLORIA_PLUGIN_LOG": self.log})
        self.assertEqual((result.code, result.out, result.error_lines), (0, b"", []), result)
        self.assertEqual(self.calls, ["set_pop_up 0", f"set_ping_list_file {self.data}PINGList.csv",
                                      "set_blog_url http://127.0.0.1/d/", "set_blog_name 表の日記", "pings_execute",
                                      "release"])

    def test_leaves_the_list_of_servers_to_the_plugin(self):
        self.assertEqual(self.ping().code, 0)
        self.assertFalse(os.path.exists(self.data + "PINGList.csv"))
        write(self.data + "PINGList.csv", b"\x82\xa0,\0anything")
        self.assertEqual(self.ping().code, 0)
        self.assertEqual(read(self.data + "PINGList.csv"), b"\x82\xa0,\0anything")

    def test_tells_why_it_failed(self):
        result = self.ping(VELLORIA_PLUGIN_FAILS="pings_execute")
        self.assertEqual((result.code, result.out), (1, b""))
        (failure,) = result.events_of("failure")
        self.assertIn("the stub fails", failure["text"])
        self.assertIn("the stub fails", result.error_lines[-1])
        self.assertEqual(self.calls[-2:], ["pings_execute", "release"])

    def test_survives_whatever_the_plugin_throws(self):
        for thrown in ("pings_execute", "pings_execute 7", "create 7", "release 7", "velloria_plugin_get 7"):
            result = self.ping(VELLORIA_PLUGIN_THROWS=thrown)
            self.assertEqual((result.code, result.out), (1, b""), thrown)
            (failure,) = result.events_of("failure")
            self.assertIn("Chimer.dll", failure["text"], thrown)

    def test_one_that_ends_what_loads_it_is_a_failure_and_nothing_else(self):
        for end, told in (("loading crash", "シグナル6"), ("velloria_plugin_get exit", "終了コード0")):
            result = self.ping(VELLORIA_PLUGIN_ENDS=end)
            self.assertEqual((result.code, result.out), (1, b""), result)
            (failure,) = result.events_of("failure")
            for word in ("プラグインを使用できません。", self.plugin, told):
                self.assertIn(word, failure["text"])
        self.assertFalse(os.path.exists(self.log))

    def test_the_program_that_tries_it_is_missed_by_its_name(self):
        alone = os.path.join(self.inputs, "velloria-cli")
        shutil.copy(CLI, alone)
        result = self.execute([alone, "--home", self.home, "ping"])
        self.assertEqual(result.code, 1, result)
        self.assertIn(os.path.join(self.inputs, "velloria-plugin"), result.error_text)

    def test_shows_what_the_plugin_says(self):
        result = self.ping(VELLORIA_PLUGIN_TALKS="1")
        self.assertEqual(result.code, 0, result)
        self.assertEqual(result.statuses, ["PINGの送信中..."])
        self.assertEqual(result.boxes, ["exclamation: 一\r\n二\r\n三", "question: 続けますか？"])
        self.assertIn("yes 0", self.calls)

    def test_refuses_without_a_plugin(self):
        os.remove(self.plugin)
        self.refused("ping", naming=[self.plugin])

    def test_refuses_what_is_no_plugin(self):
        for content in (b"", b"MZ not for here", b"\x7fELF" + b"\0" * 60, read(STUB)[:2000]):
            write(self.plugin, content)
            self.refused("ping", naming=[self.plugin])
        os.remove(self.plugin)
        os.mkdir(self.plugin)
        self.refused("ping", naming=[self.plugin])

    def test_takes_no_words(self):
        self.refused("ping", "now", code=2)


if __name__ == "__main__":
    unittest.main()
