#include "shell/users.h"

#include "convert/password_text.h"
#include "core/path_names.h"
#include "core/program_keys.h"
#include "core/settings.h"
#include "core/settings_change.h"
#include "core/settings_file.h"
#include "platform/directory.h"
#include "platform/file_read.h"
#include "platform/file_write.h"
#include "platform/profile_sections.h"

#include <QFileInfo>

#include <algorithm>

namespace velloria::shell {

using namespace core::keys;

namespace {

/// The section that every try to log in writes: whoever types its name must not become a user by that.
bool isOfLastLogin(const QString& section) {
    return section.compare(kPreviousUser.section, Qt::CaseInsensitive) == 0;
}

/// Whether both names find the same section.
bool areOneSection(const QString& left, const QString& right) {
    return left.toUtf8().toLower() == right.toUtf8().toLower(); // lower case of UTF-8 is that of ASCII alone
}

} // namespace

Users::Users(const QString& myPath)
    : m_myPath(myPath)
    , m_file(platform::existingPath(core::programFile(myPath, core::SettingsFile::Users))) {}

bool Users::exist() const {
    // Taken for no file, it would open the program to everybody.
    platform::refuseLostLink(m_file);
    return platform::fileExists(m_file);
}

std::vector<User> Users::all() const {
    const core::IniReader file(m_file);
    std::vector<User> users;
    for (const QString& section : sections()) {
        const QString id = file.text(core::inSection(kUserId, section));
        if (!isOfLastLogin(section) && areOneSection(id, section))
            users.push_back({id, folderOf(file, id)});
    }
    return users;
}

QStringList Users::ids() const {
    QStringList ids;
    for (const User& user : all())
        ids += user.id;
    return ids;
}

bool Users::hasAny() const {
    return !all().empty();
}

bool Users::isTaken(const QString& id) const {
    const core::IniReader file(m_file);
    const QStringList names = sections();
    return std::any_of(names.begin(), names.end(), [&](const QString& section) {
        return section.compare(id, Qt::CaseInsensitive) == 0 && !file.text(core::inSection(kUserId, section)).isEmpty();
    });
}

bool Users::add(const QString& id) const {
    constexpr unsigned kOwnerOnly = 0600;
    platform::refuseLostLink(m_file);
    const QFileInfo info(m_file);
    const QString file = info.exists() ? info.canonicalFilePath() : m_file;
    // Held over both: of two programs that make the same user the later one would take over the other's.
    const platform::FolderLock lock(QFileInfo(file).path());
    if (isTaken(id))
        return false;
    const QByteArray before = platform::readFileIfThere(file).value_or(QByteArray());
    platform::replaceFile(file, platform::changedProfile(before, id, kUserId.name.toString(), id),
                          platform::Durability::Durable, kOwnerOnly);
    return true;
}

bool Users::UserCheck(const QString& id, const QString& password) const {
    return !isOfLastLogin(id) && UserExists(id) && convert::passwordFromSetting(valueOf(kUserPass, id)) == password;
}

bool Users::UserExists(const QString& id) const {
    return valueOf(kUserId, id) == id;
}

QString Users::folder(const QString& id) const {
    return folderOf(core::IniReader(m_file), id);
}

QString Users::defaultFolder(const QString& id) const {
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

QStringList Users::sections() const {
    core::refuseUnreadableSettings(m_file);
    return platform::profileSections(m_file);
}

QString Users::folderOf(const core::IniReader& file, const QString& id) const {
    const QString stored = file.text(core::inSection(kUserPath, id));
    return core::isAbsoluteFolder(stored) ? core::withSeparator(stored) : defaultFolder(id);
}

QString Users::valueOf(const core::Setting& setting, const QString& id) const {
    return core::IniReader(m_file).text(core::inSection(setting, id));
}

} // namespace velloria::shell
