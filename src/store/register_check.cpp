#include "store/register_check.h"

#include "core/date_forms.h"
#include "core/day_key.h"
#include "core/files.h"
#include "core/path_names.h"
#include "platform/directory.h"
#include "store/day_spellings.h"
#include "store/row_check.h"
#include "store/sqlite/connection.h"
#include "store/sqlite/statement.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::store {

using sqlite::Connection;
using sqlite::Statement;

namespace {

/// A folder of registered things below the data folder.
class Folder {
public:
    Folder(const core::File& folder, const QString& dataFolder)
        : m_names(platform::existingPath(folder.below(dataFolder)) + u'/') {}

    /// Rows of old diaries hold whole paths.
    bool hasFile(const QString& name) const {
        return core::isBareName(name) ? m_names.hasFile(name)
                                      : QFileInfo(name).isAbsolute() && QFileInfo(name).isFile();
    }

private:
    platform::FolderNames m_names;
};

class RegisterChecker {
public:
    RegisterChecker(const Connection& connection, QStringList& findings)
        : m_connection(connection)
        , m_findings(findings) {}

    void checkFiles();
    void checkLogs();
    void checkDisk(const QString& dataFolder);

private:
    /// Adds what the first `count` columns lack, and which of their texts are broken.
    void checkValues(const Statement& rows, int count, const QStringList& labels, const QString& kind,
                     const QString& shown);
    bool hasEntry(const QString& day, int number);

    const Connection& m_connection;
    QStringList& m_findings;
    DaySpellings m_days{m_connection, "Contents"};
    Statement m_entry{m_connection, "SELECT 1 FROM Contents WHERE Day = ?1 AND Number = ?2"};
};

void RegisterChecker::checkValues(const Statement& rows, int count, const QStringList& labels, const QString& kind,
                                  const QString& shown) {
    QStringList missing;
    QStringList broken;
    for (int i = 0; i < count; ++i) {
        const sqlite::Value value = rows.value(i);
        if (isMissing(value))
            missing += labels[i];
        else if (isBroken(value))
            broken += labels[i];
    }
    if (!missing.isEmpty())
        m_findings += u"値のない%1: %2 (%3)"_s.arg(kind, shown, missing.join(u"、"_s));
    if (!broken.isEmpty())
        m_findings += u"文字の壊れた%1: %2 (%3)"_s.arg(kind, shown, broken.join(u"、"_s));
}

void RegisterChecker::checkFiles() {
    const QStringList labels{u"名前"_s, u"日付"_s, u"番号"_s, u"アップロード済み"_s, u"ログ済み"_s};
    Statement rows(m_connection, "SELECT FileName, Day, Number, Uploaded, Logged FROM FileDB "
                                 "ORDER BY Day, Number, FileID");
    while (rows.next()) {
        const QString day = rows.text(1);
        const QString shown = u"%1 (%2 %3)"_s.arg(rows.text(0), day, rows.text(2));
        checkValues(rows, int(labels.size()), labels, u"登録ファイル"_s, shown);
        if (isMissing(rows.value(1)) || isMissing(rows.value(2)) || day == u"ALL"_s)
            continue;
        const std::optional<QDate> date = core::isDayKey(day) ? std::nullopt : core::fullDay(day);
        if (!hasEntry(day, rows.integer(2)))
            m_findings += u"日記のない登録ファイル: "_s + shown;
        else if (date)
            m_findings += u"日付の形がちがう登録ファイル: %1、%2のこと"_s.arg(shown, core::dayKey(*date));
    }
}

/// In whatever form the days are written.
bool RegisterChecker::hasEntry(const QString& day, int number) {
    const QStringList spellings = m_days.of(day);
    return std::any_of(spellings.begin(), spellings.end(), [&](const QString& spelling) {
        m_entry.bind(spelling, number);
        const bool isThere = m_entry.next();
        m_entry.reset();
        return isThere;
    });
}

void RegisterChecker::checkLogs() {
    const QStringList labels{u"月"_s, u"名前"_s};
    Statement rows(m_connection, "SELECT LogMonth, LogFileName FROM LogDB ORDER BY LogMonth, LogFileName");
    while (rows.next()) {
        const QString month = rows.text(0);
        checkValues(rows, int(labels.size()), labels, u"登録ログ"_s, u"%1 (%2)"_s.arg(rows.text(1), month));
        if (!isMissing(rows.value(0)) && !core::isMonthKey(month))
            m_findings += u"月として読めない登録ログ: %1 (%2)"_s.arg(rows.text(1), month);
    }
}

void RegisterChecker::checkDisk(const QString& dataFolder) {
    Statement files(m_connection, "SELECT FileName, Day, Number, Logged FROM FileDB WHERE FileName IS NOT NULL "
                                  "ORDER BY Day, Number, FileID");
    Statement logs(m_connection, "SELECT LogFileName, LogMonth FROM LogDB WHERE LogFileName IS NOT NULL "
                                 "ORDER BY LogMonth, LogFileName");
    if (!QFileInfo(dataFolder).isDir()) {
        if (files.next() || logs.next())
            m_findings += u"データ保存先フォルダがないので、登録されたものがあるか調べられません: "_s + dataFolder;
        return;
    }
    const Folder parts(core::files::kParts, dataFolder);
    const Folder loggedParts(core::files::kLogParts, dataFolder);
    const Folder pages(core::files::kLogs, dataFolder);
    while (files.next()) {
        const QString name = files.text(0);
        if (!parts.hasFile(name) && !(files.boolean(3) && loggedParts.hasFile(name)))
            m_findings += u"ディスクにない登録ファイル: %1 (%2 %3)"_s.arg(name, files.text(1), files.text(2));
    }
    while (logs.next()) {
        if (const QString name = logs.text(0); !pages.hasFile(name))
            m_findings += u"ディスクにない登録ログ: %1 (%2)"_s.arg(name, logs.text(1));
    }
}

} // namespace

void checkRegisters(const Connection& connection, const std::optional<QString>& dataFolder, QStringList& findings) {
    RegisterChecker checker(connection, findings);
    checker.checkFiles();
    checker.checkLogs();
    if (dataFolder)
        checker.checkDisk(*dataFolder);
}

} // namespace velloria::store
