#include "common/encoding.h"

#include <gtest/gtest.h>

#include <string>

namespace velloria::plugins {
namespace {

using namespace std::string_literals;

constexpr char kNihongo[] = "日本語のソース";
const std::string kShiftJis = "\x93\xFA\x96\x7B\x8C\xEA\x82\xCC\x83\x5C\x81\x5B\x83\x58";
const std::string kEucJp = "\xC6\xFC\xCB\xDC\xB8\xEC\xA4\xCE\xA5\xBD\xA1\xBC\xA5\xB9";

TEST(PluginEncoding, IsFoundByTrial) {
    for (const auto& [bytes, encoding] :
         {std::pair(std::string(kNihongo), Encoding::Utf8),
          std::pair("\xEF\xBB\xBF"s + kNihongo, Encoding::Utf8WithMark), std::pair(kShiftJis, Encoding::ShiftJis),
          std::pair(kEucJp, Encoding::EucJp)}) {
        const DecodedText text = decoded(bytes);
        EXPECT_EQ(text.utf8, kNihongo) << nameOf(encoding);
        EXPECT_STREQ(nameOf(text.encoding), nameOf(encoding));
        EXPECT_EQ(text.replaced, 0u);
    }
    EXPECT_EQ(decoded("").encoding, Encoding::Utf8);
    EXPECT_EQ(decoded("plain").encoding, Encoding::Utf8);
    EXPECT_EQ(decoded("a\0b"s).utf8, "a\0b"s);
}

TEST(PluginEncoding, KnowsTheCharactersOfVendors) {
    EXPECT_EQ(decoded("\x87\x40 \x82\xA0\xFB\xFC"s).utf8, "① あ髙");
    EXPECT_EQ(decoded("\xAD\xA1 \xA4\xA2"s).utf8, "① あ");
    EXPECT_EQ(decoded("\x83\x41\x83\x43"s).utf8, "アイ");
}

TEST(PluginEncoding, HalfWidthKanaAloneAreKana) {
    EXPECT_EQ(decoded("\xB7\xAE\xB3\xCA \xCA\xDA\xC3\xDE\xBD\xA1"s).utf8, "ｷｮｳﾊ ﾊﾚﾃﾞｽ｡");
    EXPECT_EQ(decoded("\xBB\xDD\xCE\xDF\xC6\xB2\xAF\xC0\r\n"s).utf8, "ｻﾝﾎﾟﾆｲｯﾀ\r\n");
    EXPECT_EQ(decoded("\xB1\xAB\n"s).utf8, "雨\n");
    EXPECT_EQ(decoded("\xB1\xAB\xA4\xCE\xD0\xA2"s).encoding, Encoding::EucJp) << "a rare character in a sentence";
}

TEST(PluginEncoding, OfACutFileStaysWhatItWas) {
    const std::string utf8 = kNihongo;
    for (std::size_t size = 1; size <= utf8.size(); ++size) {
        const DecodedText text = decoded(utf8.substr(0, size));
        EXPECT_EQ(text.encoding, Encoding::Utf8) << size;
        EXPECT_EQ(text.utf8.substr(0, size / 3 * 3), utf8.substr(0, size / 3 * 3));
        EXPECT_EQ(text.replaced == 0, size % 3 == 0) << size;
    }
    for (std::size_t size = 5; size <= kShiftJis.size(); ++size)
        EXPECT_EQ(decoded(kShiftJis.substr(0, size)).encoding, Encoding::ShiftJis) << size;
    for (std::size_t size = 5; size <= kEucJp.size(); ++size)
        EXPECT_EQ(decoded(kEucJp.substr(0, size)).encoding, Encoding::EucJp) << size;
}

TEST(PluginEncoding, CountsWhatItCantRead) {
    const DecodedText text = decoded("とても長い日本語\xFF の\xC0\x80文"s);
    EXPECT_EQ(text.encoding, Encoding::Utf8);
    EXPECT_EQ(text.utf8, "とても長い日本語\uFFFD の\uFFFD\uFFFD文");
    EXPECT_EQ(text.replaced, 3u);
    const DecodedText shiftJis = decoded("\xFF" + kShiftJis + "\xFF"s);
    EXPECT_EQ(shiftJis.utf8, "\uFFFD"s + kNihongo + "\uFFFD");
    EXPECT_EQ(shiftJis.replaced, 2u);
}

TEST(PluginEncoding, TakesNoBadUtf8) {
    for (const char* good : {"", "a", "é", "日", "😀", "\xF4\x8F\xBF\xBF", "\xED\x9F\xBF", "\xEF\xBF\xBF"})
        EXPECT_TRUE(isUtf8(good)) << good;
    for (const char* bad : {"\x80", "\xC0\x80", "\xC1\xBF", "\xE0\x80\x80", "\xED\xA0\x80", "\xF0\x80\x80\x80",
                            "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xE3\x81", "\xE3\x81x", "\xFF"}) {
        std::size_t replaced = 0;
        EXPECT_FALSE(isUtf8(bad));
        EXPECT_TRUE(isUtf8(validUtf8(bad, replaced)));
        EXPECT_GT(replaced, 0u);
    }
}

} // namespace
} // namespace velloria::plugins
