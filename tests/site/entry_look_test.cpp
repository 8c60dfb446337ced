#include "site/site_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class EntryLook : public SiteHome {
protected:
    EntryLook() {
        setSetting(keys::general::kWeather, u"1"_s);
        setSetting(keys::general::kGenre, u"1"_s);
    }

    void useTableForm() { setSetting(keys::contents::kHTMLType, u"1"_s); }
    void turnCommentsOn() { setSetting(keys::halo_scan::kHaloScanOn, u"1"_s); }

    /// The month page of this one entry.
    QString pageWith(const store::Entry& entry) {
        sql(u"DELETE FROM Contents"_s);
        write(entry);
        return makeMonth();
    }
    QString pageWith(const std::function<void(store::Entry&)>& change) {
        store::Entry entry = entryOf(u"2004/05/06"_s, u"題"_s);
        entry.contents = u"本文"_s;
        change(entry);
        return pageWith(entry);
    }
    /// The one line that holds `part`.
    static QString lineWith(const QString& page, const QString& part) {
        const QStringList lines = page.split(u"\r\n"_s).filter(part);
        return lines.size() == 1 ? lines.first() : u"%1 lines with "_s.arg(lines.size()) + part;
    }
};

TEST_F(EntryLook, EachWeatherWordHasItsPicture) {
    const struct {
        QString word;
        QString file;
    } cases[] = {
        {u"晴"_s, u"Shinny.gif"_s},  {u"曇"_s, u"Cloudy.gif"_s}, {u"雨"_s, u"Rainy.gif"_s}, {u"雪"_s, u"Snowy.gif"_s},
        {u"雷"_s, u"Thunder.gif"_s}, {u"晴れ"_s, u""_s},         {u"暴風"_s, u""_s},        {u""_s, u""_s}};
    for (const auto& c : cases) {
        const auto setWeather = [&](store::Entry& entry) { entry.weather = c.word; };
        removeSetting(keys::contents::kHTMLType);
        EXPECT_TRUE(lineWith(pageWith(setWeather), u"<H3 ALIGN"_s)
                        .endsWith(u"</A><IMG SRC=\"./DiaryParts/"_s + c.file + u"\"></H3>"_s))
            << c.word.toStdString();
        useTableForm();
        EXPECT_TRUE(lineWith(pageWith(setWeather), u"WIDTH=100%"_s)
                        .endsWith(u"<TD width=16pt BGCOLOR=><IMG SRC=\"./DiaryParts/"_s + c.file + u"\"></TD></TR>"_s))
            << c.word.toStdString();
    }
}

TEST_F(EntryLook, NoWeatherHasNoPicture) {
    for (const QString& weather : {u"-"_s, QString()}) {
        const auto setWeather = [&](store::Entry& entry) { entry.weather = weather; };
        removeSetting(keys::contents::kHTMLType);
        EXPECT_TRUE(lacks(pageWith(setWeather), u"<IMG"_s));
        useTableForm();
        EXPECT_TRUE(lacks(pageWith(setWeather), u"<IMG"_s));
    }
    setSetting(keys::general::kWeather, u"0"_s);
    EXPECT_TRUE(lacks(pageWith([](store::Entry& entry) { entry.weather = u"晴"_s; }), u"<IMG"_s));
}

TEST_F(EntryLook, AGenreStandsInBracketsUnlessItIsMissing) {
    const auto genreIs = [&](const QString& genre) {
        return pageWith([&](store::Entry& entry) { entry.genre = genre; });
    };
    EXPECT_TRUE(genreIs(u"音楽"_s).contains(u"BACKGROUND:\">[音楽]<A NAME="_s));
    EXPECT_TRUE(genreIs(u""_s).contains(u"BACKGROUND:\">[]<A NAME="_s));
    EXPECT_TRUE(genreIs(QString()).contains(u"BACKGROUND:\"><A NAME="_s));
    useTableForm();
    const QString cell = u"<TD ALIGN=RIGHT BGCOLOR=><FONT COLOR=><NOBR>[%1]</NOBR></FONT></TD>"_s;
    EXPECT_TRUE(genreIs(u"音楽"_s).contains(cell.arg(u"音楽"_s)));
    EXPECT_TRUE(genreIs(u""_s).contains(cell.arg(u""_s)));
    EXPECT_TRUE(lacks(genreIs(QString()), u"<NOBR>"_s));
    setSetting(keys::general::kGenre, u"0"_s);
    EXPECT_TRUE(lacks(genreIs(u"音楽"_s), u"<NOBR>"_s));
}

TEST_F(EntryLook, TheColumnsOfTheTableAreCounted) {
    useTableForm();
    turnCommentsOn();
    const struct {
        QString weather;
        QString genre;
        int columns;
    } cases[] = {{u"-"_s, QString(), 2}, {QString(), QString(), 2}, {u"晴"_s, QString(), 3},
                 {u"-"_s, u"音楽"_s, 3}, {u"晴"_s, u"音楽"_s, 4},   {u"暴風"_s, u""_s, 4}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.columns);
        const QString page = pageWith([&](store::Entry& entry) {
            entry.weather = c.weather;
            entry.genre = c.genre;
        });
        EXPECT_EQ(countOf(page, u"COLSPAN=%1 "_s.arg(c.columns)), 2);
        EXPECT_EQ(countOf(page, u"COLSPAN="_s), 2);
        EXPECT_EQ(countOf(lineWith(page, u"WIDTH=100%"_s), u"<TD"_s), c.columns);
    }
}

