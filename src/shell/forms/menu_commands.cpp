#include "shell/forms/menu_commands.h"

#include "browser/forms/browser_commands.h"
#include "convert/forms/convert_commands.h"
#include "editor/forms/editor_commands.h"
#include "exchange/forms/exchange_commands.h"
#include "publish/forms/publish_commands.h"
#include "registers/forms/registers_commands.h"
#include "shell/forms/help_commands.h"
#include "shell/forms/option_commands.h"
#include "shell/forms/tool_commands.h"
#include "shell/forms/window_commands.h"
#include "site/forms/site_commands.h"

namespace velloria::shell {

desktop::MenuCommands menuCommands(desktop::Context& context) {
    desktop::MenuCommands all;
    for (const auto table : {browser::browserCommands, convert::convertCommands, editor::editorCommands,
                             exchange::exchangeCommands, publish::publishCommands, registers::registersCommands,
                             site::siteCommands, helpCommands, optionCommands, toolCommands, windowCommands}) {
        for (desktop::MenuCommand& command : table(context))
            all.push_back(std::move(command));
    }
    return all;
}

} // namespace velloria::shell
