// What is thrown when the machine refuses: a file, the data engine, a number out of its range.
#pragma once

#include <QString>

#include <exception>

namespace velloria::platform {

/// A refusal that ends the command, not the program. It reads to a person: what could not be done, to which file, why,
/// and what they can do. All texts are Japanese but for `reason`, which may be the system's own words.
class Failure : public std::exception {
public:
    /// `file` and `advice` may be empty.
    Failure(QString what, QString file, QString reason, QString advice = {});

    const QString& whatFailed() const { return m_what; }
    const QString& file() const { return m_file; }
    const QString& reason() const { return m_reason; }
    const QString& advice() const { return m_advice; }

    /// The text of the failure box: one line each for what, file, reason and advice.
    QString text() const;

    /// The same in one line, for standard error.
    QString line() const;

    /// The stage that a long routine had reached, put in front of what failed.
    void addStage(const QString& stage);

    const char* what() const noexcept override { return m_utf8.constData(); }

private:
    QString m_what;
    QString m_file;
    QString m_reason;
    QString m_advice;
    QByteArray m_utf8;
};

/// The system's words for the last refused call (errno).
QString systemReason(int errorNumber);

} // namespace velloria::platform
