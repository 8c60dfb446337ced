// The viewer of entries of the same day in other years, and of search results.
#pragma once

#include "browser/forms/web_viewer.h"

namespace velloria::browser {

/// Place and size are kept when it is unloaded.
class frmPrevDiaryViewer : public WebViewer {
    Q_OBJECT
public:
    explicit frmPrevDiaryViewer(desktop::Context& context);
    ~frmPrevDiaryViewer() override;

    /// Comes to the front with a page of entries, read anew, under this caption: in the style of the customize set, and
    /// with the dates of the entries as links to the editor.
    void showPage(const QString& caption, const QString& file);
};

} // namespace velloria::browser
