// Changes of the diary that keep what they destroy, and what belongs to each save besides.
#pragma once

#include "core/run.h"
#include "store/diary_store.h"

#include <functional>

namespace velloria::store {

/// Saves lines of JSON as entries, all of them or none; what they overwrite goes to the rescue file. Tells each day and
/// adds the genres to the list. Returns the keys under which the entries stand. Throws platform::Failure, which says so
/// when the entries are saved all the same.
std::vector<EntryKey> saveLines(const core::Run& run, std::vector<EntryLine> lines, PublishTime publishTime);

/// What the status panel says of a saved entry.
void tellSaved(platform::Desk& desk, const QString& day);

/// Runs what follows a save. Its failure says that the entries are saved: nobody is to save them twice.
void runAfterSave(const std::function<void()>& action);

/// Removes the row if it is there and renumbers its day; the row goes to the rescue file. On failure, which is thrown,
/// diary and rescue file are as they were.
void deleteEntry(const core::Run& run, const QString& day, int number);

} // namespace velloria::store
