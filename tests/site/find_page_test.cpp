#include "site/find_page.h"

#include "core/setting.h"
#include "core/site_keys.h"
#include "support/test_home.h"

#include <QFile>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

namespace keys = site::keys;

const QString kHead = u"<HTML lang=\"ja\"><HEAD><TITLE>検索結果</TITLE></HEAD>\r\n"
                      "<BODY TEXT='' BGCOLOR='' background=''>\r\n"
                      "<p align=center><INPUT type=button name=Close value=\"Close Window\">\r\n"
                      "<SCRIPT LANGUAGE=\"VBScript\">\r\nSub Close_OnClick()\r\n"
                      "location.HREF = \"Event:Close\"\r\nEnd Sub\r\n</SCRIPT>\r\n</p>\r\n"_s;
const QString kTop = u"<DIV ALIGN=\"RIGHT\"><A HREF=\"#TOP\">top</A></DIV>"_s;
const QString kEnd = u"</BODY></HTML>\r\n"_s;

QString marked(const QString& word) {
    return u"<span style='font-style:italic;color:RED;background-color:YELLOW'>"_s + word + u"</span>"_s;
}

class FindPage : public TestHome {
protected:
    FindPage() { clearSettings(); }

    QString file() const { return session.DataPath + u"findtmp.htm"_s; }
    QString makePage(const site::Search& search) {
        count = site::MakeFindPage(run, file(), search);
        return pageOf(file());
    }
    QString makePage(const QString& word) { return makePage({word, {}, {}}); }
    QString pageWith(const store::Entry& entry, const QString& word) {
        sql(u"DELETE FROM Contents"_s);
        write(entry);
        return makePage(word);
    }
    static store::Entry entryWith(const QString& contents, const QString& extend = {}) {
        store::Entry entry = entryOf(u"2004/05/06"_s, u"題"_s);
        entry.contents = contents;
        entry.extend = extend;
        return entry;
    }
    /// Keys of the page's entries, in order.
    static QStringList entriesOf(const QString& page) {
        QStringList found;
        for (const QString& part : page.split(u"<A NAME=\""_s).sliced(1))
            found += part.section(u'"', 0, 0);
        return found;
    }

    int count = -1;
};

TEST_F(FindPage, HoldsTheQuestionTheListAndTheEntryInTheNormalForm) {
    setSetting(keys::day_list::kUse, u"1"_s);
    write(entryWith(u"花が咲く"_s));
    EXPECT_EQ(makePage({u"花"_s, {{u"2004/05/01"_s, u"2004/05/31"_s}}, u"一般"_s}),
              kHead +
                  u"<p>キーワード：花</p>\r\n<p>期間：2004/05/01～2004/05/31</p>\r\n"
                  "<p>ジャンル：一般</p><hr>\r\n<a href=\"#2004/05/06_1\">[2004/05/06]</a><br>\r\n</div><hr>\r\n"
                  "<A Name=\"2004/05/06\"></A>\r\n<H3 ALIGN= STYLE=\"COLOR:;BACKGROUND:\"><A "
                  "NAME=\"2004/05/06_1\"><SPAN STYLE=\"\">題</SPAN>"
                  "(2004/05/06)</A></H3>\r\n<DIV STYLE=\"COLOR:;BACKGROUND:\" align=>\r\n"
                  "<!--[Contents]--><br>\r\n"_s +
                  marked(u"花"_s) + u"が咲く\r\n\r\n</DIV>\r\n"_s + kTop + u"\r\n"_s + kEnd);
    EXPECT_EQ(count, 1);
}

