#include "browser/forms/web_page.h"

#include "browser/page_address.h"
#include "desktop/command.h"
#include "platform/launcher.h"

#include <QAuthenticator>
#include <QCoreApplication>
#include <QPointer>
#include <QScopeGuard>
#include <QTimer>
#include <QUuid>
#include <QWebEngineLoadingInfo>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineProfile>
#include <QWebEngineQuotaRequest>
#include <QWebEngineRegisterProtocolHandlerRequest>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>
#include <QWebEngineUrlScheme>

using namespace Qt::StringLiterals;

namespace velloria::browser {
namespace {

const QString kEvent = u"event"_s;
const QString kMarkScript = u"goToMark"_s;

/// The button of the generated pages speaks a script language that the engine does not know.
constexpr char16_t kReviveCloseButton[] = uR"js(
if (location.protocol === 'file:') {
    for (const element of document.getElementsByName('Close')) {
        if (element.tagName === 'INPUT' || element.tagName === 'BUTTON')
            element.addEventListener('click', () => { location.href = 'Event:Close'; });
    }
}
)js";

/// The engine reports the end of the whole page alone.
constexpr char16_t kTellFrame[] = uR"js(
if (window !== window.top) {
    const tell = () => console.info('%1');
    if (document.readyState === 'complete')
        tell();
    else
        window.addEventListener('load', tell);
}
)js";

/// A page that is read anew goes back to where somebody had scrolled it to; a mark that is asked for comes first.
constexpr char16_t kGoToMark[] = uR"js(
history.scrollRestoration = 'manual';
const goToMark = () => {
    const mark = decodeURIComponent(location.hash.slice(1));
    const element = document.getElementById(mark) || document.getElementsByName(mark)[0];
    if (element)
        element.scrollIntoView();
};
goToMark();
window.addEventListener('load', () => {
    goToMark();
    setTimeout(() => { history.scrollRestoration = 'auto'; });
});
)js";

/// So many boxes of one document may be what it is for; after each such number the reader is asked.
constexpr int kBoxesOfAGoodPage = 3;

constexpr std::chrono::milliseconds kLookForTheEnd{100};

/// A page may ask before it is left; the words are the engine's, which has none in Japanese.
QString confirmText(const QString& text) {
    const QString words = QCoreApplication::translate(
        "QWebEnginePage", "Are you sure you want to leave this page? Changes that you made may not be saved.");
    return text == words ? u"このページを離れますか？\r\n入力した内容は保存されないことがあります。"_s : text;
}

bool isOfWeb(const QUrl& url) {
    return url.scheme() == u"http"_s || url.scheme() == u"https"_s;
}

bool differsInMarkAlone(const QUrl& left, const QUrl& right) {
    return left.matches(right, QUrl::RemoveFragment) && left.fragment() != right.fragment();
}

QString refusedPage(const QUrl& url) {
    const QString host = url.host().toHtmlEscaped();
    return u"<!DOCTYPE html><html lang=\"ja\"><head><meta charset=\"utf-8\"><title>証明書のエラー</title></head><body>"
           "<h1>証明書のエラー</h1><p>%1 の証明書が信頼できないため、ページを表示しません。</p>"
           "<p>通信の相手が本物であることを確かめられません。</p></body></html>"_s.arg(host);
}

QString problemOf(const QWebEngineLoadingInfo& info) {
    if (info.status() == QWebEngineLoadingInfo::LoadSucceededStatus)
        return {};
    if (info.errorDomain() == QWebEngineLoadingInfo::HttpStatusCodeDomain)
        return u"HTTP %1"_s.arg(info.errorCode());
    return info.errorString();
}

QWebEngineScript script(const QString& source) {
    QWebEngineScript script;
    script.setSourceCode(source);
    script.setInjectionPoint(QWebEngineScript::DocumentReady);
    script.setWorldId(QWebEngineScript::ApplicationWorld);
    return script;
}

} // namespace

void registerEventScheme() {
    QWebEngineUrlScheme scheme(kEvent.toLatin1());
    scheme.setSyntax(QWebEngineUrlScheme::Syntax::Path);
    QWebEngineUrlScheme::registerScheme(scheme);
}

