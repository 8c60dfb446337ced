#include "larkport/html_places.h"

#include <algorithm>
#include <optional>

namespace velloria::plugins::larkport {
namespace {

constexpr std::string_view kBlanks = " \t\r\n\f";
constexpr std::size_t kLongestName = 32; // more than any tag has that means something here

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
}

bool isOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

class Scan {
public:
    explicit Scan(std::string_view html)
        : m_html(html)
        , m_places(html.size() + 1, Place::Text) {}

    std::vector<Place> run() {
        while (m_at < m_html.size()) {
            if (m_html[m_at] != '<') {
                step(text());
                continue;
            }
            const std::string name = tagAt(m_html, m_at);
            if (name == "!")
                comment();
            else if (name.empty())
                step(text());
            else
                tag(name);
        }
        m_places[m_at] = m_end.value_or(text());
        return std::move(m_places);
    }

private:
    Place text() const { return m_pres > 0 ? Place::Preformatted : Place::Text; }

    void step(Place place) { m_places[m_at++] = place; }

    void fill(std::size_t end, Place place) {
        while (m_at < std::min(end, m_html.size()))
            step(place);
        if (end > m_html.size())
            m_end = place;
    }

    std::size_t behind(std::string_view mark, std::size_t from) const {
        const std::size_t found = m_html.find(mark, from);
        return found == std::string_view::npos ? m_html.size() + 1 : found + mark.size();
    }

    void comment() {
        const std::size_t begin = m_at;
        step(text());
        const bool isFull = m_html.substr(begin, 4) == "<!--";
        fill(isFull ? endOfComment(begin) : behind(">", begin + 1), Place::Comment);
    }

    std::size_t endOfComment(std::size_t begin) {
        std::size_t at = begin + 2;
        while ((at = m_html.find("--", at)) != std::string_view::npos) {
            const std::string_view rest = m_html.substr(at + 2, 2);
            if (rest.starts_with('>'))
                return at + 3;
            if (rest == "!>" && at >= begin + 4)
                return at + 4;
            ++at;
        }
        return m_html.size() + 1;
    }

    void tag(const std::string& name) {
        const bool isEnd = m_html[m_at + 1] == '/';
        step(text());
        attributes();
        if (name == "pre" || name == "listing")
            m_pres = std::max(0, m_pres + (isEnd ? -1 : 1));
        if (isEnd || m_at >= m_html.size())
            return;
        if (isOneOf(name, {"textarea", "title"}))
            fill(endTag(name), Place::Value);
        else if (isOneOf(name, {"script", "style", "xmp", "iframe", "noembed", "noframes"}))
            fill(endTag(name), Place::Script);
    }

    /// Up to the end of the tag; a quote opens a value only behind an equals sign.
    void attributes() {
        bool isAfterEquals = false;
        while (m_at < m_html.size()) {
            const char c = m_html[m_at];
            step(Place::Tag);
            if (c == '>')
                return;
            if (isAfterEquals && (c == '"' || c == '\'')) {
                fill(behind(std::string_view(&c, 1), m_at), Place::Value);
                isAfterEquals = false;
            } else if (isAfterEquals && kBlanks.find(c) == std::string_view::npos) {
                while (m_at < m_html.size() && m_html[m_at] != '>' &&
                       kBlanks.find(m_html[m_at]) == std::string_view::npos)
                    step(Place::Value);
                isAfterEquals = false;
            } else if (kBlanks.find(c) == std::string_view::npos) {
                isAfterEquals = c == '=';
            }
        }
        m_end = m_end.value_or(Place::Tag);
    }

    /// Where the end tag of an element begins; beyond the end when there is none.
    std::size_t endTag(const std::string& name) const {
        for (std::size_t at = m_html.find("</", m_at); at != std::string_view::npos; at = m_html.find("</", at + 1))
            if (tagAt(m_html, at) == name)
                return at;
        return m_html.size() + 1;
    }

    std::string_view m_html;
    std::vector<Place> m_places;
    std::size_t m_at = 0;
    std::optional<Place> m_end; ///< the place behind everything, when something was left open
    int m_pres = 0;
};

} // namespace

std::vector<Place> placesOf(std::string_view html) {
    return Scan(html).run();
}

std::string tagAt(std::string_view html, std::size_t at) {
    if (at + 1 >= html.size() || html[at] != '<')
        return {};
    std::size_t begin = at + 1;
    if (html[begin] == '!' || html[begin] == '?')
        return "!";
    const bool isEnd = html[begin] == '/';
    begin += isEnd;
    if (begin >= html.size() || !isLetter(html[begin]))
        return isEnd && begin < html.size() ? "!" : "";
    std::string name;
    for (; begin < html.size() && name.size() < kLongestName && kBlanks.find(html[begin]) == std::string_view::npos &&
           html[begin] != '/' && html[begin] != '>';
         ++begin)
        name += lower(html[begin]);
    return name;
}

} // namespace velloria::plugins::larkport
