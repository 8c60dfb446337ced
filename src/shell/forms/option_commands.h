// The commands of the options menu that set up the program itself.
#pragma once

#include "desktop/context.h"
#include "desktop/menu_command.h"

namespace velloria::shell {

desktop::MenuCommands optionCommands(desktop::Context& context);

} // namespace velloria::shell
