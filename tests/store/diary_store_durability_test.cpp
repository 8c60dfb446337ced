// A change is on the disk when its operation returns, and nowhere when the disk refuses it at the last moment.
#include "platform/file_write.h"
#include "registers/file_register.h"
#include "registers/log_register.h"
#include "store/diary_home.h"
#include "store/entry_import.h"
#include "store/rescue_file.h"
#include "support/disk_watch.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using store::Entry;
using store::PublishTime;
using store::sqlite::Access;
using store::sqlite::Connection;

class Durability : public ThreeEntries {
protected:
    Durability() {
        sql(u"UPDATE Contents SET ImportMark = 'm' WHERE Number = 2"_s);
        sql(u"INSERT INTO FileDB (FileName, Day, Number) VALUES ('a.gif', 'ALL', 0)"_s);
        sql(u"INSERT INTO LogDB (LogMonth, LogFileName) VALUES ('2004/04', 'l.htm')"_s);
        sql(u"INSERT INTO Contents (Day, Number, Title) VALUES ('2004/05/07', 3, 'gap')"_s);
    }
    static Entry second() {
        Entry entry = entryOf(kDay, u"new"_s);
        entry.number = 2;
        return entry;
    }

    /// Every operation that writes, by name.
    std::vector<std::pair<const char*, std::function<void()>>> writers() const {
        const registers::FileRegister files(file());
        const registers::LogRegister logs(file());
        const auto rescue = [this] { return std::make_shared<store::RescueFile>(run); };
        const auto keeping = [](const auto& rescued) {
            return [rescued](const std::vector<Entry>& rows) { rescued->keep(rows, u"消"_s); };
        };
        return {
            {"saveEntries",
             [=, this] {
                 diary().saveEntries({second(), entryOf(kDay, u"d"_s)}, PublishTime::Now, keeping(rescue()));
             }},
            {"DeleteEntry", [=, this] { diary().DeleteEntry(kDay, 1, keeping(rescue())); }},
            {"DeleteImportBatch", [=, this] { diary().DeleteImportBatch(u"m"_s, keeping(rescue())); }},
            {"repairDay", [this] { diary().repairDay(u"2004/05/07"_s); }},
            {"EntryImport::add",
             [this] {
                 store::EntryImport import(file());
                 import.add({kDay, u"t"_s, u"c"_s});
                 import.settle();
             }},
            {"EntryImport::overwrite",
             [this] {
                 store::EntryImport(file()).overwrite({kDay, u"t"_s, u"c"_s}, [](const Entry&) {});
             }},
            {"addFile",
             [files] {
                 files.addFile({0, u"b.gif"_s, kDay, 1, false, false});
             }},
            {"markLogged", [files] { files.markLogged({1}); }},
            {"markUploaded", [files] { files.markUploaded(1); }},
            {"addCommonFiles", [files] { files.addCommonFiles({u"n.gif"_s}, registers::SiteSide::Log); }},
            {"DeleteFile", [files] { files.DeleteFile(u"a.gif"_s, u"ALL"_s, 0); }},
            {"addLog",
             [logs] {
                 logs.addLog({u"2004/03"_s, u"k.htm"_s});
             }},
            {"DeleteLog",
             [logs] {
                 logs.DeleteLog({u"2004/04"_s, u"l.htm"_s});
             }},
        };
    }
};

TEST_F(Durability, EveryChangeIsOnTheDiskWhenItsOperationReturns) {
    for (const auto& [name, change] : writers()) {
        const DiskWatch disk;
        change();
        const QStringList synced = disk.synced();
        const qsizetype journal = synced.indexOf(u"diary.mdb-journal"_s);
        EXPECT_GE(journal, 0) << name << ": " << synced.join(u' ').toStdString();
        EXPECT_GE(synced.count(u"diary.mdb-journal"_s), 2) << name << ": its pages before the head that counts them";
        EXPECT_GT(synced.lastIndexOf(u"diary.mdb"_s), journal) << name << ": " << synced.join(u' ').toStdString();
    }
}

