#include "browser/histories.h"

#include "core/files.h"
#include "core/keys.h"
#include "core/settings.h"
#include "core/text_file.h"
#include "platform/code_page.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_read.h"
#include "platform/file_write.h"

using namespace Qt::StringLiterals;

namespace velloria::browser {
namespace {

constexpr int kMostLines = 30;
constexpr qint64 kMostBytes =
    1024 * 1024; ///< no history has such lines: the rest of a file of another kind stays unread

QStringList linesOf(const QByteArray& bytes) {
    QStringList lines;
    for (qsizetype at = 0; lines.size() < kMostLines && at < bytes.size();) {
        const qsizetype lineEnd = bytes.indexOf('\n', at);
        const qsizetype end = lineEnd < 0 ? bytes.size() : lineEnd;
        QByteArrayView line = QByteArrayView(bytes).sliced(at, end - at);
        if (line.endsWith('\r'))
            line.chop(1);
        lines += platform::decodeReferences(platform::fromCodePage(line));
        at = end + 1;
    }
    return lines;
}

/// Sets `isWhole` to whether nothing is there that could not be read.
QStringList readHistory(const QString& path, bool& isWhole) {
    const QString file = platform::existingPath(path);
    isWhole = true;
    try {
        return linesOf(platform::readFileIfThere(file, kMostBytes).value_or(QByteArray()));
    } catch (const platform::Failure&) {
        isWhole = false;
        return {};
    }
}

void writeHistory(const core::Session& session, const core::Setting& isKept, const core::File& history,
                  const QStringList& entries, bool wasWhole) {
    try {
        if (entries.isEmpty() || !wasWhole || !core::Settings(session).isOn(isKept))
            return;
        const QString file = platform::existingPath(history.in(session));
        platform::readFileIfThere(file, kMostBytes); // what can't be read is not replaced
        core::writeLines(file, entries);
    } catch (const platform::Failure&) {
        // A history that can't be kept is no reason to keep a window open.
    }
}

/// Wherever it lies: the boxes keep theirs beside the diary, other programs in the data folder.
platform::Outcome clear(const core::Run& run, const QString& question, const core::File& history) {
    if (!run.desk.ask(question))
        return platform::Outcome::Refused;
    platform::removeFile(platform::existingPath(history.in(run.session)));
    platform::removeFile(platform::existingPath(history.below(run.session.DataPath)));
    return platform::Outcome::Done;
}

} // namespace

QStringList Histories::addresses() {
    return core::Settings(m_session).isOn(core::keys::kUrlHistory)
               ? readHistory(core::files::kAddressHistory.in(m_session), m_hasAddresses)
               : QStringList();
}

QStringList Histories::words() {
    return core::Settings(m_session).isOn(core::keys::kFindHistory)
               ? readHistory(core::files::kWordHistory.in(m_session), m_hasWords)
               : QStringList();
}

void Histories::keepAddresses(const QStringList& entries) const {
    writeHistory(m_session, core::keys::kFindHistory, core::files::kAddressHistory, entries, m_hasAddresses);
}

void Histories::keepWords(const QStringList& entries) const {
    writeHistory(m_session, core::keys::kUrlHistory, core::files::kWordHistory, entries, m_hasWords);
}

platform::Outcome clearAddresses(const core::Run& run) {
    return clear(run, u"URL履歴を消去しますか？"_s, core::files::kAddressHistory);
}

platform::Outcome clearWords(const core::Run& run) {
    return clear(run, u"検索履歴を消去しますか？"_s, core::files::kWordHistory);
}

} // namespace velloria::browser
