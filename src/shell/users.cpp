#include "shell/users.h"

#include "convert/password_text.h"
#include "core/ini.h"
#include "core/path_names.h"
#include "core/program_keys.h"
#include "core/settings.h"
#include "core/settings_change.h"
#include "platform/directory.h"
#include "platform/file_read.h"

using namespace Qt::StringLiterals;

namespace velloria::shell {

using namespace core::keys;

Users::Users(const QString& myPath)
    : m_myPath(myPath)
    , m_file(platform::existingPath(core::programFile(myPath, core::SettingsFile::Users))) {}

bool Users::exist() const {
    // Taken for no file, it would open the program to everybody.
    platform::refuseLostLink(m_file);
    return platform::fileExists(m_file);
}

bool Users::hasAny() const {
    for (const QString& section : core::ReadIniSections(m_file)) {
        if (section.compare(kPreviousUser.section, Qt::CaseInsensitive) != 0 && UserExists(section))
            return true;
    }
    return false;
}

bool Users::UserCheck(const QString& id, const QString& password) const {
    return UserExists(id) && convert::passwordFromSetting(valueOf(kUserPass, id)) == password;
}

bool Users::UserExists(const QString& id) const {
    return valueOf(kUserId, id) == id;
}

QString Users::folder(const QString& id) const {
    const QString stored = valueOf(kUserPath, id);
    if (core::isAbsoluteFolder(stored))
        return core::withSeparator(stored);
    return m_myPath + id + core::nativeSeparator();
}

QString Users::previousLogin() const {
    return core::IniReader(m_file).text(kPreviousUser);
}

void Users::rememberLogin(const QString& id) const {
    core::SettingsChange login;
    login.set(m_file, kPreviousUser, id);
    login.writeQuietly();
}

QString Users::valueOf(const core::Setting& setting, const QString& id) const {
    return core::IniReader(m_file).text(core::inSection(setting, id));
}

} // namespace velloria::shell
