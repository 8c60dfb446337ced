#include "site/same_day_page.h"

#include "site/site_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class SameDayPage : public SiteHome {
protected:
    SameDayPage() { setSetting(keys::day_list::kUse, u"1"_s); }

    QString makePage(const QString& day = u"2004/05/06"_s) {
        const QString file = session.DataPath + u"oldtmp.htm"_s;
        count = site::MakeSameDayPage(run, file, day);
        return pageOf(file);
    }
    /// Days of the page's entries, in order.
    static QStringList titles(const QString& page) {
        QStringList titles;
        for (const QString& line : linesFrom(page, u"<H3 ALIGN"_s))
            titles += line.section(u'>', 2, 2).section(u'(', 0, 0);
        return titles;
    }

    int count = -1;
};

TEST_F(SameDayPage, HoldsTheSameDayOfAllOtherYearsPrivateOnesToo) {
    write(u"2004/05/06"_s, u"own"_s);
    write(u"2003/05/06"_s, u"last year"_s);
    writePrivate(u"2005/05/06"_s, u"next year"_s);
    write(u"2003/06/05"_s, u"other day"_s);
    write(u"2003/05/16"_s, u"other day"_s);
    EXPECT_EQ(titles(makePage()), (QStringList{u"next year"_s, u"last year"_s}));
    EXPECT_EQ(count, 2);
}

TEST_F(SameDayPage, ComesNewestYearFirstAndLowestNumberFirst) {
    write(u"2002/05/06"_s, u"oldest"_s);
    write(u"2003/05/06"_s, u"first"_s);
    write(u"2003/05/06"_s, u"second"_s);
    EXPECT_EQ(titles(makePage()), (QStringList{u"first"_s, u"second"_s, u"oldest"_s}));
}

TEST_F(SameDayPage, IsReadByWhoMayReadTheDiary) {
    makePage();
    EXPECT_EQ(modeOf(session.DataPath + u"oldtmp.htm"_s), 0600U);
}

TEST_F(SameDayPage, WithoutEntriesSaysSoInTheList) {
    write(u"2004/05/06"_s, u"own"_s);
    EXPECT_TRUE(makePage().endsWith(
        u"</SCRIPT>\r\n</p>\r\n以前の同じ日の日記はありません。\r\n</div><hr>\r\n\r\n</BODY></HTML>\r\n"_s));
    EXPECT_EQ(count, 0);
}

TEST_F(SameDayPage, WithTheListOffIsEmptyButForTheButton) {
    removeSetting(keys::day_list::kUse);
    EXPECT_EQ(makePage(), u"<HTML lang=\"ja\"><HEAD><TITLE>05/06の日記</TITLE></HEAD>\r\n"
                          "<BODY TEXT='' BGCOLOR='' background=''>\r\n"
                          "<p align=center><INPUT type=button name=Close value=\"Close Window\">\r\n"
                          "<SCRIPT LANGUAGE=\"VBScript\">\r\nSub Close_OnClick()\r\n"
                          "location.HREF = \"Event:Close\"\r\nEnd Sub\r\n</SCRIPT>\r\n</p>\r\n</BODY></HTML>\r\n"_s);
}

TEST_F(SameDayPage, TheListLinksEachEntryByItsDay) {
    write(u"2003/05/06"_s, u"a"_s);
    write(u"2003/05/06"_s, u"b"_s);
    const QString link = u"<a href=\"#2003/05/06\">2003/05/06</a>"_s;
    EXPECT_TRUE(hasLines(makePage(), {u"</p>"_s, link + u"<br>"_s, link + u"<br>"_s, u"</div><hr>"_s, u""_s}));
    setSetting(keys::day_list::kAddTitle, u"1"_s);
    EXPECT_TRUE(hasLines(makePage(), {link + u"　a<br>"_s, link + u"　b<br>"_s, u"</div><hr>"_s}));
}

TEST_F(SameDayPage, TheLeapDayMeetsLeapYearsAlone) {
    write(u"2000/02/29"_s, u"leap"_s);
    write(u"2003/02/28"_s, u"before"_s);
    write(u"2003/03/01"_s, u"behind"_s);
    EXPECT_EQ(titles(makePage(u"2004/02/29"_s)), QStringList{u"leap"_s});
}

