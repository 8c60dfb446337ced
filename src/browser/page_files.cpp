#include "browser/page_files.h"

#include "core/files.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::browser {
namespace {

/// The path that the engine will open; "" for an address that names another machine, or bytes that are no text.
QString pathOf(const QUrl& url) {
    if (!url.isLocalFile() || !url.host().isEmpty())
        return {};
    const QString path = url.toLocalFile();
    return path.contains(QChar::ReplacementCharacter) || path.contains(QChar::Null) ? QString() : path;
}

QString resolved(const QString& path) {
    return path.isEmpty() ? QString() : QFileInfo(path).canonicalFilePath();
}

bool isBelow(const QString& file, const QString& folder) {
    return !folder.isEmpty() && file.startsWith(folder.endsWith(u'/') ? folder : folder + u'/');
}

/// The folders of pages. Somebody may have put the pictures or the logs on another disk, with a link in their place.
QStringList pageFolders(const core::Session& session) {
    QStringList folders;
    for (const QString& root : {session.DataPath, session.FilePath}) {
        if (root.isEmpty())
            continue;
        folders += resolved(root);
        for (const core::File& folder : {core::files::kParts, core::files::kLogs, core::files::kLogParts})
            folders += resolved(folder.below(root));
    }
    return folders;
}

bool isOfPages(const core::Session& session, const QString& file) {
    const QStringList folders = pageFolders(session);
    return std::any_of(folders.begin(), folders.end(), [&](const QString& folder) { return isBelow(file, folder); });
}

bool fitsUse(const QString& path, FileUse use) {
    const QString ending = QFileInfo(path).suffix().toLower();
    switch (use) {
    case FileUse::Picture:
        return true;
    case FileUse::Style:
        return ending == u"css"_s;
    case FileUse::Script:
        return ending == u"js"_s;
    case FileUse::Frame:
        return ending == u"htm"_s || ending == u"html"_s;
    case FileUse::Other:
        break;
    }
    return false;
}

} // namespace

bool mayHaveFile(const core::Session& session, const QUrl& file, FileUse use, const QUrl& shown) {
    const QString path = pathOf(file);
    const QString page = resolved(pathOf(shown));
    if (path.isEmpty() || page.isEmpty() || !fitsUse(path, use))
        return false;
    // Nothing to read yet; another picture may be shown in its place.
    if (use == FileUse::Picture && !QFileInfo::exists(path) && !QFileInfo(path).isSymLink())
        return true;
    const QString target = resolved(path);
    if (!QFileInfo(target).isFile() || !fitsUse(target, use) || !isOfPages(session, target))
        return false;
    return use != FileUse::Frame || isBelow(target, QFileInfo(page).path());
}

} // namespace velloria::browser
