#include "core/upload_list.h"

#include "core/text_file.h"
#include "platform/code_page.h"
#include "platform/directory.h"
#include "platform/file_write.h"

using namespace Qt::StringLiterals;

namespace velloria::core {
namespace {

QByteArray bytesOf(const std::vector<UploadRow>& rows) {
    QString text;
    for (const UploadRow& row : rows)
        text += row.folder + u',' + row.name + u"\r\n"_s;
    return platform::toCodePage(text);
}

/// The field that starts at `at`, which moves behind the comma that ends it.
QString takeField(const QString& line, qsizetype& at) {
    while (at < line.size() && (line[at] == u' ' || line[at] == u'\t'))
        ++at;
    const bool isQuoted = at < line.size() && line[at] == u'"';
    const qsizetype start = isQuoted ? at + 1 : at;
    qsizetype end = line.indexOf(isQuoted ? u'"' : u',', start);
    if (end < 0)
        end = line.size();
    const qsizetype comma = line.indexOf(u',', end);
    at = comma < 0 ? line.size() : comma + 1;
    return line.mid(start, end - start);
}

} // namespace

void writeUploadList(const QString& file, const std::vector<UploadRow>& rows) {
    platform::replaceFile(file, bytesOf(rows), platform::Durability::Derived);
}

void appendUploadList(const QString& file, const std::vector<UploadRow>& rows) {
    QByteArray bytes;
    if (platform::fileExists(file))
        bytes = platform::readFile(file);
    platform::replaceFile(file, bytes + bytesOf(rows), platform::Durability::Derived);
}

std::vector<UploadRow> readUploadList(const QString& file) {
    std::vector<UploadRow> rows;
    for (const QString& line : readLines(file)) {
        qsizetype at = 0;
        UploadRow row;
        row.folder = takeField(line, at);
        row.name = takeField(line, at);
        rows.push_back(row);
    }
    return rows;
}

} // namespace velloria::core
