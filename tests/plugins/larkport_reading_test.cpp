#include "common/calls.h"
#include "larkport/date_line.h"
#include "larkport/movable_type_reader.h"
#include "larkport/paragraphs.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace velloria::plugins::larkport {
namespace {

using namespace std::string_literals;

std::string sample(const std::string& name) {
    std::ifstream file(VELLORIA_TEST_DATA "/exchange/movable_type/" + name, std::ios::binary);
    std::stringstream bytes;
    bytes << file.rdbuf();
    EXPECT_FALSE(bytes.str().empty()) << name;
    return bytes.str();
}

ReadDiary read(const std::string& bytes, const ReadingOptions& options = {}) {
    return readMovableType(bytes, options, [] {});
}

std::string refusalOf(const std::string& bytes) {
    try {
        read(bytes);
    } catch (const Error& error) {
        return error.what();
    }
    return {};
}

/// An entry with a head of these lines, a body and an end.
std::string entryWith(const std::string& head, const std::string& body = "text") {
    return "TITLE: t\nSTATUS: Publish\nCONVERT BREAKS: 0\n" + head + "-----\nBODY:\n" + body + "\n-----\n--------\n";
}

Entry single(const std::string& bytes, const ReadingOptions& options = {}) {
    const ReadDiary diary = read(bytes, options);
    EXPECT_EQ(diary.entries.size(), 1u);
    return diary.entries.front();
}

const std::string kDate = "DATE: 01/31/2024 03:31:05 PM\n";

std::string bodyOf(const std::string& body) {
    return *single(entryWith(kDate, body)).contents;
}

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST(MovableType, ReadsEveryKey) {
    const ReadDiary diary = read(sample("mt-full.txt"));
    ASSERT_EQ(diary.entries.size(), 2u);
    const Entry& first = diary.entries[0];
    EXPECT_EQ(first.day, "2024/01/31");
    EXPECT_EQ(first.publishTime, "2024/01/31 15:31:05");
    EXPECT_EQ(first.title, "冬の散歩: 川まで");
    EXPECT_EQ(first.contents,
              "<p>川まで歩いた。</p>\r\n<p>鴨が <strong>7 羽</strong>いた &amp; 一羽は飛んだ。</p>\r\n\r\n"
              "<p>空き行のあと。</p>");
    EXPECT_EQ(first.extend, "<p>続きの文。</p>");
    EXPECT_EQ(first.excerpt, "川まで歩いた日のこと。");
    EXPECT_EQ(first.genre, "日記");
    EXPECT_EQ(first.weather, "-");
    EXPECT_FALSE(first.isPrivate);
    const Entry& second = diary.entries[1];
    EXPECT_EQ(second.publishTime, "2024/02/01 12:05:09");
    EXPECT_EQ(second.contents, "<p>改行で<br />\r\n行が変わる。</p>\r\n\r\n<p>ここで段落が変わる。</p>");
    EXPECT_EQ(second.extend, "");
    EXPECT_EQ(second.genre, "一般");
    EXPECT_TRUE(second.isPrivate);
    EXPECT_EQ(diary.notes,
              "文字コード: UTF-8\n"
              "持ち込めないもの: 2番目からのカテゴリー 1件、キーワードの欄 1件、コメント 2件、タグの欄 1件、"
              "トラックバック 1件\n"
              "非公開にする日記: 1件 (下書きなど、公開でないもの)");
}

TEST(MovableType, KeepsCommentsBehindThePostscriptWhenAsked) {
    const ReadDiary diary = read(sample("mt-full.txt"), {true, true});
    EXPECT_EQ(
        diary.entries[0].extend,
        "<p>続きの文。</p>\r\n<HR>\r\n<P>コメント: 太郎 (2024/01/31 21:02:07) http://www.example.com/taro/</P>\r\n"
        "<P>一行目。<BR>\r\n三行目。</P>\r\n<HR>\r\n<P>コメント: no mail (2024/02/01 00:00:00)</P>\r\n"
        "<P>At midnight.</P>\r\n<HR>\r\n"
        "<P>トラックバック: 隣の日記 (2024/02/01 08:15:00) http://www.example.org/2024/02/mimashita.html</P>\r\n"
        "<P>抜き書き…</P>");
    EXPECT_FALSE(contains(diary.notes, "コメント 2件"));
    EXPECT_TRUE(contains(diary.notes, "追記の後ろに入れるコメントとトラックバック: 3件")) << diary.notes;
    const ReadDiary half = read(sample("mt-full.txt"), {false, true});
    EXPECT_TRUE(contains(half.notes, "コメント 2件"));
    EXPECT_FALSE(contains(half.notes, "トラックバック 1件、"));
}

TEST(MovableType, LetsNoCommentActInThePage) {
    const std::string comment = "-----\nCOMMENT:\nAUTHOR: <b>\nDATE: 01/31/2024 09:02:07 PM\n"
                                "<script>x</script> a&b<br>c</p>\nSECRET: 0";
    const Entry entry = single(
        "TITLE: t\nCONVERT BREAKS: 0\n" + kDate + "-----\nBODY:\nx\n" + comment + "\n-----\n--------\n", {true, true});
    EXPECT_EQ(entry.extend, "<HR>\r\n<P>コメント: &lt;b&gt; (2024/01/31 21:02:07)</P>\r\n"
                            "<P>&lt;script&gt;x&lt;/script&gt; a&amp;b<BR>\r\nc<BR>\r\nSECRET: 0</P>");
}

TEST(MovableType, OfJapaneseServicesIsRead) {
    const ReadDiary diary = read(sample("mt-hatenablog.txt"));
    ASSERT_EQ(diary.entries.size(), 2u);
    EXPECT_EQ(diary.entries[0].publishTime, "2024/02/10 21:30:00");
    EXPECT_EQ(diary.entries[0].genre, "日記");
    EXPECT_TRUE(contains(*diary.entries[0].contents, "a &lt; b\r\n--- \r\nc</pre>"));
    EXPECT_EQ(diary.entries[1].title, "");
    EXPECT_TRUE(diary.entries[1].isPrivate);
    EXPECT_TRUE(contains(diary.notes, "画像のアドレス 1件")) << diary.notes;
    EXPECT_EQ(single(sample("mt-typepad.txt")).publishTime, "2024/03/05 00:30:00");
}

TEST(MovableType, IsReadInEachEncoding) {
    const ReadDiary shiftJis = read(sample("mt-24h-sjis-crlf.txt"));
    const ReadDiary eucJp = read(sample("mt-24h-eucjp.txt"));
    EXPECT_TRUE(shiftJis.notes.starts_with("文字コード: Shift_JIS\n"));
    EXPECT_TRUE(eucJp.notes.starts_with("文字コード: EUC-JP\n"));
    EXPECT_EQ(shiftJis.entries, eucJp.entries);
    ASSERT_EQ(shiftJis.entries.size(), 2u);
    EXPECT_EQ(shiftJis.entries[0].publishTime, "2005/12/31 23:59:58");
    EXPECT_EQ(shiftJis.entries[0].contents, "<p>一年の終わり。<br />\r\nソースと能力の十の予定。</p>\r\n\r\n"
                                            "<p>次の段落<br>と<br />改行。</p>");
    EXPECT_EQ(shiftJis.entries[1].day, "2099/01/02");
    EXPECT_TRUE(shiftJis.entries[1].isPrivate);
    EXPECT_TRUE(read("\xEF\xBB\xBF" + sample("mt-full.txt")).notes.starts_with("文字コード: UTF-8 (BOM付き)\n"));
    EXPECT_EQ(read("\xEF\xBB\xBF" + sample("mt-full.txt")).entries, read(sample("mt-full.txt")).entries);
}

TEST(MovableType, MayHaveAnyLineEnds) {
    const std::string text = sample("mt-full.txt");
    std::string carriageReturns = text;
    std::replace(carriageReturns.begin(), carriageReturns.end(), '\n', '\r');
    std::string both;
    for (const char c : text)
        both.append(c == '\n' ? "\r" : "") += c;
    EXPECT_EQ(read(both).entries, read(text).entries);
    EXPECT_EQ(read(carriageReturns).entries, read(text).entries);
    EXPECT_EQ(read(both).notes, read(text).notes);
}

TEST(MovableType, HasSeparatorsInItsTexts) {
    const ReadDiary diary = read(sample("mt-edge.txt"));
    ASSERT_EQ(diary.entries.size(), 5u);
    EXPECT_EQ(diary.entries[0].contents,
              "<p>before<br />\r\nDATE: 01/01/2001 01:01:01 AM<br />\r\nTITLE: a line that looks like a key<br />\r\n"
              "CATEGORY: stray<br />\r\n------<br />\r\n--------<br />\r\n-----<br />\r\n  indented line<br />\r\n"
              "0<br />\r\nafter the tabs<br />\r\n-----<br />\r\nnot a section: this piece has no key line</p>");
    EXPECT_EQ(diary.entries[1].publishTime, "2024/03/07 09:08:07");
    EXPECT_EQ(diary.entries[2].publishTime, "2024/03/08 10:11:12");
    EXPECT_EQ(diary.entries[3].publishTime, "2024/03/08 15:00:00");
    EXPECT_EQ(diary.entries[4].publishTime, "2024/03/09 13:00:00");
    EXPECT_EQ(diary.entries[4].contents, "<p>lost?</p>");
    EXPECT_TRUE(contains(diary.notes, "途中で切れている")) << diary.notes;
    EXPECT_TRUE(contains(diary.notes, "知らない項目 1件")) << diary.notes;
    EXPECT_EQ(bodyOf("a\n--------\nb: c\n-----\n\n-----\nd"), "a\r\n--------\r\nb: c\r\n-----\r\n\r\n-----\r\nd");
    EXPECT_EQ(bodyOf("a\n-----\nBODY\n-----\nKEYWORD:\n------"), "a\r\n-----\r\nBODY\r\n-----\r\nKEYWORD:\r\n------");
    EXPECT_EQ(bodyOf("a\n-----\n\n-----\n"), "a");
}

TEST(MovableType, TakesOddFormsOfAnEntry) {
    EXPECT_EQ(single("\n\nTITLE:t\n\nDATE:01/02/2024 03:04:05\nSTART BODY:\na\n\nb\n--------\n").contents,
              "<p>a</p>\r\n\r\n<p>b</p>");
    EXPECT_EQ(single("DATE: 01/02/2024 03:04:05\nSTART BODY: a\nb\n--------\n").contents, "<p>a<br />\r\nb</p>");
    EXPECT_EQ(single("DATE: 01/02/2024 03:04:05\nBODY:\na\n").contents, "<p>a</p>");
    EXPECT_EQ(single("DATE: 01/02/2024 03:04:05\n-----\na\n-----\n").contents, "<p>a</p>");
    EXPECT_EQ(single("DATE: 01/02/2024 03:04:05\n-----\n").contents, "");
    EXPECT_EQ(single(entryWith(kDate) + "--------\n--------\n\n").contents, "text");
    EXPECT_EQ(single(entryWith(kDate + "PRIMARY CATEGORY: b\nCATEGORY: a\nCATEGORY: b\n")).genre, "b");
    EXPECT_EQ(single(entryWith(kDate + "CATEGORY: a\nCATEGORY: b\n")).genre, "a");
    EXPECT_EQ(single(entryWith(kDate + "PRIMARY CATEGORY:\n")).genre, "一般");
}

TEST(MovableType, LosesNothingThatComesTwice) {
    const std::string pieces = "\n-----\nEXCERPT:\nx\n-----\nBODY:\nb\n-----\nCOMMENT:\nc\n-----\nEXCERPT:\ny";
    const ReadDiary diary = read(entryWith(kDate + "TITLE: u\nSTATUS: Publish\n", "a" + pieces));
    ASSERT_EQ(diary.entries.size(), 1u);
    EXPECT_EQ(diary.entries[0].title, "t");
    EXPECT_EQ(diary.entries[0].contents, "a\r\nb");
    EXPECT_EQ(diary.entries[0].excerpt, "x\r\ny");
    EXPECT_TRUE(contains(diary.notes, "同じ名前の2番目からの項目 2件")) << diary.notes;
}

TEST(MovableType, IsReadInTimeWhateverItsTextsAre) {
    const std::string tags = [] {
        std::string text;
        while (text.size() < 500000)
            text += "<a";
        return text;
    }();
    const std::string head = "TITLE: t\n" + kDate + "-----\n";
    EXPECT_EQ(single(head + "BODY:\n" + tags + "\n-----\n--------\n").contents, "<p>" + tags + "</p>");
    const Entry kept = single(head + "COMMENT:\n" + std::string(500000, '<') + "\n-----\n--------\n", {true, true});
    EXPECT_GT(kept.extend->size(), 2000000u);
    std::string late = entryWith(kDate);
    for (int count = 0; count < 100000; ++count)
        late += "NO ENTRY: 1\n" + kDate + "-----\nCOMMENT:\nc\n-----\n--------\n";
    EXPECT_GT(single(late, {true, true}).extend->size(), 2000000u);
}

TEST(MovableType, HidesWhatIsNotClearlyPublic) {
    for (const char* status : {"Publish", "publish", "PUBLISH", ""})
        EXPECT_FALSE(single("STATUS: "s + status + "\n" + kDate + "-----\n--------\n").isPrivate) << status;
    for (const char* status : {"Draft", "draft", "Future", "Review", "Unpublish", "Spam", "Junk", "what?"})
        EXPECT_TRUE(single("STATUS: "s + status + "\n" + kDate + "-----\n--------\n").isPrivate) << status;
    EXPECT_TRUE(single(kDate + "-----\n--------\n").isPrivate);
}

TEST(MovableType, ShowsItsLineBreaksAsItSays) {
    const std::string text = "a\nb\n\n\n<ul>\n<li>c</li>\n</ul>\n\nd\n<hr>";
    const std::string tags = "<p>a<br />\r\nb</p>\r\n\r\n\r\n<ul>\r\n<li>c</li>\r\n</ul>\r\n\r\nd\r\n<hr>";
    const std::string plain = "a\r\nb\r\n\r\n\r\n<ul>\r\n<li>c</li>\r\n</ul>\r\n\r\nd\r\n<hr>";
    const auto with = [&](const std::string& breaks) {
        return *single("STATUS: Publish\n" + breaks + kDate + "-----\nBODY:\n" + text + "\n-----\n--------\n").contents;
    };
    EXPECT_EQ(with("CONVERT BREAKS: 1\n"), tags);
    EXPECT_EQ(with("CONVERT BREAKS: __default__\n"), tags);
    for (const char* breaks : {"0", "", "richtext", "wysiwyg", "markdown", "textile_2"})
        EXPECT_EQ(with("CONVERT BREAKS: "s + breaks + "\n"), plain) << breaks;
    EXPECT_EQ(with(""), plain); // it has paragraphs of its own
    EXPECT_TRUE(contains(read(entryWith(kDate + "CONVERT BREAKS: x\n")).notes, "UTF-8"));
    const std::string markdown =
        "TITLE: t\nCONVERT BREAKS: markdown_with_smartypants\n" + kDate + "-----\nBODY:\n*a*\n-----\n--------\n";
    EXPECT_EQ(single(markdown).contents, "*a*");
    EXPECT_TRUE(contains(read(markdown).notes, "Markdownなどの本文: 1件"));
}

TEST(MovableType, GivesCommentsWithoutEntryToThatOfTheirDate) {
    const std::string late = "NO ENTRY: 1\n" + kDate + "-----\nCOMMENT:\nAUTHOR: a\nlate\n-----\n--------\n";
    const Entry entry = single(entryWith(kDate) + late, {true, true});
    EXPECT_EQ(entry.extend, "<HR>\r\n<P>コメント: a</P>\r\n<P>late</P>");
    EXPECT_TRUE(contains(read(entryWith(kDate) + late).notes, "コメント 1件"));
    EXPECT_TRUE(contains(read(late + entryWith(kDate), {true, true}).notes, "コメント 1件"));
}

TEST(MovableType, PutsTheEntriesOfADayInTheOrderOfTheirTimes) {
    const ReadDiary diary =
        read(entryWith("DATE: 02/01/2024 10:00:00\n", "c") + entryWith("DATE: 01/31/2024 22:00:00\n", "b") +
             entryWith("DATE: 01/31/2024 08:00:00\n", "a"));
    ASSERT_EQ(diary.entries.size(), 3u);
    EXPECT_EQ(*diary.entries[0].contents + *diary.entries[1].contents + *diary.entries[2].contents, "abc");
}

TEST(MovableType, GoesByTheDayBeforeTheTimeOfTheLastSave) {
    const ReadDiary diary = read(entryWith("DATE: 02/01/2024 10:00:00\nVELLORIA TEXT: 1\nVELLORIA TIME: 2001/01/01\n") +
                                 entryWith("DATE: 01/31/2024 10:00:00\n"));
    ASSERT_EQ(diary.entries.size(), 2u);
    EXPECT_EQ(diary.entries[1].publishTime, "2001/01/01");
}

TEST(MovableType, LeavesOutWhatHasNoDateAndNamesIt) {
    const ReadDiary diary = read(entryWith(kDate) + entryWith("DATE: 02/31/2024 00:00:00\n") +
                                 entryWith("DATE: 01/01/0000 00:00:00\n") + entryWith("") + entryWith("DATE: ?\n"));
    EXPECT_EQ(diary.entries.size(), 1u);
    EXPECT_TRUE(contains(diary.notes, "正しい日付がないため取り込まない日記: 4件")) << diary.notes;
    EXPECT_TRUE(contains(diary.notes, "「t」 DATE: 02/31/2024 00:00:00")) << diary.notes;
    EXPECT_TRUE(contains(diary.notes, "「t」 DATEがありません")) << diary.notes;
    const std::string refusal = refusalOf(entryWith("DATE: 02/31/2024 00:00:00\n"));
    EXPECT_TRUE(contains(refusal, "取り込める日記がありません")) << refusal;
    EXPECT_TRUE(contains(refusal, "02/31/2024")) << refusal;
    for (const std::string& none : {""s, "\n\n"s, "--------\n"s})
        EXPECT_TRUE(contains(refusalOf(none), "Movable Typeの形式のテキストではありません"));
    EXPECT_NE(refusalOf("some text\nof no form\n"), "");
    EXPECT_NE(refusalOf(std::string(10000, '\0')), "");
    EXPECT_NE(refusalOf(std::string(10000, '\xFF')), "");
}

TEST(MovableType, CountsWhatItCantRead) {
    const ReadDiary diary = read(entryWith(kDate, "日本語の本文です\xFFとても長い"));
    EXPECT_TRUE(contains(diary.notes, "読めない文字: 1個")) << diary.notes;
    EXPECT_EQ(diary.entries[0].contents, "日本語の本文です\uFFFDとても長い");
}

TEST(MovableType, MayBeLarge) {
    const std::string title(1 << 20, 'x');
    EXPECT_EQ(single("TITLE: " + title + "\nSTATUS: Publish\n" + kDate + "-----\nBODY:\n-----\n--------\n").title,
              title);
    std::string day;
    for (int count = 0; count < 2000; ++count)
        day += entryWith("DATE: 01/31/2024 00:00:00\n", std::to_string(count));
    const ReadDiary diary = read(day);
    ASSERT_EQ(diary.entries.size(), 2000u);
    EXPECT_EQ(diary.entries[1999].contents, "1999");
}

/// Cut anywhere, it gives each entry that is whole before the cut.
TEST(MovableType, CutAnywhereKeepsWhatIsWhole) {
    for (const char* name : {"mt-full.txt", "mt-hatenablog.txt", "mt-24h-sjis-crlf.txt", "mt-24h-eucjp.txt"}) {
        const std::string whole = sample(name);
        const std::vector<Entry> entries = read(whole).entries;
        const std::string end = "\n--------";
        for (std::size_t size = 0; size <= whole.size(); ++size) {
            const std::string cut = whole.substr(0, size);
            std::size_t wholes = 0;
            for (std::size_t at = cut.find(end); at != std::string::npos; at = cut.find(end, at + 1))
                ++wholes;
            ReadDiary diary;
            try {
                diary = read(cut);
            } catch (const Error&) {
                EXPECT_EQ(wholes, 0u) << name << " " << size;
            }
            ASSERT_GE(diary.entries.size(), wholes) << name << " " << size;
            ASSERT_LE(diary.entries.size(), wholes + 1) << name << " " << size;
            for (std::size_t at = 0; at < wholes; ++at)
                ASSERT_EQ(diary.entries[at].contents, entries[at].contents) << name << " " << size;
            if (diary.entries.size() > wholes) {
                ASSERT_TRUE(contains(diary.notes, "途中で切れている")) << name << " " << size;
            }
        }
    }
}

TEST(MovableTypeDates, AreReadInEachForm) {
    for (const auto& [text, stamp] :
         std::vector<std::pair<std::string, std::string>>{{"08/08/2007 03:00:00 PM", "2007/08/08 15:00:00"},
                                                          {"01/31/2024 12:00:00 AM", "2024/01/31 00:00:00"},
                                                          {"01/31/2024 12:00:00 PM", "2024/01/31 12:00:00"},
                                                          {"01/31/2024 12:30:00", "2024/01/31 12:30:00"},
                                                          {"01/31/2024 03:00:00 pm", "2024/01/31 15:00:00"},
                                                          {"01/31/2024 03:00:00PM", "2024/01/31 15:00:00"},
                                                          {"03/08/2024 15:00:00 PM", "2024/03/08 15:00:00"},
                                                          {"3/7/24 9:8:7", "2024/03/07 09:08:07"},
                                                          {"3/7/99 9:8:7", "1999/03/07 09:08:07"},
                                                          {"12/31/69 0:0:0", "2069/12/31 00:00:00"},
                                                          {"01/31/2024 03:04", "2024/01/31 03:04:00"},
                                                          {"01/31/2024", "2024/01/31 00:00:00"},
                                                          {"2024-03-08 10:11:12", "2024/03/08 10:11:12"},
                                                          {"2024-03-08T10:11:12", "2024/03/08 10:11:12"},
                                                          {"2024-03-08T10:11:12+09:00", "2024/03/08 10:11:12"},
                                                          {"2024-03-08 10:11:12 -0800", "2024/03/08 10:11:12"},
                                                          {"2024/03/08", "2024/03/08 00:00:00"},
                                                          {"0100-01-01", "0100/01/01 00:00:00"},
                                                          {"12/31/9999 23:59:59", "9999/12/31 23:59:59"}}) {
        const std::optional<DateTime> time = readDateLine(text);
        EXPECT_EQ(time ? time->stamp() : "none", stamp) << text;
    }
    const std::optional<DateTime> utc = readDateLine("2024-03-08T10:11:12Z");
    EXPECT_EQ(utc, localTime(1709892672));
}

TEST(MovableTypeDates, ThatAreNoneAreRefused) {
    for (const char* text : {"",
                             " ",
                             "x",
                             "02/31/2024",
                             "13/01/2024",
                             "00/00/0000",
                             "0000-00-00 00:00:00",
                             "1/1/1",
                             "1/1/20245",
                             "2024/3",
                             "01-31-2024",
                             "01/31/2024 25:00:00",
                             "01/31/2024 10:60:00",
                             "01/31/2024 10",
                             "01/31/2024 10:00:00 XM",
                             "01/31/2024 10:00:00 PM x",
                             "2024-03/08",
                             "99999999999/1/1",
                             "2024-03-08 10:11:12 +",
                             "12/31/0099"})
        EXPECT_FALSE(readDateLine(text)) << text;
}

TEST(MovableTypeDates, AreWrittenInTheFormThatAllRead) {
    EXPECT_EQ(dateLine({2007, 8, 8, 15, 0, 0}), "08/08/2007 03:00:00 PM");
    EXPECT_EQ(dateLine({2007, 8, 8, 0, 5, 0}), "08/08/2007 12:05:00 AM");
    EXPECT_EQ(dateLine({2007, 8, 8, 12, 5, 0}), "08/08/2007 12:05:00 PM");
    EXPECT_EQ(dateLine({107, 8, 8, 11, 59, 59}), "08/08/0107 11:59:59 AM");
}

} // namespace
} // namespace velloria::plugins::larkport
