// Drawings, as SVG within the page. Each has a name and a description; a table stands behind it on the page.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace velloria::plugins::vellinfo {

/// What a drawing is called and what it tells, for those who do not see it.
struct Label {
    std::string title;
    std::string description;
};

struct Column {
    std::string label; ///< below it, as far as there is room
    std::uint64_t value = 0;
};

/// Columns that stand side by side.
std::string columnChart(const Label& label, const std::vector<Column>& columns);

/// Bars below each other, the name before and the number behind each; `shares` adds their part of the sum.
enum class Shares { Hidden, Shown };
std::string barChart(const Label& label, const std::vector<Column>& bars, Shares shares);

struct Stack {
    std::string label;
    std::vector<std::uint64_t> parts;
};

inline constexpr std::size_t kColours = 8;

/// Columns of equal height, each divided into its parts, with a legend below. `names` are at most kColours.
std::string stackChart(const Label& label, const std::vector<std::string>& names, const std::vector<Stack>& stacks);

inline constexpr int kLevels = 5; ///< 0 for no entry

/// Half a year, a week a column: the level of each day of the months from `firstMonth` on.
std::string heatMap(const Label& label, int year, int firstMonth, const std::array<std::vector<int>, 6>& levels);

} // namespace velloria::plugins::vellinfo
