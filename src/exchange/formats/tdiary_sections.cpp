#include "exchange/formats/tdiary_sections.h"

#include "exchange/formats/html_text.h"
#include "exchange/formats/markdown_html.h"
#include "exchange/formats/titled_markdown.h"
#include "exchange/formats/wiki_html.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

/// Takes "[a][b,c]" off the front of a title.
QStringList takeCategories(QString& title) {
    static const QRegularExpression front(u"^((?:\\\\?\\[[^\\[\\]]+\\\\?\\])+)\\s*"_s);
    const QRegularExpressionMatch match = front.match(title);
    if (!match.hasMatch())
        return {};
    title = title.sliced(match.capturedEnd());
    QStringList categories;
    for (const QString& words : match.captured(1).split(u']', Qt::SkipEmptyParts)) {
        for (QString word : words.split(u',', Qt::SkipEmptyParts)) {
            word = word.remove(u'[').remove(u'\\').trimmed();
            if (!word.isEmpty())
                categories += word;
        }
    }
    return categories;
}

bool isBlank(const QString& text) {
    return text.trimmed().isEmpty();
}

/// Each line is a paragraph, or all of it is HTML when a line begins as HTML does.
QString paragraphs(const QStringList& lines) {
    QString html;
    for (const QString& line : lines) {
        if (line.startsWith(u'<'))
            return lines.join(u'\n');
        const bool isIndented = line.startsWith(u' ') || line.startsWith(u'\u3000');
        html += u"<p>"_s + (isIndented ? line.sliced(1) : line) + u"</p>\n"_s;
    }
    return html;
}

std::vector<TDiarySection> plainSections(const QString& body) {
    static const QRegularExpression gap(u"\\n\\n+"_s);
    std::vector<TDiarySection> sections;
    for (const QString& fragment : body.split(gap, Qt::SkipEmptyParts)) {
        QStringList lines = fragment.split(u'\n', Qt::SkipEmptyParts);
        if (lines.isEmpty())
            continue;
        TDiarySection section;
        if (lines.size() > 1 && lines[0].startsWith(u"<<"_s))
            section.title = lines.takeFirst().sliced(1);
        else if (lines.size() > 1 && !lines[0].startsWith(u'<') && !lines[0].startsWith(u' ') &&
                 !lines[0].startsWith(u'\u3000'))
            section.title = lines.takeFirst();
        section.categories = takeCategories(section.title);
        section.html = paragraphs(lines);
        sections.push_back(section);
    }
    return sections;
}

/// Fragments that begin at each line with a single `mark` in front; what stands before the first is one as well.
QStringList fragmentsOf(const QString& body, QChar mark, const QString& fence) {
    QStringList fragments;
    QStringList lines;
    bool isFenced = false;
    for (const QString& line : body.split(u'\n')) {
        if (!fence.isEmpty() && line.startsWith(fence))
            isFenced = !isFenced;
        const bool isHeading = line.size() > 1 && line[0] == mark && line[1] != mark && !isFenced;
        if (isHeading && !lines.isEmpty()) {
            fragments += lines.join(u'\n');
            lines.clear();
        }
        lines += line;
    }
    fragments += lines.join(u'\n');
    fragments.removeIf(isBlank);
    return fragments;
}

std::vector<TDiarySection> wikiSections(const QString& body) {
    std::vector<TDiarySection> sections;
    for (const QString& fragment : fragmentsOf(body, u'!', {})) {
        TDiarySection section;
        const bool isTitled = fragment.startsWith(u'!') && !fragment.startsWith(u"!!"_s);
        if (isTitled) {
            section.title = fragment.section(u'\n', 0, 0).sliced(1).trimmed();
            section.categories = takeCategories(section.title);
            section.title = plainOfHtml(htmlOfWiki(u"!"_s + section.title));
        }
        section.html = htmlOfWiki(isTitled ? fragment.section(u'\n', 1) : fragment);
        sections.push_back(section);
    }
    return sections;
}

/// Headings within a section begin below that of the section, which is the third.
QString lowered(QString html) {
    static const QRegularExpression heading(u"(</?h)([1-6])(?=[ >])"_s);
    QString changed;
    qsizetype copied = 0;
    for (auto found = heading.globalMatch(html); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        changed += QStringView(html).sliced(copied, match.capturedStart(2) - copied);
        changed += QString::number(std::min(match.captured(2).toInt() + 2, 6));
        copied = match.capturedEnd(2);
    }
    changed += QStringView(html).sliced(copied);
    return changed;
}

std::vector<TDiarySection> markdownSections(const QString& body) {
    std::vector<TDiarySection> sections;
    for (const QString& fragment : fragmentsOf(body, u'#', u"```"_s)) {
        TDiarySection section;
        // The first line is the title, with its mark or without.
        section.title = fragment.section(u'\n', 0, 0);
        if (section.title.startsWith(u'#'))
            section.title.remove(0, 1);
        section.title = section.title.trimmed();
        section.categories = takeCategories(section.title);
        section.title = plainMarkdown(section.title);
        section.html = lowered(htmlOfMarkdown(fragment.section(u'\n', 1)));
        sections.push_back(section);
    }
    return sections;
}

} // namespace

bool isKnownStyle(const QString& style) {
    return style == u"tDiary"_s || style == u"Wiki"_s || style == u"GFM"_s;
}

std::vector<TDiarySection> sectionsOf(const QString& style, const QString& body) {
    if (style == u"tDiary"_s)
        return plainSections(body);
    if (style == u"Wiki"_s)
        return wikiSections(body);
    if (style == u"GFM"_s)
        return markdownSections(body);
    if (isBlank(body))
        return {};
    return {TDiarySection{.title = {}, .html = htmlParagraphs(body.trimmed())}};
}

} // namespace velloria::exchange
