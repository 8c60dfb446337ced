#include "store/file_register.h"

#include "core/date_forms.h"
#include "platform/text_order.h"
#include "store/sqlite/connection.h"
#include "store/sqlite/literal.h"
#include "store/sqlite/statement.h"

using namespace Qt::StringLiterals;

namespace velloria::store {

using sqlite::Access;
using sqlite::Connection;
using sqlite::literal;
using sqlite::Statement;

namespace {

constexpr char kRow[] = "SELECT FileID, FileName, Day, Number, Uploaded, Logged FROM FileDB ";
constexpr char kOfName[] = "WHERE Fold(coalesce(FileName, '')) = Fold(coalesce(?1, '')) ";

std::vector<FileRow> readRows(Statement& rows) {
    std::vector<FileRow> files;
    while (rows.next())
        files.push_back(
            {rows.integer64(0), rows.text(1), rows.text(2), rows.integer(3), rows.boolean(4), rows.boolean(5)});
    return files;
}

QStringList readNames(Statement& rows) {
    QStringList names;
    while (rows.next())
        names += rows.text(0);
    return names;
}

int readCount(Statement& rows) {
    rows.next();
    return rows.integer(0);
}

} // namespace

FileRegister::FileRegister(QString databaseFile)
    : m_file(std::move(databaseFile)) {}

std::vector<FileRow> FileRegister::FindFile(const QString& name) const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, QByteArray(kRow) + kOfName + "ORDER BY FileID");
    rows.bind(literal(m_file, name));
    return readRows(rows);
}

std::vector<FileRow> FileRegister::ListFiles() const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, QByteArray(kRow) + "ORDER BY Day, Number, FileName COLLATE JET, FileID");
    return readRows(rows);
}

void FileRegister::DeleteFile(const QString& name, const QString& day, int number) const {
    const Connection connection(m_file, Access::ReadWrite);
    Statement(connection, QByteArray("DELETE FROM FileDB ") + kOfName + "AND Day IS ?2 AND coalesce(Number, 0) = ?3")
        .bind(literal(m_file, name), literal(m_file, day), number)
        .run();
}

int FileRegister::CountFile(const QString& name) const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, QByteArray("SELECT count(FileID) FROM FileDB ") + kOfName);
    rows.bind(literal(m_file, name));
    return readCount(rows);
}

int FileRegister::CountUnloggedFile(const QString& name) const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, "SELECT count(FileID) FROM FileDB WHERE Fold(FileName) = Fold(?1) AND Logged = 0");
    rows.bind(literal(m_file, name));
    return readCount(rows);
}

QStringList FileRegister::FilesOfMonth(const QString& month) const {
    const platform::LikePattern pattern(sqlite::pattern(m_file, month));
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, "SELECT FileName, Day FROM FileDB WHERE Day IS NOT NULL ORDER BY FileID");
    QStringList names;
    while (rows.next()) {
        const QString day = core::formatTextAsDate(rows.text(1), u"yyyy/mm/dd", month.left(4).toInt());
        if (pattern.matches(day.left(7)))
            names += rows.text(0);
    }
    return names;
}

QStringList FileRegister::CommonFilesToUpload() const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, "SELECT FileName FROM FileDB WHERE Day = 'ALL' AND Uploaded = 0 ORDER BY FileID");
    return readNames(rows);
}

std::vector<FileRow> FileRegister::FilesOfPeriod(const QString& firstDay, const QString& lastDay) const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, QByteArray(kRow) + "WHERE Day BETWEEN ?1 AND ?2 AND Logged = 0 ORDER BY FileID");
    rows.bind(literal(m_file, firstDay), literal(m_file, lastDay));
    return readRows(rows);
}

std::vector<FileRow> FileRegister::CommonFiles() const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, QByteArray(kRow) + "WHERE Day = 'ALL' ORDER BY FileID");
    return readRows(rows);
}

std::vector<FileRow> FileRegister::FilesToUpload(SiteSide side) const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, QByteArray(kRow) + "WHERE Uploaded = 0 AND (Logged <> 0) = ?1 ORDER BY FileID");
    rows.bind(side == SiteSide::Log);
    return readRows(rows);
}

QStringList FileRegister::ImageFilesOfDay(const QString& day) const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, "SELECT FileName FROM FileDB WHERE FileName LIKE 'dimage%' AND Day = ?1 "
                               "ORDER BY FileName COLLATE JET DESC");
    rows.bind(literal(m_file, day));
    return readNames(rows);
}

void FileRegister::AddFile(const FileRow& row) const {
    const Connection connection(m_file, Access::ReadWrite);
    Statement(connection, "INSERT INTO FileDB (FileName, Day, Number, Uploaded, Logged) VALUES (?1, ?2, ?3, ?4, ?5)")
        .bind(row.name, row.day, row.number, row.isUploaded, row.isLogged)
        .run();
}

void FileRegister::MarkLogged(qint64 id) const {
    const Connection connection(m_file, Access::ReadWrite);
    Statement(connection, "UPDATE FileDB SET Logged = 1, Uploaded = 0 WHERE FileID = ?1").bind(id).run();
}

void FileRegister::MarkUploaded(qint64 id) const {
    const Connection connection(m_file, Access::ReadWrite);
    Statement(connection, "UPDATE FileDB SET Uploaded = 1 WHERE FileID = ?1").bind(id).run();
}

void FileRegister::AddLoggedCommonFile(const QString& name) const {
    for (const FileRow& row : FindFile(name)) {
        if (row.day == kAllDays && row.isLogged)
            return;
    }
    AddFile({0, name, kAllDays, 0, false, true});
}

} // namespace velloria::store
