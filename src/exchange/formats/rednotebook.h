// RedNotebook: a folder with one YAML file a month.
#pragma once

#include "exchange/formats/foreign_diary.h"

namespace velloria::exchange {

/// The month files "yyyy-mm.txt" of the folder; its copies of old months have other names and do not count. A day whose
/// parts a rule of "=" divides, each with a heading behind it, becomes several entries; a heading in front is the
/// title. Pictures that lie on this disk come along. Throws platform::Failure for a month that is not whole.
ForeignDiary readRedNotebook(const QString& folder);

} // namespace velloria::exchange
