#include "site/site_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class DayList : public SiteHome {
protected:
    DayList() {
        setSetting(keys::day_list::kUse, u"1"_s);
        setSetting(keys::general::kGenre, u"1"_s);
    }

    void writeThree() {
        write(u"2004/05/05"_s, u"first"_s);
        write(u"2004/05/06"_s, u"second"_s);
        write(u"2004/05/06"_s, u"third"_s);
    }
    /// The lines of the list, without its division.
    static QStringList listOf(const QString& page) {
        const qsizetype start = page.indexOf(u"<div style=margin-left:"_s);
        const qsizetype from = page.indexOf(u"\r\n"_s, start) + 2;
        return start < 0 ? QStringList{u"no list"_s}
                         : page.mid(from, page.indexOf(u"\r\n</div>"_s) - from).split(u"\r\n"_s);
    }
    /// What stands in front of the day in the rows of a list.
    QStringList links() { return linksOf(makeMonth()); }
    static QStringList linksOf(const QString& page) {
        QStringList links;
        for (const QString& line : listOf(page))
            links += line.left(line.indexOf(u"\">"_s) + 2).remove(u"<TR><TD>"_s);
        return links;
    }
};

TEST_F(DayList, ListsEntriesSinglyNewestFirst) {
    writeThree();
    EXPECT_EQ(listOf(makeMonth()), (QStringList{u"<a href=\"#2004/05/06_2\">2004/05/06</a>　[一般]<br>"_s,
                                                u"<a href=\"#2004/05/06_1\">2004/05/06</a>　[一般]<br>"_s,
                                                u"<a href=\"#2004/05/05_1\">2004/05/05</a>　[一般]<br>"_s}));
}

TEST_F(DayList, AddsTitles) {
    write(u"2004/05/06"_s, u"<b>題</b>"_s);
    setSetting(keys::day_list::kAddTitle, u"1"_s);
    EXPECT_EQ(listOf(makeMonth()), QStringList{u"<a href=\"#2004/05/06_1\">2004/05/06</a>　[一般]　<b>題</b><br>"_s});
}

TEST_F(DayList, AsATableHasOneRowAnEntry) {
    write(u"2004/05/06"_s, u"題"_s);
    setSetting(keys::day_list::kType, u"Table"_s);
    EXPECT_EQ(listOf(makeMonth()),
              (QStringList{u"<TABLE>"_s, u"<TR><TD><a href=\"#2004/05/06_1\">2004/05/06</a></TD><TD>[一般]</TD></TR>"_s,
                           u"</TABLE>"_s}));
    setSetting(keys::day_list::kAddTitle, u"1"_s);
    EXPECT_EQ(listOf(makeMonth()),
              (QStringList{u"<TABLE>"_s,
                           u"<TR><TD><a href=\"#2004/05/06_1\">2004/05/06</a></TD><TD>[一般]　</TD><TD>題</TD></TR>"_s,
                           u"</TABLE>"_s}));
}

TEST_F(DayList, AMissingGenreHasNoBracketsAndAnEmptyOneHas) {
    store::Entry entry = entryOf(u"2004/05/05"_s, u"a"_s);
    entry.genre = QString();
    write(entry);
    entry.day = u"2004/05/06"_s;
    entry.genre = u""_s;
    write(entry);
    EXPECT_EQ(listOf(makeMonth()), (QStringList{u"<a href=\"#2004/05/06_1\">2004/05/06</a>　[]<br>"_s,
                                                u"<a href=\"#2004/05/05_1\">2004/05/05</a>　<br>"_s}));
    setSetting(keys::day_list::kAddTitle, u"1"_s);
    EXPECT_EQ(listOf(makeMonth()), (QStringList{u"<a href=\"#2004/05/06_1\">2004/05/06</a>　[]　a<br>"_s,
                                                u"<a href=\"#2004/05/05_1\">2004/05/05</a>　a<br>"_s}));
    setSetting(keys::general::kGenre, u"0"_s);
    EXPECT_EQ(listOf(makeMonth()).first(), u"<a href=\"#2004/05/06_1\">2004/05/06</a>　a<br>"_s);
}

TEST_F(DayList, AnEmptyTypeIsAList) {
    write(u"2004/05/06"_s, u"題"_s);
    const QString list = makeMonth();
    setSetting(keys::day_list::kType, u"List"_s);
    EXPECT_EQ(makeMonth(), list);
}

TEST_F(DayList, AnUnknownTypeHasNoRows) {
    write(u"2004/05/06"_s, u"題"_s);
    setSetting(keys::day_list::kType, u"table"_s);
    EXPECT_TRUE(hasLines(makeMonth(), {u"<div style=margin-left:0pt>"_s, u"</div>"_s}));
}

