// The system asks the program to end: a signal, or the end of the session.
#pragma once

#include <QObject>

#include <functional>

class QApplication;
class QSocketNotifier;

namespace velloria::app {

/// While this lives, SIGTERM, SIGHUP and SIGINT run `end` in the event loop instead of killing the program. The session
/// manager, whose end somebody may still call off, runs `keep`.
class Termination : public QObject {
public:
    Termination(QApplication& application, std::function<void()> keep, std::function<void()> end);
    ~Termination() override;

private:
    QSocketNotifier* m_notifier = nullptr;
};

} // namespace velloria::app
