#include "store/migration.h"

#include "platform/code_page.h"
#include "platform/file_write.h"
#include "platform/waiting.h"
#include "store/database_file.h"
#include "store/migration_home.h"
#include "support/faulty_disk.h"
#include "support/vectors.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

// ---- what comes along, by version

TEST_F(Migration, BringsWhatEachVersionHasAndFillsTheRest) {
    for (const int version : kGivenOut) {
        fillOld(version);
        update(version);
        EXPECT_EQ(rows(kAllContents), contentsFrom(version)) << version;
        const bool hasNumber = version >= 150;
        EXPECT_EQ(rows(kAllFiles),
                  (QStringList{u"a.gif|ALL|0|1|0"_s, hasNumber ? u"b.gif|2001/3/4|2|0|1"_s : u"b.gif|2001/3/4|1|0|1"_s,
                               hasNumber ? u"c.gif|NULL|0|0|0"_s : u"c.gif|NULL|1|0|0"_s}))
            << version;
        EXPECT_EQ(rows(u"SELECT * FROM LogDB"_s),
                  version >= 100 ? (QStringList{u"2001/03|log.htm"_s, u"NULL|NULL"_s}) : QStringList())
            << version;
        EXPECT_EQ(rows(u"SELECT * FROM Memo"_s),
                  version >= 220 ? (QStringList{u"2001/03/04|t|memo|0||0"_s, u"NULL|NULL|NULL|0||0"_s}) : QStringList())
            << version;
        EXPECT_EQ(rows(u"SELECT * FROM DBInfo"_s), QStringList{version >= 220 ? u"220|1|0"_s : u"220|0|0"_s})
            << version;
        EXPECT_EQ(store::GetDBVersion(file()), 220) << version;
        EXPECT_EQ(leftBehind(), QStringList()) << version;
    }
}

TEST_F(Migration, MakesTheFreshDiaryFromTheTemplate) {
    sqlOn(path(u"default.mdb"_s), u"CREATE TABLE Mine (x); UPDATE DBInfo SET VersionInfo = 221"_s);
    fillOld(150);
    update(150);
    EXPECT_EQ(rows(u"SELECT name FROM sqlite_master WHERE name IN ('Mine', 'ContentsByDay') ORDER BY name"_s),
              (QStringList{u"ContentsByDay"_s, u"Mine"_s}));
    EXPECT_EQ(store::GetDBVersion(file()), 221);
}

TEST_F(Migration, WritesTheOptionsOfTheOldestIntoFiles) {
    for (const int version : {0, 100}) {
        fillOld(version);
        update(version);
        EXPECT_EQ(bytesOf(piece(u"default_up.htm"_s)), platform::toCodePage(u"<b>頭</b>\r\n"_s));
        EXPECT_EQ(bytesOf(piece(u"default_down.htm"_s)), "&#233;\r\n");
        EXPECT_EQ(bytesOf(piece(u"default_up_log.htm"_s)), "\r\n");
        EXPECT_EQ(bytesOf(piece(u"default_down_log.htm"_s)), "\r\n");
        EXPECT_EQ(rows(u"SELECT count(*) FROM sqlite_master WHERE name = 'Option'"_s), QStringList{u"0"_s});
        EXPECT_EQ(boxes(), QStringList());
        for (const QString& name : QDir(piece(u""_s)).entryList({u"default_*"_s}))
            platform::removeFile(piece(name));
    }
    for (const int version : {101, 110, 220}) {
        fillOld(version);
        update(version);
        EXPECT_EQ(QDir(piece(u""_s)).entryList({u"default_*"_s}), QStringList()) << version;
    }
}

TEST_F(Migration, KeepsTheTextPieceThatAnOptionReplaces) {
    writeFile(piece(u"default_up.htm"_s), "mine");
    writeFile(piece(u"default_up.bak"_s), "older");
    writeFile(piece(u"default_down.htm"_s), "&#233;\r\n");
    fillOld(0);
    update(0);
    EXPECT_EQ(bytesOf(piece(u"default_up-2.bak"_s)), "mine");
    EXPECT_EQ(bytesOf(piece(u"default_up.bak"_s)), "older");
    EXPECT_EQ(bytesOf(piece(u"default_up.htm"_s)), platform::toCodePage(u"<b>頭</b>\r\n"_s));
    EXPECT_FALSE(exists(piece(u"default_down.bak"_s))) << "the same already";
    EXPECT_EQ(boxes(), QStringList{u"plain: 今までの「default_up.htm」は「default_up-2.bak」に残しました。"_s});
}

