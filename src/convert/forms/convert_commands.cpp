#include "convert/forms/convert_commands.h"

#include "convert/forms/frmHTML2TXTSetting.h"

using namespace Qt::StringLiterals;

namespace velloria::convert {

desktop::MenuCommands convertCommands(desktop::Context& context) {
    return {
        {"MnuHTML2TXT"_L1, {}, [&context] { context.windows.get<frmHTML2TXTSetting>().showWindow(); }},
    };
}

} // namespace velloria::convert
