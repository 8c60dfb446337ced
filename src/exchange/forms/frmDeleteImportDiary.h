// Takes an import out of the diary again.
#pragma once

#include "desktop/tool_window.h"

#include <memory>

namespace Ui {
class frmDeleteImportDiary;
}

namespace velloria::exchange {

class frmDeleteImportDiary : public desktop::ToolWindow {
    Q_OBJECT
public:
    /// Throws platform::Failure when the diary can't be read.
    explicit frmDeleteImportDiary(desktop::Context& context);
    ~frmDeleteImportDiary() override;

private:
    void Btn_OK_Click();

    std::unique_ptr<Ui::frmDeleteImportDiary> ui;
};

} // namespace velloria::exchange
