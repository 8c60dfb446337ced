#include "site/site_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

/// A row of the grid: grey days in front, days, grey days behind.
QString row(int greyFrom, int greyTo, int from, int to, int greyBehind = 0) {
    QString row = u"<tr align=center bgcolor=''>"_s;
    for (int day = greyFrom; day <= greyTo; ++day)
        row += u"<td><font color='gray'>%1</font></td>"_s.arg(day);
    for (int day = from; day <= to; ++day)
        row += u"<td>%1</td>"_s.arg(day);
    for (int day = 1; day <= greyBehind; ++day)
        row += u"<td><font color='gray'>%1</font></td>"_s.arg(day);
    return row + u"</tr>"_s;
}

class CalendarPage : public SiteHome {
protected:
    CalendarPage() { setSetting(keys::calender::kUse, u"1"_s); }

    /// The rows of days, without that of the weekdays.
    static QStringList rows(const QString& page) { return linesFrom(page, u"<tr "_s).mid(1); }

    /// The content of a day's cell in a page.
    static QString cell(const QString& page, int day) {
        const QString end = u">%1</a></td>"_s.arg(day);
        const qsizetype to = page.indexOf(end);
        if (to < 0)
            return page.contains(u"<td>%1</td>"_s.arg(day)) ? QString::number(day) : u"no such day"_s;
        const qsizetype from = page.lastIndexOf(u"<td>"_s, to) + 4;
        return page.mid(from, to + end.size() - from - 5);
    }
};

TEST_F(CalendarPage, AMonthThatBeginsOnASundayHasAFirstRowOfGreyDays) {
    EXPECT_EQ(rows(makeMonth(u"2004/02"_s)), (QStringList{row(25, 31, 1, 0), row(1, 0, 1, 7), row(1, 0, 8, 14),
                                                          row(1, 0, 15, 21), row(1, 0, 22, 28), row(1, 0, 29, 29, 6)}));
}

TEST_F(CalendarPage, AMonthThatBeginsOnAMondayHasOneGreyDay) {
    EXPECT_EQ(rows(makeMonth(u"2004/03"_s)).first(), row(29, 29, 1, 6));
}

TEST_F(CalendarPage, AMonthThatBeginsOnASaturdayHasOneDayInItsFirstRow) {
    EXPECT_EQ(rows(makeMonth(u"2004/05"_s)).first(), row(25, 30, 1, 1));
}

TEST_F(CalendarPage, AMonthThatEndsOnASaturdayAddsNoGreyDay) {
    const QStringList january = rows(makeMonth(u"2004/01"_s));
    EXPECT_EQ(january.size(), 5);
    EXPECT_EQ(january.last(), row(1, 0, 25, 31));
}

TEST_F(CalendarPage, TheRestOfTheLastRowCountsFromOne) {
    EXPECT_EQ(rows(makeMonth(u"2004/05"_s)).last(), row(1, 0, 30, 31, 5));
}

TEST_F(CalendarPage, JanuaryFollowsDecemberOfTheYearBefore) {
    EXPECT_EQ(rows(makeMonth(u"2004/01"_s)).first(), row(28, 31, 1, 3));
}

TEST_F(CalendarPage, MarchOfALeapYearFollowsThe29th) {
    EXPECT_EQ(rows(makeMonth(u"2004/03"_s)).first(), row(29, 29, 1, 6));
    EXPECT_EQ(rows(makeMonth(u"2003/03"_s)).first(), row(23, 28, 1, 1));
}

TEST_F(CalendarPage, WeekdaysAreOnePrintWithRedSundayAndBlueSaturday) {
    setSetting(keys::calender::kTRBGColorTop, u"top"_s);
    EXPECT_TRUE(hasLines(makeMonth(), {u"<tr align=center bgcolor='top'><td><font color='red'>Sun</font></td><td>Mon"
                                       "</td><td>Tue</td><td>Wed</td><td>Thu</td><td>Fri</td><td><font color='blue'>"
                                       "Sat</font></td></tr>"_s}));
    setSetting(keys::calender::kType, u"1"_s);
    EXPECT_TRUE(hasLines(makeMonth(), {u"<tr align=center bgcolor='top'><td><font color='red'>日</font></td><td>月"
                                       "</td><td>火</td><td>水</td><td>木</td><td>金</td><td><font color='blue'>"
                                       "土</font></td></tr>"_s}));
}

