// What is counted of a diary.
#pragma once

#include "vellinfo/diary.h"

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace velloria::plugins::vellinfo {

/// Of any entries.
struct Sum {
    std::uint64_t entries = 0;
    std::uint64_t characters = 0;
    std::uint64_t pictures = 0;
    std::uint64_t days = 0; ///< with an entry; 0 where days are not counted
    std::uint64_t privateEntries = 0;
    std::uint64_t privateCharacters = 0;

    void add(const Note& note);
    Sum& operator+=(const Sum& other);
};

/// By day, month (year * 12 + month - 1) or year; what has no entry has no place.
using Sums = std::map<std::int32_t, Sum>;

/// An unbroken row of days.
struct Run {
    Day first = kNoDay;
    Day last = kNoDay;

    int days() const { return last - first + 1; }
};

/// One name of a genre or a weather.
struct Share {
    std::string name;
    Sum sum;
};

/// A share of the entries in the course of time: the first names, and all others as one.
struct Course {
    bool isByMonth = false;
    std::vector<std::string> names; ///< the last one is that of all others, if there are any
    std::map<std::int32_t, std::vector<std::uint64_t>> entries; ///< by month or year, in the order of the names
    std::vector<std::uint64_t> earlier;                         ///< of the years that are not shown
};

/// Figures over time show so many years that have entries, the latest ones; those before are one row of each table.
inline constexpr std::size_t kYearsShown = 100;

class Figures {
public:
    explicit Figures(const Diary& diary);

    Sum total;
    Sum undated; ///< without a day that can be read
    Sums byDay;
    Sums byMonth;      ///< of the years that are shown
    Sums byYear;       ///< of the years that are shown
    Sum earlier;       ///< the years that are not shown
    int firstYear = 0; ///< that is shown
    std::array<Sum, 7> byWeekday;
    std::array<Sum, kNoHour + 1> byHour; ///< the last one has no time
    std::vector<Run> longestRuns;        ///< the longest first
    std::vector<std::uint64_t> levels;   ///< from how many characters a day is of the second, third and fourth level

    /// Names by their number of entries, those of the most first; the rest is one share without a name.
    static std::vector<Share> shares(const Diary& diary, std::uint32_t Note::*kind,
                                     const std::vector<std::string>& names, std::size_t most);
    /// Of the entries with a day. By month in the first years.
    Course course(const Diary& diary, std::uint32_t Note::*kind, const std::vector<std::string>& names,
                  std::size_t most) const;

private:
    void sumUp(const Diary& diary);
    void findRuns();
    void findLevels();
};

} // namespace velloria::plugins::vellinfo
