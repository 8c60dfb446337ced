#include "shell/startup.h"

#include "core/day_key.h"
#include "core/files.h"
#include "core/keys.h"
#include "core/path_names.h"
#include "core/settings.h"
#include "core/settings_change.h"
#include "core/settings_file.h"
#include "core/stored_name.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "platform/profile_file.h"
#include "shell/backup_offer.h"
#include "shell/data_folder.h"
#include "shell/factory_files.h"
#include "shell/plugins.h"
#include "shell/settings_files.h"
#include "shell/users.h"
#include "store/database_file.h"
#include "store/diary_backups.h"

#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace velloria::shell {

using namespace core;
using platform::existingPath;
using platform::fileExists;
using platform::makeFolder;
using platform::MessageKind;

Startup::Startup(const Run& run)
    : m_run(run)
    , m_session(run.session)
    , m_desk(run.desk) {}

StartResult Startup::run(const QString& myPath, const std::optional<Login>& login) {
    return enter(myPath, login) == StartResult::Ended ? StartResult::Ended : prepare();
}

StartResult Startup::enter(const QString& myPath, const std::optional<Login>& login) {
    m_session = Session();
    m_session.MyPath = withSeparator(myPath);
    m_session.CurrentVersion = kProgramVersion.joined();
    m_session.dbFileName = files::kDiary.name;
    return resolveUser(login);
}

StartResult Startup::prepare() {
    const Offer offer = offerCopy(m_run);
    m_notice = offer.reason;
    if (offer.result == StartResult::Ended)
        return StartResult::Ended;
    if (!m_notice.isEmpty())
        m_desk.notice(m_notice);
    const platform::Hourglass hourglass(m_desk);
    beginEmptyDiary();
    if (checkDataFolder() == StartResult::Ended)
        return StartResult::Ended;
    checkDatabase();
    tell(makeWorkingFolders(m_session));
    findSettingsFiles(m_session);
    m_session.FavoriteFolderPath =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/velloria/Favorites/"_s;
    m_session.Today = dayKey(m_run.clock.now().date());
    m_session.EnterDay = m_session.Today;
    for (const PluginRow& plugin : plugins())
        m_session.*plugin.isThere = fileExists(plugin.file.in(m_session));
    return StartResult::Ready;
}

StartResult Startup::resolveUser(const std::optional<Login>& login) {
    const Users users(m_session.MyPath);
    if (!users.exist()) {
        resolveSingleUser();
        return StartResult::Ready;
    }
    if (!login)
        return StartResult::Ended;
    refuseUnreadableSettings(factory().path(files::kUsers.name));
    users.rememberLogin(login->id);
    if (!users.UserCheck(login->id, login->password)) {
        m_desk.message(MessageKind::Critical, u"不正なユーザもしくはパスワードです。\r\nVelloriaを終了します。"_s);
        return StartResult::Ended;
    }
    m_session.IsLogin = true;
    m_session.UserID = login->id;
    m_session.UserPath = users.folder(login->id);
    m_session.DiaryIniFile = existingPath(files::kSettings.in(m_session));
    makeFolder(GetParentFolder(m_session.UserPath), 0700);
    readStoredPaths();
    return StartResult::Ready;
}

void Startup::resolveSingleUser() {
    m_session.UserPath = withSeparator(existingPath(files::kUserData.in(m_session)));
    requireStorableHome();
    makeFolder(GetParentFolder(m_session.UserPath), 0700);
    m_session.DiaryIniFile = existingPath(files::kSettings.in(m_session));
    // Two programs may start here for the first time at once: the later one must not copy over what the other wrote.
    const platform::FolderLock lock(GetParentFolder(m_session.UserPath));
    const bool isFirstStart = copyFirstSettings();
    readStoredPaths();
    if (isFirstStart) {
        m_session.DataPath = m_session.FilePath = m_session.UserPath;
        m_session.FileName = u""_s;
    }
    // Whoever lost theirs is asked first what is to become of that.
    if (!isDiaryLost(m_session))
        copyFirstDiary();
}

/// Fresh settings take the user's folder as their data folder. The next start would not find it.
void Startup::requireStorableHome() const {
    const bool hasSettings =
        fileExists(files::kSettings.in(m_session)) || fileExists(factory().path(files::kSettings.name));
    if (hasSettings || fitsSettingsWithAllBelow(m_session.UserPath))
        return;
    throw platform::Failure(
        u"フォルダの名前を設定に保存できません。"_s, m_session.UserPath,
        u"名前が長すぎるか、設定に書けない文字があります"_s,
        u"何も作成していません。もっと短い名前のフォルダに移してから、もう一度実行してください。"_s);
}

