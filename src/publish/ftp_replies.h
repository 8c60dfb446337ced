// What an FTP server has answered, command by command.
#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <optional>

namespace velloria::publish {

/// Puts the lines of the control connection together to replies. Memory is bounded whatever the server sends; lines
/// that are no reply are no failure.
///
///     replies.begin();
///     replies.sent("SIZE a.htm");
///     replies.received("550 No such file.\r\n");
///     replies.codeOf("SIZE"); // 550
class FtpReplies {
public:
    /// A new operation: counts from 0. The last reply itself stays until another comes.
    void begin();
    /// A command line as it goes out; only its first word is kept.
    void sent(QByteArrayView command);
    /// One line as it comes in.
    void received(QByteArrayView line);

    /// Whole replies since begin.
    int count() const { return m_count; }
    /// Code of the last of them, 0 without any.
    int lastCode() const { return m_lastCode; }
    /// Code of the last reply to a command such as "SIZE", 0 when it has not been answered.
    int codeOf(const QByteArray& command) const { return m_answers.value(command).code; }
    /// Makes the last reply to that command the last one of all, when others came after it.
    void recall(const QByteArray& command) { m_last = m_answers.value(command).text; }

    /// The last reply as it came, lines joined by CR LF, without a last line end; only the start of one that is huge.
    const QByteArray& last() const { return m_last; }
    /// The same for the user: at most 254 bytes, a longer one is 255 blanks.
    QString lastText() const;
    bool isTooLong() const;
    /// The directory in a last reply such as 257 "/a ""quoted"" one" is current.
    std::optional<QByteArray> lastPath() const;

private:
    struct Answer {
        int code = 0;
        QByteArray text;
    };

    QByteArray m_command;
    QMap<QByteArray, Answer> m_answers;
    QByteArray m_last;
    bool m_isWhole = true;
    int m_count = 0;
    int m_lastCode = 0;
};

} // namespace velloria::publish
