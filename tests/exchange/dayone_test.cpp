#include "exchange/formats/dayone.h"

#include "exchange/foreign_files.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using exchange::ForeignDiary;
using exchange::readDayOne;

class DayOne : public ForeignFiles {
protected:
    ForeignDiary readEntries(const QByteArray& entries) {
        return readDayOne(write(u"j.json"_s, "{\"metadata\":{\"version\":\"1.0\"},\"entries\":[" + entries + "]}"));
    }
};

TEST_F(DayOne, ReadsAJournal) {
    const ForeignDiary diary = readDayOne(sample(u"dayone/Journal.json"_s));
    EXPECT_EQ(headsOf(diary), (QStringList{
                                  u"2024/03/09|2024/03/09 14:05:00|海まで.||Mostly Clear|"_s,
                                  u"2024/03/10|2024/03/10 00:30:00|After midnight in Tokyo: this belongs to…|||"_s,
                                  u"2024/03/11|2024/03/11 08:00:00||||"_s,
                              }));
    EXPECT_EQ(diary.entries[0].entry.contents,
              u"<p>朝は <strong>晴れ</strong>.</p>\n"
              "<p><img src=\"dayone-moment://AAAA5678AAAA5678AAAA5678AAAA5678\" alt=\"\" /></p>\n"
              "<ul>\n<li>一つ</li>\n<li>二つ</li>\n</ul>"_s);
    EXPECT_EQ(diary.entries[1].entry.contents, u"<p>After midnight in Tokyo: this belongs to 2024-03-10. 😂</p>"_s);
    EXPECT_EQ(diary.losses.text(), u"持ち込めないもの: スター 1件、タグ 2件、場所 1件、見つからない画像 2件 "
                                   "(d41d8cd98f00b204e9800998ecf8427e.jpeg、d41d8cd98f00b204e9800998ecf8427e.png)"_s);
}

TEST_F(DayOne, PicturesComeWhereTheTextShowsThemAndTheOthersBehindIt) {
    write(u"photos/aa.jpeg"_s, "1");
    write(u"photos/bb.png"_s, "2");
    write(u"photos/cc.gif"_s, "3");
    const ForeignDiary diary = readEntries(
        R"({"creationDate":"2024-03-09T05:05:00Z","timeZone":"Asia/Tokyo","text":"x ![](dayone-moment://A) y",
            "photos":[{"identifier":"C","md5":"cc","type":"gif","orderInEntry":2},{"identifier":"B","md5":"bb","type":"png","orderInEntry":1},
                      {"identifier":"A","md5":"aa","type":"jpeg"},{"identifier":"D","md5":"../j","type":"json"}]})");
    ASSERT_EQ(diary.entries.size(), 1U);
    QStringList files;
    for (const exchange::ForeignPicture& picture : diary.entries[0].pictures) {
        files += QFileInfo(picture.file).fileName();
        EXPECT_TRUE(diary.entries[0].entry.contents.contains(u"src=\"%1\""_s.arg(picture.placeholder)));
    }
    EXPECT_EQ(files, (QStringList{u"aa.jpeg"_s, u"bb.png"_s, u"cc.gif"_s}));
    EXPECT_EQ(diary.losses.text(), u"持ち込めないもの: 見つからない画像 1件 (j.json)"_s);
}

TEST_F(DayOne, AnEntryWithRichTextAloneKeepsItsWords) {
    const ForeignDiary diary = readEntries(
        R"({"creationDate":"2024-03-09T00:00:00Z","richText":"{\"contents\":[{\"text\":\"Title\\n\"},{\"text\":\"words\"}]}"},)"
        R"({"creationDate":"2024-03-09T01:00:00Z","text":"","richText":"{\"contents\":[{\"text\":\"no\"}]}"})");
    EXPECT_EQ(diary.entries[0].entry.contents, u"<p>Title<br />\nwords</p>"_s);
    EXPECT_EQ(diary.entries[1].entry.contents, QString());
}

TEST_F(DayOne, AnUnknownZoneIsToldOf) {
    EXPECT_EQ(
        readEntries(R"({"creationDate":"2024-03-09T00:00:00Z","timeZone":"Nowhere/Else","text":"a"})").losses.text(),
        u"持ち込めないもの: 知らないタイムゾーン (このコンピュータの時刻にします) 1件 (Nowhere/Else)"_s);
}

