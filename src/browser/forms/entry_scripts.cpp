#include "browser/forms/entry_scripts.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace velloria::browser {
namespace {

/// A found entry bears its number. The entries of a same day do not: their numbers are their order within the day. The
/// date that is to be clicked is the last one of the heading, for a title may hold one as well.
constexpr char16_t kEntryLinks[] = uR"js(
if (location.protocol === 'file:') {
    const anchors = [...document.querySelectorAll('a[name]')].map(anchor => ({
        anchor, heading: anchor.closest('h3') || anchor.closest('tr'),
        name: /^(\d{4}\/\d\d\/\d\d)(?:_(\d+))?$/.exec(anchor.name)}));
    const places = anchors.filter(place => place.name && place.heading);
    const hasNumbers = /\/findtmp\.htm$/i.test(location.pathname);
    const counts = new Map();
    for (const {heading, name} of places.filter(place => hasNumbers === (place.name[2] !== undefined))) {
        const day = name[1];
        const texts = document.createTreeWalker(heading, NodeFilter.SHOW_TEXT);
        let date = null;
        while (texts.nextNode()) {
            if (texts.currentNode.data.includes(day))
                date = texts.currentNode;
        }
        if (!date || date.parentElement.closest('a[href]'))
            continue;
        counts.set(day, (counts.get(day) || 0) + 1);
        const text = date.splitText(date.data.lastIndexOf(day));
        text.splitText(day.length);
        const link = document.createElement('a');
        link.href = 'event:' + day + '_' + (name[2] || counts.get(day));
        link.title = 'この日記を編集画面で開きます';
        link.style.color = 'inherit';
        link.style.textDecoration = 'underline';
        text.replaceWith(link);
        link.append(text);
    }
}
)js";

constexpr char16_t kStyles[] = uR"js(
if (location.protocol === 'file:') {
    const template = document.createElement('template');
    template.innerHTML = %1[0];
    document.head.append(...template.content.querySelectorAll('style, link[rel~="stylesheet" i]'));
}
)js";

constexpr char16_t kLinkColours[] = uR"js(
if (location.protocol === 'file:' && document.body) {
    ['link', 'alink', 'vlink'].forEach((name, place) => document.body.setAttribute(name, %1[place]));
}
)js";

QString withTexts(const char16_t* script, const QJsonArray& texts) {
    const QByteArray told = QJsonDocument(texts).toJson(QJsonDocument::Compact);
    return QString::fromUtf16(script).replace(u"%1"_s, QString::fromUtf8(told));
}

} // namespace

QString entryLinks() {
    return QString::fromUtf16(kEntryLinks);
}

QString stylesOf(const QString& head) {
    return withTexts(kStyles, {head});
}

QString linkColours(const QString& link, const QString& active, const QString& visited) {
    return withTexts(kLinkColours, {link, active, visited});
}

std::optional<EntryName> entryOf(const QString& event) {
    static const QRegularExpression kEntry(u"^(\\d{4}/\\d\\d/\\d\\d)_(\\d{1,6})$"_s);
    const QRegularExpressionMatch match = kEntry.match(event);
    if (!match.hasMatch())
        return std::nullopt;
    return EntryName{match.captured(1), match.captured(2).toInt()};
}

} // namespace velloria::browser
