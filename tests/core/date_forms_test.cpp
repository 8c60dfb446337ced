#include "core/date_forms.h"

#include "support/vectors.h"

#include <gtest/gtest.h>

#include <ctime>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using core::formatDate;
using core::formatTextAsDate;
using core::parseDate;

constexpr int kYearNow = 2007;

QDateTime moment(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second), Qt::UTC);
}

/// "yyyy/mm/dd hh:nn:ss" without the code under test.
QDateTime momentOf(const QString& text) {
    return QDateTime(QDate::fromString(text.first(10), u"yyyy/MM/dd"_s), QTime::fromString(text.sliced(11)), Qt::UTC);
}

/// What parseDate makes of a text, "" for no date.
QString read(const QString& text) {
    const std::optional<QDateTime> date = parseDate(text, kYearNow);
    return date ? date->toString(u"yyyy/MM/dd HH:mm:ss"_s) : QString();
}

TEST(DateForms, ReadsTextsAsThePlatformDoes) {
    for (const VectorRow& row : readVectors("isdate.tsv")) {
        SCOPED_TRACE(row.line);
        const QString expected = row.text("date").replace(u"YEAR"_s, QString::number(kYearNow));
        EXPECT_EQ(row.text("is_date") == u"1", row.has("date"));
        EXPECT_EQ(read(row.text("text")), row.has("date") ? expected : QString()) << row.text("text").toStdString();
    }
}

TEST(DateForms, PutsNumbersInTheFirstOrderThatGivesADay) {
    const struct {
        QString text;
        QString date;
    } cases[] = {
        {u"1/2/3"_s, u"2001/02/03 00:00:00"_s},      // year, month, day
        {u"5/13/4"_s, u"2005/04/13 00:00:00"_s},     // year, day, month
        {u"12/31/1999"_s, u"1999/12/31 00:00:00"_s}, // month, day, year
        {u"28/2/30"_s, u"1930/02/28 00:00:00"_s},    // day, month, year
        {u"29/2/30"_s, u""_s},                       // 1930 has no such day
        {u"2/3"_s, u"2007/02/03 00:00:00"_s},
        {u"13/5"_s, u"2007/05/13 00:00:00"_s},
        {u"2/29"_s, u"2029/02/01 00:00:00"_s}, // 2007 is no leap year
        {u"32/5"_s, u"1932/05/01 00:00:00"_s},
        {u"13/32"_s, u""_s},
        {u"99/13/32"_s, u""_s},
    };
    for (const auto& [text, date] : cases)
        EXPECT_EQ(read(text), date) << text.toStdString();
}

TEST(DateForms, TakesTheYearOfADayWithoutOneFromTheCaller) {
    EXPECT_EQ(parseDate(u"2/29", 2008), moment(2008, 2, 29));
    EXPECT_EQ(parseDate(u"2月29日", 2008), moment(2008, 2, 29));
    EXPECT_FALSE(parseDate(u"2月29日", 2007).has_value());
    EXPECT_EQ(parseDate(u"12:30", 2008), moment(1899, 12, 30, 12, 30));
}

TEST(DateForms, CountsTwoDigitYearsFrom1930To2029) {
    EXPECT_EQ(read(u"0/1/1"_s), u"2000/01/01 00:00:00");
    EXPECT_EQ(read(u"29/1/1"_s), u"2029/01/01 00:00:00");
    EXPECT_EQ(read(u"30/1/1"_s), u"1930/01/01 00:00:00");
    EXPECT_EQ(read(u"99/1/1"_s), u"1999/01/01 00:00:00");
    EXPECT_EQ(read(u"04年1月5日"_s), u"2004/01/05 00:00:00");
}

