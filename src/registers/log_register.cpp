#include "registers/log_register.h"

#include "store/sqlite/connection.h"
#include "store/sqlite/literal.h"
#include "store/sqlite/statement.h"

namespace velloria::registers {

using store::sqlite::Access;
using store::sqlite::Connection;
using store::sqlite::literal;
using store::sqlite::Statement;

LogRegister::LogRegister(QString databaseFile)
    : m_file(std::move(databaseFile)) {}

std::vector<store::LogRow> LogRegister::listLogs() const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, "SELECT LogMonth, LogFileName FROM LogDB ORDER BY rowid");
    std::vector<store::LogRow> logs;
    while (rows.next())
        logs.push_back({rows.text(0), rows.text(1)});
    return logs;
}

bool LogRegister::FindLog(const QString& fileName) const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, "SELECT LogFileName FROM LogDB WHERE Fold(LogFileName) = Fold(?1)");
    rows.bind(literal(m_file, fileName));
    return rows.next();
}

void LogRegister::addLog(const store::LogRow& row) const {
    const Connection connection(m_file, Access::ReadWrite);
    Statement(connection, "INSERT OR ABORT INTO LogDB (LogMonth, LogFileName) VALUES (?1, ?2)")
        .bind(row.month, row.fileName)
        .run();
}

void LogRegister::addLogOfMonth(const store::LogRow& row) const {
    const Connection connection(m_file, Access::ReadWrite);
    // Asked and added in one statement: another program may log the same month at this moment.
    Statement(connection, "INSERT OR ABORT INTO LogDB (LogMonth, LogFileName) SELECT ?1, ?2 WHERE NOT EXISTS "
                          "(SELECT 1 FROM LogDB WHERE Fold(LogMonth) = Fold(?1))")
        .bind(literal(m_file, row.month), row.fileName)
        .run();
}

void LogRegister::DeleteLog(const store::LogRow& row) const {
    const Connection connection(m_file, Access::ReadWrite);
    Statement(connection, "DELETE FROM LogDB WHERE rowid = (SELECT min(rowid) FROM LogDB WHERE "
                          "Fold(coalesce(LogFileName, '')) = Fold(coalesce(?1, '')) AND LogMonth IS ?2)")
        .bind(literal(m_file, row.fileName), literal(m_file, row.month))
        .run();
}

} // namespace velloria::registers
