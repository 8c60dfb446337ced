// A diary without its texts: what the figures are made of.
#pragma once

#include "vellinfo/calendar.h"
#include "vellinfo/word_counts.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velloria::plugins::vellinfo {

/// An entry.
struct Note {
    Day day = kNoDay;
    std::uint32_t characters = 0;
    std::uint32_t pictures = 0;
    std::uint32_t genre = 0; ///< place in the names
    std::uint32_t weather = 0;
    std::uint8_t hour = kNoHour;
    bool isPrivate = false;
};

/// An entry that is named on the page.
struct NamedNote {
    std::string day; ///< as it stands in the diary
    std::int64_t number = 0;
    std::uint32_t characters = 0;
    std::string title; ///< shortened
    bool isPrivate = false;
};

/// Files that were registered, by their names; one may belong to several entries.
struct Files {
    std::uint64_t names = 0;
    std::uint64_t pictures = 0;  ///< of them, by the ending
    std::uint64_t ofEntries = 0; ///< of them, that belong to a day
};

struct Diary {
    std::vector<Note> notes; ///< by day; those without one come first
    std::vector<std::string> genres;
    std::vector<std::string> weathers;
    std::vector<NamedNote> longest;
    std::vector<NamedNote> shortest; ///< of those that have a character
    WordCounts words;
    Files files;
};

} // namespace velloria::plugins::vellinfo
