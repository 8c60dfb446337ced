#include "exchange/plugin_exchange.h"

#include "store/genre_list.h"
#include "support/plugin_home.h"
#include "support/test_home.h"

#include <QDir>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using exchange::PluginFormat;
using platform::Outcome;

/// Both formats, by the plug-in that knows them.
class PluginExchange : public TestHome, public testing::WithParamInterface<PluginFormat> {
protected:
    PluginExchange() {
        startAt(u"2026/11/23 10:00:00"_s);
        StubPlugin::install(session.MyPath + (isMovableType() ? u"Larkport.dll"_s : u"Wrenport.dll"_s));
        QDir().mkdir(path(u"out"_s));
        write(u"2004/05/06"_s, u"own"_s);
        desk.events = {};
    }
    static bool isMovableType() { return GetParam() == PluginFormat::MovableType; }

    Outcome imports(const std::optional<QString>& chosen) {
        return exchange::importThroughPlugin(run, GetParam(), chosen,
                                             {.makeGenres =
                                                  [this] {
                                                      ++genresMade;
                                                      EXPECT_EQ(stub.calls().last(), u"release"_s);
                                                      store::MakeGenretxt(run);
                                                  },
                                              .written = [this](const QStringList& days) { told.push_back(days); }});
    }
    Outcome exports(const std::optional<QString>& chosen) {
        return exchange::exportThroughPlugin(run, GetParam(), chosen);
    }
    QString failureOfImport() {
        return failureOf([&] { imports(in); });
    }

    QStringList opened(const QString& kind, const QString& file) const {
        return {u"connect "_s + session.UserPath + u"diary.mdb"_s, u"prepare_"_s + kind,
                u"open_file "_s + file + (kind == u"export"_s ? u" 1"_s : u" 0"_s)};
    }
    /// What the plug-in sees of an import and of an export that come to their ends.
    QStringList wholeImport(const QString& file) const {
        QStringList calls = opened(u"import"_s, file);
        if (isMovableType())
            calls += u"read_entries"_s;
        return calls += {u"finish"_s, u"release"_s};
    }
    QStringList wholeExport(const QString& file) const {
        QStringList calls = opened(u"export"_s, file);
        if (isMovableType())
            calls += u"set_user_id "_s + session.UserID;
        return calls += {u"write_entries"_s, u"finish"_s, u"release"_s};
    }
    QStringList calls() {
        const QStringList made = stub.calls();
        QFile::remove(path(u"calls.txt"_s));
        return made;
    }
    QStringList filesOut() const { return QDir(path(u"out"_s)).entryList(QDir::Files); }

    const QString in = path(u"日記 1.txt"_s);
    const QString out = path(u"out/x.txt"_s);
    StubPlugin stub{path(u"calls.txt"_s)};
    int genresMade = 0;
    std::vector<QStringList> told;
};

INSTANTIATE_TEST_SUITE_P(Of, PluginExchange, testing::Values(PluginFormat::MovableType, PluginFormat::Hatena),
                         [](const auto& format) {
                             return format.param == PluginFormat::MovableType ? "MovableType" : "Hatena";
                         });

TEST_P(PluginExchange, AsksForTheFileOfAnImport) {
    desk.answers = {in};
    EXPECT_EQ(imports({}), Outcome::Done);
    EXPECT_EQ(lastFileEvent()[u"mode"_s], u"open"_s);
    EXPECT_EQ(lastFileEvent()[u"filter"_s],
              isMovableType() ? u"Text/HTML Files(*.txt,*.htm,*.html)|*.txt;*.htm;*.html|ALL Files(*.*)|*.*"_s
                              : u"Text/XML Files(*.txt,*.xml)|*.txt;*.xml|ALL Files(*.*)|*.*"_s);
    EXPECT_EQ(calls(), wholeImport(in));
}

TEST_P(PluginExchange, AsksForTheFileOfAnExport) {
    desk.answers = {out};
    EXPECT_EQ(exports({}), Outcome::Done);
    EXPECT_EQ(lastFileEvent()[u"mode"_s], u"save"_s);
    EXPECT_EQ(lastFileEvent()[u"title"_s],
              isMovableType() ? u"MovableType形式の書き出し"_s : u"はてな形式の書き出し"_s);
    EXPECT_EQ(lastFileEvent()[u"filter"_s],
              isMovableType() ? u"TEXT Files(*.txt)|*txt|"_s : u"XML Files(*.xml)|*xml|"_s);
    EXPECT_EQ(calls(), wholeExport(out));
}

