#include "site/day_list.h"

#include "core/site_keys.h"

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

/// The opening tag of an entry's link. Without titles a day's page is entered at its top, with titles at the entry.
QString openingTag(const MonthRun& run, const store::Entry& entry, bool hasTitles) {
    const QString anchor = u'#' + entry.day + u'_' + QString::number(entry.number) + u"\">"_s;
    const std::optional<QString> otherFile = run.plan.otherFileOf(entry.day);
    if (!otherFile)
        return u"<a href=\""_s + anchor;
    const bool leadsToTop = run.plan.hasDayFiles() && !hasTitles;
    return u"<a href=\"./"_s + *otherFile + (leadsToTop ? u"\">"_s : anchor);
}

void printTableRow(Page& page, const QString& link, const QString& genre, const store::Entry& entry, bool hasTitles) {
    if (hasTitles)
        page.print(u"<TR><TD>"_s, link, entry.day, u"</a></TD><TD>"_s, genre, u"</TD><TD>"_s, entry.title,
                   u"</TD></TR>"_s);
    else
        page.print(u"<TR><TD>"_s, link, entry.day, u"</a></TD><TD>"_s, genre, u"</TD></TR>"_s);
}

void printListRow(Page& page, const QString& link, const QString& genre, const store::Entry& entry, bool hasTitles) {
    page.print(link, entry.day, u"</a>　"_s, genre, hasTitles ? entry.title : QString(), u"<br>"_s);
}

} // namespace

void printDayList(Page& page, const MonthRun& run) {
    const SiteSettings& settings = run.settings;
    if (settings.number(keys::day_list::kUse) == 0)
        return;
    const bool hasTitles = settings.isOn(keys::day_list::kAddTitle);
    const bool hasGenres = settings.isOn(keys::general::kGenre);
    const QString type = settings.text(keys::day_list::kType);
    const bool isTable = type == u"Table"_s;
    const bool isList = type == u"List"_s || type.isEmpty();
    page.print(u"<div style=margin-left:"_s, QString::number(settings.number(keys::day_list::kMarginLeft)), u"pt>"_s);
    if (isTable)
        page.print(u"<TABLE>"_s);
    for (const store::Entry& entry : run.entries) {
        QString genre;
        if (hasGenres && !entry.genre.isNull())
            genre = u'[' + entry.genre + (hasTitles ? u"]　"_s : u"]"_s);
        const QString link = openingTag(run, entry, hasTitles);
        if (isTable)
            printTableRow(page, link, genre, entry, hasTitles);
        else if (isList)
            printListRow(page, link, genre, entry, hasTitles);
    }
    if (isTable)
        page.print(u"</TABLE>"_s);
    if (run.entries.empty())
        page.print(u"-今月はまだ日記はありません-"_s);
    page.print(u"</div>"_s);
    page.print();
}

} // namespace velloria::site
