#include "store/sqlite/statement.h"

#include "platform/utf8.h"
#include "store/sqlite/connection.h"

#include <sqlite3.h>

namespace velloria::store::sqlite {

Statement::Statement(const Connection& connection, const QByteArray& sql)
    : m_connection(connection) {
    const int code = sqlite3_prepare_v2(connection.handle(), sql.constData(), int(sql.size()), &m_handle, nullptr);
    if (code != SQLITE_OK)
        connection.fail(code);
}

Statement::~Statement() {
    sqlite3_finalize(m_handle);
}

bool Statement::next() {
    const int code = sqlite3_step(m_handle);
    if (code != SQLITE_ROW && code != SQLITE_DONE)
        m_connection.fail(code);
    return code == SQLITE_ROW;
}

void Statement::run() {
    next();
    reset();
}

void Statement::reset() {
    sqlite3_reset(m_handle);
}

QString Statement::text(int column) const {
    const auto* utf8 = reinterpret_cast<const char*>(sqlite3_column_text(m_handle, column));
    if (!utf8)
        return {};
    return platform::fromUtf8({utf8, sqlite3_column_bytes(m_handle, column)});
}

int Statement::integer(int column) const {
    return sqlite3_column_int(m_handle, column);
}

qint64 Statement::integer64(int column) const {
    return sqlite3_column_int64(m_handle, column);
}

void Statement::bindAt(int parameter, const QString& text) {
    int code = SQLITE_OK;
    if (text.isNull()) {
        code = sqlite3_bind_null(m_handle, parameter);
    } else {
        const QByteArray utf8 = text.toUtf8();
        code = sqlite3_bind_text64(m_handle, parameter, utf8.constData(), sqlite3_uint64(utf8.size()), SQLITE_TRANSIENT,
                                   SQLITE_UTF8);
    }
    if (code != SQLITE_OK)
        m_connection.fail(code);
}

void Statement::bindAt(int parameter, qint64 number) {
    const int code = sqlite3_bind_int64(m_handle, parameter, number);
    if (code != SQLITE_OK)
        m_connection.fail(code);
}

} // namespace velloria::store::sqlite
