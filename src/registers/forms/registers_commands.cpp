#include "registers/forms/registers_commands.h"

#include "registers/forms/frmResistFiles.h"
#include "registers/forms/frmResistLogs.h"

using namespace Qt::StringLiterals;

namespace velloria::registers {

desktop::MenuCommands registersCommands(desktop::Context& context) {
    return {
        {"ResistLogs"_L1, {}, [&context] { context.windows.get<frmResistLogs>().showWindow(); }},
        {"ResistOtherFiles"_L1, {}, [&context] { context.windows.get<frmResistFiles>().showWindow(); }},
    };
}

} // namespace velloria::registers
