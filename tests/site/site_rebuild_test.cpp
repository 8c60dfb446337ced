#include "site/site_rebuild.h"

#include "registers/log_register.h"
#include "site/site_home.h"

#include <QDir>
#include <QFile>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::Outcome;
using site::RebuildResult;

class SiteRebuild : public SiteHome {
protected:
    RebuildResult rebuild(const QString& from = {}, const QString& to = {}) { return site::rebuildSite(run, from, to); }

    QStringList logs() const {
        QStringList months;
        for (const store::LogRow& log : registers::LogRegister(session.databaseFile()).listLogs())
            months += log.month;
        return months;
    }
    /// "month value/max" of the progress line.
    QStringList progress() const {
        QStringList lines;
        for (const QJsonValue& event : desk.events) {
            if (event[u"event"_s] == u"progress"_s)
                lines += u"%1 %2/%3"_s.arg(event[u"text"_s].toString())
                             .arg(event[u"value"_s].toInt())
                             .arg(event[u"max"_s].toInt());
        }
        return lines;
    }
    void writeThreeMonths() {
        write(u"2004/04/01"_s, u"april"_s);
        write(u"2004/02/01"_s, u"february"_s);
        writePrivate(u"2003/12/01"_s, u"december"_s);
    }
};

TEST_F(SiteRebuild, LogsPastMonthsOldestFirstAndSavesTheMonthOfToday) {
    writeThreeMonths();
    write(u"2004/05/06"_s, u"may"_s);
    write(u"2004/06/01"_s, u"june"_s);
    const RebuildResult result = rebuild();
    EXPECT_EQ(result.outcome, Outcome::Done);
    EXPECT_EQ(result.logs, 3);
    EXPECT_EQ(result.failures, 0);
    EXPECT_EQ(logs(), (QStringList{u"2003/12"_s, u"2004/02"_s, u"2004/04"_s}));
    EXPECT_EQ(progress(), (QStringList{u"2003/12 1/3"_s, u"2004/02 2/3"_s, u"2004/04 3/3"_s}));
    EXPECT_TRUE(pageOf(path(u"site/DiaryLog/200402.htm"_s)).contains(u"february"_s));
    EXPECT_TRUE(lacks(pageOf(path(u"site/DiaryLog/200312.htm"_s)), u"december"_s));
    EXPECT_TRUE(sitePage(u"x.htm"_s).contains(u">may<"_s));
    EXPECT_EQ(uploadRows(), QStringList{u"site,x.htm"_s});
}

TEST_F(SiteRebuild, SavesTheMonthOfTodayWithoutEntriesToo) {
    setSetting(keys::day_list::kUse, u"1"_s);
    EXPECT_EQ(rebuild().logs, 0);
    EXPECT_TRUE(hasLines(sitePage(u"x.htm"_s), {u"-今月はまだ日記はありません-"_s}));
}

TEST_F(SiteRebuild, TheCurrentPageListsTheLogsJustMade) {
    writeThreeMonths();
    setSetting(keys::general::kUseLog, u"1"_s);
    setSetting(keys::general::kLogType, u"Normal"_s);
    rebuild();
    EXPECT_TRUE(hasLines(sitePage(u"x.htm"_s), {u"<A HREF=\"#this_month\">今月分</A><BR>"_s,
                                                u"<A HREF=\"./DiaryLog/200312.htm\">2003/12月分</A><BR>"_s,
                                                u"<A HREF=\"./DiaryLog/200402.htm\">2004/02月分</A><BR>"_s,
                                                u"<A HREF=\"./DiaryLog/200404.htm\">2004/04月分</A><BR>"_s}));
}

TEST_F(SiteRebuild, MakesOnePreviewAtTheEnd) {
    writeThreeMonths();
    session.EnterDay = u"2003/12/01"_s;
    rebuild();
    EXPECT_EQ(desk.texts(u"navigate"_s), QStringList{session.DataPath + u"tmp.htm#2003/12/01"_s});
    EXPECT_EQ(desk.events.at(desk.events.size() - 2)[u"event"_s], u"navigate"_s);
    EXPECT_EQ(desk.events.last()[u"shape"_s], u"default"_s);
    EXPECT_TRUE(pageOf(session.DataPath + u"tmp.htm"_s).contains(u"december"_s));
    EXPECT_EQ(boxes(), QStringList(3, u"information: Logファイル化しました。"_s));
}

TEST_F(SiteRebuild, TheLogsOfAFreshHomeHaveTheirWeatherPictures) {
    writeThreeMonths();
    rebuild();
    for (const QString& name : {u"Shinny.gif"_s, u"Cloudy.gif"_s, u"Rainy.gif"_s, u"Snowy.gif"_s, u"Thunder.gif"_s}) {
        EXPECT_TRUE(siteHas(u"DiaryParts/"_s + name)) << name.toStdString();
        EXPECT_TRUE(siteHas(u"DiaryLog/DiaryParts/"_s + name)) << name.toStdString();
        EXPECT_TRUE(exists(session.DataPath + u"DiaryLog/DiaryParts/"_s + name)) << name.toStdString();
        EXPECT_EQ(fileRows().filter(name), (QStringList{name + u" ALL 0 0"_s, name + u" ALL 0 1"_s}));
    }
}

TEST_F(SiteRebuild, ASiteInTheDataFolderHasThemToo) {
    session.FilePath = session.DataPath;
    writeThreeMonths();
    rebuild();
    EXPECT_TRUE(exists(session.DataPath + u"DiaryLog/DiaryParts/Thunder.gif"_s));
    EXPECT_EQ(fileRows().size(), 10);
}

