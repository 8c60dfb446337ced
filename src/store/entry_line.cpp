#include "store/entry_line.h"

#include "core/day_key.h"
#include "platform/failure.h"
#include "platform/utf8.h"

using namespace Qt::StringLiterals;

namespace velloria::store {
namespace {

struct TextMember {
    QLatin1StringView name;
    QString Entry::*field;
    QStringView whenLeftOut; ///< a null view: a missing value
};

const TextMember kTextMembers[] = {
    {"Title"_L1, &Entry::title, u""},
    {"Contents"_L1, &Entry::contents, u""},
    {"Extend"_L1, &Entry::extend, u""},
    {"Excerpt"_L1, &Entry::excerpt, u""},
    {"Weather"_L1, &Entry::weather, u"-"},
    {"Genre"_L1, &Entry::genre, u"一般"},
    {"PublishTime"_L1, &Entry::publishTime, {}},
    {"ImportMark"_L1, &Entry::importMark, {}},
};

[[noreturn]] void refuse(const QString& reason) {
    throw platform::Failure(u"入力を読み取れません。"_s, {}, reason);
}

/// The diary could keep no more of it than a "?".
void refuseHalfCharacter(QLatin1StringView name, const QString& text) {
    if (!text.isValidUtf16())
        refuse(u"「%1」に文字の半分(対になっていないサロゲート)があります。"_s.arg(name));
}

QString readText(const QJsonObject& line, const TextMember& member) {
    const QJsonValue value = line.value(member.name);
    if (value.isUndefined())
        return member.whenLeftOut.isNull() ? QString() : member.whenLeftOut.toString();
    if (value.isNull())
        return {};
    if (!value.isString())
        refuse(u"「%1」は文字列でなければなりません。"_s.arg(member.name));
    const QString text = value.toString();
    refuseHalfCharacter(member.name, text);
    return text.isNull() ? u""_s : text;
}

int readNumber(const QJsonObject& line) {
    const QJsonValue value = line.value("Number"_L1);
    if (value.isUndefined() || value.isNull())
        return 0;
    const double number = value.toDouble(-1);
    if (!value.isDouble() || number < 1 || number > 32767 || number != double(int(number)))
        refuse(u"「Number」は1から32767までの整数でなければなりません。"_s);
    return int(number);
}

bool readPrivate(const QJsonObject& line) {
    const QJsonValue value = line.value("Private"_L1);
    if (value.isUndefined() || value.isNull())
        return false;
    if (!value.isBool())
        refuse(u"「Private」はtrueかfalseでなければなりません。"_s);
    return value.toBool();
}

void refuseUnknownMembers(const QJsonObject& line) {
    static const QStringList known{u"Day"_s,   u"Number"_s,      u"Private"_s,   u"Reason"_s,  u"Time"_s,
                                   u"Title"_s, u"Contents"_s,    u"Extend"_s,    u"Excerpt"_s, u"Weather"_s,
                                   u"Genre"_s, u"PublishTime"_s, u"ImportMark"_s};
    for (auto member = line.begin(); member != line.end(); ++member) {
        if (!known.contains(member.key()))
            refuse(u"「%1」という項目はありません。"_s.arg(member.key()));
    }
}

QJsonValue orNull(const QString& text) {
    return text.isNull() ? QJsonValue() : QJsonValue(text);
}

} // namespace

QJsonObject toJson(const Entry& entry) {
    QJsonObject json{{u"Day"_s, entry.day}, {u"Number"_s, entry.number}, {u"Private"_s, entry.isPrivate}};
    for (const TextMember& member : kTextMembers)
        json.insert(member.name, orNull(entry.*member.field));
    return json;
}

EntryLine parseEntryLine(const QByteArray& line) {
    QJsonParseError error;
    const QJsonDocument document = platform::parseJson(line, &error);
    if (error.error != QJsonParseError::NoError)
        refuse(u"JSONとして読めません (%1)。"_s.arg(error.errorString()));
    if (!document.isObject())
        refuse(u"JSONのオブジェクトではありません。"_s);
    const QJsonObject json = document.object();
    refuseUnknownMembers(json);

    EntryLine result;
    result.isRescued = json.contains("Reason"_L1);
    for (const auto& mark : {"Reason"_L1, "Time"_L1}) {
        if (json.contains(mark) && !json.value(mark).isString())
            refuse(u"「%1」は文字列でなければなりません。"_s.arg(mark));
        refuseHalfCharacter(mark, json.value(mark).toString());
    }
    Entry& entry = result.entry;
    if (!json.value("Day"_L1).isString())
        refuse(u"「Day」がありません。"_s);
    entry.day = json.value("Day"_L1).toString();
    if (!core::isDayKey(entry.day))
        refuse(u"「%1」という日はありません (yyyy/mm/dd)。"_s.arg(entry.day));
    entry.number = readNumber(json);
    entry.isPrivate = readPrivate(json);
    for (const TextMember& member : kTextMembers)
        entry.*member.field = readText(json, member);
    if (entry.title.isEmpty() && !result.isRescued)
        refuse(u"タイトルを入力してください！"_s);
    return result;
}

} // namespace velloria::store
