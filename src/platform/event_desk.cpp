#include "platform/event_desk.h"

#include "platform/failure.h"

using namespace Qt::StringLiterals;

namespace velloria::platform {
namespace {

QString name(MessageKind kind) {
    switch (kind) {
    case MessageKind::Critical:
        return u"critical"_s;
    case MessageKind::Question:
        return u"question"_s;
    case MessageKind::Exclamation:
        return u"exclamation"_s;
    case MessageKind::Information:
        return u"information"_s;
    case MessageKind::Plain:
        break;
    }
    return u"plain"_s;
}

QString name(PathMode mode) {
    switch (mode) {
    case PathMode::Open:
        return u"open"_s;
    case PathMode::Save:
        return u"save"_s;
    case PathMode::Folder:
        break;
    }
    return u"folder"_s;
}

QJsonObject box(const QString& kind, const QString& text, const QString& title, const QString& buttons) {
    return {
        {u"event"_s, u"message"_s}, {u"kind"_s, kind}, {u"title"_s, title}, {u"text"_s, text}, {u"buttons"_s, buttons}};
}

QJsonValue orNull(const std::optional<QString>& answer) {
    return answer ? QJsonValue(*answer) : QJsonValue();
}

} // namespace

void EventDesk::message(MessageKind kind, const QString& text, const QString& title) {
    QJsonObject event = box(name(kind), text, title, u"ok"_s);
    event[u"answer"_s] = u"ok"_s;
    record(event);
}

bool EventDesk::ask(const QString& text, const QString& title) {
    QJsonObject event = box(u"question"_s, text, title, u"yesno"_s);
    const bool isYes = answerYesNo(event);
    event[u"answer"_s] = isYes ? u"yes"_s : u"no"_s;
    record(event);
    return isYes;
}

std::optional<QString> EventDesk::choosePath(const PathRequest& request) {
    QJsonObject event{{u"event"_s, u"file"_s},
                      {u"mode"_s, name(request.mode)},
                      {u"title"_s, request.title},
                      {u"filter"_s, request.filter},
                      {u"folder"_s, request.folder}};
    const std::optional<QString> path = answerText(event);
    event[u"answer"_s] = orNull(path);
    record(event);
    return path;
}

QString EventDesk::input(const QString& text, const QString& whenAsked, const QString& title) {
    QJsonObject event{{u"event"_s, u"input"_s}, {u"title"_s, title}, {u"text"_s, text}, {u"default"_s, whenAsked}};
    const std::optional<QString> typed = answerText(event);
    event[u"answer"_s] = orNull(typed);
    record(event);
    return typed.value_or(QString());
}

/// A question for each line: the first one that is cancelled cancels the window.
std::optional<Passwords> EventDesk::passwords(const QString& caption, PasswordLines lines) {
    const std::optional<QString> password = passwordLine(caption, u"パスワード"_s);
    if (!password || lines == PasswordLines::One)
        return password ? std::optional(Passwords{*password, {}}) : std::nullopt;
    const std::optional<QString> confirmation = passwordLine(caption, u"パスワード（確認用）"_s);
    return confirmation ? std::optional(Passwords{*password, *confirmation}) : std::nullopt;
}

std::optional<QString> EventDesk::passwordLine(const QString& caption, const QString& label) {
    QJsonObject event{{u"event"_s, u"input"_s}, {u"title"_s, caption}, {u"text"_s, label}, {u"default"_s, u""_s}};
    const std::optional<QString> typed = answerSecret(event);
    // What was typed is nobody else's: the event says only that something was.
    event[u"answer"_s] = orNull(typed ? std::optional(QString(typed->size(), u'*')) : std::nullopt);
    record(event);
    return typed;
}

void EventDesk::status(const QString& text) {
    record({{u"event"_s, u"status"_s}, {u"text"_s, text}});
}

void EventDesk::pointer(Pointer shape) {
    record({{u"event"_s, u"pointer"_s}, {u"shape"_s, shape == Pointer::Hourglass ? u"hourglass"_s : u"default"_s}});
}

void EventDesk::progress(const QString& text, int value, int max) {
    record({{u"event"_s, u"progress"_s},
            {u"caption"_s, u"Velloria"_s},
            {u"title"_s, u""_s},
            {u"text"_s, text},
            {u"max"_s, max},
            {u"value"_s, value},
            {u"ok"_s, value >= max}});
}

void EventDesk::progressWindow(const ProgressWindow& shown) {
    record({{u"event"_s, u"progress"_s},
            {u"caption"_s, shown.caption},
            {u"title"_s, shown.title},
            {u"text"_s, shown.text},
            {u"max"_s, shown.max},
            {u"value"_s, shown.value},
            {u"ok"_s, shown.isOkEnabled}});
}

void EventDesk::updaterWindow(const UpdaterWindow& shown) {
    record({{u"event"_s, u"progress"_s},
            {u"caption"_s, u"Velloria DB Updater"_s},
            {u"title"_s, u""_s},
            {u"text"_s, shown.text},
            {u"max"_s, shown.max},
            {u"value"_s, shown.value},
            {u"ok"_s, false}});
}

void EventDesk::sound(const QString& command) {
    record({{u"event"_s, u"sound"_s}, {u"command"_s, command}});
}

void EventDesk::navigate(const QString& url) {
    record({{u"event"_s, u"navigate"_s}, {u"url"_s, url}});
}

void EventDesk::failure(const Failure& failure) {
    record({{u"event"_s, u"failure"_s}, {u"text"_s, failure.text()}});
    status(u"エラー："_s + failure.whatFailed());
}

} // namespace velloria::platform
