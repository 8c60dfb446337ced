// What a start does with diaries of all versions, and with what is no diary.
#include "shell/startup.h"

#include "core/ini.h"
#include "platform/file_write.h"
#include "store/database_file.h"
#include "store/old_diary_home.h"
#include "support/factory_sets.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::makeFolder;
using platform::removeFile;
using shell::StartResult;

const QString kUpdateBox = u"plain: diary.mdbがアップデートされています。\r\nデータベースをアップデートします。\r\n"
                           "(念のために、今までの「diary.mdb」は「diarymdb.bak」というファイル名で保存します。)"_s;
const QString kDoneBox =
    u"plain: diary.mdbのアップデートは完了しました。\r\n念のためにVelloriaを再起動してください。"_s;

class StartupDatabase : public OldDiaryHome {
protected:
    StartupDatabase() {
        write(u"2004/05/06"_s, u"dear"_s);
        writeFile(path(u"own.ini"_s), "[x]\r\n");
        for (const QString& section : {u"Customize"_s, u"Frame"_s, u"RSS"_s, u"HaloScan"_s, u"Blog"_s})
            core::WriteIni(session.DiaryIniFile, section, u"IniFileName"_s, path(u"own.ini"_s));
        core::WriteIni(session.DiaryIniFile, u"ALL"_s, u"DBVersion"_s, u"7"_s);
        desk.events = {};
    }
    void setVersion(int version) { sql(u"UPDATE DBInfo SET VersionInfo = %1"_s.arg(version)); }
    QString setting(const QString& section, const QString& key) const {
        return core::ReadIni(session.DiaryIniFile, section, key);
    }
};

TEST_F(StartupDatabase, OfThePresentOrALaterVersionIsTakenAsItIs) {
    start(); // the one of the day that makes a backup
    desk.events = {};
    for (const int version : {220, 221, 1000, 32767}) {
        setVersion(version);
        const auto before = contentOf(home.path());
        ASSERT_EQ(start(), StartResult::Ready) << version;
        EXPECT_EQ(contentOf(home.path()), before) << version;
        EXPECT_EQ(boxes(), QStringList());
        EXPECT_EQ(session.CustIniFile, path(u"own.ini"_s));
    }
}

TEST_F(StartupDatabase, OfAnUnknownOldVersionIsBackedUpAndNotConverted) {
    for (const int version : {1, 99, 102, 120, 199, 211, 219, -1}) {
        setVersion(version);
        const QByteArray before = bytesOf(file());
        core::WriteIni(session.DiaryIniFile, u"ALL"_s, u"DBVersion"_s, u"7"_s);
        desk.events = {};
        ASSERT_EQ(start(), StartResult::Ready) << version;
        EXPECT_EQ(boxes(), (QStringList{kUpdateBox, kDoneBox})) << version;
        EXPECT_TRUE(bytesOf(backup()) == before) << version;
        EXPECT_TRUE(bytesOf(file()) == before) << version;
        EXPECT_EQ(setting(u"ALL"_s, u"DBVersion"_s), u"220"_s);
    }
    EXPECT_EQ(session.Today, u"2004/05/06"_s) << "the start goes on";
}

TEST_F(StartupDatabase, OfAnOldVersionGetsTheDefaultSettingsFilesButForFeeds) {
    setVersion(120);
    start();
    EXPECT_EQ(setting(u"Customize"_s, u"IniFileName"_s), session.DataPath + u"Customize/Customize.ini"_s);
    for (const QString& section : {u"Frame"_s, u"HaloScan"_s, u"Blog"_s})
        EXPECT_EQ(setting(section, u"IniFileName"_s), session.DataPath + section + u".ini"_s);
    EXPECT_EQ(setting(u"RSS"_s, u"IniFileName"_s), path(u"own.ini"_s));
    EXPECT_EQ(session.CustIniFile, session.DataPath + u"Customize/Customize.ini"_s);
    EXPECT_EQ(session.RSSIniFile, path(u"own.ini"_s));
}

TEST_F(StartupDatabase, OfAnOldVersionGetsTheCustomizeFilesThatItNeverHad) {
    bringCustomizeSets(home.path());
    setVersion(120);
    ASSERT_TRUE(QDir(session.DataPath + u"Customize"_s).removeRecursively());
    start();
    EXPECT_EQ(bytesOf(session.CustIniFile), bytesOf(path(u"Customize.ini"_s)));
    EXPECT_EQ(bytesOf(session.DataPath + u"Customize/Plain.ini"_s), bytesOf(path(u"Customize/Plain.ini"_s)));

    ASSERT_TRUE(QDir().rename(session.DataPath + u"Customize"_s, session.DataPath + u"CUSTOMIZE"_s));
    writeFile(session.DataPath + u"CUSTOMIZE/Customize.ini"_s, "[Mine]\r\n");
    start();
    EXPECT_FALSE(exists(session.DataPath + u"Customize"_s));
    EXPECT_EQ(bytesOf(session.DataPath + u"CUSTOMIZE/Customize.ini"_s), "[Mine]\r\n");
}

