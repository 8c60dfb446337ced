#include "shell/data_folder.h"

#include "core/files.h"
#include "core/path_names.h"
#include "core/stored_name.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "shell/factory_files.h"
#include "site/weather.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace velloria::shell {

using namespace core;
using platform::existingPath;
using platform::fileExists;
using platform::makeFolder;

namespace {

/// The folder says that its formats have been there, so it gets its name when they are: a start that was killed or had
/// no room is made up for by the next one.
void makeExportFormats(const Session& session) {
    const FactoryFiles factory(session);
    const QString folder = files::kExportFormats.in(session);
    const QString unfinished = folder + u".new"_s;
    makeFolder(unfinished);
    for (const QString& name : {QString(files::kFirstTextFormat.name), QString(files::kFirstHtmlFormat.name)}) {
        if (factory.has(name))
            factory.copy(name, unfinished + u'/' + GetBaseName(name) + u".ini"_s);
    }
    if (std::rename(QFile::encodeName(unfinished).constData(), QFile::encodeName(folder).constData()) != 0)
        throw platform::Failure(u"フォルダを作成できません。"_s, folder, platform::systemReason(errno),
                                u"保存先を確認してください。"_s);
}

void copyBlogTemplates(const Session& session) {
    const QString folder = existingPath(files::kBlogTemplates.in(session)) + u'/';
    makeFolder(GetParentFolder(folder));
    for (const QString& name : platform::listFolder(session.MyPath, u"*.blg"_s)) {
        const QFileInfo source(session.MyPath + name);
        const QFileInfo target(existingPath(folder + GetBaseName(name) + u".ini"_s));
        if (!target.exists() || source.lastModified() > target.lastModified())
            platform::copyFile(source.filePath(), target.filePath());
    }
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

QString firstCustomizeSet(const Session& session) {
    return existingPath(files::kCustomize.in(session)) + u'/' + files::kFirstCustomizeIni.name;
}

void makeWorkingFolders(const Session& session) {
    const FactoryFiles factory(session);
    // Two programs may begin with the folder at once.
    const platform::FolderLock lock(session.DataPath);
    for (const File& folder : {files::kParts, files::kLogs, files::kCustomize})
        makeFolder(existingPath(folder.in(session)));
    if (factory.has(files::kFirstCustomizeIni.name) && !fileExists(files::kCustomizeIni.in(session)))
        factory.copy(files::kFirstCustomizeIni.name, firstCustomizeSet(session));
    // The export formats belong to the user: one that they deleted does not come back while the folder stands.
    const QString formats = existingPath(files::kExportFormats.in(session));
    platform::refuseLostLink(formats);
    if (!QFileInfo::exists(formats))
        makeExportFormats(session);
    copyBlogTemplates(session);
    copyWeatherPictures(session);
}

} // namespace velloria::shell
