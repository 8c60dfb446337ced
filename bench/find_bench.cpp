// The find over a whole diary, beside the same statement with the LIKE that is built into SQLite, which knows neither
// kana types nor widths; and the page of what was found, beside that statement and a plain write of the page's bytes.
//
//     find_bench HOME "yyyy/mm/dd hh:nn:ss" [OPTIONS OF GOOGLE BENCHMARK]
//
// The home is a program folder with a diary, as bench/compare-find makes it.
#include "platform/file_write.h"
#include "shell/startup.h"
#include "silent_desk.h"
#include "site/find_page.h"
#include "store/diary_store.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QCoreApplication>

#include <fstream>

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

void plainPage(const QByteArray& file, const QByteArray& word, const std::string& path, const QByteArray& page) {
    benchmark::DoNotOptimize(plainFind(file, word));
    std::ofstream(path, std::ios::binary).write(page.constData(), page.size());
}

void addWord(const core::Run& run, const Word& word) {
    const core::Session& session = run.session;
    const QString file = session.databaseFile();
    const auto add = [&](const char* what, auto find) {
        const std::string name = std::string(what) + '/' + word.name;
        benchmark::RegisterBenchmark(name.c_str(), [find](benchmark::State& state) {
            for (auto _ : state)
                benchmark::DoNotOptimize(find());
        })->Unit(benchmark::kMillisecond);
    };
    add("findEntries", [run, text = word.text] {
        qsizetype count = 0;
        store::DiaryStore(run).FindEntries({text, std::nullopt}, [&](store::Entry&) { ++count; });
        return count;
    });
    add("plainLike", [file = file.toUtf8(), text = word.text.toUtf8()] { return plainFind(file, text); });
    const auto makePage = [run, word = word.text] {
        return site::MakeFindPage(run, run.session.DataPath + u"findtmp.htm"_s, {word, {}, {}});
    };
    makePage();
    const QByteArray page = platform::readFile(session.DataPath + u"findtmp.htm"_s);
    add("findPage", makePage);
    add("plainPage", [=, file = file.toUtf8(), text = word.text.toUtf8(),
                      path = (session.DataPath + u"plaintmp.htm"_s).toStdString()] {
        plainPage(file, text, path, page);
        return page.size();
    });
}

} // namespace
} // namespace velloria::bench

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        qCritical("usage: find_bench HOME \"yyyy/mm/dd hh:nn:ss\"");
        return 2;
    }
    const velloria::platform::FixedClock clock(QDateTime::fromString(arguments[2], u"yyyy/MM/dd HH:mm:ss"_s));
    velloria::core::Session session;
    velloria::bench::SilentDesk desk;
    const velloria::core::Run run{session, clock, desk};
    velloria::shell::Startup(run).run(arguments[1] + u'/', std::nullopt);
    for (const auto& word : velloria::bench::kWords)
        velloria::bench::addWord(run, word);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
