// The commands of the registers.
#pragma once

#include "desktop/context.h"
#include "desktop/menu_command.h"

namespace velloria::registers {

desktop::MenuCommands registersCommands(desktop::Context& context);

} // namespace velloria::registers
