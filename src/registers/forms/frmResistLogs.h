// The register of logs: which log page stands for which month.
#pragma once

#include "desktop/tool_window.h"
#include "registers/log_registration.h"

#include <memory>

namespace Ui {
class frmResistLogs;
}

namespace velloria::desktop {
class LeaveCheck;
} // namespace velloria::desktop

namespace velloria::registers {

class frmResistLogs : public desktop::ToolWindow {
    Q_OBJECT
public:
    /// Throws platform::Failure when the diary can't be read.
    explicit frmResistLogs(desktop::Context& context);
    ~frmResistLogs() override;

    /// Reads the register anew. Throws platform::Failure.
    void fillList();

private:
    bool checkYear();
    void complain(const QString& problem, QWidget& box);
    void BtnOpenFolder_Click();
    void BtnResist_Click();
    void BtnDelete_Click();

    std::unique_ptr<Ui::frmResistLogs> ui;
    LogRegistration m_register;
    std::vector<store::LogRow> m_rows; ///< as they stand in the list
    desktop::LeaveCheck* m_yearCheck = nullptr;
};

} // namespace velloria::registers
