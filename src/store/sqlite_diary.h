// The tables of one of this program's own diaries, of any version.
#pragma once

#include "store/old_diary.h"
#include "store/sqlite/connection.h"
#include "store/sqlite/statement.h"

#include <optional>

namespace velloria::store {

/// In the order of the rows in the file, values as they are there.
class SqliteDiary : public OldDiary {
public:
    explicit SqliteDiary(const QString& file);

    qint64 open(const QString& table, const QStringList& columns) override;
    bool next(std::vector<OldValue>& row) override;

private:
    void requireColumns(const QString& table, const QStringList& columns) const;

    QString m_file;
    sqlite::Connection m_connection;
    std::optional<sqlite::Statement> m_rows;
    QString m_table;
    int m_columns = 0;
    qint64 m_count = 0; ///< the rows that the table has
    qint64 m_read = 0;
};

} // namespace velloria::store
