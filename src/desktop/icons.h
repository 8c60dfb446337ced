// The icons of the tool bars and lists: drawn, so that they fit every size and every palette.
#pragma once

#include <QIcon>
#include <QPalette>

namespace velloria::desktop {

enum class IconName {
    Save,
    SaveAndPreview,
    InsertUrl,
    InsertImage,
    InsertTag,
    PreviewPage,
    Refresh,
    Back,
    Forward,
    Home,
    Folder,
    Shortcut,
    Up,
    PostBlog,
    ViewBlog,
    ManageBlog,
};

/// In the palette's text colour on buttons; disabled, in its colour for that.
QIcon icon(IconName name, const QPalette& palette);

/// The program's own: an open diary with its ribbon, in colours of its own.
QIcon programIcon();

} // namespace velloria::desktop
