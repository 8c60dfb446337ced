#include "store/database_check.h"

#include "core/session.h"
#include "store/database_file.h"
#include "store/database_format.h"
#include "store/register_check.h"
#include "store/row_check.h"
#include "store/sqlite/connection.h"
#include "store/sqlite/statement.h"

using namespace Qt::StringLiterals;

namespace velloria::store {
namespace {

using platform::Failure;
using sqlite::Access;
using sqlite::Connection;
using sqlite::Statement;

class Checker {
public:
    Checker(const QString& path, const std::optional<QString>& dataFolder)
        : m_path(path)
        , m_dataFolder(dataFolder)
        , m_connection(path, Access::ReadOnly) {}

    QStringList run() {
        try {
            checkIntegrity();
        } catch (const sqlite::Busy&) {
            throw;
        } catch (const Failure& failure) {
            checkForeignParts(); // one of them may be what stops the engine's check
            if (m_findings.isEmpty())
                throw;
            m_findings += u"データベースの異常: "_s + failure.reason();
            return m_findings;
        }
        if (!m_findings.isEmpty())
            return m_findings; // the tables can't be trusted any more
        checkForeignParts();
        checkVersion();
        if (hasAllTables()) {
            checkRows(m_connection, m_findings);
            checkRegisters(m_connection, m_dataFolder, m_findings);
        }
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

    /// They do nothing here, but another program may let them.
    void checkForeignParts() {
        Statement rows(m_connection,
                       "SELECT type, name FROM sqlite_master WHERE type IN ('trigger', 'view') OR sql LIKE "
                       "'CREATE VIRTUAL%' ORDER BY rowid");
        while (rows.next()) {
            const QString type = rows.text(0);
            m_findings +=
                u"日記にはない%1: 「%2」(Velloriaでは動きません)"_s.arg(type == u"trigger"_s ? u"トリガー"_s
                                                                        : type == u"view"_s  ? u"ビュー"_s
                                                                                             : u"仮想テーブル"_s,
                                                                        rows.text(1));
        }
    }

    /// A file without any version may be an old one or have lost its row: what it is, its tables tell.
    void checkVersion() {
        if (!isTable(u"DBInfo"_s) && !m_findings.isEmpty())
            return; // one of the foreign parts bears the name
        qint64 count = 0;
        if (isTable(u"DBInfo"_s)) {
            Statement rows(m_connection, "SELECT count(*) FROM DBInfo");
            count = rows.next() ? rows.integer64(0) : 0;
        }
        if (count == 0 && isTable(u"DBInfo"_s) && missingColumns(u"Contents"_s).isEmpty()) {
            m_findings += u"バージョンの行がありません (DBInfo)"_s;
            return;
        }
        refuseOldDiary(m_path);
        if (count > 1)
            m_findings += u"バージョンの行が%1つあります (DBInfo)"_s.arg(count);
    }

    bool hasAllTables() {
        bool hasAll = true;
        for (const auto& [table, columns] : kTables) {
            if (!isTable(table)) {
                m_findings += u"表がありません: %1"_s.arg(table);
                hasAll = false;
            } else if (const QStringList missing = missingColumns(table); !missing.isEmpty()) {
                m_findings += u"列がありません: %1 (%2)"_s.arg(table, missing.join(u"、"_s));
                hasAll = false;
            }
        }
        return hasAll;
    }

    bool isTable(const QString& name) {
        Statement rows(m_connection, "SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = ?1 COLLATE NOCASE");
        rows.bind(name);
        return rows.next();
    }

    QStringList missingColumns(const QString& table) {
        QStringList missing;
        for (const auto& [name, columns] : kTables) {
            if (name == table)
                missing = QString(columns).split(u' ');
        }
        Statement rows(m_connection, "PRAGMA table_info(" + table.toLatin1() + ")");
        while (rows.next())
            missing.removeIf([&](const QString& column) { return !column.compare(rows.text(1), Qt::CaseInsensitive); });
        return missing;
    }

    static constexpr std::pair<QLatin1StringView, QLatin1StringView> kTables[] = {
        {"Contents"_L1, "RecordID Day Number Title Contents Extend Excerpt Weather Genre PublishTime Private TrackBack "
                        "ImportMark"_L1},
        {"FileDB"_L1, "FileID FileName Day Number Uploaded Logged"_L1},
        {"LogDB"_L1, "LogMonth LogFileName"_L1},
        {"Memo"_L1, "PublishTime Title Memo No Category IsPass"_L1},
        {"DBInfo"_L1, "VersionInfo IsMemoPass IsPass"_L1},
    };

    QString m_path;
    std::optional<QString> m_dataFolder;
    Connection m_connection;
    QStringList m_findings;
};

void refuseToBeConverted(const QString& path, const QString& form) {
    throw Failure(
        u"まだ変換されていない日記データベースです。"_s, path, form,
        u"ファイルは変更されていません。次の起動で変換されます。変換したあとで、もう一度実行してください。"_s);
}

} // namespace

QStringList checkDatabase(const QString& path, const std::optional<QString>& dataFolder) {
    requireDiaryFormat(path);
    if (formatOf(path) == DatabaseFormat::Jet)
        refuseOldDiary(path);
    return Checker(path, dataFolder).run();
}

void refuseOldDiary(const QString& path) {
    if (formatOf(path) == DatabaseFormat::Jet)
        refuseToBeConverted(path, u"旧形式(Jet)"_s);
    if (const qint16 version = GetDBVersion(path); version < core::kDatabaseVersion)
        refuseToBeConverted(path, u"バージョン%1"_s.arg(version));
}

} // namespace velloria::store
