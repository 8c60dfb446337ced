#include "store/day_numbers.h"

#include "store/sqlite/connection.h"

#include <vector>

namespace velloria::store {

DayNumbers::DayNumbers(const sqlite::Connection& connection)
    : m_count(connection,
              "SELECT count(*), count(DISTINCT Number), min(Number), max(Number) FROM Contents WHERE Day = ?1")
    , m_rows(connection, "SELECT RecordID FROM Contents WHERE Day = ?1 ORDER BY Number, RecordID")
    , m_setNumber(connection, "UPDATE Contents SET Number = ?1 WHERE RecordID = ?2") {}

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
    std::vector<qint64> records;
    m_rows.bind(day);
    while (m_rows.next())
        records.push_back(m_rows.integer64(0));
    m_rows.reset();
    int number = 0;
    for (const qint64 record : records) {
        m_setNumber.bind(++number, record);
        m_setNumber.run();
    }
    return true;
}

int DayNumbers::nextNumber(const QString& day) {
    repair(day);
    bool isInOrder = false;
    return count(day, isInOrder) + 1;
}

} // namespace velloria::store
