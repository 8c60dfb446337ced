#include "vellinfo/characters.h"

#include <array>

namespace velloria::plugins::vellinfo {
namespace {

constexpr char32_t kNoCharacter = 0xFFFD;
constexpr std::size_t kBasicPlane = 0x10000;

struct Range {
    char32_t first;
    char32_t last;
    Kind kind;
};

/// A later row takes the place of an earlier one.
constexpr Range kRanges[] = {
    {0x0000, 0x0020, Kind::Space},    {0x007F, 0x00A0, Kind::Space},    {0x2000, 0x200A, Kind::Space},
    {0x2028, 0x2029, Kind::Space},    {0x202F, 0x202F, Kind::Space},    {0x205F, 0x205F, Kind::Space},
    {0x3000, 0x3000, Kind::Space},    {0x0030, 0x0039, Kind::InLatin},  {0x0027, 0x0027, Kind::InLatin},
    {0x2019, 0x2019, Kind::InLatin},  {0xFF10, 0xFF19, Kind::InLatin},  {0x0041, 0x005A, Kind::Latin},
    {0x0061, 0x007A, Kind::Latin},    {0x00C0, 0x024F, Kind::Latin},    {0x00D7, 0x00D7, Kind::Other},
    {0x00F7, 0x00F7, Kind::Other},    {0x1E00, 0x1EFF, Kind::Latin},    {0xFF21, 0xFF3A, Kind::Latin},
    {0xFF41, 0xFF5A, Kind::Latin},    {0x3400, 0x4DBF, Kind::Kanji},    {0x4E00, 0x9FFF, Kind::Kanji},
    {0xF900, 0xFAFF, Kind::Kanji},    {0x3005, 0x3007, Kind::Kanji},    {0x30A1, 0x30FA, Kind::Katakana},
    {0x30FC, 0x30FC, Kind::LongMark}, {0x30FD, 0x30FF, Kind::Katakana}, {0x31F0, 0x31FF, Kind::Katakana},
    {0xFF66, 0xFF9D, Kind::Katakana}, {0xFF70, 0xFF70, Kind::LongMark}, {0xFF9E, 0xFF9F, Kind::LongMark},
    {0x00AD, 0x00AD, Kind::Joined},   {0x0300, 0x036F, Kind::Joined},   {0x200B, 0x200F, Kind::Joined},
    {0x202A, 0x202E, Kind::Joined},   {0x2060, 0x206F, Kind::Joined},   {0x20D0, 0x20FF, Kind::Joined},
    {0x3099, 0x309A, Kind::Joined},   {0xFE00, 0xFE0F, Kind::Joined},   {0xFE20, 0xFE2F, Kind::Joined},
    {0xFEFF, 0xFEFF, Kind::Joined},
};

constexpr std::array<Kind, kBasicPlane> makeKinds() {
    std::array<Kind, kBasicPlane> kinds{};
    kinds.fill(Kind::Other);
    for (const Range& range : kRanges) {
        for (char32_t at = range.first; at <= range.last; ++at)
            kinds[at] = range.kind;
    }
    return kinds;
}

constexpr std::array<Kind, kBasicPlane> kKinds = makeKinds();

Kind kindBeyond(char32_t character) {
    if (character >= 0x20000 && character <= 0x3FFFF)
        return Kind::Kanji;
    const bool isJoined = (character >= 0xE0000 && character <= 0xE01EF) || // tags and variation selectors
                          (character >= 0x1F3FB && character <= 0x1F3FF);   // colours of skin
    return isJoined ? Kind::Joined : Kind::Other;
}

/// How many bytes a character has by its first one, 0 for a byte that begins none.
constexpr int lengthOf(unsigned char first) {
    if (first < 0x80)
        return 1;
    if (first >= 0xC2 && first < 0xE0)
        return 2;
    if (first >= 0xE0 && first < 0xF0)
        return 3;
    return first >= 0xF0 && first < 0xF5 ? 4 : 0;
}

constexpr bool isCharacter(char32_t character, int length) {
    constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    return character >= kLeast[length] && character <= 0x10FFFF && (character < 0xD800 || character > 0xDFFF);
}

} // namespace

Kind kindOf(char32_t character) {
    return character < kBasicPlane ? kKinds[character] : kindBeyond(character);
}

char32_t takeCharacter(std::string_view& text) {
    const auto first = static_cast<unsigned char>(text.front());
    const int length = lengthOf(first);
    char32_t character = length == 1 ? first : first & (0x7FU >> length);
    bool isWhole = length > 0 && text.size() >= static_cast<std::size_t>(length);
    for (int at = 1; isWhole && at < length; ++at) {
        const auto next = static_cast<unsigned char>(text[static_cast<std::size_t>(at)]);
        isWhole = (next & 0xC0) == 0x80;
        character = character << 6 | (next & 0x3F);
    }
    isWhole = isWhole && isCharacter(character, length);
    text.remove_prefix(isWhole ? static_cast<std::size_t>(length) : 1);
    return isWhole ? character : kNoCharacter;
}

void appendCharacter(std::string& text, char32_t character) {
    const auto add = [&](char32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (character < 0x80) {
        add(character);
    } else if (character < 0x800) {
        add(0xC0 | character >> 6);
        add(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        add(0xE0 | character >> 12);
        add(0x80 | (character >> 6 & 0x3F));
        add(0x80 | (character & 0x3F));
    } else {
        add(0xF0 | character >> 18);
        add(0x80 | (character >> 12 & 0x3F));
        add(0x80 | (character >> 6 & 0x3F));
        add(0x80 | (character & 0x3F));
    }
}

char32_t foldedLatin(char32_t character) {
    constexpr char32_t kToOrdinary = 0xFF01 - 0x21;
    if (character >= 0xFF01 && character <= 0xFF5E)
        character -= kToOrdinary;
    const bool isCapital = (character >= U'A' && character <= U'Z') || (character >= 0xC0 && character <= 0xDE);
    return isCapital ? character + 0x20 : character;
}

std::string shortened(std::string_view text, std::size_t characters) {
    std::string line;
    for (std::size_t count = 0; !text.empty(); ++count) {
        if (count == characters)
            return line + "…";
        const char32_t character = takeCharacter(text);
        appendCharacter(line, kindOf(character) == Kind::Space ? U' ' : character);
    }
    return line;
}

} // namespace velloria::plugins::vellinfo