TEST(DateForms, ReadsJapaneseDates) {
    const struct {
        QString text;
        QString date;
    } cases[] = {
        {u"2004年1月"_s, u"2004/01/01 00:00:00"_s},
        {u"2004年1月5日 12:30"_s, u"2004/01/05 12:30:00"_s},
        {u"２００４年１月５日　１２：３０"_s, u"2004/01/05 12:30:00"_s},
        {u"明治45年7月29日"_s, u"1912/07/29 00:00:00"_s},
        {u"大正15年12月24日"_s, u"1926/12/24 00:00:00"_s},
        {u"昭和64年1月7日"_s, u"1989/01/07 00:00:00"_s},
        {u"平成元年1月8日"_s, u"1989/01/08 00:00:00"_s},
        {u"平成04年2月29日"_s, u"1992/02/29 00:00:00"_s},
        {u"令和2年2月29日"_s, u"2020/02/29 00:00:00"_s},
        {u"平成0年1月1日"_s, u""_s},
        {u"元年1月1日"_s, u""_s},
        {u"平成16年"_s, u""_s},
        {u"1月"_s, u""_s},
        {u"5日"_s, u""_s},
        {u"13月5日"_s, u""_s},
        {u"2004年13月5日"_s, u""_s}, // no other order here: the signs say what is what
        {u"2004年1月5"_s, u""_s},
    };
    for (const auto& [text, date] : cases)
        EXPECT_EQ(read(text), date) << text.toStdString();
}

TEST(DateForms, ReadsATimeBeforeOrBehindTheDay) {
    const struct {
        QString text;
        QString date;
    } cases[] = {
        {u"23:59:59 12/31"_s, u"2007/12/31 23:59:59"_s},
        {u"2004 1 5 3.04.05"_s, u"2004/01/05 03:04:05"_s},
        {u"12:30 13:30"_s, u""_s},
        {u"12:30 2004/1/5 13:30"_s, u""_s},
        {u"2004/1/5 12"_s, u""_s},
        {u"12:30 5"_s, u""_s},
        {u"2004/1/5:12"_s, u""_s},
        {u":30"_s, u""_s},
        {u"12:"_s, u""_s},
        {u"1:2:3:4"_s, u""_s},
        {u"-1:30"_s, u""_s},
    };
    for (const auto& [text, date] : cases)
        EXPECT_EQ(read(text), date) << text.toStdString();
}

TEST(DateForms, NumbersTooLongForADateAreNone) {
    for (const QString& text : {u"99999999999/1/1"_s, u"2004/99999999999/1"_s, u"4294967297/1/1"_s, u"1:99999999999"_s})
        EXPECT_EQ(read(text), QString()) << text.toStdString();
}

TEST(DateForms, PrintsAsTheFormatFunctionDoes) {
    for (const VectorRow& row : readVectors("format.tsv")) {
        const QString kind = row.text("kind");
        const QString form = row.text("format");
        SCOPED_TRACE(row.line);
        if (kind == u"date") {
            EXPECT_EQ(formatDate(momentOf(row.text("value")), form), row.text("result"));
        } else if (kind == u"text" && form != u"00") {
            EXPECT_EQ(formatTextAsDate(row.text("value"), form, kYearNow), row.text("result"));
        }
    }
}

TEST(DateForms, PrintsAllFourDigitsOfAnEarlyYear) {
    EXPECT_EQ(formatDate(moment(100, 1, 1), u"yyyy/mm/dd"), u"0100/01/01");
    EXPECT_EQ(formatDate(moment(9999, 12, 31), u"YYYY/MM"), u"9999/12");
}

TEST(DateForms, PrintsALocalTimeAsTheClockShowsIt) {
    const QDateTime local(QDate(2004, 5, 6), QTime(23, 8, 9), Qt::LocalTime);
    EXPECT_EQ(formatDate(local, u"ddd, d mmm yyyy hh:nn:ss"), u"Thu, 6 May 2004 23:08:09");
}

/// The machine's zone for the length of a test.
class Zone {
public:
    explicit Zone(const char* name)
        : m_before(qgetenv("TZ")) {
        qputenv("TZ", name);
        ::tzset();
    }
    ~Zone() {
        m_before.isNull() ? qunsetenv("TZ") : qputenv("TZ", m_before);
        ::tzset();
    }

private:
    QByteArray m_before;
};

