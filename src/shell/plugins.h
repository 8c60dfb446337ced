// The plug-ins that the program knows: one row each.
#pragma once

#include "core/files.h"

#include <QStringList>

#include <span>

namespace velloria::shell {

struct PluginRow {
    core::File file;
    QLatin1StringView sessionName;             ///< of the member that tells whether it is there
    bool core::Session::*isThere;              ///< set by the start
    QLatin1StringView versionCommand;          ///< the row of the menu that shows its version
    std::span<const QLatin1StringView> others; ///< the rows of the menu that need it
    QLatin1StringView placeholder;             ///< the row that stands where none of those do; "" where nothing does
};

/// In the order of the session's members.
std::span<const PluginRow> plugins();

/// The rows of the menu that have nothing to do: what needs a plug-in that is not there, and the placeholders of what
/// is there.
QStringList commandsToHide(const core::Session& session);

} // namespace velloria::shell
