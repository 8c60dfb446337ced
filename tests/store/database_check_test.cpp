#include "store/database_check.h"

#include "core/files.h"
#include "store/diary_home.h"
#include "store/sqlite/statement.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using store::checkDatabase;
using store::sqlite::Access;
using store::sqlite::Connection;

class DatabaseCheck : public DiaryHome {
protected:
    DatabaseCheck() {
        for (const char* title : {"a", "b", "c"})
            write(kDay, QLatin1StringView(title));
    }

    /// What the check says; it has changed nothing.
    QStringList findings() const {
        const auto before = contentOf(home.path());
        QStringList found = checkDatabase(file(), session.DataPath);
        EXPECT_EQ(contentOf(home.path()), before);
        return found;
    }

    void registerFile(const QString& name, const QString& day, int number, bool isLogged = false) {
        sql(u"INSERT INTO FileDB (FileName, Day, Number, Logged) VALUES ('%1', '%2', %3, %4)"_s.arg(name, day)
                .arg(number)
                .arg(int(isLogged)));
    }

    void putFile(const core::File& folder, const QString& name) {
        ASSERT_TRUE(QDir().mkpath(folder.in(session)));
        writeFile(folder.in(session) + u'/' + name, "x");
    }
};

TEST_F(DatabaseCheck, ASoundDiaryHasNoFindings) {
    putFile(core::files::kParts, u"a.gif"_s);
    putFile(core::files::kLogParts, u"old.gif"_s);
    putFile(core::files::kLogs, u"200405.htm"_s);
    registerFile(u"A.GIF"_s, kDay, 2); // from a disk that knows no case
    registerFile(u"a.gif"_s, u"ALL"_s, 0);
    registerFile(u"old.gif"_s, kDay, 1, true);
    registerFile(core::files::kParts.in(session) + u"/a.gif"_s, kDay, 1); // as old diaries have it
    sql(u"INSERT INTO LogDB VALUES ('2004/05', '200405.htm')"_s);
    sql(u"UPDATE Contents SET Extend = NULL, Excerpt = NULL, Weather = NULL, Genre = NULL, TrackBack = NULL, "
        "ImportMark = NULL"_s);
    EXPECT_EQ(findings(), QStringList());
}

TEST_F(DatabaseCheck, ADayInAnotherFormIsNamedWithItsKey) {
    const QMap<QString, QString> days{{u"2004/3/5"_s, u"2004/03/05"_s},
                                      {u"2004-03-06"_s, u"2004/03/06"_s},
                                      {u"2004年3月7日"_s, u"2004/03/07"_s},
                                      {u"２００４／３／８"_s, u"2004/03/08"_s},
                                      {u"平成16年3月9日"_s, u"2004/03/09"_s}};
    for (auto day = days.begin(); day != days.end(); ++day) {
        sql(u"UPDATE Contents SET Day = '%1', Number = 1 WHERE Title = 'c'"_s.arg(day.key()));
        EXPECT_EQ(findings(), QStringList{u"日付の形がちがう日: 「%1」(1件、%2のこと)"_s.arg(day.key(), day.value())});
    }
}

TEST_F(DatabaseCheck, ADayThatIsNoDateOrMayBeAnyYearsIsNamed) {
    for (const char* day :
         {"", "nonsense", "2003/02/29", "3/5", "04/3/5", "3/5/2004", "2004/3", "38000", "2004/13/5"}) {
        sql(u"UPDATE Contents SET Day = '%1', Number = 1 WHERE Title = 'c'"_s.arg(QLatin1StringView(day)));
        EXPECT_EQ(findings(), QStringList{u"日付として読めない日: 「%1」(1件)"_s.arg(QLatin1StringView(day))});
    }
}

TEST_F(DatabaseCheck, NumbersThatAreNotOneToNAreNamed) {
    const QMap<QString, QString> numbers{{u"Number = 5 WHERE Title = 'c'"_s, u"1 2 5"_s},
                                         {u"Number = 2 WHERE Title = 'c'"_s, u"1 2 2"_s},
                                         {u"Number = Number - 1"_s, u"0 1 2"_s},
                                         {u"Number = 2.5 WHERE Title = 'b'"_s, u"1 2.5 3"_s},
                                         {u"Number = 'x' WHERE Title = 'a'"_s, u"2 3 x"_s}};
    const QByteArray whole = bytesOf(file());
    for (auto change = numbers.begin(); change != numbers.end(); ++change) {
        writeFile(file(), whole);
        sql(u"UPDATE Contents SET "_s + change.key());
        EXPECT_EQ(findings(), QStringList{u"番号が1からの連番でない日: 2004/05/06 (%1)"_s.arg(change.value())});
    }
}