TEST_F(Migration, TakesTheTextPiecesBackWhenItFails) {
    writeFile(piece(u"default_up.htm"_s), "mine");
    fillOld(0);
    const auto before = contentOf(piece(u""_s));
    // Found when the copy is read back: the number is no longer the text that was written.
    sqlOn(path(u"default.mdb"_s), u"DROP TABLE FileDB; CREATE TABLE FileDB (FileID INTEGER PRIMARY KEY, FileName "
                                  "INTEGER, Day TEXT, Number INTEGER, Uploaded INTEGER, Logged INTEGER)"_s);
    sqlOn(file(), u"UPDATE FileDB SET FileName = '12'"_s);
    const QByteArray diaryBefore = bytesOf(file());
    const QString failure = failureOfUpdate(0);
    EXPECT_TRUE(failure.contains(u"一致しません"_s)) << failure.toStdString();
    EXPECT_TRUE(lines().contains(u"オプションの書き出しを終了。"_s));
    EXPECT_EQ(contentOf(piece(u""_s)), before);
    EXPECT_TRUE(bytesOf(file()) == diaryBefore);
}

// ---- days and numbers

TEST_F(Migration, WritesEveryDateInOneFormAndNothingElseAnew) {
    const std::pair<QString, QString> days[] = {
        {u"2003/1/6"_s, u"2003/01/06"_s},     {u"03-01-05"_s, u"2003/01/05"_s},
        {u"2003-01-07"_s, u"2003/01/07"_s},   {u"03/1/8"_s, u"2003/01/08"_s},
        {u"2003年1月9日"_s, u"2003/01/09"_s}, {u"２００３/1/10"_s, u"2003/01/10"_s},
        {u"2003/02/30"_s, u"2003/02/30"_s},   {u"1/5"_s, u"2004/01/05"_s},
        {u"0050/01/02"_s, u"1950/01/02"_s},   {u"2003.1.11"_s, u"2003/01/11"_s},
        {u"03.1.12"_s, u"2003/01/12"_s},      {u"２００３．１．１３"_s, u"2003/01/13"_s},
        {u"2003.13.45"_s, u"2003.13.45"_s}};
    for (const int version : {0, 220}) {
        makeOld(version);
        QStringList expected;
        for (const auto& [day, inOneForm] : days) {
            sqlOn(file(),
                  u"INSERT INTO Contents (Day) VALUES ('%1'); INSERT INTO FileDB (Day) VALUES ('%1')"_s.arg(day));
            expected += inOneForm;
        }
        const QStringList filesBefore = rows(u"SELECT Day FROM FileDB ORDER BY FileID"_s);
        update(version);
        EXPECT_EQ(rows(u"SELECT Day FROM Contents ORDER BY RecordID"_s), expected) << version;
        EXPECT_EQ(rows(u"SELECT Day FROM FileDB ORDER BY FileID"_s), filesBefore) << version;
    }
}

TEST_F(Migration, CopiesTheBytesOfATextWhateverTheyAre) {
    makeOld(220);
    sqlOn(file(), u"INSERT INTO Contents (Day, Title, Contents, Genre) VALUES ('2001/01/01', CAST(x'e8a1' AS TEXT), "
                  "CAST(x'610062' AS TEXT), 5), ('2001/01/02', CAST(x'efbbbf61' AS TEXT), 2.5, x'ff')"_s);
    update(220);
    EXPECT_EQ(rows(u"SELECT hex(Title), hex(Contents), hex(Genre), typeof(Genre), Number FROM Contents"_s),
              (QStringList{u"E8A1|610062|35|text|1"_s, u"EFBBBF61|322E35|FF|text|1"_s}));
}

