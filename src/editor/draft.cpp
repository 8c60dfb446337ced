#include "editor/draft.h"

#include "core/files.h"
#include "platform/failure.h"
#include "store/entry_line.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace velloria::editor {

DraftFile::DraftFile(const core::Run& run)
    : m_lines(core::files::kDraft.in(run.session))
    , m_clock(run.clock) {}

void DraftFile::write(const std::vector<store::Entry>& drafts) {
    QList<QByteArray> written;
    for (const store::Entry& draft : drafts)
        written += lineOf(draft);
    m_lines.write(written);
}

QByteArray DraftFile::lineOf(const store::Entry& draft) const {
    QJsonObject line = store::toJson(draft);
    line[u"Reason"_s] = u"下書き"_s;
    line[u"Time"_s] = m_clock.now().toString(u"yyyy/MM/dd HH:mm:ss");
    return QJsonDocument(line).toJson(QJsonDocument::Compact);
}

std::vector<store::Entry> DraftFile::read() {
    std::vector<store::Entry> drafts;
    QList<QByteArray> lines, own;
    try {
        lines = m_lines.all();
    } catch (const platform::Failure&) {
        m_lines.own({});
        return {}; // what is to be written next meets the same, and tells it
    }
    for (const QByteArray& line : lines) {
        try {
            drafts.push_back(store::parseEntryLine(line).entry);
            own += line;
        } catch (const platform::Failure&) {
            continue;
        }
    }
    m_lines.own(own);
    return drafts;
}

} // namespace velloria::editor
