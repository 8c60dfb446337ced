// The daily copies of the diary, in the folder "Backup" of the user. Their names are told in store/backup_names.h.
#pragma once

#include "core/run.h"

#include <QString>

namespace velloria::store {

/// Copies the diary of the run to the name of the present day, under the engine's lock, so that the copy is whole
/// whatever other programs do. It takes its name only after it has been read back: the engine finds nothing wrong, and
/// it has the entries that the diary had at that moment. A copy that has the very bytes of the diary stays as it is;
/// what else had the name moves on, and what the rule keeps no longer goes then, and nothing else. Nobody may read a
/// copy who may not read the diary. Returns the file; "" for a diary that is missing, has no entries or is of the
/// format before this one: of these there is no copy here. Throws platform::Failure for an unsound diary, and when the
/// machine refuses: the copies that were there stay.
///
/// The caller has no connection to the diary open: one that holds a lock would lose it. It is a step of a command that
/// has the pointer for itself.
QString makeBackup(const core::Run& run);

/// The same before a copy is put in the diary's place: that one, by its full path in `spared`, is not among what goes.
/// It may get another name, which is then in `spared`.
QString makeBackup(const core::Run& run, QString& spared);

/// makeBackup when the present day has no copy yet; a look at the folder when it has one. Returns false when it had.
bool makeBackupOfDay(const core::Run& run);

} // namespace velloria::store
