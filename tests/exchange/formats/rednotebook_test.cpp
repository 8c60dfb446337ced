#include "exchange/formats/rednotebook.h"
#include "exchange/formats/rednotebook_markup.h"
#include "exchange/formats/yaml.h"

#include "support/patience.h"
#include "support/test_home.h"
#include "support/vectors.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

QString html(const QString& text) {
    exchange::Losses losses;
    const exchange::RedNotebookLinks links{.picture = [](const QString& address) { return u"P:"_s + address; },
                                           .day = [](const QString& day) { return u'#' + day; }};
    return exchange::redNotebookHtml(text, links, losses).replace(u'\n', u'|');
}

struct Markup {
    const char16_t* text;
    const char16_t* html;
};

class RedNotebookMarkup : public ::testing::TestWithParam<Markup> {};

TEST_P(RedNotebookMarkup, BecomesHtml) {
    EXPECT_EQ(html(QString::fromUtf16(GetParam().text)), QString::fromUtf16(GetParam().html));
}

INSTANTIATE_TEST_SUITE_P(
    Inline, RedNotebookMarkup,
    ::testing::Values(
        Markup{u"**b** //i// __u__ --s-- ``m`` *d*", u"<p><b>b</b> <i>i</i> <u>u</u> <s>s</s> <code>m</code> *d*</p>"},
        Markup{u"**//bi//** //**ib**// a**b**c", u"<p><b><i>bi</i></b> <i><b>ib</b></i> a<b>b</b>c</p>"},
        Markup{u"** a ** **multi\nline** **** ----", u"<p>** a ** **multi|line** **** ----</p>"},
        Markup{u"----- a -- b -- c", u"<p><s>-</s> a -- b -- c</p>"},
        Markup{u"\"\"raw **x** <b>\"\" ''<u>tag</u>'' ``mono **x** <b>``",
               u"<p>raw **x** &lt;b&gt; <u>tag</u> <code>mono **x** &lt;b&gt;</code></p>"},
        Markup{u"&amp; <b>x</b>", u"<p>&amp;amp; &lt;b&gt;x&lt;/b&gt;</p>"},
        Markup{u"#tag #タグ (#x).", u"<p>#tag #タグ (#x).</p>"},
        Markup{u"line \\\\\nnext\\\\\nC:\\\\x", u"<p>line <br>|next<br>|C:\\\\x</p>"},
        Markup{u"{赤|color:red} {b **c**|color:#00ff00} {x|color: blue} {y|color:}",
               u"<p><span style=\"color:red\">赤</span> <span style=\"color:#00ff00\">b <b>c</b></span> "
               u"<span style=\"color:blue\">x</span> {y|color:}</p>"},
        Markup{u"[2024-02-29] [あの日 2024-02-29]",
               u"<p><a href=\"#2024-02-29\">2024-02-29</a> <a href=\"#2024-02-29\">あの日</a></p>"},
        Markup{u"[name \"\"http://a.b/c d?e=1&f\"\"] [n http://a.b] [mail a@b.c] [not a link] [x]",
               u"<p><a href=\"http://a.b/c d?e=1&amp;f\">name</a> <a href=\"http://a.b\">n</a> "
               u"<a href=\"mailto:a@b.c\">mail</a> [not a link] [x]</p>"},
        Markup{u"http://a.b/c_d__e__f?x=1&y//z, www.a.b. (https://c.d)",
               u"<p><a href=\"http://a.b/c_d__e__f?x=1&amp;y//z\">http://a.b/c_d__e__f?x=1&amp;y//z</a>, "
               u"<a href=\"http://www.a.b\">www.a.b</a>. (<a href=\"https://c.d\">https://c.d</a>)</p>"},
        Markup{u"[\"\"file:///p/a b\"\".jpg?300] [\"\"/p/a\"\".png] [pic.png]",
               u"<p><img src=\"P:file:///p/a b.jpg\" width=\"300\" alt=\"\"> <img src=\"P:/p/a.png\" alt=\"\"> "
               u"<img src=\"P:pic.png\" alt=\"\"></p>"},
        Markup{u"[[pic.png] http://a.b]", u"<p><a href=\"http://a.b\"><img src=\"P:pic.png\" alt=\"\"></a></p>"}));

