// What a person sees of an update.
#pragma once

#include "platform/desk.h"

namespace velloria::store {

/// The window, for as long as this lives: no failure leaves it behind.
class ShownUpdater {
public:
    explicit ShownUpdater(platform::Desk& desk);
    ~ShownUpdater();
    ShownUpdater(const ShownUpdater&) = delete;
    ShownUpdater& operator=(const ShownUpdater&) = delete;

private:
    platform::Desk& m_desk;
};

/// Text and bar of the window that is shown, from its first line on.
class UpdaterLines {
public:
    explicit UpdaterLines(platform::Desk& desk);

    void append(const QString& line);
    /// A bar for so many steps, or for 100 when there is none, of which so many are done.
    void beginBar(qint64 steps, qint64 value = 0);
    void setBar(qint64 value);

private:
    platform::Desk& m_desk;
    platform::UpdaterWindow m_shown;
};

} // namespace velloria::store
