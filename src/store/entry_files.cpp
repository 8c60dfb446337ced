#include "store/entry_files.h"

#include "store/sqlite/statement.h"

#include <algorithm>

namespace velloria::store {

void movePrivateFiles(const sqlite::Connection& connection, const QString& day, const QHash<int, int>& newNumbers) {
    if (newNumbers.isEmpty())
        return;
    std::vector<std::pair<int, qint64>> moved;
    sqlite::Statement rows(connection, "SELECT FileID, Number FROM FileDB WHERE Day = ?1");
    rows.bind(day);
    while (rows.next()) {
        if (const auto to = newNumbers.find(rows.integer(1)); to != newNumbers.end())
            moved.emplace_back(*to, rows.integer64(0));
    }
    sqlite::Statement setNumber(connection, "UPDATE FileDB SET Number = ?1 WHERE FileID = ?2");
    for (const auto& [number, file] : moved) {
        setNumber.bind(number, file);
        setNumber.run();
    }
}

void withholdFilesOf(const sqlite::Connection& connection, const std::vector<Entry>& deleted) {
    if (std::none_of(deleted.begin(), deleted.end(), [](const Entry& entry) { return entry.isPrivate; }))
        return;
    sqlite::Statement withhold(connection, "UPDATE FileDB SET Number = -Number WHERE Day = ?1 AND Number = ?2");
    for (const Entry& entry : deleted) {
        if (!entry.isPrivate)
            continue;
        withhold.bind(entry.day, entry.number);
        withhold.run();
    }
}

} // namespace velloria::store
