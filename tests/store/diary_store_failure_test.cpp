// What becomes of the diary when the machine, another program or the engine gets in the way.
#include "store/diary_store.h"

#include "platform/file_write.h"
#include "store/diary_home.h"
#include "support/patience.h"

#include <QElapsedTimer>
#include <QFile>

#include <future>
#include <thread>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using store::Entry;
using store::PublishTime;
using store::sqlite::Access;
using store::sqlite::Connection;

class DiaryStoreFailure : public ThreeEntries {
protected:
    QString day() {
        return sqlValue(u"SELECT group_concat(Number || Title, ' ') FROM (SELECT * FROM Contents ORDER BY Number)"_s);
    }
    static void letOthersIn(const QString& folder) { ::chmod(QFile::encodeName(folder).constData(), 0755); }
    QString journal() const { return file() + u"-journal"_s; }
};

TEST_F(DiaryStoreFailure, AFaultBehindTheDeleteLeavesTheDayUnchanged) {
    refuseRows(u"Title = 'b' AND Number = 1"_s);
    const QByteArray before = bytesOf(file());
    const QString failure = failureOf([&] { diary().DeleteEntry(kDay, 1); });
    EXPECT_TRUE(failure.contains(u"integer overflow"_s)) << failure.toStdString();
    EXPECT_TRUE(failure.contains(file())) << failure.toStdString();
    EXPECT_TRUE(bytesOf(file()) == before);
    EXPECT_EQ(day(), u"1a 2b 3c"_s);
}

TEST_F(DiaryStoreFailure, AFaultInTheMiddleOfSeveralEntriesSavesNone) {
    refuseRows(u"Title = 'bad'"_s);
    const QByteArray before = bytesOf(file());
    EXPECT_THROW(diary().saveEntries({entryOf(kDay, u"good"_s), entryOf(kDay, u"bad"_s), entryOf(kDay, u"more"_s)},
                                     PublishTime::Now, {}),
                 platform::Failure);
    EXPECT_TRUE(bytesOf(file()) == before);
}

TEST_F(DiaryStoreFailure, AFaultInTheRenumberingOfAnImportKeepsTheImport) {
    sql(u"UPDATE Contents SET ImportMark = 'm' WHERE Number = 1"_s);
    refuseRows(u"Title = 'b' AND Number = 1"_s);
    EXPECT_THROW(diary().DeleteImportBatch(u"m"_s), platform::Failure);
    EXPECT_EQ(day(), u"1a 2b 3c"_s);
}

TEST_F(DiaryStoreFailure, WhatCantBeKeptIsNotDestroyed) {
    const auto refuse = [](const std::vector<Entry>&) { throw platform::Failure(u"控え"_s, {}, {}); };
    sql(u"UPDATE Contents SET ImportMark = 'm'"_s);
    Entry entry = entryOf(kDay, u"new"_s);
    entry.number = 2;
    EXPECT_THROW(diary().DeleteEntry(kDay, 2, refuse), platform::Failure);
    EXPECT_THROW(diary().DeleteImportBatch(u"m"_s, refuse), platform::Failure);
    EXPECT_THROW(diary().saveEntries({entryOf(kDay, u"d"_s), entry}, PublishTime::Now, refuse), platform::Failure);
    EXPECT_EQ(day(), u"1a 2b 3c"_s);
}

TEST_F(DiaryStoreFailure, ALockedFileIsWaitedForAndThenNamed) {
    Connection other(file(), Access::ReadWrite);
    other.execute("BEGIN EXCLUSIVE");
    QElapsedTimer timer;
    timer.start();
    // Side by side, so that the wait of five seconds is one.
    auto read = std::async(std::launch::async, [&] { return failureOf([&] { diary().LoadDay(kDay); }); });
    const QString saved = failureOf([&] { write(kDay, u"d"_s); });
    for (const QString& failure : {saved, read.get()}) {
        EXPECT_TRUE(failure.contains(file())) << failure.toStdString();
        EXPECT_TRUE(failure.contains(u"他のプログラムが使用中"_s)) << failure.toStdString();
    }
    EXPECT_GE(timer.elapsed(), 4500);
    EXPECT_LE(timer.elapsed(), kPatienceMs);
    other.execute("ROLLBACK");
    EXPECT_EQ(day(), u"1a 2b 3c"_s);
}

TEST_F(DiaryStoreFailure, AFileThatIsFreeInTimeIsUsed) {
    Connection other(file(), Access::ReadWrite);
    other.execute("BEGIN EXCLUSIVE");
    std::thread release([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        other.execute("COMMIT");
    });
    EXPECT_EQ(failureOf([&] { write(kDay, u"d"_s); }), QString());
    release.join();
    EXPECT_EQ(day(), u"1a 2b 3c 4d"_s);
}

