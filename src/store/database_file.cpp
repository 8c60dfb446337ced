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

const QString kRestoreAdvice =
    u"ファイルは変更されていません。「diarymdb.bak」などのバックアップから復元してください。"_s;

enum class Format { Sqlite, Jet, None };

Format formatOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure(u"日記データベースを開けません。"_s, path, file.errorString(),
                      u"ファイルの場所を確認してください。"_s);
    const QByteArray head = file.read(32);
    if (head.startsWith(QByteArrayView("SQLite format 3\0", 16)))
        return Format::Sqlite;
    if (head.startsWith(QByteArrayView("\0\1\0\0Standard Jet DB", 19)))
        return Format::Jet;
    return Format::None;
}

[[noreturn]] void refuseForeignFile(const QString& path) {
    throw Failure(u"日記データベースではありません。"_s, path, {}, kRestoreAdvice);
}

bool hasTable(const Connection& connection, const QString& name) {
    Statement rows(connection, "SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = ?1 COLLATE NOCASE");
    rows.bind(name);
    return rows.next();
}

/// The engine takes a last page that is cut off for one that ends in zeros.
void refuseCutOffPage(const QString& path) {
    Connection connection(path, Access::ReadOnly);
    const auto number = [&connection](const char* query) {
        Statement row(connection, query);
        return row.next() ? row.integer64(0) : 0;
    };
    connection.execute("BEGIN");
    number("SELECT count(*) FROM sqlite_master"); // from here on no writer changes the length
    if (QFileInfo(path).size() < number("PRAGMA page_count") * number("PRAGMA page_size"))
        throw Failure(u"日記データベースが壊れています。"_s, path, u"ファイルの終わりが欠けています"_s, kRestoreAdvice);
}

/// Neither a file without entries nor a damaged diary takes the place of a good backup.
void refuseUnsoundDiary(const QString& path) {
    const Connection connection(path, Access::ReadOnly);
    if (!hasTable(connection, u"Contents"_s))
        refuseForeignFile(path);
    Statement check(connection, "PRAGMA quick_check(1)");
    if (check.next() && check.text(0) != u"ok"_s)
        throw Failure(u"日記データベースが壊れています。"_s, path, check.text(0), kRestoreAdvice);
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
        try {
            while (rows.next()) {
                if (rows.text(0) != u"ok"_s)
                    m_findings += u"データベースの異常: "_s + rows.text(0);
            }
        } catch (const Failure&) {
            if (m_findings.isEmpty()) // else the damage that was found has stopped the engine's check, too
                throw;
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
        Statement rows(m_connection, "SELECT FileName, Day, Number FROM FileDB WHERE Day IS NOT 'ALL' AND NOT EXISTS "
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
    refuseCutOffPage(path);
    const Connection connection(path, Access::ReadOnly);
    if (!hasTable(connection, u"DBInfo"_s)) {
        if (!hasTable(connection, u"Contents"_s))
            refuseForeignFile(path);
        return 0;
    }
    Statement rows(connection, "SELECT VersionInfo FROM DBInfo ORDER BY rowid");
    const qint64 version = rows.next() ? rows.integer64(0) : 0;
    if (version != qint16(version))
        throw Failure(u"日記データベースのバージョンを読み取れません。"_s, path, QString::number(version),
                      kRestoreAdvice);
    return qint16(version);
}

void copyDatabase(const QString& from, const QString& to, unsigned newFileMode) {
    const auto copy = [&] {
        // A journal left beside the target belongs to another file and would be rolled into this one.
        platform::removeFile(to + u"-journal"_s);
        platform::copyFile(from, to, newFileMode, platform::Durability::Durable);
    };
    if (formatOf(from) != Format::Sqlite) {
        copy();
        return;
    }
    // A reader's lock keeps every writer from its commit while the bytes are taken.
    Connection connection(from, Access::ReadOnly);
    connection.execute("BEGIN");
    Statement(connection, "SELECT count(*) FROM sqlite_master").run();
    copy();
    connection.execute("COMMIT");
}

void backUpDatabase(const QString& path, const QString& backup) {
    const Format format = formatOf(path);
    if (format == Format::None)
        refuseForeignFile(path);
    if (format == Format::Sqlite)
        refuseUnsoundDiary(path);
    // Made again of the same diary it would only push out what the older backups hold.
    if (QFileInfo::exists(backup) && platform::readFile(backup) == platform::readFile(path))
        return;
    const unsigned mode = platform::modeOf(path, 0600); // who may not read the diary may not read its copies
    const auto olderBackup = [&](int age) { return age == 0 ? backup : backup + u'.' + QString::number(age); };
    for (int age = 3; age >= 1; --age) {
        if (const QString newer = olderBackup(age - 1); QFileInfo::exists(newer))
            platform::copyFile(newer, olderBackup(age), mode);
        platform::limitMode(olderBackup(age), mode);
    }
    platform::limitMode(backup, mode);
    copyDatabase(path, backup, mode);
}

QStringList checkDatabase(const QString& path) {
    if (formatOf(path) == Format::None)
        refuseForeignFile(path);
    return Checker(path).run();
}

} // namespace velloria::store
