// All commands of the main window: a part whose table is new is named in menu_commands.cpp.
#pragma once

#include "desktop/context.h"
#include "desktop/menu_command.h"

namespace velloria::shell {

/// The tables of all parts: what each row of the menus does.
desktop::MenuCommands menuCommands(desktop::Context& context);

} // namespace velloria::shell
