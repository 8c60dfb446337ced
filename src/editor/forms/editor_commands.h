// The commands of the editor and the calendar, with those of the panes' menu.
#pragma once

#include "desktop/context.h"
#include "desktop/menu_command.h"

namespace velloria::editor {

desktop::MenuCommands editorCommands(desktop::Context& context);

} // namespace velloria::editor
