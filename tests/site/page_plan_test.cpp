#include "site/page_plan.h"

#include "support/print.h"
#include "support/test_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using site::Divided;
using site::Division;
using site::FirstPage;
using site::Frames;
using site::PageNames;
using site::PagePlan;

const QString kMonthFile = u"/site/x.htm"_s;

/// Days of May 2004, newest first.
QStringList newestDays(int count) {
    QStringList days;
    for (int day = 31; day > 31 - count; --day)
        days += u"2004/05/%1"_s.arg(day, 2, 10, QChar(u'0'));
    return days;
}

Division dividedBy(int daysPerPage, FirstPage firstPage = FirstPage::OnMonthFile) {
    return {Divided::Yes, daysPerPage, firstPage};
}

Division dividedByDay(FirstPage firstPage = FirstPage::OnMonthFile) {
    return {Divided::Yes, 1, firstPage, PageNames::Day};
}

struct Case {
    int days;
    int term;
    FirstPage firstPage;
    int lastPage;
    QList<int> pages; ///< of the days, newest first
};

TEST(PagePlan, CountsDaysWithEntriesFromTheNewestOn) {
    constexpr auto kOnTop = FirstPage::OnMonthFile;
    constexpr auto kBelow = FirstPage::OnPageOfItsOwn;
    const Case cases[] = {
        {3, 31, kOnTop, 0, {0, 0, 0}},          {3, 31, kBelow, 1, {1, 1, 1}}, {3, 1, kOnTop, 2, {0, 1, 2}},
        {3, 1, kBelow, 3, {1, 2, 3}},           {3, 2, kOnTop, 1, {0, 0, 1}},  {3, 2, kBelow, 2, {1, 1, 2}},
        {5, 2, kOnTop, 2, {0, 0, 1, 1, 2}},     {1, 2, kOnTop, 0, {0}},        {31, 31, kOnTop, 0, QList<int>(31, 0)},
        {31, 31, kBelow, 1, QList<int>(31, 1)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.days << " days, " << c.term << " a page, first page " << int(c.firstPage));
        const QStringList days = newestDays(c.days);
        const PagePlan plan(dividedBy(c.term, c.firstPage), days);
        EXPECT_EQ(plan.lastPage(), c.lastPage);
        EXPECT_EQ(plan.oldestPage(), c.lastPage);
        for (qsizetype i = 0; i < days.size(); ++i)
            EXPECT_EQ(plan.pageOf(days[i]), c.pages[i]) << days[i].toStdString();
    }
}

TEST(PagePlan, AMultipleOfTheTermOpensNoEmptyLastPage) {
    for (const int count : {2, 4, 6})
        EXPECT_EQ(PagePlan(dividedBy(2), newestDays(count)).lastPage(), count / 2 - 1) << count;
}

TEST(PagePlan, AnEmptyMonthHasNoPageButTheFirst) {
    for (const int term : {1, 7, 31}) {
        for (const FirstPage firstPage : {FirstPage::OnMonthFile, FirstPage::OnPageOfItsOwn}) {
            const PagePlan plan(dividedBy(term, firstPage), {}, kMonthFile);
            EXPECT_LT(plan.lastPage(), 1);
            EXPECT_EQ(plan.oldestPage(), 0);
            EXPECT_EQ(plan.fileNames(), QStringList{u"x.htm"_s});
        }
    }
}

TEST(PagePlan, ANegativeTermIsNeverReached) {
    const PagePlan plan(dividedBy(-2), newestDays(3));
    EXPECT_EQ(plan.pageOf(u"2004/05/29"_s), 0);
    EXPECT_EQ(plan.lastPage(), 0);
}

TEST(PagePlan, ADayThatHasNoPlaceInAMonthIsRefusedByItsName) {
    for (const QString& day : {u"2004/05/6x"_s, u"2004/05/00"_s, u"2004/05/32"_s, u"2004/05/"_s, u""_s}) {
        const QString failure = failureOf([&] { PagePlan(Division(), {u"2004/05/31"_s, day}); });
        EXPECT_TRUE(failure.contains(u"「"_s + day + u"」"_s)) << day.toStdString() << ": " << failure.toStdString();
    }
}

