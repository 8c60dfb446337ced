#include "site/month_page.h"

#include "site/site_home.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using site::MakeList;
using site::PageKind;
using site::WithPrivate;

class MonthPage : public SiteHome {
protected:
    void writeDays(std::initializer_list<int> days) {
        for (const int day : days)
            write(u"2004/05/%1"_s.arg(day, 2, 10, QChar(u'0')), u"day %1"_s.arg(day));
    }
    void setReadOnly(const QString& name) {
        ASSERT_TRUE(QFile::setPermissions(path(u"site/"_s + name), QFileDevice::ReadOwner));
    }
};

TEST_F(MonthPage, TheHeadingNamesYearAndMonthWithoutZeroAndAnEmptyLineFollows) {
    setSetting(keys::general::kTitleAlign, u"Center"_s);
    EXPECT_TRUE(hasLines(makeMonth(u"2004/05"_s),
                         {u"<a name=this_month></a><H3 align=Center><a name=TOP>2004年5月分</a></H3>"_s, u""_s}));
    EXPECT_TRUE(hasLines(makeMonth(u"2003/12"_s),
                         {u"<a name=this_month></a><H3 align=Center><a name=TOP>2003年12月分</a></H3>"_s, u""_s}));
}

TEST_F(MonthPage, EveryLineEndsInCarriageReturnAndLineFeed) {
    writeDays({5, 6});
    makeMonth();
    QByteArray bytes = bytesOf(path(u"site/x.htm"_s));
    const qsizetype lines = bytes.count('\n');
    EXPECT_EQ(bytes.count("\r\n"), lines);
    EXPECT_EQ(bytes.count('\r'), lines);
    EXPECT_TRUE(bytes.endsWith("</HTML>\r\n"));
}

TEST_F(MonthPage, ThePageIsInTheCodePage) {
    write(u"2004/05/06"_s, u"日記"_s);
    makeMonth();
    EXPECT_TRUE(bytesOf(path(u"site/x.htm"_s)).contains("\">\x93\xfa\x8bL</SPAN>"));
}

TEST_F(MonthPage, ACalendarStandsBetweenHeadingAndListWithABreakBehindIt) {
    setSetting(keys::calender::kUse, u"1"_s);
    setSetting(keys::day_list::kUse, u"1"_s);
    for (const QString& page : {makeMonth(), makeLog()})
        EXPECT_TRUE(hasLines(page, {u"</table>"_s, u"</DIV>"_s, u"<BR>"_s, u"<div style=margin-left:0pt>"_s}));
    removeSetting(keys::calender::kUse);
    EXPECT_TRUE(lacks(makeMonth(), u"<BR>"_s));
}

TEST_F(MonthPage, ARuleAndAnEmptyLineStandAheadOfTheEntries) {
    writeDays({6});
    EXPECT_TRUE(hasLines(makeMonth(), {u"<HR>"_s, u""_s, u"<A Name=\"2004/05/06\"></A>"_s}));
    divide(1, true);
    EXPECT_TRUE(hasLines(makeMonth(), {u"<HR>"_s, u""_s, u"<A Name=\"2004/05/06\"></A>"_s}));
}

TEST_F(MonthPage, WithNoDayOnTopTheMonthFileHasNoRuleEntryOrAnchor) {
    writeDays({5, 6});
    divide(1, false);
    const QString page = makeMonth();
    for (const QString& part : {u"<HR>"_s, u"<A Name="_s, u"day 6"_s, u"<H3 ALIGN"_s})
        EXPECT_TRUE(lacks(page, part));
}

TEST_F(MonthPage, TheNewestDayStaysOnTheMonthFile) {
    writeDays({4, 5, 6});
    divideByDay(true);
    EXPECT_TRUE(makeMonth().contains(u">day 6<"_s));
    EXPECT_TRUE(sitePage(u"2004_05_05.htm"_s).contains(u">day 5<"_s));
    EXPECT_TRUE(sitePage(u"2004_05_04.htm"_s).contains(u">day 4<"_s));
    EXPECT_FALSE(siteHas(u"2004_05_06.htm"_s));
}

