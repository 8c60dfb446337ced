#include "store/diary_copies.h"

#include "core/date_forms.h"
#include "core/files.h"
#include "core/path_names.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/utf8.h"
#include "store/backup_names.h"
#include "store/database_format.h"
#include "store/named_database.h"
#include "store/open_old_diary.h"
#include "store/sqlite/connection.h"
#include "store/sqlite/statement.h"

#include <QFileInfo>

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace velloria::store {
namespace {

using sqlite::Access;
using sqlite::Connection;
using sqlite::Statement;

/// By the day that its name tells, for the file may have been copied since.
QDateTime dateOf(const QFileInfo& file) {
    const QDateTime changed = file.lastModified();
    const auto backup = BackupName::parse(file.fileName());
    if (!backup || changed.date() == backup->day)
        return changed;
    return backup->day.startOfDay();
}

QString textOf(const OldValue& value) {
    if (const auto* text = std::get_if<QByteArray>(&value))
        return platform::fromUtf8(*text);
    const auto* number = std::get_if<qint64>(&value);
    return number ? QString::number(*number) : QString();
}

/// Of rows in any order, and of days in any form, the last one.
class LastRow {
public:
    void see(const std::vector<OldValue>& row) {
        const qint64* const number = row.size() > 2 ? std::get_if<qint64>(&row[2]) : nullptr;
        const std::pair key(core::formatTextAsDate(textOf(row[0]), u"yyyy/mm/dd", kYear), number ? *number : 1);
        if (key < m_key)
            return;
        m_key = key;
        m_title = textOf(row[1]);
    }
    const QString& title() const { return m_title; }

private:
    static constexpr int kYear = 2000; ///< of a day without one, which is of no use here

    std::pair<QString, qint64> m_key;
    QString m_title;
};

/// Of any format and version.
void readRows(DiaryCopy& copy, const QString& file) {
    const std::unique_ptr<OldDiary> diary = openOldDiary(file);
    try {
        copy.entries = diary->open(u"Contents"_s, {u"Day"_s, u"Title"_s, u"Number"_s});
    } catch (const platform::Failure&) { // the oldest ones have no numbers
        copy.entries = diary->open(u"Contents"_s, {u"Day"_s, u"Title"_s});
    }
    LastRow last;
    for (std::vector<OldValue> row; diary->next(row);)
        last.see(row);
    copy.lastTitle = last.title();
}

/// Through the index. False where there is none to read by: days in other forms, an older layout.
bool readByIndex(DiaryCopy& copy, const QString& file) {
    const Connection connection(file, Access::ReadOnly);
    constexpr const char* kDays = "SELECT count(*), count(CASE WHEN Day NOT GLOB '[0-9][0-9][0-9][0-9]/[0-9][0-9]/"
                                  "[0-9][0-9]' THEN 1 END) FROM Contents";
    constexpr const char* kLast = "SELECT Title FROM Contents ORDER BY Day DESC, Number DESC, rowid DESC LIMIT 1";
    Statement columns(connection, "SELECT 1 FROM pragma_table_info('Contents') WHERE name = 'Number' COLLATE NOCASE");
    if (!columns.next())
        return false;
    Statement days(connection, kDays);
    if (!days.next() || days.integer64(1) > 0)
        return false;
    copy.entries = days.integer64(0);
    Statement last(connection, kLast);
    copy.lastTitle = last.next() ? last.text(0) : QString();
    return true;
}

/// In what order two copies of the same moment come: as the names count, and the last one of a day has no number.
std::tuple<int, QString> rankOf(const DiaryCopy& copy) {
    const auto backup = BackupName::parse(copy.name);
    return {backup ? backup->copy : 0, copy.name};
}

/// Adds the files of a folder that match; one of a name that is there already would not be found by it.
void addFiles(std::vector<DiaryCopy>& copies, const QString& folder, const QString& pattern) {
    for (const QString& name : platform::listFolder(folder, pattern)) {
        if (std::any_of(copies.begin(), copies.end(), [&](const DiaryCopy& copy) { return copy.name == name; }))
            continue;
        const QFileInfo file(folder + name);
        copies.push_back({name, folder + name, dateOf(file), file.size()});
    }
}

} // namespace

std::vector<DiaryCopy> diaryCopyFiles(const core::Session& session) {
    std::vector<DiaryCopy> copies;
    const QString pattern = core::GetBaseName(core::files::kReplacedDiary.name) + u"*.bak"_s;
    addFiles(copies, session.UserPath, core::files::kBackup.name);
    for (const QString& age : {u".1"_s, u".2"_s, u".3"_s})
        addFiles(copies, session.UserPath, core::files::kBackup.name + age);
    addFiles(copies, session.UserPath, pattern);
    addFiles(copies, session.UserPath, core::GetBaseName(core::files::kJetDiary.name) + u"*.mdb"_s);
    addFiles(copies, core::withSeparator(platform::existingPath(core::files::kBackups.in(session))), u"*.mdb"_s);
    std::sort(copies.begin(), copies.end(), [](const DiaryCopy& left, const DiaryCopy& right) {
        return left.date != right.date ? left.date > right.date : rankOf(left) < rankOf(right);
    });
    return copies;
}

void readCopy(DiaryCopy& copy) {
    try {
        NamedDatabase(copy.file).told([&copy](const QString& file) {
            if (formatOf(file) != DatabaseFormat::Sqlite || !readByIndex(copy, file))
                readRows(copy, file);
        });
    } catch (const platform::Failure& failure) {
        copy.problem =
            failure.reason().isEmpty() ? failure.whatFailed() : failure.whatFailed() + u' ' + failure.reason();
    }
}

std::vector<DiaryCopy> diaryCopies(const core::Session& session) {
    std::vector<DiaryCopy> copies = diaryCopyFiles(session);
    for (DiaryCopy& copy : copies)
        readCopy(copy);
    return copies;
}

std::optional<DiaryCopy> presentDiary(const core::Session& session) {
    const QFileInfo file(platform::existingPath(session.databaseFile()));
    if (!file.exists())
        return std::nullopt;
    DiaryCopy copy{file.fileName(), file.filePath(), file.lastModified(), file.size()};
    readCopy(copy);
    return copy;
}

} // namespace velloria::store
