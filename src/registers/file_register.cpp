#include "registers/file_register.h"

#include "core/date_forms.h"
#include "platform/like_pattern.h"
#include "platform/text_fold.h"
#include "store/sqlite/connection.h"
#include "store/sqlite/literal.h"
#include "store/sqlite/statement.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace velloria::registers {

using store::sqlite::Access;
using store::sqlite::Connection;
using store::sqlite::literal;
using store::sqlite::Statement;
using store::sqlite::Transaction;

namespace {

constexpr char kRow[] = "SELECT FileID, FileName, Day, Number, Uploaded, Logged FROM FileDB ";
constexpr char kOfName[] = "WHERE Fold(coalesce(FileName, '')) = Fold(coalesce(?1, '')) ";

std::vector<store::FileRow> readRows(Statement& rows) {
    std::vector<store::FileRow> files;
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

QString pageAddress(const QString& name) {
    return u"./DiaryParts/"_s + name;
}

FileRegister::FileRegister(QString databaseFile)
    : m_file(std::move(databaseFile)) {}

std::vector<store::FileRow> FileRegister::FindFile(const QString& name) const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, QByteArray(kRow) + kOfName + "ORDER BY FileID");
    rows.bind(literal(m_file, name));
    return readRows(rows);
}

std::vector<store::FileRow> FileRegister::ListFiles() const {
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

std::vector<store::FileRow> FileRegister::FilesOfMonth(const QString& month) const {
    const platform::LikePattern pattern(store::sqlite::pattern(m_file, month));
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, QByteArray(kRow) + "WHERE Day IS NOT NULL ORDER BY FileID");
    std::vector<store::FileRow> files = readRows(rows);
    std::erase_if(files, [&](const store::FileRow& file) {
        const QString day = core::formatTextAsDate(file.day, u"yyyy/mm/dd", month.left(4).toInt());
        return !pattern.matches(day.left(7));
    });
    return files;
}

std::vector<store::FileRow> FileRegister::CommonFilesToUpload() const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, QByteArray(kRow) + "WHERE Day = 'ALL' AND Uploaded = 0 ORDER BY FileID");
    return readRows(rows);
}

std::vector<store::FileRow> FileRegister::FilesOfPeriod(const QString& firstDay, const QString& lastDay) const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, QByteArray(kRow) + "WHERE Day BETWEEN ?1 AND ?2 AND Logged = 0 ORDER BY FileID");
    rows.bind(literal(m_file, firstDay), literal(m_file, lastDay));
    return readRows(rows);
}

std::vector<store::FileRow> FileRegister::CommonFiles() const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, QByteArray(kRow) + "WHERE Day = 'ALL' ORDER BY FileID");
    return readRows(rows);
}

std::vector<store::FileRow> FileRegister::filesToUpload(SiteSide side) const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, QByteArray(kRow) + "WHERE Uploaded = 0 AND (Logged <> 0) = ?1 ORDER BY FileID");
    rows.bind(side == SiteSide::Log);
    return readRows(rows);
}

std::vector<store::FileRow> FileRegister::filesSent() const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, QByteArray(kRow) + "WHERE Uploaded <> 0 ORDER BY FileID");
    return readRows(rows);
}

QStringList FileRegister::ImageFilesOfDay(const QString& day) const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, "SELECT FileName FROM FileDB WHERE FileName LIKE 'dimage%' AND Day = ?1 "
                               "ORDER BY FileName COLLATE JET DESC");
    rows.bind(literal(m_file, day));
    return readNames(rows);
}

void FileRegister::addFile(const store::FileRow& row) const {
    const Connection connection(m_file, Access::ReadWrite);
    Statement(connection,
              "INSERT OR ABORT INTO FileDB (FileName, Day, Number, Uploaded, Logged) VALUES (?1, ?2, ?3, ?4, ?5)")
        .bind(row.name, row.day, row.number, row.isUploaded, row.isLogged)
        .run();
}

void FileRegister::markLogged(const std::vector<qint64>& ids) const {
    if (ids.empty())
        return;
    Connection connection(m_file, Access::ReadWrite);
    Transaction transaction(connection);
    Statement mark(connection, "UPDATE OR ABORT FileDB SET Logged = 1, Uploaded = 0 WHERE FileID = ?1");
    for (const qint64 id : ids)
        mark.bind(id).run();
    transaction.commit();
}

void FileRegister::markUploaded(qint64 id) const {
    const Connection connection(m_file, Access::ReadWrite);
    Statement(connection, "UPDATE OR ABORT FileDB SET Uploaded = 1 WHERE FileID = ?1").bind(id).run();
}

void FileRegister::addCommonFiles(const QStringList& names, SiteSide side) const {
    for (const QString& name : names)
        literal(m_file, name);
    if (names.isEmpty())
        return;
    Connection connection(m_file, Access::ReadWrite);
    // Who is there is asked within the writing transaction: two programs may register the same file at once.
    Transaction transaction(connection);
    QSet<QString> known;
    Statement rows(connection, "SELECT FileName FROM FileDB WHERE Day = 'ALL' AND (Logged <> 0 OR NOT ?1)");
    rows.bind(side == SiteSide::Log);
    for (const QString& name : readNames(rows))
        known.insert(platform::fold(name));
    Statement add(connection, "INSERT OR ABORT INTO FileDB (FileName, Day, Number, Uploaded, Logged) "
                              "VALUES (?1, 'ALL', 0, 0, ?2)");
    for (const QString& name : names) {
        const QString form = platform::fold(name);
        if (known.contains(form))
            continue;
        add.bind(name, side == SiteSide::Log).run();
        known.insert(form);
    }
    transaction.commit();
}

} // namespace velloria::registers
