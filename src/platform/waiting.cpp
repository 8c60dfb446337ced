#include "platform/waiting.h"

#include <QCoreApplication>
#include <QThread>

namespace velloria::platform {

bool waitOn(const QString& what, std::chrono::milliseconds waited) {
    Waiting waiting(what, waited);
    QCoreApplication* application = QCoreApplication::instance();
    if (application && application->thread() == QThread::currentThread())
        QCoreApplication::sendEvent(application, &waiting);
    if (waiting.isGivenUp)
        return false;
    constexpr unsigned long kMomentMs = 10;
    QThread::msleep(kMomentMs);
    return true;
}

} // namespace velloria::platform
