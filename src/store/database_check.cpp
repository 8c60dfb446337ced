#include "store/database_check.h"

#include "core/day_key.h"
#include "store/database_format.h"
#include "store/day_spellings.h"
#include "store/sqlite/connection.h"
#include "store/sqlite/statement.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::store {
namespace {

using platform::Failure;
using sqlite::Access;
using sqlite::Connection;
using sqlite::Statement;

class Checker {
public:
    explicit Checker(const QString& path)
        : m_connection(path, Access::ReadOnly) {}

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
        try {
            checkDays();
            checkNumbers();
            checkFiles();
        } catch (const Failure&) {
            if (m_findings.isEmpty()) // else a view stands in the place of a table
                throw;
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
        while (rows.next()) {
            if (!hasEntry(rows.text(1), rows.integer(2)))
                m_findings +=
                    u"日記のない登録ファイル: %1 (%2 %3)"_s.arg(rows.text(0), rows.text(1)).arg(rows.integer(2));
        }
    }

    /// In whatever form the days are written.
    bool hasEntry(const QString& day, int number) {
        Statement rows(m_connection, "SELECT 1 FROM Contents WHERE Day = ?1 AND Number = ?2");
        const QStringList spellings = m_days.of(day);
        return std::any_of(spellings.begin(), spellings.end(), [&](const QString& spelling) {
            rows.reset();
            rows.bind(spelling, number);
            return rows.next();
        });
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

    Connection m_connection;
    DaySpellings m_days{m_connection, "Contents"};
    QStringList m_findings;
};

} // namespace

QStringList checkDatabase(const QString& path) {
    requireDiaryFormat(path);
    return Checker(path).run();
}

} // namespace velloria::store
