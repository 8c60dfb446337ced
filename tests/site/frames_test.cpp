#include "registers/log_register.h"
#include "site/site_home.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Frames : public SiteHome {
protected:
    Frames() { setSetting(keys::frame::kFrameOn, u"1"_s); }

    QString frameSet() { return makeMonth(); }
    QString leftColumn() {
        makeMonth();
        return sitePage(u"x_C.htm"_s);
    }
};

TEST_F(Frames, TheMonthFileIsAFrameset) {
    setSetting(keys::general::kHPTitle, u"日記"_s);
    setSetting(keys::frame::kCalenderFrameSize, u"20%"_s);
    setSetting(keys::frame::kBorder, u"1"_s);
    EXPECT_EQ(frameSet(), u"<HTML lang=\"ja\">\r\n<HEAD>\r\n<TITLE>日記</TITLE>\r\n"
                          "<FRAMESET COLS=20%,* FRAMEBORDER=\"YES\">\r\n"
                          "<FRAME SRC=\"./x_C.htm\" Name=\"CALENDER\" Scrolling=\"NO\" NORESIZE>\r\n"
                          "<FRAME SRC=\"./x_D.htm\" Name=\"DIARY\">\r\n</HEAD></HTML>\r\n"_s);
}

TEST_F(Frames, AMonthFileWithoutAnEndingNamesItsFramesByItsOwnName) {
    const QString folder = path(u"a.b/"_s);
    ASSERT_TRUE(QDir().mkpath(folder));
    monthPage().MakeHTML(folder + u"index"_s, u"2004/05"_s, site::PageKind::Current, site::MakeList::Yes,
                         site::WithPrivate::No);
    EXPECT_TRUE(hasLines(pageOf(folder + u"index"_s), {u"<FRAME SRC=\"./index_D.htm\" Name=\"DIARY\">"_s}));
}

TEST_F(Frames, TheBorderWordComparesAsText) {
    const struct {
        QString value;
        QString word;
    } cases[] = {{u"0"_s, u"NO"_s}, {u"1"_s, u"YES"_s}, {u"2"_s, u""_s},
                 {u"00"_s, u""_s},  {u"abc"_s, u""_s},  {u""_s, u""_s}};
    for (const auto& c : cases) {
        setSetting(keys::frame::kBorder, c.value);
        EXPECT_TRUE(frameSet().contains(u" FRAMEBORDER=\""_s + c.word + u"\">"_s)) << c.value.toStdString();
    }
    removeSetting(keys::frame::kBorder);
    EXPECT_TRUE(frameSet().contains(u" FRAMEBORDER=\"\">"_s));
}

TEST_F(Frames, ScrollingAndResizeAreNumbers) {
    const struct {
        QString value;
        QString end;
    } cases[] = {
        {u"0"_s, u"Scrolling=\"NO\" NORESIZE>"_s}, {u"1"_s, u"Scrolling=\"YES\" RESIZE>"_s},
        {u"2"_s, u"Scrolling=\"\" >"_s},           {u"abc"_s, u"Scrolling=\"NO\" NORESIZE>"_s},
        {u""_s, u"Scrolling=\"NO\" NORESIZE>"_s},
    };
    for (const auto& c : cases) {
        setSetting(keys::frame::kScrolling, c.value);
        setSetting(keys::frame::kResize, c.value);
        EXPECT_TRUE(hasLines(frameSet(), {u"<FRAME SRC=\"./x_C.htm\" Name=\"CALENDER\" "_s + c.end}));
    }
}

TEST_F(Frames, FeedLinksStandBehindTheFrames) {
    write(u"2004/05/06"_s, u"a"_s);
    turnFeedsOn(u"http://h.example/x.htm"_s);
    const QString page = frameSet();
    const QStringList lines = page.split(u"\r\n"_s);
    ASSERT_EQ(lines.size(), 12);
    EXPECT_TRUE(lines[5].startsWith(u"<FRAME SRC=\"./x_D.htm\""_s));
    EXPECT_EQ(lines[6], u"<link rel=\"alternate\" type=\"application/rss+xml\" title=\"RSS0.93\" "
                        "href=\"http://h.example/x_RSS091.xml\" />"_s);
    EXPECT_EQ(lines[10], u"</HEAD></HTML>"_s);
}

