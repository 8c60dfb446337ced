#include "exchange/formats/markdown_html.h"
#include "exchange/formats/titled_markdown.h"

#include "support/patience.h"
#include "support/print.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using exchange::htmlOfMarkdown;

TEST(MarkdownHtml, HtmlWithinStaysAsItIs) {
    EXPECT_EQ(htmlOfMarkdown(u"**強調** <b class='x'>太字</b>\n\n<div>\n*a*\n</div>"_s),
              u"<p><strong>強調</strong> <b class='x'>太字</b></p>\n<div>\n*a*\n</div>\n"_s);
}

TEST(MarkdownHtml, KnowsWhatSitesAreWrittenIn) {
    EXPECT_EQ(
        htmlOfMarkdown(u"| a |\n|---|\n| b |\n"_s),
        u"<table>\n<thead>\n<tr>\n<th>a</th>\n</tr>\n</thead>\n<tbody>\n<tr>\n<td>b</td>\n</tr>\n</tbody>\n</table>\n"_s);
    EXPECT_EQ(htmlOfMarkdown(u"~~x~~ http://www.example.com/"_s),
              u"<p><del>x</del> <a href=\"http://www.example.com/\">http://www.example.com/</a></p>\n"_s);
    EXPECT_TRUE(htmlOfMarkdown(u"a[^1]\n\n[^1]: 注"_s).contains(u"注"_s));
}

TEST(MarkdownHtml, ALineEndIsABreakOnlyWhereItIsWanted) {
    EXPECT_EQ(htmlOfMarkdown(u"a\nb"_s), u"<p>a\nb</p>\n"_s);
    EXPECT_EQ(htmlOfMarkdown(u"a\nb"_s, exchange::LineBreaks::Breaks), u"<p>a<br />\nb</p>\n"_s);
}

TEST(MarkdownHtml, OfNothingIsNothing) {
    EXPECT_EQ(htmlOfMarkdown({}), u""_s);
}

// A hostile text takes no longer than an hour of writing.
TEST(MarkdownHtml, ALongTextOfMarksIsReadSoon) {
    const double begin = processorSeconds();
    for (const QString& mark : {u">"_s, u"["_s, u"![a]("_s, u"*a_ "_s, u"<"_s, u"`a``b"_s, u"- "_s, u"|a"_s, u"[^1]"_s})
        htmlOfMarkdown(mark.repeated(300'000 / mark.size()));
    const QString head = u"|a"_s.repeated(250'000) + u"\n"_s + u"|-"_s.repeated(250'000) + u"\n"_s;
    EXPECT_FALSE(htmlOfMarkdown(head + u"x\n"_s.repeated(2'000)).contains(u"<table"_s));
    EXPECT_LT(processorSeconds() - begin, 60);
}

TEST(TitledMarkdown, AHeadingThatIsTheFirstLineIsTheTitle) {
    const auto title = [](const QString& text) { return exchange::titledMarkdown(text).title; };
    EXPECT_EQ(title(u"# 海まで\\.\n\nbody"_s), u"海まで."_s);
    EXPECT_EQ(exchange::titledMarkdown(u"# 海まで\\.\n\nbody"_s).body, u"\nbody"_s);
    EXPECT_EQ(title(u"## *a* & `<b>` \"c\""_s), u"a & <b> \"c\""_s);
    EXPECT_EQ(title(u"#tag and more"_s), u""_s);
    EXPECT_EQ(title(u"####### seven"_s), u""_s);
    EXPECT_EQ(title(u"#"_s), u""_s);
    EXPECT_EQ(title(u""_s), u""_s);
    EXPECT_EQ(title(u"a\n# b"_s), u""_s);
    EXPECT_EQ(title(u"# "_s + u"あ"_s.repeated(1'000'000)).size(), 1'000'000);
}

TEST(TitledMarkdown, ATextWithoutOneIsKnownByItsFirstLine) {
    EXPECT_EQ(exchange::firstWords(u"![](a.png)\n\n**朝**は晴れ\\.\n次"_s), u"朝は晴れ."_s);
    EXPECT_EQ(exchange::firstWords(u"あ"_s.repeated(41)), u"あ"_s.repeated(40) + u"…"_s);
    EXPECT_EQ(exchange::firstWords({}), u""_s);
}

TEST(TitledMarkdown, TheFirstWordsAreNoPictures) {
    EXPECT_EQ(exchange::firstWords(u"![a](b.png)\n ![](c) ![d](e)\n\n x ![f](g)y\nz"_s), u"x y"_s);
    EXPECT_EQ(exchange::firstWords(u"![a] ![b](c)d"_s), u"![a] d"_s);
    EXPECT_EQ(exchange::firstWords(u"![a](b"_s), u"![a](b"_s);
    EXPECT_EQ(exchange::firstWords(u"![a](b)"_s), u""_s);
    for (const QString& end : {u""_s, u")"_s, u"]"_s, u"]()"_s}) {
        for (const QString& mark : {u"!["_s, u"![]"_s, u"![]("_s})
            EXPECT_LE(exchange::firstWords(mark.repeated(300'000) + end).size(), 41);
    }
}

} // namespace
} // namespace velloria::tests
