// The commands that change how texts are converted.
#pragma once

#include "desktop/context.h"
#include "desktop/menu_command.h"

namespace velloria::convert {

desktop::MenuCommands convertCommands(desktop::Context& context);

} // namespace velloria::convert
