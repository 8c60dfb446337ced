// The folder of the site on the user's disk.
#pragma once

#include "core/session.h"

namespace velloria::core {

/// Throws platform::Failure when the site folder is set and not there, as with a stick that was pulled out: nothing is
/// made in its place.
void requireSiteFolder(const Session& session);

} // namespace velloria::core
