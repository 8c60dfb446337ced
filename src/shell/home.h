// Where the program's own folder is: `MyPath`.
#pragma once

#include <QString>

namespace velloria::shell {

/// The folder of the factory files and, in single-user mode, of the user's data, with its separator. `wanted` (or else
/// the variable VELLORIA_HOME) names it; without either it is `programFolder`, and when that can't be written to,
/// "velloria" in the user's data folder, seeded from it and refreshed with what is newer there. Throws
/// platform::Failure for a folder that does not exist or can't be written to.
QString findHome(const QString& wanted, const QString& programFolder);

/// The same for what only reads there: nothing is made, and a folder that can't be written to will do.
QString findHomeToRead(const QString& wanted, const QString& programFolder);

} // namespace velloria::shell
