#include "store/entry_line.h"

#include "platform/failure.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using store::Entry;
using store::EntryLine;
using store::parseEntryLine;

/// A line with this day and title and further members.
QByteArray line(const QByteArray& members = {}) {
    return R"({"Day":"2004/05/06","Title":"t")" + (members.isEmpty() ? "" : ',' + members) + '}';
}

/// Why the line is refused; "" when it isn't.
QString reasonOf(const QByteArray& line) {
    try {
        parseEntryLine(line);
    } catch (const platform::Failure& failure) {
        return failure.reason();
    }
    return {};
}

void expectSame(const Entry& left, const Entry& right) {
    EXPECT_EQ(left.day, right.day);
    EXPECT_EQ(left.number, right.number);
    EXPECT_EQ(left.isPrivate, right.isPrivate);
    const auto texts = [](const Entry& entry) {
        return QStringList{entry.title, entry.contents, entry.extend,      entry.excerpt,
                           entry.genre, entry.weather,  entry.publishTime, entry.importMark};
    };
    const QStringList leftTexts = texts(left);
    const QStringList rightTexts = texts(right);
    for (qsizetype i = 0; i < leftTexts.size(); ++i) {
        EXPECT_EQ(leftTexts[i], rightTexts[i]) << i;
        EXPECT_EQ(leftTexts[i].isNull(), rightTexts[i].isNull()) << i;
    }
}

TEST(EntryLine, LeftOutMembersAreWhatAnUntouchedEditorSaves) {
    const EntryLine read = parseEntryLine(line());
    EXPECT_EQ(read.entry.day, u"2004/05/06"_s);
    EXPECT_EQ(read.entry.title, u"t"_s);
    EXPECT_EQ(read.entry.number, 0);
    EXPECT_EQ(read.entry.weather, u"-"_s);
    EXPECT_EQ(read.entry.genre, u"一般"_s);
    EXPECT_FALSE(read.entry.isPrivate);
    for (const QString& text : {read.entry.contents, read.entry.extend, read.entry.excerpt})
        EXPECT_TRUE(text.isEmpty() && !text.isNull());
    EXPECT_TRUE(read.entry.publishTime.isNull() && read.entry.importMark.isNull());
    EXPECT_FALSE(read.isRescued);
}

TEST(EntryLine, NullIsAMissingValueAndEmptyIsNot) {
    const Entry entry =
        parseEntryLine(line(R"("Extend":null,"Weather":null,"Genre":null,"Excerpt":"","Number":null,"Private":null)"))
            .entry;
    EXPECT_TRUE(entry.extend.isNull() && entry.weather.isNull() && entry.genre.isNull());
    EXPECT_TRUE(entry.excerpt.isEmpty() && !entry.excerpt.isNull());
    EXPECT_EQ(entry.number, 0);
    EXPECT_FALSE(entry.isPrivate);
}

TEST(EntryLine, ReadsEveryMember) {
    const EntryLine read = parseEntryLine(
        R"({"Day":"2004/02/29","Number":32767,"Title":"題","Contents":"<P>\r\n","Extend":"e","Excerpt":"x",)"
        R"("Weather":"晴","Genre":"旅","Private":true,"PublishTime":"2004/02/29 01:02:03","ImportMark":"m",)"
        R"("Reason":"削除","Time":"2004/03/01 00:00:00"})");
    Entry expected;
    expected.day = u"2004/02/29"_s;
    expected.number = 32767;
    expected.title = u"題"_s;
    expected.contents = u"<P>\r\n"_s;
    expected.extend = u"e"_s;
    expected.excerpt = u"x"_s;
    expected.weather = u"晴"_s;
    expected.genre = u"旅"_s;
    expected.isPrivate = true;
    expected.publishTime = u"2004/02/29 01:02:03"_s;
    expected.importMark = u"m"_s;
    expectSame(read.entry, expected);
    EXPECT_TRUE(read.isRescued);
}

TEST(EntryLine, ComesBackFromItsJson) {
    Entry full;
    full.day = u"2004/05/06"_s;
    full.number = 3;
    full.title = u"\"題\" \\ \t"_s;
    full.contents = u"a\r\nb\nc😀é〜\u2028"_s;
    full.extend = u""_s;
    full.weather = u"-"_s;
    full.genre = u"\u0001"_s;
    full.isPrivate = true;
    for (const Entry& entry : {full, [] {
                                   Entry titled;
                                   titled.day = u"2004/05/06"_s;
                                   titled.title = u"t"_s;
                                   return titled;
                               }()}) {
        const QByteArray json = QJsonDocument(store::toJson(entry)).toJson(QJsonDocument::Compact);
        EXPECT_FALSE(json.contains('\n'));
        expectSame(parseEntryLine(json).entry, entry);
    }
}

