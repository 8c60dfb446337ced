// "Genre.csv" in the data folder: one genre a line, the first always "一般".
#pragma once

#include "core/session.h"
#include "store/diary_store.h"

#include <QStringList>

namespace velloria::store {

/// The genres in the file's order; a missing file is made from the diary first.
QStringList readGenres(const core::Session& session, const store::DiaryStore& store);

/// Appends the genres that the file does not hold yet, compared as the diary compares texts. "" is no genre.
void addGenres(const core::Session& session, const store::DiaryStore& store, const QStringList& genres);

/// Makes the file anew from the genres of the diary.
void MakeGenretxt(const core::Session& session, const store::DiaryStore& store);

} // namespace velloria::store
