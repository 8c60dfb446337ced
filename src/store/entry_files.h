// A row of "FileDB" names its entry by day and number. Numbers change when an entry is deleted and the rows stay; only
// those of private entries follow, for otherwise their files would come to belong to public ones and go to the site.
#pragma once

#include "store/entry.h"
#include "store/sqlite/connection.h"

#include <QHash>

namespace velloria::store {

/// The rows of the day's private entries take their new numbers. Works in the transaction of `connection`.
void movePrivateFiles(const sqlite::Connection& connection, const QString& day, const QHash<int, int>& newNumbers);

/// The rows of deleted private entries take the negative of their number, so that no entry which gets that number later
/// makes their files public: a negative number says "of a private entry that is gone". Others stay as they are.
void withholdFilesOf(const sqlite::Connection& connection, const std::vector<Entry>& deleted);

} // namespace velloria::store
