// The boundary of a command: no exception may fly through Qt.
#pragma once

#include "platform/desk.h"

#include <functional>

namespace velloria::desktop {

/// Runs one menu command or slot. A platform::Failure ends it with the failure box and its line on the status panel;
/// whatever else is thrown, by the machine (no memory) or by a foreign library, is told the same way. Returns whether
/// it came to its end.
bool runCommand(platform::Desk& desk, const std::function<void()>& action);

/// Within such a command: a platform::Failure ends it without a box, with a line on the status panel and on standard
/// error.
void runQuietly(platform::Desk& desk, const std::function<void()>& action);

} // namespace velloria::desktop