TEST_F(FindPage, HoldsTheEntryInTheTableForm) {
    setSetting(keys::contents::kHTMLType, u"1"_s);
    write(entryWith(u"花"_s));
    EXPECT_EQ(makePage(u"花"_s),
              kHead +
                  u"<p>キーワード：花</p>\r\n\r\n<hr>\r\n<A Name=\"2004/05/06\"></A>\r\n<DIV ALIGN=>\r\n"
                  "<TABLE BORDER=0 BGCOLOR=\"\" CELLSPACING=0 BORDERCOLOR= width=100%>\r\n"
                  "<TR><TD ALIGN= BGCOLOR= WIDTH=100%><A NAME=\"2004/05/06_1\"><FONT COLOR=><SPAN STYLE=\"\">題"
                  "</SPAN></A></FONT></TD><TD ALIGN=RIGHT BGCOLOR=><FONT COLOR=>2004/05/06</FONT></TD></TR>\r\n"
                  "<TR><TD COLSPAN=2 BGCOLOR=><FONT COLOR=><!--[Contents]--><br>"_s +
                  marked(u"花"_s) + u"\r\n</FONT></TD></TR>\r\n</TABLE></DIV>\r\n"_s + kTop + u"<BR>\r\n"_s + kEnd);
}

TEST_F(FindPage, TakesEverySettingOfAnEntryButCommentLinks) {
    const std::pair<core::Setting, QString> settings[] = {{keys::body::kTextColor, u"b1"_s},
                                                          {keys::body::kBackColor, u"b2"_s},
                                                          {keys::body::kBackImage, u"b3.gif"_s},
                                                          {keys::contents::kTableBorder, u"3"_s},
                                                          {keys::contents::kTableBGColor, u"c1"_s},
                                                          {keys::contents::kCellspacing, u"4"_s},
                                                          {keys::contents::kTBorderColor, u"c2"_s},
                                                          {keys::contents::kTitleBGColor, u"c3"_s},
                                                          {keys::contents::kTitleFTColor, u"c4"_s},
                                                          {keys::contents::kTitleSpanTag, u"c5"_s},
                                                          {keys::contents::kDayBGColor, u"c6"_s},
                                                          {keys::contents::kDayFTColor, u"c7"_s},
                                                          {keys::contents::kContentsFTColor, u"c8"_s},
                                                          {keys::contents::kContentsBGColor, u"c9"_s},
                                                          {keys::contents::kTableWidth, u"80"_s},
                                                          {keys::contents::kDayContentsAlign, u"c10"_s},
                                                          {keys::general::kDayTitleAlign, u"c11"_s},
                                                          {keys::general::kWeather, u"1"_s},
                                                          {keys::general::kGenre, u"1"_s},
                                                          {keys::halo_scan::kHaloScanOn, u"1"_s}};
    for (const auto& [key, value] : settings)
        setSetting(key, value);
    store::Entry entry = entryWith(u"花"_s);
    entry.weather = u"雨"_s;
    entry.genre = u"旅"_s;
    const QString icon = u"<IMG SRC=\"./DiaryParts/Rainy.gif\">"_s;
    const QString normal = pageWith(entry, u"花"_s);
    EXPECT_TRUE(normal.contains(u"<BODY TEXT='b1' BGCOLOR='b2' background='b3.gif'>\r\n"_s));
    EXPECT_TRUE(normal.contains(u"<H3 ALIGN=c11 STYLE=\"COLOR:c4;BACKGROUND:c3\">[旅]<A NAME=\"2004/05/06_1\">"
                                "<SPAN STYLE=\"c5\">題</SPAN>(2004/05/06)</A>"_s +
                                icon + u"</H3>\r\n<DIV STYLE=\"COLOR:c8;BACKGROUND:c9\" align=c10>\r\n"_s));
    setSetting(keys::contents::kHTMLType, u"1"_s);
    const QString table = pageWith(entry, u"花"_s);
    EXPECT_TRUE(table.contains(
        u"<DIV ALIGN=c10>\r\n<TABLE BORDER=3 BGCOLOR=\"c1\" CELLSPACING=4 BORDERCOLOR=c2 width=80%>\r\n"
        "<TR><TD ALIGN=c11 BGCOLOR=c3 WIDTH=100%><A NAME=\"2004/05/06_1\"><FONT COLOR=c4><SPAN STYLE=\"c5\">題</SPAN>"
        "</A></FONT></TD><TD ALIGN=RIGHT BGCOLOR=c6><FONT COLOR=c7><NOBR>[旅]</NOBR></FONT></TD><TD ALIGN=RIGHT "
        "BGCOLOR=c6><FONT COLOR=c7>2004/05/06</FONT></TD><TD width=16pt BGCOLOR=c6>"_s +
        icon + u"</TD></TR>\r\n<TR><TD COLSPAN=4 BGCOLOR=c9><FONT COLOR=c8><!--[Contents]--><br>"_s));
    EXPECT_FALSE((normal + table).contains(u"HaloScan"_s));
}

