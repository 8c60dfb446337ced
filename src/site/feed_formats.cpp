#include "site/feed_formats.h"

#include "core/date_forms.h"
#include "core/session.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

// The diary is Japanese: the zone is fixed, whatever the machine's zone is. The spellings differ from feed to feed.
constexpr char16_t kXmlLine[] = u"<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\r\n";

class Writer {
public:
    template <typename... Parts>
    void add(const Parts&... parts) {
        (m_text.append(parts), ...);
    }
    template <typename... Parts>
    void line(const Parts&... parts) {
        add(parts..., u"\r\n"_s);
    }
    /// <name>text</name> and a line end.
    void element(const QString& name, const QString& text) { line(u'<', name, u'>', text, u"</"_s, name, u'>'); }
    QString text() const { return m_text; }

private:
    QString m_text;
};

/// A date text in another form; what is no date stands as it is, and a missing one is empty.
QString dateIn(const QString& publishTime, QStringView form, const QDateTime& now) {
    return publishTime.isNull() ? QString() : core::formatTextAsDate(publishTime, form, now.date().year());
}

/// "2004-05-06T08:05:09" of an entry.
QString stamp(const FeedItem& item, const QDateTime& now) {
    return dateIn(item.publishTime, u"yyyy-mm-dd", now) + u'T' + item.publishTime.right(8);
}

QString generator() {
    return u"Velloria v"_s + core::kProgramVersion.text();
}

} // namespace

QString XmlEscape(QString text) {
    return text.replace(u'&', u"&amp;"_s).replace(u'<', u"&lt;"_s).replace(u'>', u"&gt;"_s);
}

QString feedText(QString text) {
    const auto needsCare = [](QChar c) {
        return c.isSurrogate() || c >= u'\uFFFE' || (c < u' ' && c != u'\t' && c != u'\r' && c != u'\n');
    };
    if (std::none_of(text.cbegin(), text.cend(), needsCare))
        return text;
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (!needsCare(c))
            result += c;
        else if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            result += u"&#%1;"_s.arg(uint(QChar::surrogateToUcs4(c, text[++i])));
    }
    return result;
}

QByteArray encodeFeed(const QString& text) {
    QByteArray bytes(text.size() * 3, Qt::Uninitialized);
    char* out = bytes.data();
    for (const QChar unit : text) {
        const unsigned c = unit.unicode();
        if (c < 0x80) {
            *out++ = char(c);
        } else if (c < 0x800) {
            *out++ = char(0xC0 | c >> 6);
            *out++ = char(0x80 | (c & 0x3F));
        } else {
            *out++ = char(0xE0 | c >> 12);
            *out++ = char(0x80 | (c >> 6 & 0x3F));
            *out++ = char(0x80 | (c & 0x3F));
        }
    }
    bytes.truncate(out - bytes.constData());
    return bytes;
}

QString rss091(const FeedChannel& channel, const std::vector<FeedItem>& items, const QDateTime& now) {
    Writer feed;
    feed.add(QStringView(kXmlLine));
    feed.line(u"<rss version=\"0.91\">"_s);
    feed.line(u"<channel>"_s);
    feed.element(u"title"_s, channel.title);
    feed.element(u"link"_s, channel.diaryUrl);
    feed.element(u"description"_s, channel.description);
    feed.element(u"language"_s, u"ja"_s);
    feed.element(u"lastBuildDate"_s, core::formatDate(now, u"dddd, d mmm yyyy hh:nn:ss") + u" +0900"_s);
    feed.element(u"docs"_s, u"http://backend.userland.com/rss091"_s);
    for (const FeedItem& item : items) {
        feed.line(u"<item>"_s);
        feed.element(u"title"_s, item.title);
        feed.element(u"link"_s, item.address);
        feed.element(u"description"_s, item.excerpt);
        feed.line(u"</item>"_s);
    }
    feed.line(u"</channel>"_s);
    feed.add(u"</rss>"_s);
    return feed.text();
}

