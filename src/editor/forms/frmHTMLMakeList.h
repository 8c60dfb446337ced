// The maker of the list tags.
#pragma once

#include "desktop/tool_window.h"

#include <memory>

namespace Ui {
class frmHTMLMakeList;
}

namespace velloria::desktop {
class LeaveCheck;
}

namespace velloria::editor {

class frmHTMLMakeList : public desktop::ToolWindow {
    Q_OBJECT
public:
    explicit frmHTMLMakeList(desktop::Context& context);
    ~frmHTMLMakeList() override;

private:
    void enableKind();
    void txtOLStart_LostFocus();
    void Btn_OK_Click();

    std::unique_ptr<Ui::frmHTMLMakeList> ui;
    desktop::LeaveCheck* m_startCheck = nullptr;
};

} // namespace velloria::editor
