// Waiting for what another program holds.
#pragma once

#include <QEvent>
#include <QString>

#include <chrono>

namespace velloria::platform {

/// Goes to the application again and again while a routine waits. Whoever has windows lets them paint meanwhile, and
/// may give a person the choice to leave.
class Waiting : public QEvent {
public:
    static constexpr Type kType = Type(QEvent::User + 1);

    Waiting(QString heldThing, std::chrono::milliseconds waitedFor)
        : QEvent(kType)
        , what(std::move(heldThing))
        , waited(waitedFor) {}

    const QString what; ///< "～は他のプログラムが使用中です。"
    const std::chrono::milliseconds waited;
    bool isGivenUp = false; ///< set by who receives it
};

/// Passes a moment of a wait that has lasted so long. False when somebody gave it up.
bool waitOn(const QString& what, std::chrono::milliseconds waited);

} // namespace velloria::platform
