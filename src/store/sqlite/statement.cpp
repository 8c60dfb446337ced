#include "store/sqlite/statement.h"

#include "platform/utf8.h"
#include "store/sqlite/connection.h"

#include <sqlite3.h>

#include <cmath>

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

Statement& Statement::bind(const std::vector<Value>& values) {
    int parameter = 0;
    for (const Value& value : values) {
        ++parameter;
        if (const auto* number = std::get_if<qint64>(&value))
            bindAt(parameter, *number);
        else if (const auto* utf8 = std::get_if<QByteArray>(&value))
            bindUtf8(parameter, *utf8, SQLITE_STATIC);
        else
            bindAt(parameter, QString());
    }
    return *this;
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

int Statement::columns() const {
    return sqlite3_column_count(m_handle);
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

Value Statement::value(int column) const {
    Value value = borrowed(column);
    if (auto* utf8 = std::get_if<QByteArray>(&value))
        utf8->detach();
    return value;
}

Value Statement::borrowed(int column) const {
    switch (sqlite3_column_type(m_handle, column)) {
    case SQLITE_NULL:
        return {};
    case SQLITE_INTEGER:
        return integer64(column);
    case SQLITE_FLOAT: {
        constexpr double kExactBelow = 9007199254740992.0;
        const double number = sqlite3_column_double(m_handle, column);
        if (std::trunc(number) == number && std::abs(number) < kExactBelow)
            return qint64(number);
        break;
    }
    default:
        break;
    }
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(m_handle, column));
    return bytes ? QByteArray::fromRawData(bytes, sqlite3_column_bytes(m_handle, column)) : QByteArray();
}

void Statement::bindAt(int parameter, const QString& text) {
    if (!text.isNull()) {
        bindAt(parameter, QByteArrayView(text.toUtf8()));
        return;
    }
    const int code = sqlite3_bind_null(m_handle, parameter);
    if (code != SQLITE_OK)
        m_connection.fail(code);
}

void Statement::bindAt(int parameter, QByteArrayView utf8) {
    bindUtf8(parameter, utf8, SQLITE_TRANSIENT);
}

void Statement::bindUtf8(int parameter, QByteArrayView utf8, void (*keeper)(void*)) {
    const char* bytes = utf8.isEmpty() ? "" : utf8.data(); // without an address it would be NULL
    const int code = sqlite3_bind_text64(m_handle, parameter, bytes, sqlite3_uint64(utf8.size()), keeper, SQLITE_UTF8);
    if (code != SQLITE_OK)
        m_connection.fail(code);
}

void Statement::bindAt(int parameter, qint64 number) {
    const int code = sqlite3_bind_int64(m_handle, parameter, number);
    if (code != SQLITE_OK)
        m_connection.fail(code);
}

} // namespace velloria::store::sqlite
