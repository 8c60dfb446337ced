#include "wrenport/day_parts.h"

#include "wrenport/text_marks.h"

#include <algorithm>

namespace velloria::plugins::wrenport {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Whether what stands between the two stars of a heading is a time or a name, and not words of its title.
bool isLabel(std::string_view label) {
    if (std::ranges::all_of(label, isDigit))
        return label.size() == 9 || label.size() == 10;
    return !isDigit(label.front()) && label.front() != '_' &&
           std::ranges::all_of(label, [](char c) { return isLetterOrDigit(c) || c == '_'; });
}

/// The preformatted text that a line begins; an end that never comes makes no beginning.
class PreText {
public:
    explicit PreText(const std::vector<std::string_view>& lines) {
        for (std::size_t index = lines.size(); index-- > 0 && (m_lastEnd == 0 || m_lastSuperEnd == 0);) {
            if (m_lastSuperEnd == 0 && lines[index] == kClosesSuperPre)
                m_lastSuperEnd = index;
            if (m_lastEnd == 0 && lines[index].ends_with(kClosesPre))
                m_lastEnd = index;
        }
    }

    /// Whether the line, the next one, belongs to preformatted text.
    bool holds(std::string_view line, std::size_t index) {
        const bool wasWithin = m_end != End::None;
        if (m_end == End::Super ? line == kClosesSuperPre : wasWithin && line.ends_with(kClosesPre))
            m_end = End::None;
        else if (!wasWithin && line == kOpensPre && m_lastEnd > index)
            m_end = End::Plain;
        else if (!wasWithin && opensSuperPre(line) && m_lastSuperEnd > index)
            m_end = End::Super;
        return wasWithin;
    }

private:
    enum class End { None, Plain, Super };

    End m_end = End::None;
    std::size_t m_lastEnd = 0;
    std::size_t m_lastSuperEnd = 0;
};

} // namespace

std::optional<Heading> headingOf(std::string_view line) {
    if (!line.starts_with('*') || line.starts_with("**"))
        return std::nullopt;
    Heading heading;
    std::string_view rest = line.substr(1);
    const std::size_t star = rest.find('*');
    if (star != std::string_view::npos && star > 0 && isLabel(rest.substr(0, star))) {
        const std::string_view label = rest.substr(0, star);
        if (isDigit(label.front()))
            heading.seconds = std::stoll(std::string(label));
        else
            heading.name = label;
        rest.remove_prefix(star + 1);
    }
    while (rest.starts_with('[')) {
        const std::size_t end = rest.find_first_of(":[]", 1);
        if (end == std::string_view::npos || end == 1 || rest[end] != ']')
            break;
        heading.categories.push_back(rest.substr(1, end - 1));
        rest.remove_prefix(end + 1);
    }
    heading.title = rest;
    return heading;
}

std::vector<DayPart> partsOf(std::string_view body) {
    const std::vector<std::string_view> lines = linesOf(body);
    std::vector<DayPart> parts;
    PreText pre(lines);
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const std::string_view line = lines[index];
        std::optional<Heading> heading;
        if (!pre.holds(line, index))
            heading = headingOf(line);
        if (heading || parts.empty()) {
            DayPart& part = parts.emplace_back();
            part.heading = std::move(heading);
            part.text = line;
            if (!part.heading)
                part.lines.push_back(line);
        } else {
            DayPart& part = parts.back();
            part.lines.push_back(line);
            part.text = std::string_view(part.text.data(), std::size_t(line.data() + line.size() - part.text.data()));
        }
    }
    return parts;
}

bool opensSuperPre(std::string_view line) {
    return line.size() >= 3 && line.starts_with(kOpensPre) && line.ends_with('|') &&
           line.substr(2, line.size() - 3).find('|') == std::string_view::npos;
}

} // namespace velloria::plugins::wrenport
