// The structure of the site: division, frames, feeds, comment service, and what a post to a blog gets.
#pragma once

#include "desktop/settings_dialog.h"

#include <memory>

namespace Ui {
class frmSetting;
}

namespace velloria::site {

/// No value is checked, and nothing is generated: what was changed shows with the next page that is made.
class frmSetting : public desktop::SettingsDialog {
    Q_OBJECT
public:
    explicit frmSetting(desktop::Context& context);
    ~frmSetting() override;

private:
    std::vector<desktop::SettingsRow> rows() const;
    void connectControls();

    std::unique_ptr<Ui::frmSetting> ui;
};

} // namespace velloria::site
