#include "common/diary_file.h"

#include "support/faulty_disk.h"
#include "support/test_home.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::plugins {
namespace {

class PluginDiary : public tests::TestHome {
protected:
    std::string database() const { return session.databaseFile().toStdString(); }
    std::vector<Entry> entries() const {
        std::vector<Entry> all;
        DiaryFile(database(), host).read([&](const Entry& entry) { all.push_back(entry); });
        return all;
    }
    static Entry entryOf(const std::string& day, const std::string& title) {
        return {day, title, "text", "", "", "-", "一般", day + " 01:02:03", false};
    }
    template <typename Action>
    static std::string errorOf(Action action) {
        try {
            action();
        } catch (const Error& error) {
            return error.what();
        }
        return {};
    }

    const Host host{nullptr};
};

TEST_F(PluginDiary, ComesBackAsItWent) {
    Entry odd = entryOf("2024/02/29", std::string("a\0b", 3));
    odd.contents = "😀\r\n";
    odd.extend = std::nullopt;
    odd.isPrivate = true;
    Entry missing{"2024/02/28"};
    DiaryFile(database(), host).append({odd, missing}, "2026/11/23 Test");
    EXPECT_EQ(entries(), (std::vector<Entry>{missing, odd}));
    EXPECT_EQ(DiaryFile(database(), host).count(), 2);
    EXPECT_EQ(sqlValue(u"SELECT group_concat(DISTINCT ImportMark || TrackBack) FROM Contents"_s), u"2026/11/23 Test"_s);
    EXPECT_EQ(sqlValue(u"SELECT typeof(Extend) FROM Contents WHERE Day='2024/02/29'"_s), u"null"_s);
}

TEST_F(PluginDiary, PutsNewEntriesBehindTheOld) {
    write(u"2024/02/29"_s, u"old"_s);
    write(u"2024/02/29"_s, u"older"_s);
    DiaryFile(database(), host)
        .append({entryOf("2024/02/29", "a"), entryOf("2024/03/01", "b"), entryOf("2024/02/29", "c")}, "mark");
    EXPECT_EQ(sqlValue(u"SELECT group_concat(Number || Title) FROM (SELECT * FROM Contents ORDER BY Day, Number)"_s),
              u"1old,2older,3a,4c,1b"_s);
}

TEST_F(PluginDiary, SurvivesOddNumbers) {
    sql(u"INSERT INTO Contents (Day, Number, Title) VALUES ('2024/02/29', 'x', 'odd'), ('2024/03/01', -7, 'low')"_s);
    DiaryFile(database(), host).append({entryOf("2024/02/29", "a"), entryOf("2024/03/01", "b")}, "mark");
    EXPECT_EQ(sqlValue(u"SELECT group_concat(Number) FROM Contents WHERE ImportMark='mark'"_s), u"1,1"_s);
    sql(u"INSERT INTO Contents (Day, Number) VALUES ('2024/04/01', 2147483647)"_s);
    EXPECT_NE(errorOf([&] { DiaryFile(database(), host).append({entryOf("2024/04/01", "a")}, "mark"); }), "");
}

TEST_F(PluginDiary, TakesAllOrNothing) {
    refuseRows(u"Title = 'bad'"_s);
    const std::string error = errorOf([&] {
        DiaryFile(database(), host).append({entryOf("2024/02/28", "good"), entryOf("2024/02/29", "bad")}, "m");
    });
    EXPECT_NE(error.find("日記は変更されていません。"), std::string::npos) << error;
    EXPECT_EQ(entries().size(), 0u);
}

TEST_F(PluginDiary, IsRefusedWhenItIsNone) {
    writeFile(path(u"text.mdb"_s), QByteArray(5000, 'x'));
    writeFile(path(u"empty.mdb"_s), "");
    for (const char* name : {"text.mdb", "empty.mdb"}) {
        const std::string file = path(QString::fromLatin1(name)).toStdString();
        const std::string error = errorOf([&] { DiaryFile(file, host).count(); });
        EXPECT_NE(error.find("日記データベースではありません"), std::string::npos) << error;
        EXPECT_NE(error.find(name), std::string::npos) << error;
    }
    const std::string missing = path(u"missing.mdb"_s).toStdString();
    EXPECT_NE(errorOf([&] { DiaryFile(missing, host).count(); }).find("開けません"), std::string::npos);
    EXPECT_FALSE(exists(path(u"missing.mdb"_s)));
}

TEST_F(PluginDiary, WaitsForAnotherProgramAndPaints) {
    struct Program {
        sqlite3* other = nullptr;
        int pumps = 0;
        int pumpsUntilFree = 0;
    } program;
    ASSERT_EQ(sqlite3_open(database().c_str(), &program.other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(program.other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    velloria_host table{};
    table.size = sizeof table;
    table.context = &program;
    table.pump = [](void* context) {
        auto& waiting = *static_cast<Program*>(context);
        if (++waiting.pumps == waiting.pumpsUntilFree)
            sqlite3_exec(waiting.other, "ROLLBACK", nullptr, nullptr, nullptr);
    };
    const Host painting(&table);
    const std::string error = errorOf([&] { DiaryFile(database(), painting).count(); });
    EXPECT_NE(error.find("他のプログラムが使用中です"), std::string::npos) << error;
    EXPECT_GT(program.pumps, 3);
    program.pumpsUntilFree = program.pumps + 3;
    DiaryFile(database(), painting).append({entryOf("2024/02/29", "a")}, "mark");
    EXPECT_EQ(entries().size(), 1u);
    sqlite3_close(program.other);
}

TEST_F(PluginDiary, StaysAsItWasOnAFullDisk) {
    const std::vector<Entry> many(2000, entryOf("2024/02/29", std::string(1000, 'x')));
    {
        tests::FaultyDisk disk(session.UserPath);
        disk.leaveRoom(300000);
        const std::string error = errorOf([&] { DiaryFile(database(), host).append(many, "mark"); });
        EXPECT_NE(error.find("空き容量"), std::string::npos) << error;
    }
    EXPECT_EQ(entries().size(), 0u);
    EXPECT_EQ(sqlValue(u"PRAGMA integrity_check"_s), u"ok"_s);
}

TEST_F(PluginDiary, KeepsItsJournalMode) {
    sql(u"PRAGMA journal_mode = TRUNCATE"_s);
    DiaryFile(database(), host).append({entryOf("2024/02/29", "a")}, "mark");
    EXPECT_FALSE(exists(session.databaseFile() + u"-wal"_s));
}

} // namespace
} // namespace velloria::plugins
