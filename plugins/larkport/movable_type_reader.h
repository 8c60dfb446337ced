// Reads the text format of Movable Type into entries of a diary.
#pragma once

#include "common/diary_file.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace velloria::plugins::larkport {

struct ReadingOptions {
    bool keepsComments = false; ///< behind the postscript
    bool keepsPings = false;
};

struct ReadDiary {
    std::vector<Entry> entries; ///< of a day in their order; lines end in CR LF
    std::string notes;          ///< what is not carried or was changed, a line each
};

/// `bytes` are a file in any of the encodings that are known. `pump` is called now and then. Throws Error, which does
/// not name the file, when there is no entry to take.
ReadDiary readMovableType(std::string_view bytes, const ReadingOptions& options, const std::function<void()>& pump);

} // namespace velloria::plugins::larkport
