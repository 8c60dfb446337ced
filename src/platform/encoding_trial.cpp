#include "platform/encoding_trial.h"

#include "platform/failure.h"
#include "platform/utf8.h"

#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <cerrno>
#include <iconv.h>
#include <memory>

using namespace Qt::StringLiterals;

namespace velloria::platform {
namespace {

struct CloseConverter {
    void operator()(void* converter) const { iconv_close(iconv_t(converter)); }
};
using Converter = std::unique_ptr<void, CloseConverter>;

/// The first of these names that the system knows.
Converter converterFrom(std::initializer_list<const char*> names) {
    for (const char* name : names) {
        const iconv_t converter = iconv_open("UTF-16LE", name);
        if (converter != iconv_t(-1))
            return Converter(converter);
    }
    throw Failure(u"日本語の文字コードを用意できません。"_s, {}, systemReason(errno));
}

/// Nothing when a byte does not fit.
std::optional<QString> converted(const Converter& converter, QByteArrayView bytes) {
    QString text;
    text.reserve(bytes.size());
    char* from = const_cast<char*>(bytes.data()); // as iconv wants it; it only reads
    std::size_t fromLeft = std::size_t(bytes.size());
    std::array<char16_t, 4096> piece;
    while (fromLeft > 0) {
        char* to = reinterpret_cast<char*>(piece.data());
        std::size_t toLeft = sizeof piece;
        const bool isStopped = iconv(converter.get(), &from, &fromLeft, &to, &toLeft) == std::size_t(-1);
        if (isStopped && errno != E2BIG)
            return std::nullopt;
        text += QStringView(piece.data(), qsizetype((sizeof piece - toLeft) / sizeof(char16_t)));
    }
    return text;
}

std::optional<QString> decoded(QStringDecoder::Encoding encoding, QByteArrayView bytes) {
    QStringDecoder decoder(encoding, QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

std::optional<TriedText> utf16(QByteArrayView bytes) {
    const bool isLittle = bytes.startsWith("\xFF\xFE");
    if (!isLittle && !bytes.startsWith("\xFE\xFF"))
        return std::nullopt;
    if (bytes.size() % 2 != 0)
        return std::nullopt;
    const std::optional<QString> text =
        decoded(isLittle ? QStringDecoder::Utf16LE : QStringDecoder::Utf16BE, bytes.sliced(2));
    if (!text || text->contains(QChar::Null))
        return std::nullopt;
    return TriedText{*text, u"UTF-16"_s};
}

/// EUC-JP reads the first bytes of code page 932 as these, which stand in no text.
bool hasControls(const QString& text) {
    return std::ranges::any_of(text, [](QChar character) { return character >= u'\u0080' && character < u'\u00A0'; });
}

/// Whether bytes that fit EUC-JP are rather half-width kana of code page 932. Every fourth character of a Japanese text
/// is from the rows of marks and kana, the first five. A word or two may do without them, but not with one from the
/// rows that hardly any text has.
bool isHalfWidthKana(QByteArrayView bytes) {
    qsizetype characters = 0;
    qsizetype common = 0;
    qsizetype rare = 0;
    for (qsizetype at = 0; at < bytes.size(); ++at) {
        const uchar first = uchar(bytes[at]);
        if (first < 0x80)
            continue;
        if (first < 0xA1 || first > 0xDF || at + 1 == bytes.size() || uchar(bytes[++at]) > 0xDF)
            return false;
        ++characters;
        common += first <= 0xA5;
        rare += (first > 0xA5 && first < 0xB0) || first >= 0xD0;
    }
    return 4 * common < characters && (rare > 0 || characters >= 4);
}

} // namespace

std::optional<TriedText> textByTrial(QByteArrayView bytes) {
    if (std::optional<TriedText> text = utf16(bytes))
        return text;
    if (bytes.contains('\0'))
        return std::nullopt;
    if (const std::optional<QString> text = decoded(QStringDecoder::Utf8, withoutSignature(bytes)))
        return TriedText{*text, u"UTF-8"_s};
    // Japanese text in code page 932 hardly ever fits the narrower rules of EUC-JP, while the other way round it may.
    if (const std::optional<QString> text = converted(converterFrom({"EUC-JP-MS", "EUC-JP"}), bytes);
        text && !hasControls(*text) && !isHalfWidthKana(bytes))
        return TriedText{*text, u"EUC-JP"_s};
    if (const std::optional<QString> text = converted(converterFrom({"CP932"}), bytes))
        return TriedText{*text, u"CP932"_s};
    return std::nullopt;
}

} // namespace velloria::platform
