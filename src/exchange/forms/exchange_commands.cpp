#include "exchange/forms/exchange_commands.h"

#include "desktop/clipboard.h"
#include "exchange/clipboard_import.h"
#include "exchange/customize_exchange.h"
#include "exchange/forms/frmDeleteImportDiary.h"
#include "exchange/forms/frmExport.h"
#include "exchange/forms/frmExportCust.h"
#include "site/save_html.h"

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

void importClipboard(desktop::Context& context, ClipboardForm form) {
    importCommand(context, form, desktop::clipboardText(),
                  {.preview = [&context] { site::SaveHtml(context).previewStep(); },
                   .written = [&context](const QStringList& days) { context.requests.daysChanged(days); }});
}

} // namespace

desktop::MenuCommands exchangeCommands(desktop::Context& context) {
    return {
        {"mnu_DiaryfromClipboard_UseFormattedText"_L1,
         {},
         [&context] { importClipboard(context, ClipboardForm::Formatted); }},
        {"mnu_DiaryfromClipboard_UsePlainText"_L1, {}, [&context] { importClipboard(context, ClipboardForm::Plain); }},
        {"MnuTextExport"_L1, {}, [&context] { context.windows.get<frmExport>().showWindow(); }},
        {"mnuImportCust"_L1, {}, [&context] { CustomizeExchange(context).importCommand(); }},
        {"mnuExportCust"_L1, {}, [&context] { context.windows.get<frmExportCust>().showWindow(); }},
        {"MnuDeleteImportDiary"_L1, {}, [&context] { context.windows.get<frmDeleteImportDiary>().showWindow(); }},
    };
}

} // namespace velloria::exchange