TEST_P(PluginExchange, ACancelledDialogDoesNotEvenLoadThePlugin) {
    QDir(session.MyPath).remove(isMovableType() ? u"Larkport.dll"_s : u"Wrenport.dll"_s);
    const auto before = contentOf(home.path());
    desk.answers = {QJsonValue::Null, u""_s, QJsonValue::Null, u""_s};
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(imports({}), Outcome::Refused);
        EXPECT_EQ(exports({}), Outcome::Refused);
    }
    EXPECT_EQ(imports(u""_s), Outcome::Refused);
    EXPECT_EQ(exports(u""_s), Outcome::Refused);
    EXPECT_EQ(stub.calls(), QStringList());
    EXPECT_EQ(boxes(), QStringList());
    EXPECT_EQ(genresMade, 0);
    EXPECT_EQ(contentOf(home.path()), before);
}

TEST_P(PluginExchange, AFileThatIsNoneIsToldAndNothingFollows) {
    writeFile(out, "old");
    for (const char* answer : {"DENIES", "FAILS"}) {
        stub.set(answer, u"open_file"_s);
        const bool isFailure = qstrcmp(answer, "FAILS") == 0;
        desk.events = {};
        EXPECT_EQ(failureOfImport().contains(u"the stub fails"_s), isFailure);
        EXPECT_EQ(calls(), opened(u"import"_s, in) << u"release"_s);
        EXPECT_EQ(boxes(), isFailure ? QStringList() : QStringList{u"critical: 入力パスのエラーです"_s});
        desk.events = {};
        EXPECT_EQ(failureOf([&] { EXPECT_EQ(exports(out), Outcome::Refused); }).contains(u"the stub fails"_s),
                  isFailure);
        EXPECT_EQ(calls(), opened(u"export"_s, out) << u"release"_s);
        EXPECT_EQ(boxes(), isFailure ? QStringList() : QStringList{u"critical: 出力先パスのエラーです"_s});
        EXPECT_EQ(bytesOf(out), "old");
        stub.set(answer, {});
    }
    EXPECT_EQ(genresMade, 0);
    EXPECT_EQ(told.size(), 0U);
    EXPECT_EQ(filesOut(), QStringList{u"x.txt"_s});
}

TEST_P(PluginExchange, AnImportAddsWhatThePersonWants) {
    write(u"2004/05/07"_s, u"own"_s);
    stub.set("BRINGS", u"2004/05/07 2004/05/06 2004/05/08 2004/05/07"_s);
    stub.set("NOTES", u"コメント 3件\nトラックバック 1件"_s);
    desk.answers = {u"yes"_s};
    EXPECT_EQ(imports(in), Outcome::Done);
    EXPECT_EQ(boxes(), QStringList{u"question: Stubから4件の日記をインポートします。\r\n"
                                   "日付: 2004/05/06, 2004/05/07, 2004/05/08 (3日)\r\n"
                                   "すでに日記がある日: 2日 (今の日記の後ろに追加します)\r\n"
                                   "コメント 3件\r\nトラックバック 1件\r\n\r\nインポートしますか？"_s});
    EXPECT_TRUE(stub.calls().contains(u"mark 2026/11/23 Stub"_s));
    EXPECT_EQ(told, (std::vector<QStringList>{{u"2004/05/06"_s, u"2004/05/07"_s, u"2004/05/08"_s}}));
    EXPECT_EQ(genresMade, 1);
    EXPECT_EQ(lastStatus(), u"4件の日記をインポートしました。"_s);
    EXPECT_TRUE(store::readGenres(run).contains(u"genre of the stub"_s));
    const std::vector<store::Entry> day = diary().LoadDay(u"2004/05/07"_s);
    ASSERT_EQ(day.size(), 3U);
    EXPECT_EQ(day.back().title, u"own"_s);
    EXPECT_EQ(day.back().number, 1);
    EXPECT_EQ(day.front().importMark, u"2026/11/23 Stub"_s);
    EXPECT_EQ(diary().ListImportBatches(), QStringList{u"2026/11/23 Stub"_s});
    diary().DeleteImportBatch(u"2026/11/23 Stub"_s);
    EXPECT_EQ(diary().AllEntryKeys().size(), 2U);
}

TEST_P(PluginExchange, AnImportThatNobodyWantsAddsNothing) {
    stub.set("BRINGS", u"2004/05/07"_s);
    desk.answers = {u"no"_s};
    EXPECT_EQ(imports(in), Outcome::Refused);
    EXPECT_TRUE(stub.calls().contains(u"no mark"_s));
    EXPECT_EQ(diary().AllEntryKeys().size(), 1U);
    EXPECT_EQ(told, (std::vector<QStringList>{{}}));
    EXPECT_EQ(genresMade, 1);
    EXPECT_EQ(lastStatus(), QString());
}

