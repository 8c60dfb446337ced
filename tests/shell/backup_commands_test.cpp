#include "shell/backup_commands.h"

#include "platform/file_write.h"
#include "store/backup_names.h"
#include "store/database_file.h"
#include "store/diary_backups.h"
#include "store/diary_home.h"
#include "support/faulty_disk.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using shell::makeBackupCommand;
using shell::restoreBackupCommand;

class BackupCommands : public DiaryHome {
protected:
    BackupCommands() {
        write(kDay, u"old"_s);
        store::makeBackup(run);
        setNow(u"2004/05/07 08:00:00"_s);
        write(kDay, u"new"_s);
        desk.events = {};
    }
    QString inFolder(const QString& name) const { return session.UserPath + u"Backup/"_s + name; }
    /// Of "Backup" and of what lies beside the diary.
    QStringList names() const {
        return QDir(session.UserPath + u"Backup"_s).entryList(QDir::Files, QDir::Name) +
               QDir(session.UserPath).entryList({u"diarymdb*"_s}, QDir::Files, QDir::Name);
    }
    static inline const QString kOld = u"diary-20040506.mdb"_s;
};

TEST_F(BackupCommands, MakeTellsWhatItMade) {
    EXPECT_EQ(makeBackupCommand(run), inFolder(u"diary-20040507.mdb"_s));
    EXPECT_EQ(lastStatus(), u"バックアップ「diary-20040507.mdb」を作成しました。"_s);
    sql(u"DELETE FROM Contents"_s);
    EXPECT_EQ(makeBackupCommand(run), QString());
    EXPECT_EQ(lastStatus(), shell::kNothingToBackUp);
}

TEST_F(BackupCommands, RestoreAsksAndMakesACopyOfThePresentDiaryFirst) {
    desk.answers = {u"yes"_s};
    const shell::Restoration restored = restoreBackupCommand(run, kOld);
    EXPECT_TRUE(restored.isDone);
    EXPECT_EQ(desk.texts(u"message"_s),
              QStringList{u"次のバックアップを復元しますか？\r\n「diary-20040506.mdb」\r\n日付: 2004/05/06 00:00\r\n"
                          u"日記: 1件\r\n最後の日記: old\r\n今の日記は、バックアップしてから置き換えます。"_s});
    EXPECT_EQ(titles(file()), u"old"_s);
    EXPECT_EQ(restored.kept, session.UserPath + u"diarymdb.replaced.bak"_s);
    EXPECT_EQ(titles(restored.kept), u"old new"_s);
    EXPECT_EQ(titles(inFolder(u"diary-20040507.mdb"_s)), u"old new"_s);
    EXPECT_EQ(lastStatus(),
              u"diary-20040506.mdbを復元しました。今までの日記は「diarymdb.replaced.bak」に残しました。"_s);
}

TEST_F(BackupCommands, WhoLooksForTheRightOneLosesNothing) {
    setNow(u"2004/05/08 08:00:00"_s);
    for (const char* title : {"1", "2", "3", "4", "5", "6"}) {
        desk.answers = {u"yes"_s};
        EXPECT_TRUE(restoreBackupCommand(run, kOld).isDone);
        write(kDay, QLatin1StringView(title));
    }
    setNow(u"2004/05/09 08:00:00"_s);
    store::makeBackup(run);
    QStringList kept;
    for (const QString& name : QDir(session.UserPath).entryList({u"diarymdb.replaced*"_s}, QDir::Files, QDir::Name))
        kept += titles(session.UserPath + name);
    EXPECT_EQ(kept, (QStringList{u"old 1"_s, u"old 2"_s, u"old 3"_s, u"old 4"_s, u"old 5"_s, u"old new"_s}));
}

TEST_F(BackupCommands, WhatACopyOfAnEarlierDayHoldsIsKeptOnce) {
    store::makeBackup(run);
    setNow(u"2004/05/08 08:00:00"_s);
    const QStringList before = names();
    for (const QString& name : {kOld, u"diary-20040507.mdb"_s, kOld}) {
        desk.answers = {u"yes"_s};
        EXPECT_EQ(restoreBackupCommand(run, name).kept, inFolder(name == kOld ? u"diary-20040507.mdb"_s : kOld));
        EXPECT_EQ(titles(file()), name == kOld ? u"old"_s : u"old new"_s);
    }
    EXPECT_EQ(names(), before);
}

TEST_F(BackupCommands, WhatIsKeptAlreadyIsNotKeptAgain) {
    const QString kept = session.UserPath + u"diarymdb.replaced.bak"_s;
    for (int time = 0; time < 2; ++time) {
        desk.answers = {u"yes"_s, u"yes"_s};
        EXPECT_EQ(restoreBackupCommand(run, kOld).kept, kept);
        EXPECT_EQ(restoreBackupCommand(run, u"diary-20040507.mdb"_s).kept, inFolder(kOld));
        EXPECT_EQ(titles(file()), u"old new"_s);
    }
    EXPECT_EQ(names(), (QStringList{kOld, u"diary-20040507.mdb"_s, u"diarymdb.replaced.bak"_s}));
}

