#include "site/frames.h"

#include "core/path_names.h"
#include "core/site_keys.h"
#include "site/page_head.h"

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

/// The word of a setting that is 0 or 1; any other number leaves it empty.
QString word(int number, const QString& zero, const QString& one) {
    return number == 0 ? zero : number == 1 ? one : QString();
}

void printLogLinks(Page& page, const std::vector<store::LogRow>& logs, bool hasFrames) {
    page.print(u"<A HREF=\"#this_month\">今月分</A><BR>"_s);
    const QString end = hasFrames ? u"\" target=\"DIARY\">"_s : u"\">"_s;
    for (const store::LogRow& log : logs)
        page.print(u"<A HREF=\"./DiaryLog/"_s, log.fileName, end, log.month, u"月分</A><BR>"_s);
}

void printLogSelection(Page& page, const std::vector<store::LogRow>& logs, bool hasFrames) {
    page.print(u"<FORM name=\"selectionform\">過去ログ　<SELECT NAME=\"logselect\">"_s);
    for (const store::LogRow& log : logs)
        page.print(u"<OPTION VALUE=\""_s, log.fileName, u"\">"_s, log.month);
    page.print(u"</SELECT>"_s);
    page.print(u"<INPUT type=button value=\"ＯＫ\" onclick=\"{"_s, hasFrames ? u"parent.DIARY."_s : QString(),
               u"location.href='./DiaryLog/' + GetSelectionText(this.form,logselect) }\"></FORM>"_s);
}

} // namespace

void MakeFrameSet(MonthRun& run) {
    const SiteSettings& settings = run.settings;
    // Of the name, not of the path: a name without an ending keeps its folder's points out of this.
    const QString base = core::GetBaseName(core::GetFileName(run.plan.monthFile()));
    const QString border = settings.text(keys::frame::kBorder);
    const QString borderWord = border == u"0"_s ? u"NO"_s : border == u"1"_s ? u"YES"_s : QString();
    Page& page = run.pages.create(run.plan.monthFile());
    page.print(u"<HTML lang=\"ja\">"_s);
    page.print(u"<HEAD>"_s);
    page.print(u"<TITLE>"_s, settings.text(keys::general::kHPTitle), u"</TITLE>"_s);
    page.print(u"<FRAMESET COLS="_s, settings.text(keys::frame::kCalenderFrameSize), u",* FRAMEBORDER=\""_s, borderWord,
               u"\">"_s);
    page.print(u"<FRAME SRC=\"./"_s, base, u"_C.htm\" Name=\"CALENDER\" Scrolling=\""_s,
               word(settings.number(keys::frame::kScrolling), u"NO"_s, u"YES"_s), u"\" "_s,
               word(settings.number(keys::frame::kResize), u"NORESIZE"_s, u"RESIZE"_s), u">"_s);
    page.print(u"<FRAME SRC=\"./"_s, base, u"_D.htm\" Name=\"DIARY\">"_s);
    if (run.rssOn)
        printFeedLinks(page, run.feedBase);
    page.print(u"</HEAD></HTML>"_s);
}

void MakeCalenderFrame(MonthRun& run, int year, int month) {
    const SiteSettings& settings = run.settings;
    Page& page = run.pages.create(run.plan.calenderFile());
    page.print(u"<HTML lang=\"ja\">"_s);
    page.print(u"<HEAD>"_s);
    page.print(QStringView(kCharsetLine));
    page.print(u"<TITLE>"_s, settings.text(keys::general::kHPTitle), u"-CalenderFrame-</TITLE>"_s);
    if (settings.text(keys::general::kLogType) == u"JavaScript"_s)
        page.print(settings.logScript());
    page.print(settings.piece(keys::calender_window::kHeadTag));
    page.print(u"</HEAD>"_s);
    page.print(u"<BODY TEXT=\""_s, settings.text(keys::calender_window::kTextColor), u"\" BGColor=\""_s,
               settings.text(keys::calender_window::kBGColor), u"\" background=\""_s,
               settings.text(keys::calender_window::kBGImage), u"\">"_s);
    page.print(settings.piece(keys::calender_window::kUpText));
    page.print(u"<div align=center>"_s, QString::number(year), u"年"_s, QString::number(month), u"月</div>"_s);
}

void MakeLogList(MonthRun& run, const registers::LogRegister& logs) {
    const SiteSettings& settings = run.settings;
    const QString type = settings.text(keys::general::kLogType);
    const QString align = settings.text(keys::general::kLogAlign);
    const bool isLeft = align == u"Left"_s;
    const bool hasFrames = settings.number(keys::frame::kFrameOn) != 0;
    Page& page = run.pages.append(run.plan.calenderFile());
    page.print(u"<HR>"_s);
    page.print(u"<P Align="_s, align, u">"_s);
    if (isLeft)
        page.print(u"<div style=margin-left:"_s, QString::number(settings.number(keys::day_list::kMarginLeft)),
                   u"pt>"_s);
    if (type == u"Normal"_s)
        printLogLinks(page, logs.listLogs(), hasFrames);
    else if (type == u"JavaScript"_s)
        printLogSelection(page, logs.listLogs(), hasFrames);
    if (isLeft)
        page.print(u"</DIV>"_s);
    page.print(u"</P>"_s);
}

} // namespace velloria::site
