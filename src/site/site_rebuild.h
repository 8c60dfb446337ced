// The whole site anew: all past months as logs, then the current month. One call is one command, in the thread of the
// desk, which is asked where the site lies when nobody has said so yet.
#pragma once

#include "core/run.h"
#include "platform/outcome.h"
#include "site/save_html.h"

namespace velloria::site {

/// What a rebuild did.
struct RebuildResult {
    platform::Outcome outcome = platform::Outcome::Done; ///< Refused: nobody said where the site is to lie
    int logs = 0;                                        ///< months that became logs
    int failures = 0;                                    ///< months that failed and were told about
};

/// Archives each month that has entries and lies before the month of `Today`, oldest first, then saves the month of
/// `Today`, then makes one preview. `from` and `to` ("yyyy/mm", "" for no limit) limit the months, the current one
/// too. The weather pictures are placed before the logs, and each log is listed once for the upload however often it
/// was made. A month that fails is told about and the rest goes on; throws platform::Failure when the site folder is
/// gone.
RebuildResult rebuildSite(const core::Run& run, const QString& from, const QString& to);

} // namespace velloria::site
