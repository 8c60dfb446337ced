#include "exchange/foreign_import.h"

#include "exchange/import_groups.h"
#include "platform/file_read.h"
#include "registers/file_register.h"
#include "store/genre_list.h"
#include "support/disk_watch.h"
#include "support/test_home.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class ForeignImport : public TestHome {
protected:
    ForeignImport() { startAt(u"2026/11/23 10:00:00"_s); }

    exchange::ForeignFormat format{
        u"x"_s, u"X"_s, exchange::ForeignFormat::Place::Either, {}, [this](const QString&) { return foreign; }};
    exchange::ForeignDiary foreign;
    QStringList days;
    QString source = path(u"source"_s);

    exchange::ForeignEntry& add(const QString& day, const QString& title, const QString& contents = u"c"_s) {
        exchange::ForeignEntry entry;
        entry.entry.day = day;
        entry.entry.title = title;
        entry.entry.contents = contents;
        foreign.entries.push_back(entry);
        return foreign.entries.back();
    }
    void addPicture(exchange::ForeignEntry& entry, const QString& name, const QByteArray& bytes) {
        QDir().mkpath(QFileInfo(source + u'/' + name).path());
        writeFile(source + u'/' + name, bytes);
        const QString placeholder = exchange::picturePlaceholder(entry);
        entry.entry.contents += u"<img src=\"%1\">"_s.arg(placeholder);
        entry.pictures.push_back({source + u'/' + name, placeholder});
    }
    platform::Outcome import(const QString& answer = u"yes"_s) {
        QDir().mkpath(source);
        desk.answers = {answer};
        return exchange::importForeignDiary(run, format, source,
                                            [this](const QStringList& written) { days = written; });
    }
    QString parts(const QString& name = {}) const { return session.DataPath + u"DiaryParts/"_s + name; }
    QStringList partNames() const { return QDir(parts()).entryList(QDir::Files); }
    /// "name|day|number" of each row.
    QStringList registered() {
        QStringList rows;
        for (const store::FileRow& row : registers::FileRegister(session.databaseFile()).ListFiles())
            rows += u"%1|%2|%3"_s.arg(row.name, row.day).arg(row.number);
        return rows;
    }
    QStringList titles(const QString& day) {
        QStringList titles;
        for (const store::Entry& entry : diary().LoadDay(day))
            titles.prepend(entry.title);
        return titles;
    }
};

