#include "store/diary_store.h"

#include "support/patience.h"
#include "support/test_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using store::Entry;
using store::EntryKey;
using store::PublishTime;

const QString kDay = u"2004/05/06"_s;

class DiaryStore : public TestHome {
protected:
    /// The entries of a day as "1 a|2 b".
    QString day(const QString& day = kDay) {
        return sqlValue(u"SELECT coalesce(group_concat(Number || ' ' || Title, '|'), '') FROM "
                        "(SELECT Number, Title FROM Contents WHERE Day = '%1' ORDER BY Number, RecordID)"_s.arg(day));
    }
    /// A row as it is, whatever numbers the day has.
    void insert(const QString& day, int number, const QString& title, const QString& mark = {}) {
        sql(u"INSERT INTO Contents (Day, Number, Title, ImportMark) VALUES ('%1', %2, '%3', '%4')"_s.arg(day)
                .arg(number)
                .arg(title, mark));
    }
    void save(const Entry& entry) { diary().saveEntries({entry}, PublishTime::Now, {}); }

    static Entry full() {
        Entry entry;
        entry.day = kDay;
        entry.number = 1;
        entry.title = u"題"_s;
        entry.contents = u"<P>本文</P>\r\n"_s;
        entry.extend = u"追記"_s;
        entry.excerpt = u"概要"_s;
        entry.weather = u"晴"_s;
        entry.genre = u"旅"_s;
        entry.publishTime = u"1999/01/01 00:00:00"_s;
        entry.isPrivate = true;
        entry.importMark = u"mark"_s;
        return entry;
    }
};

TEST_F(DiaryStore, ADayWithoutRowsIsEmpty) {
    EXPECT_TRUE(diary().LoadDay(kDay).empty());
    EXPECT_EQ(diary().LoadEntry(kDay, 1), std::nullopt);
}

TEST_F(DiaryStore, LoadDayGivesTheHighestNumberFirst) {
    for (const QString& title : {u"a"_s, u"b"_s, u"c"_s})
        write(kDay, title);
    write(u"2004/05/07"_s, u"other"_s);
    QStringList titles;
    for (const Entry& entry : diary().LoadDay(kDay))
        titles += QString::number(entry.number) + entry.title;
    EXPECT_EQ(titles, (QStringList{u"3c"_s, u"2b"_s, u"1a"_s}));
}

TEST_F(DiaryStore, LoadEntryFindsOneOfADay) {
    write(kDay, u"a"_s);
    write(kDay, u"b"_s);
    EXPECT_EQ(diary().LoadEntry(kDay, 2)->title, u"b"_s);
    EXPECT_EQ(diary().LoadEntry(kDay, 3), std::nullopt);
    EXPECT_EQ(diary().LoadEntry(u"2004/05/07"_s, 1), std::nullopt);
}

TEST_F(DiaryStore, SavesEveryFieldButTheMarkAndStampsTheTime) {
    save(full());
    const std::optional<Entry> read = diary().LoadEntry(kDay, 1);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->title, u"題"_s);
    EXPECT_EQ(read->contents, u"<P>本文</P>\r\n"_s);
    EXPECT_EQ(read->extend, u"追記"_s);
    EXPECT_EQ(read->excerpt, u"概要"_s);
    EXPECT_EQ(read->weather, u"晴"_s);
    EXPECT_EQ(read->genre, u"旅"_s);
    EXPECT_TRUE(read->isPrivate);
    EXPECT_EQ(read->publishTime, u"2004/05/06 08:05:09"_s);
    EXPECT_EQ(read->importMark, u""_s);
    EXPECT_EQ(sqlValue(u"SELECT TrackBack || '.' FROM Contents"_s), u"."_s);
}

TEST_F(DiaryStore, SaveOfAnExistingKeyReplacesTheFieldsAndKeepsTheRow) {
    insert(kDay, 1, u"old"_s, u"batch"_s);
    insert(kDay, 2, u"second"_s);
    sql(u"UPDATE Contents SET TrackBack = 'tb', PublishTime = '2001/01/01 00:00:00' WHERE Number = 1"_s);
    const QString record = sqlValue(u"SELECT RecordID FROM Contents WHERE Number = 1"_s);
    setNow(u"2010/12/31 23:59:59"_s);
    save(full());
    EXPECT_EQ(day(), u"1 題|2 second"_s);
    EXPECT_EQ(sqlValue(u"SELECT RecordID FROM Contents WHERE Number = 1"_s), record);
    EXPECT_EQ(sqlValue(u"SELECT TrackBack FROM Contents WHERE Number = 1"_s), u"tb"_s);
    const Entry read = *diary().LoadEntry(kDay, 1);
    EXPECT_EQ(read.importMark, u"batch"_s);
    EXPECT_EQ(read.publishTime, u"2010/12/31 23:59:59"_s);
    EXPECT_EQ(read.contents, full().contents);
    EXPECT_TRUE(read.isPrivate);
}

