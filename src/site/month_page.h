// The generator: everything that belongs to one month of the site.
#pragma once

#include "core/run.h"
#include "core/upload_list.h"
#include "registers/log_register.h"
#include "site/month_run.h"
#include "store/diary_store.h"

namespace velloria::site {

/// Settings are read afresh at each call, and nothing is kept between calls; it talks to nobody, so that any thread may
/// call, one month after the other:
///
///     MonthPage(run).MakeHTML(path, u"2004/05"_s, PageKind::Current, MakeList::Yes, WithPrivate::No);
///
/// A month without entries is no failure: its page says so. Each page is built whole and put in place
/// when it is done: divided pages first, the month file last. Throws platform::Failure; what was not done stays old.
class MonthPage {
public:
    explicit MonthPage(const core::Run& run);

    /// Writes the month `yearMonth` ("yyyy/mm") to `path` with all that hangs on it: frames, divided pages and, for a
    /// current page, the feeds; with MakeList::Yes also the list of these files for the upload. A text that is no month
    /// makes a log without a calendar, but no current page. Returns the rows of that list, which another run may
    /// replace on disk at any time.
    std::vector<core::UploadRow> MakeHTML(const QString& path, const QString& yearMonth, PageKind pageKind,
                                          MakeList makeList, WithPrivate withPrivate);

private:
    void readEntries(MonthRun& run, WithPrivate withPrivate) const;
    void makeFeeds(MonthRun& run) const;
    bool uploadTakesFrom(const QString& folder) const;
    Division readDivision(MonthRun& run) const;
    void printCalendar(MonthRun& run, Page& page, const QDate& month) const;
    void printEntries(MonthRun& run) const;
    void printFoot(MonthRun& run) const;
    static std::vector<core::UploadRow> listOf(const MonthRun& run);

    core::Run m_run;
    store::DiaryStore m_store;
    registers::LogRegister m_logs;
};

} // namespace velloria::site
