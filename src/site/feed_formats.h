// The four formats of the feeds, and what they say of the diary and of one entry. Plain functions that throw nothing;
// an item's texts are made ready first:
//
//     item.title = feedText(entry.title);
//     const QByteArray bytes = encodeFeed(rss200(channel, {item}, now));
#pragma once

#include <QDateTime>
#include <QString>

#include <vector>

namespace velloria::site {

/// The channel, from the feed settings.
struct FeedChannel {
    QString title;
    QString homeUrl;
    QString diaryUrl;
    QString description;
    QString managingAuthor;
    QString webMaster;
    QString author;
};

/// One entry. Texts are as XML takes them: escaped where a feed escapes them, without characters that XML forbids.
struct FeedItem {
    QString title;
    QString genre;
    QString address;
    QString plain;    ///< the entry as text without line breaks, escaped
    QString excerpt;  ///< its first 500 characters, escaped
    QString contents; ///< the entry's HTML, escaped
    QString publishTime;
};

/// "&", "<" and ">" as entities, in this order.
QString XmlEscape(QString text);

/// `text` with what UTF-8 XML can't hold put in order: characters above U+FFFF become decimal references (the encoder
/// writes UTF-16 units one by one), control characters but TAB, CR and LF and lone surrogates go.
QString feedText(QString text);

/// UTF-16 units to bytes, each unit by itself as one, two or three bytes.
QByteArray encodeFeed(const QString& text);

/// The four documents. `now` is the time of generation.
QString rss091(const FeedChannel& channel, const std::vector<FeedItem>& items, const QDateTime& now);
QString rss100(const FeedChannel& channel, const std::vector<FeedItem>& items, const QDateTime& now);
QString rss200(const FeedChannel& channel, const std::vector<FeedItem>& items, const QDateTime& now);
QString atom(const FeedChannel& channel, const std::vector<FeedItem>& items, const QDateTime& now);

} // namespace velloria::site
