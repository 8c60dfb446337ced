#include "registers/log_registration.h"

#include "core/ini.h"
#include "core/upload_list.h"
#include "platform/file_write.h"
#include "support/test_home.h"

#include <QDir>
#include <QFileInfo>

#include <sys/stat.h>
#include <unistd.h>

#include <thread>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::Outcome;
using registers::LogRegistration;

const QString kAskDelete = u"question: 本当に削除しますか？"_s;
const QString kAskFile = u"question: ファイルも削除しますか？"_s;
const QString kNoFile = u"exclamation: ファイルがありませんでした。"_s;

class LogRegistrationTest : public TestHome {
protected:
    LogRegistrationTest() {
        platform::makeFolder(path(u"in"_s));
        useSite();
    }

    QString source(const QString& name, const QByteArray& bytes) {
        writeFile(path(u"in/"_s + name), bytes);
        return path(u"in/"_s + name);
    }
    QString inData(const QString& name) const { return session.DataPath + u"DiaryLog/"_s + name; }
    QString inSite(const QString& name) const { return path(u"site/DiaryLog/"_s + name); }
    LogRegistration logs() { return LogRegistration(run); }
    Outcome add(const QString& file, const QString& year = u"2004"_s, const QString& month = u"3"_s) {
        return logs().ResistLogFile(file, year, month);
    }
    QStringList rows() {
        QStringList rows;
        for (const store::LogRow& row : logs().rows())
            rows += registers::shownLog(row);
        return rows;
    }
    QString keptFolder() { return core::ReadIni(session.DiaryIniFile, u"ALL"_s, u"LogResistPath"_s); }
};

TEST_F(LogRegistrationTest, APageIsCopiedToBothPlacesAndItsMonthHasTwoDigits) {
    EXPECT_EQ(add(source(u"x.htm"_s, "one")), Outcome::Done);
    EXPECT_EQ(bytesOf(inData(u"x.htm"_s)), "one");
    EXPECT_EQ(bytesOf(inSite(u"x.htm"_s)), "one");
    EXPECT_EQ(rows(), QStringList{u"2004/03 : x.htm"_s});
    EXPECT_EQ(keptFolder(), path(u"in"_s));
    EXPECT_TRUE(boxes().isEmpty());
}

TEST_F(LogRegistrationTest, TwoProgramsThatRegisterTheSameNamesMakeOneRowOfEach) {
    constexpr int kNames = 30;
    const auto addMany = [&](const QString& folder, ScriptedDesk& itsDesk) {
        for (int i = 0; i < kNames; ++i) {
            itsDesk.answers = {u"no"_s};
            LogRegistration({session, clock, itsDesk})
                .ResistLogFile(path(folder) + u"/%1.htm"_s.arg(i), u"2004"_s, u"3"_s);
        }
    };
    platform::makeFolder(path(u"in2"_s));
    for (int i = 0; i < kNames; ++i) {
        writeFile(path(u"in/%1.htm"_s.arg(i)), "one");
        writeFile(path(u"in2/%1.htm"_s.arg(i)), "two");
    }
    ScriptedDesk otherDesk;
    std::thread other([&] { addMany(u"in2"_s, otherDesk); });
    addMany(u"in"_s, desk);
    other.join();
    EXPECT_EQ(rows().size(), kNames);
    EXPECT_EQ(boxes().size() + otherDesk.texts(u"message"_s).size(), kNames); // who came second was asked
    for (int i = 0; i < kNames; ++i)
        EXPECT_EQ(bytesOf(inData(u"%1.htm"_s.arg(i))), bytesOf(inSite(u"%1.htm"_s.arg(i)))) << i;
}

TEST_F(LogRegistrationTest, TheNewestMonthStandsFirst) {
    add(source(u"a.htm"_s, "a"), u"2003"_s, u"12"_s);
    add(source(u"b.htm"_s, "b"), u"2004"_s, u"2"_s);
    add(source(u"c.htm"_s, "c"), u"2004"_s, u"10"_s);
    add(source(u"d.htm"_s, "d"), u"2004"_s, u"2"_s);
    EXPECT_EQ(rows(),
              (QStringList{u"2004/10 : c.htm"_s, u"2004/02 : b.htm"_s, u"2004/02 : d.htm"_s, u"2003/12 : a.htm"_s}));
}

