// The maker of the font tag: size, colour, face.
#pragma once

#include "desktop/tool_window.h"

#include <memory>

namespace Ui {
class frmHTMLMakeFont;
}

namespace velloria::editor {

class frmHTMLMakeFont : public desktop::ToolWindow {
    Q_OBJECT
public:
    /// Throws platform::Failure when the names of the colours can't be read.
    explicit frmHTMLMakeFont(desktop::Context& context);
    ~frmHTMLMakeFont() override;

private:
    void fillSizes();
    void Btn_OK_Click();

    std::unique_ptr<Ui::frmHTMLMakeFont> ui;
};

} // namespace velloria::editor
