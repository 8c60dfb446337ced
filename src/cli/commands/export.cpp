#include "exchange/export.h"
#include "cli/command.h"
#include "cli/streams.h"
#include "core/day_key.h"

#include <QFileInfo>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

using exchange::ExportSettings;

/// The value's place among the words that the option takes.
template <typename Value>
Value choiceOf(const Invocation& invocation, const QString& option, const QString& whenMissing,
               const std::vector<std::pair<QString, Value>>& choices) {
    const QString word = invocation.has(option) ? invocation.option(option) : whenMissing;
    QStringList words;
    for (const auto& [name, value] : choices) {
        if (name == word)
            return value;
        words += name;
    }
    throw UsageError(u"オプション %1 の値「%2」は使えません (%3 のどれかを指定してください)。"_s.arg(
        option, word, words.join(u", "_s)));
}

bool isNumber(const QString& text) {
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

store::Period periodOf(const QString& text) {
    using Kind = store::Period::Kind;
    const QStringList parts = text.split(u':');
    if (parts.size() == 3 && parts[0] == u"user"_s && core::isDayKey(parts[1]) && core::isDayKey(parts[2]))
        return {Kind::Between, parts[1], parts[2]};
    if (parts.size() == 3 && parts[0] == u"month"_s && isNumber(parts[1]) && isNumber(parts[2]))
        return exchange::exportMonth(parts[1], parts[2]);
    if (parts.size() == 2 && parts[0] == u"day"_s && core::isDayKey(parts[1]))
        return {Kind::Day, parts[1], {}};
    throw UsageError(u"「%1」という期間はありません (user:2004/01/01:2004/01/31、month:2004:1、day:2004/01/01 の"
                     "ように指定してください)。"_s.arg(text));
}

ExportSettings settingsOf(const Invocation& invocation) {
    ExportSettings settings;
    settings.period = periodOf(invocation.option(u"--period"_s));
    const QString format = invocation.option(u"--format"_s);
    if (format.contains(u'/'))
        throw UsageError(u"「%1」という形式はありません (TEXT、HTML か、フォルダExportFormatのファイルの名前を"
                         "指定してください)。"_s.arg(format));
    if (format != u"TEXT"_s) {
        settings.format = format == u"HTML"_s ? exchange::ExportFormat::Html : exchange::ExportFormat::User;
        settings.userFormat = format;
    }
    settings.contents = choiceOf<exchange::ExportContents>(
        invocation, u"--contents"_s, {},
        {{u"raw"_s, exchange::ExportContents::AsTheyAre}, {u"text"_s, exchange::ExportContents::Converted}});
    settings.unit = choiceOf<exchange::ExportUnit>(
        invocation, u"--unit"_s, {},
        {{u"one"_s, exchange::ExportUnit::OneFile}, {u"divide"_s, exchange::ExportUnit::Divided}});
    settings.name = choiceOf<exchange::ExportName>(
        invocation, u"--name"_s, u"day"_s,
        {{u"day"_s, exchange::ExportName::Day}, {u"title"_s, exchange::ExportName::Title}});
    settings.direction = choiceOf<store::SortDirection>(
        invocation, u"--sort"_s, u"asc"_s,
        {{u"asc"_s, store::SortDirection::Ascending}, {u"desc"_s, store::SortDirection::Descending}});
    return settings;
}

void exportDiary(Invocation& invocation) {
    const ExportSettings settings = settingsOf(invocation);
    exchange::clsExport work(invocation, settings);
    switch (work.run(invocation.option(u"--out"_s))) {
    case exchange::ExportOutcome::Done:
        break;
    case exchange::ExportOutcome::Refused:
        throw Refusal(u"何も書き出していません。"_s);
    case exchange::ExportOutcome::Cancelled:
        throw Refusal(u"書き出す先が空なので中止しました。"_s);
    }
    const exchange::ExportCounts& counts = work.counts();
    if (counts.isUnusual() && !invocation.global.showsEvents)
        writeError(counts.text());
    invocation.print(QJsonObject{{u"path"_s, work.path()},
                                 {u"entries"_s, counts.entries},
                                 {u"replaced"_s, counts.replaced},
                                 {u"overwritten"_s, counts.overwritten},
                                 {u"lost"_s, counts.lost},
                                 {u"references"_s, counts.references}},
                     {{work.path()}});
}

} // namespace

std::vector<Command> exportCommands() {
    return {{u"export"_s,
             u"--period user:FROM:TO|month:Y:M|day:D --format TEXT|HTML|FILE --contents raw|text --unit one|divide "
             "[--name day|title] [--sort asc|desc] --out PATH"_s,
             0,
             0,
             {{u"--period"_s, u"PERIOD"_s, true},
              {u"--format"_s, u"TEXT|HTML|FILE"_s, true},
              {u"--contents"_s, u"raw|text"_s, true},
              {u"--unit"_s, u"one|divide"_s, true},
              {u"--name"_s, u"day|title"_s},
              {u"--sort"_s, u"asc|desc"_s},
              {u"--out"_s, u"PATH"_s, true}},
             u"日記をテキストやHTMLのファイルに書き出す (PERIOD: user:FROM:TO, month:Y:M, day:D)"_s,
             Start::Needed,
             exportDiary,
             [](const Invocation& invocation) { settingsOf(invocation); }}};
}

} // namespace velloria::cli
