// A row of table Contents as an entry, for the statements of this folder:
//
//     Statement rows(connection, QByteArray(kAllColumns) + "WHERE Day = ?1");
//     rows.bind(day);
//     while (rows.next())
//         entries.push_back(readEntry(rows));
#pragma once

#include "store/entry.h"
#include "store/sqlite/statement.h"

namespace velloria::store {

/// The columns that readEntry expects, and behind them the RecordID.
inline constexpr char kAllColumns[] = "SELECT Day, Number, Title, Contents, Extend, Excerpt, Weather, Genre, "
                                      "PublishTime, Private, ImportMark, RecordID FROM Contents ";
inline constexpr int kRecordIdColumn = 11;

/// The statement's present row.
Entry readEntry(const sqlite::Statement& row);

} // namespace velloria::store
