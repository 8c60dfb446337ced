#include "platform/encoding_trial.h"

#include "support/print.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

/// "EUC-JP: 雨", "" for what is no text.
QString tried(QByteArrayView bytes) {
    const std::optional<platform::TriedText> text = platform::textByTrial(bytes);
    return text ? text->encoding + u": "_s + text->text : QString();
}

TEST(EncodingTrial, FindsTheEncoding) {
    EXPECT_EQ(tried("plain"), u"UTF-8: plain"_s);
    EXPECT_EQ(tried("\xEF\xBB\xBF日記"), u"UTF-8: 日記"_s);
    EXPECT_EQ(tried(QByteArrayView("\xFF\xFE\x42\x30", 4)), u"UTF-16: あ"_s);
    EXPECT_EQ(tried("\xC6\xFC\xB5\xAD\xA4\xCE"), u"EUC-JP: 日記の"_s);
    EXPECT_EQ(tried("\x93\xFA\x8B\x4C\x82\xCC"), u"CP932: 日記の"_s);
    EXPECT_EQ(tried(QByteArrayView("a\0b", 3)), QString());
    EXPECT_EQ(tried("\xFF\xFF"), QString());
}

TEST(EncodingTrial, FullWidthKanaAloneAreNoControlCharacters) {
    EXPECT_EQ(tried("\x83\x65\x83\x58\x83\x67\r\n"), u"CP932: テスト\r\n"_s);
    EXPECT_EQ(tried("\x83\x81\x83\x82"), u"CP932: メモ"_s);
}

TEST(EncodingTrial, HalfWidthKanaAloneAreKana) {
    EXPECT_EQ(tried("\xB7\xAE\xB3\xCA \xCA\xDA\xC3\xDE\xBD\xA1"), u"CP932: ｷｮｳﾊ ﾊﾚﾃﾞｽ｡"_s);
    EXPECT_EQ(tried("\xBB\xDD\xCE\xDF\xC6\xB2\xAF\xC0\r\n"), u"CP932: ｻﾝﾎﾟﾆｲｯﾀ\r\n"_s);
    EXPECT_EQ(tried("\xB1\xAB"), u"EUC-JP: 雨"_s);
}

} // namespace
} // namespace velloria::tests
