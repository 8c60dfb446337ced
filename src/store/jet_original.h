// A diary as an older program left it.
#pragma once

#include "core/session.h"

namespace velloria::store {

/// Keeps the session's diary, one of the old format, as "diary_jet.mdb" for good, or under the next free name beside
/// that. One that is kept already is not kept twice. Throws platform::Failure.
void keepJetOriginal(const core::Session& session);

} // namespace velloria::store
