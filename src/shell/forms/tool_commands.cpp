#include "shell/forms/tool_commands.h"

#include "core/files.h"
#include "platform/plugin.h"
#include "shell/diary_information.h"
#include "shell/memo.h"

using namespace Qt::StringLiterals;

namespace velloria::shell {
namespace {

void showVersion(desktop::Context& context, const QString& fileName) {
    const platform::Plugin plugin(context.session.MyPath + fileName);
    context.desk.message(platform::MessageKind::Plain, fileName + u" Version "_s + plugin.version(), fileName);
}

} // namespace

desktop::MenuCommands toolCommands(desktop::Context& context) {
    const auto version = [&context](const core::File& file) {
        return [&context, file] { showVersion(context, file); };
    };
    return {
        {"mnuVellMemo"_L1, {}, [&context] { memoCommand(context); }},
        {"MnuVellInfo"_L1, {}, [&context] { diaryInformationCommand(context); }},
        {"MnuChimerDll"_L1, {}, version(u"Chimer.dll"_s)},
        {"MnuLarkportDll"_L1, {}, version(u"Larkport.dll"_s)},
        {"MnuWrenportDll"_L1, {}, version(u"Wrenport.dll"_s)},
        {"MnuVellInfoDll"_L1, {}, version(u"VellInfo.dll"_s)},
    };
}

} // namespace velloria::shell
