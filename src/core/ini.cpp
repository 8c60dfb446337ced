#include "core/ini.h"

#include "core/ini_reader.h"
#include "core/settings_change.h"
#include "platform/directory.h"
#include "platform/profile_file.h"

namespace velloria::core {
namespace {

/// Of whatever file.
Setting row(const QString& section, const QString& key, const QString& whenMissing = {}) {
    return {{}, section, key, whenMissing};
}

} // namespace

void WriteIni(const QString& file, const QString& section, const QString& key, const QString& value) {
    SettingsChange change;
    change.set(file, row(section, key), value);
    change.writeQuietly();
}

void DeleteIniKey(const QString& file, const QString& section, const QString& key) {
    SettingsChange change;
    change.remove(file, row(section, key));
    change.writeQuietly();
}

QString ReadIni(const QString& file, const QString& section, const QString& key) {
    return ReadIniDef(file, section, key, QString());
}

QString ReadIniDef(const QString& file, const QString& section, const QString& key, const QString& defaultValue) {
    return IniReader(file).text(row(section, key, defaultValue));
}

qint16 ReadIniInt(const QString& file, const QString& section, const QString& key) {
    return ReadIniIntDef(file, section, key, 0);
}

qint16 ReadIniIntDef(const QString& file, const QString& section, const QString& key, qint16 defaultValue) {
    Setting number = row(section, key);
    const QString whenMissing = QString::number(defaultValue);
    number.whenMissing = whenMissing;
    number.kind = SettingKind::Number;
    return IniReader(file).number(number);
}

QStringList ReadIniSections(const QString& file) {
    return platform::ProfileFile(platform::existingPath(file)).sections();
}

QString TrimNull(const QString& text) {
    return text.left(text.indexOf(u'\0'));
}

} // namespace velloria::core
