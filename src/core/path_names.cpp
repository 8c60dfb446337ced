#include "core/path_names.h"

#include <QDir>

namespace velloria::core {
namespace {

qsizetype lastSeparator(const QString& path) {
    return qMax(path.lastIndexOf(u'\\'), path.lastIndexOf(nativeSeparator()));
}

} // namespace

QString GetParentFolder(const QString& path) {
    return path.first(qMax(lastSeparator(path), qsizetype(0)));
}

QString GetFileName(const QString& path) {
    return path.sliced(lastSeparator(path) + 1);
}

QString GetFileExt(const QString& path) {
    const qsizetype dot = path.lastIndexOf(u'.');
    return dot > lastSeparator(path) ? path.sliced(dot + 1) : QString();
}

QString GetBaseName(const QString& path) {
    return path.left(path.lastIndexOf(u'.'));
}

QChar nativeSeparator() {
    return QDir::separator();
}

QString withSeparator(const QString& folder) {
    // Not the separators of the helpers above: a folder on Linux may end in "\" and still lack its "/".
    if (folder.isEmpty() || folder.endsWith(u'/') || folder.endsWith(nativeSeparator()))
        return folder;
    return folder + nativeSeparator();
}

bool isAbsoluteFolder(const QString& folder) {
    // Qt takes a name that starts with ":" for an absolute one too, that of a resource.
    return QDir::isAbsolutePath(folder) && !folder.startsWith(u':');
}

} // namespace velloria::core
