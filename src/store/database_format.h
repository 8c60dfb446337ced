// The formats that a diary has had, told by the first bytes of its file.
#pragma once

#include <QString>

namespace velloria::store {

enum class DatabaseFormat {
    Sqlite,
    Jet, ///< of the older programs, version 3 or 4 of that format
    None ///< nothing that a diary ever was; an empty file too
};

/// Throws platform::Failure when the file can't be read, and for a link that leads nowhere.
DatabaseFormat formatOf(const QString& path);

/// Throws platform::Failure when the file has no format that a diary ever had.
void requireDiaryFormat(const QString& path);

/// Throws platform::Failure: the file is no diary.
[[noreturn]] void refuseForeignFile(const QString& path);

/// What to do about a file that is refused as it stands.
QString unchangedAndRestore();

} // namespace velloria::store
