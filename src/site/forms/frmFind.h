// What the diary is searched for.
#pragma once

#include "desktop/tool_window.h"

#include <memory>

namespace Ui {
class frmFind;
}

namespace velloria::site {

/// Stays open until a search succeeds; its boxes are empty the next time.
class frmFind : public desktop::ToolWindow {
    Q_OBJECT
public:
    explicit frmFind(desktop::Context& context);
    ~frmFind() override;

    /// The list of genres as the data folder has it now; what is picked stays.
    void fillGenres();

private:
    void Btn_OK_Click();

    std::unique_ptr<Ui::frmFind> ui;
};

} // namespace velloria::site
