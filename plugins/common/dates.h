// Dates and times as the diary has them: of the calendar, local, without a zone.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velloria::plugins {

struct DateTime {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;

    bool operator==(const DateTime&) const = default;

    /// Whether the calendar has the day, in the years 100 to 9999 that the diary can hold, and the day the time.
    bool exists() const;

    std::string dayKey() const; ///< "yyyy/mm/dd"
    std::string stamp() const;  ///< "yyyy/mm/dd hh:nn:ss"
};

/// What `dayKey` or `stamp` have written; nothing for all else.
std::optional<DateTime> dateTimeOf(std::string_view text);

/// A moment, in seconds since 1970, as the clock of this machine shows it; nothing beyond what the diary can hold.
std::optional<DateTime> localTime(int64_t seconds);

/// The same on the clocks of Japan, nine hours ahead all the year.
std::optional<DateTime> tokyoTime(int64_t seconds);
int64_t secondsOfTokyo(const DateTime& time);

} // namespace velloria::plugins
