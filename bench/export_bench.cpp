// The export of a diary into one file and into a file for each day, through both forms of the text.
//
//     export_bench HOME_OF_DIARY FOLDER_FOR_THE_FILES [OPTIONS OF GOOGLE BENCHMARK]
//
// The home is a program folder with a diary, as bench/compare-find makes it. Bytes a second are those that were
// written.
#include "exchange/export.h"
#include "platform/file_write.h"
#include "shell/startup.h"
#include "silent_desk.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDirIterator>

using namespace Qt::StringLiterals;

namespace velloria::bench {
namespace {

class Diary {
public:
    Diary(const QString& home, const QString& folder)
        : m_folder(folder + u'/') {
        shell::Startup(m_run).run(home + u'/', std::nullopt);
        platform::makeFolder(m_folder);
    }

    exchange::ExportCounts write(exchange::ExportContents contents, exchange::ExportUnit unit) {
        exchange::ExportSettings settings;
        settings.period = {store::Period::Kind::Between, u"0000/00/00"_s, u"9999/99/99"_s};
        settings.contents = contents;
        settings.unit = unit;
        exchange::clsExport work(m_run, settings);
        work.run(unit == exchange::ExportUnit::OneFile ? m_folder + u"all.txt"_s : m_folder);
        return work.counts();
    }

    qint64 bytes(exchange::ExportUnit unit) const {
        qint64 sum = 0;
        QDirIterator files(m_folder, QDir::Files);
        while (files.hasNext()) {
            files.next();
            const bool isAll = files.fileName() == u"all.txt"_s;
            sum += isAll == (unit == exchange::ExportUnit::OneFile) ? files.fileInfo().size() : 0;
        }
        return sum;
    }

private:
    platform::SystemClock m_clock;
    core::Session m_session;
    SilentDesk m_desk;
    const core::Run m_run{m_session, m_clock, m_desk};
    QString m_folder;
};

void add(const std::string& name, Diary& diary, exchange::ExportContents contents, exchange::ExportUnit unit) {
    benchmark::RegisterBenchmark(name.c_str(), [&diary, contents, unit](benchmark::State& state) {
        int entries = 0;
        for (auto _ : state)
            entries = diary.write(contents, unit).entries;
        state.SetBytesProcessed(state.iterations() * diary.bytes(unit));
        state.counters["entries"] = entries;
    })->Unit(benchmark::kMillisecond);
}

} // namespace
} // namespace velloria::bench

int main(int argc, char** argv) {
    using namespace velloria;
    benchmark::Initialize(&argc, argv);
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        qCritical("usage: export_bench HOME_OF_DIARY FOLDER_FOR_THE_FILES");
        return 2;
    }
    bench::Diary diary(arguments[1], arguments[2]);
    using exchange::ExportContents;
    using exchange::ExportUnit;
    bench::add("oneFile/raw", diary, ExportContents::AsTheyAre, ExportUnit::OneFile);
    bench::add("oneFile/text", diary, ExportContents::Converted, ExportUnit::OneFile);
    bench::add("divided/raw", diary, ExportContents::AsTheyAre, ExportUnit::Divided);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
