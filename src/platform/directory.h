// Folders as a Windows disk shows them: names without regard to case.
#pragma once

#include <QString>
#include <QStringList>

namespace velloria::platform {

enum class Listed { Files, FilesAndFolders };

/// Names in `folder` that match `pattern` ("*.ini", "*"), by name without regard to case, subfolders among the files.
/// A folder that can't be read is empty.
QStringList listFolder(const QString& folder, const QString& pattern, Listed listed = Listed::Files);

/// `path` if it exists; else the one path that differs from it alone in case, or in a character that settings files
/// give back as another one; else `path` again. Folders brought from a Windows disk may spell the program's own names
/// in any case.
QString existingPath(const QString& path);

/// Whether existingPath leads to a file.
bool fileExists(const QString& path);

} // namespace velloria::platform