TEST(DateForms, DependOnNoZone) {
    // Samoa had no 2011/12/30, and clocks in New York no half past two on 2004/4/4.
    for (const char* name : {"Pacific/Apia", "America/New_York", "Asia/Tokyo"}) {
        const Zone zone(name);
        EXPECT_EQ(formatTextAsDate(u"2011/12/30"_s, u"yyyy/mm/dd hh:nn:ss", kYearNow), u"2011/12/30 00:00:00") << name;
        EXPECT_EQ(formatTextAsDate(u"2004/4/4 2:30"_s, u"yyyy/mm/dd hh:nn:ss", kYearNow), u"2004/04/04 02:30:00")
            << name;
    }
}

TEST(DateForms, TakesANumberForDaysSince1899) {
    const struct {
        QString text;
        QString date;
    } cases[] = {
        {u"0"_s, u"1899/12/30 00:00:00"_s},
        {u"1"_s, u"1899/12/31 00:00:00"_s},
        {u"38,000"_s, u"2004/01/14 00:00:00"_s},
        {u"38000.75"_s, u"2004/01/14 18:00:00"_s},
        {u"-1.25"_s, u"1899/12/29 06:00:00"_s},
        {u"38000.999999"_s, u"2004/01/15 00:00:00"_s},
        {u"-657434"_s, u"0100/01/01 00:00:00"_s},
        {u"-657435"_s, u"-657435"_s},
        {u"2958465"_s, u"9999/12/31 00:00:00"_s},
        {u"2958466"_s, u"2958466"_s},
        {u"1e300"_s, u"1e300"_s},
    };
    for (const auto& [text, date] : cases)
        EXPECT_EQ(formatTextAsDate(text, u"yyyy/mm/dd hh:nn:ss", kYearNow), date) << text.toStdString();
}

TEST(DateForms, LeavesATextThatIsNoDateAsItStands) {
    for (const QString& text : {u""_s, u" "_s, u" abc "_s, u"2004/13/45"_s, u"ALL"_s, u"2004/05/6x"_s})
        EXPECT_EQ(formatTextAsDate(text, u"yyyy/mm/dd", kYearNow), text);
}

TEST(DateForms, ATabIsABlankBesideADate) {
    for (const QString& text : {u"\t2004/1/5"_s, u"2004/1/5\t"_s, u" \t2004/1/5\t "_s, u"平成16年1月5日\t"_s})
        EXPECT_EQ(read(text), u"2004/01/05 00:00:00"_s) << text.toStdString();
    EXPECT_EQ(read(u"2004/1/5\t12:30"_s), u"2004/01/05 12:30:00"_s);
    EXPECT_EQ(read(u"\t"_s), u""_s);
}

TEST(DateForms, AFullDayHasOneReadingWhateverTheYearNow) {
    const QDate day(2004, 3, 5);
    for (const QString& text :
         {u"2004/03/05"_s, u"2004/3/5"_s, u"2004-03-05"_s, u"2004.3.5"_s, u"2004年3月5日"_s, u"２００４／３／５"_s,
          u"平成16年3月5日"_s, u" 2004 / 3 / 5 0:00:00"_s, u"2004/3/5 00:00"_s})
        EXPECT_EQ(core::fullDay(text), day) << text.toStdString();
    EXPECT_EQ(core::fullDay(u"昭和元年12月30日"), QDate(1926, 12, 30));
    for (const QString& text :
         {u""_s, u"3/5"_s, u"2004/3"_s, u"04/3/5"_s, u"5/3/2004"_s, u"2004/3-5"_s, u"2004/13/5"_s, u"2003/2/29"_s,
          u"16年3月5日"_s, u"3月5日"_s, u"38000"_s, u"2004/3/5 12:30"_s, u"0000/1/1"_s, u"nonsense"_s})
        EXPECT_EQ(core::fullDay(text), std::nullopt) << text.toStdString();
}

} // namespace
} // namespace velloria::tests
