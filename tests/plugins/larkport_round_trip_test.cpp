#include "common/diary_file.h"
#include "larkport/entry_writer.h"
#include "larkport/movable_type_reader.h"
#include "platform/plugin.h"
#include "support/faulty_disk.h"
#include "support/test_home.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <QDir>
#include <QFile>

#include <algorithm>
#include <random>

using namespace Qt::StringLiterals;

namespace velloria::plugins::larkport {
namespace {

/// Makes texts that are as hard on the format as can be.
class Nasty {
public:
    explicit Nasty(unsigned seed)
        : m_random(seed) {}

    int upTo(int most) { return int(m_random() % unsigned(most + 1)); }
    bool perhaps(int outOf) { return upTo(outOf - 1) == 0; }

    std::string text() {
        static const std::vector<std::string> kParts = {"-----",
                                                        "--------",
                                                        "\r\n",
                                                        "\r\n",
                                                        "\r\n\r\n",
                                                        "\n",
                                                        "\r",
                                                        " ",
                                                        "\t",
                                                        "日記",
                                                        "漢字かな交じり文。",
                                                        "😀",
                                                        "TITLE: x",
                                                        "STATUS: Draft",
                                                        "BODY:",
                                                        "EXTENDED BODY:",
                                                        "COMMENT:",
                                                        "PING:",
                                                        "CATEGORY: y",
                                                        "DATE: 01/01/2001",
                                                        "KEYWORDS:",
                                                        "EXCERPT:",
                                                        "AUTHOR: z",
                                                        "VELLORIA TEXT: 1",
                                                        "CF50_x:",
                                                        "START BODY:",
                                                        "NO ENTRY: 1",
                                                        "0",
                                                        "<p>",
                                                        "</p>",
                                                        "<br>",
                                                        "<pre>",
                                                        "</pre>",
                                                        "<b>",
                                                        "</b>",
                                                        "<table>",
                                                        "</table>",
                                                        "<li>",
                                                        "<!-- -->",
                                                        "<p><!-- -->",
                                                        "<!--\n-->",
                                                        "<!--\r\n-->",
                                                        "<!--",
                                                        "-->",
                                                        "<a href=\"",
                                                        "\">",
                                                        "<img\r\nalt='",
                                                        "'>",
                                                        "<",
                                                        ">",
                                                        "&amp;",
                                                        "&",
                                                        "<script>",
                                                        "</script>",
                                                        "<textarea>",
                                                        "</textarea>",
                                                        "<style>",
                                                        "</style>",
                                                        "------",
                                                        "----- ",
                                                        " -----",
                                                        "-----\t",
                                                        "--------\t",
                                                        std::string(1, '\0'),
                                                        "\x0B",
                                                        "\x7F",
                                                        "\xEF\xBB\xBF",
                                                        "　",
                                                        "\\",
                                                        "\\n",
                                                        "Key: v",
                                                        "a",
                                                        "b c",
                                                        "\xF4\x8F\xBF\xBF",
                                                        "\xC2\x80"};
        std::string text;
        for (int count = upTo(25); count > 0; --count) {
            text += kParts[std::size_t(upTo(int(kParts.size()) - 1))];
            if (perhaps(3))
                text += "\r\n";
        }
        if (perhaps(20))
            text += std::string(std::size_t(upTo(20000)), perhaps(2) ? ' ' : 'x');
        if (perhaps(20))
            for (int count = upTo(4000); count > 0; --count)
                text += "長い行";
        return text;
    }

    std::optional<std::string> perhapsText() {
        if (perhaps(6))
            return std::nullopt;
        return perhaps(5) ? std::string() : text();
    }

    std::string day() {
        static const std::vector<std::string> kDays = {"2024/02/29", "2024/02/29", "0100/01/01", "9999/12/31"};
        if (perhaps(2))
            return kDays[std::size_t(upTo(3))];
        return DateTime2{1990 + upTo(40), 1 + upTo(11), 1 + upTo(27)}.key();
    }

    Entry entry() {
        Entry entry{day()};
        entry.title = perhapsText();
        entry.contents = perhapsText();
        entry.extend = perhapsText();
        entry.excerpt = perhapsText();
        entry.weather = perhaps(2) ? "-" : perhapsText();
        entry.genre = perhaps(2) ? "一般" : perhapsText();
        entry.publishTime = perhaps(3) ? entry.day + " 01:02:03" : perhaps(3) ? "2024/02/29 23:59:59" : perhapsText();
        entry.isPrivate = perhaps(3);
        return entry;
    }

private:
    struct DateTime2 {
        int year, month, day;
        std::string key() const {
            char text[40];
            std::snprintf(text, sizeof text, "%04d/%02d/%02d", year, month, day);
            return text;
        }
    };

