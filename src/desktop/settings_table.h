// A settings dialog as a table: one control a row, in the order in which they are written.
#pragma once

#include "core/setting.h"

#include <functional>
#include <utility>
#include <variant>
#include <vector>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QRadioButton;

namespace velloria::desktop {

/// Option buttons of which one is on, each with the value that stands for it. Any other value leaves all of them off.
struct Choice {
    std::vector<std::pair<QRadioButton*, QString>> options;
};

/// Between the text that is stored and the one that is shown.
struct TextHooks {
    std::function<QString(const QString&)> shown;
    std::function<QString(const QString&)> stored;
};

/// A check box stores 1 or 0, and is on for 1 alone; a combo box stores its text.
using SettingsControl = std::variant<QCheckBox*, QLineEdit*, QComboBox*, Choice>;

struct SettingsRow {
    SettingsControl control;
    core::Setting setting;
    TextHooks hooks; ///< of a text; each may be empty
};

class SettingsTable {
public:
    std::vector<SettingsRow> rows;

    /// Fills the controls from the file. Their changes meanwhile are no changes.
    void load(const QString& iniFile);

    /// Writes the controls to the file, in the order of the rows and in one replacement.
    void apply(const QString& iniFile) const;

    /// `changed` runs for each change that somebody makes. Call it once, after the filling of `rows`.
    void onChange(const std::function<void()>& changed);

private:
    bool m_isLoading = false;
};

} // namespace velloria::desktop
