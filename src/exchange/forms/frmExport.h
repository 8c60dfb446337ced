// The choice of what is exported, and how.
#pragma once

#include "desktop/tool_window.h"
#include "exchange/export.h"

#include <memory>

namespace Ui {
class frmExport;
}

namespace velloria::exchange {

class frmExport : public desktop::ToolWindow {
    Q_OBJECT
public:
    explicit frmExport(desktop::Context& context);
    ~frmExport() override;

    /// Stays open while it writes.
    void done(int result) override;

    /// The list of the user's formats as the data folder has them now; what is picked stays.
    void fillFormats();

private:
    void prepareControls();
    ExportSettings settings() const;
    store::Period period() const;
    void Btn_OK_Click();
    void setBusy(bool isBusy);

    std::unique_ptr<Ui::frmExport> ui;
    bool m_isBusy = false;
};

} // namespace velloria::exchange
