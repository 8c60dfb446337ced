// The categories of the customize dialog: which panel each shows, and which text pieces of the set it works on.
#pragma once

#include "core/setting.h"

#include <QStringView>

#include <span>

namespace velloria::site {

enum class CustomizePanel { General, Head, Body, HeadFoot, Calender, Contents, PageMoveLink, CalenderFrame };

/// The upper and the lower text of a page.
enum class PageText { Up, Down };

struct CustomizeCategory {
    QStringView text;
    CustomizePanel panel;
    const core::Setting* up = nullptr;   ///< names the piece of a panel with texts, the upper one of two
    const core::Setting* down = nullptr; ///< the lower one
    bool isShownAtApply = false;         ///< an Apply shows what has become of the page at once

    /// None on a panel without texts.
    const core::Setting* piece(PageText which) const { return which == PageText::Down && down ? down : up; }
};

/// In the order of the list.
std::span<const CustomizeCategory> customizeCategories();

} // namespace velloria::site
