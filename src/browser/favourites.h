// The user's Internet shortcuts, one folder at a time.
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace velloria::browser {

enum class FavouriteKind { Up, Folder, Shortcut };
enum class FavouriteOrder { AsListed, Sorted };

/// One line of the box.
struct Favourite {
    FavouriteKind kind;
    QString text;
    QString tag; ///< folder that ".." leads to, "Folder", or the address of a shortcut
};

/// What `folder` holds, in lines; one that can't be read holds nothing. Off the root ".." comes first. Only a name that
/// ends in ".url", in lower case, is a shortcut; any other one counts as a folder. Hidden names are left out. Both
/// folders end without a separator.
std::vector<Favourite> listFavourites(const QString& root, const QString& folder, FavouriteOrder order);

/// The address in a shortcut file, as much as 255 bytes hold; "" when there is none.
QString ReadShortcutURL(const QString& path);

struct FolderCount {
    int files = 0;
    int folders = 0;
};
void CountFolderEntries(const QString& folder, FolderCount& result);

/// A copy of the list with the names up to `lastIndex` exchanged into order, without regard to case, width and kana
/// type.
QStringList SortNames(const QStringList& list, qsizetype lastIndex);

} // namespace velloria::browser