TEST_F(LogRegistrationTest, WithoutASiteFolderThePageLiesInTheDataFolderAlone) {
    session.FilePath = u""_s;
    EXPECT_EQ(add(source(u"x.htm"_s, "one")), Outcome::Done);
    EXPECT_EQ(bytesOf(inData(u"x.htm"_s)), "one");
    EXPECT_FALSE(exists(u"DiaryLog"_s)) << "something was written to the working directory";
    desk.answers = {u"yes"_s};
    EXPECT_EQ(add(source(u"x.htm"_s, "two")), Outcome::Done);
    EXPECT_EQ(bytesOf(inData(u"x.htm"_s)), "two");
    desk.answers = {u"yes"_s, u"yes"_s, u"yes"_s};
    EXPECT_EQ(logs().deleteLog(logs().rows()[0]), Outcome::Done);
    EXPECT_FALSE(exists(inData(u"x.htm"_s)));
    EXPECT_FALSE(boxes().contains(kNoFile));
}

TEST_F(LogRegistrationTest, ASiteInTheDataFolderKeepsItsPage) {
    session.FilePath = session.DataPath;
    EXPECT_EQ(add(source(u"x.htm"_s, "one")), Outcome::Done);
    EXPECT_EQ(bytesOf(inData(u"x.htm"_s)), "one");
    desk.answers = {u"yes"_s};
    EXPECT_EQ(add(source(u"x.htm"_s, "two")), Outcome::Done);
    EXPECT_EQ(bytesOf(inData(u"x.htm"_s)), "two");
}

TEST_F(LogRegistrationTest, ASiteFolderThatIsNotThereIsSaidToBeAndNothingIsDone) {
    session.FilePath = path(u"gone/"_s);
    const QMap<QString, QByteArray> before = contentOf(home.path());
    const QString file = path(u"in/x.htm"_s);
    writeFile(file, "one");
    EXPECT_TRUE(failureOf([&] { add(file); }).contains(path(u"gone/"_s)));
    platform::removeFile(file);
    EXPECT_TRUE(contentOf(home.path()) == before);
}

TEST_F(LogRegistrationTest, APageOfALogFolderIsCopiedToTheOtherOneAlone) {
    platform::makeFolder(session.DataPath + u"DiaryLog"_s);
    writeFile(inData(u"x.htm"_s), "one");
    EXPECT_EQ(add(inData(u"x.htm"_s)), Outcome::Done);
    EXPECT_EQ(bytesOf(inData(u"x.htm"_s)), "one");
    EXPECT_EQ(bytesOf(inSite(u"x.htm"_s)), "one");
    EXPECT_EQ(rows(), QStringList{u"2004/03 : x.htm"_s});
}

TEST_F(LogRegistrationTest, TheSameNameForAnotherMonthIsTheSameLog) {
    add(source(u"x.htm"_s, "one"));
    desk.events = {};
    desk.answers = {u"no"_s};
    EXPECT_EQ(add(source(u"x.htm"_s, "two"), u"2004"_s, u"4"_s), Outcome::Refused);
    EXPECT_EQ(bytesOf(inData(u"x.htm"_s)), "one");
    desk.answers = {u"yes"_s};
    EXPECT_EQ(add(source(u"x.htm"_s, "two"), u"2004"_s, u"4"_s), Outcome::Done);
    EXPECT_EQ(bytesOf(inData(u"x.htm"_s)), "two");
    EXPECT_EQ(bytesOf(inSite(u"x.htm"_s)), "two");
    EXPECT_EQ(rows(), QStringList{u"2004/03 : x.htm"_s});
    EXPECT_EQ(boxes(), (QStringList{2, u"question: すでに登録済みのファイルです。\r\n上書きしますか？"_s}));
    EXPECT_EQ(desk.events.first()[u"title"_s].toString(), u"Resist Log Files"_s);
    EXPECT_TRUE(lastStatus().contains(u"サーバーのページは変わりません"_s)) << lastStatus().toStdString();
    core::writeUploadList(session.UserPath + u"uploadlog.tmp"_s, {{session.DataPath + u"DiaryLog"_s, u"x.htm"_s}});
    desk.answers = {u"yes"_s};
    add(source(u"x.htm"_s, "three"));
    EXPECT_TRUE(lastStatus().contains(u"次のFTPでアップロードされます"_s)) << lastStatus().toStdString();
}

