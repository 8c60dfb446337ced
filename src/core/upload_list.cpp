#include "core/upload_list.h"

#include "core/text_file.h"
#include "platform/code_page.h"
#include "platform/directory.h"
#include "platform/file_write.h"

using namespace Qt::StringLiterals;

namespace velloria::core {
namespace {

/// Characters that the code page writes as others. A page can bear that, the name of a file on disk can't: here they
/// are references like the characters that the code page lacks.
constexpr char16_t kOneWay[] = {0x00A2, 0x00A3, 0x00AC, 0x2014, 0x2016, 0x2212, 0x301C};

QString referenceTo(char16_t character) {
    return u"&#%1;"_s.arg(int(character));
}

QByteArray bytesOf(const std::vector<UploadRow>& rows) {
    QString text;
    for (const UploadRow& row : rows)
        text += row.folder + u',' + row.name + u"\r\n"_s;
    for (const char16_t character : kOneWay)
        text.replace(QChar(character), referenceTo(character));
    return platform::toCodePage(text);
}

QString decoded(QString line) {
    for (const char16_t character : kOneWay)
        line.replace(referenceTo(character), QChar(character));
    return line;
}

} // namespace

void writeUploadList(const QString& file, const std::vector<UploadRow>& rows) {
    platform::replaceFile(file, bytesOf(rows), platform::Durability::Derived);
}

void appendUploadList(const QString& file, const std::vector<UploadRow>& rows) {
    QByteArray bytes;
    if (platform::fileExists(file))
        bytes = platform::readFile(file);
    // Other programs and people write to the list as well: the first new row must not become the end of their last one.
    if (!rows.empty() && !bytes.isEmpty() && !bytes.endsWith('\n'))
        bytes += "\r\n";
    platform::replaceFile(file, bytes + bytesOf(rows), platform::Durability::Derived);
}

std::vector<UploadRow> readUploadList(const QString& file) {
    std::vector<UploadRow> rows;
    for (const QString& stored : readLines(file)) {
        const auto [folder, name] = twoFields(decoded(stored));
        rows.push_back({folder, name});
    }
    return rows;
}

} // namespace velloria::core
