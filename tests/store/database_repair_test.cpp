#include "store/database_repair.h"

#include "store/database_check.h"
#include "store/diary_home.h"
#include "store/sqlite/statement.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using store::checkDatabase;
using store::repairDatabase;
using store::sqlite::Access;
using store::sqlite::Connection;
using store::sqlite::Statement;

class DatabaseRepair : public DiaryHome {
protected:
    /// Adds an entry as it stands.
    void put(const QString& day, const QString& number, const QString& title, bool isPrivate = false) {
        sql(u"INSERT INTO Contents (Day, Number, Title, Contents, PublishTime, Private) "
            "VALUES ('%1', %2, '%3', 'text', '', %4)"_s.arg(day, number, title)
                .arg(int(isPrivate)));
    }
    void registerFile(const QString& name, const QString& day, int number) {
        sql(u"INSERT INTO FileDB (FileName, Day, Number) VALUES ('%1', '%2', %3)"_s.arg(name, day).arg(number));
        ASSERT_TRUE(QDir().mkpath(session.DataPath + u"DiaryParts"_s));
        writeFile(session.DataPath + u"DiaryParts/"_s + name, "x");
    }

    QStringList rows(const QByteArray& query) const {
        const Connection connection(file(), Access::ReadOnly);
        Statement statement(connection, query);
        QStringList rows;
        while (statement.next())
            rows += statement.text(0) + u' ' + statement.text(1) + u' ' + statement.text(2);
        return rows;
    }
    QStringList entries() const { return rows("SELECT Day, Number, Title FROM Contents ORDER BY Day, Number"); }
    QStringList files() const { return rows("SELECT FileName, Day, Number FROM FileDB ORDER BY FileName"); }

    /// Repairs, and nothing remains.
    QStringList mend() {
        const store::Repair repair = repairDatabase(run);
        EXPECT_EQ(repair.remaining, QStringList());
        EXPECT_EQ(repairDatabase(run).mended, QStringList()) << "a second repair finds nothing to mend";
        return repair.mended;
    }

    QStringList backups() const { return QDir(session.UserPath + u"Backup"_s).entryList(QDir::Files); }
};

TEST_F(DatabaseRepair, ASoundDiaryStaysAsItIsWithoutABackup) {
    write(kDay, u"a"_s);
    registerFile(u"a.gif"_s, kDay, 1);
    const auto before = contentOf(home.path());
    EXPECT_EQ(mend(), QStringList());
    EXPECT_EQ(contentOf(home.path()), before);
}

TEST_F(DatabaseRepair, WhatHasNoOneRightAnswerStaysAndIsTold) {
    put(u"3/5"_s, u"1"_s, u"a"_s);
    put(u"04/3/5"_s, u"1"_s, u"b"_s);
    put(u"nonsense"_s, u"1"_s, u""_s);
    registerFile(u"a.gif"_s, u"2004/5/7"_s, 1); // an entry that is not there
    const auto before = contentOf(home.path());
    const store::Repair repair = repairDatabase(run);
    EXPECT_EQ(repair.mended, QStringList());
    EXPECT_EQ(repair.remaining, checkDatabase(file(), session.DataPath));
    EXPECT_EQ(repair.remaining.size(), 5);
    EXPECT_EQ(contentOf(home.path()), before);
}

TEST_F(DatabaseRepair, NumbersAreOneToNInTheOrderOfNumberAndRow) {
    put(kDay, u"7"_s, u"last"_s);
    put(kDay, u"2"_s, u"second"_s);
    put(kDay, u"2"_s, u"third"_s);
    put(kDay, u"0"_s, u"first"_s);
    put(u"nonsense"_s, u"4"_s, u"x"_s);
    const store::Repair repair = repairDatabase(run);
    EXPECT_EQ(entries(), (QStringList{u"2004/05/06 1 first"_s, u"2004/05/06 2 second"_s, u"2004/05/06 3 third"_s,
                                      u"2004/05/06 4 last"_s, u"nonsense 1 x"_s}));
    EXPECT_EQ(repair.mended, (QStringList{u"番号を付け直しました: 2004/05/06 (0→1、2→3、7→4)"_s,
                                          u"番号を付け直しました: nonsense (4→1)"_s}));
    EXPECT_EQ(repair.remaining, QStringList{u"日付として読めない日: 「nonsense」(1件)"_s});
}

