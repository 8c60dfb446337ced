// The copies of the diary that a person may want back.
#pragma once

#include "core/session.h"

#include <QDateTime>
#include <QString>

#include <optional>
#include <vector>

namespace velloria::store {

/// What is known of a copy without looking at all of it.
struct DiaryCopy {
    QString name;           ///< of the file, without its folder
    QString file;           ///< full path
    QDateTime date;         ///< the day in the name of a daily copy, with its time of day; else its last change
    qint64 size = 0;        ///< bytes
    qint64 entries = 0;     ///< how many it holds
    QString lastTitle = {}; ///< of the newest day's last entry
    QString problem = {};   ///< why it can't be read, for people; "" when it can
};

/// Those in the folder "Backup", the backups and replaced diaries beside the diary, and old diaries that were
/// converted: newest first. One that can't be read is there with its problem. Nothing of any file changes.
std::vector<DiaryCopy> diaryCopies(const core::Session& session);

/// The names and dates alone, which takes no time: of each copy readCopy tells the rest.
std::vector<DiaryCopy> diaryCopyFiles(const core::Session& session);
void readCopy(DiaryCopy& copy);

/// What the diary itself would be in that list; nothing when it is missing.
std::optional<DiaryCopy> presentDiary(const core::Session& session);

} // namespace velloria::store
