// The list of entries at the top of the month page. A step of MonthPage, after the calendar.
#pragma once

#include "site/month_run.h"

namespace velloria::site {

/// Prints the list, newest entry first, with links to the entries wherever their page is; nothing when it is off.
void printDayList(Page& page, const MonthRun& run);

} // namespace velloria::site
