#include "site/site_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class EntryPage : public SiteHome {
protected:
    static QString anchor(const QString& day) { return u"<A Name=\""_s + day + u"\"></A>"_s; }
};

TEST_F(EntryPage, EveryPageHasTheAnchorsOfTheWholeMonth) {
    write(u"2004/05/04"_s, u"a"_s);
    write(u"2004/05/05"_s, u"b"_s);
    write(u"2004/05/06"_s, u"c"_s);
    write(u"2004/05/06"_s, u"d"_s);
    divide(1, true);
    makeMonth();
    const QStringList anchors{anchor(u"2004/05/06"_s), anchor(u"2004/05/06"_s), anchor(u"2004/05/05"_s),
                              anchor(u"2004/05/04"_s)};
    for (const QString& page : {u"x.htm"_s, u"x_01.htm"_s, u"x_02.htm"_s})
        EXPECT_EQ(linesFrom(sitePage(page), u"<A Name="_s), anchors) << page.toStdString();
}

TEST_F(EntryPage, TheAnchorStandsAheadOfItsEntry) {
    write(u"2004/05/06"_s, u"a"_s);
    EXPECT_TRUE(hasLines(makeMonth(), {u"<HR>"_s, u""_s, anchor(u"2004/05/06"_s),
                                       u"<H3 ALIGN= STYLE=\"COLOR:;BACKGROUND:\"><A NAME=\"2004/05/06_1\">"
                                       "<SPAN STYLE=\"\">a</SPAN>(2004/05/06)</A></H3>"_s}));
}

TEST_F(EntryPage, EntriesComeNewestDayAndHighestNumberFirst) {
    write(u"2004/05/05"_s, u"a"_s);
    write(u"2004/05/06"_s, u"b"_s);
    write(u"2004/05/06"_s, u"c"_s);
    const QString page = makeMonth();
    const qsizetype at[] = {page.indexOf(u">c<"_s), page.indexOf(u">b<"_s), page.indexOf(u">a<"_s)};
    EXPECT_LT(at[0], at[1]);
    EXPECT_LT(at[1], at[2]);
}

TEST_F(EntryPage, APageHasTheEntriesOfItsDaysAlone) {
    write(u"2004/05/04"_s, u"oldest"_s);
    write(u"2004/05/05"_s, u"middle"_s);
    write(u"2004/05/06"_s, u"newest"_s);
    divide(2, true);
    const QString page = makeMonth();
    EXPECT_TRUE(page.contains(u"newest"_s));
    EXPECT_TRUE(page.contains(u"middle"_s));
    EXPECT_TRUE(lacks(page, u"oldest"_s));
    EXPECT_TRUE(sitePage(u"x_01.htm"_s).contains(u"oldest"_s));
    EXPECT_TRUE(lacks(sitePage(u"x_01.htm"_s), u"middle"_s));
}

TEST_F(EntryPage, ALinkToTheTopFollowsEachEntryAsTheTableSays) {
    const QString toMonth = u"<DIV ALIGN=\"RIGHT\"><A HREF=\"#this_month\">top</A></DIV>"_s;
    const QString toPage = u"<DIV ALIGN=\"RIGHT\"><A HREF=\"#TOP\">top</A></DIV>"_s;
    const QString toFirst = u"<DIV ALIGN=\"RIGHT\"><A HREF=\"./x.htm#TOP\">top of month</A></DIV>"_s;
    const struct {
        bool isDivided;
        QString topLink;
        QString onMonthFile;
        QString onDividedPage;
    } cases[] = {
        {false, u"PageTop"_s, toMonth, u""_s}, {false, u"TopPage"_s, toMonth, u""_s},
        {true, u"PageTop"_s, toPage, toPage},  {true, u""_s, toPage, toPage},
        {true, u"toppage"_s, toPage, toPage},  {true, u"TopPage"_s, toMonth, toFirst},
    };
    write(u"2004/05/05"_s, u"b"_s);
    write(u"2004/05/06"_s, u"a"_s);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.topLink.toStdString());
        divide(1, true);
        setSetting(keys::divide::kDiaryDivide, c.isDivided ? u"1"_s : u"0"_s);
        setSetting(keys::divide::kTopLink, c.topLink);
        EXPECT_EQ(linesFrom(makeMonth(), u"<DIV ALIGN=\"RIGHT\">"_s), QStringList(c.isDivided ? 1 : 2, c.onMonthFile));
        if (c.isDivided) {
            EXPECT_EQ(linesFrom(sitePage(u"x_01.htm"_s), u"<DIV ALIGN=\"RIGHT\">"_s), QStringList{c.onDividedPage});
        }
    }
}

