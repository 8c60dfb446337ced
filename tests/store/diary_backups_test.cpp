#include "store/diary_backups.h"

#include "platform/file_write.h"
#include "store/backup_names.h"
#include "store/diary_home.h"
#include "support/faulty_disk.h"

#include <QDir>
#include <QFile>

#include <thread>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using store::makeBackup;
using store::makeBackupOfDay;
using store::sqlite::Access;
using store::sqlite::Connection;

class DiaryBackups : public DiaryHome {
protected:
    DiaryBackups() { setNow(u"2004/05/06 07:08:09"_s); }

    QString folder() const { return session.UserPath + u"Backup/"_s; }
    QStringList names() const { return QDir(folder()).entryList(QDir::Files | QDir::Hidden, QDir::Name); }
    QString today(int copy = 1) const { return folder() + store::BackupName{clock.now().date(), copy}.text(); }
    /// Another entry, then a copy.
    QString copyWith(const QString& title) {
        write(kDay, title);
        return makeBackup(run);
    }
};

TEST_F(DiaryBackups, HoldWhatTheDiaryHolds) {
    EXPECT_EQ(copyWith(u"a"_s), today());
    EXPECT_EQ(titles(today()), u"a"_s);
    EXPECT_EQ(names(), QStringList{u"diary-20040506.mdb"_s});
    EXPECT_EQ(modeOf(folder()), 0700U);
    EXPECT_EQ(modeOf(today()), 0600U);
}

TEST_F(DiaryBackups, AreReadByNobodyWhoMayNotReadTheDiary) {
    write(kDay, u"a"_s);
    for (const unsigned mode : {0600U, 0640U}) {
        ASSERT_EQ(::chmod(QFile::encodeName(file()).constData(), mode), 0);
        makeBackup(run);
        EXPECT_EQ(modeOf(today()) & ~mode, 0U);
    }
}

TEST_F(DiaryBackups, OfOneDayMoveOnWhenTheyDiffer) {
    for (const char* title : {"a", "b", "c", "d", "e", "f"}) {
        copyWith(QLatin1StringView(title));
        makeBackup(run); // of the same diary
    }
    EXPECT_EQ(names(), QStringList({u"diary-20040506-2.mdb"_s, u"diary-20040506-3.mdb"_s, u"diary-20040506-4.mdb"_s,
                                    u"diary-20040506.mdb"_s}));
    EXPECT_EQ(titles(today()), u"a b c d e f"_s);
    EXPECT_EQ(titles(today(2)), u"a b c d e"_s);
    EXPECT_EQ(titles(today(4)), u"a b c"_s);
    setNow(u"2004/05/07 07:08:09"_s);
    makeBackup(run);
    EXPECT_EQ(names(), QStringList({u"diary-20040506.mdb"_s, u"diary-20040507.mdb"_s}));
}

TEST_F(DiaryBackups, OfTheSameDiaryIsNotMadeAgain) {
    copyWith(u"a"_s);
    const QByteArray name = QFile::encodeName(today());
    struct stat made;
    struct stat now;
    ASSERT_EQ(::stat(name.constData(), &made), 0);
    ASSERT_EQ(::chmod(name.constData(), 0644), 0);
    EXPECT_EQ(makeBackup(run), today());
    ASSERT_EQ(::stat(name.constData(), &now), 0);
    EXPECT_EQ(now.st_ino, made.st_ino);
    EXPECT_EQ(now.st_mode & 0777, 0600U) << "as if it were new";
    const QByteArray bytes = bytesOf(today());
    EXPECT_TRUE(bytes == bytesOf(file()));
    for (const QByteArray& other : {bytes.chopped(1), bytes + '\0', QByteArray(bytes).replace(4000, 1, "?")}) {
        writeFile(today(), other);
        makeBackup(run);
        EXPECT_TRUE(bytesOf(today()) == bytes);
        EXPECT_TRUE(bytesOf(today(2)) == other);
    }
    platform::removeFile(today());
    ASSERT_EQ(::link(QFile::encodeName(file()).constData(), name.constData()), 0);
    makeBackup(run);
    EXPECT_FALSE(platform::isSameFile(today(), file())) << "a second name is no copy";
}

TEST_F(DiaryBackups, TheOneThatIsAboutToBeRestoredStays) {
    for (const char* title : {"a", "b", "c", "d"})
        copyWith(QLatin1StringView(title));
    QString spared = today(4);
    ASSERT_EQ(titles(spared), u"a"_s);
    write(kDay, u"e"_s);
    makeBackup(run, spared);
    EXPECT_EQ(titles(spared), u"a"_s);
    EXPECT_EQ(titles(today(2)), u"a b c d"_s);
    spared = today(2);
    write(kDay, u"f"_s);
    makeBackup(run, spared);
    EXPECT_EQ(spared, today(3));
    EXPECT_EQ(titles(spared), u"a b c d"_s);
}

