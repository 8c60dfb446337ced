// The entries of a month: into the end of the month file, or into a divided page of their own. A step of MonthPage,
// once the plan is made and the head of the month file printed; throws platform::Failure when a page can't be put in
// place.
#pragma once

#include "site/month_run.h"

namespace velloria::site {

enum class PageMode { New, Append };

/// Renders the entries of one page. PageMode::Append goes on in the run's diary file (page 0), PageMode::New makes the
/// file of `page` and puts it in place. Every page carries the day anchors of the whole month.
void MakeDiaryPage(MonthRun& run, PageMode mode, int page);

} // namespace velloria::site
