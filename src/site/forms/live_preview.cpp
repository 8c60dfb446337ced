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
    if (!desktop::readPlace(m_context.session, core::keys::kMiniBrowserPlace).left) {
        const QMargins frame = desktop::frameOf(m_dialog);
        const QPoint top(0, m_dialog.frameGeometry().top());
        const QRect beside = desktop::movedBeside(QRect(top, window.size().grownBy(frame)), m_dialog.frameGeometry(),
                                                  m_dialog.screen()->availableGeometry());
        window.resize(beside.size().shrunkBy(frame));
        window.move(beside.topLeft());
    }
    window.show();
    m_dialog.activateWindow();
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