TEST_F(DiaryBackups, OfAYearAreThoseThatTheRuleKeeps) {
    write(kDay, u"a"_s);
    writeFile(path(u"other.mdb"_s), "x");
    for (QDate day(2004, 1, 1); day <= QDate(2004, 12, 31); day = day.addDays(1)) {
        setNow(day.toString(u"yyyy/MM/dd 09:00:00"_s));
        EXPECT_TRUE(makeBackupOfDay(run));
        EXPECT_FALSE(makeBackupOfDay(run));
        if (day == QDate(2004, 3, 3)) {
            writeFile(folder() + u"diary-20040231.mdb"_s, "x");
            writeFile(folder() + u"notes.txt"_s, "x");
            ASSERT_TRUE(QDir(folder()).mkdir(u"diary-20040101.mdb.d"_s));
            ASSERT_TRUE(QDir(folder()).mkdir(u"diary-20030101.mdb"_s));
            ASSERT_TRUE(QFile::link(path(u"other.mdb"_s), folder() + u"diary-20020101.mdb"_s));
        }
    }
    EXPECT_EQ(names().size(), 14 + 11 + 3) << names().join(u' ').toStdString();
    EXPECT_TRUE(exists(folder() + u"diary-20040131.mdb"_s));
    EXPECT_FALSE(exists(folder() + u"diary-20041217.mdb"_s));
    EXPECT_TRUE(exists(folder() + u"diary-20041218.mdb"_s));
    for (const QString& name : {u"diary-20040231.mdb"_s, u"notes.txt"_s, u"diary-20040101.mdb.d"_s,
                                u"diary-20030101.mdb"_s, u"diary-20020101.mdb"_s})
        EXPECT_TRUE(exists(folder() + name)) << name.toStdString();
}

TEST_F(DiaryBackups, OfNothingAreNotMade) {
    EXPECT_EQ(makeBackup(run), QString()) << "no entries";
    writeFile(file(), QByteArray("\0\1\0\0Standard Jet DB\0\1\0\0\0", 24) + QByteArray(4072, '\0'));
    EXPECT_EQ(makeBackup(run), QString()) << "the older format";
    platform::removeFile(file());
    EXPECT_EQ(makeBackup(run), QString()) << "no diary";
    EXPECT_FALSE(exists(folder()));
}

TEST_F(DiaryBackups, OfAnUnsoundDiaryAreRefusedAndTheOldOnesStay) {
    for (int i = 0; i < 20; ++i)
        write(kDay, u"a"_s, QString(3000, u'x'));
    makeBackup(run);
    const QByteArray whole = bytesOf(file());
    QByteArray torn = whole;
    torn.replace(4096 * 4, 4096 * 3, QByteArray(4096 * 3, '\xAA'));
    for (const QByteArray& bytes : {QByteArray(), QByteArray("x"), whole.first(5000), whole.chopped(1), torn}) {
        writeFile(file(), bytes);
        const auto before = contentOf(home.path());
        const QString failure = failureOf([&] { makeBackup(run); });
        EXPECT_TRUE(failure.startsWith(u"日記のバックアップを作成できません"_s)) << failure.toStdString();
        EXPECT_TRUE(failure.contains(file())) << failure.toStdString();
        EXPECT_EQ(contentOf(home.path()), before) << bytes.size();
    }
}

TEST_F(DiaryBackups, AreWholeWhileOthersReadAndWait) {
    write(kDay, u"a"_s);
    Connection reader(file(), Access::ReadOnly);
    reader.execute("BEGIN");
    reader.execute("SELECT count(*) FROM Contents");
    Connection writer(file(), Access::ReadWrite);
    writer.execute("BEGIN IMMEDIATE");
    writer.execute("INSERT INTO Contents (Day, Number, Title) VALUES ('2004/05/06', 2, 'not yet')");
    makeBackup(run);
    EXPECT_EQ(titles(today()), u"a"_s);
}

TEST_F(DiaryBackups, TakeAlongWhatAnotherToolHasInItsLog) {
    write(kDay, u"a"_s);
    Connection other(file(), Access::ReadWrite);
    other.execute("PRAGMA journal_mode = WAL");
    other.execute("INSERT INTO Contents (Day, Number, Title) VALUES ('2004/05/06', 2, 'logged')");
    makeBackup(run);
    EXPECT_EQ(titles(today()), u"a logged"_s);
    EXPECT_EQ(bytesOf(today()).mid(18, 2), "\1\1") << "one file without a log";
    EXPECT_EQ(names().size(), 1);
}

TEST_F(DiaryBackups, AHalfOneOfAKilledProgramIsNeverTakenForOne) {
    write(kDay, u"a"_s);
    ASSERT_TRUE(QDir(session.UserPath).mkdir(u"Backup"_s));
    writeFile(folder() + u"diary-backup.tmp"_s, bytesOf(file()).first(5000));
    writeFile(folder() + u"diary-backup.tmp-journal"_s, "\xd9\xd5\x05\xf9\x20\xa1\x63\xd7 of another one");
    makeBackup(run);
    EXPECT_EQ(names(), QStringList{u"diary-20040506.mdb"_s});
    EXPECT_EQ(titles(today()), u"a"_s);
}

TEST_F(DiaryBackups, ADiskWithoutRoomLeavesTheOldOnes) {
    copyWith(u"a"_s);
    write(kDay, u"b"_s, QString(20000, u'x'));
    const auto before = contentOf(home.path());
    {
        FaultyDisk disk(home.path());
        disk.leaveRoom(8192);
        EXPECT_NE(failureOf([&] { makeBackup(run); }), QString());
    }
    EXPECT_EQ(contentOf(home.path()), before);
    makeBackup(run);
    EXPECT_EQ(titles(today()), u"a b"_s);
}

TEST_F(DiaryBackups, AFolderThatIsAFileIsAFailure) {
    write(kDay, u"a"_s);
    writeFile(session.UserPath + u"Backup"_s, "mine");
    EXPECT_TRUE(failureOf([&] { makeBackup(run); }).contains(u"Backup"_s));
    EXPECT_EQ(bytesOf(session.UserPath + u"Backup"_s), "mine");
}

TEST_F(DiaryBackups, OfTwoProgramsAtOnceAreBothWhole) {
    write(kDay, u"a"_s, QString(100000, u'x'));
    std::thread other([&] { makeBackup(run); });
    makeBackup(run);
    other.join();
    EXPECT_EQ(titles(today()), u"a"_s);
    EXPECT_EQ(names().size(), 1);
}

} // namespace
} // namespace velloria::tests
