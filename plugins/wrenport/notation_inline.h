// The notation within a line: links, footnotes, tags.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velloria::plugins::wrenport {

class InlineNotation {
public:
    /// `anchor` begins the names of the footnotes, of which a page must have no two alike.
    explicit InlineNotation(std::string anchor)
        : m_anchor(std::move(anchor)) {}

    std::string html(std::string_view line) { return html(line, Footnotes::Taken); }

    /// The footnotes since the last call, a paragraph each.
    std::vector<std::string> takeFootnotes();

private:
    enum class Footnotes { Taken, None };
    class Scan;

    std::string html(std::string_view line, Footnotes footnotes);
    std::string footnote(std::string_view text);

    std::string m_anchor;
    int m_lastFootnote = 0;
    std::vector<std::string> m_footnotes;
};

} // namespace velloria::plugins::wrenport
