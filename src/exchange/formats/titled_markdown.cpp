#include "exchange/formats/titled_markdown.h"

#include "exchange/formats/html_text.h"
#include "exchange/formats/markdown_html.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

/// A line without "![name](address)".
QString withoutPictures(QStringView line) {
    QString words;
    qsizetype copied = 0;
    for (qsizetype at = line.indexOf(u"!["); at >= 0; at = line.indexOf(u"![", at)) {
        const qsizetype bracket = line.indexOf(u']', at);
        const bool hasAddress = line.sliced(bracket + 1).startsWith(u'(');
        const qsizetype end = hasAddress ? line.indexOf(u')', bracket) : bracket;
        if (bracket < 0 || end < 0)
            break; // no other one ends either
        if (hasAddress) {
            words += line.sliced(copied, at - copied);
            copied = end + 1;
        }
        at = end + 1;
    }
    return words + line.sliced(copied).toString();
}

} // namespace

TitledMarkdown titledMarkdown(const QString& markdown) {
    qsizetype begin = 0;
    while (begin < markdown.size() && markdown[begin].isSpace())
        ++begin;
    qsizetype end = markdown.indexOf(u'\n', begin);
    if (end < 0)
        end = markdown.size();
    const QStringView line = QStringView(markdown).sliced(begin, end - begin).trimmed();
    const qsizetype marks = std::ranges::find_if(line, [](QChar mark) { return mark != u'#'; }) - line.begin();
    if (marks == 0 || marks > 6 || (marks < line.size() && !line[marks].isSpace()))
        return {u""_s, markdown};
    return {plainMarkdown(line.sliced(marks).trimmed().toString()),
            markdown.sliced(std::min(end + 1, markdown.size()))};
}

QString firstWords(const QString& markdown) {
    constexpr qsizetype kLongest = 40;
    constexpr qsizetype kLongestLine = 1000;
    for (const QStringView line : QStringView(markdown).split(u'\n')) {
        const QString words = withoutPictures(line).trimmed();
        if (words.isEmpty())
            continue;
        const QString plain = plainMarkdown(words.left(kLongestLine));
        return plain.size() > kLongest ? plain.first(kLongest) + u"…"_s : plain;
    }
    return u""_s;
}

QString plainMarkdown(const QString& line) {
    return plainOfHtml(htmlOfMarkdown(line));
}

} // namespace velloria::exchange
