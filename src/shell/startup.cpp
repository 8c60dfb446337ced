#include "shell/startup.h"

#include "core/day_key.h"
#include "core/keys.h"
#include "core/path_names.h"
#include "core/settings.h"
#include "core/settings_change.h"
#include "core/stored_name.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "platform/profile_file.h"
#include "shell/users.h"
#include "site/weather.h"
#include "store/database_file.h"
#include "store/migration.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <array>
#include <cerrno>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace velloria::shell {

using namespace core;
using platform::copyFile;
using platform::existingPath;
using platform::fileExists;
using platform::makeFolder;
using platform::MessageKind;

namespace {

/// A settings file whose path the user's "diary.ini" keeps.
struct KeptPath {
    Setting setting;
    QString Session::*path;
    QLatin1StringView defaultName; ///< below the data folder
};

const std::array<KeptPath, 5> kKeptPaths{{
    {keys::kCustomizeIni, &Session::CustIniFile, "Customize/Customize.ini"_L1},
    {keys::kFrameIni, &Session::FrameIniFile, "Frame.ini"_L1},
    {keys::kRssIni, &Session::RSSIniFile, "RSS.ini"_L1},
    {keys::kHaloScanIni, &Session::HaloScanIniFile, "HaloScan.ini"_L1},
    {keys::kBlogIni, &Session::BlogIniFile, "Blog.ini"_L1},
}};

/// A settings file that is no text at all would read as if every key were missing, and so would one behind a link that
/// leads nowhere.
void refuseUnreadable(const QString& file) {
    const std::optional<QByteArray> bytes = platform::readFileIfThere(existingPath(file));
    if (bytes && bytes->contains('\0'))
        throw platform::Failure(u"設定ファイルを読み取れません。"_s, file, u"テキストではありません"_s,
                                u"バックアップから戻すか、削除してからもう一度実行してください。"_s);
}

/// Whether the settings can keep the longest path below the data folder.
bool fitsSettingsWithAllBelow(const QString& folder) {
    return fitsSetting(withSeparator(folder) + u"Customize/Customize.ini"_s);
}

} // namespace

Startup::Startup(const Run& run)
    : m_session(run.session)
    , m_desk(run.desk)
    , m_clock(run.clock) {}

StartResult Startup::run(const QString& myPath, const std::optional<Login>& login) {
    return enter(myPath, login) == StartResult::Ended ? StartResult::Ended : prepare();
}

StartResult Startup::enter(const QString& myPath, const std::optional<Login>& login) {
    m_session = Session();
    m_session.MyPath = withSeparator(myPath);
    m_session.CurrentVersion = kProgramVersion.joined();
    if (resolveUser(login) == StartResult::Ended)
        return StartResult::Ended;
    m_session.dbFileName = u"diary.mdb"_s;
    return StartResult::Ready;
}

StartResult Startup::prepare() {
    const platform::Hourglass hourglass(m_desk);
    if (checkDataFolder() == StartResult::Ended)
        return StartResult::Ended;
    checkDatabase();
    makeWorkingFolders();
    findSettingsFiles();
    m_session.FavoriteFolderPath =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/velloria/Favorites/"_s;
    m_session.Today = dayKey(m_clock.now().date());
    m_session.EnterDay = m_session.Today;
    findPlugins();
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
    refuseUnreadable(factoryFile(u"velluser.ini"_s));
    users.rememberLogin(login->id);
    if (!users.UserCheck(login->id, login->password)) {
        m_desk.message(MessageKind::Critical, u"不正なユーザもしくはパスワードです。\r\nVelloriaを終了します。"_s);
        return StartResult::Ended;
    }
    m_session.IsLogin = true;
    m_session.UserID = login->id;
    m_session.UserPath = users.folder(login->id);
    m_session.DiaryIniFile = existingPath(m_session.UserPath + u"diary.ini"_s);
    makeFolder(GetParentFolder(m_session.UserPath), 0700);
    readStoredPaths();
    return StartResult::Ready;
}

void Startup::resolveSingleUser() {
    m_session.UserPath = withSeparator(existingPath(m_session.MyPath + u"UserData"_s));
    requireStorableHome();
    makeFolder(GetParentFolder(m_session.UserPath), 0700);
    m_session.DiaryIniFile = existingPath(m_session.UserPath + u"diary.ini"_s);
    // Two programs may start here for the first time at once: the later one must not copy over what the other wrote.
    const platform::FolderLock lock(GetParentFolder(m_session.UserPath));
    const bool isFirstStart = copyFirstSettings();
    readStoredPaths();
    if (isFirstStart) {
        m_session.DataPath = m_session.FilePath = m_session.UserPath;
        m_session.FileName = u""_s;
    }
    copyFirstDiary();
}

