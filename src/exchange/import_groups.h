// Entries that an import brought in, as the groups that can go again together. The two halves of one command, with the
// list of genres between them and the box; in the thread of the desk.
#pragma once

#include "core/run.h"

#include <QStringList>

#include <functional>
#include <optional>

namespace velloria::exchange {

/// Removes the entries of a group without a question and closes up the numbers of their days. The rows go to the rescue
/// file. Returns the days that lost entries, ascending; nothing when no group was named, which is told: "" marks what
/// was written by hand. On failure, which is thrown, the diary is as it was.
std::optional<QStringList> deleteImportGroup(const core::Run& run, const QString& group);

/// What follows: `makeGenres` makes "Genre.csv" anew, then a box says that it is done. A failure is thrown on and says
/// that the entries are gone.
void finishImportDeletion(platform::Desk& desk, const std::function<void()>& makeGenres);

} // namespace velloria::exchange
