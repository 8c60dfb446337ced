#include "store/database_file.h"

#include "platform/file_write.h"
#include "store/database_check.h"
#include "store/diary_home.h"
#include "store/sqlite/statement.h"
#include "support/disk_watch.h"
#include "support/faulty_disk.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <csignal>
#include <thread>

#include <sys/stat.h>
#include <sys/wait.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using store::backUpDatabase;
using store::checkDatabase;
using store::copyDatabase;
using store::GetDBVersion;
using store::sqlite::Access;
using store::sqlite::Connection;

class DatabaseFile : public DiaryHome {
protected:
    /// What lies in the user's folder and begins with "diary".
    QStringList names() const { return QDir(session.UserPath).entryList({u"diary*"_s}, QDir::Files, QDir::Name); }

    /// What is not a diary, or no longer one.
    QList<QByteArray> noDiaries() const {
        const QByteArray whole = bytesOf(file());
        QByteArray damaged = whole;
        damaged.replace(100, 2000, QByteArray(2000, '\xFF'));
        return {{}, "x", "[ALL]\r\nDataPath=\r\n", QByteArray(5000, '\0'), whole.first(10), whole.first(5000), damaged};
    }
};

TEST_F(DatabaseFile, HasTheVersionOfItsTable) {
    EXPECT_EQ(GetDBVersion(file()), 220);
    for (const int version : {0, 100, 210, 221, 32767, -1}) {
        sql(u"UPDATE DBInfo SET VersionInfo = %1"_s.arg(version));
        EXPECT_EQ(GetDBVersion(file()), version);
    }
    sql(u"INSERT INTO DBInfo (VersionInfo) VALUES (500)"_s);
    EXPECT_EQ(GetDBVersion(file()), -1) << "the first row counts";
}

TEST_F(DatabaseFile, HasVersionZeroWhenMissingAndIsNotMade) {
    EXPECT_EQ(GetDBVersion(path(u"no.mdb"_s)), 0);
    EXPECT_FALSE(exists(path(u"no.mdb"_s)));
}

TEST_F(DatabaseFile, HasVersionZeroWithoutTheTable) {
    sql(u"DROP TABLE DBInfo"_s);
    EXPECT_EQ(GetDBVersion(file()), 0);
    sql(u"CREATE TABLE dbinfo (VersionInfo INTEGER)"_s);
    sql(u"INSERT INTO dbinfo VALUES (150)"_s);
    EXPECT_EQ(GetDBVersion(file()), 150);
}

TEST_F(DatabaseFile, AVersionBeyondSixteenBitsIsNoSmallerOne) {
    for (const qint64 version : {32768LL, 65756LL, 4294967296LL, -32769LL}) {
        sql(u"UPDATE DBInfo SET VersionInfo = %1"_s.arg(version));
        EXPECT_TRUE(failureOf([&] { GetDBVersion(file()); }).contains(file())) << version;
    }
}

TEST_F(DatabaseFile, AVersionThatWasLostIsNotZero) {
    sql(u"DROP TABLE DBInfo"_s);
    sql(u"CREATE TABLE DBInfo (VersionInfo)"_s);
    EXPECT_TRUE(failureOf([&] { GetDBVersion(file()); }).contains(u"「DBInfo」に行がありません"_s));
    for (const QString& value : {u"NULL"_s, u"'x'"_s}) {
        sql(u"DELETE FROM DBInfo"_s);
        sql(u"INSERT INTO DBInfo VALUES (%1)"_s.arg(value));
        EXPECT_TRUE(failureOf([&] { GetDBVersion(file()); }).contains(u"「VersionInfo」が数ではありません"_s));
    }
}

TEST_F(DatabaseFile, ThatIsNoDiaryHasNoVersionAndStaysAsItIs) {
    for (const QByteArray& bytes : noDiaries()) {
        writeFile(path(u"x.mdb"_s), bytes);
        EXPECT_TRUE(failureOf([&] { GetDBVersion(path(u"x.mdb"_s)); }).contains(path(u"x.mdb"_s))) << bytes.size();
        EXPECT_TRUE(bytesOf(path(u"x.mdb"_s)) == bytes);
    }
    EXPECT_THROW(GetDBVersion(home.path()), platform::Failure);
}

