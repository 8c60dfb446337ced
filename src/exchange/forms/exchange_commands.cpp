#include "exchange/forms/exchange_commands.h"

#include "desktop/clipboard.h"
#include "desktop/command.h"
#include "exchange/clipboard_import.h"
#include "exchange/customize_exchange.h"
#include "exchange/forms/frmDeleteImportDiary.h"
#include "exchange/forms/frmExport.h"
#include "exchange/forms/frmExportCust.h"
#include "exchange/forms/frmOtherFormats.h"
#include "exchange/plugin_exchange.h"
#include "site/save_html.h"

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

void importClipboard(desktop::Context& context, ClipboardForm form) {
    importCommand(context, form, desktop::clipboardText(),
                  {.preview = [&context] { site::SaveHtml(context).previewStep(); },
                   .written = [&context](const QStringList& days) { context.requests.daysChanged(days); }});
}

void importFile(desktop::Context& context, PluginFormat format) {
    desktop::runQuietly(context.desk, [&] {
        importThroughPlugin(context, format, {},
                            {.makeGenres = context.requests.rebuildGenres, .written = context.requests.daysChanged});
    });
}

void exportFile(desktop::Context& context, PluginFormat format) {
    desktop::runQuietly(context.desk, [&] { exportThroughPlugin(context, format, {}); });
}

void showOthers(desktop::Context& context, frmOtherFormats::Direction direction) {
    context.windows.get<frmOtherFormats>().showFor(direction);
}

} // namespace

desktop::MenuCommands exchangeCommands(desktop::Context& context) {
    return {
        {"mnu_DiaryfromClipboard_UseFormattedText"_L1,
         {},
         [&context] { importClipboard(context, ClipboardForm::Formatted); }},
        {"mnu_DiaryfromClipboard_UsePlainText"_L1, {}, [&context] { importClipboard(context, ClipboardForm::Plain); }},
        {"MnuTextExport"_L1, {}, [&context] { context.windows.get<frmExport>().showWindow(); }},
        {"MnuMTExport"_L1, {}, [&context] { exportFile(context, PluginFormat::MovableType); }},
        {"MnuHTNExport"_L1, {}, [&context] { exportFile(context, PluginFormat::Hatena); }},
        {"MnuImportNoFunction"_L1, {}, [] {}}, // stands where no plug-in is
        {"MnuMTImport"_L1, {}, [&context] { importFile(context, PluginFormat::MovableType); }},
        {"MnuHTNImport"_L1, {}, [&context] { importFile(context, PluginFormat::Hatena); }},
        {"MnuOtherImport"_L1, {}, [&context] { showOthers(context, frmOtherFormats::Direction::Import); }},
        {"MnuOtherExport"_L1, {}, [&context] { showOthers(context, frmOtherFormats::Direction::Export); }},
        {"mnuImportCust"_L1, {}, [&context] { CustomizeExchange(context).importCommand(); }},
        {"mnuExportCust"_L1, {}, [&context] { context.windows.get<frmExportCust>().showWindow(); }},
        {"MnuDeleteImportDiary"_L1, {}, [&context] { context.windows.get<frmDeleteImportDiary>().showWindow(); }},
    };
}

} // namespace velloria::exchange
