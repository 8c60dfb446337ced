#include "convert/html_scan.h"

#include "convert/tag_scan.h"

#include <QVarLengthArray>

using namespace Qt::StringLiterals;

namespace velloria::convert {
namespace {

enum class Effect { Drop, ParagraphStart, ParagraphEnd, LineBreak, Row, ListItem };

struct Rule {
    QStringView prefix;
    qint16 HtmlSettings::*flag;
    Effect effect = Effect::Drop;
};

using S = HtmlSettings;

// Longest prefix first: a tag that a rule leaves goes on to the shorter ones, so that "<B" drops "<BR>" and
// "<BLOCKQUOTE>" too. There is none for "</SUP" and "</SUB": these ends stay when their starts go, and only "</S" takes
// them.
constexpr Rule kRules[] = {
    {u"<BLOCKQUOTE", &S::htmlBlockquote},
    {u"</BLOCKQUOT", &S::htmlBlockquote},

    {u"<CAPTION", &S::htmlTable},
    {u"</CAPTIO", &S::htmlTable},

    {u"<STRONG", &S::htmlStrong},
    {u"</STRON", &S::htmlStrong},

    {u"<TABLE", &S::htmlTable},
    {u"</TABL", &S::htmlTable},

    {u"<SPAN", &S::htmlSpan},
    {u"</SPA", &S::htmlSpan},

    {u"</TD", &S::htmlTable},
    {u"</TR", &S::htmlTable},
    {u"</TH", &S::htmlTable},
    {u"</TT", &S::htmlTt},
    {u"</UL", &S::htmlList},
    {u"</OL", &S::htmlList},
    {u"</DL", &S::htmlList},
    {u"</DT", &S::htmlList},
    {u"</DD", &S::htmlList},
    {u"</LI", &S::htmlList},
    {u"</EM", &S::htmlEm},
    {u"<XMP", &S::htmlXmp},
    {u"</XM", &S::htmlXmp},
    {u"<SUP", &S::htmlSup},
    {u"<SUB", &S::htmlSub},
    {u"<PRE", &S::htmlPre},
    {u"</PR", &S::htmlPre},
    {u"<INS", &S::htmlIns},
    {u"</IN", &S::htmlIns},
    {u"<DEL", &S::htmlDel},
    {u"</DE", &S::htmlDel},

    {u"</S", &S::htmlS},
    {u"</P", &S::htmlP, Effect::ParagraphEnd},
    {u"</Q", &S::htmlQ},
    {u"</U", &S::htmlU},
    {u"</I", &S::htmlI},
    {u"</B", &S::htmlB},
    {u"<BR", &S::htmlBr, Effect::LineBreak},
    {u"<TT", &S::htmlTt},
    {u"<HR", &S::htmlHr, Effect::Row},
    {u"<TD", &S::htmlTable},
    {u"<TR", &S::htmlTable},
    {u"<TH", &S::htmlTable},
    {u"<LI", &S::htmlList, Effect::ListItem},
    {u"<UL", &S::htmlList},
    {u"<OL", &S::htmlList},
    {u"<DL", &S::htmlList},
    {u"<DT", &S::htmlList},
    {u"<DD", &S::htmlList},
    {u"<EM", &S::htmlEm},

    {u"<P", &S::htmlP, Effect::ParagraphStart},
    {u"<S", &S::htmlS},
    {u"<Q", &S::htmlQ},
    {u"<U", &S::htmlU},
    {u"<I", &S::htmlI},
    {u"<B", &S::htmlB},
};

/// The form in which `paragraphBreak` 2 keeps a tag, empty for the effects that it leaves alone.
QStringView keptForm(Effect effect) {
    switch (effect) {
    case Effect::ParagraphStart:
        return u"<P>";
    case Effect::ParagraphEnd:
        return u"</P>";
    case Effect::LineBreak:
        return u"<BR>";
    default:
        return {};
    }
}

class HtmlScan {
public:
    HtmlScan(const HtmlSettings& settings, QString& result)
        : m_settings(settings)
        , m_result(result) {
        // No two rules of one length match the same tag, so those that are off can be left out altogether.
        for (const Rule& rule : kRules) {
            if (settings.*rule.flag || (keepsParagraphs() && !keptForm(rule.effect).isEmpty()))
                m_active.append(&rule);
        }
    }

    void tag(QStringView tag) {
        for (const Rule* rule : m_active) {
            if (!tagStartsWith(tag, rule->prefix))
                continue;
            const QStringView kept = keepsParagraphs() ? keptForm(rule->effect) : QStringView();
            if (kept.isEmpty()) {
                appendReplacement(rule->effect);
                return;
            }
            tag = kept;
        }
        m_result += tag;
    }

private:
    bool keepsParagraphs() const { return m_settings.paragraphBreak == 2; }

    void appendReplacement(Effect effect) {
        switch (effect) {
        case Effect::Drop:
        case Effect::ParagraphStart:
            break;
        case Effect::ParagraphEnd:
            appendParagraphEnd(m_result, m_settings);
            break;
        case Effect::LineBreak:
            m_result += kLineBreak;
            break;
        case Effect::Row:
            appendRow(m_result, m_settings.htmlHrNumber);
            break;
        case Effect::ListItem:
            m_result += u"\r\n・"_s;
            break;
        }
    }

    const HtmlSettings& m_settings;
    QString& m_result;
    QVarLengthArray<const Rule*, std::size(kRules)> m_active;
};

} // namespace

QString scanToHtml(QStringView html, const HtmlSettings& settings) {
    QString result;
    HtmlScan kept(settings, result);
    scanTags(html, result, [&](QStringView tag) { kept.tag(tag); });
    return result;
}

} // namespace velloria::convert
