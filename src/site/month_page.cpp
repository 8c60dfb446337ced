#include "site/month_page.h"

#include "core/date_forms.h"
#include "core/files.h"
#include "core/path_names.h"
#include "core/site_keys.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "site/calendar_page.h"
#include "site/day_list.h"
#include "site/entry_page.h"
#include "site/feeds.h"
#include "site/frames.h"
#include "site/local_page.h"
#include "site/number_check.h"
#include "site/own_pages.h"
#include "site/page_head.h"

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

constexpr unsigned kOrdinaryMode = 0666;

/// The month as a date; nothing for a text such as "2004/ab", of which a log is made all the same.
std::optional<QDate> dateOf(const QString& yearMonth, int yearNow, PageKind pageKind) {
    if (const auto date = core::parseDate(yearMonth, yearNow))
        return date->date();
    if (pageKind == PageKind::Current)
        throw platform::Failure(u"ページを作成できません。"_s, {}, u"「%1」は月として読めません。"_s.arg(yearMonth));
    return std::nullopt;
}

void printHeading(Page& page, const MonthRun& run, const std::optional<QDate>& month) {
    const QString year = month ? QString::number(month->year()) : run.yearMonth.section(u'/', 0, 0);
    const QString number = month ? QString::number(month->month()) : run.yearMonth.section(u'/', 1);
    page.print(u"<a name=this_month></a><H3 align="_s, run.settings.text(keys::general::kTitleAlign),
               u"><a name=TOP>"_s, year, u"年"_s, number, u"月分</a></H3>"_s);
    page.print();
}

} // namespace

MonthPage::MonthPage(const core::Run& run)
    : m_run(run)
    , m_store(run)
    , m_logs(run.session.databaseFile()) {}

std::vector<core::UploadRow> MonthPage::MakeHTML(const QString& path, const QString& yearMonth, PageKind pageKind,
                                                 MakeList makeList, WithPrivate withPrivate) {
    const SiteSettings settings(m_run.session);
    const std::optional<QDate> month = dateOf(yearMonth, m_run.clock.now().date().year(), pageKind);
    Pages pages(isLocalPage(m_run.session, path) ? localPageMode(m_run.session) : kOrdinaryMode);
    MonthRun run{m_run.session, settings, pages, path, yearMonth, pageKind};
    const Division division = readDivision(run);
    readEntries(run, withPrivate);
    requireNumbers(run, division, month.has_value());
    // The feeds come first: without a public entry the run ends here and touches no page.
    makeFeeds(run);
    run.plan = PagePlan(division, run.days, path, run.frameOn ? Frames::Yes : Frames::No);
    if (run.frameOn)
        MakeFrameSet(run);

    Page& page = pages.create(run.plan.diaryFile());
    printHead(page, run);
    printHeading(page, run, month);
    if (month)
        printCalendar(run, page, *month);
    printDayList(pages.append(run.plan.diaryFile()), run);
    printEntries(run);
    if (pageKind == PageKind::Current && settings.isOn(keys::general::kUseLog))
        MakeLogList(run, m_logs);
    printFoot(run);
    const std::vector<core::UploadRow> rows = listOf(run);
    const core::File& list = pageKind == PageKind::Current ? core::files::kPageList : core::files::kLogPageList;
    if (makeList == MakeList::Yes)
        core::writeUploadList(list.in(m_run.session), rows);
    if (isLocalPage(m_run.session, path) && uploadTakesFrom(m_run.session.DataPath))
        removeOldDayPages(m_run.session);
    return rows;
}

void MonthPage::makeFeeds(MonthRun& run) const {
    if (run.pageKind != PageKind::Current || !run.settings.isOn(keys::rss::kRSSOn))
        return;
    clsRSSreader feeds(m_run, run.settings);
    run.rssOn = feeds.Initialize(m_run.session.RSSIniFile);
    if (!run.rssOn)
        return;
    feeds.SetFilePath(run.path);
    run.feedBase = core::GetBaseName(feeds.GetDiaryURL());
    feeds.MakeRSS();
}

Division MonthPage::readDivision(MonthRun& run) const {
    const bool isCurrent = run.pageKind == PageKind::Current;
    Division division;
    if (isCurrent || run.settings.isOn(keys::divide::kLogDivide))
        division = Division::read(run.settings);
    // A preview with private entries must not take the name of a day page that the upload sends to the server.
    if (isLocalPage(m_run.session, run.path) && uploadTakesFrom(m_run.session.DataPath))
        division.names = PageNames::Number;
    run.frameOn = isCurrent && run.settings.isOn(keys::frame::kFrameOn);
    return division;
}

/// Whether the site lies there, or did so when its list was made: a Save As that failed or was killed leaves its list.
bool MonthPage::uploadTakesFrom(const QString& folder) const {
    if (platform::isSameFile(m_run.session.FilePath, folder))
        return true;
    const std::vector<core::UploadRow> rows = core::readUploadList(core::files::kPageList.in(m_run.session));
    return std::any_of(rows.begin(), rows.end(),
                       [&](const core::UploadRow& row) { return platform::isSameFile(row.folder, folder); });
}

void MonthPage::readEntries(MonthRun& run, WithPrivate withPrivate) const {
    run.entries = withPrivate == WithPrivate::Yes ? m_store.EntriesOfMonth(run.yearMonth)
                                                  : m_store.PublicEntriesOfMonth(run.yearMonth);
    for (const store::Entry& entry : run.entries) {
        if (run.days.isEmpty() || run.days.last() != entry.day)
            run.days += entry.day;
    }
}

void MonthPage::printCalendar(MonthRun& run, Page& page, const QDate& month) const {
    if (run.frameOn) {
        MakeCalenderFrame(run, month.year(), month.month());
        MakeCalender(run, month.year(), month.month(), u"DIARY"_s);
    } else if (run.settings.isOn(keys::calender::kUse)) {
        MakeCalender(run, month.year(), month.month(), u"_self"_s);
        page.print(u"<BR>"_s);
    }
}

void MonthPage::printEntries(MonthRun& run) const {
    if (run.plan.startsOnDiaryFile()) {
        Page& page = run.pages.append(run.plan.diaryFile());
        page.print(u"<HR>"_s);
        page.print();
        MakeDiaryPage(run, PageMode::Append, 0);
    }
    for (int page = 1; page <= run.plan.lastPage(); ++page)
        MakeDiaryPage(run, PageMode::New, page);
}

void MonthPage::printFoot(MonthRun& run) const {
    if (run.frameOn) {
        Page& column = run.pages.append(run.plan.calenderFile());
        column.print(run.settings.piece(keys::calender_window::kDownText));
        column.print(u"</BODY>\r\n</HTML>"_s);
        run.pages.commit(run.plan.calenderFile());
    }
    printTail(run.pages.append(run.plan.diaryFile()), run);
    run.pages.commit(run.plan.diaryFile());
    // Last of all: until both frames are there the old page stays. The page of a day may have taken its name.
    if (run.frameOn && run.pages.isUnfinished(run.path))
        run.pages.commit(run.path);
}

std::vector<core::UploadRow> MonthPage::listOf(const MonthRun& run) {
    const QString folder = core::GetParentFolder(run.path);
    const QString base = core::GetBaseName(core::GetFileName(run.path));
    std::vector<core::UploadRow> rows;
    if (run.rssOn) {
        for (const QString& ending : clsRSSreader::endings())
            rows.push_back({folder, base + ending});
    }
    for (const QString& name : run.plan.fileNames())
        rows.push_back({folder, name});
    return rows;
}

} // namespace velloria::site
