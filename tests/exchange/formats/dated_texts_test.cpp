#include "exchange/formats/dated_texts.h"
#include "exchange/formats/html_text.h"
#include "exchange/formats/source_files.h"

#include "support/test_home.h"
#include "support/vectors.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class DatedTexts : public TestHome {
protected:
    QString folder = path(u"texts"_s);

    void file(const QString& name, const QByteArray& bytes = "text") {
        QDir().mkpath(QFileInfo(folder + u'/' + name).path());
        writeFile(folder + u'/' + name, bytes);
    }
    exchange::ForeignDiary read() const { return exchange::readDatedTexts(folder); }
    /// "day|title|text" of each entry, by day.
    static QStringList entriesOf(const exchange::ForeignDiary& diary) {
        QStringList told;
        for (const exchange::ForeignEntry& entry : diary.entries)
            told += entry.entry.day + u'|' + entry.entry.title + u'|' + entry.entry.contents;
        std::ranges::stable_sort(told, {}, [](const QString& line) { return line.left(10); });
        return told;
    }
};

TEST_F(DatedTexts, TheSamplesComeWithTheirEncodings) {
    const exchange::ForeignDiary diary = exchange::readDatedTexts(dataPath(u"exchange/text-by-date"_s));
    EXPECT_EQ(entriesOf(diary), (QStringList{u"2024/03/09||<p>2024-03-09の題<br>\n一行目。</p>\n<p>三行目。</p>"_s,
                                             u"2024/03/10||<p>題のない日。</p>"_s, u"2024/03/10||<p>two</p>"_s,
                                             u"2024/03/11|evening|<p># heading</p>\n<p>body</p>"_s}));
    EXPECT_EQ(diary.losses.text(), u"文字コード: CP932 1件"_s);
}

TEST_F(DatedTexts, NamesTellDayNumberAndTitle) {
    for (const QString& name :
         {u"2024-03-09_10.txt"_s, u"2024-03-09_2.txt"_s, u"2024-03-09.txt"_s, u"20240310 海まで.md"_s,
          u"2024_3_11-x y.text"_s, u"2024.03.12.TXT"_s, u"sub/deeper/2024-03-13.txt"_s})
        file(name, name.toUtf8());
    EXPECT_EQ(entriesOf(read()),
              (QStringList{u"2024/03/09||<p>2024-03-09.txt</p>"_s, u"2024/03/09||<p>2024-03-09_2.txt</p>"_s,
                           u"2024/03/09||<p>2024-03-09_10.txt</p>"_s, u"2024/03/10|海まで|<p>20240310 海まで.md</p>"_s,
                           u"2024/03/11|x y|<p>2024_3_11-x y.text</p>"_s, u"2024/03/12||<p>2024.03.12.TXT</p>"_s,
                           u"2024/03/13||<p>sub/deeper/2024-03-13.txt</p>"_s}));
}

TEST_F(DatedTexts, TheFirstLineIsTheTitleWhenItStandsAlone) {
    file(u"2024-01-01.txt"_s, "Title\n\nbody\n");
    file(u"2024-01-02.txt"_s, "Title\r\n \r\nbody & <b>\r\n\r\n\r\nmore\r\n");
    file(u"2024-01-03.txt"_s, "one\ntwo\n\nthree");
    file(u"2024-01-04.txt"_s, "alone\n\n\n");
    file(u"2024-01-05.txt"_s, "\n\nbody");
    EXPECT_EQ(entriesOf(read()), (QStringList{u"2024/01/01|Title|<p>body</p>"_s,
                                              u"2024/01/02|Title|<p>body &amp; &lt;b&gt;</p>\n\n<p>more</p>"_s,
                                              u"2024/01/03||<p>one<br>\ntwo</p>\n<p>three</p>"_s,
                                              u"2024/01/04||<p>alone</p>"_s, u"2024/01/05||\n\n<p>body</p>"_s}));
}