INSTANTIATE_TEST_SUITE_P(
    Blocks, RedNotebookMarkup,
    ::testing::Values(
        Markup{u"= H1 =\n===== H5 **x** =====\n====== H6 ======",
               u"<h1>H1</h1>|<h5>H5 **x**</h5>|<p>====== H6 ======</p>"},
        Markup{u"one\ntwo\n\n  three\n   \nfour", u"<p>one|two</p>|<p>  three</p>|<p>four</p>"},
        Markup{u"- one\n- two\n  - two a\n    + deep\n- three\n\n\ntext",
               u"<ul>|<li>one</li>|<li>two|<ul>|<li>two a|<ol>|<li>deep</li>|</ol>|</li>|</ul>|</li>|<li>three</li>|"
               u"</ul>|<p>text</p>"},
        Markup{u"+ one\n  goes on\n- switch\n\nwords\n\n\nend",
               u"<ol>|<li>one|  goes on</li>|</ol>|<ul>|<li>switch|<br><br>|words</li>|</ul>|<p>end</p>"},
        Markup{u"- a\n-\ntext", u"<ul>|<li>a</li>|</ul>|<p>text</p>"},
        Markup{u": term\n  words", u"<dl>|<dt>term</dt><dd>|  words</dd>|</dl>"},
        Markup{u"- item\n```\na **b** <c>\n```\n- item2",
               u"<ul>|<li>item<pre>a **b** &lt;c&gt;</pre>|</li>|<li>item2</li>|</ul>"},
        Markup{u"|| a | b |\n| **c** |  d |\n|  e  | f ||",
               u"<table border=\"1\">|<tr><th>a</th><th>b</th></tr>|"
               u"<tr><td><b>c</b></td><td align=\"right\">d</td></tr>|"
               u"<tr><td align=\"center\">e</td><td colspan=\"2\">f</td></tr>|"
               u"</table>"},
        Markup{u"| a | b\nx", u"<table>|<tr><td>a</td><td>b</td></tr>|</table>|<p>x</p>"},
        Markup{u"\tquote\n\t\tdeeper\n\tback\ntext",
               u"<blockquote>|quote|<blockquote>|deeper|</blockquote>|back|</blockquote>|<p>text</p>"},
        Markup{u"--------------------\n====================\n%gone\n``` one <line>\n\"\"\"\nraw "
               u"<b>\n\"\"\"\n'''\n<i>\n'''",
               u"<hr>|<hr>|<pre>one &lt;line&gt;</pre>|raw &lt;b&gt;|<i>"},
        Markup{u"```\nnever **closed**", u"<pre>never **closed**</pre>"}, Markup{u"", u""}));

/// White space at tags, attributes of looks, colours of hashtags and the way of naming a day are ours.
QString comparable(QString text) {
    static const QRegularExpression body(u"^.*<div class=\"body\" id=\"body\">(.*)</div>\\s*$"_s,
                                         QRegularExpression::DotMatchesEverythingOption);
    if (const QRegularExpressionMatch match = body.match(text); match.hasMatch())
        text = match.captured(1);
    text.replace(QRegularExpression(u"<span style=\"color:red\">(#[^<]*)</span>"_s), u"\\1"_s);
    text.replace(QRegularExpression(u"<(hr|br|img|p)\\b([^>]*?) ?/?>"_s), u"<\\1\\2>"_s);
    text.replace(QRegularExpression(u"<hr[^>]*>"_s), u"<hr>"_s);
    text.replace(QRegularExpression(u"<img(?=[^>]* src=\"([^\"]*)\")(?:(?=[^>]* (width=\"\\d+\")))?[^>]*>"_s),
                 u"<img \\1 \\2>"_s);
    text.replace(QRegularExpression(u"\\s*(</?(?:p|ul|ol|li|table|tr|t[dh]|h\\d|hr|pre|blockquote)\\b[^>]*>)\\s*"_s),
                 u"\\1"_s);
    return text.trimmed();
}

