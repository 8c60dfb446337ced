// The database as a file: its version, its backup, its health.
#pragma once

#include <QString>
#include <QStringList>

namespace velloria::store {

/// The version of the diary database at `path`, 0 when the file does not exist or has no table DBInfo. Opens read-only
/// and never makes a file. Throws platform::Failure for a file that is no diary database.
qint16 GetDBVersion(const QString& path);

/// Copies the diary database to `backup`; the backups that lie there move on to `backup`.1 to .3, unless the last one
/// is equal to the diary already. The source is checked first, so a file that is no diary never takes the place of a
/// good backup. Nobody may read a backup who may not read the diary. Throws platform::Failure.
void backUpDatabase(const QString& path, const QString& backup);

/// Copies a diary database (or its template) over `to`, settled first: a journal that was left behind is rolled back,
/// none is copied, and none stays beside the copy. A new file gets `newFileMode`. Throws platform::Failure.
void copyDatabase(const QString& from, const QString& to, unsigned newFileMode = 0600);

/// What is wrong with the diary, a line each; nothing when all is well. Changes nothing.
QStringList checkDatabase(const QString& path);

} // namespace velloria::store
