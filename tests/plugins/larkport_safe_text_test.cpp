#include "common/encoding.h"
#include "larkport/html_places.h"
#include "larkport/safe_text.h"

#include <gtest/gtest.h>

#include <string>

namespace velloria::plugins::larkport {
namespace {

using namespace std::string_literals;

/// What a reader takes from both ends of a line.
std::string trimmedLine(const std::string& line) {
    const std::string blanks(" \t\n\r\0\x0B", 6);
    const std::size_t begin = line.find_first_not_of(blanks);
    return begin == std::string::npos ? "" : line.substr(begin, line.find_last_not_of(blanks) + 1 - begin);
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines(1);
    for (const char c : text) {
        if (c == '\n')
            lines.emplace_back();
        else
            lines.back() += c;
    }
    return lines;
}

void expectSafe(const std::string& text) {
    const std::string safe = safeText(text);
    EXPECT_EQ(safe.find('\r'), std::string::npos);
    EXPECT_TRUE(isUtf8(safe));
    for (const std::string& line : linesOf(safe)) {
        const std::string seen = trimmedLine(line);
        EXPECT_LT(line.size(), 8000u);
        EXPECT_NE(seen, "-----");
        EXPECT_NE(seen, "--------");
        for (const char* key : {"TITLE:", "AUTHOR:", "STATUS:", "BODY:", "DATE:", "CATEGORY:", "EXTENDED BODY:"})
            EXPECT_FALSE(seen.starts_with(key)) << seen.substr(0, 100);
    }
}

TEST(SafeText, LeavesPlainTextAsItIs) {
    for (const char* text : {"", "a", "<p>日本語</p>\r\n<br>\r\n  b", "\r\n", "a\r\n", "\r\na", "------", "- -----"}) {
        std::string expected = text;
        std::erase(expected, '\r');
        EXPECT_EQ(safeText(text), expected);
        EXPECT_EQ(plainText(safeText(text)), text);
    }
}

TEST(SafeText, PutsParagraphsInThePlaceOfEmptyLines) {
    EXPECT_EQ(safeText("a\r\n\r\nb"), "a\n\n<p><!-- -->b");
    EXPECT_EQ(safeText("a\r\n \r\n\r\n<b>b</b>"), "a\n \n\n<p><!-- --><b>b</b>");
    EXPECT_EQ(safeText("</table>\r\n\r\nb"), "</table>\n\nb");
    EXPECT_EQ(safeText("a\r\n\r\n<UL>"), "a\n\n<UL>");
    EXPECT_EQ(safeText("\r\n\r\nb"), "\n\nb");
    EXPECT_EQ(safeText("<!-- a\r\n\r\nb -->"), "<!-- a\n\nb -->");
    EXPECT_EQ(safeText("<img alt=\"a\r\n\r\nb\">"), "<img alt=\"a\n\nb\">");
    for (const char* text : {"a\r\n\r\nb", "a\r\n \r\n\r\n<b>b</b>", "</table>\r\n\r\nb"})
        EXPECT_EQ(plainText(safeText(text)), text);
}

TEST(SafeText, KeepsTheFormOfPreformattedText) {
    const std::string text = "<pre>\r\n  a\r\n\r\n\t\r\nb  \r\n</pre>  \r\n  c";
    EXPECT_EQ(safeText(text), "<pre>\n<!-- -->  a\n<!-- -->\n<!-- -->\t<!-- -->\nb  <!-- -->\n</pre>  \n  c");
    EXPECT_EQ(plainText(safeText(text)), text);
}

TEST(SafeText, TakesTheirMeaningFromLines) {
    EXPECT_EQ(safeText("-----\r\n--------\r\n ----- \t"), "<!-- -->-----\n<!-- -->--------\n<!-- --> ----- \t");
    EXPECT_EQ(safeText("TITLE: x\r\n  STATUS:"), "<!-- -->TITLE: x\n<!-- -->  STATUS:");
    EXPECT_EQ(safeText("0"), "<!-- -->0");
    EXPECT_EQ(safeText("a: b\r\nTitle: x\r\nNo: 5"), "a: b\nTitle: x\nNo: 5");
    for (const char* text : {"-----\r\n--------\r\n ----- \t", "TITLE: x\r\n  STATUS:", "<pre>\r\n-----\r\n</pre>"}) {
        expectSafe(text);
        EXPECT_EQ(plainText(safeText(text)), text);
    }
}

TEST(SafeText, DoesSoWhereNoCommentCanStand) {
    EXPECT_EQ(safeText("<img\r\nTITLE: x>"), "<img\n_ TITLE: x>");
    EXPECT_EQ(safeText("<img alt='\r\n-----'>\r\n-----"), "<img alt='\n-----'>\n<!-- -->-----");
    EXPECT_EQ(safeText("<img alt='\r\n-----\r\n'>"), "<img alt='\n&#45;----\n'>");
    EXPECT_EQ(safeText("<!--\r\n-----\r\n-->"), "<!--\n_-----\n-->");
    EXPECT_EQ(safeText("<script>\r\nTITLE: 5\r\n</script>"), "<script>\n/**/TITLE: 5\n</script>");
    EXPECT_EQ(safeText("<textarea>\r\nDATE: 5\r\n</textarea>"), "<textarea>\n&#68;ATE: 5\n</textarea>");
    for (const char* text : {"<img\r\nTITLE: x>", "<img alt='\r\n-----\r\n'>", "<!--\r\n-----\r\n-->"})
        EXPECT_NE(plainText(safeText(text)), text); // to be told beside it
}

TEST(SafeText, BreaksLongLinesWhereNothingIsSeenOfIt) {
    std::string text;
    for (int count = 0; count < 20000; ++count)
        text += "漢";
    expectSafe(text);
    EXPECT_EQ(plainText(safeText(text)), text);
    EXPECT_NE(safeText(text).find("漢<!--\n-->漢"), std::string::npos);
    std::string references;
    for (int count = 0; count < 5000; ++count)
        references += "&#128512;";
    expectSafe(references);
    EXPECT_EQ(safeText(references).find("&<"), std::string::npos);
    EXPECT_NE(safeText(references).find(";<!--\n-->&"), std::string::npos);
    EXPECT_EQ(plainText(safeText(references)), references);
    expectSafe("<pre>" + std::string(100000, ' ') + "</pre>");
    EXPECT_EQ(plainText(safeText("<pre>" + std::string(100000, ' '))), "<pre>" + std::string(100000, ' '));
}

TEST(SafeText, BreaksLongTagsTooWhateverIsInThem) {
    std::string tag = "<img ";
    for (int count = 0; count < 5000; ++count)
        tag += "a" + std::to_string(count) + "=b ";
    expectSafe(tag + ">");
    for (const char* frame : {"<img src=\"data:", "<img src=data:", "<!--", "<script>", "<textarea>", "<a b c d"}) {
        expectSafe(frame + std::string(100000, 'x'));
        std::string japanese = frame;
        for (int count = 0; count < 10000; ++count)
            japanese += "漢";
        expectSafe(japanese);
        expectSafe(frame + "TITLE: "s + std::string(100000, '-'));
        expectSafe(frame + "\r\n"s + std::string(100000, '-') + "\r\n-----\r\nBODY:\r\n");
    }
}

TEST(SafeText, IsNotFooledByItsOwnMarks) {
    for (const char* text : {"<!-- -->", "<p><!-- -->", "a<!--\r\n-->b", "<!-- --><!-- -->-----", "-----<!-- -->"})
        expectSafe(text);
    EXPECT_NE(plainText(safeText("<!-- -->a")), "<!-- -->a"); // to be told beside it
    EXPECT_NE(plainText(safeText("a\nb")), "a\nb");
    EXPECT_NE(plainText(safeText("a\rb")), "a\rb");
}

TEST(SafeText, HasTitlesInOneLine) {
    EXPECT_EQ(safeLine("  a\r\nb\t "), "a  b");
    EXPECT_EQ(safeLine(std::string("\0a\0b\0", 5)), "a b");
    const std::string cut = safeLine("x" + std::string(1000000, '\xE6').replace(1, 3, "漢"));
    EXPECT_LT(cut.size(), 5000u);
    EXPECT_TRUE(cut.ends_with("…"));
}

TEST(SafeText, EscapesWhatMustStandInOneLine) {
    for (const std::string& text : {""s, " "s, "\\"s, "\\n"s, " a \t b\r\n\\0\0"s, "\\\\s"s, "日本\r"s}) {
        const std::string line = escapedLine(text);
        EXPECT_EQ(line.find_first_of("\r\n\t"s + '\0'), std::string::npos);
        EXPECT_EQ(trimmedLine(line), line);
        EXPECT_EQ(unescapedLine(line), text);
    }
    EXPECT_EQ(unescapedLine("\\q\\"), "\\q\\");
}

TEST(HtmlPlaces, AreThoseOfABrowser) {
    const auto codes = [](const std::string& html) {
        std::string result;
        for (const Place place : placesOf(html))
            result += "tpTVCS"[int(place)];
        return result;
    };
    EXPECT_EQ(codes("a<b>c"), "ttTTtt");
    EXPECT_EQ(codes("a < b"), "tttttt");
    EXPECT_EQ(codes("<b c='>'>d"), "tTTTTTVVTtt");
    EXPECT_EQ(codes("<b c=d>e"), "tTTTTTVtt"s.replace(6, 1, "T"));
    EXPECT_EQ(codes("<!-->a"), "tCCCCtt");
    EXPECT_EQ(codes("<!--a-->b"), "tCCCCCCCtt");
    EXPECT_EQ(codes("<!--a"), "tCCCCC");
    EXPECT_EQ(codes("<!x>a"), "tCCCtt");
    EXPECT_EQ(codes("<pre>a</pre>b"), "tTTTTppTTTTTtt");
    EXPECT_EQ(codes("<xmp><b></xmp>b"), "tTTTTSSStTTTTTtt");
    EXPECT_EQ(codes("<a"), "tTT");
}

TEST(HtmlPlaces, AreFoundInTimeWhateverTheTextIs) {
    for (const std::string& part : {"<!--"s, "<!--!>"s, "--!>"s, "</"s, "</a"s, "<a"s, "<a='"s, "<textarea>"s,
                                    "<script></"s, "<pre>"s, "&"s, "\n"s, "\n\n"s, "<!-- -->\n"s}) {
        std::string html;
        while (html.size() < 1000000)
            html += part;
        expectSafe(html);
    }
}

} // namespace
} // namespace velloria::plugins::larkport