TEST_F(Frames, AllPagesOfTheMonthHangOnTheDiaryFile) {
    write(u"2004/05/06"_s, u"newest"_s);
    write(u"2004/05/05"_s, u"older"_s);
    divide(1, true);
    EXPECT_TRUE(lacks(makeMonth(), u"newest"_s));
    EXPECT_TRUE(sitePage(u"x_D.htm"_s).contains(u"newest"_s));
    EXPECT_TRUE(sitePage(u"x_D_01.htm"_s).contains(u"older"_s));
    EXPECT_FALSE(siteHas(u"x_01.htm"_s));
    EXPECT_TRUE(hasLines(sitePage(u"x_D_01.htm"_s), {u"<DIV ALIGN=\"RIGHT\"><A HREF=\"#TOP\">top</A></DIV>"_s}));
}

TEST_F(Frames, ADayFileHasNoFrameSuffix) {
    write(u"2004/05/06"_s, u"newest"_s);
    write(u"2004/05/05"_s, u"older"_s);
    divideByDay(true);
    makeMonth();
    EXPECT_TRUE(sitePage(u"2004_05_05.htm"_s).contains(u"older"_s));
    EXPECT_FALSE(siteHas(u"2004_05_05_D.htm"_s));
}

TEST_F(Frames, AlwaysCarryACalendarWithoutABreakBehindIt) {
    for (const QString& use : {u"0"_s, u"1"_s}) {
        setSetting(keys::calender::kUse, use);
        const QString column = leftColumn();
        EXPECT_TRUE(hasLines(column, {u"<div align=center>2004年5月</div>"_s,
                                      u"<table bgcolor='' cellpadding=0 border=0 bordercolor='' bordercolorlight='' "
                                      "bordercolordark=''>"_s}));
        EXPECT_TRUE(lacks(column, u"<BR>"_s));
        EXPECT_TRUE(lacks(sitePage(u"x_D.htm"_s), u"<table "_s));
        EXPECT_TRUE(lacks(sitePage(u"x_D.htm"_s), u"<BR>\r\n"_s));
    }
}

TEST_F(Frames, TheLeftColumnHasItsOwnHead) {
    setSetting(keys::general::kHPTitle, u"日記"_s);
    setSetting(keys::calender_window::kTextColor, u"black"_s);
    setSetting(keys::calender_window::kBGColor, u"white"_s);
    setSetting(keys::calender_window::kBGImage, u"left.gif"_s);
    setSetting(keys::calender_window::kHeadTag, u"h"_s);
    writePiece(u"h"_s, "head piece");
    EXPECT_TRUE(leftColumn().startsWith(
        u"<HTML lang=\"ja\">\r\n<HEAD>\r\n<meta http-equiv=Content-Type content=\"text/html; charset=shift_jis\">\r\n"
        "<TITLE>日記-CalenderFrame-</TITLE>\r\nhead piece\r\n</HEAD>\r\n"
        "<BODY TEXT=\"black\" BGColor=\"white\" background=\"left.gif\">\r\n\r\n<div align=center>2004年5月</div>\r\n"_s));
}

TEST_F(Frames, TheLeftColumnEndsWithItsOwnPiece) {
    setSetting(keys::calender_window::kDownText, u"d"_s);
    writePiece(u"d"_s, "down piece");
    EXPECT_TRUE(leftColumn().endsWith(u"</DIV>\r\ndown piece\r\n</BODY>\r\n</HTML>\r\n"_s));
}

TEST_F(Frames, TheLogScriptGoesWithTheSelectBoxIntoTheLeftColumn) {
    writeFile(session.MyPath + u"JS_Log.txt"_s, "<script>");
    EXPECT_TRUE(lacks(leftColumn(), u"<script>"_s));
    setSetting(keys::general::kLogType, u"JavaScript"_s);
    EXPECT_TRUE(hasLines(leftColumn(), {u"<TITLE>-CalenderFrame-</TITLE>"_s, u"<script>"_s, u""_s, u"</HEAD>"_s}));
    EXPECT_TRUE(lacks(sitePage(u"x_D.htm"_s), u"<script>"_s));
}

TEST_F(Frames, ALogIsNeverFramed) {
    write(u"2004/05/06"_s, u"text"_s);
    EXPECT_TRUE(makeLog().contains(u"<A NAME=\"2004/05/06_1\">"_s));
    EXPECT_FALSE(siteHas(u"x_C.htm"_s));
    EXPECT_FALSE(siteHas(u"x_D.htm"_s));
}