TEST_F(DiaryStore, SaveOverwritesTheFirstOfTwoRowsWithOneKey) {
    insert(kDay, 1, u"first"_s);
    insert(kDay, 1, u"twin"_s);
    save(full());
    EXPECT_EQ(day(), u"1 題|2 twin"_s);
    EXPECT_EQ(diary().LoadEntry(kDay, 1)->title, u"題"_s);
}

TEST_F(DiaryStore, KeepsAMissingValueApartFromAnEmptyOne) {
    Entry entry = full();
    entry.extend = entry.weather = entry.genre = QString();
    entry.excerpt = u""_s;
    save(entry);
    EXPECT_EQ(sqlValue(u"SELECT Extend FROM Contents"_s), u"NULL"_s);
    EXPECT_EQ(sqlValue(u"SELECT Excerpt || '.' FROM Contents"_s), u"."_s);
    const Entry read = *diary().LoadEntry(kDay, 1);
    EXPECT_TRUE(read.extend.isNull());
    EXPECT_FALSE(read.excerpt.isNull());
    EXPECT_TRUE(read.weather.isNull() && read.genre.isNull());
}

TEST_F(DiaryStore, DefaultsStandForMissingValuesAlone) {
    sql(u"INSERT INTO Contents (Day, Number, ImportMark) VALUES ('2004/05/06', 1, NULL)"_s);
    const Entry missing = store::withDefaults(*diary().LoadEntry(kDay, 1));
    EXPECT_EQ(missing.weather, u"-"_s);
    EXPECT_EQ(missing.genre, u"一般"_s);
    EXPECT_FALSE(missing.isPrivate);
    for (const QString& text :
         {missing.title, missing.contents, missing.extend, missing.excerpt, missing.publishTime, missing.importMark})
        EXPECT_TRUE(text.isEmpty() && !text.isNull());

    Entry empty = full();
    empty.weather = empty.genre = u""_s;
    EXPECT_EQ(store::withDefaults(empty).weather, u""_s);
    EXPECT_EQ(store::withDefaults(empty).genre, u""_s);
}

TEST_F(DiaryStore, BringsAnyTextBackAsItWas) {
    for (const QString& text : {u"it's \"quoted\" %_[a]*"_s, u"'); DROP TABLE Contents; --"_s, u"😀é〜ｶﾞ\u3000"_s,
                                u"a\r\nb\nc\rd\te"_s, QString(1'000'000, u'日'), QString::fromUtf16(u"a\0b", 3)}) {
        Entry entry = full();
        entry.title = entry.contents = entry.extend = entry.excerpt = entry.weather = entry.genre = text;
        save(entry);
        const Entry read = *diary().LoadEntry(kDay, 1);
        for (const QString& field : {read.title, read.contents, read.extend, read.excerpt, read.weather, read.genre})
            EXPECT_TRUE(field == text) << text.left(20).toStdString();
    }
}

TEST_F(DiaryStore, GivesSeveralEntriesTheNextNumbersOfTheirDays) {
    write(kDay, u"a"_s);
    const auto keys = diary().saveEntries(
        {entryOf(kDay, u"b"_s), entryOf(u"2004/05/07"_s, u"x"_s), entryOf(kDay, u"c"_s)}, PublishTime::Now, {});
    ASSERT_EQ(keys.size(), 3U);
    EXPECT_EQ(keys[0].number, 2);
    EXPECT_EQ(keys[1].day, u"2004/05/07"_s);
    EXPECT_EQ(keys[1].number, 1);
    EXPECT_EQ(keys[2].number, 3);
    EXPECT_EQ(day(), u"1 a|2 b|3 c"_s);
}

TEST_F(DiaryStore, ANextNumberNeverFallsOnARowBehindAGap) {
    insert(kDay, 1, u"one"_s);
    insert(kDay, 3, u"three"_s);
    EXPECT_EQ(write(kDay, u"new"_s), 3);
    EXPECT_EQ(day(), u"1 one|2 three|3 new"_s);
}

TEST_F(DiaryStore, ANumberFarBehindTheLastIsMovedUp) {
    Entry entry = entryOf(kDay, u"far"_s);
    entry.number = 9;
    EXPECT_EQ(diary().saveEntries({entry}, PublishTime::Now, {}).front().number, 1);
    EXPECT_EQ(day(), u"1 far"_s);
}