TEST(EntryLine, KeepsAMarkInFrontOfATextAndNoneInFrontOfTheLine) {
    Entry entry;
    entry.day = u"2004/05/06"_s;
    entry.title = entry.contents = u"\uFEFFt"_s;
    entry.extend = u"\uFEFF"_s;
    entry.genre = u"\uFEFF\uFEFF"_s;
    expectSame(parseEntryLine(QJsonDocument(store::toJson(entry)).toJson(QJsonDocument::Compact)).entry, entry);
    EXPECT_EQ(parseEntryLine(line("\"Extend\":\"\\ufeffx\"")).entry.extend, u"\uFEFFx"_s);
    EXPECT_TRUE(reasonOf("\xEF\xBB\xBF" + line()).contains(u"JSON"_s));
}

TEST(EntryLine, RefusesHalfACharacter) {
    for (const char* text : {"\\ud800", "\\udfff", "x\\ud83d", "\\ud83dx\\ude00", "\\ude00\\ud83d"}) {
        for (const char* name : {"Title", "Contents", "Extend", "Excerpt", "Weather", "Genre", "PublishTime",
                                 "ImportMark", "Reason", "Time"}) {
            const QByteArray whole = line(QByteArray("\"") + name + "\":\"" + text + "\"");
            EXPECT_TRUE(reasonOf(whole).contains(QLatin1StringView(name))) << whole.constData();
        }
    }
    EXPECT_EQ(parseEntryLine(line("\"Extend\":\"\\ud83d\\ude00\"")).entry.extend, u"😀"_s);
    EXPECT_TRUE(reasonOf(line("\"Extend\":\"\xED\xA0\x80\"")).contains(u"JSON"_s));
}

TEST(EntryLine, RefusesWhatIsNoObject) {
    for (const QByteArray& text : {QByteArray(), QByteArray("x"), QByteArray("{\"Day\":\"2004/05/06\""),
                                   QByteArray("[]"), QByteArray("\"Day\""), QByteArray("{} {}"), line() + "x"})
        EXPECT_TRUE(reasonOf(text).contains(u"JSON"_s)) << text.constData() << reasonOf(text).toStdString();
}

TEST(EntryLine, RefusesADayThatDoesNotExist) {
    for (const QByteArray& day : {QByteArray("\"2004/02/30\""), QByteArray("\"2004/5/6\""), QByteArray("\"\""),
                                  QByteArray("\"ALL\""), QByteArray("20040506"), QByteArray("null")})
        EXPECT_TRUE(reasonOf(R"({"Day":)" + day + R"(,"Title":"t"})").contains(u"日"_s) ||
                    reasonOf(R"({"Day":)" + day + R"(,"Title":"t"})").contains(u"Day"_s))
            << day.constData();
    EXPECT_FALSE(reasonOf(R"({"Title":"t"})").isEmpty());
    EXPECT_TRUE(reasonOf(R"({"Day":"2004/02/30","Title":"t"})").contains(u"2004/02/30"_s));
}

TEST(EntryLine, RefusesANumberThatIsNone) {
    for (const QByteArray& number :
         {QByteArray("0"), QByteArray("-1"), QByteArray("1.5"), QByteArray("32768"), QByteArray("1e300"),
          QByteArray("-1e300"), QByteArray("\"1\""), QByteArray("true"), QByteArray("[1]")})
        EXPECT_TRUE(reasonOf(line("\"Number\":" + number)).contains(u"Number"_s)) << number.constData();
    EXPECT_EQ(parseEntryLine(line("\"Number\":1")).entry.number, 1);
    EXPECT_EQ(parseEntryLine(line("\"Number\":2e0")).entry.number, 2);
}

TEST(EntryLine, RefusesAValueOfTheWrongType) {
    for (const char* name :
         {"Title", "Contents", "Extend", "Excerpt", "Weather", "Genre", "PublishTime", "ImportMark"}) {
        for (const char* value : {"1", "true", "[]", "{}"}) {
            const QByteArray text = QByteArray(R"({"Day":"2004/05/06",)") + '"' + name + "\":" + value + '}';
            EXPECT_TRUE(reasonOf(text).contains(QLatin1StringView(name))) << text.constData();
        }
    }
    for (const char* value : {"0", "\"true\"", "[]"})
        EXPECT_TRUE(reasonOf(line(QByteArray("\"Private\":") + value)).contains(u"Private"_s)) << value;
}

TEST(EntryLine, RefusesAnUnknownMemberByItsName) {
    EXPECT_TRUE(reasonOf(line("\"Contens\":\"x\"")).contains(u"Contens"_s));
    EXPECT_TRUE(reasonOf(line("\"day\":\"2004/05/06\"")).contains(u"day"_s));
}

TEST(EntryLine, RefusesAnEmptyTitleUnlessItIsRescued) {
    for (const QByteArray& title : {QByteArray("\"\""), QByteArray("null")}) {
        const QByteArray text = R"({"Day":"2004/05/06","Title":)" + title;
        EXPECT_EQ(reasonOf(text + '}'), u"タイトルを入力してください！"_s);
        EXPECT_EQ(reasonOf(text + R"(,"Reason":"削除"})"), QString());
    }
    EXPECT_EQ(reasonOf(R"({"Day":"2004/05/06"})"), u"タイトルを入力してください！"_s);
}

} // namespace
} // namespace velloria::tests
