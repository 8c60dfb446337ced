// A diary that is missing or empty while a copy of it has entries: nobody begins anew without knowing.
#pragma once

#include "core/run.h"
#include "shell/start_result.h"

#include <QString>

namespace velloria::shell {

/// Whether there are copies of a missing diary: one to offer, or one that can't be read. Throws platform::Failure for a
/// link that leads nowhere.
bool isDiaryLost(const core::Session& session);

/// How it ended; `reason` for somebody who was not there to answer, also of a start that goes on.
struct Offer {
    StartResult result = StartResult::Ready;
    QString reason = {};
};

/// Offers the newest sound copy with entries when the diary is missing, or has none. Yes puts it in the diary's place.
/// A No goes on with a diary that is there; without one it needs a second word, and Ended means that nothing was made.
/// That word alone is asked for where a diary is missing and its copies can't be read. Asks nothing where there is no
/// copy with entries. Throws platform::Failure.
Offer offerCopy(const core::Run& run);

} // namespace velloria::shell
