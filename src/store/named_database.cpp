#include "store/named_database.h"

#include "core/files.h"
#include "platform/file_read.h"
#include "platform/file_write.h"
#include "store/sqlite/connection.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::store {
namespace {

/// Whether the engine would change something before it reads.
bool isUnfinished(const QString& file) {
    constexpr qsizetype kFormatAt = 18; // 2 for a file with a log beside it
    const QByteArray head = platform::readFile(file, kFormatAt + 1);
    return (head.size() > kFormatAt && head[kFormatAt] == 2) ||
           std::any_of(std::begin(kJournals), std::end(kJournals),
                       [&](QLatin1StringView ending) { return QFileInfo::exists(fileBeside(file, ending)); });
}

} // namespace

QString fileBeside(const QString& database, QLatin1StringView ending) {
    const QString end = QFileInfo(database).canonicalFilePath();
    return (end.isEmpty() ? database : end) + ending;
}

void removeJournals(const QString& database) {
    for (const QLatin1StringView ending : kJournals)
        platform::removeFile(fileBeside(database, ending));
}

void copyAsItLies(const QString& database, const QString& copy) {
    platform::copyFile(database, copy, 0600, platform::Durability::Durable);
    for (const QLatin1StringView ending : kJournals) {
        if (const QString journal = fileBeside(database, ending); QFileInfo::exists(journal))
            platform::copyFile(journal, copy + ending, 0600, platform::Durability::Durable);
    }
}

NamedDatabase::NamedDatabase(const QString& file)
    : m_file(file)
    , m_path(file) {
    if (!QFileInfo(file).isFile() || !isUnfinished(file) || sqlite::isBeingWritten(file))
        return;
    m_folder.emplace();
    if (!m_folder->isValid())
        throw platform::Failure(u"一時フォルダを作成できません。"_s, m_folder->path(), m_folder->errorString(),
                                u"空き容量を増やしてから、もう一度実行してください。"_s);
    m_path = m_folder->filePath(core::files::kDiary.name);
    copyAsItLies(file, m_path);
}

} // namespace velloria::store
