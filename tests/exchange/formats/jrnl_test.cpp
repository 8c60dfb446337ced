#include "exchange/formats/jrnl.h"

#include "support/test_home.h"
#include "support/vectors.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Jrnl : public TestHome {
protected:
    exchange::ForeignDiary read(const QByteArray& bytes) {
        writeFile(path(u"journal.txt"_s), bytes);
        return exchange::readJrnl(path(u"journal.txt"_s));
    }
};

/// "time|title|text" of each entry.
QStringList entriesOf(const exchange::ForeignDiary& diary) {
    QStringList told;
    for (const exchange::ForeignEntry& entry : diary.entries)
        told += QStringList{entry.entry.publishTime.isEmpty() ? entry.entry.day : entry.entry.publishTime,
                            entry.entry.title, QString(entry.entry.contents).replace(u'\n', u'/')}
                    .join(u'|');
    return told;
}

QString sample(const QString& name) {
    return dataPath(u"exchange/jrnl/"_s + name);
}

TEST_F(Jrnl, TheJournalAndItsExportBringTheSameEntries) {
    const QStringList expected{
        u"2024/03/09 14:05:00|海まで。|<p>朝は晴れ。 #旅 @海 に行った。</p>"_s,
        u"2024/03/10 21:00:00|Starred title|<p>Body of the starred entry.</p>/<p>After a blank line: [not a date] and * star.</p>"_s,
        u"2024/03/12 00:30:00|After midnight without body|"_s, u"2024/03/12 12:30:00|Two on one day.|<p>Noon.</p>"_s};
    for (const QString& name : {u"jrnl.txt"_s, u"jrnl.json"_s}) {
        const exchange::ForeignDiary diary = exchange::readJrnl(sample(name));
        EXPECT_EQ(entriesOf(diary), expected) << name.toStdString();
        EXPECT_EQ(diary.losses.text(), u"持ち込めないもの: タグ 2件、星印 1件"_s);
    }
    EXPECT_EQ(entriesOf(exchange::readJrnl(sample(u"jrnl-24h.txt"_s))),
              QStringList{u"2024/03/13 18:20:00|24 hour form.|<p>With the older timeformat.</p>"_s});
}

TEST_F(Jrnl, TheOnlyLineOfAnEntryGivesItsFirstSentence) {
    EXPECT_EQ(
        entriesOf(read("[2024-03-01 10:00] One. Two.\n\n[2024-03-01 10:01] v1.2 is out! Really\n"
                       "[2024-03-01 10:02] 海へ。楽しい。\n[2024-03-01 10:03] no end\n[2024-03-01 10:04]\n")),
        (QStringList{u"2024/03/01 10:00:00|One.|<p>Two.</p>"_s, u"2024/03/01 10:01:00|v1.2 is out!|<p>Really</p>"_s,
                     u"2024/03/01 10:02:00|海へ。|<p>楽しい。</p>"_s, u"2024/03/01 10:03:00|no end|"_s,
                     u"2024/03/01 10:04:00||"_s}));
}

TEST_F(Jrnl, ADateInBracketsBeginsAnEntryWithinABodyToo) {
    EXPECT_EQ(
        entriesOf(read("[2024-03-01 10:00] a\nb\n[2024-03-02 11:00 AM] c\nd\n[x] e\n[2024-03-03]f\n[2024/3/4] g\nh\n")),
        (QStringList{u"2024/03/01 10:00:00|a|<p>b</p>"_s,
                     u"2024/03/02 11:00:00|c|<p>d<br>/[x] e<br>/[2024-03-03]f</p>"_s, u"2024/03/04|g|<p>h</p>"_s}));
}

TEST_F(Jrnl, ADateMayTellItsZoneWhichMovesNothing) {
    EXPECT_EQ(
        entriesOf(read("[2024-03-09T14:05:00+09:00] a\nb\n[2024-03-10 09:00 UTC] c\nd\n[2024-03-11 23:00Z] e\nf\n")),
        (QStringList{u"2024/03/09 14:05:00|a|<p>b</p>"_s, u"2024/03/10 09:00:00|c|<p>d</p>"_s,
                     u"2024/03/11 23:00:00|e|<p>f</p>"_s}));
}

