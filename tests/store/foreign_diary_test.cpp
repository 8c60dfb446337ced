// A diary that comes from somebody else, or that another tool has had in its hands.
#include "platform/file_write.h"
#include "store/database_file.h"
#include "store/diary_home.h"
#include "store/entry_import.h"
#include "store/file_register.h"

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using store::Entry;
using store::PublishTime;

/// Another tool at work on the file, with nothing of the program's own care.
class OtherTool {
public:
    explicit OtherTool(const QString& file) { sqlite3_open(QFile::encodeName(file).constData(), &m_handle); }
    ~OtherTool() { sqlite3_close(m_handle); }
    OtherTool(const OtherTool&) = delete;
    OtherTool& operator=(const OtherTool&) = delete;
    void run(const char* sql) {
        char* error = nullptr;
        EXPECT_EQ(sqlite3_exec(m_handle, sql, nullptr, nullptr, &error), SQLITE_OK) << sql << ": " << error;
        sqlite3_free(error);
    }

private:
    sqlite3* m_handle = nullptr;
};

class ForeignDiary : public ThreeEntries {
protected:
    using ThreeEntries::titles;
    QString titles() const { return titles(file()); }
};

TEST_F(ForeignDiary, ItsTriggersDoNothing) {
    OtherTool(file()).run("CREATE TRIGGER x AFTER INSERT ON Contents BEGIN DELETE FROM Contents; END;"
                          "CREATE TRIGGER y BEFORE UPDATE ON Contents BEGIN DELETE FROM Contents; END;"
                          "CREATE TRIGGER z AFTER DELETE ON Contents BEGIN DELETE FROM Contents; END;"
                          "CREATE TRIGGER f AFTER INSERT ON FileDB BEGIN DELETE FROM Contents; END");
    write(kDay, u"d"_s);
    Entry entry = entryOf(kDay, u"B"_s);
    entry.number = 2;
    write(entry);
    diary().DeleteEntry(kDay, 1);
    store::FileRegister(file()).AddFile({0, u"a.gif"_s, kDay, 1, false, false});
    store::EntryImport import(file());
    import.add({kDay, u"e"_s, u"x"_s});
    import.settle();
    EXPECT_EQ(titles(), u"B c d e"_s);
}

TEST_F(ForeignDiary, ItsViewsAndForeignKeysDoNothing) {
    OtherTool tool(file());
    tool.run("CREATE TABLE Twin (id INTEGER REFERENCES Contents (RecordID) ON DELETE CASCADE);"
             "INSERT INTO Twin SELECT RecordID FROM Contents;"
             "DROP TABLE FileDB; CREATE VIEW FileDB AS SELECT 1 AS FileID, 'x' AS FileName, '2004/05/06' AS Day, "
             "1 AS Number, 0 AS Uploaded, 0 AS Logged");
    diary().DeleteEntry(kDay, 1);
    EXPECT_EQ(sqlValue(u"SELECT count(*) FROM Twin"_s), u"3"_s);
    EXPECT_NE(failureOf([&] { store::FileRegister(file()).ListFiles(); }), QString());
}

TEST_F(ForeignDiary, ItsTablesCallNoFunctionAndNoStatementRewritesThem) {
    store::sqlite::Connection connection(file(), store::sqlite::Access::ReadWrite);
    const auto refusal = [&](const char* sql) { return failureOf([&] { connection.execute(sql); }); };
    EXPECT_TRUE(refusal("CREATE INDEX x ON Contents (Fold(Title))").contains(u"unsafe use of Fold()"_s));
    connection.execute("PRAGMA writable_schema = ON");
    EXPECT_TRUE(refusal("UPDATE sqlite_master SET sql = sql").contains(u"may not be modified"_s));
}

TEST_F(ForeignDiary, NoRuleOfItsTablesMakesRoomByDeleting) {
    OtherTool(file()).run("ALTER TABLE Contents RENAME TO Old;"
                          "CREATE TABLE Contents (RecordID INTEGER PRIMARY KEY AUTOINCREMENT, Day TEXT, Number INTEGER "
                          "DEFAULT 1, Title TEXT UNIQUE ON CONFLICT REPLACE, Contents TEXT, Extend TEXT, Excerpt TEXT, "
                          "Weather TEXT, Genre TEXT, PublishTime TEXT, Private INTEGER DEFAULT 0, TrackBack TEXT, "
                          "ImportMark TEXT);"
                          "INSERT INTO Contents SELECT * FROM Old; DROP TABLE Old");
    EXPECT_NE(failureOf([&] { write(kDay, u"a"_s); }), QString());
    Entry entry = entryOf(kDay, u"a"_s);
    entry.number = 2;
    EXPECT_NE(failureOf([&] { write(entry); }), QString());
    EXPECT_NE(failureOf([&] { store::EntryImport(file()).add({kDay, u"c"_s, u"x"_s}); }), QString());
    EXPECT_EQ(titles(), u"a b c"_s);
}

