// The menus of the main window: their names, order and captions in both languages.
//
// A row is told here and in tests/data/shell/menus.tsv. What it does stands under its name in the table of its part,
// `*/forms/*_commands.cpp`.
#pragma once

#include "core/menu_language.h"

#include <QLatin1StringView>
#include <QString>
#include <QStringView>

#include <span>

namespace velloria::shell {

/// One row of the menu tree, in order.
struct MenuRow {
    int depth;              ///< 0 in the bar, 1 in its menu, 2 in a submenu
    QLatin1StringView name; ///< object name of the command or menu
    QStringView english;    ///< "" for a separator
    QStringView japanese;   ///< the same as `english` where the caption never changes
};

/// All rows. The last menu, `mnuContentsPopUp`, is not in the bar: the panes pop it up.
std::span<const MenuRow> menuRows();

/// The caption in this language, "&" in front of its key.
QString captionOf(const MenuRow& row, core::MenuLanguage language);

} // namespace velloria::shell
