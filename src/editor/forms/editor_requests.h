// What other windows may ask of the editor without knowing it.
#pragma once

#include "desktop/context.h"

namespace velloria::editor {

/// Answers the requests of `context` that are the editor's.
void serveRequests(desktop::Context& context);

} // namespace velloria::editor