WebPage::WebPage(QWebEngineProfile& profile, desktop::Context& context, WebLinks webLinks, QWidget* view)
    : QWebEnginePage(&profile, view)
    , m_context(context)
    , m_webLinks(webLinks)
    , m_frameToken(QUuid::createUuid().toString(QUuid::WithoutBraces)) {
    setRights();
    insertScripts();
    connect(this, &QWebEnginePage::loadingChanged, this, &WebPage::onLoading);
    connect(this, &QWebEnginePage::urlChanged, this, &WebPage::onUrl);
    connect(this, &QWebEnginePage::renderProcessTerminated, this, [this] {
        if (m_isStopped)
            QTimer::singleShot(0, this, &WebPage::readWithoutScripts);
    });
    connect(this, &QWebEnginePage::authenticationRequired, this,
            [this](const QUrl& address, QAuthenticator* answer) { login(address, *answer); });
    // Both go on after the event: what they ask for may load this very page anew.
    connect(this, &QWebEnginePage::newWindowRequested, this, [this](QWebEngineNewWindowRequest& request) {
        const QUrl wanted = request.requestedUrl();
        if (isDriven && !request.isUserInitiated())
            return;
        if (mayOpen(wanted) && !wanted.scheme().startsWith(u"about"_s))
            QTimer::singleShot(0, this, [this, wanted] { Q_EMIT addressOpened(wanted); });
    });
}

void WebPage::setRights() {
    QWebEngineSettings& rights = *settings();
    rights.setDefaultTextEncoding(u"Shift_JIS"_s);
    rights.setAttribute(QWebEngineSettings::LocalContentCanAccessRemoteUrls, true);
    rights.setAttribute(QWebEngineSettings::JavascriptEnabled, true);
    rights.setUnknownUrlSchemePolicy(QWebEngineSettings::AllowAllUnknownUrlSchemes); // "event:" from a script, too
    connect(this, &QWebEnginePage::featurePermissionRequested, this, [this](const QUrl& origin, Feature feature) {
        setFeaturePermission(origin, feature, PermissionDeniedByUser);
    });
    connect(this, &QWebEnginePage::quotaRequested, this, [](QWebEngineQuotaRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::registerProtocolHandlerRequested, this,
            [](QWebEngineRegisterProtocolHandlerRequest request) { request.reject(); });
}

void WebPage::insertScripts() {
    if (m_webLinks == WebLinks::OpenInBrowser)
        scripts().insert(script(QString::fromUtf16(kReviveCloseButton)));
    QWebEngineScript frames = script(QString::fromUtf16(kTellFrame).arg(m_frameToken));
    frames.setRunsOnSubFrames(true);
    scripts().insert(frames);
}

void WebPage::navigate(const QUrl& url) {
    m_target.clear();
    if (!url.isValid() || url.isEmpty())
        return;
    goToMark(url.hasFragment());
    const bool isOtherMark = url.hasFragment() && differsInMarkAlone(url, this->url());
    load(url);
    if (!isOtherMark)
        return;
    // Where the mark alone differs the engine goes to it in the text that it has, and takes two loads at once for one.
    // What it answers to the script comes after the first, and then the second reads the file anew.
    m_target = url;
    runJavaScript(u"1"_s, QWebEngineScript::ApplicationWorld, [this, isAlive = m_isAlive](const QVariant&) {
        if (*isAlive && !m_target.isEmpty())
            load(std::exchange(m_target, {}));
    });
}

/// For the document that comes next.
void WebPage::goToMark(bool isOn) {
    setScript(kMarkScript, isOn ? QString::fromUtf16(kGoToMark) : QString());
}

void WebPage::setScript(const QString& name, const QString& source) {
    for (const QWebEngineScript& old : scripts().find(name))
        scripts().remove(old);
    if (source.isEmpty())
        return;
    QWebEngineScript added = script(source);
    added.setName(name);
    scripts().insert(added);
}

void WebPage::stop() {
    m_target.clear();
    triggerAction(Stop);
}

void WebPage::onLoading(const QWebEngineLoadingInfo& info) {
    m_isLoading = info.status() == QWebEngineLoadingInfo::LoadStartedStatus;
    if (m_isLoading || info.status() == QWebEngineLoadingInfo::LoadStoppedStatus)
        return;
    m_isComplete = true;
    goToMark(false);
    if (!std::exchange(m_wasRefused, false))
        m_problem = problemOf(info);
    if (info.errorDomain() == QWebEngineLoadingInfo::CertificateErrorDomain) {
        m_wasRefused = true;
        setHtml(refusedPage(info.url()), info.url());
        return;
    }
    Q_EMIT loadComplete();
    Q_EMIT documentComplete();
}

void WebPage::onUrl(const QUrl& url) {
    const QUrl before = std::exchange(m_shown, url);
    if (m_target.isEmpty() && !m_isLoading && differsInMarkAlone(before, url))
        Q_EMIT documentComplete();
}

/// What a page may lead to: no page of the web reaches the disk.
bool WebPage::mayOpen(const QUrl& url) const {
    if (!isShownScheme(url.scheme()))
        return false;
    return !url.isLocalFile() || (url.host().isEmpty() && !isOfWeb(this->url()));
}

bool WebPage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) {
    if (url.scheme() == kEvent) {
        const QString name = url.toString().sliced(kEvent.size() + 1);
        QTimer::singleShot(0, this, [this, name] { Q_EMIT eventNamed(name); });
        return false;
    }
    const bool isOurs =
        type == NavigationTypeTyped || type == NavigationTypeBackForward || type == NavigationTypeReload;
    if (isOurs && isMainFrame)
        allowScripts();
    if (isOurs)
        return isShownScheme(url.scheme());
    if (!mayOpen(url))
        return false;
    if (m_webLinks == WebLinks::OpenInBrowser && isMainFrame && isOfWeb(url)) {
        QTimer::singleShot(0, this, [this, url] { Q_EMIT addressOpened(url); });
        return false;
    }
    if (isMainFrame)
        allowScripts();
    return true;
}

