#include "site/entry_page.h"

#include "core/path_names.h"
#include "core/site_keys.h"
#include "site/entry_look.h"
#include "site/page_head.h"
#include "site/page_move_links.h"

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

QString topLink(const MonthRun& run, int page) {
    const bool isDivided = run.plan.isDivided();
    const bool leadsToTopPage = run.settings.text(keys::divide::kTopLink) == u"TopPage"_s;
    if (isDivided && !leadsToTopPage)
        return u"<DIV ALIGN=\"RIGHT\"><A HREF=\"#TOP\">top</A></DIV>"_s;
    if (isDivided && page >= 1)
        return u"<DIV ALIGN=\"RIGHT\"><A HREF=\"./"_s + core::GetFileName(run.plan.diaryFile()) +
               u"#TOP\">top of month</A></DIV>"_s;
    return u"<DIV ALIGN=\"RIGHT\"><A HREF=\"#this_month\">top</A></DIV>"_s;
}

} // namespace

void MakeDiaryPage(MonthRun& run, PageMode mode, int page) {
    const QString path = run.plan.pathOf(page);
    Page& text = mode == PageMode::Append ? run.pages.append(path) : run.pages.create(path);
    if (mode == PageMode::New)
        printDividedHead(text, run);

    const EntryLook look(run.settings, topLink(run, page));
    for (const store::Entry& entry : run.entries) {
        // Before the filter: the calendar's links find their day on whichever page they lead to.
        text.print(u"<A Name=\""_s, entry.day, u"\"></A>"_s);
        if (run.plan.isOn(page, entry.day))
            look.print(text, entry);
    }
    if (run.settings.isOn(keys::page_move_link::kPageMoveOn))
        printPageMoveLinks(text, run, page);

    if (mode == PageMode::New) {
        printDividedTail(text, run);
        run.pages.commit(path);
    }
}

} // namespace velloria::site
