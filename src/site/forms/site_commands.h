// The commands that make pages of the site.
#pragma once

#include "desktop/context.h"
#include "desktop/menu_command.h"

namespace velloria::site {

desktop::MenuCommands siteCommands(desktop::Context& context);

} // namespace velloria::site
