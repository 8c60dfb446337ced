#include "site/entry_look.h"

#include "core/site_keys.h"
#include "site/weather.h"

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

// The marks by which an entry's parts are found again in a page.
constexpr char16_t kContentsMark[] = u"<!--[Contents]--><br>";
constexpr char16_t kExtendMark[] = u"<!--[extend]--><br>";

QString anchorName(const store::Entry& entry) {
    return entry.day + u'_' + QString::number(entry.number);
}

QString commentLinks(const store::Entry& entry) {
    static const QString kLinks =
        u"<a href=\"javascript:HaloScan('Name');\" target=\"_self\"><script type=\"text/javascript\">"
        u"postCount('Name');</script></a> | <a href=\"javascript:HaloScanTB('Name');\" target=\"_self\">"
        u"<script type=\"text/javascript\">postCountTB('Name'); </script></a>"_s;
    return QString(kLinks).replace(u"Name"_s, anchorName(entry));
}

} // namespace

QString entryTableLine(const SiteSettings& settings) {
    const int width = settings.number(keys::contents::kTableWidth);
    return u"<TABLE BORDER="_s + QString::number(settings.number(keys::contents::kTableBorder)) + u" BGCOLOR=\""_s +
           settings.text(keys::contents::kTableBGColor) + u"\" CELLSPACING="_s +
           QString::number(settings.number(keys::contents::kCellspacing)) + u" BORDERCOLOR="_s +
           settings.text(keys::contents::kTBorderColor) + u" width="_s + QString::number(width == 0 ? 100 : width) +
           u"%>"_s;
}

EntryLook::EntryLook(const SiteSettings& settings, QString topLink, EntriesOf entriesOf)
    : m_topLink(std::move(topLink))
    , m_isTable(settings.text(keys::contents::kHTMLType) == u"1"_s)
    , m_isSearch(entriesOf == EntriesOf::Search)
    , m_hasComments(!m_isSearch && settings.isOn(keys::halo_scan::kHaloScanOn))
    , m_hasWeather(settings.isOn(keys::general::kWeather))
    , m_hasGenre(settings.isOn(keys::general::kGenre))
    , m_titleAlign(settings.text(keys::general::kDayTitleAlign))
    , m_titleColor(settings.text(keys::contents::kTitleFTColor))
    , m_titleBackground(settings.text(keys::contents::kTitleBGColor))
    , m_titleStyle(settings.text(keys::contents::kTitleSpanTag))
    , m_dayColor(settings.text(keys::contents::kDayFTColor))
    , m_dayBackground(settings.text(keys::contents::kDayBGColor))
    , m_contentsColor(settings.text(keys::contents::kContentsFTColor))
    , m_contentsBackground(settings.text(keys::contents::kContentsBGColor))
    , m_contentsAlign(settings.text(keys::contents::kDayContentsAlign))
    , m_tableLine(entryTableLine(settings)) {}

void EntryLook::print(Page& page, const store::Entry& entry) const {
    if (m_isTable)
        printTable(page, entry);
    else
        printNormal(page, entry);
}

bool EntryLook::showsWeather(const store::Entry& entry) const {
    return m_hasWeather && !entry.weather.isNull() && entry.weather != u"-"_s;
}

QString EntryLook::weatherImage(const store::Entry& entry) const {
    QString icon = weatherIcon(entry.weather);
    if (icon.isEmpty() && m_isSearch)
        icon = weatherIcon(u"晴"_s);
    return u"<IMG SRC=\"./DiaryParts/"_s + icon + u"\">"_s;
}

void EntryLook::printNormal(Page& page, const store::Entry& entry) const {
    page.print(u"<H3 ALIGN="_s, m_titleAlign, u" STYLE=\"COLOR:"_s, m_titleColor, u";BACKGROUND:"_s, m_titleBackground,
               u"\">"_s, showsGenre(entry) ? u'[' + entry.genre + u']' : QString(), u"<A NAME=\""_s, anchorName(entry),
               u"\"><SPAN STYLE=\""_s, m_titleStyle, u"\">"_s, entry.title, u"</SPAN>("_s, entry.day, u")</A>"_s,
               showsWeather(entry) ? weatherImage(entry) : QString(), u"</H3>"_s);
    page.print(u"<DIV STYLE=\"COLOR:"_s, m_contentsColor, u";BACKGROUND:"_s, m_contentsBackground, u"\" align="_s,
               m_contentsAlign, u">"_s);
    page.print(QStringView(kContentsMark));
    page.print(entry.contents);
    if (!entry.extend.isNull())
        page.print(QStringView(kExtendMark));
    page.print(entry.extend);
    if (m_hasComments)
        page.print(commentLinks(entry));
    page.print(u"</DIV>"_s);
    page.print(m_topLink);
}

void EntryLook::printTable(Page& page, const store::Entry& entry) const {
    int columns = 2;
    QString weatherCell;
    if (showsWeather(entry)) {
        weatherCell = u"<TD width=16pt BGCOLOR="_s + m_dayBackground + u'>' + weatherImage(entry) + u"</TD>"_s;
        ++columns;
    }
    QString genreCell;
    if (showsGenre(entry)) {
        genreCell = u"<TD ALIGN=RIGHT BGCOLOR="_s + m_dayBackground + u"><FONT COLOR="_s + m_dayColor + u"><NOBR>["_s +
                    entry.genre + u"]</NOBR></FONT></TD>"_s;
        ++columns;
    }
    page.print(u"<DIV ALIGN="_s, m_contentsAlign, u">"_s);
    page.print(m_tableLine);
    page.print(u"<TR><TD ALIGN="_s, m_titleAlign, u" BGCOLOR="_s, m_titleBackground, u" WIDTH=100%><A NAME=\""_s,
               anchorName(entry), u"\"><FONT COLOR="_s, m_titleColor, u"><SPAN STYLE=\""_s, m_titleStyle, u"\">"_s,
               entry.title, u"</SPAN></A></FONT></TD>"_s, genreCell, u"<TD ALIGN=RIGHT BGCOLOR="_s, m_dayBackground,
               u"><FONT COLOR="_s, m_dayColor, u">"_s, entry.day, u"</FONT></TD>"_s, weatherCell, u"</TR>"_s);
    page.print(u"<TR><TD COLSPAN="_s, QString::number(columns), u" BGCOLOR="_s, m_contentsBackground,
               u"><FONT COLOR="_s, m_contentsColor, u">"_s, QStringView(kContentsMark), entry.contents);
    if (!entry.extend.isNull())
        page.print(u"\r\n"_s, QStringView(kExtendMark), entry.extend, u"</FONT></TD></TR>"_s);
    else
        page.print(u"</FONT></TD></TR>"_s);
    if (m_hasComments)
        page.print(u"<TR><TD ALIGN=CENTER COLSPAN="_s, QString::number(columns), u" BGCOLOR="_s, m_contentsBackground,
                   u">"_s, commentLinks(entry), u"</TD></TR>"_s);
    page.print(u"</TABLE></DIV>"_s);
    page.print(m_topLink, u"<BR>"_s);
}

} // namespace velloria::site
