// The choice of the customize set, with a picture of what each would look like.
#pragma once

#include "desktop/tool_window.h"

#include <memory>

namespace Ui {
class frmCustomizeSelection;
}

namespace velloria::site {

class SetPicture;

/// However it closes, the preview is made anew and shown. A set that can't be selected keeps it open.
class frmCustomizeSelection : public desktop::ToolWindow {
    Q_OBJECT
public:
    explicit frmCustomizeSelection(desktop::Context& context);
    ~frmCustomizeSelection() override;

    void done(int result) override;

private:
    void fill();
    void showChosen();
    void Btn_OK_Click();

    std::unique_ptr<Ui::frmCustomizeSelection> ui;
    SetPicture* m_picture;
};

} // namespace velloria::site
