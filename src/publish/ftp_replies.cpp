#include "publish/ftp_replies.h"

#include "publish/ftp_wire.h"

#include <algorithm>

namespace velloria::publish {

namespace {

constexpr qsizetype kLongestKept = 16384; // a list of features is far shorter
constexpr qsizetype kLongestShown = 254;

/// A reply goes on until a line that begins with three digits and a blank.
bool isLastLine(QByteArrayView line) {
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    return line.size() > 3 && std::all_of(line.begin(), line.begin() + 3, isDigit) && line[3] == ' ';
}

QByteArrayView withoutLineEnd(QByteArrayView line) {
    if (line.endsWith('\n'))
        line.chop(1);
    if (line.endsWith('\r'))
        line.chop(1);
    return line;
}

} // namespace

void FtpReplies::begin() {
    m_command.clear();
    m_answers.clear();
    m_isWhole = true;
    m_count = 0;
    m_lastCode = 0;
}

void FtpReplies::sent(QByteArrayView command) {
    const auto* end = std::find_if(command.begin(), command.end(), [](char c) { return c == ' ' || c == '\r'; });
    m_command = QByteArray(command.data(), end - command.begin());
}

void FtpReplies::received(QByteArrayView line) {
    const QByteArrayView text = withoutLineEnd(line);
    if (m_isWhole)
        m_last.clear();
    else if (m_last.size() < kLongestKept)
        m_last += "\r\n";
    m_last += text.first(std::min(text.size(), std::max<qsizetype>(0, kLongestKept - m_last.size())));
    // The line end belongs to the test: a code alone is followed by it.
    m_isWhole = isLastLine(line);
    if (!m_isWhole)
        return;
    m_lastCode = text.first(3).toInt();
    ++m_count;
    m_answers[m_command] = {m_lastCode, m_last};
}

bool FtpReplies::isTooLong() const {
    return m_last.size() > kLongestShown;
}

QString FtpReplies::lastText() const {
    return isTooLong() ? QString(kLongestShown + 1, u' ') : textFromWire(m_last);
}

std::optional<QByteArray> FtpReplies::lastPath() const {
    const qsizetype start = m_last.indexOf('"');
    QByteArray path;
    for (qsizetype at = start + 1; start >= 0 && at < m_last.size(); ++at) {
        if (m_last[at] != '"')
            path += m_last[at];
        else if (at + 1 < m_last.size() && m_last[at + 1] == '"')
            path += m_last[at++];
        else
            return path.isEmpty() ? std::nullopt : std::optional(path);
    }
    return std::nullopt;
}

} // namespace velloria::publish
