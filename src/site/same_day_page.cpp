#include "site/same_day_page.h"

#include "core/files.h"
#include "core/site_keys.h"
#include "site/entry_look.h"
#include "site/local_page.h"
#include "store/diary_store.h"

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

void printList(Page& page, const std::vector<store::Entry>& entries, bool hasTitles) {
    for (const store::Entry& entry : entries) {
        if (hasTitles)
            page.print(u"<a href=\"#"_s, entry.day, u"\">"_s, entry.day, u"</a>　"_s, entry.title, u"<br>"_s);
        else
            page.print(u"<a href=\"#"_s, entry.day, u"\">"_s, entry.day, u"</a><br>"_s);
    }
    if (entries.empty())
        page.print(u"以前の同じ日の日記はありません。"_s);
    page.print(u"</div><hr>"_s);
    page.print();
}

void printNormal(Page& page, const SiteSettings& settings, const store::Entry& entry) {
    page.print(u"<H3 ALIGN="_s, settings.text(keys::general::kDayTitleAlign), u" STYLE=\"COLOR:"_s,
               settings.text(keys::contents::kTitleFTColor), u";BACKGROUND:"_s,
               settings.text(keys::contents::kTitleBGColor), u"\"><A NAME=\""_s, entry.day, u"\">"_s, entry.title,
               u"("_s, entry.day, u")</A></H3>"_s);
    page.print(u"<DIV STYLE=\"COLOR:"_s, settings.text(keys::contents::kContentsFTColor), u";BACKGROUND:"_s,
               settings.text(keys::contents::kContentsBGColor), u"\" align="_s,
               settings.text(keys::contents::kDayContentsAlign), u">"_s);
    if (!entry.contents.isNull())
        page.print(entry.contents);
    if (!entry.extend.isNull()) {
        page.print(u"<BR>"_s);
        page.print(entry.extend);
    }
    page.print(u"</DIV>"_s);
    page.print(QStringView(kTopOfPage));
}

void printTable(Page& page, const SiteSettings& settings, const QString& tableLine, const store::Entry& entry) {
    page.print(u"<DIV ALIGN="_s, settings.text(keys::contents::kDayContentsAlign), u">"_s);
    page.print(tableLine);
    page.print(u"<TR><TD ALIGN="_s, settings.text(keys::general::kDayTitleAlign), u" BGCOLOR="_s,
               settings.text(keys::contents::kTitleBGColor), u"><A NAME=\""_s, entry.day, u"\"><FONT COLOR="_s,
               settings.text(keys::contents::kTitleFTColor), u">"_s, entry.title,
               u"</FONT></TD><TD ALIGN=RIGHT BGCOLOR="_s, settings.text(keys::contents::kDayBGColor),
               u"><FONT COLOR="_s, settings.text(keys::contents::kDayFTColor), u">"_s, entry.day,
               u"</a></FONT></TD></TR>"_s);
    page.print(u"<TR><TD COLSPAN=2 BGCOLOR="_s, settings.text(keys::contents::kContentsBGColor), u"><FONT COLOR="_s,
               settings.text(keys::contents::kContentsFTColor), u">"_s);
    if (!entry.contents.isNull())
        page.print(entry.contents);
    if (!entry.extend.isNull())
        page.print(u"<br>"_s, entry.extend, u"</FONT></TD></TR>"_s);
    else
        page.print(u"</FONT></TD></TR>"_s);
    page.print(u"</TABLE></DIV>"_s);
    page.print(QStringView(kTopOfPage), u"<BR>"_s);
}

} // namespace

int MakeSameDayPage(const core::Run& run, const QString& path, const QString& day) {
    const SiteSettings settings(run.session);
    const std::vector<store::Entry> entries = store::DiaryStore(run).SameDayEntries(day);
    const bool isTable = settings.text(keys::contents::kHTMLType) == u"1"_s;
    const QString tableLine = entryTableLine(settings);
    const bool hasTitles = settings.isOn(keys::day_list::kAddTitle);
    Pages pages(localPageMode(run.session));
    Page& page = pages.create(path);
    printLocalHead(page, settings, day.mid(5) + u"の日記"_s);
    if (settings.number(keys::day_list::kUse) != 0)
        printList(page, entries, hasTitles);
    for (const store::Entry& entry : entries) {
        if (isTable)
            printTable(page, settings, tableLine, entry);
        else
            printNormal(page, settings, entry);
    }
    page.print(u"</BODY></HTML>"_s);
    pages.commit(path);
    return int(entries.size());
}

QString sameDayCommand(const core::Run& run, const QString& day, const ShowPage& show) {
    const platform::Hourglass hourglass(run.desk);
    const QString file = core::files::kSameDayPage.in(run.session);
    MakeSameDayPage(run, file, day);
    show(u"過去の日記"_s, file);
    return file;
}

} // namespace velloria::site
