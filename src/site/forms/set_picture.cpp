#include "site/forms/set_picture.h"

#include "browser/forms/frmBrowser.h"
#include "core/day_key.h"
#include "core/files.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "site/customize_sets.h"
#include "site/month_page.h"

#include <QChildEvent>
#include <QVBoxLayout>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

constexpr qreal kZoom = 0.4;

/// What entries bring along does not act here: their scripts, frames, sounds, and pages that lead to others.
class PicturePage : public QWebEnginePage {
public:
    PicturePage(QWebEngineProfile& profile, QObject* parent)
        : QWebEnginePage(&profile, parent) {
        QWebEngineSettings& rights = *settings();
        rights.setDefaultTextEncoding(u"Shift_JIS"_s);
        rights.setAttribute(QWebEngineSettings::LocalContentCanAccessRemoteUrls, true); // style sheets and pictures
        rights.setAttribute(QWebEngineSettings::JavascriptEnabled, false);
        rights.setAttribute(QWebEngineSettings::ShowScrollBars, false);
        rights.setAttribute(QWebEngineSettings::PlaybackRequiresUserGesture, true);
        setAudioMuted(true);
    }

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override {
        return isMainFrame && type == NavigationTypeTyped && url.isLocalFile();
    }
};

class PictureView : public QWebEngineView {
public:
    using QWebEngineView::QWebEngineView;

protected:
    /// The engine's own surface comes with the first page, and would take the keys.
    void childEvent(QChildEvent* event) override {
        QWebEngineView::childEvent(event);
        if (event->polished() && event->child()->isWidgetType())
            static_cast<QWidget*>(event->child())->setFocusPolicy(Qt::NoFocus);
    }
};

} // namespace

SetPicture::SetPicture(desktop::Context& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context) {
    setAccessibleName(u"セットの見本"_s);
    setEnabled(false);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
}

SetPicture::~SetPicture() {
    delete m_view; // before its profile
    try {
        platform::removeFile(core::files::kSetPicture.in(m_context.session));
    } catch (const platform::Failure&) {
        return; // the end of the run removes local pages once more
    }
}

void SetPicture::showSet(const QString& name) {
    try {
        makePage(existingSetFile(m_context.session, name));
        startEngine();
        m_view->load(QUrl::fromLocalFile(core::files::kSetPicture.in(m_context.session)));
        m_view->show();
    } catch (const platform::Failure&) {
        if (m_view)
            m_view->hide(); // an empty picture says it
    }
}

void SetPicture::makePage(const QString& setFile) const {
    core::Session session = m_context.session;
    session.CustIniFile = setFile;
    session.FrameIniFile.clear();
    session.RSSIniFile.clear();
    MonthPage({session, m_context.clock, m_context.desk})
        .MakeHTML(core::files::kSetPicture.in(session), core::monthOf(session.Today), PageKind::Current, MakeList::No,
                  WithPrivate::No);
}

void SetPicture::startEngine() {
    if (m_view)
        return;
    m_profile = m_context.windows.get<browser::frmBrowser>().profile();
    m_view = new PictureView(this);
    m_view->setFocusPolicy(Qt::NoFocus);
    m_view->setObjectName(u"SetPictureView"_s);
    m_view->setPage(new PicturePage(*m_profile, m_view));
    m_view->setZoomFactor(kZoom);
    // The engine forgets it with a page of another process.
    connect(m_view, &QWebEngineView::loadFinished, m_view, [view = m_view] { view->setZoomFactor(kZoom); });
    layout()->addWidget(m_view);
}

} // namespace velloria::site
