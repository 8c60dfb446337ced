// The fixed text around a page: heads, tails, and the lines that several pages share. Steps of MonthPage, which print
// into the page that they are given. A text piece that is missing prints an empty line, and nothing is thrown: every
// number was looked at before (number_check.h).
#pragma once

#include "site/month_run.h"

namespace velloria::site {

/// Everything before the month heading: head, BODY and upper text.
void printHead(Page& page, const MonthRun& run);

/// Everything after the log list. The left column has been finished before.
void printTail(Page& page, const MonthRun& run);

/// Head and tail of a divided page, a file of its own.
void printDividedHead(Page& page, const MonthRun& run);
void printDividedTail(Page& page, const MonthRun& run);

/// The line that names the style sheet of the settings; "" without one.
QString styleSheetLink(const SiteSettings& settings);

/// The four link lines that let a browser find the feeds.
void printFeedLinks(Page& page, const QString& feedBase);

/// Where the head says that a page is in code page 932.
inline constexpr char16_t kCharsetLine[] = u"<meta http-equiv=Content-Type content=\"text/html; charset=shift_jis\">";

} // namespace velloria::site
