#include "platform/encoding_trial.h"

#include "platform/failure.h"
#include "platform/utf8.h"

#include <QStringDecoder>

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

} // namespace

std::optional<TriedText> textByTrial(QByteArrayView bytes) {
    if (std::optional<TriedText> text = utf16(bytes))
        return text;
    if (bytes.contains('\0'))
        return std::nullopt;
    if (const std::optional<QString> text = decoded(QStringDecoder::Utf8, withoutSignature(bytes)))
        return TriedText{*text, u"UTF-8"_s};
    // Japanese text in code page 932 hardly ever fits the narrower rules of EUC-JP, while the other way round it may.
    if (const std::optional<QString> text = converted(converterFrom({"EUC-JP-MS", "EUC-JP"}), bytes))
        return TriedText{*text, u"EUC-JP"_s};
    if (const std::optional<QString> text = converted(converterFrom({"CP932"}), bytes))
        return TriedText{*text, u"CP932"_s};
    return std::nullopt;
}

} // namespace velloria::platform
