#include "platform/utf8.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::fromUtf8;
using platform::parseJson;
using platform::withoutSignature;

TEST(Utf8, KeepsTheMarkInFront) {
    for (const QString& text : {u""_s, u"a"_s, u"\uFEFF"_s, u"\uFEFFa"_s, u"\uFEFF\uFEFF日記"_s, u"a\uFEFF"_s,
                                u"\uFEFF\0x"_s, u"\uFFFE"_s, u"😀\uFEFF"_s})
        EXPECT_EQ(fromUtf8(text.toUtf8()), text) << text.toUtf8().toHex().constData();
}

TEST(Utf8, IsNeverNull) {
    EXPECT_FALSE(fromUtf8({}).isNull());
    EXPECT_FALSE(fromUtf8(QByteArray()).isNull());
}

TEST(Utf8, ReadsWhatIsNoneAsReplacements) {
    EXPECT_EQ(fromUtf8("\xFF"), u"\uFFFD"_s);
    EXPECT_EQ(fromUtf8("\xEF\xBB\xBF\xE3\x81"), u"\uFEFF\uFFFD"_s.left(1) + QString::fromUtf8("\xE3\x81"));
    EXPECT_EQ(fromUtf8("\xEF\xBB"), QString::fromUtf8("\xEF\xBB"));
}

TEST(Utf8, AFileLosesItsSignatureOnce) {
    EXPECT_EQ(withoutSignature("\xEF\xBB\xBF"
                               "a"),
              "a");
    EXPECT_EQ(withoutSignature("\xEF\xBB\xBF\xEF\xBB\xBF"), "\xEF\xBB\xBF");
    EXPECT_EQ(withoutSignature("a\xEF\xBB\xBF"), "a\xEF\xBB\xBF");
    EXPECT_EQ(withoutSignature(""), "");
}

TEST(Utf8, TextsInJsonKeepTheMarkInFront) {
    for (const QString& text : {u"\uFEFF"_s, u"\uFEFFa"_s, u"a\uFEFF"_s, u"\uFEFF\uFEFFx\uFEFF日"_s, u"\\\uFEFF"_s,
                                u"\"\uFEFF\\\\"_s, u"a"_s, u""_s}) {
        const QByteArray json = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
        EXPECT_EQ(parseJson(json, nullptr).array().at(0).toString(), text) << json.constData();
        const QByteArray object = QJsonDocument(QJsonObject{{text, text}}).toJson(QJsonDocument::Compact);
        EXPECT_EQ(parseJson(object, nullptr).object().value(text).toString(), text) << object.constData();
    }
}

TEST(Utf8, TheMarkIsNoPartOfJsonOutsideOfTexts) {
    for (const char* json : {"\xEF\xBB\xBF[]", "[\xEF\xBB\xBF]", "[]\xEF\xBB\xBF", "[1\xEF\xBB\xBF]",
                             "[\"\\\xEF\xBB\xBF\"]", "[\"\\\\\\\xEF\xBB\xBF\"]"}) {
        QJsonParseError error;
        EXPECT_TRUE(parseJson(json, &error).isNull()) << json;
        EXPECT_NE(error.error, QJsonParseError::NoError) << json;
    }
}

TEST(Utf8, HalfACharacterInJsonIsMarkedAndCounted) {
    const std::tuple<const char*, QString, qsizetype> cases[] = {
        {R"(["a\ud83db"])", u"a\uFFFDb"_s, 1},    {R"(["\uDE00\uD83D"])", u"\uFFFD\uFFFD"_s, 2},
        {R"(["\ud83d\ude00"])", u"😀"_s, 0},       {R"(["\ud83d\ud83d\ude00"])", u"\uFFFD😀"_s, 1},
        {R"(["\\ud83d"])", u"\\ud83d"_s, 0},      {R"(["\\\ud83d"])", u"\\\uFFFD"_s, 1},
        {R"(["\u003f\ufeff"])", u"?\uFEFF"_s, 0},
    };
    for (const auto& [json, text, count] : cases) {
        qsizetype halves = -1;
        EXPECT_EQ(parseJson(json, nullptr, &halves).array().at(0).toString(), text) << json;
        EXPECT_EQ(halves, count) << json;
        // Who does not count them can tell them still.
        EXPECT_EQ(parseJson(json, nullptr).array().at(0).toString().isValidUtf16(), count == 0) << json;
    }
    for (const char* json : {R"(["\u)", R"(["\ud8)", R"(["\ud83d)", R"(["\ud83d\)", R"(["\ud83d\u)", "\\"})
        EXPECT_TRUE(parseJson(json, nullptr).isNull()) << json;
}

} // namespace
} // namespace velloria::tests
