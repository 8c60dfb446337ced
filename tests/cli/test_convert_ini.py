"""The converters and the settings wrappers, which start nothing."""

import os
import stat
import subprocess
import unittest

from home import CliTest, read, snapshot, write


class UrlEncoding(CliTest):
    def encode(self, encoding, text):
        return self.must("convert", "urlencode", encoding, input=text).text

    def test_each_encoding_has_its_own_rules(self):
        for text, sjis, eucjp, utf8 in [
                ("", "", "", ""),
                ("a b", "a+b", "a+b", "a+b"),
                ("+", "%2B", "%2B", "%2B"),
                ("@*-._", "@*-._", "@*-._", "@*-._"),
                ("~!/", "%7E%21%2F", "%7E%21%2F", "%7E%21%2F"),
                ("\t\r\n", "%09%0D%0A", "%09%0D%0A", "%09%0D%0A"),
                ("azAZ09", "azAZ09", "azAZ09", "azAZ09"),
                ("ア", "%83%41", "%A5%A2", "%E3%82%A2"),
                ("亜", "%88%9F", "%B0%A1", "%E4%BA%9C"),
                ("ｱ", "%B1", "%8E%B1", "%EF%BD%B1"),
                ("é", "%3F", "%3F", "%C3%A9"),
                ("😀", "%3F%3F", "%3F%3F", "%ED%A0%BD%ED%B8%80"),
                ("日本", "%93%FA%96%7B", "%C6%FC%CB%DC", "%E6%97%A5%E6%9C%AC")]:
            with self.subTest(text):
                self.assertEqual([self.encode(name, text) for name in ("sjis", "eucjp", "utf8")],
                                 [sjis, eucjp, utf8])

    def test_high_lead_bytes_are_single_ones_in_shift_jis(self):
        self.assertEqual(self.encode("sjis", "髙"), "%FB%FC")
        self.assertEqual(self.encode("sjis", "纊"), "%FA%5C")
        self.assertEqual(self.encode("sjis", "ⅰ"), "%FA@")

    def test_the_input_may_be_a_file(self):
        file = self.input_file("a.txt", "a b\n")
        self.assertEqual(self.must("convert", "urlencode", "utf8", file).text, "a+b%0A")


class HtmlToText(CliTest):
    def convert(self, html, *settings, ini=None):
        words = [word for setting in settings for word in ("--set", setting)]
        ini = ini or os.path.join(self.home, "HTML2TXT.ini")
        return self.must("convert", "html2text", "--ini", ini, *words, input=html).out.decode()

    def test_text_mode(self):
        for html, text in [
                ("", ""),
                ("plain", "plain"),
                ("a\nb\rc\r\nd", "a\r\nb\r\nc\r\nd"),
                ("a\n\n\nb", "a\r\nb"),
                ("a\n\n\n\nb", "a\r\n\r\nb"),
                ("a\n\n\n\n\nb", "a\r\nb"),
                ("<p>one</p><P CLASS='x'>two</p>", "one\r\ntwo\r\n"),
                ("a<BR>b<br />c", "a\r\nb\r\nc"),
                ("x<hr>y", "x-----\r\ny"),
                ('<a href="u">x</a>', "[リンク:u]x"),
                ('<a href="#top">x</a><a name="n">y</a>', "xy"),
                ('<img src="a" alt="b"><IMG alt="d" src="c">', "[イメージ:b:a][イメージ:d:c]"),
                ("<img src=a.gif>", "[イメージ::]"),
                ("&amp;amp; &amp;lt; &lt;&gt; &nbsp;", "&amp; < <> &nbsp;"),
                ("a < b > c", "a  c"),
                ("1 < 2", "1 < 2"),
                ("(>_<) end", "(>_<) end"),
                ("日記😀é", "日記😀é")]:
            with self.subTest(html):
                self.assertEqual(self.convert(html), text)

    def test_settings_are_set_for_one_run(self):
        for settings, html, text in [
                (["HR_NUM=2"], "<hr>", "--\r\n"),
                (["BR=0", "P=0"], "a<br>b</p>c", "abc"),
                (["ENTER=2"], "<a href='u'>x</a>", "x(u)"),
                (["ENTER=2"], "<a name=x>y</ADDRESS>", "y()"),
                (["A_LINK_TAG_TYPE=2"], "<a href='u'>x</a>", "[リンク:u]x"),
                (["PBR=1"], "a\r\nb</p>c", "ab\r\n\r\nc"),
                (["UNKNOWN=1"], "<b>a</b>", "a"),
                (["MODE=HTML"], "<b>a</b><br>", "<b>a</b><br>"),
                (["MODE=HTML", "HTML_B=1"], "<b>a</b><br><blockquote>", "a"),
                (["MODE=HTML", "HTML_SUP=1"], "<sup>2</sup>", "2</sup>"),
                (["MODE=HTML", "HTML_SUP=1", "HTML_S=1"], "<sup>2</sup>", "2"),
                (["MODE=HTML", "HTML_P=1"], "<pre>a</pre>", "a\r\n"),
                (["MODE=HTML", "HTML_LIST=1"], "<ul><li>a</ul>", "\r\n・a"),
                (["MODE=HTML", "PBR=2"], "<p class=x>a</p>\r\n<br />", "<P>a</P><BR>"),
                (["MODE=text"], "<b>a</b>", "<b>a</b>"),
                (["MODE=HTML", "MODE=TEXT"], "<b>a</b>", "a")]:
            with self.subTest(settings=settings, html=html):
                self.assertEqual(self.convert(html, *settings), text)

    def test_the_file_is_read_and_left_alone(self):
        ini = self.input_file("own.ini", "[HR]\r\nNUM=3\r\n")
        self.assertEqual(self.convert("<hr>", "HR_NUM=7", ini=ini), "-------\r\n")
        self.assertEqual(self.convert("<hr>", ini=ini), "---\r\n")

    def test_a_large_text_is_done_at_once(self):
        html = "<p>" + "a < b <3 " * 300_000
        self.assertEqual(self.convert(html), html[3:])


