#include "common/dates.h"

#include <chrono>
#include <cstdio>
#include <ctime>

namespace velloria::plugins {
namespace {

constexpr int64_t kSecondsADay = 86400;
constexpr int64_t kTokyoAhead = 9 * 3600;

std::chrono::year_month_day dateOf(const DateTime& time) {
    return std::chrono::year(time.year) / std::chrono::month(unsigned(time.month)) /
           std::chrono::day(unsigned(time.day));
}

std::optional<int> number(std::string_view digits) {
    int value = 0;
    for (const char c : digits) {
        if (c < '0' || c > '9')
            return std::nullopt;
        value = value * 10 + (c - '0');
    }
    return value;
}

std::optional<DateTime> ifThere(const DateTime& time) {
    return time.exists() ? std::optional(time) : std::nullopt;
}

} // namespace

bool DateTime::exists() const {
    return year >= 100 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 && dateOf(*this).ok() && hour >= 0 &&
           hour <= 23 && minute >= 0 && minute <= 59 && second >= 0 && second <= 59;
}

std::string DateTime::dayKey() const {
    return stamp().substr(0, 10);
}

std::string DateTime::stamp() const {
    char text[80];
    std::snprintf(text, sizeof text, "%04d/%02d/%02d %02d:%02d:%02d", year, month, day, hour, minute, second);
    return text;
}

std::optional<DateTime> dateTimeOf(std::string_view text) {
    constexpr std::string_view kForm = "0000/00/00 00:00:00";
    if (text.size() != 10 && text.size() != kForm.size())
        return std::nullopt;
    for (std::size_t at = 0; at < text.size(); ++at)
        if (kForm[at] != '0' && text[at] != kForm[at])
            return std::nullopt;
    const auto part = [&](std::size_t at, std::size_t length) {
        return at < text.size() ? number(text.substr(at, length)) : std::optional(0);
    };
    const auto year = part(0, 4), month = part(5, 2), day = part(8, 2);
    const auto hour = part(11, 2), minute = part(14, 2), second = part(17, 2);
    if (!year || !month || !day || !hour || !minute || !second)
        return std::nullopt;
    return ifThere({*year, *month, *day, *hour, *minute, *second});
}

std::optional<DateTime> localTime(int64_t seconds) {
    const auto moment = static_cast<std::time_t>(seconds);
    std::tm local{};
    if (!::localtime_r(&moment, &local))
        return std::nullopt;
    return ifThere({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec});
}

std::optional<DateTime> tokyoTime(int64_t seconds) {
    constexpr int64_t kBeyond = int64_t(10000) * 366 * kSecondsADay;
    if (seconds < -kBeyond || seconds > kBeyond)
        return std::nullopt;
    const int64_t shown = seconds + kTokyoAhead;
    const int64_t day = shown >= 0 ? shown / kSecondsADay : (shown - kSecondsADay + 1) / kSecondsADay;
    const int rest = int(shown - day * kSecondsADay);
    const std::chrono::year_month_day date{std::chrono::sys_days(std::chrono::days(day))};
    return ifThere({int(date.year()), int(unsigned(date.month())), int(unsigned(date.day())), rest / 3600,
                    rest / 60 % 60, rest % 60});
}

int64_t secondsOfTokyo(const DateTime& time) {
    const int64_t days = std::chrono::sys_days(dateOf(time)).time_since_epoch().count();
    return days * kSecondsADay + time.hour * 3600 + time.minute * 60 + time.second - kTokyoAhead;
}

} // namespace velloria::plugins
