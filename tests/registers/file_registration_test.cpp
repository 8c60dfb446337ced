#include "registers/file_registration.h"

#include "platform/directory.h"
#include "platform/file_write.h"
#include "support/faulty_disk.h"
#include "support/folder_turn.h"
#include "support/test_home.h"

#include <QDir>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <thread>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::Outcome;
using registers::FileRegistration;

const QString kDay = u"2004/05/06"_s;
const QString kAsk = u"question: すでに登録済みのファイルです。\r\n上書きしますか？"_s;
const QString kAskDelete = u"question: 本当に削除しますか？"_s;
const QString kAskFile = u"question: このファイルは他の日付等で使用されていません。\r\n削除しますか？"_s;

class FileRegistrationTest : public TestHome {
protected:
    FileRegistrationTest() { platform::makeFolder(path(u"in"_s)); }

    /// A file outside the diary.
    QString source(const QString& name, const QByteArray& bytes) {
        writeFile(path(u"in/"_s + name), bytes);
        return path(u"in/"_s + name);
    }
    QString part(const QString& name) const { return session.DataPath + u"DiaryParts/"_s + name; }
    FileRegistration files() { return FileRegistration(run); }
    Outcome add(const QString& file, const QString& day = kDay, qint16 number = 1) {
        return files().ResistFile(file, day, number);
    }
    QStringList rows() {
        QStringList rows;
        for (const store::FileRow& row : files().rows())
            rows += registers::shownFile(row);
        return rows;
    }
    /// What the diary holds, to tell whether a refusal changed anything.
    QMap<QString, QByteArray> state() { return contentOf(session.DataPath); }
};

TEST_F(FileRegistrationTest, ANewNameIsCopiedAndGetsARowThatIsStillToGoUp) {
    EXPECT_EQ(add(source(u"x.gif"_s, "one")), Outcome::Done);
    EXPECT_EQ(bytesOf(part(u"x.gif"_s)), "one");
    EXPECT_EQ(rows(), QStringList{u"2004/05/06 : 1 : x.gif"_s});
    EXPECT_EQ(sqlValue(u"SELECT FileName || Uploaded || Logged FROM FileDB"_s), u"x.gif00"_s);
    EXPECT_TRUE(boxes().isEmpty());
}

