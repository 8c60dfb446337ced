// The RAW export of Joplin.
#pragma once

#include "exchange/formats/foreign_diary.h"

namespace velloria::exchange {

/// The folder of such an export: each note an entry of the day on which it was made, its notebook the genre. See
/// ForeignReader.
ForeignDiary readJoplin(const QString& path);

} // namespace velloria::exchange
