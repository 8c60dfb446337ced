#include "site/text_piece.h"

#include "site/customize_sets.h"
#include "site/site_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class TextPiece : public SiteHome {
protected:
    QByteArray bytes(const QString& name) const { return bytesOf(site::textPieceFile(session, name)); }
};

TEST_F(TextPiece, ComesBackAsItWasTyped) {
    for (const QString& text : {u"<P>上\r\n下"_s, u"é 😀 &amp; &#39;"_s, u""_s, u"～∥－"_s}) {
        site::writeTextPiece(session, u"上"_s, text);
        EXPECT_EQ(site::readTextPiece(session, u"上"_s).text, text);
        EXPECT_FALSE(site::readTextPiece(session, u"上"_s).isTooLong);
    }
    site::writeTextPiece(session, u"上"_s, u"é 上"_s);
    EXPECT_EQ(bytes(u"上"_s), "&#233; \x8f\xe3");
}

TEST_F(TextPiece, ThatIsMissingIsEmpty) {
    EXPECT_EQ(site::readTextPiece(session, u"none"_s).text, u""_s);
    EXPECT_EQ(site::readTextPiece(session, u""_s).text, u""_s);
}

TEST_F(TextPiece, OfTenMegabytesIsNotReadIntoABox) {
    writePiece(u"big"_s, QByteArray(10'000'000, 'x'));
    EXPECT_TRUE(site::readTextPiece(session, u"big"_s).isTooLong);
    EXPECT_EQ(site::readTextPiece(session, u"big"_s).text, u""_s);
    writePiece(u"most"_s, QByteArray("xx\r\n").repeated(site::kMostPieceBytes / 4));
    EXPECT_EQ(site::readTextPiece(session, u"most"_s).text.size(), site::kMostPieceBytes);
    writePiece(u"line"_s, "a\r\n" + QByteArray(site::kLongestLine, 'x'));
    EXPECT_FALSE(site::readTextPiece(session, u"line"_s).isTooLong);
    writePiece(u"line"_s, "a\n" + QByteArray(site::kLongestLine + 1, 'x') + "\nb");
    EXPECT_TRUE(site::readTextPiece(session, u"line"_s).isTooLong);
}

TEST_F(TextPiece, IsCopiedByteByByte) {
    const QByteArray odd("\xff\x81 &#12354; \n");
    writePiece(u"odd"_s, odd);
    site::copyTextPiece(session, u"odd"_s, u"new"_s);
    EXPECT_EQ(bytes(u"new"_s), odd);
    site::copyTextPiece(session, u""_s, u"empty"_s);
    EXPECT_TRUE(exists(site::textPieceFile(session, u"empty"_s)));
    EXPECT_EQ(bytes(u"empty"_s), "");
}

} // namespace
} // namespace velloria::tests
