// What a check of the diary finds in its registers of files and logs, on a file whose tables are whole.
#pragma once

#include "store/sqlite/connection.h"

#include <QStringList>

#include <optional>

namespace velloria::store {

/// Adds a line each for registered files without an entry or with its day in another form, for rows of both registers
/// that lack a value or whose text is broken, and for logs of no month; with a data folder also for each file and page
/// that does not lie there. Throws platform::Failure.
void checkRegisters(const sqlite::Connection& connection, const std::optional<QString>& dataFolder,
                    QStringList& findings);

} // namespace velloria::store
