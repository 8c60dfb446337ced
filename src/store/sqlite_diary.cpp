#include "store/sqlite_diary.h"

#include "platform/failure.h"
#include "store/database_format.h"

using namespace Qt::StringLiterals;

namespace velloria::store {

using platform::Failure;
using sqlite::Statement;

namespace {

const QString kCantRead = u"日記データベースを読み取れません。"_s;

/// Unlike a name in double quotes, one that is not there is never taken for a text.
QByteArray named(const QString& name) {
    return '[' + name.toUtf8() + ']';
}

} // namespace

SqliteDiary::SqliteDiary(const QString& file)
    : m_file(file)
    , m_connection(file, sqlite::Access::ReadOnly) {
    m_connection.execute("BEGIN"); // all tables in one state
}

qint64 SqliteDiary::open(const QString& table, const QStringList& columns) {
    m_rows.reset();
    requireColumns(table, columns);
    Statement count(m_connection, "SELECT count(*) FROM " + named(table));
    m_count = count.next() ? count.integer64(0) : 0;
    m_read = 0;
    m_table = table;
    m_columns = int(columns.size());
    QByteArrayList names;
    for (const QString& column : columns)
        names += named(column);
    m_rows.emplace(m_connection, "SELECT " + names.join(", ") + " FROM " + named(table) + " ORDER BY rowid");
    return m_count;
}

bool SqliteDiary::next(std::vector<OldValue>& row) {
    if (m_rows->next()) {
        ++m_read;
        row.resize(std::size_t(m_columns));
        for (int i = 0; i < m_columns; ++i)
            row[std::size_t(i)] = m_rows->borrowed(i);
        return true;
    }
    // A damaged tree may lead past rows that its index still counts.
    if (m_read != m_count)
        throw Failure(u"日記データベースが壊れています。"_s, m_file,
                      u"テーブル「%1」の%2行のうち%3行しか読み取れません"_s.arg(m_table).arg(m_count).arg(m_read),
                      unchangedAndRestore());
    return false;
}

void SqliteDiary::requireColumns(const QString& table, const QStringList& columns) const {
    QStringList known;
    Statement kind(m_connection, "SELECT type FROM sqlite_master WHERE name = ?1 COLLATE NOCASE");
    kind.bind(table);
    if (kind.next() && kind.text(0) == u"table"_s) {
        Statement rows(m_connection, "SELECT name FROM pragma_table_xinfo(?1)");
        rows.bind(table);
        while (rows.next())
            known += rows.text(0);
    }
    if (known.isEmpty())
        throw Failure(kCantRead, m_file, u"テーブル「%1」がありません"_s.arg(table), unchangedAndRestore());
    for (const QString& column : columns) {
        if (!known.contains(column, Qt::CaseInsensitive))
            throw Failure(kCantRead, m_file, u"テーブル「%1」に列「%2」がありません"_s.arg(table, column),
                          unchangedAndRestore());
    }
}

} // namespace velloria::store
