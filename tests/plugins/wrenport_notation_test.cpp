#include "wrenport/notation.h"

#include "support/patience.h"
#include "wrenport/day_parts.h"
#include "wrenport/text_marks.h"

#include <gtest/gtest.h>

#include <QFile>

namespace velloria::plugins::wrenport {
namespace {

std::string sample(const char* name) {
    QFile file(QStringLiteral(VELLORIA_TEST_DATA "/plugins/hatena/") + QString::fromUtf8(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
    return file.readAll().toStdString();
}

std::string converted(std::string_view text) {
    return htmlOf(linesOf(text), "f").contents;
}

/// The lines of HTML that hold something, without the tabs in front of them.
std::string comparable(std::string_view html) {
    std::string text;
    for (std::string_view line : linesOf(html)) {
        while (line.starts_with('\t'))
            line.remove_prefix(1);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (!line.empty() && !line.starts_with("<h3>"))
            text += std::string(line) + "\n";
    }
    return text;
}

/// What this reader does otherwise than the one that made the sample, on purpose.
struct Difference {
    const char* why;
    const char* theirs;
    const char* ours;
};

constexpr Difference kDifferences[] = {
    {"an entry stands alone", "<div class=\"section\">\n", ""},
    {"an entry stands alone", "<p>本文三</p>\n</div>\n", "<p>本文三</p>\n"},
    {"brackets around an address go", "<a href=\"http://www.example.com/]\">http://www.example.com/]</a></dd>",
     "<a href=\"http://www.example.com/\">http://www.example.com/</a></dd>"},
    {"a quotation may name its source",
     "<p>><a href=\"http://www.example.com/q\">http://www.example.com/q</a>></p>\n<p>出典つき</p>\n<p><<</p>\n",
     "<blockquote title=\"http://www.example.com/q\" cite=\"http://www.example.com/q\">\n<p>出典つき</p>\n"
     "<cite><a href=\"http://www.example.com/q\">http://www.example.com/q</a></cite>\n</blockquote>\n"},
    {"as above, and no empty line at the end",
     "<a href=\"http://www.example.com/]\">http://www.example.com/]</a>\n  字下げ\n</pre>",
     "<a href=\"http://www.example.com/\">http://www.example.com/</a>\n  字下げ</pre>"},
    {"no empty line at the end", "|&gt;\n</pre>", "|&gt;</pre>"},
    {"the colouring stays known", "<pre class=\"hatena-super-pre\">\nmy $x = 1 &lt; 2;\n</pre>",
     "<pre class=\"hatena-super-pre lang-perl\">\nmy $x = 1 &lt; 2;</pre>"},
    {"the mark in front of the last tag goes", "></div>\n<p>一行", "</div>\n<p>一行"},
    {"footnotes",
     "((注の文 <a href=\"http://www.example.com/n\">http://www.example.com/n</a>))を付ける。かっこ)((そのまま))(も。",
     "<span class=\"footnote\"><a name=\"f-1-text\" href=\"#f-1\">*1</a></span>を付ける。かっこ((そのまま))も。"},
    {"an ampersand in an attribute", "plain?a=1&b=2\">", "plain?a=1&amp;b=2\">"},
    {"keywords are links", "[[キーワード]]",
     "<a class=\"keyword\" href=\"http://d.hatena.ne.jp/keyword/%e3%82%ad%e3%83%bc%e3%83%af%e3%83%bc%e3%83%89\">"
     "キーワード</a>"},
    {"links lead to the service", "<a href=\"/hanako/\">", "<a href=\"http://d.hatena.ne.jp/hanako/\">"},
    {"no portrait of a service that has gone",
     "<a href=\"/taro/\"><img src=\"http://www.hatena.ne.jp/users/ta/taro/profile_s.gif\" width=\"16\" height=\"16\" "
     "alt=\"id:taro\" class=\"hatena-id-icon\">",
     "<a href=\"http://d.hatena.ne.jp/taro/\">"},
    {"an ampersand in an attribute", "&ie=utf-8&oe=utf-8", "&amp;ie=utf-8&amp;oe=utf-8"},
    {"mail", "[mailto:a@example.com]", "<a href=\"mailto:a@example.com\">a@example.com</a>"},
    {"no picture of a service that has gone",
     "<img src=\"http://d.hatena.ne.jp/cgi-bin/mimetex.cgi?x^2\" class=\"tex\" alt=\"x^2\">",
     "<span class=\"tex\">x^2</span>"},
    {"comments leave nothing", "まま <!-- --></p>\n<p><!-- --></p>\n", "まま </p>\n"},
    {"the postscript begins, below the footnotes", "<p>====</p>\n",
     "<p class=\"footnote\"><a name=\"f-1\" href=\"#f-1-text\">*1</a>: 注の文 <a "
     "href=\"http://www.example.com/n\">http://www.example.com/n</a></p>\n"},
};

TEST(WrenportNotation, BecomesTheHtmlOfTheService) {
    std::string theirs = comparable(sample("hatena-notation.html"));
    for (const Difference& difference : kDifferences) {
        const std::size_t at = theirs.find(difference.theirs);
        ASSERT_NE(at, std::string::npos) << difference.why << ": " << difference.theirs;
        theirs.replace(at, std::string_view(difference.theirs).size(), difference.ours);
    }
    const std::string text = sample("hatena-notation.txt");
    std::string ours;
    for (const DayPart& part : partsOf(text)) {
        const NotationHtml html = htmlOf(part.lines, "f");
        ours += comparable(html.contents) + comparable(html.extend.value_or(""));
    }
    EXPECT_EQ(ours, theirs);
}

TEST(WrenportNotation, OfLines) {
    const std::pair<const char*, const char*> kCases[] = {
        {"", ""},
        {"a", "<p>a</p>"},
        {"a\nb", "<p>a</p>\r\n<p>b</p>"},
        {"a\n\nb", "<p>a</p>\r\n<p>b</p>"},
        {"a\n\n\n \nb", "<p>a</p>\r\n<br>\r\n<br>\r\n<p>b</p>"},
        {"**a\n***b", "<h4>a</h4>\r\n<h5>b</h5>"},
        {"-a\n--b\n+c", "<ul>\r\n<li>a\r\n<ul>\r\n<li>b</li>\r\n</ul>\r\n</li>\r\n<li>c</li>\r\n</ul>"},
        {"+a\n\n-b", "<ol>\r\n<li>a</li>\r\n</ol>\r\n<ul>\r\n<li>b</li>\r\n</ul>"},
        {"---a", "<ul>\r\n<li>a</li>\r\n</ul>"},
        {"-", "<p>-</p>"},
        {"--", "<ul>\r\n<li>-</li>\r\n</ul>"},
        {":a:b", "<dl>\r\n<dt>a</dt>\r\n<dd>b</dd>\r\n</dl>"},
        {":[http://x.y/:title=a]:b", "<dl>\r\n<dt><a href=\"http://x.y/\">a</a></dt>\r\n<dd>b</dd>\r\n</dl>"},
        {":<b style=\"a:b\">x</b>:b", "<dl>\r\n<dt><b style=\"a:b\">x</b></dt>\r\n<dd>b</dd>\r\n</dl>"},
        {"::b", "<dl>\r\n<dd>b</dd>\r\n</dl>"},
        {":a", "<p>:a</p>"},
        {"|*a|b|", "<table>\r\n<tr>\r\n<th>a</th>\r\n<td>b</td>\r\n</tr>\r\n</table>"},
        {"|a||", "<table>\r\n<tr>\r\n<td>a</td>\r\n<td></td>\r\n</tr>\r\n</table>"},
        {"|a", "<p>|a</p>"},
        {">>\na\n>>\nb\n<<\n<<",
         "<blockquote>\r\n<p>a</p>\r\n<blockquote>\r\n<p>b</p>\r\n</blockquote>\r\n</blockquote>"},
        {">>\na", "<blockquote>\r\n<p>a</p>\r\n</blockquote>"},
        {"<<", "<p><<</p>"},
        {">|\n<b>a</b> id:ab\n>>\n|<", "<pre>\r\n<b>a</b> <a href=\"http://d.hatena.ne.jp/ab/\">id:ab</a>\r\n>></pre>"},
        {">|\na|<\nb", "<pre>\r\na</pre>\r\n<p>b</p>"},
        {">|\na", "<p>>|</p>\r\n<p>a</p>"},
        {">||\n<b> ((x)) \"&\n<!-- a -->\n||<",
         "<pre class=\"hatena-super-pre\">\r\n&lt;b&gt; ((x)) &quot;&amp;\r\n&lt;!-- a --&gt;</pre>"},
        {">|c\"x|\na\n||<", "<pre class=\"hatena-super-pre\">\r\na</pre>"},
        {">||\na", "<p>>||</p>\r\n<p>a</p>"},
        {"><div>\n-a\n</div><\nb", "<div>\r\n-a\r\n</div>\r\n<p>b</p>"},
        {"><p>a</p><", "<p>a</p>"},
        {"><div>\na", "<p>><div></p>\r\n<p>a</p>"},
        {"a<!-- b -->c", "<p>ac</p>"},
        {"a<!-- b\n>||\n-->c\nd", "<p>ac</p>\r\n<p>d</p>"},
        {"<!--\na\n-->\nb", "<p>b</p>"},
        {"a<!-- b\nc", "<p>a&lt;!-- b</p>\r\n<p>c</p>"},
    };
    for (const auto& [text, html] : kCases)
        EXPECT_EQ(converted(text), html) << text;
}

TEST(WrenportNotation, OfMoreToRead) {
    const auto html = [](std::string_view text) { return htmlOf(linesOf(text), "f"); };
    EXPECT_EQ(html("a\n====\nb").contents, "<p>a</p>");
    EXPECT_EQ(html("a\n====\nb").extend, "<p>b</p>");
    EXPECT_EQ(html(">>\na\n=====\nb").contents, "<blockquote>\r\n<p>a</p>\r\n</blockquote>");
    EXPECT_EQ(html("====\na\n====").extend, "<p>a</p>\r\n<p>====</p>");
    EXPECT_EQ(html("a\n===").extend, std::nullopt);
    EXPECT_EQ(html("<!-- a --> <!--\n-->").hidden, 2);
}

TEST(WrenportNotation, WithinLines) {
    const std::pair<const char*, const char*> kCases[] = {
        {"http://x.y/?a=1&b", "<a href=\"http://x.y/?a=1&amp;b\">http://x.y/?a=1&b</a>"},
        {"日本https://x.y/日本", "日本<a href=\"https://x.y/\">https://x.y/</a>日本"},
        {"ftp://x", "<a href=\"ftp://x\">ftp://x</a>"},
        {"http://", "http://"},
        {"xhttp://a", "xhttp://a"},
        {"[http://x.y/]", "<a href=\"http://x.y/\">http://x.y/</a>"},
        {"[http://x.y/:title=a b:c]", "<a href=\"http://x.y/\">a b:c</a>"},
        {"[http://x.y/:title=a:bookmark]", "<a href=\"http://x.y/\">a</a>"},
        {"[http://x.y:80/:title]", "<a href=\"http://x.y:80/\">http://x.y:80/</a>"},
        {"[http://x/a.jpg:image]", "<a href=\"http://x/a.jpg\"><img src=\"http://x/a.jpg\" alt=\"http://x/a.jpg\" "
                                   "class=\"hatena-http-image\"></a>"},
        {"[http://x/a.jpg:image:h20]", "<a href=\"http://x/a.jpg\"><img src=\"http://x/a.jpg\" alt=\"http://x/a.jpg\" "
                                       "class=\"hatena-http-image\" height=\"20\"></a>"},
        {"[http://x/:detail]", "<a href=\"http://x/\">http://x/</a>"},
        {"[http://x/:barcode]", "<a href=\"http://x/\">http://x/</a>"},
        {"[http://x/:movie]", "<a href=\"http://x/\">http://x/</a>"},
        {"[http://x/:sound]", "<a href=\"http://x/\">http://x/</a>"},
        {"[http://x/:bookmark]", "<a href=\"http://x/\">http://x/</a>"},
        {"[http://x y]", "[<a href=\"http://x\">http://x</a> y]"},
        {"[f:id:ab:20240309102030g:image:small]",
         "<a href=\"http://f.hatena.ne.jp/ab/20240309102030\"><img "
         "src=\"http://f.hatena.ne.jp/images/fotolife/a/ab/20240309/20240309102030_m.gif\" "
         "alt=\"[f:id:ab:20240309102030g:image:small]\" title=\"[f:id:ab:20240309102030g:image:small]\"></a>"},
        {"[f:id:ab:20240309102030p:image:plain:left:h9]",
         "<img src=\"http://f.hatena.ne.jp/images/fotolife/a/ab/20240309/20240309102030.png\" "
         "alt=\"[f:id:ab:20240309102030p:image:plain:left:h9]\" "
         "title=\"[f:id:ab:20240309102030p:image:plain:left:h9]\" height=\"9\" align=\"left\">"},
        {"[f:id:ab]", "<a href=\"http://f.hatena.ne.jp/ab/\">f:id:ab</a>"},
        {"id:a-b_1", "<a href=\"http://d.hatena.ne.jp/a-b_1/\">id:a-b_1</a>"},
        {"id:1", "id:1"},
        {"paid:ab", "paid:ab"},
        {"d:id:ab:20240309", "<a href=\"http://d.hatena.ne.jp/ab/20240309\">d:id:ab:20240309</a>"},
        {"a:id:ab", "<a href=\"http://a.hatena.ne.jp/ab/\">a:id:ab</a>"},
        {"g:gr:id:ab", "<a href=\"http://gr.g.hatena.ne.jp/ab/\">g:gr:id:ab</a>"},
        {"g:gr", "<a href=\"http://gr.g.hatena.ne.jp/\">g:gr</a>"},
        {"[id:ab:detail]", "<a href=\"http://d.hatena.ne.jp/ab/\">id:ab</a>"},
        {"[id:ab cd]", "[<a href=\"http://d.hatena.ne.jp/ab/\">id:ab</a> cd]"},
        {"[[a b]]", "<a class=\"keyword\" href=\"http://d.hatena.ne.jp/keyword/a%20b\">a b</a>"},
        {"[keyword:a]", "<a class=\"keyword\" href=\"http://d.hatena.ne.jp/keyword/a\">a</a>"},
        {"[[a", "[[a"},
        {"[[a]", "[[a]"},
        {"[google:a b]", "<a href=\"http://www.google.com/search?q=a%20b&amp;ie=utf-8&amp;oe=utf-8\">google:a b</a>"},
        {"[amazon:a]", "<a href=\"http://www.amazon.co.jp/s?k=a\">amazon:a</a>"},
        {"isbn:4-87311-228-1", "<a href=\"http://www.amazon.co.jp/dp/4873112281\">isbn:4-87311-228-1</a>"},
        {"[isbn:4873112281:title=本]", "<a href=\"http://www.amazon.co.jp/dp/4873112281\">本</a>"},
        {"[asin:B00005N7P0:image]", "<a href=\"http://www.amazon.co.jp/dp/B00005N7P0\">asin:B00005N7P0</a>"},
        {"isbn:1", "isbn:1"},
        {"[mailto:a@b]", "<a href=\"mailto:a@b\">a@b</a>"},
        {"[tex:a<b]", "<span class=\"tex\">a&lt;b</span>"},
        {"[twitter:@ab]", "<a href=\"https://twitter.com/ab\">@ab</a>"},
        {"[twitter:12:tree]", "<a href=\"https://twitter.com/i/web/status/12\">twitter:12:tree</a>"},
        {"[]id:ab ((x))[] [a]", "id:ab ((x)) [a]"},
        {"[]a", "[]a"},
        {")((a))(", "((a))"},
        {"a)((b", "a)((b"},
        {"((", "(("},
        {"(())", "(())"},
        {"<a href=\"http://x/\">http://x/ id:ab</a>", "<a href=\"http://x/\">http://x/ id:ab</a>"},
        {"<b title=\"id:ab\">id:1</b> 5 < 6 & 7", "<b title=\"id:ab\">id:1</b> 5 < 6 & 7"},
    };
    for (const auto& [text, html] : kCases)
        EXPECT_EQ(converted(text), "<p>" + std::string(html) + "</p>") << text;
}

TEST(WrenportNotation, OfFootnotes) {
    EXPECT_EQ(converted("a((b ((c))d((e id:ab))"),
              "<p>a<span class=\"footnote\"><a name=\"f-1-text\" href=\"#f-1\">*1</a></span>d"
              "<span class=\"footnote\"><a name=\"f-2-text\" href=\"#f-2\">*2</a></span></p>\r\n"
              "<p class=\"footnote\"><a name=\"f-1\" href=\"#f-1-text\">*1</a>: b ((c</p>\r\n"
              "<p class=\"footnote\"><a name=\"f-2\" href=\"#f-2-text\">*2</a>: e "
              "<a href=\"http://d.hatena.ne.jp/ab/\">id:ab</a></p>");
}

std::string repeated(std::string_view piece, std::size_t size) {
    std::string text;
    while (text.size() < size)
        text += piece;
    return text;
}

double secondsFor(std::string_view text) {
    const double begin = tests::processorSeconds();
    converted(text);
    return tests::processorSeconds() - begin;
}

TEST(WrenportNotation, TakesTimeInProportion) {
    constexpr std::size_t kSize = 1 << 18;
    const double longest = 40 * secondsFor(repeated("x", kSize)) + 1;
    const char* const kPieces[] = {
        "[",          "[]",    "[[",        "[[a",    "((",        ")((",     "))(",
        "<",          "<a ",   "<!--",      "-->",    "[http://",  "[f:id:",  "[f:id:a:",
        "[id:a",      "isbn:", "isbn:1234", "id:",    "g:a",       "*",       "-",
        "-+",         "|",     "|[",        ":",      ":[",        ":<a",     ">",
        ">>\n",       ">|\n",  ">||\n",     "><a>\n", "<<\n",      "-\n",     "--a\n-a\n",
        "http://a ",  "&",     "&#1",       "[a:",    "[keyword:", "====\n",  "<!-- a\n",
        "[http://a ", "|a\n",  ":a\n",      "*1*\n",  "((a))",     "<b",      "[http://a:title",
        "a]",         "((a)",  "><\n",      "|<\n",   "||<\n",     ")((a))(", "[]a["};
    for (const char* piece : kPieces) {
        for (const char* end : {"", "]]))>-->\n||<\n|<\n</a><|:))("}) {
            const std::string text = repeated(piece, kSize) + end;
            EXPECT_LT(secondsFor(text), longest) << piece << end;
        }
    }
}

} // namespace
} // namespace velloria::plugins::wrenport