TEST_F(DayList, AnEmptyMonthSaysSoBehindTheList) {
    setSetting(keys::day_list::kMarginLeft, u"8"_s);
    EXPECT_TRUE(hasLines(makeMonth(), {u"<div style=margin-left:8pt>"_s, u"-今月はまだ日記はありません-"_s, u"</div>"_s,
                                       u""_s, u"<HR>"_s}));
    setSetting(keys::day_list::kType, u"Table"_s);
    EXPECT_TRUE(hasLines(makeMonth(), {u"<div style=margin-left:8pt>"_s, u"<TABLE>"_s, u"</TABLE>"_s,
                                       u"-今月はまだ日記はありません-"_s, u"</div>"_s, u""_s, u"<HR>"_s}));
}

TEST_F(DayList, SwitchedOffPrintsNothingOfItself) {
    removeSetting(keys::day_list::kUse);
    EXPECT_TRUE(hasLines(makeMonth(),
                         {u"<a name=this_month></a><H3 align=><a name=TOP>2004年5月分</a></H3>"_s, u""_s, u"<HR>"_s}));
    EXPECT_TRUE(lacks(makeMonth(), u"-今月は"_s));
}

TEST_F(DayList, AnyValueButZeroSwitchesItOn) {
    setSetting(keys::day_list::kUse, u"2"_s);
    EXPECT_TRUE(hasLines(makeMonth(), {u"-今月はまだ日記はありません-"_s}));
}

TEST_F(DayList, LinksFollowTheDivision) {
    writeThree();
    const QString newest[] = {u"<a href=\"#2004/05/06_2\">"_s, u"<a href=\"#2004/05/06_1\">"_s};
    EXPECT_EQ(links(), (QStringList{newest[0], newest[1], u"<a href=\"#2004/05/05_1\">"_s}));
    divide(1, true);
    EXPECT_EQ(links(), (QStringList{newest[0], newest[1], u"<a href=\"./x_01.htm#2004/05/05_1\">"_s}));
    divide(1, false);
    EXPECT_EQ(links(),
              (QStringList{u"<a href=\"./x_01.htm#2004/05/06_2\">"_s, u"<a href=\"./x_01.htm#2004/05/06_1\">"_s,
                           u"<a href=\"./x_02.htm#2004/05/05_1\">"_s}));
    divideByDay(true);
    EXPECT_EQ(links(), (QStringList{newest[0], newest[1], u"<a href=\"./2004_05_05.htm\">"_s}));
    setSetting(keys::day_list::kAddTitle, u"1"_s);
    EXPECT_EQ(links(), (QStringList{newest[0], newest[1], u"<a href=\"./2004_05_05.htm#2004/05/05_1\">"_s}));
}

TEST_F(DayList, LinksOfATableFollowTheDivisionToo) {
    writeThree();
    setSetting(keys::day_list::kType, u"Table"_s);
    divideByDay(false);
    EXPECT_TRUE(
        hasLines(makeMonth(), {u"<TR><TD><a href=\"./2004_05_05.htm\">2004/05/05</a></TD><TD>[一般]</TD></TR>"_s}));
    setSetting(keys::day_list::kAddTitle, u"1"_s);
    EXPECT_TRUE(hasLines(makeMonth(), {u"<TR><TD><a href=\"./2004_05_05.htm#2004/05/05_1\">2004/05/05</a></TD>"
                                       "<TD>[一般]　</TD><TD>first</TD></TR>"_s}));
}

TEST_F(DayList, DayFilesAreForOneDayAPageAlone) {
    writeThree();
    divideByDay(false);
    setSetting(keys::divide::kDiaryTerm, u"2"_s);
    EXPECT_EQ(links().last(), u"<a href=\"./x_01.htm#2004/05/05_1\">"_s);
}

TEST_F(DayList, InFramesLinksLeadToThePagesOfTheDiary) {
    writeThree();
    divide(1, true);
    setSetting(keys::frame::kFrameOn, u"1"_s);
    makeMonth();
    EXPECT_EQ(linksOf(sitePage(u"x_D.htm"_s)).last(), u"<a href=\"./x_D_01.htm#2004/05/05_1\">"_s);
    EXPECT_EQ(linksOf(sitePage(u"x_D.htm"_s)).first(), u"<a href=\"#2004/05/06_2\">"_s);
}

TEST_F(DayList, APrivateEntryIsListedInThePreviewAlone) {
    write(u"2004/05/06"_s, u"a"_s);
    writePrivate(u"2004/05/06"_s, u"b"_s);
    EXPECT_EQ(links(), QStringList{u"<a href=\"#2004/05/06_1\">"_s});
    EXPECT_EQ(linksOf(makePreview()), (QStringList{u"<a href=\"#2004/05/06_2\">"_s, u"<a href=\"#2004/05/06_1\">"_s}));
}

} // namespace
} // namespace velloria::tests
