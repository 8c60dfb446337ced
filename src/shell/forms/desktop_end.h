// The end of the desktop program: what is kept for the next time.
#pragma once

#include "desktop/context.h"

namespace velloria::shell {

/// What is unsaved in the editor, and half composed, goes to the draft.
void keepDraft(desktop::Context& context);

/// The machine ends the program, perhaps while a box is open: the draft and what the windows hold for the next time are
/// kept, and nobody is asked. The caller ends the process at once: an open question that saw its event loop end would
/// take that for a No.
void keepForTheEnd(desktop::Context& context);

/// The end that the person asked for, with nothing unsaved any more: windows keep what they hold, and the event loop of
/// the program ends.
void endDesktop(desktop::Context& context);

} // namespace velloria::shell
