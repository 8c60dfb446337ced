#include "support/http_server.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

namespace velloria::tests {

HttpServer::HttpServer()
    : m_listener(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (bind(m_listener, reinterpret_cast<sockaddr*>(&address), length) != 0 || listen(m_listener, 8) != 0 ||
        getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        throw std::runtime_error("no port for the web server");
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { run(); });
}

HttpServer::~HttpServer() {
    shutdown(m_listener, SHUT_RDWR);
    m_thread.join();
    close(m_listener);
    for (const int connection : m_open)
        close(connection);
}

void HttpServer::answerWith(const QList<QByteArray>& answers) {
    const std::lock_guard lock(m_mutex);
    m_answers = answers;
}

QByteArray HttpServer::request() const {
    const std::lock_guard lock(m_mutex);
    return m_request;
}

void HttpServer::run() {
    for (;;) {
        const int connection = accept(m_listener, nullptr, nullptr);
        if (connection < 0)
            return;
        QByteArray head;
        char piece[4096];
        while (!head.contains("\r\n\r\n")) {
            const ssize_t count = recv(connection, piece, sizeof piece, 0);
            if (count <= 0)
                break;
            head.append(piece, count);
        }
        QByteArray answer;
        bool isLast = false;
        {
            const std::lock_guard lock(m_mutex);
            m_request = head;
            isLast = m_answers.size() < 2;
            answer = m_answers.size() > 1 ? m_answers.takeFirst() : m_answers.value(0);
        }
        for (qsizetype sent = 0; sent < answer.size();) {
            const ssize_t count =
                send(connection, answer.constData() + sent, size_t(answer.size() - sent), MSG_NOSIGNAL);
            if (count <= 0)
                break;
            sent += count;
        }
        if (m_staysOpen && isLast)
            m_open += connection;
        else
            close(connection);
    }
}

} // namespace velloria::tests
