#include "desktop/windows.h"

namespace velloria::desktop {

void Windows::closeAll() {
    while (!m_made.empty()) {
        const QPointer<QObject> window = m_made.back().window;
        m_made.pop_back();
        delete window.data();
    }
}

} // namespace velloria::desktop
