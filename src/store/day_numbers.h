// The numbers of a day's entries within a transaction: 1 to n, no gaps.
#pragma once

#include "store/entry_files.h"
#include "store/sqlite/statement.h"

#include <QHash>
#include <QSet>

namespace velloria::store {

/// Works on the connection of a transaction that is under way, and lives no longer than that; throws platform::Failure.
///
///     const int number = numbers.nextNumber(day);
///     insertRow(day, number);
///     numbers.added(day, number); // for every row, whoever chose its number
///     numbers.repair(day);        // at the end, when numbers may have gaps
class DayNumbers {
public:
    explicit DayNumbers(const sqlite::Connection& connection);

    /// Renumbers the day from 1 in the order of number and row; registered files of private entries follow. Returns
    /// whether that was not how it stood.
    bool repair(const QString& day);

    /// Whether rows of the day have another number than they were given.
    bool wasRepaired(const QString& day) const { return m_repaired.contains(day); }

    /// The number of the next entry, after a repair.
    int nextNumber(const QString& day);

    /// A row was added under this number. To be told of each one, so that a long day is counted once and
    /// only what lies behind a gap is renumbered for the next one.
    void added(const QString& day, int number);

private:
    /// A day whose first `count` numbers are 1 to that; behind them there may be more rows, with gaps.
    struct Known {
        int count = 0;
        bool hasTail = false;
    };

    /// How many entries the day has, and whether their numbers are 1 to that.
    int count(const QString& day, bool& isInOrder);
    /// Gives these rows the numbers from `first`, and returns how many there are.
    int renumber(sqlite::Statement& rows, const QString& day, int first);

    EntryFiles m_files;
    sqlite::Statement m_count;
    sqlite::Statement m_rows;
    sqlite::Statement m_tail;
    sqlite::Statement m_setNumber;
    QSet<QString> m_repaired;
    QHash<QString, Known> m_known;
};

} // namespace velloria::store
