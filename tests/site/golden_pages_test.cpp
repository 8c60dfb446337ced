// Whole pages and feeds of one small diary, byte for byte. The golden files are written by hand: every key of the
// settings has a value of its own there, so that none can stand in the place of another.
#include "platform/file_write.h"
#include "registers/log_register.h"
#include "site/same_day_page.h"
#include "site/site_home.h"
#include "support/golden.h"
#include "support/vectors.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class GoldenPages : public SiteHome {
protected:
    GoldenPages() {
        platform::copyFile(dataPath(u"site/look.ini"_s), session.CustIniFile);
        for (const char* name : {"head", "head_div", "head_div_log", "up", "down", "up_log", "down_log", "up_div",
                                 "down_div", "up_div_log", "down_div_log", "left_head", "left_up", "left_down"})
            writePiece(QString::fromLatin1(name), '[' + QByteArray(name) + ']');
        const registers::LogRegister logs(session.databaseFile());
        logs.addLog({u"2004/03"_s, u"200403.htm"_s});
        logs.addLog({u"2004/01"_s, u"200401.htm"_s});
        writeMay();
    }

    /// Every kind of entry: with and without weather, genre, text and postscript, an unknown weather, a private one.
    void writeMay() {
        write(u"2004/04/30"_s, u"四月"_s);
        store::Entry first = entryOf(u"2004/05/01"_s, u"はじめ"_s);
        first.contents = u"最初の日。"_s;
        first.weather = u"暴風"_s;
        first.genre = u""_s;
        first.extend = QString();
        first.publishTime = u"2004/5/1 1:02:03"_s;
        write(first);
        store::Entry secret = entryOf(u"2004/05/02"_s, u"秘密"_s);
        secret.isPrivate = true;
        write(secret);
        store::Entry empty = entryOf(u"2004/05/03"_s, u"休み"_s);
        empty.contents = QString();
        empty.genre = QString();
        write(empty);
        sql(u"UPDATE Contents SET PublishTime = NULL WHERE Day = '2004/05/03'"_s);
        store::Entry sunny = entryOf(u"2004/05/06"_s, u"五月晴れ"_s);
        sunny.contents = u"<p>晴れた。</p>\r\n<p>é😀 &lt; 1</p>"_s;
        sunny.extend = u"続きを書く。"_s;
        sunny.weather = u"晴"_s;
        sunny.publishTime = u"2004/05/06 07:30:00"_s;
        write(sunny);
        store::Entry storm = entryOf(u"2004/05/06"_s, u"夕立 & <b>雷</b>"_s);
        storm.contents = u"<p>降った。</p>"_s;
        storm.extend = QString();
        storm.weather = u"雷"_s;
        storm.genre = u"音楽"_s;
        storm.publishTime = u"2004/05/06 20:00:00"_s;
        write(storm);
    }

    void writeFeedSettings() {
        turnFeedsOn(u"http://www.example.com/diary/x.htm"_s);
        setSetting(keys::rss::kTitle, u"新しい日記"_s);
        setSetting(keys::rss::kHPURL, u"http://www.example.com/"_s);
        setSetting(keys::rss::kDescription, u"毎日書きます。"_s);
        setSetting(keys::rss::kManagingAuthor, u"taro@example.com"_s);
        setSetting(keys::rss::kWebMaster, u"web@example.com"_s);
        setSetting(keys::rss::kAuthor, u"太郎"_s);
    }

    void turnCommentsOn() {
        setSetting(keys::halo_scan::kHaloScanOn, u"1"_s);
        setSetting(keys::halo_scan::kUserName, u"taro"_s);
    }

    /// Holds files of the site against the golden files of a form.
    void expectForm(const QString& form, const QStringList& names) {
        for (const QString& name : names)
            expectGolden(u"site/"_s + form + u'/' + name, bytesOf(path(u"site/"_s + name)));
    }
};

TEST_F(GoldenPages, NormalFormWithFeedLinksAndLogLinks) {
    writeFeedSettings();
    makeMonth();
    expectForm(u"normal_form"_s, {u"x.htm"_s});
}

TEST_F(GoldenPages, TableFormWithCommentsAndLogSelectBox) {
    turnCommentsOn();
    setSetting(keys::contents::kHTMLType, u"1"_s);
    setSetting(keys::general::kLogType, u"JavaScript"_s);
    setSetting(keys::general::kLogAlign, u"Center"_s);
    setSetting(keys::general::kVellLinkText, u"Made with #, #!"_s);
    setSetting(keys::day_list::kType, u"Table"_s);
    setSetting(keys::day_list::kAddTitle, u"1"_s);
    setSetting(keys::calender::kType, u"2"_s);
    setSetting(keys::calender::kTableAlign, u"right"_s);
    setSetting(keys::calender::kNoBorder, u"1"_s);
    makeMonth();
    expectForm(u"table_form"_s, {u"x.htm"_s});
}

