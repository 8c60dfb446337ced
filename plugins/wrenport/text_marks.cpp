#include "wrenport/text_marks.h"

#include <algorithm>

namespace velloria::plugins::wrenport {
namespace {

constexpr uint32_t kBeyond = 0x110000;

int valueOf(char c, bool isHexadecimal) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (isHexadecimal && c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (isHexadecimal && c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

} // namespace

std::optional<NumberReference> numberReference(std::string_view text) {
    if (!text.starts_with("&#"))
        return std::nullopt;
    const bool isHexadecimal = text.size() > 2 && (text[2] == 'x' || text[2] == 'X');
    const std::size_t begin = isHexadecimal ? 3 : 2;
    uint32_t character = 0;
    std::size_t at = begin;
    for (int digit = 0; at < text.size() && (digit = valueOf(text[at], isHexadecimal)) >= 0; ++at)
        character = std::min(character * (isHexadecimal ? 16U : 10U) + uint32_t(digit), kBeyond);
    if (at == begin || at == text.size() || text[at] != ';')
        return std::nullopt;
    return NumberReference{character, at + 1};
}

void appendUtf8(std::string& text, uint32_t character) {
    const auto follower = [&](int shift) { text += char(0x80 | ((character >> shift) & 0x3F)); };
    if (character < 0x80) {
        text += char(character);
    } else if (character < 0x800) {
        text += char(0xC0 | (character >> 6));
        follower(0);
    } else if (character < 0x10000) {
        text += char(0xE0 | (character >> 12));
        follower(6);
        follower(0);
    } else {
        text += char(0xF0 | (character >> 18));
        follower(12);
        follower(6);
        follower(0);
    }
}

bool isLetterOrDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    for (std::size_t at = 0;;) {
        const std::size_t end = text.find('\n', at);
        lines.push_back(text.substr(at, end == std::string_view::npos ? end : end - at));
        if (end == std::string_view::npos)
            return lines;
        at = end + 1;
    }
}

std::string joined(const std::vector<std::string_view>& lines) {
    std::string text;
    for (std::size_t index = 0; index < lines.size(); ++index) {
        text += index == 0 ? "" : "\r\n";
        text += lines[index];
    }
    return text;
}

} // namespace velloria::plugins::wrenport