TEST_F(Migration, NamesTheRowWhoseNumberFitsNowhere) {
    for (const QString& number : {u"40000"_s, u"-32769"_s, u"'x'"_s, u"1.5"_s, u"9223372036854775807"_s}) {
        makeOld(220);
        sqlOn(file(), u"INSERT INTO Contents (Day, Title, Number) VALUES ('2001/01/01', 'good', 32767), ('2001/01/02', "
                      "'bad', %1)"_s.arg(number));
        const QByteArray before = bytesOf(file());
        const QString failure = failureOfUpdate(220);
        EXPECT_TRUE(failure.contains(u"2行目(2001/01/02 bad)"_s)) << failure.toStdString();
        EXPECT_TRUE(failure.contains(u"「diary.mdb」は元のままです"_s)) << failure.toStdString();
        EXPECT_TRUE(failure.contains(file())) << failure.toStdString();
        EXPECT_TRUE(bytesOf(file()) == before);
    }
}

TEST_F(Migration, TakesAnyNumberButZeroForTrue) {
    makeOld(220);
    sqlOn(file(), u"INSERT INTO Contents (Day, Private) VALUES ('a', -1), ('b', 0), ('c', 2), ('d', '1')"_s);
    update(220);
    EXPECT_EQ(rows(u"SELECT Private FROM Contents"_s), (QStringList{u"1"_s, u"0"_s, u"1"_s, u"1"_s}));
}

TEST_F(Migration, KeepsTheOrderOfTheRows) {
    makeOld(220);
    sqlOn(file(), u"INSERT INTO Contents (RecordID, Day, Title) VALUES (7, '2001/01/03', 'third'), (2, '2001/01/09', "
                  "'first'), (5, '2001/01/01', 'second')"_s);
    update(220);
    EXPECT_EQ(rows(u"SELECT RecordID, Title FROM Contents ORDER BY RecordID"_s),
              (QStringList{u"1|first"_s, u"2|second"_s, u"3|third"_s}));
}

// ---- what a person sees

TEST_F(Migration, TellsEachStepInItsTurn) {
    for (const int version : kGivenOut) {
        fillOld(version);
        update(version);
        EXPECT_EQ(lines(), tableLines(version)) << version;
        EXPECT_EQ(turns(), (QStringList{u"hourglass"_s, u"default"_s})) << version;
    }
}

TEST_F(Migration, MovesTheBarWithEachRow) {
    fillOld(0);
    update(0);
    EXPECT_EQ(shown(), (QStringList{u"テンポラリファイル作成中。"_s,
                                    u"100:0"_s,
                                    u"テンポラリファイル作成完了。"_s,
                                    u"日記の内容のコピーを開始。"_s,
                                    u"4:0"_s,
                                    u"4:1"_s,
                                    u"4:2"_s,
                                    u"4:3"_s,
                                    u"4:4"_s,
                                    u"日記の内容のコピーを終了。"_s,
                                    u"ファイル登録データベースのコピーを開始。"_s,
                                    u"3:0"_s,
                                    u"3:1"_s,
                                    u"3:2"_s,
                                    u"3:3"_s,
                                    u"ファイル登録データベースのコピーを終了。"_s,
                                    u"ログ登録データベースのコピーはスキップ。"_s,
                                    u"オプションの書き出し開始。"_s,
                                    u"4:0"_s,
                                    u"4:1"_s,
                                    u"4:2"_s,
                                    u"4:3"_s,
                                    u"4:4"_s,
                                    u"オプションの書き出しを終了。"_s,
                                    u"データベースの更新終了。"_s,
                                    u"復元中。"_s,
                                    u"復元完了。"_s,
                                    u"テンポラリファイルの削除中。"_s,
                                    u"テンポラリファイルの削除完了。"_s}));
}

TEST_F(Migration, OfEmptyTablesShowsAnEmptyBarOfAHundred) {
    makeOld(220);
    update(220);
    QStringList bars = shown();
    bars.removeIf([](const QString& line) { return !line.contains(u':'); });
    EXPECT_EQ(bars, (QStringList{u"100:0"_s, u"1:1"_s})) << "the last one is the information's";
    EXPECT_EQ(rows(u"SELECT (SELECT count(*) FROM Contents) + (SELECT count(*) FROM Memo)"_s), QStringList{u"0"_s});
}

// ---- the change of places

