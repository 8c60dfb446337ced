#include "store/day_spellings.h"

#include "core/date_forms.h"
#include "core/day_key.h"
#include "store/sqlite/statement.h"

using namespace Qt::StringLiterals;

namespace velloria::store {

DaySpellings::DaySpellings(const sqlite::Connection& connection, QByteArray table)
    : m_connection(connection)
    , m_table(std::move(table)) {}

QStringList DaySpellings::of(const QString& day) {
    read();
    const int year = day.left(4).toInt();
    const auto dateOf = [year](const QString& text) { return core::formatTextAsDate(text, u"yyyy/mm/dd", year); };
    auto others = m_othersByDay.find(year);
    if (others == m_othersByDay.end()) {
        others = m_othersByDay.insert(year, {});
        for (const QString& other : std::as_const(m_others))
            others->insert(dateOf(other), other);
    }
    const QString date = dateOf(day);
    QStringList spellings = others->values(date);
    for (const QString& plain : {day, date}) {
        if (!spellings.contains(plain))
            spellings += plain;
    }
    return spellings;
}

void DaySpellings::read() {
    if (m_isRead)
        return;
    sqlite::Statement days(m_connection, "SELECT DISTINCT Day FROM " + m_table + " WHERE Day IS NOT NULL");
    while (days.next()) {
        if (const QString day = days.text(0); !core::isDayKey(day))
            m_others += day;
    }
    m_isRead = true;
}

} // namespace velloria::store
