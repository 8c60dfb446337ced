#include "store/entry_writer.h"

#include "store/entry_row.h"
#include "store/sqlite/connection.h"

#include <utility>

namespace velloria::store {

EntryWriter::EntryWriter(sqlite::Connection& connection)
    : m_connection(connection)
    , m_numbers(connection)
    , m_find(connection, QByteArray(kAllColumns) + "WHERE Day = ?1 AND Number = ?2 ORDER BY RecordID LIMIT 1")
    , m_insert(connection,
               "INSERT OR ABORT INTO Contents (Day, Title, Contents, Extend, Excerpt, Weather, Genre, Number, "
               "PublishTime, Private, ImportMark) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, "
               "coalesce(?11, ''))")
    , m_update(connection, "UPDATE OR ABORT Contents SET Title = ?1, Contents = ?2, Extend = ?3, Excerpt = ?4, "
                           "Weather = ?5, Genre = ?6, PublishTime = ?7, Private = ?8, "
                           "ImportMark = coalesce(?9, ImportMark) WHERE RecordID = ?10")
    , m_numberOfRow(connection, "SELECT Number FROM Contents WHERE RecordID = ?1") {}

void EntryWriter::spareTheTaken(Entry& entry) {
    m_find.bind(entry.day, entry.number);
    if (m_find.next())
        entry.number = 0;
    m_find.reset();
}

qint64 EntryWriter::write(Entry& entry) {
    if (entry.number == 0)
        entry.number = m_numbers.nextNumber(entry.day);
    m_touchedDays.insert(entry.day);
    m_find.bind(entry.day, entry.number);
    if (m_find.next()) {
        const qint64 record = m_find.integer64(kRecordIdColumn);
        m_overwritten.push_back(readEntry(m_find));
        m_find.reset();
        m_update.bind(entry.title, entry.contents, entry.extend, entry.excerpt, entry.weather, entry.genre,
                      entry.publishTime, entry.isPrivate, entry.importMark, record);
        m_update.run();
        return record;
    }
    m_find.reset();
    m_insert.bind(entry.day, entry.title, entry.contents, entry.extend, entry.excerpt, entry.weather, entry.genre,
                  entry.number, entry.publishTime, entry.isPrivate, entry.importMark);
    m_insert.run();
    const qint64 record = m_connection.lastInsertedRow();
    m_numbers.added(entry.day, entry.number);
    return record;
}

void EntryWriter::repairTouchedDays() {
    for (const QString& day : std::as_const(m_touchedDays))
        m_numbers.repair(day);
}

int EntryWriter::numberOf(const Entry& entry, qint64 record) {
    if (!m_numbers.wasRepaired(entry.day))
        return entry.number;
    m_numberOfRow.bind(record);
    m_numberOfRow.next();
    const int number = m_numberOfRow.integer(0);
    m_numberOfRow.reset();
    return number;
}

} // namespace velloria::store