TEST_F(ForeignDiary, TheCheckNamesWhatADiaryDoesNotHave) {
    OtherTool(file()).run("CREATE TRIGGER 悪 AFTER INSERT ON Contents BEGIN DELETE FROM Contents; END;"
                          "CREATE VIEW \"v w\" AS SELECT 1");
    const QByteArray before = bytesOf(file());
    const QStringList findings = store::checkDatabase(file());
    ASSERT_EQ(findings.size(), 2) << findings.join(u'\n').toStdString();
    EXPECT_TRUE(findings[0].contains(u"トリガー: 「悪」"_s)) << findings[0].toStdString();
    EXPECT_TRUE(findings[1].contains(u"ビュー: 「v w」"_s)) << findings[1].toStdString();
    EXPECT_TRUE(bytesOf(file()) == before);
    OtherTool(file()).run("DROP TABLE FileDB; CREATE VIEW FileDB AS SELECT 1");
    EXPECT_TRUE(store::checkDatabase(file()).join(u'\n').contains(u"「FileDB」"_s));
}

TEST_F(ForeignDiary, WithAWriteAheadLogIsOneFileAgainAtTheNextOpening) {
    {
        OtherTool tool(file());
        tool.run("PRAGMA journal_mode = WAL; UPDATE Contents SET Title = 'new' WHERE Number = 3");
    }
    EXPECT_EQ(titles(), u"a b new"_s);
    EXPECT_EQ(bytesOf(file()).at(18), '\1');
    EXPECT_FALSE(exists(file() + u"-wal"_s) || exists(file() + u"-shm"_s));
}

TEST_F(ForeignDiary, ALogThatAKilledToolLeftIsTakenIn) {
    holdsInChild([&]() -> bool {
        sqlite3* tool = nullptr;
        sqlite3_open(QFile::encodeName(file()).constData(), &tool);
        sqlite3_exec(tool, "PRAGMA journal_mode = WAL; UPDATE Contents SET Title = 'new' WHERE Number = 3", nullptr,
                     nullptr, nullptr);
        ::_exit(0);
    });
    ASSERT_TRUE(exists(file() + u"-wal"_s));
    EXPECT_EQ(store::GetDBVersion(file()), 220);
    store::backUpDatabase(file(), path(u"x.bak"_s));
    EXPECT_FALSE(exists(file() + u"-wal"_s));
    EXPECT_EQ(titles(path(u"x.bak"_s)), u"a b new"_s);
    EXPECT_EQ(titles(), u"a b new"_s);
}

TEST_F(ForeignDiary, CopiesTakeTheLogOfAToolAtWorkAlong) {
    store::backUpDatabase(file(), path(u"x.bak"_s));
    OtherTool tool(file());
    tool.run("PRAGMA journal_mode = WAL; PRAGMA wal_autocheckpoint = 0;"
             "INSERT INTO Contents (Day, Number, Title, Contents) VALUES ('2004/05/06', 4, 'd', "
             "hex(zeroblob(200000)))");
    ASSERT_TRUE(exists(file() + u"-wal"_s));
    EXPECT_EQ(store::GetDBVersion(file()), 220) << "a file whose end is in the log is not cut off";
    const QString copy = path(u"copy.mdb"_s);
    store::copyDatabase(file(), copy);
    store::backUpDatabase(file(), path(u"x.bak"_s));
    for (const QString& name : {copy, path(u"x.bak"_s)}) {
        EXPECT_EQ(bytesOf(name).at(18), '\1');
        EXPECT_EQ(titles(name), u"a b c d"_s);
        EXPECT_EQ(store::checkDatabase(name), QStringList());
    }
    EXPECT_EQ(titles(path(u"x.bak.1"_s)), u"a b c"_s);
    write(kDay, u"e"_s); // both at work
    tool.run("UPDATE Contents SET Title = 'A' WHERE Number = 1");
    EXPECT_EQ(titles(), u"A b c d e"_s);
}

TEST_F(ForeignDiary, AnOldLogBesideTheTargetOfACopyGetsIntoNothing) {
    const QString target = path(u"target.mdb"_s);
    store::copyDatabase(file(), target);
    holdsInChild([&]() -> bool {
        sqlite3* tool = nullptr;
        sqlite3_open(QFile::encodeName(target).constData(), &tool);
        sqlite3_exec(tool, "PRAGMA journal_mode = WAL; DELETE FROM Contents", nullptr, nullptr, nullptr);
        ::_exit(0);
    });
    ASSERT_TRUE(exists(target + u"-wal"_s));
    store::copyDatabase(file(), target);
    EXPECT_EQ(titles(target), u"a b c"_s);
}

} // namespace
} // namespace velloria::tests
