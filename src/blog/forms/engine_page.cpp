#include "blog/forms/engine_page.h"

#include "blog/forms/page_script.h"
#include "browser/forms/frmBrowser.h"
#include "browser/forms/web_page.h"
#include "platform/failure.h"
#include "platform/launcher.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <QWebEngineScript>

using namespace Qt::StringLiterals;

namespace velloria::blog {
namespace {

constexpr std::chrono::milliseconds kStep{10};

/// A click is answered before the load that it starts is told of.
constexpr std::chrono::milliseconds kLoadBegins{250};

const QString kCantGoOn = u"ブログのページを操作できません。"_s;

platform::Failure processGone() {
    return {kCantGoOn, {}, u"ページを表示するプロセスが終了しました。"_s, u"もう一度実行してください。"_s};
}

platform::Failure noAnswer() {
    return {kCantGoOn, {}, u"ページが応答しません。"_s, u"もう一度実行してください。"_s};
}

/// What the script has answered. It may come when nobody waits for it any more.
struct Answer {
    std::optional<QVariant> value;
    QPointer<QEventLoop> loop;
};

} // namespace

EnginePage::EnginePage(desktop::Context& context, std::chrono::milliseconds answerLimit)
    : m_context(context)
    , m_answerLimit(answerLimit) {
    m_frameEnd.setSingleShot(true);
    m_frameEnd.setInterval(kLoadBegins);
    QObject::connect(&m_frameEnd, &QTimer::timeout, &m_listener, [this] {
        if (m_page && !m_page->isLoading())
            onEnd();
    });
}

EnginePage::~EnginePage() {
    endRun();
}

// ---- the run

void EnginePage::beginRun(const PageRun& run) {
    m_run = run;
    expectEnd();
    const auto proposal = [ask = run.credentials](const QUrl& address) {
        const Credentials credentials = ask(address);
        return browser::Login{credentials.loginId, credentials.password};
    };
    page().isDriven = true;
    page().proposedLogin = run.credentials ? std::function<browser::Login(const QUrl&)>(proposal) : nullptr;
}

void EnginePage::endRun() {
    m_run = {};
    if (!m_page)
        return;
    m_page->isDriven = false;
    m_page->proposedLogin = {};
}

browser::WebPage& EnginePage::page() {
    if (m_page)
        return *m_page;
    if (m_hasPage)
        throw platform::Failure(kCantGoOn, {}, u"ブラウザーが閉じられました。"_s);
    m_page = &m_context.windows.get<browser::frmBrowser>().startedPage();
    m_hasPage = true;
    QObject::connect(m_page, &browser::WebPage::loadComplete, &m_listener, [this] { onEnd(); });
    QObject::connect(m_page, &browser::WebPage::frameComplete, &m_listener, [this] { onFrameEnd(); });
    QObject::connect(m_page, &browser::WebPage::renderProcessTerminated, &m_listener, [this] { onProcessGone(); });
    return *m_page;
}

void EnginePage::onEnd() {
    m_frameEnd.stop();
    m_hasEnded = true;
    wake();
}

/// A frame of the page that is being left may go on until the next one is there: its ends are not what is waited for.
void EnginePage::onFrameEnd() {
    if (!m_frameEnd.isActive())
        m_frameEnd.start();
}

/// What has ended so far is forgotten.
void EnginePage::expectEnd() {
    m_frameEnd.stop();
    m_hasEnded = false;
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
    expectEnd();
    shown.navigate(url);
}

PageEnd EnginePage::waitComplete(std::chrono::milliseconds limit) {
    page();
    const Served served = serve([this] { return m_hasEnded; }, limit);
    m_hasEnded = false;
    switch (served) {
    case Served::Until:
        return PageEnd::Complete;
    case Served::Ending:
        return PageEnd::ProgramEnding;
    case Served::TimedOut:
        return PageEnd::TimedOut;
    case Served::ProcessGone:
        break;
    }
    throw processGone();
}

QString EnginePage::problem() const {
    return m_page ? m_page->problem() : QString();
}

QString EnginePage::locationUrl() {
    return QString::fromLatin1(page().url().toEncoded());
}

// ---- waiting

void EnginePage::wake() {
    if (m_loop)
        m_loop->quit();
}

/// The person goes on working meanwhile, and may close any window. While a box of the page is open the time stands.
EnginePage::Served EnginePage::serve(const std::function<bool()>& isDone, std::chrono::milliseconds limit) {
    QElapsedTimer clock;
    clock.start();
    const std::chrono::milliseconds inBoxes = page().timeInBoxes();
    const auto end = [&]() -> std::optional<Served> {
        if (isDone())
            return Served::Until;
        if (!m_page || m_isProcessGone)
            return Served::ProcessGone;
        if (m_context.runs.isEnding())
            return Served::Ending;
        const std::chrono::milliseconds sinceBegun(clock.elapsed());
        if (sinceBegun - (m_page->timeInBoxes() - inBoxes) >= limit)
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
    if (m_isProcessGone)
        throw processGone();
    const auto answer = std::make_shared<Answer>();
    shown.runJavaScript(pageScript(request), QWebEngineScript::ApplicationWorld, [answer](const QVariant& value) {
        answer->value = value;
        if (answer->loop)
            answer->loop->quit();
    });
    switch (serve(
        [&] {
            answer->loop = m_loop;
            return answer->value.has_value();
        },
        m_answerLimit)) {
    case Served::Until:
        break;
    case Served::ProcessGone:
        throw processGone();
    case Served::Ending:
        throw ProgramEnds();
    case Served::TimedOut:
        // A script of the page that has no end would keep its process from every other page as well.
        platform::endProcess(shown.renderProcessPid());
        serve([this] { return m_isProcessGone; }, m_answerLimit);
        throw noAnswer();
    }
    const std::optional<QVariant> told = pageAnswer(*answer->value, request);
    if (!told)
        throw noAnswer();
    return *told;
}

/// What comes from here on is the answer to this.
void EnginePage::act(const PageRequest& request) {
    expectEnd();
    ask(request);
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
