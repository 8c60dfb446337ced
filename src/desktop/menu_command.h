// What the rows of the main window's menus do.
#pragma once

#include <QKeySequence>
#include <QLatin1StringView>
#include <QList>

#include <functional>
#include <vector>

namespace velloria::desktop {

/// One row of the table that each part gives of its commands (`site/forms/site_commands.h`).
struct MenuCommand {
    QLatin1StringView name;       ///< of the menu row; "" for keys without one
    QList<QKeySequence> keys;     ///< the first ones stand behind the caption
    std::function<void()> action; ///< a failure that it throws becomes its box
};
using MenuCommands = std::vector<MenuCommand>;

} // namespace velloria::desktop
