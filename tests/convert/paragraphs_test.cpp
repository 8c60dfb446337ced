#include "convert/paragraphs.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using convert::addParagraphTags;

TEST(Paragraphs, TwoLineEndsPartParagraphsAndOneBreaksALine) {
    const struct {
        QString text;
        QString tagged;
    } cases[] = {
        {u""_s, u"<P></P>"_s},
        {u"a"_s, u"<P>a</P>"_s},
        {u"a\r\nb"_s, u"<P>a<BR>\r\nb</P>"_s},
        {u"a\r\n\r\nb"_s, u"<P>a</P>\r\n<P>b</P>"_s},
        {u"a\r\n\r\nb\r\nc"_s, u"<P>a</P>\r\n<P>b<BR>\r\nc</P>"_s},
        {u"a\r\n\r\n\r\nb"_s, u"<P>a</P>\r\n<P><BR>\r\nb</P>"_s},
        {u"a\r\n\r\n\r\n\r\nb"_s, u"<P>a</P>\r\n<P></P>\r\n<P>b</P>"_s},
        {u"a\r\n\r\n\r\n\r\n\r\nb"_s, u"<P>a</P>\r\n<P></P>\r\n<P><BR>\r\nb</P>"_s},
        {u"\r\na\r\n"_s, u"<P><BR>\r\na<BR>\r\n</P>"_s},
        {u"\r\n\r\n"_s, u"<P></P>\r\n<P></P>"_s},
        {u"a\nb\rc"_s, u"<P>a\nb\rc</P>"_s}, // line ends are CR LF and nothing else
    };
    for (const auto& c : cases)
        EXPECT_EQ(addParagraphTags(c.text, u"<P>"_s), c.tagged) << c.text.toStdString();
}

TEST(Paragraphs, TagsThatStoodInTheTextAreParagraphsToo) {
    EXPECT_EQ(addParagraphTags(u"a</P><P>b"_s, u"<P>"_s), u"<P>a</P>\r\n<P>b</P>"_s);
    EXPECT_EQ(addParagraphTags(u"a</P><P>b"_s, u"<P class=a>"_s), u"<P class=a>a</P><P>b</P>"_s);
    EXPECT_EQ(addParagraphTags(u"a</P>\r\n<P>b"_s, u"<P>"_s), u"<P>a</P><BR>\r\n<P>b</P>"_s);
}

TEST(Paragraphs, EachTakesTheOpening) {
    EXPECT_EQ(addParagraphTags(u"a\r\n\r\nb"_s, u"<P class=a>"_s), u"<P class=a>a</P>\r\n<P class=a>b</P>"_s);
}

} // namespace
} // namespace velloria::tests
