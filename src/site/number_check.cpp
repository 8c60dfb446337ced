#include "site/number_check.h"

#include "core/site_keys.h"

#include <initializer_list>

namespace velloria::site {
namespace {

void read(const SiteSettings& settings, std::initializer_list<core::Setting> numbers) {
    for (const core::Setting& number : numbers)
        settings.number(number);
}

} // namespace

void requireNumbers(const MonthRun& run, const Division& division, bool hasMonth) {
    const SiteSettings& settings = run.settings;
    read(settings, {keys::day_list::kAddTitle, keys::day_list::kUse, keys::day_list::kMarginLeft, keys::calender::kUse,
                    keys::general::kUseLog, keys::general::kGenre, keys::general::kUseCategory,
                    keys::general::kVellLinkOn, keys::divide::kLogDivide, keys::halo_scan::kHaloScanOn});
    if (run.pageKind == PageKind::Current)
        read(settings, {keys::rss::kRSSOn});
    if (run.frameOn)
        read(settings, {keys::frame::kScrolling, keys::frame::kResize});
    if (hasMonth && (run.frameOn || settings.isOn(keys::calender::kUse)))
        read(settings, {keys::frame::kFrameOn, keys::calender::kNoBorder, keys::calender::kBorderSize,
                        keys::calender::kCellPadding, keys::calender::kFirstDayOfWeek});
    if (division.startsOnMonthFile() || !run.entries.empty())
        read(settings, {keys::contents::kTableBorder, keys::contents::kCellspacing, keys::contents::kTableWidth,
                        keys::general::kWeather, keys::page_move_link::kPageMoveOn});
}

} // namespace velloria::site