TEST_F(DatabaseFile, ThatIsAPipeOrADeviceIsRefusedAtOnce) {
    const QString pipe = path(u"pipe.mdb"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    for (const QString& name : {pipe, u"/dev/zero"_s}) {
        EXPECT_TRUE(holdsInChild([&] {
            ::alarm(60);
            return failureOf([&] { GetDBVersion(name); }).contains(name) &&
                   failureOf([&] { checkDatabase(name); }).contains(name) &&
                   failureOf([&] { backUpDatabase(name, backup()); }).contains(name) &&
                   failureOf([&] { copyDatabase(name, path(u"copy.mdb"_s)); }).contains(name) &&
                   failureOf([&] { store::restoreDatabase(file(), name); }).contains(u"通常のファイルではありません"_s);
        })) << name.toStdString();
    }
}

TEST_F(DatabaseFile, OfAnotherProgramIsNoDiary) {
    sql(u"DROP TABLE DBInfo"_s);
    sql(u"DROP TABLE Contents"_s);
    EXPECT_TRUE(failureOf([&] { GetDBVersion(file()); }).contains(u"日記データベースではありません"_s));
}

TEST_F(DatabaseFile, OfTheOldFormatIsRefusedByItsName) {
    writeFile(path(u"old.mdb"_s), QByteArray("\0\1\0\0Standard Jet DB\0\1\0\0\0", 24) + QByteArray(4072, '\0'));
    EXPECT_TRUE(failureOf([&] { GetDBVersion(path(u"old.mdb"_s)); }).contains(u"Jet"_s));
}

TEST_F(DatabaseFile, ShowsTheVersionFromBeforeAKilledChange) {
    tear(file());
    ASSERT_TRUE(exists(file() + u"-journal"_s));
    EXPECT_EQ(GetDBVersion(file()), 220);
}

TEST_F(DatabaseFile, IsBackedUpByteForByte) {
    write(u"2004/05/06"_s, u"a"_s);
    const QByteArray before = bytesOf(file());
    backUpDatabase(file(), backup());
    EXPECT_TRUE(bytesOf(backup()) == before);
    EXPECT_TRUE(bytesOf(file()) == before);
    EXPECT_EQ(names(), (QStringList{u"diary.ini"_s, u"diary.mdb"_s, u"diarymdb.bak"_s}));
}

TEST_F(DatabaseFile, KeepsThreeOlderBackups) {
    QList<QByteArray> states;
    for (int i = 0; i < 6; ++i) {
        write(u"2004/05/06"_s, QString::number(i));
        states += bytesOf(file());
        backUpDatabase(file(), backup());
        for (int older = 0; older <= qMin(i, 3); ++older) {
            const QString name = older == 0 ? backup() : u"%1.%2"_s.arg(backup()).arg(older);
            EXPECT_TRUE(bytesOf(name) == states[i - older]) << i << ' ' << older;
        }
    }
    EXPECT_EQ(names().filter(u"bak"_s),
              (QStringList{u"diarymdb.bak"_s, u"diarymdb.bak.1"_s, u"diarymdb.bak.2"_s, u"diarymdb.bak.3"_s}));
}

TEST_F(DatabaseFile, KeepsItsBackupsInAFolderOfAnyName) {
    const QString folder = path(u"100%1 or %2"_s);
    ASSERT_TRUE(QDir().mkpath(folder));
    for (int i = 0; i < 4; ++i) {
        write(u"2004/05/06"_s, QString::number(i));
        backUpDatabase(file(), folder + u"/x.bak"_s);
    }
    EXPECT_EQ(QDir(folder).entryList(QDir::Files, QDir::Name),
              (QStringList{u"x.bak"_s, u"x.bak.1"_s, u"x.bak.2"_s, u"x.bak.3"_s}));
}

TEST_F(DatabaseFile, BackedUpAgainUnchangedKeepsTheOlderBackups) {
    backUpDatabase(file(), backup());
    const QByteArray older = bytesOf(backup());
    write(u"2004/05/06"_s, u"new"_s);
    for (int i = 0; i < 5; ++i)
        backUpDatabase(file(), backup());
    EXPECT_TRUE(bytesOf(backup()) == bytesOf(file()));
    EXPECT_TRUE(bytesOf(backup() + u".1"_s) == older);
    EXPECT_EQ(names().filter(u"bak"_s), (QStringList{u"diarymdb.bak"_s, u"diarymdb.bak.1"_s}));
}

TEST_F(DatabaseFile, ThatCanNotBeBackedUpKeepsTheOlderBackupsApart) {
    QStringList older;
    for (int i = 3; i >= 1; --i) {
        older += QString::number(i);
        writeFile(u"%1.%2"_s.arg(backup()).arg(i), older.last().toUtf8());
    }
    const auto backups = [this] {
        QStringList states;
        for (const QString& name : names().filter(u"bak"_s))
            states += QString::fromUtf8(bytesOf(session.UserPath + name));
        return states;
    };
    writeFile(backup(), "0");
    QFile::setPermissions(backup(), QFile::ReadOwner);
    EXPECT_TRUE(failureOf([&] { backUpDatabase(file(), backup()); }).contains(backup()));
    EXPECT_EQ(backups(), (QStringList{u"0"_s, u"1"_s, u"2"_s, u"3"_s}));
    QFile::setPermissions(backup(), QFile::ReadOwner | QFile::WriteOwner);
    FaultyDisk disk(session.UserPath);
    disk.leaveRoom(QFileInfo(file()).size() / 2);
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(failureOf([&] { backUpDatabase(file(), backup()); }).contains(backup()));
        EXPECT_EQ(backups(), (QStringList{u"0"_s, u"0"_s, u"1"_s, u"2"_s})) << i;
    }
}

