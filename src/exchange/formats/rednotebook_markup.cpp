#include "exchange/formats/rednotebook_markup.h"

#include "exchange/formats/html_text.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

constexpr qsizetype kDeepestQuote = 20;

bool isBlank(QStringView line) {
    return line.trimmed().isEmpty();
}

QRegularExpressionMatch headingMatch(QStringView line) {
    static const QRegularExpression form(u"^\\s*(={1,5}|\\+{1,5})([^=+](?:.*[^=+])?)\\1(?:\\[[\\w-]*\\])?\\s*$"_s);
    return form.match(line);
}

bool isRule(QStringView line) {
    static const QRegularExpression form(u"^\\s*[-_=]{20,}\\s*$"_s);
    return form.match(line).hasMatch();
}

/// The blocks of one text, line by line.
class Blocks {
public:
    Blocks(const QString& text, const RedNotebookLinks& links, Losses& losses)
        : m_lines(text.split(u'\n'))
        , m_links(links)
        , m_losses(losses) {}

    QString html() {
        while (m_at < m_lines.size())
            take(m_lines[m_at]);
        endText();
        closeLists();
        while (m_html.endsWith(u'\n'))
            m_html.chop(1);
        return m_html;
    }

private:
    struct List {
        qsizetype indent;
        QChar mark;
    };

    void take(const QString& line) {
        if (isBlank(line)) {
            takeBlank();
            return;
        }
        const qsizetype blanks = std::exchange(m_blanks, 0);
        if (!takeFenced(line) && !takeComment(line) && !takeHeading(line) && !takeRule(line) && !takeItem(line) &&
            !takeQuote() && !takeTable())
            takeWords(line, blanks);
    }

    /// Two blank lines end all lists, one parts the words of an item.
    void takeBlank() {
        ++m_at;
        ++m_blanks;
        if (m_lists.isEmpty())
            endText();
        else if (m_blanks == 2)
            closeLists();
    }

    void takeWords(const QString& line, qsizetype blanks) {
        ++m_at;
        const QString words = redNotebookInline(line, m_links);
        if (!m_lists.isEmpty())
            m_html += (blanks > 0 ? u"\n<br><br>\n"_s : u"\n"_s) + words;
        else
            m_text += words;
    }

    void endText() {
        if (!m_text.isEmpty())
            m_html += u"<p>"_s + m_text.join(u'\n') + u"</p>\n"_s;
        m_text.clear();
    }

    /// A block of its own: no list goes on behind it.
    void addBlock(const QString& html) {
        endText();
        closeLists();
        m_html += html + u'\n';
    }

    bool takeComment(const QString& line) {
        if (!line.startsWith(u'%'))
            return false;
        m_losses.countNamed(u"コメントの行"_s, line);
        ++m_at;
        return true;
    }

    bool takeHeading(const QString& line) {
        const QRegularExpressionMatch match = headingMatch(line);
        if (!match.hasMatch())
            return false;
        addBlock(u"<h%1>%2</h%1>"_s.arg(match.capturedLength(1)).arg(htmlText(match.capturedView(2).trimmed())));
        ++m_at;
        return true;
    }

    bool takeRule(const QString& line) {
        if (!isRule(line))
            return false;
        addBlock(u"<hr>"_s);
        ++m_at;
        return true;
    }

    /// Three marks: what follows them on the line, or up to a line of the same.
    bool takeFenced(const QString& line) {
        for (const QStringView fence : {u"```", u"\"\"\"", u"'''"}) {
            if (line.startsWith(fence) && line.sliced(3).startsWith(u' ')) {
                ++m_at;
                addFenced(fence, line.sliced(4));
                return true;
            }
            if (line.trimmed() != fence)
                continue;
            QStringList lines;
            for (++m_at; m_at < m_lines.size() && m_lines[m_at].trimmed() != fence; ++m_at)
                lines += m_lines[m_at];
            ++m_at;
            addFenced(fence, lines.join(u'\n'));
            return true;
        }
        return false;
    }

    /// It may stand within an item.
    void addFenced(QStringView fence, const QString& text) {
        endText();
        if (fence == u"```")
            m_html += u"<pre>"_s + htmlText(text) + u"</pre>\n"_s;
        else
            m_html += (fence == u"'''" ? text : htmlText(text)) + u'\n';
    }

    bool takeItem(const QString& line) {
        static const QRegularExpression form(u"^( *)([-+:]) (\\S.*)$"_s);
        static const QRegularExpression end(u"^( *)([-+:])\\s*$"_s);
        if (const QRegularExpressionMatch match = form.match(line); match.hasMatch()) {
            endText();
            beginItem({match.capturedLength(1), match.captured(2).front()});
            const QString words = redNotebookInline(match.captured(3), m_links);
            m_html += m_lists.constLast().mark == u':' ? words + u"</dt><dd>"_s : words;
        } else if (const QRegularExpressionMatch closed = end.match(line); closed.hasMatch() && !m_lists.isEmpty()) {
            closeDown(closed.capturedLength(1));
        } else {
            return false;
        }
        ++m_at;
        return true;
    }