TEST_F(LogRegistrationTest, ARegisteredPageIsNotCopiedOntoItself) {
    add(source(u"x.htm"_s, "one"));
    ASSERT_EQ(::symlink(session.DataPath.toUtf8().constData(), path(u"link"_s).toUtf8().constData()), 0);
    for (const QString& same : {inData(u"x.htm"_s), path(u"link/DiaryLog/x.htm"_s)}) {
        desk.answers = {u"yes"_s};
        desk.events = {};
        EXPECT_EQ(add(same), Outcome::Refused);
        EXPECT_EQ(boxes().last(), u"critical: 同じフォルダの同じファイルを指定しました。\r\nコピーできません。"_s);
        EXPECT_EQ(desk.events.last()[u"title"_s], u"Resist Files"_s);
        EXPECT_EQ(bytesOf(inData(u"x.htm"_s)), "one");
        EXPECT_EQ(bytesOf(inSite(u"x.htm"_s)), "one");
    }
}

TEST_F(LogRegistrationTest, ALinkInThePagesPlaceIsReplacedAndItsTargetStays) {
    const QString target = source(u"target"_s, "own");
    for (const QString& page : {inData(u"x.htm"_s), inSite(u"x.htm"_s)}) {
        platform::makeFolder(path(u"site/DiaryLog"_s));
        ASSERT_TRUE(QFile::link(target, page));
    }
    add(source(u"x.htm"_s, "one"));
    for (const QString& page : {inData(u"x.htm"_s), inSite(u"x.htm"_s)}) {
        EXPECT_FALSE(QFileInfo(page).isSymLink());
        EXPECT_EQ(bytesOf(page), "one");
    }
    EXPECT_EQ(bytesOf(target), "own");
}

TEST_F(LogRegistrationTest, ThePageOfTheSiteComesBackToTheDataFolder) {
    add(source(u"x.htm"_s, "one"));
    writeFile(inSite(u"x.htm"_s), "two");
    desk.answers = {u"yes"_s};
    EXPECT_EQ(add(inSite(u"x.htm"_s)), Outcome::Done);
    EXPECT_EQ(bytesOf(inData(u"x.htm"_s)), "two");
    EXPECT_EQ(bytesOf(inSite(u"x.htm"_s)), "two");
}

TEST_F(LogRegistrationTest, AnEmptyPathYearOrMonthDoesNothingAtAll) {
    const QString file = source(u"x.htm"_s, "one");
    const QMap<QString, QByteArray> before = contentOf(home.path());
    desk.events = {};
    EXPECT_EQ(add(file, u""_s), Outcome::Refused);
    EXPECT_EQ(add(file, u"2004"_s, u""_s), Outcome::Refused);
    EXPECT_EQ(add(u""_s), Outcome::Refused);
    EXPECT_TRUE(contentOf(home.path()) == before);
    EXPECT_TRUE(desk.events.isEmpty());
}

TEST_F(LogRegistrationTest, WhatIsNoFileOrHasNoNameForPagesIsRefusedAndNothingChanges) {
    source(u"é.htm"_s, "one");
    source(u"a\"b.htm"_s, "one");
    platform::makeFolder(path(u"in/folder.htm"_s));
    ASSERT_EQ(::mkfifo(path(u"in/pipe.htm"_s).toUtf8().constData(), 0600), 0);
    const QMap<QString, QByteArray> before = contentOf(session.DataPath);
    for (const QString& name : {u"é.htm"_s, u"a\"b.htm"_s, u"folder.htm"_s, u"pipe.htm"_s, u"no.htm"_s})
        EXPECT_TRUE(failureOf([&] { add(path(u"in/"_s + name)); }).contains(name)) << name.toStdString();
    EXPECT_TRUE(contentOf(session.DataPath) == before);
    EXPECT_FALSE(exists(path(u"site/DiaryLog"_s)));
}

TEST_F(LogRegistrationTest, ACopyThatIsRefusedLeavesNoRow) {
    const QString file = source(u"x.htm"_s, "one");
    platform::makeFolder(inData(u"x.htm"_s)); // a folder stands in the way
    EXPECT_NE(failureOf([&] { add(file); }), QString());
    EXPECT_TRUE(rows().isEmpty());
    EXPECT_EQ(keptFolder(), u""_s);
}

