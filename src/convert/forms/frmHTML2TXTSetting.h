// The settings of the conversion of HTML that the export uses.
#pragma once

#include "convert/html_to_text_choice.h"
#include "desktop/tool_window.h"

#include <memory>

class QCheckBox;
class QRadioButton;

namespace Ui {
class frmHTML2TXTSetting;
}

namespace velloria::convert {

class frmHTML2TXTSetting : public desktop::ToolWindow {
    Q_OBJECT
public:
    /// Fills the controls from the file; one that can't be read is told, and the controls stay at their start.
    explicit frmHTML2TXTSetting(desktop::Context& context);
    ~frmHTML2TXTSetting() override;

private:
    void show(const HtmlToTextChoice& choice);
    HtmlToTextChoice choice() const;
    void Btn_OK_Click();
    QString file() const;
    std::array<QCheckBox*, 8> boxes() const; ///< by the order of textModeBoxes()
    std::array<QRadioButton*, 3> linkTypes() const;

    std::unique_ptr<Ui::frmHTML2TXTSetting> ui;
};

} // namespace velloria::convert
