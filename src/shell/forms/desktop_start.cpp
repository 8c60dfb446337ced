#include "shell/forms/desktop_start.h"

#include "core/keys.h"
#include "core/path_names.h"
#include "core/settings.h"
#include "desktop/command.h"
#include "shell/forms/frmLogin.h"
#include "shell/forms/MDIFormTop.h"
#include "shell/forms/StartForm.h"
#include "shell/users.h"

#include <QApplication>

using namespace Qt::StringLiterals;

namespace velloria::shell {
namespace {

/// Nothing when the window was cancelled.
std::optional<Login> askLogin(const Users& users) {
    frmLogin window(users.previousLogin());
    window.exec();
    return window.IsOK ? std::optional(Login{window.UID, window.Password}) : std::nullopt;
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
    context.windows.get<MDIFormTop>().completeStart();
    return StartResult::Ready;
}

} // namespace velloria::shell
