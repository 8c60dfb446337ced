#include "convert/text_scan.h"
#include "convert/tag_scan.h"

using namespace Qt::StringLiterals;

namespace velloria::convert {
namespace {

/// The tag's text as its attributes are looked for: `name` ("IMG ") goes wherever it stands, in upper and in lower
/// case, so that an address which holds it loses these characters.
QString prepared(QStringView tag, const QString& name) {
    QString text(tag.size(), Qt::Uninitialized);
    QChar* out = text.data();
    for (const QChar c : tag) {
        if (c != u'<' && c != u'>')
            *out++ = c == u'\'' ? QChar(u'"') : c;
    }
    text.truncate(out - text.constData());
    removeEvery(text, name);
    removeEvery(text, name.toLower());
    return text;
}

/// Whether `piece` is `word` but for case and blanks.
bool isWord(QStringView piece, QStringView word) {
    qsizetype matched = 0;
    for (const QChar c : piece) {
        if (c == u' ')
            continue;
        if (matched == word.size() || asciiUpper(c.unicode()) != word[matched])
            return false;
        ++matched;
    }
    return matched == word.size();
}

/// Calls `pair` with each piece of a prepared tag that has a next one, and that one. Pieces lie between double quotes;
/// without any, between blanks, and then a value is seen only when a blank parts it from its "=".
template <typename Pair>
void forEachPair(QStringView text, Pair pair) {
    const QChar separator = text.contains(u'"') ? u'"' : u' ';
    qsizetype end = text.indexOf(separator);
    while (end >= 0) {
        const QStringView piece = text.first(end);
        text = text.sliced(end + 1);
        end = text.indexOf(separator);
        pair(piece, end < 0 ? text : text.first(end));
    }
}

QString linkTarget(QStringView tag) {
    const QString text = prepared(tag, u"A "_s);
    QStringView target;
    forEachPair(text, [&](QStringView piece, QStringView next) {
        if (isWord(piece, u"HREF="))
            target = next;
    });
    return target.toString();
}

class TextScan {
public:
    TextScan(const HtmlSettings& settings, QString& result)
        : m_settings(settings)
        , m_result(result) {}

    void tag(QStringView tag) {
        if (tagStartsWith(tag, u"<HR")) {
            if (m_settings.textHr)
                appendRow(m_result, m_settings.textHrNumber);
        } else if (tagStartsWith(tag, u"<BR")) {
            if (m_settings.textBr)
                m_result += kLineBreak;
        } else if (tagStartsWith(tag, u"</P")) {
            if (m_settings.textP)
                appendParagraphEnd(m_result, m_settings);
        } else if (tagStartsWith(tag, u"<IM")) {
            if (m_settings.textImg)
                image(tag);
        } else if (tagStartsWith(tag, u"<A ")) {
            if (isTreated(tag))
                linkStart(tag);
        } else if (tagStartsWith(tag, u"</A")) {
            linkEnd();
        }
    }

private:
    void image(QStringView tag) {
        const QString text = prepared(tag, u"IMG "_s);
        QStringView alternative;
        QStringView source;
        forEachPair(text, [&](QStringView piece, QStringView next) {
            if (isWord(piece, u"ALT="))
                alternative = next;
            else if (isWord(piece, u"SRC="))
                source = next;
        });
        m_result += u"[イメージ:"_s;
        m_result += alternative;
        m_result += u':';
        m_result += source;
        m_result += u']';
    }

    bool isTreated(QStringView tag) const {
        if (m_settings.textAName && tagStartsWith(tag, u"<A NAME"))
            return false;
        if (m_settings.textAHrefSharp && (tagStartsWith(tag, u"<A HREF=\"#") || tagStartsWith(tag, u"<A HREF=#")))
            return false;
        return m_settings.textAHref;
    }

    void linkStart(QStringView tag) {
        m_link = linkTarget(tag);
        if (m_settings.linkTagType == 0) {
            m_result += tag;
        } else if (m_settings.linkTagType == 1) {
            m_result += u"[リンク:"_s;
            m_result += m_link;
            m_result += u']';
        }
    }

    /// Whether or not the start was treated: a dropped anchor leaves its end.
    void linkEnd() {
        if (m_settings.linkTagType == 0) {
            m_result += u"</a>"_s;
        } else if (m_settings.linkTagType == 2) {
            m_result += u'(';
            m_result += m_link;
            m_result += u')';
        }
        m_link.clear();
    }

    const HtmlSettings& m_settings;
    QString& m_result;
    QString m_link; ///< the target of the last treated link, until an end
};

} // namespace

QString scanToText(QStringView html, const HtmlSettings& settings) {
    QString result;
    TextScan text(settings, result);
    scanTags(html, result, [&](QStringView tag) { text.tag(tag); });
    return result;
}

} // namespace velloria::convert
