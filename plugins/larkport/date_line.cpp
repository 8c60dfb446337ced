#include "larkport/date_line.h"

#include <cstdio>

namespace velloria::plugins::larkport {
namespace {

class Reading {
public:
    explicit Reading(std::string_view value)
        : m_left(value) {}

    /// 1 to `most` digits.
    bool number(int& value, std::size_t most, std::size_t* length = nullptr) {
        std::size_t digits = 0;
        value = 0;
        while (digits < m_left.size() && digits < most && m_left[digits] >= '0' && m_left[digits] <= '9')
            value = value * 10 + (m_left[digits++] - '0');
        if (length)
            *length = digits;
        m_left.remove_prefix(digits);
        return digits > 0;
    }

    bool character(std::string_view any) {
        if (m_left.empty() || any.find(m_left[0]) == std::string_view::npos)
            return false;
        m_last = m_left[0];
        m_left.remove_prefix(1);
        return true;
    }

    void blanks() {
        while (character(" \t")) {
        }
    }

    char last() const { return m_last; }
    bool isAtEnd() const { return m_left.empty(); }

private:
    std::string_view m_left;
    char m_last = 0;
};

bool readDate(Reading& reading, DateTime& time) {
    int first = 0;
    int second = 0;
    int third = 0;
    std::size_t firstLength = 0;
    std::size_t thirdLength = 0;
    if (!reading.number(first, 4, &firstLength) || !reading.character("/-"))
        return false;
    const char separator[] = {reading.last(), '\0'};
    if (!reading.number(second, 2) || !reading.character(separator) || !reading.number(third, 4, &thirdLength))
        return false;
    if (firstLength == 4) {
        time = {first, second, third};
        return thirdLength <= 2;
    }
    if (separator[0] == '-' || (thirdLength != 2 && thirdLength != 4) || firstLength > 2)
        return false;
    if (thirdLength == 2)
        third += third >= 70 ? 1900 : 2000;
    time = {third, first, second};
    return true;
}

/// "AM" and "PM" of a clock of 12 hours; an hour beyond that is one of 24 whatever stands behind it.
bool readHalf(Reading& reading, DateTime& time) {
    if (!reading.character("APap"))
        return true;
    const bool isMorning = reading.last() == 'A' || reading.last() == 'a';
    if (!reading.character("Mm"))
        return false;
    if (time.hour == 12)
        time.hour = isMorning ? 0 : 12;
    else if (time.hour < 12 && !isMorning)
        time.hour += 12;
    return true;
}

/// "Z" sets `isUtc`; another zone tells how far the writer's clock was ahead, which does not count here.
bool readZone(Reading& reading, bool& isUtc) {
    if (reading.character("Zz")) {
        isUtc = true;
        return true;
    }
    int hours = 0;
    int minutes = 0;
    if (!reading.character("+-"))
        return true;
    if (!reading.number(hours, 2))
        return false;
    return reading.isAtEnd() || ((reading.character(":") || true) && reading.number(minutes, 2));
}

} // namespace

std::optional<DateTime> readDateLine(std::string_view value) {
    Reading reading(value);
    DateTime time;
    bool isUtc = false;
    reading.blanks();
    if (!readDate(reading, time))
        return std::nullopt;
    if (!reading.character("Tt"))
        reading.blanks();
    if (!reading.isAtEnd()) {
        if (!reading.number(time.hour, 2) || !reading.character(":") || !reading.number(time.minute, 2))
            return std::nullopt;
        if (reading.character(":") && !reading.number(time.second, 2))
            return std::nullopt;
        reading.blanks();
        if (!readHalf(reading, time) || !readZone(reading, isUtc))
            return std::nullopt;
        reading.blanks();
    }
    if (!reading.isAtEnd() || !time.exists())
        return std::nullopt;
    constexpr int64_t kTokyoAhead = 9 * 3600;
    return isUtc ? localTime(secondsOfTokyo(time) + kTokyoAhead) : std::optional(time);
}

std::string dateLine(const DateTime& time) {
    char text[64];
    const int hour = time.hour % 12 == 0 ? 12 : time.hour % 12;
    std::snprintf(text, sizeof text, "%02d/%02d/%04d %02d:%02d:%02d %s", time.month, time.day, time.year, hour,
                  time.minute, time.second, time.hour < 12 ? "AM" : "PM");
    return text;
}

} // namespace velloria::plugins::larkport
