#include "site/page_move_links.h"

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

void printLinkTo(Page& text, const MonthRun& run, int page, const QString& word) {
    if (const std::optional<QString> name = run.plan.nameOf(page))
        text.print(u"<A HREF=\"./"_s, *name, u"\">"_s, word, u"</A>"_s);
}

} // namespace

void printPageMoveLinks(Page& text, const MonthRun& run, int page) {
    const SiteSettings& settings = run.settings;
    const Words words = wordsOf(settings.text(keys::page_move_link::kLanguage));
    const QString align = settings.text(keys::page_move_link::kAlign);
    const QString separator = settings.text(keys::page_move_link::kSeparetor);
    text.print(u"<div align="_s, align.isEmpty() ? u"Left"_s : align, u" style=margin-left:"_s,
               QString::number(settings.number(keys::day_list::kMarginLeft)), u"pt>"_s);
    if (page != 0) {
        printLinkTo(text, run, page - 1, words.back);
        text.print(separator);
    }
    if (run.plan.oldestPage() == page)
        printLinkTo(text, run, 0, words.toFirst);
    else
        printLinkTo(text, run, page + 1, words.forward);
    text.print(u"</DIV>"_s);
}

} // namespace velloria::site
