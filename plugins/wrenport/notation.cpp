#include "wrenport/notation.h"

#include "wrenport/day_parts.h"
#include "wrenport/hidden_text.h"
#include "wrenport/notation_inline.h"
#include "wrenport/text_marks.h"

#include <algorithm>

namespace velloria::plugins::wrenport {
namespace {

constexpr std::string_view kOpensQuote = ">>";
constexpr std::string_view kClosesQuote = "<<";
constexpr std::string_view kEndsTags = "><";

bool isMarkOfList(char c) {
    return c == '-' || c == '+';
}

/// How many marks begin an item of a list; 0 when it is none. There is always text behind them.
std::size_t itemLevel(std::string_view line) {
    std::size_t marks = 0;
    while (marks < line.size() && isMarkOfList(line[marks]))
        ++marks;
    return marks == line.size() && marks > 0 ? marks - 1 : marks;
}

/// Looks in a line for marks that stand in no brackets and no tag.
class OutsideLinks {
public:
    OutsideLinks(std::string_view line, char mark)
        : m_line(line)
        , m_mark(mark) {}

    /// Where the next one stands, npos without one. The places to look from only grow.
    std::size_t from(std::size_t at) {
        for (; at < m_line.size(); ++at) {
            if (m_line[at] == m_mark)
                return at;
            std::size_t end = m_line.npos;
            if (m_line[at] == '[')
                end = m_bracketEnd.from(at);
            else if (m_line[at] == '<')
                end = m_tagEnd.from(at);
            if (end != m_line.npos)
                at = end;
        }
        return m_line.npos;
    }

private:
    const std::string_view m_line;
    const char m_mark;
    Finder m_bracketEnd{m_line, "]"};
    Finder m_tagEnd{m_line, ">"};
};

/// "http://www.example.com/q" of ">http://www.example.com/q>", "" of any other line.
std::string_view quotedSource(std::string_view line) {
    if (!line.starts_with(">http://") && !line.starts_with(">https://"))
        return {};
    if (!line.ends_with('>') || line.find_first_of(" <\"") != line.npos)
        return {};
    return line.substr(1, line.size() - 2);
}

class Blocks {
public:
    Blocks(const std::vector<std::string>& lines, const std::string& anchor)
        : m_lines(lines)
        , m_inline(anchor) {
        for (std::size_t index = 0; index < lines.size(); ++index) {
            if (std::string_view(lines[index]).ends_with(kClosesPre))
                m_preUntil = index;
            if (lines[index] == kClosesSuperPre)
                m_superPreUntil = index;
            if (std::string_view(lines[index]).ends_with(kEndsTags))
                m_tagsUntil = index + 1; // the line itself may be the last
        }
    }

    NotationHtml run() {
        for (; m_at < m_lines.size(); ++m_at)
            takeLine(m_lines[m_at]);
        finishText();
        if (m_isExtend)
            m_html.extend = std::move(m_text);
        else
            m_html.contents = std::move(m_text);
        return std::move(m_html);
    }

private:
    void takeLine(std::string_view line) {
        const std::size_t level = itemLevel(line);
        if (level > 0)
            return takeItem(line, level);
        closeLists();
        if (line.starts_with(':') && takeTerm(line))
            return;
        closeTerms();
        if (line.size() > 2 && line.starts_with('|') && line.ends_with('|'))
            return takeRow(line);
        closeTable();
        if (line.find_first_not_of(" \t") == line.npos) {
            if (++m_blanks > 1)
                put("<br>");
            return;
        }
        m_blanks = 0;
        if (!takeMark(line))
            put("<p>" + m_inline.html(line) + "</p>");
    }

    bool takeMark(std::string_view line) {
        if (line.starts_with("***") && line.size() > 3)
            put("<h5>" + m_inline.html(line.substr(3)) + "</h5>");
        else if (line.starts_with("**") && line.size() > 2)
            put("<h4>" + m_inline.html(line.substr(2)) + "</h4>");
        else if ((line == "====" || line == "=====") && !m_isExtend)
            beginExtend();
        else
            return line.front() == '>' ? takeOpening(line) : line == kClosesQuote && closeQuote();
        return true;
    }

    /// What begins with ">" and reaches over several lines.
    bool takeOpening(std::string_view line) {
        if (line == kOpensQuote || !quotedSource(line).empty()) {
            const std::string source = escaped(quotedSource(line));
            put(source.empty() ? "<blockquote>" : "<blockquote title=\"" + source + "\" cite=\"" + source + "\">");
            m_quotes.push_back(source);
        } else if (line == kOpensPre && m_preUntil > m_at) {
            takePre();
        } else if (opensSuperPre(line) && m_superPreUntil > m_at) {
            takeSuperPre(line);
        } else if (line.starts_with("><") && line.size() > 2 && isLetterOrDigit(line[2]) && m_tagsUntil > m_at) {
            takeTags(line);
        } else {
            return false;
        }
        return true;
    }

    void takePre() {
        std::string text = "<pre>\r\n";
        for (bool isLast = false; !isLast;) {
            std::string_view line = m_lines[++m_at];
            isLast = line.ends_with(kClosesPre);
            if (isLast)
                line.remove_suffix(kClosesPre.size());
            if (isLast && line.empty())
                break;
            text += m_inline.html(line) + "\r\n";
        }
        put(withoutEnd(std::move(text)) + "</pre>");
    }

