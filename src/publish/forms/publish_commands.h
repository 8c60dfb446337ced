// The commands that reach the network. They work on while other commands may run.
#pragma once

#include "desktop/context.h"
#include "desktop/menu_command.h"

namespace velloria::publish {

desktop::MenuCommands publishCommands(desktop::Context& context);

/// The updater can be started where a check that found something newer left word of it. Throws platform::Failure.
void enableUpdater(const desktop::Context& context);

} // namespace velloria::publish
