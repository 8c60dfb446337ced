// A web server on a port of its own, which sends to the letter what a test wants.
#pragma once

#include <QByteArray>
#include <QList>

#include <atomic>
#include <mutex>
#include <thread>

namespace velloria::tests {

class HttpServer {
public:
    HttpServer();
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    int port() const { return m_port; }
    /// One answer a connection, in this order; the last one stays. Each connection ends after its answer.
    void answerWith(const QList<QByteArray>& answers);
    /// From now on a connection stays open after the last of the answers, and nothing more comes.
    void stayOpen() { m_staysOpen = true; }
    /// The head of the last request.
    QByteArray request() const;

private:
    void run();

    int m_listener = -1;
    int m_port = 0;
    mutable std::mutex m_mutex;
    QList<QByteArray> m_answers;
    QByteArray m_request;
    std::atomic<bool> m_staysOpen = false;
    QList<int> m_open;
    std::thread m_thread;
};

} // namespace velloria::tests
