// A backup in the diary's place, and a diary that lies behind a link.
#include "store/database_file.h"

#include "platform/file_write.h"
#include "store/database_check.h"
#include "store/diary_home.h"
#include "support/faulty_disk.h"

#include <QDir>
#include <QFileInfo>

#include <thread>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using store::restoreDatabase;
using store::sqlite::Access;
using store::sqlite::Connection;

class Restoring : public DiaryHome {
protected:
    Restoring() {
        write(kDay, u"old"_s);
        store::backUpDatabase(file(), backup());
        write(kDay, u"new"_s);
    }
    QString kept(const QString& mark = u""_s) const {
        return session.UserPath + u"diarymdb.replaced%1.bak"_s.arg(mark);
    }
    /// Moves the diary into another folder and leaves a link.
    QString moveBehindLink() const {
        const QString end = path(u"disk/real.mdb"_s);
        QDir(home.path()).mkdir(u"disk"_s);
        EXPECT_TRUE(QFile::rename(file(), end));
        EXPECT_TRUE(QFile::link(end, file()));
        return end;
    }
};

TEST_F(Restoring, PutsTheBackupInTheDiarysPlaceAndKeepsTheDiary) {
    EXPECT_EQ(restoreDatabase(file(), backup()), kept());
    EXPECT_EQ(titles(file()), u"old"_s);
    EXPECT_EQ(titles(kept()), u"old new"_s);
    EXPECT_EQ(titles(backup()), u"old"_s);
    EXPECT_EQ(restoreDatabase(file(), kept()), kept(u"-2"_s));
    EXPECT_EQ(titles(file()), u"old new"_s);
    EXPECT_EQ(titles(kept(u"-2"_s)), u"old"_s);
    EXPECT_EQ(modeOf(kept()), 0600U);
}

TEST_F(Restoring, NoJournalOfTheReplacedDiaryUndoesIt) {
    const QByteArray wanted = bytesOf(backup());
    tear(file());
    ASSERT_TRUE(exists(file() + u"-journal"_s));
    restoreDatabase(file(), backup());
    EXPECT_FALSE(exists(file() + u"-journal"_s));
    EXPECT_TRUE(bytesOf(file()) == wanted);
    EXPECT_EQ(titles(file()), u"old"_s);
    EXPECT_EQ(titles(kept()), u"old new"_s) << "the half change is none";
}

TEST_F(Restoring, ABackupWithAJournalOfItsOwnIsRolledBackFirst) {
    tear(backup());
    restoreDatabase(file(), backup());
    EXPECT_EQ(titles(file()), u"old"_s);
    EXPECT_EQ(titles(backup()), u"old"_s);
}

TEST_F(Restoring, ANamedFileStaysAsItIsWithWhatLiesBesideIt) {
    QDir(home.path()).mkdir(u"named"_s);
    const QString torn = path(u"named/torn.mdb"_s);
    platform::copyFile(backup(), torn);
    tear(torn);
    const QString logged = path(u"named/logged.mdb"_s);
    platform::copyFile(backup(), logged);
    holdsInChild([&]() -> bool {
        Connection connection(logged, Access::ReadWrite);
        connection.execute("PRAGMA journal_mode = WAL");
        connection.execute("UPDATE Contents SET Title = 'logged'");
        ::_exit(0);
    });
    const auto before = contentOf(path(u"named"_s));
    ASSERT_EQ(before.size(), 5) << "a journal, a log and its index";
    for (const auto& [named, title] : {std::pair(torn, u"old"_s), std::pair(logged, u"logged"_s)}) {
        EXPECT_EQ(store::versionOfNamed(named), 220);
        restoreDatabase(file(), named);
        EXPECT_EQ(titles(file()), title);
    }
    writeFile(logged, bytesOf(logged).left(9000));
    EXPECT_TRUE(failureOf([&] { restoreDatabase(file(), logged); }).contains(logged));
    writeFile(logged, before[u"/logged.mdb"_s]);
    EXPECT_EQ(contentOf(path(u"named"_s)), before);
}

TEST_F(Restoring, ADamagedDiaryIsKeptAsItLiesWithItsJournal) {
    for (const QByteArray& damaged : {QByteArray("no database"), QByteArray(), bytesOf(file()).first(3000)}) {
        writeFile(file(), damaged);
        writeFile(file() + u"-journal"_s, "\xd9\xd5\x05\xf9\x20\xa1\x63\xd7 whatever it is");
        const QByteArray journal = bytesOf(file() + u"-journal"_s);
        const QString name = restoreDatabase(file(), backup());
        EXPECT_TRUE(bytesOf(name) == damaged);
        EXPECT_TRUE(bytesOf(name + u"-journal"_s) == journal);
        EXPECT_EQ(titles(file()), u"old"_s);
        EXPECT_FALSE(exists(file() + u"-journal"_s));
    }
}

TEST_F(Restoring, AMissingDiaryIsNoObstacle) {
    platform::removeFile(file());
    EXPECT_EQ(restoreDatabase(file(), backup()), QString());
    EXPECT_EQ(titles(file()), u"old"_s);
}

