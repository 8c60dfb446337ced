// Making and deleting customize sets while one of them is edited.
#pragma once

#include "core/session.h"
#include "site/customize_backup.h"

#include <functional>

namespace velloria::site {

/// Makes a set of what the selected one holds and what `apply` then writes to it, in place of one of the same name. It
/// becomes the set of the session, though not of the settings, and its predecessor is as it was before it was edited.
/// Throws platform::Failure, with everything as it was and the old set selected, when the new one can't be written or
/// the old one not be put back. `backup` goes on being that of the old one.
void makeCustomizeSet(core::Session& session, const CustomizeBackup& backup, const QString& name,
                      const std::function<void()>& apply);

/// Deletes the set, and selects the next one of the list, in session and settings: there always is one, if need be the
/// one that comes with the program. Throws platform::Failure.
void deleteCustomizeSet(core::Session& session, const QString& name);

} // namespace velloria::site
