// The windows when the data folder has become another one in the middle of a run.
#pragma once

#include "desktop/context.h"

namespace velloria::shell {

/// Of a user who logged in no local page stays in `before`, unless the data folder is the same under another name: what
/// they show of private entries is no one else's.
void leaveDataFolder(desktop::Context& context, const QString& before);

/// Reads anew what open windows show of the folder, and leaves alone what somebody is writing in the diary. A page of
/// the folder that was, `before` with its separator, gives way to the preview from the new one, and `before` is left. A
/// failure on the way is told, and the rest goes on.
void followDataFolder(desktop::Context& context, const QString& before);

} // namespace velloria::shell
