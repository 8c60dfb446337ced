#include "cli/streams.h"

#include "platform/failure.h"
#include "platform/utf8.h"

#include <cerrno>
#include <cstdio>
#include <iostream>
#include <string>
#include <termios.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

/// Switches the terminal's echo off for as long as a password is typed.
class SilentTerminal {
public:
    SilentTerminal() {
        m_isSet = tcgetattr(STDIN_FILENO, &m_before) == 0;
        termios silent = m_before;
        silent.c_lflag &= ~tcflag_t(ECHO);
        if (m_isSet)
            tcsetattr(STDIN_FILENO, TCSANOW, &silent);
    }
    ~SilentTerminal() {
        if (m_isSet) {
            tcsetattr(STDIN_FILENO, TCSANOW, &m_before);
            std::fputc('\n', stderr);
        }
    }
    SilentTerminal(const SilentTerminal&) = delete;
    SilentTerminal& operator=(const SilentTerminal&) = delete;

private:
    termios m_before{};
    bool m_isSet = false;
};

[[noreturn]] void refuseInput(const QString& reason) {
    throw platform::Failure(u"入力を読み込めません。"_s, u"標準入力"_s, reason, u"入力を確認してください。"_s);
}

} // namespace

QString harmless(const QString& text) {
    QString shown;
    shown.reserve(text.size());
    for (const QChar c : text) {
        if (c.category() == QChar::Other_Control && c != u'\t' && c != u'\n')
            shown += u"\\u%1"_s.arg(c.unicode(), 4, 16, '0'_L1);
        else
            shown += c;
    }
    return shown;
}

void occupyClosedStreams() {
    for (std::FILE* stream : {stdin, stdout, stderr}) {
        const bool isClosed = isatty(fileno(stream)) == 0 && errno == EBADF;
        [[maybe_unused]] const auto* refusing =
            isClosed ? std::freopen("/dev/null", stream == stdin ? "w" : "r", stream) : stream;
    }
}

void writeOutput(const QByteArray& bytes) {
    const auto size = std::size_t(bytes.size());
    if (std::fwrite(bytes.constData(), 1, size, stdout) != size || std::fflush(stdout) != 0)
        throw platform::Failure(u"結果を出力できません。"_s, u"標準出力"_s, platform::systemReason(errno),
                                u"出力先を確認してください。"_s);
}

void writeLine(const QString& line) {
    writeOutput(line.toUtf8() + '\n');
}

void writeError(const QString& line) {
    writeErrorPart(harmless(QString(line).replace(u"\r\n"_s, u"\n"_s)) + u'\n');
}

void writeErrorPart(const QString& text) {
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), stderr);
    std::fflush(stderr);
}

bool standardErrorIsTerminal() {
    return isatty(STDERR_FILENO) == 1;
}

bool standardOutputIsTerminal() {
    return isatty(STDOUT_FILENO) == 1;
}

QByteArray readInput() {
    QByteArray bytes;
    char block[1 << 16];
    while (const std::size_t count = std::fread(block, 1, sizeof block, stdin))
        bytes.append(block, qsizetype(count));
    if (std::ferror(stdin))
        refuseInput(platform::systemReason(errno));
    return bytes;
}

std::optional<QString> readSecretLine(const QString& prompt) {
    if (isatty(STDIN_FILENO) == 1)
        return askOnTerminal(prompt, Echo::Off);
    QByteArray line;
    int c = std::fgetc(stdin);
    const bool hasLine = c != EOF;
    for (; c != EOF && c != '\n'; c = std::fgetc(stdin))
        line += char(c);
    if (std::ferror(stdin))
        refuseInput(platform::systemReason(errno));
    if (line.endsWith('\r'))
        line.chop(1);
    if (!line.isValidUtf8())
        refuseInput(u"UTF-8ではありません"_s);
    return hasLine ? std::optional(platform::fromUtf8(line)) : std::nullopt;
}

std::optional<QString> askOnTerminal(const QString& prompt, Echo echo) {
    if (isatty(STDIN_FILENO) != 1)
        return std::nullopt;
    std::optional<SilentTerminal> silent;
    if (echo == Echo::Off)
        silent.emplace(); // before the prompt, which a script answers at once
    writeErrorPart(harmless(QString(prompt).replace(u"\r\n"_s, u"\n"_s)));
    std::string line;
    if (!std::getline(std::cin, line))
        return std::nullopt;
    return platform::fromUtf8(line);
}

} // namespace velloria::cli
