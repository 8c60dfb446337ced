#include "core/day_key.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using namespace core;

TEST(DayKey, IsZeroPaddedSoThatTextOrderIsDateOrder) {
    EXPECT_EQ(dayKey(QDate(2004, 5, 6)), u"2004/05/06"_s);
    EXPECT_EQ(dayKey(QDate(987, 12, 31)), u"0987/12/31"_s);
    EXPECT_LT(dayKey(QDate(2004, 9, 30)), dayKey(QDate(2004, 10, 1)));
}

TEST(DayKey, KnowsWhichTextsAreOne) {
    for (const QString& day : {u"2004/05/06"_s, u"2004/02/29"_s, u"2000/02/29"_s, u"0001/01/01"_s, u"9999/12/31"_s})
        EXPECT_TRUE(isDayKey(day)) << day.toStdString();
    for (const QString& text :
         {u""_s, u"2004/5/6"_s, u"2004-05-06"_s, u"2004/05"_s, u" 2004/05/06"_s, u"2004/05/06 "_s, u"2004/05/06x"_s,
          u"20040/5/06"_s, u"+004/05/06"_s, u"２００４/05/06"_s, u"ALL"_s, u"abcd/ef/gh"_s})
        EXPECT_FALSE(isDayKey(text)) << text.toStdString();
}

TEST(DayKey, MustBeADayThatExists) {
    for (const QString& day : {u"2003/02/29"_s, u"1900/02/29"_s, u"2004/04/31"_s, u"2004/13/01"_s, u"2004/00/10"_s,
                               u"2004/01/00"_s, u"2004/01/32"_s, u"0000/01/01"_s})
        EXPECT_FALSE(isDayKey(day)) << day.toStdString();
}

TEST(MonthKey, KnowsWhichTextsAreOne) {
    for (const QString& month : {u"2004/01"_s, u"2004/12"_s, u"1900/02"_s})
        EXPECT_TRUE(isMonthKey(month)) << month.toStdString();
    for (const QString& text : {u""_s, u"2004/1"_s, u"2004/00"_s, u"2004/13"_s, u"2004/05/"_s, u"2004/05/06"_s,
                                u"2004-05"_s, u"2004/ 5"_s, u"2004/０５"_s})
        EXPECT_FALSE(isMonthKey(text)) << text.toStdString();
}

TEST(MonthKey, IsTheFirstSevenCharactersOfADay) {
    EXPECT_EQ(monthOf(u"2004/05/06"_s), u"2004/05"_s);
    EXPECT_EQ(monthOf(u"2004/5/6"_s), u"2004/5/"_s);
    EXPECT_EQ(monthOf(u"2004"_s), u"2004"_s);
}

TEST(DayKey, NamesAPageWithUnderlines) {
    EXPECT_EQ(dayFileName(u"2004/05/06"_s), u"2004_05_06"_s);
}

} // namespace
} // namespace velloria::tests
