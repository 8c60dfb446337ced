#include "core/path_names.h"

#include <QDir>

#include <algorithm>

using namespace Qt::StringLiterals;

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

bool isBareName(const QString& name) {
    const bool hasControl = std::any_of(name.begin(), name.end(), [](QChar c) { return c.unicode() < u' '; });
    const char16_t first = name.isEmpty() ? u'\0' : char16_t(name[0].unicode() | 0x20);
    const bool hasDrive = first >= u'a' && first <= u'z' && name.size() > 1 && name[1] == u':';
    return !name.isEmpty() && !hasControl && !hasDrive && name != u"."_s && name != u".."_s && !name.contains(u'/') &&
           !name.contains(u'\\');
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
