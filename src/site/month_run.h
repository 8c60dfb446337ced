// What all routines of one run of the generator share.
#pragma once

#include "core/session.h"
#include "site/page.h"
#include "site/page_plan.h"
#include "site/site_settings.h"
#include "store/entry.h"

#include <vector>

namespace velloria::site {

enum class PageKind { Current = 1, Log = 2 };
enum class MakeList { No, Yes };
enum class WithPrivate { No, Yes };

/// One month on its way to its files: made, filled and finished by MonthPage. The routines that print a part of it find
/// all they need in here, `plan` among it, and print into a Page or into the files that the plan names.
struct MonthRun {
    const core::Session& session;
    const SiteSettings& settings;
    Pages& pages;
    QString path;      ///< the month file, with its extension
    QString yearMonth; ///< "yyyy/mm"
    PageKind pageKind = PageKind::Current;

    std::vector<store::Entry>
        entries{};      ///< of the month, newest day and highest number first; private ones left out or not
    QStringList days{}; ///< days with such entries, newest first
    PagePlan plan{};
    bool frameOn = false;
    bool rssOn = false;
    QString feedBase{}; ///< address of the month file without its extension: prefix of the feeds' addresses
};

} // namespace velloria::site
