// The find over a large diary: 100,000 texts of 1.6 KB, by the Like of this program and by the one built into SQLite,
// which knows neither kana types nor widths. Besides: folding, ordering, and what their first use costs.
#include "platform/like_pattern.h"
#include "platform/text_fold.h"
#include "platform/text_order.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QStringList>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <random>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace velloria::bench {
namespace {

using platform::LikePattern;
using platform::TextOrder;

constexpr int kTexts = 100'000;
constexpr qsizetype kBytes = 1600;

/// Diary prose with the tags, photos and addresses that entries hold.
QByteArray diaryText(std::mt19937& engine) {
    static const QStringList pieces = {u"今日は"_s,
                                       u"朝から"_s,
                                       u"天気が"_s,
                                       u"よかったので"_s,
                                       u"散歩に"_s,
                                       u"出かけた。"_s,
                                       u"デジカメで"_s,
                                       u"写真を"_s,
                                       u"何枚も"_s,
                                       u"撮って"_s,
                                       u"帰りに"_s,
                                       u"ラーメンを"_s,
                                       u"食べました！"_s,
                                       u"それから"_s,
                                       u"図書館で"_s,
                                       u"本を借りて、"_s,
                                       u"夜は"_s,
                                       u"パソコンの"_s,
                                       u"設定を"_s,
                                       u"直していた。"_s,
                                       u"<br>\r\n"_s,
                                       u"２００４年"_s,
                                       u"ﾒｰﾙ"_s,
                                       u"明日も"_s,
                                       u"<img src=\"images/dimage20040105_01.jpg\" alt=\"公園\">"_s,
                                       u"<a href=\"http://www.example.com/\">"_s};
    QByteArray text;
    while (text.size() < kBytes)
        text += pieces[qsizetype(engine() % std::mt19937::result_type(pieces.size()))].toUtf8();
    return text;
}

const std::vector<QByteArray>& texts() {
    static const std::vector<QByteArray> made = [] {
        std::mt19937 engine{2004};
        std::vector<QByteArray> list(kTexts);
        std::generate(list.begin(), list.end(), [&] { return diaryText(engine); });
        return list;
    }();
    return made;
}

/// None of the words is in a text, so that each text is read to its end.
const std::vector<std::pair<const char*, QString>>& words() {
    static const std::vector<std::pair<const char*, QString>> list = {
        {"kanji", u"旅行"_s},      {"commonKanji", u"写実"_s}, {"hiragana", u"かまくら"_s},
        {"katakana", u"ラジオ"_s}, {"ascii", u"velloria"_s},   {"commonAscii", u"house"_s},
        {"digits", u"20051224"_s}, {"wildcards", u"旅_行"_s},  {"list", u"[旅遠]行"_s},
    };
    return list;
}

QString like(const QString& word) {
    return u'%' + word + u'%';
}

/// jet_like(pattern, text), with the compiled pattern kept for the statement.
void jetLike(sqlite3_context* context, int, sqlite3_value** values) {
    auto* pattern = static_cast<LikePattern*>(sqlite3_get_auxdata(context, 0));
    if (!pattern) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(values[0]));
        pattern = new LikePattern(QString::fromUtf8(text, sqlite3_value_bytes(values[0])));
        sqlite3_set_auxdata(context, 0, pattern, [](void* kept) { delete static_cast<LikePattern*>(kept); });
        pattern = static_cast<LikePattern*>(sqlite3_get_auxdata(context, 0));
    }
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(values[1]));
    const QByteArrayView utf8(text, sqlite3_value_bytes(values[1]));
    sqlite3_result_int(context, pattern->matchesUtf8(utf8));
}

