// Brings a diary database of any older version and format to the present layout: all rows go, field by field, into a
// fresh copy of the template.
#pragma once

#include "core/run.h"
#include "platform/file_lock.h"

#include <functional>

namespace velloria::store {

/// What a start does with the diary of the session. One of this program's version or a later one stays as it is, and
/// nothing is told. Of an older one, and of one in the old format whatever its version, the person hears first. Then it
/// goes to the backup; it is converted if its version is one that was ever given out; last the settings record the
/// present version. `addCustomizeFiles` is called when nothing has been touched yet. Throws platform::Failure, with the
/// diary as it was and no new version on record.
void updateOldDiary(const core::Run& run, const std::function<void()>& addCustomizeFiles);

/// Two programs may meet an old diary at once: its working files are for one at a time, and the later one finds it up
/// to date. Held around the backup and UpdateDatabase.
platform::FileTurn turnAtUpdate(const core::Session& session);

/// Copies the diary of the session, which is of this version, into a fresh "default.mdb" and puts that in its place.
/// Tells all of it to the updater's window, which is shown already and whose text is the first line. Without a diary a
/// fresh one is put there. Throws platform::Failure: the diary is then as it was, the working files "old.mdb" and
/// "new.mdb" may be left for the next run to remove.
void UpdateDatabase(const core::Run& run, qint16 oldVersion);

} // namespace velloria::store
