#include "site/site_settings.h"

#include "core/program_keys.h"
#include "site/site_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using site::SiteSettings;

class SiteSettingsOfAHome : public SiteHome {
protected:
    SiteSettings settings() const { return SiteSettings(session); }
    /// Replaces the customize set by these lines.
    void writeSet(const QByteArray& lines) { writeFile(session.CustIniFile, lines); }
};

TEST_F(SiteSettingsOfAHome, AMissingKeyReadsAsWhatItsRowSays) {
    EXPECT_EQ(settings().text(keys::general::kHPTitle), u""_s);
    EXPECT_EQ(settings().number(keys::day_list::kMarginLeft), 0);
    EXPECT_FALSE(settings().isOn(keys::calender::kUse));
    EXPECT_EQ(settings().text(keys::rss::kTitle), u"日記"_s);
}

TEST_F(SiteSettingsOfAHome, AMissingFileReadsAsOneWithoutKeys) {
    session.CustIniFile = path(u"nowhere/Customize.ini"_s);
    session.FrameIniFile = u""_s;
    EXPECT_EQ(settings().text(keys::general::kHPTitle), u""_s);
    EXPECT_EQ(settings().number(keys::frame::kFrameOn), 0);
}

TEST_F(SiteSettingsOfAHome, AnEmptyKeyIsNotReplaced) {
    setSetting(keys::rss::kTitle, u""_s);
    EXPECT_EQ(settings().text(keys::rss::kTitle), u""_s);
}

TEST_F(SiteSettingsOfAHome, EachFileHoldsItsOwnKeys) {
    setSetting(keys::general::kHPTitle, u"customize"_s);
    setSetting(keys::frame::kCalenderFrameSize, u"frame"_s);
    setSetting(keys::rss::kHPURL, u"rss"_s);
    setSetting(keys::halo_scan::kUserName, u"comments"_s);
    EXPECT_TRUE(bytesOf(session.CustIniFile).contains("HPTitle=customize"));
    EXPECT_TRUE(bytesOf(session.FrameIniFile).contains("CalenderFrameSize=frame"));
    EXPECT_TRUE(bytesOf(session.RSSIniFile).contains("HPURL=rss"));
    EXPECT_TRUE(bytesOf(session.HaloScanIniFile).contains("UserName=comments"));
    EXPECT_EQ(settings().text(keys::general::kHPTitle), u"customize"_s);
    EXPECT_EQ(settings().text(keys::frame::kCalenderFrameSize), u"frame"_s);
    EXPECT_EQ(settings().text(keys::rss::kHPURL), u"rss"_s);
    EXPECT_EQ(settings().text(keys::halo_scan::kUserName), u"comments"_s);
    EXPECT_EQ(settings().text(keys::kMakerHomePage), u"https://www.example.com/velloria/"_s);
}

TEST_F(SiteSettingsOfAHome, TheOldSpellingsStay) {
    writeSet("[Calender]\r\nUse=1\r\nFirstDayOfWeek=3\r\n[CalenderWindow]\r\nBGColor=a\r\n[PageMoveLink]\r\n"
             "Separetor=b\r\n[Contents]\r\nCellspacing=5\r\nTBorderColor=c\r\n[General]\r\nVellLinkOn=1\r\n");
    writeFile(session.FrameIniFile, "[Frame]\r\nCalenderFrameSize=180\r\n[Divide]\r\nUseFileName2Day=1\r\n");
    EXPECT_TRUE(settings().isOn(keys::calender::kUse));
    EXPECT_EQ(settings().number(keys::calender::kFirstDayOfWeek), 3);
    EXPECT_EQ(settings().text(keys::calender_window::kBGColor), u"a"_s);
    EXPECT_EQ(settings().text(keys::page_move_link::kSeparetor), u"b"_s);
    EXPECT_EQ(settings().number(keys::contents::kCellspacing), 5);
    EXPECT_EQ(settings().text(keys::contents::kTBorderColor), u"c"_s);
    EXPECT_TRUE(settings().isOn(keys::general::kVellLinkOn));
    EXPECT_EQ(settings().text(keys::frame::kCalenderFrameSize), u"180"_s);
    EXPECT_TRUE(settings().isOn(keys::divide::kUseFileName2Day));
}

