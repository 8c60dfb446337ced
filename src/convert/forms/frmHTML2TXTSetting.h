// The settings of the conversion of HTML that the export uses.
#pragma once

#include "convert/html_settings.h"
#include "desktop/settings_dialog.h"

#include <memory>

namespace Ui {
class frmHTML2TXTSetting;
}

namespace velloria::convert {

class frmHTML2TXTSetting : public desktop::SettingsDialog {
    Q_OBJECT
public:
    /// Fills the controls from the file; one that can't be read is told, and the controls stay at their start. OK
    /// writes every setting: those that have no control become 0, and the link treatment takes the value of the box for
    /// line breaks, whatever is chosen.
    explicit frmHTML2TXTSetting(desktop::Context& context);
    ~frmHTML2TXTSetting() override;

private:
    /// A file that is missing, can't be read or holds a number out of range is told.
    void load(desktop::SettingsTable& table) override;
    /// A refusal is told, and stops nobody from leaving.
    void write(const core::SettingsChange& change) override;
    std::vector<desktop::SettingsRow> rows() const;
    desktop::SettingsRow row(const HtmlSetting& setting) const;

    std::unique_ptr<Ui::frmHTML2TXTSetting> ui;
};

} // namespace velloria::convert