TEST_F(DatabaseRepair, WhatIsNoWholeNumberGetsOne) {
    put(kDay, u"1"_s, u"a"_s);
    put(kDay, u"2.5"_s, u"b"_s);
    put(kDay, u"3"_s, u"c"_s);
    put(kDay, u"'1x'"_s, u"d"_s);
    mend();
    EXPECT_EQ(entries(),
              (QStringList{u"2004/05/06 1 a"_s, u"2004/05/06 2 c"_s, u"2004/05/06 3 d"_s, u"2004/05/06 4 b"_s}));
}

TEST_F(DatabaseRepair, DaysInAnotherFormGetTheirKey) {
    const QStringList forms{u"2004/3/5"_s,         u"2004-03-06"_s,      u"2004.3.7"_s,          u"2004年3月8日"_s,
                            u"２００４／３／９"_s, u"平成16年3月10日"_s, u" 2004/3/11 0:00:00"_s};
    for (const QString& form : forms)
        put(form, u"1"_s, u"t"_s);
    const QStringList mended = mend();
    ASSERT_EQ(mended.size(), forms.size());
    EXPECT_EQ(mended[0], u"日付の形を直しました: 「2004/3/5」→2004/03/05 (1件)"_s);
    EXPECT_EQ(entries(),
              (QStringList{u"2004/03/05 1 t"_s, u"2004/03/06 1 t"_s, u"2004/03/07 1 t"_s, u"2004/03/08 1 t"_s,
                           u"2004/03/09 1 t"_s, u"2004/03/10 1 t"_s, u"2004/03/11 1 t"_s}));
}

TEST_F(DatabaseRepair, EntriesOfOneDayUnderSeveralFormsBecomeOneDay) {
    put(kDay, u"1"_s, u"a"_s);
    put(u"2004/5/6"_s, u"1"_s, u"b"_s);
    put(kDay, u"2"_s, u"c"_s);
    put(u"2004-5-6"_s, u"2"_s, u"d"_s);
    EXPECT_EQ(mend(), (QStringList{u"日付の形を直しました: 「2004-5-6」→2004/05/06 (1件)"_s,
                                   u"日付の形を直しました: 「2004/5/6」→2004/05/06 (1件)"_s,
                                   u"番号を付け直しました: 2004/05/06 (「2004/5/6」の1→2、2→3、「2004-5-6」の2→4)"_s}));
    EXPECT_EQ(entries(),
              (QStringList{u"2004/05/06 1 a"_s, u"2004/05/06 2 b"_s, u"2004/05/06 3 c"_s, u"2004/05/06 4 d"_s}));
}

TEST_F(DatabaseRepair, RegisteredFilesStayWithTheirEntries) {
    put(kDay, u"2"_s, u"a"_s);
    put(kDay, u"5"_s, u"b"_s, true);
    put(u"2004/5/6"_s, u"9"_s, u"c"_s);
    put(u"2004/05/07"_s, u"1"_s, u"d"_s);
    registerFile(u"a.gif"_s, kDay, 2);
    registerFile(u"b.gif"_s, u"2004-5-6"_s, 5);
    registerFile(u"c.gif"_s, u"2004/5/6"_s, 9);
    registerFile(u"d.gif"_s, u"2004/5/7"_s, 1);
    registerFile(u"x.gif"_s, u"ALL"_s, 0);
    const QStringList mended = mend();
    EXPECT_EQ(files(), (QStringList{u"a.gif 2004/05/06 1"_s, u"b.gif 2004/05/06 2"_s, u"c.gif 2004/05/06 3"_s,
                                    u"d.gif 2004/05/07 1"_s, u"x.gif ALL 0"_s}));
    EXPECT_TRUE(mended.contains(u"登録ファイルの日記を直しました: b.gif (2004-5-6 5→2004/05/06 2)"_s))
        << mended.join(u'\n').toStdString();
}

