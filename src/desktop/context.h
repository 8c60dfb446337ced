// What every window gets: the session, the ports, the other windows and what may be asked of them.
#pragma once

#include "core/session.h"
#include "desktop/long_runs.h"
#include "desktop/requests.h"
#include "desktop/windows.h"
#include "platform/clock.h"
#include "platform/desk.h"

class QMdiArea;

namespace velloria::desktop {

/// Owned by the program's `main`; outlives every window.
struct Context {
    core::Session& session;
    const platform::Clock& clock;
    platform::Desk& desk;
    Windows windows{*this};
    LongRuns runs{};
    Requests requests{};
    QMdiArea* mdi = nullptr; ///< where the child windows live; set by the main window
};

} // namespace velloria::desktop
