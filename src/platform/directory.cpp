#include "platform/directory.h"

#include "platform/code_page.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QSet>

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

/// Links that lead nowhere count as system files.
constexpr QDir::Filters kEveryName = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

/// The forms, without case, under which a name on disk may be asked for: its own, and the one that a settings file
/// gives back. A wave dash, for one, has come back as another character.
QSet<QString> formsOf(const QString& name) {
    return {name.toCaseFolded(), fromCodePage(toCodePage(name)).toCaseFolded()};
}

/// The one name in `folder` that differs from `name` in case alone, or has become it in a settings file; "" when there
/// is none or more than one. A name with such a character still in it is exact: another folder is not meant.
QString soleMatch(const QString& folder, const QString& name) {
    const QString wanted = name.toCaseFolded();
    QString match;
    QDirIterator names(folder, kEveryName);
    while (names.hasNext()) {
        names.next();
        if (!formsOf(names.fileName()).contains(wanted))
            continue;
        if (!match.isEmpty())
            return {};
        match = names.fileName();
    }
    return match;
}

/// Whether the name is taken, if only by a link that leads nowhere.
bool isThere(const QString& path) {
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
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
    if (path.isEmpty() || isThere(path))
        return path;
    QString found;
    qsizetype start = 0;
    while (start < path.size()) {
        qsizetype end = path.indexOf(u'/', start);
        if (end < 0)
            end = path.size();
        const QString name = path.mid(start, end - start);
        if (!name.isEmpty() && !isThere(found + name)) {
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

FolderNames::FolderNames(QString folder)
    : m_folder(std::move(folder)) {}

QString FolderNames::path(const QString& name) const {
    const QString exact = m_folder + name;
    if (isThere(exact))
        return exact;
    if (!m_names) {
        m_names.emplace();
        QDirIterator names(m_folder, kEveryName);
        while (names.hasNext()) {
            names.next();
            count(names.fileName());
        }
    }
    const QString match = m_names->value(name.toCaseFolded());
    return match.isEmpty() ? exact : m_folder + match;
}

bool FolderNames::hasFile(const QString& name) const {
    return QFileInfo(path(name)).isFile();
}

void FolderNames::add(const QString& name) {
    if (m_names)
        count(name);
}

void FolderNames::count(const QString& name) const {
    for (const QString& form : formsOf(name)) {
        const auto known = m_names->constFind(form);
        m_names->insert(form, known == m_names->cend() || *known == name ? name : QString());
    }
}

} // namespace velloria::platform
