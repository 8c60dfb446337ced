#include "shell/users.h"

#include "convert/password_text.h"
#include "core/keys.h"
#include "core/path_names.h"
#include "core/stored_name.h"
#include "platform/directory.h"
#include "platform/file_read.h"

using namespace Qt::StringLiterals;

namespace velloria::shell {

using namespace core::keys;

Users::Users(const QString& myPath)
    : m_myPath(myPath)
    , m_file(platform::existingPath(myPath + u"velluser.ini"_s)) {}

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
    return UserExists(id) && convert::passwordFromSetting(core::ReadIniDef(m_file, id, kUserPass, u""_s)) == password;
}

bool Users::UserExists(const QString& id) const {
    return core::ReadIniDef(m_file, id, kUserId, u""_s) == id;
}

QString Users::folder(const QString& id) const {
    const QString stored = core::nameOfStored(core::ReadIniDef(m_file, id, kUserPath, u""_s));
    if (core::isAbsoluteFolder(stored))
        return core::withSeparator(stored);
    return m_myPath + id + core::nativeSeparator();
}

void Users::rememberLogin(const QString& id) const {
    core::WriteIni(m_file, kPreviousUser, id);
}

} // namespace velloria::shell
