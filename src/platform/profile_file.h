// A profile (INI) file: lines of [section] and key=value in code page 932.
//
// A ProfileFile is the file as it was at one moment; the free functions change the file on disk.
//
// Names compare without regard to ASCII case and without outer blanks, by the characters as the code page gives them
// back, so that a name is found again whatever the code page made of it. The first section of a name and the first key
// in it count. A line without "=", or one that starts with ";", is no key.
#pragma once

#include "platform/file_read.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace velloria::platform {

/// One profile file. A missing one has no keys.
class ProfileFile {
public:
    /// A file that may be of any kind is read as far as `mostBytes`. Throws Failure when it is there and can't be read:
    /// taken for one without keys, it would turn off what it asks for, and get the defaults in place of its values.
    explicit ProfileFile(const QString& file, qint64 mostBytes = kWholeFile);
    static ProfileFile fromBytes(const QByteArray& bytes);

    /// The value without outer blanks and one pair of equal outer quotes, cut at a NUL and at 255 bytes of the code
    /// page, never within a character or a reference; references turned back. Nothing when the key is missing.
    std::optional<QString> value(const QString& section, const QString& key) const;

    /// The value, or `defaultValue` as the platform hands it back: cut in the same way, without blanks at its end.
    QString valueOr(const QString& section, const QString& key, const QString& defaultValue) const;

    /// The number at the value's start: blanks, a sign, digits or "0x" and hexadecimal digits, wrapped to 32 bits. 0
    /// when there is none, also for an empty value; nothing when the key is missing.
    std::optional<qint32> number(const QString& section, const QString& key) const;

    /// Section names in the file's order, repeated ones too, empty ones left out: as much as a buffer of 4096 bytes
    /// holds. Like the platform's function, it cuts the last name that still finds room.
    QStringList sections() const;

private:
    ProfileFile() = default;
    void readKeys();
    std::optional<QByteArrayView> find(const QString& section, const QString& key) const;

    QByteArray m_bytes;
    QHash<QByteArray, QByteArrayView> m_values; ///< parts of m_bytes by section and key
};

/// One key's new value; `std::nullopt` removes it.
struct ProfileChange {
    QString section;
    QString key;
    std::optional<QString> value;
};

/// Changes the keys in their order, in one replacement of the file. Makes the file if needed, but not its folder;
/// velluser.ini, diary.ini and BlogUserData.ini, which hold passwords, are made for their owner alone. The file is
/// replaced by rename under the FolderLock of its folder (never call this while holding that one), so that two programs
/// lose no key, and left alone when nothing changes. Throws Failure when the machine refuses or the file is read-only.
void writeProfile(const QString& file, const std::vector<ProfileChange>& changes);

/// The same for one key.
void writeProfile(const QString& file, const QString& section, const QString& key, const std::optional<QString>& value);

/// One change on bytes: the file's content after the change. All other lines stay as they are, and the changed one up
/// to its "=". A new key goes behind the section's last key, a new section to the end. A character that the code page
/// lacks becomes a reference, a line break a blank. A value that would lose its outer quotes on reading gets one more
/// pair of double quotes; outer blanks are written, and lost on reading.
QByteArray changedProfile(const QByteArray& before, const QString& section, const QString& key,
                          const std::optional<QString>& value);

} // namespace velloria::platform