TEST_F(DiaryStore, TakesTimeAndMarkAsGivenOnlyWhenAsked) {
    Entry entry = full();
    diary().saveEntries({entry}, PublishTime::AsGiven, {});
    EXPECT_EQ(diary().LoadEntry(kDay, 1)->publishTime, u"1999/01/01 00:00:00"_s);
    EXPECT_EQ(diary().LoadEntry(kDay, 1)->importMark, u"mark"_s);

    entry.importMark = u"other"_s;
    diary().saveEntries({entry}, PublishTime::Now, {});
    EXPECT_EQ(diary().LoadEntry(kDay, 1)->publishTime, u"2004/05/06 08:05:09"_s);
    EXPECT_EQ(diary().LoadEntry(kDay, 1)->importMark, u"mark"_s);

    entry.publishTime = entry.importMark = QString();
    diary().saveEntries({entry}, PublishTime::AsGiven, {});
    EXPECT_EQ(diary().LoadEntry(kDay, 1)->publishTime, u"2004/05/06 08:05:09"_s);
    EXPECT_EQ(diary().LoadEntry(kDay, 1)->importMark, u"mark"_s);
}

TEST_F(DiaryStore, ShowsWhatItIsAboutToOverwrite) {
    insert(kDay, 1, u"old"_s, u"batch"_s);
    QStringList seen;
    Entry entry = full();
    diary().saveEntries({entry, entry, entryOf(kDay, u"new"_s)}, PublishTime::Now, [&](const std::vector<Entry>& rows) {
        for (const Entry& old : rows)
            seen += old.title + u'/' + old.importMark;
    });
    EXPECT_EQ(seen, (QStringList{u"old/batch"_s, u"題/batch"_s}));
}

TEST_F(DiaryStore, DeletingTheMiddleEntryRenumbersTheRest) {
    for (const QString& title : {u"a"_s, u"b"_s, u"c"_s})
        write(kDay, title);
    write(u"2004/05/07"_s, u"other"_s);
    diary().DeleteEntry(kDay, 2);
    EXPECT_EQ(day(), u"1 a|2 c"_s);
    EXPECT_EQ(day(u"2004/05/07"_s), u"1 other"_s);
}

TEST_F(DiaryStore, DeletingTheOnlyEntryLeavesNoRow) {
    write(kDay, u"a"_s);
    diary().DeleteEntry(kDay, 1);
    EXPECT_EQ(sqlValue(u"SELECT count(*) FROM Contents"_s), u"0"_s);
}

TEST_F(DiaryStore, DeletingANumberWithoutARowStillRenumbersTheDay) {
    insert(kDay, 2, u"two"_s);
    insert(kDay, 5, u"five"_s);
    diary().DeleteEntry(kDay, 4);
    EXPECT_EQ(day(), u"1 two|2 five"_s);
}

TEST_F(DiaryStore, RenumbersInTheOrderOfNumberAndRow) {
    insert(kDay, 3, u"late"_s);
    insert(kDay, 1, u"first"_s);
    insert(kDay, 3, u"later"_s);
    insert(kDay, 2, u"gone"_s);
    insert(kDay, -1, u"low"_s);
    diary().DeleteEntry(kDay, 2);
    EXPECT_EQ(day(), u"1 low|2 first|3 late|4 later"_s);
}

TEST_F(DiaryStore, DeletesAllRowsOfANumberAndShowsEach) {
    insert(kDay, 1, u"a"_s);
    insert(kDay, 1, u"twin"_s);
    insert(kDay, 2, u"b"_s);
    QStringList seen;
    diary().DeleteEntry(kDay, 1, [&](const std::vector<Entry>& rows) {
        for (const Entry& row : rows)
            seen += row.title;
    });
    EXPECT_EQ(seen, (QStringList{u"a"_s, u"twin"_s}));
    EXPECT_EQ(day(), u"1 b"_s);
}

TEST_F(DiaryStore, DeletingLeavesTheFileRegisterAsItIs) {
    write(kDay, u"a"_s);
    write(kDay, u"b"_s);
    sql(u"INSERT INTO FileDB (FileName, Day, Number) VALUES ('x.gif', '2004/05/06', 2)"_s);
    diary().DeleteEntry(kDay, 1);
    EXPECT_EQ(sqlValue(u"SELECT Number FROM FileDB"_s), u"2"_s);
}

