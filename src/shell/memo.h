// The memo, a program of its own beside this one.
#pragma once

#include "core/run.h"

namespace velloria::shell {

/// Starts "VellMemo.exe" with the file of users, the user's name and their password, and goes on; a box tells when it
/// is not there. Throws platform::Failure when it can't be started.
void memoCommand(const core::Run& run);

} // namespace velloria::shell
