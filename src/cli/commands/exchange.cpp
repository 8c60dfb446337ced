#include "cli/command.h"
#include "cli/streams.h"
#include "exchange/diary_export.h"
#include "exchange/foreign_import.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

const exchange::ForeignFormat& importFormat(const Invocation& invocation) {
    if (const exchange::ForeignFormat* format = exchange::foreignFormat(invocation.argument(0)))
        return *format;
    QStringList names;
    for (const exchange::ForeignFormat& format : exchange::foreignFormats())
        names += format.name;
    throw UsageError(u"「%1」という形式はありません (%2 のどれかを指定してください)。"_s.arg(invocation.argument(0),
                                                                                             names.join(u", "_s)));
}

void importDiary(Invocation& invocation) {
    const auto print = [&](const QStringList& days) { invocation.printList(days); };
    const QString path = QFileInfo(invocation.argument(1)).absoluteFilePath();
    if (exchange::importForeignDiary(invocation, importFormat(invocation), path, print) == platform::Outcome::Refused)
        throw Refusal(u"日記のインポートを中止しました。"_s);
}

decltype(exchange::exportMarkdown)* exportFormat(const Invocation& invocation) {
    const QString name = invocation.argument(0);
    if (name == u"markdown"_s)
        return exchange::exportMarkdown;
    if (name == u"json"_s)
        return exchange::exportJsonLines;
    throw UsageError(u"「%1」という形式はありません (markdown か json を指定してください)。"_s.arg(name));
}

void exportDiary(Invocation& invocation) {
    if (invocation.argument(1).isEmpty())
        throw Refusal(u"書き出す先が空なので中止しました。"_s);
    const QString path = QFileInfo(invocation.argument(1)).absoluteFilePath();
    const std::optional<exchange::DiaryExport> told = exportFormat(invocation)(invocation, path);
    if (!told)
        throw Refusal(u"エクスポートを中止しました。前からあったファイルはそのままです。"_s);
    invocation.desk.status(told->text());
    if (told->isUnusual() && !invocation.global.showsEvents)
        writeError(told->text());
    invocation.print(QJsonObject{{u"path"_s, path},
                                 {u"entries"_s, told->entries},
                                 {u"pictures"_s, told->pictures},
                                 {u"missing"_s, QJsonArray::fromStringList(told->missing)},
                                 {u"oddDays"_s, QJsonArray::fromStringList(told->oddDays)}},
                     {{path}});
}

} // namespace

std::vector<Command> exchangeCommands() {
    return {
        {u"exchange import"_s,
         u"FORMAT PATH"_s,
         2,
         2,
         {},
         u"ほかのプログラムの日記をインポートする"_s,
         Start::Needed,
         importDiary,
         [](const Invocation& invocation) { importFormat(invocation); }},
        {u"exchange export"_s,
         u"markdown|json PATH"_s,
         2,
         2,
         {},
         u"すべての日記を、新しいフォルダのMarkdownか、JSONの行のファイルに書き出す"_s,
         Start::Needed,
         exportDiary,
         [](const Invocation& invocation) { exportFormat(invocation); }},
    };
}

} // namespace velloria::cli