/// All texts in a table in memory.
class Database {
public:
    Database() {
        check(sqlite3_open(":memory:", &m_connection));
        check(sqlite3_exec(m_connection, "CREATE TABLE t (x TEXT); BEGIN", nullptr, nullptr, nullptr));
        sqlite3_stmt* insert = nullptr;
        check(sqlite3_prepare_v2(m_connection, "INSERT INTO t VALUES (?)", -1, &insert, nullptr));
        for (const QByteArray& text : texts()) {
            check(sqlite3_bind_text(insert, 1, text.constData(), int(text.size()), SQLITE_STATIC));
            check(sqlite3_step(insert) == SQLITE_DONE ? SQLITE_OK : SQLITE_ERROR);
            check(sqlite3_reset(insert));
        }
        sqlite3_finalize(insert);
        check(sqlite3_exec(m_connection, "COMMIT", nullptr, nullptr, nullptr));
        check(sqlite3_create_function(m_connection, "jet_like", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, jetLike,
                                      nullptr, nullptr));
    }
    ~Database() { sqlite3_close(m_connection); }
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    int count(const char* sql, const QByteArray& pattern) {
        sqlite3_stmt* statement = nullptr;
        check(sqlite3_prepare_v2(m_connection, sql, -1, &statement, nullptr));
        check(sqlite3_bind_text(statement, 1, pattern.constData(), int(pattern.size()), SQLITE_STATIC));
        check(sqlite3_step(statement) == SQLITE_ROW ? SQLITE_OK : SQLITE_ERROR);
        const int count = sqlite3_column_int(statement, 0);
        sqlite3_finalize(statement);
        return count;
    }

private:
    void check(int result) {
        if (result != SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(m_connection));
    }
    sqlite3* m_connection = nullptr;
};

Database& database() {
    static Database made;
    return made;
}

void fold(benchmark::State& state) {
    std::vector<QString> decoded;
    for (const QByteArray& text : texts())
        decoded.push_back(QString::fromUtf8(text));
    for (auto _ : state) {
        for (const QString& text : decoded)
            benchmark::DoNotOptimize(platform::fold(text));
    }
}
BENCHMARK(fold)->Unit(benchmark::kMillisecond);

void matches(benchmark::State& state, const QString& word) {
    const LikePattern pattern(like(word));
    for (auto _ : state)
        benchmark::DoNotOptimize(std::count_if(texts().begin(), texts().end(),
                                               [&](const QByteArray& text) { return pattern.matchesUtf8(text); }));
}

void query(benchmark::State& state, const char* sql, const QString& word) {
    const QByteArray pattern = like(word).toUtf8();
    database().count(sql, pattern);
    for (auto _ : state)
        benchmark::DoNotOptimize(database().count(sql, pattern));
}

void compilePattern(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(LikePattern(u"%かまくら%"));
}
BENCHMARK(compilePattern)->Unit(benchmark::kMicrosecond);

void sortNames(benchmark::State& state) {
    std::mt19937 engine{2004};
    QStringList names;
    for (int i = 0; i < 10'000; ++i)
        names += i % 2 ? u"dimage2004%1_%2.jpg"_s.arg(engine() % 1231).arg(i % 20)
                       : QString::fromUtf8(diaryText(engine).first(30));
    for (auto _ : state) {
        const TextOrder order;
        QStringList sorted = names;
        std::sort(sorted.begin(), sorted.end(),
                  [&](const QString& left, const QString& right) { return order.compare(left, right) < 0; });
        benchmark::DoNotOptimize(sorted);
    }
}
BENCHMARK(sortNames)->Unit(benchmark::kMillisecond);

/// What a process pays once cannot be measured in a loop.
void reportFirstUse() {
    const auto measure = [](const char* what, auto use) {
        const auto start = std::chrono::steady_clock::now();
        use();
        const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
        std::printf("first use of %s: %.3f ms\n", what, time.count());
    };
    measure("the fold", [] { benchmark::DoNotOptimize(platform::fold(u"あ")); });
    measure("the order", [] { benchmark::DoNotOptimize(TextOrder().compare(u"あ", u"い")); });
}

void registerQueries() {
    for (const auto& [name, word] : words()) {
        const std::string suffix = std::string("/") + name;
        const auto add = [](const std::string& benchmarkName, auto run) {
            benchmark::RegisterBenchmark(benchmarkName.c_str(), run)->Unit(benchmark::kMillisecond);
        };
        add("matchesUtf8" + suffix, [word](benchmark::State& state) { matches(state, word); });
        add("jetLikeInSqlite" + suffix,
            [word](benchmark::State& state) { query(state, "SELECT count(*) FROM t WHERE jet_like(?, x)", word); });
        if (!word.contains(u'['))
            add("likeOfSqlite" + suffix,
                [word](benchmark::State& state) { query(state, "SELECT count(*) FROM t WHERE x LIKE ?", word); });
    }
}

} // namespace
} // namespace velloria::bench

int main(int argc, char** argv) {
    velloria::bench::reportFirstUse();
    velloria::bench::registerQueries();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