TEST_F(DayOne, APhotoIsKnownByItsIdentifierInAnyCaseOrByItsSum) {
    write(u"photos/aa.png"_s, "a");
    write(u"photos/bb.png"_s, "b");
    const ForeignDiary diary =
        readEntries(R"j({"creationDate":"2024-03-09T00:00:00Z","text":"![](dayone-moment://ABC)",)j"
                    R"("photos":[{"identifier":"abc","md5":"aa","type":"png"},{"md5":"bb","type":"png"}]})");
    ASSERT_EQ(diary.entries[0].pictures.size(), 2U);
    EXPECT_TRUE(diary.losses.isEmpty()) << qPrintable(diary.losses.text());
}

TEST_F(DayOne, TheUnpackedFolderWillDo) {
    write(u"a.json"_s, R"({"entries":[{"creationDate":"2024-03-09T05:05:00Z","timeZone":"UTC","text":"a\nb"}]})");
    write(u"b.json"_s, R"({"entries":[{"creationDate":"2024-03-09T04:05:00Z","timeZone":"UTC","text":"# b"}]})");
    write(u"c.json"_s, "{}");
    const ForeignDiary diary = readDayOne(path());
    EXPECT_EQ(headsOf(diary),
              (QStringList{u"2024/03/09|2024/03/09 04:05:00|b|||"_s, u"2024/03/09|2024/03/09 05:05:00|a|||"_s}));
    EXPECT_EQ(diary.entries[1].entry.contents, u"<p>a<br />\nb</p>"_s);
    EXPECT_EQ(diary.losses.text(), u"持ち込めないもの: Day OneのJSONではないファイル 1件 (c.json)"_s);
}

TEST_F(DayOne, AnythingMayBeMissingButTheDate) {
    const ForeignDiary diary = readEntries(
        R"({"creationDate":"2024-02-31T00:00:00Z"},{"uuid":"NODATE"},{"creationDate":"0050-01-01T00:00:00Z","timeZone":"UTC"},
                                              7,null,{"creationDate":"2024-03-09T05:05:00Z","timeZone":"Mars/Base","text":5,"photos":{},"tags":"x","weather":[]})");
    ASSERT_EQ(diary.entries.size(), 1U);
    EXPECT_TRUE(diary.losses.text().startsWith(
        u"持ち込めないもの: 日付が読めない日記 5件 (2024-02-31T00:00:00Z、NODATE、0050-01-01T00:00:00Z"_s))
        << qPrintable(diary.losses.text());
}

TEST_F(DayOne, HalfACharacterIsMarkedAndCounted) {
    const ForeignDiary diary = exchange::readDayOne(write(
        u"j.json"_s, R"({"entries":[{"creationDate":"2024-03-09T00:00:00Z","text":"# a\n\nb\ud83d \ud83d\ude00"}]})"));
    EXPECT_EQ(diary.entries.at(0).entry.contents, u"<p>b\uFFFD 😀</p>"_s);
    EXPECT_EQ(diary.losses.text(), u"持ち込めないもの: 半分だけの文字 (�にします) 1件"_s);
    const ForeignDiary rich = exchange::readDayOne(write(
        u"rich.json"_s,
        R"({"entries":[{"creationDate":"2024-03-09T00:00:00Z","richText":"{\"contents\":[{\"text\":\"b\\ud83d\"}]}"}]})"));
    EXPECT_EQ(rich.entries.at(0).entry.contents, u"<p>b\uFFFD</p>"_s);
    EXPECT_TRUE(rich.losses.text().contains(u"半分だけの文字 (�にします) 1件"_s)) << rich.losses.text().toStdString();
}

TEST_F(DayOne, WhatIsNoJournalIsRefused) {
    const QByteArray journal = "{\"entries\":[{\"creationDate\":\"2024-03-09T05:05:00Z\",\"text\":\"";
    const std::pair<QByteArray, QString> cases[] = {
        {"PK\x03\x04zip", u"展開してから"_s}, {journal, u"途中で切れていないか"_s},
        {"", u"JSONとして読めません"_s},      {QByteArray(100'000, '['), u"JSONとして読めません"_s},
        {"[]", u"「entries」がありません"_s}, {"{\"tags\":{}}", u"「entries」がありません"_s}};
    for (const auto& [bytes, reason] : cases) {
        const QString told = failureOf([&] { readDayOne(write(u"j.json"_s, bytes)); });
        EXPECT_TRUE(told.contains(reason) && told.contains(u"j.json"_s)) << qPrintable(told);
    }
}

} // namespace
} // namespace velloria::tests
