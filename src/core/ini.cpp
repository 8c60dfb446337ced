#include "core/ini.h"

#include "core/ini_reader.h"
#include "core/settings_change.h"
#include "platform/directory.h"
#include "platform/profile_file.h"

namespace velloria::core {

void WriteIni(const QString& file, const QString& section, const QString& key, const QString& value) {
    SettingsChange change;
    change.set(file, section, key, value);
    change.write();
}

void DeleteIniKey(const QString& file, const QString& section, const QString& key) {
    SettingsChange change;
    change.remove(file, section, key);
    change.write();
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
