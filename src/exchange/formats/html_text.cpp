#include "exchange/formats/html_text.h"

#include <QRegularExpression>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace velloria::exchange {

QString htmlText(QStringView text) {
    return text.toString().replace(u'&', u"&amp;"_s).replace(u'<', u"&lt;"_s).replace(u'>', u"&gt;"_s);
}

QString htmlAttribute(QStringView text) {
    return htmlText(text).replace(u'"', u"&quot;"_s);
}

QString htmlParagraphs(const QString& text) {
    QString html;
    QStringList paragraph;
    const auto close = [&] {
        if (!paragraph.isEmpty())
            html += u"<p>"_s + paragraph.join(u"<br>\n"_s) + u"</p>\n"_s;
        paragraph.clear();
    };
    for (const QString& line : text.split(u'\n')) {
        if (!line.trimmed().isEmpty()) {
            paragraph += htmlText(line);
            continue;
        }
        if (paragraph.isEmpty())
            html += line + u'\n';
        close();
    }
    close();
    return html.endsWith(u'\n') ? html.chopped(1) : html;
}

QString plainOfHtml(const QString& html) {
    static const QRegularExpression tag(u"<[^<>]*>"_s);
    QString text = QString(html).remove(tag);
    text.replace(u"&lt;"_s, u"<"_s).replace(u"&gt;"_s, u">"_s).replace(u"&quot;"_s, u"\""_s);
    return text.replace(u"&amp;"_s, u"&"_s).trimmed();
}

} // namespace velloria::exchange