TEST_F(GoldenPages, DividedWithTheNewestDayOnTheMonthFile) {
    divide(1, true);
    setSetting(keys::divide::kTopLink, u"TopPage"_s);
    setSetting(keys::general::kUseLog, u"0"_s);
    setSetting(keys::day_list::kAddTitle, u"1"_s);
    makeMonth();
    expectForm(u"divided_on_top"_s, {u"x.htm"_s, u"x_01.htm"_s, u"x_02.htm"_s});
    EXPECT_FALSE(siteHas(u"x_03.htm"_s));
}

TEST_F(GoldenPages, DividedWithNoDayOnTheMonthFile) {
    turnCommentsOn();
    divide(2, false);
    setSetting(keys::divide::kTopLink, u"PageTop"_s);
    setSetting(keys::general::kUseLog, u"0"_s);
    setSetting(keys::page_move_link::kLanguage, u"English"_s);
    makeMonth();
    expectForm(u"divided_not_on_top"_s, {u"x.htm"_s, u"x_01.htm"_s, u"x_02.htm"_s});
    EXPECT_FALSE(siteHas(u"x_03.htm"_s));
}

TEST_F(GoldenPages, DayFiles) {
    divideByDay(true);
    setSetting(keys::divide::kTopLink, u"PageTop"_s);
    setSetting(keys::general::kUseLog, u"0"_s);
    makeMonth();
    expectForm(u"day_files"_s, {u"x.htm"_s, u"2004_05_03.htm"_s, u"2004_05_01.htm"_s});
    EXPECT_FALSE(siteHas(u"2004_05_06.htm"_s));
    EXPECT_FALSE(siteHas(u"x_01.htm"_s));
}

TEST_F(GoldenPages, Frames) {
    writeFeedSettings();
    setSetting(keys::frame::kFrameOn, u"1"_s);
    setSetting(keys::frame::kCalenderFrameSize, u"180"_s);
    setSetting(keys::frame::kBorder, u"0"_s);
    setSetting(keys::frame::kScrolling, u"1"_s);
    setSetting(keys::frame::kResize, u"0"_s);
    setSetting(keys::calender::kUse, u"0"_s);
    makeMonth();
    expectForm(u"frames"_s, {u"x.htm"_s, u"x_C.htm"_s, u"x_D.htm"_s});
}

TEST_F(GoldenPages, LogPageWithoutFramesFeedsAndLogList) {
    writeFeedSettings();
    setSetting(keys::frame::kFrameOn, u"1"_s);
    setSetting(keys::general::kLogType, u"JavaScript"_s);
    archive().save(u"2004"_s, u"5"_s);
    expectGolden(u"site/log_page/200405.htm"_s, bytesOf(session.DataPath + u"DiaryLog/200405.htm"_s));
    expectGolden(u"site/log_page/200405.htm"_s, bytesOf(path(u"site/DiaryLog/200405.htm"_s)));
}

TEST_F(GoldenPages, Feeds) {
    writeFeedSettings();
    makeMonth();
    expectForm(u"feeds"_s, {u"x_RSS091.xml"_s, u"x_RSS100.xml"_s, u"x_RSS200.xml"_s, u"x_ATOM.xml"_s});
}

class GoldenSameDayPage : public GoldenPages {
protected:
    GoldenSameDayPage() {
        store::Entry first = entryOf(u"2003/05/06"_s, u"去年<i>1</i>"_s);
        first.contents = u"本文1"_s;
        first.extend = u"続き1"_s;
        first.weather = u"晴"_s;
        write(first);
        write(u"2003/05/06"_s, u"去年2"_s, u"本文2"_s);
        store::Entry secret = entryOf(u"2002/05/06"_s, u"秘密"_s);
        secret.isPrivate = true;
        secret.contents = QString();
        secret.extend = QString();
        write(secret);
    }

    QByteArray sameDayPage() {
        const QString file = session.DataPath + u"oldtmp.htm"_s;
        site::MakeSameDayPage(run, file, u"2004/05/06"_s);
        return bytesOf(file);
    }
};

TEST_F(GoldenSameDayPage, NormalForm) {
    expectGolden(u"site/same_day/normal.htm"_s, sameDayPage());
}

TEST_F(GoldenSameDayPage, TableFormWithTitles) {
    setSetting(keys::contents::kHTMLType, u"1"_s);
    setSetting(keys::day_list::kAddTitle, u"1"_s);
    expectGolden(u"site/same_day/table.htm"_s, sameDayPage());
}

} // namespace
} // namespace velloria::tests