TEST_F(MonthPage, SeveralEntriesOfADayShareItsPage) {
    writeDays({5, 6, 6, 6});
    divide(1, true);
    EXPECT_EQ(countOf(makeMonth(), u">day 6<"_s), 3);
    EXPECT_TRUE(siteHas(u"x_01.htm"_s));
    EXPECT_FALSE(siteHas(u"x_02.htm"_s));
}

TEST_F(MonthPage, AnEmptyMonthMakesNoDividedPage) {
    for (const bool isOnTop : {true, false}) {
        divide(1, isOnTop);
        makeMonth();
        EXPECT_FALSE(siteHas(u"x_00.htm"_s));
        EXPECT_FALSE(siteHas(u"x_01.htm"_s));
    }
}

TEST_F(MonthPage, AMultipleOfTheTermMakesNoEmptyPage) {
    writeDays({3, 4, 5, 6});
    divide(2, true);
    makeMonth();
    EXPECT_TRUE(siteHas(u"x_01.htm"_s));
    EXPECT_FALSE(siteHas(u"x_02.htm"_s));
}

TEST_F(MonthPage, ALogIsDividedOnlyWhenLogsAre) {
    writeDays({5, 6});
    divide(1, false);
    EXPECT_EQ(countOf(makeLog(), u"<H3 ALIGN"_s), 2);
    EXPECT_FALSE(siteHas(u"x_01.htm"_s));
    setSetting(keys::divide::kLogDivide, u"1"_s);
    EXPECT_EQ(countOf(makeLog(), u"<H3 ALIGN"_s), 0);
    EXPECT_TRUE(siteHas(u"x_02.htm"_s));
}

TEST_F(MonthPage, APageThatIsNoLongerNeededStays) {
    writeDays({5, 6});
    divide(1, true);
    makeMonth();
    sql(u"DELETE FROM Contents WHERE Day = '2004/05/05'"_s);
    makeMonth();
    EXPECT_TRUE(siteHas(u"x_01.htm"_s));
    EXPECT_EQ(uploadRows(), QStringList{u"site,x.htm"_s});
}

TEST_F(MonthPage, APrivateDayTakesNoPageOfTheSite) {
    writeDays({4, 6});
    writePrivate(u"2004/05/05"_s, u"secret"_s);
    divide(1, true);
    makeMonth();
    EXPECT_TRUE(sitePage(u"x_01.htm"_s).contains(u">day 4<"_s));
    EXPECT_FALSE(siteHas(u"x_02.htm"_s));
    makePreview();
    EXPECT_TRUE(sitePage(u"x_01.htm"_s).contains(u">secret<"_s));
    EXPECT_TRUE(sitePage(u"x_02.htm"_s).contains(u">day 4<"_s));
}

TEST_F(MonthPage, ADayThatIsNoDateIsNamedAndTheOldPageStays) {
    writeDays({6});
    makeMonth();
    const QByteArray before = bytesOf(path(u"site/x.htm"_s));
    sql(u"INSERT INTO Contents (Day, Number, Title, Private) VALUES ('2004/05/6x', 1, 'odd', 0)"_s);
    const QString failure = failureOf([&] { makeMonth(); });
    EXPECT_TRUE(failure.contains(u"2004/05/6x"_s)) << failure.toStdString();
    EXPECT_EQ(bytesOf(path(u"site/x.htm"_s)), before);
}

TEST_F(MonthPage, ACurrentPageOfNoMonthIsRefused) {
    setSetting(keys::frame::kFrameOn, u"1"_s);
    for (const QString& month : {u""_s, u"2004/13"_s, u"2004/ab"_s}) {
        const QString failure = failureOf([&] { makeMonth(month); });
        EXPECT_TRUE(failure.contains(u"「"_s + month + u"」"_s)) << failure.toStdString();
        EXPECT_FALSE(siteHas(u"x.htm"_s));
    }
}