TEST_P(PluginExchange, AQuestionThatCantBeShownEndsTheImportBehindTheRelease) {
    stub.set("BRINGS", u"2004/05/07"_s); // and nobody answers
    EXPECT_NE(failureOfImport(), QString());
    EXPECT_EQ(stub.calls().last(), u"release"_s);
    EXPECT_EQ(diary().AllEntryKeys().size(), 1U);
    EXPECT_EQ(genresMade, 1);
    EXPECT_EQ(told.size(), 0U);
}

/// The plug-in's answer at a place of its work.
struct Answer {
    const char* kind; ///< "DENIES", "FAILS" or "THROWS"
    const char* call;
    bool isOpened; ///< whether the file was opened by then
};

TEST_P(PluginExchange, TheGenresAreMadeOnceAfterEachImportWhoseFileWasOpened) {
    std::vector<Answer> answers{{"FAILS", "create", false},         {"FAILS", "connect", false},
                                {"FAILS", "prepare_import", false}, {"DENIES", "open_file", false},
                                {"FAILS", "open_file", false},      {"THROWS", "open_file 7", false},
                                {"DENIES", "finish", true},         {"FAILS", "finish", true},
                                {"THROWS", "finish", true},         {"THROWS", "release 7", true}};
    if (isMovableType())
        answers.insert(
            answers.end(),
            {{"DENIES", "read_entries", true}, {"FAILS", "read_entries", true}, {"THROWS", "read_entries 7", true}});
    for (const Answer& answer : answers) {
        genresMade = 0;
        desk.events = {};
        stub.set(answer.kind, QLatin1StringView(answer.call));
        const bool isFailure = qstrcmp(answer.kind, "DENIES") != 0;
        EXPECT_EQ(failureOfImport().isEmpty(), !isFailure) << answer.kind << ' ' << answer.call;
        EXPECT_EQ(genresMade, answer.isOpened ? 1 : 0) << answer.kind << ' ' << answer.call;
        EXPECT_EQ(desk.texts(u"failure"_s), QStringList()) << answer.call;
        EXPECT_EQ(boxes().size(), !isFailure && !answer.isOpened ? 1 : 0) << answer.call;
        stub.set(answer.kind, {});
    }
}

TEST_P(PluginExchange, ANoEndsTheCallsThere) {
    stub.set("DENIES", u"finish"_s);
    EXPECT_EQ(imports(in), Outcome::Refused);
    EXPECT_EQ(calls(), wholeImport(in));
    EXPECT_EQ(exports(out), Outcome::Refused);
    EXPECT_EQ(calls(), wholeExport(out));
    stub.set("DENIES", u"write_entries"_s);
    EXPECT_EQ(exports(out), Outcome::Refused);
    EXPECT_FALSE(calls().contains(u"finish"_s));
    if (isMovableType()) {
        stub.set("DENIES", u"read_entries"_s);
        EXPECT_EQ(imports(in), Outcome::Refused);
        EXPECT_FALSE(calls().contains(u"finish"_s));
    }
    // The file alone is asked about; the others just do.
    for (const QString& call : {u"connect"_s, u"prepare_import"_s, u"prepare_export"_s, u"set_user_id"_s}) {
        stub.set("DENIES", call);
        EXPECT_EQ(imports(in), Outcome::Done) << call.toStdString();
        EXPECT_EQ(exports(out), Outcome::Done) << call.toStdString();
    }
}

TEST_P(PluginExchange, WhatIsWrittenIsToldThoughTheEndFails) {
    stub.set("BRINGS", u"2004/05/07"_s);
    stub.set("THROWS", u"release 7"_s);
    desk.answers = {u"yes"_s};
    EXPECT_TRUE(failureOfImport().contains(u".dll"_s));
    EXPECT_EQ(told, (std::vector<QStringList>{{u"2004/05/07"_s}}));
}

TEST_P(PluginExchange, GenresThatCantBeMadeLeaveTheEntries) {
    stub.set("BRINGS", u"2004/05/07"_s);
    desk.answers = {u"yes"_s};
    QFile::remove(session.DataPath + u"Genre.csv"_s);
    ASSERT_TRUE(QDir(session.DataPath).mkdir(u"Genre.csv"_s));
    EXPECT_TRUE(failureOfImport().contains(u"Genre.csv"_s));
    EXPECT_EQ(told, (std::vector<QStringList>{{u"2004/05/07"_s}}));
    stub.set("FAILS", u"finish"_s); // the first failure is the one to tell
    desk.answers = {u"yes"_s};
    EXPECT_TRUE(failureOfImport().contains(u"the stub fails"_s));
}

TEST_P(PluginExchange, AnExportFindsItsPlaceFreeAndReplacesWhatWasThere) {
    writeFile(out, "old");
    stub.set("WRITES", u"new"_s);
    session.UserID = u"太郎"_s;
    EXPECT_EQ(exports(out), Outcome::Done);
    EXPECT_EQ(calls(), wholeExport(out));
    EXPECT_EQ(bytesOf(out), "new");
    EXPECT_EQ(filesOut(), QStringList{u"x.txt"_s});
    EXPECT_EQ(lastStatus(), u"「%1」に日記をエクスポートしました。"_s.arg(out));
}

