// Another diary in the place of the present one, while windows show it.
#pragma once

#include "desktop/context.h"

namespace velloria::shell {

/// restoreBackupCommand, and the windows show what is there then: the open day, the calendar, genres, registers, the
/// preview. Refused with a box while network work runs. Unsaved changes are asked about before; those of a No go to the
/// rescue file. What it throws leaves diary and editor as they were.
void restoreInWindows(desktop::Context& context, const QString& name);

} // namespace velloria::shell
