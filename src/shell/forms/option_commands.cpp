#include "shell/forms/option_commands.h"

#include "shell/forms/frmOptions.h"

using namespace Qt::StringLiterals;

namespace velloria::shell {

desktop::MenuCommands optionCommands(desktop::Context& context) {
    return {
        {"MnuPref"_L1, {}, [&context] { context.windows.get<frmOptions>().showWindow(); }},
    };
}

} // namespace velloria::shell
