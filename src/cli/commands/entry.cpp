#include "cli/command.h"
#include "core/day_key.h"
#include "platform/failure.h"
#include "platform/utf8.h"
#include "site/save_html.h"
#include "store/entry_line.h"
#include "store/genre_list.h"
#include "store/rescue_file.h"

#include <QJsonArray>
#include <QSet>

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

QJsonObject toListJson(const store::Entry& entry) {
    return {{u"Day"_s, entry.day},     {u"Number"_s, entry.number},   {u"Title"_s, entry.title},
            {u"Genre"_s, entry.genre}, {u"Weather"_s, entry.weather}, {u"Private"_s, entry.isPrivate}};
}

QStringList toListRow(const store::Entry& entry) {
    return {entry.day,     QString::number(entry.number),    entry.title, entry.genre,
            entry.weather, entry.isPrivate ? u"1"_s : u"0"_s};
}

void list(Invocation& invocation) {
    const QString from = invocation.option(u"--from"_s);
    const QString to = invocation.option(u"--to"_s);
    QJsonArray json;
    std::vector<QStringList> rows;
    for (const store::Entry& stored : invocation.store().EntryListOfMonth(invocation.option(u"--month"_s))) {
        if ((!from.isNull() && stored.day < from) || (!to.isNull() && stored.day > to))
            continue;
        const store::Entry entry = store::withDefaults(stored);
        json += toListJson(entry);
        rows.push_back(toListRow(entry));
    }
    invocation.print(json, rows);
}

/// With --as-stored the day may be one that an import stored and that is no date.
void checkDay(const Invocation& invocation) {
    const QString day = invocation.argument(0);
    if (!invocation.has(u"--as-stored"_s) && !core::isDayKey(day))
        throw UsageError(u"「%1」という日はありません (yyyy/mm/dd で指定してください)。"_s.arg(day));
}

void show(Invocation& invocation) {
    const QString day = invocation.argument(0);
    std::vector<store::Entry> entries;
    const bool isOne = invocation.arguments.size() == 2;
    if (isOne) {
        const int number = numberArgument(invocation.argument(1));
        const std::optional<store::Entry> entry = invocation.store().LoadEntry(day, number);
        if (!entry)
            throw Refusal(u"%1 の%2番目の日記はありません。"_s.arg(day).arg(number));
        entries.push_back(*entry);
    } else {
        entries = invocation.store().LoadDay(day);
    }
    QJsonArray json;
    std::vector<QStringList> rows;
    for (const store::Entry& stored : entries) {
        const store::Entry entry = store::withDefaults(stored);
        json += store::toJson(entry);
        rows.push_back(toListRow(entry) +
                       QStringList{entry.publishTime, entry.contents, entry.extend, entry.excerpt, entry.importMark});
    }
    invocation.print(isOne ? QJsonValue(json.first()) : QJsonValue(json), rows);
}

/// Reads all lines before anything is saved: one bad line refuses the whole input.
std::vector<store::EntryLine> readLines(const QString& file) {
    const QByteArray bytes = readArgumentFile(file);
    const QByteArrayView input = platform::withoutSignature(bytes);
    std::vector<store::EntryLine> lines;
    int number = 0;
    for (qsizetype start = 0; start < input.size();) {
        qsizetype end = input.indexOf('\n', start);
        if (end < 0)
            end = input.size();
        const QByteArray line = input.sliced(start, end - start).toByteArray().trimmed();
        start = end + 1;
        ++number;
        if (line.isEmpty())
            continue;
        try {
            lines.push_back(store::parseEntryLine(line));
        } catch (const platform::Failure& failure) {
            throw platform::Failure(u"%1行目を読み取れません。"_s.arg(number), shownFile(file), failure.reason(),
                                    u"何も保存していません。直してから、もう一度実行してください。"_s);
        }
    }
    return lines;
}

/// A change of the diary. When it is refused, nothing is lost and the rescue file needs no line of it.
template <typename Change>
auto orForget(store::RescueFile& rescue, Change change) {
    try {
        return change();
    } catch (...) {
        rescue.forget();
        throw;
    }
}

