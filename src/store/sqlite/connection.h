// One SQLite connection with the text comparison of the diary registered on it.
#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QString>

#include <memory>

struct sqlite3;

namespace velloria::store::sqlite {

enum class Access { ReadWrite, ReadOnly };

/// Opens an existing file; never makes one. What a killed program left half done is rolled back. Registered are the
/// collation JET, the function Fold(text) and the operator LIKE with the diary's wildcards and comparison. A busy file
/// is waited for up to 5 seconds, while the windows are served. Throws platform::Failure, as does everything below: it
/// names the file and why the engine refused.
class Connection {
public:
    Connection(const QString& file, Access access);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    void execute(const char* sql);
    /// The row that the last INSERT made.
    qint64 lastInsertedRow() const;
    sqlite3* handle() const { return m_handle; }
    [[noreturn]] void fail(int code) const;

private:
    QString m_file;
    sqlite3* m_handle = nullptr;
    QElapsedTimer m_waiting; ///< since when the file is waited for
};

/// Begins at once with the write lock and rolls back unless committed.
class Transaction {
public:
    explicit Transaction(Connection& connection);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void commit();

private:
    Connection& m_connection;
    bool m_isOpen = true;
};

} // namespace velloria::store::sqlite
