// The local pages: they show private entries, lie in the data folder and never go to the site. Which names they have,
// and what those share that a window of their own shows. Plain functions; a text piece that is missing is no failure.
#pragma once

#include "site/page.h"
#include "site/site_settings.h"

namespace velloria::site {

/// Shows a local page under a caption: a window of its own, or the browser.
using ShowPage = std::function<void(const QString& caption, const QString& file)>;

/// The link below each entry.
inline constexpr char16_t kTopOfPage[] = u"<DIV ALIGN=\"RIGHT\"><A HREF=\"#TOP\">top</A></DIV>";

/// Whether a file of this name in the data folder is a local page, a part of one or a feed beside one, whatever its
/// ending: exactly what the program may write there, so no site bears such a name there, and the end of a run removes
/// it. "tmp.htm", "Customize_C.htm" and "tmp_D_01.htm" are such names, "tmp_notes.htm" is somebody's own.
bool isLocalPage(const QString& fileName);

/// The same of a path.
bool isLocalPage(const core::Session& session, const QString& path);

/// The mode of a page that shows private entries: that of the diary. Where the site lies in the data folder too, the
/// page is a file like any other there.
unsigned localPageMode(const core::Session& session);

/// What a page of the site says in its head about how it looks: its style sheet and the set's own text for heads. The
/// window that shows a local page takes the styles of it, for the page itself is the same whatever the set.
QString headOfSet(const SiteSettings& settings);

/// The page's head and the button that closes its window.
void printLocalHead(Page& page, const SiteSettings& settings, const QString& title);

} // namespace velloria::site
