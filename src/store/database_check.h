// The health of the diary database: the file as the engine sees it, what the entries and files say of each other, and
// what of it lies on the disk.
#pragma once

#include <QStringList>

#include <optional>

namespace velloria::store {

/// What is wrong with the diary at `path`, a line each for people; nothing when all is well. Damage of the file comes
/// alone, for its tables can't be trusted any more; else each row that lacks something or whose day, number, text or
/// file can't be right, and what no diary has (triggers, views). With a data folder it is also said which registered
/// files and logs are not there. Changes nothing but what a killed program has left half done. Throws platform::Failure
/// when the file can't be opened, is no diary database, or one of an older version; and sqlite::Busy when another
/// program holds it.
QStringList checkDatabase(const QString& path, const std::optional<QString>& dataFolder = std::nullopt);

/// Throws platform::Failure for a diary of another format or an older version: the next start converts it.
void refuseOldDiary(const QString& path);

} // namespace velloria::store
