#include "editor/draft.h"

#include "core/files.h"
#include "core/path_names.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "platform/utf8.h"
#include "store/entry_line.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace velloria::editor {

DraftFile::DraftFile(const core::Run& run)
    : m_file(core::files::kDraft.in(run.session))
    , m_clock(run.clock) {}

void DraftFile::write(const std::vector<store::Entry>& drafts) {
    const platform::FolderLock lock(core::GetParentFolder(m_file));
    QList<QByteArray> lines = presentLines();
    for (const QByteArray& own : m_own)
        lines.removeOne(own);
    QList<QByteArray> written;
    for (const store::Entry& draft : drafts)
        written += lineOf(draft);
    lines += written;
    if (lines.isEmpty())
        platform::removeFile(m_file);
    else
        platform::replaceFile(m_file, lines.join('\n') + '\n', platform::Durability::Durable, 0600);
    m_own = written;
}

QByteArray DraftFile::lineOf(const store::Entry& draft) const {
    QJsonObject line = store::toJson(draft);
    line[u"Reason"_s] = u"下書き"_s;
    line[u"Time"_s] = m_clock.now().toString(u"yyyy/MM/dd HH:mm:ss");
    return QJsonDocument(line).toJson(QJsonDocument::Compact);
}

QList<QByteArray> DraftFile::presentLines() const {
    const QByteArray bytes = platform::readFileIfThere(m_file).value_or(QByteArray());
    QList<QByteArray> lines = platform::withoutSignature(bytes).toByteArray().split('\n');
    lines.removeIf([](const QByteArray& line) { return line.trimmed().isEmpty(); });
    return lines;
}

std::vector<store::Entry> DraftFile::read() {
    std::vector<store::Entry> drafts;
    m_own.clear();
    QList<QByteArray> lines;
    try {
        lines = presentLines();
    } catch (const platform::Failure&) {
        return {}; // what is to be written next meets the same, and tells it
    }
    for (const QByteArray& line : lines) {
        try {
            drafts.push_back(store::parseEntryLine(line).entry);
            m_own += line;
        } catch (const platform::Failure&) {
            continue;
        }
    }
    return drafts;
}

} // namespace velloria::editor
