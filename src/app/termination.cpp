#include "app/termination.h"

#include <QApplication>
#include <QSessionManager>
#include <QSocketNotifier>

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace velloria::app {
namespace {

constexpr int kSignals[] = {SIGTERM, SIGHUP, SIGINT};

// A signal handler may do next to nothing: it writes one byte, which the event loop reads.
int g_sockets[2] = {-1, -1};

void tellEventLoop(int) {
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(g_sockets[0], &byte, sizeof byte);
}

void handleSignals(void (*handler)(int)) {
    for (const int number : kSignals) {
        struct sigaction action {};
        action.sa_handler = handler;
        action.sa_flags = SA_RESTART;
        sigemptyset(&action.sa_mask);
        ::sigaction(number, &action, nullptr);
    }
}

} // namespace

Termination::Termination(QApplication& application, std::function<void()> keep, std::function<void()> end) {
    QObject::connect(
        &application, &QGuiApplication::commitDataRequest, this, [keep](QSessionManager&) { keep(); },
        Qt::DirectConnection);
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, g_sockets) != 0)
        return;
    m_notifier = new QSocketNotifier(g_sockets[1], QSocketNotifier::Read, this);
    QObject::connect(m_notifier, &QSocketNotifier::activated, this, [end] {
        char byte = 0;
        [[maybe_unused]] const ssize_t count = ::read(g_sockets[1], &byte, sizeof byte);
        end();
    });
    handleSignals(tellEventLoop);
}

Termination::~Termination() {
    handleSignals(SIG_DFL);
    for (int& socket : g_sockets) {
        if (socket >= 0)
            ::close(socket);
        socket = -1;
    }
}

} // namespace velloria::app