TEST_F(SiteSettingsOfAHome, SectionsMatchWithoutRegardToCase) {
    writeFile(session.RSSIniFile, "[General]\r\nrsson=1\r\n[setting]\r\nDIARYURL=u\r\n");
    writeFile(session.HaloScanIniFile, "[General]\r\nHaloScanOn=1\r\n");
    writeSet("[GENERAL]\r\nhptitle=t\r\n");
    EXPECT_TRUE(settings().isOn(keys::rss::kRSSOn));
    EXPECT_EQ(settings().text(keys::rss::kDiaryURL), u"u"_s);
    EXPECT_TRUE(settings().isOn(keys::halo_scan::kHaloScanOn));
    EXPECT_EQ(settings().text(keys::general::kHPTitle), u"t"_s);
}

TEST_F(SiteSettingsOfAHome, ANumberIsWhatStandsAtTheStartOfTheValue) {
    const struct {
        QString value;
        int number;
    } cases[] = {{u"12"_s, 12}, {u"-5"_s, -5}, {u"12abc"_s, 12}, {u"1.9"_s, 1}, {u"abc"_s, 0}, {u""_s, 0}};
    for (const auto& c : cases) {
        setSetting(keys::day_list::kMarginLeft, c.value);
        EXPECT_EQ(settings().number(keys::day_list::kMarginLeft), c.number) << c.value.toStdString();
    }
}

TEST_F(SiteSettingsOfAHome, ANumberBeyondSixteenBitsIsRefused) {
    setSetting(keys::day_list::kMarginLeft, u"40000"_s);
    const QString failure = failureOf([&] { settings().number(keys::day_list::kMarginLeft); });
    EXPECT_TRUE(failure.contains(u"MarginLeft"_s)) << failure.toStdString();
}

TEST_F(SiteSettingsOfAHome, ALongTextIsCutAt255BytesAndNeverInACharacter) {
    setSetting(keys::general::kVellLinkText, QString(300, u'a'));
    EXPECT_EQ(settings().text(keys::general::kVellLinkText), QString(255, u'a'));
    setSetting(keys::general::kStyleSheetURL, QString(200, u'あ'));
    EXPECT_EQ(settings().text(keys::general::kStyleSheetURL), QString(127, u'あ'));
}

TEST_F(SiteSettingsOfAHome, OuterBlanksAndOnePairOfQuotesGo) {
    writeSet("[PageMoveLink]\r\nSeparetor= | \r\n[Contents]\r\nTitleSpanTag='font:9pt'\r\n");
    EXPECT_EQ(settings().text(keys::page_move_link::kSeparetor), u"|"_s);
    EXPECT_EQ(settings().text(keys::contents::kTitleSpanTag), u"font:9pt"_s);
}

TEST_F(SiteSettingsOfAHome, OneRunSeesTheFilesAsTheyWereAtItsStart) {
    setSetting(keys::general::kHPTitle, u"old"_s);
    const SiteSettings before = settings();
    setSetting(keys::general::kHPTitle, u"new"_s);
    EXPECT_EQ(before.text(keys::general::kHPTitle), u"old"_s);
    EXPECT_EQ(settings().text(keys::general::kHPTitle), u"new"_s);
}

TEST_F(SiteSettingsOfAHome, AnEditByHandShowsOnTheNextPage) {
    writeSet("[General]\r\nHPTitle=first\r\n");
    EXPECT_TRUE(hasLines(makeMonth(), {u"<TITLE>first</TITLE>"_s}));
    writeSet("[General]\r\nHPTitle=second\r\n");
    EXPECT_TRUE(hasLines(makeMonth(), {u"<TITLE>second</TITLE>"_s}));
}

TEST_F(SiteSettingsOfAHome, APieceIsTheWholeFileWithItsOwnLineEnds) {
    setSetting(keys::general::kHeadTag, u"p"_s);
    const struct {
        QByteArray bytes;
        QString text;
    } cases[] = {
        {"one\ntwo\r\nthree\rfour", u"one\ntwo\r\nthree\rfour"_s},
        {"\r\n", u"\r\n"_s},
        {"X", u"X"_s},
        {"\x93\xfa\x8b\x4c &#233; &amp;", u"日記 &#233; &amp;"_s},
    };
    for (const auto& c : cases) {
        writePiece(u"p"_s, c.bytes);
        EXPECT_EQ(settings().piece(keys::general::kHeadTag), c.text);
    }
}

