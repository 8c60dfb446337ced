#include "shell/forms/window_commands.h"

#include "browser/forms/frmBrowser.h"
#include "desktop/command.h"
#include "shell/forms/arrangement.h"
#include "site/save_html.h"

#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>

using namespace Qt::StringLiterals;

namespace velloria::shell {
namespace {

void showBrowser(desktop::Context& context) {
    // A preview that can't be made keeps nobody from the browser.
    desktop::runCommand(context.desk, [&] { site::SaveHtml(context).SaveTmpFile(); });
    context.windows.get<browser::frmBrowser>().showChild();
    Arrangement(context).showStartPage();
}

/// Between the menus and the child window.
void moveFocus(const desktop::Context& context) {
    QMenuBar& bar = *static_cast<QMainWindow*>(context.mdi->window())->menuBar();
    if (bar.hasFocus() && context.mdi->activeSubWindow())
        context.mdi->activeSubWindow()->setFocus();
    else
        bar.setFocus(Qt::ShortcutFocusReason);
}

} // namespace

desktop::MenuCommands windowCommands(desktop::Context& context) {
    return {
        {"MnuExit"_L1, {Qt::CTRL | Qt::Key_Q}, [&context] { context.mdi->window()->close(); }},
        {"MnuVertical"_L1, {}, [&context] { Arrangement(context).MnuVertical(); }},
        {"mnuStandard"_L1, {}, [&context] { Arrangement(context).mnuStandard(); }},
        {"mnuLoadWndPos"_L1, {}, [&context] { Arrangement(context).mnuLoadWndPos(); }},
        {"mnuSaveWndPos"_L1, {}, [&context] { Arrangement(context).mnuSaveWndPos(); }},
        {"MnuBrowse"_L1, {}, [&context] { showBrowser(context); }},
        {{}, {Qt::Key_F6}, [&context] { moveFocus(context); }},
        {{}, {Qt::CTRL | Qt::Key_F6}, [&context] { context.mdi->activateNextSubWindow(); }},
        {{}, {Qt::CTRL | Qt::SHIFT | Qt::Key_F6}, [&context] { context.mdi->activatePreviousSubWindow(); }},
    };
}

} // namespace velloria::shell
