#include "store/memo_line.h"

#include "platform/utf8.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace velloria::store {
namespace {

struct TextMember {
    QLatin1StringView name;
    QString Memo::*field;
};

constexpr TextMember kTexts[] = {{"PublishTime"_L1, &Memo::publishTime},
                                 {"Title"_L1, &Memo::title},
                                 {"Memo"_L1, &Memo::text},
                                 {"Category"_L1, &Memo::category}};

QString textOf(const QJsonValue& value) {
    const QString text = value.toString();
    return value.isString() && text.isNull() ? u""_s : text;
}

} // namespace

QJsonObject toJson(const Memo& memo) {
    QJsonObject json{{u"No"_s, memo.no ? QJsonValue(*memo.no) : QJsonValue()}, {u"IsPass"_s, memo.isLocked}};
    for (const TextMember& member : kTexts) {
        const QString& text = memo.*member.field;
        json.insert(member.name, text.isNull() ? QJsonValue() : QJsonValue(text));
    }
    return json;
}

std::optional<Memo> parseMemoLine(const QByteArray& line) {
    const QJsonDocument document = platform::parseJson(line, nullptr);
    const QJsonObject json = document.object();
    if (!document.isObject() || !json.contains("Memo"_L1))
        return std::nullopt;
    Memo memo;
    for (const TextMember& member : kTexts) {
        const QJsonValue value = json.value(member.name);
        if (!value.isString() && !value.isNull() && !value.isUndefined())
            return std::nullopt;
        memo.*member.field = textOf(value);
    }
    if (json.value("No"_L1).isDouble())
        memo.no = json.value("No"_L1).toInteger();
    memo.isLocked = json.value("IsPass"_L1).toBool();
    return memo;
}

} // namespace velloria::store
