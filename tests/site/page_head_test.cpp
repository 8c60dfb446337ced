#include "site/site_home.h"

#include "core/program_keys.h"
#include "core/setting.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

constexpr char kScriptLine[] =
    "<script type=\"text/javascript\" src=\"https://comment.example.org/load/taro\"> </script>";
constexpr char kLogoLine[] = "<a href=\"https://comment.example.org/\"><img width=\"88\" height=\"31\" "
                             "src=\"https://comment.example.org/halolink.gif\" border=\"0\" "
                             "alt=\"コメント機能はHaloScanを利用しています。\" /></a>";
constexpr char kCreditAnchor[] = "<a href=\"https://www.example.com/velloria/\" target=_blank>Velloria</a>";

class PageHead : public SiteHome {
protected:
    /// Names a piece of its own for the key.
    void namePiece(const core::Setting& key, const QString& name) {
        setSetting(key, name);
        writePiece(name, name.toLatin1());
    }
    void turnCommentsOn() {
        setSetting(keys::halo_scan::kHaloScanOn, u"1"_s);
        setSetting(keys::halo_scan::kUserName, u"taro"_s);
    }
    /// A divided page of a month of two days.
    QString makeDividedPage(site::PageKind kind = site::PageKind::Current) {
        write(u"2004/05/05"_s, u"a"_s);
        write(u"2004/05/06"_s, u"b"_s);
        divide(1, true);
        setSetting(keys::divide::kLogDivide, u"1"_s);
        kind == site::PageKind::Current ? makeMonth() : makeLog();
        return sitePage(u"x_01.htm"_s);
    }
};

TEST_F(PageHead, AMonthFileBeginsWithItsFixedLines) {
    EXPECT_TRUE(makeMonth().startsWith(
        u"<HTML lang=\"ja\">\r\n<HEAD>\r\n<meta http-equiv=Content-Type content=\"text/html; charset=shift_jis\">\r\n"
        "<meta name=Generator content=\"Velloria v2.2.0\">\r\n<TITLE></TITLE>\r\n\r\n</HEAD>\r\n"
        "<BODY TEXT='' BGCOLOR='' background='' link='' alink='' vlink=''>\r\n"
        "<!-- 上追加テキスト(ここから) by Velloria -->\r\n\r\n<!-- 上追加テキスト(ここまで) by Velloria  -->\r\n"
        "<a name=this_month></a><H3 align=><a name=TOP>2004年5月分</a></H3>\r\n\r\n"_s));
}

TEST_F(PageHead, AMonthFileEndsInTwoLines) {
    EXPECT_TRUE(makeMonth().endsWith(u"<!-- 下追加テキスト(ここから) By Velloria -->\r\n\r\n"
                                     "<!-- 下追加テキスト(ここまで) By Velloria -->\r\n</BODY>\r\n</HTML>\r\n"_s));
}

TEST_F(PageHead, AnEmptyPieceIsAnEmptyLine) {
    const QString without = makeMonth();
    namePiece(keys::general::kHeadTag, u"empty"_s);
    writePiece(u"empty"_s, "");
    EXPECT_EQ(makeMonth(), without);
}

TEST_F(PageHead, APieceKeepsItsLineEndsAndOneFollows) {
    namePiece(keys::body::kUpText, u"p"_s);
    writePiece(u"p"_s, "one\ntwo\r\n");
    EXPECT_TRUE(hasLines(makeMonth(), {u"<!-- 上追加テキスト(ここから) by Velloria -->"_s, u"one\ntwo"_s, u""_s,
                                       u"<!-- 上追加テキスト(ここまで) by Velloria  -->"_s}));
}

TEST_F(PageHead, AStyleSheetHasALineOnlyWhenThereIsOne) {
    EXPECT_TRUE(lacks(makeMonth(), u"<Link"_s));
    setSetting(keys::general::kStyleSheetURL, u"./a b.css"_s);
    EXPECT_TRUE(
        hasLines(makeMonth(), {u"<TITLE></TITLE>"_s, u"<Link Rel=stylesheet type=\"Text/css\" href=./a b.css>"_s}));
    EXPECT_TRUE(hasLines(makeDividedPage(),
                         {u"<TITLE></TITLE>"_s, u"<Link Rel=stylesheet type=\"Text/css\" href=./a b.css>"_s}));
}

TEST_F(PageHead, TheLogScriptGoesWithTheSelectBoxWhereThereAreNoFrames) {
    writeFile(session.MyPath + u"JS_Log.txt"_s, "<script>");
    EXPECT_TRUE(lacks(makeMonth(), u"<script>"_s));
    setSetting(keys::general::kLogType, u"JavaScript"_s);
    EXPECT_TRUE(hasLines(makeMonth(), {u"<TITLE></TITLE>"_s, u"<script>"_s, u""_s, u"</HEAD>"_s}));
    EXPECT_TRUE(hasLines(makeLog(), {u"<TITLE></TITLE>"_s, u"<script>"_s, u""_s, u"</HEAD>"_s}));
    setSetting(keys::frame::kFrameOn, u"1"_s);
    makeMonth();
    EXPECT_TRUE(lacks(sitePage(u"x_D.htm"_s), u"<script>"_s));
    removeSetting(keys::frame::kFrameOn);
    EXPECT_TRUE(lacks(makeDividedPage(), u"<script>"_s));
}

