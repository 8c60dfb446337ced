#include "vellinfo/calendar.h"

#include "common/dates.h"

#include <chrono>

namespace velloria::plugins::vellinfo {
namespace {

constexpr std::size_t kDayLength = 10;

std::chrono::year_month_day chronoDate(Date date) {
    return std::chrono::year(date.year) / static_cast<unsigned>(date.month) / static_cast<unsigned>(date.day);
}

} // namespace

Day dayOf(Date date) {
    return Day(std::chrono::sys_days(chronoDate(date)).time_since_epoch().count());
}

Day dayOf(std::string_view text) {
    const std::optional<DateTime> time = text.size() == kDayLength ? dateTimeOf(text) : std::nullopt;
    return time ? dayOf(Date{time->year, time->month, time->day}) : kNoDay;
}

Date dateOf(Day day) {
    const std::chrono::year_month_day date{std::chrono::sys_days(std::chrono::days(day))};
    return {int(date.year()), int(unsigned(date.month())), int(unsigned(date.day()))};
}

std::string textOf(Day day) {
    const Date date = dateOf(day);
    return DateTime{date.year, date.month, date.day}.dayKey();
}

int weekdayOf(Day day) {
    return int(std::chrono::weekday(std::chrono::sys_days(std::chrono::days(day))).c_encoding());
}

int daysOf(int year, int month) {
    const auto last = std::chrono::year(year) / std::chrono::month(static_cast<unsigned>(month)) / std::chrono::last;
    return int(unsigned(last.day()));
}

int hourOf(std::string_view time) {
    const std::optional<DateTime> parsed = time.size() > kDayLength ? dateTimeOf(time) : std::nullopt;
    return parsed ? parsed->hour : kNoHour;
}

} // namespace velloria::plugins::vellinfo
