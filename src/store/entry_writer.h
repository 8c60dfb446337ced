// The rows of table Contents as a save writes them.
#pragma once

#include "store/day_numbers.h"
#include "store/entry.h"

#include <QSet>

#include <vector>

namespace velloria::store {

/// Writes one entry after the other over prepared statements, on the connection of a transaction that is under way.
/// Throws platform::Failure when the engine refuses; then the transaction is to be rolled back as a whole.
///
///     const qint64 record = writer.write(entry);
///     writer.repairTouchedDays();
///     const int number = writer.numberOf(entry, record); // the repair may have moved it
///     transaction.commit();                              // when somebody has kept what overwritten() gives
class EntryWriter {
public:
    explicit EntryWriter(sqlite::Connection& connection);

    /// Takes a number that the diary has already from the entry: `write` gives it the next one of its day.
    void spareTheTaken(Entry& entry);

    /// Returns the row's RecordID. A number of 0 becomes the next one of the day; a null import mark keeps the one that
    /// stands there.
    qint64 write(Entry& entry);

    /// The rows that were there before, in the order in which they were written over.
    const std::vector<Entry>& overwritten() const { return m_overwritten; }

    /// At the end: numbers of the days that were written to are 1 to n again.
    void repairTouchedDays();

    /// The number under which an entry stands at the end.
    int numberOf(const Entry& entry, qint64 record);

private:
    sqlite::Connection& m_connection;
    DayNumbers m_numbers;
    sqlite::Statement m_find;
    sqlite::Statement m_insert;
    sqlite::Statement m_update;
    sqlite::Statement m_numberOfRow;
    QSet<QString> m_touchedDays;
    std::vector<Entry> m_overwritten;
};

} // namespace velloria::store
