#include "site/find_page.h"

#include "core/date_forms.h"
#include "core/day_key.h"
#include "core/files.h"
#include "core/long_text.h"
#include "core/site_keys.h"
#include "platform/code_page.h"
#include "platform/file_write.h"
#include "site/entry_look.h"
#include "site/local_page.h"
#include "store/diary_store.h"

#include <vector>

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

namespace keys = site::keys;
using site::Page;

/// Bytes are written in pieces of about this size.
constexpr qsizetype kPieceSize = 200'000;

/// Where the body goes in an entry's look. Nothing that a person wrote stands behind the body.
constexpr QChar kBodyPlace(0xFFFF);

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

/// The texts of the entry as one.
QString bodyOf(const store::Entry& entry) {
    return entry.extend.isNull() ? entry.contents : u"\r\n<br>"_s + entry.contents + entry.extend;
}

/// Text as it goes to the page. An address stands in one piece of it: a mark within makes it another text.
QByteArray pageBytes(const QString& text) {
    return platform::toCodePage(core::replaced(text, u"/DiaryParts"_s, u"/DiaryLog/DiaryParts"_s));
}

/// The entries of the page, written one by one: a word that is marked a million times takes a hundred times its room.
class EntryWriter {
public:
    EntryWriter(const site::EntryLook& look, const QString& word, const platform::WriteBytes& write)
        : m_look(look)
        , m_word(word)
        , m_marked(
              pageBytes(u"<span style='font-style:italic;color:RED;background-color:YELLOW'>"_s + word + u"</span>"_s))
        , m_write(write) {}

    void add(store::Entry entry) {
        const QString body = bodyOf(entry);
        entry.contents = kBodyPlace;
        entry.extend = QString();
        Page page;
        page.print(u"<A Name=\""_s, entry.day, u"\"></A>"_s);
        m_look.print(page, entry);
        const qsizetype place = page.text().lastIndexOf(kBodyPlace);
        m_bytes += platform::toCodePage(page.text().first(place));
        addMarked(body);
        m_bytes += platform::toCodePage(page.text().sliced(place + 1));
        if (m_bytes.size() > kPieceSize)
            finish();
    }

    void finish() {
        m_write(m_bytes);
        m_bytes.resize(0); // and keeps its room
    }

private:
    void addMarked(const QString& body) {
        qsizetype begin = 0;
        for (qsizetype at = body.indexOf(m_word); at >= 0; at = body.indexOf(m_word, begin)) {
            if (at > begin)
                m_bytes += pageBytes(body.sliced(begin, at - begin));
            m_bytes += m_marked;
            begin = at + m_word.size();
            if (m_bytes.size() > kPieceSize)
                finish();
        }
        m_bytes += pageBytes(body.sliced(begin));
    }

    const site::EntryLook& m_look;
    const QString& m_word;
    const QByteArray m_marked;
    const platform::WriteBytes& m_write;
    QByteArray m_bytes;
};

bool isWithin(const std::optional<SearchForm::Dates>& period, const QString& day) {
    return !period || (day >= period->start && day <= period->end);
}

} // namespace

std::optional<Search> checkSearch(const core::Run& run, const SearchForm& form) {
    const auto refuse = [&](const QString& text) {
        run.desk.message(platform::MessageKind::Critical, text);
        return std::nullopt;
    };
    if (form.word.isEmpty())
        return refuse(u"検索語が設定されていません。"_s);
    Search search{form.word, std::nullopt, std::nullopt};
    if (form.term) {
        const int yearNow = run.clock.now().date().year();
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

int MakeFindPage(const core::Run& run, const QString& path, const Search& search) {
    const site::SiteSettings settings(run.session);
    const bool hasList = settings.number(keys::day_list::kUse) != 0;
    const bool hasTitles = settings.isOn(keys::day_list::kAddTitle);
    const site::EntryLook look(settings, QString::fromUtf16(site::kTopOfPage), site::EntriesOf::Search);
    Page top;
    site::printLocalHead(top, settings, u"検索結果"_s);
    printQuestion(top, search);

    // The list comes first on the page, and the diary is read once: the entries wait for their turn.
    std::vector<store::Entry> found;
    store::DiaryStore(run).FindEntries({search.word, search.genre}, [&](store::Entry& entry) {
        if (!isWithin(search.period, entry.day))
            return;
        if (hasList)
            top.print(u"<a href=\"#"_s, entry.day, u'_', QString::number(entry.number), u"\">["_s, entry.day, u']',
                      hasTitles ? entry.title : QString(), u"</a><br>"_s);
        found.push_back(std::move(entry));
    });
    if (hasList) {
        if (found.empty())
            top.print(u"検索結果0件。"_s);
        top.print(u"</div><hr>"_s);
    }
    const auto produce = [&](const platform::WriteBytes& write) {
        write(platform::toCodePage(top.text()));
        EntryWriter entries(look, search.word, write);
        for (const store::Entry& entry : found)
            entries.add(entry);
        entries.finish();
        write("</BODY></HTML>\r\n");
    };
    const unsigned mode = site::localPageMode(run.session);
    platform::limitMode(path, mode);
    platform::replaceFile(path, produce, platform::Durability::Derived, mode);
    return int(found.size());
}

std::optional<Found> findCommand(const core::Run& run, const SearchForm& form, const ShowPage& show) {
    const std::optional<Search> search = checkSearch(run, form);
    if (!search)
        return std::nullopt;
    const platform::Hourglass hourglass(run.desk);
    const QString file = core::files::kFindPage.in(run.session);
    const int count = MakeFindPage(run, file, *search);
    show(u"検索結果(%1件見つかりました)"_s.arg(count), file);
    run.desk.status(u"検索結果(キーワード"_s + search->word + u"で%1件見つかりました)"_s.arg(count));
    return Found{file, count};
}

} // namespace velloria::site
