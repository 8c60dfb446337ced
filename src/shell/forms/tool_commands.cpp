#include "shell/forms/tool_commands.h"

#include "core/files.h"
#include "platform/plugin.h"
#include "shell/diary_information.h"
#include "shell/memo.h"

using namespace Qt::StringLiterals;

namespace velloria::shell {
namespace {

void showVersion(desktop::Context& context, const core::File& file) {
    const platform::Plugin plugin(file.in(context.session));
    context.desk.message(platform::MessageKind::Plain, file.name + u" Version "_s + plugin.version(), file.name);
}

} // namespace

desktop::MenuCommands toolCommands(desktop::Context& context) {
    const auto version = [&context](const core::File& file) {
        return [&context, file] { showVersion(context, file); };
    };
    return {
        {"mnuVellMemo"_L1, {}, [&context] { memoCommand(context); }},
        {"MnuVellInfo"_L1, {}, [&context] { diaryInformationCommand(context); }},
        {"MnuChimerDll"_L1, {}, version(core::files::kChimer)},
        {"MnuLarkportDll"_L1, {}, version(core::files::kLarkport)},
        {"MnuWrenportDll"_L1, {}, version(core::files::kWrenport)},
        {"MnuVellInfoDll"_L1, {}, version(core::files::kVellInfo)},
    };
}

} // namespace velloria::shell
