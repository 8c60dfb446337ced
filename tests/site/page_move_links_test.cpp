#include "site/site_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class PageMoveLinks : public SiteHome {
protected:
    PageMoveLinks() {
        setSetting(keys::page_move_link::kPageMoveOn, u"1"_s);
        setSetting(keys::page_move_link::kSeparetor, u"|"_s);
    }

    void writeDays(int count) {
        for (int day = 1; day <= count; ++day)
            write(u"2004/05/%1"_s.arg(day, 2, 10, QChar(u'0')), u"a"_s);
    }
    /// The lines between the division of the links and its end.
    QStringList links(const QString& name = u"x.htm"_s) const {
        const QString page = sitePage(name);
        const qsizetype start = page.indexOf(u"<div align="_s);
        const qsizetype from = page.indexOf(u"\r\n"_s, start) + 2;
        return start < 0
                   ? QStringList{u"no links"_s}
                   : page.mid(from, page.indexOf(u"</DIV>\r\n"_s, from) - from).split(u"\r\n"_s, Qt::SkipEmptyParts);
    }
};

TEST_F(PageMoveLinks, LeadBackAndForwardThroughThePages) {
    writeDays(4);
    divide(1, true);
    makeMonth();
    EXPECT_EQ(links(), (QStringList{u"<A HREF=\"./x_01.htm\">Next</A>"_s}));
    EXPECT_EQ(links(u"x_01.htm"_s),
              (QStringList{u"<A HREF=\"./x.htm\">Previous</A>"_s, u"|"_s, u"<A HREF=\"./x_02.htm\">Next</A>"_s}));
    EXPECT_EQ(links(u"x_02.htm"_s),
              (QStringList{u"<A HREF=\"./x_01.htm\">Previous</A>"_s, u"|"_s, u"<A HREF=\"./x_03.htm\">Next</A>"_s}));
    EXPECT_EQ(links(u"x_03.htm"_s),
              (QStringList{u"<A HREF=\"./x_02.htm\">Previous</A>"_s, u"|"_s, u"<A HREF=\"./x.htm\">Top</A>"_s}));
}

TEST_F(PageMoveLinks, ASingleDividedPageLeadsBackAndToTheFirst) {
    writeDays(1);
    divide(1, false);
    makeMonth();
    EXPECT_EQ(links(u"x_01.htm"_s),
              (QStringList{u"<A HREF=\"./x.htm\">Previous</A>"_s, u"|"_s, u"<A HREF=\"./x.htm\">Top</A>"_s}));
    EXPECT_EQ(links(), QStringList{u"no links"_s});
}

TEST_F(PageMoveLinks, DayFilesAreLinkedByTheirDays) {
    writeDays(3);
    divideByDay(true);
    makeMonth();
    EXPECT_EQ(links(), (QStringList{u"<A HREF=\"./2004_05_02.htm\">Next</A>"_s}));
    EXPECT_EQ(links(u"2004_05_02.htm"_s),
              (QStringList{u"<A HREF=\"./x.htm\">Previous</A>"_s, u"|"_s, u"<A HREF=\"./2004_05_01.htm\">Next</A>"_s}));
    EXPECT_EQ(links(u"2004_05_01.htm"_s),
              (QStringList{u"<A HREF=\"./2004_05_02.htm\">Previous</A>"_s, u"|"_s, u"<A HREF=\"./x.htm\">Top</A>"_s}));
}

TEST_F(PageMoveLinks, InFramesLeadToTheDiaryFile) {
    writeDays(2);
    divide(1, true);
    setSetting(keys::frame::kFrameOn, u"1"_s);
    makeMonth();
    EXPECT_EQ(links(u"x_D.htm"_s), (QStringList{u"<A HREF=\"./x_D_01.htm\">Next</A>"_s}));
    EXPECT_EQ(links(u"x_D_01.htm"_s),
              (QStringList{u"<A HREF=\"./x_D.htm\">Previous</A>"_s, u"|"_s, u"<A HREF=\"./x_D.htm\">Top</A>"_s}));
}

TEST_F(PageMoveLinks, TheMonthFileKeepsItsOwnEnding) {
    writeDays(2);
    divide(1, true);
    monthPage().MakeHTML(path(u"site/index.html"_s), u"2004/05"_s, site::PageKind::Current, site::MakeList::No,
                         site::WithPrivate::No);
    EXPECT_EQ(links(u"index_01.htm"_s),
              (QStringList{u"<A HREF=\"./index.html\">Previous</A>"_s, u"|"_s, u"<A HREF=\"./index.html\">Top</A>"_s}));
}

