// What the text scan and the HTML scan of the converter have in common.
//
// A scan copies text and cuts out tags: "<" up to the first ">", whatever stands between, also in quotes. A "<" without
// a ">" behind it is text, with all that follows. A tag is known by the upper-cased (ASCII) start of its text alone, so
// "<BR" is also "<br />" and "</A" is also "</ADDRESS>". Time is linear in text and result, whatever the text is.
#pragma once

#include "convert/html_settings.h"

#include <QString>

namespace velloria::convert {

/// A line break of every result.
inline constexpr QStringView kLineBreak = u"\r\n";

constexpr char16_t asciiUpper(char16_t c) {
    return c >= u'a' && c <= u'z' ? char16_t(c - u'a' + u'A') : c;
}

/// Whether the upper-cased tag starts with `prefix`.
inline bool tagStartsWith(QStringView tag, QStringView prefix) {
    if (tag.size() < prefix.size())
        return false;
    for (qsizetype i = 0; i < prefix.size(); ++i) {
        if (asciiUpper(tag[i].unicode()) != prefix[i])
            return false;
    }
    return true;
}

/// Appends the text of `html` to `result` and calls `tag` with each tag, in their order.
template <typename Tag>
void scanTags(QStringView html, QString& result, Tag tag) {
    result.reserve(html.size());
    while (true) {
        const qsizetype open = html.indexOf(u'<');
        const qsizetype close = open < 0 ? -1 : html.indexOf(u'>', open);
        if (close < 0)
            break;
        result += html.first(open);
        tag(html.sliced(open, close + 1 - open));
        html = html.sliced(close + 1);
    }
    result += html;
}

/// A rule: `dashes` times "-" (none below 0) and a line break.
void appendRow(QString& result, int dashes);

/// What "</P" becomes as text: one line break, or two once the text's own are gone.
void appendParagraphEnd(QString& result, const HtmlSettings& settings);

/// Removes every `part` in one pass from the left: what a removal brings together stays.
void removeEvery(QString& text, QStringView part);

} // namespace velloria::convert