TEST_F(DatedTexts, WhatIsNoEntryIsCountedByName) {
    file(u"2024-01-01.txt"_s);
    file(u"2024-01-01.jpg"_s);
    file(u"notes.txt"_s);
    file(u"2024-02-31.txt"_s);
    file(u"0000-01-01.txt"_s);
    file(u"202401011.txt"_s);
    file(u"2024-01-02.txt"_s, QByteArray("a\0b", 3));
    file(u"2024-01-03.txt"_s, " \n\n");
    file(u".hidden/2024-01-04.txt"_s);
    QFile::link(folder, folder + u"/loop"_s);
    QFile::link(folder + u"/2024-01-01.txt"_s, folder + u"/2024-01-05.txt"_s);
    const exchange::ForeignDiary diary = read();
    EXPECT_EQ(entriesOf(diary), QStringList{u"2024/01/01||<p>text</p>"_s});
    EXPECT_EQ(
        diary.losses.text(),
        u"持ち込めないもの: シンボリックリンク 2件 (2024-01-05.txt、loop)、"
        u"テキストではないファイル 1件 (2024-01-01.jpg)、名前に日付のないファイル 2件 (202401011.txt、notes.txt)、"
        u"日付が正しくない日記 2件 (0000-01-01.txt、2024-02-31.txt)、空のファイル 1件 (2024-01-03.txt)、"
        u"読めないファイル 1件 (2024-01-02.txt)"_s);
}

TEST_F(DatedTexts, WhatTheDiskDoesNotGiveIsCountedToo) {
    file(u"2024-01-01.txt"_s);
    file(u"2024-01-02.txt"_s);
    file(u"shut/2024-01-03.txt"_s);
    QFile::setPermissions(folder + u"/2024-01-02.txt"_s, {});
    QFile::setPermissions(folder + u"/shut"_s, {});
    QFile::setPermissions(home.path(), QFile::Permissions(0x7755));
    EXPECT_TRUE(holdsForNobody([&] {
        return read().losses.text() == u"持ち込めないもの: 読めないファイル 1件 (2024-01-02.txt)、"
                                       u"読めないフォルダ 1件 (shut)"_s;
    }));
    QFile::setPermissions(folder + u"/shut"_s, QFile::ReadUser | QFile::WriteUser | QFile::ExeUser);
}

TEST_F(DatedTexts, MoreThanFiveNamesAreCutShort) {
    for (int number = 1; number <= 7; ++number)
        file(u"note%1.txt"_s.arg(number));
    EXPECT_EQ(read().losses.text(), u"持ち込めないもの: 名前に日付のないファイル 7件 "
                                    u"(note1.txt、note2.txt、note3.txt、note4.txt、note5.txt、…)"_s);
}

TEST_F(DatedTexts, AFileOfItsOwnIsRead) {
    file(u"2024-01-01 one.txt"_s, "a");
    file(u"2024-01-02.txt"_s, "b");
    EXPECT_EQ(entriesOf(exchange::readDatedTexts(folder + u"/2024-01-01 one.txt"_s)),
              QStringList{u"2024/01/01|one|<p>a</p>"_s});
}

TEST_F(DatedTexts, WhatIsTooLargeIsRefusedWithItsSize) {
    file(u"2024-01-01.txt"_s);
    ASSERT_TRUE(QFile::resize(folder + u"/2024-01-01.txt"_s, exchange::kLargestSource));
    file(u"2024-01-02.txt"_s, "one byte too many");
    const QString refusal = failureOf([&] { read(); });
    EXPECT_TRUE(refusal.contains(u"大きすぎます (256.0 MiB)"_s)) << refusal.toStdString();
    exchange::Losses losses;
    QFile::resize(folder + u"/2024-01-01.txt"_s, exchange::kLargestSource + 1);
    EXPECT_NE(failureOf([&] { exchange::readSource(folder + u"/2024-01-01.txt"_s); }), QString());
}

TEST_F(DatedTexts, DeepFoldersEnd) {
    QString deep;
    for (int level = 0; level < 40; ++level)
        deep += u"d/"_s;
    file(deep + u"2024-01-01.txt"_s);
    file(u"2024-01-02.txt"_s);
    const exchange::ForeignDiary diary = read();
    EXPECT_EQ(diary.entries.size(), 1U);
    EXPECT_EQ(diary.losses.text(), u"持ち込めないもの: 深すぎるフォルダ 1件 (d)"_s);
}

} // namespace
} // namespace velloria::tests
