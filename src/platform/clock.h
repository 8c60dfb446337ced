// The one clock of the program.
#pragma once

#include <QDateTime>

namespace velloria::platform {

/// Gives the present local time. Dates of the diary are wall-clock dates: the zone is nobody's business from here on.
class Clock {
public:
    virtual ~Clock() = default;
    virtual QDateTime now() const = 0;
};

class SystemClock : public Clock {
public:
    QDateTime now() const override { return QDateTime::currentDateTime(); }
};

/// A clock that stands still, for tests and for `--now`.
class FixedClock : public Clock {
public:
    explicit FixedClock(QDateTime now)
        : m_now(std::move(now)) {}
    QDateTime now() const override { return m_now; }

private:
    QDateTime m_now;
};

} // namespace velloria::platform
