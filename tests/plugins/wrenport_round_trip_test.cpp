#include "wrenport/hatena_export.h"
#include "wrenport/hatena_import.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace velloria::plugins::wrenport {
namespace {

std::string written(const std::vector<Entry>& entries) {
    std::string xml;
    HatenaWriter writer([&](std::string_view text) { xml += text; });
    for (const Entry& entry : entries)
        writer.add(entry);
    writer.finish();
    return xml;
}

std::string shown(const Entry& entry) {
    const auto text = [](const std::optional<std::string>& value) { return value ? "\"" + *value + "\"" : "NULL"; };
    return entry.day + " title " + text(entry.title) + "\ncontents " + text(entry.contents) + "\nextend " +
           text(entry.extend) + "\nexcerpt " + text(entry.excerpt) + "\nweather " + text(entry.weather) + " genre " +
           text(entry.genre) + " time " + text(entry.publishTime) + (entry.isPrivate ? " private" : "");
}

void expectRoundTrip(const std::vector<Entry>& entries, const ImportChoices& choices = {}) {
    const std::string xml = written(entries);
    const ImportedDiary diary = importedDiary(xml, choices, [] {});
    EXPECT_EQ(diary.notes, "");
    ASSERT_EQ(diary.entries.size(), entries.size());
    for (std::size_t index = 0; index < entries.size(); ++index)
        ASSERT_EQ(diary.entries[index], entries[index]) << shown(entries[index]) << "\n---\n"
                                                        << shown(diary.entries[index]) << "\n---\n"
                                                        << xml.substr(0, 4000);
}

Entry entryWith(std::optional<std::string> title, std::optional<std::string> contents) {
    return {"2024/02/29", std::move(title), std::move(contents), "", "", "晴", "旅", "2024/02/29 12:34:56", false};
}

TEST(WrenportRoundTrip, KeepsWhatANotationWouldTake) {
    std::vector<Entry> entries;
    for (const char* title :
         {"",    "*",     "**x",        "*p1*x",        "[旅]x",  "[[x]]",    "x]",     "[]",       "((x))", "a\r\nb",
          " x ", "&#42;", "&amp;<b>\"", "1709866800*x", "p2*x*y", "\xFF\xC0", "a\x08z", "😀&#9835;", "====",  "\\0a"})
        entries.push_back(entryWith(title, title));
    for (const char* contents : {"*1709866800*x\r\n*y",
                                 "-a\r\n--b",
                                 ">|\r\n|<",
                                 ">||\r\n*x\r\n||<",
                                 "><div>\r\n</div><",
                                 "</div><",
                                 "====\r\nx",
                                 "x\r\n=====\r\ny",
                                 "\r\n",
                                 "\r\n\r\n",
                                 "a\nb",
                                 "a\rb",
                                 "a\r\nb\n",
                                 "<!--\r\n*x\r\n-->",
                                 "<img\r\n-x>",
                                 "<script>\r\n*x((y))[]\r\n</script>",
                                 "<p>a</p>\r\n<p>b [http://x/:title=y]</p>",
                                 " ",
                                 "&#91;&#x2a;",
                                 "a<",
                                 "a<\r\nb",
                                 "<pre>\r\n  - a\r\n</pre>",
                                 "\xEF\xBB\xBF",
                                 "\xEF\xBF\xBF",
                                 "]]>",
                                 "<![CDATA[x]]>",
                                 "&nbsp;&x;",
                                 "a\tb\r\n\tc",
                                 "\r",
                                 "\n"})
        entries.push_back(entryWith("x", contents));
    std::vector<Entry> more = entries;
    for (Entry& entry : more) {
        std::swap(entry.contents, entry.extend);
        entry.genre = entry.excerpt = entry.weather = entry.extend;
    }
    expectRoundTrip(entries);
    expectRoundTrip(more);
    for (Entry& entry : more)
        entry.publishTime = entry.excerpt; // no time at all
    expectRoundTrip(more, {ImportChoices::Notation::AsTyped, ImportChoices::Comments::Kept});
}

TEST(WrenportRoundTrip, KeepsTimesGenresAndMissingValues) {
    std::vector<Entry> entries;
    for (const char* time : {"2024/03/01 00:00:00", "1970/01/01 09:00:00", "1973/03/03 18:46:39", "1973/03/03 18:46:40",
                             "2286/11/21 02:46:39", "2286/11/21 02:46:40", "9999/12/31 23:59:59", "0100/01/01 00:00:00",
                             "2024/02/31 00:00:00", "2024/2/3", "", "午後"}) {
        Entry entry = entryWith("x", "y");
        entry.publishTime = time;
        entries.push_back(entry);
    }
    for (const char* genre : {"", "a:b", "[a]", "[", "]", "一般", "a\r\nb", "*", " "}) {
        Entry entry = entryWith("x", "y");
        entry.genre = genre;
        entries.push_back(entry);
    }
    entries.push_back({"2024/02/29"});
    entries.push_back({"2024/02/29"});
    entries.back().isPrivate = true;
    entries.push_back({"2024/02/29"}); // the same text, and not the same entry
    entries.back().weather = "雨";
    expectRoundTrip(entries);
}

/// Texts of everything that could be taken for something else.
class NastyDiary {
public:
    explicit NastyDiary(unsigned seed)
        : m_random(seed) {}