TEST_F(EntryPage, ALinkToTheMonthLeadsToTheDiaryOfFrames) {
    write(u"2004/05/05"_s, u"b"_s);
    write(u"2004/05/06"_s, u"a"_s);
    divide(1, true);
    setSetting(keys::divide::kTopLink, u"TopPage"_s);
    setSetting(keys::frame::kFrameOn, u"1"_s);
    makeMonth();
    EXPECT_TRUE(sitePage(u"x_D_01.htm"_s).contains(u"<A HREF=\"./x_D.htm#TOP\">top of month</A>"_s));
}

TEST_F(EntryPage, PageNumbersHaveTwoDigits) {
    for (int day = 1; day <= 12; ++day)
        write(u"2004/05/%1"_s.arg(day, 2, 10, QChar(u'0')), u"day %1"_s.arg(day));
    divide(1, true);
    makeMonth();
    EXPECT_TRUE(sitePage(u"x_09.htm"_s).contains(u">day 3<"_s));
    EXPECT_TRUE(sitePage(u"x_11.htm"_s).contains(u">day 1<"_s));
    EXPECT_FALSE(siteHas(u"x_12.htm"_s));
}

TEST_F(EntryPage, ADayFileIsNamedAfterTheDayOfItsPage) {
    write(u"2004/05/04"_s, u"oldest"_s);
    write(u"2004/05/05"_s, u"middle"_s);
    write(u"2004/05/06"_s, u"newest"_s);
    divideByDay(false);
    makeMonth();
    EXPECT_TRUE(sitePage(u"2004_05_06.htm"_s).contains(u"newest"_s));
    EXPECT_TRUE(sitePage(u"2004_05_05.htm"_s).contains(u"middle"_s));
    EXPECT_TRUE(sitePage(u"2004_05_04.htm"_s).contains(u"oldest"_s));
}

TEST_F(EntryPage, ADayFileThatTakesTheMonthFilesNameEndsAsTheMonthFile) {
    write(u"2004/05/05"_s, u"older"_s);
    write(u"2004/05/06"_s, u"newest"_s);
    divideByDay(true);
    const QString file = path(u"site/2004_05_05.htm"_s);
    monthPage().MakeHTML(file, u"2004/05"_s, site::PageKind::Current, site::MakeList::No, site::WithPrivate::No);
    const QString page = pageOf(file);
    EXPECT_TRUE(page.startsWith(u"<HTML lang=\"ja\"><HEAD>\r\n"_s));
    EXPECT_TRUE(page.contains(u"older"_s));
    EXPECT_TRUE(page.endsWith(u"By Velloria -->\r\n</BODY>\r\n</HTML>\r\n"_s));
}

TEST_F(EntryPage, NothingIsEscapedAndWhatTheCodePageLacksIsAReference) {
    write(u"2004/05/06"_s, u"<i>R&D</i>"_s, u"1 < 2 é 😀 〜 &#233;"_s);
    const QString page = makeMonth();
    EXPECT_TRUE(page.contains(u"<SPAN STYLE=\"\"><i>R&D</i></SPAN>"_s));
    EXPECT_TRUE(hasLines(page, {u"1 < 2 &#233; &#128512; ～ &#233;"_s}));
}

TEST_F(EntryPage, APrivateEntryStandsInThePreviewAlone) {
    write(u"2004/05/06"_s, u"public"_s);
    writePrivate(u"2004/05/06"_s, u"secret"_s);
    writePrivate(u"2004/05/05"_s, u"secret"_s);
    const QString page = makeMonth();
    EXPECT_TRUE(lacks(page, u"secret"_s));
    EXPECT_EQ(countOf(page, u"<A Name="_s), 1);
    EXPECT_EQ(countOf(makePreview(), u">secret<"_s), 2);
    EXPECT_TRUE(lacks(makeLog(), u"secret"_s));
}

} // namespace
} // namespace velloria::tests
