#include "vellinfo/figures.h"

#include <algorithm>
#include <numeric>

namespace velloria::plugins::vellinfo {
namespace {

constexpr std::size_t kRunsShown = 3;
constexpr int kYearsByMonth = 3;

int monthOf(Date date) {
    return date.year * 12 + date.month - 1;
}

/// Places of the names, by their number of entries, those of the most first.
std::vector<std::uint32_t> ranked(const Diary& diary, std::uint32_t Note::*kind, std::size_t names) {
    std::vector<std::uint64_t> counts(names);
    for (const Note& note : diary.notes)
        ++counts[note.*kind];
    std::vector<std::uint32_t> places(names);
    std::iota(places.begin(), places.end(), 0U);
    std::stable_sort(places.begin(), places.end(),
                     [&](std::uint32_t left, std::uint32_t right) { return counts[left] > counts[right]; });
    return places;
}

/// Where each name comes: its rank, or `most` for one of the rest. A rest of one name is no rest.
std::vector<std::size_t> slots(const std::vector<std::uint32_t>& places, std::size_t most) {
    std::vector<std::size_t> found(places.size());
    for (std::size_t rank = 0; rank < places.size(); ++rank)
        found[places[rank]] = places.size() <= most + 1 ? rank : std::min(rank, most);
    return found;
}

std::size_t slotCount(std::size_t names, std::size_t most) {
    return std::min(names, most + 1);
}

bool hasRest(std::size_t names, std::size_t most) {
    return names > most + 1;
}

} // namespace

void Sum::add(const Note& note) {
    ++entries;
    characters += note.characters;
    pictures += note.pictures;
    if (note.isPrivate) {
        ++privateEntries;
        privateCharacters += note.characters;
    }
}

Sum& Sum::operator+=(const Sum& other) {
    entries += other.entries;
    characters += other.characters;
    pictures += other.pictures;
    days += other.days;
    privateEntries += other.privateEntries;
    privateCharacters += other.privateCharacters;
    return *this;
}

Figures::Figures(const Diary& diary) {
    sumUp(diary);
    findRuns();
    findLevels();
}

void Figures::sumUp(const Diary& diary) {
    for (const Note& note : diary.notes) {
        total.add(note);
        byHour[note.hour].add(note);
        if (note.day == kNoDay)
            undated.add(note);
        else
            byDay[note.day].add(note);
    }
    for (auto& [day, sum] : byDay) {
        sum.days = 1;
        const Date date = dateOf(day);
        total.days += 1;
        byWeekday[static_cast<std::size_t>(weekdayOf(day))] += sum;
        byMonth[monthOf(date)] += sum;
        byYear[date.year] += sum;
    }
    while (byYear.size() > kYearsShown) {
        earlier += byYear.begin()->second;
        byYear.erase(byYear.begin());
    }
    firstYear = byYear.empty() ? 0 : byYear.begin()->first;
    byMonth.erase(byMonth.begin(), byMonth.lower_bound(firstYear * 12));
}

void Figures::findRuns() {
    for (auto at = byDay.begin(); at != byDay.end();) {
        Run run{at->first, at->first};
        for (++at; at != byDay.end() && at->first == run.last + 1; ++at)
            run.last = at->first;
        longestRuns.push_back(run);
    }
    std::stable_sort(longestRuns.begin(), longestRuns.end(),
                     [](const Run& left, const Run& right) { return left.days() > right.days(); });
    longestRuns.resize(std::min(longestRuns.size(), kRunsShown));
}

/// A quarter of the days that have characters is of each level, as far as days differ.
void Figures::findLevels() {
    std::vector<std::uint64_t> characters;
    for (const auto& [day, sum] : byDay) {
        if (sum.characters > 0)
            characters.push_back(sum.characters);
    }
    std::sort(characters.begin(), characters.end());
    for (std::size_t quarter = 1; quarter <= 3 && !characters.empty(); ++quarter)
        levels.push_back(characters[characters.size() * quarter / 4]);
}

std::vector<Share> Figures::shares(const Diary& diary, std::uint32_t Note::*kind, const std::vector<std::string>& names,
                                   std::size_t most) {
    const std::vector<std::uint32_t> places = ranked(diary, kind, names.size());
    const std::vector<std::size_t> slot = slots(places, most);
    std::vector<Share> shares(slotCount(names.size(), most));
    for (std::size_t rank = 0; rank < shares.size(); ++rank) {
        if (rank < most || !hasRest(names.size(), most))
            shares[rank].name = names[places[rank]];
    }
    for (const Note& note : diary.notes)
        shares[slot[note.*kind]].sum.add(note);
    return shares;
}

Course Figures::course(const Diary& diary, std::uint32_t Note::*kind, const std::vector<std::string>& names,
                       std::size_t most) const {
    const std::vector<std::size_t> slot = slots(ranked(diary, kind, names.size()), most);
    Course course;
    course.isByMonth = !byYear.empty() && earlier.entries == 0 && byYear.rbegin()->first - firstYear < kYearsByMonth;
    for (const Share& share : shares(diary, kind, names, most))
        course.names.push_back(share.name);
    const Day first = byYear.empty() ? kNoDay : dayOf(Date{firstYear, 1, 1});
    course.earlier.resize(course.names.size());
    for (const Note& note : diary.notes) {
        if (note.day == kNoDay)
            continue;
        const Date date = dateOf(note.day);
        std::vector<std::uint64_t>& counts =
            note.day < first ? course.earlier : course.entries[course.isByMonth ? monthOf(date) : date.year];
        counts.resize(course.names.size());
        ++counts[slot[note.*kind]];
    }
    return course;
}

} // namespace velloria::plugins::vellinfo
