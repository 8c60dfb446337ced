// The path helpers of the settings store. A separator is "\" everywhere and, off Windows, "/" as well.
#pragma once

#include <QString>

namespace velloria::core {

/// Text before the last separator, without it; "" when there is none.
QString GetParentFolder(const QString& path);

/// Text after the last separator.
QString GetFileName(const QString& path);

/// Text after the last ".", when that stands after the last separator; otherwise "".
QString GetFileExt(const QString& path);

/// Text before the last ".", even one in a folder's name; the whole name when there is none.
QString GetBaseName(const QString& path);

/// Whether the text names a file in the folder that it is put behind, on any disk: it is not empty and no "." or "..",
/// and holds no separator of either kind, no drive and no control character. A name that was stored, by whomever, is
/// asked this before it becomes part of a path.
bool isBareName(const QString& name);

/// The separator of this platform.
QChar nativeSeparator();

/// `folder` with a separator at its end; an empty text stays empty, for it names no folder.
QString withSeparator(const QString& folder);

/// Whether a stored folder means something on this platform: "C:\..." does not off Windows and counts as unset.
bool isAbsoluteFolder(const QString& folder);

} // namespace velloria::core