    std::mt19937 m_random;
};

class LarkportPlugin : public tests::TestHome {
protected:
    LarkportPlugin() {
        const auto begin = [this](const platform::ImportPlan& plan) -> std::optional<QString> {
            shown = plan;
            return saysYes ? std::optional(u"2026/11/23 Larkport"_s) : std::nullopt;
        };
        host = std::make_unique<platform::PluginHost>(desk, begin);
    }

    std::string database() const { return session.databaseFile().toStdString(); }
    std::vector<Entry> entries() const {
        const Host nobody(nullptr);
        std::vector<Entry> all;
        DiaryFile(database(), nobody).read([&](const Entry& entry) { all.push_back(entry); });
        return all;
    }
    void fill(const std::vector<Entry>& all) const {
        const Host nobody(nullptr);
        DiaryFile(database(), nobody).append(all, "");
    }
    void empty() { sql(u"DELETE FROM Contents"_s); }

    using Calls = std::function<void(const velloria_movable_type_exchange&, void*)>;
    /// What went wrong, "" when nothing did.
    QString with(const Calls& calls) {
        return tests::failureOf([&] { plugin.use(&velloria_plugin::movable_type_exchange, *host, calls); });
    }
    QString exports(const QString& file, const char* user = "") {
        return with([&](const velloria_movable_type_exchange& exchange, void* object) {
            int32_t isAccepted = 0;
            plugin.check(exchange.connect(object, database().c_str()));
            plugin.check(exchange.prepare_export(object));
            plugin.check(exchange.open_file(object, file.toUtf8().constData(), &isAccepted, 1));
            EXPECT_EQ(isAccepted, 1);
            plugin.check(exchange.set_user_id(object, user));
            EXPECT_TRUE(plugin.check(exchange.write_entries(object)));
            EXPECT_TRUE(plugin.check(exchange.finish(object)));
        });
    }
    QString imports(
        const QString& file, const std::function<void()>& beforeFinish = [] {}) {
        return with([&](const velloria_movable_type_exchange& exchange, void* object) {
            int32_t isAccepted = 0;
            plugin.check(exchange.connect(object, database().c_str()));
            plugin.check(exchange.prepare_import(object));
            plugin.check(exchange.open_file(object, file.toUtf8().constData(), &isAccepted, 0));
            EXPECT_EQ(isAccepted, 1);
            if (!plugin.check(exchange.read_entries(object)))
                return;
            beforeFinish();
            EXPECT_TRUE(plugin.check(exchange.finish(object)));
        });
    }

