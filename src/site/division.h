// How the settings divide a month into pages.
#pragma once

#include "site/site_settings.h"

#include <QString>

namespace velloria::site {

/// Whether a month has more than one page. Of a number but 0 and 1 the pages are made, but nothing leads to them and
/// the upload does not know them.
enum class Divided { No, Yes, Unlinked };

/// Where the newest entries of a divided month stand.
enum class FirstPage { OnMonthFile, OnPageOfItsOwn };

/// What the pages of a divided month are named after.
enum class PageNames { Number, Day };

/// The division settings after their rules, for a PagePlan to be made of. As it is made it is one unbroken page.
struct Division {
    Divided divided = Divided::No;
    int daysPerPage = 31; ///< days with entries on one page; a negative number is never reached
    FirstPage firstPage = FirstPage::OnMonthFile;
    PageNames names = PageNames::Number; ///< PageNames::Day only where hasOneDayPerPage

    /// The stored settings: `DiaryTerm` 0 is 31, `UseFileName2Day` is looked at only where it has an effect.
    static Division read(const SiteSettings& settings);

    bool isDivided() const { return divided != Divided::No; }
    bool hasOneDayPerPage() const { return divided == Divided::Yes && daysPerPage == 1; }
    /// Whether the month file takes entries itself.
    bool startsOnMonthFile() const { return !isDivided() || firstPage == FirstPage::OnMonthFile; }
};

/// Whether `a` divided by `b` leaves no remainder, worked in floating point.
bool IsMultiple(double a, double b);

/// Day of the month, 1 to 31, in the last two characters of a day key. Throws platform::Failure.
int dayOfMonth(const QString& day);

} // namespace velloria::site
