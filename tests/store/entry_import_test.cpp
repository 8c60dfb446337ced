#include "store/entry_import.h"

#include "store/diary_home.h"
#include "support/disk_watch.h"
#include "support/patience.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using store::EntryImport;

class EntriesFromOutside : public DiaryHome {
protected:
    QString titles() { return sqlValue(u"SELECT group_concat(Title) FROM (SELECT Title FROM Contents ORDER BY 1)"_s); }
};

TEST_F(EntriesFromOutside, AreThereForTheNextQuestionAndForOthersOnceSettled) {
    EntryImport import(file());
    EXPECT_FALSE(import.hasDay(u"2004/05/06"_s));
    import.add({u"2004/05/06"_s, u"a"_s, u"x"_s});
    EXPECT_TRUE(import.hasDay(u"2004/05/06"_s));
    import.settle();
    EXPECT_EQ(titles(), u"a"_s);
}

TEST_F(EntriesFromOutside, GetTheNextNumberOfTheirDay) {
    write(u"2004/05/06"_s, u"a"_s);
    EntryImport import(file());
    import.add({u"2004/05/06"_s, u"b"_s, u"x"_s});
    import.settle();
    EXPECT_EQ(diary().LoadEntry(u"2004/05/06"_s, 2)->title, u"b"_s);
}

TEST_F(EntriesFromOutside, ReachTheDiskOnTheWay) {
    EntryImport import(file());
    const auto stored = [this] { return sqlValue(u"SELECT count(*) FROM Contents"_s).toInt(); };
    int added = 0;
    int before = 0;
    for (int batch = 0; batch < 3; ++batch) {
        for (const QDeadlineTimer deadline(kPatience); stored() == before && !deadline.hasExpired();) {
            for (int i = 0; i < 100; ++i)
                import.add({u"day %1"_s.arg(added++), u"t"_s, u"x"_s});
        }
        ASSERT_GT(stored(), before);
        before = stored();
    }
}

TEST_F(EntriesFromOutside, AKilledRunLeavesTheFirstOfThem) {
    EXPECT_FALSE(holdsInChild([&]() -> bool {
        EntryImport import(file());
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < 20000 || timer.elapsed() < 500; ++i)
            import.add({u"%1"_s.arg(i, 6, 10, QChar(u'0')), u"t"_s, u"x"_s});
        _exit(1);
    }));
    const int count = sqlValue(u"SELECT count(*) FROM Contents"_s).toInt();
    EXPECT_GT(count, 0);
    EXPECT_EQ(sqlValue(u"SELECT max(Day) FROM Contents"_s).toInt(), count - 1);
    EXPECT_EQ(sqlValue(u"PRAGMA integrity_check"_s), u"ok"_s);
}

TEST_F(EntriesFromOutside, BeforeARefusedOneAreInTheDiary) {
    refuseRows(u"Title = 'bad'"_s);
    EntryImport import(file());
    import.add({u"2004/05/06"_s, u"a"_s, u"x"_s});
    import.add({u"2004/05/07"_s, u"b"_s, u"x"_s});
    EXPECT_NE(failureOf([&] { import.add({u"2004/05/08"_s, u"bad"_s, u"x"_s}); }), QString());
    EXPECT_EQ(titles(), u"a,b"_s);
    import.add({u"2004/05/09"_s, u"c"_s, u"x"_s});
    import.settle();
    EXPECT_EQ(titles(), u"a,b,c"_s);
}

TEST_F(EntriesFromOutside, ThatACommitRefusesAreNotCounted) {
    EntryImport import(file());
    import.add({u"2004/05/06"_s, u"a"_s, u"x"_s});
    import.settle();
    import.add({u"2004/05/07"_s, u"b"_s, u"x"_s});
    DiskWatch disk;
    disk.refuse(u"-journal"_s);
    EXPECT_NE(failureOf([&] { import.settle(); }), QString());
    EXPECT_EQ(import.stored(), 1);
    EXPECT_EQ(titles(), u"a"_s);
    EXPECT_NE(failureOf([&] {
                  import.overwrite({u"2004/05/06"_s, u"c"_s, u"y"_s}, [](const store::Entry&){});
              }),
              QString());
    EXPECT_EQ(import.stored(), 1);
    EXPECT_EQ(titles(), u"a"_s);
}

TEST_F(EntriesFromOutside, TakeTheFirstRowsPlaceAndLeaveItsOtherFields) {
    store::Entry entry = entryOf(u"2004/05/06"_s, u"old"_s);
    entry.genre = u"旅"_s;
    write(entry);
    EntryImport import(file());
    QString seen;
    const auto note = [&](const store::Entry& row) { seen = row.title + row.genre; };
    import.overwrite({u"2004/05/06"_s, u"new"_s, u"y"_s}, note);
    EXPECT_EQ(import.stored(), 1);
    EXPECT_EQ(seen, u"old旅"_s);
    EXPECT_EQ(sqlValue(u"SELECT Title || Contents || Genre FROM Contents"_s), u"newy旅"_s);
}

TEST_F(EntriesFromOutside, AreAddedWhereTheRowIsGone) {
    EntryImport import(file());
    const auto fail = [](const store::Entry&) { FAIL(); };
    import.overwrite({u"2004/05/06"_s, u"new"_s, u"y"_s}, fail);
    EXPECT_EQ(titles(), u"new"_s);
}

TEST_F(EntriesFromOutside, ThatNobodySettledAreDropped) {
    { EntryImport(file()).add({u"2004/05/06"_s, u"a"_s, u"x"_s}); }
    EXPECT_EQ(titles(), u"NULL"_s);
}

TEST_F(EntriesFromOutside, ABusyDiaryIsAFailureAndNoCrash) {
    store::sqlite::Connection other(file(), store::sqlite::Access::ReadWrite);
    other.execute("BEGIN EXCLUSIVE");
    EntryImport import(file());
    EXPECT_TRUE(failureOf([&] { import.add({u"2004/05/06"_s, u"a"_s, u"x"_s}); }).contains(u"使用中"_s));
    other.execute("ROLLBACK");
    import.add({u"2004/05/06"_s, u"a"_s, u"x"_s});
    import.settle();
    EXPECT_EQ(titles(), u"a"_s);
}

} // namespace
} // namespace velloria::tests