QString rss100(const FeedChannel& channel, const std::vector<FeedItem>& items, const QDateTime& now) {
    Writer feed;
    feed.add(QStringView(kXmlLine));
    feed.line(u"<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\" "_s,
              u"xmlns:dc=\"http://purl.org/dc/elements/1.1/\" xmlns=\"http://purl.org/rss/1.0/\" xml:lang=\"ja\">"_s);
    feed.line(u"<channel rdf:about=\""_s, channel.homeUrl, u"\">"_s);
    feed.element(u"title"_s, channel.title);
    feed.element(u"link"_s, channel.diaryUrl);
    feed.element(u"description"_s, channel.description);
    feed.line(u"<items>"_s);
    feed.line(u"<rdf:Seq>"_s);
    // Each address brings its line end along in front: the list begins with an empty line and ends without one.
    for (const FeedItem& item : items)
        feed.add(u"\r\n<rdf:li rdf:resource=\""_s, item.address, u"\" />"_s);
    feed.line(u"</rdf:Seq>"_s);
    feed.line(u"</items>"_s);
    feed.line(u"</channel>"_s);
    for (const FeedItem& item : items) {
        feed.line(u"<item rdf:about=\""_s, item.address, u"\">"_s);
        feed.element(u"title"_s, item.title);
        feed.element(u"link"_s, item.address);
        feed.element(u"description"_s, item.excerpt);
        feed.element(u"dc:date"_s, stamp(item, now) + u" +09:00"_s);
        feed.line(u"</item>"_s);
    }
    feed.add(u"</rdf:RDF>"_s);
    return feed.text();
}

QString rss200(const FeedChannel& channel, const std::vector<FeedItem>& items, const QDateTime& now) {
    constexpr char16_t kForm[] = u"ddd, d mmm yyyy hh:nn:ss";
    Writer feed;
    feed.add(QStringView(kXmlLine));
    feed.line(u"<rss version=\"2.0\">"_s);
    feed.line(u"<channel>"_s);
    feed.element(u"title"_s, channel.title);
    feed.element(u"link"_s, channel.diaryUrl);
    feed.element(u"description"_s, channel.description);
    feed.element(u"language"_s, u"ja"_s);
    feed.element(u"managingEditor"_s, channel.managingAuthor);
    feed.element(u"webMaster"_s, channel.webMaster);
    feed.element(u"lastBuildDate"_s, core::formatDate(now, kForm) + u" +0900"_s);
    feed.element(u"generator"_s, generator());
    feed.element(u"docs"_s, u"http://blogs.law.harvard.edu/tech/rss"_s);
    for (const FeedItem& item : items) {
        feed.line(u"<item>"_s);
        feed.element(u"title"_s, item.title);
        feed.element(u"link"_s, item.address);
        feed.element(u"description"_s, item.plain);
        feed.line(u"<author>"_s, channel.managingAuthor, u"</author><category>"_s, item.genre, u"</category><guid>"_s,
                  item.address, u"</guid><pubDate>"_s, dateIn(item.publishTime, kForm, now),
                  u" +0900</pubDate></item>"_s);
    }
    feed.line(u"</channel>"_s);
    feed.add(u"</rss>"_s);
    return feed.text();
}

QString atom(const FeedChannel& channel, const std::vector<FeedItem>& items, const QDateTime& now) {
    const QString nowStamp =
        core::formatDate(now, u"yyyy-mm-dd") + u'T' + core::formatDate(now, u"hh:nn:ss") + u"+09:00"_s;
    const auto alternateLink = [](const QString& address, const QString& title) {
        return u"<link rel=\"alternate\" type=\"text/html\" href=\""_s + address + u"\" title=\""_s + title + u"\"/>"_s;
    };
    Writer feed;
    feed.add(QStringView(kXmlLine));
    feed.line(u"<feed xmlns:dc=\"http://purl.org/dc/elements/1.1/\" version=\"0.3\" xml:lang=\"ja\" "_s,
              u"xmlns=\"http://purl.org/atom/ns#\">"_s);
    feed.element(u"title"_s, channel.title);
    feed.line(alternateLink(channel.diaryUrl, channel.title));
    feed.element(u"modified"_s, nowStamp);
    feed.element(u"tagline"_s, channel.diaryUrl);
    feed.element(u"generator"_s, generator());
    feed.line(u"<author>"_s);
    feed.element(u"name"_s, channel.author);
    feed.element(u"email"_s, channel.managingAuthor);
    feed.line(u"</author>"_s);
    feed.add(u"<id>"_s, channel.diaryUrl, u"</id>"_s);
    for (const FeedItem& item : items) {
        feed.line(u"<entry>"_s);
        feed.element(u"title"_s, item.title);
        feed.element(u"dc:subject"_s, item.genre);
        feed.line(alternateLink(item.address, item.title));
        feed.line(u"<id>"_s, item.address, u"</id><modified>"_s, stamp(item, now), u"+09:00</modified><issued>"_s,
                  nowStamp, u"</issued><summary mode=\"escaped\" type=\"text/html\">"_s, item.excerpt, u"</summary>"_s);
        feed.line(u"<content mode=\"escaped\" type=\"text/html\" xml:lang=\"ja\">"_s, item.contents, u"</content>"_s);
        feed.line(u"</entry>"_s);
    }
    feed.add(u"</feed>"_s);
    return feed.text();
}

} // namespace velloria::site