/// Fresh settings take the user's folder as their data folder. The next start would not find it.
void Startup::requireStorableHome() const {
    const bool hasSettings = fileExists(m_session.UserPath + u"diary.ini"_s) || fileExists(factoryFile(u"diary.ini"_s));
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
    if (hasFactoryFile(u"diary.ini"_s)) {
        refuseUnreadable(factoryFile(u"diary.ini"_s));
        copyFactoryFile(u"diary.ini"_s, m_session.DiaryIniFile, kOwnerOnly);
        return false;
    }
    if (!hasFactoryFile(u"default.ini"_s))
        return false;
    refuseUnreadable(factoryFile(u"default.ini"_s));
    // In one piece: settings without a data folder would ask for one at the next start.
    const QByteArray settings =
        platform::changedProfile(platform::readFile(factoryFile(u"default.ini"_s)), keys::kDataPath.section.toString(),
                                 keys::kDataPath.name.toString(), storedName(m_session.UserPath));
    platform::replaceFile(m_session.DiaryIniFile, settings, platform::Durability::Durable, kOwnerOnly);
    return true;
}

void Startup::copyFirstDiary() const {
    const QString database = existingPath(m_session.UserPath + u"diary.mdb"_s);
    platform::refuseLostLink(database); // to a disk that is not there: no new diary in its place
    if (QFileInfo::exists(database))
        return;
    if (hasFactoryFile(u"diary.mdb"_s))
        store::copyDatabase(factoryFile(u"diary.mdb"_s), database);
    else if (hasFactoryFile(u"default.mdb"_s))
        store::copyDatabase(factoryFile(u"default.mdb"_s), database);
}

void Startup::readStoredPaths() {
    refuseUnreadable(m_session.DiaryIniFile);
    const Settings settings(m_session);
    const auto folder = [&settings](const Setting& setting) {
        const QString stored = settings.text(setting);
        return isAbsoluteFolder(stored) ? withSeparator(existingPath(stored)) : QString();
    };
    m_session.DataPath = folder(keys::kDataPath);
    m_session.FilePath = folder(keys::kSaveFilePath);
    m_session.FileName = settings.text(keys::kSaveFileName);
}

bool Startup::fitsSettings(const QString& folder) const {
    if (fitsSettingsWithAllBelow(folder))
        return true;
    m_desk.message(MessageKind::Critical, u"フォルダの名前が長すぎて設定に保存できません。\r\n"_s
                                          u"もっと短い名前のフォルダを指定して下さい。"_s);
    return false;
}

StartResult Startup::checkDataFolder() {
    if (!m_session.DataPath.isEmpty() && QFileInfo(m_session.DataPath).isDir())
        return StartResult::Ready;
    m_desk.message(MessageKind::Critical,
                   u"データ保存先フォルダが不正です。\r\n有効なデータ保存先フォルダを指定して下さい。"_s);
    std::optional<QString> folder;
    do
        folder = m_desk.choosePath({platform::PathMode::Folder, u"フォルダの選択"_s, {}, m_session.UserPath});
    while (folder && !fitsSettings(*folder));
    if (!folder || folder->isEmpty()) {
        m_desk.message(MessageKind::Information, u"Velloriaを再起動して、データ保存先フォルダを指定してください。"_s);
        return StartResult::Ended;
    }
    m_session.DataPath = withSeparator(QFileInfo(*folder).absoluteFilePath());
    Settings(m_session).writeQuietly(keys::kDataPath, m_session.DataPath);
    return StartResult::Ready;
}

void Startup::checkDatabase() {
    const QString database = existingPath(m_session.databaseFile());
    m_session.dbFileName = GetFileName(database);
    const qint16 version = store::GetDBVersion(database);
    if (version >= kDatabaseVersion)
        return;
    // Old versions had no customize files.
    const QString customize = existingPath(m_session.DataPath + u"Customize"_s);
    makeFolder(customize);
    if (!fileExists(customize + u"/Customize.ini"_s))
        copyFactoryFile(u"Customize.ini"_s, customize + u"/Customize.ini"_s);
    SettingsChange defaults;
    for (const KeptPath& file : kKeptPaths) {
        if (file.path != &Session::RSSIniFile)
            defaults.set(m_session, file.setting, m_session.DataPath + file.defaultName);
    }
    defaults.writeQuietly();
    m_desk.message(MessageKind::Plain,
                   u"diary.mdbがアップデートされています。\r\nデータベースをアップデートします。\r\n"_s
                   u"(念のために、今までの「diary.mdb」は「diarymdb.bak」というファイル名で保存します。)"_s);
    if (QFileInfo::exists(database))
        store::backUpDatabase(database, m_session.UserPath + u"diarymdb.bak"_s);
    constexpr std::array kMigrated{0, 100, 101, 110, 150, 200, 210};
    if (std::find(kMigrated.begin(), kMigrated.end(), version) != kMigrated.end())
        store::UpdateDatabase(m_session, version);
    m_desk.message(MessageKind::Plain, u"diary.mdbのアップデートは完了しました。\r\n"_s
                                       u"念のためにVelloriaを再起動してください。"_s);
    Settings(m_session).writeQuietly(keys::kDBVersion, QString::number(kDatabaseVersion));
}

