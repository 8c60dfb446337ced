#include "vellinfo/visible_text.h"

#include <libxml/HTMLparser.h>

#include <algorithm>
#include <array>
#include <string>

namespace velloria::plugins::vellinfo {
namespace {

constexpr std::string_view kBlanks = " \t\r\n\f";

/// Elements within a line of text.
constexpr std::array<std::string_view, 24> kWithinWords{
    "a",    "abbr", "b", "big",    "cite", "code", "del",    "em",  "font", "i",  "ins", "kbd",
    "mark", "q",    "s", "strike", "samp", "span", "strong", "sub", "sup",  "tt", "u",   "var"};

/// Elements whose text is not seen and has no tags in it, up to their own closing tag.
constexpr std::array<std::string_view, 6> kUnseen{"script", "style", "title", "iframe", "noframes", "noembed"};

bool isLetter(char byte) {
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

char lower(char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + ('a' - 'A')) : byte;
}

template <std::size_t Size>
bool has(const std::array<std::string_view, Size>& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool startsWithName(std::string_view text, std::string_view name) {
    return text.size() >= name.size() && std::equal(name.begin(), name.end(), text.begin(),
                                                    [](char left, char right) { return left == lower(right); });
}

class Viewer {
public:
    Viewer(std::string_view html, WordCounts& words)
        : m_rest(html)
        , m_words(words) {}

    Seen look() {
        while (!m_rest.empty()) {
            if (m_rest.front() == '<' && m_rest.size() > 1)
                readMarkup();
            else if (m_rest.front() == '&')
                readReference();
            else
                see(takeCharacter(m_rest));
        }
        m_words.end();
        return m_seen;
    }

private:
    void see(char32_t character) {
        const Kind kind = kindOf(character);
        m_seen.characters += kind != Kind::Space && kind != Kind::Joined;
        m_words.add(character, kind);
    }

    void skipTo(std::string_view end, std::size_t from = 0) {
        const std::size_t at = m_rest.find(end, from);
        m_rest.remove_prefix(at == m_rest.npos ? m_rest.size() : at + end.size());
    }

    void readMarkup() {
        const char next = m_rest[1];
        if (m_rest.substr(0, 4) == "<!--")
            skipTo("-->", 2); // "<!-->" is a whole comment
        else if (isLetter(next) || (next == '/' && m_rest.size() > 2 && isLetter(m_rest[2])))
            readTag();
        else if (next == '!' || next == '?' || next == '/')
            skipTo(">");
        else
            see(takeCharacter(m_rest));
    }

    void readTag() {
        const bool isEnd = m_rest[1] == '/';
        m_rest.remove_prefix(isEnd ? 2 : 1);
        std::string name;
        while (!m_rest.empty() && kBlanks.find(m_rest.front()) == kBlanks.npos && m_rest.front() != '/' &&
               m_rest.front() != '>') {
            name += lower(m_rest.front());
            m_rest.remove_prefix(1);
        }
        if (!has(kWithinWords, name))
            m_words.end();
        const bool isWhole = skipAttributes();
        if (isEnd || !isWhole)
            return;
        m_seen.pictures += name == "img";
        if (has(kUnseen, name))
            skipElement(name);
    }

    /// Up to the end of the tag; false when it has none. A ">" may stand in quotes, and those mean something only
    /// behind a "=".
    bool skipAttributes() {
        bool isValue = false;
        while (!m_rest.empty()) {
            const char byte = m_rest.front();
            m_rest.remove_prefix(1);
            if (byte == '>')
                return true;
            if (isValue && (byte == '"' || byte == '\''))
                skipTo({&byte, 1});
            if (kBlanks.find(byte) == kBlanks.npos)
                isValue = byte == '=';
        }
        return false;
    }

    void skipElement(const std::string& name) {
        for (;;) {
            skipTo("</");
            if (m_rest.empty())
                return;
            if (startsWithName(m_rest, name) && (m_rest.size() == name.size() || !isLetter(m_rest[name.size()])))
                return skipTo(">");
        }
    }

    void readReference() {
        if (m_rest.size() > 2 && m_rest[1] == '#')
            readNumber();
        else
            readName();
    }

    /// "&#12354;" and "&#x3042;", also without the ";".
    void readNumber() {
        const bool isHex = lower(m_rest[2]) == 'x';
        const char32_t base = isHex ? 16 : 10;
        std::string_view digits = m_rest.substr(isHex ? 3 : 2);
        constexpr char32_t kTooMuch = 0x110000;
        char32_t character = 0;
        std::size_t count = 0;
        for (; count < digits.size(); ++count) {
            const char byte = lower(digits[count]);
            const bool isHexLetter = isHex && byte >= 'a' && byte <= 'f';
            if (!isDigit(byte) && !isHexLetter)
                break;
            const auto digit = static_cast<char32_t>(isHexLetter ? byte - 'a' + 10 : byte - '0');
            character = std::min<char32_t>(character * base + digit, kTooMuch);
        }
        if (count == 0)
            return see(takeCharacter(m_rest));
        digits.remove_prefix(count);
        m_rest = !digits.empty() && digits.front() == ';' ? digits.substr(1) : digits;
        const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
        see(character == 0 || character >= kTooMuch || isSurrogate ? U'\uFFFD' : character);
    }

    void readName() {
        constexpr std::size_t kLongestName = 8; // "thetasym"
        std::string name;
        while (name.size() <= kLongestName && name.size() + 1 < m_rest.size() &&
               (isLetter(m_rest[name.size() + 1]) || isDigit(m_rest[name.size() + 1])))
            name += m_rest[name.size() + 1];
        const htmlEntityDesc* entity = htmlEntityLookup(reinterpret_cast<const xmlChar*>(name.c_str()));
        const bool isClosed = name.size() + 1 < m_rest.size() && m_rest[name.size() + 1] == ';';
        if (!entity || !isClosed)
            return see(takeCharacter(m_rest));
        m_rest.remove_prefix(name.size() + 2);
        see(entity->value);
    }

    std::string_view m_rest;
    WordCutter m_words;
    Seen m_seen;
};

} // namespace

Seen& Seen::operator+=(const Seen& other) {
    characters += other.characters;
    pictures += other.pictures;
    return *this;
}

Seen look(std::string_view html, WordCounts& words) {
    return Viewer(html, words).look();
}

} // namespace velloria::plugins::vellinfo
