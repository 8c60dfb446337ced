// The commands of the main window itself and of the windows in it.
#pragma once

#include "desktop/context.h"
#include "desktop/menu_command.h"

namespace velloria::shell {

desktop::MenuCommands windowCommands(desktop::Context& context);

} // namespace velloria::shell