TEST_F(Frames, AnyValueButOneSwitchesThemOff) {
    setSetting(keys::frame::kFrameOn, u"2"_s);
    EXPECT_TRUE(lacks(makeMonth(), u"FRAMESET"_s));
    EXPECT_FALSE(siteHas(u"x_C.htm"_s));
}

TEST_F(Frames, TurnedOnOrOffTheyTakeNoPageAway) {
    write(u"2004/05/05"_s, u"older"_s);
    write(u"2004/05/06"_s, u"newer"_s);
    divide(1, false);
    setSetting(keys::frame::kFrameOn, u"0"_s);
    makeMonth();
    const QStringList withoutFrames = QDir(path(u"site"_s)).entryList(QDir::Files);
    EXPECT_GT(withoutFrames.size(), 2);
    setSetting(keys::frame::kFrameOn, u"1"_s);
    makeMonth();
    for (const QString& page : withoutFrames)
        EXPECT_TRUE(siteHas(page)) << page.toStdString();
    const QString column = sitePage(u"x_C.htm"_s);
    const QString diary = sitePage(u"x_D.htm"_s);
    setSetting(keys::frame::kFrameOn, u"0"_s);
    EXPECT_TRUE(lacks(makeMonth(), u"FRAMESET"_s));
    EXPECT_EQ(sitePage(u"x_C.htm"_s), column);
    EXPECT_EQ(sitePage(u"x_D.htm"_s), diary);
    EXPECT_FALSE(column.isEmpty() || diary.isEmpty());
}

class LogList : public SiteHome {
protected:
    LogList() {
        setSetting(keys::general::kUseLog, u"1"_s);
        setSetting(keys::general::kLogType, u"Normal"_s);
    }

    void addLogs() {
        const registers::LogRegister logs(session.databaseFile());
        logs.addLog({u"2004/03"_s, u"200403.htm"_s});
        logs.addLog({u"2003/12"_s, u"200312.htm"_s});
        logs.addLog({u"2004/04"_s, u"200404.htm"_s});
    }
};

TEST_F(LogList, LinksTheLogsInTheOrderOfTheTable) {
    addLogs();
    EXPECT_TRUE(hasLines(makeMonth(), {u"<HR>"_s, u"<P Align=>"_s, u"<A HREF=\"#this_month\">今月分</A><BR>"_s,
                                       u"<A HREF=\"./DiaryLog/200403.htm\">2004/03月分</A><BR>"_s,
                                       u"<A HREF=\"./DiaryLog/200312.htm\">2003/12月分</A><BR>"_s,
                                       u"<A HREF=\"./DiaryLog/200404.htm\">2004/04月分</A><BR>"_s, u"</P>"_s}));
}

TEST_F(LogList, StandsAtTheEndOfThePage) {
    EXPECT_TRUE(hasLines(makeMonth(), {u"<A HREF=\"#this_month\">今月分</A><BR>"_s, u"</P>"_s,
                                       u"<!-- 下追加テキスト(ここから) By Velloria -->"_s}));
}

TEST_F(LogList, WithoutLogsStillLinksThisMonth) {
    EXPECT_EQ(countOf(makeMonth(), u"<A HREF="_s), 1);
}

TEST_F(LogList, InFramesStandsInTheLeftColumnAndLeadsToTheDiaryFrame) {
    addLogs();
    setSetting(keys::frame::kFrameOn, u"1"_s);
    makeMonth();
    EXPECT_TRUE(hasLines(sitePage(u"x_C.htm"_s), {u"<A HREF=\"#this_month\">今月分</A><BR>"_s,
                                                  u"<A HREF=\"./DiaryLog/200403.htm\" target=\"DIARY\">2004/03月分</A>"
                                                  "<BR>"_s}));
    EXPECT_TRUE(lacks(sitePage(u"x_D.htm"_s), u"DiaryLog"_s));
}