TEST_F(FileRegistrationTest, TheCopyKeepsTheTimeAndIsWritable) {
    const QString file = source(u"x.gif"_s, "one");
    const timespec times[2] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
    ::utimensat(AT_FDCWD, file.toUtf8().constData(), times, 0);
    ::chmod(file.toUtf8().constData(), 0444);
    add(file);
    EXPECT_EQ(QFileInfo(part(u"x.gif"_s)).lastModified().toSecsSinceEpoch(), 1'000'000'000);
    EXPECT_TRUE(modeOf(part(u"x.gif"_s)) & 0200U);
}

TEST_F(FileRegistrationTest, AnotherEntryGetsARowAndNothingIsCopied) {
    add(source(u"x.gif"_s, "one"));
    EXPECT_EQ(add(source(u"x.gif"_s, "two"), u"2004/05/07"_s, 2), Outcome::Done);
    EXPECT_EQ(add(source(u"x.gif"_s, "two"), kDay, 2), Outcome::Done);
    EXPECT_EQ(bytesOf(part(u"x.gif"_s)), "one");
    EXPECT_EQ(rows(),
              (QStringList{u"2004/05/06 : 1 : x.gif"_s, u"2004/05/06 : 2 : x.gif"_s, u"2004/05/07 : 2 : x.gif"_s}));
    EXPECT_TRUE(lastStatus().contains(u"DiaryPartsにあるファイルを使い"_s)) << lastStatus().toStdString();
    EXPECT_TRUE(lastStatus().endsWith(u"次のFTPでアップロードされます。"_s))
        << "nothing has gone up: " << lastStatus().toStdString();
    sql(u"UPDATE FileDB SET Uploaded = 1 WHERE Day = '2004/05/07'"_s);
    add(source(u"x.gif"_s, "two"), kDay, 3);
    EXPECT_TRUE(lastStatus().endsWith(u"次のFTPでもう一度アップロードされます。"_s)) << lastStatus().toStdString();
}

TEST_F(FileRegistrationTest, ACopyThatHasVanishedIsMadeAgainForAnotherEntry) {
    add(source(u"x.gif"_s, "one"));
    platform::removeFile(part(u"x.gif"_s));
    add(source(u"x.gif"_s, "two"), u"2004/05/07"_s);
    EXPECT_EQ(bytesOf(part(u"x.gif"_s)), "two");
}

TEST_F(FileRegistrationTest, TheSameEntryIsAskedAboutAndItsRowStays) {
    add(source(u"x.gif"_s, "one"));
    sql(u"UPDATE FileDB SET Uploaded = 1"_s);
    desk.events = {};
    desk.answers = {u"no"_s};
    EXPECT_EQ(add(source(u"x.gif"_s, "two")), Outcome::Refused);
    EXPECT_EQ(bytesOf(part(u"x.gif"_s)), "one");
    desk.answers = {u"yes"_s};
    EXPECT_EQ(add(source(u"x.gif"_s, "two")), Outcome::Done);
    EXPECT_EQ(bytesOf(part(u"x.gif"_s)), "two");
    EXPECT_EQ(boxes(), (QStringList{kAsk, kAsk}));
    EXPECT_EQ(desk.events.first()[u"title"_s].toString(), u"Resist Files"_s);
    EXPECT_EQ(sqlValue(u"SELECT count(*) || ' ' || max(Uploaded) FROM FileDB"_s), u"1 1"_s);
    EXPECT_TRUE(lastStatus().contains(u"サーバーのファイルは変わりません"_s)) << lastStatus().toStdString();
    sql(u"UPDATE FileDB SET Uploaded = 0"_s);
    desk.answers = {u"yes"_s};
    add(source(u"x.gif"_s, "three"));
    EXPECT_TRUE(lastStatus().endsWith(u"次のFTPでアップロードされます。"_s)) << lastStatus().toStdString();
    sql(u"INSERT INTO FileDB (FileName, Day, Number, Uploaded) VALUES ('x.gif', '2004/05/07', 1, 1)"_s);
    desk.answers = {u"yes"_s};
    add(source(u"x.gif"_s, "four"));
    EXPECT_TRUE(lastStatus().endsWith(u"次のFTPでもう一度アップロードされます。"_s)) << lastStatus().toStdString();
}

TEST_F(FileRegistrationTest, AFileOfDiaryPartsIsNotCopied) {
    writeFile(part(u"x.gif"_s), "one");
    EXPECT_EQ(add(part(u"x.gif"_s)), Outcome::Done);
    EXPECT_EQ(rows(), QStringList{u"2004/05/06 : 1 : x.gif"_s});
    EXPECT_EQ(bytesOf(part(u"x.gif"_s)), "one");
}

TEST_F(FileRegistrationTest, AFileIsNeverCopiedOntoItself) {
    writeFile(part(u"x.gif"_s), "one");
    add(part(u"x.gif"_s));
    ASSERT_EQ(::symlink(session.DataPath.toUtf8().constData(), path(u"link"_s).toUtf8().constData()), 0);
    ASSERT_EQ(::link(part(u"x.gif"_s).toUtf8().constData(), path(u"in/x.gif"_s).toUtf8().constData()), 0);
    for (const QString& same : {part(u"x.gif"_s), session.DataPath + u"DiaryParts//x.gif"_s,
                                path(u"link/DiaryParts/x.gif"_s), path(u"in/x.gif"_s)}) {
        const QMap<QString, QByteArray> before = state();
        desk.answers = {u"yes"_s};
        const QString failure = failureOf([&] { add(same); });
        EXPECT_TRUE(failure.contains(u"同じフォルダの同じファイルを指定しました。"_s)) << failure.toStdString();
        EXPECT_TRUE(failure.contains(same)) << failure.toStdString();
        EXPECT_TRUE(state() == before) << same.toStdString();
    }
}

TEST_F(FileRegistrationTest, ANewNameUnderAnotherSpellingOfTheFolderIsLeftWhereItLies) {
    writeFile(part(u"x.gif"_s), "one");
    ASSERT_EQ(::symlink(session.DataPath.toUtf8().constData(), path(u"link"_s).toUtf8().constData()), 0);
    EXPECT_EQ(add(path(u"link/DiaryParts/x.gif"_s)), Outcome::Done);
    EXPECT_EQ(bytesOf(part(u"x.gif"_s)), "one");
    EXPECT_EQ(rows().size(), 1);
}

TEST_F(FileRegistrationTest, AFolderThatDiffersInCaseIsAnotherFolder) {
    platform::makeFolder(session.DataPath + u"diaryparts"_s);
    writeFile(session.DataPath + u"diaryparts/x.gif"_s, "one");
    add(session.DataPath + u"diaryparts/x.gif"_s);
    EXPECT_EQ(bytesOf(part(u"x.gif"_s)), "one");
}

TEST_F(FileRegistrationTest, AFileOnAWindowsDiskIsReplacedInItsOwnSpelling) {
    writeFile(part(u"X.GIF"_s), "one");
    add(part(u"X.GIF"_s));
    desk.answers = {u"yes"_s};
    add(source(u"x.gif"_s, "two"));
    EXPECT_EQ(bytesOf(part(u"X.GIF"_s)), "two");
    EXPECT_FALSE(exists(part(u"x.gif"_s)));
    EXPECT_EQ(rows().size(), 1);
}

TEST_F(FileRegistrationTest, AnotherNameStandsForTheSourcesName) {
    EXPECT_EQ(files().ResistFile2(source(u"x.gif"_s, "one"), u"y.gif"_s, kDay, 1), Outcome::Done);
    EXPECT_EQ(bytesOf(part(u"y.gif"_s)), "one");
    EXPECT_FALSE(exists(part(u"x.gif"_s)));
    files().ResistFile2(source(u"x.gif"_s, "two"), u"y.gif"_s, kDay, 2);
    EXPECT_EQ(bytesOf(part(u"y.gif"_s)), "one");
    desk.answers = {u"yes"_s};
    files().ResistFile2(source(u"x.gif"_s, "two"), u"y.gif"_s, kDay, 2);
    EXPECT_EQ(bytesOf(part(u"y.gif"_s)), "two");
    EXPECT_EQ(rows(), (QStringList{u"2004/05/06 : 1 : y.gif"_s, u"2004/05/06 : 2 : y.gif"_s}));
}

TEST_F(FileRegistrationTest, AnotherNameWithinDiaryPartsGetsARowAndNoFile) {
    writeFile(part(u"x.gif"_s), "one");
    EXPECT_EQ(files().ResistFile2(part(u"x.gif"_s), u"y.gif"_s, kDay, 1), Outcome::Done);
    EXPECT_EQ(rows(), QStringList{u"2004/05/06 : 1 : y.gif"_s});
    EXPECT_FALSE(exists(part(u"y.gif"_s)));
}

TEST_F(FileRegistrationTest, AnEmptyPathDoesNothing) {
    const QMap<QString, QByteArray> before = state();
    EXPECT_EQ(add(u""_s), Outcome::Done);
    EXPECT_EQ(files().ResistFile2(u""_s, u"y.gif"_s, kDay, 1), Outcome::Done);
    EXPECT_TRUE(state() == before);
}

TEST_F(FileRegistrationTest, APathEndsAtItsFirstNul) {
    const QString file = source(u"x.gif"_s, "one");
    EXPECT_EQ(add(file + QChar(u'\0') + u"rest"_s), Outcome::Done);
    EXPECT_EQ(rows(), QStringList{u"2004/05/06 : 1 : x.gif"_s});
}

TEST_F(FileRegistrationTest, WhatIsNoFileIsRefusedAndNothingChanges) {
    platform::makeFolder(path(u"in/folder.gif"_s));
    ASSERT_EQ(::mkfifo(path(u"in/pipe.gif"_s).toUtf8().constData(), 0600), 0);
    ASSERT_EQ(::symlink("/nowhere", path(u"in/dead.gif"_s).toUtf8().constData()), 0);
    const QMap<QString, QByteArray> before = state();
    for (const QString& file : {path(u"in/no.gif"_s), path(u"in/folder.gif"_s), path(u"in/folder.gif/"_s),
                                path(u"in/pipe.gif"_s), path(u"in/dead.gif"_s), u"/dev/zero"_s, u"/"_s}) {
        const QString failure = failureOf([&] { add(file); });
        EXPECT_TRUE(failure.contains(file)) << file.toStdString() << ": " << failure.toStdString();
    }
    EXPECT_TRUE(state() == before);
    EXPECT_TRUE(boxes().isEmpty());
}

TEST_F(FileRegistrationTest, NamesThatPagesOrTheDiaryCantHoldAreRefusedAndNothingChanges) {
    const QStringList names{u"café.gif"_s, u"猫😺.gif"_s, u"a\"b.gif"_s};
    for (const QString& name : names)
        source(name, "one");
    const QString plain = source(u"x.gif"_s, "one");
    const QMap<QString, QByteArray> before = state();
    for (const QString& name : names) {
        EXPECT_TRUE(failureOf([&] { add(path(u"in/"_s + name)); }).contains(name)) << name.toStdString();
        EXPECT_TRUE(failureOf([&] { files().ResistFile2(plain, name, kDay, 1); }).contains(name));
    }
    for (const QString& name : {u""_s, u"."_s, u".."_s, u"../x.gif"_s, u"a/b.gif"_s, u"a\\b.gif"_s, u"a\nb.gif"_s})
        EXPECT_NE(failureOf([&] { files().ResistFile2(plain, name, kDay, 1); }), QString()) << name.toStdString();
    EXPECT_TRUE(state() == before);
}

TEST_F(FileRegistrationTest, NamesThatInputMethodsTypeAreTaken) {
    for (const QString& name : {u"写真〜１.gif"_s, u"表示ソ.gif"_s, u"a : b .gif"_s, u" x.gif"_s, u"100%_[a].gif"_s}) {
        EXPECT_EQ(add(source(name, name.toUtf8())), Outcome::Done) << name.toStdString();
        EXPECT_EQ(bytesOf(part(name)), name.toUtf8());
    }
    EXPECT_EQ(rows().size(), 5);
}

TEST_F(FileRegistrationTest, AFullDiskLeavesFileAndRegisterAsTheyWere) {
    const QString file = source(u"x.gif"_s, QByteArray(300'000, 'x'));
    const QString other = source(u"y.gif"_s, "y");
    add(other);
    writeFile(part(u"x.gif"_s), "old");
    const QMap<QString, QByteArray> before = state();
    {
        FaultyDisk disk(home.path());
        disk.leaveRoom(100'000);
        EXPECT_NE(failureOf([&] { add(file); }), QString());
    }
    EXPECT_TRUE(state() == before);
}

TEST_F(FileRegistrationTest, ADiaryThatTakesNoRowSaysWhatWasCopied) {
    const QString file = source(u"x.gif"_s, "one");
    sql(u"INSERT INTO FileDB (FileName, Day, Number) VALUES ('z', 'ALL', 0)"_s);
    // A sum that overflows in an index refuses every other row.
    sql(u"CREATE INDEX Refused ON FileDB (CASE WHEN Day <> 'ALL' THEN abs(-9223372036854775808) END)"_s);
    const QString failure = failureOf([&] { add(file); });
    EXPECT_TRUE(failure.contains(u"DiaryPartsにコピーしました"_s)) << failure.toStdString();
    const QString lost = failureOf([&] { add(source(u"z"_s, "two")); });
    EXPECT_TRUE(lost.contains(u"DiaryPartsにコピーしました"_s)) << lost.toStdString();
    const QString known = failureOf([&] { add(source(u"z"_s, "three")); });
    EXPECT_FALSE(known.contains(u"コピーしました"_s)) << known.toStdString();
}

/// Says yes to every question, and does something before that.
class BusyDesk : public ScriptedDesk {
public:
    std::function<void()> onQuestion;
    bool ask(const QString& text, const QString&) override {
        if (onQuestion && text.contains(u"しますか"_s))
            std::exchange(onQuestion, {})();
        return true;
    }
};

TEST_F(FileRegistrationTest, TwoProgramsThatRegisterTheSameNamesLoseNeitherFileNorRow) {
    constexpr int kNames = 40;
    const auto addMany = [&](ScriptedDesk& itsDesk, const QString& folder, qint16 number) {
        for (int i = 0; i < kNames; ++i)
            FileRegistration({session, clock, itsDesk}).ResistFile(path(folder) + u"/%1.gif"_s.arg(i), kDay, number);
    };
    platform::makeFolder(path(u"in2"_s));
    for (int i = 0; i < kNames; ++i) {
        writeFile(path(u"in/%1.gif"_s.arg(i)), "one");
        writeFile(path(u"in2/%1.gif"_s.arg(i)), "two");
    }
    ScriptedDesk otherDesk;
    std::thread other([&] { addMany(otherDesk, u"in2"_s, 2); });
    addMany(desk, u"in"_s, 1);
    other.join();
    EXPECT_EQ(rows().size(), 2 * kNames);
    for (int i = 0; i < kNames; ++i) {
        const QString copied = u"「%1.gif」を登録しました。"_s.arg(i);
        const bool isOfOne = desk.texts(u"status"_s).contains(copied);
        EXPECT_NE(isOfOne, otherDesk.texts(u"status"_s).contains(copied)) << i;
        EXPECT_EQ(bytesOf(part(u"%1.gif"_s.arg(i))), isOfOne ? "one" : "two") << i;
    }
}

TEST_F(FileRegistrationTest, EveryChangeWaitsForThatOfAnotherProgram) {
    const QString parts = session.DataPath + u"DiaryParts"_s;
    const QString file = source(u"x.gif"_s, "one");
    EXPECT_TRUE(waitsForTurn(parts, [&] { add(file); }));
    BusyDesk busy;
    EXPECT_TRUE(waitsForTurn(parts, [&](const std::function<void()>& begin) {
        busy.onQuestion = begin;
        FileRegistration({session, clock, busy}).ResistFile(file, kDay, 1);
    }));
    EXPECT_TRUE(waitsForTurn(parts, [&](const std::function<void()>& begin) {
        busy.onQuestion = begin;
        FileRegistration({session, clock, busy}).deleteFile({0, u"x.gif"_s, kDay, 1, false, false});
    }));
    EXPECT_FALSE(exists(part(u"x.gif"_s)));
}

TEST_F(FileRegistrationTest, AReplacementThatFailsBringsNoRowBack) {
    const QString file = source(u"x.gif"_s, "one");
    add(file);
    BusyDesk busy;
    busy.onQuestion = [&] {
        sql(u"DELETE FROM FileDB"_s);
        platform::removeFile(file);
    };
    EXPECT_NE(failureOf([&] { FileRegistration({session, clock, busy}).ResistFile(file, kDay, 1); }), QString());
    EXPECT_EQ(rows(), QStringList());
}

TEST_F(FileRegistrationTest, ARowThatGoesWhileSomebodyIsAskedComesBackWithItsFile) {
    add(source(u"x.gif"_s, "one"));
    BusyDesk busy;
    busy.onQuestion = [&] {
        sql(u"DELETE FROM FileDB"_s);
        platform::removeFile(part(u"x.gif"_s));
    };
    EXPECT_EQ(FileRegistration({session, clock, busy}).ResistFile(source(u"x.gif"_s, "two"), kDay, 1), Outcome::Done);
    EXPECT_EQ(rows(), QStringList{u"2004/05/06 : 1 : x.gif"_s});
    EXPECT_EQ(bytesOf(part(u"x.gif"_s)), "two");
}

TEST_F(FileRegistrationTest, AFileThatIsRegisteredAnewWhileSomebodyIsAskedStays) {
    add(source(u"x.gif"_s, "one"));
    BusyDesk busy;
    int questions = 0;
    const std::function<void()> registerAnew = [&] {
        if (++questions == 1) // about the row
            busy.onQuestion = registerAnew;
        else
            add(part(u"x.gif"_s), u"2004/05/07"_s);
    };
    busy.onQuestion = registerAnew;
    FileRegistration({session, clock, busy}).deleteFile({0, u"x.gif"_s, kDay, 1, false, false});
    EXPECT_EQ(bytesOf(part(u"x.gif"_s)), "one");
    EXPECT_EQ(rows(), QStringList{u"2004/05/07 : 1 : x.gif"_s});
    EXPECT_TRUE(busy.texts(u"status"_s).last().contains(u"残しました"_s));
}

TEST_F(FileRegistrationTest, AFileWithoutARowIsReplacedAndThePanelSaysSo) {
    writeFile(part(u"x.gif"_s), "old");
    add(source(u"x.gif"_s, "new"));
    EXPECT_EQ(bytesOf(part(u"x.gif"_s)), "new");
    EXPECT_TRUE(lastStatus().contains(u"置き換えました"_s)) << lastStatus().toStdString();
}

// -- deleting ---------------------------------------------------------------------------------------------------------

TEST_F(FileRegistrationTest, DeletingAsksAndKeepsAFileThatAnotherEntryUses) {
    add(source(u"x.gif"_s, "one"));
    add(source(u"x.gif"_s, "one"), u"2004/05/07"_s);
    desk.answers = {u"no"_s};
    EXPECT_EQ(files().deleteFile(files().rows()[0]), Outcome::Refused);
    EXPECT_EQ(rows().size(), 2);
    desk.answers = {u"yes"_s};
    EXPECT_EQ(files().deleteFile(files().rows()[0]), Outcome::Done);
    EXPECT_EQ(boxes(), (QStringList{kAskDelete, kAskDelete}));
    EXPECT_EQ(rows(), QStringList{u"2004/05/07 : 1 : x.gif"_s});
    EXPECT_TRUE(exists(part(u"x.gif"_s)));
}

TEST_F(FileRegistrationTest, DeletingTheLastRowAsksAboutTheFile) {
    for (const char* answer : {"no", "yes"}) {
        add(source(u"x.gif"_s, "one"));
        desk.events = {};
        desk.answers = {u"yes"_s, QLatin1StringView(answer)};
        EXPECT_EQ(files().deleteFile(files().rows()[0]), Outcome::Done);
        EXPECT_EQ(boxes(), (QStringList{kAskDelete, kAskFile}));
        EXPECT_EQ(boxTitles(), (QSet<QString>{u"Resist Files"_s}));
        EXPECT_EQ(exists(part(u"x.gif"_s)), answer == std::string("no"));
        EXPECT_TRUE(rows().isEmpty());
    }
}

TEST_F(FileRegistrationTest, AFileThatIsGoneAlreadyIsSaidToBe) {
    add(source(u"x.gif"_s, "one"));
    platform::removeFile(part(u"x.gif"_s));
    desk.answers = {u"yes"_s, u"yes"_s};
    EXPECT_EQ(files().deleteFile(files().rows()[0]), Outcome::Done);
    EXPECT_EQ(boxes().last(), u"exclamation: ファイルがありませんでした。"_s);
}

TEST_F(FileRegistrationTest, ARowOfAnOldDiaryWithoutNumberOrDayShowsAndGoes) {
    sql(u"INSERT INTO FileDB (FileName, Day, Number) VALUES ('a.gif', '2004/05/06', NULL), ('b.gif', NULL, 3)"_s);
    EXPECT_EQ(rows(), (QStringList{u" : 3 : b.gif"_s, u"2004/05/06 : 0 : a.gif"_s}));
    for (int i = 0; i < 2; ++i) {
        desk.answers = {u"yes"_s, u"no"_s};
        files().deleteFile(files().rows()[0]);
    }
    EXPECT_TRUE(rows().isEmpty());
}

TEST_F(FileRegistrationTest, ARowOfAnOldDiaryWithoutANameShowsAndGoes) {
    sql(u"INSERT INTO FileDB (FileName, Day, Number) VALUES (NULL, '2004/05/06', 1), ('', 'ALL', 0)"_s);
    EXPECT_EQ(rows(), (QStringList{u"2004/05/06 : 1 : "_s, u"ALL : 0 : "_s}));
    for (const char* answer : {"", "yes"}) { // the file is asked about with the last row alone
        desk.answers = {u"yes"_s};
        if (*answer)
            desk.answers.append(QLatin1StringView(answer));
        EXPECT_EQ(files().deleteFile(files().rows()[0]), Outcome::Done);
    }
    EXPECT_TRUE(rows().isEmpty());
    EXPECT_EQ(boxes().last(), u"exclamation: ファイルがありませんでした。"_s);
    EXPECT_TRUE(exists(session.DataPath + u"DiaryParts"_s));
}

TEST_F(FileRegistrationTest, AFileThatStaysIsNamedWithItsRowGone) {
    platform::makeFolder(session.DataPath + u"DiaryParts"_s);
    ASSERT_TRUE(QDir(session.DataPath + u"DiaryParts"_s).removeRecursively());
    ASSERT_TRUE(QFile::link(u"/proc/self"_s, session.DataPath + u"DiaryParts"_s)); // nobody removes a file there
    sql(u"INSERT INTO FileDB (FileName, Day, Number) VALUES ('status', 'ALL', 0)"_s);
    desk.answers = {u"yes"_s, u"yes"_s};
    const QString failure = failureOf([&] { files().deleteFile(files().rows()[0]); });
    EXPECT_TRUE(failure.startsWith(u"登録は削除しました: ファイルを削除できません。"_s)) << failure.toStdString();
    EXPECT_TRUE(failure.contains(part(u"status"_s)) && failure.contains(u"ファイルは残っています。"_s));
    EXPECT_TRUE(rows().isEmpty());
}

TEST_F(FileRegistrationTest, ColonsAndBlanksInNamesTakeTheRightRow) {
    add(source(u"a.gif"_s, "one"));
    add(source(u"b : a.gif"_s, "two"));
    add(source(u" a.gif"_s, "three"));
    for (const store::FileRow& row : files().rows()) {
        if (row.name != u"b : a.gif"_s)
            continue;
        desk.answers = {u"yes"_s, u"yes"_s};
        files().deleteFile(row);
    }
    EXPECT_EQ(rows(), (QStringList{u"2004/05/06 : 1 :  a.gif"_s, u"2004/05/06 : 1 : a.gif"_s}));
    EXPECT_TRUE(exists(part(u"a.gif"_s)) && exists(part(u" a.gif"_s)));
    EXPECT_FALSE(exists(part(u"b : a.gif"_s)));
}

TEST_F(FileRegistrationTest, ARowWithAPathLeadsToNoFile) {
    sql(u"INSERT INTO FileDB (FileName, Day) VALUES ('../diary.ini', 'ALL')"_s);
    desk.answers = {u"yes"_s, u"yes"_s};
    files().deleteFile(files().rows()[0]);
    EXPECT_EQ(boxes().last(), u"exclamation: ファイルがありませんでした。"_s);
    EXPECT_TRUE(exists(session.DiaryIniFile));
    EXPECT_TRUE(rows().isEmpty());
}

TEST_F(FileRegistrationTest, TheChoiceOfDaysShowsKeys) {
    EXPECT_EQ(registers::shownKey({u"2004/05/06"_s, 2}), u"2004/05/06 : 2"_s);
    EXPECT_EQ(registers::shownKey({u"ALL"_s, 0}), u"ALL"_s);
    EXPECT_EQ(registers::shownKey({u"%2 and %1"_s, 3}), u"%2 and %1 : 3"_s);
}

TEST_F(FileRegistrationTest, TextsThatLookLikePlacesOfAPatternAreShownAsTheyAre) {
    EXPECT_EQ(registers::shownFile({0, u"%1%2%3.gif"_s, u"%2 and %1"_s, 4, false, false}),
              u"%2 and %1 : 4 : %1%2%3.gif"_s);
}

TEST_F(FileRegistrationTest, AnUnregisteredFileThatDiffersInCaseStaysBesideTheCopy) {
    writeFile(part(u"b.gif"_s), "own");
    add(source(u"B.GIF"_s, "new"));
    EXPECT_EQ(bytesOf(part(u"b.gif"_s)), "own");
    EXPECT_EQ(bytesOf(part(u"B.GIF"_s)), "new");
    EXPECT_EQ(rows(), QStringList{u"2004/05/06 : 1 : B.GIF"_s});
    add(source(u"b.gif"_s, "other"), u"2004/05/07"_s);
    EXPECT_EQ(rows(), (QStringList{u"2004/05/06 : 1 : B.GIF"_s, u"2004/05/07 : 1 : B.GIF"_s}))
        << "the row means the copy, not the file that nobody has registered";
    desk.answers = {u"yes"_s};
    add(source(u"b.gif"_s, "newer"), u"2004/05/07"_s);
    EXPECT_EQ(bytesOf(part(u"b.gif"_s)), "own");
    EXPECT_EQ(bytesOf(part(u"B.GIF"_s)), "newer");
}

TEST_F(FileRegistrationTest, ANameThatDiffersInWidthHasACopyOfItsOwn) {
    add(source(u"b.gif"_s, "one"));
    add(source(u"ｂ.gif"_s, "two"), u"2004/05/07"_s);
    EXPECT_EQ(bytesOf(part(u"ｂ.gif"_s)), "two");
    EXPECT_EQ(rows().last(), u"2004/05/07 : 1 : ｂ.gif"_s);
}

TEST_F(FileRegistrationTest, ALinkInTheCopysPlaceIsReplacedAndItsTargetStays) {
    const auto isCopy = [&](const char* bytes) {
        return !QFileInfo(part(u"x.gif"_s)).isSymLink() && bytesOf(part(u"x.gif"_s)) == bytes;
    };
    const auto link = [&](const QString& target) {
        QFile::remove(part(u"x.gif"_s));
        ASSERT_TRUE(QFile::link(target, part(u"x.gif"_s)));
    };
    const QString target = source(u"target"_s, "own");
    link(target);
    add(source(u"x.gif"_s, "one"));
    EXPECT_TRUE(isCopy("one"));
    link(target);
    desk.answers = {u"yes"_s};
    add(source(u"x.gif"_s, "two"));
    EXPECT_TRUE(isCopy("two"));
    link(path(u"in/x.gif"_s));
    desk.answers = {u"yes"_s};
    add(path(u"in/x.gif"_s));
    EXPECT_TRUE(isCopy("two")) << "a link to the very source";
    link(path(u"in/nowhere"_s));
    add(path(u"in/x.gif"_s), u"2004/05/07"_s);
    EXPECT_TRUE(isCopy("two"));
    EXPECT_EQ(bytesOf(target), "own");
    EXPECT_FALSE(exists(path(u"in/nowhere"_s)));
}

} // namespace
} // namespace velloria::tests
