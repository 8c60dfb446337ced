// Which page of a month has which days, and which file each page is.
#pragma once

#include "site/division.h"

#include <QStringList>

#include <array>
#include <optional>

namespace velloria::site {

enum class Frames { No, Yes };

/// The one answer for all that prints a month, links into it or sends it: calendar, list of days, entries, links from
/// page to page, frames, list for the upload. Page 0 is the diary file, pages 1 and up are files of their own beside
/// it.
///
///     run.plan = PagePlan(division, run.days, run.path, Frames::No);
///     for (int page = 1; page <= run.plan.lastPage(); ++page)
///         MakeDiaryPage(run, PageMode::New, page);
///
/// The feeds give addresses of their own and take the numbers of pages alone.
class PagePlan {
public:
    /// A month without days on one page.
    PagePlan() = default;
    /// `days` have entries and come newest first; `monthFile` is a full path. Throws platform::Failure for a day that
    /// has no place in a month.
    PagePlan(const Division& division, QStringList days, const QString& monthFile = {}, Frames frames = Frames::No);

    /// Full paths. With frames the month file is the frameset, the diary file takes the entries, and the calendar file
    /// the calendar and the list of logs; without them all three are one.
    const QString& monthFile() const { return m_monthFile; }
    const QString& diaryFile() const { return m_diaryFile; }
    const QString& calenderFile() const { return m_calenderFile; }

    bool isDivided() const { return m_division.isDivided(); }
    /// Whether page 0 has entries.
    bool startsOnDiaryFile() const { return m_division.startsOnMonthFile(); }
    /// The highest number of a page that is a file of its own; below 1 without any.
    int lastPage() const { return isDivided() ? m_lastPage : 0; }
    /// The page of the oldest day, after which no link leads on; 0 in an undivided or empty month.
    int oldestPage() const;
    /// The page of a day with entries, as if the month were divided.
    int pageOf(const QString& day) const;
    /// Whether the entries of such a day stand on this page.
    bool isOn(int page, const QString& day) const { return !isDivided() || pageOf(day) == page; }

    /// Full path of a page.
    QString pathOf(int page) const;
    /// Name of its file; nothing for a page named after its day that has none.
    std::optional<QString> nameOf(int page) const;
    /// Name of the file that a link to a day with entries leads to; nothing when that is the diary file.
    std::optional<QString> otherFileOf(const QString& day) const;
    /// Whether other files are each one day's, so that a link needs no mark to find it.
    bool hasDayFiles() const { return m_division.names == PageNames::Day; }

    /// Names of all files of the month, as they go up.
    QStringList fileNames() const;

private:
    QString numberedName(int page) const;

    Division m_division;
    QStringList m_days;
    QString m_monthFile;
    QString m_diaryFile;
    QString m_calenderFile;
    std::array<qint16, 31> m_pageOfDay = noPages(); ///< index day minus 1; -1 for a day without entries
    int m_lastPage = 0;

    static std::array<qint16, 31> noPages();
};

} // namespace velloria::site