class Paragraphs(CliTest):
    def tagged(self, text):
        return self.must("convert", "paragraphs", input=text).out.decode()

    def test_the_line_ends_are_those_of_the_input(self):
        for text, tagged in [
                ("", "<P></P>"),
                ("a", "<P>a</P>"),
                ("a\n\nb\nc", "<P>a</P>\n<P>b<BR>\nc</P>"),
                ("a\r\n\r\nb\r\nc", "<P>a</P>\r\n<P>b<BR>\r\nc</P>"),
                ("a\r\rb\rc", "<P>a</P>\r<P>b<BR>\rc</P>"),
                ("a\n\r\nb", "<P>a</P>\n<P>b</P>"),
                ("a\r\n\nb\n", "<P>a</P>\r\n<P>b<BR>\r\n</P>"),
                ("a\n\n\nb", "<P>a</P>\n<P><BR>\nb</P>"),
                ("a</P><P>b", "<P>a</P>\r\n<P>b</P>"),
                ("日記😀é", "<P>日記😀é</P>")]:
            with self.subTest(text):
                self.assertEqual(self.tagged(text), tagged)

    def test_the_input_may_be_a_file(self):
        file = self.input_file("a.txt", "a\n")
        self.assertEqual(self.must("convert", "paragraphs", file).out, b"<P>a<BR>\n</P>")
        self.refused("convert", "paragraphs", os.path.join(self.inputs, "none.txt"), naming=["none.txt"])
        self.refused("convert", "paragraphs", input=b"\xff\xfe")

    def test_the_users_attributes_count_and_nothing_is_started(self):
        before = snapshot(self.root)
        self.assertEqual(self.tagged("a"), "<P>a</P>")
        self.assertEqual(snapshot(self.root), before)
        write(self.diary_ini, "[diaryEditer]\r\nP_TagAdd=class=a\r\n")
        self.assertEqual(self.tagged("a\n\nb"), "<P class=a>a</P>\n<P class=a>b</P>")
        write(self.diary_ini, "[diaryEditer]\r\nP_TagAdd=\r\n")
        self.assertEqual(self.tagged("a"), "<P>a</P>")

    def test_with_several_users_the_paragraphs_are_plain(self):
        write(self.diary_ini, "[diaryEditer]\r\nP_TagAdd=class=a\r\n")
        write(os.path.join(self.home, "velluser.ini"), "[a]\r\nID=a\r\n")
        self.assertEqual(self.tagged("a"), "<P>a</P>")

    def test_a_large_text_is_done_at_once(self):
        text = "line\n\n" * 500_000
        self.assertEqual(len(self.must("convert", "paragraphs", input=text).out), len("<P>line</P>\n") * 500_000 + 7)


