// What passes on a connection, as lines for people.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>

namespace velloria::publish {

/// Takes one line: "> " and a command, "< " and an answer, "* " and the transfer library's own words. Never a password.
using Trace = std::function<void(const QString& line)>;

/// What is to stay out is named before anything passes. Throws nothing of its own.
class FtpTrace {
public:
    explicit FtpTrace(Trace trace)
        : m_trace(std::move(trace)) {}

    /// From now on this text stays out of every line, in whatever encoding. A short one goes only where it is a word of
    /// its own: it would be found in half of all words.
    void hide(const QString& secret);
    void sent(QByteArrayView bytes) const;
    void received(QByteArrayView bytes) const;
    void remarked(QByteArrayView bytes) const;

    /// The bytes without what is hidden.
    QByteArray withoutSecrets(QByteArray bytes) const;
    /// The same as text, in one line.
    QString shown(const QByteArray& bytes) const;

private:
    void add(const QString& mark, QByteArrayView bytes) const;

    Trace m_trace;
    QList<QByteArray> m_secrets;
};

} // namespace velloria::publish