/// Whether the settings are fresh ones, from "default.ini"; their data folder is the user's.
bool Startup::copyFirstSettings() const {
    constexpr unsigned kOwnerOnly = 0600; // the settings hold passwords
    if (fileExists(m_session.DiaryIniFile))
        return false;
    if (factory().has(files::kSettings.name)) {
        refuseUnreadableSettings(factory().path(files::kSettings.name));
        factory().copy(files::kSettings.name, m_session.DiaryIniFile, kOwnerOnly);
        return false;
    }
    if (!factory().has(files::kFirstSettings.name))
        return false;
    refuseUnreadableSettings(factory().path(files::kFirstSettings.name));
    // In one piece: settings without a data folder would ask for one at the next start.
    const QByteArray settings = platform::changedProfile(
        platform::readFile(factory().path(files::kFirstSettings.name)), keys::kDataPath.section.toString(),
        keys::kDataPath.name.toString(), storedName(m_session.UserPath));
    platform::replaceFile(m_session.DiaryIniFile, settings, platform::Durability::Durable, kOwnerOnly);
    return true;
}

void Startup::copyFirstDiary() const {
    const QString database = existingPath(files::kDiary.in(m_session));
    platform::refuseLostLink(database); // to a disk that is not there: no new diary in its place
    if (QFileInfo::exists(database))
        return;
    if (factory().has(files::kDiary.name))
        store::copyDatabase(factory().path(files::kDiary.name), database);
    else if (factory().has(files::kFirstDiary.name))
        store::copyDatabase(factory().path(files::kFirstDiary.name), database);
}

/// The word of somebody who lost theirs and wants none of the copies.
void Startup::beginEmptyDiary() const {
    if (m_session.IsLogin || fileExists(m_session.databaseFile()))
        return;
    const platform::FolderLock lock(GetParentFolder(m_session.UserPath));
    copyFirstDiary();
}

void Startup::readStoredPaths() {
    refuseUnreadableSettings(m_session.DiaryIniFile);
    const Settings settings(m_session);
    m_session.DataPath = folderOfSetting(settings.text(keys::kDataPath));
    m_session.FilePath = folderOfSetting(settings.text(keys::kSaveFilePath));
    m_session.FileName = settings.text(keys::kSaveFileName);
}

StartResult Startup::checkDataFolder() {
    if (!m_session.DataPath.isEmpty() && QFileInfo(m_session.DataPath).isDir())
        return StartResult::Ready;
    m_desk.message(MessageKind::Critical,
                   u"データ保存先フォルダが不正です。\r\n有効なデータ保存先フォルダを指定して下さい。"_s);
    std::optional<QString> folder;
    do
        folder = m_desk.choosePath({platform::PathMode::Folder, u"フォルダの選択"_s, {}, m_session.UserPath});
    while (folder && !mayBeDataFolder(*folder, m_desk));
    if (!folder || folder->isEmpty()) {
        m_desk.message(MessageKind::Information, u"Velloriaを再起動して、データ保存先フォルダを指定してください。"_s);
        return StartResult::Ended;
    }
    m_session.DataPath = withSeparator(QFileInfo(*folder).absoluteFilePath());
    writeQuietly(m_session, keys::kDataPath, m_session.DataPath);
    return StartResult::Ready;
}

void Startup::checkDatabase() {
    m_session.dbFileName = GetFileName(existingPath(m_session.databaseFile()));
    bringDiaryUpToDate(m_run);
    backUpForToday();
}

/// Behind the update, which makes a copy of its own before it begins: a diary that it made is the first one of which
/// there can be a copy here. Nobody is kept from their diary by it.
void Startup::backUpForToday() {
    try {
        store::makeBackupOfDay(m_run);
    } catch (const platform::Failure& failure) {
        tell(failure.line());
    }
}

/// A notice, unless it is empty, which is kept for windows that are not there yet.
void Startup::tell(const QString& notice) {
    if (notice.isEmpty())
        return;
    m_notice += (m_notice.isEmpty() ? QString() : u" "_s) + notice;
    m_desk.notice(notice);
}

} // namespace velloria::shell