TEST_F(FindPage, EachWeatherWordHasAPictureAndAnUnknownOneTheSun) {
    const QString cases[][2] = {{u"晴"_s, u"Shinny.gif"_s},   {u"曇"_s, u"Cloudy.gif"_s},  {u"雨"_s, u"Rainy.gif"_s},
                                {u"雪"_s, u"Snowy.gif"_s},    {u"雷"_s, u"Thunder.gif"_s}, {u"暴風"_s, u"Shinny.gif"_s},
                                {u"晴れ"_s, u"Shinny.gif"_s}, {u""_s, u"Shinny.gif"_s},    {u"-"_s, QString()},
                                {QString(), QString()}};
    setSetting(keys::general::kWeather, u"1"_s);
    for (const auto& [word, icon] : cases) {
        store::Entry entry = entryWith(u"花"_s);
        entry.weather = word;
        for (const QString& form : {u"0"_s, u"1"_s}) {
            setSetting(keys::contents::kHTMLType, form);
            const QString page = pageWith(entry, u"花"_s);
            EXPECT_EQ(page.contains(u"<IMG SRC=\"./DiaryParts/"_s), !icon.isNull()) << word.toStdString();
            EXPECT_EQ(page.contains(u"<IMG SRC=\"./DiaryParts/"_s + icon + u"\">"_s), !icon.isNull())
                << word.toStdString();
        }
    }
    removeSetting(keys::general::kWeather);
    EXPECT_FALSE(makePage(u"花"_s).contains(u"<IMG"_s));
}

TEST_F(FindPage, PutsTheLineBreakInFrontAndNothingBetweenTheTexts) {
    const QString body = pageWith(entryWith(u"花"_s, u"続き"_s), u"花"_s);
    EXPECT_TRUE(body.contains(u"<!--[Contents]--><br>\r\n\r\n<br>"_s + marked(u"花"_s) + u"続き\r\n\r\n</DIV>"_s));
    EXPECT_TRUE(pageWith(entryWith(u"花"_s, u""_s), u"花"_s)
                    .contains(u"<!--[Contents]--><br>\r\n\r\n<br>"_s + marked(u"花"_s) + u"\r\n\r\n</DIV>"_s));
    EXPECT_FALSE(body.contains(u"<!--[extend]-->"_s));
    setSetting(keys::contents::kHTMLType, u"1"_s);
    EXPECT_TRUE(pageWith(entryWith(u"花"_s, u"続き"_s), u"花"_s)
                    .contains(u"<!--[Contents]--><br>\r\n<br>"_s + marked(u"花"_s) + u"続き\r\n</FONT></TD></TR>"_s));
}

TEST_F(FindPage, ShowsTheExtensionThatItDoesNotSearch) {
    write(entryWith(u"text"_s, u"花"_s));
    makePage(u"花"_s);
    EXPECT_EQ(count, 0);
    EXPECT_TRUE(pageWith(entryWith(u"花"_s, u"花"_s), u"花"_s).contains(marked(u"花"_s) + marked(u"花"_s)));
    EXPECT_EQ(count, 1);
}

TEST_F(FindPage, AWordOfATitleAloneIsAHitWithoutAMark) {
    write(u"2004/05/06"_s, u"花見"_s, u"text"_s);
    const QString page = makePage(u"花"_s);
    EXPECT_EQ(count, 1);
    EXPECT_TRUE(page.contains(u"<SPAN STYLE=\"\">花見</SPAN>"_s));
    EXPECT_FALSE(page.contains(u"<span"_s));
}

