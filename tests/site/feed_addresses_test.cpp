#include "site/site_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

/// Of three days with one entry each: 2004/05/06, 2004/05/05 (private ones besides) and 2004/05/04.
class FeedAddresses : public SiteHome {
protected:
    FeedAddresses() {
        for (const QString& day : {u"2004/05/04"_s, u"2004/05/05"_s, u"2004/05/06"_s})
            write(day, u"a"_s);
        turnFeedsOn(u"http://h.example/d/x.htm"_s);
    }

    /// The addresses of the items of RSS 2.0, once they are found to be the same in every feed.
    QStringList addresses() {
        makeMonth();
        const QString rss2 = pageText(u"RSS200"_s);
        QStringList found;
        for (const QString& part : rss2.split(u"<guid>"_s).mid(1))
            found += part.left(part.indexOf(u"</guid>"_s));
        for (const QString& address : found) {
            EXPECT_EQ(countOf(rss2, u"<link>"_s + address + u"</link>"_s), 1);
            EXPECT_EQ(countOf(pageText(u"RSS091"_s), u"<link>"_s + address + u"</link>"_s), 1);
            EXPECT_EQ(countOf(pageText(u"RSS100"_s), u"<rdf:li rdf:resource=\""_s + address + u"\" />"_s), 1);
            EXPECT_EQ(countOf(pageText(u"RSS100"_s), u"<item rdf:about=\""_s + address + u"\">"_s), 1);
            EXPECT_EQ(countOf(pageText(u"ATOM"_s), u"<id>"_s + address + u"</id>"_s), 1);
            EXPECT_EQ(countOf(pageText(u"ATOM"_s), u"href=\""_s + address + u"\" title=\"a\"/>"_s), 1);
        }
        return found;
    }
    QString pageText(const QString& name) const {
        return QString::fromUtf8(bytesOf(path(u"site/x_"_s + name + u".xml"_s)));
    }
};

TEST_F(FeedAddresses, OfAnUndividedMonthLeadToTheMonthFile) {
    const QStringList expected{u"http://h.example/d/x.htm#2004/05/06_1"_s, u"http://h.example/d/x.htm#2004/05/05_1"_s,
                               u"http://h.example/d/x.htm#2004/05/04_1"_s};
    EXPECT_EQ(addresses(), expected);
    setSetting(keys::frame::kFrameOn, u"1"_s);
    EXPECT_EQ(addresses(), expected);
}

TEST_F(FeedAddresses, OfADividedMonthLeadToTheMonthFileToo) {
    divide(1, true);
    EXPECT_EQ(addresses().last(), u"http://h.example/d/x.htm#2004/05/04_1"_s);
    divide(1, false);
    EXPECT_EQ(addresses().last(), u"http://h.example/d/x.htm#2004/05/04_1"_s);
}

TEST_F(FeedAddresses, OfADividedMonthInFramesLeadToTheDiaryFile) {
    divide(1, true);
    setSetting(keys::frame::kFrameOn, u"1"_s);
    EXPECT_EQ(addresses(),
              (QStringList{u"http://h.example/d/x_D.htm#2004/05/06_1"_s, u"http://h.example/d/x_D.htm#2004/05/05_1"_s,
                           u"http://h.example/d/x_D.htm#2004/05/04_1"_s}));
}

TEST_F(FeedAddresses, OfDayFilesPointPastThem) {
    divideByDay(true);
    EXPECT_EQ(addresses(), (QStringList{u"http://h.example/d/x.htm#2004/05/06_1"_s,
                                        u"http://h.example/d/x_2004_05_05.htm#2004/05/05_1"_s,
                                        u"http://h.example/d/x_2004_05_04.htm#2004/05/04_1"_s}));
    divideByDay(false);
    EXPECT_EQ(addresses().first(), u"http://h.example/d/x_2004_05_06.htm#2004/05/06_1"_s);
}

TEST_F(FeedAddresses, OfDayFilesInFramesLeadToThem) {
    divideByDay(true);
    setSetting(keys::frame::kFrameOn, u"1"_s);
    EXPECT_EQ(addresses(), (QStringList{u"http://h.example/d/x_D.htm#2004/05/06_1"_s,
                                        u"http://h.example/d/2004_05_05.htm#2004/05/05_1"_s,
                                        u"http://h.example/d/2004_05_04.htm#2004/05/04_1"_s}));
}

TEST_F(FeedAddresses, DayFilesAreForOneDayAPageAlone) {
    divideByDay(true);
    setSetting(keys::divide::kDiaryTerm, u"2"_s);
    EXPECT_EQ(addresses().last(), u"http://h.example/d/x.htm#2004/05/04_1"_s);
    divideByDay(true);
    setSetting(keys::divide::kDiaryDivide, u"0"_s);
    EXPECT_EQ(addresses().last(), u"http://h.example/d/x.htm#2004/05/04_1"_s);
}

TEST_F(FeedAddresses, AnotherValueOfTheDayFilesGivesNumberedPages) {
    divideByDay(true);
    setSetting(keys::divide::kUseFileName2Day, u"2"_s);
    EXPECT_EQ(addresses().at(1), u"http://h.example/d/x_01.htm#2004/05/05_1"_s);
    setSetting(keys::frame::kFrameOn, u"1"_s);
    EXPECT_EQ(addresses().at(1), u"http://h.example/d/x_D_01.htm#2004/05/05_1"_s);
}

TEST_F(FeedAddresses, PagesAreCountedOverPublicDaysAlone) {
    writePrivate(u"2004/05/07"_s, u"secret"_s);
    divideByDay(true);
    EXPECT_EQ(addresses().first(), u"http://h.example/d/x.htm#2004/05/06_1"_s);
    makePreview();
    EXPECT_TRUE(pageText(u"RSS200"_s).contains(u"<guid>http://h.example/d/x.htm#2004/05/06_1</guid>"_s));
}

TEST_F(FeedAddresses, EndInTheNumberOfTheEntry) {
    write(u"2004/05/06"_s, u"a"_s);
    EXPECT_EQ(addresses().mid(0, 2),
              (QStringList{u"http://h.example/d/x.htm#2004/05/06_2"_s, u"http://h.example/d/x.htm#2004/05/06_1"_s}));
}

TEST_F(FeedAddresses, AnAddressWithoutPointOrSlashIsTakenAsItIs) {
    setSetting(keys::rss::kDiaryURL, u"localhost"_s);
    divideByDay(true);
    EXPECT_EQ(addresses().last(), u"localhost_2004_05_04.htm#2004/05/04_1"_s);
    setSetting(keys::frame::kFrameOn, u"1"_s);
    EXPECT_EQ(addresses().last(), u"2004_05_04.htm#2004/05/04_1"_s);
}

TEST_F(FeedAddresses, ACharacterAboveTheFirstPlaneIsAReferenceThereToo) {
    setSetting(keys::rss::kDiaryURL, u"http://😀.example/x.htm"_s);
    setSetting(keys::rss::kHPURL, u"http://😀.example/"_s);
    makeMonth();
    for (const QString& name : {u"RSS091"_s, u"RSS100"_s, u"RSS200"_s, u"ATOM"_s}) {
        EXPECT_TRUE(pageText(name).contains(u"http://&#128512;.example/"_s)) << name.toStdString();
        EXPECT_FALSE(bytesOf(path(u"site/x_"_s + name + u".xml"_s)).contains("\xed\xa0")) << name.toStdString();
    }
}

} // namespace
} // namespace velloria::tests
