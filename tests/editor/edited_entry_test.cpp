#include "editor/edited_entry.h"

#include "core/keys.h"
#include "core/settings_change.h"
#include "store/entry_line.h"
#include "store/sqlite/connection.h"
#include "support/disk_watch.h"
#include "support/test_home.h"

#include <QDir>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

const QString kDay = u"2004/05/06"_s;

class EditedEntry : public TestHome {
protected:
    store::Entry entry(int number, const QString& title) {
        store::Entry made = entryOf(kDay, title);
        made.number = number;
        return made;
    }
    /// Shows what stands under the number, as the editor does at a load.
    void load(int number) { edited.show(number, diary().LoadEntry(kDay, number)); }
    /// Title by number, highest first.
    QStringList titles() {
        QStringList titles;
        for (const store::Entry& row : diary().LoadDay(kDay))
            titles += QString::number(row.number) + row.title;
        return titles;
    }
    /// Reason and title of every rescued line.
    QStringList rescued() {
        QStringList lines;
        if (!exists(session.UserPath + u"rescue.jsonl"_s))
            return lines;
        for (const QByteArray& line : bytesOf(session.UserPath + u"rescue.jsonl"_s).split('\n')) {
            const QJsonObject json = QJsonDocument::fromJson(line).object();
            if (!json.isEmpty())
                lines += json[u"Reason"_s].toString() + u' ' + json[u"Title"_s].toString();
        }
        return lines;
    }

    editor::EditedEntry edited{run};
};

TEST_F(EditedEntry, AFirstEntryIsAdded) {
    load(1);
    const editor::SaveResult result = edited.save(entry(1, u"一"_s));
    EXPECT_EQ(result.number, 1);
    EXPECT_FALSE(result.isMoved);
    EXPECT_FALSE(result.isOlderKept);
    EXPECT_EQ(titles(), QStringList{u"1一"_s});
    EXPECT_TRUE(rescued().isEmpty());
}

TEST_F(EditedEntry, ASaveIsStampedWithTheClock) {
    load(1);
    edited.save(entry(1, u"一"_s));
    EXPECT_EQ(diary().LoadEntry(kDay, 1)->publishTime, u"2004/05/06 08:05:09"_s);
}

TEST_F(EditedEntry, SavingTwiceReplacesTheRowAndRescuesNothing) {
    load(1);
    edited.save(entry(1, u"一"_s));
    const editor::SaveResult result = edited.save(entry(1, u"二"_s));
    EXPECT_FALSE(result.isMoved);
    EXPECT_EQ(titles(), QStringList{u"1二"_s});
    EXPECT_TRUE(rescued().isEmpty());
}

TEST_F(EditedEntry, TheImportMarkOfTheRowStays) {
    store::Entry imported = entry(1, u"一"_s);
    imported.importMark = u"2004-05"_s;
    write(imported);
    load(1);
    edited.save(entry(1, u"二"_s));
    EXPECT_EQ(diary().LoadEntry(kDay, 1)->importMark, u"2004-05"_s);
}

TEST_F(EditedEntry, ANumberThatWasTakenMeanwhileIsLeftToItsRow) {
    write(kDay, u"一"_s);
    load(2); // a new entry
    write(kDay, u"他"_s);
    const editor::SaveResult result = edited.save(entry(2, u"私"_s));
    EXPECT_TRUE(result.isMoved);
    EXPECT_EQ(result.number, 3);
    EXPECT_EQ(titles(), (QStringList{u"3私"_s, u"2他"_s, u"1一"_s}));
    EXPECT_TRUE(rescued().isEmpty());
    EXPECT_EQ(edited.number(), 3);
    EXPECT_FALSE(edited.save(entry(3, u"私"_s)).isMoved) << "the entry has its row now";
}

TEST_F(EditedEntry, ARowThatChangedMeanwhileIsRescued) {
    write(kDay, u"一"_s);
    load(1);
    sql(u"UPDATE Contents SET Title = '他', PublishTime = '2004/05/06 09:00:00'"_s);
    const editor::SaveResult result = edited.save(entry(1, u"私"_s));
    EXPECT_FALSE(result.isMoved);
    EXPECT_TRUE(result.isOlderKept);
    EXPECT_EQ(titles(), QStringList{u"1私"_s});
    EXPECT_EQ(rescued(), QStringList{u"上書き 他"_s});
}