TEST(RedNotebook, TheSamplesReadAsTheProgramShowsThem) {
    QFile file(dataPath(u"exchange/rednotebook/as-html.txt"_s));
    ASSERT_TRUE(file.open(QFile::ReadOnly));
    const QStringList parts = QString::fromUtf8(file.readAll()).split(u"===== "_s, Qt::SkipEmptyParts);
    const exchange::RedNotebookLinks links{.picture = [](const QString& address) { return address; },
                                           .day = [](const QString& day) { return u'#' + day; }};
    exchange::Losses losses;
    int compared = 0;
    for (const QString& part : parts) {
        const QStringList date = part.section(u'\n', 0, 0).split(u' ');
        ASSERT_EQ(date.size(), 2);
        const QString month = dataPath(u"exchange/rednotebook/"_s + date[0] + u".txt"_s);
        QFile source(month);
        ASSERT_TRUE(source.open(QFile::ReadOnly));
        const exchange::YamlNode days = exchange::parseYaml(source.readAll(), month);
        ASSERT_NE(days.member(date[1]), nullptr);
        const QString html = exchange::redNotebookHtml(days.member(date[1])->member(u"text")->text, links, losses);
        EXPECT_EQ(comparable(html), comparable(part)) << part.toStdString();
        ++compared;
    }
    EXPECT_EQ(compared, 7);
}

class RedNotebookFolder : public TestHome {
protected:
    QString folder = path(u"rn"_s);

    RedNotebookFolder() { QDir().mkpath(folder); }

    void month(const QString& name, const QByteArray& yaml) { writeFile(folder + u'/' + name, yaml); }
    exchange::ForeignDiary read() const { return exchange::readRedNotebook(folder); }
};

TEST_F(RedNotebookFolder, OnlyMonthFilesCount) {
    month(u"2024-02.txt"_s, "1:\n  text: a\n");
    for (const QString& other :
         {u"2024-02.old.txt"_s, u"2024-02.CONFLICT_BACKUP.txt"_s, u"2024-2.txt"_s, u"x2024-02.txt"_s})
        month(other, "2:\n  text: no\n");
    const exchange::ForeignDiary diary = read();
    ASSERT_EQ(diary.entries.size(), 1U);
    EXPECT_EQ(diary.entries[0].entry.day, u"2024/02/01"_s);
    EXPECT_EQ(diary.entries[0].entry.contents, u"<p>a</p>"_s);
    EXPECT_EQ(diary.losses.text(), QString());
}

TEST_F(RedNotebookFolder, ADayPartsAtRulesThatAHeadingFollows) {
    month(u"2024-02.txt"_s, "1:\n  text: |\n    === One ===\n    a\n    ====================\n    b\n\n"
                            "    =====================\n\n    === Two ===\n    c\n");
    const exchange::ForeignDiary diary = read();
    ASSERT_EQ(diary.entries.size(), 2U);
    EXPECT_EQ(diary.entries[0].entry.title, u"One"_s);
    EXPECT_EQ(diary.entries[0].entry.contents, u"<p>a</p>\n<hr>\n<p>b</p>"_s);
    EXPECT_EQ(diary.entries[1].entry.title, u"Two"_s);
    EXPECT_EQ(diary.entries[1].entry.contents, u"<p>c</p>"_s);
}

TEST_F(RedNotebookFolder, WhatIsNotCarriedIsCounted) {
    month(u"2024-02.txt"_s,
          "1:\n  Todo:\n    x: null\n    y: null\n  holiday: null\n  text: |\n    [2024-02-03] [2023-01-01]\n"
          "    [\"\"file:///nowhere/a b\"\".png]\n    % remark\n30:\n  text: no such day\nx: 1\n"
          "2:\n  text: ''\n");
    const exchange::ForeignDiary diary = read();
    ASSERT_EQ(diary.entries.size(), 1U);
    EXPECT_EQ(diary.losses.text(),
              u"持ち込めないもの: ほかの月の日へのリンク 1件、コメントの行 1件 (% remark)、タグ 3件、"
              u"日付が正しくない日記 2件 (2024-02-30、2024-02-x)、見つからない画像 1件 (a b.png)"_s);
    EXPECT_TRUE(diary.entries[0].entry.contents.contains(u"<a href=\"#2024/02/03\">2024-02-03</a> 2023-01-01"_s))
        << diary.entries[0].entry.contents.toStdString();
}

