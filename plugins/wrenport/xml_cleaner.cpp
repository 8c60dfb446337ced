#include "wrenport/xml_cleaner.h"

#include "wrenport/text_marks.h"

namespace velloria::plugins::wrenport {
namespace {

constexpr std::size_t kPiece = 1 << 16;
constexpr std::string_view kOpensLiteral = "<![CDATA[";
constexpr std::string_view kClosesLiteral = "]]>";
constexpr std::string_view kNames[] = {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"};

bool beginsWithName(std::string_view text) {
    for (const std::string_view name : kNames)
        if (text.starts_with(name))
            return true;
    return false;
}

/// The length of the forbidden character at the beginning, 0 when there is none.
std::size_t forbidden(std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    if (first < 0x20)
        return isXmlCharacter(first) ? 0 : 1;
    return text.starts_with("\xEF\xBF\xBE") || text.starts_with("\xEF\xBF\xBF") ? 3 : 0;
}

} // namespace

bool isXmlCharacter(uint32_t character) {
    if (character < 0x20)
        return character == '\t' || character == '\n' || character == '\r';
    return character < 0xD800 || (character > 0xDFFF && character < 0xFFFE) ||
           (character > 0xFFFF && character < 0x110000);
}

int64_t cleanXml(std::string_view utf8, const std::function<bool(std::string_view)>& take) {
    int64_t removed = 0;
    std::string piece;
    bool isLiteral = false;
    for (std::size_t at = 0; at < utf8.size();) {
        const std::string_view rest = utf8.substr(at);
        std::size_t length = 1;
        if (const std::size_t bad = forbidden(rest)) {
            ++removed;
            length = bad;
        } else if (rest.front() == '&' && !isLiteral) {
            const auto reference = numberReference(rest);
            if (reference)
                length = reference->length;
            if (reference && !isXmlCharacter(reference->character))
                ++removed;
            else if (reference)
                piece += rest.substr(0, length);
            else
                piece += beginsWithName(rest) ? "&" : "&amp;";
        } else {
            if (rest.front() == '<' && rest.starts_with(kOpensLiteral))
                isLiteral = true;
            else if (rest.front() == ']' && rest.starts_with(kClosesLiteral))
                isLiteral = false;
            piece += rest.front();
        }
        at += length;
        if (piece.size() >= kPiece) {
            if (!take(piece))
                return removed;
            piece.clear();
        }
    }
    take(piece);
    return removed;
}

} // namespace velloria::plugins::wrenport