    void beginItem(const List& list) {
        closeDown(list.indent + 1);
        if (!m_lists.isEmpty() && m_lists.constLast().indent == list.indent && m_lists.constLast().mark != list.mark)
            closeLast();
        if (!m_lists.isEmpty() && m_lists.constLast().indent == list.indent) {
            m_html += itemEnd(list.mark) + itemBegin(list.mark);
            return;
        }
        if (!m_html.isEmpty() && !m_html.endsWith(u'\n'))
            m_html += u'\n';
        m_html += u"<%1>\n"_s.arg(tagOf(list.mark)) + itemBegin(list.mark);
        m_lists += list;
    }

    static QString tagOf(QChar mark) { return mark == u'-' ? u"ul"_s : mark == u'+' ? u"ol"_s : u"dl"_s; }
    static QString itemBegin(QChar mark) { return mark == u':' ? u"<dt>"_s : u"<li>"_s; }
    static QString itemEnd(QChar mark) { return mark == u':' ? u"</dd>\n"_s : u"</li>\n"_s; }

    void closeLast() {
        const QChar mark = m_lists.takeLast().mark;
        m_html += itemEnd(mark) + u"</%1>\n"_s.arg(tagOf(mark));
    }

    /// Ends the lists that are indented so far or farther.
    void closeDown(qsizetype indent) {
        while (!m_lists.isEmpty() && m_lists.constLast().indent >= indent)
            closeLast();
    }

    void closeLists() { closeDown(0); }

    bool takeQuote() {
        if (!m_lines[m_at].startsWith(u'\t'))
            return false;
        endText();
        closeLists();
        qsizetype depth = 0;
        for (; m_at < m_lines.size() && m_lines[m_at].startsWith(u'\t') && !isBlank(m_lines[m_at]); ++m_at) {
            const QString& line = m_lines[m_at];
            qsizetype tabs = 0;
            while (tabs < line.size() && tabs < kDeepestQuote && line[tabs] == u'\t')
                ++tabs;
            for (; depth < tabs; ++depth)
                m_html += u"<blockquote>\n"_s;
            for (; depth > tabs; --depth)
                m_html += u"</blockquote>\n"_s;
            m_html += redNotebookInline(QStringView(line).sliced(tabs), m_links) + u'\n';
        }
        for (; depth > 0; --depth)
            m_html += u"</blockquote>\n"_s;
        return true;
    }

    bool takeTable() {
        static const QRegularExpression form(u"^ *\\|\\|? "_s);
        if (!form.match(m_lines[m_at]).hasMatch())
            return false;
        const bool isFramed = m_lines[m_at].trimmed().endsWith(u'|');
        QString table = isFramed ? u"<table border=\"1\">\n"_s : u"<table>\n"_s;
        for (; m_at < m_lines.size() && form.match(m_lines[m_at]).hasMatch(); ++m_at)
            table += tableRow(m_lines[m_at].trimmed());
        addBlock(table + u"</table>"_s);
        return true;
    }

    /// Cells are parted by bars between blanks; as many bars as columns that a cell goes over.
    QString tableRow(const QString& row) const {
        const QString cell = row.startsWith(u"||"_s) ? u"th"_s : u"td"_s;
        QString html = u"<tr>"_s;
        for (qsizetype begin = row.indexOf(u' ') + 1; begin < row.size();) {
            const auto [end, columns] = barsFrom(row, begin);
            const QStringView text = QStringView(row).sliced(begin, end - begin);
            html += u"<%1%2>%3</%1>"_s.arg(cell, attributes(text, columns), redNotebookInline(text.trimmed(), m_links));
            begin = end + columns + 2;
        }
        return html + u"</tr>\n"_s;
    }

    /// Where the next bars behind a blank begin, and how many they are; the end of the row when there are none.
    static std::pair<qsizetype, qsizetype> barsFrom(const QString& row, qsizetype begin) {
        for (qsizetype at = row.indexOf(u" |"_s, begin); at >= 0; at = row.indexOf(u" |"_s, at + 1)) {
            qsizetype end = at + 1;
            while (end < row.size() && row[end] == u'|')
                ++end;
            if (end == row.size() || row[end] == u' ')
                return {at, end - at - 1};
        }
        return {row.size(), 0};
    }

    /// A blank more in front moves a text to the right, one on both sides to the middle.
    static QString attributes(QStringView text, qsizetype columns) {
        QString attributes = text.startsWith(u' ') && text.endsWith(u' ') ? u" align=\"center\""_s
                             : text.startsWith(u' ')                      ? u" align=\"right\""_s
                                                                          : QString();
        return columns > 1 ? attributes + u" colspan=\"%1\""_s.arg(columns) : attributes;
    }

    QStringList m_lines;
    const RedNotebookLinks& m_links;
    Losses& m_losses;
    qsizetype m_at = 0;
    qsizetype m_blanks = 0;
    QString m_html;
    QStringList m_text; ///< lines of the paragraph under way
    QList<List> m_lists;
};

} // namespace

std::optional<QString> redNotebookHeading(QStringView line) {
    const QRegularExpressionMatch match = headingMatch(line);
    if (!match.hasMatch())
        return std::nullopt;
    return match.capturedView(2).trimmed().toString();
}

bool isRedNotebookRule(QStringView line) {
    const QStringView rule = line.trimmed();
    return isRule(rule) && rule.count(u'=') == rule.size();
}

QString redNotebookHtml(const QString& text, const RedNotebookLinks& links, Losses& losses) {
    return Blocks(text, links, losses).html();
}

} // namespace velloria::exchange
