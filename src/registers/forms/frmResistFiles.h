// The register of other files: which file belongs to which entry of the diary.
#pragma once

#include "desktop/tool_window.h"
#include "registers/file_registration.h"

#include <memory>

namespace Ui {
class frmResistFiles;
}

namespace velloria::registers {

/// What is dropped on it fills the box of the file.
class frmResistFiles : public desktop::ToolWindow {
    Q_OBJECT
public:
    /// Throws platform::Failure when the diary can't be read.
    explicit frmResistFiles(desktop::Context& context);
    ~frmResistFiles() override;

    /// Reads the register anew. Throws platform::Failure.
    void fillList();
    /// Reads the entries to choose from anew. Throws platform::Failure.
    void fillDays();

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void BtnOpenFolder_Click();
    void BtnResist_Click();
    void BtnDelete_Click();

    std::unique_ptr<Ui::frmResistFiles> ui;
    FileRegistration m_register;
    std::vector<store::EntryKey> m_days; ///< as they stand in the choice of days
    std::vector<store::FileRow> m_rows;  ///< as they stand in the list
};

} // namespace velloria::registers
