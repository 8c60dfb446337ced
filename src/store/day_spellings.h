// The texts under which a table has one day: other programs write days in forms of their own.
#pragma once

#include "store/sqlite/connection.h"

#include <QHash>
#include <QStringList>

namespace velloria::store {

/// Of one table with a column "Day", as it stands when first asked: for one transaction. A day without another
/// spelling, or without rows at all, is no failure. Throws platform::Failure when the engine refuses.
class DaySpellings {
public:
    /// `connection` outlives this.
    DaySpellings(const sqlite::Connection& connection, QByteArray table);

    /// `day` itself and every other text of the table that means the same date; one without a year means a day of
    /// each. A text that is no date is alone.
    QStringList of(const QString& day);

private:
    void read();

    const sqlite::Connection& m_connection;
    QByteArray m_table;
    bool m_isRead = false;
    QStringList m_others;                                   ///< what is no day key
    QHash<int, QMultiHash<QString, QString>> m_othersByDay; ///< by the year that they are read with
};

} // namespace velloria::store
