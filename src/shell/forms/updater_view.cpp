#include "shell/forms/updater_view.h"

#include "shell/forms/frmDBUpdater.h"
#include "shell/forms/MDIFormTop.h"
#include "shell/forms/StartForm.h"

namespace velloria::shell {

void UpdaterView::show(const platform::UpdaterWindow& shown) {
    if (!isNews(shown))
        return;
    auto& window = m_context.windows.get<frmDBUpdater>();
    if (!m_block) {
        m_context.windows.unload<StartForm>(); // it would stand in front
        m_block = std::make_unique<desktop::InputBlock>(m_context.windows.find<MDIFormTop>());
    }
    window.setCursor(Qt::WaitCursor);
    window.display(shown);
    m_shown = shown;
    m_block->serve();
    m_sinceShown.start();
}

bool UpdaterView::isNews(const platform::UpdaterWindow& shown) const {
    constexpr int kFrameMs = 25;
    return !m_block || shown.max != m_shown.max || m_sinceShown.hasExpired(kFrameMs) || shown.text != m_shown.text;
}

void UpdaterView::makeWayForBox() {
    if (!m_block)
        return;
    m_block->dropWaiting();
    m_context.windows.get<frmDBUpdater>().unsetCursor();
}

void UpdaterView::close() {
    m_context.windows.unload<frmDBUpdater>();
    m_block.reset();
}

} // namespace velloria::shell
