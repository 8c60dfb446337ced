#include "site/feed_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {

QByteArray FeedHome::feedBytes(const QString& name) const {
    return bytesOf(path(u"site/x_"_s + name + u".xml"_s));
}

QString FeedHome::makeFeed(const QString& name) {
    makeMonth();
    return feed(name);
}

void FeedHome::writePublished(const QString& publishTime) {
    store::Entry entry = entryOf(u"2004/05/06"_s, u"a"_s);
    entry.publishTime = publishTime;
    write(entry);
}

QStringList FeedHome::elements(const QString& text, const QString& name) {
    QStringList found;
    const QStringList parts = text.split(u'<' + name + u'>').mid(1);
    for (const QString& part : parts)
        found += part.left(part.indexOf(u"</"_s + name + u'>'));
    return found;
}

QStringList FeedHome::items(const QString& text, const QString& name) {
    const qsizetype first = qMax(text.indexOf(u"<item"_s), text.indexOf(u"<entry>"_s));
    return first < 0 ? QStringList() : elements(text.mid(first), name);
}

} // namespace velloria::tests
