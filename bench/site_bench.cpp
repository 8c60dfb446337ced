// Save HTML and the preview of one month, in a small and in a large diary, beside a plain program that runs the same
// queries and writes the same bytes.
//
//     site_bench HOME_OF_SMALL_DIARY HOME_OF_LARGE_DIARY "yyyy/mm/dd hh:nn:ss" [OPTIONS OF GOOGLE BENCHMARK]
//
// The homes are program folders with a diary each, as bench/compare-month makes them; their customize set is replaced.
#include "core/day_key.h"
#include "platform/file_write.h"
#include "shell/startup.h"
#include "site/month_page.h"
#include "site/save_html.h"

#include "plain_month.h"
#include "silent_desk.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace velloria::bench {
namespace {

/// A started home whose site lies in the folder "site" beside it.
class Home {
public:
    Home(const QString& folder, const QDateTime& now)
        : m_clock(now) {
        shell::Startup(m_run).run(folder + u'/', std::nullopt);
        platform::replaceFile(m_session.CustIniFile, QByteArray(kPlainSettings), platform::Durability::Derived);
        m_session.FilePath = folder + u"/../site/"_s;
        m_session.FileName = u"index.htm"_s;
        platform::makeFolder(m_session.FilePath);
    }

    void saveHtml() { site::SaveHtml(m_run).SaveHTML(); }
    void savePreview() { site::SaveHtml(m_run).SaveTmpFile(); }
    void makeMonthPage() {
        site::MonthPage(m_run).MakeHTML(page(), core::monthOf(m_session.Today), site::PageKind::Current,
                                        site::MakeList::Yes, site::WithPrivate::No);
    }

    PlainMonth plainSave() const {
        return {m_session.databaseFile().toStdString(),
                m_session.Today.left(4).toStdString(),
                m_session.Today.mid(5, 2).toStdString(),
                m_session.FilePath.chopped(1).toStdString(),
                "index.htm",
                (m_session.UserPath + u"upload.tmp"_s).toStdString(),
                false};
    }
    PlainMonth plainPreview() const {
        PlainMonth month = plainSave();
        month.folder = m_session.DataPath.chopped(1).toStdString();
        month.name = "tmp.htm";
        month.uploadList = "";
        month.withPrivate = true;
        return month;
    }

    QByteArray savedBytes() const { return platform::readFile(page()) + platform::readFile(list()); }
    QByteArray previewBytes() const { return platform::readFile(m_session.DataPath + u"tmp.htm"_s); }

private:
    QString page() const { return m_session.FilePath + m_session.FileName; }
    QString list() const { return m_session.UserPath + u"upload.tmp"_s; }

    platform::FixedClock m_clock;
    core::Session m_session;
    SilentDesk m_desk;
    const core::Run m_run{m_session, m_clock, m_desk};
};

template <typename Action>
void add(const std::string& name, Action action) {
    benchmark::RegisterBenchmark(name.c_str(), [action](benchmark::State& state) {
        for (auto _ : state)
            action();
    })->Unit(benchmark::kMillisecond);
}

void compare(const std::string& size, Home& home) {
    home.saveHtml();
    home.savePreview();
    const QByteArray saved = home.savedBytes();
    const QByteArray preview = home.previewBytes();
    writePlainMonth(home.plainSave());
    writePlainMonth(home.plainPreview());
    if (home.savedBytes() != saved || home.previewBytes() != preview)
        throw std::runtime_error("the plain program writes other bytes");
    add("saveHtml/" + size, [&home] { home.saveHtml(); });
    add("plainSaveHtml/" + size, [month = home.plainSave()] { writePlainMonth(month); });
    add("monthPage/" + size, [&home] { home.makeMonthPage(); });
    add("preview/" + size, [&home] { home.savePreview(); });
    add("plainPreview/" + size, [month = home.plainPreview()] { writePlainMonth(month); });
}

} // namespace
} // namespace velloria::bench

int main(int argc, char** argv) {
    using velloria::bench::Home;
    benchmark::Initialize(&argc, argv);
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QDateTime now = QDateTime::fromString(arguments.value(3), u"yyyy/MM/dd HH:mm:ss"_s);
    if (arguments.size() != 4 || !now.isValid()) {
        qCritical("usage: site_bench HOME_OF_SMALL_DIARY HOME_OF_LARGE_DIARY \"yyyy/mm/dd hh:nn:ss\"");
        return 2;
    }
    Home small(arguments[1], now);
    Home large(arguments[2], now);
    velloria::bench::compare("small", small);
    velloria::bench::compare("large", large);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
