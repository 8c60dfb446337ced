#include "store/own_lines.h"

#include "core/path_names.h"
#include "platform/file_write.h"
#include "platform/utf8.h"

namespace velloria::store {

OwnLines::OwnLines(QString file)
    : m_file(std::move(file)) {}

QList<QByteArray> OwnLines::all() const {
    const QByteArray bytes = platform::readFileIfThere(m_file).value_or(QByteArray());
    QList<QByteArray> lines = platform::withoutSignature(bytes).toByteArray().split('\n');
    lines.removeIf([](const QByteArray& line) { return line.trimmed().isEmpty(); });
    return lines;
}

void OwnLines::write(const QList<QByteArray>& written) {
    const platform::FolderLock lock(core::GetParentFolder(m_file));
    QList<QByteArray> lines = all();
    for (const QByteArray& own : m_own)
        lines.removeOne(own);
    lines += written;
    if (lines.isEmpty())
        platform::removeFile(m_file);
    else
        platform::replaceFile(m_file, lines.join('\n') + '\n', platform::Durability::Durable, 0600);
    m_own = written;
}

} // namespace velloria::store
