// Names of files and folders as settings and lists keep them. A few characters have no code of their own and are
// written as others (a wave dash, for one). A page can bear that; a name would lead to another folder.
#pragma once

#include <QString>

namespace velloria::core {

/// The name as it is written: a reference for each such character. What the code page lacks altogether the writer of
/// the file turns into a reference itself.
QString storedName(QString name);

/// The name that was stored so.
QString nameOfStored(QString stored);

/// What a setting gives back of a path: the part that fits, and none of the outer blanks.
QString keptOfPath(const QString& path);

/// Whether a setting gives the path back as it is: not so when it is longer than a value, or holds a line break.
bool fitsSetting(const QString& path);

} // namespace velloria::core
