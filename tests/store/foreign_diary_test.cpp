// A diary that comes from somebody else, or that another tool has had in its hands.
#include "platform/file_write.h"
#include "registers/file_register.h"
#include "registers/log_register.h"
#include "store/database_check.h"
#include "store/database_file.h"
#include "store/diary_home.h"
#include "store/entry_import.h"
#include "store/sqlite/statement.h"

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
    void run(const QByteArray& sql) {
        char* error = nullptr;
        EXPECT_EQ(sqlite3_exec(m_handle, sql.constData(), nullptr, nullptr, &error), SQLITE_OK)
            << sql.toStdString() << ": " << error;
        sqlite3_free(error);
    }
    void addCollation(const char* name) {
        sqlite3_create_collation(m_handle, name, SQLITE_UTF8, nullptr,
                                 [](void*, int, const void*, int, const void*) { return 0; });
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
    registers::FileRegister(file()).addFile({0, u"a.gif"_s, kDay, 1, false, false});
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
    EXPECT_NE(failureOf([&] { registers::FileRegister(file()).ListFiles(); }), QString());
}

TEST_F(ForeignDiary, ItsTablesCallNoFunctionAndNoStatementRewritesThem) {
    store::sqlite::Connection connection(file(), store::sqlite::Access::ReadWrite);
    const auto refusal = [&](const char* sql) { return failureOf([&] { connection.execute(sql); }); };
    EXPECT_TRUE(refusal("CREATE INDEX x ON Contents (Fold(Title))").contains(u"unsafe use of Fold()"_s));
    connection.execute("PRAGMA writable_schema = ON");
    EXPECT_TRUE(refusal("UPDATE sqlite_master SET sql = sql").contains(u"may not be modified"_s));
}

/// Every row of the tables that are written to.
QString rowsOf(const QString& file) {
    const store::sqlite::Connection connection(file, store::sqlite::Access::ReadOnly);
    store::sqlite::Statement rows(connection,
                                  "SELECT RecordID || Day || Number || Title || Private FROM Contents UNION ALL "
                                  "SELECT FileID || FileName || Day || Number || Uploaded || Logged FROM FileDB UNION "
                                  "ALL SELECT LogMonth || LogFileName FROM LogDB");
    QStringList texts;
    while (rows.next())
        texts += rows.text(0);
    return texts.join(u'\n');
}

