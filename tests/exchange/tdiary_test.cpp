#include "exchange/formats/tdiary.h"

#include "exchange/foreign_files.h"

#include <QDateTime>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using exchange::ForeignDiary;
using exchange::readTDiary;

QString timeOf(qint64 seconds) {
    return QDateTime::fromSecsSinceEpoch(seconds).toString(u"yyyy/MM/dd HH:mm:ss"_s);
}

QByteArray day(const QByteArray& body, const QByteArray& format = "tDiary", const QByteArray& date = "20240309",
               const QByteArray& title = "") {
    return "Date: " + date + "\nTitle: " + title + "\nLast-Modified: 1700000000\nVisible: true\nFormat: " + format +
           "\n\n" + body + "\n.\n";
}

class TDiary : public ForeignFiles {
protected:
    ForeignDiary read(const QByteArray& days) {
        ForeignDiary diary = readTDiary(write(u"202403.td2"_s, "TDIARY2.01.00\n" + days));
        losses = diary.losses.text();
        return diary;
    }
    /// "title|genre|contents" of each entry of a day.
    QStringList sections(const QByteArray& body, const QByteArray& format = "tDiary", const QByteArray& title = "") {
        QStringList found;
        for (const exchange::ForeignEntry& foreign : read(day(body, format, "20240309", title)).entries)
            found += foreign.entry.title + u'|' + foreign.entry.genre + u'|' + foreign.entry.contents;
        return found;
    }
    QString losses;
};

TEST_F(TDiary, ReadsADataFolder) {
    const ForeignDiary diary = readTDiary(sample(u"tdiary"_s));
    const QString time = timeOf(1795314760);
    EXPECT_EQ(headsOf(diary), (QStringList{
                                  u"2024/03/09|%1|節の題|||"_s.arg(time),
                                  u"2024/03/09|%1|別の節|||"_s.arg(time),
                                  u"2024/03/09|%1|二度目の追記|||"_s.arg(time),
                                  u"2024/03/10|%1|海の話|旅||private"_s.arg(timeOf(1795314758)),
                                  u"2024/04/01|%1|題|||"_s.arg(timeOf(1795314792)),
                              }));
    EXPECT_EQ(diary.entries[0].entry.contents, u"<p>本文一行目。</p>\n<p>本文二行目。</p>"_s);
    EXPECT_EQ(diary.entries[1].entry.contents, u"<p>HTML</p>\n.dot line"_s);
    EXPECT_EQ(diary.entries[4].entry.contents, u"<p>本文 <em>強調</em> <strong>もっと</strong> <del>消し</del> <a "
                                               u"href=\"http://www.example.com/\">言葉</a></p>\n"
                                               "<h4>小見出し</h4>\n<ul><li>一"
                                               "<ul><li>一の一</li></ul>\n</li></ul>\n<ol><li>甲</li><li>乙</li></"
                                               "ol>\n<dl>\n<dt>用語</dt><dd>説明</dd>\n</dl>\n"
                                               "<blockquote>\n<p>引用</p>\n</blockquote>\n<pre>整形済み</"
                                               "pre>\n<table>\n<tr><td>a</td><td>b</td></tr>\n</table>\n"
                                               "<hr />\n<p>{{fn '脚注'}}</p>"_s);
    EXPECT_EQ(diary.losses.text(), u"持ち込めないもの: コメント 1件、プラグインの呼び出し (文字のまま残します) 1件、"
                                   "二つ目からのカテゴリ 1件、日の題名 3件"_s);
}

TEST_F(TDiary, BlankLinesPartADayAndFirstLinesAreTitles) {
    EXPECT_EQ(sections("one line", "tDiary", "日"), QStringList{u"日||<p>one line</p>"_s});
    EXPECT_EQ(losses, QString());
    EXPECT_EQ(sections("a\nb\n\n\n\nc"), (QStringList{u"a||<p>b</p>"_s, u"||<p>c</p>"_s}));
    EXPECT_EQ(sections(" a\nb"), QStringList{u"||<p>a</p>\n<p>b</p>"_s});
    EXPECT_EQ(sections("　a\nb"), QStringList{u"||<p>a</p>\n<p>b</p>"_s});
    EXPECT_EQ(sections("<b>a</b>\nb"), QStringList{u"||<b>a</b>\nb"_s});
    EXPECT_EQ(sections("<<b>\nb"), QStringList{u"<b>||<p>b</p>"_s});
    EXPECT_EQ(sections("[x,y][z]t\nb"), QStringList{u"t|x|<p>b</p>"_s});
    EXPECT_EQ(losses, u"持ち込めないもの: 二つ目からのカテゴリ 2件"_s);
    EXPECT_EQ(sections("..x\n...y"), QStringList{u".x||<p>..y</p>"_s});
    EXPECT_EQ(sections("\n\n"), QStringList{});
}

