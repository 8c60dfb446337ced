#include "wrenport/hatena_import.h"

#include "wrenport/hatena_export.h"
#include "wrenport/xml_cleaner.h"

#include <gtest/gtest.h>

#include <QFile>

namespace velloria::plugins::wrenport {
namespace {

constexpr ImportChoices kAsTyped{ImportChoices::Notation::AsTyped, ImportChoices::Comments::Dropped};
constexpr ImportChoices kWithComments{ImportChoices::Notation::Html, ImportChoices::Comments::Kept};

std::string sample(const char* name) {
    QFile file(QStringLiteral(VELLORIA_TEST_DATA "/plugins/hatena/") + QString::fromUtf8(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
    return file.readAll().toStdString();
}

ImportedDiary imported(std::string xml, const ImportChoices& choices = {}) {
    return importedDiary(std::move(xml), choices, [] {});
}

std::string errorOf(std::string xml) {
    try {
        imported(std::move(xml));
    } catch (const Error& error) {
        return error.what();
    }
    return {};
}

bool contains(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

std::string dayWith(const std::string& body, const std::string& date = "2024-03-08", const std::string& title = "",
                    const std::string& below = "") {
    return "<day date=\"" + date + "\" title=\"" + title + "\">\n<body>\n" + body + "\n</body>\n" + below + "</day>\n";
}

std::string diaryOf(const std::string& days) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<diary>\n" + days + "</diary>\n";
}

std::string diaryWith(const std::string& body) {
    return diaryOf(dayWith(body));
}

TEST(WrenportImport, MakesEntriesOfHeadings) {
    const ImportedDiary diary = imported(sample("hatena.xml"), kAsTyped);
    ASSERT_EQ(diary.entries.size(), 8u);
    const Entry& first = diary.entries[0];
    EXPECT_EQ(first.day, "2024/03/07");
    EXPECT_EQ(first.title, "");
    EXPECT_EQ(first.contents, "見出しのない日。\r\n 行頭に空きのある * は見出しではない。");
    EXPECT_EQ(first.publishTime, std::nullopt);
    EXPECT_EQ(first.genre, "一般");
    EXPECT_EQ(first.weather, "-");
    EXPECT_EQ(first.extend, std::nullopt);
    EXPECT_EQ(first.excerpt, std::nullopt);
    EXPECT_FALSE(first.isPrivate);
    EXPECT_EQ(diary.entries[1].title, "日の題 & \"引用\"");
    EXPECT_EQ(diary.entries[1].contents, "前書き。\r\n");
    EXPECT_EQ(diary.entries[2].title, "海まで");
    EXPECT_EQ(diary.entries[2].genre, "旅");
    EXPECT_EQ(diary.entries[2].publishTime, "2024/03/08 12:00:00");
    EXPECT_EQ(diary.entries[2].contents, "朝は晴れ。[http://www.example.com/?a=1&b=2:title=地図]\r\n");
    EXPECT_EQ(diary.entries[3].title, "夜");
    EXPECT_EQ(diary.entries[3].contents, "5 < 6 ((注))");
    EXPECT_EQ(diary.entries[4].title, "名前つき");
    EXPECT_EQ(diary.entries[4].publishTime, std::nullopt);
    EXPECT_EQ(diary.notes, "持ち込めないもの: コメント 2件、二つ目からのカテゴリー 2件、見出しの名前 (*p1* など) 2件\n"
                           "持ち込めないカテゴリー: 海");
}

TEST(WrenportImport, MakesHtmlUnlessToldOtherwise) {
    const ImportedDiary diary = imported(sample("hatena.xml"));
    ASSERT_EQ(diary.entries.size(), 8u);
    EXPECT_EQ(diary.entries[2].contents, "<p>朝は晴れ。<a href=\"http://www.example.com/?a=1&amp;b=2\">地図</a></p>");
    EXPECT_TRUE(contains(*diary.entries[3].contents, "<p class=\"footnote\"><a name=\"f20240308-3-1\""));
    EXPECT_EQ(imported(diaryWith("*x\na\n====\nb")).entries[0].extend, "<p>b</p>");
    EXPECT_EQ(imported(diaryWith("*x\na\n====\nb"), kAsTyped).entries[0].contents, "a\r\n====\r\nb");
    EXPECT_TRUE(contains(imported(diaryWith("*x\na&lt;!-- b --&gt;")).notes, "隠された文 (<!-- -->) 1件"));
}

TEST(WrenportImport, ReadsEveryEncodingThatTheServiceWrote) {
    const ImportedDiary utf8 = imported(sample("hatena.xml"));
    const ImportedDiary euc = imported(sample("hatena-eucjp.xml"));
    EXPECT_EQ(utf8.entries, euc.entries);
    EXPECT_TRUE(contains(euc.notes, "文字コード: EUC-JP"));
    const std::string mark = "\xEF\xBB\xBF";
    EXPECT_EQ(imported(mark + diaryWith("*x")).entries[0].title, "x");
    const std::string shiftJis =
        "<?xml version=\"1.0\" encoding=\"Shift_JIS\"?><diary><day date=\"2024-03-08\"><body>\n"
        "*\x93\xFA\x8BL\n\x83\x5C\x87\x40\n</body></day></diary>";
    const ImportedDiary windows = imported(shiftJis, kAsTyped);
    EXPECT_EQ(windows.entries[0].title, "日記");
    EXPECT_EQ(windows.entries[0].contents, "ソ①");
    EXPECT_TRUE(contains(windows.notes, "文字コード: Shift_JIS"));
    // What it declares is not always what it is.
    EXPECT_EQ(
        imported("<?xml version=\"1.0\" encoding=\"EUC-JP\"?><diary>" + dayWith("*日") + "</diary>").entries[0].title,
        "日");
}

TEST(WrenportImport, LeavesOutWhatXmlForbids) {
    const ImportedDiary diary = imported(sample("hatena-bad-characters.xml"), kAsTyped);
    EXPECT_EQ(diary.entries[1].contents, "前書きと制御文字と♫。\r\n");
    EXPECT_TRUE(contains(diary.notes, "XMLに使えない文字 2件"));
    EXPECT_EQ(
        imported(diaryWith("a&#0;b&#xD800;c&#x110000;d&#99999999999999;e\xEF\xBF\xBE"), kAsTyped).entries[0].contents,
        "abcde");
}

TEST(WrenportImport, TakesAmpersandsAsTheyWereMeant) {
    const auto contents = [](const std::string& body) {
        return *imported(diaryWith(body), kAsTyped).entries[0].contents;
    };
    EXPECT_EQ(contents("a&b &nbsp; &unknown; &; &# &#x; &amp;amp;"), "a&b &nbsp; &unknown; &; &# &#x; &amp;");
    EXPECT_EQ(contents("&amp;#9835;&amp;#x266B;&amp;#60;&amp;#38;&amp;#128512;&#9835;"), "♫♫&#60;&#38;😀♫");
    EXPECT_EQ(contents("<![CDATA[&#8;&b<x>]]>&amp;"), "&#8;&b<x>&");
    EXPECT_EQ(contents("a <b class=\"c\">d</b><br/>e"), "a <b class=\"c\">d</b><br>e");
    EXPECT_EQ(imported(diaryWith("*&amp;#9835;[x]\na")).entries[0].title, "♫[x]");
}

TEST(WrenportImport, KnowsHeadings) {
    const auto titles = [](const std::string& body) {
        std::string all;
        for (const Entry& entry : imported(diaryWith(body)).entries)
            all += *entry.title + "(" + *entry.genre + "," + entry.publishTime.value_or("") + ")";
        return all;
    };
    EXPECT_EQ(titles("*a\n**b\n***c\n *d\n*e"), "a(一般,)e(一般,)");
    EXPECT_EQ(titles("*"), "(一般,)");
    EXPECT_EQ(titles("*1709866800*a*b*"), "a*b*(一般,2024/03/08 12:00:00)");
    EXPECT_EQ(titles("*12345678*a\n*12345678901*b"), "12345678*a(一般,)12345678901*b(一般,)");
    EXPECT_EQ(titles("*100000000*a\n*9999999999*b"), "a(一般,1973/03/03 18:46:40)b(一般,2286/11/21 02:46:39)");
    EXPECT_EQ(titles("*p1*a\n*日*b\n*p 1*c"), "a(一般,)日*b(一般,)p 1*c(一般,)");
    EXPECT_EQ(titles("*[a][b]c[d]"), "c[d](a,)");
    EXPECT_EQ(titles("*[a:b]c\n*[]c\n*[[a]]c\n*[a"), "[a:b]c(一般,)[]c(一般,)[[a]]c(一般,)[a(一般,)");
    EXPECT_EQ(titles("*a\n&gt;||\n*b\n||&lt;\n*c"), "a(一般,)c(一般,)");
    EXPECT_EQ(titles("*a\n&gt;|\n*b\nx|&lt;\n*c"), "a(一般,)c(一般,)");
    EXPECT_EQ(titles("*a\n&gt;|perl|\n*b\n|&lt;\n*c\n||&lt;\n*d"), "a(一般,)d(一般,)");
    EXPECT_EQ(titles("*a\n&gt;||\n*b"), "a(一般,)b(一般,)") << "text without an end hides no entries";
    EXPECT_EQ(titles("*a&#13;\n*b&#13;\n"), "a(一般,)b(一般,)");
}

TEST(WrenportImport, KeepsTitlesOfDaysWhereTheyHaveAPlace) {
    const auto diary = [](const std::string& body) { return imported(diaryOf(dayWith(body, "2024-03-08", "題"))); };
    EXPECT_EQ(diary("a").entries[0].title, "題");
    EXPECT_EQ(diary("a").notes, "");
    EXPECT_EQ(diary("").entries[0].title, "題");
    const ImportedDiary lost = diary("*b");
    EXPECT_EQ(lost.entries[0].title, "b");
    EXPECT_EQ(lost.notes, "持ち込めないもの: 日の題 1件\n持ち込めない日の題: 題");
    EXPECT_EQ(imported(diaryOf(dayWith("\n \n*b"))).entries.size(), 1u);
}

TEST(WrenportImport, SortsDays) {
    const ImportedDiary diary =
        imported(diaryOf(dayWith("*b\n*c", "2024-03-08") + dayWith("*a", "0100-1-1") + dayWith("*d", "2024/03/08")));
    std::string all;
    for (const Entry& entry : diary.entries)
        all += entry.day + *entry.title + " ";
    EXPECT_EQ(all, "0100/01/01a 2024/03/08b 2024/03/08c 2024/03/08d ");
}

TEST(WrenportImport, CountsAndNamesDaysOfNoCalendar) {
    for (const char* date : {"2024-02-31", "0000-00-00", "0099-12-31", "10000-01-01", "2024-03", "2024-03-08x", "",
                             "2024--8", "x", "99999999999-01-01"}) {
        const ImportedDiary diary = imported(diaryOf(dayWith("*a\n*b", date) + dayWith("*c", "9999-12-31")));
        EXPECT_EQ(diary.entries.size(), 1u) << date;
        EXPECT_TRUE(contains(diary.notes, "暦にない日付の日記 2件")) << diary.notes;
        EXPECT_TRUE(contains(diary.notes, *date ? date : "日付なし")) << diary.notes;
        const std::string error = errorOf(diaryOf(dayWith("*a", date)));
        EXPECT_TRUE(contains(error, "持ち込める日記がありません。")) << error;
        EXPECT_TRUE(contains(error, "暦にない日付の日記 1件")) << error;
    }
}

TEST(WrenportImport, ListsCommentsBelowTheLastEntryWhenAsked) {
    const ImportedDiary diary = imported(sample("hatena.xml"), kWithComments);
    EXPECT_EQ(
        diary.entries[4].extend,
        "<p>コメント: taro 2024/03/08 12:53:20</p>\r\n<p>いいですね。&lt;b&gt;太字&lt;/b&gt;<br>\r\n二行目</p>\r\n"
        "<p>コメント: 通りすがり 2024/03/08 13:53:20</p>\r\n<p>はじめまして</p>");
    EXPECT_EQ(diary.entries[3].extend, std::nullopt);
    EXPECT_FALSE(contains(diary.notes, "コメント"));
    const std::string comment =
        "<comments><comment><username>a</username><body>b</body><timestamp>x</timestamp></comment></comments>";
    EXPECT_EQ(imported(diaryOf(dayWith("", "2024-03-08", "", comment)), kWithComments).entries[0].extend,
              "<p>コメント: a</p>\r\n<p>b</p>");
    EXPECT_EQ(imported(diaryOf(dayWith("a\n====\nc", "2024-03-08", "", comment)), kWithComments).entries[0].extend,
              "<p>c</p>\r\n<p>コメント: a</p>\r\n<p>b</p>");
    const std::string inLines = "<comments><comment>\n<username>\n  a\n</username>\n<body>b</body>\n"
                                "<timestamp>\n  1709870000\n</timestamp>\n</comment></comments>";
    EXPECT_EQ(imported(diaryOf(dayWith("", "2024-03-08", "", inLines)), kWithComments).entries[0].extend,
              "<p>コメント: a 2024/03/08 12:53:20</p>\r\n<p>b</p>");
}

TEST(WrenportImport, TakesAFileThatIsCutAsFarAsItGoes) {
    const std::string whole = diaryOf(dayWith("*a\nb", "2024-03-07") + dayWith("*c\nd\n*e\nf"));
    const std::size_t firstDay = whole.find("</day>") + 6;
    std::size_t taken = 0;
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const std::string part = whole.substr(0, size);
        const std::string error = errorOf(part);
        if (!error.empty()) {
            ASSERT_LT(size, firstDay) << part << error;
            continue;
        }
        const ImportedDiary diary = imported(part, kAsTyped);
        EXPECT_GE(diary.entries.size(), taken) << part;
        taken = diary.entries.size();
        EXPECT_EQ(contains(diary.notes, "ファイルが途中で切れています。"), size + 1 < whole.size()) << part;
    }
    EXPECT_EQ(taken, 3u);
    const ImportedDiary cut = imported(whole.substr(0, whole.find("\nf") + 2), kAsTyped);
    EXPECT_EQ(cut.entries.back().contents, "f");
    EXPECT_TRUE(contains(cut.notes, "2024-03-08の日は、切れたところまで")) << cut.notes;
    EXPECT_TRUE(contains(errorOf("<diary>"), "ファイルが途中で切れています。"));
}

TEST(WrenportImport, RefusesWhatIsNoDiaryOfTheService) {
    EXPECT_TRUE(contains(errorOf(""), "何も書かれていません"));
    EXPECT_TRUE(contains(errorOf(" \r\n"), "何も書かれていません"));
    EXPECT_TRUE(contains(errorOf("TITLE: a\n-----\n"), "1行目: XMLとして読めません。"));
    EXPECT_TRUE(contains(errorOf("<rss version=\"2.0\"><channel/></rss>"), "最初の要素は「rss」です"));
    EXPECT_TRUE(contains(errorOf(std::string("PK\x03\x04\0\0", 6)), "XMLとして読めません。"));
    EXPECT_TRUE(contains(errorOf(std::string("\xFF\xFE<\0d\0", 6)), "XMLとして読めません。"));
    EXPECT_TRUE(contains(errorOf("<diary></diary>"), "持ち込める日記がありません。"));
    EXPECT_TRUE(contains(errorOf("<diary>\n<day>\n</diary>"), "3行目: XMLとして読めません。"));
    EXPECT_TRUE(contains(errorOf("<diary></diary><diary>"), "XMLとして読めません。"));
    EXPECT_TRUE(contains(errorOf("<dia"), "XMLとして読めません。"));
}

TEST(WrenportImport, RefusesDeclarations) {
    const std::string day = dayWith("&x;&y;");
    EXPECT_TRUE(contains(errorOf("<!DOCTYPE diary SYSTEM \"http://127.0.0.1/x.dtd\"><diary>" + day + "</diary>"),
                         "DOCTYPE宣言"));
    EXPECT_TRUE(
        contains(errorOf("<!DOCTYPE diary [<!ENTITY x SYSTEM \"file:///etc/passwd\">]><diary>" + day + "</diary>"),
                 "DOCTYPE宣言"));
    std::string bomb = "<!DOCTYPE diary [<!ENTITY a0 \"x\">";
    for (int level = 1; level < 30; ++level) {
        const std::string inner = "&a" + std::to_string(level - 1) + ";";
        bomb += "<!ENTITY a" + std::to_string(level) + " \"" + inner + inner + inner + "\">";
    }
    EXPECT_TRUE(contains(errorOf(bomb + "]><diary>" + dayWith("&a29;") + "</diary>"), "DOCTYPE宣言"));
}

TEST(WrenportImport, RefusesWhatIsTooDeepOrTooLong) {
    std::string deep = "<diary>";
    for (int level = 0; level < 100'000; ++level)
        deep += "<a>";
    EXPECT_TRUE(contains(errorOf(deep), "入れ子が深すぎます"));
    EXPECT_TRUE(contains(errorOf("<diary><day date=\"" + std::string(5 << 20, 'x') + "\">"), "タグが大きすぎます。"));
    EXPECT_TRUE(contains(errorOf("<diary><!--" + std::string(5 << 20, 'x')), "タグが大きすぎます。"));
    EXPECT_TRUE(contains(errorOf(diaryWith(std::string(2'000'001, '\n'))), "2024-03-08の日の行が多すぎます。"));
    std::string headings;
    for (int heading = 0; heading <= 1'000'000; ++heading)
        headings += "*\n";
    EXPECT_TRUE(contains(errorOf(diaryWith(headings)), "日記が多すぎます。一度に100万件までです。"));
    const std::string title(1 << 20, 'x');
    EXPECT_EQ(imported(diaryOf(dayWith("a", "2024-03-08", title))).entries[0].title, title);
    EXPECT_EQ(imported(diaryWith("*" + title)).entries[0].title, title);
}

TEST(WrenportImport, PassesOverElementsOfOthers) {
    const ImportedDiary diary = imported("<diary><meta><day date=\"2024-03-01\"><body>x</body></day></meta>" +
                                         dayWith("*a", "2024-03-08", "", "<tags><body>y</body></tags>") + "</diary>");
    EXPECT_EQ(diary.entries.size(), 1u);
    EXPECT_EQ(diary.notes, "持ち込めないもの: 知らない要素 2件");
}

TEST(WrenportImport, CountsTextThatBelongsToNothing) {
    const ImportedDiary diary =
        imported("<diary>a &amp; b\n<day date=\"2024-03-08\">c<body>\n*d\n</body></day></diary>");
    EXPECT_EQ(diary.entries.size(), 1u);
    EXPECT_EQ(diary.notes, "持ち込めないもの: 要素の外の文 2件");
}

TEST(WrenportImport, RepeatsTagsThatNobodyEscaped) {
    const ImportedDiary diary =
        imported("<diary><day date=\"2024-03-08\"><body>\n*a\nb<br/><img alt=\"&quot;&lt;&quot;\"/><b>c</b>\n"
                 "</body></day></diary>");
    EXPECT_EQ(diary.entries[0].contents, "<p>b<br><img alt=\"&quot;&lt;&quot;\"><b>c</b></p>");
}

std::string exported(const std::vector<Entry>& entries) {
    std::string xml;
    HatenaWriter writer([&](std::string_view text) { xml += text; });
    for (const Entry& entry : entries)
        writer.add(entry);
    writer.finish();
    return xml;
}

std::string replaced(std::string text, std::string_view old, std::string_view now) {
    const std::size_t at = text.find(old);
    EXPECT_NE(at, std::string::npos) << old;
    return text.replace(at, old.size(), now);
}

TEST(WrenportImport, TakesChangesInAnExportOfOurs) {
    Entry entry{"2024/03/08", "題", "本文", "", "", "晴", "旅", "2024/03/08 12:00:00", true};
    Entry other = entry;
    other.contents = "他";
    other.isPrivate = false;
    const std::string xml = exported({entry, other});
    const ImportedDiary diary = imported(replaced(xml, "本文", "直した"), kAsTyped);
    ASSERT_EQ(diary.entries.size(), 2u);
    EXPECT_EQ(diary.entries[0].contents, "直した");
    EXPECT_TRUE(diary.entries[0].isPrivate) << "a changed entry is as private as it was";
    EXPECT_EQ(diary.entries[1], other);
    EXPECT_TRUE(contains(diary.notes, "書き出したあとに変えられた日記")) << diary.notes;
    EXPECT_TRUE(contains(imported(replaced(xml, "title=\"\"", "title=\"日の題\"")).notes, "日の題 1件"));
    const ImportedDiary cut = imported(xml.substr(0, xml.find("本文") + 3), kAsTyped);
    EXPECT_TRUE(cut.entries[0].isPrivate) << "nor does a lost end make it public";
}

TEST(WrenportExport, WritesWhatReadersOfTheServiceKnow) {
    const Entry first{"2024/03/08", "題", "一行", "", "", "-", "旅", "2024/03/08 12:00:00", false};
    const Entry second{"2024/03/08", "[重要]", "<p>a</p>\r\n-b ((c))", "続き", "",
                       "-",          "a:b",    "2024/03/08 12:00:00",  false};
    const Entry third{"2024/03/09", "**", "", "", "", "-", "旅", "", false};
    std::string xml = exported({first, second, third});
    for (std::size_t at = xml.find("<velloria"); at != std::string::npos; at = xml.find("<velloria"))
        xml.erase(at, xml.find("\n", at) + 1 - at);
    for (std::size_t at = xml.find("</velloria-entry>\n"); at != std::string::npos;
         at = xml.find("</velloria-entry>\n"))
        xml.erase(at, 18);
    EXPECT_EQ(xml,
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<diary>\n"
              "<day date=\"2024-03-08\" title=\"\">\n<body>\n*1709866800*[旅]題\n一行\n"
              "*1709866800*[a：b]&amp;#91;重要]\n&gt;&lt;div&gt;\n&lt;p&gt;a&lt;/p&gt;\n"
              "&amp;#45;b &amp;#40;(c))\n&lt;/div&gt;&lt;\n====\n続き\n</body>\n</day>\n"
              "<day date=\"2024-03-09\" title=\"\">\n<body>\n*[旅]&amp;#42;&amp;#42;\n</body>\n</day>\n</diary>\n");
}

} // namespace
} // namespace velloria::plugins::wrenport
