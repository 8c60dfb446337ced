#include "blog/forms/engine_page.h"

#include "blog/forms/page_ends.h"
#include "blog/forms/page_question.h"
#include "browser/forms/frmBrowser.h"
#include "browser/forms/web_page.h"
#include "platform/launcher.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace velloria::blog {
namespace {

constexpr std::chrono::milliseconds kStep{10};
constexpr std::chrono::milliseconds kProcessEnds{30'000}; ///< that was told to: on a busy machine word of it is late
constexpr std::chrono::milliseconds kAway{1'000};
constexpr std::chrono::milliseconds kLastLook{500};

platform::Failure processGone() {
    return cantGoOn(u"ページを表示するプロセスが終了しました。"_s);
}

} // namespace

EnginePage::EnginePage(desktop::Context& context, std::chrono::milliseconds answerLimit)
    : m_context(context)
    , m_answerLimit(answerLimit) {}

EnginePage::~EnginePage() {
    endRun();
}

// ---- the run

void EnginePage::beginRun(const PageRun& run) {
    m_run = run;
    m_isRunning = true;
    const auto proposal = [ask = run.credentials](const QUrl& address) {
        const Credentials credentials = ask(address);
        return browser::Login{credentials.loginId, credentials.password};
    };
    page().isDriven = true;
    page().proposedLogin = run.credentials ? std::function<browser::Login(const QUrl&)>(proposal) : nullptr;
}

/// Whoever only shows a page while another run works in it leaves that as it is.
void EnginePage::endRun() {
    m_run = {};
    if (!std::exchange(m_isRunning, false) || !m_page)
        return;
    m_page->isDriven = false;
    m_page->proposedLogin = {};
}

browser::WebPage& EnginePage::page() {
    if (m_page)
        return *m_page;
    if (m_hasPage)
        throw cantGoOn(u"ブラウザーが閉じられました。"_s);
    m_page = &m_context.windows.get<browser::frmBrowser>().startedPage();
    m_hasPage = true;
    m_ends = std::make_unique<PageEnds>(*m_page, [this] { wake(); });
    QObject::connect(m_page, &browser::WebPage::renderProcessTerminated, &m_listener, [this] { onProcessGone(); });
    return *m_page;
}

void EnginePage::onProcessGone() {
    m_isProcessGone = true;
    wake();
}

// ---- loading

void EnginePage::bringToFront() {
    m_context.windows.get<browser::frmBrowser>().showChild();
}

void EnginePage::stop() {
    m_context.windows.get<browser::frmBrowser>().Stop();
    page();
}

void EnginePage::navigate(const QUrl& url) {
    browser::WebPage& shown = page();
    m_isProcessGone = false;
    m_ends->leaveDocument();
    shown.navigate(url);
}

PageEnd EnginePage::waitComplete(std::chrono::milliseconds limit) {
    page();
    switch (serve([this] { return m_ends->hasCome(); }, limit)) {
    case Served::Until:
        return PageEnd::Complete;
    case Served::Ending:
        return PageEnd::ProgramEnding;
    case Served::TimedOut:
        if (m_ends->isThere())
            return PageEnd::Complete;
        if (m_ends->isUnanswered())
            endHungProcess();
        return PageEnd::TimedOut;
    case Served::ProcessGone:
        break;
    }
    throw processGone();
}

QString EnginePage::problem() const {
    return m_ends ? m_ends->problem() : QString();
}

QString EnginePage::locationUrl() {
    return QString::fromLatin1(page().url().toEncoded());
}

// ---- waiting

void EnginePage::wake() {
    if (m_loop)
        m_loop->quit();
}

/// The person goes on working meanwhile, and may close any window. While a box of the page is open the time stands. A
/// box or an upload of the person's serves the events itself for as long as it takes, and nobody looks for the page:
/// what has come meanwhile is looked for before the time is over.
EnginePage::Served EnginePage::serve(const std::function<bool()>& isDone, std::chrono::milliseconds limit) {
    QElapsedTimer clock;
    clock.start();
    QElapsedTimer sinceLook = clock;
    const std::chrono::milliseconds inBoxes = page().timeInBoxes();
    const auto end = [&]() -> std::optional<Served> {
        if (!m_page)
            return Served::ProcessGone;
        if (isDone())
            return Served::Until;
        if (m_isProcessGone)
            return Served::ProcessGone;
        if (m_context.runs.isEnding())
            return Served::Ending;
        const auto passed = std::chrono::milliseconds(clock.elapsed()) - (m_page->timeInBoxes() - inBoxes);
        if (sinceLook.restart() > kAway.count())
            limit = std::max(limit, passed + kLastLook);
        if (passed >= limit)
            return Served::TimedOut;
        return std::nullopt;
    };
    QEventLoop loop;
    m_loop = &loop;
    QTimer step;
    QObject::connect(&step, &QTimer::timeout, &loop, &QEventLoop::quit);
    step.start(kStep);
    constexpr int kApplicationEnds = -1;
    for (;;) {
        if (const std::optional<Served> found = end())
            return *found;
        if (loop.exec() == kApplicationEnds)
            return Served::Ending;
    }
}

QVariant EnginePage::ask(const PageRequest& request) {
    browser::WebPage& shown = page();
    if (m_context.runs.isEnding())
        throw ProgramEnds(); // before anything is clicked
    if (m_isProcessGone)
        throw processGone();
    PageQuestion question(shown, request, [this] { wake(); });
    switch (serve([&] { return question.isSettled(); }, m_answerLimit)) {
    case Served::Until:
        break;
    case Served::ProcessGone:
        throw processGone();
    case Served::Ending:
        throw ProgramEnds();
    case Served::TimedOut:
        endHungProcess();
        throw noAnswer();
    }
    return question.answer();
}

/// A script of the page that has no end would keep its process from every other page as well.
void EnginePage::endHungProcess() {
    platform::endProcess(page().renderProcessPid());
    serve([this] { return m_isProcessGone; }, kProcessEnds);
}

/// What comes from here on is the answer to this.
void EnginePage::act(const PageRequest& request) {
    m_ends->forget();
    m_hasEmptied = ask(request).toBool();
}

// ---- what is in the page

int EnginePage::formCount() {
    return ask({.call = PageCall::FormCount}).toInt();
}

bool EnginePage::hasElement(const ElementPlace& place) {
    return ask({.call = PageCall::HasElement, .place = place}).toBool();
}

void EnginePage::setValue(const ElementPlace& place, const QString& text) {
    ask({.call = PageCall::SetValue, .place = place, .text = text, .raisesEvents = m_run.raisesEvents});
}

void EnginePage::setChecked(const ElementPlace& place, bool isChecked) {
    ask({.call = PageCall::SetChecked, .place = place, .isChecked = isChecked, .raisesEvents = m_run.raisesEvents});
}

void EnginePage::click(const ElementPlace& place) {
    act({.call = PageCall::Click, .place = place});
}

void EnginePage::submit(int form) {
    act({.call = PageCall::Submit, .index = form});
}

QStringList EnginePage::options(const ElementPlace& place) {
    return ask({.call = PageCall::Options, .place = place}).toStringList();
}

void EnginePage::selectOption(const ElementPlace& place, int index) {
    ask({.call = PageCall::Select, .place = place, .index = index, .raisesEvents = m_run.raisesEvents});
}

QStringList EnginePage::linkHosts() {
    return ask({.call = PageCall::LinkHosts}).toStringList();
}

void EnginePage::clickLink(int index) {
    act({.call = PageCall::ClickLink, .index = index});
}

} // namespace velloria::blog