TEST_F(RedNotebookFolder, APictureOfThisDiskComesAlong) {
    writeFile(folder + u"/a 1%20.png"_s, "png");
    month(u"2024-02.txt"_s,
          "1:\n  text: '[\"\"file://" + folder.toUtf8() + "/a 1%20\"\".png?300] [\"\"https://x.y/z\"\".png]'\n");
    const exchange::ForeignDiary diary = read();
    ASSERT_EQ(diary.entries.size(), 1U);
    ASSERT_EQ(diary.entries[0].pictures.size(), 1U);
    EXPECT_EQ(diary.entries[0].pictures[0].file, folder + u"/a 1%20.png"_s);
    EXPECT_EQ(diary.entries[0].entry.contents,
              u"<p><img src=\"%1\" width=\"300\" alt=\"\"> "
              u"<img src=\"https://x.y/z.png\" alt=\"\"></p>"_s.arg(diary.entries[0].pictures[0].placeholder));
}

TEST_F(RedNotebookFolder, NoAddressBringsAFileFromElsewhere) {
    const QString secret = path(u"secret.png"_s);
    writeFile(secret, "secret");
    writeFile(folder + u"/notes.txt"_s, "no picture");
    ASSERT_TRUE(QFile::link(secret, folder + u"/link.png"_s));
    month(u"2024-02.txt"_s, "1:\n  text: '[\"\"" + secret.chopped(4).toUtf8() + "\"\".png] [\"\"file://" +
                                secret.chopped(4).toUtf8() + "\"\".png] [\"\"../secret\"\".png] [\"\"link\"\".png] " +
                                "[\"\"notes\"\".txt]'\n");
    const exchange::ForeignDiary diary = read();
    ASSERT_EQ(diary.entries.size(), 1U);
    EXPECT_TRUE(diary.entries[0].pictures.empty());
    EXPECT_TRUE(diary.entries[0].entry.contents.contains(u"<img src=\"../secret.png\""_s));
    EXPECT_TRUE(diary.losses.text().contains(u"日記のフォルダにない画像 5件"_s)) << qPrintable(diary.losses.text());
}

TEST_F(RedNotebookFolder, AMonthThatIsNotWholeIsRefused) {
    month(u"2024-01.txt"_s, "1:\n  text: a\n");
    for (const QByteArray& bad : {QByteArray("1:\n  text: 'cut in the mid"), QByteArray("1:\n  text: \"\xFF\"\n"),
                                  QByteArray("- a\n- b\n"), QByteArray("\x00\x01\x02", 3)}) {
        month(u"2024-02.txt"_s, bad);
        EXPECT_TRUE(failureOf([&] { read(); }).contains(u"2024-02.txt"_s)) << bad.constData();
    }
}

TEST(RedNotebook, NoTextTakesLongerThanItsLength) {
    const double begin = processorSeconds();
    for (const QString& piece : {u"`` a"_s, u"**a "_s, u"[a "_s, u"[[a] "_s, u"{{|color:"_s, u"``"_s, u"**//__--"_s,
                                 u"http://h"_s, u"\"\"a"_s, u"- "_s, u"| | "_s, u"h"_s})
        EXPECT_FALSE(html(piece.repeated(300'000 / piece.size())).isEmpty()) << piece.toStdString();
    EXPECT_FALSE(html(u"- a\n"_s.repeated(50'000)).isEmpty());
    QString steps;
    for (int indent = 0; indent < 1000; ++indent)
        steps += u' ' + QString(indent, u' ') + u"- a\n"_s;
    EXPECT_FALSE(html(steps).isEmpty());
    EXPECT_LT(processorSeconds() - begin, 60);
}

} // namespace
} // namespace velloria::tests