TEST_F(MonthPage, ALogOfNoMonthIsMadeWithoutCalendar) {
    setSetting(keys::calender::kUse, u"1"_s);
    const QString page = makeLog(u"2004/ab"_s);
    EXPECT_TRUE(page.contains(u"<a name=TOP>2004年ab月分</a>"_s));
    EXPECT_TRUE(lacks(page, u"<table"_s));
}

TEST_F(MonthPage, FeedsAreMadeBeforeAnyPage) {
    turnFeedsOn();
    writeFile(path(u"site/x.htm"_s), "old page");
    writeFile(path(u"site/x_RSS091.xml"_s), "old feed");
    writePrivate(u"2004/05/06"_s, u"secret"_s);
    EXPECT_NE(failureOf([&] { makeMonth(); }), u""_s);
    EXPECT_EQ(sitePage(u"x.htm"_s), u"old page"_s);
    EXPECT_FALSE(siteHas(u"x_RSS091.xml"_s));
    EXPECT_FALSE(exists(session.UserPath + u"upload.tmp"_s));
}

TEST_F(MonthPage, AReadOnlyPageStaysWholeAndTheListIsNotWritten) {
    writeFile(path(u"site/x.htm"_s), "old page");
    setReadOnly(u"x.htm"_s);
    writeDays({5, 6});
    divide(1, true);
    const QString failure = failureOf([&] { makeMonth(); });
    EXPECT_TRUE(failure.contains(path(u"site/x.htm"_s))) << failure.toStdString();
    EXPECT_EQ(sitePage(u"x.htm"_s), u"old page"_s);
    EXPECT_FALSE(exists(session.UserPath + u"upload.tmp"_s));
}

TEST_F(MonthPage, ADividedPageThatFailsLeavesTheMonthFileOld) {
    writeFile(path(u"site/x.htm"_s), "old page");
    writeFile(path(u"site/x_01.htm"_s), "old divided page");
    setReadOnly(u"x_01.htm"_s);
    writeDays({5, 6});
    divide(1, true);
    EXPECT_NE(failureOf([&] { makeMonth(); }), u""_s);
    EXPECT_EQ(sitePage(u"x.htm"_s), u"old page"_s);
    EXPECT_EQ(sitePage(u"x_01.htm"_s), u"old divided page"_s);
    EXPECT_EQ(QDir(path(u"site"_s)).entryList(QDir::Files | QDir::Hidden), (QStringList{u"x.htm"_s, u"x_01.htm"_s}));
}

TEST_F(MonthPage, ANumberBeyondItsRangeIsNamedAndTheOldPageStays) {
    writeFile(path(u"site/x.htm"_s), "old page");
    setSetting(keys::day_list::kUse, u"1"_s);
    setSetting(keys::day_list::kMarginLeft, u"40000"_s);
    const QString failure = failureOf([&] { makeMonth(); });
    EXPECT_TRUE(failure.contains(u"MarginLeft"_s)) << failure.toStdString();
    EXPECT_EQ(sitePage(u"x.htm"_s), u"old page"_s);
}

