#include "larkport/safe_text.h"

#include "larkport/html_places.h"

#include <algorithm>
#include <vector>

namespace velloria::plugins::larkport {
namespace {

constexpr std::size_t kLongestLine = 7900; // what is put in front of a line comes on top
constexpr std::size_t kLongestTitle = 4000;

constexpr std::string_view kMark = "<!-- -->";
constexpr std::string_view kParagraph = "<p><!-- -->";
constexpr std::string_view kBreak = "<!--\n-->";
constexpr std::string_view kTrimmed(" \t\n\r\0\x0B", 6); // what a reader takes from both ends of a line

std::string_view trimmed(std::string_view line) {
    const std::size_t begin = line.find_first_not_of(kTrimmed);
    return begin == std::string_view::npos ? "" : line.substr(begin, line.find_last_not_of(kTrimmed) + 1 - begin);
}

bool isBlank(char c) {
    return kTrimmed.find(c) != std::string_view::npos;
}

bool isFollower(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

/// Whether some reader takes a line for more than text.
bool hasMeaning(std::string_view line) {
    line = trimmed(line);
    if (line == "-----" || line == "--------" || line == "0")
        return true;
    const std::size_t key = line.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_ ");
    return key != std::string_view::npos && key > 0 && line[key] == ':' && line[0] >= 'A' && line[0] <= 'Z';
}

/// A tag next to which an empty line is none between paragraphs.
bool isBlock(const std::string& tag) {
    constexpr std::string_view kBlocks[] = {
        "!",       "address",  "article", "aside", "blockquote", "caption", "center",   "col",      "colgroup",
        "dd",      "details",  "dir",     "div",   "dl",         "dt",      "fieldset", "figure",   "footer",
        "form",    "frameset", "h1",      "h2",    "h3",         "h4",      "h5",       "h6",       "header",
        "hr",      "iframe",   "legend",  "li",    "main",       "menu",    "nav",      "noscript", "object",
        "ol",      "optgroup", "option",  "p",     "pre",        "script",  "section",  "select",   "style",
        "summary", "table",    "tbody",   "td",    "tfoot",      "th",      "thead",    "tr",       "ul"};
    return std::find(std::begin(kBlocks), std::end(kBlocks), tag) != std::end(kBlocks);
}

bool beginsWithBlock(std::string_view line) {
    return isBlock(tagAt(trimmed(line), 0));
}

bool endsWithBlock(std::string_view line) {
    line = trimmed(line);
    return line.ends_with('>') && isBlock(tagAt(line, std::min(line.rfind('<'), line.size())));
}

bool isText(Place place) {
    return place == Place::Text || place == Place::Preformatted;
}

/// A line of what is written, with the places of both of its ends.
struct Line {
    std::string_view text;
    Place begin;
    Place end;
    bool continues; ///< by a break that is put in, not by one of the text
};

/// Where a line that is too long can be parted at best, from a `limit` backwards; the length of the first part.
class Parting {
public:
    Parting(std::string_view text, const std::vector<Place>& places)
        : m_text(text)
        , m_places(places) {}

    std::size_t at(std::size_t begin, std::size_t end) const {
        const std::size_t lowest = begin + kLongestLine / 2;
        std::size_t best = 0;
        int bestRank = 0;
        for (std::size_t at = begin + kLongestLine; at > lowest && at < end; --at) {
            const int rank = rankOf(at);
            if (rank > bestRank) {
                best = at;
                bestRank = rank;
            }
            if (bestRank == kBestRank)
                break;
        }
        return best ? best : begin + kLongestLine; // nothing but hyphens of a comment
    }

private:
    static constexpr int kBestRank = 5;

    /// 0 where nothing may be parted. Between tags and sentences nothing is seen of a part, in a tag it is a blank.
    int rankOf(std::size_t at) const {
        if (isFollower(m_text[at]))
            return 0;
        const char before = m_text[at - 1];
        switch (m_places[at]) {
        case Place::Text:
        case Place::Preformatted:
            if (isInReference(at))
                return 0;
            return before == '>' || isBlank(before) || m_text.substr(0, at).ends_with("。") ? kBestRank : kBestRank - 1;
        case Place::Tag:
            return isBlank(before) ? kBestRank - 2 : 1;
        case Place::Script:
            return before == ';' || before == '}' ? kBestRank - 2 : isBlank(before) ? 2 : 1;
        case Place::Comment:
            return before != '-' && m_text[at] != '-' && before != '<' && m_text[at] != '>' ? 2 : 0;
        case Place::Value:
            return isBlank(before) ? 2 : isInReference(at) ? 0 : 1;
        }
        return 0;
    }

    bool isInReference(std::size_t at) const {
        constexpr std::size_t kLongestReference = 33;
        const std::string_view before =
            m_text.substr(at > kLongestReference ? at - kLongestReference : 0, std::min(at, kLongestReference));
        const std::size_t start = before.rfind('&');
        return start != std::string_view::npos && before.find_first_of("; \n", start) == std::string_view::npos;
    }

    std::string_view m_text;
    const std::vector<Place>& m_places;
};

std::vector<Line> linesOf(std::string_view text, const std::vector<Place>& places) {
    const Parting parting(text, places);
    std::vector<Line> lines;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        while (end - begin > kLongestLine) {
            const std::size_t part = parting.at(begin, end);
            lines.push_back({text.substr(begin, part - begin), places[begin], places[part], true});
            begin = part;
        }
        lines.push_back({text.substr(begin, end - begin), places[begin], places[end], false});
        begin = end + 1;
    }
    return lines;
}

/// A line with meaning, without it.
std::string meaningless(const Line& line) {
    const std::size_t first = line.text.find_first_not_of(kTrimmed);
    switch (line.begin) {
    case Place::Text:
    case Place::Preformatted:
        return std::string(kMark).append(line.text);
    case Place::Tag:
        return "_ " + std::string(line.text);
    case Place::Value:
        return std::string(line.text.substr(0, first)) + "&#" + std::to_string(int(line.text[first])) + ";" +
               std::string(line.text.substr(first + 1));
    case Place::Comment:
        return "_" + std::string(line.text);
    case Place::Script:
        return "/**/" + std::string(line.text);
    }
    return std::string(line.text);
}

class Writing {
public:
    explicit Writing(const std::vector<Line>& lines)
        : m_lines(lines) {}