TEST_F(DiaryStoreFailure, NoLockOutlivesAnOperation) {
    const store::DiaryStore store = diary();
    store.LoadDay(kDay);
    store.LoadEntry(kDay, 1); // stops at the first row
    store.LatestPublicDay();
    EXPECT_THROW(store.FindEntries({u"["_s, {}}, [](store::Entry&) {}), platform::Failure);
    Connection other(file(), Access::ReadWrite);
    EXPECT_EQ(failureOf([&] { other.execute("BEGIN EXCLUSIVE"); }), QString());
    other.execute("ROLLBACK");
    EXPECT_FALSE(exists(journal()));
}

TEST_F(DiaryStoreFailure, AMissingFileIsNamedAndNeverMade) {
    QFile::remove(file());
    const store::DiaryStore store = diary();
    for (const QString& failure : {failureOf([&] { store.LoadDay(kDay); }), failureOf([&] { write(kDay, u"x"_s); })}) {
        EXPECT_TRUE(failure.contains(u"日記データベースがありません。"_s)) << failure.toStdString();
        EXPECT_TRUE(failure.contains(file())) << failure.toStdString();
    }
    EXPECT_FALSE(exists(file()));
}

TEST_F(DiaryStoreFailure, ADamagedFileIsNamedAndLeftAlone) {
    QByteArray damaged = bytesOf(file());
    for (const QByteArray& bytes : {QByteArray("no database at all"), damaged.first(damaged.size() / 2),
                                    damaged.replace(100, 1000, QByteArray(1000, '\xFF'))}) {
        writeFile(file(), bytes);
        const QString failure = failureOf([&] { write(kDay, u"x"_s); });
        EXPECT_TRUE(failure.contains(u"壊れています"_s)) << failure.toStdString();
        EXPECT_TRUE(failure.contains(file())) << failure.toStdString();
        EXPECT_THROW(diary().LoadDay(kDay), platform::Failure);
        EXPECT_TRUE(bytesOf(file()) == bytes);
    }
}

/// The bold days of the calendar are no reason to keep somebody from an entry that can be read.
TEST_F(DiaryStoreFailure, ADamagedDayBesideItKeepsNobodyFromADay) {
    constexpr int kPage = 4096;
    const QString text(kPage - 200, u'x'); // has a page for itself
    write(u"2004/04/30"_s, u"before"_s, text);
    QByteArray bytes = bytesOf(file());
    const qsizetype page = bytes.indexOf(text.toUtf8()) / kPage * kPage;
    bytes.replace(page, 8, QByteArray(8, '\xFF'));
    writeFile(file(), bytes);
    ASSERT_THROW(diary().LoadDay(u"2004/04/30"_s), platform::Failure);
    ASSERT_THROW(diary().daysAround(u"2004/05"_s), platform::Failure);
    const store::DayPicture picture = diary().pictureOf(kDay);
    EXPECT_EQ(picture.entries.size(), 3U);
    EXPECT_EQ(picture.daysAround.all, QStringList());
}

TEST_F(DiaryStoreFailure, AReadOnlyFileIsReadAndNotWritten) {
    ::chmod(QFile::encodeName(file()).constData(), 0444);
    letOthersIn(home.path());
    letOthersIn(session.UserPath);
    EXPECT_TRUE(holdsForNobody([&] { return diary().LoadDay(kDay).size() == 3; }));
    EXPECT_TRUE(
        holdsForNobody([&] { return failureOf([&] { write(kDay, u"x"_s); }).contains(u"に書き込めません"_s); }));
}

TEST_F(DiaryStoreFailure, AKilledWriterLeavesTheOldDiaryForTheNextReader) {
    const QByteArray before = bytesOf(file());
    tear(file());
    ASSERT_TRUE(exists(journal()));
    ASSERT_FALSE(bytesOf(file()) == before);
    QStringList titles;
    EXPECT_EQ(failureOf([&] {
                  for (const Entry& entry : diary().LoadDay(kDay))
                      titles += entry.title;
              }),
              QString());
    EXPECT_EQ(titles, (QStringList{u"c"_s, u"b"_s, u"a"_s}));
    EXPECT_FALSE(exists(journal()));
}

TEST_F(DiaryStoreFailure, AKilledWriterLeavesTheOldDiaryForTheNextWriter) {
    tear(file());
    ASSERT_TRUE(exists(journal()));
    EXPECT_EQ(write(kDay, u"d"_s), 4);
    EXPECT_EQ(day(), u"1a 2b 3c 4d"_s);
}

TEST_F(DiaryStoreFailure, AWriterInTheMiddleOfItsWorkDisturbsNoReader) {
    Connection other(file(), Access::ReadWrite);
    other.execute("BEGIN IMMEDIATE");
    other.execute("UPDATE Contents SET Title = 'x' WHERE Number = 1");
    ASSERT_TRUE(exists(journal()));
    EXPECT_EQ(diary().LoadDay(kDay).size(), 3U);
    EXPECT_TRUE(exists(journal()));
    other.execute("COMMIT");
    EXPECT_EQ(day(), u"1x 2b 3c"_s);
}

} // namespace
} // namespace velloria::tests
