// The HTML to text converter as it is described, step by step and without a thought for time: what the real one is
// compared with. It shares no code with it, settings included: they are a map from their names to numbers.
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <vector>

namespace velloria::tests {

class LiteralHtmlToText {
public:
    QString mode;
    QHash<QString, int> values;

    QString execute(QString& text) const {
        if (on(u"PBR"))
            text.replace(breakText(), QString());
        QString result = mode == QStringLiteral("TEXT") ? textScan(text) : htmlScan(text);
        if (value(u"PBR") != 2) {
            result.replace(breakText(), QStringLiteral("\n"));
            result.replace(QStringLiteral("\r"), QStringLiteral("\n"));
            result.replace(QStringLiteral("\n"), breakText());
        }
        if (value(u"PBR") == 0 && on(u"ENTER")) {
            const QString three = breakText() + breakText() + breakText();
            while (result.contains(three))
                result.replace(three, breakText());
        }
        result.replace(QStringLiteral("&amp;"), QStringLiteral("&"));
        result.replace(QStringLiteral("&lt;"), QStringLiteral("<"));
        result.replace(QStringLiteral("&gt;"), QStringLiteral(">"));
        return result;
    }

private:
    struct Group {
        int minimumLength;
        int prefixLength;
        std::vector<std::pair<QString, QString>> prefixes; ///< and the name of the flag that drops
    };

    static QString breakText() { return QStringLiteral("\r\n"); }

    int value(QStringView name) const { return values.value(name.toString()); }
    bool on(QStringView name) const { return value(name) != 0; }

    static QString upper(const QString& text) {
        QString result;
        for (const QChar c : text)
            result += c >= u'a' && c <= u'z' ? QChar(c.unicode() - 32) : c;
        return result;
    }

    /// Reads the tag at `i` and leaves `i` behind it. Without an end: what was collected, and `isClosed` false.
    static QString readTag(const QString& text, qsizetype& i, bool& isClosed) {
        QString tag;
        isClosed = false;
        while (i < text.size() && !isClosed) {
            tag += text[i];
            isClosed = text[i] == u'>';
            ++i;
        }
        return tag;
    }

    QString dashes(QStringView name) const {
        QString row;
        for (int i = 1; i <= value(name); ++i)
            row += u'-';
        return row;
    }

    QString textScan(const QString& text) const {
        QString result;
        QString link;
        qsizetype i = 0;
        while (i < text.size()) {
            if (text[i] != u'<') {
                result += text[i];
                ++i;
                continue;
            }
            bool isClosed = false;
            const QString tag = readTag(text, i, isClosed);
            if (!isClosed) {
                result += tag;
                continue;
            }
            const QString name = upper(tag).left(3);
            if (name == QStringLiteral("<HR")) {
                if (on(u"HR"))
                    result += dashes(u"HR_NUM") + breakText();
            } else if (name == QStringLiteral("<BR")) {
                if (on(u"BR"))
                    result += breakText();
            } else if (name == QStringLiteral("</P")) {
                if (on(u"P"))
                    result += on(u"PBR") ? breakText() + breakText() : breakText();
            } else if (name == QStringLiteral("<IM")) {
                if (on(u"IMG"))
                    result += QStringLiteral("[イメージ:") + imageText(tag) + u']';
            } else if (name == QStringLiteral("<A ")) {
                const QString start = upper(tag);
                if (start.left(7) == QStringLiteral("<A NAME") && on(u"ANAME"))
                    continue;
                if ((start.left(10) == QStringLiteral("<A HREF=\"#") || start.left(9) == QStringLiteral("<A HREF=#")) &&
                    on(u"AHREFSharp"))
                    continue;
                if (!on(u"AHREF"))
                    continue;
                link = linkTarget(tag);
                if (value(u"A_LINK_TAG_TYPE") == 0)
                    result += tag;
                if (value(u"A_LINK_TAG_TYPE") == 1)
                    result += QStringLiteral("[リンク:") + link + u']';
            } else if (name == QStringLiteral("</A")) {
                if (value(u"A_LINK_TAG_TYPE") == 0)
                    result += QStringLiteral("</a>");
                if (value(u"A_LINK_TAG_TYPE") == 2)
                    result += u'(' + link + u')';
                link = QString();
            }
        }
        return result;
    }

    static QStringList pieces(const QString& tag, const QString& word) {
        QString rest = tag;
        rest.replace(QStringLiteral("<"), QString());
        rest.replace(QStringLiteral(">"), QString());
        rest.replace(QStringLiteral("'"), QStringLiteral("\""));
        rest.replace(word.toUpper(), QString());
        rest.replace(word.toLower(), QString());
        return rest.split(rest.contains(u'"') ? u'"' : u' ');
    }

    static QString bare(const QString& piece) { return upper(piece).remove(u' '); }

