// The data folder: which one the settings can name, and what lies in it from the start.
#pragma once

#include "core/session.h"
#include "platform/desk.h"

namespace velloria::shell {

/// The folder that a stored name means, with its separator; "" for one that means none on this platform.
QString folderOfSetting(const QString& stored);

/// Whether the settings can keep the longest path below the folder.
bool fitsSettingsWithAllBelow(const QString& folder);

/// The same for a folder that somebody has chosen: a box tells of a name that is too long.
bool mayBeDataFolder(const QString& folder, platform::Desk& desk);

/// The folder of the customize sets, made with the program's further sets when missing; the standard set in any case.
/// Throws platform::Failure.
void makeCustomizeFolder(const core::Session& session);

/// The working folders of `DataPath`, each made only when missing, and what the program puts into them. Throws
/// platform::Failure when one of them refuses; the next call makes up for what is missing then. A blog template that
/// can't be brought there is told in a line, which is returned; "" when all is well.
QString makeWorkingFolders(const core::Session& session);

} // namespace velloria::shell
