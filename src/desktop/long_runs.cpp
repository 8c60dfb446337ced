#include "desktop/long_runs.h"

#include <QApplication>
#include <QScopeGuard>
#include <QTimer>

#include <utility>

namespace velloria::desktop {

void LongRuns::run(LongRoutine routine, const std::function<void()>& action) {
    if (m_running.contains(routine)) {
        QApplication::beep();
        return;
    }
    m_running.insert(routine);
    const auto guard = qScopeGuard([&] { finished(routine); });
    action();
}

void LongRuns::finished(LongRoutine routine) {
    m_running.remove(routine);
    if (m_running.isEmpty() && m_closing)
        QTimer::singleShot(0, std::exchange(m_closing, nullptr), &QWidget::close);
}

} // namespace velloria::desktop
