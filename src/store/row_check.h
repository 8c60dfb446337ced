// What a check of the diary finds in the rows of its entries, on a file whose tables are whole.
#pragma once

#include "store/sqlite/connection.h"
#include "store/sqlite/statement.h"

#include <QStringList>

namespace velloria::store {

/// Adds a line each for days that are no dates, numbers that are not 1 to n, entries that lack a value or whose text is
/// broken, entries without a title, and import groups of one entry. Throws platform::Failure.
void checkRows(const sqlite::Connection& connection, QStringList& findings);

bool isMissing(const sqlite::Value& value);
/// Whether a text is no UTF-8 or holds U+FFFD, which stands where a character was lost.
bool isBroken(const sqlite::Value& value);

/// Has a row for each day that is not numbered 1 to n, and its numbers in turn.
inline constexpr char kDaysOutOfOrder[] =
    "SELECT Day, group_concat(Number, ' ') FROM (SELECT Day, Number FROM Contents WHERE Day IS NOT NULL "
    "ORDER BY Day, Number) GROUP BY Day HAVING count(*) <> max(Number) OR min(Number) <> 1 OR "
    "count(DISTINCT Number) <> count(*) OR sum(typeof(Number) <> 'integer') > 0 ORDER BY Day";

} // namespace velloria::store
