#include "wrenport/shown_html.h"

#include "common/encoding.h"
#include "wrenport/text_marks.h"
#include "wrenport/xml_cleaner.h"

namespace velloria::plugins::wrenport {
namespace {

constexpr std::string_view kLineMarks = "*-+:|>=";
constexpr std::string_view kMarks = "*-+:|>=<[(";

std::string reference(char mark) {
    return "&#" + std::to_string(int(mark)) + ";";
}

/// Whether a bracket could begin a link or a stretch without notation: "[]", "[[", "[name:", "[http://".
bool acts(std::string_view bracket) {
    const std::string_view inside = bracket.substr(1);
    if (inside.starts_with(']') || inside.starts_with('['))
        return true;
    std::size_t at = 0;
    while (at < inside.size() && at < 16 && isLetterOrDigit(inside[at]))
        ++at;
    return at > 0 && at < inside.size() && inside[at] == ':';
}

/// Where in HTML a text is, while it is read from its beginning.
class Place {
public:
    /// Whether a reference may stand at the place, and not only within a tag, comment or script.
    bool isText() const { return m_end.empty(); }

    void pass(std::string_view rest) {
        if (!m_end.empty()) {
            if (rest.starts_with(m_end))
                m_end = {};
            return;
        }
        if (rest.starts_with("<!--"))
            m_end = "-->";
        else if (rest.starts_with("<script") || rest.starts_with("<SCRIPT"))
            m_end = rest[1] == 's' ? "</script" : "</SCRIPT";
        else if (rest.starts_with("<style") || rest.starts_with("<STYLE"))
            m_end = rest[1] == 's' ? "</style" : "</STYLE";
        else if (rest.size() > 1 && rest[0] == '<' && (isLetterOrDigit(rest[1]) || rest[1] == '/'))
            m_end = ">";
    }

private:
    std::string_view m_end;
};

} // namespace

std::string shownText(std::string_view text) {
    std::size_t replaced = 0;
    const std::string valid = validUtf8(text, replaced);
    std::string shown;
    shown.reserve(valid.size());
    for (std::size_t at = 0; at < valid.size(); ++at) {
        const char c = valid[at];
        const std::string_view rest = std::string_view(valid).substr(at);
        if (c == '\r') {
            if (!rest.starts_with("\r\n"))
                shown += '\n';
        } else if (rest.starts_with("\xEF\xBF\xBE") || rest.starts_with("\xEF\xBF\xBF")) {
            at += 2;
        } else if (static_cast<unsigned char>(c) >= 0x20 || isXmlCharacter(static_cast<unsigned char>(c))) {
            shown += c;
        }
    }
    return shown;
}

std::string shownHtml(std::string_view text) {
    const std::string plain = shownText(text);
    std::string shown;
    shown.reserve(plain.size());
    Place place;
    for (std::size_t at = 0; at < plain.size(); ++at) {
        const char c = plain[at];
        const std::string_view rest = std::string_view(plain).substr(at);
        const bool isFirst = at == 0 || plain[at - 1] == '\n';
        const bool isMark = (isFirst && kLineMarks.find(c) != std::string_view::npos) || (c == '[' && acts(rest)) ||
                            rest.starts_with("((") || (c == '<' && (rest.size() == 1 || rest[1] == '\n'));
        if (isMark && place.isText())
            shown += reference(c);
        else if (isFirst && kLineMarks.find(c) != std::string_view::npos)
            (shown += ' ') += c; // a blank makes it no mark, and within a tag it is nothing
        else
            shown += c;
        place.pass(rest);
    }
    return shown;
}

std::string shownTitle(std::string_view title, bool hasLabel) {
    std::string shown;
    const std::string plain = shownText(title);
    for (std::size_t at = 0; at < plain.size(); ++at) {
        const char c = plain[at];
        const std::string_view rest = std::string_view(plain).substr(at);
        const bool isMark = (c == '*' && !hasLabel) || (c == '[' && (at == 0 || acts(rest))) || rest.starts_with("((");
        if (c == '\n')
            shown += ' ';
        else if (isMark)
            shown += reference(c);
        else
            shown += c;
    }
    return shown;
}

std::string withoutReferences(std::string_view text) {
    std::string plain;
    plain.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const auto found = text[at] == '&' ? numberReference(text.substr(at)) : std::nullopt;
        if (found && found->character < 0x80 && kMarks.find(char(found->character)) != std::string_view::npos) {
            plain += char(found->character);
            at += found->length;
        } else {
            plain += text[at++];
        }
    }
    return plain;
}

} // namespace velloria::plugins::wrenport