TEST_F(DatabaseCheck, ValuesThatAreMissingAreNamedWithTheirEntry) {
    sql(u"UPDATE Contents SET Title = NULL, Contents = NULL WHERE Number = 1"_s);
    sql(u"UPDATE Contents SET PublishTime = NULL WHERE Number = 2"_s);
    sql(u"INSERT INTO FileDB (FileName, Day, Number) VALUES (NULL, 'ALL', 0), ('x', NULL, NULL)"_s);
    sql(u"INSERT INTO LogDB VALUES (NULL, 'y.htm'), ('2004/05', NULL)"_s);
    EXPECT_EQ(checkDatabase(file()),
              (QStringList{u"値のない日記: 2004/05/06 1 (タイトル、内容)"_s, u"値のない日記: 2004/05/06 2 (保存日時)"_s,
                           u"値のない登録ファイル: x ( ) (日付、番号)"_s, u"値のない登録ファイル:  (ALL 0) (名前)"_s,
                           u"値のない登録ログ: y.htm () (月)"_s, u"値のない登録ログ:  (2004/05) (名前)"_s}));
}

TEST_F(DatabaseCheck, ColumnsOfATableWithoutRulesMayLackEveryValue) {
    sql(u"CREATE TABLE Old AS SELECT * FROM Contents"_s);
    sql(u"DROP TABLE Contents"_s);
    sql(u"ALTER TABLE Old RENAME TO Contents"_s);
    sql(u"UPDATE Contents SET Day = NULL, Number = NULL, Private = NULL WHERE Title = 'c'"_s);
    EXPECT_EQ(findings(), QStringList{u"値のない日記:   (日付、番号、公開・非公開)"_s});
}

TEST_F(DatabaseCheck, AnEntryFromTheClipboardHasNoTimeUntilItIsSaved) {
    sql(u"INSERT INTO Contents (Day, Number, Title, Contents) VALUES ('2004/05/06', 4, 'd', 'text')"_s);
    EXPECT_EQ(findings(), QStringList());
    sql(u"UPDATE Contents SET Genre = 'x' WHERE Number = 4"_s);
    EXPECT_EQ(findings(), QStringList{u"値のない日記: 2004/05/06 4 (保存日時)"_s});
}

TEST_F(DatabaseCheck, BrokenTextIsNamedWithItsEntryAndColumn) {
    sql(u"UPDATE Contents SET Contents = 'x' || char(65533) || 'y', Excerpt = CAST(x'82a0' AS TEXT) "
        "WHERE Number = 2"_s);
    sql(u"UPDATE Contents SET Genre = CAST(x'eda080' AS TEXT) WHERE Number = 3"_s);
    sql(u"UPDATE Contents SET Title = '𠮷😀' WHERE Number = 1"_s);
    EXPECT_EQ(findings(), (QStringList{u"文字の壊れた日記: 2004/05/06 2 (内容、概要)"_s,
                                       u"文字の壊れた日記: 2004/05/06 3 (ジャンル)"_s}));
}

TEST_F(DatabaseCheck, AnEntryWithoutATitleIsNamed) {
    sql(u"UPDATE Contents SET Title = '' WHERE Number = 2"_s);
    EXPECT_EQ(findings(), QStringList{u"タイトルのない日記: 2004/05/06 2"_s});
}

TEST_F(DatabaseCheck, AnImportGroupOfOneEntryIsNamed) {
    sql(u"UPDATE Contents SET ImportMark = 'alone' WHERE Number = 1"_s);
    EXPECT_EQ(findings(), QStringList{u"日記が一つだけの読み込みグループ: 「alone」(2004/05/06 1)"_s});
    sql(u"UPDATE Contents SET ImportMark = 'ＡＬＯＮＥ' WHERE Number = 2"_s);
    EXPECT_EQ(findings(), QStringList()) << "the same group";
}

TEST_F(DatabaseCheck, RegisteredFilesWithoutEntryOrFileAreNamed) {
    putFile(core::files::kParts, u"a.gif"_s);
    putFile(core::files::kLogParts, u"logged.gif"_s);
    registerFile(u"a.gif"_s, kDay, 4);
    registerFile(u"a.gif"_s, kDay, -1);
    registerFile(u"a.gif"_s, u"2004/5/6"_s, 3);
    registerFile(u"a.gif"_s, u"nonsense"_s, 1);
    registerFile(u"gone.gif"_s, kDay, 1);
    registerFile(u"logged.gif"_s, kDay, 2);
    registerFile(u"C:\\gone.gif"_s, u"ALL"_s, 0);
    EXPECT_EQ(findings(), (QStringList{u"日記のない登録ファイル: a.gif (2004/05/06 -1)"_s,
                                       u"日記のない登録ファイル: a.gif (2004/05/06 4)"_s,
                                       u"日付の形がちがう登録ファイル: a.gif (2004/5/6 3)、2004/05/06のこと"_s,
                                       u"日記のない登録ファイル: a.gif (nonsense 1)"_s,
                                       u"ディスクにない登録ファイル: gone.gif (2004/05/06 1)"_s,
                                       u"ディスクにない登録ファイル: logged.gif (2004/05/06 2)"_s,
                                       u"ディスクにない登録ファイル: C:\\gone.gif (ALL 0)"_s}));
}