TEST_F(TDiary, HeadingsPartTheOtherStyles) {
    EXPECT_EQ(sections("front\n! [旅]''題''\nb\n!! sub\n! 二", "Wiki"),
              (QStringList{u"||<p>front</p>"_s, u"題|旅|<p>b</p>\n<h4>sub</h4>"_s, u"二||"_s}));
    EXPECT_EQ(sections("# [旅] *題*\n\nb\n\n## sub\n```\n# code\n```\n\n# 二\nc", "GFM"),
              (QStringList{u"題|旅|<p>b</p>\n<h4>sub</h4>\n<pre><code># code\n</code></pre>"_s, u"二||<p>c</p>"_s}));
    EXPECT_EQ(sections("題\nb", "GFM"), QStringList{u"題||<p>b</p>"_s});
}

TEST_F(TDiary, AnUnknownStyleStaysText) {
    EXPECT_EQ(sections("*a* <b>\nc", "BlogWiki", "日"), QStringList{u"日||<p>*a* &lt;b&gt;<br>\nc</p>"_s});
    EXPECT_EQ(losses, u"持ち込めないもの: スタイルBlogWikiの日 (文字のまま残します) 1件"_s);
}

TEST_F(TDiary, ReadsTheOlderEncoding) {
    // "TDIARY2.00.00", the title "日記" and the text "あいう" in EUC-JP.
    const QByteArray old =
        "TDIARY2.00.00\nDate: 20030401\nTitle: \xC6\xFC\xB5\xAD\nLast-Modified: 1\nVisible: true\nFormat: tDiary\n\n"
        "\xA4\xA2\xA4\xA4\xA4\xA6\n\n.\n";
    const ForeignDiary diary = readTDiary(write(u"200304.td2"_s, old));
    ASSERT_EQ(diary.entries.size(), 1U);
    EXPECT_EQ(diary.entries[0].entry.title, u"日記"_s);
    EXPECT_EQ(diary.entries[0].entry.contents, u"<p>あいう</p>"_s);
    EXPECT_TRUE(diary.losses.text().contains(u"EUC-JP"_s));
}

TEST_F(TDiary, BadDaysAreNamedAndACutOneIsReadAsFarAsItGoes) {
    EXPECT_EQ(headsOf(read(day("a", "tDiary", "20240231") + day("b", "tDiary", "00000000") + day("c", "tDiary", "x") +
                           day("d")))
                  .size(),
              1);
    EXPECT_EQ(losses, u"持ち込めないもの: 日付が読めない日 3件 (20240231、00000000、x)"_s);
    const ForeignDiary cut = read(day("a") + "Date: 20240310\nFormat: tDiary\n\nhalf");
    EXPECT_EQ(cut.entries.size(), 2U);
    EXPECT_EQ(losses, u"持ち込めないもの: 途中で切れた日 (読めたところまで) 1件 (2024/03/10)"_s);
    EXPECT_EQ(read(day("a") + "Date: 20240310\nForm").entries.size(), 1U);
    EXPECT_EQ(read("").entries.size(), 0U);
}

TEST_F(TDiary, ATimeBeyondTheCalendarIsNone) {
    for (const QByteArray& time :
         {QByteArray("99999999999999"), QByteArray("9223372036854775807"), QByteArray("-1"), QByteArray("later")}) {
        const ForeignDiary diary = read("Date: 20240309\nLast-Modified: " + time + "\nFormat: tDiary\n\nt\nb\n.\n");
        ASSERT_EQ(diary.entries.size(), 1U);
        EXPECT_EQ(diary.entries[0].entry.publishTime, QString()) << time.constData();
    }
}

TEST_F(TDiary, WhatIsNoneOfItsDataIsRefusedOrCounted) {
    const QString file = write(u"x.td2"_s, "Date: 20240309\n");
    EXPECT_TRUE(failureOf([&] { readTDiary(file); }).contains(u"x.td2"_s));
    EXPECT_EQ(readTDiary(path()).losses.text(), u"持ち込めないもの: tDiaryのデータではないファイル 1件 (x.td2)"_s);
}

} // namespace
} // namespace velloria::tests