    std::vector<Entry> entries(int days, int most) {
        std::vector<Entry> all;
        for (int day = 1; day <= days; ++day) {
            const std::string key =
                std::string("2024/") + (day % 2 ? "01" : "12") + "/" + (day < 10 ? "0" : "") + std::to_string(day);
            for (int count = below(most) + 1; count > 0; --count) {
                Entry entry{key, text(), text(), text(), text(), text(), text(), text(), below(2) == 0};
                if (below(2))
                    entry.publishTime = key + " 0" + std::to_string(below(10)) + ":00:59";
                all.push_back(entry);
            }
        }
        std::ranges::stable_sort(all, {}, &Entry::day);
        return all;
    }

private:
    int below(int end) { return int(m_random() % unsigned(end)); }

    std::optional<std::string> text() {
        static const char* const kPieces[] = {
            "*",
            "**",
            "*1709866800*",
            "*p1*",
            "[",
            "]",
            "[[",
            "]]",
            "[]",
            "((",
            "))",
            ")((",
            "-",
            "+",
            ":",
            "|",
            ">",
            "<",
            ">>",
            "<<",
            ">|",
            "|<",
            ">||",
            "||<",
            ">|perl|",
            "><div>",
            "</div><",
            "====",
            "<!--",
            "-->",
            "<p>",
            "</p>",
            "<b>",
            "&",
            "&amp;",
            "&#42;",
            "&#x5b;",
            "&#9835;",
            "\r\n",
            "\r\n",
            "\r\n",
            "\n",
            "\r",
            " ",
            "\t",
            "\\",
            "\\0a",
            "\x01",
            "\x08",
            "\x1b",
            "\x7f",
            "\xEF\xBF\xBE",
            "\xEF\xBF\xBF",
            "\xEF\xBB\xBF",
            "\xFF",
            "\xE3\x81",
            "日記",
            "😀",
            "👨‍👩‍👧",
            "http://example.com/?a=1&b=2",
            "id:hanako",
            "<a href=\"http://x/\">",
            "</a>",
            "'",
            "\"",
            "<script>",
            "</script>",
            "]]>",
            "<![CDATA[",
            "</body>",
            "</day>",
            "x",
            "abc",
            "=",
        };
        if (below(8) == 0)
            return std::nullopt;
        std::string text;
        for (int count = below(12); count > 0; --count)
            text += kPieces[below(int(std::size(kPieces)))];
        if (below(10) == 0)
            text += std::string("\0", 1);
        return text;
    }

    std::mt19937 m_random;
};

TEST(WrenportRoundTrip, KeepsFiveHundredNastyDiaries) {
    for (unsigned seed = 1; seed <= 500; ++seed) {
        SCOPED_TRACE(seed);
        expectRoundTrip(NastyDiary(seed).entries(4, 6),
                        seed % 2 ? ImportChoices{}
                                 : ImportChoices{ImportChoices::Notation::AsTyped, ImportChoices::Comments::Kept});
        if (HasFatalFailure())
            return;
    }
}

TEST(WrenportRoundTrip, KeepsLongDaysAndTitles) {
    std::vector<Entry> entries = NastyDiary(7).entries(1, 1);
    entries.resize(2000, entries.front());
    std::string title;
    while (title.size() < (1 << 20))
        title += "[[題]] ((*";
    entries.push_back(entryWith(title, title.substr(0, 1 << 18) + "\r\n" + title.substr(0, 1 << 10)));
    entries.back().day = entries.front().day;
    expectRoundTrip(entries);
}

} // namespace
} // namespace velloria::plugins::wrenport
