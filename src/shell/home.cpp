#include "shell/home.h"

#include "core/files.h"
#include "core/path_names.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "shell/filled_folder.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <filesystem>

using namespace Qt::StringLiterals;

namespace velloria::shell {
namespace {

const QString kNameAFolder = u"--home か VELLORIA_HOME に、あるフォルダを指定してください。"_s;

/// Files that a newer program may replace in the user's copy of the program folder.
const QStringList kRefreshed{u"*.blg"_s,
                             u"*.gif"_s,
                             core::files::kColours.name,
                             core::files::kLogScript.name,
                             u"default.*"_s,
                             core::files::kFirstTextFormat.name,
                             core::files::kFirstHtmlFormat.name,
                             u"*.mht"_s,
                             core::files::kTitlePicture.name};
/// The same, but the program does without them: one that its owner has deleted stays away, and its menu hidden.
const QStringList kOptional{u"*.dll"_s, core::files::kMemo.name};
/// Files that belong to the user once they are there.
const QStringList kSeededOnce{core::files::kFirstCustomizeIni.name, u"HTML2TXT*.ini"_s, core::files::kEndpoints.name};

QStringList matching(const QString& folder, const QStringList& patterns) {
    QStringList names;
    for (const QString& pattern : patterns)
        names += platform::listFolder(folder, pattern);
    return names;
}

void copyFiles(const QString& from, const QString& to, const QStringList& names, bool replacesOlder) {
    for (const QString& name : names) {
        const QFileInfo source(from + name);
        const QFileInfo target(platform::existingPath(to + name));
        const bool isMissing = !target.exists();
        if (isMissing || (replacesOlder && source.lastModified() > target.lastModified()))
            platform::copyFile(source.filePath(), target.filePath(), platform::modeOf(source.filePath(), 0666));
    }
}

/// Those that have been there are listed.
void copyOptional(const QString& from, const QString& to) {
    const QString list = core::files::kSeededList.below(to);
    const QByteArray known = platform::readFileIfThere(list).value_or(QByteArray());
    QStringList seeded = QString::fromUtf8(known).split(u'\n', Qt::SkipEmptyParts);
    const qsizetype before = seeded.size();
    for (const QString& name : matching(from, kOptional)) {
        const bool isNew = !seeded.contains(name);
        if (isNew || QFileInfo::exists(platform::existingPath(to + name)))
            copyFiles(from, to, {name}, true);
        if (isNew)
            seeded += name;
    }
    if (seeded.size() > before)
        platform::replaceFile(list, seeded.join(u'\n').toUtf8() + '\n', platform::Durability::Durable);
}

/// Where the user's own copy of the program folder is.
QString ownHome() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/velloria/"_s;
}

QString seededHome(const QString& programFolder) {
    const QString home = ownHome();
    platform::makeFolder(core::GetParentFolder(home), 0700);
    copyFiles(programFolder, home, matching(programFolder, kRefreshed), true);
    copyFiles(programFolder, home, matching(programFolder, kSeededOnce), false);
    copyOptional(programFolder, home);
    const QString sets = core::files::kFirstCustomize.below(programFolder);
    if (QFileInfo(platform::existingPath(sets)).isDir())
        makeFilledFolder(core::files::kFirstCustomize.below(home),
                         [&sets](const QString& unfinished) { copyFilesOf(sets, unfinished); });
    return home;
}

struct Chosen {
    QString folder;
    bool isNamed; ///< by an option or a variable
};

/// A name of other bytes would become that of another folder, or none and so the current folder.
void refuseOtherThanUtf8(const QByteArray& name) {
    if (!name.isValidUtf8())
        throw platform::Failure(u"プログラムフォルダを使えません。"_s, QString::fromUtf8(name),
                                u"フォルダの名前がUTF-8ではありません"_s, kNameAFolder);
}

/// Of this program, in the machine's bytes.
QByteArray programFile() {
    std::error_code error;
    return QByteArray::fromStdString(std::filesystem::read_symlink("/proc/self/exe", error).native());
}

Chosen chooseHome(const QString& wanted, const QString& programFolder) {
    const QByteArray variable = wanted.isEmpty() ? qgetenv("VELLORIA_HOME") : QByteArray();
    refuseOtherThanUtf8(variable);
    const QString named = wanted.isEmpty() ? QString::fromUtf8(variable) : wanted;
    if (named.isEmpty())
        refuseOtherThanUtf8(programFile());
    const QString folder = core::withSeparator(QDir(named.isEmpty() ? programFolder : named).absolutePath());
    platform::refuseLostLink(folder.chopped(1));
    if (!QFileInfo(folder).isDir())
        throw platform::Failure(u"プログラムフォルダがありません。"_s, folder, {}, kNameAFolder);
    // Neither settings nor lists can hold such a name.
    if (folder.contains(u'\n') || folder.contains(u'\r'))
        throw platform::Failure(u"プログラムフォルダを使えません。"_s, folder, u"フォルダの名前に改行があります"_s,
                                u"何も作成していません。別の名前のフォルダを指定してください。"_s);
    return {folder, !named.isEmpty()};
}

} // namespace

QString findHome(const QString& wanted, const QString& programFolder) {
    const Chosen home = chooseHome(wanted, programFolder);
    if (QFileInfo(home.folder).isWritable())
        return home.folder;
    if (home.isNamed)
        throw platform::Failure(u"プログラムフォルダに書き込めません。"_s, home.folder, {},
                                u"書き込めるフォルダを --home に指定してください。"_s);
    return seededHome(home.folder);
}

QString findHomeToRead(const QString& wanted, const QString& programFolder) {
    const Chosen home = chooseHome(wanted, programFolder);
    const bool isOwn = !home.isNamed && !QFileInfo(home.folder).isWritable() && QFileInfo(ownHome()).isDir();
    return isOwn ? ownHome() : home.folder;
}

} // namespace velloria::shell