TEST_F(SiteRebuild, OnlyTheMonthsOfARangeAreMade) {
    writeThreeMonths();
    EXPECT_EQ(rebuild(u"2004/01"_s, u"2004/03"_s).logs, 1);
    EXPECT_EQ(logs(), QStringList{u"2004/02"_s});
    EXPECT_FALSE(siteHas(u"x.htm"_s));
    EXPECT_TRUE(exists(session.DataPath + u"tmp.htm"_s));
    EXPECT_EQ(rebuild(u"2004/04"_s, {}).logs, 1);
    EXPECT_TRUE(siteHas(u"x.htm"_s));
    EXPECT_EQ(rebuild({}, u"2003/12"_s).logs, 1);
    EXPECT_EQ(logs(), (QStringList{u"2004/02"_s, u"2004/04"_s, u"2003/12"_s}));
}

TEST_F(SiteRebuild, AMonthThatFailsIsToldAboutAndTheRestGoesOn) {
    writeThreeMonths();
    write(u"1999/12/31"_s, u"too old"_s);
    setSetting(keys::calender::kUse, u"1"_s);
    const RebuildResult result = rebuild();
    EXPECT_EQ(result.outcome, Outcome::Done);
    EXPECT_EQ(result.logs, 3);
    EXPECT_EQ(result.failures, 1);
    ASSERT_EQ(desk.texts(u"failure"_s).size(), 1);
    EXPECT_TRUE(desk.texts(u"failure"_s).first().contains(u"1999/12"_s));
    EXPECT_EQ(progress().size(), 4);
    EXPECT_TRUE(siteHas(u"x.htm"_s));
}

TEST_F(SiteRebuild, AMissingFileOfAMonthIsToldAboutAndTheRestGoesOn) {
    writeThreeMonths();
    registerFile(u"gone.gif"_s, u"2004/02/01"_s);
    EXPECT_EQ(rebuild().failures, 0);
    EXPECT_EQ(boxes().filter(u"gone.gif"_s).size(), 1);
    EXPECT_EQ(logs().size(), 3);
}

TEST_F(SiteRebuild, ACurrentMonthThatFailsStillHasItsPreview) {
    writeFile(path(u"site/x.htm"_s), "old page");
    ASSERT_TRUE(QFile::setPermissions(path(u"site/x.htm"_s), QFileDevice::ReadOwner));
    EXPECT_EQ(rebuild().failures, 1);
    EXPECT_EQ(sitePage(u"x.htm"_s), u"old page"_s);
    EXPECT_TRUE(exists(session.DataPath + u"tmp.htm"_s));
}

TEST_F(SiteRebuild, AMonthThatFailsInPageAndPreviewCountsOnce) {
    turnFeedsOn();
    EXPECT_EQ(rebuild().failures, 1);
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 2);
}

TEST_F(SiteRebuild, AgainListsEachLogOnceForTheUpload) {
    writeThreeMonths();
    rebuild();
    write(u"2004/03/01"_s, u"march"_s);
    rebuild();
    EXPECT_EQ(uploadRows(u"uploadlog.tmp"_s),
              (QStringList{u"UserData/DiaryLog,200312.htm"_s, u"UserData/DiaryLog,200402.htm"_s,
                           u"UserData/DiaryLog,200404.htm"_s, u"UserData/DiaryLog,200403.htm"_s}));
    EXPECT_EQ(logs().size(), 4);
}

TEST_F(SiteRebuild, WithoutPastMonthsMakesNoListOfLogs) {
    rebuild();
    EXPECT_FALSE(exists(session.UserPath + u"uploadlog.tmp"_s));
}

TEST_F(SiteRebuild, AsksForTheTargetBeforeTheFirstLog) {
    writeThreeMonths();
    for (const auto& [folder, name] : {std::pair(u""_s, u"x.htm"_s), {path(u"site/"_s), u""_s}}) {
        session.FilePath = folder;
        session.FileName = name;
        const QString target = name.isEmpty() ? u"no_name/"_s : u"no_folder/"_s;
        desk.answers = {path(target + u"index.htm"_s)};
        EXPECT_EQ(rebuild().logs, 3);
        EXPECT_TRUE(exists(path(target + u"DiaryLog/200402.htm"_s)));
        EXPECT_TRUE(exists(path(target + u"index.htm"_s)));
    }
}

TEST_F(SiteRebuild, WithoutATargetDoesNothing) {
    writeThreeMonths();
    session.FileName = u""_s;
    desk.answers = {QJsonValue::Null};
    EXPECT_EQ(rebuild().outcome, Outcome::Refused);
    EXPECT_EQ(logs(), QStringList());
    EXPECT_EQ(contentOf(path(u"site"_s)).size(), 0);
}

TEST_F(SiteRebuild, ASiteFolderThatIsGoneEndsItAtOnce) {
    writeThreeMonths();
    ASSERT_TRUE(QDir(path(u"site"_s)).removeRecursively());
    const auto before = contentOf(home.path());
    const QString failure = failureOf([&] { rebuild(); });
    EXPECT_TRUE(failure.contains(path(u"site/"_s))) << failure.toStdString();
    EXPECT_EQ(contentOf(home.path()), before);
}

TEST_F(SiteRebuild, AnEntryUnderAnOddDayMakesNoMonth) {
    sql(u"INSERT INTO Contents (Day, Number, Title, Private) VALUES ('2004/3/5', 1, 'odd', 0), ('', 1, 'odd', 0)"_s);
    EXPECT_EQ(rebuild().logs, 0);
    EXPECT_EQ(rebuild().failures, 0);
}

} // namespace
} // namespace velloria::tests
