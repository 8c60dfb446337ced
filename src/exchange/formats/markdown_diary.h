// Markdown files with a head, as the makers of sites have them: one entry a file.
#pragma once

#include "exchange/formats/foreign_diary.h"

namespace velloria::exchange {

/// One such file, or all of a folder and those below it: a site, its posts, or what the export wrote. See
/// ForeignReader.
ForeignDiary readMarkdownDiary(const QString& path);

} // namespace velloria::exchange