    const platform::Plugin plugin{QStringLiteral(VELLORIA_PROGRAM_FOLDER "/Larkport.dll")};
    std::unique_ptr<platform::PluginHost> host;
    platform::ImportPlan shown;
    bool saysYes = true;
};

Entry plainEntry(const std::string& day, const std::string& title) {
    return {day, title, "text", "", "", "-", "一般", day + " 01:02:03", false};
}

std::string differenceOf(const Entry& one, const Entry& other) {
    std::string names;
    const auto compare = [&](const char* name, const auto& left, const auto& right) {
        if (left != right)
            names += std::string(name) + " ";
    };
    compare("day", one.day, other.day);
    compare("title", one.title, other.title);
    compare("contents", one.contents, other.contents);
    compare("extend", one.extend, other.extend);
    compare("excerpt", one.excerpt, other.excerpt);
    compare("weather", one.weather, other.weather);
    compare("genre", one.genre, other.genre);
    compare("publishTime", one.publishTime, other.publishTime);
    compare("isPrivate", one.isPrivate, other.isPrivate);
    return names;
}

TEST_F(LarkportPlugin, TellsItsVersion) {
    EXPECT_EQ(plugin.version(), u"1.0.0"_s);
}

/// A random diary in the order in which a file has it.
std::vector<Entry> randomDiary(unsigned seed) {
    Nasty nasty(seed);
    std::vector<Entry> diary;
    for (int count = 1 + nasty.upTo(seed % 50 == 0 ? 100 : 4); count > 0; --count)
        diary.push_back(nasty.entry());
    std::stable_sort(diary.begin(), diary.end(),
                     [](const Entry& left, const Entry& right) { return left.day < right.day; });
    return diary;
}

void expectSame(const std::vector<Entry>& back, const std::vector<Entry>& diary, unsigned seed) {
    ASSERT_EQ(back.size(), diary.size()) << seed;
    for (std::size_t at = 0; at < diary.size(); ++at)
        ASSERT_EQ(differenceOf(back[at], diary[at]), "") << "seed " << seed << " entry " << at;
}

TEST(LarkportRoundTrip, BringsBackEveryDiary) {
    for (unsigned seed = 1; seed <= 500; ++seed) {
        const std::vector<Entry> diary = randomDiary(seed);
        EntryWriter writer("");
        std::string file;
        for (const Entry& entry : diary)
            file += writer.text(entry);
        expectSame(readMovableType(file, {}, [] {}).entries, diary, seed);
        ASSERT_EQ(file.find('\r'), std::string::npos) << seed;
        for (std::size_t begin = 0; begin < file.size();) {
            const std::size_t end = file.find('\n', begin);
            ASSERT_LT(end - begin, 8000u) << seed;
            begin = end + 1;
        }
    }
}

TEST_F(LarkportPlugin, BringsBackEveryDiary) {
    const QString file = path(u"out.txt"_s);
    for (unsigned seed = 10; seed <= 500; seed += 10) {
        const std::vector<Entry> diary = randomDiary(seed);
        empty();
        fill(diary);
        ASSERT_EQ(exports(file), QString()) << seed;
        empty();
        ASSERT_EQ(imports(file), QString()) << seed;
        expectSame(entries(), diary, seed);
    }
}

TEST_F(LarkportPlugin, WritesAFormThatEveryReaderTakes) {
    Entry first = plainEntry("2024/02/28", "冬の散歩: 川まで");
    first.contents = "<p>a</p>\r\n\r\nb\r\n\r\nc\r\n-----";
    first.weather = "晴れ";
    first.genre = "散歩";
    Entry second = plainEntry("2024/02/28", "");
    second.extend = std::nullopt;
    second.isPrivate = true;
    fill({first, second});
    EXPECT_EQ(exports(path(u"out.txt"_s), "hanako"), QString());
    EXPECT_EQ(QString::fromUtf8(bytesOf(path(u"out.txt"_s))),
              u"AUTHOR: hanako\nTITLE: 冬の散歩: 川まで\nSTATUS: Publish\nCONVERT BREAKS: 0\nPRIMARY CATEGORY: 散歩\n"
              "CATEGORY: 散歩\nDATE: 02/28/2024 01:02:03 AM\nVELLORIA TEXT: 1\nVELLORIA WEATHER: 晴れ\n-----\nBODY:\n"
              "<p>a</p>\n\nb\n\n<p><!-- -->c\n<!-- -->-----\n-----\nEXTENDED BODY:\n\n-----\nEXCERPT:\n\n-----\n-----\n"
              "--------\n"
              "AUTHOR: hanako\nTITLE: \nSTATUS: Draft\nCONVERT BREAKS: 0\nPRIMARY CATEGORY: 一般\nCATEGORY: 一般\n"
              "DATE: 02/28/2024 01:02:04 AM\nVELLORIA TEXT: 1\nVELLORIA MISSING: EXTENDED BODY\n"
              "VELLORIA TIME: 2024/02/28 01:02:03\n-----\nBODY:\ntext\n-----\nEXCERPT:\n\n-----\n-----\n--------\n"_s);
    EXPECT_EQ(lastStatus(), u"2件の日記を書き出しました。"_s);
}

TEST_F(LarkportPlugin, TakesWhatWasChangedByHandInItsFile) {
    Entry entry = plainEntry("2024/02/28", "a\r\nb");
    entry.contents = "one\ntwo"; // an odd line end: told beside the text
    fill({entry});
    EXPECT_EQ(exports(path(u"out.txt"_s)), QString());
    QByteArray bytes = bytesOf(path(u"out.txt"_s));
    EXPECT_TRUE(bytes.contains("VELLORIA BODY: one\\ntwo\n")) << bytes.constData();
    bytes.replace("\none\n", "\n1\n").replace("TITLE: a  b", "TITLE: new").replace("STATUS: Publish", "STATUS: Draft");
    writeFile(path(u"changed.txt"_s), bytes);
    empty();
    EXPECT_EQ(imports(path(u"changed.txt"_s)), QString());
    EXPECT_EQ(entries().front().contents, "1\r\ntwo");
    EXPECT_EQ(entries().front().title, "new");
    EXPECT_TRUE(entries().front().isPrivate);
}

TEST_F(LarkportPlugin, HasTwoThousandEntriesADayAndATitleOfAMegabyte) {
    std::vector<Entry> diary(2000, plainEntry("2024/02/28", ""));
    diary.push_back(plainEntry("2024/02/29", std::string(1 << 20, 'x')));
    fill(diary);
    EXPECT_EQ(exports(path(u"out.txt"_s)), QString());
    EXPECT_EQ(bytesOf(path(u"out.txt"_s)).count("DATE: 02/28/2024 01:02:03 AM"), 1);
    empty();
    EXPECT_EQ(imports(path(u"out.txt"_s)), QString());
    EXPECT_TRUE(entries() == diary);
}

TEST(LarkportRoundTrip, HasMoreEntriesADayThanSeconds) {
    EntryWriter writer("");
    std::string text;
    for (int count = 0; count < 87000; ++count)
        text += writer.text(plainEntry("2024/02/28", std::to_string(count)));
    const ReadDiary diary = readMovableType(text, {}, [] {});
    ASSERT_EQ(diary.entries.size(), 87000u);
    for (std::size_t count = 0; count < diary.entries.size(); ++count)
        ASSERT_EQ(diary.entries[count].title, std::to_string(count));
}

TEST(LarkportRoundTrip, HasALongTextThatStandsBesideItsSafeForm) {
    Entry entry = plainEntry("2024/02/29", "");
    entry.contents = "";
    while (entry.contents->size() < 4000000)
        *entry.contents += "行\n";
    EntryWriter writer("");
    const ReadDiary diary = readMovableType(writer.text(entry), {}, [] {});
    ASSERT_EQ(diary.entries.size(), 1u);
    EXPECT_TRUE(diary.entries[0].contents == entry.contents);
}

TEST_F(LarkportPlugin, AsksBeforeItWritesAndMarksWhatItHasWritten) {
    write(u"2024/01/31"_s, u"old"_s);
    const QString sample = QStringLiteral(VELLORIA_TEST_DATA "/exchange/movable_type/mt-full.txt");
    saysYes = false;
    EXPECT_EQ(imports(sample), QString());
    EXPECT_EQ(entries().size(), 1u);
    EXPECT_EQ(shown.program, u"Larkport"_s);
    EXPECT_EQ(shown.days, (QStringList{u"2024/01/31"_s, u"2024/02/01"_s}));
    EXPECT_TRUE(shown.notes.contains(u"コメント 2件"_s)) << shown.notes.toStdString();
    saysYes = true;
    EXPECT_EQ(imports(sample), QString());
    EXPECT_EQ(entries().size(), 3u);
    EXPECT_EQ(sqlValue(u"SELECT group_concat(Number || Title || ImportMark) FROM Contents WHERE Day = '2024/01/31'"_s),
              u"1old,2冬の散歩: 川まで2026/11/23 Larkport"_s);
}

TEST_F(LarkportPlugin, KeepsCommentsAsItsSettingsSay) {
    const QString sample = QStringLiteral(VELLORIA_TEST_DATA "/exchange/movable_type/mt-full.txt");
    writeFile(session.UserPath + u"Larkport.ini"_s, "[Import]\r\nComments=keep\r\n");
    EXPECT_EQ(imports(sample), QString());
    EXPECT_NE(entries().front().extend->find("コメント: 太郎"), std::string::npos);
    EXPECT_EQ(entries().front().extend->find("トラックバック"), std::string::npos);
    writeFile(session.UserPath + u"Larkport.ini"_s, "[Import]\r\nComments=perhaps\r\n");
    EXPECT_TRUE(imports(sample).contains(u"Comments=perhaps"_s));
    EXPECT_EQ(entries().size(), 2u);
}

TEST_F(LarkportPlugin, AcceptsNoFileThatItCantUse) {
    QString failure;
    const auto isAccepted = [&](const QString& file, bool isExport) {
        int32_t accepted = 7;
        failure = with([&](const velloria_movable_type_exchange& exchange, void* object) {
            plugin.check(exchange.open_file(object, file.toUtf8().constData(), &accepted, isExport));
        });
        return accepted;
    };
    EXPECT_EQ(isAccepted(path(u"missing.txt"_s), false), 0);
    EXPECT_EQ(isAccepted(home.path(), false), 0);
    EXPECT_EQ(isAccepted(home.path(), true), 0);
    EXPECT_EQ(isAccepted(path(u"no/folder/out.txt"_s), true), 0);
    EXPECT_EQ(failure, QString()) << "a place that can't be used is a no";
    EXPECT_EQ(isAccepted(path(u"out.txt"_s), true), 1);
    EXPECT_FALSE(exists(path(u"out.txt"_s)));
    writeFile(path(u"none.txt"_s), "nothing of the kind");
    EXPECT_TRUE(imports(path(u"none.txt"_s)).contains(u"Movable Typeの形式のテキストではありません"_s));
    QFile large(path(u"large.txt"_s));
    ASSERT_TRUE(large.open(QIODevice::WriteOnly) && large.resize(qint64(1) << 30));
    EXPECT_EQ(isAccepted(path(u"large.txt"_s), false), 0);
    EXPECT_TRUE(tests::holdsForNobody([&] {
        QFile::setPermissions(path(u"none.txt"_s), {});
        return isAccepted(path(u"none.txt"_s), false) == 0;
    }));
}

TEST_F(LarkportPlugin, WritesNothingOfAnEmptyDiary) {
    EXPECT_TRUE(exports(path(u"out.txt"_s)).contains(u"書き出す日記がありません"_s));
    EXPECT_FALSE(exists(path(u"out.txt"_s)));
    sql(u"INSERT INTO Contents (Day) VALUES ('2024/02/31')"_s);
    EXPECT_TRUE(exports(path(u"out.txt"_s)).contains(u"日付が正しくありません"_s));
    fill({plainEntry("2024/02/28", "a")});
    EXPECT_EQ(exports(path(u"out.txt"_s)), QString());
    EXPECT_TRUE(lastStatus().contains(u"日付が正しくない1件は書き出していません"_s)) << lastStatus().toStdString();
    EXPECT_TRUE(boxes().value(0).contains(lastStatus())) << boxes().join(u'\n').toStdString();
}

TEST_F(LarkportPlugin, LeavesNoHalfFileOnAFullDisk) {
    fill(std::vector<Entry>(500, plainEntry("2024/02/28", std::string(1000, 'x'))));
    QDir().mkdir(path(u"full"_s));
    tests::FaultyDisk disk(path(u"full"_s));
    disk.leaveRoom(100000);
    const QString failure = exports(path(u"full/out.txt"_s));
    EXPECT_TRUE(failure.contains(u"空き容量を増やして"_s)) << failure.toStdString();
    EXPECT_TRUE(QDir(path(u"full"_s)).isEmpty(QDir::Files | QDir::Hidden));
}

TEST_F(LarkportPlugin, ImportsAllOrNothing) {
    fill({plainEntry("2024/02/27", "old")});
    const std::vector<Entry> before = entries();
    fill(std::vector<Entry>(500, plainEntry("2024/02/28", std::string(1000, 'x'))));
    EXPECT_EQ(exports(path(u"out.txt"_s)), QString());
    sql(u"DELETE FROM Contents WHERE Day = '2024/02/28'"_s);
    sql(u"VACUUM"_s);
    {
        tests::FaultyDisk disk(session.UserPath);
        const QString failure = imports(path(u"out.txt"_s), [&] { disk.leaveRoom(100000); });
        EXPECT_TRUE(failure.contains(u"空き容量を増やして"_s)) << failure.toStdString();
    }
    EXPECT_TRUE(entries() == before);
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(database().c_str(), &other), SQLITE_OK);
    const QString failure =
        imports(path(u"out.txt"_s), [&] { sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr); });
    EXPECT_TRUE(failure.contains(u"他のプログラムが使用中です"_s)) << failure.toStdString();
    sqlite3_close(other);
    EXPECT_TRUE(entries() == before);
    EXPECT_EQ(imports(path(u"out.txt"_s)), QString());
    EXPECT_EQ(entries().size(), 502u);
}

TEST_F(LarkportPlugin, RefusesCallsOutOfTurn) {
    EXPECT_NE(with([&](const velloria_movable_type_exchange& exchange, void* object) {
                  plugin.check(exchange.connect(object, "/no/diary.mdb"));
              }),
              QString());
    EXPECT_NE(with([&](const velloria_movable_type_exchange& exchange, void* object) {
                  plugin.check(exchange.finish(object));
              }),
              QString());
    EXPECT_NE(with([&](const velloria_movable_type_exchange& exchange, void* object) {
                  plugin.check(exchange.write_entries(object));
              }),
              QString());
    EXPECT_NE(with([&](const velloria_movable_type_exchange& exchange, void* object) {
                  plugin.check(exchange.read_entries(object));
              }),
              QString());
}

} // namespace
} // namespace velloria::plugins::larkport
