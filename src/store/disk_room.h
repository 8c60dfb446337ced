// Room on the disk, asked for before the first byte is written.
#pragma once

#include "core/session.h"

namespace velloria::store {

/// Throws platform::Failure, which says how much is needed and how much is there, when there is no room for all that an
/// update of the session's diary writes: its backups, the copy that is read, and the new diary. A disk that does not
/// tell has it.
void requireRoomForUpdate(const core::Session& session);

} // namespace velloria::store
