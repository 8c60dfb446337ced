#include "site/feed_formats.h"
#include "site/feed_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using FeedItems = FeedHome;

TEST_F(FeedItems, TitlesGenresAndChannelTextsAreNotEscaped) {
    store::Entry entry = entryOf(u"2004/05/06"_s, u"R&D <b>"_s);
    entry.genre = u"a & b"_s;
    write(entry);
    setSetting(keys::rss::kTitle, u"Q&A"_s);
    makeMonth();
    for (const QString& name : kFeedNames) {
        EXPECT_EQ(items(feed(name), u"title"_s), QStringList{u"R&D <b>"_s}) << name.toStdString();
        EXPECT_EQ(elements(feed(name), u"title"_s).first(), u"Q&A"_s) << name.toStdString();
    }
    EXPECT_EQ(elements(feed(u"RSS200"_s), u"category"_s), QStringList{u"a & b"_s});
    EXPECT_EQ(elements(feed(u"ATOM"_s), u"dc:subject"_s), QStringList{u"a & b"_s});
}

TEST_F(FeedItems, TheTextIsEscapedAndTheContentIsTheEscapedHtml) {
    write(u"2004/05/06"_s, u"a"_s, u"<p>1 &lt; 2 &amp;&amp; <b>x</b></p>"_s);
    makeMonth();
    for (const QString& name : {u"RSS091"_s, u"RSS100"_s, u"RSS200"_s})
        EXPECT_EQ(items(feed(name), u"description"_s), QStringList{u"1 &lt; 2 &amp;&amp; x"_s}) << name.toStdString();
    EXPECT_TRUE(
        feed(u"ATOM"_s).contains(u"<summary mode=\"escaped\" type=\"text/html\">1 &lt; 2 &amp;&amp; x</summary>\r\n"
                                 "<content mode=\"escaped\" type=\"text/html\" xml:lang=\"ja\">&lt;p&gt;1 "
                                 "&amp;lt; 2 &amp;amp;&amp;amp; &lt;b&gt;x&lt;/b&gt;&lt;/p&gt;</content>"_s));
}

TEST_F(FeedItems, LineBreaksOfTheTextGo) {
    write(u"2004/05/06"_s, u"a"_s, u"one\r\ntwo<br>three\nfour"_s);
    EXPECT_EQ(items(makeFeed(u"RSS200"_s), u"description"_s), QStringList{u"onetwothreefour"_s});
}

TEST_F(FeedItems, AnExcerptIsFiveHundredCharactersBeforeEscapingAndRss2IsWhole) {
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

TEST_F(FeedItems, CharactersBeyondSixteenBitsAreReferences) {
    store::Entry entry = entryOf(u"2004/05/06"_s, u"題😀"_s);
    entry.genre = u"𠮷"_s;
    entry.contents = u"本文😀"_s;
    write(entry);
    makeMonth();
    for (const QString& name : kFeedNames) {
        EXPECT_EQ(items(feed(name), u"title"_s), QStringList{u"題&#128512;"_s}) << name.toStdString();
        EXPECT_TRUE(feed(name).contains(u">本文&#128512;</"_s)) << name.toStdString();
    }
    EXPECT_EQ(elements(feed(u"RSS200"_s), u"category"_s), QStringList{u"&#134071;"_s});
}

TEST_F(FeedItems, ACharacterCutInHalfAtTheEndOfAnExcerptGoes) {
    write(u"2004/05/06"_s, u"a"_s, QString(499, u'a') + u"😀b"_s);
    EXPECT_EQ(items(makeFeed(u"RSS091"_s), u"description"_s), QStringList{QString(499, u'a')});
    EXPECT_EQ(items(feed(u"RSS200"_s), u"description"_s), QStringList{QString(499, u'a') + u"&#128512;b"_s});
}

TEST_F(FeedItems, ControlCharactersThatXmlForbidsGo) {
    write(u"2004/05/06"_s, u"a\x07\tb"_s, u"c\x1b\x0b\td"_s);
    makeMonth();
    EXPECT_EQ(items(feed(u"RSS091"_s), u"title"_s), QStringList{u"a\tb"_s});
    EXPECT_EQ(items(feed(u"RSS091"_s), u"description"_s), QStringList{u"c\td"_s});
}

TEST_F(FeedItems, MissingGenreAndContentsHaveTheirDefaults) {
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

TEST_F(FeedItems, TheTimeOfGenerationIsTheClocksInEnglishAndInJapaneseTime) {
    write(u"2004/05/06"_s, u"a"_s);
    makeMonth();
    EXPECT_EQ(elements(feed(u"RSS091"_s), u"lastBuildDate"_s), QStringList{u"Thursday, 6 May 2004 08:05:09 +0900"_s});
    EXPECT_EQ(elements(feed(u"RSS200"_s), u"lastBuildDate"_s), QStringList{u"Thu, 6 May 2004 08:05:09 +0900"_s});
    EXPECT_EQ(elements(feed(u"ATOM"_s), u"issued"_s), QStringList{u"2004-05-06T08:05:09+09:00"_s});
    EXPECT_EQ(elements(feed(u"ATOM"_s), u"modified"_s).first(), u"2004-05-06T08:05:09+09:00"_s);
}

TEST_F(FeedItems, TheZoneOfTheMachineChangesNothing) {
    writePublished(u"2004/05/06 07:30:00"_s);
    makeMonth();
    QList<QByteArray> expected;
    for (const QString& name : kFeedNames)
        expected += feedBytes(name);
    const QByteArray zone = qgetenv("TZ");
    for (const char* other : {"America/New_York", "Asia/Tokyo", "UTC"}) {
        qputenv("TZ", other);
        setNow(u"2004/05/06 08:05:09"_s);
        makeMonth();
        for (qsizetype i = 0; i < kFeedNames.size(); ++i)
            EXPECT_EQ(feedBytes(kFeedNames[i]), expected[i]) << other;
    }
    zone.isNull() ? qunsetenv("TZ") : qputenv("TZ", zone);
}

TEST_F(FeedItems, AnItemsDateIsItsPublishTimeInTheSpellingOfEachFeed) {
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
