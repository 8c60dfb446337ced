// Makes the log of a month.
#pragma once

#include "desktop/tool_window.h"

#include <memory>

namespace Ui {
class frmSaveLog;
}

namespace velloria::site {

/// The two check boxes have no effect: a log is always registered and always listed for the upload.
class frmSaveLog : public desktop::ToolWindow {
    Q_OBJECT
public:
    explicit frmSaveLog(desktop::Context& context);
    ~frmSaveLog() override;

    /// Stays open while it works.
    void done(int result) override;

private:
    void btn_Save_Click();
    void makeLog();
    void setBusy(bool isBusy);

    std::unique_ptr<Ui::frmSaveLog> ui;
    bool m_isBusy = false;
};

} // namespace velloria::site
