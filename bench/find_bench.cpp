// The find over a whole diary, beside the same statement with the LIKE that is built into SQLite, which knows neither
// kana types nor widths.
//
//     find_bench DIARY_DATABASE [OPTIONS OF GOOGLE BENCHMARK]
#include "platform/clock.h"
#include "store/diary_store.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace velloria::bench {
namespace {

struct Word {
    const char* name;
    QString text;
};

const Word kWords[] = {
    {"hiragana", u"かまくら"_s}, {"katakana", u"ラジオ体操"_s}, {"kanji", u"旅行"_s},
    {"ascii", u"house"_s},       {"hits", u"葉桜"_s},
};

/// Opens, searches, reads what it found and closes, as the store does. Returns the number of bytes read.
qint64 plainFind(const QByteArray& file, const QByteArray& word) {
    sqlite3* database = nullptr;
    sqlite3_open_v2(file.constData(), &database, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_stmt* rows = nullptr;
    sqlite3_prepare_v2(database,
                       "SELECT Day, Number, Title, Contents, Extend, NULL, Weather, Genre, NULL, Private, NULL FROM "
                       "Contents WHERE (Contents LIKE ?1 OR Title LIKE ?1) AND (?2 IS NULL OR Genre LIKE ?2) "
                       "ORDER BY Day DESC, Number",
                       -1, &rows, nullptr);
    const QByteArray pattern = '%' + word + '%';
    sqlite3_bind_text(rows, 1, pattern.constData(), int(pattern.size()), SQLITE_STATIC);
    qint64 bytes = 0;
    while (sqlite3_step(rows) == SQLITE_ROW) {
        for (int column = 0; column < sqlite3_column_count(rows); ++column) {
            const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(rows, column));
            bytes += QByteArray(text, sqlite3_column_bytes(rows, column)).size();
        }
    }
    sqlite3_finalize(rows);
    sqlite3_close(database);
    return bytes;
}

void addWord(const QString& file, const Word& word) {
    const auto add = [&](const char* what, auto find) {
        const std::string name = std::string(what) + '/' + word.name;
        benchmark::RegisterBenchmark(name.c_str(), [find](benchmark::State& state) {
            for (auto _ : state)
                benchmark::DoNotOptimize(find());
        })->Unit(benchmark::kMillisecond);
    };
    add("findEntries", [file, text = word.text] {
        const platform::SystemClock clock;
        return store::DiaryStore(file, clock).FindEntries({text, std::nullopt}).size();
    });
    add("plainLike", [file = file.toUtf8(), text = word.text.toUtf8()] { return plainFind(file, text); });
}

} // namespace
} // namespace velloria::bench

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    const QCoreApplication application(argc, argv);
    if (QCoreApplication::arguments().size() != 2) {
        qCritical("usage: find_bench DIARY_DATABASE");
        return 2;
    }
    for (const auto& word : velloria::bench::kWords)
        velloria::bench::addWord(QCoreApplication::arguments()[1], word);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
