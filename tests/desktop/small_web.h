// A web of this machine, for tests of the browser.
#pragma once

#include <gtest/gtest.h>

#include <QMap>
#include <QTcpServer>
#include <QTcpSocket>

namespace velloria::tests {

/// A web of this machine: answers what it is told to answer, and nothing else.
class SmallWeb : public QObject {
public:
    SmallWeb() {
        EXPECT_TRUE(m_server.listen(QHostAddress::LocalHost));
        connect(&m_server, &QTcpServer::newConnection, this, [this] {
            QTcpSocket* socket = m_server.nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { answer(*socket); });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        });
    }

    QString address(const QString& path = QStringLiteral("/")) const {
        return QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path);
    }

    QMap<QByteArray, QByteArray> pages;                 ///< by path; what is missing is answered with 404
    QMap<QByteArray, QByteArray> redirects;             ///< by path; where the answer sends whoever asks
    QByteArray headers = "Content-Type: text/html\r\n"; ///< of every page
    QList<QByteArray> asked;                            ///< the paths, in order

private:
    void answer(QTcpSocket& socket) {
        const QList<QByteArray> words = socket.readAll().split(' ');
        if (words.size() < 2)
            return;
        asked += words[1];
        if (redirects.contains(words[1])) {
            socket.write("HTTP/1.1 302 Found\r\nLocation: " + redirects[words[1]] +
                         "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
            socket.disconnectFromHost();
            return;
        }
        const bool isThere = pages.contains(words[1]);
        const QByteArray body = isThere ? pages[words[1]] : "<title>missing</title>nobody here";
        socket.write((isThere ? QByteArray("HTTP/1.1 200 OK\r\n") : QByteArray("HTTP/1.1 404 Not Found\r\n")) +
                     headers + "Content-Length: " + QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" +
                     body);
        socket.disconnectFromHost();
    }

    QTcpServer m_server;
};

} // namespace velloria::tests
