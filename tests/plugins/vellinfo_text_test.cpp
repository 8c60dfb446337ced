// What is seen of a text, and the words in it.
#include "vellinfo/calendar.h"
#include "vellinfo/visible_text.h"

#include <gtest/gtest.h>

namespace velloria::plugins::vellinfo {
namespace {

using namespace std::string_literals;

/// "characters/pictures" and the words of each kind with their counts.
struct Looked {
    explicit Looked(const std::string& html)
        : seen(look(html, counts)) {}

    std::string words(WordKind kind) const {
        std::string all;
        for (const Word& word : counts.top(kind, 100, {}))
            all += (all.empty() ? "" : " ") + word.text + (word.count > 1 ? "*" + std::to_string(word.count) : "");
        return all;
    }

    WordCounts counts;
    Seen seen;
};

TEST(VisibleText, IsWhatAPersonSees) {
    const struct {
        std::string html;
        unsigned characters;
        unsigned pictures = 0;
    } cases[] = {
        {"", 0},
        {" \t\r\n　&nbsp;&#160;", 0},
        {"あ い\r\nう", 3},
        {"<p>雨</p>", 1},
        {"<IMG src=a.gif><img/><imgs></img>", 0, 2},
        {"<!-- <img> 見えない -->見", 1},
        {"<!-->見", 1},
        {"<!DOCTYPE x><?php 1 ?></ x>見", 1},
        {"<script>var a = '<b>x</b>';</SCRIPT>見<style>p{}</style>える", 3},
        {"<title>x</title >見<scripts>え</scripts>る", 3},
        {"<script>var a", 0},
        {"<script>a</scriptx></script>見", 1},
        {"1 < 2 <3 <", 6},
        {"<a title=\"x>y\" name='>' rel = \">\">見</a>", 1},
        {"<a title=don't>見</a>", 1},
        {"<a \">見", 1},
        {"見<a title=\"x", 1},
        {"見<b", 1},
        {"見<", 2},
        {"&amp;&lt;&gt;&quot;&eacute;&hearts;", 6},
        {"&#65;&#x42;&#X43;&#68", 4},
        {"&#0;&#xD800;&#99999999999;&#x110000;", 4},
        {"&", 1},
        {"&;", 2},
        {"&#;", 3},
        {"&#x;", 4},
        {"&amp", 4},
        {"&nosuchname;", 12},
        {"か\xE3\x82\x99", 1},     // a mark of its own
        {"葛\xF3\xA0\x84\x80", 1}, // a variation selector
        {"😀", 1},
        {"\xEF\xBB\xBF\xE2\x80\x8B見", 1},     // marks without a width
        {"\xFF\xC3\xE3\x81見\xF5\xC0\x80", 8}, // no UTF-8
        {"a\0b"s, 2},
    };
    for (const auto& [html, characters, pictures] : cases) {
        const Looked looked(html);
        EXPECT_EQ(looked.seen.characters, characters) << html;
        EXPECT_EQ(looked.seen.pictures, pictures) << html;
    }
}

TEST(VisibleText, IsCutIntoRunsOfOneScript) {
    const Looked looked(
        "今年は東京都内を歩いた。コーヒーとケーキ、コーヒー。Velloria's café, PS5 and ＰＳ5; x 2026 'tis rock 'n'");
    EXPECT_EQ(looked.words(WordKind::Kanji), "今年 東京都内");
    EXPECT_EQ(looked.words(WordKind::Katakana), "コーヒー*2 ケーキ");
    EXPECT_EQ(looked.words(WordKind::Latin), "ps5*2 and café rock tis velloria's");
}

TEST(VisibleText, GoesOnOverTagsThatOnlyChangeItsLook) {
    const Looked looked("<b>大</b>阪 <p>京</p>都 再<br>会 一<!-- x -->緒 &#26085;&#x672c; 佐々木 葛\xF3\xA0\x84\x80飾");
    EXPECT_EQ(looked.words(WordKind::Kanji), "一緒 佐々木 大阪 日本 葛飾");
}

TEST(VisibleText, HasNoWordsOfSignsOrOfTooMuch) {
    std::string text = "ーー々 ''' 123 ー ・・ ";
    for (int at = 0; at < 41; ++at)
        text += "字";
    text += " ";
    for (int at = 0; at < 40; ++at)
        text += "語";
    text += " ";
    for (int at = 0; at < 1'000'000; ++at)
        text += "a";
    const Looked looked(text);
    std::string longest;
    for (int at = 0; at < 40; ++at)
        longest += "語";
    EXPECT_EQ(looked.words(WordKind::Kanji), longest);
    EXPECT_EQ(looked.words(WordKind::Katakana), "");
    EXPECT_EQ(looked.words(WordKind::Latin), "");
}

TEST(WordCounts, AreExactWhileThereIsRoom) {
    WordCounts counts(10'000);
    for (int round = 1; round <= 3; ++round) {
        for (int word = 0; word < 10'000; word += round)
            counts.add(WordKind::Latin, "w" + std::to_string(word));
    }
    EXPECT_EQ(counts.greatestLoss(), 0U);
    std::uint64_t sum = 0;
    for (const Word& word : counts.top(WordKind::Latin, 10'000, {}))
        sum += word.count;
    EXPECT_EQ(sum, 10'000U + 5'000 + 3'334);
    EXPECT_EQ(counts.top(WordKind::Kanji, 10, {}).size(), 0U);
}

TEST(WordCounts, ForgetTheRarestAndSayHowMuchIsMissing) {
    WordCounts counts(100);
    constexpr std::uint64_t kOften = 1000;
    for (std::uint64_t at = 0; at < kOften; ++at) {
        counts.add(WordKind::Kanji, "雨");
        counts.add(WordKind::Latin, "rare" + std::to_string(at));
        if (at % 10 == 0)
            counts.add(WordKind::Latin, "some");
    }
    EXPECT_EQ(counts.top(WordKind::Kanji, 5, {})[0].count, kOften);
    const Word some = counts.top(WordKind::Latin, 1, {})[0];
    EXPECT_EQ(some.text, "some");
    EXPECT_LE(some.count, 100U);
    EXPECT_GE(some.count + counts.greatestLoss(), 100U);
    EXPECT_GT(counts.greatestLoss(), 0U);
    EXPECT_LE(counts.top(WordKind::Latin, 1000, {}).size(), 100U);
}

TEST(WordCounts, LeaveOutWhatIsToldToThem) {
    WordCounts counts;
    for (const char* word : {"b", "a", "c", "c"})
        counts.add(WordKind::Latin, word);
    EXPECT_EQ(counts.top(WordKind::Latin, 5, {"c"}).size(), 2U);
    EXPECT_EQ(counts.top(WordKind::Latin, 5, {"c"})[0].text, "a");
}

TEST(InformationCalendar, KnowsDaysAndTimes) {
    EXPECT_EQ(dayOf("1970/01/01"), 0);
    EXPECT_EQ(textOf(dayOf("2024/02/29")), "2024/02/29");
    EXPECT_EQ(dayOf("0100/01/01"), -683'003);
    EXPECT_EQ(weekdayOf(dayOf("2026/11/22")), 0);
    EXPECT_EQ(daysOf(2024, 2), 29);
    for (const char* none : {"", "abc", "2023/02/29", "0099/12/31", "9999/99/99", "2026/1/1", "2026-01-01",
                             "2026/01/01 00:00:00", "2026/01/0x", "10000/01/01", "+026/01/01"})
        EXPECT_EQ(dayOf(none), kNoDay) << none;
    EXPECT_EQ(hourOf("2026/01/01 23:59:59"), 23);
    EXPECT_EQ(hourOf("2026/01/01 00:00:00"), 0);
    for (const char* none : {"", "2026/01/01", "2026/01/01 24:00:00", "2026/01/01 12:60:00", "2026/02/30 12:00:00",
                             "12:00:00", "2026/01/01 12:00"})
        EXPECT_EQ(hourOf(none), kNoHour) << none;
}

TEST(InformationCharacters, AreShortenedToOneLine) {
    EXPECT_EQ(shortened("a\r\nb", 10), "a  b");
    EXPECT_EQ(shortened("あいう", 3), "あいう");
    EXPECT_EQ(shortened("あいう", 2), "あい…");
    EXPECT_EQ(shortened("\xFF", 2), "\xEF\xBF\xBD");
}

} // namespace
} // namespace velloria::plugins::vellinfo
