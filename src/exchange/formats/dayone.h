// The JSON export of Day One.
#pragma once

#include "exchange/formats/foreign_diary.h"

namespace velloria::exchange {

/// A journal's file, or the unpacked folder with all of them; pictures lie in "photos" beside the file. See
/// ForeignReader.
ForeignDiary readDayOne(const QString& path);

} // namespace velloria::exchange