TEST_F(CalendarPage, AFirstDayOfWeekShiftsNamesAndLosesTheFirstOfTheMonth) {
    setSetting(keys::calender::kFirstDayOfWeek, u"1"_s);
    const QString page = makeMonth(u"2004/03"_s);
    EXPECT_TRUE(hasLines(page, {u"<tr align=center bgcolor=''><td>Mon</td><td>Tue</td><td>Wed</td><td>Thu</td>"
                                "<td>Fri</td><td><font color='blue'>Sat</font></td><td></td></tr>"_s}));
    EXPECT_EQ(rows(page).first(), row(28, 29, 2, 7));
    EXPECT_EQ(rows(page).at(1), row(1, 0, 8, 14));
}

TEST_F(CalendarPage, TheThreeAlignmentsAreKnownInAnyCase) {
    const struct {
        QString value;
        QString line;
    } cases[] = {{u"Right"_s, u"<DIV ALIGN=RIGHT>"_s},
                 {u"CENTER"_s, u"<DIV ALIGN=CENTER>"_s},
                 {u"left"_s, u"<DIV ALIGN=LEFT>"_s}};
    for (const auto& c : cases) {
        setSetting(keys::calender::kTableAlign, c.value);
        EXPECT_EQ(linesFrom(makeMonth(), u"<DIV ALIGN"_s), QStringList{c.line});
    }
}

TEST_F(CalendarPage, AnotherAlignmentOpensNoDivisionAndClosesOneAllTheSame) {
    for (const QString& value : {u""_s, u"middle"_s, u"Justify"_s}) {
        setSetting(keys::calender::kTableAlign, value);
        const QString page = makeMonth();
        EXPECT_EQ(linesFrom(page, u"<DIV"_s), QStringList()) << value.toStdString();
        EXPECT_TRUE(hasLines(page, {u"</table>"_s, u"</DIV>"_s, u"<BR>"_s}));
    }
}

TEST_F(CalendarPage, WithoutBorderTheBorderAttributesAreLeftOut) {
    setSetting(keys::calender::kTableBGColor, u"white"_s);
    setSetting(keys::calender::kCellPadding, u"3"_s);
    setSetting(keys::calender::kBorderSize, u"2"_s);
    EXPECT_TRUE(hasLines(makeMonth(), {u"<table bgcolor='white' cellpadding=3 border=2 bordercolor='' "
                                       "bordercolorlight='' bordercolordark=''>"_s}));
    setSetting(keys::calender::kNoBorder, u"1"_s);
    EXPECT_TRUE(hasLines(makeMonth(), {u"<table bgcolor='white' cellpadding=3>"_s}));
}

TEST_F(CalendarPage, AMonthWithoutEntriesHasPlainNumbersAndStands) {
    const QString page = makeMonth();
    EXPECT_EQ(countOf(page, u"<a href=./"_s), 0);
    EXPECT_TRUE(hasLines(page, {row(1, 0, 30, 31, 5), u"</table>"_s, u"</DIV>"_s}));
}

TEST_F(CalendarPage, ADayLeadsToItsAnchorWithAnUnquotedAddressAndAQuotedTarget) {
    write(u"2004/05/06"_s, u"a"_s);
    write(u"2004/05/06"_s, u"b"_s);
    const QString page = makeMonth();
    EXPECT_EQ(cell(page, 6), u"<a href=./x.htm#2004/05/06 target=\"_self\">6</a>"_s);
    EXPECT_EQ(cell(page, 7), u"7"_s);
    EXPECT_EQ(countOf(page, u"<a href=./"_s), 1);
}

TEST_F(CalendarPage, TheMonthFileKeepsItsOwnEnding) {
    write(u"2004/05/06"_s, u"a"_s);
    monthPage().MakeHTML(path(u"site/index.html"_s), u"2004/05"_s, site::PageKind::Current, site::MakeList::No,
                         site::WithPrivate::No);
    EXPECT_EQ(cell(sitePage(u"index.html"_s), 6), u"<a href=./index.html#2004/05/06 target=\"_self\">6</a>"_s);
}

