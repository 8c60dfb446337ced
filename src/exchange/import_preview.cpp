#include "exchange/import_preview.h"

#include "core/day_key.h"
#include "platform/text_fold.h"
#include "store/diary_store.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

constexpr qsizetype kMostNamedDays = 10;

QString named(const QStringList& days) {
    if (days.size() <= kMostNamedDays)
        return days.join(u", "_s);
    return u"%1～%2"_s.arg(days.constFirst(), days.constLast());
}

qsizetype knownAmong(const QStringList& days, const store::DiaryStore& store) {
    QSet<QString> known;
    for (const store::EntryKey& key : store.AllEntryKeys())
        known.insert(key.day);
    return std::ranges::count_if(days, [&](const QString& day) { return known.contains(day); });
}

QString newGroup(const core::Run& run, const QString& program, const store::DiaryStore& store) {
    QSet<QString> taken;
    for (const QString& mark : store.ListImportBatches())
        taken.insert(platform::fold(mark));
    const QString first = u"%1 %2"_s.arg(core::dayKey(run.clock.now().date()), program);
    QString group = first;
    for (int number = 2; taken.contains(platform::fold(group)); ++number)
        group = u"%1(%2)"_s.arg(first).arg(number);
    return group;
}

} // namespace

std::optional<QString> beginImport(const core::Run& run, const platform::ImportPlan& plan) {
    const store::DiaryStore store(run);
    QStringList days = plan.days;
    days.sort();
    days.removeDuplicates();
    QString question = u"%1から%2件の日記をインポートします。\r\n日付: %3 (%4日)\r\n"_s.arg(plan.program)
                           .arg(plan.days.size())
                           .arg(named(days))
                           .arg(days.size());
    if (const qsizetype known = knownAmong(days, store))
        question += u"すでに日記がある日: %1日 (今の日記の後ろに追加します)\r\n"_s.arg(known);
    if (!plan.notes.isEmpty())
        question += plan.notes + u"\r\n"_s;
    if (!run.desk.ask(question + u"\r\nインポートしますか？"_s))
        return std::nullopt;
    return newGroup(run, plan.program, store);
}

} // namespace velloria::exchange