TEST_F(PageHead, AMissingLogScriptIsAnEmptyLine) {
    ASSERT_TRUE(QFile::remove(session.MyPath + u"JS_Log.txt"_s));
    setSetting(keys::general::kLogType, u"JavaScript"_s);
    EXPECT_TRUE(hasLines(makeMonth(), {u"<TITLE></TITLE>"_s, u""_s, u""_s, u"</HEAD>"_s}));
}

TEST_F(PageHead, FeedsAreLinkedFromTheAddressOfTheDiary) {
    write(u"2004/05/06"_s, u"a"_s);
    turnFeedsOn(u"http://h.example/d/my.diary.htm"_s);
    const QString page = makeMonth();
    EXPECT_TRUE(hasLines(
        page,
        {u"<link rel=\"alternate\" type=\"application/rss+xml\" title=\"RSS0.93\" href=\"http://h.example/d/my.diary_RSS091.xml\" />"_s,
         u"<link rel=\"alternate\" type=\"application/rss+xml\" title=\"RSS1.0\" href=\"http://h.example/d/my.diary_RSS100.xml\" />"_s,
         u"<link rel=\"alternate\" type=\"application/rss+xml\" title=\"RSS2.0\" href=\"http://h.example/d/my.diary_RSS200.xml\" />"_s,
         u"<link rel=\"alternate\" type=\"application/atom+xml\" title=\"Atom0.3\" href=\"http://h.example/d/my.diary_ATOM.xml\" />"_s,
         u""_s, u"</HEAD>"_s}));
    EXPECT_TRUE(hasLines(page, {u"<!-- 下追加テキスト(ここまで) By Velloria -->"_s,
                                u"<p align=center><a href=\"http://h.example/d/my.diary_RSS091.xml\">RSS0.91</a> | "
                                "<a href=\"http://h.example/d/my.diary_RSS100.xml\">RSS1.0</a> | "
                                "<a href=\"http://h.example/d/my.diary_RSS200.xml\">RSS2.0</a> | "
                                "<a href=\"http://h.example/d/my.diary_ATOM.xml\">ATOM</a></p>"_s,
                                u"</BODY>"_s}));
}

TEST_F(PageHead, AnAddressIsCutAtItsLastPointWhereverThatStands) {
    write(u"2004/05/06"_s, u"a"_s);
    turnFeedsOn(u"http://h.example/diary/"_s);
    EXPECT_TRUE(makeMonth().contains(u"href=\"http://h_RSS091.xml\""_s));
    setSetting(keys::rss::kDiaryURL, u"localhost"_s);
    EXPECT_TRUE(makeMonth().contains(u"href=\"localhost_RSS091.xml\""_s));
}

TEST_F(PageHead, FeedLinesStandOnTheDiaryOfFramesAndOnNoOtherPage) {
    turnFeedsOn();
    const QString divided = makeDividedPage();
    EXPECT_TRUE(lacks(divided, u"_RSS091"_s));
    EXPECT_TRUE(lacks(makeLog(), u"_RSS091"_s));
    setSetting(keys::frame::kFrameOn, u"1"_s);
    makeMonth();
    EXPECT_EQ(countOf(sitePage(u"x_D.htm"_s), u"_RSS091.xml"_s), 2);
    EXPECT_TRUE(lacks(sitePage(u"x_C.htm"_s), u"_RSS091"_s));
}

TEST_F(PageHead, TheCommentScriptStandsOnEveryPageAndTheLogoOnMonthFiles) {
    EXPECT_TRUE(lacks(makeMonth(), u"comment.example.org"_s));
    turnCommentsOn();
    const QString script = QString::fromUtf8(kScriptLine);
    const QString logo = QString::fromUtf8(kLogoLine);
    EXPECT_TRUE(hasLines(makeMonth(), {script, u""_s, u"</HEAD>"_s}));
    EXPECT_TRUE(hasLines(sitePage(u"x.htm"_s),
                         {u"<!-- 下追加テキスト(ここまで) By Velloria -->"_s, logo, u"</BODY>"_s, u"</HTML>"_s}));
    for (const site::PageKind kind : {site::PageKind::Current, site::PageKind::Log}) {
        EXPECT_TRUE(hasLines(makeDividedPage(kind), {script, u""_s, u"</HEAD>"_s}));
        EXPECT_TRUE(lacks(sitePage(u"x_01.htm"_s), u"halolink.gif"_s));
        EXPECT_TRUE(hasLines(sitePage(u"x.htm"_s), {script, u""_s, u"</HEAD>"_s}));
        EXPECT_TRUE(hasLines(sitePage(u"x.htm"_s), {logo, u"</BODY>"_s}));
    }
}