TEST_F(Migration, RemovesWhatABrokenOffRunHasLeft) {
    for (const QString& left : {old(), old() + u"-journal"_s, fresh(), fresh() + u"-journal"_s, file() + u"-journal"_s})
        writeFile(left, "left");
    fillOld(210);
    writeFile(file() + u"-journal"_s, "");
    update(210);
    EXPECT_EQ(leftBehind(), QStringList());
    EXPECT_FALSE(exists(file() + u"-journal"_s));
    EXPECT_EQ(rows(kAllContents), contentsFrom(210));
}

TEST_F(Migration, LeavesTheJournalOfWhatALinkInItsWayLeadsTo) {
    const QString other = path(u"other.mdb"_s);
    for (const QString& link : {old(), fresh()}) {
        fillOld(210);
        ASSERT_TRUE(QFile::copy(file(), other));
        writeFile(other + u"-journal"_s, "journal");
        ASSERT_TRUE(QFile::link(other, link));
        update(210);
        EXPECT_EQ(bytesOf(other + u"-journal"_s), "journal") << link.toStdString();
        EXPECT_EQ(rows(kAllContents), contentsFrom(210));
        ASSERT_TRUE(QFile::remove(other));
    }
}

TEST_F(Migration, RollsBackWhatAKilledProgramLeft) {
    write(kDay, u"a"_s);
    tear(file());
    ASSERT_TRUE(exists(file() + u"-journal"_s));
    update(220);
    EXPECT_EQ(rows(u"SELECT Title FROM Contents"_s), QStringList{u"a"_s});
    EXPECT_FALSE(exists(file() + u"-journal"_s));
}

TEST_F(Migration, KeepsTheRightsOfTheFile) {
    fillOld(210);
    QFile::setPermissions(file(), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
    update(210);
    EXPECT_EQ(modeOf(file()), 0640U);
}

TEST_F(Migration, LeavesALinkALink) {
    for (const QString& disk : {path(u"disk/"_s), u"/dev/shm/"_s}) {
        QDir().mkpath(disk);
        const QTemporaryDir folder(disk + u"velloria-XXXXXX"_s);
        const QString end = folder.filePath(u"mine.mdb"_s);
        fillOld(210);
        ASSERT_TRUE(QFile::copy(file(), end));
        ASSERT_TRUE(QFile::remove(file()) && QFile::link(end, file()));
        update(210);
        EXPECT_TRUE(QFileInfo(file()).isSymLink());
        EXPECT_EQ(rowsOf(end, kAllContents), contentsFrom(210));
        EXPECT_EQ(leftBehind(), QStringList());
        QFile::remove(file());
    }
}

TEST_F(Migration, BringsTheCopyToTheDiskBeforeItTakesItsPlace) {
    fillOld(210);
    FaultyDisk disk(home.path());
    update(210);
    const std::string turns = disk.turns();
    const auto rename = turns.rfind('r');
    ASSERT_NE(rename, std::string::npos);
    EXPECT_EQ(turns.substr(rename - 1), "frd") << turns;
}

/// Whoever writes meanwhile would write into a file that is about to go.
TEST_F(Migration, KeepsOtherProgramsFromWritingMeanwhile) {
    class Desk : public ScriptedDesk {
    public:
        explicit Desk(const QString& diary)
            : m_diary(diary) {}
        void updaterWindow(const platform::UpdaterWindow& shown) override {
            const bool isOver = shown.text.endsWith(u"復元完了。"_s) || shown.text.contains(u"削除"_s);
            if (shown.text.endsWith(u"作成中。"_s) || isOver)
                return;
            ++times;
            refused += holdsInChild([&] {
                sqlite3* handle = nullptr;
                sqlite3_open_v2(QFile::encodeName(m_diary).constData(), &handle, SQLITE_OPEN_READWRITE, nullptr);
                return sqlite3_exec(handle, "UPDATE Contents SET Title = 'lost'", nullptr, nullptr, nullptr) ==
                       SQLITE_BUSY;
            });
        }
        int times = 0;
        int refused = 0;

    private:
        QString m_diary;
    };
    fillOld(210);
    Desk other(file());
    store::UpdateDatabase({session, clock, other}, 210);
    EXPECT_GT(other.times, 10);
    EXPECT_EQ(other.refused, other.times);
    EXPECT_EQ(rows(kAllContents), contentsFrom(210));
}

/// Does something at the first moment that a routine waits for what another program holds.
class WhenWaitedFor : public QObject {
public:
    explicit WhenWaitedFor(std::function<void()> action)
        : m_action(std::move(action)) {
        m_application.installEventFilter(this);
    }
    bool hasCome() const { return !m_action; }

private:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == platform::Waiting::kType && m_action)
            std::exchange(m_action, {})();
        return QObject::eventFilter(watched, event);
    }

    int m_argumentCount = 0;
    QCoreApplication m_application{m_argumentCount, nullptr};
    std::function<void()> m_action;
};

