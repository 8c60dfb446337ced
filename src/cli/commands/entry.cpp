#include "cli/command.h"
#include "core/day_key.h"
#include "core/files.h"
#include "platform/failure.h"
#include "platform/utf8.h"
#include "site/delete_command.h"
#include "store/entry_line.h"
#include "store/saving.h"

#include <QJsonArray>

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

void put(Invocation& invocation) {
    std::vector<store::EntryLine> lines = readLines(invocation.argument(0));
    const auto times = invocation.has(u"--keep-time"_s) ? store::PublishTime::AsGiven : store::PublishTime::Now;
    const std::vector<store::EntryKey> keys = store::saveLines(invocation, std::move(lines), times);
    store::runAfterSave([&] {
        QJsonArray json;
        std::vector<QStringList> rows;
        for (const store::EntryKey& key : keys) {
            if (invocation.global.isJson)
                json += QJsonObject{{u"Day"_s, key.day}, {u"Number"_s, key.number}};
            else
                rows.push_back({key.day, QString::number(key.number)});
        }
        invocation.print(json, rows);
    });
}

void remove(Invocation& invocation) {
    const QString day = invocation.argument(0);
    const int number = numberArgument(invocation.argument(1));
    switch (site::deleteCommand(invocation, day, number, [&] {
        store::deleteEntry(invocation, day, number);
        invocation.session.EnterDay = day;
    })) {
    case site::Deletion::Done:
        break;
    case site::Deletion::Refused:
        throw Refusal(site::kDeletionRefused);
    case site::Deletion::WithoutPreview:
        throw Refusal(u"日記は削除しましたが、プレビューを作成できませんでした。"_s);
    }
}

void days(Invocation& invocation) {
    const QString month = invocation.option(u"--month"_s);
    const QStringList days = invocation.has(u"--public"_s) ? invocation.store().PublicDaysOfMonth(month)
                                                           : invocation.store().DaysOfMonth(month);
    invocation.printList(days);
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
