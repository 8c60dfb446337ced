// Which reader a diary wants.
#pragma once

#include "store/old_diary.h"

#include <memory>

namespace velloria::store {

/// By the format of the file. Throws platform::Failure for one that is no diary.
std::unique_ptr<OldDiary> openOldDiary(const QString& file);

} // namespace velloria::store
