// Folders that come with something in them, which belongs to their owner from then on.
#pragma once

#include <QString>

#include <functional>

namespace velloria::shell {

/// Puts what belongs there into the folder, which does not bear its name yet.
using FillFolder = std::function<void(const QString& unfinished)>;

/// Makes `folder` with what `fill` puts into it. Where it is there already, nothing is done: what its owner has deleted
/// does not come back. A run that is killed or finds no room leaves no such folder, and the next one makes up for it.
/// Throws platform::Failure.
void makeFilledFolder(const QString& folder, const FillFolder& fill);

/// Copies every file of a folder, if there is such a folder. Throws platform::Failure.
void copyFilesOf(const QString& folder, const QString& target);

} // namespace velloria::shell