TEST_F(Durability, WhatIsLostIsInTheRescueFileBeforeTheChangeIsOnTheDisk) {
    for (const auto& [name, change] : writers()) {
        if (!QByteArrayView(name).startsWith("saveEntries") && !QByteArrayView(name).startsWith("Delete"))
            continue;
        if (QByteArrayView(name).endsWith("File") || QByteArrayView(name).endsWith("Log"))
            continue;
        platform::removeFile(session.UserPath + u"rescue.jsonl"_s);
        const DiskWatch disk;
        change();
        const QStringList synced = disk.synced();
        const qsizetype line = synced.indexOf(u"rescue.jsonl"_s);
        ASSERT_GE(line, 0) << name << ": " << synced.join(u' ').toStdString();
        EXPECT_EQ(synced.value(line + 1), u"UserData"_s) << "the name of a new file is nowhere else";
        EXPECT_LT(line, synced.indexOf(u"diary.mdb-journal"_s)) << name;
        EXPECT_LT(line, synced.indexOf(u"diary.mdb"_s)) << name;
    }
}

TEST_F(Durability, ACommitThatTheDiskRefusesChangesNothing) {
    for (const auto& [name, change] : writers()) {
        const auto before = contentOf(session.UserPath);
        DiskWatch disk;
        disk.refuse(u"-journal"_s);
        const QString failure = failureOf(change);
        EXPECT_TRUE(failure.contains(file())) << name << ": " << failure.toStdString();
        auto after = contentOf(session.UserPath);
        after.remove(u"rescue.jsonl"_s); // taken back by whoever writes into it
        EXPECT_EQ(after, before) << name;
        platform::removeFile(session.UserPath + u"rescue.jsonl"_s);
    }
}

TEST_F(Durability, ACommitThatAReaderHoldsUpChangesNothing) {
    const QByteArray before = bytesOf(file());
    Connection reader(file(), Access::ReadOnly);
    reader.execute("BEGIN");
    reader.execute("SELECT count(*) FROM Contents");
    const QString failure = failureOf([&] { diary().saveEntries({second()}, PublishTime::Now, {}); });
    EXPECT_TRUE(failure.contains(u"他のプログラムが使用中"_s)) << failure.toStdString();
    reader.execute("COMMIT");
    EXPECT_TRUE(bytesOf(file()) == before);
    EXPECT_EQ(diary().LoadEntry(kDay, 2)->title, u"b"_s);
}

TEST_F(Durability, ATransactionKeepsOtherWritersOutFromItsBeginning) {
    Connection other(file(), Access::ReadWrite);
    other.execute("PRAGMA busy_timeout = 0");
    {
        Connection connection(file(), Access::ReadWrite);
        store::sqlite::Transaction transaction(connection);
        EXPECT_TRUE(failureOf([&] { other.execute("BEGIN IMMEDIATE"); }).contains(u"使用中"_s));
    }
    {
        store::EntryImport import(file());
        EXPECT_TRUE(import.hasDay(kDay)); // what it read is to hold when it writes
        EXPECT_TRUE(failureOf([&] { other.execute("BEGIN IMMEDIATE"); }).contains(u"使用中"_s));
    }
    other.execute("BEGIN IMMEDIATE");
}

TEST_F(Durability, AFileThatWasReplacedMeanwhileTakesNoChange) {
    Connection old(file(), Access::ReadWrite);
    old.execute("SELECT count(*) FROM Contents");
    platform::copyFile(file(), path(u"copy.mdb"_s));
    platform::copyFile(path(u"copy.mdb"_s), file());
    const QString failure = failureOf([&] { old.execute("DELETE FROM Contents"); });
    EXPECT_TRUE(failure.contains(u"使用中"_s)) << failure.toStdString();
    EXPECT_EQ(diary().LoadDay(kDay).size(), 3U);
}

} // namespace
} // namespace velloria::tests
