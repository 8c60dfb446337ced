// Comments of HTML in a typed text, which the service never showed.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velloria::plugins::wrenport {

/// The lines without their comments, which may reach over several of them. A line of nothing else goes; one without an
/// end stays, and so do those within preformatted text where no notation works.
struct ShownLines {
    explicit ShownLines(const std::vector<std::string_view>& typed);

    std::vector<std::string> lines;
    int64_t hidden = 0;
};

} // namespace velloria::plugins::wrenport
