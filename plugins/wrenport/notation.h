// The notation of the service as HTML.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velloria::plugins::wrenport {

struct NotationHtml {
    std::string contents;              ///< CR LF between the lines
    std::optional<std::string> extend; ///< what stands behind a "read on" mark
    int64_t hidden = 0;                ///< comments, which nobody saw and which are dropped
};

/// The lines of an entry, without its heading. `anchor` begins the names of its footnotes.
NotationHtml htmlOf(const std::vector<std::string_view>& lines, const std::string& anchor);

} // namespace velloria::plugins::wrenport
