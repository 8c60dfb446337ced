// Days as the diary writes them, as numbers.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace velloria::plugins::vellinfo {

/// Days since 1970/01/01.
using Day = std::int32_t;
inline constexpr Day kNoDay = std::numeric_limits<Day>::min();

struct Date {
    int year = 0;
    int month = 0; ///< 1 to 12
    int day = 0;
};

/// "2026/11/23" of the years 100 to 9999; kNoDay for a day that is none or is written otherwise.
Day dayOf(std::string_view text);
Day dayOf(Date date);

Date dateOf(Day day);
std::string textOf(Day day);
/// 0 is Sunday.
int weekdayOf(Day day);
int daysOf(int year, int month);

inline constexpr int kNoHour = 24;

/// The hour of "2026/11/23 09:05:00"; kNoHour for a time that is none, or lacks it.
int hourOf(std::string_view time);

} // namespace velloria::plugins::vellinfo
