#include "site/page_head.h"

#include "core/program_keys.h"
#include "core/site_keys.h"

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

void printTitle(Page& page, const SiteSettings& settings) {
    page.print(u"<TITLE>"_s, settings.text(keys::general::kHPTitle), u"</TITLE>"_s);
    const QString styleSheet = styleSheetLink(settings);
    if (!styleSheet.isEmpty())
        page.print(styleSheet);
}

void printCommentScript(Page& page, const SiteSettings& settings) {
    if (settings.isOn(keys::halo_scan::kHaloScanOn))
        page.print(u"<script type=\"text/javascript\" src=\""_s, settings.text(keys::kHaloScanScript),
                   settings.text(keys::halo_scan::kUserName), u"\"> </script>"_s);
}

void printBody(Page& page, const SiteSettings& settings) {
    page.print(u"<BODY TEXT='"_s, settings.text(keys::body::kTextColor), u"' BGCOLOR='"_s,
               settings.text(keys::body::kBackColor), u"' background='"_s, settings.text(keys::body::kBackImage),
               u"' link='"_s, settings.text(keys::body::kLinkColor), u"' alink='"_s,
               settings.text(keys::body::kALinkColor), u"' vlink='"_s, settings.text(keys::body::kVLinkColor), u"'>"_s);
}

void printFeedFootLine(Page& page, const QString& feedBase) {
    page.print(u"<p align=center><a href=\""_s, feedBase, u"_RSS091.xml\">RSS0.91</a> | <a href=\""_s, feedBase,
               u"_RSS100.xml\">RSS1.0</a> | <a href=\""_s, feedBase, u"_RSS200.xml\">RSS2.0</a> | <a href=\""_s,
               feedBase, u"_ATOM.xml\">ATOM</a></p>"_s);
}

void printCommentLogo(Page& page, const SiteSettings& settings) {
    page.print(u"<a href=\""_s, settings.text(keys::kHaloScanHome), u"\"><img width=\"88\" height=\"31\" src=\""_s,
               settings.text(keys::kHaloScanLogo), u"\" border=\"0\" alt=\""_s, settings.text(keys::kHaloScanAlt),
               u"\" /></a>"_s);
}

void printCredit(Page& page, const SiteSettings& settings) {
    QString text = settings.text(keys::general::kVellLinkText);
    if (!text.contains(u'#'))
        text = u"<p>このサイトは#を使用しています。</p>"_s;
    const QString link = u"<a href=\""_s + settings.text(keys::kMakerHomePage) + u"\" target=_blank>Velloria</a>"_s;
    page.print(text.replace(u'#', link));
}

} // namespace

QString styleSheetLink(const SiteSettings& settings) {
    const QString styleSheet = settings.text(keys::general::kStyleSheetURL);
    return styleSheet.isEmpty() ? QString() : u"<Link Rel=stylesheet type=\"Text/css\" href="_s + styleSheet + u'>';
}

void printFeedLinks(Page& page, const QString& feedBase) {
    page.print(u"<link rel=\"alternate\" type=\"application/rss+xml\" title=\"RSS0.93\" href=\""_s, feedBase,
               u"_RSS091.xml\" />"_s);
    page.print(u"<link rel=\"alternate\" type=\"application/rss+xml\" title=\"RSS1.0\" href=\""_s, feedBase,
               u"_RSS100.xml\" />"_s);
    page.print(u"<link rel=\"alternate\" type=\"application/rss+xml\" title=\"RSS2.0\" href=\""_s, feedBase,
               u"_RSS200.xml\" />"_s);
    page.print(u"<link rel=\"alternate\" type=\"application/atom+xml\" title=\"Atom0.3\" href=\""_s, feedBase,
               u"_ATOM.xml\" />"_s);
}

void printHead(Page& page, const MonthRun& run) {
    const SiteSettings& settings = run.settings;
    page.print(u"<HTML lang=\"ja\">"_s);
    page.print(u"<HEAD>"_s);
    page.print(QStringView(kCharsetLine));
    page.print(u"<meta name=Generator content=\"Velloria v"_s, core::kProgramVersion.text(), u"\">"_s);
    printTitle(page, settings);
    if (settings.text(keys::general::kLogType) == u"JavaScript"_s && !run.frameOn)
        page.print(settings.logScript());
    if (run.rssOn)
        printFeedLinks(page, run.feedBase);
    printCommentScript(page, settings);
    page.print(settings.piece(keys::general::kHeadTag));
    page.print(u"</HEAD>"_s);
    printBody(page, settings);
    page.print(u"<!-- 上追加テキスト(ここから) by Velloria -->"_s);
    page.print(settings.piece(run.pageKind == PageKind::Current ? keys::body::kUpText : keys::body::kUpTextLog));
    page.print(u"<!-- 上追加テキスト(ここまで) by Velloria  -->"_s);
}

void printTail(Page& page, const MonthRun& run) {
    const SiteSettings& settings = run.settings;
    page.print(u"<!-- 下追加テキスト(ここから) By Velloria -->"_s);
    page.print(settings.piece(run.pageKind == PageKind::Current ? keys::body::kDownText : keys::body::kDownTextLog));
    page.print(u"<!-- 下追加テキスト(ここまで) By Velloria -->"_s);
    if (run.rssOn)
        printFeedFootLine(page, run.feedBase);
    if (settings.isOn(keys::halo_scan::kHaloScanOn))
        printCommentLogo(page, settings);
    if (settings.isOn(keys::general::kVellLinkOn))
        printCredit(page, settings);
    page.print(u"</BODY>\r\n</HTML>"_s);
}

void printDividedHead(Page& page, const MonthRun& run) {
    const SiteSettings& settings = run.settings;
    const bool isCurrent = run.pageKind == PageKind::Current;
    page.print(u"<HTML lang=\"ja\"><HEAD>"_s);
    page.print(QStringView(kCharsetLine));
    page.print(u"<meta name=Generator content=\"Velloria\">"_s);
    printTitle(page, settings);
    printCommentScript(page, settings);
    page.print(settings.piece(isCurrent ? keys::general::kHeadTagDiv : keys::general::kHeadTagDivLog));
    page.print(u"</HEAD>"_s);
    printBody(page, settings);
    page.print(settings.piece(isCurrent ? keys::body::kUpTextDiv : keys::body::kUpTextDivLog));
}

void printDividedTail(Page& page, const MonthRun& run) {
    const bool isCurrent = run.pageKind == PageKind::Current;
    page.print(run.settings.piece(isCurrent ? keys::body::kDownTextDiv : keys::body::kDownTextDivLog));
    page.print(u"</BODY></HTML>"_s);
}

} // namespace velloria::site
