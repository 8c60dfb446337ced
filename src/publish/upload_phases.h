// What an upload does on the server, phase by phase.
#pragma once

#include "publish/ftp_folders.h"
#include "publish/upload_files.h"
#include "publish/upload_progress.h"
#include "registers/file_register.h"

namespace velloria::publish {

/// The work of one run between login and farewell. It tells each step on `progress`; what a phase has done is on record
/// at once ("uploadold.tmp", the flags of the file register). For one run:
///
///     UploadPhases phases(session, internet, desk, progress, files, siteFiles, settings.startFolder);
///     const bool isDone = phases.run(pages, logs); // connected before, closed after by the caller
class UploadPhases {
public:
    /// All outlive this. `startFolder` is the folder of the server to work in; "" stays in that of the login.
    UploadPhases(const core::Session& session, Internet& internet, platform::Desk& desk, UploadProgress& progress,
                 UploadFiles& files, registers::SiteFiles& siteFiles, QString startFolder);

    /// All phases; false after the first refusal, which has been told. The totals are what the lists held when they
    /// were checked. Throws platform::Failure when the user's own disk refuses.
    bool run(qsizetype pageTotal, qsizetype logTotal);

private:
    enum class Announce { Yes, No };

    bool enterStartFolder();
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
    bool enterFolder(const QString& title, const QString& path, const QString& name, const QString& shown);

    const core::Session& m_session;
    Internet& m_internet;
    platform::Desk& m_desk;
    UploadProgress& m_progress;
    UploadFiles& m_local;
    registers::SiteFiles& m_siteFiles;
    registers::FileRegister m_register;
    FtpFolders m_folders;
    QString m_startFolder;

    bool m_isHtmlOnly = false;
    qsizetype m_pageTotal = 0;
    qsizetype m_logTotal = 0;
    int m_done = 0; ///< files that have gone up; the log side counts on from its list to its registered files
};

} // namespace velloria::publish