TEST_F(Jrnl, AJournalWithoutBracketsReadsToo) {
    EXPECT_EQ(entriesOf(read("2013-06-09 15:39 Old *\nbody\n\n2013-06-10 01:02:03 pm Next\nbody 2013-06-11 10:00\n")),
              (QStringList{u"2013/06/09 15:39:00|Old|<p>body</p>"_s,
                           u"2013/06/10 13:02:03|Next|<p>body 2013-06-11 10:00</p>"_s}));
}

TEST_F(Jrnl, DatesThatAreNoneAreCountedAndTold) {
    const exchange::ForeignDiary diary =
        read("before\n[0000-01-01 10:00] a\n[2024-02-31 10:00] b\n[9999-12-31 23:59] c\nx\n[2024-01-01 25:00] d\n"
             "[10000-01-01 10:00] e\n");
    EXPECT_EQ(entriesOf(diary), QStringList{u"9999/12/31 23:59:00|c|<p>x</p>"_s});
    EXPECT_EQ(diary.losses.text(), u"持ち込めないもの: 日付が正しくない日記 3件 (0000-01-01、2024-02-31、2024-01-01)、"
                                   u"最初の日付より前の行 1件 (before)"_s);
}

TEST_F(Jrnl, AnyEncodingReadsAndIsTold) {
    const QString text = u"[2024-03-01 10:00] 日記\nほん文\n"_s;
    QByteArray utf16("\xFF\xFE");
    utf16.append(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
    for (const auto& [bytes, told] :
         {std::pair{text.toUtf8(), u""_s},
          {"\xEF\xBB\xBF" + text.toUtf8(), u""_s},
          {utf16, u"文字コード: UTF-16 1件"_s},
          {QByteArray("[2024-03-01 10:00] \x93\xFA\x8BL\r\n\x82\xD9\x82\xF1\x95\xB6\r\n"), u"文字コード: CP932 1件"_s},
          {QByteArray("[2024-03-01 10:00] \xC6\xFC\xB5\xAD\n\xA4\xDB\xA4\xF3\xCA\xB8\n"),
           u"文字コード: EUC-JP 1件"_s}}) {
        const exchange::ForeignDiary diary = read(bytes);
        EXPECT_EQ(entriesOf(diary), QStringList{u"2024/03/01 10:00:00|日記|<p>ほん文</p>"_s}) << told.toStdString();
        EXPECT_EQ(diary.losses.text(), told);
    }
}

TEST_F(Jrnl, WhatCanNotBeReadIsRefusedWithTheReason) {
    for (const auto& [bytes, told] :
         {std::pair{QByteArray("gAAAAABl0abc=="), u"暗号化された日記です"_s},
          {QByteArray("\x00\x01\xFF", 3), u"文字コードがわかりません"_s},
          {QByteArray("{\"entries\": [{\"title\": \"cut"), u"JSONとして読めません"_s},
          {QByteArray("{\"other\": []}"), u"jrnlのJSONではありません"_s},
          {QByteArray("{\"entries\": ") + QByteArray(100'000, '['), u"JSONとして読めません"_s}})
        EXPECT_TRUE(failureOf([&, text = bytes] { read(text); }).contains(told)) << told.toStdString();
}

TEST_F(Jrnl, HalfACharacterIsMarkedAndCounted) {
    const exchange::ForeignDiary diary =
        read(R"({"entries":[{"date":"2024-03-09","title":"a\ud83d","body":"\ude00b"}]})");
    EXPECT_EQ(entriesOf(diary), QStringList{u"2024/03/09|a\uFFFD|<p>\uFFFDb</p>"_s});
    EXPECT_EQ(diary.losses.text(), u"持ち込めないもの: 半分だけの文字 (�にします) 2件"_s);
}

TEST_F(Jrnl, ObjectsWithoutADateAreCounted) {
    const exchange::ForeignDiary diary = read("{\"entries\":[{\"title\":\"t\"},7,{\"date\":\"2024-02-30\"},{\"date\":"
                                              "\"2024-02-29\",\"body\":\"a\\r\\nb\"}]}");
    EXPECT_EQ(entriesOf(diary), QStringList{u"2024/02/29||<p>a<br>/b</p>"_s});
    EXPECT_EQ(diary.losses.text(), u"持ち込めないもの: 日付が正しくない日記 3件 (t、2024-02-30)"_s);
}

} // namespace
} // namespace velloria::tests
