#include "exchange/formats/titled_markdown.h"

#include "exchange/formats/html_text.h"
#include "exchange/formats/markdown_html.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::exchange {

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
    const QString text = QString(markdown).remove(QRegularExpression(u"!\\[[^\\]\\n]*\\]\\([^)\\n]*\\)"_s)).trimmed();
    const QString line = plainMarkdown(text.section(u'\n', 0, 0).left(kLongestLine));
    return line.size() > kLongest ? line.first(kLongest) + u"…"_s : line;
}

QString plainMarkdown(const QString& line) {
    return plainOfHtml(htmlOfMarkdown(line));
}

} // namespace velloria::exchange