TEST_P(PluginExchange, WhatAnExportTellsOfItselfStays) {
    stub.set("WRITES", u"new"_s);
    stub.set("TALKS", u"yes"_s);
    EXPECT_EQ(exports(out), Outcome::Done);
    EXPECT_EQ(lastStatus(), u"3件を書き、1件を除きました。"_s);
}

TEST_P(PluginExchange, AnExportThatFailsAnywhereLeavesTheOldFile) {
    std::vector<Answer> answers{
        {"FAILS", "create", false},       {"FAILS", "connect", false},         {"FAILS", "prepare_export", false},
        {"DENIES", "open_file", false},   {"FAILS", "open_file", false},       {"DENIES", "write_entries", true},
        {"FAILS", "write_entries", true}, {"THROWS", "write_entries 7", true}, {"DENIES", "finish", true},
        {"FAILS", "finish", true},        {"THROWS", "finish", true},          {"THROWS", "release", true}};
    if (isMovableType())
        answers.push_back({"FAILS", "set_user_id", true});
    stub.set("WRITES", u"half of the n"_s);
    for (const bool isThere : {true, false}) {
        if (isThere)
            writeFile(out, "old");
        else
            QFile::remove(out);
        for (const Answer& answer : answers) {
            stub.set(answer.kind, QLatin1StringView(answer.call));
            failureOf([&] { EXPECT_EQ(exports(out), Outcome::Refused); });
            EXPECT_EQ(filesOut(), isThere ? QStringList{u"x.txt"_s} : QStringList()) << answer.kind << answer.call;
            if (isThere) {
                EXPECT_EQ(bytesOf(out), "old") << answer.kind << ' ' << answer.call;
            }
            stub.set(answer.kind, {});
        }
    }
}

TEST_P(PluginExchange, AnExportThatWritesNothingLosesNothing) {
    writeFile(out, "old");
    EXPECT_EQ(exports(out), Outcome::Done);
    EXPECT_FALSE(exists(out));
    EXPECT_TRUE(lastStatus().contains(out + u".velloria-old1"_s)) << lastStatus().toStdString();
    EXPECT_EQ(bytesOf(out + u".velloria-old1"_s), "old");
}

TEST_P(PluginExchange, AnExportGoesThroughALink) {
    writeFile(out, "old");
    ASSERT_TRUE(QFile::link(out, path(u"out/link.txt"_s)));
    stub.set("WRITES", u"new"_s);
    EXPECT_EQ(exports(path(u"out/link.txt"_s)), Outcome::Done);
    EXPECT_TRUE(QFileInfo(path(u"out/link.txt"_s)).isSymLink());
    EXPECT_EQ(bytesOf(out), "new");
    QFile::remove(out);
    EXPECT_NE(failureOf([&] { exports(path(u"out/link.txt"_s)); }), QString()) << "a link that leads nowhere";
}

TEST_P(PluginExchange, AnExportReplacesNoFileOfTheProgram) {
    ASSERT_TRUE(QFile::link(session.databaseFile(), path(u"out/link.txt"_s)));
    store::MakeGenretxt(run);
    const auto before = contentOf(home.path());
    for (const QString& file : {session.databaseFile(), session.DiaryIniFile, session.MyPath + u"default.mdb"_s,
                                path(u"out/link.txt"_s), session.DataPath + u"Genre.csv"_s, u"/dev/null"_s}) {
        EXPECT_NE(failureOf([&] { exports(file); }), QString()) << file.toStdString();
        EXPECT_TRUE(contentOf(home.path()) == before) << file.toStdString();
    }
    EXPECT_EQ(stub.calls(), QStringList());
    EXPECT_EQ(boxes(), QStringList());
}

TEST_P(PluginExchange, APluginThatIsNoneIsAFailure) {
    const QString plugin = session.MyPath + (isMovableType() ? u"Larkport.dll"_s : u"Wrenport.dll"_s);
    writeFile(out, "old");
    for (const QByteArray& content : {QByteArray("no library"), QByteArray()}) {
        writeFile(plugin, content);
        EXPECT_TRUE(failureOfImport().contains(plugin));
        EXPECT_TRUE(failureOf([&] { exports(out); }).contains(plugin));
    }
    QFile::remove(plugin);
    EXPECT_TRUE(failureOfImport().contains(plugin));
    EXPECT_TRUE(failureOf([&] { exports(out); }).contains(plugin));
    EXPECT_EQ(bytesOf(out), "old");
    EXPECT_EQ(genresMade, 0);
}

} // namespace
} // namespace velloria::tests
