// Reads the diary for its figures.
#pragma once

#include "common/calls.h"
#include "vellinfo/diary.h"

#include <string>

namespace velloria::plugins::vellinfo {

/// Whether the file is there and is a database of SQLite, whatever may be in it.
bool isDatabase(const std::string& file);

/// Reads each entry once and keeps little of it. Waits some seconds for another program, and lets the windows paint now
/// and then; throws Error when the database stays locked, is damaged or is no diary.
Diary readDiary(const std::string& file, const Host& host);

} // namespace velloria::plugins::vellinfo