TEST_F(DiaryStore, DeletingAnImportRenumbersItsDays) {
    insert(kDay, 1, u"mine"_s);
    insert(kDay, 2, u"theirs"_s, u"2004/05/01 Import"_s);
    insert(kDay, 3, u"mine too"_s);
    insert(u"2004/05/07"_s, 1, u"theirs"_s, u"2004/05/01 ｉｍｐｏｒｔ"_s);
    insert(u"2004/05/07"_s, 2, u"other import"_s, u"x"_s);
    QStringList seen;
    diary().DeleteImportBatch(u"2004/05/01 Import"_s, [&](const std::vector<Entry>& rows) {
        for (const Entry& row : rows)
            seen += row.day;
    });
    EXPECT_EQ(seen, (QStringList{kDay, u"2004/05/07"_s}));
    EXPECT_EQ(day(), u"1 mine|2 mine too"_s);
    EXPECT_EQ(day(u"2004/05/07"_s), u"1 other import"_s);
}

TEST_F(DiaryStore, DeletingAnUnknownImportTouchesNothing) {
    insert(kDay, 1, u"a"_s);
    insert(kDay, 3, u"b"_s, u"x"_s);
    diary().DeleteImportBatch(u"y"_s);
    EXPECT_EQ(day(), u"1 a|3 b"_s);
}

TEST_F(DiaryStore, RepairsADayWhoseNumbersHaveGapsOrTwins) {
    const QString other = u"2004/05/07"_s;
    insert(kDay, 1, u"a"_s);
    insert(kDay, 3, u"b"_s);
    insert(other, 0, u"z"_s);
    insert(other, 2, u"y"_s);
    insert(other, 2, u"x"_s);
    diary().repairDay(kDay);
    EXPECT_EQ(day(), u"1 a|2 b"_s);
    EXPECT_EQ(day(other), u"0 z|2 y|2 x"_s);
    diary().repairDay(other);
    EXPECT_EQ(day(other), u"1 z|2 y|3 x"_s);
}

TEST_F(DiaryStore, LeavesADayInOrderAlone) {
    write(kDay, u"a"_s);
    write(kDay, u"b"_s);
    const QByteArray before = bytesOf(session.databaseFile());
    diary().repairDay(kDay);
    diary().repairDay(u"2004/05/07"_s);
    EXPECT_TRUE(bytesOf(session.databaseFile()) == before);
}

TEST_F(DiaryStore, ALongDayTakesNoLongerThanItIsLong) {
    std::vector<Entry> entries(30'000, entryOf(kDay, u"t"_s));
    entries[10'000].number = 20'000; // a gap on the way, which the next one closes
    const double start = processorSeconds();
    const auto keys = diary().saveEntries(std::move(entries), PublishTime::Now, {});
    EXPECT_LT(processorSeconds() - start, 30);
    EXPECT_EQ(keys.size(), 30'000U);
    EXPECT_EQ(sqlValue(u"SELECT count(DISTINCT Number) || ' ' || min(Number) || ' ' || max(Number) FROM Contents"_s),
              u"30000 1 30000"_s);
}

TEST_F(DiaryStore, EverySecondNumberBehindAGapTakesNoLongerEither) {
    constexpr int kEntries = 16'000;
    std::vector<Entry> entries(kEntries, entryOf(kDay, u"t"_s));
    for (int i = 0; i < kEntries; i += 2)
        entries[i].number = 2 * kEntries - i;
    const double start = processorSeconds();
    const auto keys = diary().saveEntries(std::move(entries), PublishTime::Now, {});
    EXPECT_LT(processorSeconds() - start, 30);
    for (int i = 0; i < kEntries; ++i)
        ASSERT_EQ(keys[i].number, i + 1);
}

TEST_F(DiaryStore, NumbersOfOneInputFollowFromWhatStandsInFrontOfEach) {
    const auto numbered = [](int number) {
        Entry entry = entryOf(kDay, QString::number(number));
        entry.number = number;
        return entry;
    };
    // The next one of a day behind its next, behind a number that was free, taken, or left a gap.
    const auto keys = diary().saveEntries(
        {numbered(0), numbered(0), numbered(3), numbered(0), numbered(2), numbered(0), numbered(9), numbered(0)},
        PublishTime::Now, {});
    QList<int> numbers;
    for (const store::EntryKey& key : keys)
        numbers += key.number;
    EXPECT_EQ(numbers, (QList<int>{1, 2, 3, 4, 2, 5, 6, 7}));
    numbers.clear();
    for (const store::EntryKey& key : diary().saveEntries(
             {numbered(30), numbered(0), numbered(20), numbered(15), numbered(12), numbered(0)}, PublishTime::Now, {}))
        numbers += key.number;
    EXPECT_EQ(numbers, (QList<int>{8, 9, 12, 11, 10, 13}));
}

} // namespace
} // namespace velloria::tests
