#include "site/division.h"

#include "site/site_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using site::Division;
using site::IsMultiple;

/// Days of May 2004, newest first.
QStringList newestDays(int count) {
    QStringList days;
    for (int day = 31; day > 31 - count; --day)
        days += u"2004/05/%1"_s.arg(day, 2, 10, QChar(u'0'));
    return days;
}

struct Case {
    int days;
    int term;
    int onTop;
    int lastPage;
    QList<int> pages; ///< of the days, newest first
};

TEST(Division, CountsDaysWithEntriesFromTheNewestOn) {
    const Case cases[] = {
        {3, 31, 1, 0, {0, 0, 0}},          {3, 31, 0, 1, {1, 1, 1}}, {3, 1, 1, 2, {0, 1, 2}},
        {3, 1, 0, 3, {1, 2, 3}},           {3, 2, 1, 1, {0, 0, 1}},  {3, 2, 0, 2, {1, 1, 2}},
        {5, 2, 1, 2, {0, 0, 1, 1, 2}},     {1, 2, 1, 0, {0}},        {31, 31, 1, 0, QList<int>(31, 0)},
        {31, 31, 0, 1, QList<int>(31, 1)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.days << " days, " << c.term << " a page, on top " << c.onTop);
        Division division;
        division.diaryTerm = c.term;
        division.diaryOnTop = c.onTop;
        const QStringList days = newestDays(c.days);
        division.countPages(days);
        EXPECT_EQ(division.lastPage, c.lastPage);
        for (qsizetype i = 0; i < days.size(); ++i)
            EXPECT_EQ(division.pageOf(days[i]), c.pages[i]) << days[i].toStdString();
    }
}

TEST(Division, AMultipleOfTheTermOpensNoEmptyLastPage) {
    for (const int count : {2, 4, 6}) {
        Division division;
        division.diaryTerm = 2;
        division.countPages(newestDays(count));
        EXPECT_EQ(division.lastPage, count / 2 - 1) << count;
    }
}

TEST(Division, AnEmptyMonthHasLastPageMinusOneOrZero) {
    for (const int term : {1, 7, 31}) {
        Division division;
        division.diaryTerm = term;
        division.diaryOnTop = 1;
        division.countPages({});
        EXPECT_EQ(division.lastPage, -1);
        division.diaryOnTop = 0;
        division.countPages({});
        EXPECT_EQ(division.lastPage, 0);
    }
}

TEST(Division, ADayWithoutEntriesHasPageMinusOne) {
    Division division;
    division.countPages({u"2004/05/06"_s});
    EXPECT_EQ(division.dayPage[5], 0);
    for (std::size_t i = 0; i < division.dayPage.size(); ++i) {
        if (i != 5) {
            EXPECT_EQ(division.dayPage[i], -1) << i;
        }
    }
}

TEST(Division, AnyOnTopButOneLeavesTheMonthFileEmpty) {
    Division division;
    division.diaryOnTop = 2;
    division.countPages(newestDays(1));
    EXPECT_EQ(division.pageOf(u"2004/05/31"_s), 1);
}

TEST(Division, ANegativeTermIsNeverReached) {
    Division division;
    division.diaryTerm = -2;
    division.countPages(newestDays(3));
    EXPECT_EQ(division.pageOf(u"2004/05/29"_s), 0);
    EXPECT_EQ(division.lastPage, 0);
}

TEST(Division, ADayIsOnAnotherPageOnlyInADividedMonth) {
    Division division;
    division.diaryTerm = 1;
    division.countPages(newestDays(2));
    EXPECT_FALSE(division.isOnOtherPage(u"2004/05/30"_s));
    division.diaryDivide = 1;
    EXPECT_TRUE(division.isOnOtherPage(u"2004/05/30"_s));
    EXPECT_FALSE(division.isOnOtherPage(u"2004/05/31"_s));
}

TEST(Division, ADayThatHasNoPlaceInAMonthIsRefusedByItsName) {
    for (const QString& day : {u"2004/05/6x"_s, u"2004/05/00"_s, u"2004/05/32"_s, u"2004/05/"_s, u""_s}) {
        Division division;
        const QString failure = failureOf([&] { division.countPages({u"2004/05/31"_s, day}); });
        EXPECT_TRUE(failure.contains(u"「"_s + day + u"」"_s)) << day.toStdString() << ": " << failure.toStdString();
    }
}

TEST(Division, IsMultipleWorksInFloatingPoint) {
    EXPECT_TRUE(IsMultiple(6, 3));
    EXPECT_TRUE(IsMultiple(0, 31));
    EXPECT_TRUE(IsMultiple(-4, 2));
    EXPECT_TRUE(IsMultiple(1, 0.25));
    EXPECT_FALSE(IsMultiple(7, 3));
    EXPECT_FALSE(IsMultiple(2004, 100));
}

class DivisionSettings : public SiteHome {
protected:
    Division read() const { return Division::read(site::SiteSettings(session)); }
};

TEST_F(DivisionSettings, NothingStoredIsOnePageOfAMonthBelowTheMonthFile) {
    const Division division = read();
    EXPECT_EQ(division.diaryDivide, 0);
    EXPECT_EQ(division.diaryTerm, 31);
    EXPECT_EQ(division.diaryOnTop, 0);
    EXPECT_EQ(division.useFileName2Day, 0);
}

TEST_F(DivisionSettings, TermZeroActsAsAWholeMonth) {
    for (const QString& term : {u"0"_s, u""_s, u"abc"_s}) {
        setSetting(keys::divide::kDiaryTerm, term);
        EXPECT_EQ(read().diaryTerm, 31) << term.toStdString();
    }
    setSetting(keys::divide::kDiaryTerm, u"12abc"_s);
    EXPECT_EQ(read().diaryTerm, 12);
}

TEST_F(DivisionSettings, DayFilesNeedOneDayAPageInADividedMonth) {
    const struct {
        QString divide;
        QString term;
        int expected;
    } cases[] = {
        {u"1"_s, u"1"_s, 1}, {u"1"_s, u"2"_s, 0}, {u"1"_s, u"0"_s, 0}, {u"0"_s, u"1"_s, 0}, {u"2"_s, u"1"_s, 0},
    };
    for (const auto& c : cases) {
        setSetting(keys::divide::kUseFileName2Day, u"1"_s);
        setSetting(keys::divide::kDiaryDivide, c.divide);
        setSetting(keys::divide::kDiaryTerm, c.term);
        EXPECT_EQ(read().useFileName2Day, c.expected) << c.divide.toStdString() << ' ' << c.term.toStdString();
    }
}

} // namespace
} // namespace velloria::tests
