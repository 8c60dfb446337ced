// The commands with copies of the diary: make one, put one in the diary's place.
#pragma once

#include "core/run.h"
#include "store/diary_copies.h"

#include <QString>

namespace velloria::shell {

/// "2004/05/06 07:08", as the list shows the date of a copy.
QString shownDate(const store::DiaryCopy& copy);

/// The number of its entries; "" when it can't be read.
QString shownEntries(const store::DiaryCopy& copy);

/// Its last title, or why it can't be read.
QString shownTitle(const store::DiaryCopy& copy);

/// What a question says of a copy: its name, date, number of entries and last title.
QString shownCopy(const store::DiaryCopy& copy);

inline const QString kNothingToBackUp = QStringLiteral("日記がないため、バックアップは作成しませんでした。");

/// Makes a copy now and tells. Returns its file; "" when there is nothing to copy, which is told. Throws
/// platform::Failure.
QString makeBackupCommand(const core::Run& run);

inline const QString kRestoreRefused = QStringLiteral("復元を中止しました。");

struct Restoration {
    bool isDone = false; ///< false is the user's No, which has been told
    QString kept;        ///< the file that holds the diary as it was before; "" when there was none
};

/// Puts the copy of this name in the diary's place, after a question and a copy of the present diary, and brings it up
/// to date. What it replaces stays beside it, too, unless a copy of an earlier day or one of these holds the same:
/// copies of today go as further ones are made. There is a whole diary at every moment. Throws platform::Failure, and
/// the diary is as it was: for a name that is none of the list, and for a copy that is no sound diary.
Restoration restoreBackupCommand(const core::Run& run, const QString& name);

/// The same for any file, without question and list: the diary that it replaces is kept beside it.
Restoration restoreFile(const core::Run& run, const QString& file);

} // namespace velloria::shell