TEST_F(BackupCommands, ANoChangesNothing) {
    desk.answers = {u"no"_s};
    const auto before = contentOf(home.path());
    EXPECT_FALSE(restoreBackupCommand(run, kOld).isDone);
    EXPECT_EQ(lastStatus(), u"復元を中止しました。"_s);
    EXPECT_EQ(contentOf(home.path()), before);
}

TEST_F(BackupCommands, NamesThatAreNoneOfTheListAreRefused) {
    writeFile(path(u"other.mdb"_s), bytesOf(file()));
    writeFile(inFolder(u"damaged.mdb"_s), bytesOf(file()).first(5000));
    const auto before = contentOf(home.path());
    for (const QString& name :
         {u""_s, u"diary.mdb"_s, u"../diary.mdb"_s, u"../../other.mdb"_s, path(u"other.mdb"_s), inFolder(kOld),
          u"Backup/"_s + kOld, u"diary-20040501.mdb"_s, u"damaged.mdb"_s, u"."_s, u"diary-20040506.mdb\n"_s})
        EXPECT_NE(failureOf([&] { restoreBackupCommand(run, name); }), QString()) << name.toStdString();
    EXPECT_EQ(contentOf(home.path()), before);
    EXPECT_EQ(desk.texts(u"message"_s), QStringList());
}

TEST_F(BackupCommands, TheCopyThatIsRestoredIsDisplacedByNone) {
    for (const char* title : {"1", "2", "3", "4"}) {
        write(kDay, QLatin1StringView(title));
        store::makeBackup(run);
    }
    write(kDay, u"last"_s);
    const QString oldest = u"diary-20040507-4.mdb"_s;
    const QString held = titles(inFolder(oldest));
    desk.answers = {u"yes"_s, u"yes"_s};
    restoreBackupCommand(run, oldest);
    EXPECT_EQ(titles(file()), held);
    EXPECT_EQ(titles(inFolder(oldest)), held);
    EXPECT_EQ(titles(inFolder(u"diary-20040507.mdb"_s)), u"old new 1 2 3 4 last"_s);
    // The same of a day that a new one pushes out.
    for (QDate day(2004, 5, 8); day < QDate(2004, 5, 21); day = day.addDays(1)) {
        setNow(day.toString(u"yyyy/MM/dd 08:00:00"_s));
        store::makeBackup(run);
    }
    platform::copyFile(inFolder(u"diary-20040507.mdb"_s), inFolder(u"diary-20040504.mdb"_s));
    setNow(u"2004/05/21 08:00:00"_s);
    restoreBackupCommand(run, u"diary-20040504.mdb"_s);
    EXPECT_EQ(titles(file()), u"old new 1 2 3 4 last"_s);
    EXPECT_TRUE(exists(inFolder(u"diary-20040504.mdb"_s)));
    EXPECT_FALSE(exists(inFolder(kOld)));
}

TEST_F(BackupCommands, OfEveryKindThatTheListNames) {
    platform::copyFile(inFolder(kOld), backup() + u".2"_s);
    platform::copyFile(inFolder(kOld), session.UserPath + u"diarymdb.replaced-3.bak"_s);
    platform::copyFile(inFolder(kOld), inFolder(u"my copy.mdb"_s));
    for (const QString& name : {u"diarymdb.bak.2"_s, u"diarymdb.replaced-3.bak"_s, u"my copy.mdb"_s}) {
        write(kDay, u"more"_s);
        desk.answers = {u"yes"_s};
        EXPECT_TRUE(restoreBackupCommand(run, name).isDone) << name.toStdString();
        EXPECT_EQ(titles(file()), u"old"_s) << name.toStdString();
    }
}

TEST_F(BackupCommands, ADamagedOrMissingDiaryIsNoObstacle) {
    writeFile(file(), "no database");
    desk.answers = {u"yes"_s, u"yes"_s};
    EXPECT_EQ(restoreBackupCommand(run, kOld).kept, session.UserPath + u"diarymdb.replaced.bak"_s);
    EXPECT_EQ(titles(file()), u"old"_s);
    EXPECT_EQ(bytesOf(session.UserPath + u"diarymdb.replaced.bak"_s), "no database");
    platform::removeFile(file());
    EXPECT_EQ(restoreBackupCommand(run, kOld).kept, QString());
    EXPECT_EQ(titles(file()), u"old"_s);
}

TEST_F(BackupCommands, WithoutRoomForACopyTheDiaryStaysAsItWas) {
    desk.answers = {u"yes"_s};
    const auto before = contentOf(home.path());
    {
        FaultyDisk disk(home.path());
        disk.leaveRoom(8192);
        EXPECT_NE(failureOf([&] { restoreBackupCommand(run, kOld); }), QString());
    }
    EXPECT_EQ(contentOf(home.path()), before);
}

TEST_F(BackupCommands, AnOlderVersionIsBroughtUpToDateAsAStartDoesIt) {
    sql(u"UPDATE DBInfo SET VersionInfo = 120"_s);
    store::makeBackup(run);
    sql(u"UPDATE DBInfo SET VersionInfo = 220"_s);
    desk.answers = {u"yes"_s};
    restoreBackupCommand(run, u"diary-20040507.mdb"_s);
    EXPECT_EQ(boxes().size(), 3) << "the question, and both of the update";
    EXPECT_TRUE(exists(backup()));
}

} // namespace
} // namespace velloria::tests
