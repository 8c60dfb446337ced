// The end of a run: what does not stay behind in the data folder of a user who logged in.
#pragma once

#include "core/session.h"

namespace velloria::shell {

/// Removes every "*.htm" and "*.xml" directly in the data folder. Several users share the machine, so their generated
/// pages do not stay; a file that this program did not write is moved to the folder "Kept" there instead. Throws
/// platform::Failure for the first file that refuses, once the others are done.
void removeGeneratedPages(const core::Session& session);

/// Removes the local pages of a folder, given with its separator, which is the data folder no longer: they show private
/// entries, and no end of a run looks there. Throws as above.
void removeLocalPages(const QString& folder);

} // namespace velloria::shell