    void takeSuperPre(std::string_view line) {
        std::string colouring(line.substr(2, line.size() - 3));
        if (!std::ranges::all_of(colouring, [](char c) { return isLetterOrDigit(c) || c == '-' || c == '_'; }))
            colouring.clear();
        std::string text =
            "<pre class=\"hatena-super-pre" + (colouring.empty() ? "" : " lang-" + colouring) + "\">\r\n";
        while (m_lines[++m_at] != kClosesSuperPre)
            text += escaped(m_lines[m_at]) + "\r\n";
        put(withoutEnd(std::move(text)) + "</pre>");
    }

    /// Lines between tags: ">" before the first one, "<" behind the last one.
    void takeTags(std::string_view line) {
        for (;; line = m_lines[++m_at]) {
            const bool isLast = line.ends_with(kEndsTags);
            if (line.starts_with("><"))
                line.remove_prefix(1);
            if (isLast)
                line.remove_suffix(1);
            put(m_inline.html(line));
            if (isLast)
                return;
        }
    }

    /// A level is at most one deeper than the one before it, and of the kind that its first item has.
    void takeItem(std::string_view line, std::size_t level) {
        closeTerms();
        closeTable();
        m_blanks = 0;
        const std::size_t depth = std::min(level, m_lists.size() + 1);
        while (m_lists.size() > depth)
            closeList();
        if (m_lists.size() == depth) {
            endItem();
        } else {
            endLine();
            m_lists.push_back(line[level - 1] == '+' ? "</ol>" : "</ul>");
            put(line[level - 1] == '+' ? "<ol>" : "<ul>");
        }
        m_text += "<li>" + m_inline.html(line.substr(level));
        m_isItemOpen = true;
    }

    void endItem() {
        put("</li>");
        m_isItemOpen = false;
    }

    /// The text of an item ends where a list within it begins.
    void endLine() {
        if (m_isItemOpen)
            m_text += "\r\n";
    }

    void closeList() {
        endItem();
        put(m_lists.back());
        m_lists.pop_back();
    }

    void closeLists() {
        while (!m_lists.empty())
            closeList();
    }

    bool takeTerm(std::string_view line) {
        const std::size_t end = OutsideLinks(line, ':').from(1);
        if (end == line.npos)
            return false;
        closeTable();
        m_blanks = 0;
        if (!m_isInTerms)
            put("<dl>");
        m_isInTerms = true;
        if (end > 1)
            put("<dt>" + m_inline.html(line.substr(1, end - 1)) + "</dt>");
        if (end + 1 < line.size())
            put("<dd>" + m_inline.html(line.substr(end + 1)) + "</dd>");
        return true;
    }

    void closeTerms() {
        if (m_isInTerms)
            put("</dl>");
        m_isInTerms = false;
    }

    void takeRow(std::string_view line) {
        m_blanks = 0;
        if (!m_isInTable)
            put("<table>");
        m_isInTable = true;
        put("<tr>");
        line.remove_suffix(1);
        OutsideLinks bars(line, '|');
        for (std::size_t at = 1; at <= line.size();) {
            const std::size_t end = std::min(bars.from(at), line.size());
            std::string_view cell = line.substr(at, end - at);
            const bool isHead = cell.starts_with('*');
            if (isHead)
                cell.remove_prefix(1);
            put((isHead ? "<th>" : "<td>") + m_inline.html(cell) + (isHead ? "</th>" : "</td>"));
            at = end + 1;
        }
        put("</tr>");
    }

    void closeTable() {
        if (m_isInTable)
            put("</table>");
        m_isInTable = false;
    }

    bool closeQuote() {
        if (m_quotes.empty())
            return false;
        const std::string& source = m_quotes.back();
        if (!source.empty())
            put("<cite><a href=\"" + source + "\">" + source + "</a></cite>");
        m_quotes.pop_back();
        put("</blockquote>");
        return true;
    }

    void beginExtend() {
        finishText();
        m_html.contents = std::move(m_text);
        m_text.clear();
        m_isExtend = true;
    }

    /// Closes what is open, and puts the footnotes below it.
    void finishText() {
        closeLists();
        closeTerms();
        closeTable();
        while (closeQuote()) {
        }
        for (const std::string& footnote : m_inline.takeFootnotes())
            put(footnote);
        m_text = withoutEnd(std::move(m_text));
        m_blanks = 0;
    }

    static std::string withoutEnd(std::string text) {
        if (text.ends_with("\r\n"))
            text.resize(text.size() - 2);
        return text;
    }

    void put(std::string_view html) {
        m_text += html;
        m_text += "\r\n";
    }

    const std::vector<std::string>& m_lines;
    InlineNotation m_inline;
    NotationHtml m_html;
    std::string m_text; ///< so far, of the contents or the postscript
    std::vector<std::string> m_quotes;
    std::vector<std::string> m_lists; ///< their closing tags
    std::size_t m_at = 0;
    std::size_t m_preUntil = 0;
    std::size_t m_superPreUntil = 0;
    std::size_t m_tagsUntil = 0;
    int m_blanks = 0;
    bool m_isItemOpen = false;
    bool m_isInTerms = false;
    bool m_isInTable = false;
    bool m_isExtend = false;
};

} // namespace

NotationHtml htmlOf(const std::vector<std::string_view>& lines, const std::string& anchor) {
    const ShownLines shown(lines);
    NotationHtml html = Blocks(shown.lines, anchor).run();
    html.hidden = shown.hidden;
    return html;
}

} // namespace velloria::plugins::wrenport
