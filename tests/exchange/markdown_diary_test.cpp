#include "exchange/formats/markdown_diary.h"

#include "exchange/foreign_files.h"

#include <filesystem>
#include <fstream>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using exchange::ForeignDiary;
using exchange::readMarkdownDiary;

class MarkdownDiary : public ForeignFiles {
protected:
    /// Of the one entry that `text` is under a name without a date.
    store::Entry entryOf(const QByteArray& text) {
        const ForeignDiary diary = readMarkdownDiary(write(u"x.md"_s, text));
        losses = diary.losses.text();
        return diary.entries.empty() ? store::Entry() : diary.entries.front().entry;
    }
    QString dayOf(const QByteArray& date) { return entryOf("---\ndate: " + date + "\n---\nx").day; }
    ForeignDiary readAll() {
        ForeignDiary diary = readMarkdownDiary(path());
        losses = diary.losses.text();
        return diary;
    }

    QString losses;
};

// The days are those that Hugo itself lists in result.csv, but for the one that it gives up.
TEST_F(MarkdownDiary, APageOfHugoIsOfTheDayOnWhichHugoHasIt) {
    const ForeignDiary diary = readMarkdownDiary(sample(u"hugo"_s));
    EXPECT_EQ(headsOf(diary), (QStringList{
                                  u"2024/03/09|2024/03/09 14:05:00|海まで: 朝|日記|晴れ|"_s,
                                  u"2024/03/10|2024/03/10 21:00:00|TOML の日|日記||private"_s,
                                  u"2024/03/11||JSON front matter|||"_s,
                                  u"2024/03/12|2024/03/12 08:09:10|space date|||"_s,
                                  u"2024/03/14|2024/03/14 08:09:00|no zone|||"_s,
                                  u"2026/11/22|2026/11/22 02:43:41|Fresh|||private"_s,
                                  u"2099/01/01||future|||"_s,
                              }));
    EXPECT_EQ(diary.entries[0].entry.contents, u"<p>本文 <strong>強調</strong>。</p>"_s);
    EXPECT_EQ(diary.entries[0].entry.extend, u"<p>続き <b>html</b></p>"_s);
    EXPECT_EQ(diary.losses.text(),
              u"持ち込めないもの: タグ 3件、二つ目からのカテゴリ 1件、先頭のほかの項目 1件 (lastmod)"_s);
}

// As Jekyll itself tells in result.txt.
TEST_F(MarkdownDiary, APostOfJekyllIsReadAsJekyllReadsIt) {
    QDir().mkpath(path(u"_posts"_s));
    QDir().mkpath(path(u"_drafts"_s));
    for (const QString& name : QDir(sample(u"jekyll"_s)).entryList({u"*.m*"_s}))
        QFile::copy(sample(u"jekyll/"_s + name),
                    path((name == u"some-draft.md"_s ? u"_drafts/"_s : u"_posts/"_s) + name));
    QFile draft(path(u"_drafts/some-draft.md"_s));
    draft.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    ASSERT_TRUE(draft.open(QIODevice::ReadWrite));
    draft.setFileTime(QDateTime(QDate(2024, 4, 1), QTime(9, 8, 7)), QFileDevice::FileModificationTime);
    draft.close();
    const ForeignDiary diary = readAll();
    EXPECT_EQ(headsOf(diary), (QStringList{
                                  u"2024/03/08||Short Date|a b||"_s,
                                  u"2024/03/09|2024/03/09 14:05:00|海まで: 朝|日記||"_s,
                                  u"2024/03/10||No Title|one||"_s,
                                  u"2024/03/11||Hidden|||private"_s,
                                  u"2024/03/12||Plain|||"_s,
                                  u"2024/04/01|2024/04/01 09:08:07|d|||private"_s,
                              }));
    EXPECT_EQ(losses, u"持ち込めないもの: タグ 2件、二つ目からのカテゴリ 2件"_s);
}

