// The month grid with links to the days. A step of MonthPage, after the head of the page or MakeCalenderFrame.
#pragma once

#include "site/month_run.h"

namespace velloria::site {

/// Appends the grid of `year` and `month` to the run's calendar file. `target` is the frame that the links open in,
/// "_self" or "DIARY". A month that begins on a Sunday has a first row of seven grey days. Throws platform::Failure for
/// a year before 2000.
void MakeCalender(MonthRun& run, int year, int month, const QString& target);

} // namespace velloria::site
