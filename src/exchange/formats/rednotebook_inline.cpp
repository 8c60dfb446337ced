#include "exchange/formats/rednotebook_inline.h"

#include "exchange/formats/html_text.h"

#include <QMap>
#include <QRegularExpression>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

constexpr int kDeepest = 8;
constexpr qsizetype kLongestPiece = 2000; // of an address, or between brackets

struct Beautifier {
    QStringView mark;
    QStringView tag;
    bool isNested; ///< whether what is within has marks of its own
};

constexpr std::array kBeautifiers{
    Beautifier{u"``", u"code", false}, Beautifier{u"**", u"b", true}, Beautifier{u"//", u"i", true},
    Beautifier{u"__", u"u", true},     Beautifier{u"--", u"s", true}, Beautifier{u"\"\"", u"", false},
    Beautifier{u"''", u"", false},
};

/// One line, or what stands within a mark of it.
class Inline {
public:
    Inline(QStringView line, const RedNotebookLinks& links, int depth)
        : m_line(line)
        , m_links(links)
        , m_depth(depth) {}

    QString html() {
        while (m_at < m_line.size()) {
            if (!takePiece()) {
                m_html += htmlText(m_line.sliced(m_at, 1));
                ++m_at;
            }
        }
        return m_html;
    }

private:
    /// What begins at the present place, when something does.
    bool takePiece() {
        switch (m_line[m_at].unicode()) {
        case u'[':
            return takeBracket();
        case u'{':
            return takeColour();
        case u'h':
        case u'f':
        case u'w':
            return takeAddress();
        case u'\\':
            return takeBreak();
        default:
            return takeBeautified();
        }
    }

    QString within(QStringView text) const {
        return m_depth < kDeepest ? Inline(text, m_links, m_depth + 1).html() : htmlText(text);
    }

    /// What a pattern may look at: it takes as long as this is, wherever it fails.
    QStringView nearby() const {
        const QStringView rest = m_line.sliced(m_at, std::min(m_line.size() - m_at, kLongestPiece));
        return rest.back().isHighSurrogate() ? rest.chopped(1) : rest;
    }

    /// A text from UTF-8 has no half characters: to look for them at every mark takes longer than to look for the form.
    static QRegularExpressionMatch matched(const QRegularExpression& form, QStringView text) {
        return form.match(text, 0, QRegularExpression::NormalMatch,
                          QRegularExpression::DontCheckSubjectStringMatchOption);
    }

    /// Where the closing mark begins; -1 when there is none. It has no blank in front, and takes the last of a row.
    qsizetype closingOf(QStringView mark) {
        if (m_unclosed.contains(mark))
            return -1;
        const qsizetype begin = m_at + mark.size();
        if (begin >= m_line.size() || m_line[begin].isSpace())
            return -1;
        for (qsizetype end = m_line.indexOf(mark, begin + 1); end >= 0; end = m_line.indexOf(mark, end + 1)) {
            if (m_line[end - 1].isSpace())
                continue;
            while (end + mark.size() < m_line.size() && m_line[end + mark.size()] == mark.front())
                ++end;
            return end;
        }
        m_unclosed.append(mark);
        return -1;
    }

    bool takeBeautified() {
        for (const auto& [mark, tag, isNested] : kBeautifiers) {
            if (!m_line.sliced(m_at).startsWith(mark))
                continue;
            const qsizetype end = closingOf(mark);
            if (end < 0)
                return false;
            const QStringView text = m_line.sliced(m_at + 2, end - m_at - 2);
            if (isNested)
                m_html += u"<%1>%2</%1>"_s.arg(tag, within(text));
            else if (!tag.isEmpty())
                m_html += u"<%1>%2</%1>"_s.arg(tag, htmlText(text));
            else
                m_html += mark == u"''" ? text.toString() : htmlText(text);
            m_at = end + 2;
            return true;
        }
        return false;
    }

    bool takeBreak() {
        if (m_line.sliced(m_at) != u"\\\\")
            return false;
        m_html += u"<br>"_s;
        m_at = m_line.size();
        return true;
    }

    bool takeAddress() {
        if (m_at > 0 && m_line[m_at - 1].isLetterOrNumber())
            return false;
        static const QRegularExpression form(
            u"^(?:https?://|ftp://|file://|www\\.)[^\\s<>\"\\[\\]{}|、。「」（）]*[^\\s<>\"\\[\\]{}|、。「」（）.,:;!?)']"_s);
        const QRegularExpressionMatch match = matched(form, nearby());
        if (!match.hasMatch())
            return false;
        m_html += link(match.captured(), htmlText(match.capturedView()));
        m_at += match.capturedEnd();
        return true;
    }

