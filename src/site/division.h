// How a month is divided into pages.
#pragma once

#include "site/site_settings.h"

#include <QStringList>

#include <array>

namespace velloria::site {

/// Page number of each day of the month, index day minus 1; -1 for a day without entries.
using DayPages = std::array<qint16, 31>;

/// The division settings after their rules, and what follows from them for the days of a month. As it is made it is
/// one unbroken page.
struct Division {
    int diaryDivide = 0;     ///< the month is divided; "set" is any value but 0
    int diaryTerm = 31;      ///< days with entries on one page
    int diaryOnTop = 1;      ///< 1: the first page stays on the month file
    int useFileName2Day = 0; ///< 1: pages are named after their day; 0 unless one day a page is divided off
    DayPages dayPage{};
    int lastPage = 0; ///< highest page number in use; -1 or 0 for an empty month

    /// The stored settings, `DiaryTerm` 0 as 31, `UseFileName2Day` only where it has an effect.
    static Division read(const SiteSettings& settings);
    /// Works out the pages of `days`, which come newest first. Throws platform::Failure for a day that has no place in
    /// a month.
    void countPages(const QStringList& days);

    /// The page of a day that countPages has seen.
    int pageOf(const QString& day) const;
    /// Whether the day's entries stand on another page than the month file.
    bool isOnOtherPage(const QString& day) const { return pageOf(day) != 0 && diaryDivide == 1; }
};

/// Whether `a` divided by `b` leaves no remainder, worked in floating point.
bool IsMultiple(double a, double b);

/// Day of the month, 1 to 31, in the last two characters of a day key. Throws platform::Failure.
int dayOfMonth(const QString& day);

} // namespace velloria::site
