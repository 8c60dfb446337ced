// Brings an old diary database to the present version.
#pragma once

#include "core/session.h"

namespace velloria::store {

/// Puts a fresh diary from the template "default.mdb" in place when there is no "diary.mdb" at all. The conversion of
/// an older file is not part of this version: it is refused with platform::Failure, and the file stays as it was.
void UpdateDatabase(const core::Session& session, qint16 oldVersion);

} // namespace velloria::store
