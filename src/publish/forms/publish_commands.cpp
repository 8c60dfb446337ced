#include "publish/forms/publish_commands.h"

#include "browser/forms/frmBrowser.h"
#include "core/program_keys.h"
#include "core/settings.h"
#include "platform/directory.h"
#include "publish/curl_internet.h"
#include "publish/forms/frmProgress.h"
#include "publish/ftp_upload.h"
#include "publish/ping.h"
#include "publish/update_check.h"

#include <QCoreApplication>
#include <QMdiArea>

using namespace Qt::StringLiterals;

namespace velloria::publish {
namespace {

using desktop::Context;
using desktop::LongRoutine;

constexpr QLatin1StringView kUpdater = "MnuVellUpdater"_L1;

/// While a server is slow the windows are painted, and nothing else happens in them.
bool paintWhileWaiting(const Context& context) {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    return !context.runs.isEnding();
}

bool isStopWanted(const Context& context) {
    const auto* progress = context.windows.find<frmProgress>();
    return progress && progress->isStopWanted();
}

/// The same for a download: its button must work however long the server is silent. Other commands may run in here, as
/// they may after every piece of it.
bool serveDownload(const Context& context) {
    const auto* progress = context.windows.find<frmProgress>();
    if (!progress || !progress->isStopEnabled())
        return paintWhileWaiting(context);
    QCoreApplication::processEvents();
    return !context.runs.isEnding() && !isStopWanted(context);
}

void upload(Context& context) {
    CurlInternet internet([&context] { return paintWhileWaiting(context); });
    const UploadCalls calls{.ping = [&context] { Ping(context).MnuPING(); },
                            .isProgramEnding = [&context] { return context.runs.isEnding(); }};
    FtpUpload(context, internet, calls).FTP_Execute();
}

UpdateCalls updateCalls(Context& context) {
    return {.stopBrowser =
                [&context] {
                    auto& browser = context.windows.get<browser::frmBrowser>();
                    browser.Stop();
                    browser.showChild();
                },
            .enableUpdater = [&context](bool isEnabled) { context.requests.enableCommand(kUpdater, isEnabled); },
            .endProgram = [&context] { context.mdi->window()->close(); }, // noted, and done after the command
            .isProgramEnding = [&context] { return context.runs.isEnding(); },
            .isStopWanted = [&context] { return isStopWanted(context); }};
}

void checkForUpdate(Context& context) {
    CurlInternet internet([&context] { return serveDownload(context); });
    UpdateCheck(context, internet, updateCalls(context)).MnuUpdateCheck();
}

void startUpdater(Context& context) {
    CurlInternet internet;
    UpdateCheck(context, internet, updateCalls(context)).MnuVellUpdater();
}

/// The routine as a command: a beep while it runs already.
std::function<void()> once(Context& context, LongRoutine kind, void (*routine)(Context&)) {
    return [&context, kind, routine] { context.runs.run(kind, [&context, routine] { routine(context); }); };
}

} // namespace

desktop::MenuCommands publishCommands(desktop::Context& context) {
    return {
        {"MnuFTPUp"_L1, {}, once(context, LongRoutine::Upload, upload)},
        {"MnuPING"_L1, {}, [&context] { Ping(context).MnuPING(); }},
        // The updater must not start while its archive is still on the way.
        {"MnuUpdateCheck"_L1, {}, once(context, LongRoutine::UpdateCheck, checkForUpdate)},
        {kUpdater, {}, once(context, LongRoutine::UpdateCheck, startUpdater)},
    };
}

void enableUpdater(const desktop::Context& context) {
    const core::Settings settings(context.session);
    const QString file = platform::existingPath(settings.file(core::SettingsFile::Update));
    const bool isOffered = platform::fileExists(file) && settings.number(core::keys::kUpdated) != 1;
    context.requests.enableCommand(kUpdater, isOffered);
}

} // namespace velloria::publish
