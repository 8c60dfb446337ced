// Settings files that a start can't do without.
#pragma once

#include <QString>

namespace velloria::shell {

/// Throws platform::Failure for a file that is there and is no text at all, and for a link that leads nowhere. It would
/// read as if every key were missing.
void refuseUnreadableSettings(const QString& file);

} // namespace velloria::shell
