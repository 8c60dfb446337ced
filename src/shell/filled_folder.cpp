#include "shell/filled_folder.h"

#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace velloria::shell {

void makeFilledFolder(const QString& folder, const FillFolder& fill) {
    const QString there = platform::existingPath(folder);
    platform::refuseLostLink(there);
    if (QFileInfo::exists(there))
        return;
    const QString unfinished = folder + u".new"_s;
    platform::makeFolder(unfinished);
    fill(unfinished);
    if (std::rename(QFile::encodeName(unfinished).constData(), QFile::encodeName(folder).constData()) != 0)
        throw platform::Failure(u"フォルダを作成できません。"_s, folder, platform::systemReason(errno),
                                u"保存先を確認してください。"_s);
}

void copyFilesOf(const QString& folder, const QString& target) {
    platform::refuseLostLink(platform::existingPath(folder));
    const QString source = platform::existingPath(folder) + u'/';
    for (const QString& name : platform::listFolder(source, u"*"_s))
        platform::copyFile(source + name, target + u'/' + name);
}

} // namespace velloria::shell
