#include "desktop/leave_check.h"

#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <utility>

namespace velloria::desktop {

LeaveCheck::LeaveCheck(QWidget& box, QWidget& giveUp, std::function<void()> check)
    : QObject(&box)
    , m_box(box)
    , m_giveUp(&giveUp)
    , m_check(std::move(check)) {
    box.installEventFilter(this);
}

bool LeaveCheck::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &m_box && event->type() == QEvent::FocusOut && !std::exchange(m_isWaiting, true))
        QTimer::singleShot(0, this, &LeaveCheck::runCheck);
    return QObject::eventFilter(watched, event);
}

void LeaveCheck::runCheck() {
    if (!std::exchange(m_isWaiting, false))
        return;
    // While a menu or another window has the keys, the box stays the one of its window that gets them back.
    const QWidget* focus = m_box.window()->focusWidget();
    const bool isLeft = focus != &m_box && focus != m_giveUp;
    if (isLeft && m_box.window()->isVisible() && m_box.isEnabled())
        m_check();
}

} // namespace velloria::desktop
