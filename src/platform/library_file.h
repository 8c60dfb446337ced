// Shared libraries as files.
#pragma once

#include <QString>

namespace velloria::platform {

/// Whether the file is a library that ends before what its own head says, as a broken-off copy does: loading such a
/// one would end the program. False for every other file; on systems whose loader refuses it by itself, always.
bool isCutLibrary(const QString& file);

} // namespace velloria::platform
