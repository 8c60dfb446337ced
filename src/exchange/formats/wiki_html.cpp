#include "exchange/formats/wiki_html.h"

#include "exchange/formats/html_text.h"

#include <QRegularExpression>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

constexpr int kDeepest = 50;

/// `words` is HTML.
QString link(const QString& address, const QString& words) {
    return u"<a href=\"%1\">%2</a>"_s.arg(htmlAttribute(address), words);
}

QString inlineHtml(const QString& text, int depth = 0) {
    // What is longer than any line is no mark: each may be looked for that far.
    static const QRegularExpression mark(
        uR"re(\{\{.{1,2000}?\}\}|\[\[(?:([^|]{0,2000})\|)?(.{1,2000}?)\]\]|)re"
        uR"re((?:https?|ftp|file|mailto):[A-Za-z0-9;/?:@&=+$,\-_.!~*'()#%]+|)re"
        uR"re('''(.{1,2000}?)'''|''(.{1,2000}?)''|==(.{1,2000}?)==|``(.{1,2000}?)``)re"_s);
    static const QStringList tags{u"strong"_s, u"em"_s, u"del"_s, u"code"_s};
    if (depth == kDeepest)
        return htmlText(text);
    QString html;
    qsizetype copied = 0;
    for (auto found = mark.globalMatch(text); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        html += htmlText(QStringView(text).sliced(copied, match.capturedStart() - copied));
        copied = match.capturedEnd();
        const QString all = match.captured();
        if (all.startsWith(u"{{"_s))
            html += htmlText(all);
        else if (match.hasCaptured(2))
            html += link(match.captured(2),
                         match.hasCaptured(1) ? inlineHtml(match.captured(1), depth + 1) : htmlText(match.captured(2)));
        else if (const int modifier = int(match.lastCapturedIndex()); modifier >= 3)
            html += u"<%1>%2</%1>"_s.arg(tags[modifier - 3], inlineHtml(match.captured(modifier), depth + 1));
        else
            html += link(all, htmlText(all));
    }
    return html + htmlText(QStringView(text).sliced(copied));
}

/// Block by block, each a run of lines that begin alike.
class Blocks {
public:
    Blocks(QStringList lines, int depth)
        : m_lines(std::move(lines))
        , m_depth(depth) {}

    QString html() {
        while (m_at < m_lines.size())
            readBlock();
        return m_html;
    }

private:
    bool has(QStringView mark) const { return m_at < m_lines.size() && m_lines[m_at].startsWith(mark); }

    bool beginsBlock() const {
        for (const QStringView mark : {u"!", u"----", u"*", u"#", u":", u"||", u"\"\"", u" ", u"\t", u"<<<", u"//"}) {
            if (has(mark))
                return true;
        }
        return m_lines[m_at].trimmed().isEmpty();
    }

    void readBlock() {
        if (has(u"//") || m_lines[m_at].trimmed().isEmpty())
            ++m_at;
        else if (has(u"!"))
            heading();
        else if (m_lines[m_at] == u"----"_s) {
            m_html += u"<hr />\n"_s;
            ++m_at;
        } else if (has(u"*") || has(u"#"))
            list();
        else if (has(u":"))
            definitions();
        else if (has(u"||"))
            table();
        else if (has(u"\"\"") && m_depth < kDeepest)
            quote();
        else if (has(u" ") || has(u"\t"))
            preformatted();
        else if (has(u"<<<"))
            verbatim();
        else
            paragraph();
    }

    void heading() {
        const QString line = m_lines[m_at++];
        qsizetype marks = 0;
        while (marks < line.size() && line[marks] == u'!')
            ++marks;
        m_html +=
            u"<h%1>%2</h%1>\n"_s.arg(std::min<qsizetype>(marks + 2, 6)).arg(inlineHtml(line.sliced(marks).trimmed()));
    }

