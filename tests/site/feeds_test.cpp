#include "site/feeds.h"

#include "platform/file_write.h"
#include "site/feed_item.h"
#include "site/site_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using site::clsRSSreader;

class Feeds : public SiteHome {
protected:
    Feeds() { turnFeedsOn(u"http://h.example/d/x.htm"_s); }

    /// A feed of the site by the end of its name: "RSS091", "RSS100", "RSS200", "ATOM".
    QString feed(const QString& name) const { return QString::fromUtf8(feedBytes(name)); }
    QByteArray feedBytes(const QString& name) const { return bytesOf(path(u"site/x_"_s + name + u".xml"_s)); }
    QString makeFeed(const QString& name) {
        makeMonth();
        return feed(name);
    }
    /// What stands between each <name> and </name> of a text.
    static QStringList elements(const QString& text, const QString& name) {
        QStringList found;
        const QStringList parts = text.split(u'<' + name + u'>').mid(1);
        for (const QString& part : parts)
            found += part.left(part.indexOf(u"</"_s + name + u'>'));
        return found;
    }
    /// The texts of the items, without the channel's.
    static QStringList items(const QString& text, const QString& name) {
        const qsizetype first = qMax(text.indexOf(u"<item"_s), text.indexOf(u"<entry>"_s));
        return first < 0 ? QStringList() : elements(text.mid(first), name);
    }
    void writePublished(const QString& publishTime) {
        store::Entry entry = entryOf(u"2004/05/06"_s, u"a"_s);
        entry.publishTime = publishTime;
        write(entry);
    }
};

const QStringList kNames{u"RSS091"_s, u"RSS100"_s, u"RSS200"_s, u"ATOM"_s};

TEST_F(Feeds, TenEntriesAreTenItemsAndOfTwelveTheTenNewest) {
    for (int number = 1; number <= 10; ++number)
        write(u"2004/05/%1"_s.arg(number <= 5 ? u"01"_s : u"02"_s), u"entry %1"_s.arg(number));
    makeMonth();
    for (const QString& name : kNames)
        EXPECT_EQ(items(feed(name), u"title"_s).size(), 10) << name.toStdString();
    write(u"2004/05/03"_s, u"entry 11"_s);
    write(u"2004/05/03"_s, u"entry 12"_s);
    makeMonth();
    QStringList newest;
    for (const int number : {12, 11, 10, 9, 8, 7, 6, 5, 4, 3})
        newest += u"entry %1"_s.arg(number);
    for (const QString& name : kNames)
        EXPECT_EQ(items(feed(name), u"title"_s), newest) << name.toStdString();
    EXPECT_EQ(countOf(feed(u"RSS100"_s), u"<rdf:li "_s), 10);
}

TEST_F(Feeds, OnlyTheMonthOfTheNewestPublicEntryIsLookedAt) {
    for (int number = 1; number <= 20; ++number)
        write(u"2004/04/30"_s, u"april"_s);
    for (const QString& day : {u"2004/05/01"_s, u"2004/05/02"_s, u"2004/05/03"_s})
        write(day, u"may"_s);
    writePrivate(u"2004/06/01"_s, u"june"_s);
    makeMonth(u"2004/04"_s);
    for (const QString& name : kNames)
        EXPECT_EQ(items(feed(name), u"title"_s), QStringList(3, u"may"_s)) << name.toStdString();
}

TEST_F(Feeds, APrivateEntryNeverReachesAFeedNotInThePreviewEither) {
    write(u"2004/05/05"_s, u"public"_s);
    writePrivate(u"2004/05/06"_s, u"secret"_s);
    makePreview();
    for (const QString& name : kNames)
        EXPECT_EQ(items(feed(name), u"title"_s), QStringList{u"public"_s}) << name.toStdString();
}

TEST_F(Feeds, WithoutAPublicEntryTheRunFailsAndTheOldFeedsAreGone) {
    write(u"2004/05/05"_s, u"public"_s);
    makeMonth();
    sql(u"UPDATE Contents SET Private = 1"_s);
    const QString failure = failureOf([&] { makeMonth(); });
    EXPECT_TRUE(failure.contains(u"RSS"_s)) << failure.toStdString();
    for (const QString& name : kNames)
        EXPECT_FALSE(siteHas(u"x_"_s + name + u".xml"_s));
    sql(u"DELETE FROM Contents"_s);
    EXPECT_NE(failureOf([&] { makePreview(); }), u""_s);
}

