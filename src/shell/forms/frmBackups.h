// The copies of the diary: makes one, puts one in the diary's place.
#pragma once

#include "desktop/tool_window.h"
#include "store/diary_copies.h"

#include <memory>
#include <vector>

namespace Ui {
class frmBackups;
}

namespace velloria::shell {

class frmBackups : public desktop::ToolWindow {
    Q_OBJECT
public:
    explicit frmBackups(desktop::Context& context);
    ~frmBackups() override;

private:
    void fillList();
    void Btn_Make_Click();
    void Btn_Restore_Click();

    std::unique_ptr<Ui::frmBackups> ui;
    std::vector<store::DiaryCopy> m_copies; ///< as they stand in the list
};

} // namespace velloria::shell
