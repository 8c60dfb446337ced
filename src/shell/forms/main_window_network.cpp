// The commands of the main window that reach the network. They work on while other commands may run.
#include "browser/forms/frmBrowser.h"
#include "publish/curl_internet.h"
#include "publish/forms/frmProgress.h"
#include "publish/ftp_upload.h"
#include "publish/ping.h"
#include "publish/update_check.h"
#include "shell/forms/MDIFormTop.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace velloria::shell {

void MDIFormTop::connectNetworkCommands() {
    onCommand(u"MnuFTPUp"_s, [this] { m_context.runs.run(desktop::LongRoutine::Upload, [this] { FTP_Execute(); }); });
    onCommand(u"MnuPING"_s, [this] { MnuPING(); });
    // The updater must not start while its archive is still on the way.
    const auto update = [this](void (MDIFormTop::*routine)()) {
        m_context.runs.run(desktop::LongRoutine::UpdateCheck, [this, routine] { (this->*routine)(); });
    };
    onCommand(u"MnuUpdateCheck"_s, [update] { update(&MDIFormTop::MnuUpdateCheck); });
    onCommand(u"MnuVellUpdater"_s, [update] { update(&MDIFormTop::MnuVellUpdater); });
}

/// While a server is slow the windows are painted, and nothing else happens in them.
bool MDIFormTop::paintWhileWaiting() {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    return !m_context.runs.isEnding();
}

bool MDIFormTop::isStopWanted() const {
    const auto* progress = m_context.windows.find<publish::frmProgress>();
    return progress && progress->isStopWanted();
}

/// The same for a download: its button must work however long the server is silent. Other commands may run in here, as
/// they may behind every piece of it.
bool MDIFormTop::serveDownload() {
    const auto* progress = m_context.windows.find<publish::frmProgress>();
    if (!progress || !progress->isStopEnabled())
        return paintWhileWaiting();
    QCoreApplication::processEvents();
    return !m_context.runs.isEnding() && !isStopWanted();
}

void MDIFormTop::FTP_Execute() {
    publish::CurlInternet internet([this] { return paintWhileWaiting(); });
    const publish::UploadCalls calls{.ping = [this] { MnuPING(); },
                                     .isProgramEnding = [this] { return m_context.runs.isEnding(); }};
    publish::FtpUpload(m_context, internet, calls).FTP_Execute();
}

void MDIFormTop::MnuPING() {
    publish::Ping(m_context).MnuPING();
}

publish::UpdateCalls MDIFormTop::updateCalls() {
    return {.stopBrowser =
                [this] {
                    auto& browser = m_context.windows.get<browser::frmBrowser>();
                    browser.Stop();
                    browser.showChild();
                },
            .enableUpdater = [this](bool isEnabled) { command(u"MnuVellUpdater"_s)->setEnabled(isEnabled); },
            .endProgram = [this] { close(); }, // noted, and done behind the command
            .isProgramEnding = [this] { return m_context.runs.isEnding(); },
            .isStopWanted = [this] { return isStopWanted(); }};
}

void MDIFormTop::MnuUpdateCheck() {
    publish::CurlInternet internet([this] { return serveDownload(); });
    publish::UpdateCheck(m_context, internet, updateCalls()).MnuUpdateCheck();
}

void MDIFormTop::MnuVellUpdater() {
    publish::CurlInternet internet;
    publish::UpdateCheck(m_context, internet, updateCalls()).MnuVellUpdater();
}

} // namespace velloria::shell