TEST_F(SiteSettingsOfAHome, APieceWithoutNameOrFileIsEmpty) {
    EXPECT_EQ(settings().piece(keys::general::kHeadTag), u""_s);
    writePiece(u""_s, "a file without a name");
    EXPECT_EQ(settings().piece(keys::general::kHeadTag), u""_s);
    setSetting(keys::general::kHeadTag, u"missing"_s);
    EXPECT_EQ(settings().piece(keys::general::kHeadTag), u""_s);
}

TEST_F(SiteSettingsOfAHome, APieceKeyHoldsTheBareName) {
    writePiece(u"p"_s, "text");
    setSetting(keys::general::kHeadTag, u"p.htm"_s);
    EXPECT_EQ(settings().piece(keys::general::kHeadTag), u""_s);
    setSetting(keys::general::kHeadTag, u"p"_s);
    EXPECT_EQ(settings().piece(keys::general::kHeadTag), u"text"_s);
}

TEST_F(SiteSettingsOfAHome, AllSetsOfAUserShareThePieces) {
    writePiece(u"p"_s, "shared");
    session.CustIniFile = session.DataPath + u"Customize/other.ini"_s;
    setSetting(keys::body::kUpText, u"p"_s);
    EXPECT_EQ(settings().piece(keys::body::kUpText), u"shared"_s);
}

TEST_F(SiteSettingsOfAHome, TheLogScriptBelongsToTheProgram) {
    writeFile(session.MyPath + u"JS_Log.txt"_s, "program");
    writeFile(session.DataPath + u"JS_Log.txt"_s, "user");
    EXPECT_EQ(settings().logScript(), u"program"_s);
}

TEST_F(SiteSettingsOfAHome, APageWithoutAnySettingHasEmptyAttributes) {
    write(u"2004/05/06"_s, u"題"_s);
    setSetting(keys::contents::kHTMLType, u"1"_s);
    setSetting(keys::day_list::kUse, u"1"_s);
    setSetting(keys::calender::kUse, u"1"_s);
    setSetting(keys::page_move_link::kPageMoveOn, u"1"_s);
    const QString page = makeMonth();
    EXPECT_TRUE(hasLines(page, {u"<TITLE></TITLE>"_s}));
    EXPECT_TRUE(hasLines(page, {u"<BODY TEXT='' BGCOLOR='' background='' link='' alink='' vlink=''>"_s}));
    EXPECT_TRUE(hasLines(page, {u"<a name=this_month></a><H3 align=><a name=TOP>2004年5月分</a></H3>"_s}));
    EXPECT_TRUE(hasLines(page, {u"<table bgcolor='' cellpadding=0 border=0 bordercolor='' bordercolorlight='' "
                                "bordercolordark=''>"_s}));
    EXPECT_TRUE(
        hasLines(page, {u"<div style=margin-left:0pt>"_s, u"<a href=\"#2004/05/06_1\">2004/05/06</a>　<br>"_s}));
    EXPECT_TRUE(hasLines(page, {u"<DIV ALIGN=>"_s, u"<TABLE BORDER=0 BGCOLOR=\"\" CELLSPACING=0 BORDERCOLOR= "
                                                   "width=100%>"_s}));
    EXPECT_TRUE(hasLines(page, {u"<div align=Left style=margin-left:0pt>"_s, u"<A HREF=\"./x.htm\">Top</A>"_s}));
}

TEST_F(SiteSettingsOfAHome, AColourIsCopiedUnchecked) {
    setSetting(keys::body::kBackColor, u"banana' x='<y>"_s);
    EXPECT_TRUE(makeMonth().contains(u" BGCOLOR='banana' x='<y>' background="_s));
}

TEST_F(SiteSettingsOfAHome, TheCategorySettingHasNoEffect) {
    write(u"2004/05/06"_s, u"題"_s);
    const QString before = makeMonth();
    writeSet("[General]\r\nUseCategory=1\r\n");
    EXPECT_EQ(makeMonth(), before);
}

} // namespace
} // namespace velloria::tests
