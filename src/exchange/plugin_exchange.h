// Import and export in the formats of other programs that plug-ins know. In the thread of the windows: plug-ins are
// called there alone.
#pragma once

#include "core/run.h"
#include "platform/outcome.h"

#include <QStringList>

#include <functional>
#include <optional>

namespace velloria::exchange {

/// One plug-in each: "Larkport.dll" and "Wrenport.dll".
enum class PluginFormat { MovableType, Hatena };

/// What follows an import whose file was opened, however it ended.
struct PluginImportCalls {
    std::function<void()> makeGenres;                     ///< makes "Genre.csv" anew
    std::function<void(const QStringList& days)> written; ///< behind it: the days that have got entries, ascending
};

/// The command: asks for the file unless `chosen` answers that, and lets the plug-in read it, which asks the person
/// what beginImport says. Refused when the file is none (which is told), when the plug-in or the person says no, and
/// when no file is chosen, for which the plug-in is not even loaded. Throws platform::Failure for all else, and
/// `written` is called nevertheless if there are days to tell.
platform::Outcome importThroughPlugin(const core::Run& run, PluginFormat format, const std::optional<QString>& chosen,
                                      const PluginImportCalls& calls);

/// The same for an export of the whole diary. The plug-in finds no file in the place of its own; unless it ends with a
/// yes, what was there is there again. Files that the program needs are refused.
platform::Outcome exportThroughPlugin(const core::Run& run, PluginFormat format, const std::optional<QString>& chosen);

} // namespace velloria::exchange
