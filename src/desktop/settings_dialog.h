// A dialog that edits settings (`convert/forms/frmHTML2TXTSetting`).
//
//     setUp({{ui->chkUseFrame, keys::frame::kFrameOn}, ...}, {ui->Btn_OK, ui->Btn_Cancel, ui->Btn_Apply});
//     enableWhile({ui->chkResize}, [this] { return ui->chkUseFrame->isChecked(); });
#pragma once

#include "desktop/settings_table.h"
#include "desktop/tool_window.h"

class QPushButton;

namespace velloria::desktop {

/// Its rows may be of several files; an Apply replaces each of them once. Apply is enabled by a change and disabled
/// when it has written; OK applies and closes. Cancel, Esc and the frame's close ask about changes that Apply would
/// write: a dialog without an Apply button asks nothing. What the machine refuses becomes a box, and the dialog stays
/// open.
class SettingsDialog : public ToolWindow {
    Q_OBJECT
public:
    void reject() override;

protected:
    struct Buttons {
        QPushButton* ok;
        QPushButton* cancel;
        QPushButton* apply = nullptr;
    };

    using ToolWindow::ToolWindow;

    /// Fills the controls and connects everything; once, at the end of the constructor. Throws as SettingsTable::load.
    void setUp(std::vector<SettingsRow> rows, const Buttons& buttons);

    /// The controls are enabled as long as `condition` holds. It is asked now and after each change; call it after
    /// setUp.
    void enableWhile(std::vector<QWidget*> controls, std::function<bool()> condition);

    /// For changes of what is in no row.
    void somethingChanged();

    /// Fills the controls.
    virtual void load(SettingsTable& table);
    /// Writes what they show.
    virtual void write(const core::SettingsChange& change);
    /// Whether an Apply may write what the controls show; who says no has said why.
    virtual bool mayApply() { return true; }
    /// What an Apply changes beside the files, once they hold it.
    virtual void applied() {}
    /// Whether an OK may close the dialog, which has applied by now; who says no has said why.
    virtual bool mayClose() { return true; }

    /// Whether it has applied.
    bool Btn_Apply_Click();
    void Btn_OK_Click();

private:
    struct Condition {
        std::vector<QWidget*> controls;
        std::function<bool()> holds;
    };

    SettingsTable m_table;
    QPushButton* m_apply = nullptr;
    std::vector<Condition> m_conditions;
};

} // namespace velloria::desktop
