#include "platform/code_page.h"

#include "platform/failure.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <iconv.h>

using namespace Qt::StringLiterals;

namespace velloria::platform {
namespace {

constexpr char16_t kUndefined = 0x30FB;

bool isLead(unsigned char byte) {
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

/// Both directions of the code page, made once from iconv.
class Tables {
public:
    Tables() {
        fillSingleBytes();
        fillDoubleBytes();
        // Input methods outside Windows type these for what the code page has beside them.
        m_code[0x2014] = m_code[0x2015];
        m_code[0x2016] = m_code[0x2225];
        m_code[0x2212] = m_code[0xFF0D];
        m_code[0x301C] = m_code[0xFF5E];
        // Narrow cent, pound and not signs have always been written as the wide ones.
        m_code[0x00A2] = m_code[0xFFE0];
        m_code[0x00A3] = m_code[0xFFE1];
        m_code[0x00AC] = m_code[0xFFE2];
    }

    char16_t character(unsigned code) const { return m_character[code]; }
    unsigned code(char16_t character) const { return m_code[character]; }

private:
    void fillSingleBytes() {
        for (unsigned byte = 0x01; byte < 0x80; ++byte)
            set(byte, char16_t(byte));
        for (unsigned byte = 0xA1; byte <= 0xDF; ++byte)
            set(byte, char16_t(0xFF61 + byte - 0xA1));
        // Windows gives these four bytes, which have no character, places of their own; iconv refuses them.
        set(0x80, 0x0080);
        set(0xA0, 0xF8F0);
        set(0xFD, 0xF8F1);
        set(0xFE, 0xF8F2);
        set(0xFF, 0xF8F3);
    }

    void fillDoubleBytes() {
        iconv_t converter = iconv_open("UTF-16LE", "CP932");
        if (converter == iconv_t(-1))
            throw Failure(u"日本語の文字コードを用意できません。"_s, {}, systemReason(errno));
        for (unsigned lead = 0x81; lead <= 0xFC; ++lead) {
            if (!isLead(static_cast<unsigned char>(lead)))
                continue;
            for (unsigned trail = 0x40; trail <= 0xFC; ++trail) {
                if (trail == 0x7F)
                    continue;
                std::array<char, 2> in{char(lead), char(trail)};
                std::array<unsigned char, 4> out{};
                char* from = in.data();
                char* to = reinterpret_cast<char*>(out.data());
                std::size_t fromLeft = in.size();
                std::size_t toLeft = out.size();
                if (iconv(converter, &from, &fromLeft, &to, &toLeft) == std::size_t(-1) || toLeft != 2) {
                    iconv(converter, nullptr, nullptr, nullptr, nullptr);
                    continue;
                }
                set(lead << 8 | trail, char16_t(out[0] | out[1] << 8));
            }
        }
        iconv_close(converter);
    }

    void set(unsigned code, char16_t character) {
        m_character[code] = character;
        // A character with several codes is written by the lowest one, but never by the copies in rows ED and EE.
        const unsigned lead = code >> 8;
        if (m_code[character] == 0 && lead != 0xED && lead != 0xEE)
            m_code[character] = static_cast<quint16>(code);
    }

    std::array<char16_t, 0x10000> m_character{};
    std::array<quint16, 0x10000> m_code{};
};

const Tables& tables() {
    static const Tables instance;
    return instance;
}

void appendReference(QByteArray& bytes, char32_t character) {
    bytes += "&#";
    bytes += QByteArray::number(uint(character));
    bytes += ';';
}

} // namespace

QByteArray toCodePage(QStringView text, Missing missing) {
    const Tables& table = tables();
    QByteArray bytes(text.size() * 2, Qt::Uninitialized);
    char* out = bytes.data();
    const char16_t* unit = text.utf16();
    const char16_t* const end = unit + text.size();
    for (; unit != end; ++unit) {
        const char16_t c = *unit;
        if (c < 0x80) {
            *out++ = char(c);
            continue;
        }
        if (const unsigned code = table.code(c)) {
            if (code > 0xFF)
                *out++ = char(code >> 8);
            *out++ = char(code & 0xFF);
            continue;
        }
        // Rare from here on: give back the room that the reference may need.
        char32_t character = c;
        const bool isPair = QChar::isHighSurrogate(c) && unit + 1 != end && QChar::isLowSurrogate(unit[1]);
        if (missing == Missing::Question || (!isPair && QChar::isSurrogate(c))) {
            *out++ = '?';
            continue;
        }
        if (isPair)
            character = QChar::surrogateToUcs4(c, *++unit);
        bytes.truncate(out - bytes.constData());
        appendReference(bytes, character);
        const qsizetype used = bytes.size();
        bytes.resize(used + (end - unit) * 2);
        out = bytes.data() + used;
    }
    bytes.truncate(out - bytes.constData());
    return bytes;
}

QString fromCodePage(QByteArrayView bytes) {
    const Tables& table = tables();
    QString text(bytes.size(), Qt::Uninitialized);
    auto* out = reinterpret_cast<char16_t*>(text.data());
    const auto* byte = reinterpret_cast<const unsigned char*>(bytes.data());
    const auto* const end = byte + bytes.size();
    while (byte != end) {
        const unsigned char first = *byte++;
        if (first < 0x80) {
            *out++ = first;
        } else if (!isLead(first)) {
            *out++ = table.character(first);
        } else if (byte == end || *byte == 0) {
            *out++ = kUndefined; // a NUL ends a text even behind a lead byte: it is not taken along
        } else {
            const char16_t character = table.character(unsigned(first) << 8 | *byte++);
            *out++ = character ? character : kUndefined;
        }
    }
    text.truncate(out - reinterpret_cast<const char16_t*>(text.constData()));
    return text;
}

bool inCodePage(QStringView text) {
    const Tables& table = tables();
    for (const QChar c : text) {
        if (c.unicode() >= 0x80 && table.code(c.unicode()) == 0)
            return false;
    }
    return true;
}

QString decodeReferences(QString text) {
    constexpr QStringView mark = u"&#";
    qsizetype at = text.indexOf(mark);
    if (at < 0)
        return text;
    const Tables& table = tables();
    QString decoded;
    decoded.reserve(text.size());
    qsizetype copied = 0;
    for (; at >= 0; at = text.indexOf(mark, std::max(copied, at + 1))) {
        qsizetype end = at + mark.size();
        char32_t character = 0;
        while (end < text.size() && end - at <= 9 && text[end] >= u'0' && text[end] <= u'9')
            character = character * 10 + (text[end++].unicode() - u'0');
        // Only the form that the writer makes: no leading zero, a character that the code page has no code for.
        const bool isOurs = end > at + 2 && end < text.size() && text[end] == u';' && text[at + 2] != u'0' &&
                            character <= 0x10FFFF && !(character >= 0xD800 && character <= 0xDFFF) &&
                            (character > 0xFFFF || table.code(char16_t(character)) == 0);
        if (isOurs) {
            decoded += QStringView(text).sliced(copied, at - copied);
            decoded += QChar::fromUcs4(character);
            copied = end + 1;
        }
    }
    decoded += QStringView(text).sliced(copied);
    return decoded;
}

int characterLength(QByteArrayView bytes, qsizetype at) {
    const bool isPair = isLead(static_cast<unsigned char>(bytes[at])) && at + 1 < bytes.size() && bytes[at + 1] != 0;
    return isPair ? 2 : 1;
}

bool isCode(unsigned code) {
    return code == 0 || (code <= 0xFFFF && tables().character(code) != 0);
}

char16_t characterOf(unsigned code) {
    return tables().character(code);
}

unsigned codeOf(char16_t character) {
    return tables().code(character);
}

} // namespace velloria::platform
