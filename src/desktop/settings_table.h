// The controls of a settings dialog as a table: one setting a row, in the order in which they are written.
#pragma once

#include "core/settings.h"
#include "core/settings_change.h"

#include <functional>
#include <utility>
#include <variant>
#include <vector>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QListWidgetItem;
class QRadioButton;

namespace velloria::desktop {

/// Option buttons of which one is on, each with the value that stands for it. Any other value leaves all of them off.
struct Choice {
    std::vector<std::pair<QRadioButton*, QString>> options;
};

/// Between the value that is stored and the one that is shown; each may be empty. What `stored` throws, a
/// platform::Failure, comes out of the table with the files as they were.
struct SettingsHooks {
    std::function<QString(const QString&)> shown;
    std::function<QString(const QString&)> stored;
};

/// For what can be ticked: on for every number but 0; `on` is what the file gets.
SettingsHooks onUnlessZero(const QString& on);

/// What a row without a control stores comes from its hook.
struct NoControl {};

/// What can be ticked shows and stores 1 or 0, and is on for 1 alone; a combo box shows and stores its text.
using SettingsControl = std::variant<QCheckBox*, QListWidgetItem*, QLineEdit*, QComboBox*, Choice, NoControl>;

struct SettingsRow {
    SettingsControl control;
    core::Setting setting;
    SettingsHooks hooks;
};

class SettingsTable {
public:
    std::vector<SettingsRow> rows;

    /// Fills the controls from the files of their settings, numbers as the program reads them. Their changes meanwhile
    /// are no changes. Throws platform::Failure, with the controls as they were, when a file can't be read or holds a
    /// number beyond 16 bits.
    void load(const core::Session& session);

    /// Fills them with what missing keys mean.
    void loadDefaults();

    /// What the controls show, in the order of the rows. A choice of which no option is on, and that
    /// has no hook to decide, leaves what the file holds.
    core::SettingsChange change(const core::Session& session) const;

    /// `changed` runs for each change that somebody makes, but not of items of a list, whose list tells of them. Call
    /// it once, after the filling of `rows`.
    void onChange(const std::function<void()>& changed);

private:
    void fill(const std::function<QString(core::SettingsFile)>& fileOf);

    bool m_isLoading = false;
};

} // namespace velloria::desktop
