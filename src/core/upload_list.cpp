#include "core/upload_list.h"

#include "core/path_names.h"
#include "core/stored_name.h"
#include "core/text_file.h"
#include "platform/code_page.h"
#include "platform/directory.h"
#include "platform/file_write.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace velloria::core {
namespace {

QByteArray bytesOf(const std::vector<UploadRow>& rows) {
    QString text;
    for (const UploadRow& row : rows)
        text += row.folder + u',' + row.name + u"\r\n"_s;
    return platform::toCodePage(storedName(text));
}

std::vector<UploadRow> rowsOf(const QStringList& lines) {
    std::vector<UploadRow> rows;
    for (const QString& line : lines) {
        const auto [folder, name] = twoFields(nameOfStored(line));
        rows.push_back({folder, name});
    }
    return rows;
}

/// Nothing when there is no list; one that can't be read is a failure and no empty one.
std::optional<QByteArray> bytesOfList(const QString& file) {
    return platform::readFileIfThere(platform::existingPath(file));
}

void replaceList(const QString& file, const QByteArray& bytes) {
    platform::replaceFile(file, bytes, platform::Durability::Derived);
}

} // namespace

void writeUploadList(const QString& file, const std::vector<UploadRow>& rows) {
    const platform::FolderLock lock(GetParentFolder(file));
    replaceList(platform::existingPath(file), bytesOf(rows));
}

void appendUploadList(const QString& file, const std::vector<UploadRow>& rows) {
    const platform::FolderLock lock(GetParentFolder(file));
    QByteArray bytes = bytesOfList(file).value_or(QByteArray());
    // Other programs and people write to the list as well: the first new row must not become the end of their last one.
    if (!rows.empty() && !bytes.isEmpty() && !bytes.endsWith('\n'))
        bytes += "\r\n";
    replaceList(platform::existingPath(file), bytes + bytesOf(rows));
}

void removeRepeatedRows(const QString& file) {
    const platform::FolderLock lock(GetParentFolder(file));
    const std::optional<QByteArray> bytes = bytesOfList(file);
    if (!bytes)
        return;
    QSet<QString> seen;
    std::vector<UploadRow> rows = uploadRows(*bytes);
    const std::size_t removed = std::erase_if(rows, [&](const UploadRow& row) {
        const QString key = row.folder + u',' + row.name;
        const bool isKnown = seen.contains(key);
        seen.insert(key);
        return isKnown;
    });
    if (removed > 0)
        replaceList(platform::existingPath(file), bytesOf(rows));
}

void restoreUploadList(const QString& file, const std::vector<UploadRow>& rows,
                       const std::optional<QByteArray>& before) {
    const platform::FolderLock lock(GetParentFolder(file));
    if (bytesOfList(file) != bytesOf(rows))
        return;
    if (before)
        replaceList(platform::existingPath(file), *before);
    else
        platform::removeFile(platform::existingPath(file));
}

void removeUploadList(const QString& file, const QByteArray& bytes) {
    const platform::FolderLock lock(GetParentFolder(file));
    if (bytesOfList(file) == bytes)
        platform::removeFile(platform::existingPath(file));
}

std::vector<UploadRow> readUploadList(const QString& file) {
    return rowsOf(readLines(file));
}

std::vector<UploadRow> uploadRows(const QByteArray& bytes) {
    return rowsOf(linesOf(platform::fromCodePage(bytes)));
}

} // namespace velloria::core
