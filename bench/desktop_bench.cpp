// What somebody waits for in the windows: a day that opens, an entry that is saved and shown, a key in a long text.
//
//     scripts/with-display desktop_bench HOME DAY OTHER_DAY [OPTIONS OF GOOGLE BENCHMARK]
//
// HOME is a program folder with a diary in it; both days must have entries. The pages are written, and the browser
// stays out, but for the page that shows a change of the look: that is over when the page is there.
#include "browser/forms/frmHTMLBrowser.h"
#include "core/keys.h"
#include "core/settings_change.h"
#include "desktop/context.h"
#include "desktop/text_pane.h"
#include "editor/forms/frmCalender.h"
#include "editor/forms/frmContents.h"
#include "shell/forms/desktop_start.h"
#include "silent_desk.h"
#include "site/forms/frmCustomize.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QCheckBox>
#include <QDateTime>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTextCursor>
#include <QWebEngineScript>
#include <QWebEngineView>

#include <optional>

using namespace Qt::StringLiterals;

namespace velloria::bench {
namespace {

/// Serves what the commands left waiting, drawing too, as a person would see it.
void settle() {
    QApplication::sendPostedEvents();
    QApplication::processEvents();
}

void openDay(benchmark::State& state, desktop::Context& context, const QStringList& days) {
    auto& calendar = context.windows.get<editor::frmCalender>();
    qsizetype turn = 0;
    for (auto _ : state) {
        calendar.Calender_DateClick(QDate::fromString(days[turn++ % days.size()], u"yyyy/MM/dd"_s));
        settle();
    }
}

void saveAndPreview(benchmark::State& state, desktop::Context& context, const QString& day) {
    context.windows.get<editor::frmCalender>().Calender_DateClick(QDate::fromString(day, u"yyyy/MM/dd"_s));
    auto& contents = context.windows.get<editor::frmContents>();
    for (auto _ : state)
        contents.Btn5Click_ToolBar();
}

void typeInto(benchmark::State& state, desktop::Context& context, const QString& day) {
    context.windows.get<editor::frmCalender>().Calender_DateClick(QDate::fromString(day, u"yyyy/MM/dd"_s));
    auto& contents = context.windows.get<editor::frmContents>();
    auto* pane = contents.findChild<desktop::TextPane*>(u"txtContents"_s);
    const QString line = QString(79, u'あ') + u'\n';
    pane->setPlainText(line.repeated(int(state.range(0)) / 80));
    pane->moveCursor(QTextCursor::End);
    settle();
    for (auto _ : state) {
        pane->insertPlainText(u"x"_s);
        settle();
    }
    context.windows.unload<editor::frmContents>(); // nobody is there to be asked
}

/// When the page that is shown had its whole text, in milliseconds since the epoch.
double readySince(QWebEnginePage& page) {
    std::optional<double> ready;
    page.runJavaScript(
        u"performance.timeOrigin + performance.getEntriesByType('navigation')[0].domContentLoadedEventEnd"_s,
        QWebEngineScript::ApplicationWorld, [&](const QVariant& answer) { ready = answer.toDouble(); });
    while (!ready)
        settle();
    return *ready;
}

/// From the click to the page with all its pictures, with the set written in between.
void changeLook(benchmark::State& state, desktop::Context& context) {
    core::SettingsChange live;
    live.set(context.session, core::keys::kRealTime, u"1"_s);
    live.write();
    auto& window = context.windows.get<site::frmCustomize>();
    window.showWindow();
    while (!context.windows.find<browser::frmHTMLBrowser>())
        settle();
    auto* view = context.windows.get<browser::frmHTMLBrowser>().findChild<QWebEngineView*>();
    QEventLoop isShown;
    QObject::connect(view, &QWebEngineView::loadFinished, &isShown, &QEventLoop::quit);
    isShown.exec();
    auto* genre = window.findChild<QCheckBox*>(u"chkGenre"_s);
    QElapsedTimer click;
    qint64 busyNs = 0;  // when the window takes the next key
    double readyMs = 0; // when the page has its text
    for (auto _ : state) {
        const qint64 clicked = QDateTime::currentMSecsSinceEpoch();
        click.start();
        genre->click();
        busyNs += click.nsecsElapsed();
        isShown.exec();
        state.PauseTiming();
        readyMs += readySince(*view->page()) - double(clicked);
        state.ResumeTiming();
    }
    state.counters["ready_ms"] = benchmark::Counter(readyMs, benchmark::Counter::kAvgIterations);
    state.counters["busy_ms"] = benchmark::Counter(double(busyNs) / 1e6, benchmark::Counter::kAvgIterations);
    window.reject();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace
} // namespace velloria::bench

int main(int argc, char** argv) {
    using namespace velloria;
    benchmark::Initialize(&argc, argv);
    const QApplication application(argc, argv);
    const QStringList words = QApplication::arguments();
    if (words.size() != 4) {
        qCritical("usage: desktop_bench HOME DAY OTHER_DAY");
        return 2;
    }
    core::Session session;
    const platform::SystemClock clock;
    bench::SilentDesk desk;
    desktop::Context context{{session, clock, desk}};
    if (shell::startDesktop(context, words[1]) == shell::StartResult::Ended)
        return 1;
    benchmark::RegisterBenchmark("openDay", bench::openDay, std::ref(context), words.mid(2))
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("saveAndPreview", bench::saveAndPreview, std::ref(context), words[2])
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("changeLook", bench::changeLook, std::ref(context))->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("typeInto", bench::typeInto, std::ref(context), words[2])
        ->Arg(2'000)
        ->Arg(200'000)
        ->Arg(2'000'000)
        ->Unit(benchmark::kMillisecond);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
