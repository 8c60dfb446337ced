// The sections of the page, in their order. A section that has nothing to tell says so.
#pragma once

#include "vellinfo/figures.h"

#include <string>

namespace velloria::plugins::vellinfo {

std::string totalsSection(const Diary& diary, const Figures& figures);
std::string monthsSection(const Diary& diary, const Figures& figures);
std::string calendarSection(const Diary& diary, const Figures& figures);
std::string hoursSection(const Diary& diary, const Figures& figures);
std::string genresSection(const Diary& diary, const Figures& figures);
std::string weathersSection(const Diary& diary, const Figures& figures);
std::string recordsSection(const Diary& diary, const Figures& figures);
std::string wordsSection(const Diary& diary, const Figures& figures);
std::string picturesSection(const Diary& diary, const Figures& figures);
std::string privateSection(const Diary& diary, const Figures& figures);

/// A day that opens its entry in the editor; the day alone where it is none.
std::string dayLink(const std::string& day, std::int64_t number);

/// How the table of a period names what lies before the years that are shown.
inline constexpr char kEarlier[] = "それ以前";

} // namespace velloria::plugins::vellinfo