TEST_F(ForeignDiary, NoStatementLetsARuleMakeRoomByDeleting) {
    const registers::FileRegister files(file());
    const registers::LogRegister logs(file());
    const auto save = [&](int number) {
        Entry entry = entryOf(kDay, u"a"_s);
        entry.number = number;
        diary().saveEntries({entry}, PublishTime::Now, {});
    };
    const auto overwrite = [&] {
        store::EntryImport(file()).overwrite({u"2004/05/07"_s, u"a"_s, u"x"_s}, [](const Entry&) {});
    };
    const QByteArray rows = "UPDATE Contents SET Private = 1 WHERE Title = 'b';"
                            "INSERT INTO Contents (Day, Number, Title) VALUES ('2004/05/07', 5, 'd');";
    const QByteArray marked = "INSERT INTO FileDB (FileName, Day, Number, Uploaded, Logged) VALUES "
                              "('a.gif', '2004/05/06', 1, 1, 1), ('b.gif', '2004/05/06', 2, 0, 0);";
    const QByteArray withheld = marked + "UPDATE FileDB SET Number = -2 WHERE FileName = 'a.gif';";
    const QByteArray logged = "INSERT INTO LogDB VALUES ('2004/05', '200405.htm');";
    const struct {
        QByteArray filling;
        const char* table;
        const char* rule;
        std::function<void()> change;
    } cases[] = {
        {rows, "Contents", "Title", [&] { save(4); }},
        {rows, "Contents", "Title", [&] { save(2); }},
        {rows, "Contents", "Number", [&] { diary().repairDay(u"2004/05/07"_s); }},
        {rows, "Contents", "Title",
         [&] {
             store::EntryImport(file()).add({kDay, u"a"_s, u"x"_s});
         }},
        {rows, "Contents", "Title", overwrite},
        {rows + marked, "FileDB", "FileName",
         [&] {
             files.addFile({0, u"a.gif"_s, kDay, 3, false, false});
         }},
        {rows + marked, "FileDB", "FileName", [&] { files.addCommonFiles({u"a.gif"_s}, registers::SiteSide::Log); }},
        {rows + marked, "FileDB", "Logged", [&] { files.markLogged({2}); }},
        {rows + marked, "FileDB", "Uploaded", [&] { files.markUploaded(2); }},
        {rows + marked, "FileDB", "Day, Number", [&] { diary().DeleteEntry(kDay, 1); }},
        {rows + withheld, "FileDB", "Day, Number", [&] { diary().DeleteEntry(kDay, 2); }},
        {rows + logged, "LogDB", "LogMonth",
         [&] {
             logs.addLog({u"2004/05"_s, u"x.htm"_s});
         }},
        {rows + logged, "LogDB", "LogFileName",
         [&] {
             logs.addLogOfMonth({u"2004/04"_s, u"200405.htm"_s});
         }},
    };
    const QByteArray sound = bytesOf(file());
    for (const auto& c : cases) {
        writeFile(file(), sound);
        const QByteArray table(c.table);
        QByteArray made =
            sqlValue(u"SELECT sql FROM sqlite_master WHERE name = '%1'"_s.arg(QLatin1StringView(table))).toUtf8();
        made.insert(made.lastIndexOf(')'), QByteArray(", UNIQUE (") + c.rule + ") ON CONFLICT REPLACE");
        OtherTool(file()).run(c.filling + "ALTER TABLE " + table + " RENAME TO Old;" + made +
                              "; INSERT OR IGNORE INTO " + table + " SELECT * FROM Old; DROP TABLE Old");
        const QString before = rowsOf(file());
        EXPECT_NE(failureOf(c.change), QString()) << c.table << " " << c.rule;
        EXPECT_EQ(rowsOf(file()), before) << c.table << " " << c.rule;
    }
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
    OtherTool(file()).run("DROP TABLE DBInfo; CREATE VIEW DBInfo AS SELECT 220 AS VersionInfo");
    EXPECT_TRUE(store::checkDatabase(file()).join(u'\n').contains(u"「DBInfo」"_s));
    EXPECT_TRUE(failureOf([&] { store::GetDBVersion(file()); }).contains(u"「DBInfo」がビューです"_s));
}

TEST_F(ForeignDiary, WhatStopsTheEnginesCheckIsNamedWithTheRest) {
    {
        OtherTool tool(file());
        tool.addCollation("NOBODYS");
        tool.run("CREATE TRIGGER x AFTER INSERT ON Contents BEGIN DELETE FROM Contents; END;"
                 "CREATE INDEX i ON Contents (Title COLLATE NOBODYS)");
    }
    const QString findings = store::checkDatabase(file()).join(u'\n');
    EXPECT_TRUE(findings.contains(u"トリガー: 「x」"_s)) << findings.toStdString();
    EXPECT_TRUE(findings.contains(u"NOBODYS"_s)) << findings.toStdString();
}

TEST_F(ForeignDiary, AFileOfADayInAnotherFormHasItsEntry) {
    const registers::FileRegister files(file());
    files.addFile({0, u"a.gif"_s, u"2004/5/6"_s, 1, false, false});
    files.addFile({0, u"b.gif"_s, u"2004/5/6"_s, 4, false, false});
    EXPECT_EQ(store::checkDatabase(file()).filter(u"日記のない"_s),
              QStringList{u"日記のない登録ファイル: b.gif (2004/5/6 4)"_s});
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
