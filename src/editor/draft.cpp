#include "editor/draft.h"

#include "platform/failure.h"
#include "platform/file_write.h"
#include "store/entry_line.h"

#include <QFile>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace velloria::editor {

DraftFile::DraftFile(const core::Session& session, const platform::Clock& clock)
    : m_file(session.UserPath + u"draft.json"_s)
    , m_clock(clock) {}

void DraftFile::write(const std::vector<store::Entry>& drafts) const {
    if (drafts.empty()) {
        platform::removeFile(m_file);
        return;
    }
    QByteArray lines;
    for (const store::Entry& draft : drafts) {
        QJsonObject line = store::toJson(draft);
        line[u"Reason"_s] = u"下書き"_s;
        line[u"Time"_s] = m_clock.now().toString(u"yyyy/MM/dd HH:mm:ss");
        lines += QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
    }
    platform::replaceFile(m_file, lines, platform::Durability::Durable, 0600);
}

std::vector<store::Entry> DraftFile::read() const {
    std::vector<store::Entry> drafts;
    QFile file(m_file);
    if (!file.open(QIODevice::ReadOnly))
        return drafts;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.trimmed().isEmpty())
            continue;
        try {
            drafts.push_back(store::parseEntryLine(line).entry);
        } catch (const platform::Failure&) {
            continue;
        }
    }
    return drafts;
}

} // namespace velloria::editor
