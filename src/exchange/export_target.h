// What an export may write over.
#pragma once

#include "core/session.h"

namespace velloria::exchange {

/// Throws platform::Failure for a file that is there and that an export must not replace: the diary, what the program
/// needs or keeps, `formatFile` if one is read, and what is no file. A name that is free will do.
void requireExportTarget(const core::Session& session, const QString& file, const QString& formatFile = {});

} // namespace velloria::exchange
