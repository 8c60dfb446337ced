// A Desk for tests: it keeps every event and answers from a list; a question without an answer is an error of the test.
#pragma once

#include "platform/event_desk.h"

#include <QJsonArray>
#include <QStringList>

#include <stdexcept>

namespace velloria::tests {

/// Thrown when logic asks what the test did not expect.
class UnansweredQuestion : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

class ScriptedDesk : public platform::EventDesk {
public:
    /// "yes", "no", a text or a path, JSON null for cancel; taken in order.
    QJsonArray answers;
    QJsonArray events;
    /// What the boxes with details had there, in order.
    QStringList details;

    /// The texts of all events of a kind ("status", "message", "failure", ...), "navigate" gives its addresses.
    QStringList texts(const QString& eventName) const;

    void detailedMessage(platform::MessageKind kind, const QString& text, const QString& shownDetails) override;

protected:
    void record(const QJsonObject& event) override { events.append(event); }
    bool answerYesNo(const QJsonObject& question) override;
    std::optional<QString> answerText(const QJsonObject& question) override;

private:
    QJsonValue next(const QJsonObject& question);
};

} // namespace velloria::tests
