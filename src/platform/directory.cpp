#include "platform/directory.h"

#include "platform/code_page.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::platform {
namespace {

/// The order of a Windows disk: by the upper-cased names, unit by unit.
bool comesFirst(const QString& left, const QString& right) {
    const QString upperLeft = left.toUpper();
    const QString upperRight = right.toUpper();
    return upperLeft == upperRight ? left < right : upperLeft < upperRight;
}

/// The name as a settings file gives it back: a wave dash, for one, has come back as another character.
QString storedForm(const QString& name) {
    return fromCodePage(toCodePage(name));
}

/// The one name in `folder` that differs from `name` in case or stored form alone; "" when there is none or more than
/// one.
QString soleMatch(const QString& folder, const QString& name) {
    const QString wanted = storedForm(name);
    QString match;
    QDirIterator names(folder, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    while (names.hasNext()) {
        names.next();
        if (storedForm(names.fileName()).compare(wanted, Qt::CaseInsensitive) != 0)
            continue;
        if (!match.isEmpty())
            return {};
        match = names.fileName();
    }
    return match;
}

} // namespace

QStringList listFolder(const QString& folder, const QString& pattern, Listed listed) {
    QDir::Filters filters = QDir::Files | QDir::Hidden;
    if (listed == Listed::FilesAndFolders)
        filters |= QDir::Dirs | QDir::NoDotAndDotDot;
    QStringList names = QDir(folder).entryList({pattern}, filters, QDir::Unsorted);
    std::sort(names.begin(), names.end(), comesFirst);
    return names;
}

QString existingPath(const QString& path) {
    if (path.isEmpty() || QFileInfo::exists(path))
        return path;
    QString found;
    qsizetype start = 0;
    while (start < path.size()) {
        qsizetype end = path.indexOf(u'/', start);
        if (end < 0)
            end = path.size();
        const QString name = path.mid(start, end - start);
        if (!name.isEmpty() && !QFileInfo::exists(found + name)) {
            const QString match = soleMatch(found.isEmpty() ? u"."_s : found, name);
            if (match.isEmpty())
                return path;
            found += match;
        } else {
            found += name;
        }
        if (end < path.size())
            found += u'/';
        start = end + 1;
    }
    return found;
}

bool fileExists(const QString& path) {
    return !path.isEmpty() && QFileInfo(existingPath(path)).isFile();
}

} // namespace velloria::platform
