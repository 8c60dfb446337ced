#include "browser/favourites.h"

#include "core/ini_reader.h"
#include "core/path_names.h"
#include "core/program_keys.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/text_order.h"

#include <QFileInfo>
#include <QHash>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace velloria::browser {
namespace {

QString pathIn(const QString& folder, const QString& name) {
    return folder + core::nativeSeparator() + name;
}

bool isShortcut(const QString& name) {
    return name.endsWith(u".url"_s);
}

QStringList shownNames(const QString& folder) {
    QStringList names = platform::listFolder(folder, u"*"_s, platform::Listed::FilesAndFolders);
    names.removeIf([&](const QString& name) { return QFileInfo(pathIn(folder, name)).isHidden(); });
    return names;
}

Favourite folderLine(const QString& name) {
    return {FavouriteKind::Folder, name, u"Folder"_s};
}

Favourite shortcutLine(const QString& folder, const QString& name) {
    return {FavouriteKind::Shortcut, name.chopped(4), ReadShortcutURL(pathIn(folder, name))};
}

/// The place of each name in the order; equal names share theirs. The exchange below then compares numbers: comparing
/// texts takes a thousand times as long.
QHash<QString, int> ranksOf(QStringList names) {
    const platform::TextOrder order;
    std::sort(names.begin(), names.end(),
              [&](const QString& left, const QString& right) { return order.compare(left, right) < 0; });
    QHash<QString, int> ranks;
    int rank = 0;
    for (qsizetype i = 0; i < names.size(); ++i) {
        if (i > 0 && order.compare(names[i - 1], names[i]) != 0)
            ++rank;
        ranks.insert(names[i], rank);
    }
    return ranks;
}

void appendSorted(std::vector<Favourite>& lines, const QString& folder) {
    FolderCount count;
    CountFolderEntries(folder, count);
    QStringList shortcuts;
    QStringList folders;
    shortcuts.reserve(count.files);
    folders.reserve(count.folders);
    for (const QString& name : shownNames(folder))
        (isShortcut(name) ? shortcuts : folders) += name;
    for (const QString& name : SortNames(folders, folders.size() - 1))
        lines.push_back(folderLine(name));
    for (const QString& name : SortNames(shortcuts, shortcuts.size() - 1))
        lines.push_back(shortcutLine(folder, name));
}

void appendAsListed(std::vector<Favourite>& lines, const QString& folder) {
    for (const QString& name : shownNames(folder))
        lines.push_back(isShortcut(name) ? shortcutLine(folder, name) : folderLine(name));
}

} // namespace

std::vector<Favourite> listFavourites(const QString& root, const QString& folder, FavouriteOrder order) {
    std::vector<Favourite> lines;
    // Up to the separator of this platform alone: a folder's name may hold the other one.
    if (folder != root)
        lines.push_back(
            {FavouriteKind::Up, u".."_s, folder.left(qMax(folder.lastIndexOf(core::nativeSeparator()), qsizetype(0)))});
    if (order == FavouriteOrder::Sorted)
        appendSorted(lines, folder);
    else
        appendAsListed(lines, folder);
    return lines;
}

QString ReadShortcutURL(const QString& path) {
    constexpr qint64 kMostBytes = 64 * 1024; // no shortcut is that long, whatever else bears its name
    try {
        return core::IniReader(path, kMostBytes).text(core::keys::kShortcutUrl);
    } catch (const platform::Failure&) {
        return u""_s; // one shortcut that can't be read takes no others from the list
    }
}

void CountFolderEntries(const QString& folder, FolderCount& result) {
    const auto count = [&](platform::Listed listed) {
        return int(platform::listFolder(folder, u"*"_s, listed).size());
    };
    result.files = count(platform::Listed::Files);
    result.folders = count(platform::Listed::FilesAndFolders) - result.files;
}

QStringList SortNames(const QStringList& list, qsizetype lastIndex) {
    QStringList names = list;
    const qsizetype end = std::min(lastIndex + 1, names.size());
    const QHash<QString, int> ranks = ranksOf(names.first(std::max(end, qsizetype(0))));
    std::vector<int> keys;
    for (qsizetype i = 0; i < end; ++i)
        keys.push_back(ranks.value(names[i]));
    for (qsizetype i = 0; i < end; ++i) {
        for (qsizetype later = i + 1; later < end; ++later) {
            if (keys[std::size_t(i)] <= keys[std::size_t(later)])
                continue;
            std::swap(keys[std::size_t(i)], keys[std::size_t(later)]);
            names.swapItemsAt(i, later);
        }
    }
    return names;
}

} // namespace velloria::browser
