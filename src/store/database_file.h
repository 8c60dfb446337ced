// The database as a file: its version and its backup. Each call stands on its own, and any thread may call. What the
// machine refuses is thrown as platform::Failure; a target is replaced whole or stays as it was.
#pragma once

#include "platform/file_lock.h"

#include <QString>

namespace velloria::store {

/// The version of the diary database at `path`, 0 when the file does not exist or has no table DBInfo. Opens read-only
/// and never makes a file. Throws platform::Failure for a file that is no diary database.
qint16 GetDBVersion(const QString& path);

/// GetDBVersion of a file that somebody names: neither it nor what lies beside it changes.
qint16 versionOfNamed(const QString& file);

/// Copies the diary database to `backup`; the backups that lie there move on to `backup`.1 to .3, unless the last one
/// is equal to the diary already. The source is checked first, so a file that is no diary never takes the place of a
/// good backup. Nobody may read a backup who may not read the diary. Throws platform::Failure.
void backUpDatabase(const QString& path, const QString& backup);

/// Throws platform::Failure for a file that is no diary and for one that can't be read from its first row to its last,
/// of either format.
void requireSoundDiary(const QString& path);

/// Whether the engine's copy of a diary and a file hold the same: all but the counters by which it knows its copies.
bool holdSameDiary(const QString& left, const QString& right);

/// Throws platform::Failure for an SQLite file that is shorter than it says: the engine would take what is missing for
/// zeros.
void refuseCutOffPage(const QString& path);

/// Backups move from name to name: of two programs that move them at once each takes its turn. `folder` is that of the
/// diary. Held by one command at a time: none that takes it calls another one that does.
platform::FileTurn turnAtBackups(const QString& folder);

/// Copies a diary database (or its template) over `to`, settled first: a journal that was left behind is rolled back,
/// what another tool has written into a log beside it comes along, none is copied, and none stays beside the copy. A
/// new file gets `newFileMode`. Throws platform::Failure.
void copyDatabase(const QString& from, const QString& to, unsigned newFileMode = 0600);

/// Puts `backup` in the place of the diary at `path`; no journal of the replaced one can undo that. Returns the file
/// beside it in which the replaced diary is kept, "" when there was none. A backup that is no sound diary is refused
/// and changes nothing. Throws platform::Failure.
QString restoreDatabase(const QString& path, const QString& backup);

} // namespace velloria::store
