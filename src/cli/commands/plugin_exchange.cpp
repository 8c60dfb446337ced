#include "exchange/plugin_exchange.h"
#include "cli/command.h"
#include "platform/failure.h"
#include "store/genre_list.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

using exchange::PluginFormat;

/// The plug-in gets a full path.
QString fileArgument(const Invocation& invocation) {
    const QString file = invocation.argument(0);
    return file.isEmpty() ? file : QFileInfo(file).absoluteFilePath();
}

/// A failure of these commands makes no event of its own, as in the windows: it is on the status panel, and on standard
/// error.
template <typename Action>
void quietly(Invocation& invocation, const QString& whenRefused, const Action& action) {
    try {
        if (action() == platform::Outcome::Refused)
            throw Refusal(whenRefused);
    } catch (const platform::Failure& failure) {
        invocation.desk.notice(failure.line());
        throw Refusal(failure.line());
    }
}

template <PluginFormat format>
void importFile(Invocation& invocation) {
    quietly(invocation, u"インポートを中止しました。"_s, [&] {
        return exchange::importThroughPlugin(invocation, format, fileArgument(invocation),
                                             {.makeGenres = [&] { store::MakeGenretxt(invocation); },
                                              .written = [&](const QStringList& days) { invocation.printList(days); }});
    });
}

template <PluginFormat format>
void exportFile(Invocation& invocation) {
    quietly(invocation, u"エクスポートを中止しました。前からあったファイルはそのままです。"_s,
            [&] { return exchange::exportThroughPlugin(invocation, format, fileArgument(invocation)); });
}

Command commandOf(const QString& name, const QString& help, void (*run)(Invocation&)) {
    return {name, u"FILE"_s, 1, 1, {}, help, Start::Needed, run};
}

} // namespace

std::vector<Command> pluginExchangeCommands() {
    return {
        commandOf(u"mt import"_s, u"MovableType形式のファイルから日記を取り込む"_s,
                  importFile<PluginFormat::MovableType>),
        commandOf(u"mt export"_s, u"日記をMovableType形式のファイルに書き出す"_s,
                  exportFile<PluginFormat::MovableType>),
        commandOf(u"hatena import"_s, u"はてな形式のファイルから日記を取り込む"_s, importFile<PluginFormat::Hatena>),
        commandOf(u"hatena export"_s, u"日記をはてな形式のファイルに書き出す"_s, exportFile<PluginFormat::Hatena>),
    };
}

} // namespace velloria::cli
