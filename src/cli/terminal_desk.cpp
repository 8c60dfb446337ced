#include "cli/terminal_desk.h"

#include "cli/streams.h"
#include "platform/failure.h"
#include "platform/utf8.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace velloria::cli {

void TerminalDesk::record(const QJsonObject& event) {
    const QString name = event[u"event"_s].toString();
    if (showsEvents) {
        writeError(platform::fromUtf8(QJsonDocument(event).toJson(QJsonDocument::Compact)));
        return;
    }
    if (name == u"progress"_s) {
        showProgress(event[u"text"_s].toString(), event[u"value"_s].toInt(), event[u"max"_s].toInt());
        if (event[u"ok"_s].toBool())
            endProgress();
    } else if (name == u"message"_s && event[u"buttons"_s] == u"ok"_s && event[u"kind"_s] != u"information"_s) {
        endProgress();
        writeError(event[u"text"_s].toString());
    }
}

void TerminalDesk::status(const QString& text) {
    if (showsEvents)
        EventDesk::status(text);
}

void TerminalDesk::failure(const platform::Failure& failure) {
    endProgress();
    EventDesk::failure(failure);
    writeError(u"velloria-cli: "_s + failure.line());
}

bool TerminalDesk::answerYesNo(const QJsonObject& question) {
    if (answersYes)
        return true;
    if (answers)
        return !answers->isEmpty() && answers->takeAt(0) == u"yes"_s;
    const std::optional<QString> line = askOnTerminal(question[u"text"_s].toString() + u" [y/N] "_s, Echo::On);
    return line && line->startsWith(u'y', Qt::CaseInsensitive);
}

std::optional<QString> TerminalDesk::scriptedText() {
    const QJsonValue answer = answers->isEmpty() ? QJsonValue() : answers->takeAt(0);
    return answer.isString() ? std::optional(answer.toString()) : std::nullopt;
}

/// An empty line takes the default of an input box, and cancels a file dialog.
std::optional<QString> TerminalDesk::answerText(const QJsonObject& question) {
    if (answers)
        return scriptedText();
    const QString whenAsked = question[u"default"_s].toString();
    QString text = question[question[u"event"_s] == u"input"_s ? u"text"_s : u"title"_s].toString();
    if (!whenAsked.isEmpty())
        text += u" [%1]"_s.arg(whenAsked);
    const std::optional<QString> line = askOnTerminal(text + u": "_s, Echo::On);
    if (line && line->isEmpty())
        return whenAsked.isEmpty() ? std::nullopt : std::optional(whenAsked);
    return line;
}

std::optional<QString> TerminalDesk::answerSecret(const QJsonObject& question) {
    if (answers)
        return scriptedText();
    // Both: of two lines one after the other the text tells which one is meant.
    const QString prompt = question[u"title"_s].toString() + u" - "_s + question[u"text"_s].toString() + u": "_s;
    return askOnTerminal(prompt, Echo::Off); // an empty one is that of a user without a password
}

void TerminalDesk::updaterWindow(const platform::UpdaterWindow& shown) {
    constexpr int kPauseMs = 100;
    if (showsEvents) {
        EventDesk::updaterWindow(shown);
        return;
    }
    const bool isDue = !m_sinceUpdater.isValid() || m_sinceUpdater.hasExpired(kPauseMs);
    if (!isDue && shown.value < shown.max && shown.text == m_updaterText)
        return;
    m_updaterText = shown.text;
    m_sinceUpdater.start();
    showProgress(shown.text.sliced(shown.text.lastIndexOf(u'\n') + 1), shown.value, shown.max);
}

void TerminalDesk::showProgress(const QString& text, int value, int max) {
    if (!standardErrorIsTerminal())
        return;
    m_hasProgressLine = true;
    constexpr auto kEraseToEndOfLine = "\x1b[K"_L1;
    writeErrorPart(u"\r%1 %2/%3"_s.arg(harmless(QString(text).replace(u"\r\n"_s, u" "_s))).arg(value).arg(max) +
                   kEraseToEndOfLine);
}

void TerminalDesk::endProgress() {
    if (m_hasProgressLine)
        writeErrorPart(u"\n"_s);
    m_hasProgressLine = false;
}

} // namespace velloria::cli
