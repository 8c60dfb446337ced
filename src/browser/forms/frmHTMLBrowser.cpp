#include "browser/forms/frmHTMLBrowser.h"

#include "core/keys.h"
#include "desktop/twips.h"
#include "desktop/window_place.h"

#include <QMdiArea>

using namespace Qt::StringLiterals;

namespace velloria::browser {
namespace {

constexpr qint32 kFirstWidthTwips = 9000;
constexpr int kHeight = 480;

} // namespace

frmHTMLBrowser::frmHTMLBrowser(desktop::Context& context)
    : WebViewer(context, u"frmHTMLBrowser"_s) {
    setWindowTitle(u"MiniBrowser"_s);
    resize(desktop::fromTwips(kFirstWidthTwips), kHeight);
    desktop::WindowPlace place = desktop::readPlace(context.session, core::keys::kMiniBrowserPlace);
    if (place.width.value_or(0) < 1)
        place.width = kFirstWidthTwips;
    place.height.reset();
    desktop::restorePlace(*this, place, desktop::frameOf(*context.mdi->window()));
}

frmHTMLBrowser::~frmHTMLBrowser() {
    desktop::WindowPlace place = desktop::placeOf(*this, normalPlace());
    place.height.reset();
    desktop::writePlace(m_context.session, core::keys::kMiniBrowserPlace, place);
}

} // namespace velloria::browser
