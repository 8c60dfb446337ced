// A web server that takes every connection and never says a word.
#pragma once

#include <QString>

#include <netinet/in.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace velloria::tests {

class SilentServer {
public:
    SilentServer() {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        if (bind(m_listener, reinterpret_cast<sockaddr*>(&address), length) != 0 || listen(m_listener, 8) != 0 ||
            getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &length) != 0)
            throw std::runtime_error("no port for the silent server");
        m_port = ntohs(address.sin_port);
    }
    ~SilentServer() { close(m_listener); }
    SilentServer(const SilentServer&) = delete;
    SilentServer& operator=(const SilentServer&) = delete;

    QString address() const { return QStringLiteral("http://127.0.0.1:%1/").arg(m_port); }

private:
    int m_listener = socket(AF_INET, SOCK_STREAM, 0);
    int m_port = 0;
};

} // namespace velloria::tests
