// One settings file read once, for a routine that needs many of its keys.
#pragma once

#include "platform/profile_file.h"

namespace velloria::core {

/// The file as it was when this was made. Values come as the wrappers of core/ini.h give them.
class IniReader {
public:
    /// Throws platform::Failure when the file is there and can't be read.
    explicit IniReader(QString file);

    /// "" when the key is missing.
    QString text(const QString& section, const QString& key) const;
    QString text(const QString& section, const QString& key, const QString& whenMissing) const;
    /// 0 when the key is missing, empty or no number. Throws platform::Failure beyond -32768 to 32767.
    qint16 number(const QString& section, const QString& key, qint16 whenMissing = 0) const;

private:
    QString m_file;
    platform::ProfileFile m_profile;
};

} // namespace velloria::core