TEST_F(FindPage, SearchesWithoutRegardToCaseAndMarksWithIt) {
    const QString page = pageWith(entryWith(u"House house ｈouse"_s), u"house"_s);
    EXPECT_TRUE(page.contains(u"House "_s + marked(u"house"_s) + u" ｈouse\r\n"_s));
    pageWith(entryWith(u"カマクラ"_s), u"かまくら"_s);
    EXPECT_EQ(count, 1);
}

TEST_F(FindPage, MarksWithinTagsAsWell) {
    EXPECT_TRUE(pageWith(entryWith(u"<a href=\"x\">y</a>"_s), u"a"_s)
                    .contains(u"<"_s + marked(u"a"_s) + u" href=\"x\">y</"_s + marked(u"a"_s) + u">"_s));
}

TEST_F(FindPage, LooksForPicturesOfTheTextAmongThoseOfTheLogs) {
    setSetting(keys::general::kWeather, u"1"_s);
    store::Entry entry =
        entryWith(u"花<img src=\"./DiaryParts/a.jpg\">"_s, u"<img src=\"DiaryParts/b.jpg\">/DiaryParts/"_s);
    entry.weather = u"晴"_s;
    const QString page = pageWith(entry, u"花"_s);
    EXPECT_TRUE(page.contains(u"<img src=\"./DiaryLog/DiaryParts/a.jpg\"><img src=\"DiaryParts/b.jpg\">"
                              "/DiaryLog/DiaryParts/"_s));
    EXPECT_TRUE(page.contains(u"<IMG SRC=\"./DiaryParts/Shinny.gif\">"_s));
}

TEST_F(FindPage, TurnsThePathOfAMarkedWordLast) {
    EXPECT_TRUE(
        pageWith(entryWith(u"./DiaryParts/a.jpg"_s), u"/DiaryParts"_s).contains(marked(u"/DiaryLog/DiaryParts"_s)));
}

TEST_F(FindPage, MissingTextsAreEmpty) {
    sql(u"INSERT INTO Contents (Day, Number, Title) VALUES ('2004/05/06', 1, '花')"_s);
    sql(u"INSERT INTO Contents (Day, Number, Contents) VALUES ('2004/05/05', 1, '花')"_s);
    setSetting(keys::general::kGenre, u"1"_s);
    setSetting(keys::general::kWeather, u"1"_s);
    setSetting(keys::day_list::kUse, u"1"_s);
    setSetting(keys::day_list::kAddTitle, u"1"_s);
    const QString page = makePage(u"花"_s);
    EXPECT_EQ(count, 2);
    EXPECT_TRUE(page.contains(u"<!--[Contents]--><br>\r\n\r\n\r\n</DIV>\r\n"_s));
    EXPECT_TRUE(page.contains(u"[2004/05/06]花</a><br>\r\n<a href=\"#2004/05/05_1\">[2004/05/05]</a><br>\r\n"_s));
    EXPECT_FALSE(page.contains(u"<IMG"_s));
}

TEST_F(FindPage, ComesNewestDayFirstAndLowestNumberFirst) {
    for (const QString& day : {u"2003/01/01"_s, u"2004/05/06"_s, u"2004/05/06"_s, u"2004/12/31"_s})
        write(day, u"花"_s);
    EXPECT_EQ(entriesOf(makePage(u"花"_s)),
              (QStringList{u"2004/12/31_1"_s, u"2004/05/06_1"_s, u"2004/05/06_2"_s, u"2003/01/01_1"_s}));
    EXPECT_EQ(count, 4);
}

TEST_F(FindPage, ShowsPrivateEntries) {
    store::Entry entry = entryWith(u"花"_s);
    entry.isPrivate = true;
    pageWith(entry, u"花"_s);
    EXPECT_EQ(count, 1);
}

TEST_F(FindPage, APeriodHasBothItsEnds) {
    setSetting(keys::day_list::kUse, u"1"_s);
    for (const QString& day : {u"2004/05/05"_s, u"2004/05/06"_s, u"2004/05/07"_s, u"2004/05/08"_s})
        write(day, u"花"_s);
    const QString page = makePage({u"花"_s, {{u"2004/05/06"_s, u"2004/05/07"_s}}, {}});
    EXPECT_EQ(entriesOf(page), (QStringList{u"2004/05/07_1"_s, u"2004/05/06_1"_s}));
    EXPECT_EQ(page.count(u"<a href=\"#"_s), 2);
    EXPECT_EQ(count, 2);
}

