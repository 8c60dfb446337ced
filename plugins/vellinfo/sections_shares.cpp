// Genres and weathers: their shares, and how those went on.
#include "vellinfo/charts.h"
#include "vellinfo/html.h"
#include "vellinfo/sections.h"

#include <numeric>

namespace velloria::plugins::vellinfo {
namespace {

constexpr std::size_t kNamesShown = 15;
constexpr std::size_t kNamesInCourse = kColours - 1; ///< beside all others

std::string nameOf(const std::string& name) {
    return name.empty() ? "そのほか" : name;
}

std::string isolated(const std::string& name) {
    return "<bdi>" + escaped(nameOf(name)) + "</bdi>";
}

std::vector<std::string> countCells(const std::string& name, const std::vector<std::uint64_t>& counts) {
    std::vector<std::string> cells{name};
    for (const std::uint64_t count : counts)
        cells.push_back(number(count));
    cells.push_back(number(std::accumulate(counts.begin(), counts.end(), std::uint64_t(0))));
    return cells;
}

std::string courseOf(const std::string& id, const std::string& what, const Course& course) {
    const std::string title = what + "の移り変わり";
    Table table{id, title + "と日記の数", {course.isByMonth ? "月" : "年"}, {}, {}};
    std::vector<std::string> names;
    for (const std::string& name : course.names) {
        names.push_back(nameOf(name));
        table.heads.push_back(isolated(name));
    }
    table.heads.push_back("計");
    std::vector<std::uint64_t> sums = course.earlier;
    if (std::accumulate(sums.begin(), sums.end(), std::uint64_t(0)) > 0)
        table.rows.push_back(countCells(kEarlier, sums));
    std::vector<Stack> stacks;
    for (const auto& [period, counts] : course.entries) {
        const std::string label = course.isByMonth ? std::to_string(period / 12) + "/" + std::to_string(period % 12 + 1)
                                                   : std::to_string(period) + "年";
        stacks.push_back({label, counts});
        table.rows.push_back(countCells(label, counts));
        for (std::size_t at = 0; at < counts.size(); ++at)
            sums[at] += counts[at];
    }
    table.sums = countCells("計", sums);
    const std::string told = table.heads[0] + "ごとに、日記の数を" + what + "で分けた割合です。";
    return "<h3>" + title + "</h3>\n" + stackChart({title, told}, names, stacks) + folded(table);
}

std::string sharesOf(const std::string& id, const std::string& what, const Sum& total,
                     const std::vector<Share>& shares) {
    std::vector<Column> bars;
    Table table{id, what + "ごとの数", {what, "日記", "割合", "文字", "割合"}, {}, {}};
    const auto cells = [&](const std::string& name, const Sum& sum) {
        return std::vector<std::string>{name, number(sum.entries), percent(sum.entries, total.entries),
                                        number(sum.characters), percent(sum.characters, total.characters)};
    };
    for (const Share& share : shares) {
        bars.push_back({nameOf(share.name), share.sum.entries});
        table.rows.push_back(cells(isolated(share.name), share.sum));
    }
    table.sums = cells("計", total);
    const std::string title = what + "ごとの日記の割合";
    const std::string told = "いちばん多いのは「" + nameOf(shares[0].name) + "」で" +
                             percent(shares[0].sum.entries, total.entries) + "です。";
    return "<h3>" + title + "</h3>\n" + barChart({title, told}, bars, Shares::Shown) + folded(table);
}

std::string section(const Diary& diary, const Figures& figures, const std::string& id, const std::string& what,
                    std::uint32_t Note::*kind, const std::vector<std::string>& names) {
    std::string html = "<div class=\"pair\">\n<div>" +
                       sharesOf("t-" + id, what, figures.total, Figures::shares(diary, kind, names, kNamesShown)) +
                       "</div>\n";
    if (!figures.byDay.empty())
        html += "<div>" + courseOf("t-" + id + "-course", what, figures.course(diary, kind, names, kNamesInCourse)) +
                "</div>\n";
    return html + "</div>\n";
}

} // namespace

std::string genresSection(const Diary& diary, const Figures& figures) {
    return section(diary, figures, "genres", "ジャンル", &Note::genre, diary.genres);
}

std::string weathersSection(const Diary& diary, const Figures& figures) {
    return section(diary, figures, "weathers", "天気", &Note::weather, diary.weathers) +
           "<p class=\"counted\">「-」は、天気を選んでいない日記です。</p>\n";
}

} // namespace velloria::plugins::vellinfo
