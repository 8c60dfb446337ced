// The commands that turn the diary into files: Save HTML, Save HTML As, and the preview.
#pragma once

#include "core/run.h"
#include "core/upload_list.h"
#include "platform/outcome.h"
#include "registers/site_files.h"
#include "site/month_page.h"

#include <functional>
#include <optional>

namespace velloria::site {

/// One object is one command, in the thread of the desk. Save HTML and the preview each stand on their own; after them
/// siteFiles() knows which registered files stayed away. A cancelled dialog is Outcome::Refused and no failure. What
/// the machine refuses is thrown as platform::Failure: pages that were done stay, the others are the old ones.
///
///     SaveHtml saver(run);
///     if (saver.saveCommand() == platform::Outcome::Done)
///         saver.previewStep(); // of `EnterDay`
class SaveHtml {
public:
    /// A Save As changes `FilePath` and `FileName` of the session.
    explicit SaveHtml(const core::Run& run);

    /// The command Save HTML: without a known target as Save HTML As.
    platform::Outcome saveCommand();

    /// The command Save HTML As: asks where and saves there. Outcome::Refused when the dialog is cancelled or the
    /// chosen name would be overwritten by a local page.
    platform::Outcome saveAsCommand();

    /// Save HTML As to a path that is known. A path without a folder that exists gets one.
    platform::Outcome saveAs(const QString& path);

    /// Asks for the target and takes it over without saving; the settings learn it with the next SaveHTML.
    platform::Outcome chooseTarget();

    /// Writes the month of `Today` with its feeds, upload list, weather pictures and files, as far as these may go to
    /// the site; the status panel tells of what else there was. Throws platform::Failure.
    void SaveHTML();

    /// Writes the preview "tmp.htm": the month of `EnterDay` with private entries. Throws platform::Failure.
    void SaveTmpFile();

    /// The preview step of many commands: the preview, and the browser to `EnterDay` in it.
    void previewStep();
    /// The browser alone, to whatever preview there is.
    void showPreview();

    /// The choice of this command among the registered files, for those who work on with it.
    registers::SiteFiles& siteFiles() { return m_siteFiles; }

private:
    /// Takes the target over and saves there; a failure brings the old target back.
    platform::Outcome saveTo(const std::function<bool()>& takeTarget);
    bool takeTarget(const QString& path);
    void bringBack(const QString& list, const std::optional<QByteArray>& bytes) const;
    void copyParts();

    core::Session& m_session;
    platform::Desk& m_desk;
    MonthPage m_monthPage;
    registers::SiteFiles m_siteFiles;
    std::vector<core::UploadRow> m_listed; ///< what this has put into "upload.tmp"
};

} // namespace velloria::site
