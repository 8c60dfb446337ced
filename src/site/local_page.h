// What the local pages share that a window of their own shows: they never go to the site. Plain functions of the page
// and the settings; a text piece that is missing is no failure.
#pragma once

#include "site/page.h"
#include "site/site_settings.h"

namespace velloria::site {

/// Shows a local page under a caption: a window of its own, or the browser.
using ShowPage = std::function<void(const QString& caption, const QString& file)>;

/// The link below each entry.
inline constexpr char16_t kTopOfPage[] = u"<DIV ALIGN=\"RIGHT\"><A HREF=\"#TOP\">top</A></DIV>";

/// The mode of a page that shows private entries: that of the diary. Where the site lies in the data folder too, the
/// page is a file like any other there.
unsigned localPageMode(const core::Session& session);

/// What a page of the site says in its head about how it looks: its style sheet and the set's own text for heads. The
/// window that shows a local page takes the styles of it, for the page itself is the same whatever the set.
QString headOfSet(const SiteSettings& settings);

/// The page's head and the button that closes its window.
void printLocalHead(Page& page, const SiteSettings& settings, const QString& title);

} // namespace velloria::site
