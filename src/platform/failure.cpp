#include "platform/failure.h"

#include <QStringList>

#include <cstring>

using namespace Qt::StringLiterals;

namespace velloria::platform {

Failure::Failure(QString what, QString file, QString reason, QString advice)
    : m_what(std::move(what))
    , m_file(std::move(file))
    , m_reason(std::move(reason))
    , m_advice(std::move(advice))
    , m_utf8(line().toUtf8()) {}

QString Failure::text() const {
    QStringList lines{m_what, m_file, m_reason, m_advice};
    lines.removeAll(QString());
    return lines.join(u"\r\n"_s);
}

QString Failure::line() const {
    QString line = m_what;
    if (!m_file.isEmpty())
        line += u" [%1]"_s.arg(m_file);
    if (!m_reason.isEmpty())
        line += u" (%1)"_s.arg(m_reason);
    if (!m_advice.isEmpty())
        line += u' ' + m_advice;
    line.replace(u'\r', u' ').replace(u'\n', u' ');
    return line;
}

void Failure::addStage(const QString& stage) {
    m_what = stage + u": "_s + m_what;
    m_utf8 = line().toUtf8();
}

QString systemReason(int errorNumber) {
    return QString::fromLocal8Bit(std::strerror(errorNumber));
}

} // namespace velloria::platform