TEST_F(StartupDatabase, OfAKnownOldVersionIsBackedUpAndConverted) {
    for (const int version : {0, 100, 101, 110, 150, 200, 210}) {
        fillOld(version);
        const QByteArray before = bytesOf(file());
        core::WriteIni(session.DiaryIniFile, u"ALL"_s, u"DBVersion"_s, u"7"_s);
        desk.events = {};
        ASSERT_EQ(start(), StartResult::Ready) << version;
        EXPECT_EQ(boxes(), (QStringList{kUpdateBox, kDoneBox})) << version;
        EXPECT_TRUE(bytesOf(backup()) == before) << version;
        EXPECT_EQ(store::GetDBVersion(file()), 220) << version;
        EXPECT_EQ(rows(u"SELECT Day, Title FROM Contents WHERE Title = 'last'"_s), QStringList{u"2001/03/04|last"_s});
        EXPECT_EQ(setting(u"ALL"_s, u"DBVersion"_s), u"220"_s) << version;
        EXPECT_EQ(desk.events.last()[u"shape"_s], u"default"_s);
        const auto converted = contentOf(home.path());
        desk.events = {};
        start();
        EXPECT_EQ(boxes(), QStringList()) << "the next start has nothing to do";
        EXPECT_EQ(contentOf(home.path()), converted);
    }
}

TEST_F(StartupDatabase, ThatCantBeConvertedEndsTheStart) {
    fillOld(150);
    sqlOn(file(), u"DROP TABLE FileDB"_s);
    const QByteArray before = bytesOf(file());
    const QString failure = failureOf([&] { start(); });
    EXPECT_TRUE(failure.contains(u"FileDB"_s) && failure.contains(file())) << failure.toStdString();
    EXPECT_EQ(boxes(), QStringList{kUpdateBox});
    EXPECT_TRUE(bytesOf(file()) == before);
    EXPECT_TRUE(bytesOf(backup()) == before);
    EXPECT_EQ(setting(u"ALL"_s, u"DBVersion"_s), u"7"_s) << "not yet at 220";
    EXPECT_EQ(desk.events.last()[u"shape"_s], u"default"_s);
}

TEST_F(StartupDatabase, OlderBackupsMoveOn) {
    writeFile(backup(), "first");
    setVersion(120);
    start();
    EXPECT_EQ(bytesOf(backup() + u".1"_s), "first");
    EXPECT_TRUE(bytesOf(backup()) == bytesOf(file()));
}

TEST_F(StartupDatabase, ThatIsNoDiaryLeavesEverythingAsItIs) {
    const QByteArray whole = bytesOf(file());
    QByteArray damaged = whole;
    damaged.replace(100, 2000, QByteArray(2000, '\xFF'));
    writeFile(backup(), "good");
    const QByteArray jet = QByteArray("\0\1\0\0Standard Jet DB\0\0\0\0\0", 24) + QByteArray(4072, '\0');
    for (const QByteArray& bytes : {QByteArray(), QByteArray("text"), whole.first(whole.size() / 2), damaged, jet}) {
        writeFile(file(), bytes);
        const auto before = contentOf(home.path());
        const QString failure = failureOf([&] { start(); });
        EXPECT_TRUE(failure.contains(file())) << failure.toStdString();
        EXPECT_EQ(contentOf(home.path()), before) << bytes.size();
        EXPECT_EQ(boxes(), QStringList());
    }
}

TEST_F(StartupDatabase, ThatIsDamagedAndOldDoesNotReplaceTheBackup) {
    for (int i = 0; i < 40; ++i)
        write(u"2004/05/06"_s, u"a"_s, QString(1000, u'x'));
    setVersion(120);
    QByteArray damaged = bytesOf(file());
    damaged.replace(damaged.size() - 9000, 8192, QByteArray(8192, '\xAA'));
    writeFile(file(), damaged);
    writeFile(backup(), "good");
    const QString failure = failureOf([&] { start(); });
    EXPECT_TRUE(failure.contains(u"壊れています"_s)) << failure.toStdString();
    EXPECT_TRUE(bytesOf(file()) == damaged);
    EXPECT_EQ(bytesOf(backup()), "good");
    EXPECT_FALSE(exists(backup() + u".1"_s));
}

TEST_F(StartupDatabase, OfAVersionThatNoNumberHoldsIsRefused) {
    setVersion(65536 + 120);
    const auto before = contentOf(home.path());
    EXPECT_TRUE(failureOf([&] { start(); }).contains(file()));
    EXPECT_EQ(contentOf(home.path()), before);
}

TEST_F(StartupDatabase, OfAWindowsDiskIsBackedUpUnderItsOwnName) {
    setVersion(120);
    ASSERT_TRUE(QDir().rename(file(), session.UserPath + u"Diary.MDB"_s));
    const QByteArray before = bytesOf(session.UserPath + u"Diary.MDB"_s);
    ASSERT_EQ(start(), StartResult::Ready);
    EXPECT_TRUE(bytesOf(backup()) == before);
    EXPECT_EQ(session.databaseFile(), session.UserPath + u"Diary.MDB"_s);
    EXPECT_FALSE(exists(session.UserPath + u"diary.mdb"_s));
    EXPECT_EQ(diary().LoadDay(u"2004/05/06"_s).size(), 1U);
}

} // namespace
} // namespace velloria::tests
