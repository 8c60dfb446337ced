// What a part wants of a part that stands above it and that it does not know.
#pragma once

#include <QLatin1StringView>
#include <QPoint>
#include <QRect>
#include <QStringList>

#include <functional>
#include <optional>

namespace velloria::desktop {

/// The main window sets them all before any other window is made. Each does its work, with the windows that it takes,
/// before it returns; what it throws flies to whoever asked.
struct Requests {
    // ---- of the editor

    /// Whether an entry is open that something could go into.
    std::function<bool()> isEntryOpen;
    /// What is seen of the editor, on the screen; nothing while it is hidden.
    std::function<std::optional<QRect>()> seenEditor;
    /// This entry of the diary in the editor; unsaved changes are asked about. Throws platform::Failure.
    std::function<void(const QString& day, int number)> openEntry;
    /// The image maker with this picture. Throws platform::Failure.
    std::function<void(const QString& path)> makeImage;
    /// Rows of these days were changed outside the editor: what it shows of them is read anew. Throws
    /// platform::Failure.
    std::function<void(const QStringList& days)> daysChanged;
    /// The list of genres from all entries, also in the editor's box. Throws platform::Failure.
    std::function<void()> rebuildGenres;

    // ---- of the main window

    /// The menu of the panes, at this place of the screen.
    std::function<void(const QPoint& globalPosition)> popUpContentsMenu;
    /// The captions of the menus in the language of the settings.
    std::function<void()> setMenuBarString;
    /// A row of the menus by its fixed name.
    std::function<void(QLatin1StringView name, bool isEnabled)> enableCommand;
};

} // namespace velloria::desktop
