// Whether a plug-in can be loaded without harm.
#pragma once

#include <QString>

#include <chrono>

namespace velloria::platform {

/// Lets "velloria-plugin" load the file, unless that went well before in this run of the program and the file is the
/// same since. Gives what would have become of this program, "" for nothing bad. Windows paint while it takes long.
/// Throws Failure when the trial can't be started.
QString harmOfLoading(const QString& file, std::chrono::milliseconds limit);

} // namespace velloria::platform
