#include "convert/url_encoding.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

using namespace Qt::StringLiterals;
using namespace velloria::convert;

namespace velloria::tests {
namespace {

std::string sjis(const QString& text) {
    return ModURLEncode(text).toStdString();
}

std::string euc(const QString& text) {
    return ModURLEncodeEUC(text).toStdString();
}

std::string utf8(const QString& text) {
    return ModURLEncodeUTF8(text).toStdString();
}

std::string triple(unsigned byte) {
    char text[4];
    std::snprintf(text, sizeof text, "%%%02X", byte);
    return text;
}

TEST(UrlEncoding, AnEmptyTextGivesAnEmptyText) {
    EXPECT_EQ(sjis(u""_s), "");
    EXPECT_EQ(euc(u""_s), "");
    EXPECT_EQ(utf8(u""_s), "");
    EXPECT_EQ(utf8(QString()), "");
}

TEST(UrlEncoding, EveryAsciiCharacterGoesByTheCommonRuleInAllThree) {
    const QString passing = u"0123456789@ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz*-._"_s;
    for (unsigned c = 0; c < 128; ++c) {
        const QString text(QChar{char16_t(c)});
        const std::string expected = c == ' ' ? "+" : passing.contains(text) ? text.toStdString() : triple(c);
        EXPECT_EQ(sjis(text), expected) << c;
        EXPECT_EQ(euc(text), expected) << c;
        EXPECT_EQ(utf8(text), expected) << c;
    }
}

TEST(UrlEncoding, ABlankIsAPlusAndAPlusIsATriple) {
    for (const auto& encode : {sjis, euc, utf8})
        EXPECT_EQ(encode(u"a b+c~\t\r\n%"_s), "a+b%2Bc%7E%09%0D%0A%25");
}

TEST(UrlEncoding, JapaneseTextInEachCharacterSet) {
    EXPECT_EQ(sjis(u"亜"_s), "%88%9F");
    EXPECT_EQ(euc(u"亜"_s), "%B0%A1");
    EXPECT_EQ(utf8(u"亜"_s), "%E4%BA%9C");
    EXPECT_EQ(sjis(u"日記 2004"_s), "%93%FA%8B%4C+2004");
    EXPECT_EQ(euc(u"日記 2004"_s), "%C6%FC%B5%AD+2004");
    EXPECT_EQ(utf8(u"日記 2004"_s), "%E6%97%A5%E8%A8%98+2004");
}

TEST(UrlEncoding, AShiftJisTrailByteNeverPassesThrough) {
    EXPECT_EQ(sjis(u"ア"_s), "%83%41");
    EXPECT_EQ(sjis(u"ソ@"_s), "%83%5C@");
    EXPECT_EQ(sjis(u"　"_s), "%81%40");
}

TEST(UrlEncoding, HalfWidthKanaAreTriplesAndGetAPrefixInEuc) {
    EXPECT_EQ(sjis(u"ｱ"_s), "%B1");
    EXPECT_EQ(euc(u"ｱ"_s), "%8E%B1");
    EXPECT_EQ(euc(u"｡ﾟ"_s), "%8E%A1%8E%DF");
    EXPECT_EQ(utf8(u"ｱ"_s), "%EF%BD%B1");
}

TEST(UrlEncoding, ShiftJisTakesLeadBytesFromF0OnForSingleBytes) {
    EXPECT_EQ(sjis(u"髙"_s), "%FB%FC");
    EXPECT_EQ(sjis(QString(QChar(0xE000))), "%F0@") << "its trail byte 0x40 passes";
    EXPECT_EQ(sjis(u"ⅱ"_s), "%FAA");
    EXPECT_EQ(encodeCodePageBytes("\xFA\x83\x41").toStdString(), "%FA%83%41");
}

TEST(UrlEncoding, ALeadByteAtTheEndStandsAlone) {
    EXPECT_EQ(encodeCodePageBytes("a\x83").toStdString(), "a%83");
    EXPECT_EQ(encodeCodePageBytesAsEuc("a\x83").toStdString(), "a%83");
}

TEST(UrlEncoding, ShiftJisConsumesAnyByteBehindALeadByte) {
    EXPECT_EQ(encodeCodePageBytes("\x81 a").toStdString(), "%81%20a");
    EXPECT_EQ(encodeCodePageBytes("\xE0\x81\x41").toStdString(), "%E0%81A");
    EXPECT_EQ(encodeCodePageBytes("\xEF\xEF\x9F\x9F").toStdString(), "%EF%EF%9F%9F");
}

TEST(UrlEncoding, SingleBytesOfShiftJisAboveAsciiAreTriples) {
    for (unsigned byte = 128; byte < 256; ++byte) {
        const char bytes[] = {char(byte), 'A'};
        const bool isLead = (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xEF);
        EXPECT_EQ(encodeCodePageBytes(QByteArrayView(bytes, 2)).toStdString(), triple(byte) + (isLead ? "%41" : "A"));
    }
}

TEST(UrlEncoding, EucPairsNeedAValidTrailByte) {
    EXPECT_EQ(encodeCodePageBytesAsEuc("\x81\x3F").toStdString(), "%81%3F");
    EXPECT_EQ(encodeCodePageBytesAsEuc("\x81\x7F").toStdString(), "%81%7F");
    EXPECT_EQ(encodeCodePageBytesAsEuc("\x81\xFD").toStdString(), "%81%FD");
    EXPECT_EQ(encodeCodePageBytesAsEuc("\x81 ").toStdString(), "%81+");
    EXPECT_EQ(encodeCodePageBytesAsEuc("\x80\x41\xA0\x41\xFD\x41").toStdString(), "%80A%A0A%FDA");
}

TEST(UrlEncoding, EucArithmeticAtItsBorders) {
    const std::pair<const char*, const char*> cases[] = {
        {"\x81\x40", "%A1%A1"}, {"\x81\x7E", "%A1%DF"}, {"\x81\x80", "%A1%E0"}, {"\x81\x9E", "%A1%FE"},
        {"\x81\x9F", "%A2%A1"}, {"\x81\xFC", "%A2%FE"}, {"\x9F\x9E", "%DD%FE"}, {"\x9F\x9F", "%DE%A1"},
        {"\xE0\x40", "%DF%A1"}, {"\xE0\x9F", "%E0%A1"}, {"\xEF\xFC", "%FE%FE"},
    };
    for (const auto& [bytes, expected] : cases)
        EXPECT_EQ(encodeCodePageBytesAsEuc(bytes).toStdString(), expected);
}

TEST(UrlEncoding, EveryKanjiOfTheStandardComesOutAsItsRowAndCell) {
    // 区 and 点 of the national standard: EUC-JP is their plain sum with 0xA0.
    const std::pair<QString, std::pair<int, int>> cases[] = {
        {u"、"_s, {1, 2}},   {u"０"_s, {3, 16}}, {u"ん"_s, {4, 83}}, {u"ヶ"_s, {5, 86}},
        {u"腕"_s, {47, 51}}, {u"弌"_s, {48, 1}}, {u"熙"_s, {84, 6}},
    };
    for (const auto& [text, place] : cases)
        EXPECT_EQ(euc(text), triple(unsigned(0xA0 + place.first)) + triple(unsigned(0xA0 + place.second)));
}

TEST(UrlEncoding, EucBytesOfRowsBehindTheStandardWrapAt256) {
    EXPECT_EQ(encodeCodePageBytesAsEuc("\xF0\x40").toStdString(), "%FF%A1");
    EXPECT_EQ(euc(u"髙"_s), "%16%FE");
}

TEST(UrlEncoding, ACharacterThatTheCodePageLacksIsAQuestionMarkForEachUnit) {
    const std::pair<QString, std::string> cases[] = {
        {u"aéb"_s, "a%3Fb"},
        {u"a¥b"_s, "a%3Fb"},
        {u"a😀b"_s, "a%3F%3Fb"},
        {QString(QChar(0xD83D)), "%3F"},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(sjis(text), expected);
        EXPECT_EQ(euc(text), expected);
    }
    EXPECT_EQ(sjis(u"〜"_s), "%81%60") << "the form that is typed outside Windows";
    EXPECT_EQ(euc(u"〜"_s), "%A1%C1");
}

TEST(UrlEncoding, Utf8AtTheBordersOfItsLengths) {
    EXPECT_EQ(utf8(u"\u007F\u0080\u07FF\u0800\uFFFF"_s), "%7F%C2%80%DF%BF%E0%A0%80%EF%BF%BF");
    EXPECT_EQ(utf8(u"é"_s), "%C3%A9");
}

TEST(UrlEncoding, Utf8EncodesEachSurrogateByItself) {
    EXPECT_EQ(utf8(u"😀"_s), "%ED%A0%BD%ED%B8%80");
    EXPECT_EQ(utf8(QString(QChar(0xDE00))), "%ED%B8%80");
}

TEST(UrlEncoding, ALongTextKeepsEveryCharacter) {
    const QString text = u"aア ｱ~"_s.repeated(100'000);
    EXPECT_EQ(ModURLEncode(text), u"a%83%41+%B1%7E"_s.repeated(100'000));
    EXPECT_EQ(ModURLEncodeEUC(text), u"a%A5%A2+%8E%B1%7E"_s.repeated(100'000));
    EXPECT_EQ(ModURLEncodeUTF8(text), u"a%E3%82%A2+%EF%BD%B1%7E"_s.repeated(100'000));
    EXPECT_EQ(ModURLEncodeUTF8(u"日"_s.repeated(9)), u"%E6%97%A5"_s.repeated(9)) << "the buffer's worst case";
    EXPECT_EQ(ModURLEncodeEUC(u"ｱ"_s.repeated(9)), u"%8E%B1"_s.repeated(9));
    EXPECT_EQ(ModURLEncode(u"~"_s.repeated(9)), u"%7E"_s.repeated(9));
}

} // namespace
} // namespace velloria::tests