TEST_F(LogRegistrationTest, AHalfDoneCommandSaysWhichCopiesStand) {
    const QString file = source(u"x.htm"_s, "one");
    platform::makeFolder(inData(u"x.htm"_s)); // a folder stands in the way of the second copy
    const QString half = failureOf([&] { add(file); });
    EXPECT_TRUE(half.startsWith(u"「%1」にはコピーしました: "_s.arg(inSite(u"x.htm"_s)))) << half.toStdString();
    EXPECT_EQ(bytesOf(inSite(u"x.htm"_s)), "one");
    QDir().rmdir(inData(u"x.htm"_s));

    add(file);
    platform::removeFile(inSite(u"x.htm"_s));
    platform::makeFolder(inSite(u"x.htm"_s));
    desk.answers = {u"yes"_s};
    const QString replaced = failureOf([&] { add(source(u"x.htm"_s, "two")); });
    EXPECT_TRUE(replaced.startsWith(u"「%1」にはコピーしました: "_s.arg(inData(u"x.htm"_s)))) << replaced.toStdString();
    EXPECT_EQ(bytesOf(inData(u"x.htm"_s)), "two");

    // A sum that overflows in an index refuses the row.
    sql(u"CREATE INDEX Refused ON LogDB (CASE WHEN LogFileName = 'y.htm' THEN abs(-9223372036854775808) END)"_s);
    const QString noRow = failureOf([&] { add(source(u"y.htm"_s, "y")); });
    EXPECT_TRUE(noRow.startsWith(u"「%1」と「%2」にはコピーしました: "_s.arg(inSite(u"y.htm"_s), inData(u"y.htm"_s))))
        << noRow.toStdString();
}

TEST_F(LogRegistrationTest, ARefusalBeforeAnyCopySpeaksOfNone) {
    platform::makeFolder(inSite(u"x.htm"_s)); // a folder stands in the way of the first copy
    const QString failure = failureOf([&] { add(source(u"x.htm"_s, "one")); });
    EXPECT_NE(failure, u""_s);
    EXPECT_FALSE(failure.contains(u"コピーしました"_s)) << failure.toStdString();
}

TEST_F(LogRegistrationTest, TheFolderIsKeptAlsoBehindARefusal) {
    add(source(u"x.htm"_s, "one"));
    core::WriteIni(session.DiaryIniFile, u"ALL"_s, u"LogResistPath"_s, u"other"_s);
    desk.answers = {u"no"_s};
    EXPECT_EQ(add(path(u"in/x.htm"_s)), Outcome::Refused);
    EXPECT_EQ(keptFolder(), path(u"in"_s)) << "after a No";
    desk.answers = {u"yes"_s};
    EXPECT_EQ(add(inData(u"x.htm"_s)), Outcome::Refused);
    EXPECT_EQ(keptFolder(), session.DataPath + u"DiaryLog"_s) << "after the box about the same file";
}

// -- deleting ---------------------------------------------------------------------------------------------------------

TEST_F(LogRegistrationTest, DeletingAsksThreeTimes) {
    struct Case {
        QStringList answers;
        bool rowStays;
        bool pagesStay;
        QStringList boxes;
    };
    const std::vector<Case> cases{{{u"no"_s}, true, true, {kAskDelete}},
                                  {{u"yes"_s, u"no"_s}, false, true, {kAskDelete, kAskFile}},
                                  {{u"yes"_s, u"yes"_s, u"no"_s}, false, true, {kAskDelete, kAskFile, kAskDelete}},
                                  {{u"yes"_s, u"yes"_s, u"yes"_s}, false, false, {kAskDelete, kAskFile, kAskDelete}}};
    for (const Case& c : cases) {
        sql(u"DELETE FROM LogDB"_s);
        add(source(u"x.htm"_s, "one"));
        desk.events = {};
        desk.answers = QJsonArray::fromStringList(c.answers);
        EXPECT_EQ(logs().deleteLog({u"2004/03"_s, u"x.htm"_s}), c.rowStays ? Outcome::Refused : Outcome::Done);
        EXPECT_EQ(boxes(), c.boxes);
        EXPECT_EQ(boxTitles(), (QSet<QString>{u"Resist Log Files"_s}));
        EXPECT_EQ(rows().size(), c.rowStays ? 1 : 0);
        EXPECT_EQ(exists(inData(u"x.htm"_s)), c.pagesStay);
        EXPECT_EQ(exists(inSite(u"x.htm"_s)), c.pagesStay);
    }
}

