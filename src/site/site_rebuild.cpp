#include "site/site_rebuild.h"

#include "core/day_key.h"
#include "core/files.h"
#include "core/site_folder.h"
#include "core/upload_list.h"
#include "platform/failure.h"
#include "site/log_archive.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

bool isWithin(const QString& month, const QString& from, const QString& to) {
    return (from.isEmpty() || month >= from) && (to.isEmpty() || month <= to);
}

} // namespace

RebuildResult rebuildSite(const core::Run& run, const QString& from, const QString& to) {
    const core::Session& session = run.session;
    platform::Desk& desk = run.desk;
    RebuildResult result;
    SaveHtml saver(run);
    // Asked for first: the logs are to lie in the site folder as well.
    if ((session.FilePath.isEmpty() || session.FileName.isEmpty()) &&
        saver.chooseTarget() == platform::Outcome::Refused) {
        result.outcome = platform::Outcome::Refused;
        return result;
    }
    const platform::Hourglass hourglass(desk);
    const QString currentMonth = core::monthOf(session.Today);
    QStringList months;
    for (const QString& month : store::DiaryStore(run).months()) {
        if (core::isMonthKey(month) && month < currentMonth && isWithin(month, from, to))
            months += month;
    }
    core::requireSiteFolder(session);
    QSet<QString> failedMonths;
    const auto attempt = [&](const QString& month, const auto& action) {
        try {
            action();
            return true;
        } catch (platform::Failure& failure) {
            failure.addStage(month);
            desk.failure(failure);
            failedMonths.insert(month);
            return false;
        }
    };
    LogArchive archive(run, &saver.siteFiles());
    int done = 0;
    for (const QString& month : months) {
        if (attempt(month, [&] { archive.save(month.left(4), month.right(2)); }))
            ++result.logs;
        desk.progress(month, ++done, int(months.size()));
    }
    // Every log was listed again, and the upload needs each page once.
    core::removeRepeatedRows(core::files::kLogList.in(session));
    if (isWithin(currentMonth, from, to))
        attempt(currentMonth, [&] { saver.SaveHTML(); });
    attempt(core::monthOf(session.EnterDay), [&] { saver.previewStep(); });
    saver.siteFiles().tell(desk);
    result.failures = int(failedMonths.size());
    return result;
}

} // namespace velloria::site
