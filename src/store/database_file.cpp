#include "store/database_file.h"

#include "core/files.h"
#include "core/path_names.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "store/database_format.h"
#include "store/jet_diary.h"
#include "store/named_database.h"
#include "store/sqlite/connection.h"
#include "store/sqlite/statement.h"
#include "store/table_rules.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::store {

using platform::Failure;
using sqlite::Access;
using sqlite::Connection;
using sqlite::Statement;

namespace {

bool hasPart(const Connection& connection, const QString& type, const QString& name) {
    Statement rows(connection, "SELECT 1 FROM sqlite_master WHERE type = ?1 AND name = ?2 COLLATE NOCASE");
    rows.bind(type, name);
    return rows.next();
}

bool hasTable(const Connection& connection, const QString& name) {
    return hasPart(connection, u"table"_s, name);
}

/// Neither a file without entries nor a damaged diary takes the place of a good backup.
void refuseUnsoundDiary(const QString& path) {
    const Connection connection(path, Access::ReadOnly);
    if (!hasTable(connection, u"Contents"_s))
        refuseForeignFile(path);
    Statement check(connection, "PRAGMA quick_check(1)");
    if (check.next() && check.text(0) != u"ok"_s)
        throw Failure(u"日記データベースが壊れています。"_s, path, check.text(0), unchangedAndRestore());
}

/// The same for one of the old format, by reading it to its last row.
void refuseUnsoundJet(const QString& path) {
    JetDiary diary(path);
    const qint64 version = diary.version();
    std::vector<OldValue> row;
    for (const TableRule& rule : tableRules()) {
        if (version < rule.since)
            continue;
        diary.open(QString::fromLatin1(rule.name), rule.columnsOf(qint16(version)));
        while (diary.next(row)) {
        }
    }
}

/// Where a diary that another one replaces is kept, beside it.
QString freeNameFor(const QString& database) {
    const QString folder = core::GetParentFolder(database) + u'/';
    QString name = core::files::kReplacedDiary.below(folder);
    const QString base = core::GetBaseName(name);
    for (int i = 2; QFileInfo::exists(name); ++i)
        name = base + u"-%1.bak"_s.arg(i);
    return name;
}

/// The connection that keeps every other program out; nothing when the file can't be opened any more. Throws Busy when
/// another program is at work.
std::unique_ptr<Connection> lockedIfSound(const QString& database) {
    if (formatOf(database) != DatabaseFormat::Sqlite)
        return nullptr;
    try {
        auto connection = std::make_unique<Connection>(database, Access::ReadWrite);
        if (connection->hasWriteAheadLog())
            throw sqlite::Busy(database, {});
        connection->execute("BEGIN EXCLUSIVE");
        return connection;
    } catch (const sqlite::Busy&) {
        throw;
    } catch (const Failure&) {
        return nullptr;
    }
}

[[noreturn]] void refuseUnknownVersion(const QString& path, const QString& reason) {
    throw Failure(u"日記データベースのバージョンを読み取れません。"_s, path, reason, unchangedAndRestore());
}

/// A version that was lost is none of the oldest: what came with the later ones would be left behind.
qint64 versionOfSqlite(const QString& path) {
    refuseCutOffPage(path);
    const Connection connection(path, Access::ReadOnly);
    if (!hasTable(connection, u"DBInfo"_s)) {
        if (hasPart(connection, u"view"_s, u"DBInfo"_s))
            refuseUnknownVersion(path, u"「DBInfo」がビューです"_s);
        if (!hasTable(connection, u"Contents"_s))
            refuseForeignFile(path);
        return 0;
    }
    Statement rows(connection, "SELECT VersionInfo FROM DBInfo ORDER BY rowid");
    if (!rows.next())
        refuseUnknownVersion(path, u"「DBInfo」に行がありません"_s);
    const OldValue value = rows.value(0);
    const auto* number = std::get_if<qint64>(&value);
    if (!number)
        refuseUnknownVersion(path, u"「VersionInfo」が数ではありません"_s);
    return *number;
}

} // namespace

qint16 GetDBVersion(const QString& path) {
    platform::refuseLostLink(path);
    if (!QFileInfo::exists(path))
        return 0;
    const DatabaseFormat format = formatOf(path);
    if (format == DatabaseFormat::None)
        refuseForeignFile(path);
    const qint64 version = format == DatabaseFormat::Jet ? JetDiary(path).version() : versionOfSqlite(path);
    if (version != qint16(version))
        refuseUnknownVersion(path, QString::number(version));
    return qint16(version);
}

qint16 versionOfNamed(const QString& file) {
    return NamedDatabase(file).told(GetDBVersion);
}