TEST_F(DatabaseFile, BackedUpByTwoProgramsAtOnceLosesNoOlderBackup) {
    const auto state = [this](int age) { return bytesOf(age == 0 ? backup() : u"%1.%2"_s.arg(backup()).arg(age)); };
    for (int turn = 0; turn < 20; ++turn) {
        QList<QByteArray> older;
        for (int age = 0; age < qMin(turn, 3); ++age)
            older += state(age);
        write(u"2004/05/06"_s, QString::number(turn));
        std::thread other([this] { backUpDatabase(file(), backup()); });
        backUpDatabase(file(), backup());
        other.join();
        ASSERT_TRUE(state(0) == bytesOf(file()));
        for (int age = 0; age < qMin(turn, 3); ++age)
            ASSERT_TRUE(state(age + 1) == older[age]) << turn << ": an older backup is gone: " << age;
    }
    EXPECT_EQ(names().filter(u"lock"_s), QStringList());
}

TEST_F(DatabaseFile, ThatIsNoDiaryNeverTakesTheBackupsPlace) {
    backUpDatabase(file(), backup());
    write(u"2004/05/06"_s, u"a"_s);
    backUpDatabase(file(), backup());
    QList<QByteArray> bad = noDiaries();
    QByteArray tornRows = bytesOf(file());
    bad += tornRows.replace(4096 * 1 + 8, 4000, QByteArray(4000, '\xAA')); // the head is whole, a table is not
    for (const QByteArray& bytes : bad) {
        writeFile(file(), bytes);
        const auto before = contentOf(home.path());
        EXPECT_TRUE(failureOf([&] { backUpDatabase(file(), backup()); }).contains(file())) << bytes.size();
        EXPECT_EQ(contentOf(home.path()), before);
    }
    platform::removeFile(file());
    EXPECT_THROW(backUpDatabase(file(), backup()), platform::Failure);
    copyDatabase(path(u"default.mdb"_s), file());
    sql(u"DROP TABLE Contents"_s);
    EXPECT_THROW(backUpDatabase(file(), backup()), platform::Failure);
    EXPECT_TRUE(exists(backup()) && exists(backup() + u".1"_s));
}

