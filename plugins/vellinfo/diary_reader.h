// Reads the diary for its figures.
#pragma once

#include "vellinfo/diary.h"

#include <string>

namespace velloria::plugins::vellinfo {

/// Whether the file is there and is a database of SQLite, whatever may be in it.
bool isDatabase(const std::string& file);

/// Reads each entry once and keeps little of it. Waits some seconds for another program; throws Error when the
/// database stays locked, is damaged or is no diary.
Diary readDiary(const std::string& file);

} // namespace velloria::plugins::vellinfo