void copyDatabase(const QString& from, const QString& to, unsigned newFileMode) {
    platform::refuseLostLink(to);
    // Last of all: until the copy is whole they belong to a file that may need them.
    const auto removeOldJournals = [&] { removeJournals(to); };
    const auto copy = [&] {
        platform::copyFile(from, to, newFileMode, platform::Durability::Durable, removeOldJournals);
    };
    if (formatOf(from) != DatabaseFormat::Sqlite) {
        copy();
        return;
    }
    // A reader's lock keeps every writer from its commit while the bytes are taken.
    Connection connection(from, Access::ReadOnly);
    connection.execute("BEGIN");
    Statement(connection, "SELECT count(*) FROM sqlite_master").run();
    if (connection.hasWriteAheadLog())
        platform::replaceFile(
            to,
            [&](const platform::WriteBytes& out) {
                out(connection.bytes());
                removeOldJournals();
            },
            platform::Durability::Durable, newFileMode);
    else
        copy();
    connection.execute("COMMIT");
}

void refuseCutOffPage(const QString& path) {
    Connection connection(path, Access::ReadOnly);
    const auto number = [&connection](const char* query) {
        Statement row(connection, query);
        return row.next() ? row.integer64(0) : 0;
    };
    connection.execute("BEGIN");
    number("SELECT count(*) FROM sqlite_master"); // from here on no writer changes the length
    if (connection.hasWriteAheadLog())
        return; // its last pages are still in the log
    if (QFileInfo(path).size() < number("PRAGMA page_count") * number("PRAGMA page_size"))
        throw Failure(u"日記データベースが壊れています。"_s, path, u"ファイルの終わりが欠けています"_s,
                      unchangedAndRestore());
}

void requireSoundDiary(const QString& path) {
    requireDiaryFormat(path);
    if (formatOf(path) == DatabaseFormat::Jet)
        return refuseUnsoundJet(path);
    refuseCutOffPage(path);
    refuseUnsoundDiary(path);
}

bool holdSameDiary(const QString& left, const QString& right) {
    constexpr qint64 kHeadEnd = 100;
    constexpr std::pair<int, int> kCounters[] = {{24, 4}, {40, 4}, {92, 8}}; // changes, schema, who counted last
    const auto headOf = [&](const QString& file) {
        QByteArray head = platform::readFile(file, kHeadEnd);
        for (const auto& [at, size] : kCounters)
            head.replace(at, size, QByteArray(size, '\0'));
        return head;
    };
    return headOf(left) == headOf(right) && platform::haveSameBytes(left, right, kHeadEnd);
}

platform::FileTurn turnAtBackups(const QString& folder) {
    return {core::files::kBackupLock.below(folder + u'/'), u"日記のバックアップは他のプログラムが使用中です。"_s};
}

void backUpDatabase(const QString& path, const QString& backup) {
    const DatabaseFormat format = formatOf(path);
    if (format == DatabaseFormat::None)
        refuseForeignFile(path);
    if (format == DatabaseFormat::Sqlite)
        refuseUnsoundDiary(path);
    const platform::FileTurn turn = turnAtBackups(core::GetParentFolder(backup));
    // Made again of the same diary it would only push out what the older backups hold. What another tool has in a log
    // beside the file is not to be seen in it.
    if (!QFileInfo::exists(fileBeside(path, "-wal"_L1)) && QFileInfo::exists(backup) &&
        platform::haveSameBytes(backup, path))
        return;
    if (format == DatabaseFormat::Jet && QFileInfo::exists(backup))
        refuseUnsoundJet(path);
    // Who may not read the diary may not read its copies. Each of them makes room for the next one.
    const unsigned mode = platform::modeOf(path, 0600) | 0200;
    const auto olderBackup = [&](int age) { return age == 0 ? backup : backup + u'.' + QString::number(age); };
    platform::requireReplaceable(backup);
    // A run that failed behind this has moved them already: with each one more they would all become the same.
    const bool haveMoved = QFileInfo::exists(backup) && QFileInfo::exists(olderBackup(1)) &&
                           platform::haveSameBytes(backup, olderBackup(1));
    for (int age = 3; age >= 1; --age) {
        if (const QString newer = olderBackup(age - 1); !haveMoved && QFileInfo::exists(newer))
            platform::copyFile(newer, olderBackup(age), mode);
        platform::limitMode(olderBackup(age), mode);
    }
    platform::limitMode(backup, mode);
    copyDatabase(path, backup, mode);
}

QString restoreDatabase(const QString& path, const QString& backup) {
    platform::refuseLostLink(path);
    if (platform::isSameFile(path, backup))
        throw Failure(u"バックアップを復元できません。"_s, backup, u"今の日記そのものです"_s,
                      u"日記は変更されていません。別のファイルを指定してください。"_s);
    const NamedDatabase named(backup);
    named.told(requireSoundDiary);
    const platform::FileTurn turn = turnAtBackups(core::GetParentFolder(path));
    if (!QFileInfo::exists(path)) {
        copyDatabase(named.path(), path);
        return {};
    }
    const QString kept = freeNameFor(path);
    try {
        copyAsItLies(path, kept); // before anybody opens it
        // No writer is to come in between: what it wrote would be in neither file.
        const std::unique_ptr<Connection> lock = lockedIfSound(path);
        if (lock) {
            removeJournals(kept);
            platform::replaceFile(kept, lock->bytes(), platform::Durability::Durable);
        }
        copyDatabase(named.path(), path);
    } catch (const Failure&) {
        removeJournals(kept);
        platform::removeFile(kept);
        throw;
    }
    return kept;
}

} // namespace velloria::store