TEST_F(FindPage, WithoutAHitSaysSoWhereTheListIsOn) {
    write(u"2004/05/06"_s, u"花"_s);
    const site::Search search{u"花"_s, {{u"2003/01/01"_s, u"2003/12/31"_s}}, {}};
    const QString question = kHead + u"<p>キーワード：花</p>\r\n<p>期間：2003/01/01～2003/12/31</p>\r\n<hr>\r\n"_s;
    EXPECT_EQ(makePage(search), question + kEnd);
    setSetting(keys::day_list::kUse, u"1"_s);
    EXPECT_EQ(makePage(search), question + u"検索結果0件。\r\n</div><hr>\r\n"_s + kEnd);
    EXPECT_EQ(count, 0);
}

TEST_F(FindPage, AGenreIsAPatternAndAMissingOneMatchesNothing) {
    const QString genres[] = {u"旅"_s, u"旅行"_s, u""_s, QString()};
    for (const QString& genre : genres) {
        store::Entry entry = entryOf(u"2004/05/06"_s, u"花"_s);
        entry.genre = genre;
        write(entry);
    }
    const auto hits = [&](const std::optional<QString>& genre) {
        makePage({u"花"_s, {}, genre});
        return count;
    };
    EXPECT_EQ(hits(std::nullopt), 4);
    EXPECT_EQ(hits(u"旅"_s), 1);
    EXPECT_EQ(hits(u"旅%"_s), 2);
    EXPECT_EQ(hits(u"%"_s), 3);
    EXPECT_EQ(hits(u""_s), 1);
    EXPECT_EQ(hits(QString()), 1);
}

TEST_F(FindPage, WildcardsOfTheWordStand) {
    write(u"2004/05/06"_s, u"花見"_s, u"100%"_s);
    write(u"2004/05/07"_s, u"x"_s, u"y"_s);
    const QString page = makePage(u"%"_s);
    EXPECT_EQ(count, 2);
    EXPECT_TRUE(page.contains(u"100"_s + marked(u"%"_s)));
    makePage(u"花_"_s);
    EXPECT_EQ(count, 1);
    makePage(u"[花雪]"_s);
    EXPECT_EQ(count, 1);
}

TEST_F(FindPage, AWordWithADoubleQuoteFailsAndLeavesTheOldPage) {
    makePage(u"花"_s);
    const QByteArray before = bytesOf(file());
    for (const site::Search& search :
         {site::Search{u"a\"b"_s, {}, {}}, site::Search{u"a"_s, {}, u"\""_s}, site::Search{u"["_s, {}, {}}}) {
        EXPECT_NE(failureOf([&] { makePage(search); }), QString());
        EXPECT_EQ(bytesOf(file()), before);
    }
}

TEST_F(FindPage, IsInTheCodePageWithReferences) {
    setSetting(keys::day_list::kUse, u"1"_s);
    setSetting(keys::day_list::kAddTitle, u"1"_s);
    write(u"2004/05/06"_s, u"花é"_s, u"花😀"_s);
    makePage(u"花"_s);
    const QByteArray bytes = bytesOf(file());
    EXPECT_TRUE(bytes.contains("<A NAME=\"2004/05/06_1\"><SPAN STYLE=\"\">\x89\xd4&#233;</SPAN>"));
    EXPECT_TRUE(bytes.contains("[2004/05/06]\x89\xd4&#233;</a><br>\r\n"));
    EXPECT_TRUE(bytes.contains("</span>&#128512;\r\n"));
}