/// Who waits for the lock may get that of a file which is the diary no more, and would bring what it holds back.
TEST_F(Migration, OfADiaryThatWasReplacedMeanwhileIsRefused) {
    fillOld(210);
    ASSERT_TRUE(QFile::copy(file(), path(u"newer.mdb"_s)));
    const QByteArray newer = bytesOf(path(u"newer.mdb"_s));
    sqlite3* handle = nullptr;
    ASSERT_EQ(sqlite3_open(QFile::encodeName(file()).constData(), &handle), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(handle, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    const WhenWaitedFor other([&] {
        platform::moveFile(path(u"newer.mdb"_s), file());
        sqlite3_close(handle);
    });
    const QString failure = failureOfUpdate(210);
    ASSERT_TRUE(other.hasCome());
    EXPECT_TRUE(failure.contains(u"他のプログラムが使用中です"_s)) << failure.toStdString();
    EXPECT_TRUE(bytesOf(file()) == newer);
}

// ---- refusals

TEST_F(Migration, WithoutATemplateLeavesTheDiaryAndItsCopy) {
    fillOld(210);
    const QByteArray before = bytesOf(file());
    const QByteArray first = bytesOf(path(u"default.mdb"_s));
    platform::removeFile(path(u"default.mdb"_s));
    const QString failure = failureOfUpdate(210);
    EXPECT_TRUE(failure.contains(path(u"default.mdb"_s))) << failure.toStdString();
    EXPECT_TRUE(failure.contains(u"「diary.mdb」は元のままです"_s)) << failure.toStdString();
    EXPECT_TRUE(bytesOf(file()) == before);
    EXPECT_EQ(leftBehind(), QStringList{u"old.mdb"_s});
    EXPECT_EQ(turns(), (QStringList{u"hourglass"_s, u"default"_s}));
    writeFile(path(u"default.mdb"_s), first);
    update(210);
    EXPECT_EQ(leftBehind(), QStringList());
    EXPECT_EQ(rows(kAllContents), contentsFrom(210));
}

TEST_F(Migration, MissesWhatAVersionPromises) {
    const std::tuple<int, QString, QString> cases[] = {
        {0, u"DROP TABLE Contents"_s, u"テーブル「Contents」がありません"_s},
        {100, u"DROP TABLE FileDB"_s, u"テーブル「FileDB」がありません"_s},
        {100, u"DROP TABLE [Option]"_s, u"テーブル「Option」がありません"_s},
        {101, u"DROP TABLE LogDB"_s, u"テーブル「LogDB」がありません"_s},
        {110, u"ALTER TABLE Contents DROP COLUMN Genre"_s, u"列「Genre」がありません"_s},
        {150, u"ALTER TABLE FileDB DROP COLUMN Number"_s, u"列「Number」がありません"_s},
        {200, u"ALTER TABLE Contents RENAME COLUMN Extend TO Extent"_s, u"列「Extend」がありません"_s},
        {210, u"DROP TABLE Contents; CREATE VIEW Contents AS SELECT * FROM FileDB"_s,
         u"テーブル「Contents」がありません"_s},
        {220, u"DROP TABLE Memo"_s, u"テーブル「Memo」がありません"_s},
    };
    for (const auto& [version, change, reason] : cases) {
        fillOld(version);
        sqlOn(file(), change);
        const QByteArray before = bytesOf(file());
        const QString failure = failureOfUpdate(version);
        EXPECT_TRUE(failure.contains(reason) && failure.contains(file())) << version << failure.toStdString();
        EXPECT_TRUE(bytesOf(file()) == before) << version;
        EXPECT_EQ(leftBehind(), (QStringList{u"old.mdb"_s, u"new.mdb"_s})) << version;
    }
}

TEST_F(Migration, IsRefusedByATemplateThatHoldsLess) {
    fillOld(210);
    const QByteArray before = bytesOf(file());
    for (const QByteArray& bytes : {QByteArray("no database"), QByteArray()}) {
        writeFile(path(u"default.mdb"_s), bytes);
        EXPECT_NE(failureOfUpdate(210), QString());
        EXPECT_TRUE(bytesOf(file()) == before);
    }
}

TEST_F(Migration, IsRefusedByATemplateOfAnotherForm) {
    fillOld(210);
    const QByteArray before = bytesOf(file());
    sqlOn(path(u"default.mdb"_s), u"UPDATE DBInfo SET VersionInfo = 150"_s);
    EXPECT_TRUE(failureOfUpdate(210).contains(u"default.mdb"_s));
    ASSERT_TRUE(QFile::remove(path(u"default.mdb"_s)) &&
                QFile::copy(dataPath(u"jet/v220.mdb"_s), path(u"default.mdb"_s)));
    const QString failure = failureOfUpdate(210);
    EXPECT_TRUE(failure.contains(u"default.mdb"_s) && !failure.contains(u"復元"_s)) << failure.toStdString();
    EXPECT_TRUE(bytesOf(file()) == before);
}

TEST_F(Migration, IsRefusedByAFileThatIsSetReadOnly) {
    fillOld(210);
    QFile::setPermissions(file(), QFile::ReadOwner);
    const auto before = contentOf(home.path());
    EXPECT_TRUE(failureOfUpdate(210).contains(file()));
    EXPECT_EQ(contentOf(home.path()), before);
}

TEST_F(Migration, WaitsForNobodyWhoKeepsALogBesideTheDiary) {
    fillOld(210);
    sqlite3* handle = nullptr;
    ASSERT_EQ(sqlite3_open(QFile::encodeName(file()).constData(), &handle), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(handle, "PRAGMA journal_mode = WAL; UPDATE Contents SET Title = 'in the log'", nullptr,
                           nullptr, nullptr),
              SQLITE_OK);
    const QString failure = failureOfUpdate(210);
    EXPECT_TRUE(failure.contains(u"他のプログラムが使用中です"_s)) << failure.toStdString();
    EXPECT_EQ(leftBehind(), QStringList());
    sqlite3_close(handle);
    update(210);
    EXPECT_EQ(rows(u"SELECT DISTINCT Title FROM Contents"_s), QStringList{u"in the log"_s});
}

TEST_F(Migration, PutsAFreshDiaryWhereThereIsNone) {
    platform::removeFile(session.databaseFile());
    store::UpdateDatabase(run, 0);
    EXPECT_TRUE(bytesOf(session.databaseFile()) == bytesOf(path(u"default.mdb"_s)));
    EXPECT_EQ(store::GetDBVersion(session.databaseFile()), 220);
    EXPECT_EQ(write(u"2004/05/06"_s, u"a"_s), 1);
}

TEST_F(Migration, FindsATemplateOfAWindowsDisk) {
    platform::copyFile(path(u"default.mdb"_s), path(u"DEFAULT.MDB"_s));
    platform::removeFile(path(u"default.mdb"_s));
    fillOld(210);
    update(210);
    EXPECT_EQ(rows(kAllContents), contentsFrom(210));
    platform::removeFile(session.databaseFile());
    store::UpdateDatabase(run, 0);
    EXPECT_TRUE(exists(session.databaseFile()));
}

TEST_F(Migration, FailsAloudWithoutATemplate) {
    platform::removeFile(path(u"default.mdb"_s));
    platform::removeFile(session.databaseFile());
    EXPECT_TRUE(failureOf([&] { store::UpdateDatabase(run, 0); }).contains(path(u"default.mdb"_s)));
    EXPECT_FALSE(exists(session.databaseFile()));
}

} // namespace
} // namespace velloria::tests