TEST_F(Restoring, WhatIsNoSoundDiaryIsRefusedAndChangesNothing) {
    const QByteArray whole = bytesOf(backup());
    QByteArray torn = whole;
    torn.replace(4096 + 8, 4000, QByteArray(4000, '\xAA'));
    for (const QByteArray& bytes : {QByteArray(), QByteArray("x"), whole.first(5000), whole.chopped(1), torn,
                                    QByteArray("\0\1\0\0Standard Jet DB\0\1\0\0\0", 24) + QByteArray(4072, '\0')}) {
        writeFile(backup(), bytes);
        const auto before = contentOf(home.path());
        EXPECT_NE(failureOf([&] { restoreDatabase(file(), backup()); }), QString()) << bytes.size();
        EXPECT_EQ(contentOf(home.path()), before) << bytes.size();
    }
    platform::removeFile(backup());
    EXPECT_TRUE(failureOf([&] { restoreDatabase(file(), backup()); }).contains(backup()));
    EXPECT_TRUE(failureOf([&] { restoreDatabase(file(), file()); }).contains(u"今の日記そのもの"_s));
    ASSERT_TRUE(QFile::link(file(), backup()));
    EXPECT_TRUE(failureOf([&] { restoreDatabase(file(), backup()); }).contains(u"今の日記そのもの"_s));
    EXPECT_EQ(titles(file()), u"old new"_s);
}

TEST_F(Restoring, ADiskWithoutRoomChangesNothing) {
    for (const bool isTorn : {false, true}) {
        if (isTorn)
            writeFile(file(), "no database");
        const auto before = contentOf(home.path());
        {
            FaultyDisk disk(home.path());
            disk.leaveRoom(8192);
            EXPECT_NE(failureOf([&] { restoreDatabase(file(), backup()); }), QString()) << isTorn;
        }
        EXPECT_EQ(contentOf(home.path()), before) << isTorn;
    }
}

TEST_F(Restoring, ADiaryInUseIsLeftAlone) {
    Connection other(file(), Access::ReadWrite);
    other.execute("BEGIN IMMEDIATE");
    const auto before = contentOf(home.path());
    EXPECT_TRUE(failureOf([&] { restoreDatabase(file(), backup()); }).contains(u"使用中"_s));
    EXPECT_EQ(contentOf(home.path()), before);
}

TEST_F(Restoring, ALinkStaysALink) {
    const QString end = moveBehindLink();
    tear(file());
    ASSERT_TRUE(exists(end + u"-journal"_s));
    restoreDatabase(file(), backup());
    EXPECT_TRUE(QFileInfo(file()).isSymLink());
    EXPECT_FALSE(exists(end + u"-journal"_s));
    EXPECT_EQ(titles(end), u"old"_s);
}

TEST_F(Restoring, TheAdviceNamesCommandAndJournal) {
    writeFile(file(), "no database");
    for (const QString& failure :
         {failureOf([&] { store::GetDBVersion(file()); }), failureOf([&] { diary().LoadDay(kDay); })}) {
        EXPECT_TRUE(failure.contains(u"db restore"_s)) << failure.toStdString();
        EXPECT_TRUE(failure.contains(u"diary.mdb-journal"_s)) << failure.toStdString();
    }
}

TEST_F(Restoring, AKilledWriterBehindALinkIsRolledBackByEveryone) {
    const QString end = moveBehindLink();
    const QByteArray before = bytesOf(end);
    const std::vector<std::function<void()>> actions{
        [&] { store::GetDBVersion(file()); },
        [&] { diary().LoadDay(kDay); },
        [&] { store::checkDatabase(file()); },
        [&] { store::copyDatabase(file(), path(u"copy.mdb"_s)); },
        [&] { store::backUpDatabase(file(), path(u"x.bak"_s)); },
    };
    for (std::size_t i = 0; i < actions.size(); ++i) {
        tear(file());
        ASSERT_TRUE(exists(end + u"-journal"_s));
        EXPECT_EQ(failureOf(actions[i]), QString()) << i;
        EXPECT_FALSE(exists(end + u"-journal"_s)) << i;
        EXPECT_TRUE(bytesOf(end) == before) << i;
    }
    EXPECT_TRUE(bytesOf(path(u"copy.mdb"_s)) == before);
    tear(file());
    EXPECT_EQ(write(kDay, u"more"_s), 3);
}

TEST_F(Restoring, ACopyOverALinkMeetsNoJournalAtItsEnd) {
    const QString end = moveBehindLink();
    tear(file());
    platform::removeFile(end);
    writeFile(end, "something else");
    ASSERT_TRUE(exists(end + u"-journal"_s));
    store::copyDatabase(backup(), file());
    EXPECT_FALSE(exists(end + u"-journal"_s));
    EXPECT_EQ(titles(file()), u"old"_s);
}

TEST_F(Restoring, ALinkThatLeadsNowhereIsAFailureThatNamesBothEnds) {
    const QString end = moveBehindLink();
    ASSERT_TRUE(QFile::link(file(), path(u"first.mdb"_s)));
    ASSERT_TRUE(QFile::rename(path(u"disk"_s), path(u"gone"_s)));
    for (const QString& name : {file(), path(u"first.mdb"_s)}) {
        const store::DiaryStore diary(name, clock);
        for (const QString& failure :
             {failureOf([&] { store::GetDBVersion(name); }), failureOf([&] { diary.LoadDay(kDay); }),
              failureOf([&] { diary.saveEntries({entryOf(kDay, u"x"_s)}, store::PublishTime::Now, {}); }),
              failureOf([&] { store::copyDatabase(backup(), name); }),
              failureOf([&] { restoreDatabase(name, backup()); }), failureOf([&] { store::checkDatabase(name); })})
            EXPECT_TRUE(failure.contains(name) && failure.contains(end)) << failure.toStdString();
    }
    EXPECT_FALSE(exists(path(u"disk"_s)));
}

TEST_F(Restoring, TwoAtOnceKeepEachADiaryOfItsOwn) {
    for (int turn = 0; turn < 10; ++turn) {
        QString first;
        std::thread other([&] { first = restoreDatabase(file(), backup()); });
        const QString second = restoreDatabase(file(), backup());
        other.join();
        EXPECT_NE(first, second);
        EXPECT_TRUE(exists(first) && exists(second));
    }
}

} // namespace
} // namespace velloria::tests
