// Plain text files named by date, one entry each.
#pragma once

#include "exchange/formats/foreign_diary.h"

namespace velloria::exchange {

/// Files ".txt", ".text" and ".md" of a folder and those below it, or one file. A name begins with the date,
/// "2024-03-09", "2024_3_9", "2024.03.09" or "20240309"; behind it may stand a number, which orders the day, or words,
/// which are the title. Without words the first line is the title when an empty one follows it.
ForeignDiary readDatedTexts(const QString& path);

} // namespace velloria::exchange
