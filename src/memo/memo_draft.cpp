#include "memo/memo_draft.h"

#include "core/files.h"
#include "platform/failure.h"
#include "platform/utf8.h"
#include "store/memo_line.h"
#include "store/memo_rescue.h"

#include <QFileInfo>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace velloria::memo {

namespace {

constexpr QLatin1StringView kWasLocked("WasLocked");

} // namespace

MemoDraft::MemoDraft(const core::Run& run)
    : m_run(run)
    , m_lock(QFileInfo(core::files::kMemoDraft.in(run.session)).absoluteFilePath())
    , m_lines(core::files::kMemoDraft.in(run.session)) {}

std::optional<Typed> MemoDraft::takeOver() {
    if (!m_lock.isHeld())
        return std::nullopt;
    try {
        const QList<QByteArray> lines = m_lines.all();
        for (auto line = lines.crbegin(); line != lines.crend(); ++line) {
            if (std::optional<store::Memo> draft = store::parseMemoLine(*line)) {
                m_lines.own({*line});
                m_isThere = true;
                return Typed{std::move(*draft), platform::parseJson(*line, nullptr)[kWasLocked].toBool()};
            }
        }
    } catch (const platform::Failure&) {
        // What is to be written next meets the same, and tells it.
    }
    return std::nullopt;
}

void MemoDraft::write(const Typed& typed) {
    QJsonObject line = store::toJson(typed.memo);
    line[kWasLocked] = typed.wasLocked;
    line[u"Reason"_s] = u"下書き"_s;
    line[u"Time"_s] = m_run.clock.now().toString(u"yyyy/MM/dd HH:mm:ss");
    m_lines.write({QJsonDocument(line).toJson(QJsonDocument::Compact)});
    m_isThere = true;
}

void MemoDraft::remove() {
    if (m_isThere)
        m_lines.write({});
    m_isThere = false;
}

void MemoDraft::drop(const Typed& draft) {
    store::Memo kept = draft.memo;
    kept.isLocked = kept.isLocked || draft.wasLocked;
    store::MemoRescue(m_run).keep(kept, u"下書き"_s);
    remove();
}

} // namespace velloria::memo
