#include "cli/command.h"
#include "cli/streams.h"
#include "exchange/customize_exchange.h"
#include "site/customize_sets.h"
#include "site/save_html.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

/// The name as it is spelt on the disk.
QString setOf(const QStringList& names, const QString& name) {
    if (names.contains(name))
        return name;
    const auto found = std::ranges::find_if(
        names, [&](const QString& candidate) { return candidate.compare(name, Qt::CaseInsensitive) == 0; });
    if (found == names.end())
        throw Refusal(u"そのカスタマイズセットはありません: "_s + name);
    return *found;
}

/// The answer to a file dialog, which gives full paths; "" stays its cancel.
QString answerOf(const QString& path) {
    return path.isEmpty() ? path : QFileInfo(path).absoluteFilePath();
}

void list(Invocation& invocation) {
    const QString selected = site::selectedCustomizeSet(invocation.session);
    QJsonArray json;
    std::vector<QStringList> rows;
    for (const QString& name : site::customizeSets(invocation.session)) {
        const bool isSelected = name.compare(selected, Qt::CaseInsensitive) == 0;
        json += QJsonObject{{u"Name"_s, name}, {u"Selected"_s, isSelected}};
        rows.push_back({name, isSelected ? u"1"_s : u"0"_s});
    }
    invocation.print(json, rows);
}

void select(Invocation& invocation) {
    site::selectCustomizeSet(invocation.session,
                             setOf(site::customizeSets(invocation.session), invocation.argument(0)));
    site::SaveHtml(invocation).previewStep();
}

void printFile(const Invocation& invocation, const QString& file) {
    invocation.print(QJsonObject{{u"file"_s, file}}, {{file}});
}

void importSet(Invocation& invocation) {
    exchange::CustomizeExchange exchange(invocation, answerOf(invocation.argument(0)));
    if (!exchange.importCommand())
        throw Refusal(u"カスタマイズファイルを取り込みませんでした。"_s);
    if (!exchange.remark().isEmpty() && !invocation.global.showsEvents)
        writeError(exchange.remark());
    printFile(invocation, exchange.importedFile());
}

exchange::CustomizeFormat formatOf(const Invocation& invocation) {
    const QString word = invocation.option(u"--format"_s);
    if (word == u"ini"_s)
        return exchange::CustomizeFormat::Ini;
    if (word == u"cst"_s)
        return exchange::CustomizeFormat::Cst;
    throw UsageError(u"オプション --format の値「%1」は使えません (ini か cst を指定してください)。"_s.arg(word));
}

void exportSet(Invocation& invocation) {
    const exchange::CustomizeAuthor author{invocation.option(u"--name"_s), invocation.option(u"--url"_s),
                                           invocation.option(u"--email"_s)};
    const QString name = setOf(site::allCustomizeSets(invocation.session), invocation.argument(0));
    exchange::CustomizeExchange exchange(invocation, answerOf(invocation.option(u"--out"_s)));
    if (!exchange.exportCommand(name, formatOf(invocation), author))
        throw Refusal(u"書き出す先が空なので、カスタマイズセットを書き出していません。"_s);
    printFile(invocation, exchange.exportedFile());
}

} // namespace

std::vector<Command> customizeCommands() {
    return {
        {u"customize list"_s, {}, 0, 0, {}, u"カスタマイズセットの一覧"_s, Start::Needed, list},
        {u"customize select"_s,
         u"NAME"_s,
         1,
         1,
         {},
         u"カスタマイズセットを選択してプレビューを作る"_s,
         Start::Needed,
         select},
        {u"customize import"_s,
         u"FILE"_s,
         1,
         1,
         {},
         u"カスタマイズファイルを取り込む (選択はそのまま)"_s,
         Start::Needed,
         importSet},
        {u"customize export"_s,
         u"NAME --format ini|cst [--name NAME] [--url URL] [--email ADDRESS] --out PATH"_s,
         1,
         1,
         {{u"--format"_s, u"ini|cst"_s, true},
          {u"--name"_s, u"NAME"_s},
          {u"--url"_s, u"URL"_s},
          {u"--email"_s, u"ADDRESS"_s},
          {u"--out"_s, u"PATH"_s, true}},
         u"カスタマイズセットを書き出す (ini: すべて, cst: 配布用)"_s,
         Start::Needed,
         exportSet,
         [](const Invocation& invocation) { formatOf(invocation); }},
    };
}

} // namespace velloria::cli
