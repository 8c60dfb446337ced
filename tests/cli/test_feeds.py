"""The feeds of a made site, read as the world reads them: by a public feed parser and an XML parser."""

import os
import re
import shutil
import subprocess
import time
import unittest

import feedparser

from home import CliTest, entry, read, snapshot

URL = "http://127.0.0.1:8088/x.htm"
LONG = "".join(chr(0x4E00 + i) for i in range(600))
NAMES = {"RSS 0.91": "_RSS091.xml", "RSS 1.0": "_RSS100.xml", "RSS 2.0": "_RSS200.xml", "Atom": "_ATOM.xml"}
HAS_XMLLINT = shutil.which("xmllint") is not None


class FeedTest(CliTest):
    """Fixture: twelve public entries of a month, one private, one long and one with an emoji; feeds are on."""

    def setUp(self):
        super().setUp()
        self.use_site()
        for section, key, value in [("GENERAL", "RSSOn", 1), ("Setting", "DiaryURL", URL), ("Setting", "Title", "日記帳"),
                                    ("Setting", "HPURL", "http://127.0.0.1:8088/"),
                                    ("Setting", "Description", "毎日の話"), ("RSS2.0", "ManagingAuthor", "a@example.com"),
                                    ("RSS2.0", "WebMaster", "w@example.com"), ("ATOM", "Author", "筆者")]:
            self.set_key("RSS.ini", section, key, value)
        self.put(*[entry(f"2004/02/{day:02}", f"title {day}", Contents=f"<b>text</b> {day} &amp; <i>more</i>")
                   for day in range(1, 11)],
                 entry("2004/02/11", "long", Contents=LONG),
                 entry("2004/02/12", "emoji 😀", Contents="face 😀\u0001", Genre="顔"),
                 entry("2004/02/13", "秘", Contents="秘", Private=True))

    def save(self, **how):
        return self.must("site", "save", **how)

    def feed(self, name):
        return read(self.site + "x" + NAMES[name])

    def parse(self, name):
        parsed = feedparser.parse(self.feed(name))
        self.assertFalse(parsed.bozo, f"{name}: {parsed.get('bozo_exception')}")
        return parsed

    def entries(self, name):
        return self.parse(name).entries

    def xmllint(self, name):
        done = subprocess.run(["xmllint", "--noout", self.site + "x" + NAMES[name]], capture_output=True, text=True)
        return done.returncode, done.stderr


class Reading(FeedTest):
    def test_each_feed_is_of_its_kind_and_has_the_ten_newest_entries(self):
        self.save()
        for name, version in (("RSS 0.91", "rss091u"), ("RSS 1.0", "rss10"), ("RSS 2.0", "rss20"), ("Atom", "atom03")):
            parsed = self.parse(name)
            self.assertEqual(parsed.version, version)
            self.assertEqual(parsed.feed.title, "日記帳")
            self.assertEqual(parsed.feed.link, URL)
            self.assertEqual([item.title for item in parsed.entries],
                             ["emoji 😀", "long", *[f"title {day}" for day in range(10, 2, -1)]], name)
            self.assertEqual([item.link for item in parsed.entries],
                             [f"{URL}#2004/02/{day:02}_1" for day in range(12, 2, -1)])

    def test_private_entries_are_in_none(self):
        self.save()
        self.must("site", "preview")
        for name in NAMES:
            self.assertNotIn("秘", self.feed(name).decode())
        for file in os.listdir(self.data):
            if file.endswith(".xml"):
                self.assertNotIn("秘", read(self.data + file).decode())

    @unittest.skipUnless(HAS_XMLLINT, "needs xmllint")
    def test_an_xml_parser_takes_them_all(self):
        self.save()
        for name in NAMES:
            self.assertEqual(self.xmllint(name), (0, ""), name)

    def test_descriptions_are_cut_at_500_characters_but_for_rss_2(self):
        self.save()
        for name, length in (("RSS 0.91", 500), ("RSS 1.0", 500), ("RSS 2.0", 600), ("Atom", 500)):
            self.assertEqual(self.entries(name)[1].summary, LONG[:length], name)
        self.assertIn(LONG, self.feed("Atom").decode())

    def test_texts_are_plain_and_escaped_once(self):
        self.save()
        for name in NAMES:
            self.assertEqual(self.entries(name)[2].summary, "text 10 & more", name)
        self.assertEqual(self.entries("Atom")[2].content[0].value, "<b>text</b> 10 &amp; <i>more</i>")

    def test_an_emoji_is_readable_everywhere_and_a_control_character_nowhere(self):
        self.save()
        for name in NAMES:
            self.assertEqual(self.entries(name)[0].summary, "face 😀", name)
            self.assertNotIn(b"\x01", self.feed(name))
            self.assertIn(b"&#128512;", self.feed(name))

    def test_times_stand_in_the_zone_of_japan(self):
        self.sql("UPDATE Contents SET PublishTime = '2004/02/12 01:02:03'")
        self.save(now="2004/02/29 08:05:09")
        self.assertIn(b"<lastBuildDate>Sunday, 29 Feb 2004 08:05:09 +0900</lastBuildDate>", self.feed("RSS 0.91"))
        self.assertIn(b"<lastBuildDate>Sun, 29 Feb 2004 08:05:09 +0900</lastBuildDate>", self.feed("RSS 2.0"))
        self.assertIn(b"<dc:date>2004-02-12T01:02:03 +09:00</dc:date>", self.feed("RSS 1.0"))
        self.assertIn(b"<modified>2004-02-12T01:02:03+09:00</modified>"
                      b"<issued>2004-02-29T08:05:09+09:00</issued>", self.feed("Atom"))
        for name in ("RSS 2.0", "Atom"):
            item = self.entries(name)[0]
            moment = item.published_parsed if name == "RSS 2.0" else item.updated_parsed
            self.assertEqual(time.strftime("%Y-%m-%d %H:%M:%S", moment), "2004-02-11 16:02:03", name)

    def test_genre_and_authors(self):
        self.save()
        first = self.entries("RSS 2.0")[0]
        self.assertEqual([tag.term for tag in first.tags], ["顔"])
        self.assertEqual(first.author, "a@example.com")
        atom = self.parse("Atom")
        self.assertEqual(atom.feed.author_detail.name, "筆者")
        self.assertEqual(atom.feed.author_detail.email, "a@example.com")

    def test_files_are_utf_8_without_mark_and_end_without_line_end(self):
        self.save()
        for name, end in (("RSS 0.91", b"</rss>"), ("RSS 1.0", b"</rdf:RDF>"), ("RSS 2.0", b"</rss>"),
                          ("Atom", b"</feed>")):
            data = self.feed(name)
            self.assertTrue(data.startswith(b'<?xml version="1.0" encoding="UTF-8" ?>\r\n') and data.endswith(end))
            self.assertEqual(data.count(b"\n"), data.count(b"\r\n"))

    def test_an_ampersand_in_a_title_is_the_only_thing_that_breaks_them(self):
        self.put(entry("2004/02/12", "R&D", Number=1, Contents="a & b < c > d \"e\" 'f' ]]> &nbsp;"))
        self.save()
        for name in NAMES:
            self.assertTrue(feedparser.parse(self.feed(name)).bozo)
            if HAS_XMLLINT:
                code, error = self.xmllint(name)
                self.assertNotEqual(code, 0)
                places = set(re.findall(r"xml:(\d+): parser error", error))
                lines = self.feed(name).decode().split("\r\n")
                self.assertTrue(places)
                for place in places:
                    self.assertIn("R&D", lines[int(place) - 1], f"{name}: {error}")
        self.put(entry("2004/02/12", "RD", Number=1, Contents="a & b < c > d \"e\" 'f' ]]> &nbsp;"))
        self.save()
        for name in NAMES:
            self.assertEqual(self.entries(name)[0].title, "RD")