TEST_F(LogRegistrationTest, EachPlaceWithoutThePageIsSaidToHaveNone) {
    add(source(u"x.htm"_s, "one"));
    platform::removeFile(inData(u"x.htm"_s));
    desk.answers = {u"yes"_s, u"yes"_s, u"yes"_s};
    logs().deleteLog(logs().rows()[0]);
    EXPECT_EQ(boxes(), (QStringList{kAskDelete, kAskFile, kAskDelete, kNoFile}));
    EXPECT_FALSE(exists(inSite(u"x.htm"_s)));
    sql(u"INSERT INTO LogDB VALUES ('2004/03', 'x.htm')"_s);
    desk.answers = {u"yes"_s, u"yes"_s, u"yes"_s};
    logs().deleteLog(logs().rows()[0]);
    EXPECT_EQ(boxes().sliced(4), (QStringList{kAskDelete, kAskFile, kAskDelete, kNoFile, kNoFile}));
}

TEST_F(LogRegistrationTest, APageThatStaysIsNamedAndTheOtherOneGoes) {
    add(source(u"status"_s, "one"));
    ASSERT_TRUE(QDir(session.DataPath + u"DiaryLog"_s).removeRecursively());
    ASSERT_TRUE(QFile::link(u"/proc/self"_s, session.DataPath + u"DiaryLog"_s)); // nobody removes a file there
    desk.answers = {u"yes"_s, u"yes"_s, u"yes"_s};
    const QString failure = failureOf([&] { logs().deleteLog(logs().rows()[0]); });
    EXPECT_TRUE(failure.startsWith(u"登録は削除しました: ファイルを削除できません。"_s)) << failure.toStdString();
    EXPECT_TRUE(failure.contains(inData(u"status"_s)) && failure.contains(u"ファイルは残っています。"_s));
    EXPECT_FALSE(failure.contains(inSite(u"status"_s)));
    EXPECT_FALSE(exists(inSite(u"status"_s)));
    EXPECT_TRUE(rows().isEmpty());
}

TEST_F(LogRegistrationTest, ARowOfAnOldDiaryWithoutANameGoes) {
    sql(u"INSERT INTO LogDB VALUES ('2004/03', NULL)"_s);
    EXPECT_EQ(rows(), QStringList{u"2004/03 : "_s});
    desk.answers = {u"yes"_s, u"no"_s};
    EXPECT_EQ(logs().deleteLog(logs().rows()[0]), Outcome::Done);
    EXPECT_TRUE(rows().isEmpty());
}

TEST_F(LogRegistrationTest, ARowWithAPathLeadsToNoFile) {
    sql(u"INSERT INTO LogDB VALUES ('2004/03', '../diary.ini')"_s);
    desk.answers = {u"yes"_s, u"yes"_s, u"yes"_s};
    logs().deleteLog(logs().rows()[0]);
    EXPECT_TRUE(exists(session.DiaryIniFile));
    EXPECT_TRUE(rows().isEmpty());
}

TEST_F(LogRegistrationTest, AYearIsANumberOfThreeCharactersAtLeast) {
    const QString notANumber = u"不正な文字が入力されました。半角数字を入力してください。"_s;
    const QString negative = u"不正な文字が入力されました。半角で西暦を入力してください。"_s;
    const QString tooShort = u"不正な文字が入力されました。半角で4桁の西暦を入力してください。"_s;
    const std::vector<std::pair<QString, std::optional<QString>>> cases{
        {u"2004"_s, {}},        {u"123"_s, {}},         {u"12345"_s, {}},        {u"２００４"_s, {}},
        {u"abc"_s, notANumber}, {u"x"_s, notANumber},   {u""_s, notANumber},     {u"20o4"_s, notANumber},
        {u"-1"_s, negative},    {u"-2004"_s, negative}, {u"(2004)"_s, negative}, {u"12"_s, tooShort},
        {u"0"_s, tooShort}};
    for (const auto& [year, problem] : cases)
        EXPECT_EQ(registers::yearProblem(year), problem) << year.toStdString();
}

TEST_F(LogRegistrationTest, AnUnregisteredPageThatDiffersInCaseStaysBesideTheCopy) {
    platform::makeFolder(path(u"site/DiaryLog"_s));
    writeFile(inData(u"x.htm"_s), "own");
    writeFile(inSite(u"x.htm"_s), "own");
    EXPECT_EQ(add(source(u"X.HTM"_s, "new")), Outcome::Done);
    for (const QString& page : {inData(u"x.htm"_s), inSite(u"x.htm"_s)})
        EXPECT_EQ(bytesOf(page), "own");
    for (const QString& page : {inData(u"X.HTM"_s), inSite(u"X.HTM"_s)})
        EXPECT_EQ(bytesOf(page), "new");
}

} // namespace
} // namespace velloria::tests
