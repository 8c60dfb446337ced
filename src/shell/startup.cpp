#include "shell/startup.h"

#include "core/day_key.h"
#include "core/files.h"
#include "core/keys.h"
#include "core/path_names.h"
#include "core/settings.h"
#include "core/settings_change.h"
#include "core/stored_name.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "platform/profile_file.h"
#include "shell/plugins.h"
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
    File standard; ///< where it lies until it is named
};

const std::array<KeptPath, 5> kKeptPaths{{
    {keys::kCustomizeIni, &Session::CustIniFile, files::kCustomizeIni},
    {keys::kFrameIni, &Session::FrameIniFile, files::kFrameIni},
    {keys::kRssIni, &Session::RSSIniFile, files::kRssIni},
    {keys::kHaloScanIni, &Session::HaloScanIniFile, files::kHaloScanIni},
    {keys::kBlogIni, &Session::BlogIniFile, files::kBlogIni},
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
    return fitsSetting(files::kCustomizeIni.below(withSeparator(folder)));
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
    m_session.dbFileName = files::kDiary.name;
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
    refuseUnreadable(factoryFile(files::kUsers.name));
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
    copyFirstDiary();
}

/// Fresh settings take the user's folder as their data folder. The next start would not find it.
void Startup::requireStorableHome() const {
    const bool hasSettings =
        fileExists(files::kSettings.in(m_session)) || fileExists(factoryFile(files::kSettings.name));
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
    if (hasFactoryFile(files::kSettings.name)) {
        refuseUnreadable(factoryFile(files::kSettings.name));
        copyFactoryFile(files::kSettings.name, m_session.DiaryIniFile, kOwnerOnly);
        return false;
    }
    if (!hasFactoryFile(files::kFirstSettings.name))
        return false;
    refuseUnreadable(factoryFile(files::kFirstSettings.name));
    // In one piece: settings without a data folder would ask for one at the next start.
    const QByteArray settings = platform::changedProfile(
        platform::readFile(factoryFile(files::kFirstSettings.name)), keys::kDataPath.section.toString(),
        keys::kDataPath.name.toString(), storedName(m_session.UserPath));
    platform::replaceFile(m_session.DiaryIniFile, settings, platform::Durability::Durable, kOwnerOnly);
    return true;
}

void Startup::copyFirstDiary() const {
    const QString database = existingPath(files::kDiary.in(m_session));
    platform::refuseLostLink(database); // to a disk that is not there: no new diary in its place
    if (QFileInfo::exists(database))
        return;
    if (hasFactoryFile(files::kDiary.name))
        store::copyDatabase(factoryFile(files::kDiary.name), database);
    else if (hasFactoryFile(files::kFirstDiary.name))
        store::copyDatabase(factoryFile(files::kFirstDiary.name), database);
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
    writeQuietly(m_session, keys::kDataPath, m_session.DataPath);
    return StartResult::Ready;
}

void Startup::checkDatabase() {
    m_session.dbFileName = GetFileName(existingPath(m_session.databaseFile()));
    store::updateOldDiary(m_session, [this](store::UpdateStage stage) {
        if (stage == store::UpdateStage::Done) {
            m_desk.message(MessageKind::Plain, u"diary.mdbのアップデートは完了しました。\r\n"_s
                                               u"念のためにVelloriaを再起動してください。"_s);
            return;
        }
        addCustomizeFiles();
        m_desk.message(MessageKind::Plain,
                       u"diary.mdbがアップデートされています。\r\nデータベースをアップデートします。\r\n"_s
                       u"(念のために、今までの「diary.mdb」は「diarymdb.bak」というファイル名で保存します。)"_s);
    });
}

/// Old versions had none.
void Startup::addCustomizeFiles() {
    makeFolder(existingPath(files::kCustomize.in(m_session)));
    if (!fileExists(files::kCustomizeIni.in(m_session)))
        copyFactoryFile(files::kFirstCustomizeIni.name, customizeIni());
    SettingsChange defaults;
    for (const KeptPath& file : kKeptPaths) {
        if (file.path != &Session::RSSIniFile)
            defaults.set(m_session, file.setting, file.standard.in(m_session));
    }
    defaults.writeQuietly();
}

void Startup::makeWorkingFolders() {
    // Two programs may start here for the first time at once.
    const platform::FolderLock lock(m_session.DataPath);
    for (const File& folder : {files::kParts, files::kLogs, files::kCustomize})
        makeFolder(existingPath(folder.in(m_session)));
    if (hasFactoryFile(files::kFirstCustomizeIni.name) && !fileExists(files::kCustomizeIni.in(m_session)))
        copyFactoryFile(files::kFirstCustomizeIni.name, customizeIni());
    // The export formats belong to the user: one that they deleted does not come back while the folder stands.
    const QString formats = existingPath(files::kExportFormats.in(m_session));
    platform::refuseLostLink(formats);
    if (!QFileInfo::exists(formats))
        makeExportFormats();
    copyBlogTemplates();
    copyWeatherPictures();
}

/// The folder says that its formats have been there, so it gets its name when they are: a start that was killed or had
/// no room is made up for by the next one.
void Startup::makeExportFormats() const {
    const QString folder = files::kExportFormats.in(m_session);
    const QString unfinished = folder + u".new"_s;
    makeFolder(unfinished);
    for (const QString& name : {QString(files::kFirstTextFormat.name), QString(files::kFirstHtmlFormat.name)}) {
        if (hasFactoryFile(name))
            copyFactoryFile(name, unfinished + u'/' + GetBaseName(name) + u".ini"_s);
    }
    if (std::rename(QFile::encodeName(unfinished).constData(), QFile::encodeName(folder).constData()) != 0)
        throw platform::Failure(u"フォルダを作成できません。"_s, folder, platform::systemReason(errno),
                                u"保存先を確認してください。"_s);
}

/// The first picture stands for all of them and comes last, for the same reason. Where the program has none of it, what
/// the user has of the others stays.
void Startup::copyWeatherPictures() const {
    const QString folder = existingPath(files::kParts.in(m_session)) + u'/';
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
    const QString folder = existingPath(files::kBlogTemplates.in(m_session)) + u'/';
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
            path = file.standard.in(m_session);
            defaults.set(m_session, file.setting, path);
            refuseUnreadable(path);
        }
        m_session.*file.path = path;
    }
    defaults.writeQuietly();
}

/// Where the first customize set goes, its folder spelt as it is there.
QString Startup::customizeIni() const {
    return existingPath(files::kCustomize.in(m_session)) + u'/' + files::kFirstCustomizeIni.name;
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
