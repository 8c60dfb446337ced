// The health of the diary database: the file as the engine sees it, and what the entries and files say of each other.
#pragma once

#include <QStringList>

namespace velloria::store {

/// What is wrong with the diary at `path`, a line each for people; nothing when all is well. Damage of the file comes
/// alone, for its tables can't be trusted any more; else days that can't be read, numbers with gaps, files of entries
/// that are not there, and what no diary has (triggers, views). Changes nothing. Throws platform::Failure when the file
/// can't be opened or is no diary database, and sqlite::Busy when another program holds it.
QStringList checkDatabase(const QString& path);

} // namespace velloria::store