TEST_F(ForeignImport, TwentyThousandPicturesOfOneEntryAreASecondsWork) {
    exchange::ForeignEntry& entry = add(u"2024/03/09"_s, u"t"_s);
    addPicture(entry, u"a.png"_s, "a");
    for (int left = 20'000; left > 1; --left) {
        const QString placeholder = exchange::picturePlaceholder(entry);
        entry.entry.contents += placeholder;
        entry.pictures.push_back({source + u"/a.png"_s, placeholder});
    }
    EXPECT_EQ(import(), platform::Outcome::Done);
    const QString contents = diary().LoadEntry(u"2024/03/09"_s, 1)->contents;
    EXPECT_EQ(contents.count(u"./DiaryParts/a.png"_s), 20'000);
    EXPECT_FALSE(contents.contains(u'\uFDD0'));
    EXPECT_EQ(registered().size(), 1);
}

TEST_F(ForeignImport, AnEntryThatNobodyCouldSeeYetComesInPrivate) {
    format.hidesFuture = true;
    add(u"2026/11/23"_s, u"now"_s).entry.publishTime = u"2026/11/23 10:00:00"_s;
    add(u"2026/11/23"_s, u"soon"_s).entry.publishTime = u"2026/11/23 10:00:01"_s;
    add(u"2099/01/01"_s, u"late"_s);
    add(u"2099/01/02"_s, u"own"_s).isOwn = true;
    foreign.entries.back().entry.publishTime = u"2099/01/02 00:00:00"_s;
    EXPECT_EQ(import(), platform::Outcome::Done);
    const auto isPrivate = [this](const QString& day, int number) { return diary().LoadEntry(day, number)->isPrivate; };
    EXPECT_FALSE(isPrivate(u"2026/11/23"_s, 1));
    EXPECT_TRUE(isPrivate(u"2026/11/23"_s, 2));
    EXPECT_TRUE(isPrivate(u"2099/01/01"_s, 1));
    EXPECT_FALSE(isPrivate(u"2099/01/02"_s, 1));
    EXPECT_TRUE(foreign.losses.isEmpty());
    EXPECT_TRUE(desk.texts(u"message"_s)
                    .value(0)
                    .contains(u"先の日付での公開予約（非公開にする日記） 2件 (2026/11/23、2099/01/01)"_s))
        << desk.texts(u"message"_s).value(0).toStdString();
    format.hidesFuture = false;
    import();
    EXPECT_FALSE(isPrivate(u"2099/01/01"_s, 2));
}

TEST_F(ForeignImport, EntriesGoBehindThoseOfTheDayAsOneGroup) {
    write(u"2024/01/01"_s, u"mine"_s);
    add(u"2024/01/02"_s, u"b"_s);
    add(u"2024/01/01"_s, u"a"_s);
    add(u"2024/01/01"_s, u"c"_s).entry.genre = u"旅"_s;
    EXPECT_EQ(import(), platform::Outcome::Done);
    EXPECT_EQ(titles(u"2024/01/01"_s), (QStringList{u"mine"_s, u"a"_s, u"c"_s}));
    EXPECT_EQ(days, (QStringList{u"2024/01/01"_s, u"2024/01/02"_s}));
    EXPECT_EQ(diary().ListImportBatches(), QStringList{u"2026/11/23 X"_s});
    EXPECT_EQ(store::readGenres(run), (QStringList{u"一般"_s, u"旅"_s}));
    EXPECT_EQ(import(), platform::Outcome::Done) << "once more";
    EXPECT_EQ(diary().ListImportBatches(), (QStringList{u"2026/11/23 X(2)"_s, u"2026/11/23 X"_s}));
    exchange::deleteImportGroup(run, u"2026/11/23 X"_s);
    EXPECT_EQ(titles(u"2024/01/01"_s), (QStringList{u"mine"_s, u"a"_s, u"c"_s}));
}

TEST_F(ForeignImport, WhatIsLeftOutIsFilled) {
    exchange::ForeignEntry& entry = add(u"2024/01/01"_s, u" "_s, u"a\nb\r\nc"_s + QChar::Null);
    entry.entry.extend = u"x\ry"_s;
    add(u"2024/01/02"_s, u"one\ntwo"_s, {}).entry.publishTime = u"2024/01/02 03:04:05"_s;
    import();
    const store::Entry first = *diary().LoadEntry(u"2024/01/01"_s, 1);
    EXPECT_EQ(first.title, u"無題"_s);
    EXPECT_EQ(first.contents, u"a\r\nb\r\nc\uFFFD"_s);
    EXPECT_EQ(first.extend, u"x\r\ny"_s);
    EXPECT_EQ(first.weather, u"-"_s);
    EXPECT_EQ(first.genre, u"一般"_s);
    EXPECT_EQ(first.publishTime, u"2024/01/01 00:00:00"_s);
    const store::Entry second = *diary().LoadEntry(u"2024/01/02"_s, 1);
    EXPECT_EQ(second.title, u"one two"_s);
    EXPECT_EQ(second.contents, u""_s);
    EXPECT_EQ(second.publishTime, u"2024/01/02 03:04:05"_s);
}

TEST_F(ForeignImport, TheQuestionTellsWhatIsLostAndNoChangesNothing) {
    addPicture(add(u"2024/01/01"_s, u"a"_s), u"a.png"_s, "a");
    foreign.losses.count(u"タグ"_s, 3);
    const auto before = contentOf(session.DataPath);
    EXPECT_EQ(import(u"no"_s), platform::Outcome::Refused);
    EXPECT_EQ(contentOf(session.DataPath), before);
    EXPECT_TRUE(boxes().constLast().contains(u"Xから1件の日記をインポートします。\r\n日付: 2024/01/01 (1日)\r\n"
                                             u"持ち込めないもの: タグ 3件\r\n"_s))
        << boxes().constLast().toStdString();
    EXPECT_EQ(days, QStringList());
}

TEST_F(ForeignImport, ADiaryWithoutEntriesIsRefusedWithTheReason) {
    foreign.losses.countNamed(u"日付が正しくない日記"_s, u"2024-02-31"_s);
    QDir().mkpath(source);
    const QString refusal = failureOf([&] { exchange::importForeignDiary(run, format, source, {}); });
    EXPECT_TRUE(refusal.contains(u"日付が正しくない日記 1件 (2024-02-31)"_s)) << refusal.toStdString();
    EXPECT_EQ(boxes(), QStringList());
}

TEST_F(ForeignImport, APlaceOfTheWrongKindIsRefused) {
    add(u"2024/01/01"_s, u"a"_s);
    writeFile(path(u"file"_s), "x");
    QDir().mkpath(source);
    const auto refusal = [&](exchange::ForeignFormat::Place place, const QString& file) {
        format.place = place;
        return failureOf([&] { exchange::importForeignDiary(run, format, file, {}); });
    };
    EXPECT_TRUE(refusal(exchange::ForeignFormat::Place::Folder, path(u"file"_s)).contains(u"フォルダではありません"_s));
    EXPECT_TRUE(refusal(exchange::ForeignFormat::Place::File, source).contains(u"フォルダです"_s));
    EXPECT_TRUE(refusal(exchange::ForeignFormat::Place::Either, path(u"none"_s)).contains(u"見つかりません"_s));
    EXPECT_TRUE(refusal(exchange::ForeignFormat::Place::Either, u"/dev/null"_s).contains(u"ファイルではありません"_s));
}

TEST_F(ForeignImport, PicturesAreCopiedAndRegisteredForTheirEntry) {
    write(u"2024/01/01"_s, u"mine"_s);
    exchange::ForeignEntry& entry = add(u"2024/01/01"_s, u"a"_s, {});
    addPicture(entry, u"海 #1.png"_s, "sea");
    addPicture(entry, u"b.png"_s, "b");
    entry.pictures.push_back(entry.pictures.front());
    EXPECT_EQ(import(), platform::Outcome::Done);
    EXPECT_EQ(diary().LoadEntry(u"2024/01/01"_s, 2)->contents,
              u"<img src=\"./DiaryParts/海__1.png\"><img src=\"./DiaryParts/b.png\">"_s);
    EXPECT_EQ(registered(), (QStringList{u"b.png|2024/01/01|2"_s, u"海__1.png|2024/01/01|2"_s}));
    EXPECT_EQ(bytesOf(parts(u"海__1.png"_s)), "sea");
}

TEST_F(ForeignImport, ANameThatIsTakenGivesWayUnlessItIsThePictureItself) {
    writeFile(parts(u"a.png"_s), "other");
    writeFile(parts(u"B.PNG"_s), "other");
    writeFile(parts(u"c.png"_s), "same");
    registers::FileRegister(session.databaseFile()).addFile({0, u"d.png"_s, u"ALL"_s, 0, false, false});
    exchange::ForeignEntry& entry = add(u"2024/01/01"_s, u"a"_s, {});
    for (const auto& [name, bytes] : {std::pair{u"a.png"_s, "a"},
                                      {u"b.png"_s, "b"},
                                      {u"c.png"_s, "same"},
                                      {u"d.png"_s, "d"},
                                      {u"sub/a.png"_s, "another"},
                                      {u"é.png"_s, "e"},
                                      {u".png"_s, "dot"}})
        addPicture(entry, name, bytes);
    import();
    EXPECT_EQ(registered(), (QStringList{u"_.png|2024/01/01|1"_s, u"a_2.png|2024/01/01|1"_s, u"a_3.png|2024/01/01|1"_s,
                                         u"b_2.png|2024/01/01|1"_s, u"c.png|2024/01/01|1"_s, u"d_2.png|2024/01/01|1"_s,
                                         u"picture.png|2024/01/01|1"_s, u"d.png|ALL|0"_s}));
    EXPECT_EQ(bytesOf(parts(u"a.png"_s)), "other");
    EXPECT_EQ(bytesOf(parts(u"a_2.png"_s)), "a");
    EXPECT_EQ(bytesOf(parts(u"a_3.png"_s)), "another");
    EXPECT_EQ(bytesOf(parts(u"B.PNG"_s)), "other");
}

TEST_F(ForeignImport, APictureThatCanNotBeCopiedLeavesEverythingAsItWas) {
    exchange::ForeignEntry& entry = add(u"2024/01/01"_s, u"a"_s);
    addPicture(entry, u"a.png"_s, "a");
    addPicture(entry, u"b.png"_s, "b");
    QFile::remove(source + u"/b.png"_s);
    const QStringList before = partNames();
    EXPECT_NE(failureOf([&] { import(); }), QString());
    EXPECT_EQ(partNames(), before);
    EXPECT_EQ(registered(), QStringList());
    EXPECT_EQ(titles(u"2024/01/01"_s), QStringList());
}

TEST_F(ForeignImport, ARowThatIsRefusedTakesAllBack) {
    add(u"2024/01/01"_s, u"a"_s);
    addPicture(add(u"2024/01/02"_s, u"b"_s), u"a.png"_s, "a");
    add(u"2024/01/03"_s, u"refused"_s);
    refuseRows(u"Title = 'refused'"_s);
    const QStringList before = partNames();
    EXPECT_NE(failureOf([&] { import(); }), QString());
    EXPECT_EQ(partNames(), before);
    EXPECT_EQ(registered(), QStringList());
    EXPECT_EQ(titles(u"2024/01/01"_s), QStringList());
    EXPECT_EQ(days, QStringList());
}

TEST_F(ForeignImport, ALongDayAndALongTitleComeWhole) {
    const QString longTitle(1'000'000, u'題');
    for (int number = 1; number <= 2000; ++number)
        add(u"2024/01/01"_s, number == 7 ? longTitle : QString::number(number));
    write(u"2024/01/01"_s, u"mine"_s);
    EXPECT_EQ(import(), platform::Outcome::Done);
    EXPECT_EQ(diary().LoadEntry(u"2024/01/01"_s, 2001)->title, u"2000"_s);
    EXPECT_EQ(diary().LoadEntry(u"2024/01/01"_s, 8)->title, longTitle);
}

TEST_F(ForeignImport, AFailureBehindTheImportSaysThatItIsDone) {
    add(u"2024/01/01"_s, u"a"_s);
    QDir().mkpath(session.DataPath + u"Genre.csv/x"_s);
    QFile::remove(session.DataPath + u"Genre.csv"_s);
    QDir().mkpath(session.DataPath + u"Genre.csv/x"_s);
    EXPECT_TRUE(failureOf([&] { import(); }).contains(u"日記は保存しました"_s));
    EXPECT_EQ(days, QStringList{u"2024/01/01"_s});
    EXPECT_EQ(titles(u"2024/01/01"_s), QStringList{u"a"_s});
}

TEST(ForeignDays, AreOfTheCalendarAndOfFourDigits) {
    EXPECT_EQ(exchange::calendarDay(2024, 2, 29), u"2024/02/29"_s);
    EXPECT_EQ(exchange::calendarDay(9999, 12, 31), u"9999/12/31"_s);
    EXPECT_EQ(exchange::calendarDay(100, 1, 1), u"0100/01/01"_s);
    for (const auto& [year, month, day] :
         {std::tuple{2023, 2, 29}, {2024, 2, 31}, {0, 1, 1}, {99, 1, 1}, {10000, 1, 1}, {2024, 0, 1}, {2024, 13, 1}})
        EXPECT_EQ(exchange::calendarDay(year, month, day), std::nullopt) << year << month << day;
}

} // namespace
} // namespace velloria::tests