TEST_F(DatabaseRepair, AFileThatMayBeAPrivateEntrysStaysWithThatOne) {
    put(kDay, u"1"_s, u"public"_s);
    put(kDay, u"1"_s, u"private"_s, true);
    put(u"2004/05/07"_s, u"1"_s, u"public"_s);
    put(u"2004/5/7"_s, u"1"_s, u"private"_s, true);
    registerFile(u"a.gif"_s, kDay, 1);
    registerFile(u"b.gif"_s, u"2004/05/07"_s, 1);
    mend();
    EXPECT_EQ(files(), (QStringList{u"a.gif 2004/05/06 2"_s, u"b.gif 2004/05/07 2"_s}));
}

TEST_F(DatabaseRepair, AFileOfAPrivateEntryThatIsGoneGoesToNobodyElse) {
    put(kDay, u"-2"_s, u"public"_s);
    registerFile(u"a.gif"_s, kDay, -2);
    EXPECT_EQ(repairDatabase(run).mended, QStringList{u"番号を付け直しました: 2004/05/06 (-2→1)"_s});
    EXPECT_EQ(files(), QStringList{u"a.gif 2004/05/06 -2"_s});
}

TEST_F(DatabaseRepair, ADayThatIsNoTextStaysAndIsTold) {
    sql(u"INSERT INTO Contents (Day, Title, Contents, PublishTime) VALUES (CAST('2004/5/6' AS BLOB), 'a', '', ''), "
        "(CAST('2004/05/07' AS BLOB), 'b', '', '')"_s);
    const auto before = contentOf(home.path());
    const store::Repair repair = repairDatabase(run);
    EXPECT_EQ(repair.mended, QStringList());
    EXPECT_EQ(repair.remaining, (QStringList{u"日付として読めない日: 「2004/05/07」(1件)"_s,
                                             u"日付として読めない日: 「2004/5/6」(1件)"_s}));
    EXPECT_EQ(contentOf(home.path()), before);
}

TEST_F(DatabaseRepair, TheBackupHasTheDiaryAsItWas) {
    put(kDay, u"7"_s, u"a"_s);
    const QStringList before = entries();
    mend();
    ASSERT_EQ(backups().size(), 1);
    const Connection connection(session.UserPath + u"Backup/"_s + backups()[0], Access::ReadOnly);
    Statement rows(connection, "SELECT Number FROM Contents");
    ASSERT_TRUE(rows.next());
    EXPECT_EQ(rows.integer(0), 7);
}

TEST_F(DatabaseRepair, WithoutABackupNothingIsMended) {
    put(kDay, u"7"_s, u"a"_s);
    writeFile(session.UserPath + u"Backup"_s, "where the folder belongs");
    const auto before = contentOf(home.path());
    EXPECT_NE(failureOf([&] { repairDatabase(run); }), QString());
    EXPECT_EQ(contentOf(home.path()), before);
}

TEST_F(DatabaseRepair, ADiaryInUseIsLeftAlone) {
    put(kDay, u"7"_s, u"a"_s);
    const QStringList before = entries();
    Connection other(file(), Access::ReadWrite);
    other.execute("BEGIN IMMEDIATE");
    EXPECT_TRUE(holdsInChild([&] { return failureOf([&] { repairDatabase(run); }).contains(u"使用中"_s); }));
    other.execute("ROLLBACK");
    EXPECT_EQ(entries(), before);
}

TEST_F(DatabaseRepair, DamageOldAndLaterVersionsAreRefused) {
    put(kDay, u"7"_s, u"a"_s, true);
    const auto expectRefused = [&](const QString& word) {
        const auto before = contentOf(home.path());
        const QString failure = failureOf([&] { repairDatabase(run); });
        EXPECT_TRUE(failure.contains(word)) << failure.toStdString();
        EXPECT_EQ(contentOf(home.path()), before);
    };
    for (const auto& [version, word] : {std::pair(210, u"変換"_s), std::pair(221, u"新しい版"_s)}) {
        sql(u"UPDATE DBInfo SET VersionInfo = %1"_s.arg(version));
        expectRefused(word);
    }
    sql(u"UPDATE DBInfo SET VersionInfo = 220"_s);
    for (int i = 0; i < 50; ++i)
        write(kDay, u"a"_s, QString(1000, u'x'));
    QByteArray damaged = bytesOf(file());
    writeFile(file(), damaged.replace(damaged.size() - 9000, 4096, QByteArray(4096, '\xAA')));
    expectRefused(u"db restore"_s);
}

} // namespace
} // namespace velloria::tests
