// Small words for texts in UTF-8.
#pragma once

#include "common/escaped.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velloria::plugins::wrenport {

/// A reference to a character by its number, "&#9835;" or "&#x266b;".
struct NumberReference {
    uint32_t character = 0;
    std::size_t length = 0; ///< of the reference, in bytes
};

/// The one that a text begins with. A number beyond all characters reads as one of them that nobody has.
std::optional<NumberReference> numberReference(std::string_view text);

/// Appends a character that is no surrogate and at most U+10FFFF.
void appendUtf8(std::string& text, uint32_t character);

bool isLetterOrDigit(char c); ///< of ASCII

/// The lines of a text without their ends; the last one is what stands behind the last LF, empty or not.
std::vector<std::string_view> linesOf(std::string_view text);

/// Lines with CR LF between them.
std::string joined(const std::vector<std::string_view>& lines);

/// A mark within a text, looked for from places that only grow: all searches together take time in proportion to it.
class Finder {
public:
    Finder(std::string_view text, std::string_view mark)
        : m_text(text)
        , m_mark(mark) {}

    /// Where the next one begins; npos without one.
    std::size_t from(std::size_t position) {
        if (!m_isKnown || m_found < position) {
            m_found = m_text.find(m_mark, position);
            m_isKnown = true;
        }
        return m_found;
    }

private:
    std::string_view m_text;
    std::string_view m_mark;
    std::size_t m_found = 0;
    bool m_isKnown = false;
};

} // namespace velloria::plugins::wrenport
