// jrnl: a text file with all entries, or its export as JSON.
#pragma once

#include "exchange/formats/foreign_diary.h"

namespace velloria::exchange {

/// A file of either kind. In a text each line that begins with a date in brackets begins an entry, and in one of the
/// first versions, which knew no brackets, each that begins with date and time. Tags stay as words of the text. Throws
/// platform::Failure for an encrypted journal and for JSON that is not whole.
ForeignDiary readJrnl(const QString& file);

} // namespace velloria::exchange