TEST_F(EditedEntry, ARowThatChangedWithinTheSameSecondIsRescuedToo) {
    diary().saveEntries({entry(1, u"一"_s)}, store::PublishTime::Now, {});
    load(1);
    diary().saveEntries({entry(1, u"他"_s)}, store::PublishTime::Now, {});
    EXPECT_TRUE(edited.save(entry(1, u"私"_s)).isOlderKept);
    EXPECT_EQ(rescued(), QStringList{u"上書き 他"_s});
}

TEST_F(EditedEntry, AnotherNumberThanTheOneShownIsOverwrittenAndRescued) {
    for (const QString& title : {u"一"_s, u"二"_s, u"三"_s})
        write(kDay, title);
    load(3);
    const editor::SaveResult result = edited.save(entry(1, u"三の編集"_s));
    EXPECT_EQ(result.number, 1);
    EXPECT_FALSE(result.isMoved);
    EXPECT_TRUE(result.isOlderKept);
    EXPECT_EQ(titles(), (QStringList{u"3三"_s, u"2二"_s, u"1三の編集"_s}));
    EXPECT_EQ(rescued(), QStringList{u"上書き 一"_s});
}

TEST_F(EditedEntry, ARowWithTheSameTextNeedsNoRescue) {
    write(entry(1, u"同じ"_s));
    write(entry(2, u"二"_s));
    load(2);
    EXPECT_FALSE(edited.save(entry(1, u"同じ"_s)).isOlderKept);
    EXPECT_TRUE(rescued().isEmpty());
}

TEST_F(EditedEntry, ARowThatWentMeanwhileComesBackWithoutAGap) {
    for (const QString& title : {u"一"_s, u"二"_s, u"三"_s})
        write(kDay, title);
    load(3);
    diary().DeleteEntry(kDay, 3);
    diary().DeleteEntry(kDay, 2);
    const editor::SaveResult result = edited.save(entry(3, u"三"_s));
    EXPECT_TRUE(result.isMoved);
    EXPECT_EQ(result.number, 2);
    EXPECT_EQ(titles(), (QStringList{u"2三"_s, u"1一"_s}));
}

TEST_F(EditedEntry, FollowsItsRowToTheNumberThatAnOutsideChangeGaveIt) {
    for (int i = 1; i <= 3; ++i)
        edited.save(entry(i, QString::number(i)));
    load(2);
    diary().DeleteEntry(kDay, 1);
    EXPECT_EQ(edited.follow(diary().LoadDay(kDay)), 1);
    edited.save(entry(1, u"二"_s));
    EXPECT_EQ(titles(), (QStringList{u"23"_s, u"1二"_s}));
    EXPECT_TRUE(rescued().isEmpty());
}

TEST_F(EditedEntry, WhoseRowWentFromOutsideBecomesTheNextOfItsDay) {
    for (int i = 1; i <= 3; ++i)
        edited.save(entry(i, QString::number(i)));
    sql(u"UPDATE Contents SET PublishTime = '2004/05/06 08:00:0' || Number"_s);
    load(2);
    diary().DeleteEntry(kDay, 2);
    EXPECT_EQ(edited.follow(diary().LoadDay(kDay)), 3);
    edited.save(entry(3, u"二"_s));
    EXPECT_EQ(titles(), (QStringList{u"3二"_s, u"23"_s, u"11"_s}));
    EXPECT_TRUE(rescued().isEmpty());

    diary().DeleteEntry(kDay, 1);
    diary().DeleteEntry(kDay, 1);
    diary().DeleteEntry(kDay, 1);
    EXPECT_EQ(edited.follow({}), 1);
}

TEST_F(EditedEntry, KeepsWhatAnOutsideChangeWroteIntoItsRow) {
    edited.save(entry(1, u"一"_s));
    load(1);
    store::Entry changed = *diary().LoadEntry(kDay, 1);
    changed.title = u"外"_s;
    diary().saveEntries({changed}, store::PublishTime::AsGiven, {});
    EXPECT_EQ(edited.follow(diary().LoadDay(kDay)), 1);
    EXPECT_TRUE(edited.save(entry(1, u"中"_s)).isOlderKept);
    EXPECT_EQ(rescued(), QStringList{u"上書き 外"_s});
}

