// The commands that bring something into the diary or out of it.
#pragma once

#include "desktop/context.h"
#include "desktop/menu_command.h"

namespace velloria::exchange {

desktop::MenuCommands exchangeCommands(desktop::Context& context);

} // namespace velloria::exchange