TEST_F(MarkdownDiary, ADateIsThatOfTheClockWhereItWasWritten) {
    EXPECT_EQ(dayOf("2024-03-09T23:30:00-11:00"), u"2024/03/09"_s);
    EXPECT_EQ(dayOf("2024-03-09T00:30:00.123456Z"), u"2024/03/09"_s);
    EXPECT_EQ(dayOf("\"2024-3-9 1:02 UTC\""), u"2024/03/09"_s);
    EXPECT_EQ(dayOf("2024/03/09"), u"2024/03/09"_s);
    EXPECT_EQ(dayOf("9999-12-31"), u"9999/12/31"_s);
}

TEST_F(MarkdownDiary, HalfACharacterOfAHeadIsMarkedAndCounted) {
    EXPECT_EQ(entryOf(R"({"date":"2024-03-09","title":"a\ud83d"})").title, u"a\uFFFD"_s);
    EXPECT_EQ(losses, u"持ち込めないもの: 半分だけの文字 (�にします) 1件"_s);
}

TEST_F(MarkdownDiary, ADateThatDoesNotExistIsNamed) {
    for (const QByteArray date : {"2024-02-31", "0000-01-01", "0099-01-01", "2024-13-01", "2024-03-09 25:00",
                                  "10000-01-01", "yesterday", "2024-03"}) {
        EXPECT_EQ(dayOf(date), QString()) << date.constData();
        EXPECT_EQ(losses, u"持ち込めないもの: 日付が読めないファイル 1件 (x.md: %1)"_s.arg(QLatin1StringView(date)));
    }
    entryOf("---\ntitle: a\n---\nx");
    EXPECT_EQ(losses, u"持ち込めないもの: 日付のないファイル 1件 (x.md)"_s);
}

TEST_F(MarkdownDiary, HeadsOfAllThreeLanguagesTellTheSame) {
    const QByteArray heads[] = {
        "---\ntitle: 'a: b'\ndate: 2024-03-09\ndraft: true\ncategories: [x, y]\nweather: 雨\nsummary: s\n---\nbody",
        "---\r\ntitle: \"a: b\"\r\ndate: 2024-03-09\r\ndraft: true\r\ncategories:\r\n- x\r\n- y\r\nweather: "
        "雨\r\nsummary: |-\r\n  s\r\n...\r\n---\r\nbody",
        "+++\ntitle = 'a: b'\ndate = 2024-03-09\ndraft = true\ncategories = ['x', 'y']\nweather = '雨'\nsummary = "
        "'s'\n+++\nbody",
        R"({"title": "a: b", "date": "2024-03-09", "draft": true, "categories": ["x", "y"], "weather": "雨", "summary": "s", "}": {"{": 1}}
body)"};
    for (const QByteArray& head : heads) {
        const store::Entry entry = entryOf(head);
        EXPECT_EQ(entry.day, u"2024/03/09"_s) << head.constData();
        EXPECT_EQ(entry.title, u"a: b"_s) << head.constData();
        EXPECT_TRUE(entry.isPrivate) << head.constData();
        EXPECT_EQ(entry.genre, u"x"_s) << head.constData();
        EXPECT_EQ(entry.weather, u"雨"_s) << head.constData();
        EXPECT_EQ(entry.excerpt, u"s"_s) << head.constData();
        EXPECT_EQ(entry.contents, u"<p>body</p>"_s) << head.constData();
    }
}

TEST_F(MarkdownDiary, WhatAnyOfTheWordsForNoHidesIsPrivate) {
    for (const QByteArray line : {"draft: True", "draft: yes", "Draft: on", "DRAFT: true", "draft: 'true'",
                                  "published: No", "published: FALSE", "Published: off"})
        EXPECT_TRUE(entryOf("---\ndate: 2024-03-09\n" + line + "\n---\nx").isPrivate) << line.constData();
    for (const QByteArray line : {"draft: False", "draft: no", "published: yes", "published: true", "draft:"})
        EXPECT_FALSE(entryOf("---\ndate: 2024-03-09\n" + line + "\n---\nx").isPrivate) << line.constData();
    EXPECT_TRUE(entryOf("---\ndate: 2024-03-09\npublished: false\n...\nx").isPrivate);
}

