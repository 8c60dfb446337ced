#include "browser/histories.h"

#include "browser/browser_keys.h"
#include "core/text_file.h"
#include "platform/code_page.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/profile_file.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::browser {
namespace {

constexpr int kMostLines = 30;
constexpr qint64 kMostBytes =
    1024 * 1024; ///< no history has such lines: the rest of a file of another kind stays unread

const QString kAddressFile = u"URLHist.txt"_s;
const QString kWordFile = u"FindHist.txt"_s;

bool isOn(const core::Session& session, const core::Key& key) {
    const platform::ProfileFile settings(platform::existingPath(session.DiaryIniFile));
    return settings.number(key.section, key.name) == 1;
}

QStringList readHistory(const QString& path) {
    QFile file(platform::existingPath(path));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QStringList lines;
    qint64 left = kMostBytes;
    while (lines.size() < kMostLines && left > 1 && !file.atEnd()) {
        QByteArray line = file.readLine(left);
        if (line.isEmpty())
            break;
        left -= line.size();
        if (line.endsWith('\n'))
            line.chop(1);
        if (line.endsWith('\r'))
            line.chop(1);
        lines += platform::decodeReferences(platform::fromCodePage(line));
    }
    return lines;
}

void writeHistory(const QString& path, const QStringList& entries) {
    if (entries.isEmpty())
        return;
    try {
        core::writeLines(platform::existingPath(path), entries);
    } catch (const platform::Failure&) {
        // A history that can't be kept is no reason to keep a window open.
    }
}

} // namespace

QStringList Histories::addresses() const {
    return isOn(m_session, keys::kUrlHistory) ? readHistory(m_session.UserPath + kAddressFile) : QStringList();
}

QStringList Histories::words() const {
    return isOn(m_session, keys::kFindHistory) ? readHistory(m_session.UserPath + kWordFile) : QStringList();
}

void Histories::keepAddresses(const QStringList& entries) const {
    if (isOn(m_session, keys::kFindHistory))
        writeHistory(m_session.UserPath + kAddressFile, entries);
}

void Histories::keepWords(const QStringList& entries) const {
    if (isOn(m_session, keys::kUrlHistory))
        writeHistory(m_session.UserPath + kWordFile, entries);
}

} // namespace velloria::browser
