#include "shell/forms/tool_commands.h"

#include "core/files.h"
#include "platform/plugin.h"
#include "shell/diary_information.h"
#include "shell/forms/frmBackups.h"
#include "shell/forms/frmUserManager.h"
#include "shell/memo.h"
#include "shell/plugins.h"
#include "store/optimize_command.h"

using namespace Qt::StringLiterals;

namespace velloria::shell {
namespace {

void showVersion(desktop::Context& context, const core::File& file) {
    const platform::Plugin plugin(file.in(context.session));
    context.desk.message(platform::MessageKind::Plain, file.name + u" Version "_s + plugin.version(), file.name);
}

/// A close of the main window waits for its last box.
void optimize(desktop::Context& context) {
    if (context.runs.isAnyRunning()) { // it would go on with a diary that is another file now
        context.desk.message(platform::MessageKind::Critical,
                             u"通信が終わってから、データベースを最適化してください。"_s);
        return;
    }
    context.runs.run(desktop::LongRoutine::Optimize, [&context] { store::optimizeCommand(context); });
}

} // namespace

desktop::MenuCommands toolCommands(desktop::Context& context) {
    desktop::MenuCommands commands{
        {"mnuVellMemo"_L1, {}, [&context] { memoCommand(context); }},
        {"MnuBackups"_L1, {}, [&context] { context.windows.get<frmBackups>().showWindow(); }},
        {"MnuUserManager"_L1, {}, [&context] { context.windows.get<frmUserManager>().showWindow(); }},
        {"MnuVellInfo"_L1, {}, [&context] { diaryInformationCommand(context); }},
        {"MnuOptimize"_L1, {}, [&context] { optimize(context); }},
    };
    for (const PluginRow& plugin : plugins())
        commands.push_back({plugin.versionCommand, {}, [&context, &plugin] { showVersion(context, plugin.file); }});
    return commands;
}

} // namespace velloria::shell
