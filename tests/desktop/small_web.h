// A web of this machine, for tests of the browser.
#pragma once

#include <gtest/gtest.h>

#include <QMap>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <QUrlQuery>

#include <functional>

namespace velloria::tests {

/// What somebody asks for, as it came.
struct WebRequest {
    QByteArray method;
    QByteArray address; ///< with its query
    QByteArray head;
    QByteArray body;

    QByteArray path() const { return address.split('?')[0]; }
    /// A field of a form, however it was sent.
    QString field(const QString& name) const {
        QByteArray fields = method == "POST" ? body : address.mid(path().size() + 1);
        return QUrlQuery(QString::fromLatin1(fields.replace('+', ' '))).queryItemValue(name, QUrl::FullyDecoded);
    }
};

/// A web of this machine: answers what it is told to answer, and nothing else.
class SmallWeb : public QObject {
public:
    using Answer = std::function<void(QTcpSocket& socket, const WebRequest& request)>;

    SmallWeb() {
        EXPECT_TRUE(m_server.listen(QHostAddress::LocalHost));
        connect(&m_server, &QTcpServer::newConnection, this, [this] {
            QTcpSocket* socket = m_server.nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(*socket); });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        });
    }

    QString address(const QString& path = QStringLiteral("/")) const {
        return QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path);
    }

    /// A whole answer; `headers` beside those of every page.
    void send(QTcpSocket& socket, const QByteArray& body, const QByteArray& status = "200 OK",
              const QByteArray& more = {}) const {
        socket.write("HTTP/1.1 " + status + "\r\n" + headers + more +
                     "Content-Length: " + QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body);
        socket.disconnectFromHost();
    }
    void answerWith(const QByteArray& path, const QByteArray& status, const QByteArray& more = {},
                    const QByteArray& body = {}) {
        answers[path] = [=, this](QTcpSocket& socket, const WebRequest&) { send(socket, body, status, more); };
    }
    /// The page, so many milliseconds late.
    void answerLate(const QByteArray& path, int milliseconds, const QByteArray& body) {
        answers[path] = [=, this](QTcpSocket& socket, const WebRequest&) {
            QTimer::singleShot(milliseconds, &socket, [=, this, &socket] { send(socket, body); });
        };
    }

    /// What was asked at that path.
    QList<WebRequest> requestsFor(const QByteArray& path) const {
        QList<WebRequest> found;
        for (const WebRequest& request : requests) {
            if (request.path() == path)
                found += request;
        }
        return found;
    }

    QMap<QByteArray, QByteArray> pages;     ///< by path, with or without a query; what is missing is answered with 404
    QMap<QByteArray, QByteArray> redirects; ///< by path; where the answer sends whoever asks
    QMap<QByteArray, Answer> answers;       ///< by path without a query, ahead of the others
    QByteArray headers = "Content-Type: text/html\r\n"; ///< of every page
    QList<QByteArray> asked;                            ///< the paths with their queries, in order
    QList<WebRequest> requests;                         ///< the same, and all that came with them

private:
    void read(QTcpSocket& socket) {
        QByteArray bytes = socket.property("bytes").toByteArray() + socket.readAll();
        socket.setProperty("bytes", bytes);
        const qsizetype end = bytes.indexOf("\r\n\r\n");
        if (end < 0)
            return;
        const QByteArray head = bytes.left(end);
        const QByteArray body = bytes.mid(end + 4);
        const qsizetype length = head.toLower().indexOf("content-length:");
        if (length >= 0 && body.size() < head.mid(length + 15).split('\r')[0].trimmed().toInt())
            return;
        const QList<QByteArray> words = head.split('\r')[0].split(' ');
        socket.setProperty("bytes", {});
        requests += {words.value(0), words.value(1), head, body};
        asked += words.value(1);
        answer(socket, WebRequest(requests.last()));
    }
    void answer(QTcpSocket& socket, const WebRequest& request) const {
        const QByteArray path = request.path();
        if (answers.contains(path))
            answers[path](socket, request);
        else if (redirects.contains(request.address))
            send(socket, {}, "302 Found", "Location: " + redirects[request.address] + "\r\n");
        else if (pages.contains(request.address) || pages.contains(path))
            send(socket, pages.value(request.address, pages[path]));
        else
            send(socket, "<title>missing</title>nobody here", "404 Not Found");
    }

    QTcpServer m_server;
};

} // namespace velloria::tests
