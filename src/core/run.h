// One run of the program.
#pragma once

#include "core/session.h"
#include "platform/clock.h"
#include "platform/desk.h"

namespace velloria::core {

/// Whose diary it is, what time it is, and who is asked and told: what a command gets, be it chosen in a window or
/// typed at a terminal. `main` of each program owns all three; they outlive every run. A copy is as good as the
/// original.
struct Run {
    Session& session;
    const platform::Clock& clock;
    platform::Desk& desk;
};

} // namespace velloria::core