class Making(FeedTest):
    def test_the_zone_of_the_machine_changes_nothing(self):
        self.save()
        before = snapshot(self.site)
        for zone in ("America/New_York", "UTC", "Asia/Tokyo", "Pacific/Kiritimati", "nonsense"):
            self.save(environment={"TZ": zone})
            self.assertEqual(snapshot(self.site), before, zone)

    def test_the_zone_of_the_machine_changes_now_alone(self):
        texts = []
        for zone in ("UTC", "America/New_York"):
            self.must("site", "save", now=None, environment={"TZ": zone})
            # The month file of the present has no entries; the feeds are of the newest public month.
            text = self.feed("RSS 2.0").decode() + self.feed("Atom").decode()
            texts.append(re.sub(r"<(lastBuildDate|modified|issued)>[^<]*</\1>", "", text))
        self.assertEqual(*texts)

    def test_without_a_public_entry_the_run_fails_before_any_page(self):
        self.save()
        self.sql("UPDATE Contents SET Private = 1")
        pages = {name: what for name, what in snapshot(self.root).items() if not name.endswith(".xml")}
        for words in (["site", "save"], ["site", "preview"]):
            result = self.run_cli("--events", *words)
            self.assertEqual((result.code, len(result.events_of("failure"))), (1, 1))
            self.assertEqual({name: what for name, what in snapshot(self.root).items() if not name.endswith(".xml")},
                             pages)
        self.assertEqual([name for name in os.listdir(self.site) if name.endswith(".xml")], [], "the old ones are gone")

    def test_switched_off_they_stay_as_they_were(self):
        self.save()
        before = {name: self.feed(name) for name in NAMES}
        self.set_key("RSS.ini", "GENERAL", "RSSOn", 0)
        self.put(entry("2004/02/28", "later"))
        self.save()
        self.assertEqual({name: self.feed(name) for name in NAMES}, before)
        self.assertNotIn("_RSS091.xml", self.page(self.site + "x.htm"))

    def test_without_an_address_there_are_none(self):
        self.set_key("RSS.ini", "Setting", "DiaryURL", "")
        self.save()
        self.assertEqual([name for name in os.listdir(self.site) if name.endswith(".xml")], [])

    def test_without_their_converter_they_are_empty_and_linked(self):
        os.remove(self.home + "/HTML2TXT_RSS.ini")
        self.save()
        self.assertEqual([self.feed(name) for name in NAMES], [b""] * 4)
        self.assertIn("_RSS091.xml", self.page(self.site + "x.htm"))

    def test_only_the_month_of_the_newest_public_entry_counts(self):
        self.put(*[entry("2004/03/01", f"march {i}") for i in range(3)])
        self.save()
        for name in NAMES:
            self.assertEqual([item.title for item in self.entries(name)], ["march 2", "march 1", "march 0"])

    def test_they_stand_in_front_of_the_page_in_the_upload_list(self):
        self.save()
        self.assertEqual([line.split(",")[1] for line in read(self.data + "upload.tmp").decode().splitlines()],
                         [*["x" + ending for ending in NAMES.values()], "x.htm"])

    def test_the_preview_has_its_own(self):
        self.save()
        before = {name: self.feed(name) for name in NAMES}
        self.put(entry("2004/02/28", "later"))
        self.must("site", "preview")
        self.assertEqual({name: self.feed(name) for name in NAMES}, before)
        self.assertIn("later", read(self.data + "tmp_RSS200.xml").decode())


if __name__ == "__main__":
    unittest.main()