TEST_F(LogList, IsASelectBoxInItsJavaScriptForm) {
    setSetting(keys::general::kLogType, u"JavaScript"_s);
    addLogs();
    EXPECT_TRUE(
        hasLines(makeMonth(), {u"<P Align=>"_s, u"<FORM name=\"selectionform\">過去ログ　<SELECT NAME=\"logselect\">"_s,
                               u"<OPTION VALUE=\"200403.htm\">2004/03"_s, u"<OPTION VALUE=\"200312.htm\">2003/12"_s,
                               u"<OPTION VALUE=\"200404.htm\">2004/04"_s, u"</SELECT>"_s,
                               u"<INPUT type=button value=\"ＯＫ\" onclick=\"{location.href='./DiaryLog/' + "
                               "GetSelectionText(this.form,logselect) }\"></FORM>"_s,
                               u"</P>"_s}));
}

TEST_F(LogList, TheSelectBoxMovesTheDiaryFrame) {
    setSetting(keys::general::kLogType, u"JavaScript"_s);
    setSetting(keys::frame::kFrameOn, u"1"_s);
    makeMonth();
    EXPECT_TRUE(hasLines(sitePage(u"x_C.htm"_s),
                         {u"<FORM name=\"selectionform\">過去ログ　<SELECT NAME=\"logselect\">"_s, u"</SELECT>"_s,
                          u"<INPUT type=button value=\"ＯＫ\" onclick=\"{parent.DIARY.location.href='./DiaryLog/' + "
                          "GetSelectionText(this.form,logselect) }\"></FORM>"_s}));
}

TEST_F(LogList, AnUnknownTypePrintsItsFrameAlone) {
    addLogs();
    setSetting(keys::general::kLogAlign, u"Left"_s);
    setSetting(keys::day_list::kMarginLeft, u"9"_s);
    for (const QString& type : {u""_s, u"normal"_s, u"Javascript"_s}) {
        setSetting(keys::general::kLogType, type);
        EXPECT_TRUE(hasLines(
            makeMonth(), {u"<HR>"_s, u"<P Align=Left>"_s, u"<div style=margin-left:9pt>"_s, u"</DIV>"_s, u"</P>"_s}));
    }
}

TEST_F(LogList, OnlyTheLeftAlignmentHasAMargin) {
    for (const QString& align : {u"Right"_s, u"Center"_s, u"left"_s}) {
        setSetting(keys::general::kLogAlign, align);
        EXPECT_TRUE(hasLines(makeMonth(),
                             {u"<P Align="_s + align + u'>', u"<A HREF=\"#this_month\">今月分</A><BR>"_s, u"</P>"_s}));
    }
}

TEST_F(LogList, NeedsItsSettingAndACurrentPage) {
    addLogs();
    EXPECT_TRUE(lacks(makeLog(), u"DiaryLog"_s));
    setSetting(keys::general::kUseLog, u"0"_s);
    EXPECT_TRUE(lacks(makeMonth(), u"DiaryLog"_s));
}

TEST_F(Frames, AFailureLeavesTheOldPage) {
    writeFile(path(u"site/x.htm"_s), "old page");
    write(u"1999/12/31"_s, u"a"_s);
    const QString failure = failureOf([&] { makeMonth(u"1999/12"_s); });
    EXPECT_TRUE(failure.contains(u"カレンダーとフレームを使わない設定"_s)) << failure.toStdString();
    EXPECT_EQ(sitePage(u"x.htm"_s), u"old page"_s);
    for (const QString& name : {u"x_C.htm"_s, u"x_D.htm"_s}) {
        QFile::remove(path(u"site/"_s + name));
        ASSERT_TRUE(QDir(path(u"site"_s)).mkdir(name)); // nothing can be renamed over a folder
        EXPECT_NE(failureOf([&] { makeMonth(); }), u""_s) << name.toStdString();
        EXPECT_EQ(sitePage(u"x.htm"_s), u"old page"_s) << name.toStdString();
        ASSERT_TRUE(QDir(path(u"site"_s)).rmdir(name));
    }
    makeMonth();
    EXPECT_TRUE(sitePage(u"x.htm"_s).contains(u"<FRAMESET"_s));
}

TEST_F(Frames, APageOfADayMayTakeTheFramesetsName) {
    useSite(u"2004_05_05.htm"_s);
    write(u"2004/05/05"_s, u"a"_s);
    divideByDay(false);
    saver().SaveHTML();
    EXPECT_TRUE(lacks(sitePage(u"2004_05_05.htm"_s), u"<FRAMESET"_s));
}

} // namespace
} // namespace velloria::tests
