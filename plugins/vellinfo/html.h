// Pieces of the page: texts, numbers and tables. All that is written is well-formed XML as well.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velloria::plugins::vellinfo {

/// Text for an element or an attribute; what no page may hold becomes U+FFFD.
std::string escaped(std::string_view text);

/// "12,345".
std::string number(std::uint64_t value);
/// "12.3%" of the whole; "0.0%" of nothing.
std::string percent(std::uint64_t part, std::uint64_t whole);

/// The cells are HTML. The first cell of a row is its head.
struct Table {
    std::string id;
    std::string caption;
    std::vector<std::string> heads;
    std::vector<std::vector<std::string>> rows;
    std::vector<std::string> sums; ///< the last row; none when empty
};

/// A table that opens with a press, scrolls by itself and is what a screen reader gets of a chart.
std::string folded(const Table& table);

/// The table itself; `style` is a class of the style sheet.
std::string printed(const Table& table, const std::string& style = "");

} // namespace velloria::plugins::vellinfo
