// A blog service of this machine, in a process of its own: see tests/servers/fake_blog.py.
#pragma once

#include <QByteArray>
#include <QList>
#include <QProcess>
#include <QString>

#include <utility>

namespace velloria::tests {

class FakeBlog {
public:
    struct Request {
        QByteArray line;  ///< method and path, "POST /do"
        QByteArray query; ///< of the address
        QByteArray user;  ///< who was logged in; "" for nobody
        QList<std::pair<QByteArray, QByteArray>> fields;

        bool has(const QByteArray& name) const;
        /// The first of that name; "(missing)" when there is none.
        QByteArray field(const QByteArray& name) const;
        QList<QByteArray> all(const QByteArray& name) const;
    };

    FakeBlog();
    ~FakeBlog();

    QString address(const QString& path = {}) const;

    /// Changes what it does from now on.
    void set(const QString& setting, const QString& value) const;

    /// What was asked so far, in order.
    QList<Request> log() const;
    /// The lines of these alone.
    QList<QByteArray> lines() const;
    void forgetLog() const;

private:
    QByteArray ask(const QByteArray& address) const;

    QProcess m_process;
    quint16 m_port = 0;
};

} // namespace velloria::tests
