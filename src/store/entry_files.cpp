#include "store/entry_files.h"

#include "store/sqlite/statement.h"

namespace velloria::store {

EntryFiles::EntryFiles(const sqlite::Connection& connection)
    : m_connection(connection)
    , m_days(connection, "FileDB") {}

void EntryFiles::movePrivate(const QString& day, const QHash<int, int>& newNumbers) {
    if (newNumbers.isEmpty())
        return;
    std::vector<std::pair<int, qint64>> moved;
    sqlite::Statement rows(m_connection, "SELECT FileID FROM FileDB WHERE Day = ?1 AND Number = ?2");
    for (const QString& spelling : m_days.of(day)) {
        for (const auto [from, to] : newNumbers.asKeyValueRange()) {
            rows.bind(spelling, from);
            while (rows.next())
                moved.emplace_back(to, rows.integer64(0));
            rows.reset();
        }
    }
    sqlite::Statement setNumber(m_connection, "UPDATE OR ABORT FileDB SET Number = ?1 WHERE FileID = ?2");
    for (const auto& [number, file] : moved)
        setNumber.bind(number, file).run();
}

void EntryFiles::withhold(const std::vector<Entry>& deleted) {
    for (const Entry& entry : deleted) {
        if (!entry.isPrivate)
            continue;
        sqlite::Statement withhold(m_connection,
                                   "UPDATE OR ABORT FileDB SET Number = -Number WHERE Day = ?1 AND Number = ?2");
        for (const QString& spelling : m_days.of(entry.day))
            withhold.bind(spelling, entry.number).run();
    }
}

} // namespace velloria::store
