// The numbers of a month page's settings, looked at before anything is written: once it has passed, none of them throws
// while pages are printed.
#pragma once

#include "site/division.h"
#include "site/month_run.h"

namespace velloria::site {

/// Reads every number that the run asks for, whether or not it is printed: one beyond 16 bits throws platform::Failure.
/// The run knows its entries; without `hasMonth` it has no calendar.
void requireNumbers(const MonthRun& run, const Division& division, bool hasMonth);

} // namespace velloria::site
