// The data of tDiary.
#pragma once

#include "exchange/formats/foreign_diary.h"

namespace velloria::exchange {

/// The data folder, or one file of a month (".td2"): each section of a day is an entry. See ForeignReader.
ForeignDiary readTDiary(const QString& path);

} // namespace velloria::exchange
