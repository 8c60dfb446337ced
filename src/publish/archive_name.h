// Under which names an update's archive may be saved. Asked before anything is fetched; a No is no failure.
#pragma once

#include <QString>

namespace velloria::publish {

/// The name comes from the net. It must be that of an archive or installer, and of none that the program reads, loads
/// or starts; it leads out of no folder on any system.
bool isArchiveName(const QString& name);

} // namespace velloria::publish
