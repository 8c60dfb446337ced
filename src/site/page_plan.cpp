#include "site/page_plan.h"

#include "core/day_key.h"
#include "core/numbers.h"
#include "core/path_names.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

QString dayFile(const QString& day) {
    return core::dayFileName(day) + u".htm"_s;
}

} // namespace

PagePlan::PagePlan(const Division& division, QStringList days, const QString& monthFile, Frames frames)
    : m_division(division)
    , m_days(std::move(days))
    , m_monthFile(monthFile)
    , m_diaryFile(frames == Frames::Yes ? core::GetBaseName(monthFile) + u"_D.htm"_s : monthFile)
    , m_calenderFile(frames == Frames::Yes ? core::GetBaseName(monthFile) + u"_C.htm"_s : monthFile) {
    int page = division.firstPage == FirstPage::OnMonthFile ? 0 : 1;
    int daysOnPage = 1;
    for (const QString& day : std::as_const(m_days)) {
        m_pageOfDay[std::size_t(dayOfMonth(day) - 1)] = qint16(page);
        if (daysOnPage == division.daysPerPage) {
            daysOnPage = 1;
            ++page;
        } else {
            ++daysOnPage;
        }
    }
    // A last page that is exactly full has opened one page too many.
    m_lastPage = IsMultiple(double(m_days.size()), division.daysPerPage) ? page - 1 : page;
}

std::array<qint16, 31> PagePlan::noPages() {
    std::array<qint16, 31> pages;
    pages.fill(-1);
    return pages;
}

int PagePlan::oldestPage() const {
    if (!isDivided())
        return 0;
    const auto* oldest = std::ranges::find_if(m_pageOfDay, [](qint16 page) { return page != -1; });
    return oldest == m_pageOfDay.end() ? 0 : *oldest;
}

int PagePlan::pageOf(const QString& day) const {
    return m_pageOfDay[std::size_t(dayOfMonth(day) - 1)];
}

QString PagePlan::pathOf(int page) const {
    if (page == 0)
        return m_diaryFile;
    return core::withSeparator(core::GetParentFolder(m_diaryFile)) + nameOf(page).value_or(numberedName(page));
}

std::optional<QString> PagePlan::nameOf(int page) const {
    if (page == 0)
        return core::GetFileName(m_diaryFile);
    if (!hasDayFiles())
        return numberedName(page);
    const auto found = std::ranges::find_if(m_days, [&](const QString& day) { return pageOf(day) == page; });
    return found == m_days.end() ? std::nullopt : std::optional(dayFile(*found));
}

std::optional<QString> PagePlan::otherFileOf(const QString& day) const {
    const int page = m_division.divided == Divided::Yes ? pageOf(day) : 0;
    if (page == 0)
        return std::nullopt;
    return hasDayFiles() ? dayFile(day) : numberedName(page);
}

QStringList PagePlan::fileNames() const {
    QStringList names{core::GetFileName(m_monthFile)};
    if (m_diaryFile != m_monthFile)
        names += {core::GetFileName(m_diaryFile), core::GetFileName(m_calenderFile)};
    if (m_division.divided != Divided::Yes)
        return names;
    if (hasDayFiles()) {
        // With the first page on the month file the newest day has no page of its own.
        for (qsizetype i = startsOnDiaryFile() ? 1 : 0; i < m_days.size(); ++i)
            names += dayFile(m_days[i]);
    } else {
        for (int page = 1; page <= m_lastPage; ++page)
            names += numberedName(page);
    }
    return names;
}

/// "x_01.htm" beside "x.htm".
QString PagePlan::numberedName(int page) const {
    return core::GetBaseName(core::GetFileName(m_diaryFile)) + u'_' + core::twoDigits(page) + u".htm"_s;
}

} // namespace velloria::site
