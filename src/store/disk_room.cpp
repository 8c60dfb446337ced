#include "store/disk_room.h"

#include "core/path_names.h"
#include "platform/failure.h"
#include "store/database_format.h"

#include <QFileInfo>
#include <QStorageInfo>

using namespace Qt::StringLiterals;

namespace velloria::store {
namespace {

void requireRoom(const QStorageInfo& disk, const QString& folder, qint64 bytes) {
    constexpr qint64 kMegabyte = 1'000'000;
    const qint64 available = disk.bytesAvailable();
    if (!disk.isValid() || available < 0 || available >= bytes)
        return;
    throw platform::Failure(
        u"ディスクの空き容量が足りません。"_s, folder,
        u"%1 MB必要ですが、空きは%2 MBです"_s.arg((bytes + kMegabyte - 1) / kMegabyte).arg(available / kMegabyte),
        u"日記は変更されていません。空き容量を増やしてから、もう一度実行してください。"_s);
}

} // namespace

void requireRoomForUpdate(const core::Session& session) {
    const QString diary = session.databaseFile();
    const qint64 size = QFileInfo(diary).size();
    const bool isJet = formatOf(diary) == DatabaseFormat::Jet;
    // A Japanese character has two bytes there and three in UTF-8.
    constexpr qint64 kTemplate = 1 << 18; // its tables, what an older diary lacks, and the engine's journal
    const qint64 newSize = (isJet ? size + size / 2 : size) + kTemplate;
    // "diarymdb.bak", the day's copy in "Backup", "old.mdb" and, as it came, an old file.
    const qint64 copies = isJet ? 4 : 3;
    const QStorageInfo disk(session.UserPath);
    requireRoom(disk, session.UserPath, copies * size + newSize);
    const QString end = core::GetParentFolder(QFileInfo(diary).canonicalFilePath());
    if (const QStorageInfo other(end); other != disk)
        requireRoom(other, end, newSize); // behind a link
}

} // namespace velloria::store
