#include "shell/forms/desktop_start.h"

#include "core/files.h"
#include "core/keys.h"
#include "core/path_names.h"
#include "core/settings.h"
#include "desktop/command.h"
#include "desktop/window_place.h"
#include "editor/forms/frmCalender.h"
#include "editor/forms/frmContents.h"
#include "platform/directory.h"
#include "publish/forms/publish_commands.h"
#include "shell/forms/arrangement.h"
#include "shell/forms/frmLogin.h"
#include "shell/forms/MDIFormTop.h"
#include "shell/forms/StartForm.h"
#include "shell/plugins.h"
#include "shell/users.h"
#include "site/save_html.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QThread>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace velloria::shell {
namespace {

/// Nothing when the window was cancelled.
std::optional<Login> askLogin(const Users& users) {
    frmLogin window(users.previousLogin());
    window.exec();
    return window.IsOK ? std::optional(Login{window.UID, window.Password}) : std::nullopt;
}

constexpr QSize kFirstSize(1024, 720);

/// Serves the screen until it has drawn the window, and so has told its frame.
void waitForFrame(const QWidget& window) {
    constexpr int kPatienceMs = 500; // a window that comes up minimised is not drawn
    QElapsedTimer timer;
    timer.start();
    while (!window.windowHandle()->isExposed() && timer.elapsed() < kPatienceMs) {
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        QThread::msleep(1);
    }
}

/// At its place of the last time; the screen has drawn it when this returns.
void comeUp(desktop::Context& context, QWidget& window) {
    const core::Session& session = context.session;
    const desktop::WindowPlace kept = desktop::readPlace(session, core::keys::kParentFormPlace);
    desktop::WindowPlace place = kept;
    // One edge alone is applied after the showing: the other one is where the screen puts it.
    if (place.left.value_or(0) == 0 || place.top.value_or(0) == 0) {
        place.left.reset();
        place.top.reset();
    }
    window.resize(kFirstSize);
    desktop::restorePlace(window, place, {});
    qint16 maximize = 0;
    desktop::runCommand(context.desk, [&] { maximize = core::Settings(session).number(core::keys::kWindowMaximize); });
    if (maximize == 1)
        window.showMaximized();
    else
        window.show();
    waitForFrame(window);
    if (!window.isMaximized())
        desktop::restorePlace(window, kept, desktop::frameOf(window));
    // The arrangement needs the area at the size that it has on the screen.
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void showOptionalParts(const desktop::Context& context, const MDIFormTop& top) {
    const core::Session& session = context.session;
    top.command(u"mnuVellMemo"_s)->setEnabled(platform::fileExists(core::files::kMemo.in(session)));
    for (const QString& name : commandsToHide(session))
        top.command(name)->setVisible(false);
}

/// The part of the start that has windows, after the session's: the main window, the calendar, the arrangement, what
/// the optional files beside the program switch on and off. A failure on the way is told and the rest goes on. What the
/// part without windows had to say, `notice`, is still there at the end.
void completeStart(desktop::Context& context, const QString& notice) {
    const core::Session& session = context.session;
    platform::Desk& desk = context.desk;
    auto& top = context.windows.get<MDIFormTop>();
    desk.pointer(platform::Pointer::Hourglass);
    if (session.IsLogin)
        top.setWindowTitle(top.windowTitle() + u" [User:"_s + session.UserID + u']');
    comeUp(context, top); // a place that can't be read ends the start: the window's end would write another one over it
    desktop::runCommand(desk, [&] {
        auto& calendar = context.windows.get<editor::frmCalender>();
        calendar.showChild();
        calendar.showDay(QDate::fromString(session.EnterDay, u"yyyy/MM/dd"_s));
    });
    desktop::runCommand(desk, [&] {
        if (!session.IsLogin)
            return; // the last end of this user's run took the preview away
        site::SaveHtml(context).SaveTmpFile();
        desk.pointer(platform::Pointer::Hourglass);
    });
    desktop::runCommand(desk, [&] {
        const qint16 position = core::Settings(session).number(core::keys::kWindowPosition);
        if (position == 1)
            Arrangement(context).mnuStandard();
        else if (position == 2)
            Arrangement(context).mnuLoadWndPos();
    });
    desktop::runCommand(desk, [&] { publish::enableUpdater(context); });
    context.windows.unload<StartForm>();
    desk.pointer(platform::Pointer::Default);
    top.SetMenuBarString();
    showOptionalParts(context, top);
    QStringList notices;
    if (!notice.isEmpty())
        notices += notice;
    if (context.windows.get<editor::frmContents>().day().hasDraft())
        notices += u"保存されていない下書きがあります。「日記」メニューの「下書きを復元」で復元できます。"_s;
    if (!notices.isEmpty())
        desk.notice(notices.join(u'　'));
}

} // namespace

StartResult startDesktop(desktop::Context& context, const QString& home) {
    std::optional<Login> login;
    if (const Users users(core::withSeparator(home)); users.exist()) {
        login = askLogin(users);
        if (!login)
            return StartResult::Ended;
    }
    Startup startup(context);
    if (startup.enter(home, login) == StartResult::Ended)
        return StartResult::Ended;
    desktop::runCommand(context.desk, [&] {
        if (core::Settings(context.session).number(core::keys::kShowStartUpForm) != 1)
            return;
        context.windows.get<StartForm>().show();
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    });
    if (startup.prepare() == StartResult::Ended)
        return StartResult::Ended;
    completeStart(context, startup.notice());
    return StartResult::Ready;
}

} // namespace velloria::shell
