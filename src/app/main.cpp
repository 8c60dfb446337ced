// velloria: the diary in windows.
#include "app/surroundings.h"
#include "app/termination.h"
#include "browser/forms/frmBrowser.h"
#include "browser/forms/web_page.h"
#include "desktop/context.h"
#include "desktop/qt_desk.h"
#include "desktop/sound_player.h"
#include "desktop/wait_box.h"
#include "platform/failure.h"
#include "platform/instance_lock.h"
#include "publish/forms/frmProgress.h"
#include "shell/forms/desktop_end.h"
#include "shell/forms/desktop_start.h"
#include "shell/forms/frmPassword.h"
#include "shell/forms/MDIFormTop.h"
#include "shell/forms/StartForm.h"
#include "shell/forms/updater_view.h"
#include "shell/home.h"

#include <QApplication>
#include <QFileInfo>

#include <cstdlib>

using namespace Qt::StringLiterals;

namespace velloria {
namespace {

using shell::MDIFormTop;

/// The windows behind the ports.
void connectDesk(desktop::QtDesk& desk, desktop::Context& context, desktop::SoundPlayer& player,
                 desktop::WaitBox& waits, shell::UpdaterView& updates) {
    desk.beforeBox = [&context, &waits, &updates] {
        context.windows.unload<shell::StartForm>();
        waits.makeWay();
        updates.makeWayForBox();
    };
    desk.showStatus = [&context](const QString& text) {
        if (auto* top = context.windows.find<MDIFormTop>())
            top->setStatus(text);
    };
    desk.showNotice = [&context](const QString& text) {
        if (auto* top = context.windows.find<MDIFormTop>())
            top->setNotice(text);
    };
    desk.showPage = [&context](const QString& address) {
        context.windows.get<browser::frmBrowser>().Navigate(address);
    };
    desk.showProgressWindow = [&context](const platform::ProgressWindow& shown) {
        context.windows.get<publish::frmProgress>().display(shown);
    };
    desk.endProgressWindow = [&context] { context.windows.unload<publish::frmProgress>(); };
    desk.showUpdaterWindow = [&updates](const platform::UpdaterWindow& shown) { updates.show(shown); };
    desk.endUpdaterWindow = [&updates] { updates.close(); };
    desk.askPasswords = shell::askPasswords;
    desk.playSound = [&player](const QString& command) { player.execute(command); };
}

int run(QApplication& application) {
    core::Session session;
    const platform::SystemClock clock;
    desktop::QtDesk desk;
    desktop::SoundPlayer player(QCoreApplication::applicationDirPath() + u"/velloria-sound"_s);
    desktop::WaitBox waits;
    desktop::Context context{{session, clock, desk}};
    shell::UpdaterView updates(context);
    connectDesk(desk, context, player, waits, updates);
    try {
        const QString home = shell::findHome({}, QCoreApplication::applicationDirPath());
        const platform::InstanceLock lock(QFileInfo(home).canonicalFilePath());
        if (!lock.isHeld())
            return 0;
        if (shell::startDesktop(context, home) == shell::StartResult::Ended)
            return 1;
        desk.setMainWindow(&context.windows.get<MDIFormTop>());
        const app::Termination termination(
            application, [&context] { shell::keepDraft(context); },
            [&context] {
                shell::keepForTheEnd(context);
                std::_Exit(0);
            });
        return QApplication::exec();
    } catch (const platform::Failure& failure) {
        desk.failure(failure);
        return 1;
    }
}

} // namespace
} // namespace velloria

int main(int argc, char** argv) {
    if (!velloria::app::hasScreen())
        return 1;
    velloria::app::letBrowserRunAsRoot();
    velloria::browser::registerEventScheme();
    QApplication application(argc, argv);
    velloria::app::prepareApplication(application);
    return velloria::run(application);
}
