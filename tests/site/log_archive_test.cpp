#include "site/log_archive.h"

#include "core/upload_list.h"
#include "registers/log_register.h"
#include "site/site_home.h"
#include "site/weather.h"
#include "support/faulty_disk.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonObject>
#include <QScopeGuard>

#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velloria::tests {
namespace {

/// Fixture: the weather pictures, which every log takes along, are out of the way.
class LogArchive : public SiteHome {
protected:
    LogArchive() {
        for (const QString& name : site::weatherPictures()) {
            const QString picture = session.DataPath + u"DiaryParts/"_s + name;
            m_weatherPictures.insert(picture, bytesOf(picture));
            QFile::remove(picture);
        }
    }
    void bringWeatherPicturesBack() {
        for (auto picture = m_weatherPictures.cbegin(); picture != m_weatherPictures.cend(); ++picture)
            writeFile(picture.key(), picture.value());
    }
    void save(const QString& year = u"2004"_s, const QString& month = u"5"_s) { archive().save(year, month); }

    QString dataLog(const QString& name) const { return session.DataPath + u"DiaryLog/"_s + name; }
    QString siteLog(const QString& name) const { return path(u"site/DiaryLog/"_s + name); }
    /// The rows of LogDB as "month name".
    QStringList logs() const {
        QStringList rows;
        for (const store::LogRow& log : registers::LogRegister(session.databaseFile()).listLogs())
            rows += log.month + u' ' + log.fileName;
        return rows;
    }
    QStringList statuses() const { return desk.texts(u"status"_s); }
    void registerPart(const QString& name, const QString& day) {
        putPart(name, name.toUtf8());
        registerFile(name, day);
    }

private:
    QMap<QString, QByteArray> m_weatherPictures;
};

const QString kDone = u"information: Logファイル化しました。"_s;

TEST_F(LogArchive, WritesThePageInBothRootsAndRegistersIt) {
    write(u"2004/05/01"_s, u"題"_s);
    writePrivate(u"2004/05/02"_s, u"秘密"_s);
    save();
    EXPECT_TRUE(pageOf(dataLog(u"200405.htm"_s)).contains(u">題<"_s));
    EXPECT_TRUE(lacks(pageOf(dataLog(u"200405.htm"_s)), u"秘密"_s));
    EXPECT_EQ(bytesOf(siteLog(u"200405.htm"_s)), bytesOf(dataLog(u"200405.htm"_s)));
    EXPECT_EQ(logs(), QStringList{u"2004/05 200405.htm"_s});
    EXPECT_FALSE(siteHas(u"x.htm"_s));
}

TEST_F(LogArchive, AMonthOfOneCharacterGetsItsZero) {
    save(u"2004"_s, u"3"_s);
    save(u"2004"_s, u"04"_s);
    save(u"2003"_s, u"12"_s);
    EXPECT_EQ(logs(), (QStringList{u"2004/03 200403.htm"_s, u"2004/04 200404.htm"_s, u"2003/12 200312.htm"_s}));
    EXPECT_TRUE(pageOf(dataLog(u"200403.htm"_s)).contains(u"2004年3月分"_s));
}

TEST_F(LogArchive, AMonthWithoutEntriesSaysSoAndHasItsRow) {
    setSetting(keys::day_list::kUse, u"1"_s);
    save(u"2001"_s, u"1"_s);
    EXPECT_TRUE(hasLines(pageOf(dataLog(u"200101.htm"_s)), {u"-今月はまだ日記はありません-"_s}));
    EXPECT_EQ(logs(), QStringList{u"2001/01 200101.htm"_s});
}

TEST_F(LogArchive, ThePresentMonthMayBeLogged) {
    session.Today = u"2004/05/06"_s;
    save();
    EXPECT_EQ(logs().size(), 1);
}

TEST_F(LogArchive, AgainReplacesThePageAndAppendsToTheList) {
    write(u"2004/05/01"_s, u"first"_s);
    save();
    write(u"2004/05/01"_s, u"second"_s);
    save();
    EXPECT_TRUE(pageOf(siteLog(u"200405.htm"_s)).contains(u"second"_s));
    EXPECT_EQ(logs(), QStringList{u"2004/05 200405.htm"_s});
    EXPECT_EQ(uploadRows(u"uploadlog.tmp"_s), QStringList(2, u"UserData/DiaryLog,200405.htm"_s));
    EXPECT_EQ(uploadRows(u"uplogtmp.tmp"_s), QStringList{u"UserData/DiaryLog,200405.htm"_s});
}

TEST_F(LogArchive, TheListOfLogsGrowsBehindWhatStandsThere) {
    writeFile(session.UserPath + u"uploadlog.tmp"_s, "/old,200301.htm\r\n");
    save();
    EXPECT_EQ(bytesOf(session.UserPath + u"uploadlog.tmp"_s),
              "/old,200301.htm\r\n" + session.DataPath.toUtf8() + "DiaryLog,200405.htm\r\n");
    EXPECT_FALSE(exists(session.UserPath + u"upload.tmp"_s));
}

TEST_F(LogArchive, DividedPagesComeAlong) {
    write(u"2004/05/01"_s, u"a"_s);
    write(u"2004/05/02"_s, u"b"_s);
    divideByDay(true);
    setSetting(keys::divide::kLogDivide, u"1"_s);
    save();
    EXPECT_TRUE(exists(siteLog(u"2004_05_01.htm"_s)));
    EXPECT_EQ(uploadRows(u"uploadlog.tmp"_s),
              (QStringList{u"UserData/DiaryLog,200405.htm"_s, u"UserData/DiaryLog,2004_05_01.htm"_s}));
}

TEST_F(LogArchive, TellsItsEndBehindTheWork) {
    save();
    QStringList events;
    for (const QJsonValue& event : desk.events)
        events += event[u"event"_s].toString() + u' ' + event[u"text"_s].toString() + event[u"shape"_s].toString();
    // The pointer is that of who calls.
    EXPECT_EQ(events, (QStringList{u"status 2004/05の日記をLog化しました。"_s, u"message Logファイル化しました。"_s}));
    EXPECT_EQ(boxes(), QStringList{kDone});
}

TEST_F(LogArchive, RunsWhatIsAskedForBetweenTheStatusAndTheBox) {
    QStringList before;
    archive().save(u"2004"_s, u"5"_s, [&] {
        before = desk.texts(u"status"_s) + boxes();
        EXPECT_EQ(logs().size(), 1);
    });
    EXPECT_EQ(before, QStringList{u"2004/05の日記をLog化しました。"_s});
    EXPECT_EQ(boxes(), QStringList{kDone});
}

TEST_F(LogArchive, ManyFilesTellHowFarTheyAre) {
    for (int i = 0; i < 40; ++i)
        registerPart(u"%1.gif"_s.arg(i), u"2004/05/01"_s);
    save();
    QStringList progress;
    for (const QJsonValue& event : desk.events) {
        if (event[u"event"_s] == u"progress"_s)
            progress += u"%1/%2"_s.arg(event[u"value"_s].toInt()).arg(event[u"max"_s].toInt());
    }
    EXPECT_EQ(progress, (QStringList{u"16/40"_s, u"32/40"_s}));
}

TEST_F(LogArchive, YearAndMonthThatLeadOutOfTheFolderDoNothing) {
    const struct {
        QString year;
        QString month;
    } cases[] = {{u"../2004"_s, u"5"_s}, {u"2004"_s, u"/"_s}, {QString(QChar(0)), u"5"_s}, {u"/tmp/x"_s, u"05"_s}};
    for (const auto& c : cases) {
        const auto before = contentOf(home.path());
        EXPECT_NE(failureOf([&] { save(c.year, c.month); }), u""_s) << c.year.toStdString();
        EXPECT_EQ(contentOf(home.path()), before) << c.year.toStdString();
    }
}

TEST(MonthToLog, IsTheMonthInFrontOfToday) {
    const struct {
        QDate today;
        QString year;
        QString month;
    } cases[] = {
        {{2004, 5, 31}, u"2004"_s, u"4"_s}, {{2004, 1, 1}, u"2003"_s, u"12"_s}, {{2004, 12, 1}, u"2004"_s, u"11"_s}};
    for (const auto& c : cases) {
        EXPECT_EQ(site::monthToLog(c.today).year, c.year);
        EXPECT_EQ(site::monthToLog(c.today).month, c.month);
    }
}

TEST_F(LogArchive, TheFilesOfTheMonthGoToBothRootsAndUpAnew) {
    registerPart(u"first.gif"_s, u"2004/05/01"_s);
    registerPart(u"last.gif"_s, u"2004/05/31"_s);
    registerPart(u"before.gif"_s, u"2004/04/30"_s);
    registerPart(u"behind.gif"_s, u"2004/06/01"_s);
    sql(u"UPDATE FileDB SET Uploaded = 1"_s);
    save();
    EXPECT_EQ(fileRows(), (QStringList{u"first.gif 2004/05/01 0 1"_s, u"last.gif 2004/05/31 0 1"_s,
                                       u"before.gif 2004/04/30 1 0"_s, u"behind.gif 2004/06/01 1 0"_s}));
    for (const QString& name : {u"DiaryParts/first.gif"_s, u"DiaryParts/last.gif"_s}) {
        EXPECT_TRUE(exists(dataLog(name))) << name.toStdString();
        EXPECT_TRUE(exists(siteLog(name))) << name.toStdString();
    }
    EXPECT_FALSE(exists(dataLog(u"DiaryParts/before.gif"_s)));
    EXPECT_FALSE(exists(dataLog(u"DiaryParts/behind.gif"_s)));
}

TEST_F(LogArchive, DaysOfFilesCompareAsTexts) {
    registerPart(u"short.gif"_s, u"2004/5/3"_s);
    registerPart(u"time.gif"_s, u"2004/05/30 12:00"_s);
    save();
    EXPECT_EQ(fileRows(), (QStringList{u"short.gif 2004/5/3 0 0"_s, u"time.gif 2004/05/30 12:00 0 1"_s}));
}

TEST_F(LogArchive, AFileOfOneRowStaysWhereItWas) {
    registerPart(u"a.gif"_s, u"2004/05/01"_s);
    save();
    EXPECT_TRUE(exists(session.DataPath + u"DiaryParts/a.gif"_s));
    save();
    EXPECT_TRUE(exists(session.DataPath + u"DiaryParts/a.gif"_s));
}

TEST_F(LogArchive, AFileThatIsLoggedIsNotTakenAgain) {
    registerPart(u"a.gif"_s, u"2004/05/01"_s);
    save();
    sql(u"UPDATE FileDB SET Uploaded = 1"_s);
    putPart(u"a.gif"_s, "changed");
    save();
    EXPECT_EQ(bytesOf(dataLog(u"DiaryParts/a.gif"_s)), "a.gif");
    EXPECT_EQ(fileRows(), QStringList{u"a.gif 2004/05/01 1 1"_s});
}

TEST_F(LogArchive, AMissingFileHasItsBoxAndTheRunGoesOn) {
    registerFile(u"gone.gif"_s, u"2004/05/01"_s);
    registerPart(u"there.gif"_s, u"2004/05/02"_s);
    save();
    EXPECT_EQ(boxes(),
              (QStringList{u"critical: 05月分として登録されたファイル[gone.gif]が見つかりません。\r\n"
                           "[UserData\\DiaryParts]フォルダに該当ファイルをコピーして、再度ログ化して下さい。"_s,
                           kDone}));
    EXPECT_EQ(fileRows(), (QStringList{u"gone.gif 2004/05/01 0 0"_s, u"there.gif 2004/05/02 0 1"_s}));
    EXPECT_EQ(logs().size(), 1);
    putPart(u"gone.gif"_s);
    save();
    EXPECT_EQ(fileRows().first(), u"gone.gif 2004/05/01 0 1"_s);
    EXPECT_TRUE(exists(siteLog(u"DiaryParts/gone.gif"_s)));
}

TEST_F(LogArchive, ARegisteredNameLeadsOutOfNoFolder) {
    const QByteArray outside = "outside";
    ASSERT_TRUE(QDir(session.DataPath).mkpath(u"DiaryParts/sub"_s));
    writeFile(session.DataPath + u"outside.gif"_s, outside);
    writeFile(session.DataPath + u"DiaryParts/sub/inside.gif"_s, outside);
    const QStringList months{u"../outside.gif"_s, u"sub/inside.gif"_s, session.DataPath + u"outside.gif"_s};
    for (const QString& name : months)
        registerFile(name, u"2004/05/01"_s);
    registerFile(u"../outside.gif"_s, u"ALL"_s);
    registerFile(u"sub/inside.gif"_s, u"ALL"_s);
    registerPart(u"there.gif"_s, u"2004/05/02"_s);
    save();
    EXPECT_EQ(boxes(), QStringList{kDone});
    const QStringList notices = statuses().filter(u"ファイルの名前ではない"_s);
    ASSERT_EQ(notices.size(), 1); // each name once, though one of them has two rows
    for (const QString& name : months)
        EXPECT_EQ(notices[0].count(u'「' + name + u'」'), 1) << notices[0].toStdString();
    EXPECT_EQ(fileRows(), (QStringList{u"../outside.gif 2004/05/01 0 0"_s, u"sub/inside.gif 2004/05/01 0 0"_s,
                                       months.last() + u" 2004/05/01 0 0"_s, u"../outside.gif ALL 0 0"_s,
                                       u"sub/inside.gif ALL 0 0"_s, u"there.gif 2004/05/02 0 1"_s}));
    EXPECT_FALSE(exists(dataLog(u"outside.gif"_s)));
    EXPECT_FALSE(exists(siteLog(u"outside.gif"_s)));
    EXPECT_EQ(QDir(dataLog(u"DiaryParts"_s)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              QStringList{u"there.gif"_s});
    EXPECT_EQ(bytesOf(session.DataPath + u"outside.gif"_s), outside);
}

TEST_F(LogArchive, FilesOfAllMonthsAreCopiedOnceAndGetARowForTheLogs) {
    registerPart(u"all.css"_s, u"ALL"_s);
    sql(u"UPDATE FileDB SET Uploaded = 1"_s);
    save();
    EXPECT_EQ(fileRows(), (QStringList{u"all.css ALL 1 0"_s, u"all.css ALL 0 1"_s}));
    EXPECT_EQ(sqlValue(u"SELECT max(Number) FROM FileDB"_s), u"0"_s);
    putPart(u"all.css"_s, "changed");
    sql(u"UPDATE FileDB SET Uploaded = 1"_s);
    save();
    EXPECT_EQ(bytesOf(dataLog(u"DiaryParts/all.css"_s)), "all.css");
    EXPECT_EQ(bytesOf(siteLog(u"DiaryParts/all.css"_s)), "all.css");
    EXPECT_EQ(fileRows(), (QStringList{u"all.css ALL 1 0"_s, u"all.css ALL 1 1"_s}));
}

TEST_F(LogArchive, EachRootGetsTheFileOfAllMonthsThatItLacks) {
    registerPart(u"all.css"_s, u"ALL"_s);
    save();
    ASSERT_TRUE(QFile::remove(siteLog(u"DiaryParts/all.css"_s)));
    putPart(u"all.css"_s, "changed");
    save();
    EXPECT_EQ(bytesOf(siteLog(u"DiaryParts/all.css"_s)), "changed");
    EXPECT_EQ(bytesOf(dataLog(u"DiaryParts/all.css"_s)), "all.css");
}

TEST_F(LogArchive, AheadOfTheFirstSaveHTMLHasItsWeatherPictures) {
    bringWeatherPicturesBack();
    save();
    for (const QString& name : site::weatherPictures()) {
        EXPECT_TRUE(siteHas(u"DiaryParts/"_s + name)) << name.toStdString();
        EXPECT_TRUE(exists(siteLog(u"DiaryParts/"_s + name))) << name.toStdString();
        EXPECT_TRUE(exists(dataLog(u"DiaryParts/"_s + name))) << name.toStdString();
        EXPECT_EQ(fileRows().filter(name), (QStringList{name + u" ALL 0 0"_s, name + u" ALL 0 1"_s}));
    }
}

TEST_F(LogArchive, WithoutASiteFolderHasItsWeatherPicturesToo) {
    bringWeatherPicturesBack();
    session.FilePath = u""_s;
    const QString workingFolder = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(path(u"site"_s)));
    save();
    QDir::setCurrent(workingFolder);
    EXPECT_EQ(QDir(path(u"site"_s)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
    for (const QString& name : site::weatherPictures())
        EXPECT_TRUE(exists(dataLog(u"DiaryParts/"_s + name))) << name.toStdString();
    EXPECT_EQ(fileRows().size(), 10);
}

TEST_F(LogArchive, AListThatCannotBeChangedIsNamedAndARepeatSucceeds) {
    write(u"2004/05/01"_s, u"題"_s);
    registerPart(u"a.gif"_s, u"2004/05/01"_s);
    for (const QString& list : {u"uplogtmp.tmp"_s, u"uploadlog.tmp"_s}) {
        SCOPED_TRACE(list.toStdString());
        QFile::remove(session.UserPath + list);
        ASSERT_TRUE(QDir(session.UserPath).mkdir(list));
        const QString failure = failureOf([&] { save(); });
        EXPECT_TRUE(failure.contains(session.UserPath + list)) << failure.toStdString();
        EXPECT_EQ(logs(), QStringList());
        EXPECT_EQ(fileRows(), QStringList{u"a.gif 2004/05/01 0 0"_s});
        ASSERT_TRUE(QDir(session.UserPath).rmdir(list));
    }
    save();
    EXPECT_EQ(logs(), QStringList{u"2004/05 200405.htm"_s});
    EXPECT_EQ(fileRows(), QStringList{u"a.gif 2004/05/01 0 1"_s});
    EXPECT_EQ(uploadRows(u"uploadlog.tmp"_s), QStringList{u"UserData/DiaryLog,200405.htm"_s});
}

TEST_F(LogArchive, AListThatAnotherRunReplacesMeanwhileIsNotTakenForItsOwn) {
    write(u"2004/05/01"_s, u"題"_s);
    // What stands on disk between page and copy is the list of a run that works at the same time.
    std::atomic<bool> isEnding = false;
    const std::jthread other([&] {
        while (!isEnding) {
            QElapsedTimer taken;
            taken.start();
            core::writeUploadList(session.UserPath + u"uplogtmp.tmp"_s, {{u"/other"_s, u"other.htm"_s}});
            // On any disk the folder is free half of the time: it is waited for five seconds and no longer.
            std::this_thread::sleep_for(1ms + std::chrono::nanoseconds(taken.nsecsElapsed()));
        }
    });
    const auto end = qScopeGuard([&] { isEnding = true; }); // before the thread's own end, whatever is thrown
    for (int i = 0; i < 20; ++i) {
        QFile::remove(siteLog(u"200405.htm"_s));
        save();
        EXPECT_TRUE(exists(siteLog(u"200405.htm"_s)));
    }
    EXPECT_EQ(uploadRows(u"uploadlog.tmp"_s), QStringList(20, u"UserData/DiaryLog,200405.htm"_s));
}

TEST_F(LogArchive, OnAFullDiskMarksWhatItHasCopiedAndARepeatCompletesIt) {
    for (int i = 1; i <= 3; ++i)
        registerPart(u"%1.gif"_s.arg(i), u"2004/05/0%1"_s.arg(i));
    putPart(u"2.gif"_s, QByteArray(200'000, 'x'));
    {
        FaultyDisk disk(home.path());
        disk.leaveRoom(100'000);
        EXPECT_TRUE(failureOf([&] { save(); }).contains(u"2.gif"_s));
    }
    EXPECT_EQ(fileRows(),
              (QStringList{u"1.gif 2004/05/01 0 1"_s, u"2.gif 2004/05/02 0 0"_s, u"3.gif 2004/05/03 0 0"_s}));
    EXPECT_EQ(logs(), QStringList());
    save();
    EXPECT_EQ(fileRows(),
              (QStringList{u"1.gif 2004/05/01 0 1"_s, u"2.gif 2004/05/02 0 1"_s, u"3.gif 2004/05/03 0 1"_s}));
    EXPECT_EQ(bytesOf(siteLog(u"DiaryParts/2.gif"_s)), QByteArray(200'000, 'x'));
    EXPECT_EQ(logs(), QStringList{u"2004/05 200405.htm"_s});
}

TEST_F(LogArchive, AFileOfAllMonthsThatIsMissingGetsNoRowThatTheUploadWouldStopAt) {
    registerFile(u"gone.css"_s, u"ALL"_s);
    save();
    EXPECT_EQ(fileRows(), QStringList{u"gone.css ALL 0 0"_s});
    EXPECT_EQ(boxes(), QStringList{kDone});
}

TEST_F(LogArchive, WithoutASiteFolderKeepsItsFilesInTheDataFolderAndSaysSo) {
    session.FilePath = u""_s;
    registerPart(u"a.gif"_s, u"2004/05/01"_s);
    registerPart(u"all.css"_s, u"ALL"_s);
    const QString workingFolder = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(path(u"site"_s)));
    save();
    QDir::setCurrent(workingFolder);
    EXPECT_EQ(contentOf(path(u"site"_s)).size(), 0);
    EXPECT_TRUE(exists(dataLog(u"200405.htm"_s)));
    EXPECT_TRUE(exists(dataLog(u"DiaryParts/a.gif"_s)));
    EXPECT_TRUE(exists(dataLog(u"DiaryParts/all.css"_s)));
    EXPECT_EQ(logs().size(), 1);
    ASSERT_EQ(statuses().size(), 2);
    EXPECT_TRUE(statuses().last().contains(u"データフォルダ"_s)) << statuses().last().toStdString();
    EXPECT_EQ(desk.events.last()[u"event"_s], u"status"_s);
}

TEST_F(LogArchive, PagesAreFoundAgainWhateverTheNameOfTheDataFolder) {
    for (const QString& name : {u"日記é😀"_s, u"〜−¥"_s, u"a b"_s}) {
        session.DataPath = path(name) + u'/';
        save();
        EXPECT_EQ(bytesOf(siteLog(u"200405.htm"_s)), bytesOf(dataLog(u"200405.htm"_s))) << name.toStdString();
        ASSERT_TRUE(QFile::remove(siteLog(u"200405.htm"_s)));
    }
}

TEST_F(LogArchive, InTheDataFolderCopiesNothingOntoItself) {
    session.FilePath = session.DataPath;
    write(u"2004/05/01"_s, u"題"_s);
    registerPart(u"a.gif"_s, u"2004/05/01"_s);
    registerPart(u"all.css"_s, u"ALL"_s);
    save();
    save();
    EXPECT_TRUE(pageOf(dataLog(u"200405.htm"_s)).contains(u">題<"_s));
    EXPECT_EQ(bytesOf(dataLog(u"DiaryParts/a.gif"_s)), "a.gif");
    EXPECT_EQ(bytesOf(dataLog(u"DiaryParts/all.css"_s)), "all.css");
}

TEST_F(LogArchive, ASiteFolderThatIsGoneIsNamedAndNothingIsDone) {
    ASSERT_TRUE(QDir(path(u"site"_s)).removeRecursively());
    const auto before = contentOf(home.path());
    const QString failure = failureOf([&] { save(); });
    EXPECT_TRUE(failure.contains(path(u"site/"_s))) << failure.toStdString();
    EXPECT_EQ(contentOf(home.path()), before);
}

TEST_F(LogArchive, AMonthOutsideTheYearFailsBehindPageCopyAndList) {
    const QString made = u"ログのページとそのコピー、アップロードの一覧の行は作成済みで、残っています: "_s;
    for (const QString& month : {u"13"_s, u"ab"_s, u"00"_s}) {
        SCOPED_TRACE(month.toStdString());
        const QString failure = failureOf([&] { save(u"2004"_s, month); });
        EXPECT_TRUE(failure.startsWith(made)) << failure.toStdString();
        EXPECT_TRUE(failure.contains(month)) << failure.toStdString();
        const QString name = u"2004"_s + month + u".htm"_s;
        EXPECT_TRUE(exists(dataLog(name)));
        EXPECT_TRUE(exists(siteLog(name)));
        EXPECT_EQ(uploadRows(u"uploadlog.tmp"_s).last(), u"UserData/DiaryLog,"_s + name);
        EXPECT_EQ(logs(), QStringList());
        EXPECT_EQ(boxes(), QStringList());
    }
    EXPECT_TRUE(failureOf([&] { save(u"year"_s, u"5"_s); }).startsWith(made));
    EXPECT_TRUE(exists(dataLog(u"year05.htm"_s)));
    session.FilePath = u""_s;
    EXPECT_TRUE(failureOf([&] { save(u"2004"_s, u"13"_s); }).startsWith(u"ログのページ、アップロードの一覧の行は"_s));
}

TEST_F(LogArchive, AFailureAheadOfTheEndLeavesNoRow) {
    registerPart(u"a.gif"_s, u"2004/05/01"_s);
    ASSERT_TRUE(QDir(session.DataPath + u"DiaryLog"_s).mkpath(u"DiaryParts/a.gif"_s));
    EXPECT_NE(failureOf([&] { save(); }), u""_s);
    EXPECT_EQ(logs(), QStringList());
    EXPECT_EQ(fileRows(), QStringList{u"a.gif 2004/05/01 0 0"_s});
    ASSERT_TRUE(QDir(dataLog(u"DiaryParts"_s)).rmdir(u"a.gif"_s));
    save();
    EXPECT_EQ(fileRows(), QStringList{u"a.gif 2004/05/01 0 1"_s});
    EXPECT_EQ(logs().size(), 1);
}

TEST_F(LogArchive, ACalendarBefore2000StopsTheLogBeforeItsPage) {
    setSetting(keys::calender::kUse, u"1"_s);
    const QString failure = failureOf([&] { save(u"1999"_s, u"12"_s); });
    EXPECT_TRUE(failure.contains(u"1999年12月"_s)) << failure.toStdString();
    EXPECT_FALSE(exists(dataLog(u"199912.htm"_s)));
    EXPECT_EQ(logs(), QStringList());
}

TEST_F(LogArchive, MakesNoFeedsFramesOrLogList) {
    write(u"2004/05/01"_s, u"題"_s);
    turnFeedsOn();
    setSetting(keys::frame::kFrameOn, u"1"_s);
    setSetting(keys::general::kUseLog, u"1"_s);
    setSetting(keys::general::kLogType, u"Normal"_s);
    save();
    EXPECT_EQ(QDir(dataLog(u""_s)).entryList(QDir::Files), QStringList{u"200405.htm"_s});
    EXPECT_TRUE(lacks(pageOf(dataLog(u"200405.htm"_s)), u"DiaryLog"_s));
}

TEST_F(LogArchive, AsACommandEndsWithThePreview) {
    write(u"2004/04/01"_s, u"題"_s);
    write(u"2004/05/06"_s, u"今日"_s);
    desk.events = {};
    bool isHidden = false;
    site::logCommand(run, u"2004"_s, u"4"_s, [&] {
        isHidden = true;
        EXPECT_EQ(boxes(), QStringList());
    });
    EXPECT_TRUE(isHidden);
    EXPECT_EQ(boxes(), QStringList{kDone});
    EXPECT_EQ(
        told().sliced(told().size() - 4),
        (QStringList{u"status: 2004/04の日記をLog化しました。"_s, u"message: Logファイル化しました。"_s,
                     u"status: Webページ表示中..."_s, u"navigate: "_s + session.DataPath + u"tmp.htm#2004/05/06"_s}));
    EXPECT_EQ(turns(), (QStringList{u"hourglass"_s, u"Logファイル化しました。"_s, u"default"_s}));
    EXPECT_TRUE(pageOf(dataLog(u"200404.htm"_s)).contains(u">題<"_s));
    EXPECT_TRUE(pageOf(session.DataPath + u"tmp.htm"_s).contains(u">今日<"_s));
}

TEST_F(LogArchive, AsACommandStopsWhereTheLogCannotBeMade) {
    session.FilePath = path(u"gone/"_s);
    desk.events = {};
    EXPECT_NE(failureOf([&] { site::logCommand(run, u"2004"_s, u"4"_s); }), QString());
    EXPECT_EQ(told(), QStringList());
}

} // namespace
} // namespace velloria::tests
