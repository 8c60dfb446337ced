// What a person sees of a text with HTML in it.
#pragma once

#include "vellinfo/word_counts.h"

#include <cstdint>
#include <string_view>

namespace velloria::plugins::vellinfo {

struct Seen {
    std::uint32_t characters = 0; ///< blanks and line ends are none
    std::uint32_t pictures = 0;   ///< IMG tags

    Seen& operator+=(const Seen& other);
};

/// Counts the characters that are seen and the words they make: no tags, comments, scripts and styles, and what a
/// reference stands for in its place. A word goes on over tags that only change its look.
Seen look(std::string_view html, WordCounts& words);

} // namespace velloria::plugins::vellinfo
