#include "convert/url_encoding.h"

#include "platform/code_page.h"

#include <array>
#include <cstring>

namespace velloria::convert {
namespace {

/// One byte in its encoded form: a single character or a percent triple. Always stored whole, four units at once.
struct Encoded {
    char16_t units[3];
    quint16 length;
};

constexpr Encoded percentTriple(unsigned byte) {
    constexpr char16_t kDigits[] = u"0123456789ABCDEF";
    return {{u'%', kDigits[byte >> 4], kDigits[byte & 0xF]}, 3};
}

constexpr bool passes(unsigned byte) {
    return (byte >= '0' && byte <= '9') || (byte >= '@' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') ||
           byte == '*' || byte == '-' || byte == '.' || byte == '_';
}

struct Tables {
    std::array<Encoded, 256> triple{};
    std::array<Encoded, 256> common{}; ///< the rule for a byte that is a character

    constexpr Tables() {
        for (unsigned byte = 0; byte < 256; ++byte) {
            triple[byte] = percentTriple(byte);
            common[byte] = passes(byte) ? Encoded{{char16_t(byte), 0, 0}, 1} : triple[byte];
        }
        common[' '] = Encoded{{u'+', 0, 0}, 1};
    }
};

constexpr Tables kTables;

/// The result's buffer, sized once by the worst case.
class Buffer {
public:
    explicit Buffer(qsizetype units)
        : m_text(units + 1, Qt::Uninitialized) // a store reaches one unit past what it keeps
        , m_end(reinterpret_cast<char16_t*>(m_text.data())) {}

    void byteAsTriple(unsigned byte) { store(kTables.triple[byte & 0xFF]); }
    void byteByCommonRule(unsigned byte) { store(kTables.common[byte & 0xFF]); }

    QString text() && {
        m_text.truncate(m_end - reinterpret_cast<const char16_t*>(m_text.constData()));
        return std::move(m_text);
    }

private:
    void store(const Encoded& encoded) {
        std::memcpy(m_end, &encoded, sizeof encoded);
        m_end += encoded.length;
    }

    QString m_text;
    char16_t* m_end;
};

bool isBetween(unsigned value, unsigned low, unsigned high) {
    return value >= low && value <= high;
}

/// The usual arithmetic from a Shift_JIS pair to an EUC-JP pair.
void appendAsEuc(Buffer& buffer, unsigned lead, unsigned trail) {
    const bool isLower = lead < 224;
    if (trail < 159) {
        buffer.byteAsTriple(2 * lead - (isLower ? 97 : 225));
        buffer.byteAsTriple(trail + (trail < 127 ? 97 : 96));
    } else {
        buffer.byteAsTriple(2 * lead - (isLower ? 96 : 224));
        buffer.byteAsTriple(trail + 2);
    }
}

} // namespace

QString ModURLEncode(const QString& text) {
    return encodeCodePageBytes(platform::toCodePage(text, platform::Missing::Question));
}

QString ModURLEncodeEUC(const QString& text) {
    return encodeCodePageBytesAsEuc(platform::toCodePage(text, platform::Missing::Question));
}

QString ModURLEncodeUTF8(const QString& text) {
    Buffer buffer(text.size() * 9);
    for (const QChar character : text) {
        const unsigned c = character.unicode();
        if (c < 0x80) {
            buffer.byteByCommonRule(c);
        } else if (c < 0x800) {
            buffer.byteAsTriple(c >> 6 | 0xC0);
            buffer.byteAsTriple((c & 0x3F) | 0x80);
        } else {
            buffer.byteAsTriple(c >> 12 | 0xE0);
            buffer.byteAsTriple((c >> 6 & 0x3F) | 0x80);
            buffer.byteAsTriple((c & 0x3F) | 0x80);
        }
    }
    return std::move(buffer).text();
}

QString encodeCodePageBytes(QByteArrayView bytes) {
    Buffer buffer(bytes.size() * 3);
    for (auto byte = bytes.begin(); byte != bytes.end(); ++byte) {
        const unsigned first = static_cast<unsigned char>(*byte);
        if (!isBetween(first, 129, 159) && !isBetween(first, 224, 239)) {
            buffer.byteByCommonRule(first);
            continue;
        }
        buffer.byteAsTriple(first);
        if (byte + 1 != bytes.end())
            buffer.byteAsTriple(static_cast<unsigned char>(*++byte));
    }
    return std::move(buffer).text();
}

QString encodeCodePageBytesAsEuc(QByteArrayView bytes) {
    Buffer buffer(bytes.size() * 6); // the worst case is a half-width kana: one byte, two triples
    for (auto byte = bytes.begin(); byte != bytes.end(); ++byte) {
        const unsigned first = static_cast<unsigned char>(*byte);
        const unsigned second = byte + 1 != bytes.end() ? static_cast<unsigned char>(byte[1]) : 0;
        if (isBetween(first, 161, 223)) {
            buffer.byteAsTriple(0x8E);
            buffer.byteAsTriple(first);
        } else if ((isBetween(first, 129, 159) || isBetween(first, 224, 252)) &&
                   (isBetween(second, 64, 126) || isBetween(second, 128, 252))) {
            appendAsEuc(buffer, first, second);
            ++byte;
        } else {
            buffer.byteByCommonRule(first);
        }
    }
    return std::move(buffer).text();
}

} // namespace velloria::convert
