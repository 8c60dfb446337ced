#include "site/site_rebuild.h"

#include "core/day_key.h"
#include "platform/failure.h"
#include "site/log_archive.h"

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
    if ((session.FilePath.isEmpty() || session.FileName.isEmpty()) && saver.chooseTarget() == Outcome::Refused) {
        result.outcome = Outcome::Refused;
        return result;
    }
    const QString currentMonth = core::monthOf(session.Today);
    QStringList months;
    for (const QString& month : store.Months()) {
        if (core::isMonthKey(month) && month < currentMonth && isWithin(month, from, to))
            months += month;
    }
    LogArchive archive(session, store, desk, clock);
    int done = 0;
    for (const QString& month : months) {
        try {
            archive.save(month.left(4), month.right(2));
            ++result.logs;
        } catch (platform::Failure& failure) {
            failure.addStage(month);
            desk.failure(failure);
            ++result.failures;
        }
        desk.progress(month, ++done, int(months.size()));
    }
    try {
        if (isWithin(currentMonth, from, to))
            saver.SaveHTML();
        saver.previewStep();
    } catch (platform::Failure& failure) {
        failure.addStage(currentMonth);
        desk.failure(failure);
        ++result.failures;
    }
    return result;
}

} // namespace velloria::site
