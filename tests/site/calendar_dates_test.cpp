#include "site/calendar_dates.h"

#include "platform/failure.h"
#include "support/print.h"

#include <gtest/gtest.h>

#include <QDate>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using site::GetFirstWeekday;
using site::GetMonthDays;
using site::GetWeekdayName;
using site::IsLeapYear;

TEST(CalendarDates, KnowsLeapYears) {
    const struct {
        int year;
        bool isLeap;
    } cases[] = {{1900, false}, {2000, true}, {2001, false}, {2004, true}, {2100, false}, {2400, true}};
    for (const auto& c : cases)
        EXPECT_EQ(IsLeapYear(c.year), c.isLeap) << c.year;
}

TEST(CalendarDates, GivesTheDaysOfEachMonth) {
    for (const int year : {2003, 2004, 2100}) {
        for (int month = 1; month <= 12; ++month)
            EXPECT_EQ(GetMonthDays(year, month), QDate(year, month, 1).daysInMonth()) << year << '/' << month;
    }
}

TEST(CalendarDates, AMonthOutsideTheYearHasNoDays) {
    for (const int month : {-1, 0, 13})
        EXPECT_EQ(GetMonthDays(2004, month), 0) << month;
}

TEST(CalendarDates, CountsTheFirstWeekdayFromMonday) {
    EXPECT_EQ(GetFirstWeekday(2000, 1), 5);
    EXPECT_EQ(GetFirstWeekday(2004, 2), 6);
    EXPECT_EQ(GetFirstWeekday(2004, 3), 0);
    EXPECT_EQ(GetFirstWeekday(2100, 1), 4);
}

TEST(CalendarDates, FindsTheFirstWeekdayOfFourHundredYears) {
    for (QDate first(2000, 1, 1); first.year() <= 2400; first = first.addMonths(1))
        ASSERT_EQ(GetFirstWeekday(first.year(), first.month()), first.dayOfWeek() - 1)
            << first.toString().toStdString();
}

TEST(CalendarDates, AYearBefore2000IsRefusedWithItsMonth) {
    try {
        GetFirstWeekday(1999, 12);
        FAIL() << "1999 has a weekday";
    } catch (const platform::Failure& failure) {
        EXPECT_TRUE(failure.whatFailed().contains(u"1999年12月"_s)) << failure.line().toStdString();
    }
}

TEST(CalendarDates, NamesWeekdaysFromSunday) {
    const QStringList japanese{u"日"_s, u"月"_s, u"火"_s, u"水"_s, u"木"_s, u"金"_s, u"土"_s};
    const QStringList english{u"Sun"_s, u"Mon"_s, u"Tue"_s, u"Wed"_s, u"Thu"_s, u"Fri"_s, u"Sat"_s};
    for (int index = 0; index < 7; ++index) {
        EXPECT_EQ(GetWeekdayName(index, u"1"_s), japanese[index]);
        EXPECT_EQ(GetWeekdayName(index, u"2"_s), english[index]);
    }
}

TEST(CalendarDates, EveryTypeButOneIsEnglish) {
    for (const QString& type : {u""_s, u"0"_s, u"2"_s, u"01"_s, u"１"_s, u"Japanese"_s})
        EXPECT_EQ(GetWeekdayName(0, type), u"Sun"_s) << type.toStdString();
}

TEST(CalendarDates, OtherIndexesHaveNoName) {
    for (const int index : {-1, 7, 8}) {
        EXPECT_EQ(GetWeekdayName(index, u"1"_s), u""_s) << index;
        EXPECT_EQ(GetWeekdayName(index, u"2"_s), u""_s) << index;
    }
}

} // namespace
} // namespace velloria::tests
