#include "browser/forms/frmPrevDiaryViewer.h"

#include "browser/forms/entry_scripts.h"
#include "core/keys.h"
#include "desktop/window_place.h"
#include "site/local_page.h"
#include "site/site_settings.h"

#include <QMdiArea>

using namespace Qt::StringLiterals;

namespace velloria::browser {
namespace {

constexpr QSize kFirstSize(480, 600);

} // namespace

frmPrevDiaryViewer::frmPrevDiaryViewer(desktop::Context& context)
    : WebViewer(context, u"frmPrevDiaryViewer"_s) {
    setWindowTitle(u"過去の日記"_s);
    resize(kFirstSize);
    stepAside();
    desktop::restorePlace(*this, desktop::readPlace(context.session, core::keys::kPrevDiaryViewerPlace),
                          desktop::frameOf(*context.mdi->window()));
}

frmPrevDiaryViewer::~frmPrevDiaryViewer() {
    desktop::writePlace(m_context.session, core::keys::kPrevDiaryViewerPlace, desktop::placeOf(*this, normalPlace()));
}

void frmPrevDiaryViewer::showPage(const QString& caption, const QString& file) {
    setWindowTitle(caption);
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    setScript(u"entryLinks"_s, entryLinks());
    const site::SiteSettings settings(m_context.session);
    setScript(u"styles"_s, stylesOf(site::headOfSet(settings)));
    namespace body = core::keys::body;
    setScript(u"linkColours"_s, linkColours(settings.text(body::kLinkColor), settings.text(body::kALinkColor),
                                            settings.text(body::kVLinkColor)));
    Navigate(file);
    raise();
    activateWindow();
}

} // namespace velloria::browser