class Colour(CliTest):
    def setUp(self):
        super().setUp()
        self.list = os.path.join(self.home, "colorname.csv")

    def exchanged(self, text):
        return self.must("convert", "colour", text).out.decode()

    def test_name_and_number_change_places(self):
        write(self.list, "Red,#FF0000\r\n\"deep, blue\",#00008b\r\n青,#0000FF\r\n".encode("cp932"))
        for text, answer in [("RED", "#FF0000"), ("#ff0000", "Red"), ("Deep, Blue", "#00008b"), ("#00008B", "deep, blue"),
                             ("#0000ff", "青"), ("青", "#0000FF"), ("#00ff00", "Nothing"), ("unknown", "Nothing"),
                             ("", "Nothing"), ("#zzzzzz", "Error"), ("#", "Error")]:
            with self.subTest(text):
                self.assertEqual(self.exchanged(text), answer)

    def test_the_list_of_the_delivery_has_both_forms_of_each_colour(self):
        rows = [line.split(",") for line in read(self.list).decode("cp932").split()]
        self.assertGreater(len(rows), 100)
        for name, number in rows[::25]:
            self.assertEqual(self.exchanged(name.upper()), number)

    def test_nothing_is_started_and_a_folder_to_read_will_do(self):
        os.chmod(self.home, 0o555)
        before = snapshot(self.root)
        self.assertEqual(self.exchanged("red"), "#FF0000")
        self.assertEqual(self.must("convert", "paragraphs", input="a").out, b"<P>a</P>")
        self.assertEqual(snapshot(self.root), before)
        os.chmod(self.home, 0o755)

    def test_a_list_that_is_missing_or_no_file_is_refused(self):
        os.remove(self.list)
        self.refused("convert", "colour", "red", naming=[self.list])
        os.mkdir(self.list)
        self.refused("convert", "colour", "red", naming=[self.list])
        self.assertEqual(self.exchanged("#zz"), "Error")
        self.refused("convert", "colour", "red", home=os.path.join(self.root, "nowhere"), naming=["nowhere"])

    def test_a_list_with_odd_lines_is_read_as_far_as_it_goes(self):
        for content in (b"", b'"red,#FF0000\r\n', b"\x00\x81\n,\n\"", b"red\r\n"):
            write(self.list, content)
            self.assertEqual(self.exchanged("red"), "Nothing", content)

    def test_wrong_usage(self):
        self.refused("convert", "colour", code=2)
        self.refused("convert", "colour", "a", "b", code=2)


class PasswordText(CliTest):
    def test_scrambling(self):
        for plain, scrambled in (("abc", "dcb"), ("", ""), ("secret", "ufsdft")):
            self.assertEqual(self.must("convert", "scramble", input=plain).text, scrambled)
            self.assertEqual(self.must("convert", "unscramble", input=scrambled).text, plain)

    def test_every_text_of_the_code_page_makes_the_round_trip(self):
        for text in ("!a!", "&a&", "\"x\"", " a ", "ﾟ×ん円改", "~}|{", "日記帳ゾー\u3000", "ミ秒瑤龠", "①Ⅳ髙"):
            scrambled = self.must("convert", "scramble", input=text).text
            self.assertEqual(self.must("convert", "unscramble", input=scrambled).text, text)

    def test_line_ends_belong_to_the_text(self):
        scrambled = self.must("convert", "scramble", input="abc\n").text
        self.assertNotEqual(scrambled, "dcb")
        self.assertEqual(self.must("convert", "unscramble", input=scrambled).text, "abc\n")

    def test_characters_outside_the_code_page_are_refused(self):
        for text in ("é", "a😀"):
            self.refused("convert", "scramble", input=text)