    void list() {
        QStringList open;
        for (; has(u"*") || has(u"#"); ++m_at) {
            const QString& line = m_lines[m_at];
            qsizetype level = 0;
            while (level < line.size() && level < kDeepest && (line[level] == u'*' || line[level] == u'#'))
                ++level;
            const QString kind = line.startsWith(u'*') ? u"ul"_s : u"ol"_s;
            const bool isDeeper = level > open.size();
            while (open.size() > level)
                m_html += u"</li></"_s + open.takeLast() + u">\n"_s;
            if (!isDeeper)
                m_html += u"</li>"_s;
            if (!isDeeper && kind != open.constLast())
                m_html += u"</"_s + open.takeLast() + u">\n"_s;
            else if (!isDeeper)
                m_html += u"<li>"_s;
            for (; open.size() < level; open += kind)
                m_html += u'<' + kind + u"><li>"_s;
            m_html += inlineHtml(line.sliced(level).trimmed());
        }
        while (!open.isEmpty())
            m_html += u"</li></"_s + open.takeLast() + u">\n"_s;
    }

    void definitions() {
        static const QRegularExpression form(uR"re(^:((?:\[\[.{1,2000}?\]\]|[^:])*+):(.*)$)re"_s);
        m_html += u"<dl>\n"_s;
        for (; has(u":"); ++m_at) {
            const QRegularExpressionMatch match = form.match(m_lines[m_at]);
            const QString term = match.hasMatch() ? match.captured(1) : m_lines[m_at].sliced(1);
            m_html += u"<dt>"_s + inlineHtml(term) + u"</dt>"_s;
            if (match.hasMatch())
                m_html += u"<dd>"_s + inlineHtml(match.captured(2)) + u"</dd>"_s;
            m_html += u'\n';
        }
        m_html += u"</dl>\n"_s;
    }

    void table() {
        m_html += u"<table>\n"_s;
        for (; has(u"||"); ++m_at) {
            QStringList cells = m_lines[m_at].sliced(2).split(u"||"_s);
            if (cells.size() > 1 && cells.constLast().trimmed().isEmpty())
                cells.removeLast();
            m_html += u"<tr>"_s;
            for (const QString& cell : std::as_const(cells))
                m_html += cellHtml(cell);
            m_html += u"</tr>\n"_s;
        }
        m_html += u"</table>\n"_s;
    }

    /// "!" makes a head, each "^" a row more and each ">" a column more.
    static QString cellHtml(QString cell) {
        const QString tag = cell.startsWith(u'!') ? u"th"_s : u"td"_s;
        qsizetype marks = tag == u"th"_s ? 1 : 0;
        const qsizetype spans = marks;
        while (marks < cell.size() && (cell[marks] == u'^' || cell[marks] == u'>'))
            ++marks;
        const QString span = cell.sliced(spans, marks - spans);
        QString attributes;
        if (const qsizetype rows = span.count(u'^'))
            attributes += u" rowspan=\"%1\""_s.arg(rows + 1);
        if (const qsizetype columns = span.count(u'>'))
            attributes += u" colspan=\"%1\""_s.arg(columns + 1);
        return u"<%1%2>"_s.arg(tag, attributes) + inlineHtml(cell.sliced(marks)) + u"</"_s + tag + u'>';
    }

    void quote() {
        QStringList quoted;
        for (; has(u"\"\""); ++m_at) {
            const QString line = m_lines[m_at].sliced(2);
            quoted += line.startsWith(u' ') || line.startsWith(u'\t') ? line.sliced(1) : line;
        }
        m_html += u"<blockquote>\n"_s + Blocks(quoted, m_depth + 1).html() + u"</blockquote>\n"_s;
    }

    void preformatted() {
        QStringList text;
        for (; has(u" ") || has(u"\t"); ++m_at)
            text += m_lines[m_at].sliced(1);
        m_html += u"<pre>"_s + htmlText(text.join(u'\n')) + u"</pre>\n"_s;
    }

    void verbatim() {
        QStringList text;
        for (++m_at; m_at < m_lines.size() && !has(u">>>"); ++m_at)
            text += m_lines[m_at];
        ++m_at;
        m_html += u"<pre>"_s + htmlText(text.join(u'\n')) + u"</pre>\n"_s;
    }

    void paragraph() {
        QStringList text{m_lines[m_at++].trimmed()};
        for (; m_at < m_lines.size() && !beginsBlock(); ++m_at)
            text += m_lines[m_at].trimmed();
        m_html += u"<p>"_s + inlineHtml(text.join(u'\n')) + u"</p>\n"_s;
    }

    QStringList m_lines;
    int m_depth;
    qsizetype m_at = 0;
    QString m_html;
};

} // namespace

QString htmlOfWiki(const QString& wiki) {
    return Blocks(wiki.split(u'\n'), 0).html();
}

} // namespace velloria::exchange
