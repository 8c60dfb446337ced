#include "exchange/diary_export.h"

#include "exchange/foreign_import.h"
#include "exchange/formats/balanced_html.h"
#include "exchange/formats/markdown_diary.h"
#include "exchange/formats/markdown_entry.h"
#include "store/entry_line.h"
#include "store/saving.h"
#include "support/test_home.h"

#include <QDir>
#include <QJsonDocument>

#include <random>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using exchange::DiaryExport;
using store::Entry;

/// Everything of an entry but number and import mark.
QStringList shown(const Entry& entry) {
    QStringList texts{entry.day, entry.isPrivate ? u"private"_s : u"public"_s};
    for (const QString& text :
         {entry.title, entry.contents, entry.extend, entry.excerpt, entry.weather, entry.genre, entry.publishTime})
        texts += text.isNull() ? u"NULL"_s : u"'"_s + text + u'\'';
    return texts;
}

/// Texts that somebody may have typed, and that no reader of Markdown, YAML or templates should ever see as its own.
class Texts {
public:
    explicit Texts(unsigned seed)
        : m_random(seed) {}

    int below(int end) { return int(m_random() % unsigned(end)); }
    bool oneOf(int many) { return below(many) == 0; }

    QString text(int longest) {
        static const QStringList pieces{u"今日は晴れ。"_s,
                                        u"\r\n"_s,
                                        u"\r\n\r\n"_s,
                                        u"\n"_s,
                                        u"\r"_s,
                                        u" "_s,
                                        u"\t"_s,
                                        u"<P>"_s,
                                        u"</P>"_s,
                                        u"<b>"_s,
                                        u"</i>"_s,
                                        u"<div>"_s,
                                        u"</div>"_s,
                                        u"\n</div>\n"_s,
                                        u"<br>"_s,
                                        u"<!--more-->"_s,
                                        u"<!-- more -->"_s,
                                        u"<!-- "_s,
                                        u"-->"_s,
                                        u"---"_s,
                                        u"\n---\n"_s,
                                        u"+++"_s,
                                        u"{{< x >}}"_s,
                                        u"{{% y %}}"_s,
                                        u"{% raw %}"_s,
                                        u"{{ z }}"_s,
                                        u"&amp;"_s,
                                        u"&lt;"_s,
                                        u"&"_s,
                                        u"\""_s,
                                        u"'"_s,
                                        u"\\"_s,
                                        u": "_s,
                                        u"# "_s,
                                        u"- "_s,
                                        u"* "_s,
                                        u"1. "_s,
                                        u"> "_s,
                                        u"    code"_s,
                                        u"```\n"_s,
                                        u"|a|b|"_s,
                                        u"~"_s,
                                        u"null"_s,
                                        u"yes"_s,
                                        u"2024-03-09"_s,
                                        u"[a](b)"_s,
                                        u"![c](d.png)"_s,
                                        u"<img src=\"gone.png\">"_s,
                                        u"<script>if (a < b) x();</script>"_s,
                                        u"<pre>\r\n  a\r\n\r\n</pre>"_s,
                                        u"\x01"_s,
                                        u"\x7f"_s,
                                        u"\u0085"_s,
                                        u"\u2028"_s,
                                        u"\ufeff"_s,
                                        u"\ufffe"_s,
                                        u"😂"_s,
                                        u"ｶﾅ"_s,
                                        u"%41"_s,
                                        u"!important"_s,
                                        u"&a *a"_s};
        QString made;
        for (int left = below(longest); left > 0; --left)
            made += pieces[below(int(pieces.size()))];
        return made;
    }

    QString orNull(const QString& text) { return oneOf(8) ? QString() : text; }

