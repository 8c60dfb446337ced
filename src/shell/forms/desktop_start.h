// The start of the desktop program, from the program's folder to the main window.
#pragma once

#include "desktop/context.h"
#include "shell/startup.h"

namespace velloria::shell {

/// Asks who logs in when there is a user file, fills the session, and shows the main window. Ended when somebody
/// cancelled or a box has said why there is no going on; a failure up to the session is thrown, a later one told.
StartResult startDesktop(desktop::Context& context, const QString& home);

} // namespace velloria::shell
