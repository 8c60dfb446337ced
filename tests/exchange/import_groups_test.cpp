#include "exchange/import_groups.h"

#include "support/disk_watch.h"
#include "support/test_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class ImportGroups : public TestHome {
protected:
    ImportGroups() {
        for (const auto& [day, mark] : {std::pair{u"2004/05/06"_s, u"g1"_s},
                                        {u"2004/05/06"_s, u"g2"_s},
                                        {u"2004/05/07"_s, u"g1"_s},
                                        {u"2004/05/06"_s, u""_s}}) {
            store::Entry entry = entryOf(day, u"t"_s);
            entry.importMark = mark;
            write(entry);
        }
    }
    std::optional<QStringList> remove(const QString& group) { return exchange::deleteImportGroup(run, group); }
    QStringList groups() const { return diary().ListImportBatches(); }
    QString rescueFile() const { return session.UserPath + u"rescue.jsonl"_s; }
};

TEST_F(ImportGroups, AGroupWhoseRowsWereAllDeletedByHandIsListedNoMore) {
    EXPECT_EQ(groups(), (QStringList{u"g2"_s, u"g1"_s}));
    diary().DeleteEntry(u"2004/05/06"_s, 1);
    EXPECT_EQ(groups(), (QStringList{u"g2"_s, u"g1"_s})) << "one row is left";
    diary().DeleteEntry(u"2004/05/07"_s, 1);
    EXPECT_EQ(groups(), QStringList{u"g2"_s});
    EXPECT_EQ(remove(u"g1"_s), QStringList());
    diary().DeleteEntry(u"2004/05/06"_s, 1);
    EXPECT_EQ(groups(), QStringList());
    EXPECT_EQ(diary().LoadDay(u"2004/05/06"_s).size(), 1U) << "the one written by hand";
}

TEST_F(ImportGroups, ARowThatIsOverwrittenByHandStaysInItsGroup) {
    store::Entry entry = entryOf(u"2004/05/07"_s, u"mine"_s);
    entry.number = 1;
    entry.importMark = QString();
    write(entry);
    EXPECT_EQ(groups(), (QStringList{u"g2"_s, u"g1"_s}));
}

TEST_F(ImportGroups, FilesThatAreRegisteredForTheDaysStay) {
    sql(u"INSERT INTO FileDB (FileName, Day, Number) VALUES ('a.gif', '2004/05/07', 1), ('b.gif', '2004/05/06', 3)"_s);
    EXPECT_EQ(remove(u"g1"_s), (QStringList{u"2004/05/06"_s, u"2004/05/07"_s}));
    EXPECT_EQ(sqlValue(u"SELECT group_concat(FileName || Day || Number) FROM FileDB"_s),
              u"a.gif2004/05/071,b.gif2004/05/063"_s);
}

TEST_F(ImportGroups, ADeletionThatFailsAtTheCommitLeavesDiaryAndRescueFile) {
    {
        DiskWatch disk;
        disk.refuse(u"-journal"_s);
        EXPECT_NE(failureOf([&] { remove(u"g1"_s); }), QString());
        EXPECT_TRUE(disk.synced().contains(u"rescue.jsonl"_s));
    }
    EXPECT_FALSE(exists(rescueFile()));
    EXPECT_EQ(groups(), (QStringList{u"g2"_s, u"g1"_s}));
    EXPECT_EQ(remove(u"g1"_s), (QStringList{u"2004/05/06"_s, u"2004/05/07"_s}));
    EXPECT_EQ(bytesOf(rescueFile()).count('\n'), 2);
}

} // namespace
} // namespace velloria::tests