void put(Invocation& invocation) {
    const store::DiaryStore store = invocation.store();
    std::vector<store::EntryLine> lines = readLines(invocation.argument(0));
    QStringList genres;
    QSet<QString> knownGenres;
    for (const store::EntryLine& line : lines) {
        if (!knownGenres.contains(line.entry.genre)) {
            knownGenres.insert(line.entry.genre);
            genres += line.entry.genre;
        }
    }
    store::RescueFile rescue(invocation);
    const auto times = invocation.has(u"--keep-time"_s) ? store::PublishTime::AsGiven : store::PublishTime::Now;
    const auto keys = orForget(rescue, [&] {
        return store.saveLines(std::move(lines), times,
                               [&](const std::vector<store::Entry>& rows) { rescue.keep(rows, u"上書き"_s); });
    });
    QJsonArray json;
    std::vector<QStringList> rows;
    for (const store::EntryKey& key : keys) {
        invocation.desk.status(key.day + u"の日記を保存しました。"_s);
        if (invocation.global.isJson)
            json += QJsonObject{{u"Day"_s, key.day}, {u"Number"_s, key.number}};
        else
            rows.push_back({key.day, QString::number(key.number)});
    }
    try {
        store::addGenres(invocation, genres);
        invocation.print(json, rows);
    } catch (platform::Failure& failure) {
        failure.addStage(u"日記は保存しました"_s); // nobody is to save them twice
        throw;
    }
}

void remove(Invocation& invocation) {
    const QString day = invocation.argument(0);
    const int number = numberArgument(invocation.argument(1));
    platform::Desk& desk = invocation.desk;
    if (!desk.ask(u"%1の%2番目の日記を削除します。"_s.arg(day).arg(number))) {
        desk.status(u"日記の削除を中止しました。"_s);
        throw Refusal(u"日記の削除を中止しました。"_s);
    }
    const platform::Hourglass hourglass(desk);
    const store::DiaryStore store = invocation.store();
    store::RescueFile rescue(invocation);
    orForget(rescue, [&] {
        store.DeleteEntry(day, number, [&](const std::vector<store::Entry>& rows) { rescue.keep(rows, u"削除"_s); });
    });
    invocation.session.EnterDay = day;
    site::SaveHtml saver(invocation);
    bool hasPreview = true;
    try {
        saver.previewStep();
    } catch (const platform::Failure& failure) {
        desk.failure(failure); // the deletion stands
        hasPreview = false;
        desk.status(u"Webページ表示中..."_s);
        desk.navigate(invocation.session.DataPath + u"tmp.htm#"_s + day);
    }
    desk.status(day + u"の日記を削除しました。"_s);
    if (!hasPreview)
        throw Refusal(u"日記は削除しましたが、プレビューを作成できませんでした。"_s);
}

void days(Invocation& invocation) {
    const QString month = invocation.option(u"--month"_s);
    const QStringList days = invocation.has(u"--public"_s) ? invocation.store().PublicDaysOfMonth(month)
                                                           : invocation.store().DaysOfMonth(month);
    std::vector<QStringList> rows;
    for (const QString& day : days)
        rows.push_back({day});
    invocation.print(QJsonArray::fromStringList(days), rows);
}

} // namespace

std::vector<Command> entryCommands() {
    const OptionSpec month{u"--month"_s, u"yyyy/mm"_s};
    return {
        {u"entry list"_s,
         u"[--month M] [--from D] [--to D]"_s,
         0,
         0,
         {month, {u"--from"_s, u"yyyy/mm/dd"_s}, {u"--to"_s, u"yyyy/mm/dd"_s}},
         u"日、番号、タイトル、ジャンル、天気、非公開 (1) の一覧"_s,
         Start::Needed,
         list},
        {u"entry show"_s,
         u"DAY [NUMBER] [--as-stored]"_s,
         1,
         2,
         {{u"--as-stored"_s, {}}},
         u"1件、またはその日のすべての日記 (日付でない日は --as-stored)"_s,
         Start::Needed,
         show,
         checkDay},
        {u"entry put"_s,
         u"[--keep-time] [FILE]"_s,
         0,
         1,
         {{u"--keep-time"_s, {}}},
         u"1行1件のJSONから日記を保存する (全部か、まったく保存しないか)"_s,
         Start::Needed,
         put},
        {u"entry delete"_s,
         u"DAY NUMBER [--as-stored]"_s,
         2,
         2,
         {{u"--as-stored"_s, {}}},
         u"削除し、その日の番号を詰める (日付でない日は --as-stored)"_s,
         Start::Needed,
         remove,
         checkDay},
        {u"entry days"_s,
         u"--month M [--public]"_s,
         0,
         0,
         {{month.name, month.value, true}, {u"--public"_s, {}}},
         u"日記のある日"_s,
         Start::Needed,
         days},
    };
}

} // namespace velloria::cli
