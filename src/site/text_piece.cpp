#include "site/text_piece.h"

#include "platform/code_page.h"
#include "platform/file_write.h"
#include "site/customize_sets.h"

namespace velloria::site {
namespace {

bool hasLongLine(QStringView text) {
    for (const QStringView line : text.tokenize(u'\n')) {
        if (line.size() > kLongestLine)
            return true;
    }
    return false;
}

} // namespace

TextPiece readTextPiece(const core::Session& session, const QString& name) {
    if (name.isEmpty())
        return {};
    const std::optional<QByteArray> bytes =
        platform::readFileIfThere(textPieceFile(session, name), kMostPieceBytes + 1);
    if (!bytes)
        return {};
    if (bytes->size() > kMostPieceBytes)
        return {{}, true};
    const QString text = platform::decodeReferences(platform::fromCodePage(*bytes));
    return hasLongLine(text) ? TextPiece{{}, true} : TextPiece{text};
}

void writeTextPiece(const core::Session& session, const QString& name, const QString& text) {
    platform::replaceFile(textPieceFile(session, name), platform::toCodePage(text), platform::Durability::Durable);
}

void copyTextPiece(const core::Session& session, const QString& from, const QString& to) {
    std::optional<QByteArray> bytes;
    if (!from.isEmpty())
        bytes = platform::readFileIfThere(textPieceFile(session, from));
    platform::replaceFile(textPieceFile(session, to), bytes.value_or(QByteArray()), platform::Durability::Durable);
}

} // namespace velloria::site
