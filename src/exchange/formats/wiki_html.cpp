#include "exchange/formats/wiki_html.h"

#include "exchange/formats/html_text.h"

#include <QMap>
#include <QStringList>

#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

constexpr int kDeepest = 50;

/// What stands between two of a mark is within the element; the longer mark first.
constexpr std::pair<QStringView, QStringView> kMarks[] = {
    {u"'''", u"strong"}, {u"''", u"em"}, {u"==", u"del"}, {u"``", u"code"}};

bool isOfAddress(QChar character) {
    return character.unicode() < 0x80 &&
           (character.isLetterOrNumber() || u";/?:@&=+$,-_.!~*'()#%"_s.contains(character));
}

/// One line, or what stands within a mark of it.
class Inline {
public:
    Inline(QStringView line, int depth)
        : m_line(line)
        , m_depth(depth) {}

    QString html() {
        QString html;
        qsizetype plain = 0;
        while (m_at < m_line.size()) {
            const qsizetype at = m_at;
            const QString piece = u"{['=`hfm"_s.contains(m_line[at]) ? takePiece() : QString();
            if (piece.isNull()) {
                ++m_at;
                continue;
            }
            html += htmlText(m_line.sliced(plain, at - plain)) + piece;
            plain = m_at;
        }
        return html + htmlText(m_line.sliced(plain));
    }

private:
    /// Goes behind what begins at the present place and gives its HTML; null when nothing does.
    QString takePiece() {
        if (const std::optional<QStringView> call = takeBetween(u"{{", u"}}"))
            return u"{{"_s + htmlText(*call) + u"}}"_s;
        if (const std::optional<QStringView> link = takeBetween(u"[[", u"]]"))
            return linkTo(*link);
        for (const auto& [mark, tag] : kMarks) {
            if (const std::optional<QStringView> text = takeBetween(mark, mark))
                return u"<%1>%2</%1>"_s.arg(tag, within(*text));
        }
        return takeAddress();
    }

    QString within(QStringView text) const {
        return m_depth < kDeepest ? Inline(text, m_depth + 1).html() : htmlText(text);
    }

    /// What stands between two marks, one character at least; nothing, and no step, where the first is not.
    std::optional<QStringView> takeBetween(QStringView begin, QStringView end) {
        if (!m_line.sliced(m_at).startsWith(begin))
            return std::nullopt;
        const qsizetype from = m_at + begin.size();
        qsizetype& closing = m_closings[end];
        if (closing >= 0 && closing <= from)
            closing = m_line.indexOf(end, from + 1);
        if (closing < 0)
            return std::nullopt;
        m_at = closing + end.size();
        return m_line.sliced(from, closing - from);
    }

    /// `words` is HTML.
    static QString anchor(QStringView address, const QString& words) {
        return u"<a href=\"%1\">%2</a>"_s.arg(htmlAttribute(address), words);
    }

    /// "words|address" or an address alone.
    QString linkTo(QStringView link) const {
        const qsizetype bar = link.indexOf(u'|');
        const QStringView address = bar + 1 < link.size() ? link.sliced(bar + 1) : link;
        return anchor(address, bar > 0 && address != link ? within(link.first(bar)) : htmlText(address));
    }

    QString takeAddress() {
        for (const QStringView scheme : {u"http:", u"https:", u"ftp:", u"file:", u"mailto:"}) {
            qsizetype end = m_at + scheme.size();
            if (!m_line.sliced(m_at).startsWith(scheme) || end == m_line.size() || !isOfAddress(m_line[end]))
                continue;
            while (end < m_line.size() && isOfAddress(m_line[end]))
                ++end;
            const QStringView address = m_line.sliced(m_at, end - m_at);
            m_at = end;
            return anchor(address, htmlText(address));
        }
        return {};
    }

    QStringView m_line;
    int m_depth;
    qsizetype m_at = 0;
    /// Where each closing mark comes next, for all that open in front of it; -1 when it comes no more.
    QMap<QStringView, qsizetype> m_closings;
};

QString inlineHtml(const QString& text) {
    QStringList html;
    for (const QStringView line : QStringView(text).split(u'\n'))
        html += Inline(line, 0).html();
    return html.join(u'\n');
}

/// Where the term of a definition ends: at a colon, but that of a link; -1 without one.
qsizetype termEnd(QStringView line) {
    qsizetype closing = 0;
    for (qsizetype at = 1; at < line.size(); ++at) {
        if (line[at] == u':')
            return at;
        if (!line.sliced(at).startsWith(u"[["))
            continue;
        if (closing >= 0 && closing < at + 3)
            closing = line.indexOf(u"]]", at + 3);
        if (closing >= 0)
            at = closing + 1;
    }
    return -1;
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
        m_html += u"<dl>\n"_s;
        for (; has(u":"); ++m_at) {
            const QString& line = m_lines[m_at];
            const qsizetype end = termEnd(line);
            m_html += u"<dt>"_s + inlineHtml(end < 0 ? line.sliced(1) : line.sliced(1, end - 1)) + u"</dt>"_s;
            if (end >= 0)
                m_html += u"<dd>"_s + inlineHtml(line.sliced(end + 1)) + u"</dd>"_s;
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
