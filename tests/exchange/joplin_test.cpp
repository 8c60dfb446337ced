#include "exchange/formats/joplin.h"

#include "exchange/foreign_files.h"

#include <QDateTime>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using exchange::ForeignDiary;
using exchange::readJoplin;

const QString kId = u"0e1fe57d81ff26afea380e1fe57d81ff"_s;

class Joplin : public ForeignFiles {
protected:
    void note(const QByteArray& text, const QByteArray& keys = {}, const QByteArray& id = "n") {
        write(QString::fromUtf8(id) + u".md"_s,
              text + "\n\nid: " + id + "\nuser_created_time: 2024-03-09T12:00:00.000Z\n" + keys + "type_: 1");
    }
    exchange::ForeignEntry entry() {
        ForeignDiary diary = readJoplin(path());
        losses = diary.losses.text();
        return diary.entries.empty() ? exchange::ForeignEntry() : diary.entries.front();
    }
    QString losses;
};

/// As the clock on this computer's wall shows it.
QString local(const QString& moment) {
    return QDateTime::fromString(moment, Qt::ISODate).toLocalTime().toString(u"yyyy/MM/dd HH:mm:ss"_s);
}

TEST_F(Joplin, ReadsAnExport) {
    const ForeignDiary diary = readJoplin(sample(u"joplin"_s));
    const QString time = local(u"2024-03-09T05:05:00Z"_s);
    EXPECT_EQ(headsOf(diary), QStringList{time.left(10) + u'|' + time + u"|海まで|日記帳||"_s});
    EXPECT_EQ(
        diary.entries[0].entry.contents,
        u"<p>朝は <strong>晴れ</strong>。</p>\n<p><img src=\":/cd95c2642deb4ddd8e7058a4c8f5b24b\" alt=\"ume.jpg\" /></p>"_s);
    EXPECT_EQ(diary.losses.text(),
              u"持ち込めないもの: タグ 1件、場所 1件、見つからない画像 1件 (:/cd95c2642deb4ddd8e7058a4c8f5b24b)"_s);
}

TEST_F(Joplin, ANoteOfHtmlStaysHtmlAndALineEndIsABreak) {
    note("題", "", "a");
    EXPECT_EQ(entry().entry.title, u"題"_s);
    EXPECT_EQ(entry().entry.contents, u""_s);
    note("題\n\na\nb: c\n\nkey: value\n\n", "", "a");
    EXPECT_EQ(entry().entry.contents, u"<p>a<br />\nb: c</p>\n<p>key: value</p>"_s);
    note("題\n\n<p>*a*</p>", "markup_language: 2\n", "a");
    EXPECT_EQ(entry().entry.contents, u"<p>*a*</p>"_s);
}

TEST_F(Joplin, PicturesComeAndOtherFilesAreCounted) {
    write(u"resources/"_s + kId + u".png"_s, "p");
    write(u"resources/aa.pdf"_s, "p");
    note("題\n\n![x](:/" + kId.toUtf8() + ") [p](:/aa) [n](:/bb)");
    const exchange::ForeignEntry foreign = entry();
    ASSERT_EQ(foreign.pictures.size(), 1U);
    EXPECT_TRUE(foreign.pictures[0].file.endsWith(kId + u".png"_s));
    EXPECT_TRUE(foreign.entry.contents.contains(u"src=\"%1\""_s.arg(foreign.pictures[0].placeholder)));
    EXPECT_EQ(losses, u"持ち込めないもの: ほかのファイルやページへのリンク (そのまま残します) 2件 (:/aa、:/bb)"_s);
}

TEST_F(Joplin, WhatCannotComeIsCounted) {
    note("", "encryption_applied: 1\n", "a");
    note("捨てた", "deleted_time: 1700000000000\n", "b");
    note("予定", "is_todo: 1\nsource_url: http://x/\nlatitude: 35.1\n", "c");
    write(u"readme.md"_s, "no: note\n");
    write(u"d.md"_s, "いつ\n\nid: d\nuser_created_time: soon\ntype_: 1");
    write(u"e.md"_s, "cut off\n\nid: e\nuser_created_ti");
    write(u"f.md"_s, "id: f\ntype_: 13");
    EXPECT_EQ(readJoplin(path()).entries.size(), 1U);
    entry();
    EXPECT_EQ(losses, u"持ち込めないもの: Joplinのものではないファイル 2件 (e.md、readme.md)、ToDoの印 "
                      u"1件、ごみ箱のノート 1件 (捨てた)、"
                      "そのほかの項目 (type_ 13) 1件、出典のURL 1件、場所 1件、日付が読めないノート 1件 (いつ)、"
                      "暗号化されたノート (Joplinで復号してから書き出してください) 1件 (a)"_s);
}

TEST_F(Joplin, AnArchiveIsRefusedWithAWayOn) {
    const QString told = failureOf([&] { readJoplin(write(u"x.jex"_s, "tar")); });
    EXPECT_TRUE(told.contains(u"x.jex"_s) && told.contains(u"tarで展開"_s)) << qPrintable(told);
}

TEST_F(Joplin, ThousandsOfNotesOfADayStandInTheOrderOfTheirTimes) {
    for (int number = 0; number < 2000; ++number) {
        const QByteArray id = QByteArray::number(9999 - number);
        write(QString::fromUtf8(id) + u".md"_s,
              "t" + QByteArray::number(number) + "\n\nid: " + id +
                  "\nuser_created_time: 2024-03-09T12:" + QByteArray::number(number / 60).rightJustified(2, '0') + ":" +
                  QByteArray::number(number % 60).rightJustified(2, '0') + ".000Z\ntype_: 1");
    }
    const ForeignDiary diary = readJoplin(path());
    ASSERT_EQ(diary.entries.size(), 2000U);
    for (int number = 0; number < 2000; ++number)
        EXPECT_EQ(diary.entries[std::size_t(number)].entry.title, u"t%1"_s.arg(number));
}

} // namespace
} // namespace velloria::tests