TEST_F(MonthPage, ANumberThatIsReadCountsWhetherOrNotItIsPrinted) {
    using site::PageKind;
    const struct {
        core::Setting key;
        std::vector<PageKind> kinds; ///< of the pages that read it, with a calendar and without frames
    } cases[] = {
        {keys::day_list::kMarginLeft, {PageKind::Current, PageKind::Log}},
        {keys::day_list::kAddTitle, {PageKind::Current, PageKind::Log}},
        {keys::general::kUseLog, {PageKind::Current, PageKind::Log}},
        {keys::general::kGenre, {PageKind::Current, PageKind::Log}},
        {keys::general::kVellLinkOn, {PageKind::Current, PageKind::Log}},
        {keys::general::kUseCategory, {PageKind::Current, PageKind::Log}},
        {keys::divide::kLogDivide, {PageKind::Current, PageKind::Log}},
        {keys::halo_scan::kHaloScanOn, {PageKind::Current, PageKind::Log}},
        {keys::calender::kBorderSize, {PageKind::Current, PageKind::Log}},
        {keys::calender::kFirstDayOfWeek, {PageKind::Current, PageKind::Log}},
        {keys::frame::kFrameOn, {PageKind::Current, PageKind::Log}},
        {keys::contents::kTableBorder, {PageKind::Current, PageKind::Log}},
        {keys::page_move_link::kPageMoveOn, {PageKind::Current, PageKind::Log}},
        {keys::rss::kRSSOn, {PageKind::Current}},
        {keys::divide::kDiaryTerm, {PageKind::Current}},
        {keys::divide::kUseFileName2Day, {}},
        {keys::frame::kScrolling, {}},
    };
    writeDays({6});
    setSetting(keys::calender::kUse, u"1"_s);
    setSetting(keys::calender::kNoBorder, u"1"_s);
    for (const auto& c : cases) {
        for (const PageKind kind : {PageKind::Current, PageKind::Log}) {
            SCOPED_TRACE(c.key.name.toString().toStdString() + (kind == PageKind::Log ? " of a log" : ""));
            writeFile(path(u"site/x.htm"_s), "old page");
            removeSetting(c.key);
            setSetting(c.key, u"40000"_s);
            const bool isRead = std::find(c.kinds.begin(), c.kinds.end(), kind) != c.kinds.end();
            const QString failure = failureOf([&] { kind == PageKind::Log ? makeLog() : makeMonth(); });
            EXPECT_EQ(failure.contains(c.key.name), isRead) << failure.toStdString();
            EXPECT_EQ(sitePage(u"x.htm"_s) == u"old page"_s, isRead);
        }
        removeSetting(c.key);
    }
}

TEST_F(MonthPage, ANumberBeyondItsRangeLeavesFeedsAndDividedPagesOldToo) {
    turnFeedsOn();
    writeDays({5, 6});
    divide(1, false);
    setSetting(keys::contents::kTableWidth, u"-32769"_s);
    for (const QString& name : {u"x.htm"_s, u"x_01.htm"_s, u"x_ATOM.xml"_s})
        writeFile(path(u"site/"_s + name), "old");
    EXPECT_TRUE(failureOf([&] { makeMonth(); }).contains(u"TableWidth"_s));
    for (const QString& name : {u"x.htm"_s, u"x_01.htm"_s, u"x_ATOM.xml"_s})
        EXPECT_EQ(sitePage(name), u"old"_s) << name.toStdString();
}

TEST_F(MonthPage, WithoutACalendarItsNumbersAreNotRead) {
    setSetting(keys::calender::kBorderSize, u"40000"_s);
    EXPECT_EQ(failureOf([&] { makeMonth(); }), u""_s);
    setSetting(keys::frame::kFrameOn, u"1"_s);
    EXPECT_TRUE(failureOf([&] { makeMonth(); }).contains(u"BorderSize"_s)) << "frames always carry one";
}

TEST_F(MonthPage, APreviewIsReadByWhoMayReadTheDiary) {
    writeDays({5, 6});
    divideByDay(false);
    setSetting(keys::frame::kFrameOn, u"1"_s);
    const QStringList names{u"tmp.htm"_s, u"tmp_C.htm"_s, u"tmp_D.htm"_s, u"2004_05_05.htm"_s};
    writeFile(session.DataPath + names.first(), "of an older program");
    ASSERT_TRUE(QFile::setPermissions(session.DataPath + names.first(), QFileDevice::Permissions(0x6644)));
    saver().SaveTmpFile();
    for (const QString& name : names)
        EXPECT_EQ(modeOf(session.DataPath + name), 0600U) << name.toStdString();
    makeMonth();
    EXPECT_NE(modeOf(path(u"site/x_D.htm"_s)) & 0044, 0U) << "the site is for everybody";

    session.FilePath = session.DataPath;
    QFile::remove(session.DataPath + names.first());
    saver().SaveTmpFile();
    EXPECT_NE(modeOf(session.DataPath + names.first()) & 0044, 0U) << "the site lies there";
}

} // namespace
} // namespace velloria::tests
