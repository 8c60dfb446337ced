#include "shell/forms/desktop_end.h"

#include "browser/forms/frmBrowser.h"
#include "browser/forms/frmPrevDiaryViewer.h"
#include "core/keys.h"
#include "desktop/command.h"
#include "desktop/window_place.h"
#include "editor/forms/frmCalender.h"
#include "editor/forms/frmContents.h"
#include "publish/forms/frmProgress.h"
#include "shell/shutdown.h"

#include <QCoreApplication>
#include <QMdiArea>

namespace velloria::shell {
namespace {

void keepSettings(desktop::Context& context) {
    const core::Session& session = context.session;
    desktop::runCommand(context.desk, [&] {
        if (session.IsLogin)
            removeGeneratedPages(session);
    });
    const QWidget& top = *context.mdi->window();
    if (!top.isMaximized() && !top.isMinimized())
        desktop::writePlace(session, core::keys::kParentFormPlace, desktop::placeOf(top, {top.pos(), top.size()}));
}

} // namespace

void keepDraft(desktop::Context& context) {
    if (auto* contents = context.windows.find<editor::frmContents>()) {
        contents->commitComposition();
        contents->day().keepDraft();
    }
}

void keepForTheEnd(desktop::Context& context) {
    keepDraft(context);
    keepSettings(context);
    if (auto* browser = context.windows.find<browser::frmBrowser>())
        desktop::runCommand(context.desk, [&] { browser->keep(); });
}

void endDesktop(desktop::Context& context) {
    keepSettings(context);
    if (auto* contents = context.windows.find<editor::frmContents>())
        contents->day().dropDraft();
    // Unloading keeps what they hold for the next time: positions, histories and search site, the selected blog.
    context.windows.unload<browser::frmPrevDiaryViewer>();
    context.windows.unload<publish::frmProgress>();
    context.windows.unload<browser::frmBrowser>();
    context.windows.unload<editor::frmCalender>();
    QCoreApplication::exit();
}

} // namespace velloria::shell
