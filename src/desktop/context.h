// What every window gets: the run, the other windows and what may be asked of them.
#pragma once

#include "core/run.h"
#include "desktop/long_runs.h"
#include "desktop/requests.h"
#include "desktop/windows.h"

class QMdiArea;

namespace velloria::desktop {

/// Owned by the program's `main`; outlives every window.
struct Context : core::Run {
    LongRuns runs{};
    Requests requests{};
    Windows windows{*this};  ///< behind what they use to their end
    QMdiArea* mdi = nullptr; ///< where the child windows live; set by the main window
};

} // namespace velloria::desktop