TEST_F(EntryLook, TheTitleRowOfTheTableClosesItsTagsCrosswise) {
    useTableForm();
    setSetting(keys::contents::kTitleSpanTag, u"color:red"_s);
    EXPECT_EQ(lineWith(pageWith([](store::Entry&) {}), u"WIDTH=100%"_s),
              u"<TR><TD ALIGN= BGCOLOR= WIDTH=100%><A NAME=\"2004/05/06_1\"><FONT COLOR=><SPAN STYLE=\"color:red\">題"
              "</SPAN></A></FONT></TD><TD ALIGN=RIGHT BGCOLOR=><FONT COLOR=><NOBR>[一般]</NOBR></FONT></TD>"
              "<TD ALIGN=RIGHT BGCOLOR=><FONT COLOR=>2004/05/06</FONT></TD></TR>"_s);
}

TEST_F(EntryLook, AZeroTableWidthReadsAsAHundred) {
    useTableForm();
    for (const auto& [value, width] : {std::pair(u"0"_s, u"100"_s), {u""_s, u"100"_s}, {u"85"_s, u"85"_s}}) {
        setSetting(keys::contents::kTableWidth, value);
        EXPECT_TRUE(pageWith([](store::Entry&) {}).contains(u" BORDERCOLOR= width="_s + width + u"%>\r\n"_s));
    }
}

TEST_F(EntryLook, EveryHtmlTypeButOneIsTheNormalForm) {
    for (const QString& type : {u"0"_s, u"2"_s, u""_s, u"01"_s}) {
        setSetting(keys::contents::kHTMLType, type);
        EXPECT_EQ(countOf(pageWith([](store::Entry&) {}), u"<H3 ALIGN="_s), 1) << type.toStdString();
    }
}

TEST_F(EntryLook, MissingTextsOfTheNormalFormAreEmptyLines) {
    const struct {
        QString contents;
        QString extend;
        QStringList lines;
    } cases[] = {
        {u"本文"_s,
         u"続き"_s,
         {u"<!--[Contents]--><br>"_s, u"本文"_s, u"<!--[extend]--><br>"_s, u"続き"_s, u"</DIV>"_s}},
        {u"本文"_s, u""_s, {u"<!--[Contents]--><br>"_s, u"本文"_s, u"<!--[extend]--><br>"_s, u""_s, u"</DIV>"_s}},
        {u"本文"_s, QString(), {u"<!--[Contents]--><br>"_s, u"本文"_s, u""_s, u"</DIV>"_s}},
        {QString(), QString(), {u"<!--[Contents]--><br>"_s, u""_s, u""_s, u"</DIV>"_s}},
    };
    for (const auto& c : cases) {
        EXPECT_TRUE(hasLines(pageWith([&](store::Entry& entry) {
                                 entry.contents = c.contents;
                                 entry.extend = c.extend;
                             }),
                             c.lines));
    }
}

TEST_F(EntryLook, MissingTextsOfTheTableFormStillOpenAndCloseTheCell) {
    useTableForm();
    const QString open = u"<TR><TD COLSPAN=3 BGCOLOR=><FONT COLOR=><!--[Contents]--><br>"_s;
    const QString close = u"</FONT></TD></TR>"_s;
    const struct {
        QString contents;
        QString extend;
        QStringList lines;
    } cases[] = {
        {u"本文"_s, u"続き"_s, {open + u"本文"_s, u""_s, u"<!--[extend]--><br>続き"_s + close}},
        {u"本文"_s, u""_s, {open + u"本文"_s, u""_s, u"<!--[extend]--><br>"_s + close}},
        {u"本文"_s, QString(), {open + u"本文"_s, close}},
        {QString(), QString(), {open, close}},
    };
    for (const auto& c : cases) {
        QStringList lines = c.lines;
        lines += u"</TABLE></DIV>"_s;
        EXPECT_TRUE(hasLines(pageWith([&](store::Entry& entry) {
                                 entry.contents = c.contents;
                                 entry.extend = c.extend;
                             }),
                             lines));
    }
}

TEST_F(EntryLook, AMissingTitleIsEmptyText) {
    EXPECT_TRUE(pageWith([](store::Entry& entry) {
                    entry.title = QString();
                }).contains(u"<SPAN STYLE=\"\"></SPAN>(2004/05/06)</A></H3>"_s));
}

TEST_F(EntryLook, CommentLinksKeepTheSlashesOfTheDay) {
    turnCommentsOn();
    const QString links =
        u"<a href=\"javascript:HaloScan('2004/05/06_1');\" target=\"_self\"><script type=\"text/javascript\">"
        "postCount('2004/05/06_1');</script></a> | <a href=\"javascript:HaloScanTB('2004/05/06_1');\" "
        "target=\"_self\"><script type=\"text/javascript\">postCountTB('2004/05/06_1'); </script></a>"_s;
    EXPECT_TRUE(
        hasLines(pageWith([](store::Entry&) {}), {u"本文"_s, u"<!--[extend]--><br>"_s, u""_s, links, u"</DIV>"_s}));
    useTableForm();
    EXPECT_TRUE(
        hasLines(pageWith([](store::Entry&) {}),
                 {u"<TR><TD ALIGN=CENTER COLSPAN=3 BGCOLOR=>"_s + links + u"</TD></TR>"_s, u"</TABLE></DIV>"_s}));
}

TEST_F(EntryLook, TheLinkToTheTopFollowsTheEntry) {
    const QString top = u"<DIV ALIGN=\"RIGHT\"><A HREF=\"#this_month\">top</A></DIV>"_s;
    EXPECT_TRUE(hasLines(pageWith([](store::Entry&) {}), {u"</DIV>"_s, top}));
    useTableForm();
    EXPECT_TRUE(hasLines(pageWith([](store::Entry&) {}), {u"</TABLE></DIV>"_s, top + u"<BR>"_s}));
}

} // namespace
} // namespace velloria::tests
