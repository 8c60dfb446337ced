#include "site/feeds.h"

#include "site/feed_home.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using site::clsRSSreader;

using Feeds = FeedHome;

TEST_F(Feeds, TenEntriesAreTenItemsAndOfTwelveTheTenNewest) {
    for (int number = 1; number <= 10; ++number)
        write(u"2004/05/%1"_s.arg(number <= 5 ? u"01"_s : u"02"_s), u"entry %1"_s.arg(number));
    makeMonth();
    for (const QString& name : kFeedNames)
        EXPECT_EQ(items(feed(name), u"title"_s).size(), 10) << name.toStdString();
    write(u"2004/05/03"_s, u"entry 11"_s);
    write(u"2004/05/03"_s, u"entry 12"_s);
    makeMonth();
    QStringList newest;
    for (const int number : {12, 11, 10, 9, 8, 7, 6, 5, 4, 3})
        newest += u"entry %1"_s.arg(number);
    for (const QString& name : kFeedNames)
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
    for (const QString& name : kFeedNames)
        EXPECT_EQ(items(feed(name), u"title"_s), QStringList(3, u"may"_s)) << name.toStdString();
}

TEST_F(Feeds, APrivateEntryNeverReachesAFeedNotInThePreviewEither) {
    write(u"2004/05/05"_s, u"public"_s);
    writePrivate(u"2004/05/06"_s, u"secret"_s);
    makePreview();
    for (const QString& name : kFeedNames)
        EXPECT_EQ(items(feed(name), u"title"_s), QStringList{u"public"_s}) << name.toStdString();
}

TEST_F(Feeds, WithoutAPublicEntryTheRunFailsAndTheOldFeedsAreGone) {
    write(u"2004/05/05"_s, u"public"_s);
    makeMonth();
    sql(u"UPDATE Contents SET Private = 1"_s);
    const QString failure = failureOf([&] { makeMonth(); });
    EXPECT_TRUE(failure.contains(u"RSS"_s)) << failure.toStdString();
    for (const QString& name : kFeedNames)
        EXPECT_FALSE(siteHas(u"x_"_s + name + u".xml"_s));
    sql(u"DELETE FROM Contents"_s);
    EXPECT_NE(failureOf([&] { makePreview(); }), u""_s);
}

TEST_F(Feeds, WithoutConverterSettingsFourFilesAreEmptyAndTheLinksStay) {
    ASSERT_TRUE(QFile::remove(session.MyPath + u"HTML2TXT_RSS.ini"_s));
    write(u"2004/05/06"_s, u"a"_s);
    makeMonth();
    for (const QString& name : kFeedNames)
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
    clsRSSreader feeds(run, settings);
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
    for (qsizetype i = 0; i < kFeedNames.size(); ++i) {
        const QByteArray bytes = feedBytes(kFeedNames[i]);
        EXPECT_TRUE(bytes.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\r\n")) << bytes.toStdString();
        EXPECT_TRUE(feed(kFeedNames[i]).endsWith(ends[i])) << bytes.toStdString();
        EXPECT_TRUE(bytes.contains("<title>題 é</title>"));
        EXPECT_EQ(bytes.count('\n'), bytes.count("\r\n"));
    }
}

TEST_F(Feeds, HoldNoUnitThatIsNoCharacterOfXml) {
    write(u"2004/05/01"_s, u"a\uFFFEb\uFFFFc\uFFFDd"_s, u"text \uFFFE\uFFFF\uFFFD end"_s);
    makeMonth();
    for (const QString& name : kFeedNames) {
        const QByteArray bytes = feedBytes(name);
        EXPECT_FALSE(bytes.contains("\xEF\xBF\xBE")) << name.toStdString();
        EXPECT_FALSE(bytes.contains("\xEF\xBF\xBF")) << name.toStdString();
        EXPECT_TRUE(bytes.contains("abc\xEF\xBF\xBD"
                                   "d"))
            << name.toStdString();
        EXPECT_TRUE(bytes.contains("text \xEF\xBF\xBD end")) << name.toStdString();
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

} // namespace
} // namespace velloria::tests