TEST_F(FindPage, IsWholeForManyAndLargeEntries) {
    setSetting(keys::day_list::kUse, u"1"_s);
    std::vector<store::Entry> entries;
    const QString large(40000, u'字');
    for (int i = 0; i < 60; ++i) {
        store::Entry entry = entryOf(u"2004/05/%1"_s.arg(i % 28 + 1, 2, 10, QChar(u'0')), u"花"_s);
        entry.number = 0;
        entry.contents = i % 7 == 0 ? large : u"花 %1."_s.arg(i);
        entries.push_back(entry);
    }
    diary().saveEntries(entries, store::PublishTime::Now, {});
    const QString page = makePage(u"花"_s);
    EXPECT_EQ(count, 60);
    EXPECT_EQ(entriesOf(page).size(), 60);
    EXPECT_EQ(page.count(u"<a href=\"#2004/05/"_s), 60);
    EXPECT_EQ(page.count(large), 9);
    for (int i = 0; i < 60; ++i)
        EXPECT_EQ(page.count(marked(u"花"_s) + u" %1."_s.arg(i)), i % 7 == 0 ? 0 : 1) << i;
    EXPECT_TRUE(page.endsWith(kTop + u"\r\n"_s + kEnd));
}

class SearchFormCheck : public TestHome {
protected:
    SearchFormCheck() { desk.events = {}; }

    std::optional<site::Search> check(const site::SearchForm& form) { return site::checkSearch(run, form); }
    static site::SearchForm termed(const QString& start, const QString& end) {
        return {u"花"_s, {{start, end}}, false, {}};
    }
};

TEST_F(SearchFormCheck, RefusesInOrder) {
    site::SearchForm form{u""_s, {{u"x"_s, u"x"_s}}, true, {}};
    const auto mend = [&](int step) {
        if (step == 1)
            form.word = u"花"_s;
        if (step == 2)
            form.term->start = u"2004/05/07"_s;
        if (step == 3)
            form.term->end = u"2004/05/06"_s;
        if (step == 4)
            form.term->end = u"2004/05/07"_s;
    };
    for (int step = 0; step < 5; ++step) {
        mend(step);
        EXPECT_FALSE(check(form));
    }
    EXPECT_EQ(boxes(),
              (QStringList{u"critical: 検索語が設定されていません。"_s,
                           u"critical: 開始期間が正しく設定されていません。\r\n(YYYY/MM/DD形式で入力して下さい)"_s,
                           u"critical: 終了期間が正しく設定されていません。\r\n(YYYY/MM/DD形式で入力して下さい)"_s,
                           u"critical: 開始と終了期間が逆転しています。\r\n(正しい期間を入力し直して下さい)"_s,
                           u"critical: ジャンルが選択されていません。\r\n(ジャンルを選択して下さい)"_s}));
    form.genre = u"旅"_s;
    const auto search = check(form);
    ASSERT_TRUE(search);
    EXPECT_EQ(search->word + search->period->start + search->period->end + *search->genre,
              u"花2004/05/072004/05/07旅"_s);
}

TEST_F(SearchFormCheck, TakesNothingThatIsSwitchedOff) {
    const auto search = check({u"花"_s, {}, false, u"旅"_s});
    ASSERT_TRUE(search);
    EXPECT_FALSE(search->period);
    EXPECT_FALSE(search->genre);
}

TEST_F(SearchFormCheck, MakesDayKeysOfDates) {
    for (const QString& text :
         {u"2004/1/5"_s, u"04/1/5"_s, u"2004-01-05"_s, u"２００４/１/５"_s, u"平成16年1月5日"_s, u"2004/1/5 12:30"_s}) {
        const auto search = check(termed(text, text));
        ASSERT_TRUE(search) << text.toStdString();
        EXPECT_EQ(search->period->start, u"2004/01/05"_s) << text.toStdString();
        EXPECT_EQ(search->period->end, u"2004/01/05"_s) << text.toStdString();
    }
}

TEST_F(SearchFormCheck, ATimeAloneIsNoDay) {
    for (const QString& text : {u"12:30"_s, u"0:00"_s, u"12:30:45"_s, u""_s, u" "_s, u"2004"_s, u"2004/02/30/1"_s}) {
        EXPECT_FALSE(check(termed(text, u"2004/05/06"_s))) << text.toStdString();
        EXPECT_FALSE(check(termed(u"1800/01/01"_s, text))) << text.toStdString();
    }
    // The day that a time alone is one of is a day all the same.
    EXPECT_TRUE(check(termed(u"1899/12/30"_s, u"1899/12/30"_s)));
}

