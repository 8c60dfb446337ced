// The calendar's own date arithmetic: plain functions of their arguments.
#pragma once

#include <QString>

namespace velloria::site {

/// Divisible by 4 and not by 100, or divisible by 400.
bool IsLeapYear(int year);

/// 28 to 31; 0 for a month outside 1 to 12.
int GetMonthDays(int year, int month);

/// Weekday of the first of the month, Monday 0 to Sunday 6, counted from the year 2000. Throws platform::Failure for
/// an earlier year.
int GetFirstWeekday(int year, int month);

/// Index 0 to 6 is Sunday to Saturday, Japanese with `type` "1", else English; "" for any other index.
QString GetWeekdayName(int index, const QString& type);

} // namespace velloria::site
