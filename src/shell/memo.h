// The memo, a program of its own beside this one.
#pragma once

#include "core/run.h"

namespace velloria::shell {

/// Stands where the password would stand among the arguments of the memo program, which then reads it from its standard
/// input: other accounts of the machine can read what a program was started with.
inline constexpr char16_t kPasswordByInput[] = u"-";

/// Starts "VellMemo.exe" with the file of users, the user's name and kPasswordByInput, hands it their password, and
/// goes on; a box tells when it is not there. Throws platform::Failure when it can't be started.
void memoCommand(const core::Run& run);

} // namespace velloria::shell
