// Settings files that a start can't do without.
#pragma once

#include <QString>

namespace velloria::core {

/// Whether the file is text, as settings are; a missing one is too. Throws platform::Failure for one that can't be read
/// and for a link that leads nowhere.
bool isSettingsText(const QString& file);

/// Throws platform::Failure as well for a file that is no text at all. It would read as if every key were missing.
void refuseUnreadableSettings(const QString& file);

} // namespace velloria::core