TEST_F(Feeds, WithoutConverterSettingsFourFilesAreEmptyAndTheLinksStay) {
    ASSERT_TRUE(QFile::remove(session.MyPath + u"HTML2TXT_RSS.ini"_s));
    write(u"2004/05/06"_s, u"a"_s);
    makeMonth();
    for (const QString& name : kNames)
        EXPECT_EQ(feedBytes(name), "") << name.toStdString();
    EXPECT_EQ(countOf(sitePage(u"x.htm"_s), u"_RSS091.xml"_s), 2);
    EXPECT_EQ(uploadRows().size(), 5);
}

TEST_F(Feeds, NeedTheirSettingAFileAndAnAddress) {
    write(u"2004/05/06"_s, u"a"_s);
    makeLog();
    EXPECT_FALSE(siteHas(u"x_ATOM.xml"_s));
    setSetting(keys::rss::kDiaryURL, u""_s);
    EXPECT_TRUE(lacks(makeMonth(), u"RSS"_s));
    EXPECT_FALSE(siteHas(u"x_ATOM.xml"_s));
    EXPECT_EQ(uploadRows(), QStringList{u"site,x.htm"_s});
    turnFeedsOn();
    setSetting(keys::rss::kRSSOn, u"2"_s);
    EXPECT_TRUE(lacks(makeMonth(), u"RSS"_s));
}

TEST_F(Feeds, InitializeAsksForAPathAFileAndAnAddress) {
    const site::SiteSettings settings(session);
    clsRSSreader feeds(session, settings, m_store, *clock);
    EXPECT_FALSE(feeds.Initialize(u""_s));
    EXPECT_FALSE(feeds.Initialize(path(u"nowhere.ini"_s)));
    EXPECT_TRUE(feeds.Initialize(session.RSSIniFile));
    EXPECT_EQ(feeds.GetDiaryURL(), u"http://h.example/d/x.htm"_s);
}

TEST_F(Feeds, SwitchedOffTheOldFilesStay) {
    write(u"2004/05/06"_s, u"a"_s);
    makeMonth();
    const QByteArray before = feedBytes(u"ATOM"_s);
    setSetting(keys::rss::kRSSOn, u"0"_s);
    write(u"2004/05/06"_s, u"b"_s);
    EXPECT_TRUE(lacks(makeMonth(), u"RSS"_s));
    EXPECT_EQ(feedBytes(u"ATOM"_s), before);
}

