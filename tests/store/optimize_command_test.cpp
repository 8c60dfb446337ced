#include "store/optimize_command.h"

#include "platform/file_write.h"
#include "store/migration_home.h"
#include "support/faulty_disk.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

TEST_F(Migration, IsAskedForByACommand) {
    fillOld(220);
    const QByteArray before = bytesOf(file());
    EXPECT_TRUE(optimize());
    EXPECT_EQ(boxes(), (QStringList{u"question: diary.mdbを最適化しますか？\r\n"_s
                                    u"バックアップとして、現在のファイルを「diary.bak」として保存します。"_s,
                                    u"plain: diary.mdbの最適化は完了しました。\r\n"_s
                                    u"念のためにVelloriaを再起動してください。"_s}));
    EXPECT_EQ(boxTitles(), QSet{u"Velloria"_s});
    EXPECT_EQ(lines(), tableLines(220));
    EXPECT_TRUE(bytesOf(backup()) == before);
    EXPECT_EQ(rows(kAllContents), contentsFrom(220));
    EXPECT_EQ(rows(u"SELECT No, Category, IsPass FROM Memo"_s), (QStringList{u"0||0"_s, u"0||0"_s}));
}

TEST_F(Migration, RefusedByAPersonTouchesNothing) {
    fillOld(220);
    const auto before = contentOf(home.path());
    EXPECT_FALSE(optimize({u"no"_s}));
    EXPECT_EQ(boxes().last(), u"plain: diary.mdbの最適化を中止しました。"_s);
    EXPECT_EQ(lines(), QStringList());
    EXPECT_EQ(contentOf(home.path()), before);
}

TEST_F(Migration, MakesTheFileSmallAgain) {
    for (int i = 0; i < 200; ++i)
        write(kDay, u"a"_s, QString(2000, u'x'));
    sql(u"DELETE FROM Contents WHERE Number > 1"_s);
    const qint64 before = QFileInfo(file()).size();
    optimize();
    EXPECT_LT(QFileInfo(file()).size(), before / 4);
    EXPECT_EQ(titles(file()), u"a"_s);
}

/// A copy would drop it.
TEST_F(Migration, RefusesToLoseWhatAnotherProgramPutIntoTheDiary) {
    const std::pair<QString, QString> cases[] = {
        {u"CREATE TABLE Photos (x); INSERT INTO Photos VALUES (1)"_s, u"テーブル「Photos」"_s},
        {u"ALTER TABLE contents ADD COLUMN Mood TEXT; UPDATE Contents SET Mood = 'good' WHERE Title = 'last'"_s,
         u"の列「Mood」"_s},
        {u"CREATE TABLE \"a\"\"b\" (x); INSERT INTO \"a\"\"b\" VALUES (NULL)"_s, u"テーブル「a\"b」"_s},
        {u"UPDATE DBInfo SET VersionInfo = 221"_s, u"バージョン221"_s},
    };
    for (const auto& [change, named] : cases) {
        fillOld(220);
        sqlOn(file(), change);
        const auto before = contentOf(home.path());
        const QString failure = failureOf([&] { optimize(); });
        EXPECT_TRUE(failure.contains(named)) << failure.toStdString();
        EXPECT_EQ(contentOf(home.path()), before);
    }
}

TEST_F(Migration, DropsWhatHoldsNothing) {
    fillOld(220);
    sqlOn(file(), u"CREATE TABLE Empty (x); ALTER TABLE Contents ADD COLUMN Mood TEXT DEFAULT ''; CREATE VIEW Mine AS "
                  "SELECT * FROM Contents; CREATE TRIGGER Bomb AFTER INSERT ON Contents BEGIN DELETE FROM Contents; "
                  "END; CREATE INDEX Own ON Contents (Title)"_s);
    EXPECT_TRUE(optimize());
    EXPECT_EQ(rows(kAllContents), contentsFrom(220));
    EXPECT_EQ(rows(u"SELECT name FROM sqlite_master WHERE name IN ('Empty', 'Mine', 'Bomb', 'Own')"_s), QStringList());
}

TEST_F(Migration, WithoutRoomMakesNoBackup) {
    fillOld(220);
    const auto before = contentOf(home.path());
    FaultyDisk disk(home.path());
    disk.leaveRoom(QFileInfo(file()).size() * 3);
    EXPECT_TRUE(failureOf([&] { optimize(); }).contains(u"空き容量が足りません"_s));
    EXPECT_EQ(contentOf(home.path()), before);
    EXPECT_EQ(lines(), QStringList());
}

TEST_F(Migration, OfNoDiaryOptimizesNothing) {
    platform::removeFile(file());
    EXPECT_NE(failureOf([&] { optimize(); }), QString());
    EXPECT_FALSE(exists(file()));
}

} // namespace
} // namespace velloria::tests