TEST_F(PageMoveLinks, AnUndividedMonthLinksToItself) {
    writeDays(3);
    for (const QString& onTop : {u"0"_s, u"1"_s}) {
        // Neither of these counts while the month is not divided.
        setSetting(keys::divide::kDiaryOnTop, onTop);
        setSetting(keys::divide::kDiaryTerm, u"1"_s);
        makeMonth();
        EXPECT_EQ(links(), QStringList{u"<A HREF=\"./x.htm\">Top</A>"_s});
    }
}

TEST_F(PageMoveLinks, AnEmptyMonthLinksToItself) {
    makeMonth();
    EXPECT_EQ(links(), QStringList{u"<A HREF=\"./x.htm\">Top</A>"_s});
    divide(1, true);
    makeMonth();
    EXPECT_EQ(links(), QStringList{u"<A HREF=\"./x.htm\">Top</A>"_s});
}

TEST_F(PageMoveLinks, TheWordsHaveTwoLanguages) {
    writeDays(3);
    divide(1, true);
    const struct {
        QString language;
        QString back;
        QString forward;
        QString toFirst;
    } cases[] = {{u"Japanese"_s, u"戻る"_s, u"次へ"_s, u"先頭へ"_s},
                 {u"English"_s, u"Previous"_s, u"Next"_s, u"Top"_s},
                 {u""_s, u"Previous"_s, u"Next"_s, u"Top"_s}};
    for (const auto& c : cases) {
        setSetting(keys::page_move_link::kLanguage, c.language);
        makeMonth();
        EXPECT_EQ(links(u"x_01.htm"_s), (QStringList{u"<A HREF=\"./x.htm\">"_s + c.back + u"</A>"_s, u"|"_s,
                                                     u"<A HREF=\"./x_02.htm\">"_s + c.forward + u"</A>"_s}));
        EXPECT_EQ(links(u"x_02.htm"_s).last(), u"<A HREF=\"./x.htm\">"_s + c.toFirst + u"</A>"_s);
    }
}

TEST_F(PageMoveLinks, AlignmentIsLeftByDefaultAndTheMarginIsTheLists) {
    setSetting(keys::day_list::kMarginLeft, u"7"_s);
    for (const auto& [value, align] : {std::pair(u""_s, u"Left"_s), {u"Right"_s, u"Right"_s}}) {
        setSetting(keys::page_move_link::kAlign, value);
        EXPECT_TRUE(hasLines(makeMonth(), {u"<div align="_s + align + u" style=margin-left:7pt>"_s}));
    }
}

TEST_F(PageMoveLinks, TheSeparatorIsALineOfItsOwnEvenWhenEmpty) {
    writeDays(2);
    divide(1, true);
    setSetting(keys::page_move_link::kSeparetor, u""_s);
    makeMonth();
    EXPECT_TRUE(hasLines(sitePage(u"x_01.htm"_s), {u"<A HREF=\"./x.htm\">Previous</A>"_s, u""_s,
                                                   u"<A HREF=\"./x.htm\">Top</A>"_s, u"</DIV>"_s}));
    EXPECT_TRUE(hasLines(sitePage(u"x.htm"_s), {u"<div align=Left style=margin-left:0pt>"_s,
                                                u"<A HREF=\"./x_01.htm\">Next</A>"_s, u"</DIV>"_s}));
}

TEST_F(PageMoveLinks, StandBehindTheEntriesAndAheadOfTheTail) {
    writeDays(2);
    divide(1, true);
    makeMonth();
    EXPECT_TRUE(sitePage(u"x_01.htm"_s).endsWith(u"<A HREF=\"./x.htm\">Top</A>\r\n</DIV>\r\n\r\n</BODY></HTML>\r\n"_s));
}

TEST_F(PageMoveLinks, NeedTheirSetting) {
    removeSetting(keys::page_move_link::kPageMoveOn);
    writeDays(2);
    divide(1, true);
    makeMonth();
    EXPECT_EQ(links(), QStringList{u"no links"_s});
    EXPECT_EQ(links(u"x_01.htm"_s), QStringList{u"no links"_s});
}

} // namespace
} // namespace velloria::tests