TEST_F(PageHead, ADividedPageHasAShorterHeadAndTail) {
    setSetting(keys::general::kHPTitle, u"日記"_s);
    const QString page = makeDividedPage();
    EXPECT_TRUE(page.startsWith(
        u"<HTML lang=\"ja\"><HEAD>\r\n<meta http-equiv=Content-Type content=\"text/html; charset=shift_jis\">\r\n"
        "<meta name=Generator content=\"Velloria\">\r\n<TITLE>日記</TITLE>\r\n\r\n</HEAD>\r\n"
        "<BODY TEXT='' BGCOLOR='' background='' link='' alink='' vlink=''>\r\n\r\n<A Name=\"2004/05/06\"></A>\r\n"_s));
    EXPECT_TRUE(page.endsWith(u"top</A></DIV>\r\n\r\n</BODY></HTML>\r\n"_s));
    EXPECT_TRUE(lacks(page, u"追加テキスト"_s));
    EXPECT_TRUE(lacks(page, u"this_month"_s));
}

TEST_F(PageHead, EachKindOfPageHasItsOwnPieces) {
    const std::pair<core::Setting, QString> pieces[] = {
        {keys::general::kHeadTag, u"head"_s},
        {keys::general::kHeadTagDiv, u"head_div"_s},
        {keys::general::kHeadTagDivLog, u"head_div_log"_s},
        {keys::body::kUpText, u"up"_s},
        {keys::body::kDownText, u"down"_s},
        {keys::body::kUpTextLog, u"up_log"_s},
        {keys::body::kDownTextLog, u"down_log"_s},
        {keys::body::kUpTextDiv, u"up_div"_s},
        {keys::body::kDownTextDiv, u"down_div"_s},
        {keys::body::kUpTextDivLog, u"up_div_log"_s},
        {keys::body::kDownTextDivLog, u"down_div_log"_s},
    };
    for (const auto& [key, name] : pieces)
        namePiece(key, name);
    const auto piecesOf = [&](const QString& page) {
        QStringList found;
        for (const QString& line : page.split(u"\r\n"_s)) {
            for (const auto& [key, name] : pieces) {
                if (line == name)
                    found += line;
            }
        }
        return found;
    };
    EXPECT_EQ(piecesOf(makeDividedPage()), (QStringList{u"head_div"_s, u"up_div"_s, u"down_div"_s}));
    EXPECT_EQ(piecesOf(sitePage(u"x.htm"_s)), (QStringList{u"head"_s, u"up"_s, u"down"_s}));
    makeLog();
    EXPECT_EQ(piecesOf(sitePage(u"x_01.htm"_s)), (QStringList{u"head_div_log"_s, u"up_div_log"_s, u"down_div_log"_s}));
    EXPECT_EQ(piecesOf(sitePage(u"x.htm"_s)), (QStringList{u"head"_s, u"up_log"_s, u"down_log"_s}));
}

TEST_F(PageHead, TheCreditLineReplacesEveryMark) {
    const QString anchor = QString::fromUtf8(kCreditAnchor);
    const struct {
        QString text;
        QString line;
    } cases[] = {
        {u""_s, u"<p>このサイトは"_s + anchor + u"を使用しています。</p>"_s},
        {u"no mark"_s, u"<p>このサイトは"_s + anchor + u"を使用しています。</p>"_s},
        {u"by #"_s, u"by "_s + anchor},
        {u"## and <b>#</b>"_s, anchor + anchor + u" and <b>"_s + anchor + u"</b>"_s},
    };
    setSetting(keys::general::kVellLinkOn, u"1"_s);
    for (const auto& c : cases) {
        setSetting(keys::general::kVellLinkText, c.text);
        EXPECT_TRUE(hasLines(makeMonth(), {c.line, u"</BODY>"_s}));
    }
    removeSetting(keys::general::kVellLinkOn);
    EXPECT_TRUE(lacks(makeMonth(), u"www.example.com"_s));
}

TEST_F(PageHead, AMarkInTheAddressOfTheCreditLinkStays) {
    setSetting(keys::kMakerHomePage, u"http://h.example/#top"_s);
    setSetting(keys::general::kVellLinkOn, u"1"_s);
    setSetting(keys::general::kVellLinkText, u"#"_s);
    EXPECT_TRUE(hasLines(makeMonth(), {u"<a href=\"http://h.example/#top\" target=_blank>Velloria</a>"_s}));
}

TEST_F(PageHead, TheFootKeepsItsOrder) {
    write(u"2004/05/06"_s, u"a"_s);
    turnFeedsOn();
    turnCommentsOn();
    setSetting(keys::general::kVellLinkOn, u"1"_s);
    const QString page = makeMonth();
    const qsizetype feeds = page.indexOf(u"<p align=center><a href="_s);
    const qsizetype logo = page.indexOf(u"halolink.gif"_s);
    const qsizetype credit = page.indexOf(u"<p>このサイトは"_s);
    EXPECT_GT(feeds, page.indexOf(u"<!-- 下追加テキスト(ここまで)"_s));
    EXPECT_LT(feeds, logo);
    EXPECT_LT(logo, credit);
    EXPECT_LT(credit, page.indexOf(u"</BODY>"_s));
}

} // namespace
} // namespace velloria::tests
