#include "exchange/forms/exchange_commands.h"

#include "desktop/clipboard.h"
#include "exchange/clipboard_import.h"
#include "exchange/forms/frmDeleteImportDiary.h"
#include "exchange/forms/frmExport.h"
#include "site/save_html.h"

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

using Import = bool (ClipboardImport::*)(const std::optional<QString>&, ParagraphTags);

/// What was written is shown, however the import ended.
void importClipboard(desktop::Context& context, Import import) {
    ClipboardImport clipboard(context);
    const auto tellEditor = [&] {
        if (!clipboard.writtenDays().isEmpty())
            context.requests.daysChanged(clipboard.writtenDays());
    };
    try {
        if ((clipboard.*import)(desktop::clipboardText(), importedParagraphs(context.session)))
            site::SaveHtml(context).previewStep();
    } catch (...) {
        tellEditor();
        throw;
    }
    tellEditor();
}

} // namespace

desktop::MenuCommands exchangeCommands(desktop::Context& context) {
    return {
        {"mnu_DiaryfromClipboard_UseFormattedText"_L1,
         {},
         [&context] { importClipboard(context, &ClipboardImport::ImportFormattedClipboard); }},
        {"mnu_DiaryfromClipboard_UsePlainText"_L1,
         {},
         [&context] { importClipboard(context, &ClipboardImport::ImportPlainClipboard); }},
        {"MnuTextExport"_L1, {}, [&context] { context.windows.get<frmExport>().showWindow(); }},
        {"MnuDeleteImportDiary"_L1, {}, [&context] { context.windows.get<frmDeleteImportDiary>().showWindow(); }},
    };
}

} // namespace velloria::exchange
