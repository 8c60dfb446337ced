#include "wrenport/notation_inline.h"

#include "wrenport/notation_links.h"
#include "wrenport/text_marks.h"

#include <utility>

namespace velloria::plugins::wrenport {
namespace {

constexpr std::size_t kNone = std::string_view::npos;

bool isLetter(char c) {
    return isLetterOrDigit(c) && (c < '0' || c > '9');
}

} // namespace

/// One line from its beginning to its end. No mark is looked for twice in the same stretch of text.
class InlineNotation::Scan {
public:
    Scan(InlineNotation& notation, std::string_view line, Footnotes footnotes)
        : m_notation(notation)
        , m_line(line)
        , m_footnotes(footnotes) {}

    std::string run() {
        while (m_at < m_line.size())
            if (!takeMark())
                copy(1);
        return std::move(m_html);
    }

private:
    bool takeMark() {
        switch (m_line[m_at]) {
        case '<':
            return takeTag();
        case '[':
            return takeBracket();
        case '(':
            return m_footnotes == Footnotes::Taken && takeFootnote();
        case ')':
            return takePlainParentheses();
        default:
            return takeBareLink();
        }
    }

    bool takeTag() {
        if (rest().starts_with("<!--")) { // those that end have gone
            put("&lt;", 1);
            return true;
        }
        if (m_at + 1 == m_line.size() || (!isLetter(m_line[m_at + 1]) && m_line[m_at + 1] != '/'))
            return false;
        const std::size_t end = m_tagEnd.from(m_at + 1);
        if (end == kNone)
            return false;
        const bool isLink = rest().starts_with("<a ") || rest().starts_with("<A ");
        const std::size_t linkEnd = isLink ? m_linkEnd.from(end) : kNone;
        copy((linkEnd == kNone ? end : linkEnd) + 1 - m_at);
        return true;
    }

    bool takeBracket() {
        if (rest().starts_with("[]")) {
            const std::size_t end = m_emptyBrackets.from(m_at + 2);
            if (end == kNone)
                return false;
            m_at += 2;
            copy(end - m_at);
            m_at += 2;
            return true;
        }
        if (rest().starts_with("[["))
            return takeKeyword();
        const std::size_t end = m_bracketEnd.from(m_at + 1);
        if (end == kNone)
            return false;
        const auto link = bracketLink(m_line.substr(m_at + 1, end - m_at - 1));
        if (link)
            put(*link, end + 1 - m_at);
        return link.has_value();
    }

    bool takeKeyword() {
        const std::size_t end = m_bracketEnd.from(m_at + 2);
        if (end == kNone || end == m_at + 2 || m_bracket.from(m_at + 2) < end || !m_line.substr(end).starts_with("]]"))
            return false;
        put(keywordLink(m_line.substr(m_at + 2, end - m_at - 2)), end + 2 - m_at);
        return true;
    }

    bool takeFootnote() {
        if (!rest().starts_with("(("))
            return false;
        const std::size_t end = m_footnoteEnd.from(m_at + 2);
        if (end == kNone || end == m_at + 2)
            return false;
        put(m_notation.footnote(m_line.substr(m_at + 2, end - m_at - 2)), end + 2 - m_at);
        return true;
    }

    bool takePlainParentheses() {
        if (!rest().starts_with(")(("))
            return false;
        const std::size_t end = m_plainEnd.from(m_at + 3);
        if (end == kNone)
            return false;
        put("((" + m_notation.html(m_line.substr(m_at + 3, end - m_at - 3), Footnotes::None) + "))", end + 3 - m_at);
        return true;
    }

    bool takeBareLink() {
        if (!isLetter(m_line[m_at]) || (m_at > 0 && isLetterOrDigit(m_line[m_at - 1])))
            return false;
        const auto link = bareLink(rest());
        if (link)
            put(link->html, link->length);
        return link.has_value();
    }

    std::string_view rest() const { return m_line.substr(m_at); }

    void copy(std::size_t length) { put(m_line.substr(m_at, length), length); }

    void put(std::string_view html, std::size_t length) {
        m_html += html;
        m_at += length;
    }

    InlineNotation& m_notation;
    const std::string_view m_line;
    const Footnotes m_footnotes;
    std::size_t m_at = 0;
    std::string m_html;
    Finder m_tagEnd{m_line, ">"};
    Finder m_linkEnd{m_line, "</a>"};
    Finder m_emptyBrackets{m_line, "[]"};
    Finder m_bracket{m_line, "["};
    Finder m_bracketEnd{m_line, "]"};
    Finder m_footnoteEnd{m_line, "))"};
    Finder m_plainEnd{m_line, "))("};
};

std::string InlineNotation::html(std::string_view line, Footnotes footnotes) {
    return Scan(*this, line, footnotes).run();
}

std::string InlineNotation::footnote(std::string_view text) {
    const std::string number = std::to_string(++m_lastFootnote);
    const std::string note = m_anchor + "-" + number;
    const auto link = [&](const std::string& from, const std::string& to) {
        return "<a name=\"" + from + "\" href=\"#" + to + "\">*" + number + "</a>";
    };
    m_footnotes.push_back("<p class=\"footnote\">" + link(note, note + "-text") + ": " + html(text, Footnotes::None) +
                          "</p>");
    return "<span class=\"footnote\">" + link(note + "-text", note) + "</span>";
}

std::vector<std::string> InlineNotation::takeFootnotes() {
    return std::exchange(m_footnotes, {});
}

} // namespace velloria::plugins::wrenport
