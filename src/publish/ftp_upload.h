// The upload: the pages that were saved, the registered files and the logs go to the user's web server.
#pragma once

#include "core/files.h"
#include "core/run.h"
#include "publish/upload_files.h"
#include "publish/upload_log.h"
#include "publish/upload_progress.h"
#include "publish/upload_settings.h"
#include "registers/site_files.h"

#include <functional>
#include <optional>

namespace velloria::publish {

/// What an upload needs of the program around it; both may be empty.
struct UploadCalls {
    std::function<void()> ping = {};            ///< the ping command, run after a good upload when the user wants it
    std::function<bool()> isProgramEnding = {}; ///< asked wherever other commands may have run; true ends the upload
};

struct UploadResult {
    bool isDone = false;
    QString reason = {}; ///< one line for standard error, "" when it is done
};

/// One run, in the thread of the windows, which go on being served:
///
///     CurlInternet internet(keepGoing);
///     const UploadResult result = FtpUpload(run, internet, calls).FTP_Execute();
///
/// What the user sees of it are the progress window, the status panel, the pointer and the boxes of the folder
/// routines; "upload.log" keeps what passed on the connection. Nothing is tried twice: the first refusal ends the run,
/// and the next one starts over. While one runs, no other begins with the same user's folder, in whatever program.
class FtpUpload {
public:
    /// `internet` outlives this.
    FtpUpload(const core::Run& run, Internet& internet, UploadCalls calls = {});

    /// From the first step to the last. A refusal of the machine ends the run like one of the server and is not thrown;
    /// what the ping throws, after a finished upload, goes to the caller.
    UploadResult FTP_Execute();

private:
    bool transferAll();
    bool tellOtherUpload();
    bool checkLocalFiles();
    bool filesExist(const UploadList& list, const QString& whenMissing);
    void beginLog();
    bool connectToServer();
    bool notConnected(const QString& text, const QString& status);
    void finish();
    void failureExit();
    UploadResult notDone() const;
    void SendMCICommand(const QString& command);

    const core::Session& m_session;
    Internet& m_internet;
    platform::Desk& m_desk;
    const platform::Clock& m_clock;
    std::function<void()> m_ping;
    UploadProgress m_progress;
    registers::SiteFiles m_siteFiles;
    UploadFiles m_files;

    UploadSettings m_settings;
    std::optional<UploadLog> m_log;
    bool m_isSessionOpen = false;
    bool m_isFtpOpen = false;
    qsizetype m_pageTotal = 0;
    qsizetype m_logTotal = 0;
};

} // namespace velloria::publish
