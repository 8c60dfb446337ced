// The commands that work through programs and plug-ins beside this one, and the one for its users.
#pragma once

#include "desktop/context.h"
#include "desktop/menu_command.h"

namespace velloria::shell {

desktop::MenuCommands toolCommands(desktop::Context& context);

} // namespace velloria::shell
