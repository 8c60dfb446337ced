// One SQLite connection with the text comparison of the diary registered on it.
#pragma once

#include "platform/failure.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QString>

#include <functional>
#include <memory>

struct sqlite3;

namespace velloria::store::sqlite {

enum class Access { ReadWrite, ReadOnly };

/// Another program holds the file, or has put another one in its place meanwhile.
class Busy : public platform::Failure {
public:
    Busy(const QString& file, const QString& reason);
};

/// How to get a backup back.
QString restoreAdvice();

/// Whether a program is in the middle of a change. Changes nothing of the file or beside it.
bool isBeingWritten(const QString& file);

/// Opens an existing file; never makes one. What a killed program left half done is rolled back, and a file that
/// another tool keeps with a write-ahead log is put back to one file. The file's own triggers, views and foreign keys
/// do nothing. Registered are the collation JET, the function Fold(text) and the operator LIKE with the diary's
/// wildcards and comparison. A busy file is waited for up to 5 seconds, while the windows are served. Throws
/// platform::Failure, as does everything below: it names the file and why the engine refused. A connection and what
/// works on it belong to one thread.
///
///     Connection connection(file, Access::ReadWrite);
///     Transaction transaction(connection); // from here on no other program writes
///     Statement(connection, "DELETE FROM Contents WHERE Day = ?1").bind(day).run();
///     transaction.commit(); // without it everything is rolled back
class Connection {
public:
    Connection(const QString& file, Access access);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    void execute(const char* sql);
    /// The row that the last INSERT made.
    qint64 lastInsertedRow() const;
    /// Whether another tool at work still keeps a part of the diary in a log beside the file.
    bool hasWriteAheadLog() const;
    /// Whether the file has another name by now, or none: what this connection locks is the diary no more.
    bool hasLostItsFile() const;
    /// The diary as one file without a log, in the state of the transaction under way.
    QByteArray bytes() const;
    /// The same, piece by piece. Another descriptor of this program, once closed, would take this connection's lock
    /// along.
    void read(const std::function<void(QByteArrayView)>& take) const;
    sqlite3* handle() const { return m_handle; }
    [[noreturn]] void fail(int code) const;

private:
    void distrustSchema();

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
