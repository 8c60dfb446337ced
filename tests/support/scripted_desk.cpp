#include "support/scripted_desk.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace velloria::tests {

QStringList ScriptedDesk::texts(const QString& eventName) const {
    QStringList texts;
    for (const QJsonValue& event : events) {
        if (event[u"event"_s] == eventName)
            texts += event[eventName == u"navigate"_s ? u"url"_s : u"text"_s].toString();
    }
    return texts;
}

void ScriptedDesk::detailedMessage(platform::MessageKind kind, const QString& text, const QString& shownDetails) {
    details += shownDetails;
    EventDesk::detailedMessage(kind, text, shownDetails);
}

bool ScriptedDesk::answerYesNo(const QJsonObject& question) {
    return next(question) == u"yes"_s;
}

std::optional<QString> ScriptedDesk::answerText(const QJsonObject& question) {
    const QJsonValue answer = next(question);
    return answer.isNull() ? std::nullopt : std::optional(answer.toString());
}

QJsonValue ScriptedDesk::next(const QJsonObject& question) {
    if (answers.isEmpty())
        throw UnansweredQuestion(QJsonDocument(question).toJson().toStdString());
    return answers.takeAt(0);
}

} // namespace velloria::tests
