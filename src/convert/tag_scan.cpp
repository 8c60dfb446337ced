#include "convert/tag_scan.h"

#include <algorithm>

namespace velloria::convert {
namespace {

/// Quicker for a short part than a search for texts of any length.
qsizetype indexOf(QStringView text, QStringView part, qsizetype from) {
    qsizetype at = text.indexOf(part.front(), from);
    while (at >= 0 && !text.sliced(at).startsWith(part))
        at = text.indexOf(part.front(), at + 1);
    return at;
}

} // namespace

void appendRow(QString& result, int dashes) {
    result.resize(result.size() + std::max(dashes, 0), u'-');
    result += kLineBreak;
}

void appendParagraphEnd(QString& result, const HtmlSettings& settings) {
    result += kLineBreak;
    if (settings.paragraphBreak != 0)
        result += kLineBreak;
}

void removeEvery(QString& text, QStringView part) {
    qsizetype found = indexOf(text, part, 0);
    if (found < 0)
        return;
    QChar* const data = text.data();
    QChar* out = data + found;
    while (found >= 0) {
        const qsizetype from = found + part.size();
        found = indexOf(text, part, from);
        const qsizetype end = found < 0 ? text.size() : found;
        out = std::copy(data + from, data + end, out);
    }
    text.truncate(out - data);
}

} // namespace velloria::convert
