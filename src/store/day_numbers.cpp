#include "store/day_numbers.h"

#include <vector>

namespace velloria::store {

DayNumbers::DayNumbers(const sqlite::Connection& connection)
    : m_files(connection)
    , m_count(connection,
              "SELECT count(*), count(DISTINCT Number), min(Number), max(Number) FROM Contents WHERE Day = ?1")
    , m_rows(connection, "SELECT RecordID, Number, Private FROM Contents WHERE Day = ?1 ORDER BY Number, RecordID")
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
    std::vector<std::pair<int, qint64>> moved;
    QHash<int, int> privateNumbers;
    m_rows.bind(day);
    for (int number = 1; m_rows.next(); ++number) {
        const int old = m_rows.integer(1);
        if (old == number)
            continue;
        moved.emplace_back(number, m_rows.integer64(0));
        if (m_rows.boolean(2))
            privateNumbers.insert(old, number);
    }
    m_rows.reset();
    for (const auto& [number, record] : moved) {
        m_setNumber.bind(number, record);
        m_setNumber.run();
    }
    m_files.movePrivate(day, privateNumbers);
    m_repaired.insert(day);
    return true;
}

int DayNumbers::nextNumber(const QString& day) {
    auto known = m_counts.find(day);
    if (known == m_counts.end()) {
        repair(day);
        bool isInOrder = false;
        known = m_counts.insert(day, count(day, isInOrder));
    }
    return *known + 1;
}

void DayNumbers::added(const QString& day, int number) {
    const auto known = m_counts.find(day);
    if (known == m_counts.end())
        return;
    if (number == *known + 1)
        *known = number;
    else
        m_counts.erase(known); // a gap, or a number twice
}

} // namespace velloria::store
