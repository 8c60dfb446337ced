// Links of the notation, of the many forms that the service had.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velloria::plugins::wrenport {

/// The link that stands in brackets, given without them; nothing when it is none.
std::optional<std::string> bracketLink(std::string_view inside);

/// "[[word]]", given without the brackets.
std::string keywordLink(std::string_view word);

struct BareLink {
    std::string html;
    std::size_t length = 0; ///< of what it was made of
};

/// The link that a text begins with, in no brackets; nothing when there is none.
std::optional<BareLink> bareLink(std::string_view text);

} // namespace velloria::plugins::wrenport
