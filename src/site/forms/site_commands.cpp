#include "site/forms/site_commands.h"

#include "site/customize_backup.h"
#include "site/forms/frmCustomize.h"
#include "site/forms/frmCustomizeSelection.h"
#include "site/forms/frmFind.h"
#include "site/forms/frmSaveLog.h"
#include "site/forms/frmSetting.h"
#include "site/save_html.h"

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

void customize(desktop::Context& context) {
    if (!context.windows.find<frmCustomize>())
        settleLeftBackup(context);
    context.windows.get<frmCustomize>().showWindow();
}

} // namespace

desktop::MenuCommands siteCommands(desktop::Context& context) {
    const auto save = [&context] { SaveHtml(context).saveCommand(); };
    return {
        {"MnuSaveHTML"_L1, {}, save},
        {"MnuSaveHTML_D"_L1, {}, save},
        {"MnuSaveHTMLAS"_L1, {}, [&context] { SaveHtml(context).saveAsCommand(); }},
        {"MnuMakeLog"_L1, {}, [&context] { context.windows.get<frmSaveLog>().showWindow(); }},
        {"MnuCustomizeSelect"_L1, {}, [&context] { context.windows.get<frmCustomizeSelection>().showWindow(); }},
        {"mnuEnvironment"_L1, {}, [&context] { context.windows.get<frmSetting>().showWindow(); }},
        {"MnuCustomize"_L1, {}, [&context] { customize(context); }},
        {"MnuFindDiary"_L1, {Qt::CTRL | Qt::Key_F}, [&context] { context.windows.get<frmFind>().showWindow(); }},
    };
}

} // namespace velloria::site
