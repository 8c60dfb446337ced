#include "larkport/paragraphs.h"

#include "common/escaped.h"
#include "larkport/html_places.h"

#include <algorithm>
#include <iterator>

namespace velloria::plugins::larkport {
namespace {

constexpr std::string_view kBlocks[] = {"h1", "h2",   "h3",  "h4",       "h5",     "h6",         "table",   "ol", "dl",
                                        "ul", "menu", "dir", "p",        "pre",    "center",     "form",    "hr", "div",
                                        "li", "dt",   "dd",  "fieldset", "select", "blockquote", "address", "!"};

constexpr std::size_t kLongestBreak = 20; // bytes of a tag in a comment that is a line's end

bool isBlock(const std::string& tag) {
    return std::find(std::begin(kBlocks), std::end(kBlocks), tag) != std::end(kBlocks);
}

bool isBlockParagraph(std::string_view paragraph) {
    const std::size_t begin = paragraph.find_first_not_of(" \t\n");
    if (begin == std::string_view::npos || isBlock(tagAt(paragraph, begin)))
        return true;
    const std::string_view whole = paragraph.substr(0, paragraph.find_last_not_of(" \t\n") + 1);
    return whole.ends_with('>') && isBlock(tagAt(whole, std::min(whole.rfind('<'), whole.size())));
}

std::string paragraphOf(std::string_view text) {
    if (isBlockParagraph(text))
        return std::string(text);
    std::string paragraph = "<p>";
    for (const char c : text) {
        if (c == '\n')
            paragraph += "<br />";
        paragraph += c;
    }
    return paragraph + "</p>";
}

} // namespace

std::string withParagraphs(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find("\n\n"), text.size());
        result += paragraphOf(text.substr(0, end));
        text.remove_prefix(end);
        const std::size_t lines = std::min(text.find_first_not_of('\n'), text.size());
        result += text.substr(0, lines);
        text.remove_prefix(lines);
    }
    return result;
}

bool hasParagraphs(std::string_view text) {
    for (std::size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at + 1)) {
        const std::string tag = tagAt(text, at);
        if (tag == "br" || (tag != "!" && isBlock(tag)))
            return true;
    }
    return false;
}

std::string harmlessText(std::string_view text) {
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = text[at] == '<' ? text.substr(at, kLongestBreak).find('>') : std::string_view::npos;
        const std::string tag = length != std::string_view::npos ? tagAt(text, at) : std::string();
        if (tag == "br" || tag == "p") {
            if (!result.empty() && result.back() != '\n')
                result += '\n';
            at += length + 1;
        } else if (text[at] == '\n') {
            if (!result.empty() && result.back() != '\n')
                result += '\n';
            ++at;
        } else {
            result += text[at++];
        }
    }
    const std::string shown = escaped(std::string_view(result).substr(0, result.find_last_not_of('\n') + 1));
    std::string lines;
    for (const char c : shown)
        lines.append(c == '\n' ? "<BR>" : "") += c;
    return lines;
}

} // namespace velloria::plugins::larkport
