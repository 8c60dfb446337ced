// A Desk that turns everything shown or asked into one JSON event, in order.
#pragma once

#include "platform/desk.h"

#include <QJsonObject>

namespace velloria::platform {

/// Base of the desks without windows. The events' names and members are those of the command line tool's `--events`.
class EventDesk : public Desk {
public:
    void message(MessageKind kind, const QString& text, const QString& title) override;
    bool ask(const QString& text, const QString& title) override;
    std::optional<QString> choosePath(const PathRequest& request) override;
    QString input(const QString& text, const QString& whenAsked, const QString& title) override;
    std::optional<Passwords> passwords(const QString& caption, PasswordLines lines) override;
    void status(const QString& text) override;
    void pointer(Pointer shape) override;
    void progress(const QString& text, int value, int max) override;
    void progressWindow(const ProgressWindow& shown) override;
    void closeProgressWindow() override {}
    void updaterWindow(const UpdaterWindow& shown) override;
    void closeUpdaterWindow() override {}
    void pump() override {}
    void sound(const QString& command) override;
    void navigate(const QString& url) override;
    void failure(const Failure& failure) override;

protected:
    /// Takes one event; questions come here after their answer.
    virtual void record(const QJsonObject& event) = 0;
    /// The answer to a question, whose event lacks nothing but "answer".
    virtual bool answerYesNo(const QJsonObject& question) = 0;
    virtual std::optional<QString> answerText(const QJsonObject& question) = 0;
    /// The same for what nobody may see.
    virtual std::optional<QString> answerSecret(const QJsonObject& question) { return answerText(question); }

private:
    std::optional<QString> passwordLine(const QString& caption, const QString& label);
};

} // namespace velloria::platform