TEST_F(Feeds, AreUtf8WithoutMarkAndEndWithoutLineEnd) {
    write(u"2004/05/06"_s, u"題 é"_s);
    makeMonth();
    const QStringList ends{u"\r\n</rss>"_s, u"\r\n</rdf:RDF>"_s, u"\r\n</rss>"_s, u"\r\n</feed>"_s};
    for (qsizetype i = 0; i < kNames.size(); ++i) {
        const QByteArray bytes = feedBytes(kNames[i]);
        EXPECT_TRUE(bytes.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\r\n")) << bytes.toStdString();
        EXPECT_TRUE(feed(kNames[i]).endsWith(ends[i])) << bytes.toStdString();
        EXPECT_TRUE(bytes.contains("<title>題 é</title>"));
        EXPECT_EQ(bytes.count('\n'), bytes.count("\r\n"));
    }
}

TEST_F(Feeds, MissingTextsOfTheChannelAreTheDiarys) {
    write(u"2004/05/06"_s, u"a"_s);
    makeMonth();
    EXPECT_TRUE(feed(u"RSS091"_s)
                    .contains(u"<channel>\r\n<title>日記</title>\r\n<link>http://h.example/d/x.htm</link>\r\n"
                              "<description>日記です。</description>\r\n"_s));
    EXPECT_TRUE(feed(u"RSS100"_s).contains(u"<channel rdf:about=\"\">\r\n"_s));
    EXPECT_TRUE(feed(u"RSS200"_s).contains(u"<managingEditor></managingEditor>\r\n<webMaster></webMaster>\r\n"_s));
    EXPECT_TRUE(feed(u"ATOM"_s).contains(u"<name></name>\r\n<email></email>\r\n"_s));
    setSetting(keys::rss::kTitle, u""_s);
    EXPECT_TRUE(makeFeed(u"RSS091"_s).contains(u"<channel>\r\n<title></title>\r\n"_s));
}

TEST_F(Feeds, TitlesGenresAndChannelTextsAreNotEscaped) {
    store::Entry entry = entryOf(u"2004/05/06"_s, u"R&D <b>"_s);
    entry.genre = u"a & b"_s;
    write(entry);
    setSetting(keys::rss::kTitle, u"Q&A"_s);
    makeMonth();
    for (const QString& name : kNames) {
        EXPECT_EQ(items(feed(name), u"title"_s), QStringList{u"R&D <b>"_s}) << name.toStdString();
        EXPECT_EQ(elements(feed(name), u"title"_s).first(), u"Q&A"_s) << name.toStdString();
    }
    EXPECT_EQ(elements(feed(u"RSS200"_s), u"category"_s), QStringList{u"a & b"_s});
    EXPECT_EQ(elements(feed(u"ATOM"_s), u"dc:subject"_s), QStringList{u"a & b"_s});
}

TEST_F(Feeds, TheTextIsEscapedAndTheContentIsTheEscapedHtml) {
    write(u"2004/05/06"_s, u"a"_s, u"<p>1 &lt; 2 &amp;&amp; <b>x</b></p>"_s);
    makeMonth();
    for (const QString& name : {u"RSS091"_s, u"RSS100"_s, u"RSS200"_s})
        EXPECT_EQ(items(feed(name), u"description"_s), QStringList{u"1 &lt; 2 &amp;&amp; x"_s}) << name.toStdString();
    EXPECT_TRUE(
        feed(u"ATOM"_s).contains(u"<summary mode=\"escaped\" type=\"text/html\">1 &lt; 2 &amp;&amp; x</summary>\r\n"
                                 "<content mode=\"escaped\" type=\"text/html\" xml:lang=\"ja\">&lt;p&gt;1 "
                                 "&amp;lt; 2 &amp;amp;&amp;amp; &lt;b&gt;x&lt;/b&gt;&lt;/p&gt;</content>"_s));
}

TEST_F(Feeds, LineBreaksOfTheTextGo) {
    write(u"2004/05/06"_s, u"a"_s, u"one\r\ntwo<br>three\nfour"_s);
    EXPECT_EQ(items(makeFeed(u"RSS200"_s), u"description"_s), QStringList{u"onetwothreefour"_s});
}

TEST_F(Feeds, AnExcerptIsFiveHundredCharactersBeforeEscapingAndRss2IsWhole) {
    for (const int length : {249, 250, 499, 500, 501, 600}) {
        sql(u"DELETE FROM Contents"_s);
        write(u"2004/05/06"_s, u"a"_s, QString(length, u'あ'));
        makeMonth();
        const QStringList excerpt{QString(qMin(length, 500), u'あ')};
        EXPECT_EQ(items(feed(u"RSS091"_s), u"description"_s), excerpt) << length;
        EXPECT_EQ(items(feed(u"RSS100"_s), u"description"_s), excerpt) << length;
        EXPECT_EQ(items(feed(u"RSS200"_s), u"description"_s), QStringList{QString(length, u'あ')}) << length;
        EXPECT_TRUE(feed(u"ATOM"_s).contains(u'>' + excerpt.first() + u"</summary>"_s)) << length;
    }
    sql(u"DELETE FROM Contents"_s);
    write(u"2004/05/06"_s, u"a"_s, u"12\r\n"_s.repeated(250) + QString(300, u'&'));
    EXPECT_EQ(items(makeFeed(u"RSS091"_s), u"description"_s).first(), u"12"_s.repeated(250));
    sql(u"DELETE FROM Contents"_s);
    write(u"2004/05/06"_s, u"a"_s, QString(600, u'&'));
    EXPECT_EQ(items(makeFeed(u"RSS091"_s), u"description"_s).first(), u"&amp;"_s.repeated(500));
}

TEST_F(Feeds, CharactersBeyondSixteenBitsAreReferences) {
    store::Entry entry = entryOf(u"2004/05/06"_s, u"題😀"_s);
    entry.genre = u"𠮷"_s;
    entry.contents = u"本文😀"_s;
    write(entry);
    makeMonth();
    for (const QString& name : kNames) {
        EXPECT_EQ(items(feed(name), u"title"_s), QStringList{u"題&#128512;"_s}) << name.toStdString();
        EXPECT_TRUE(feed(name).contains(u">本文&#128512;</"_s)) << name.toStdString();
    }
    EXPECT_EQ(elements(feed(u"RSS200"_s), u"category"_s), QStringList{u"&#134071;"_s});
}

TEST_F(Feeds, ACharacterCutInHalfAtTheEndOfAnExcerptGoes) {
    write(u"2004/05/06"_s, u"a"_s, QString(499, u'a') + u"😀b"_s);
    EXPECT_EQ(items(makeFeed(u"RSS091"_s), u"description"_s), QStringList{QString(499, u'a')});
    EXPECT_EQ(items(feed(u"RSS200"_s), u"description"_s), QStringList{QString(499, u'a') + u"&#128512;b"_s});
}

TEST_F(Feeds, ControlCharactersThatXmlForbidsGo) {
    write(u"2004/05/06"_s, u"a\x07\tb"_s, u"c\x1b\x0b\td"_s);
    makeMonth();
    EXPECT_EQ(items(feed(u"RSS091"_s), u"title"_s), QStringList{u"a\tb"_s});
    EXPECT_EQ(items(feed(u"RSS091"_s), u"description"_s), QStringList{u"c\td"_s});
}

TEST_F(Feeds, MissingGenreAndContentsHaveTheirDefaults) {
    store::Entry entry = entryOf(u"2004/05/06"_s, u"a"_s);
    entry.genre = QString();
    entry.contents = QString();
    write(entry);
    makeMonth();
    EXPECT_EQ(elements(feed(u"RSS200"_s), u"category"_s), QStringList{u"一般"_s});
    EXPECT_EQ(elements(feed(u"ATOM"_s), u"dc:subject"_s), QStringList{u"一般"_s});
    EXPECT_EQ(items(feed(u"RSS200"_s), u"description"_s), QStringList{u""_s});
    EXPECT_TRUE(feed(u"ATOM"_s).contains(u"xml:lang=\"ja\"></content>"_s));
}

TEST_F(Feeds, TheTimeOfGenerationIsTheClocksInEnglishAndInJapaneseTime) {
    write(u"2004/05/06"_s, u"a"_s);
    makeMonth();
    EXPECT_EQ(elements(feed(u"RSS091"_s), u"lastBuildDate"_s), QStringList{u"Thursday, 6 May 2004 08:05:09 +0900"_s});
    EXPECT_EQ(elements(feed(u"RSS200"_s), u"lastBuildDate"_s), QStringList{u"Thu, 6 May 2004 08:05:09 +0900"_s});
    EXPECT_EQ(elements(feed(u"ATOM"_s), u"issued"_s), QStringList{u"2004-05-06T08:05:09+09:00"_s});
    EXPECT_EQ(elements(feed(u"ATOM"_s), u"modified"_s).first(), u"2004-05-06T08:05:09+09:00"_s);
}

TEST_F(Feeds, AnItemsDateIsItsPublishTimeInTheSpellingOfEachFeed) {
    const struct {
        QString publishTime;
        QString rss100;
        QString rss200;
        QString atom;
    } cases[] = {
        {u"2003/12/31 23:59:58"_s, u"2003-12-31T23:59:58 +09:00"_s, u"Wed, 31 Dec 2003 23:59:58 +0900"_s,
         u"2003-12-31T23:59:58+09:00"_s},
        {u"2004/5/1 1:02:03"_s, u"2004-05-01T 1:02:03 +09:00"_s, u"Sat, 1 May 2004 01:02:03 +0900"_s,
         u"2004-05-01T 1:02:03+09:00"_s},
        {u"no date"_s, u"no dateTno date +09:00"_s, u"no date +0900"_s, u"no dateTno date+09:00"_s},
        {u""_s, u"T +09:00"_s, u" +0900"_s, u"T+09:00"_s},
    };
    for (const auto& c : cases) {
        sql(u"DELETE FROM Contents"_s);
        writePublished(c.publishTime);
        makeMonth();
        EXPECT_EQ(elements(feed(u"RSS100"_s), u"dc:date"_s), QStringList{c.rss100});
        EXPECT_EQ(elements(feed(u"RSS200"_s), u"pubDate"_s), QStringList{c.rss200});
        EXPECT_EQ(elements(feed(u"ATOM"_s), u"modified"_s).last(), c.atom);
    }
    sql(u"UPDATE Contents SET PublishTime = NULL"_s);
    makeMonth();
    EXPECT_EQ(elements(feed(u"RSS100"_s), u"dc:date"_s), QStringList{u"T +09:00"_s});
    EXPECT_EQ(elements(feed(u"RSS200"_s), u"pubDate"_s), QStringList{u" +0900"_s});
}

TEST(FeedText, EncodesUnitsOneByOne) {
    EXPECT_EQ(site::encodeFeed(u"a\x7fé日"_s), QByteArray("a\x7f\xc3\xa9\xe6\x97\xa5"));
    EXPECT_EQ(site::encodeFeed(u"\x80\x7ff\x800"_s), QByteArray("\xc2\x80\xdf\xbf\xe0\xa0\x80"));
    EXPECT_EQ(site::encodeFeed(u"😀"_s), QByteArray("\xed\xa0\xbd\xed\xb8\x80"));
    EXPECT_EQ(site::encodeFeed({}), QByteArray());
}

TEST(FeedText, EscapesTheAmpersandFirst) {
    EXPECT_EQ(site::XmlEscape(u"a<b>&lt;\"'"_s), u"a&lt;b&gt;&amp;lt;\"'"_s);
}

} // namespace
} // namespace velloria::tests
