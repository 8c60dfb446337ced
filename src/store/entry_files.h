// Registered files follow their entries: a row of "FileDB" names its entry by day and number, and both change.
#pragma once

#include "store/entry.h"
#include "store/sqlite/connection.h"

#include <QHash>

namespace velloria::store {

/// The rows of the day's files take the new numbers of their entries. Works in the transaction of `connection`.
void moveFiles(const sqlite::Connection& connection, const QString& day, const QHash<int, int>& newNumbers);

/// The rows of deleted private entries take the negative of their number, so that no entry which gets that number later
/// makes their files public: a negative number says "of a private entry that is gone". Others stay as they are.
void withholdFilesOf(const sqlite::Connection& connection, const std::vector<Entry>& deleted);

} // namespace velloria::store
