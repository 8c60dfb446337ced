#include "store/day_numbers.h"

#include <vector>

namespace velloria::store {

DayNumbers::DayNumbers(const sqlite::Connection& connection)
    : m_files(connection)
    , m_count(connection,
              "SELECT count(*), count(DISTINCT Number), min(Number), max(Number) FROM Contents WHERE Day = ?1")
    , m_rows(connection, "SELECT RecordID, Number, Private FROM Contents WHERE Day = ?1 ORDER BY Number, RecordID")
    , m_tail(connection, "SELECT RecordID, Number, Private FROM Contents WHERE Day = ?1 AND Number > ?2 "
                         "ORDER BY Number, RecordID")
    , m_setNumber(connection, "UPDATE OR ABORT Contents SET Number = ?1 WHERE RecordID = ?2") {}

int DayNumbers::count(const QString& day, bool& isInOrder) {
    m_count.bind(day);
    m_count.next();
    const int count = m_count.integer(0);
    isInOrder = count == 0 || (m_count.integer(1) == count && m_count.integer(2) == 1 && m_count.integer(3) == count);
    m_count.reset();
    return count;
}

bool DayNumbers::repair(const QString& day) {
    bool isInOrder = false;
    count(day, isInOrder);
    if (isInOrder)
        return false;
    m_known.remove(day);
    m_rows.bind(day);
    renumber(m_rows, day, 1);
    return true;
}

int DayNumbers::renumber(sqlite::Statement& rows, const QString& day, int first) {
    std::vector<std::pair<int, qint64>> moved;
    QHash<int, int> privateNumbers;
    int number = first;
    for (; rows.next(); ++number) {
        const int old = rows.integer(1);
        if (old == number)
            continue;
        moved.emplace_back(number, rows.integer64(0));
        if (rows.boolean(2))
            privateNumbers.insert(old, number);
    }
    rows.reset();
    for (const auto& [newNumber, record] : moved)
        m_setNumber.bind(newNumber, record).run();
    m_files.movePrivate(day, privateNumbers);
    if (!moved.empty())
        m_repaired.insert(day);
    return number - first;
}

int DayNumbers::nextNumber(const QString& day) {
    auto known = m_known.find(day);
    if (known == m_known.end()) {
        repair(day);
        bool isInOrder = false;
        known = m_known.insert(day, {count(day, isInOrder)});
    } else if (known->hasTail) {
        m_tail.bind(day, known->count);
        known->count += renumber(m_tail, day, known->count + 1);
        known->hasTail = false;
    }
    return known->count + 1;
}

void DayNumbers::added(const QString& day, int number) {
    const auto known = m_known.find(day);
    if (known == m_known.end())
        return;
    if (number == known->count + 1 && !known->hasTail)
        known->count = number;
    else if (number > known->count)
        known->hasTail = true;
    else
        m_known.erase(known); // a number twice
}

} // namespace velloria::store
