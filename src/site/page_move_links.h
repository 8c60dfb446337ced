// The links between the pages of a divided month. A step of MakeDiaryPage, after the entries of the page.
#pragma once

#include "site/month_run.h"

namespace velloria::site {

/// Prints the links back and forward of `page`; the last page leads to the month file. An undivided month counts as
/// its own last page and links to itself.
void printPageMoveLinks(Page& text, const MonthRun& run, int page);

} // namespace velloria::site