void WebPage::javaScriptAlert(const QUrl& origin, const QString& text) {
    showBox([&] { m_context.desk.message(platform::MessageKind::Plain, text, origin.host()); });
}

bool WebPage::javaScriptConfirm(const QUrl& origin, const QString& text) {
    bool isYes = false;
    showBox([&] { isYes = m_context.desk.ask(confirmText(text), origin.host()); });
    return isYes;
}

/// A box serves events: the window may be gone after it.
void WebPage::showBox(const std::function<void()>& box) {
    if (m_isStopped)
        return;
    const std::shared_ptr<bool> isAlive = m_isAlive;
    platform::Desk& desk = m_context.desk;
    const OpenBox open(m_boxTime);
    desktop::runCommand(desk, box);
    if (!*isAlive || ++m_boxes % kBoxesOfAGoodPage != 0)
        return;
    bool isYes = false;
    desktop::runCommand(desk, [&] {
        isYes = desk.ask(u"このページは、続けてメッセージを出しています。\r\n"
                         "このページのスクリプトを止めますか？"_s);
    });
    if (isYes && *isAlive)
        stopScripts();
}

/// An answer that was never given shows what the server says without one. The window goes with the one that it stands
/// over, and this page may be gone with it.
void WebPage::login(const QUrl& address, QAuthenticator& answer) {
    const QString realm = answer.realm();
    answer = {};
    if (m_isLoginRefused)
        return; // pictures of a page may want a login each
    const OpenBox open(m_boxTime);
    desktop::Context& context = m_context;
    desktop::runCommand(context.desk, [&] {
        const QPointer<frmAuthentication> window =
            new frmAuthentication(address, realm, static_cast<QWidget*>(parent())->window());
        const auto guard = qScopeGuard([&] { delete window; });
        if (proposedLogin)
            window->propose(proposedLogin(address));
        QObject::connect(this, &QObject::destroyed, window, &QDialog::reject);
        QTimer ending; // of the program, which waits for whoever waits for this page
        QObject::connect(&ending, &QTimer::timeout, window, [&] {
            if (context.runs.isEnding())
                window->reject();
        });
        ending.start(kLookForTheEnd);
        const QPointer<WebPage> self = this;
        const bool isGiven = window->exec() == QDialog::Accepted && window;
        if (self)
            m_isLoginRefused = !isGiven;
        if (!isGiven)
            return;
        const Login given = window->login();
        answer.setUser(given.user);
        answer.setPassword(given.password);
    });
}

/// A script that runs can't be stopped from outside, and as long as it runs its process shows no other page: the
/// process ends, and the page is read again without scripts.
void WebPage::stopScripts() {
    m_isStopped = true;
    QTimer::singleShot(0, this, [this] { platform::endProcess(renderProcessPid()); });
}

void WebPage::readWithoutScripts() {
    m_isReadingAgain = true;
    settings()->setAttribute(QWebEngineSettings::JavascriptEnabled, false);
    load(url());
}

/// Another document, or the same once more because somebody wants it so.
void WebPage::allowScripts() {
    m_boxes = 0;
    m_isLoginRefused = false;
    if (std::exchange(m_isReadingAgain, false))
        return;
    m_isStopped = false;
    settings()->setAttribute(QWebEngineSettings::JavascriptEnabled, true);
}

/// A page has no text to ask for: it counts as cancelled.
bool WebPage::javaScriptPrompt(const QUrl&, const QString&, const QString&, QString*) {
    return false;
}

void WebPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString& message, int, const QString&) {
    if (message == m_frameToken && m_isComplete && !m_isLoading)
        Q_EMIT frameComplete();
}

} // namespace velloria::browser