TEST_F(MarkdownDiary, KeysReadInAnyCaseAndAHeadMayEndInDots) {
    const store::Entry entry = entryOf("---\nDate: 2024-03-09\nTitle: T\n... \nbody\n\n---\nrest");
    EXPECT_EQ(entry.title, u"T"_s);
    EXPECT_EQ(entry.contents, u"<p>body</p>\n<hr />\n<p>rest</p>"_s);
    EXPECT_EQ(entryOf("---\ndate: 2024-03-09\ntitle: own\nTitle: other\n---\n").title, u"own"_s);
}

TEST_F(MarkdownDiary, LinksToWhatStaysBehindAreNamed) {
    write(u"a.pdf"_s, "p");
    write(u"a.png"_s, "p");
    EXPECT_EQ(entryOf("---\ndate: 2024-03-09\n---\n[a](a.pdf) [b](../b.md#c) [c](#d) [e](http://f) [g](mailto:h@i) "
                      "<img src=a.png> <img src=gone.png>")
                  .contents,
              u"<p><a href=\"a.pdf\">a</a> <a href=\"../b.md#c\">b</a> <a href=\"#d\">c</a> <a href=\"http://f\">e</a> "
              "<a href=\"mailto:h@i\">g</a> <img src=\uFDD0"
              "0\uFDD1> <img src=gone.png></p>"_s);
    EXPECT_EQ(losses, u"持ち込めないもの: ほかのファイルやページへのリンク (そのまま残します) 2件 (a.pdf、../b.md#c)、"
                      "見つからない画像 1件 (gone.png)"_s);
}

TEST_F(MarkdownDiary, AHeadThatIsNoneOfItsLanguageIsRefusedOrCounted) {
    for (const QByteArray head :
         {"---\na: [\n---\nx", "---\n\ta: b\n---\n", "+++\na = \n+++\nx", "{\"a\": 1,}\nx", "{\"a\": 01}"}) {
        const QString file = write(u"2024-03-09.md"_s, head);
        const QString told = failureOf([&] { readMarkdownDiary(file); });
        EXPECT_TRUE(told.contains(u"2024-03-09.md"_s)) << qPrintable(told);
        EXPECT_TRUE(told.contains(u"何もインポートしていません"_s)) << qPrintable(told);
        EXPECT_TRUE(readAll().entries.empty());
        EXPECT_TRUE(losses.startsWith(u"持ち込めないもの: 先頭の項目が読めないファイル 1件 (2024-03-09.md: "_s))
            << qPrintable(losses);
    }
}

TEST_F(MarkdownDiary, AFileWithoutAHeadIsAllText) {
    for (const QByteArray text :
         {"---\n\nrule\n\n---\n", "---\ncut: off", "{{< x >}}", "{% x %}", "{ no json", "+++", ""}) {
        const ForeignDiary diary = readMarkdownDiary(write(u"2024-03-09-a.md"_s, text));
        ASSERT_EQ(diary.entries.size(), 1U) << text.constData();
        EXPECT_EQ(diary.entries[0].entry.title, u"A"_s);
    }
    EXPECT_EQ(readMarkdownDiary(write(u"2024-03-09.md"_s, "---\ncut: off")).entries[0].entry.contents,
              u"<hr />\n<p>cut: off</p>"_s);
}

// Each alias stands for ten of the one before: 10^10 texts, were they all made.
TEST_F(MarkdownDiary, AliasesThatMultiplyEndSoon) {
    QByteArray head = "---\ndate: 2024-03-09\na0: &a0 [x, x, x, x, x, x, x, x, x, x]\n";
    for (int level = 1; level <= 10; ++level) {
        const QByteArray last = "*a" + QByteArray::number(level - 1);
        head += "a" + QByteArray::number(level) + ": &a" + QByteArray::number(level) + " [" +
                QByteArrayList(10, last).join(", ") + "]\n";
    }
    EXPECT_NE(failureOf([&] { readMarkdownDiary(write(u"x.md"_s, head + "---\nx")); }), QString());
}

