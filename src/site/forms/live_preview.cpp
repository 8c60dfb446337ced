#include "site/forms/live_preview.h"

#include "browser/forms/frmHTMLBrowser.h"
#include "core/day_key.h"
#include "core/files.h"
#include "core/keys.h"
#include "desktop/window_place.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "site/local_page.h"
#include "site/month_page.h"

#include <QScreen>

#include <algorithm>

namespace velloria::site {

LivePreview::LivePreview(desktop::Context& context, QWidget& dialog)
    : m_context(context)
    , m_dialog(dialog) {}

void LivePreview::show() {
    auto& window = m_context.windows.get<browser::frmHTMLBrowser>();
    // A window of the dialog is not blocked by it, and may be scrolled.
    const QPoint place = window.pos();
    window.setParent(&m_dialog, window.windowFlags());
    window.move(place);
    window.setAttribute(Qt::WA_ShowWithoutActivating);
    if (!desktop::readPlace(m_context.session, core::keys::kMiniBrowserPlace).left)
        putBeside(window);
    window.show();
    m_dialog.activateWindow();
}

/// Where the room on both sides is too small for the page, the dialog moves to one of them.
void LivePreview::putBeside(QWidget& window) const {
    const QMargins frame = desktop::frameOf(m_dialog);
    const QRect area = m_dialog.screen()->availableGeometry();
    const QSize wanted = window.size().grownBy(frame);
    QRect dialog = m_dialog.frameGeometry();
    const int left = dialog.left() - area.left();
    const int right = area.right() - dialog.right();
    const int step = std::clamp(wanted.width() - std::max(left, right), 0, std::max(std::min(left, right), 0));
    if (step > 0) {
        dialog.translate(right >= left ? -step : step, 0);
        m_dialog.move(dialog.topLeft());
    }
    const QRect beside = desktop::movedBeside(QRect(QPoint(0, dialog.top()), wanted), dialog, area);
    window.resize(beside.size().shrunkBy(frame));
    window.move(beside.topLeft());
}

void LivePreview::refresh() {
    try {
        makePage();
        m_isRefused = false;
    } catch (const platform::Failure& failure) {
        if (m_isRefused)
            m_context.desk.status(failure.line());
        else
            m_context.desk.failure(failure);
        m_isRefused = true;
        return;
    }
    // Somebody may have closed the window.
    if (auto* window = m_context.windows.find<browser::frmHTMLBrowser>())
        window->Navigate(core::files::kCustomizePreview.in(m_context.session));
}

void LivePreview::makePage() {
    MonthPage(m_context).MakeHTML(core::files::kCustomizePreview.in(m_context.session),
                                  core::monthOf(m_context.session.Today), PageKind::Current, MakeList::No,
                                  WithPrivate::No);
}

void LivePreview::settlePage(const core::Session& session) {
    const QString page = platform::existingPath(core::files::kCustomizePreview.in(session));
    const QString preview = platform::existingPath(core::files::kPreview.in(session));
    if (platform::fileExists(page) && platform::fileExists(preview))
        platform::copyFile(preview, page, localPageMode(session));
}

void LivePreview::close() {
    m_context.windows.unload<browser::frmHTMLBrowser>();
}

} // namespace velloria::site
