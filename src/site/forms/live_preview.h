// The page of the site as the set makes it, in a small browser beside the dialog.
#pragma once

#include "desktop/context.h"

class QWidget;

namespace velloria::site {

class LivePreview {
public:
    /// `dialog` outlives the preview, and does not block its window.
    LivePreview(desktop::Context& context, QWidget& dialog);

    /// Shows the window. It takes no keys from the dialog.
    void show();
    /// Makes the page anew and shows it where somebody had scrolled it to. What the machine refuses is told once, until
    /// it has worked again.
    void refresh();
    /// Without a window: a page that is left from another time becomes the preview of the diary.
    static void settlePage(const core::Session& session);
    void close();

private:
    void putBeside(QWidget& window) const;
    void makePage();

    desktop::Context& m_context;
    QWidget& m_dialog;
    bool m_isRefused = false;
};

} // namespace velloria::site
