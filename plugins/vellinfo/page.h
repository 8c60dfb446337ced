// The page about the diary: one file of HTML in UTF-8 that needs no other.
#pragma once

#include "vellinfo/diary.h"

#include <string>

namespace velloria::plugins::vellinfo {

std::string makePage(const Diary& diary);

} // namespace velloria::plugins::vellinfo
