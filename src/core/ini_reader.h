// One settings file read once, for a routine that needs many of its settings.
#pragma once

#include "core/setting.h"
#include "platform/profile_file.h"

namespace velloria::core {

/// The file as it was when this was made, whatever file its rows are of. A missing file has no keys. A value is cut to
/// 255 bytes of its code page 932 form, never within a character; an empty one is no missing one.
class IniReader {
public:
    /// A file that may be of any kind is read as far as `mostBytes`. Throws platform::Failure when the file is there
    /// and can't be read.
    explicit IniReader(const QString& file, qint64 mostBytes = platform::kWholeFile);

    /// The value; a path as the name it stands for.
    QString text(const Setting& setting) const;
    /// The number at the value's start, 0 when there is none. Throws platform::Failure beyond -32768 to 32767.
    qint16 number(const Setting& setting) const;
    /// The same of 32 bits, and nothing when the key is missing. Never throws.
    std::optional<qint32> wideNumber(const Setting& setting) const;
    /// Whether the number is 1. Never throws.
    bool isOn(const Setting& setting) const;

private:
    QString m_file;
    platform::ProfileFile m_profile;
};

} // namespace velloria::core
