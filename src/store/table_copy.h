// One table on its way from an old diary into a fresh one.
#pragma once

#include "store/sqlite/connection.h"
#include "store/table_rules.h"

#include <functional>

namespace velloria::store {

/// What a copy must read as afterwards.
struct CopiedRows {
    QByteArray query; ///< gives them in their order
    qint64 count = 0;
    std::size_t checksum = 0; ///< over all fields
};

/// Folds values one after the other into a checksum, of which each run of the program has its own.
void addToChecksum(std::size_t& checksum, const OldValue& value);

/// Copies the rows of tables from a diary of one version.
class TableCopy {
public:
    /// `file` is how a failure calls the diary that is read; a day without a year is one of `yearNow`. The connection
    /// to the fresh diary outlives this, and is within a transaction.
    TableCopy(OldDiary& source, const sqlite::Connection& target, QString file, qint16 version, int yearNow);

    /// `counted` hears how many rows there are, then `copied` of each one, counted from 1. Throws platform::Failure;
    /// for a value that no column of the fresh diary holds it names the row.
    CopiedRows copy(const TableRule& rule, const std::function<void(qint64)>& counted,
                    const std::function<void(qint64)>& copied);

private:
    OldValue converted(const ColumnRule& column, const OldValue& value) const;
    OldValue wholeNumber(const ColumnRule& column, const OldValue& value) const;
    [[noreturn]] void refuse(const ColumnRule& column, const QString& value) const;

    OldDiary& m_source;
    const sqlite::Connection& m_target;
    QString m_file;
    qint16 m_version;
    int m_yearNow;
    const TableRule* m_rule = nullptr;
    std::vector<OldValue> m_row; ///< as it comes
    qint64 m_rowNumber = 0;
};

/// Throws platform::Failure unless the closed file holds what was copied.
void requireCopied(const QString& file, const std::vector<CopiedRows>& tables);

} // namespace velloria::store
