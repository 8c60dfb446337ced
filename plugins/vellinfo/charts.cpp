#include "vellinfo/charts.h"

#include "vellinfo/calendar.h"
#include "vellinfo/characters.h"
#include "vellinfo/html.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace velloria::plugins::vellinfo {
namespace {

constexpr double kWidth = 360;
constexpr double kLeft = 40; ///< for the numbers beside the lines
constexpr double kTop = 10;
constexpr double kPlotHeight = 110;
constexpr double kLabelHeight = 18;
constexpr double kWidestColumn = 48;

/// With one place behind the point, and none where that is zero.
std::string length(double value) {
    char text[32] = "";
    std::snprintf(text, sizeof text, "%.1f", value);
    std::string digits = text;
    if (digits.ends_with(".0"))
        digits.resize(digits.size() - 2);
    return digits;
}

/// Screen readers tell the title and the description; a pointer shows the title.
std::string opened(const Label& label, double height) {
    return "<svg viewBox=\"0 0 " + length(kWidth) + " " + length(height) + "\" role=\"img\" aria-label=\"" +
           escaped(label.title + "。" + label.description) + "\"><title>" + escaped(label.title) + "</title><desc>" +
           escaped(label.description) + "</desc>\n";
}

std::string textAt(double x, double y, const char* style, const std::string& text) {
    return "<text x=\"" + length(x) + "\" y=\"" + length(y) + "\" class=\"" + style + "\">" + escaped(text) +
           "</text>\n";
}

std::string box(double x, double y, double width, double height) {
    return "M" + length(x) + " " + length(y) + "h" + length(width) + "v" + length(height) + "h-" + length(width) + "z";
}

std::string path(const std::string& style, const std::string& boxes) {
    return boxes.empty() ? std::string() : "<path class=\"" + style + "\" d=\"" + boxes + "\"/>\n";
}

/// 1, 2 or 5 with zeros, the least that is not below the value.
std::uint64_t roundUp(std::uint64_t value) {
    for (std::uint64_t power = 1;; power *= 10) {
        for (const std::uint64_t step : {1, 2, 5}) {
            if (step * power >= value || power > UINT64_MAX / 100)
                return step * power;
        }
    }
}

/// "1.5万" from ten thousand on.
std::string shortNumber(std::uint64_t value) {
    constexpr std::uint64_t kMan = 10'000;
    constexpr std::uint64_t kOku = 100'000'000;
    if (value < kMan)
        return number(value);
    const std::uint64_t unit = value < kOku ? kMan : kOku;
    const std::uint64_t tenths = value * 10 / unit;
    const std::string rest = tenths % 10 ? "." + std::to_string(tenths % 10) : "";
    return number(tenths / 10) + rest + (unit == kMan ? "万" : "億");
}

std::string line(double y) {
    return "<line x1=\"" + length(kLeft) + "\" x2=\"" + length(kWidth) + "\" y1=\"" + length(y) + "\" y2=\"" +
           length(y) + "\" class=\"line\"/>\n";
}

double widthOf(std::size_t columns) {
    return (kWidth - kLeft) / static_cast<double>(std::max<std::size_t>(columns, 1));
}

/// About what a label takes, with room to the next one.
double widthOf(const std::string& label) {
    constexpr double kHalf = 5.8;
    double width = 10;
    for (std::string_view rest = label; !rest.empty();)
        width += takeCharacter(rest) < 0x80 ? kHalf : 2 * kHalf;
    return width;
}

/// As many labels as have room, each below the middle of its column.
template <typename Columns>
std::string labelsBelow(const Columns& columns, double y) {
    const double width = widthOf(columns.size());
    double room = 0;
    for (const auto& column : columns)
        room = std::max(room, widthOf(column.label));
    const auto step = static_cast<std::size_t>(std::ceil(room / width));
    std::string svg;
    for (std::size_t at = 0; at < columns.size(); at += step) {
        const double middle = kLeft + width * (static_cast<double>(at) + 0.5);
        svg += textAt(std::min(middle, kWidth - room / 2 + 5), y, "below", columns[at].label);
    }
    return svg;
}

/// Beside a bar there is room for eight wide characters, the sign for what is left out among them.
std::string nameBeside(const std::string& name) {
    constexpr std::size_t kRoom = 8;
    return shortened(name, kRoom) == shortened(name, kRoom + 1) ? shortened(name, kRoom) : shortened(name, kRoom - 1);
}

/// What a column leaves free of its place.
double gapOf(double width) {
    return std::max(std::min(width * 0.2, 3.0), width - kWidestColumn);
}

} // namespace