TEST(PagePlan, AnUndividedMonthIsOneFile) {
    const PagePlan plan(Division(), newestDays(2), kMonthFile);
    EXPECT_FALSE(plan.isDivided());
    EXPECT_TRUE(plan.startsOnDiaryFile());
    EXPECT_EQ(plan.lastPage(), 0);
    EXPECT_EQ(plan.otherFileOf(u"2004/05/30"_s), std::nullopt);
    EXPECT_TRUE(plan.isOn(0, u"2004/05/30"_s));
    EXPECT_EQ(plan.pathOf(0), kMonthFile);
    EXPECT_EQ(plan.fileNames(), QStringList{u"x.htm"_s});
}

TEST(PagePlan, NumberedPagesHangOnTheDiaryFile) {
    const PagePlan plan(dividedBy(1), newestDays(3), kMonthFile, Frames::Yes);
    EXPECT_EQ(plan.monthFile(), kMonthFile);
    EXPECT_EQ(plan.pathOf(0), u"/site/x_D.htm"_s);
    EXPECT_EQ(plan.pathOf(2), u"/site/x_D_02.htm"_s);
    EXPECT_EQ(plan.nameOf(0), u"x_D.htm"_s);
    EXPECT_EQ(plan.otherFileOf(u"2004/05/31"_s), std::nullopt);
    EXPECT_EQ(plan.otherFileOf(u"2004/05/30"_s), u"x_D_01.htm"_s);
    EXPECT_EQ(plan.fileNames(),
              (QStringList{u"x.htm"_s, u"x_D.htm"_s, u"x_C.htm"_s, u"x_D_01.htm"_s, u"x_D_02.htm"_s}));
}

TEST(PagePlan, DayFilesAreNamedAfterTheirDaysWithoutAMarkOfTheFrame) {
    const PagePlan onTop(dividedByDay(), newestDays(3), kMonthFile, Frames::Yes);
    EXPECT_EQ(onTop.pathOf(1), u"/site/2004_05_30.htm"_s);
    EXPECT_EQ(onTop.otherFileOf(u"2004/05/31"_s), std::nullopt);
    EXPECT_EQ(onTop.otherFileOf(u"2004/05/29"_s), u"2004_05_29.htm"_s);
    EXPECT_EQ(onTop.nameOf(3), std::nullopt);
    EXPECT_EQ(onTop.fileNames(),
              (QStringList{u"x.htm"_s, u"x_D.htm"_s, u"x_C.htm"_s, u"2004_05_30.htm"_s, u"2004_05_29.htm"_s}));

    const PagePlan below(dividedByDay(FirstPage::OnPageOfItsOwn), newestDays(2), kMonthFile);
    EXPECT_FALSE(below.startsOnDiaryFile());
    EXPECT_EQ(below.pathOf(1), u"/site/2004_05_31.htm"_s);
    EXPECT_EQ(below.fileNames(), (QStringList{u"x.htm"_s, u"2004_05_31.htm"_s, u"2004_05_30.htm"_s}));
}

TEST(PagePlan, NothingLeadsToThePagesOfAMonthThatIsDividedByAnotherNumberThanOne) {
    const PagePlan plan({Divided::Unlinked, 1, FirstPage::OnMonthFile}, newestDays(2), kMonthFile);
    EXPECT_EQ(plan.lastPage(), 1);
    EXPECT_TRUE(plan.isOn(1, u"2004/05/30"_s));
    EXPECT_FALSE(plan.isOn(0, u"2004/05/30"_s));
    EXPECT_EQ(plan.otherFileOf(u"2004/05/30"_s), std::nullopt);
    EXPECT_EQ(plan.fileNames(), QStringList{u"x.htm"_s});
}

} // namespace
} // namespace velloria::tests
