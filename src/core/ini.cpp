#include "core/ini.h"

#include "core/ini_reader.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/profile_file.h"

namespace velloria::core {
namespace {

void writeQuietly(const QString& file, const QString& section, const QString& key,
                  const std::optional<QString>& value) {
    try {
        platform::writeProfile(platform::existingPath(file), section, key, value);
    } catch (const platform::Failure&) {
        // A setting that can't be kept stops nobody: the next read gives the old value.
    }
}

} // namespace

void WriteIni(const QString& file, const QString& section, const QString& key, const QString& value) {
    writeQuietly(file, section, key, value);
}

void DeleteIniKey(const QString& file, const QString& section, const QString& key) {
    writeQuietly(file, section, key, std::nullopt);
}

QString ReadIni(const QString& file, const QString& section, const QString& key) {
    return ReadIniDef(file, section, key, QString());
}

QString ReadIniDef(const QString& file, const QString& section, const QString& key, const QString& defaultValue) {
    return platform::ProfileFile(platform::existingPath(file)).valueOr(section, key, defaultValue);
}

qint16 ReadIniInt(const QString& file, const QString& section, const QString& key) {
    return ReadIniIntDef(file, section, key, 0);
}

qint16 ReadIniIntDef(const QString& file, const QString& section, const QString& key, qint16 defaultValue) {
    return IniReader(file).number(section, key, defaultValue);
}

QStringList ReadIniSections(const QString& file) {
    return platform::ProfileFile(platform::existingPath(file)).sections();
}

QString TrimNull(const QString& text) {
    return text.left(text.indexOf(u'\0'));
}

} // namespace velloria::core
