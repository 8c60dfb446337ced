#include "common/encoding.h"

#include "common/calls.h"

#include <iconv.h>

#include <cerrno>

namespace velloria::plugins {
namespace {

constexpr std::string_view kMark = "\xEF\xBB\xBF";
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// The length of the UTF-8 character at the beginning; 0 when there is none.
std::size_t characterLength(std::string_view bytes) {
    const auto at = [&](std::size_t index) { return static_cast<unsigned char>(bytes[index]); };
    const unsigned char first = at(0);
    if (first < 0x80)
        return 1;
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || bytes.size() < length)
        return 0;
    for (std::size_t index = 1; index < length; ++index)
        if ((at(index) & 0xC0) != 0x80)
            return 0;
    const unsigned char second = at(1);
    const bool isOverlong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
    const bool isBeyond = (first == 0xED && second > 0x9F) || (first == 0xF4 && second > 0x8F);
    return isOverlong || isBeyond ? 0 : length;
}

/// How well bytes read as UTF-8. A character that the end cuts is no sign against it.
struct Trial {
    std::size_t longCharacters = 0; ///< of three bytes and more, as all Japanese ones are
    std::size_t errors = 0;
    bool isWhole = true;

    explicit Trial(std::string_view bytes) {
        while (!bytes.empty()) {
            const std::size_t length = characterLength(bytes);
            if (length == 0) {
                isWhole = false;
                if (!isCutCharacter(bytes))
                    ++errors;
            } else if (length > 2) {
                ++longCharacters;
            }
            bytes.remove_prefix(length == 0 ? 1 : length);
        }
    }

    bool isLikely() const { return errors == 0 || longCharacters > 2 * errors; }

private:
    static bool isCutCharacter(std::string_view rest) {
        if (rest.size() > 3)
            return false;
        for (std::size_t index = 0; index < rest.size(); ++index) {
            const bool isFollower = (static_cast<unsigned char>(rest[index]) & 0xC0) == 0x80;
            if (index > 0 && !isFollower)
                return false;
        }
        return true;
    }
};

class Converter {
public:
    /// The first of the names that the machine knows.
    Converter(const char* name, const char* otherName)
        : m_handle(iconv_open("UTF-8", name)) {
        if (m_handle == kNone)
            m_handle = iconv_open("UTF-8", otherName);
        if (m_handle == kNone)
            throw Error(std::string("文字コード ") + otherName + " を読み取る用意ができません。");
    }
    ~Converter() { iconv_close(m_handle); }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    DecodedText convert(std::string_view bytes, Encoding encoding, bool& isCut) const {
        DecodedText text{{}, encoding, 0};
        text.utf8.reserve(bytes.size() + bytes.size() / 2);
        char* from = const_cast<char*>(bytes.data());
        std::size_t left = bytes.size();
        while (left > 0) {
            char block[1 << 14];
            char* to = block;
            std::size_t room = sizeof block;
            const std::size_t result = iconv(m_handle, &from, &left, &to, &room);
            text.utf8.append(block, sizeof block - room);
            if (result != std::size_t(-1) || errno == E2BIG)
                continue;
            ++text.replaced;
            text.utf8 += kReplacement;
            isCut = errno == EINVAL;
            if (isCut)
                break;
            ++from;
            --left;
        }
        return text;
    }

private:
    static inline const iconv_t kNone = reinterpret_cast<iconv_t>(-1);

    iconv_t m_handle;
};

/// How many of U+0080 to U+009F there are, as which EUC-JP reads the first bytes of Shift_JIS.
std::size_t controls(std::string_view utf8) {
    std::size_t count = 0;
    for (std::size_t at = utf8.find('\xC2'); at != std::string_view::npos; at = utf8.find('\xC2', at + 1))
        count += static_cast<unsigned char>(utf8[at + 1]) < 0xA0;
    return count;
}

/// Whether bytes that fit EUC-JP are rather half-width kana of Shift_JIS. Every fourth character of a Japanese text
/// is from the rows of marks and kana, the first five. A word or two may do without them, but not with one from the
/// rows that hardly any text has.
bool isHalfWidthKana(std::string_view bytes) {
    std::size_t characters = 0;
    std::size_t common = 0;
    std::size_t rare = 0;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        const auto first = static_cast<unsigned char>(bytes[at]);
        if (first < 0x80)
            continue;
        if (first < 0xA1 || first > 0xDF || at + 1 == bytes.size() || static_cast<unsigned char>(bytes[++at]) > 0xDF)
            return false;
        ++characters;
        common += first <= 0xA5;
        rare += (first > 0xA5 && first < 0xB0) || first >= 0xD0;
    }
    return 4 * common < characters && (rare > 0 || characters >= 4);
}

} // namespace

const char* nameOf(Encoding encoding) {
    switch (encoding) {
    case Encoding::Utf8:
        return "UTF-8";
    case Encoding::Utf8WithMark:
        return "UTF-8 (BOM付き)";
    case Encoding::ShiftJis:
        return "Shift_JIS";
    case Encoding::EucJp:
        return "EUC-JP";
    }
    return "";
}

DecodedText decoded(std::string_view bytes) {
    if (bytes.starts_with(kMark)) {
        DecodedText text{{}, Encoding::Utf8WithMark, 0};
        text.utf8 = validUtf8(bytes.substr(kMark.size()), text.replaced);
        return text;
    }
    const Trial trial(bytes);
    if (trial.isLikely()) {
        DecodedText text;
        text.utf8 = validUtf8(bytes, text.replaced);
        return text;
    }
    // Shift_JIS is hardly ever good EUC-JP, while EUC-JP often reads as half-width kana of Shift_JIS.
    bool isCut = false;
    DecodedText euc = Converter("EUC-JP-MS", "EUC-JP").convert(bytes, Encoding::EucJp, isCut);
    const std::size_t eucErrors = euc.replaced - isCut + controls(euc.utf8);
    if (eucErrors == 0 && !isHalfWidthKana(bytes))
        return euc;
    DecodedText shiftJis = decodedShiftJis(bytes);
    return eucErrors < shiftJis.replaced ? euc : shiftJis;
}

DecodedText decodedShiftJis(std::string_view bytes) {
    bool isCut = false;
    return Converter("CP932", "SHIFT_JIS").convert(bytes, Encoding::ShiftJis, isCut);
}

bool isUtf8(std::string_view bytes) {
    return Trial(bytes).isWhole;
}

std::string validUtf8(std::string_view bytes, std::size_t& replaced) {
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const std::size_t length = characterLength(bytes);
        if (length == 0) {
            ++replaced;
            text += kReplacement;
        } else {
            text += bytes.substr(0, length);
        }
        bytes.remove_prefix(length == 0 ? 1 : length);
    }
    return text;
}

} // namespace velloria::plugins
