#include "browser/forms/web_viewer.h"

#include "browser/forms/entry_scripts.h"
#include "browser/forms/frmBrowser.h"
#include "browser/forms/page_view.h"
#include "browser/forms/web_page.h"
#include "browser/page_address.h"
#include "browser/picture_place.h"
#include "desktop/command.h"
#include "desktop/window_place.h"

#include <QMdiArea>
#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>
#include <QWebEngineUrlRequestInterceptor>

using namespace Qt::StringLiterals;

namespace velloria::browser {
namespace {

class Pictures : public QWebEngineUrlRequestInterceptor {
public:
    Pictures(const core::Session& session, QObject* parent)
        : QWebEngineUrlRequestInterceptor(parent)
        , m_session(session) {}

    void interceptRequest(QWebEngineUrlRequestInfo& request) override {
        if (request.resourceType() != QWebEngineUrlRequestInfo::ResourceTypeImage)
            return;
        const QUrl place = picturePlace(request.requestUrl(), m_session.DataPath);
        if (place.isValid())
            request.redirect(place);
    }

private:
    const core::Session& m_session;
};

} // namespace

WebViewer::WebViewer(desktop::Context& context, const QString& name)
    : QWidget(context.mdi->window(), Qt::Dialog | Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint)
    , m_context(context) {
    setObjectName(name);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);
    setAttribute(Qt::WA_DeleteOnClose);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
}

WebViewer::~WebViewer() {
    delete m_view; // before its profile
}

void WebViewer::Navigate(const QString& path) {
    startEngine();
    static_cast<WebPage*>(m_view->page())->navigate(pageUrl(path));
}

QRect WebViewer::normalPlace() const {
    return isMaximized() || isMinimized() ? normalGeometry() : QRect(pos(), size());
}

void WebViewer::startEngine() {
    if (m_view)
        return;
    m_profile = m_context.windows.get<frmBrowser>().profile();
    m_view = new PageView(m_context, this);
    m_view->setObjectName(u"WebBrowser"_s);
    m_view->setAccessibleName(windowTitle());
    auto* page = new WebPage(*m_profile, m_context, WebLinks::OpenInBrowser, m_view);
    page->setUrlRequestInterceptor(new Pictures(m_context.session, page));
    m_view->setPage(page);
    layout()->addWidget(m_view);
    connect(page, &WebPage::eventNamed, this, &WebViewer::onEvent);
    connect(page, &WebPage::addressOpened, this, [this](const QUrl& url) {
        desktop::runCommand(m_context.desk, [&] {
            auto& browser = m_context.windows.get<frmBrowser>();
            browser.showChild();
            m_context.desk.status(u"Webページ表示中..."_s);
            browser.Navigate(QString::fromLatin1(url.toEncoded()));
        });
    });
}

void WebViewer::onEvent(const QString& name) {
    if (name.compare(u"close"_s, Qt::CaseInsensitive) == 0)
        close();
    else if (const std::optional<EntryName> entry = entryOf(name))
        desktop::runCommand(m_context.desk, [&] { openEntry(entry->day, entry->number); });
}

/// What is typed from here on goes into the editor: it must not lie behind this window.
void WebViewer::openEntry(const QString& day, int number) {
    m_context.requests.openEntry(day, number);
    const QRect shown = m_context.requests.seenEditor().value_or(QRect());
    const QRect hidden = shown.intersected(frameGeometry());
    if (2 * hidden.width() * hidden.height() > shown.width() * shown.height()) {
        showNormal();
        stepAside();
    }
    m_context.mdi->window()->activateWindow();
}

void WebViewer::stepAside() {
    const std::optional<QRect> editor = m_context.requests.seenEditor();
    const QWidget& mainWindow = *m_context.mdi->window();
    if (!editor || !mainWindow.isVisible())
        return;
    const QMargins frame = desktop::frameOf(mainWindow);
    QRect place(QPoint(0, mainWindow.frameGeometry().top()), size().grownBy(frame));
    place = desktop::movedBeside(place, *editor, mainWindow.screen()->availableGeometry());
    resize(place.size().shrunkBy(frame));
    move(place.topLeft());
}

void WebViewer::setScript(const QString& name, const QString& source) {
    startEngine();
    static_cast<WebPage*>(m_view->page())->setScript(name, source);
}

} // namespace velloria::browser
