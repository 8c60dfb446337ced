// "Genre.csv" in the data folder: one genre a line, the first always "一般". It is made from the diary and may go at
// any time: a missing file is no failure. What the disk or the diary refuses is thrown as platform::Failure and leaves
// the file as it was.
#pragma once

#include "core/run.h"

#include <QStringList>

#include <functional>

namespace velloria::store {

/// The genres in the file's order; a missing file is made from the diary first.
QStringList readGenres(const core::Run& run);

/// Appends the genres that the file does not hold yet, compared as the diary compares texts. "" is no genre.
void addGenres(const core::Run& run, const QStringList& genres);

/// Makes the file anew from the genres of the diary.
void MakeGenretxt(const core::Run& run);

/// The command: `makeGenres` makes the file anew, then status panel and box say that it is done.
void genreCommand(platform::Desk& desk, const std::function<void()>& makeGenres);

} // namespace velloria::store
