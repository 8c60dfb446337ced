// The small browser beside the customize dialog: its live preview.
#pragma once

#include "browser/forms/web_viewer.h"

namespace velloria::browser {

/// Its width is kept when it is unloaded.
class frmHTMLBrowser : public WebViewer {
    Q_OBJECT
public:
    explicit frmHTMLBrowser(desktop::Context& context);
    ~frmHTMLBrowser() override;
};

} // namespace velloria::browser
