// The command that makes the diary's file compact.
#pragma once

#include "core/run.h"

namespace velloria::store {

/// Asks, backs the diary up, copies it into a fresh file and tells. False is the user's No, which has been told. Throws
/// platform::Failure, with the diary as it was.
bool optimizeCommand(const core::Run& run);

} // namespace velloria::store
