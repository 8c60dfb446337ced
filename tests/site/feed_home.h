// A home with feeds, and words to look at them.
#pragma once

#include "site/site_home.h"

namespace velloria::tests {

/// The ends of the feeds' names, in the order of the upload list.
inline const QStringList kFeedNames{QStringLiteral("RSS091"), QStringLiteral("RSS100"), QStringLiteral("RSS200"),
                                    QStringLiteral("ATOM")};

/// Fixture: feeds are on, the diary's address is "http://h.example/d/x.htm".
class FeedHome : public SiteHome {
protected:
    FeedHome() { turnFeedsOn(QStringLiteral("http://h.example/d/x.htm")); }

    QString feed(const QString& name) const { return QString::fromUtf8(feedBytes(name)); }
    QByteArray feedBytes(const QString& name) const;
    QString makeFeed(const QString& name);
    void writePublished(const QString& publishTime);

    /// What stands between each <name> and </name> of a text.
    static QStringList elements(const QString& text, const QString& name);
    /// The same of the items, without the channel.
    static QStringList items(const QString& text, const QString& name);
};

} // namespace velloria::tests