TEST_F(DatabaseCheck, RegisteredLogsOfNoMonthOrWithoutPageAreNamed) {
    putFile(core::files::kLogs, u"here.htm"_s);
    sql(u"INSERT INTO LogDB VALUES ('2004/5', 'here.htm'), ('2004/06', 'gone.htm')"_s);
    EXPECT_EQ(findings(), (QStringList{u"月として読めない登録ログ: here.htm (2004/5)"_s,
                                       u"ディスクにない登録ログ: gone.htm (2004/06)"_s}));
}

TEST_F(DatabaseCheck, ADataFolderThatIsAwayIsToldOnce) {
    EXPECT_EQ(checkDatabase(file(), path(u"away/"_s)), QStringList());
    registerFile(u"a.gif"_s, kDay, 1);
    registerFile(u"b.gif"_s, kDay, 1);
    const QStringList found = checkDatabase(file(), path(u"away/"_s));
    ASSERT_EQ(found.size(), 1);
    EXPECT_TRUE(found[0].contains(path(u"away/"_s)));
}

TEST_F(DatabaseCheck, AVersionThatIsMissingOrTwiceIsNamed) {
    sql(u"INSERT INTO DBInfo (VersionInfo) VALUES (220)"_s);
    EXPECT_EQ(findings(), QStringList{u"バージョンの行が2つあります (DBInfo)"_s});
    sql(u"DELETE FROM DBInfo"_s);
    EXPECT_EQ(findings(), QStringList{u"バージョンの行がありません (DBInfo)"_s});
}

TEST_F(DatabaseCheck, TablesAndColumnsThatAreMissingAreNamed) {
    sql(u"DROP TABLE LogDB"_s);
    sql(u"ALTER TABLE Contents DROP COLUMN TrackBack"_s);
    EXPECT_EQ(findings(), (QStringList{u"列がありません: Contents (TrackBack)"_s, u"表がありません: LogDB"_s}));
}

TEST_F(DatabaseCheck, AnOldDiaryIsRefusedAsOneToBeConverted) {
    for (const int version : {0, 100, 210}) {
        sql(u"UPDATE DBInfo SET VersionInfo = %1"_s.arg(version));
        const QString failure = failureOf([&] { checkDatabase(file()); });
        EXPECT_TRUE(failure.contains(u"バージョン%1"_s.arg(version)) && failure.contains(u"変換"_s))
            << failure.toStdString();
    }
    writeFile(path(u"old.mdb"_s), QByteArray("\0\1\0\0Standard Jet DB\0\1\0\0\0", 24) + QByteArray(4072, '\0'));
    EXPECT_TRUE(failureOf([&] { checkDatabase(path(u"old.mdb"_s)); }).contains(u"旧形式(Jet)"_s));
    sql(u"UPDATE DBInfo SET VersionInfo = 221"_s);
    EXPECT_EQ(findings(), QStringList()) << "of a later program";
}

TEST_F(DatabaseCheck, WhatAKilledProgramLeftHalfDoneIsRolledBack) {
    const QByteArray before = bytesOf(file());
    tear(file());
    ASSERT_TRUE(exists(file() + u"-journal"_s));
    EXPECT_EQ(checkDatabase(file(), session.DataPath), QStringList());
    EXPECT_FALSE(exists(file() + u"-journal"_s)) << "people copy a diary that is told to be sound alone";
    EXPECT_TRUE(bytesOf(file()) == before);
}

TEST_F(DatabaseCheck, AProgramInTheMiddleOfAChangeIsNotInTheWay) {
    Connection writer(file(), Access::ReadWrite);
    writer.execute("BEGIN IMMEDIATE");
    writer.execute("UPDATE Contents SET Number = 7 WHERE Title = 'a'");
    ASSERT_TRUE(exists(file() + u"-journal"_s));
    EXPECT_TRUE(holdsInChild([&] { return checkDatabase(file()).isEmpty(); }));
    writer.execute("COMMIT");
    EXPECT_EQ(checkDatabase(file()).size(), 1);
}

TEST_F(DatabaseCheck, ADamagedFileIsReportedOrRefused) {
    for (int i = 0; i < 50; ++i)
        write(kDay, u"a"_s, QString(1000, u'x'));
    QByteArray damaged = bytesOf(file());
    writeFile(file(), damaged.replace(damaged.size() - 9000, 4096, QByteArray(4096, '\xAA')));
    QStringList found;
    const QString failure = failureOf([&] { found = checkDatabase(file()); });
    EXPECT_TRUE(!found.isEmpty() || failure.contains(file()));
    for (const QByteArray& bytes :
         QList<QByteArray>{{}, "x", "[ALL]\r\nDataPath=\r\n", QByteArray(5000, '\0'), damaged.first(10)}) {
        writeFile(path(u"x.mdb"_s), bytes);
        EXPECT_THROW(checkDatabase(path(u"x.mdb"_s)), platform::Failure);
    }
}

} // namespace
} // namespace velloria::tests
