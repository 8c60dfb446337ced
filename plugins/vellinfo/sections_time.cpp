// The sections whose figures lie in time.
#include "vellinfo/charts.h"
#include "vellinfo/html.h"
#include "vellinfo/sections.h"

#include <algorithm>

namespace velloria::plugins::vellinfo {
namespace {

constexpr int kYearsOfAChart = 10; ///< in which each month has a column
constexpr std::array kWeekdays{"日", "月", "火", "水", "木", "金", "土"};
constexpr char kNoDays[] = "<p>日付のわかる日記がありません。</p>\n";

std::string yearName(int year) {
    return std::to_string(year) + "年";
}

std::vector<std::string> sumCells(const std::string& name, const Sum& sum) {
    return {name,
            number(sum.entries),
            number(sum.days),
            number(sum.characters),
            number(sum.entries ? sum.characters / sum.entries : 0),
            number(sum.pictures)};
}

std::vector<std::string> sumHeads(const char* first) {
    return {first, "日記", "日", "文字", "1件の文字", "画像"};
}

Sum ofDays(const Figures& figures) {
    Sum sum = figures.earlier;
    for (const auto& [year, ofYear] : figures.byYear)
        sum += ofYear;
    return sum;
}

/// "いちばん多いのは2026年で12件です。"
std::string mostOf(const std::vector<Column>& columns, const char* unit, const char* behindLabel = "") {
    const auto most = std::max_element(columns.begin(), columns.end(), [](const Column& left, const Column& right) {
        return left.value < right.value;
    });
    if (most->value == 0)
        return std::string("どれも0") + unit + "です。";
    return "いちばん多いのは" + most->label + behindLabel + "で" + number(most->value) + unit + "です。";
}

std::string chartPair(const std::string& what, const std::vector<Column>& entries,
                      const std::vector<Column>& characters) {
    const auto half = [](const std::string& title, const std::vector<Column>& columns, const char* unit) {
        return "<div><h3>" + title + "</h3>\n" + columnChart({title, mostOf(columns, unit)}, columns) + "</div>\n";
    };
    return "<div class=\"pair\">\n" + half(what + "日記の数", entries, "件") +
           half(what + "文字の数", characters, "字") + "</div>\n";
}

std::string years(const Figures& figures) {
    std::vector<Column> entries;
    std::vector<Column> characters;
    Table table{"t-years", "年ごとの数", sumHeads("年"), {}, sumCells("計", ofDays(figures))};
    if (figures.earlier.entries > 0)
        table.rows.push_back(sumCells(kEarlier, figures.earlier));
    for (const auto& [year, sum] : figures.byYear) {
        entries.push_back({yearName(year), sum.entries});
        characters.push_back({yearName(year), sum.characters});
        table.rows.push_back(sumCells(yearName(year), sum));
    }
    return chartPair("年ごとの", entries, characters) + folded(table);
}

/// The months of some years that follow each other, from the first to the last one with an entry.
std::string monthCharts(const Figures& figures, Sums::const_iterator begin, Sums::const_iterator end) {
    std::vector<Column> entries;
    std::vector<Column> characters;
    for (std::int32_t month = begin->first; month <= std::prev(end)->first; ++month) {
        const auto found = figures.byMonth.find(month);
        const Sum sum = found == figures.byMonth.end() ? Sum() : found->second;
        const std::string label = std::to_string(month / 12) + "/" + std::to_string(month % 12 + 1);
        entries.push_back({label, sum.entries});
        characters.push_back({label, sum.characters});
    }
    const std::string from = yearName(begin->first / 12);
    const std::string to = yearName(std::prev(end)->first / 12);
    return chartPair((from == to ? from : from + "から" + to) + "の月ごとの", entries, characters);
}

Table monthTable(const Figures& figures, const char* id, const char* caption, std::uint64_t Sum::*kind) {
    Table table{id, caption, {"年"}, {}, {"計"}};
    for (int month = 1; month <= 12; ++month)
        table.heads.push_back(std::to_string(month) + "月");
    table.heads.push_back("計");
    if (figures.earlier.entries > 0) {
        table.rows.push_back({kEarlier});
        table.rows.back().resize(13);
        table.rows.back().push_back(number(figures.earlier.*kind));
    }
    std::array<std::uint64_t, 12> sums{};
    for (const auto& [year, ofYear] : figures.byYear) {
        table.rows.push_back({yearName(year)});
        for (int month = 0; month < 12; ++month) {
            const auto found = figures.byMonth.find(year * 12 + month);
            const std::uint64_t value = found == figures.byMonth.end() ? 0 : found->second.*kind;
            table.rows.back().push_back(found == figures.byMonth.end() ? "" : number(value));
            sums[static_cast<std::size_t>(month)] += value;
        }
        table.rows.back().push_back(number(ofYear.*kind));
    }
    for (const std::uint64_t sum : sums)
        table.sums.push_back(number(sum));
    table.sums.push_back(number(ofDays(figures).*kind));
    return table;
}

std::string months(const Figures& figures) {
    std::string html;
    for (auto begin = figures.byMonth.begin(); begin != figures.byMonth.end();) {
        const auto end = figures.byMonth.lower_bound((begin->first / 12 + kYearsOfAChart) * 12);
        html += monthCharts(figures, begin, end);
        begin = end;
    }
    return html + folded(monthTable(figures, "t-months", "月ごとの日記の数", &Sum::entries)) +
           folded(monthTable(figures, "t-months-characters", "月ごとの文字の数", &Sum::characters));
}

// ---- the calendar

int levelOf(const Figures& figures, const Sum& day) {
    int level = day.entries > 0 ? 1 : 0;
    for (const std::uint64_t least : figures.levels)
        level += day.characters > 0 && day.characters >= least;
    return std::min(level, kLevels - 1);
}

std::string levelLegend(const Figures& figures) {
    std::string html = "<ul class=\"legend\">";
    const auto add = [&](std::size_t level, const std::string& text) {
        html += "<li><svg viewBox=\"0 0 10 10\" aria-hidden=\"true\"><path class=\"heat h" + std::to_string(level) +
                "\" d=\"M0 0h10v10h-10z\"/></svg>" + text + "</li>";
    };
    add(0, "日記なし");
    add(1, "日記あり");
    const std::vector<std::uint64_t>& levels = figures.levels;
    for (std::size_t at = 0; at < levels.size(); ++at) {
        if (at + 1 == levels.size() || levels[at + 1] != levels[at]) // no day is of a level that the next one covers
            add(at + 2, number(levels[at]) + "字から");
    }
    return html + "</ul>\n";
}

std::string calendarOf(const Figures& figures, int year) {
    Table table{"t-heat-" + std::to_string(year), yearName(year) + "の毎日の文字の数", {"月"}, {}, {}};
    for (int day = 1; day <= 31; ++day)
        table.heads.push_back(std::to_string(day));
    table.heads.push_back("計");
    Sum ofYear;
    std::array<std::vector<int>, 12> levels;
    for (int month = 1; month <= 12; ++month) {
        table.rows.push_back({std::to_string(month) + "月"});
        std::vector<std::string>& cells = table.rows.back();
        Sum ofMonth;
        for (int day = 1; day <= daysOf(year, month); ++day) {
            const auto found = figures.byDay.find(dayOf(Date{year, month, day}));
            const Sum sum = found == figures.byDay.end() ? Sum() : found->second;
            cells.push_back(sum.entries ? number(sum.characters) : "");
            levels[static_cast<std::size_t>(month - 1)].push_back(levelOf(figures, sum));
            ofMonth += sum;
        }
        cells.resize(32);
        cells.push_back(number(ofMonth.characters));
        ofYear += ofMonth;
    }
    table.sums = {"計"};
    table.sums.resize(32);
    table.sums.push_back(number(ofYear.characters));
    const std::string told =
        number(ofYear.days) + "日に" + number(ofYear.entries) + "件、" + number(ofYear.characters) + "字。";
    std::string html = "<h3>" + yearName(year) + "</h3>\n<p class=\"quiet\">" + told + "</p>\n<div class=\"pair\">\n";
    for (const int first : {1, 7}) {
        std::array<std::vector<int>, 6> half;
        std::copy_n(levels.begin() + (first - 1), half.size(), half.begin());
        const std::string title =
            yearName(year) + std::to_string(first) + "月から" + std::to_string(first + 5) + "月までのカレンダー";
        html +=
            "<div>" + heatMap({title, "色の濃さは、その日の文字の数。一年で" + told}, year, first, half) + "</div>\n";
    }
    return html + "</div>\n" + folded(table);
}

} // namespace

std::string monthsSection(const Diary&, const Figures& figures) {
    if (figures.byDay.empty())
        return kNoDays;
    std::string html = years(figures) + months(figures);
    if (figures.earlier.entries > 0)
        html += "<p class=\"counted\">図と表は、日記のある新しい年から" + std::to_string(kYearsShown) +
                "年分です。それより前は、表の「それ以前」にまとめています。</p>\n";
    return html;
}

std::string calendarSection(const Diary&, const Figures& figures) {
    if (figures.byDay.empty())
        return kNoDays;
    std::string html = levelLegend(figures);
    for (auto year = figures.byYear.rbegin(); year != figures.byYear.rend(); ++year)
        html += calendarOf(figures, year->first);
    return html + "<p class=\"counted\">色は、文字のある日を文字の数の順に四つに分けたものです。</p>\n";
}

std::string hoursSection(const Diary&, const Figures& figures) {
    std::string html = "<div class=\"pair\">\n";
    if (!figures.byDay.empty()) {
        std::vector<Column> columns;
        Table table{"t-weekdays", "曜日ごとの数", sumHeads("曜日"), {}, sumCells("計", ofDays(figures))};
        for (std::size_t day = 0; day < kWeekdays.size(); ++day) {
            columns.push_back({kWeekdays[day], figures.byWeekday[day].entries});
            table.rows.push_back(sumCells(kWeekdays[day], figures.byWeekday[day]));
        }
        const std::string title = "曜日ごとの日記の数";
        html += "<div><h3>" + title + "</h3>\n" + columnChart({title, mostOf(columns, "件")}, columns) + folded(table) +
                "</div>\n";
    }
    std::vector<Column> columns;
    Table table{"t-hours", "時刻ごとの日記の数", {"時", "日記", "文字"}, {}, {}};
    for (std::size_t hour = 0; hour < figures.byHour.size(); ++hour) {
        const Sum& sum = figures.byHour[hour];
        const std::string name = hour == kNoHour ? "時刻なし" : std::to_string(hour) + "時";
        if (hour < kNoHour)
            columns.push_back({std::to_string(hour), sum.entries});
        table.rows.push_back({name, number(sum.entries), number(sum.characters)});
    }
    table.sums = {"計", number(figures.total.entries), number(figures.total.characters)};
    const std::string title = "書いた時刻ごとの日記の数";
    const std::string told =
        number(figures.byHour[kNoHour].entries) + "件には時刻がありません。" + mostOf(columns, "件", "時");
    return html + "<div><h3>" + title + "</h3>\n" + columnChart({title, told}, columns) + folded(table) +
           "</div>\n</div>\n<p "
           "class=\"counted\">曜日は日記の日付のもの、時刻は日記を最後に保存したときのものです。</p>\n";
}

} // namespace velloria::plugins::vellinfo
