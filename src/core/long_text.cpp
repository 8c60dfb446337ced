#include "core/long_text.h"

namespace velloria::core {

QString replaced(const QString& text, const QString& before, const QString& after) {
    qsizetype at = text.indexOf(before);
    if (at < 0)
        return text;
    QString result;
    result.reserve(text.size() + text.size() / 4);
    qsizetype begin = 0;
    for (; at >= 0; at = text.indexOf(before, begin)) {
        result += QStringView(text).sliced(begin, at - begin);
        result += after;
        begin = at + before.size();
    }
    return result += QStringView(text).sliced(begin);
}

QString withCrLf(const QString& text) {
    QString result;
    result.reserve(text.size() + text.size() / 4);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar unit = text[i];
        if (unit == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
            continue;
        if (unit == u'\r' || unit == u'\n')
            result += u"\r\n";
        else
            result += unit;
    }
    return result;
}

} // namespace velloria::core
