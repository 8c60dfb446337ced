// This day in other years: a local page that never goes to the site.
#pragma once

#include "core/run.h"
#include "site/local_page.h"

namespace velloria::site {

/// Writes the entries of the month and day of `day` ("yyyy/mm/dd") in all other years, private ones too, to `path`:
/// newest year first, within a day lowest number first. Returns their number, for 0 there is a page as well. Throws
/// platform::Failure, and the old page stays.
int MakeSameDayPage(const core::Run& run, const QString& path, const QString& day);

/// The command: makes "oldtmp.htm" for `day` and shows it. Returns the page's path. Throws platform::Failure.
QString sameDayCommand(const core::Run& run, const QString& day, const ShowPage& show);

} // namespace velloria::site