TEST_F(SameDayPage, MissingTextsPrintNothing) {
    store::Entry entry = entryOf(u"2003/05/06"_s, u"題"_s);
    entry.contents = QString();
    entry.extend = QString();
    write(entry);
    const QString normal = u"<DIV STYLE=\"COLOR:;BACKGROUND:\" align=>"_s;
    EXPECT_TRUE(hasLines(makePage(), {normal, u"</DIV>"_s, u"<DIV ALIGN=\"RIGHT\"><A HREF=\"#TOP\">top</A></DIV>"_s}));
    setSetting(keys::contents::kHTMLType, u"1"_s);
    const QString cell = u"<TR><TD COLSPAN=2 BGCOLOR=><FONT COLOR=>"_s;
    EXPECT_TRUE(hasLines(makePage(), {cell, u"</FONT></TD></TR>"_s, u"</TABLE></DIV>"_s}));
}

TEST_F(SameDayPage, AnEmptyTextIsAnEmptyLine) {
    write(u"2003/05/06"_s, u"題"_s, u""_s);
    EXPECT_TRUE(
        hasLines(makePage(), {u"<DIV STYLE=\"COLOR:;BACKGROUND:\" align=>"_s, u""_s, u"<BR>"_s, u""_s, u"</DIV>"_s}));
    setSetting(keys::contents::kHTMLType, u"1"_s);
    EXPECT_TRUE(
        hasLines(makePage(), {u"<TR><TD COLSPAN=2 BGCOLOR=><FONT COLOR=>"_s, u""_s, u"<br></FONT></TD></TR>"_s}));
}

TEST_F(SameDayPage, APostscriptFollowsABreakInBothForms) {
    store::Entry entry = entryOf(u"2003/05/06"_s, u"題"_s);
    entry.contents = u"本文"_s;
    entry.extend = u"続き"_s;
    write(entry);
    EXPECT_TRUE(hasLines(makePage(), {u"本文"_s, u"<BR>"_s, u"続き"_s, u"</DIV>"_s}));
    setSetting(keys::contents::kHTMLType, u"1"_s);
    EXPECT_TRUE(hasLines(makePage(), {u"本文"_s, u"<br>続き</FONT></TD></TR>"_s}));
}

TEST_F(SameDayPage, HasNoWeatherGenreMarkOrTitleStyle) {
    store::Entry entry = entryOf(u"2003/05/06"_s, u"題"_s);
    entry.weather = u"晴"_s;
    entry.genre = u"音楽"_s;
    write(entry);
    setSetting(keys::general::kWeather, u"1"_s);
    setSetting(keys::general::kGenre, u"1"_s);
    setSetting(keys::contents::kTitleSpanTag, u"color:red"_s);
    setSetting(keys::halo_scan::kHaloScanOn, u"1"_s);
    for (const QString& type : {u"0"_s, u"1"_s}) {
        setSetting(keys::contents::kHTMLType, type);
        const QString page = makePage();
        for (const QString& part : {u"<IMG"_s, u"音楽"_s, u"<!--"_s, u"<SPAN"_s, u"HaloScan"_s, u"charset"_s})
            EXPECT_TRUE(lacks(page, part));
    }
}

TEST_F(SameDayPage, TheTableFormClosesItsAnchorInTheSecondCell) {
    setSetting(keys::contents::kHTMLType, u"1"_s);
    write(u"2003/05/06"_s, u"題"_s);
    EXPECT_TRUE(hasLines(makePage(),
                         {u"<DIV ALIGN=>"_s, u"<TABLE BORDER=0 BGCOLOR=\"\" CELLSPACING=0 BORDERCOLOR= width=100%>"_s,
                          u"<TR><TD ALIGN= BGCOLOR=><A NAME=\"2003/05/06\"><FONT COLOR=>題</FONT></TD>"
                          "<TD ALIGN=RIGHT BGCOLOR=><FONT COLOR=>2003/05/06</a></FONT></TD></TR>"_s}));
    EXPECT_TRUE(makePage().endsWith(
        u"</TABLE></DIV>\r\n<DIV ALIGN=\"RIGHT\"><A HREF=\"#TOP\">top</A></DIV><BR>\r\n</BODY></HTML>\r\n"_s));
}

TEST_F(SameDayPage, IsShownByItsCommand) {
    write(u"2003/05/06"_s, u"last year"_s);
    desk.events = {};
    QStringList shown;
    const QString file = site::sameDayCommand(run, u"2004/05/06"_s, [&](const QString& caption, const QString& page) {
        EXPECT_EQ(titles(pageOf(page)), QStringList{u"last year"_s});
        shown = {caption, page};
    });
    EXPECT_EQ(file, session.DataPath + u"oldtmp.htm"_s);
    EXPECT_EQ(shown, (QStringList{u"過去の日記"_s, file}));
    EXPECT_EQ(turns(), (QStringList{u"hourglass"_s, u"default"_s}));
}

} // namespace
} // namespace velloria::tests