TEST_F(EditedEntry, InADayWithGapsTheNumberMeansTheRowInOrder) {
    for (const QString& title : {u"一"_s, u"二"_s, u"三"_s})
        write(kDay, title);
    sql(u"DELETE FROM Contents WHERE Number = 2"_s);
    // Two entries: the last one is shown as number 2.
    edited.show(2, diary().LoadDay(kDay).front());
    edited.save(entry(2, u"三の編集"_s));
    EXPECT_EQ(titles(), (QStringList{u"2三の編集"_s, u"1一"_s}));
    EXPECT_TRUE(rescued().isEmpty());
}

TEST_F(EditedEntry, ALockedDatabaseChangesNothing) {
    write(kDay, u"一"_s);
    write(kDay, u"二"_s);
    load(2);
    {
        store::sqlite::Connection other(session.databaseFile(), store::sqlite::Access::ReadWrite);
        const store::sqlite::Transaction transaction(other);
        EXPECT_NE(failureOf([&] { edited.save(entry(1, u"私"_s)); }), u""_s);
        EXPECT_NE(failureOf([&] { edited.remove(kDay, 1); }), u""_s);
    }
    EXPECT_EQ(titles(), (QStringList{u"2二"_s, u"1一"_s}));
    EXPECT_TRUE(rescued().isEmpty());
    EXPECT_EQ(edited.number(), 2);
    EXPECT_FALSE(edited.save(entry(2, u"私"_s)).isOlderKept);
}

TEST_F(EditedEntry, ARefusedSaveTakesItsRescueLineBack) {
    write(kDay, u"一"_s);
    write(kDay, u"二"_s);
    load(2);
    DiskWatch disk;
    disk.refuse(u"-journal"_s); // the commit fails, after the line
    EXPECT_NE(failureOf([&] { edited.save(entry(1, u"私"_s)); }), u""_s);
    EXPECT_TRUE(disk.synced().contains(u"rescue.jsonl"_s));
    EXPECT_EQ(titles(), (QStringList{u"2二"_s, u"1一"_s}));
    EXPECT_TRUE(rescued().isEmpty());
}

TEST_F(EditedEntry, ARescueFileThatTakesNothingStopsTheSave) {
    write(kDay, u"一"_s);
    write(kDay, u"二"_s);
    load(2);
    QDir().mkpath(session.UserPath + u"rescue.jsonl/x"_s);
    EXPECT_NE(failureOf([&] { edited.save(entry(1, u"私"_s)); }), u""_s);
    EXPECT_EQ(titles(), (QStringList{u"2二"_s, u"1一"_s}));
}

TEST_F(EditedEntry, ADeletedRowIsRescuedAndTheRestRenumbered) {
    for (const QString& title : {u"一"_s, u"二"_s, u"三"_s})
        write(kDay, title);
    load(2);
    edited.remove(kDay, 2);
    EXPECT_EQ(titles(), (QStringList{u"2三"_s, u"1一"_s}));
    EXPECT_EQ(rescued(), QStringList{u"削除 二"_s});
}

TEST_F(EditedEntry, DeletingWhatWasNeverSavedLeavesTheDay) {
    write(kDay, u"一"_s);
    load(2);
    edited.remove(kDay, 2);
    EXPECT_EQ(titles(), QStringList{u"1一"_s});
    EXPECT_TRUE(rescued().isEmpty());
}

TEST_F(EditedEntry, DroppedTextIsRescuedEvenWithoutATitle) {
    store::Entry dropped = entry(1, u""_s);
    EXPECT_FALSE(edited.keepDropped([&] {
        store::Entry empty = dropped;
        empty.contents = u""_s;
        return empty;
    }()))
        << "there is no text in it";
    dropped.excerpt = u"概要だけ"_s;
    EXPECT_TRUE(edited.keepDropped(dropped));
    EXPECT_EQ(rescued(), QStringList{u"未保存 "_s});
    const QByteArray line = bytesOf(session.UserPath + u"rescue.jsonl"_s).trimmed();
    EXPECT_EQ(store::parseEntryLine(line).entry.excerpt, u"概要だけ"_s);
}

TEST_F(EditedEntry, WhoSwitchedTheRescueFileOffIsNotToldOfIt) {
    core::writeQuietly(session, core::keys::kRescue, u"0"_s);
    write(kDay, u"一"_s);
    write(kDay, u"二"_s);
    load(2);
    EXPECT_FALSE(edited.save(entry(1, u"私"_s)).isOlderKept);
    store::Entry dropped = entry(1, u"題"_s);
    EXPECT_FALSE(edited.keepDropped(dropped));
    EXPECT_FALSE(exists(session.UserPath + u"rescue.jsonl"_s));
}

} // namespace
} // namespace velloria::tests