    static QString link(const QString& address, const QString& html) {
        static const QRegularExpression mail(u"^[\\w.+-]+@[\\w-]+(\\.[\\w-]+)+$"_s);
        QString target = address;
        if (address.startsWith(u"www."_s))
            target.prepend(u"http://"_s);
        else if (mail.match(address).hasMatch())
            target.prepend(u"mailto:"_s);
        return u"<a href=\"%1\">%2</a>"_s.arg(htmlAttribute(target), html);
    }

    QString picture(const QString& address, const QString& width) const {
        const QString size = width.isEmpty() ? QString() : u" width=\"%1\""_s.arg(width);
        return u"<img src=\"%1\"%2 alt=\"\">"_s.arg(htmlAttribute(m_links.picture(address)), size);
    }

    QString dayLink(const QString& day, const QString& html) const {
        const QString address = m_links.day(day);
        return address.isEmpty() ? html : u"<a href=\"%1\">%2</a>"_s.arg(htmlAttribute(address), html);
    }

    /// A picture, a day, or a name and where it leads.
    bool takeBracket() {
        const QStringView rest = nearby();
        static const QRegularExpression quotedPicture(u"^\\[\"\"([^\"\\]]+)\"\"(\\.\\w+)(?:\\?(\\d{1,5}))?\\]"_s);
        static const QRegularExpression picture(
            u"^\\[([\\w,.+%$#@!?~/-]+\\.(?:png|jpe?g|gif|bmp|svg|webp))(?:\\?(\\d{1,5}))?\\]"_s,
            QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
        static const QRegularExpression day(u"^\\[(\\d{4}-\\d{2}-\\d{2})\\]"_s);
        static const QRegularExpression named(
            u"^\\[((?:[^\\[\\]]|\\[[^\\[\\]\\s]+\\])+?) (?:\"\"([^\\[\\]]+?)\"\"|(\\d{4}-\\d{2}-\\d{2})|([^\\s\\[\\]]+))\\]"_s);
        QRegularExpressionMatch match;
        if ((match = matched(quotedPicture, rest)).hasMatch())
            m_html += this->picture(match.captured(1) + match.captured(2), match.captured(3));
        else if ((match = matched(picture, rest)).hasMatch())
            m_html += this->picture(match.captured(1), match.captured(2));
        else if ((match = matched(day, rest)).hasMatch())
            m_html += dayLink(match.captured(1), match.captured(1));
        else if ((match = matched(named, rest)).hasMatch() && takesLink(match))
            return true;
        else
            return false;
        m_at += match.capturedEnd();
        return true;
    }

    bool takesLink(const QRegularExpressionMatch& match) {
        const QString name = within(match.capturedView(1));
        static const QRegularExpression address(u"^(?:[a-z][a-z0-9+.-]*:|www\\.|[\\w.+-]+@[\\w-]+\\.|[#./~])"_s,
                                                QRegularExpression::CaseInsensitiveOption);
        if (match.capturedLength(2) > 0)
            m_html += link(match.captured(2), name);
        else if (match.capturedLength(3) > 0)
            m_html += dayLink(match.captured(3), name);
        else if (address.match(match.capturedView(4)).hasMatch())
            m_html += link(match.captured(4), name);
        else
            return false; // words in brackets
        m_at += match.capturedEnd();
        return true;
    }

    /// {text|color:red}
    bool takeColour() {
        const QStringView rest = nearby();
        static const QRegularExpression end(u"\\|color:\\s*([a-zA-Z]+|#[0-9a-fA-F]{3,8})\\}"_s);
        const qsizetype bar = rest.indexOf(u"|color:");
        if (bar < 0)
            return false;
        const QRegularExpressionMatch match =
            end.match(rest, bar, QRegularExpression::NormalMatch, QRegularExpression::AnchorAtOffsetMatchOption);
        if (!match.hasMatch())
            return false;
        m_html += u"<span style=\"color:%1\">%2</span>"_s.arg(match.captured(1), within(rest.sliced(1, bar - 1)));
        m_at += match.capturedEnd();
        return true;
    }

    QStringView m_line;
    const RedNotebookLinks& m_links;
    int m_depth;
    qsizetype m_at = 0;
    QString m_html;
    QList<QStringView> m_unclosed; ///< marks that nothing closes from here on
};

} // namespace

QString redNotebookInline(QStringView line, const RedNotebookLinks& links) {
    return Inline(line, links, 0).html();
}

} // namespace velloria::exchange
