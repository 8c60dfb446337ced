// Characters of UTF-8, as a page shows them and as words are made of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace velloria::plugins::vellinfo {

/// What a character is to a count of characters and words.
enum class Kind : std::uint8_t {
    Space,  ///< not counted, ends a word
    Joined, ///< seen as a part of the one before it: marks, variation selectors; not counted
    Kanji,
    Katakana,
    LongMark, ///< "ー": goes on with katakana, begins none
    Latin,
    InLatin, ///< digits and apostrophes: go on with a Latin word, begin none
    Other    ///< counted, ends a word
};

Kind kindOf(char32_t character);

/// The first character of `text`, which is not empty and loses it. What is no UTF-8 is U+FFFD, a byte each.
char32_t takeCharacter(std::string_view& text);

void appendCharacter(std::string& text, char32_t character);

/// Small letters for capitals; full-width Latin letters become ordinary ones.
char32_t foldedLatin(char32_t character);

/// `text` in one line of at most so many characters, with "…" where some are left out.
std::string shortened(std::string_view text, std::size_t characters);

} // namespace velloria::plugins::vellinfo
