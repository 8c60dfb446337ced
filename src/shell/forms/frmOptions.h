// The options: what the user has chosen for the program.
#pragma once

#include "desktop/settings_dialog.h"

#include <memory>

namespace Ui {
class frmOptions;
}

namespace velloria::shell {

/// One control a setting of the user's "diary.ini". A data folder that is there is in use from the Apply on; one that
/// is not is kept all the same, and the dialog says so and stays.
class frmOptions : public desktop::SettingsDialog {
    Q_OBJECT
public:
    /// Throws platform::Failure when the settings can't be read.
    explicit frmOptions(desktop::Context& context);
    ~frmOptions() override;

private:
    bool mayApply() override;
    void write(const core::SettingsChange& change) override;
    void applied() override;
    bool mayClose() override;

    std::vector<desktop::SettingsRow> rows() const;
    void connectButtons();
    void fitToTexts();
    QString newDataPath() const;
    bool isFolderThere() const;
    void chooseFolder();
    void chooseSound();
    void txtMakeDiaryFontSize_LostFocus();

    std::unique_ptr<Ui::frmOptions> ui;
    QString m_shownFolder;       ///< the data folder that the windows work with, good or bad when the dialog came up
    bool m_isFolderLeft = false; ///< an Apply has left that one for one that is not there
};

} // namespace velloria::shell