TEST_F(MarkdownDiary, DeepHeadsAreRefused) {
    for (const QByteArray& deep :
         QByteArrayList{"---\na: " + QByteArray(100'000, '[') + "\n---\n",
                        "---\na: " + QByteArray("- ").repeated(100'000) + "\n---\n",
                        "---\na: " + QByteArray("{a: ").repeated(100'000) + "\n---\n",
                        "+++\na = " + QByteArray(100'000, '[') + "\n+++\n",
                        "+++\n[" + QByteArray("a.").repeated(100'000) + "a]\n+++\n",
                        "+++\n" + QByteArray("'a' . ").repeated(100'000) + "a = 1\n+++\n",
                        "+++\na = {" + QByteArray("\"a\".").repeated(100'000) + "a = 1}\n+++\n",
                        "{\"a\": " + QByteArray("{\"a\": ").repeated(100'000) + QByteArray(100'001, '}')}) {
        EXPECT_NE(failureOf([&] { readMarkdownDiary(write(u"x.md"_s, deep)); }), QString())
            << deep.first(20).constData();
    }
}

TEST_F(MarkdownDiary, DotsInATextOfTomlAreNoDepth) {
    const QByteArray title = "a." + QByteArray(1000, '.') + " b. " + QByteArray("c. d ").repeated(100);
    write(u"2024-03-09-a.md"_s, "+++\ntitle = '" + title + "'\na.b.c = 1\n+++\nx");
    const ForeignDiary diary = readAll();
    ASSERT_EQ(diary.entries.size(), 1U);
    EXPECT_EQ(diary.entries[0].entry.title, QString::fromUtf8(title).simplified());
}

TEST_F(MarkdownDiary, AFileWhoseNameIsNoTextIsCounted) {
    write(u"2024-03-09-b.md"_s, "x");
    const std::string odd = path().toStdString() + "/2024-03-10-\x8B\x9F.md";
    std::ofstream(odd) << "y";
    EXPECT_EQ(readAll().entries.size(), 1U);
    EXPECT_EQ(losses, u"持ち込めないもの: 文字コードの違う名前のファイル 1件 (2024-03-10-\uFFFD\uFFFD.md)"_s);
    std::filesystem::remove(odd);
}

TEST_F(MarkdownDiary, WhatIsNoTextIsCountedAmongOthers) {
    write(u"2024-03-09-a.md"_s, QByteArray("\0\1\2", 3));
    write(u"2024-03-09-b.md"_s, "x");
    EXPECT_EQ(readAll().entries.size(), 1U);
    EXPECT_TRUE(losses.contains(u"2024-03-09-a.md"_s)) << qPrintable(losses);
    EXPECT_NE(failureOf([&] { readMarkdownDiary(path(u"2024-03-09-a.md"_s)); }), QString());
}

TEST_F(MarkdownDiary, WhatASiteKeepsBesideItsPostsIsNoEntry) {
    for (const QString& name :
         {u"archetypes/2024-03-09-a.md"_s, u"themes/x/2024-03-09-a.md"_s, u"_site/2024-03-09-a.md"_s,
          u"content/_index.md"_s, u".git/2024-03-09-a.md"_s, u"content/2024-03-09-a.html"_s})
        write(name, "---\ndate: 2024-03-09\n---\nx");
    write(u"travel/_posts/2024-03-10-b.md"_s, "x");
    EXPECT_EQ(headsOf(readAll()), QStringList{u"2024/03/10||B|||"_s});
}

TEST_F(MarkdownDiary, EntriesOfADayStandInTheOrderOfTheirTimes) {
    write(u"a.md"_s, "---\ntitle: late\ndate: 2024-03-09 20:00:00\n---\n");
    write(u"b.md"_s, "---\ntitle: early\ndate: 2024-03-09 08:00:00\n---\n");
    write(u"c.md"_s, "---\ntitle: whole\ndate: 2024-03-09\n---\n");
    QStringList titles;
    for (const auto& foreign : readAll().entries)
        titles += foreign.entry.title;
    EXPECT_EQ(titles, (QStringList{u"whole"_s, u"early"_s, u"late"_s}));
}

TEST_F(MarkdownDiary, ReadOnMarksPartTheText) {
    EXPECT_EQ(entryOf("---\ndate: 2024-03-09\n---\na [l] <!--more--> b [l]\n\n[l]: http://x/\n").contents,
              u"<p>a <a href=\"http://x/\">l</a></p>"_s);
    EXPECT_EQ(entryOf("---\ndate: 2024-03-09\n---\na [l] <!--more--> b [l]\n\n[l]: http://x/\n").extend,
              u"<p>b <a href=\"http://x/\">l</a></p>"_s);
    EXPECT_EQ(entryOf("---\ndate: 2024-03-09\nexcerpt_separator: '%%'\n---\na\n\n%%\n\nb").extend, u"<p>b</p>"_s);
    EXPECT_EQ(entryOf("---\ndate: 2024-03-09\n---\n    <!--more-->\nb").extend, u"<p>b</p>"_s);
}

TEST_F(MarkdownDiary, CommandsOfASiteStayAsTextAndAreCounted) {
    EXPECT_TRUE(
        entryOf("---\ndate: 2024-03-09\n---\n{{< figure src=\"a\" >}} {% if x %}").contents.contains(u"{% if x %}"_s));
    EXPECT_TRUE(losses.contains(u"文字のまま残します) 2件"_s)) << qPrintable(losses);
}

TEST_F(MarkdownDiary, PicturesBesideThePostGoWithIt) {
    write(u"content/2024-03-09-x/写真 1.PNG"_s, "p");
    write(u"static/img/b.jpg"_s, "p");
    write(u"content/2024-03-09-x/notes.txt"_s, "p");
    write(u"content/2024-03-09-x/index.md"_s, "![a](<写真 1.PNG>) ![b](/img/b.jpg) ![c](gone.png) ![d](http://x/d.png) "
                                              "<IMG SRC='/img/b.jpg'> [n](notes.txt)");
    const ForeignDiary diary = readAll();
    ASSERT_EQ(diary.entries.size(), 1U);
    const exchange::ForeignEntry& foreign = diary.entries[0];
    ASSERT_EQ(foreign.pictures.size(), 3U);
    EXPECT_TRUE(foreign.pictures[0].file.endsWith(u"写真 1.PNG"_s));
    EXPECT_TRUE(foreign.pictures[1].file.endsWith(u"static/img/b.jpg"_s));
    EXPECT_EQ(foreign.entry.title, u"X"_s);
    for (const exchange::ForeignPicture& picture : foreign.pictures)
        EXPECT_EQ(foreign.entry.contents.count(picture.placeholder), 1) << qPrintable(foreign.entry.contents);
    EXPECT_TRUE(foreign.entry.contents.contains(u"src=\"http://x/d.png\""_s));
    EXPECT_EQ(losses, u"持ち込めないもの: ほかのファイルやページへのリンク (そのまま残します) 1件 (notes.txt)、"
                      "見つからない画像 1件 (gone.png)"_s);
}

TEST_F(MarkdownDiary, NoAddressBringsAPictureFromElsewhere) {
    write(u"private/secret.png"_s, "p");
    write(u"diary/2024-03-09-x.md"_s,
          "![](../private/secret.png) ![](/../private/secret.png) ![](link.png)\n<img src='" +
              path(u"private/secret.png"_s).toUtf8() + "'>");
    QFile::link(path(u"private/secret.png"_s), path(u"diary/link.png"_s));
    for (const QString& source : {path(u"diary"_s), path(u"diary/2024-03-09-x.md"_s)}) {
        const ForeignDiary diary = readMarkdownDiary(source);
        ASSERT_EQ(diary.entries.size(), 1U);
        EXPECT_TRUE(diary.entries[0].pictures.empty());
    }
}

} // namespace
} // namespace velloria::tests
