#include "support/fake_blog.h"

#include "support/patience.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpSocket>
#include <QUrl>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace velloria::tests {

bool FakeBlog::Request::has(const QByteArray& name) const {
    return !all(name).isEmpty();
}

QByteArray FakeBlog::Request::field(const QByteArray& name) const {
    const QList<QByteArray> values = all(name);
    return values.isEmpty() ? "(missing)" : values.first();
}

QList<QByteArray> FakeBlog::Request::all(const QByteArray& name) const {
    QList<QByteArray> values;
    for (const auto& [fieldName, value] : fields) {
        if (fieldName == name)
            values += value;
    }
    return values;
}

FakeBlog::FakeBlog() {
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(VELLORIA_PYTHON), {QStringLiteral(VELLORIA_FAKE_BLOG), u"0"_s, u"attached"_s});
    while (!m_process.canReadLine() && m_process.waitForReadyRead(kPatienceMs)) {
    }
    m_port = m_process.readLine().trimmed().split(' ').value(1).toUShort();
    if (m_port == 0)
        throw std::runtime_error("the blog does not start");
}

FakeBlog::~FakeBlog() {
    m_process.kill();
    m_process.waitForFinished();
}

QString FakeBlog::address(const QString& path) const {
    return u"http://127.0.0.1:%1%2"_s.arg(m_port).arg(path);
}

void FakeBlog::set(const QString& setting, const QString& value) const {
    ask("/ctl?" + setting.toLatin1() + '=' + QUrl::toPercentEncoding(value));
}

QList<FakeBlog::Request> FakeBlog::log() const {
    QList<Request> requests;
    for (const QByteArray& line : ask("/log").split('\n')) {
        if (line.isEmpty())
            continue;
        const QJsonObject read = QJsonDocument::fromJson(line).object();
        const auto bytes = [](const QJsonValue& value) { return value.toString().toLatin1(); };
        Request request{bytes(read[u"method"_s]) + ' ' + bytes(read[u"path"_s]),
                        bytes(read[u"query"_s]),
                        bytes(read[u"user"_s]),
                        {}};
        for (const QJsonValue& field : read[u"fields"_s].toArray())
            request.fields.append({bytes(field[0]), bytes(field[1])});
        requests += request;
    }
    return requests;
}

QList<QByteArray> FakeBlog::lines() const {
    QList<QByteArray> lines;
    for (const Request& request : log())
        lines += request.line;
    return lines;
}

void FakeBlog::forgetLog() const {
    ask("/log?reset=1");
}

/// Serves no events meanwhile: tests ask in the middle of what the windows do.
QByteArray FakeBlog::ask(const QByteArray& address) const {
    QTcpSocket socket;
    socket.connectToHost(u"127.0.0.1"_s, m_port);
    socket.waitForConnected(kPatienceMs);
    socket.write("GET " + address + " HTTP/1.0\r\n\r\n");
    while (socket.state() == QAbstractSocket::ConnectedState && socket.waitForReadyRead(kPatienceMs)) {
    }
    const QByteArray answer = socket.readAll();
    const qsizetype head = answer.indexOf("\r\n\r\n");
    if (head < 0 || !answer.split(' ').value(1).startsWith("200"))
        throw std::runtime_error("the blog does not take " + address.toStdString());
    return answer.sliced(head + 4);
}

} // namespace velloria::tests
