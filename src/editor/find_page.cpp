#include "editor/find_page.h"

#include "core/date_forms.h"
#include "core/day_key.h"
#include "platform/code_page.h"
#include "platform/file_write.h"
#include "site/entry_look.h"
#include "site/local_page.h"
#include "site/site_keys.h"

#include <vector>

using namespace Qt::StringLiterals;

namespace velloria::editor {
namespace {

namespace keys = site::keys;
using site::Page;

/// Text of this size becomes bytes at once: one large block would be copied again and again while it grows.
constexpr qsizetype kPieceSize = 200'000;

/// The day that the text means; nothing for a time alone.
std::optional<QDate> dayOf(const QString& text, int yearNow) {
    const std::optional<QDateTime> moment = core::parseDate(text, yearNow);
    if (!moment)
        return std::nullopt;
    // Behind a day there is room for a time alone.
    if (core::parseDate(u"2004/01/01 "_s + text, yearNow))
        return std::nullopt;
    return moment->date();
}

void printQuestion(Page& page, const Search& search) {
    page.print(u"<p>キーワード："_s, search.word, u"</p>"_s);
    if (search.period)
        page.print(u"<p>期間："_s, search.period->start, u"～"_s, search.period->end, u"</p>"_s);
    else
        page.print();
    if (search.genre)
        page.print(u"<p>ジャンル："_s, *search.genre, u"</p><hr>"_s);
    else
        page.print(u"<hr>"_s);
}

/// The texts of the entry become one, with the word marked.
void markWord(store::Entry& entry, const QString& word) {
    if (!entry.extend.isNull())
        entry.contents = u"\r\n<br>"_s + entry.contents + std::exchange(entry.extend, QString());
    entry.contents.replace(word, u"<span style='font-style:italic;color:RED;background-color:YELLOW'>"_s + word +
                                     u"</span>"_s);
    entry.contents.replace("/DiaryParts"_L1, "/DiaryLog/DiaryParts"_L1);
}

bool isWithin(const std::optional<SearchForm::Dates>& period, const QString& day) {
    return !period || (day >= period->start && day <= period->end);
}

} // namespace

std::optional<Search> checkSearch(const SearchForm& form, const platform::Clock& clock, platform::Desk& desk) {
    const auto refuse = [&](const QString& text) {
        desk.message(platform::MessageKind::Critical, text);
        return std::nullopt;
    };
    if (form.word.isEmpty())
        return refuse(u"検索語が設定されていません。"_s);
    Search search{form.word, std::nullopt, std::nullopt};
    if (form.term) {
        const int yearNow = clock.now().date().year();
        const std::optional<QDate> start = dayOf(form.term->start, yearNow);
        if (!start)
            return refuse(u"開始期間が正しく設定されていません。\r\n(YYYY/MM/DD形式で入力して下さい)"_s);
        const std::optional<QDate> end = dayOf(form.term->end, yearNow);
        if (!end)
            return refuse(u"終了期間が正しく設定されていません。\r\n(YYYY/MM/DD形式で入力して下さい)"_s);
        if (*end < *start)
            return refuse(u"開始と終了期間が逆転しています。\r\n(正しい期間を入力し直して下さい)"_s);
        search.period = {core::dayKey(*start), core::dayKey(*end)};
    }
    if (form.isOfGenre) {
        if (!form.genre)
            return refuse(u"ジャンルが選択されていません。\r\n(ジャンルを選択して下さい)"_s);
        search.genre = form.genre;
    }
    return search;
}

int MakeFindPage(const core::Session& session, const store::DiaryStore& store, const QString& path,
                 const Search& search) {
    const site::SiteSettings settings(session);
    const bool hasList = settings.number(keys::day_list::kUse) != 0;
    const bool hasTitles = settings.isOn(keys::day_list::kAddTitle);
    const site::EntryLook look(settings, QString::fromUtf16(site::kTopOfPage), site::EntriesOf::Search);
    Page top;
    site::printLocalHead(top, settings, u"検索結果"_s);
    printQuestion(top, search);

    // The list comes first on the page, and both are made while the diary is read once.
    std::vector<QByteArray> pieces;
    Page text;
    int count = 0;
    store.FindEntries({search.word, search.genre}, [&](store::Entry& entry) {
        if (!isWithin(search.period, entry.day))
            return;
        ++count;
        if (hasList)
            top.print(u"<a href=\"#"_s, entry.day, u'_', QString::number(entry.number), u"\">["_s, entry.day, u']',
                      hasTitles ? entry.title : QString(), u"</a><br>"_s);
        markWord(entry, search.word);
        text.print(u"<A Name=\""_s, entry.day, u"\"></A>"_s);
        look.print(text, entry);
        if (text.text().size() > kPieceSize) {
            pieces.push_back(platform::toCodePage(text.text()));
            text.clear();
        }
    });
    pieces.push_back(platform::toCodePage(text.text()));
    if (hasList) {
        if (count == 0)
            top.print(u"検索結果0件。"_s);
        top.print(u"</div><hr>"_s);
    }
    const auto produce = [&](const platform::WriteBytes& write) {
        write(platform::toCodePage(top.text()));
        for (const QByteArray& piece : pieces)
            write(piece);
        write("</BODY></HTML>\r\n");
    };
    platform::replaceFile(path, produce, platform::Durability::Derived);
    return count;
}

QString findCaption(int count) {
    return u"検索結果(%1件見つかりました)"_s.arg(count);
}

QString findStatus(const QString& word, int count) {
    return u"検索結果(キーワード"_s + word + u"で%1件見つかりました)"_s.arg(count);
}

} // namespace velloria::editor
