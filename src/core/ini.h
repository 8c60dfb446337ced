// Settings by the names that somebody gives: one key at a time, read from disk at each call and written at once. What
// the program itself keeps has rows (core/setting.h) and goes through core/settings.h.
//
// A missing file or key reads as the default; a file that is there and can't be read is a platform::Failure. A write
// that the machine refuses is passed over. The order of the arguments is always file, section, key. Names compare
// without regard to ASCII case, that of the file without regard to case when the exact name is missing. A value comes
// back cut to 255 bytes of its code page 932 form, never within a character.
#pragma once

#include <QString>
#include <QStringList>

namespace velloria::core {

/// Writes the key and makes file and section if needed. A line break within `value` becomes a blank.
void WriteIni(const QString& file, const QString& section, const QString& key, const QString& value);

/// Removes the key's line; the section's header stays.
void DeleteIniKey(const QString& file, const QString& section, const QString& key);

/// The value, "" when the key is missing.
QString ReadIni(const QString& file, const QString& section, const QString& key);

/// The value; `defaultValue`, cut like one, only when the key is missing: an empty value reads as "".
QString ReadIniDef(const QString& file, const QString& section, const QString& key, const QString& defaultValue);

/// The value as a number, 0 when it is missing, empty or no number. Throws Failure beyond -32768 to 32767.
qint16 ReadIniInt(const QString& file, const QString& section, const QString& key);

/// The same with `defaultValue` for a missing key.
qint16 ReadIniIntDef(const QString& file, const QString& section, const QString& key, qint16 defaultValue);

/// All section names in the file's order, as much as 4096 characters hold; none of them empty.
QStringList ReadIniSections(const QString& file);

/// The part before the first NUL.
QString TrimNull(const QString& text);

} // namespace velloria::core
