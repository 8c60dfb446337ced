#include "site/page_move_links.h"

#include "core/day_key.h"
#include "core/path_names.h"
#include "core/site_keys.h"

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

struct Words {
    QString back;
    QString forward;
    QString toFirst;
};

Words wordsOf(const QString& language) {
    if (language == u"Japanese"_s)
        return {u"戻る"_s, u"次へ"_s, u"先頭へ"_s};
    if (language == u"English"_s || language.isEmpty())
        return {u"Previous"_s, u"Next"_s, u"Top"_s};
    return {};
}

QString link(const QString& fileName, const QString& word) {
    return u"<A HREF=\"./"_s + fileName + u"\">"_s + word + u"</A>"_s;
}

/// The page's file name; "" for a day page that no day leads to.
QString pageName(const MonthRun& run, int page) {
    if (run.division.useFileName2Day != 1)
        return dividedPageName(run.diaryFile, page);
    for (const QString& day : run.days) {
        if (run.division.pageOf(day) == page)
            return core::dayFileName(day) + u".htm"_s;
    }
    return {};
}

void printLinkTo(Page& text, const MonthRun& run, int page, const QString& word) {
    const QString name = pageName(run, page);
    if (!name.isEmpty())
        text.print(link(name, word));
}

/// The page of the oldest day, which has the highest number. An undivided or empty month has page 0 alone.
int lastPageOf(const MonthRun& run) {
    if (run.division.diaryDivide == 0 || run.days.isEmpty())
        return 0;
    for (const qint16 page : run.division.dayPage) {
        if (page != -1)
            return page;
    }
    return 0;
}

} // namespace

void printPageMoveLinks(Page& text, const MonthRun& run, int page) {
    const SiteSettings& settings = run.settings;
    const Words words = wordsOf(settings.text(keys::page_move_link::kLanguage));
    const QString align = settings.text(keys::page_move_link::kAlign);
    const QString separator = settings.text(keys::page_move_link::kSeparetor);
    const QString monthFile = core::GetFileName(run.diaryFile);
    text.print(u"<div align="_s, align.isEmpty() ? u"Left"_s : align, u" style=margin-left:"_s,
               QString::number(settings.number(keys::day_list::kMarginLeft)), u"pt>"_s);
    if (page == 1)
        text.print(link(monthFile, words.back));
    else if (page != 0)
        printLinkTo(text, run, page - 1, words.back);

    if (page != 0)
        text.print(separator);
    if (lastPageOf(run) == page)
        text.print(link(monthFile, words.toFirst));
    else
        printLinkTo(text, run, page + 1, words.forward);
    text.print(u"</DIV>"_s);
}

} // namespace velloria::site
