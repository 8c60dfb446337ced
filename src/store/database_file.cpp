#include "store/database_file.h"

#include "core/day_key.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "store/sqlite/connection.h"
#include "store/sqlite/statement.h"

#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::store {

using platform::Failure;
using sqlite::Access;
using sqlite::Connection;
using sqlite::Statement;

namespace {

enum class Format { Sqlite, Jet, None };

Format formatOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure(u"日記データベースを開けません。"_s, path, file.errorString());
    const QByteArray head = file.read(32);
    if (head.startsWith(QByteArrayView("SQLite format 3\0", 16)))
        return Format::Sqlite;
    if (head.startsWith(QByteArrayView("\0\1\0\0Standard Jet DB", 19)))
        return Format::Jet;
    return Format::None;
}

[[noreturn]] void refuseForeignFile(const QString& path) {
    throw Failure(u"日記データベースではありません。"_s, path, {},
                  u"ファイルは変更されていません。「diarymdb.bak」などのバックアップから復元してください。"_s);
}

bool hasTable(const Connection& connection, const QString& name) {
    Statement rows(connection, "SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = ?1 COLLATE NOCASE");
    rows.bind(name);
    return rows.next();
}

/// A journal left by a program that was killed is rolled back by whoever opens the file for writing next.
void settle(const QString& path) {
    if (!QFileInfo::exists(path + u"-journal"_s))
        return;
    Connection connection(path, Access::ReadWrite);
    Statement(connection, "SELECT count(*) FROM sqlite_master").run();
}

class Checker {
public:
    explicit Checker(const QString& path)
        : m_connection(path, Access::ReadOnly) {}

    QStringList run() {
        checkIntegrity();
        if (!m_findings.isEmpty())
            return m_findings; // the tables can't be trusted any more
        checkDays();
        checkNumbers();
        checkFiles();
        return m_findings;
    }

private:
    void checkIntegrity() {
        Statement rows(m_connection, "PRAGMA integrity_check");
        while (rows.next()) {
            if (rows.text(0) != u"ok"_s)
                m_findings += u"データベースの異常: "_s + rows.text(0);
        }
    }

    void checkDays() {
        Statement rows(m_connection, "SELECT Day, count(*) FROM Contents GROUP BY Day ORDER BY Day");
        while (rows.next()) {
            if (!core::isDayKey(rows.text(0)))
                m_findings += u"日付として読めない日: 「%1」(%2件)"_s.arg(rows.text(0)).arg(rows.integer(1));
        }
    }

    void checkNumbers() {
        Statement rows(m_connection, "SELECT Day, group_concat(Number, ' ') FROM (SELECT Day, Number FROM Contents "
                                     "ORDER BY Day, Number) GROUP BY Day HAVING count(*) <> max(Number) OR "
                                     "min(Number) <> 1 OR count(DISTINCT Number) <> count(*) ORDER BY Day");
        while (rows.next())
            m_findings += u"番号が1からの連番でない日: %1 (%2)"_s.arg(rows.text(0), rows.text(1));
    }

    void checkFiles() {
        Statement rows(m_connection, "SELECT FileName, Day, Number FROM FileDB WHERE Day <> 'ALL' AND NOT EXISTS "
                                     "(SELECT 1 FROM Contents WHERE Contents.Day = FileDB.Day AND Contents.Number = "
                                     "FileDB.Number) ORDER BY Day, Number, FileID");
        while (rows.next())
            m_findings += u"日記のない登録ファイル: %1 (%2 %3)"_s.arg(rows.text(0), rows.text(1)).arg(rows.integer(2));
    }

    Connection m_connection;
    QStringList m_findings;
};

} // namespace

qint16 GetDBVersion(const QString& path) {
    if (!QFileInfo::exists(path))
        return 0;
    switch (formatOf(path)) {
    case Format::Jet:
        throw Failure(u"旧形式(Jet)の日記データベースです。"_s, path, {},
                      u"ファイルは変更されていません。この版では旧形式からの変換はまだできません。"_s);
    case Format::None:
        refuseForeignFile(path);
    case Format::Sqlite:
        break;
    }
    settle(path);
    const Connection connection(path, Access::ReadOnly);
    if (!hasTable(connection, u"DBInfo"_s)) {
        if (!hasTable(connection, u"Contents"_s))
            refuseForeignFile(path);
        return 0;
    }
    Statement rows(connection, "SELECT VersionInfo FROM DBInfo ORDER BY rowid");
    return rows.next() ? qint16(rows.integer(0)) : qint16(0);
}

void copyDatabase(const QString& from, const QString& to) {
    const auto copy = [&] {
        // A journal left beside the target belongs to another file and would be rolled into this one.
        platform::removeFile(to + u"-journal"_s);
        platform::copyFile(from, to, 0666, platform::Durability::Durable);
    };
    if (formatOf(from) != Format::Sqlite) {
        copy();
        return;
    }
    settle(from);
    // A reader's lock keeps every writer from its commit while the bytes are taken.
    Connection connection(from, Access::ReadOnly);
    connection.execute("BEGIN");
    Statement(connection, "SELECT count(*) FROM sqlite_master").run();
    copy();
    connection.execute("COMMIT");
}

void backUpDatabase(const QString& path, const QString& backup) {
    const Format format = formatOf(path);
    if (format == Format::None || (format == Format::Sqlite && [&] {
            settle(path);
            return !hasTable(Connection(path, Access::ReadOnly), u"Contents"_s);
        }()))
        refuseForeignFile(path);
    for (int older = 3; older >= 1; --older) {
        const QString newer = older == 1 ? backup : u"%1.%2"_s.arg(backup).arg(older - 1);
        if (QFileInfo::exists(newer))
            platform::copyFile(newer, u"%1.%2"_s.arg(backup).arg(older));
    }
    copyDatabase(path, backup);
}

QStringList checkDatabase(const QString& path) {
    if (formatOf(path) == Format::None)
        refuseForeignFile(path);
    settle(path);
    return Checker(path).run();
}

} // namespace velloria::store
