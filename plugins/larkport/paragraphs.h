// Texts whose line breaks are to be seen.
#pragma once

#include <string>
#include <string_view>

namespace velloria::plugins::larkport {

/// Empty lines part paragraphs, which get "<p>" and "<br />" at their line ends; one that begins or ends with the tag
/// of a block stays as it is. Lines end in LF.
std::string withParagraphs(std::string_view text);

/// Whether a text shows its paragraphs by tags already.
bool hasParagraphs(std::string_view text);

/// A comment of somebody else as text that does nothing in a page: "<br>" and "<p>" of it are line ends, all other tags
/// are shown.
std::string harmlessText(std::string_view text);

} // namespace velloria::plugins::larkport