    std::string run() {
        for (std::size_t at = 0; at < m_lines.size(); ++at) {
            const Line& line = m_lines[at];
            const bool isPart = at > 0 && m_lines[at - 1].continues && isText(line.begin);
            write(line, isPart);
            if (line.continues && isText(line.end))
                m_text += kBreak;
            else if (at + 1 < m_lines.size())
                m_text += '\n';
            remember(line);
        }
        return std::move(m_text);
    }

private:
    void write(const Line& line, bool isPart) {
        const bool isEmpty = trimmed(line.text).empty();
        const bool needsMark = line.begin == Place::Preformatted && !isPart && (isEmpty || isBlank(line.text.front()));
        if (startsParagraph(line))
            m_text.append(kParagraph).append(line.text);
        else if (needsMark)
            m_text.append(kMark).append(line.text);
        else if (!isPart && hasMeaning(line.text))
            m_text += meaningless(line);
        else
            m_text += line.text;
        if (line.end == Place::Preformatted && !line.continues && !line.text.empty() && isBlank(line.text.back()))
            m_text += kMark;
    }

    bool startsParagraph(const Line& line) const {
        return m_isAfterEmpty && m_last && line.begin == Place::Text && m_last->end == Place::Text &&
               !trimmed(line.text).empty() && !endsWithBlock(m_last->text) && !beginsWithBlock(line.text);
    }

    void remember(const Line& line) {
        m_isAfterEmpty = trimmed(line.text).empty();
        if (!m_isAfterEmpty)
            m_last = &line;
    }

    const std::vector<Line>& m_lines;
    std::string m_text;
    const Line* m_last = nullptr; ///< with something in it
    bool m_isAfterEmpty = false;
};

/// LF for every kind of line end.
std::string withLineFeeds(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n')
            continue;
        result += text[at] == '\r' ? '\n' : text[at];
    }
    return result;
}

} // namespace

std::string safeText(std::string_view html) {
    const std::string text = withLineFeeds(html);
    return Writing(linesOf(text, placesOf(text))).run();
}

std::string plainText(std::string_view safe) {
    std::string joined;
    joined.reserve(safe.size());
    for (std::size_t at = 0; at < safe.size();) {
        const std::size_t found = std::min(safe.find(kBreak, at), safe.size());
        joined += safe.substr(at, found - at);
        at = found + kBreak.size();
    }
    std::string text;
    text.reserve(joined.size());
    for (std::size_t begin = 0; begin <= joined.size();) {
        const std::size_t end = std::min(joined.find('\n', begin), joined.size());
        std::string_view line = std::string_view(joined).substr(begin, end - begin);
        for (const std::string_view mark : {kParagraph, kMark}) {
            if (line.starts_with(mark)) {
                line.remove_prefix(mark.size());
                break;
            }
        }
        if (line.ends_with(kMark))
            line.remove_suffix(kMark.size());
        text.append(begin > 0 ? "\r\n" : "").append(line);
        begin = end + 1;
    }
    return text;
}

std::string safeLine(std::string_view text) {
    std::string line(text);
    std::replace_if(line.begin(), line.end(), isBlank, ' ');
    line = trimmed(line);
    if (line.size() <= kLongestTitle)
        return line;
    std::size_t end = kLongestTitle;
    while (end > 0 && isFollower(line[end]))
        --end;
    return line.substr(0, end) + "…";
}

std::string escapedLine(std::string_view text) {
    std::string line;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool isAtEnd = at == 0 || at + 1 == text.size();
        switch (text[at]) {
        case '\\':
            line += "\\\\";
            break;
        case '\n':
            line += "\\n";
            break;
        case '\r':
            line += "\\r";
            break;
        case '\0':
            line += "\\0";
            break;
        case ' ':
            line += isAtEnd ? "\\s" : " ";
            break;
        case '\t':
            line += "\\t";
            break;
        case '\v':
            line += "\\v";
            break;
        default:
            line += text[at];
        }
    }
    return line;
}

std::string unescapedLine(std::string_view line) {
    constexpr std::string_view kLetters = "\\nr0stv";
    constexpr std::string_view kMeant("\\\n\r\0 \t\v", 7);
    std::string text;
    for (std::size_t at = 0; at < line.size(); ++at) {
        const std::size_t letter =
            line[at] == '\\' && at + 1 < line.size() ? kLetters.find(line[at + 1]) : std::string_view::npos;
        if (letter != std::string_view::npos)
            ++at;
        text += letter == std::string_view::npos ? line[at] : kMeant[letter];
    }
    return text;
}

} // namespace velloria::plugins::larkport
