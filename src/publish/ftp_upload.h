// The upload: the pages that were saved, the registered files and the logs go to the user's web server.
#pragma once

#include "core/run.h"
#include "core/upload_list.h"
#include "platform/directory.h"
#include "publish/ftp_folders.h"
#include "publish/progress_view.h"
#include "publish/upload_log.h"
#include "publish/upload_settings.h"
#include "registers/file_register.h"
#include "registers/site_files.h"

#include <functional>
#include <map>
#include <optional>

namespace velloria::publish {

/// What an upload needs of the program around it; both may be empty.
struct UploadCalls {
    std::function<void()> ping = {};            ///< the ping command, run behind a good upload when the user wants it
    std::function<bool()> isProgramEnding = {}; ///< asked wherever other commands may have run; true ends the upload
};

struct UploadResult {
    bool isDone = false;
    QString reason = {}; ///< one line for standard error, "" when it is done
};

/// One run. What the user sees of it are the progress window, the status panel, the pointer and the boxes of the folder
/// routines; "upload.log" keeps what passed on the connection. Nothing is tried twice: the first refusal ends the run,
/// and the next one starts over. While one runs, no other begins with the same user's folder, in whatever program.
class FtpUpload {
public:
    /// `internet` outlives this.
    FtpUpload(const core::Run& run, Internet& internet, UploadCalls calls = {});

    /// From the first step to the last. A refusal of the machine ends the run like one of the server and is not thrown;
    /// what the ping throws, behind a finished upload, goes to the caller.
    UploadResult FTP_Execute();

private:
    struct List {
        QByteArray bytes; ///< as it was when its rows were read
        std::vector<core::UploadRow> rows;
    };

    // ftp_upload.cpp: the frame of a run
    bool transferAll();
    bool tellOtherUpload();
    bool checkLocalFiles();
    bool filesExist(const List& list, const QString& whenMissing);
    bool transfer();
    void beginLog();
    bool connectToServer();
    bool notConnected(const QString& text, const QString& status);
    bool enterStartFolder();
    void finish();
    void failureExit();
    UploadResult notDone() const;
    void SendMCICommand(const QString& command);

    // ftp_upload_files.cpp: what goes to the server
    enum class Announce { Yes, No };
    bool deleteOldFiles();
    bool deleteIfThere(const QString& name, Announce announce);
    bool uploadPages();
    bool uploadParts();
    bool uploadPart(const store::FileRow& row, qsizetype total);
    bool leaveParts();
    bool uploadLogSide();
    bool uploadLogs(const std::vector<core::UploadRow>& rows);
    bool uploadLogParts();
    bool uploadLogPart(const store::FileRow& row, qsizetype total);

    // ftp_upload_steps.cpp: what the phases share
    bool enterFolder(const QString& title, const QString& path, const QString& name, const QString& shown);
    bool tellNotEntered(const QString& shown);
    QString listFile(const QString& name) const;
    bool listExists(const QString& name) const;
    List readList(const QString& name) const;
    /// Makes the row the last one read.
    void take(const core::UploadRow& row);
    /// The same, and its file on the user's disk.
    QString localFile(const core::UploadRow& row);
    /// A registered file below the folder of the last row read; one that is missing there is first copied from
    /// `dataFolder`.
    std::optional<QString> localPart(const QString& dataFolder, const QString& name);
    platform::FolderNames& partsBelow(const QString& folder);
    void showAndPump(const QString& text);
    void showAndPump(const QString& title, const QString& text);
    /// Lets other commands run. Throws Failure when the program is about to end.
    void pump();
    /// Tells a failure, and is false like the step that failed.
    bool fail(const QString& title, const QString& text, const QString& status);
    /// The same for a refusal of the network; the status panel gets its words.
    bool refused(const QString& title, const QString& text);
    /// Puts it behind the reason, unless it is in there.
    void addReason(const QString& reason);

    const core::Session& m_session;
    Internet& m_internet;
    platform::Desk& m_desk;
    const platform::Clock& m_clock;
    UploadCalls m_calls;
    ProgressView m_view;
    FtpFolders m_folders;
    registers::FileRegister m_files;
    registers::SiteFiles m_siteFiles;

    std::map<QString, platform::FolderNames> m_parts; ///< "DiaryParts" below each folder that was asked for
    UploadSettings m_settings;
    std::optional<UploadLog> m_log;
    bool m_isHtmlOnly = false;
    bool m_isSessionOpen = false;
    bool m_isFtpOpen = false;

    qsizetype m_pageTotal = 0;
    qsizetype m_logTotal = 0;
    int m_done = 0;       ///< files that have gone up; the log side counts on from its list to its registered files
    QString m_lastFolder; ///< of the last row read, with its separator
    QString m_lastName;   ///< of the last row read
    QString m_reason;
};

} // namespace velloria::publish