    Entry entry() {
        Entry made;
        made.day = u"%1/%2/%3"_s.arg(oneOf(5) ? 100 + below(9900) : 2004, 4, 10, QChar(u'0'))
                       .arg(1 + below(3), 2, 10, QChar(u'0'))
                       .arg(1 + below(28), 2, 10, QChar(u'0'));
        made.title = u"t"_s + text(6);
        made.contents = orNull(text(30));
        made.extend = orNull(oneOf(2) ? u""_s : text(10));
        made.excerpt = orNull(oneOf(2) ? u""_s : text(5));
        made.weather = orNull(oneOf(2) ? u"-"_s : text(3));
        made.genre = orNull(oneOf(2) ? u"一般"_s : text(4));
        made.publishTime =
            orNull((oneOf(2) ? made.day : u"2026/11/23"_s) + u" %1:05:09"_s.arg(below(24), 2, 10, QChar(u'0')));
        made.isPrivate = oneOf(3);
        return made;
    }

private:
    std::mt19937 m_random;
};

class DiaryExports : public TestHome {
protected:
    DiaryExports() { QDir().mkpath(path(u"lines"_s)); }

    QString folder(const QString& name = u"out"_s) const { return path(name); }
    QString parts(const QString& name = {}) const { return session.DataPath + u"DiaryParts/"_s + name; }

