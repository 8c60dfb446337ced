#include "shell/forms/help_commands.h"

#include "browser/forms/frmBrowser.h"
#include "core/files.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "shell/forms/frmAbout.h"
#include "shell/forms/maker_pages.h"

using namespace Qt::StringLiterals;

namespace velloria::shell {
namespace {

void showManual(desktop::Context& context, const core::File& file) {
    const QString manual = platform::existingPath(file.in(context.session));
    if (!platform::fileExists(manual))
        throw platform::Failure(u"マニュアルがありません。"_s, manual, {},
                                u"Velloriaを入れ直すと元に戻ります。日記はそのままです。"_s);
    context.windows.get<browser::frmBrowser>().showChild();
    context.desk.navigate(manual);
}

} // namespace

desktop::MenuCommands helpCommands(desktop::Context& context) {
    return {
        {"MnuSimpleManual"_L1, {}, [&context] { showManual(context, core::files::kSimpleManual); }},
        {"MnuManual"_L1, {Qt::Key_F1}, [&context] { showManual(context, core::files::kManual); }},
        {"MnuNoPlugin"_L1, {}, [] {}}, // stands where there is nothing to choose
        {"MnuAbout"_L1, {}, [&context] { frmAbout(context).exec(); }},
        {"MnuHP"_L1, {}, [&context] { Click_FormAboutLabel(context); }},
        {"MnuMyBlog"_L1, {}, [&context] { Click_Zelkova(context); }},
        {"MnuVellInfoBlog"_L1, {}, [&context] { showMakerNews(context); }},
    };
}

} // namespace velloria::shell
