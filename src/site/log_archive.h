// Freezes a month: its page as a log page, its files beside it, its row in the list of logs.
#pragma once

#include "core/run.h"
#include "core/upload_list.h"
#include "platform/directory.h"
#include "registers/file_register.h"
#include "registers/log_register.h"
#include "registers/site_files.h"
#include "site/month_page.h"

#include <QDate>

#include <functional>
#include <optional>

namespace velloria::site {

/// Year and month as texts of two boxes.
struct LogMonth {
    QString year;
    QString month;
};

/// The month before that of `today`, which is the one that is usually logged.
LogMonth monthToLog(const QDate& today);

/// One object is one command, over any number of months, in the thread of the desk:
///
///     const LogMonth month = monthToLog(today);
///     LogArchive(run).save(month.year, month.month);
class LogArchive {
public:
    /// `siteFiles` outlive this and are those of a command of which this is a step: it chooses among the registered
    /// files and tells of that itself.
    explicit LogArchive(const core::Run& run, registers::SiteFiles* siteFiles = nullptr);
    LogArchive(const LogArchive&) = delete;
    LogArchive& operator=(const LogArchive&) = delete;

    /// Makes the log of `year` and `month` as typed; a month of one character gets its zero. A registered file that is
    /// missing is told about and stays unlogged, the run goes on; so does one that may not go to the site. Made again,
    /// a log replaces itself. Without a site folder the log lies in the data folder alone, which the status panel says
    /// at the end. Throws platform::Failure; what is done by then stays, and a further run completes it.
    /// `beforeLastBox` runs when the log is there, before the box that says so. The preview is the caller's next
    /// step, and the hourglass over both is the caller's.
    void save(const QString& year, const QString& month, const std::function<void()>& beforeLastBox = {});

private:
    void copyPages(const std::vector<core::UploadRow>& pages);
    int daysOfMonth(const QString& year, const QString& month) const;
    void archiveFilesOfMonth(const QString& year, const QString& month);
    bool archiveFile(const store::FileRow& file, const QString& month, const platform::FolderNames& parts);
    void markQuietly(const std::vector<qint64>& logged) const;
    void archiveCommonFiles();

    /// The roots under which logs are kept: the site folder, when there is one, and the data folder.
    QStringList roots() const;

    const core::Session& m_session;
    platform::Desk& m_desk;
    MonthPage m_monthPage;
    registers::FileRegister m_files;
    registers::LogRegister m_logs;
    std::optional<registers::SiteFiles> m_ownSiteFiles; ///< of a command of its own
    registers::SiteFiles& m_siteFiles;
};

/// The command: the log of the month as LogArchive::save makes it, then the preview, whose list of logs names it.
void logCommand(const core::Run& run, const QString& year, const QString& month,
                const std::function<void()>& beforeLastBox = {});

} // namespace velloria::site
