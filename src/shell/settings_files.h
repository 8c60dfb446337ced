// The settings files whose paths the user's "diary.ini" keeps, and the update of a diary, which may come without them.
#pragma once

#include "core/run.h"

namespace velloria::shell {

/// Their paths go to the session. One that is not named, or named and not there, gets its standard place, which the
/// settings then keep. Throws platform::Failure for a file that can't be read.
void findSettingsFiles(core::Session& session);

/// What a start does with a diary of an older version or format: nothing with a present one. Throws platform::Failure.
void bringDiaryUpToDate(const core::Run& run);

} // namespace velloria::shell
