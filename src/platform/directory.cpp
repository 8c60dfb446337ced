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

constexpr QDir::Filters kEveryName = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;

/// The name without case and as a settings file gives it back: a wave dash, for one, has come back as another
/// character.
QString comparableForm(const QString& name) {
    return fromCodePage(toCodePage(name)).toCaseFolded();
}

/// The one name in `folder` that differs from `name` in case or stored form alone; "" when there is none or more than
/// one.
QString soleMatch(const QString& folder, const QString& name) {
    const QString wanted = comparableForm(name);
    QString match;
    QDirIterator names(folder, kEveryName);
    while (names.hasNext()) {
        names.next();
        if (comparableForm(names.fileName()) != wanted)
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

FolderNames::FolderNames(QString folder)
    : m_folder(std::move(folder)) {}

QString FolderNames::path(const QString& name) const {
    const QString exact = m_folder + name;
    if (QFileInfo::exists(exact))
        return exact;
    if (!m_names) {
        m_names.emplace();
        QDirIterator names(m_folder, kEveryName);
        while (names.hasNext()) {
            names.next();
            count(names.fileName());
        }
    }
    const QString match = m_names->value(comparableForm(name));
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
    const QString form = comparableForm(name);
    const auto known = m_names->constFind(form);
    m_names->insert(form, known == m_names->cend() || *known == name ? name : QString());
}

} // namespace velloria::platform
