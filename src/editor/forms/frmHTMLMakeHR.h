// The maker of the rule tag.
#pragma once

#include "desktop/tool_window.h"

#include <memory>

namespace Ui {
class frmHTMLMakeHR;
}

namespace velloria::editor {

class frmHTMLMakeHR : public desktop::ToolWindow {
    Q_OBJECT
public:
    /// Throws platform::Failure when the names of the colours can't be read.
    explicit frmHTMLMakeHR(desktop::Context& context);
    ~frmHTMLMakeHR() override;

private:
    void txtWidth_Change();
    void setAlignable(bool isOn);
    void Btn_OK_Click();

    std::unique_ptr<Ui::frmHTMLMakeHR> ui;
};

} // namespace velloria::editor