std::string columnChart(const Label& label, const std::vector<Column>& columns) {
    std::uint64_t most = 0;
    for (const Column& column : columns)
        most = std::max(most, column.value);
    const std::uint64_t scale = roundUp(std::max<std::uint64_t>(most, 2));
    const double bottom = kTop + kPlotHeight;
    std::string svg = opened(label, bottom + kLabelHeight);
    for (const std::uint64_t mark : {std::uint64_t(0), scale / 2, scale}) {
        const double y = bottom - kPlotHeight * static_cast<double>(mark) / static_cast<double>(scale);
        svg += line(y) + textAt(kLeft - 4, y + 4, "beside", shortNumber(mark));
    }
    const double width = widthOf(columns.size());
    std::string boxes;
    for (std::size_t at = 0; at < columns.size(); ++at) {
        // What is there is seen, however little it is.
        const double full = kPlotHeight * static_cast<double>(columns[at].value) / static_cast<double>(scale);
        const double height = columns[at].value ? std::max(full, 1.0) : 0.0;
        if (height > 0)
            boxes += box(kLeft + width * static_cast<double>(at) + gapOf(width) / 2, bottom - height,
                         width - gapOf(width), height);
    }
    return svg + path("column", boxes) + labelsBelow(columns, bottom + 13) + "</svg>\n";
}

std::string barChart(const Label& label, const std::vector<Column>& bars, Shares shares) {
    constexpr double kRow = 18;
    constexpr double kNames = 100;
    constexpr double kNumbers = 90;
    std::uint64_t most = 1;
    std::uint64_t sum = 0;
    for (const Column& bar : bars) {
        most = std::max(most, bar.value);
        sum += bar.value;
    }
    std::string svg = opened(label, kRow * static_cast<double>(bars.size()) + 4);
    std::string boxes;
    for (std::size_t at = 0; at < bars.size(); ++at) {
        const double y = kRow * static_cast<double>(at) + 2;
        const double full = kWidth - kNames - kNumbers;
        const double width = full * static_cast<double>(bars[at].value) / static_cast<double>(most);
        if (bars[at].value > 0)
            boxes += box(kNames, y + 2, std::max(width, 1.0), kRow - 6);
        svg += textAt(kNames - 6, y + 12, "beside", nameBeside(bars[at].label));
        const std::string share = shares == Shares::Shown ? " (" + percent(bars[at].value, sum) + ")" : "";
        svg += textAt(kNames + width + 5, y + 12, "behind", shortNumber(bars[at].value) + share);
    }
    return svg + path("column", boxes) + "</svg>\n";
}

std::string stackChart(const Label& label, const std::vector<std::string>& names, const std::vector<Stack>& stacks) {
    const double bottom = kTop + kPlotHeight;
    const double width = widthOf(stacks.size());
    std::vector<std::string> boxes(names.size());
    for (std::size_t at = 0; at < stacks.size(); ++at) {
        std::uint64_t sum = 0;
        for (const std::uint64_t part : stacks[at].parts)
            sum += part;
        double y = bottom;
        for (std::size_t part = 0; part < stacks[at].parts.size() && sum > 0; ++part) {
            const double height = kPlotHeight * static_cast<double>(stacks[at].parts[part]) / static_cast<double>(sum);
            y -= height;
            if (height > 0)
                boxes[part] +=
                    box(kLeft + width * static_cast<double>(at) + gapOf(width) / 2, y, width - gapOf(width), height);
        }
    }
    std::string svg = opened(label, bottom + kLabelHeight);
    for (const int mark : {0, 50, 100}) {
        const double y = bottom - kPlotHeight * mark / 100;
        svg += line(y) + textAt(kLeft - 4, y + 4, "beside", std::to_string(mark) + "%");
    }
    std::string legend = "<ul class=\"legend\" aria-hidden=\"true\">";
    for (std::size_t at = 0; at < names.size(); ++at) {
        const std::string style = "part p" + std::to_string(at % kColours);
        svg += path(style, boxes[at]);
        legend += "<li><svg viewBox=\"0 0 10 10\" aria-hidden=\"true\">" + path(style, box(0, 0, 10, 10)) +
                  "</svg><bdi>" + escaped(names[at]) + "</bdi></li>";
    }
    return svg + labelsBelow(stacks, bottom + 13) + "</svg>\n" + legend + "</ul>\n";
}

std::string heatMap(const Label& label, int year, int firstMonth, const std::array<std::vector<int>, 6>& levels) {
    constexpr double kCell = 12;
    constexpr double kNames = 22;
    constexpr double kHead = 16;
    const Day first = dayOf(Date{year, firstMonth, 1});
    const int shift = weekdayOf(first);
    std::array<std::string, kLevels> boxes;
    std::string svg = opened(label, kHead + 7 * kCell + 2);
    Day day = first;
    for (std::size_t month = 0; month < levels.size(); ++month) {
        const int week = (day - first + shift + 6) / 7; // the first whole one
        svg += textAt(kNames + kCell * week, 11, "above", std::to_string(firstMonth + static_cast<int>(month)) + "月");
        for (const int level : levels[month]) {
            const int place = day - first + shift;
            boxes[static_cast<std::size_t>(level)] +=
                box(kNames + kCell * (place / 7) + 1, kHead + kCell * (place % 7) + 1, kCell - 2, kCell - 2);
            ++day;
        }
    }
    for (const auto& [row, name] : {std::pair{1, "月"}, std::pair{3, "水"}, std::pair{5, "金"}})
        svg += textAt(kNames - 5, kHead + kCell * row + 10, "beside", name);
    for (std::size_t level = 0; level < boxes.size(); ++level)
        svg += path("heat h" + std::to_string(level), boxes[level]);
    return svg + "</svg>\n";
}

} // namespace velloria::plugins::vellinfo