    DiaryExport exportTo(const QString& name = u"out"_s) { return *exchange::exportMarkdown(run, folder(name)); }
    void import(const QString& place) {
        desk.answers = {u"yes"_s};
        EXPECT_EQ(exchange::importForeignDiary(run, *exchange::foreignFormat(u"markdown"_s), place,
                                               [](const QStringList&) {}),
                  platform::Outcome::Done);
    }
    QStringList names(const QString& name = u"out"_s) const {
        return QDir(folder(name)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }
    /// All entries, days and numbers in order.
    std::vector<QStringList> all() const {
        std::vector<QStringList> found;
        std::vector<store::EntryKey> keys = diary().AllEntryKeys();
        std::ranges::sort(keys, {}, [](const store::EntryKey& key) { return std::pair(key.day, key.number); });
        for (const store::EntryKey& key : keys)
            found.push_back(shown(*diary().LoadEntry(key.day, key.number)));
        return found;
    }
};

TEST_F(DiaryExports, AFileIsReadAsItIsByThoseWhoMakeSitesOfIt) {
    Entry entry = entryOf(u"2004/02/10"_s, u"海まで: \"朝\""_s);
    entry.number = 1;
    entry.contents = u"<P>一</P>\r\n\r\n二"_s;
    entry.extend = u"続き {{< x >}}"_s;
    entry.excerpt = u"抜き書き"_s;
    entry.weather = u"晴れ"_s;
    entry.publishTime = u"2004/02/11 01:02:03"_s;
    entry.isPrivate = true;
    EXPECT_EQ(QString::fromUtf8(exchange::markdownFile(entry)), uR"(---
title: "海まで: \"朝\""
date: 2004-02-10
draft: true
published: false
categories: ["一般"]
weather: "晴れ"
description: "抜き書き"
markup: html
render_with_liquid: false
excerpt_separator: "<!-- more -->"
velloria:
  Number: 1
  Extend: "続き {{< x >}}"
  PublishTime: "2004/02/11 01:02:03"
---
<div>
<P>一</P>

二
</div>

<!-- more -->

<div>
続き &#123;{< x >}}
</div>
)"_s);
}

TEST_F(DiaryExports, FiveHundredRandomDiariesComeBackToTheLetter) {
    for (unsigned seed = 1; seed <= 500; ++seed) {
        Texts texts(seed);
        const QString place = path(u"random/%1"_s.arg(seed));
        QDir().mkpath(place);
        std::map<QString, std::vector<QStringList>> wanted;
        for (int left = 1 + texts.below(8); left > 0; --left) {
            Entry entry = texts.entry();
            entry.number = int(wanted[entry.day].size()) + 1;
            wanted[entry.day].push_back(shown(entry));
            writeFile(u"%1/%2-%3.md"_s.arg(place, QString(entry.day).replace(u'/', u'-')).arg(entry.number),
                      exchange::markdownFile(entry));
        }
        std::map<QString, std::vector<QStringList>> found;
        for (const exchange::ForeignEntry& foreign : exchange::readMarkdownDiary(place).entries)
            found[foreign.entry.day].push_back(shown(foreign.entry));
        ASSERT_EQ(found.size(), wanted.size()) << "seed " << seed;
        for (const auto& [day, entries] : wanted) {
            ASSERT_EQ(found[day].size(), entries.size()) << "seed " << seed;
            for (std::size_t at = 0; at < entries.size(); ++at)
                ASSERT_EQ(found[day][at].join(u'|'), entries[at].join(u'|')) << "seed " << seed;
        }
    }
}

TEST_F(DiaryExports, ADiaryComesBackFromItsFolderAndFromItsLines) {
    for (unsigned seed = 1; seed <= 10; ++seed) {
        sql(u"DELETE FROM Contents"_s);
        Texts texts(1000 + seed);
        for (int left = 20; left > 0; --left) {
            Entry entry = texts.entry();
            entry.number = 0;
            diary().saveEntries({entry}, store::PublishTime::AsGiven, {});
        }
        const std::vector<QStringList> before = all();
        const QString place = u"out%1"_s.arg(seed);
        EXPECT_EQ(exportTo(place).entries, 20);
        const QString lines = path(u"lines/"_s + place);
        EXPECT_EQ(exchange::exportJsonLines(run, lines)->entries, 20);
        sql(u"DELETE FROM Contents"_s);
        import(folder(place));
        const std::vector<QStringList> after = all();
        ASSERT_EQ(after.size(), before.size());
        for (std::size_t at = 0; at < before.size(); ++at)
            ASSERT_EQ(after[at].join(u'|'), before[at].join(u'|')) << "seed " << seed;
        sql(u"DELETE FROM Contents"_s);
        std::vector<store::EntryLine> read;
        for (const QByteArray& line : bytesOf(lines).split('\n')) {
            if (!line.isEmpty())
                read.push_back(store::parseEntryLine(line));
        }
        store::saveLines(run, read, store::PublishTime::AsGiven);
        ASSERT_EQ(all(), before) << "seed " << seed;
    }
}

TEST_F(DiaryExports, WhatIsChangedElsewhereIsWhatComesBack) {
    Entry entry = entryOf(u"2004/02/10"_s, u"題"_s);
    entry.contents = u"<b>a\rb"_s;
    entry.publishTime = u"2004/02/11 01:02:03"_s;
    const QString file = QString::fromUtf8(exchange::markdownFile(entry));
    const auto read = [&](const QString& from, const QString& to) {
        EXPECT_TRUE(file.contains(from)) << qPrintable(file);
        writeFile(path(u"x.md"_s), QString(file).replace(from, to).toUtf8());
        return exchange::readMarkdownDiary(path(u"x.md"_s)).entries.at(0).entry;
    };
    EXPECT_EQ(read(u"title: \"題\""_s, u"title: 新"_s).title, u"新"_s);
    EXPECT_EQ(read(u"title: \"題\""_s, u"title: 新"_s).contents, u"<b>a\rb"_s) << "the rest is as it was";
    EXPECT_EQ(read(u"<b>a\nb"_s, u"<b>a\nc"_s).contents, u"<b>a\r\nc</b>"_s);
    EXPECT_EQ(read(u"<b>a\nb"_s, u"<b>a\nc"_s).publishTime, u"2004/02/11 01:02:03"_s);
    EXPECT_EQ(read(u"2004-02-10"_s, u"2004-02-12"_s).day, u"2004/02/12"_s);
    EXPECT_EQ(read(u"2004-02-10"_s, u"2004-02-12"_s).publishTime, u"2004/02/11 01:02:03"_s);
    EXPECT_EQ(read(u"markup: html"_s, u"markup: md"_s).contents, u"<div>\n<b>a\nb</b>\n</div>"_s) << "read as Markdown";
}

TEST_F(DiaryExports, FilesThatTextsLeadToGoAlongAndComeBack) {
    writeFile(parts(u"写真 1.png"_s), "p");
    writeFile(parts(u"b.jpg"_s), "q");
    writeFile(parts(u"unused.jpg"_s), "r");
    const QString text =
        u"<IMG SRC=\"./DiaryParts/写真 1.png\"><img src='DiaryParts/b.jpg'><a href=./DiaryParts/gone.zip>"
        "<img src=\"DiaryParts/../secret\">"_s;
    write(u"2004/02/10"_s, u"t"_s, text);
    const DiaryExport told = exportTo();
    EXPECT_EQ(names(), (QStringList{u"2004-02-10-1.md"_s, u"DiaryParts"_s}));
    EXPECT_EQ(names(u"out/DiaryParts"_s), (QStringList{u"b.jpg"_s, u"写真 1.png"_s}));
    EXPECT_EQ(told.text(), u"1件の日記を書き出しました。ファイル2個をDiaryPartsにコピーしました。"
                           "日記が指しているファイル1個がDiaryPartsにありません (gone.zip)。"_s);
    sql(u"DELETE FROM Contents"_s);
    for (const QString& name : {u"写真 1.png"_s, u"b.jpg"_s})
        QFile::remove(parts(name));
    writeFile(parts(u"b.jpg"_s), "another");
    import(folder());
    EXPECT_EQ(
        diary().LoadEntry(u"2004/02/10"_s, 1)->contents,
        QString(text).replace(u"'DiaryParts/b.jpg'"_s, u"'./DiaryParts/b_2.jpg'"_s).replace(u"写真 1"_s, u"写真_1"_s));
    EXPECT_EQ(bytesOf(parts(u"b_2.jpg"_s)), "q");
}

TEST_F(DiaryExports, FilesThatAreNoPicturesComeBackToo) {
    for (const QString& name : {u"a.pdf"_s, u"b#c.png"_s, u"d.mp3"_s, u"e.zip"_s})
        writeFile(parts(name), name.toUtf8());
    const QString text = u"<a href='DiaryParts/a.pdf?x#y'>A</a><img src=\"./DiaryParts/b%23c.png\">"
                         "<audio src=\"DiaryParts/d.mp3\"></audio><a href=./DiaryParts/e.zip>E</a>"_s;
    write(u"2004/02/10"_s, u"t"_s, text);
    EXPECT_EQ(exportTo().text(), u"1件の日記を書き出しました。ファイル4個をDiaryPartsにコピーしました。"_s);
    sql(u"DELETE FROM Contents"_s);
    ASSERT_TRUE(QDir(parts()).removeRecursively());
    import(folder());
    EXPECT_EQ(diary().LoadEntry(u"2004/02/10"_s, 1)->contents, QString(text).replace(u"b%23c.png"_s, u"b_c.png"_s));
    EXPECT_EQ(QDir(parts()).entryList(QDir::Files), (QStringList{u"a.pdf"_s, u"b_c.png"_s, u"d.mp3"_s, u"e.zip"_s}));
}

TEST_F(DiaryExports, OnlyAnEmptyFolderIsTaken) {
    write(u"2004/02/10"_s, u"t"_s);
    QDir().mkpath(folder());
    writeFile(folder() + u"/.mine"_s, "m");
    const QString told = failureOf([&] { exportTo(); });
    EXPECT_TRUE(told.contains(u"空ではありません"_s) && told.contains(u"新しいフォルダか、空のフォルダ"_s))
        << qPrintable(told);
    EXPECT_EQ(names(), QStringList{u".mine"_s});
    writeFile(path(u"file"_s), "m");
    EXPECT_TRUE(failureOf([&] { exportTo(u"file"_s); }).contains(u"フォルダではありません"_s));
    EXPECT_EQ(bytesOf(path(u"file"_s)), "m");
    QDir().mkpath(path(u"empty"_s));
    EXPECT_EQ(exportTo(u"empty"_s).entries, 1);
    EXPECT_EQ(exportTo(u"a/b/c"_s).entries, 1);
}

TEST_F(DiaryExports, WhatAKilledRunHasLeftIsNoPartOfTheFolder) {
    write(u"2004/02/10"_s, u"t"_s);
    for (const QString& place : {u"."_s, u"empty"_s}) {
        QDir().mkpath(path(place + u"/.velltmp-folder-1/DiaryParts"_s));
        writeFile(path(place + u"/.velltmp-folder-1/DiaryParts/a.png"_s), "a");
    }
    EXPECT_EQ(exportTo(u"empty"_s).entries, 1);
    EXPECT_EQ(names(u"empty"_s), QStringList{u"2004-02-10-1.md"_s});
    EXPECT_EQ(exportTo(u"new"_s).entries, 1);
    EXPECT_FALSE(names(u"."_s).contains(u".velltmp-folder-1"_s));
}

TEST_F(DiaryExports, AFolderBehindALinkIsFilledAndTheLinkStays) {
    write(u"2004/02/10"_s, u"t"_s);
    QDir().mkpath(path(u"there"_s));
    ASSERT_TRUE(QFile::link(path(u"there"_s), path(u"link"_s)));
    EXPECT_EQ(exportTo(u"link/"_s).entries, 1);
    EXPECT_TRUE(QFileInfo(path(u"link"_s)).isSymLink());
    EXPECT_EQ(names(u"there"_s), QStringList{u"2004-02-10-1.md"_s});
    ASSERT_TRUE(QFile::link(path(u"nowhere"_s), path(u"lost"_s)));
    EXPECT_NE(failureOf([&] { exportTo(u"lost"_s); }), QString());
    EXPECT_EQ(exportTo(u"new/"_s).entries, 1);
}

TEST_F(DiaryExports, AFailureLeavesNothing) {
    write(u"2004/02/10"_s, u"a"_s);
    write(u"2004/02/11"_s, u"b"_s, u"<img src=\"DiaryParts/x.png\">"_s);
    // A file that is there and whose first byte no one can read.
    QDir().mkpath(parts());
    ASSERT_TRUE(QFile::link(u"/proc/self/mem"_s, parts(u"x.png"_s)));
    QDir().mkpath(folder(u"empty"_s));
    for (const QString& place : {u"new"_s, u"empty"_s}) {
        const QString told = failureOf([&] { exportTo(place); });
        EXPECT_TRUE(told.contains(u"取り消しました"_s)) << qPrintable(told);
        EXPECT_FALSE(told.contains(u".velltmp"_s)) << qPrintable(told);
        EXPECT_EQ(names(place), QStringList{});
    }
    EXPECT_EQ(names(u"."_s).filter(u".vell"_s), QStringList{});
    EXPECT_FALSE(QFileInfo::exists(folder(u"new"_s)));
    EXPECT_TRUE(QFileInfo::exists(folder(u"empty"_s)));
}

TEST_F(DiaryExports, OddDaysAreToldAndNeverTwice) {
    write(u"2004/02/10"_s, u"a"_s);
    for (const QString& day : {u"'2004'"_s, u"''"_s, u"'%'"_s, u"'2004/02/31'"_s})
        sql(u"INSERT INTO Contents (Day, Number, Title, Contents, Private) VALUES (%1, 1, 'odd', 'x', 0)"_s.arg(day));
    const DiaryExport markdown = exportTo();
    EXPECT_EQ(markdown.entries, 1);
    EXPECT_EQ(markdown.oddDays.size(), 4);
    EXPECT_TRUE(markdown.text().contains(u"日付でない日の日記が4件あります"_s)) << qPrintable(markdown.text());
    const DiaryExport lines = *exchange::exportJsonLines(run, path(u"lines/x.jsonl"_s));
    EXPECT_EQ(lines.entries, 5);
    EXPECT_EQ(bytesOf(path(u"lines/x.jsonl"_s)).count('\n'), 5);
}

TEST_F(DiaryExports, LinesTakeNoFileOfTheProgramAndKeepTheOldOneWhenTheyFail) {
    write(u"2004/02/10"_s, u"a"_s);
    EXPECT_TRUE(
        failureOf([&] { exchange::exportJsonLines(run, session.databaseFile()); }).contains(u"日記に必要なファイル"_s));
    EXPECT_EQ(diary().LoadDay(u"2004/02/10"_s).size(), 1U);
    const QString file = path(u"lines/x.jsonl"_s);
    writeFile(file, "old");
    desk.answers = {u"no"_s, u"yes"_s};
    EXPECT_FALSE(exchange::exportJsonLines(run, file));
    EXPECT_EQ(bytesOf(file), "old");
    EXPECT_TRUE(exchange::exportJsonLines(run, file));
    EXPECT_NE(bytesOf(file), "old");
    EXPECT_NE(failureOf([&] { exchange::exportJsonLines(run, path(u"no/where.jsonl"_s)); }), QString());
}

TEST_F(DiaryExports, AnEntryWithoutATitleIsALineThatCanBeSaved) {
    sql(u"INSERT INTO Contents (Day, Number, Title, Contents, Private) VALUES ('2004/02/10', 1, '', 'x', 0)"_s);
    exchange::exportJsonLines(run, path(u"lines/x.jsonl"_s));
    const QByteArray line = bytesOf(path(u"lines/x.jsonl"_s)).trimmed();
    sql(u"DELETE FROM Contents"_s);
    store::saveLines(run, {store::parseEntryLine(line)}, store::PublishTime::AsGiven);
    EXPECT_EQ(diary().LoadEntry(u"2004/02/10"_s, 1)->contents, u"x"_s);
}

TEST(BalancedHtml, EveryElementEndsInOrder) {
    const std::pair<QString, QString> cases[] = {
        {u"<P>a<P>b"_s, u"<P>a</p><P>b</p>"_s},
        {u"<ul><li>a<li>b</ul>"_s, u"<ul><li>a</li><li>b</li></ul>"_s},
        {u"<ul><li>a<ul><li>b</ul><li>c</ul>"_s, u"<ul><li>a<ul><li>b</li></ul></li><li>c</li></ul>"_s},
        {u"a</b>x"_s, u"ax"_s},
        {u"<b><i>x</b></i>"_s, u"<b><i>x</i></b>"_s},
        {u"<table><tr><td>a<tr><td>b</table>"_s, u"<table><tr><td>a</td></tr><tr><td>b</td></tr></table>"_s},
        {u"<dl><dt>a<dd>b</dl>"_s, u"<dl><dt>a</dt><dd>b</dd></dl>"_s},
        {u"a<br>b<IMG src=\"a>b\"/><hr>"_s, u"a<br>b<IMG src=\"a>b\"/><hr>"_s},
        {u"3 < 4 <3 </> <"_s, u"3 < 4 <3 &lt;/> <"_s},
        {u"<img src=\"a"_s, u"&lt;img src=\"a"_s},
        {u"<!-- <b>"_s, u"<!-- <b>-->"_s},
        {u"<script>if (a<b) '</b>'</script>x"_s, u"<script>if (a<b) '</b>'</script>x"_s},
        {u"<style>b"_s, u"<style>b</style>"_s},
        {u"<p>a<div>b</div>c</p>"_s, u"<p>a</p><div>b</div>c"_s},
        {u"<custom-tag a='1'>"_s, u"<custom-tag a='1'></custom-tag>"_s},
        {u"<p class=it's>a<p title='>'>b"_s, u"<p class=it's>a</p><p title='>'>b</p>"_s},
        {u""_s, u""_s},
    };
    for (const auto& [html, balanced] : cases)
        EXPECT_EQ(exchange::balancedHtml(html), balanced);
}

TEST(BalancedHtml, ManyTagsAreReadSoon) {
    for (const QString& tag : {u"<b>"_s, u"</b>"_s, u"<a \""_s, u"<"_s, u"<!--"_s, u"<li>"_s, u"<dl><dt>"_s,
                               u"<p><b>"_s, u"<script>"_s, u"<b></i>"_s})
        EXPECT_FALSE(exchange::balancedHtml(tag.repeated(100'000 / tag.size())).isNull());
    const QString deep = u"<table><td><table>"_s + u"<b>"_s.repeated(30'000);
    EXPECT_FALSE(exchange::balancedHtml(deep + u"<td></td>"_s.repeated(20'000)).isNull());
}

} // namespace
} // namespace velloria::tests