TEST_F(FindPage, MarksEveryHitOfALongTextWithoutItsLengthInMemory) {
    constexpr int kHits = 400'000;
    const QString page = pageWith(entryWith(u"b"_s + QString(kHits, u'a') + u"c/DiaryParts/x.gif"_s, u"aZ"_s), u"a"_s);
    EXPECT_EQ(page.count(marked(u"a"_s)), kHits + 3);
    EXPECT_TRUE(page.contains(u"<br>b"_s + marked(u"a"_s)));
    EXPECT_TRUE(page.contains(marked(u"a"_s) + u"c/Di"_s + marked(u"a"_s) + u"ryP"_s + marked(u"a"_s) + u"rts/x.gif"_s +
                              marked(u"a"_s) + u"Z"_s))
        << "an address that a mark has split is none any more";
    EXPECT_TRUE(page.endsWith(kEnd));
}

TEST_F(FindPage, AnAddressBetweenHitsAndInAHitLeadsToTheLogs) {
    EXPECT_TRUE(pageWith(entryWith(u"x/DiaryParts/yx"_s), u"x"_s)
                    .contains(marked(u"x"_s) + u"/DiaryLog/DiaryParts/y"_s + marked(u"x"_s)));
    EXPECT_TRUE(pageWith(entryWith(u"x/DiaryParts/y"_s), u"/DiaryParts"_s)
                    .contains(u"x"_s + marked(u"/DiaryLog/DiaryParts"_s) + u"/y"_s));
}

TEST_F(FindPage, OfADiaryThatOthersMayNotReadIsForItsOwnerAlone) {
    write(entryWith(u"花"_s));
    makePage(u"花"_s);
    EXPECT_EQ(modeOf(file()) & 0077, 0044U) << "the site lies in the data folder";
    useSite();
    ASSERT_EQ(::chmod(QFile::encodeName(session.databaseFile()).constData(), 0600), 0);
    makePage(u"花"_s);
    EXPECT_EQ(modeOf(file()), 0600U);
}

class FindCommand : public TestHome {
protected:
    FindCommand() {
        write(u"2004/05/06"_s, u"題"_s, u"花"_s);
        desk.events = {};
    }

    std::optional<site::Found> find(const QString& word) {
        return site::findCommand(run, {word, {}, false, {}}, [this](const QString& caption, const QString& file) {
            desk.navigate(file);
            shown += caption;
        });
    }

    QStringList shown;
};

TEST_F(FindCommand, ShowsThePageAndTellsHowManyThereAre) {
    const std::optional<site::Found> found = find(u"花"_s);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->count, 1);
    EXPECT_EQ(found->file, session.DataPath + u"findtmp.htm"_s);
    EXPECT_TRUE(pageOf(found->file).contains(marked(u"花"_s)));
    EXPECT_EQ(shown, QStringList{u"検索結果(1件見つかりました)"_s});
    EXPECT_EQ(told(),
              (QStringList{u"navigate: "_s + found->file, u"status: 検索結果(キーワード花で1件見つかりました)"_s}));
    EXPECT_EQ(turns(), (QStringList{u"hourglass"_s, u"default"_s}));
}

TEST_F(FindCommand, FindsNothingAndShowsThat) {
    EXPECT_EQ(find(u"月%1"_s)->count, 0);
    EXPECT_EQ(shown, QStringList{u"検索結果(0件見つかりました)"_s});
    EXPECT_EQ(lastStatus(), u"検索結果(キーワード月%1で0件見つかりました)"_s);
}

TEST_F(FindCommand, ShowsNothingOfAFormThatIsRefused) {
    EXPECT_FALSE(find(u""_s));
    EXPECT_EQ(boxes(), QStringList{u"critical: 検索語が設定されていません。"_s});
    EXPECT_EQ(told().size(), 1);
    EXPECT_EQ(shown, QStringList());
    EXPECT_FALSE(exists(session.DataPath + u"findtmp.htm"_s));
}

} // namespace
} // namespace velloria::tests