class Ini(CliTest):
    def setUp(self):
        super().setUp()
        self.file = self.input_file("a.ini", "")

    def get(self, section, key, *default):
        return self.must("ini", "get", self.file, section, key, *default).text[:-1]

    def test_what_is_set_is_read_without_regard_to_case(self):
        self.must("ini", "set", self.file, "Section", "Key", "a b")
        self.assertEqual(self.get("sECTION", "kEY"), "a b")
        self.assertEqual(read(self.file), b"[Section]\r\nKey=a b\r\n")

    def test_an_empty_value_is_there_and_a_missing_one_is_the_default(self):
        write(self.file, "[S]\r\nE=\r\nnoequal\r\n")
        self.assertEqual([self.get("S", "E", "d"), self.get("S", "M", "d"), self.get("T", "E", "d"),
                          self.get("S", "noequal", "d"), self.get("S", "M")], ["", "d", "d", "d", ""])

    def test_values_are_cut_at_255_bytes_and_never_within_a_character(self):
        for value, seen in (("a" * 300, "a" * 255), ("あ" * 200, "あ" * 127), ("a" + "あ" * 127, "a" + "あ" * 127)):
            self.must("ini", "set", self.file, "S", "K", value)
            self.assertEqual(self.get("S", "K"), seen)

    def test_integers(self):
        for value, number in (("12abc", "12"), ("x", "0"), ("", "0"), ("-5", "-5"), ("12.7", "12"), (" 7", "7"),
                              ("32767", "32767"), ("-32768", "-32768"), ("0x10", "16")):
            self.must("ini", "set", self.file, "S", "K", value)
            self.assertEqual(self.must("ini", "int", self.file, "S", "K").text, number + "\n", value)
        self.assertEqual(self.must("ini", "int", self.file, "S", "M", "-3").text, "-3\n")
        for value in ("40000", "-32769", "65536"):
            self.must("ini", "set", self.file, "S", "K", value)
            self.refused("ini", "int", self.file, "S", "K", naming=[self.file, value])

    def test_the_first_section_and_key_win_and_one_pair_of_quotes_goes(self):
        write(self.file, "; comment\r\n[s]\r\n;K=no\r\nK = 'v' \r\nK=second\r\n[other]\r\n[S]\r\nK=third\r\nL=4\r\n")
        self.assertEqual(self.get("S", "K"), "v")
        self.assertEqual(self.get("S", "L", "missing"), "missing")

    def test_setting_keeps_every_other_byte(self):
        before = "; comment\r\n\r\n[s]\r\nA=1\r\n K =x\r\nK=2\r\n[T]\r\nB=日記\r\n;end".encode("cp932")
        write(self.file, before)
        self.must("ini", "set", self.file, "S", "k", "new")
        self.assertEqual(read(self.file), before.replace(b" K =x\r\n", b" K =new\r\n"))
        self.must("ini", "set", self.file, "s", "k2", "z")
        self.assertIn(b"K=2\r\nk2=z\r\n[T]", read(self.file))
        self.must("ini", "set", self.file, "U", "k", "z")
        self.assertTrue(read(self.file).endswith(b";end\r\n[U]\r\nk=z\r\n"))

    def test_values_that_would_lose_their_quotes_keep_them(self):
        for value in ("'a'", '"a"', "''", '"', "'a\"", '""x""'):
            self.must("ini", "set", self.file, "S", "K", value)
            self.assertEqual(self.get("S", "K"), value)

    def test_a_line_break_in_a_value_makes_no_line(self):
        self.must("ini", "set", self.file, "S", "K", "a\r\nL=1\n[T]")
        self.assertEqual(len(read(self.file).splitlines()), 2)
        self.assertEqual(self.get("S", "L", "none"), "none")

    def test_a_key_that_would_not_be_found_again_is_refused(self):
        write(self.file, "[S]\r\nK=1\r\n")
        for section, key in (("S", ";k"), ("S", "[k"), ("S", "k=x"), ("S]x", "k"), ("S", "\tk"), ("S", "k\t")):
            self.refused("ini", "set", self.file, section, key, "v", naming=[self.file, f"[{section}]", "名前"])
        self.assertEqual(read(self.file), b"[S]\r\nK=1\r\n")

    def test_a_folder_is_no_settings_file(self):
        for words in (["get", self.inputs, "S", "K"], ["int", self.inputs, "S", "K"], ["sections", self.inputs]):
            self.refused("ini", *words, naming=[self.inputs])

    def test_characters_outside_the_code_page_come_back(self):
        for value in ("é", "😀", "日記é髙", "&#233;", "&amp;", "a&#65;b"):
            self.must("ini", "set", self.file, "S", "K", value)
            expected = "é" if value == "&#233;" else value
            self.assertEqual(self.get("S", "K"), expected)
            self.assertEqual(max(read(self.file).decode("cp932").count("\r\n"), 2), 2)

    def test_deleting_leaves_the_header(self):
        write(self.file, "[S]\r\nA=1\r\n[T]\r\nB=2\r\n")
        self.must("ini", "delete", self.file, "s", "a")
        self.assertEqual(read(self.file), b"[S]\r\n[T]\r\nB=2\r\n")
        self.refused("ini", "delete", self.file, "S", "none", naming=[self.file, "none"])
        self.refused("ini", "delete", self.file, "U", "B")
        self.assertEqual(read(self.file), b"[S]\r\n[T]\r\nB=2\r\n")

    def test_sections_stand_in_the_order_of_the_file(self):
        write(self.file, "[b]\r\n[]\r\n[ a ]\r\n[ゾ]\r\nx=1\r\n[b]\r\n".encode("cp932"))
        self.assertEqual(self.must("ini", "sections", self.file).text, "b\na\nゾ\nb\n")
        self.assertEqual(self.must("--json", "ini", "sections", self.file).json, ["b", "a", "ゾ", "b"])

    def test_a_missing_file_reads_as_empty_and_is_made_by_writing_alone(self):
        missing = os.path.join(self.inputs, "new.ini")
        self.assertEqual(self.must("ini", "get", missing, "S", "K", "d").text, "d\n")
        self.assertEqual(self.must("ini", "sections", missing).out, b"")
        self.assertFalse(os.path.exists(missing))
        self.must("ini", "set", missing, "S", "K", "v")
        self.assertEqual(read(missing), b"[S]\r\nK=v\r\n")

    def test_a_write_that_fails_says_why(self):
        write(self.file, "[S]\r\nK=1\r\n")
        os.chmod(self.file, 0o444)
        before = snapshot(self.inputs)
        for words in (["set", self.file, "S", "K", "2"], ["delete", self.file, "S", "K"],
                      ["set", "/nowhere/a.ini", "S", "K", "2"], ["set", self.inputs, "S", "K", "2"]):
            self.refused("ini", *words, naming=["/nowhere" if words[1] == "/nowhere/a.ini" else words[1]])
        self.assertEqual(snapshot(self.inputs), before)

    def test_writing_what_stands_there_is_done(self):
        write(self.file, "[S]\r\nK=1\r\n")
        os.chmod(self.file, 0o444)
        self.must("ini", "set", self.file, "S", "K", "1")

    def test_a_value_is_printed_as_it_is(self):
        write(self.file, b"[S]\r\nK=C:\\dir\\new\ttab\r\nV=\x0b v \x0b\r\n")
        self.assertEqual(self.must("ini", "get", self.file, "S", "K").out, b"C:\\dir\\new\ttab\n")
        self.assertEqual(self.must("ini", "get", self.file, "S", "V").out, b"v\n")
        self.assertEqual(self.must("ini", "get", self.file, "S", "M", "a\\b\nc").out, b"a\\b\nc\n")
        self.assertEqual(self.must("--json", "ini", "get", self.file, "S", "K").json, {"value": "C:\\dir\\new\ttab"})

    def test_pipes_devices_and_links_that_lead_nowhere_are_refused_at_once(self):
        pipe, lost = os.path.join(self.inputs, "pipe"), os.path.join(self.inputs, "lost")
        os.mkfifo(pipe)
        os.symlink("gone/b.ini", lost)
        for file, names in ((pipe, [pipe]), ("/dev/zero", ["/dev/zero"]), (lost, [lost, "gone/b.ini"])):
            for words in (["get", file, "S", "K"], ["int", file, "S", "K"], ["sections", file],
                          ["set", file, "S", "K", "v"], ["delete", file, "S", "K"]):
                self.refused("ini", *words, naming=names)
        self.assertFalse(os.path.exists(os.path.join(self.inputs, "gone")))

    def test_files_with_passwords_are_made_for_their_owner_alone(self):
        for name, mode in (("diary.ini", 0o600), ("velluser.ini", 0o600), ("BlogUserData.ini", 0o600)):
            self.must("ini", "set", os.path.join(self.inputs, name), "S", "K", "v")
            self.assertEqual(stat.S_IMODE(os.stat(os.path.join(self.inputs, name)).st_mode), mode)

    def test_a_rewrite_keeps_mode_and_symbolic_link(self):
        write(self.file, "[S]\r\nK=1\r\n")
        os.chmod(self.file, 0o640)
        link = os.path.join(self.inputs, "link.ini")
        os.symlink("a.ini", link)
        self.must("ini", "set", link, "S", "K", "2")
        self.assertTrue(os.path.islink(link))
        self.assertEqual(read(self.file), b"[S]\r\nK=2\r\n")
        self.assertEqual(stat.S_IMODE(os.stat(self.file).st_mode), 0o640)

    def test_programs_that_write_at_once_lose_no_key(self):
        runs = [subprocess.Popen(self.command("ini", "set", self.file, f"S{i % 3}", f"K{i}", str(i)),
                                 env=self.environment()) for i in range(24)]
        for run in runs:
            self.assertEqual(run.wait(600), 0)
        for i in range(24):
            self.assertEqual(self.get(f"S{i % 3}", f"K{i}", "lost"), str(i))
        self.assertEqual(os.listdir(self.inputs), ["a.ini"], "no temporary file is left")


if __name__ == "__main__":
    unittest.main()
