// Writes a customize set to a file of its own.
#pragma once

#include "desktop/tool_window.h"
#include "exchange/customize_exchange.h"

#include <memory>

namespace Ui {
class frmExportCust;
}

namespace velloria::exchange {

/// Begins with the set that is selected and with the author of last time.
class frmExportCust : public desktop::ToolWindow {
    Q_OBJECT
public:
    explicit frmExportCust(desktop::Context& context);
    ~frmExportCust() override;

private:
    void fill();
    CustomizeAuthor author() const;
    /// Unloads the window whether or not a file was written; a failure keeps it.
    void Btn_Exec_Click();
    void keep(const CustomizeAuthor& author) const;

    std::unique_ptr<Ui::frmExportCust> ui;
};

} // namespace velloria::exchange