    static QString imageText(const QString& tag) {
        const QStringList list = pieces(tag, QStringLiteral("img "));
        QString alternative;
        QString source;
        for (qsizetype k = 0; k < list.size() - 1; ++k) {
            if (bare(list[k]) == QStringLiteral("ALT="))
                alternative = list[k + 1];
            if (bare(list[k]) == QStringLiteral("SRC="))
                source = list[k + 1];
        }
        return alternative + u':' + source;
    }

    static QString linkTarget(const QString& tag) {
        const QStringList list = pieces(tag, QStringLiteral("a "));
        QString target;
        for (qsizetype k = 0; k < list.size() - 1; ++k) {
            if (bare(list[k]) == QStringLiteral("HREF="))
                target = list[k + 1];
        }
        return target;
    }

    static const std::vector<Group>& groups() {
        const auto rows = [](std::initializer_list<std::pair<const char*, const char*>> list) {
            std::vector<std::pair<QString, QString>> result;
            for (const auto& [prefixes, flag] : list) {
                for (const QString& prefix : QString::fromLatin1(prefixes).split(u' '))
                    result.emplace_back(prefix, QString::fromLatin1(flag));
            }
            return result;
        };
        static const std::vector<Group> kGroups{
            {12, 11, rows({{"<BLOCKQUOTE </BLOCKQUOT", "HTML_BLOCKQUOTE"}})},
            {9, 8, rows({{"<CAPTION </CAPTIO", "HTML_TABLE"}})},
            {8, 7, rows({{"<STRONG </STRON", "HTML_STRONG"}})},
            {7, 6, rows({{"<TABLE </TABL", "HTML_TABLE"}})},
            {6, 5, rows({{"<SPAN </SPA", "HTML_SPAN"}})},
            {5, 4,
             rows({{"</TD </TR </TH", "HTML_TABLE"},
                   {"</TT", "HTML_TT"},
                   {"</UL </OL </DL </DT </DD </LI", "HTML_LIST"},
                   {"</EM", "HTML_EM"},
                   {"<XMP </XM", "HTML_XMP"},
                   {"<SUP </SUP", "HTML_SUP"},
                   {"<SUB </SUB", "HTML_SUB"},
                   {"<PRE </PR", "HTML_PRE"},
                   {"<INS </IN", "HTML_INS"},
                   {"<DEL </DE", "HTML_DEL"}})},
            {4, 3,
             rows({{"</S", "HTML_S"},
                   {"</P", "HTML_P"},
                   {"</Q", "HTML_Q"},
                   {"</U", "HTML_U"},
                   {"</I", "HTML_I"},
                   {"</B", "HTML_B"},
                   {"<BR", "HTML_BR"},
                   {"<TT", "HTML_TT"},
                   {"<HR", "HTML_HR"},
                   {"<TD <TR <TH", "HTML_TABLE"},
                   {"<LI", "HTML_LIST"},
                   {"<UL <OL <DL <DT <DD", "HTML_LIST"},
                   {"<EM", "HTML_EM"}})},
            {3, 2,
             rows({{"<P", "HTML_P"},
                   {"<S", "HTML_S"},
                   {"<Q", "HTML_Q"},
                   {"<U", "HTML_U"},
                   {"<I", "HTML_I"},
                   {"<B", "HTML_B"}})},
        };
        return kGroups;
    }

    QString htmlScan(const QString& text) const {
        QString result;
        qsizetype i = 0;
        while (i < text.size()) {
            if (text[i] != u'<') {
                result += text[i];
                ++i;
                continue;
            }
            bool isClosed = false;
            QString tag = readTag(text, i, isClosed);
            if (isClosed) {
                for (const Group& group : groups())
                    applyGroup(group, tag, result);
            }
            result += tag;
        }
        return result;
    }

    void applyGroup(const Group& group, QString& tag, QString& result) const {
        if (tag.size() < group.minimumLength)
            return;
        const QString start = upper(tag).left(group.prefixLength);
        for (const auto& [prefix, flag] : group.prefixes) {
            if (start == prefix) {
                settle(prefix, flag, tag, result);
                return;
            }
        }
    }

    void settle(const QString& prefix, const QString& flag, QString& tag, QString& result) const {
        const bool keeps = value(u"PBR") == 2;
        if (keeps && prefix == QStringLiteral("</P")) {
            tag = QStringLiteral("</P>");
        } else if (keeps && prefix == QStringLiteral("<P")) {
            tag = QStringLiteral("<P>");
        } else if (keeps && prefix == QStringLiteral("<BR")) {
            tag = QStringLiteral("<BR>");
        } else if (on(flag)) {
            if (prefix == QStringLiteral("</P"))
                result += on(u"PBR") ? breakText() + breakText() : breakText();
            if (prefix == QStringLiteral("<BR"))
                result += breakText();
            if (prefix == QStringLiteral("<HR"))
                result += dashes(u"HTML_HR_Num") + breakText();
            if (prefix == QStringLiteral("<LI"))
                result += breakText() + QStringLiteral("・");
            tag = QString();
        }
    }
};

} // namespace velloria::tests
