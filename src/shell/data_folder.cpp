#include "shell/data_folder.h"

#include "core/files.h"
#include "core/path_names.h"
#include "core/stored_name.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "shell/factory_files.h"
#include "shell/filled_folder.h"
#include "site/weather.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::shell {

using namespace core;
using platform::existingPath;
using platform::fileExists;
using platform::makeFolder;

namespace {

/// The export formats that the program comes with.
void fillExportFormats(const Session& session, const QString& folder) {
    const FactoryFiles factory(session);
    for (const QString& name : {QString(files::kFirstTextFormat.name), QString(files::kFirstHtmlFormat.name)}) {
        if (factory.has(name))
            factory.copy(name, folder + u'/' + GetBaseName(name) + u".ini"_s);
    }
}

/// What has gone wrong with the last one that could not be brought, "" when all were: a template comes from strangers,
/// and keeps nobody from their diary.
QString copyBlogTemplates(const Session& session) {
    QString notice;
    const QString folder = existingPath(files::kBlogTemplates.in(session)) + u'/';
    makeFolder(GetParentFolder(folder));
    platform::FolderNames there(folder);
    for (const QString& name : platform::listFolder(session.MyPath, u"*.blg"_s)) {
        const QString copyName = GetBaseName(name) + u".ini"_s;
        const QFileInfo source(session.MyPath + name);
        const QFileInfo target(there.path(copyName));
        if (target.exists() && source.lastModified() <= target.lastModified())
            continue;
        try {
            platform::copyFile(source.filePath(), target.filePath());
            there.add(target.fileName());
        } catch (const platform::Failure& failure) {
            notice = failure.line();
        }
    }
    return notice;
}

/// The first picture stands for all of them and comes last, so that a start that was killed is made up for. Where the
/// program has none of it, what the user has of the others stays.
void copyWeatherPictures(const Session& session) {
    const FactoryFiles factory(session);
    const QString folder = existingPath(files::kParts.in(session)) + u'/';
    QStringList pictures = site::weatherPictures();
    const QString first = pictures.takeFirst();
    if (fileExists(folder + first))
        return;
    const bool hasFirst = factory.has(first);
    for (const QString& name : pictures << first) {
        if (factory.has(name) && (hasFirst || !fileExists(folder + name)))
            factory.copy(name, folder + name);
    }
}

/// Where the first customize set goes, its folder spelt as it is there.
QString firstCustomizeSet(const Session& session) {
    return existingPath(files::kCustomize.in(session)) + u'/' + files::kFirstCustomizeIni.name;
}

} // namespace

QString folderOfSetting(const QString& stored) {
    return isAbsoluteFolder(stored) ? withSeparator(existingPath(stored)) : QString();
}

bool fitsSettingsWithAllBelow(const QString& folder) {
    return fitsSetting(files::kCustomizeIni.below(withSeparator(folder)));
}

bool mayBeDataFolder(const QString& folder, platform::Desk& desk) {
    if (fitsSettingsWithAllBelow(folder))
        return true;
    desk.message(platform::MessageKind::Critical, u"フォルダの名前が長すぎて設定に保存できません。\r\n"_s
                                                  u"もっと短い名前のフォルダを指定して下さい。"_s);
    return false;
}

void makeCustomizeFolder(const Session& session) {
    makeFilledFolder(files::kCustomize.in(session), [&session](const QString& unfinished) {
        const QString sets = existingPath(files::kFirstCustomize.in(session)) + u'/';
        // A user may be called like the folder, or keep their site beside the program: what lies there is theirs then.
        if (!fileExists(files::kSettings.below(sets)) && !fileExists(sets + files::kFirstCustomizeIni.name))
            copyFilesOf(sets.chopped(1), unfinished);
    });
    makeFolder(existingPath(files::kCustomize.in(session))); // which tells what else may bear the name
    const FactoryFiles factory(session);
    if (factory.has(files::kFirstCustomizeIni.name) && !fileExists(files::kCustomizeIni.in(session)))
        factory.copy(files::kFirstCustomizeIni.name, firstCustomizeSet(session));
}

QString makeWorkingFolders(const Session& session) {
    // Two programs may begin with the folder at once.
    const platform::FolderLock lock(session.DataPath);
    for (const File& folder : {files::kParts, files::kLogs})
        makeFolder(existingPath(folder.in(session)));
    makeCustomizeFolder(session);
    makeFilledFolder(files::kExportFormats.in(session),
                     [&session](const QString& unfinished) { fillExportFormats(session, unfinished); });
    const QString notice = copyBlogTemplates(session);
    copyWeatherPictures(session);
    return notice;
}

} // namespace velloria::shell
