// What the characters of an HTML text are to a browser.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velloria::plugins::larkport {

enum class Place : unsigned char {
    Text,         ///< blanks and line ends count as one blank
    Preformatted, ///< text within <pre>
    Tag,          ///< between "<" and ">", outside of a value
    Value,        ///< of an attribute, and the text of <textarea> and <title>: references count, tags do not
    Comment,
    Script, ///< and other elements whose text is nothing but itself
};

/// Where something would stand that were put in front of each byte, and at last behind all of them.
std::vector<Place> placesOf(std::string_view html);

/// The name of the tag that begins at `at`, in lower case; "" when none begins there, "!" for a comment. A name longer
/// than that of any element is given in part.
std::string tagAt(std::string_view html, std::size_t at);

} // namespace velloria::plugins::larkport
