// One prepared SQLite statement. Values are bound, never put into the text.
#pragma once

#include <QByteArray>
#include <QString>

#include <variant>
#include <vector>

struct sqlite3_stmt;

namespace velloria::store::sqlite {

class Connection;

/// As it is in the file: NULL, a whole number, or the bytes of a text in UTF-8.
using Value = std::variant<std::monostate, qint64, QByteArray>;

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
    /// Their texts are not copied: they must last until the statement has run.
    Statement& bind(const std::vector<Value>& values);

    /// Whether there is a (further) row.
    bool next();
    /// Runs a statement without rows and makes it ready for other values.
    void run();
    /// Back to before the first row.
    void reset();

    /// How many columns a row has.
    int columns() const;

    /// A missing value (NULL) reads as a null QString, 0 or false.
    QString text(int column) const;
    int integer(int column) const;
    qint64 integer64(int column) const;
    bool boolean(int column) const { return integer(column) != 0; }
    /// A number with a fraction is its text, and any other bytes are themselves.
    Value value(int column) const;
    /// The same, but a text is only good until the next row: it stays where the engine has it.
    Value borrowed(int column) const;

private:
    void bindAt(int parameter, const QString& text); ///< a null QString binds NULL
    void bindAt(int parameter, QByteArrayView utf8); ///< never NULL
    void bindUtf8(int parameter, QByteArrayView utf8, void (*keeper)(void*));
    void bindAt(int parameter, qint64 number);
    void bindAt(int parameter, int number) { bindAt(parameter, qint64(number)); }
    void bindAt(int parameter, bool flag) { bindAt(parameter, qint64(flag)); }

    const Connection& m_connection;
    sqlite3_stmt* m_handle = nullptr;
};

} // namespace velloria::store::sqlite
