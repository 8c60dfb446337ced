#include "cli/command.h"
#include "exchange/foreign_import.h"

#include <QFileInfo>

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
    };
}

} // namespace velloria::cli