void Startup::makeWorkingFolders() {
    const QString& data = m_session.DataPath;
    // Two programs may start here for the first time at once.
    const platform::FolderLock lock(data);
    for (const QString& name : {u"DiaryParts"_s, u"DiaryLog"_s, u"Customize"_s})
        makeFolder(existingPath(data + name));
    if (hasFactoryFile(u"Customize.ini"_s) && !fileExists(data + u"Customize/Customize.ini"_s))
        copyFactoryFile(u"Customize.ini"_s, existingPath(data + u"Customize"_s) + u"/Customize.ini"_s);
    // The export formats belong to the user: one that they deleted does not come back while the folder stands.
    const QString formats = existingPath(data + u"ExportFormat"_s);
    platform::refuseLostLink(formats);
    if (!QFileInfo::exists(formats))
        makeExportFormats();
    copyBlogTemplates();
    copyWeatherPictures();
}

/// The folder says that its formats have been there, so it gets its name when they are: a start that was killed or had
/// no room is made up for by the next one.
void Startup::makeExportFormats() const {
    const QString folder = m_session.DataPath + u"ExportFormat"_s;
    const QString unfinished = folder + u".new"_s;
    makeFolder(unfinished);
    for (const QString& name : {u"TEXT"_s, u"HTML"_s}) {
        if (hasFactoryFile(name + u".txt"_s))
            copyFactoryFile(name + u".txt"_s, unfinished + u'/' + name + u".ini"_s);
    }
    if (std::rename(QFile::encodeName(unfinished).constData(), QFile::encodeName(folder).constData()) != 0)
        throw platform::Failure(u"フォルダを作成できません。"_s, folder, platform::systemReason(errno),
                                u"保存先を確認してください。"_s);
}

/// The first picture stands for all of them and comes last, for the same reason. Where the program has none of it, what
/// the user has of the others stays.
void Startup::copyWeatherPictures() const {
    const QString folder = existingPath(m_session.DataPath + u"DiaryParts"_s) + u'/';
    QStringList pictures = site::weatherPictures();
    const QString first = pictures.takeFirst();
    if (fileExists(folder + first))
        return;
    const bool hasFirst = hasFactoryFile(first);
    for (const QString& name : pictures << first) {
        if (hasFactoryFile(name) && (hasFirst || !fileExists(folder + name)))
            copyFactoryFile(name, folder + name);
    }
}

void Startup::copyBlogTemplates() {
    const QString folder = existingPath(m_session.DataPath + u"BlogTemplate"_s) + u'/';
    makeFolder(GetParentFolder(folder));
    for (const QString& name : platform::listFolder(m_session.MyPath, u"*.blg"_s)) {
        const QFileInfo source(m_session.MyPath + name);
        const QFileInfo target(existingPath(folder + GetBaseName(name) + u".ini"_s));
        if (!target.exists() || source.lastModified() > target.lastModified())
            copyFile(source.filePath(), target.filePath());
    }
}

void Startup::findSettingsFiles() {
    SettingsChange defaults;
    for (const KeptPath& file : kKeptPaths) {
        QString path = Settings(m_session).text(file.setting);
        // What is there and can't be read is not missing: the default does not take its place.
        if (isAbsoluteFolder(path) && !QFileInfo(existingPath(path)).isDir())
            refuseUnreadable(path);
        if (!isAbsoluteFolder(path) || !fileExists(path)) {
            path = m_session.DataPath + file.defaultName;
            defaults.set(m_session, file.setting, path);
            refuseUnreadable(path);
        }
        m_session.*file.path = path;
    }
    defaults.writeQuietly();
}

void Startup::findPlugins() {
    m_session.IsLarkportDll = fileExists(factoryFile(u"Larkport.dll"_s));
    m_session.IsWrenportDll = fileExists(factoryFile(u"Wrenport.dll"_s));
    m_session.IsVellInfoDll = fileExists(factoryFile(u"VellInfo.dll"_s));
    m_session.IsChimerDll = fileExists(factoryFile(u"Chimer.dll"_s));
}

QString Startup::factoryFile(const QString& name) const {
    return existingPath(m_session.MyPath + name);
}

/// A link that leads nowhere is no missing file.
bool Startup::hasFactoryFile(const QString& name) const {
    platform::refuseLostLink(factoryFile(name));
    return fileExists(factoryFile(name));
}

void Startup::copyFactoryFile(const QString& name, const QString& target, unsigned mode) const {
    copyFile(factoryFile(name), target, mode);
}

} // namespace velloria::shell