TEST_F(CalendarPage, ADayOnAnotherPageLeadsThere) {
    write(u"2004/05/06"_s, u"a"_s);
    write(u"2004/05/05"_s, u"b"_s);
    divide(1, true);
    const QString page = makeMonth();
    EXPECT_EQ(cell(page, 6), u"<a href=./x.htm#2004/05/06 target=\"_self\">6</a>"_s);
    EXPECT_EQ(cell(page, 5), u"<a href=./x_01.htm#2004/05/05 target=\"_self\">5</a>"_s);
}

TEST_F(CalendarPage, ADayFileIsEnteredAtItsTop) {
    write(u"2004/05/06"_s, u"a"_s);
    write(u"2004/05/05"_s, u"b"_s);
    divideByDay(true);
    EXPECT_EQ(cell(makeMonth(), 5), u"<a href=./2004_05_05.htm target=\"_self\">5</a>"_s);
}

TEST_F(CalendarPage, InFramesDaysLeadToTheDiaryFrame) {
    write(u"2004/05/06"_s, u"a"_s);
    write(u"2004/05/05"_s, u"b"_s);
    divide(1, true);
    setSetting(keys::frame::kFrameOn, u"1"_s);
    makeMonth();
    const QString column = sitePage(u"x_C.htm"_s);
    EXPECT_EQ(cell(column, 6), u"<a href=./x_D.htm#2004/05/06 target=\"DIARY\">6</a>"_s);
    EXPECT_EQ(cell(column, 5), u"<a href=./x_D_01.htm#2004/05/05 target=\"DIARY\">5</a>"_s);
    divideByDay(true);
    makeMonth();
    EXPECT_EQ(cell(sitePage(u"x_C.htm"_s), 5), u"<a href=./2004_05_05.htm target=\"DIARY\">5</a>"_s);
}

TEST_F(CalendarPage, ALogKnowsNoFrames) {
    write(u"2004/05/06"_s, u"a"_s);
    setSetting(keys::frame::kFrameOn, u"1"_s);
    EXPECT_EQ(cell(makeLog(), 6), u"<a href=./x.htm#2004/05/06 target=\"_self\">6</a>"_s);
}

TEST_F(CalendarPage, APrivateDayIsLinkedInThePreviewAndAPlainNumberOnTheSite) {
    writePrivate(u"2004/05/06"_s, u"秘密"_s);
    EXPECT_EQ(cell(makeMonth(), 6), u"6"_s);
    EXPECT_EQ(cell(makePreview(), 6), u"<a href=./x.htm#2004/05/06 target=\"_self\">6</a>"_s);
}

TEST_F(CalendarPage, ADayThatFitsNoCellDoesNotBlockTheLaterOnes) {
    write(u"2004/05/06"_s, u"a"_s);
    sql(u"INSERT INTO Contents (Day, Number, Title, Private) VALUES ('2004/05/003', 1, 'odd', 0)"_s);
    const QString page = makeMonth();
    EXPECT_EQ(cell(page, 3), u"3"_s);
    EXPECT_EQ(cell(page, 6), u"<a href=./x.htm#2004/05/06 target=\"_self\">6</a>"_s);
}

TEST_F(CalendarPage, TheGridGoesOnInThePage) {
    const QString page = makeMonth();
    EXPECT_LT(page.indexOf(u"<H3 align="_s), page.indexOf(u"<table "_s));
    EXPECT_LT(page.indexOf(u"</table>"_s), page.indexOf(u"<HR>"_s));
}

TEST_F(CalendarPage, AYearBefore2000IsRefusedAndTheOldPageStays) {
    write(u"1999/12/31"_s, u"a"_s);
    writeFile(path(u"site/x.htm"_s), "old page");
    const QString failure = failureOf([&] { makeMonth(u"1999/12"_s); });
    EXPECT_TRUE(failure.contains(u"1999年12月"_s)) << failure.toStdString();
    EXPECT_EQ(sitePage(u"x.htm"_s), u"old page"_s);
}

TEST_F(CalendarPage, AYearBefore2000HasAPageWithoutCalendar) {
    write(u"1999/12/31"_s, u"a"_s);
    removeSetting(keys::calender::kUse);
    EXPECT_TRUE(makeMonth(u"1999/12"_s).contains(u"1999年12月分"_s));
}

} // namespace
} // namespace velloria::tests