TEST_F(DatabaseFile, IsCopiedWithoutTheHalfOfAKilledChange) {
    write(u"2004/05/06"_s, u"a"_s);
    const QByteArray before = bytesOf(file());
    tear(file());
    ASSERT_TRUE(exists(file() + u"-journal"_s));
    ASSERT_FALSE(bytesOf(file()) == before);
    copyDatabase(file(), path(u"copy.mdb"_s));
    EXPECT_TRUE(bytesOf(path(u"copy.mdb"_s)) == before);
    EXPECT_FALSE(exists(file() + u"-journal"_s));
    EXPECT_FALSE(exists(path(u"copy.mdb-journal"_s)));
}

TEST_F(DatabaseFile, KeepsWritersFromTheirCommitUntilTheCopyIsWhole) {
    Connection writer(file(), Access::ReadWrite);
    writer.execute("PRAGMA busy_timeout = 0");
    QString refusal;
    DiskWatch disk;
    disk.onSync([&] { refusal = failureOf([&] { writer.execute("BEGIN EXCLUSIVE"); }); });
    copyDatabase(file(), path(u"copy.mdb"_s));
    EXPECT_TRUE(refusal.contains(u"使用中"_s)) << refusal.toStdString();
}

TEST_F(DatabaseFile, IsCopiedBetweenTheChangesOfAWriterAtWork) {
    sql(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 1000) INSERT INTO Contents "
        "(Day, Number, Title, Contents) SELECT '2004/05/06', i, '0', hex(zeroblob(1500)) FROM n"_s);
    const pid_t writer = ::fork();
    if (writer == 0) {
        for (;;) {
            QElapsedTimer taken;
            taken.start();
            failureOf([&] { // also in use by the copy
                Connection connection(file(), Access::ReadWrite);
                connection.execute("UPDATE Contents SET Title = Title + 1");
            });
            // On any disk the file is free half of the time: the copy waits for five seconds and no longer.
            std::this_thread::sleep_for(std::chrono::milliseconds(2) + std::chrono::nanoseconds(taken.nsecsElapsed()));
        }
    }
    QStringList mixed;
    for (int i = 0; i < 30; ++i) {
        const QString copy = path(u"copy.mdb"_s);
        copyDatabase(file(), copy);
        Connection connection(copy, Access::ReadOnly);
        store::sqlite::Statement titles(connection, "SELECT count(DISTINCT Title) FROM Contents");
        store::sqlite::Statement check(connection, "PRAGMA integrity_check");
        if (!titles.next() || titles.integer(0) != 1 || !check.next() || check.text(0) != u"ok"_s)
            mixed += QString::number(i);
    }
    ::kill(writer, SIGKILL);
    ::waitpid(writer, nullptr, 0);
    EXPECT_EQ(mixed, QStringList()) << "copies hold a half of a change";
}

TEST_F(DatabaseFile, MeetsNoJournalOfTheFileThatLayThere) {
    const QString other = path(u"other.mdb"_s);
    copyDatabase(file(), other);
    tear(other);
    platform::removeFile(other);
    ASSERT_TRUE(exists(other + u"-journal"_s));
    write(u"2004/05/06"_s, u"a"_s);
    sql(u"UPDATE DBInfo SET VersionInfo = 221"_s);
    const QByteArray whole = bytesOf(file());
    copyDatabase(file(), other);
    EXPECT_EQ(GetDBVersion(other), 221);
    EXPECT_TRUE(bytesOf(other) == whole);
}

TEST_F(DatabaseFile, ABackupIsReadByWhoMayReadTheDiary) {
    for (const mode_t mode : {0600, 0640}) {
        write(u"2004/05/06"_s, u"x"_s);
        ASSERT_EQ(::chmod(QFile::encodeName(file()).constData(), mode), 0);
        for (const QString& name : {backup(), backup() + u".1"_s}) {
            writeFile(name, "of an older program");
            ASSERT_EQ(::chmod(QFile::encodeName(name).constData(), 0644), 0);
        }
        backUpDatabase(file(), backup());
        for (const QString& name : {backup(), backup() + u".1"_s, backup() + u".2"_s})
            EXPECT_EQ(modeOf(name) & ~mode, 0U) << name.toStdString();
    }
}

} // namespace
} // namespace velloria::tests
