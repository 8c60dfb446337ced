// The commands of the browser window.
#pragma once

#include "desktop/context.h"
#include "desktop/menu_command.h"

namespace velloria::browser {

desktop::MenuCommands browserCommands(desktop::Context& context);

} // namespace velloria::browser
