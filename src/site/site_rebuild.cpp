#include "site/site_rebuild.h"

#include "core/day_key.h"
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

RebuildResult rebuildSite(core::Session& session, const store::DiaryStore& store, platform::Desk& desk,
                          const platform::Clock& clock, const QString& from, const QString& to) {
    RebuildResult result;
    SaveHtml saver(session, store, desk, clock);
    // Asked for first: the logs are to lie in the site folder as well.
    if ((session.FilePath.isEmpty() || session.FileName.isEmpty()) &&
        saver.chooseTarget() == platform::Outcome::Refused) {
        result.outcome = platform::Outcome::Refused;
        return result;
    }
    const platform::Hourglass hourglass(desk);
    const QString currentMonth = core::monthOf(session.Today);
    QStringList months;
    for (const QString& month : store.months()) {
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
    LogArchive archive(session, store, desk, clock, &saver.siteFiles());
    int done = 0;
    for (const QString& month : months) {
        if (attempt(month, [&] { archive.save(month.left(4), month.right(2)); }))
            ++result.logs;
        desk.progress(month, ++done, int(months.size()));
    }
    // Every log was listed again, and the upload needs each page once.
    core::removeRepeatedRows(session.UserPath + u"uploadlog.tmp"_s);
    if (isWithin(currentMonth, from, to))
        attempt(currentMonth, [&] { saver.SaveHTML(); });
    attempt(core::monthOf(session.EnterDay), [&] { saver.previewStep(); });
    saver.siteFiles().tell(desk);
    result.failures = int(failedMonths.size());
    return result;
}

} // namespace velloria::site
