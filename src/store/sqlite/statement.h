// One prepared SQLite statement. Values are bound, never put into the text.
#pragma once

#include <QString>

struct sqlite3_stmt;

namespace velloria::store::sqlite {

class Connection;

/// Parameters count from 1, columns from 0. No row is no failure; what the engine refuses is thrown as
/// platform::Failure.
///
///     Statement rows(connection, "SELECT Title FROM Contents WHERE Day = ?1");
///     rows.bind(day);
///     while (rows.next())
///         titles += rows.text(0);
class Statement {
public:
    Statement(const Connection& connection, const QByteArray& sql);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    /// Binds in order from the first parameter.
    template <typename... Values>
    Statement& bind(const Values&... values) {
        int parameter = 0;
        (bindAt(++parameter, values), ...);
        return *this;
    }

    /// Whether there is a (further) row.
    bool next();
    /// Runs a statement without rows and makes it ready for other values.
    void run();
    /// Back to before the first row.
    void reset();

    /// A missing value (NULL) reads as a null QString, 0 or false.
    QString text(int column) const;
    int integer(int column) const;
    qint64 integer64(int column) const;
    bool boolean(int column) const { return integer(column) != 0; }

private:
    void bindAt(int parameter, const QString& text); ///< a null QString binds NULL
    void bindAt(int parameter, qint64 number);
    void bindAt(int parameter, int number) { bindAt(parameter, qint64(number)); }
    void bindAt(int parameter, bool flag) { bindAt(parameter, qint64(flag)); }

    const Connection& m_connection;
    sqlite3_stmt* m_handle = nullptr;
};

} // namespace velloria::store::sqlite
