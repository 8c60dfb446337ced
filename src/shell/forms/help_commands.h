// The commands that tell about the program.
#pragma once

#include "desktop/context.h"
#include "desktop/menu_command.h"

namespace velloria::shell {

desktop::MenuCommands helpCommands(desktop::Context& context);

} // namespace velloria::shell
