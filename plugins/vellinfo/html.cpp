#include "vellinfo/html.h"

#include "vellinfo/characters.h"

namespace velloria::plugins::vellinfo {
namespace {

std::string row(const std::vector<std::string>& cells) {
    std::string html = "<tr>";
    for (std::size_t at = 0; at < cells.size(); ++at)
        html += at == 0 ? "<th scope=\"row\">" + cells[at] + "</th>" : "<td>" + cells[at] + "</td>";
    return html + "</tr>\n";
}

} // namespace

std::string escaped(std::string_view text) {
    std::string html;
    while (!text.empty()) {
        const char32_t character = takeCharacter(text);
        switch (character) {
        case U'&':
            html += "&amp;";
            break;
        case U'<':
            html += "&lt;";
            break;
        case U'>':
            html += "&gt;";
            break;
        case U'"':
            html += "&quot;";
            break;
        default:
            const bool isControl = (character < 0x20 && character != U'\t' && character != U'\n') ||
                                   (character >= 0x7F && character < 0xA0);
            const bool isNone = (character & 0xFFFE) == 0xFFFE || (character >= 0xFDD0 && character <= 0xFDEF);
            appendCharacter(html, isControl || isNone ? U'\uFFFD' : character);
        }
    }
    return html;
}

std::string number(std::uint64_t value) {
    std::string digits = std::to_string(value);
    for (std::size_t at = digits.size(); at > 3; at -= 3)
        digits.insert(at - 3, ",");
    return digits;
}

std::string percent(std::uint64_t part, std::uint64_t whole) {
    const std::uint64_t thousandths = whole == 0 ? 0 : (part * 1000 + whole / 2) / whole;
    return std::to_string(thousandths / 10) + "." + std::to_string(thousandths % 10) + "%";
}

std::string printed(const Table& table, const std::string& style) {
    const std::string name = style.empty() ? "" : " class=\"" + style + "\"";
    std::string html =
        "<table id=\"" + table.id + "\"" + name + "><caption>" + escaped(table.caption) + "</caption>\n<thead><tr>";
    for (const std::string& head : table.heads)
        html += "<th scope=\"col\">" + head + "</th>";
    html += "</tr></thead>\n<tbody>\n";
    for (const std::vector<std::string>& cells : table.rows)
        html += row(cells);
    html += "</tbody>\n";
    if (!table.sums.empty())
        html += "<tfoot>" + row(table.sums) + "</tfoot>\n";
    return html + "</table>\n";
}

std::string folded(const Table& table) {
    return "<details><summary>表で見る（" + escaped(table.caption) + "）</summary>\n" +
           "<div class=\"scroll\" tabindex=\"0\" role=\"region\" aria-label=\"" + escaped(table.caption) + "\">\n" +
           printed(table) + "</div></details>\n";
}

} // namespace velloria::plugins::vellinfo
