// What the generator reads: days, entries and keys of a month.
#include "store/diary_store.h"

#include "support/connection_count.h"
#include "support/test_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using store::Entries;
using store::Entry;
using store::EntryKey;
using store::Period;
using store::SortDirection;

QStringList keysOf(const std::vector<EntryKey>& keys) {
    QStringList texts;
    for (const EntryKey& key : keys)
        texts += key.day + u' ' + QString::number(key.number);
    return texts;
}

QStringList titlesOf(const std::vector<Entry>& entries) {
    QStringList titles;
    for (const Entry& entry : entries)
        titles += entry.title;
    return titles;
}

/// A diary with a month of public and private entries between two other months.
class DiaryMonth : public TestHome {
protected:
    DiaryMonth() {
        add(u"2004/04/30"_s, u"april"_s);
        add(u"2004/05/02"_s, u"2a"_s);
        add(u"2004/05/02"_s, u"2b private"_s, true);
        add(u"2004/05/01"_s, u"1 private"_s, true);
        add(u"2004/05/31"_s, u"31a"_s);
        add(u"2004/05/31"_s, u"31b"_s);
        add(u"2004/06/01"_s, u"june private"_s, true);
    }

    void add(const QString& day, const QString& title, bool isPrivate = false) {
        Entry entry = entryOf(day, title);
        entry.isPrivate = isPrivate;
        write(entry);
    }

    const QString m_month = u"2004/05"_s;
};

TEST_F(DiaryMonth, HasItsDaysInOrder) {
    EXPECT_EQ(diary().DaysOfMonth(m_month), (QStringList{u"2004/05/01"_s, u"2004/05/02"_s, u"2004/05/31"_s}));
    EXPECT_EQ(diary().DaysOfMonth(u"2004/07"_s), QStringList());
}

TEST_F(DiaryMonth, LeavesPrivateDaysOutOnlyOfThePublicTwin) {
    EXPECT_EQ(diary().PublicDaysOfMonth(m_month), (QStringList{u"2004/05/02"_s, u"2004/05/31"_s}));
    EXPECT_EQ(diary().PublicDaysOfMonth(u"2004/06"_s), QStringList());
    EXPECT_EQ(diary().DaysOfMonth(u"2004/06"_s), QStringList{u"2004/06/01"_s});
}

TEST_F(DiaryMonth, HasTheDaysOfThePageThatTheCalendarShows) {
    store::DaysWithEntries days = diary().daysAround(m_month);
    EXPECT_EQ(days.all,
              (QStringList{u"2004/04/30"_s, u"2004/05/01"_s, u"2004/05/02"_s, u"2004/05/31"_s, u"2004/06/01"_s}));
    EXPECT_EQ(days.withPublic, (QStringList{u"2004/04/30"_s, u"2004/05/02"_s, u"2004/05/31"_s}));
    EXPECT_EQ(diary().daysAround(u"2004/07"_s).all, QStringList{u"2004/06/01"_s});
    EXPECT_EQ(diary().daysAround(u"2004/08"_s).all, QStringList());
    EXPECT_EQ(diary().daysAround(u"2004/1"_s).all, QStringList());
    add(u"9999/12/31"_s, u"last"_s);
    EXPECT_EQ(diary().daysAround(u"9999/12"_s).all, QStringList{u"9999/12/31"_s});
    sql(u"INSERT INTO Contents (Day, Number) VALUES ('2004/08/01', 1)"_s);
    days = diary().daysAround(u"2004/09"_s);
    EXPECT_EQ(days.withPublic, diary().PublicDaysOfMonth(u"2004/08"_s)) << "a missing mark is no private entry";
}

TEST_F(DiaryMonth, PicturesADayWithOneConnection) {
    add(u"2003/05/02"_s, u"a year before"_s, true);
    const int before = openedConnections();
    const store::DayPicture picture = diary().pictureOf(u"2004/05/02"_s);
    EXPECT_EQ(openedConnections() - before, 1);
    EXPECT_EQ(titlesOf(picture.entries), (QStringList{u"2b private"_s, u"2a"_s}));
    EXPECT_TRUE(picture.isInOtherYears);
    EXPECT_EQ(picture.daysAround.all, diary().daysAround(m_month).all);
    EXPECT_FALSE(diary().pictureOf(u"2004/05/31"_s).isInOtherYears);
    EXPECT_TRUE(diary().pictureOf(u"2004/05/30"_s).entries.empty());
}

TEST_F(DiaryMonth, HasItsEntriesNewestAndHighestFirst) {
    const QStringList all{u"31b"_s, u"31a"_s, u"2b private"_s, u"2a"_s, u"1 private"_s};
    const QStringList open{u"31b"_s, u"31a"_s, u"2a"_s};
    EXPECT_EQ(titlesOf(diary().EntriesOfMonth(m_month)), all);
    EXPECT_EQ(titlesOf(diary().EntryListOfMonth(m_month)), all);
    EXPECT_EQ(titlesOf(diary().PublicEntriesOfMonth(m_month)), open);
    EXPECT_EQ(titlesOf(diary().EntryListOfMonth(m_month, Entries::Public)), open);
    EXPECT_EQ(titlesOf(diary().EntriesForFeed(m_month)), open);
}

TEST_F(DiaryMonth, ListsWithoutTheTexts) {
    for (const Entry& entry : diary().EntryListOfMonth(m_month))
        EXPECT_TRUE(entry.contents.isNull() && entry.extend.isNull() && entry.excerpt.isNull());
    const Entry last = diary().EntryListOfMonth(m_month).front();
    EXPECT_EQ(last.day + u' ' + last.weather + u' ' + last.genre, u"2004/05/31 - 一般"_s);
    EXPECT_EQ(last.number, 2);
}

TEST_F(DiaryMonth, FeedsGetTheContentsAndTheTimeOfTheSave) {
    const Entry last = diary().EntriesForFeed(m_month).front();
    EXPECT_EQ(last.publishTime, u"2004/05/06 08:05:09"_s);
    EXPECT_EQ(last.contents, u""_s);
    EXPECT_EQ(last.number, 2);
}

TEST_F(DiaryMonth, GivesMissingValuesAsMissingOnes) {
    sql(u"INSERT INTO Contents (Day, Number) VALUES ('2004/08/01', 1)"_s);
    for (const std::vector<Entry>& entries :
         {diary().EntriesOfMonth(u"2004/08"_s), diary().PublicEntriesOfMonth(u"2004/08"_s),
          diary().EntryListOfMonth(u"2004/08"_s), diary().EntriesForFeed(u"2004/08"_s),
          diary().LoadDay(u"2004/08/01"_s)}) {
        ASSERT_EQ(entries.size(), 1U);
        EXPECT_TRUE(entries[0].title.isNull() && entries[0].genre.isNull() && entries[0].weather.isNull());
        EXPECT_TRUE(entries[0].contents.isNull() && entries[0].publishTime.isNull());
        EXPECT_FALSE(entries[0].isPrivate);
    }
}

TEST_F(DiaryMonth, IsTheBeginningOfADayKey) {
    EXPECT_EQ(diary().DaysOfMonth(u"2004/0"_s).size(), 5);
    EXPECT_EQ(diary().DaysOfMonth(u"2004/"_s).size(), 5);
    EXPECT_EQ(diary().DaysOfMonth(u"2004/05/3"_s), QStringList{u"2004/05/31"_s});
    EXPECT_EQ(diary().DaysOfMonth(u"2004/1"_s), QStringList());
    EXPECT_EQ(diary().EntryListOfMonth(u""_s).size(), 7U);
    EXPECT_EQ(diary().EntryListOfMonth(QString()).size(), 7U);
}

TEST_F(DiaryMonth, WithNinesStopsAtItsEnd) {
    add(u"2009/09/30"_s, u"x"_s);
    add(u"2009/10/01"_s, u"y"_s);
    add(u"2010/01/01"_s, u"z"_s);
    EXPECT_EQ(diary().DaysOfMonth(u"2009/09"_s), QStringList{u"2009/09/30"_s});
    EXPECT_EQ(diary().DaysOfMonth(u"2009"_s), (QStringList{u"2009/09/30"_s, u"2009/10/01"_s}));
}

TEST_F(DiaryMonth, TakesWildcards) {
    EXPECT_EQ(diary().DaysOfMonth(u"2004/0[46]"_s), (QStringList{u"2004/04/30"_s, u"2004/06/01"_s}));
    EXPECT_EQ(diary().PublicDaysOfMonth(u"____/05"_s), (QStringList{u"2004/05/02"_s, u"2004/05/31"_s}));
    EXPECT_EQ(titlesOf(diary().EntriesOfMonth(u"%/04"_s)), QStringList{u"april"_s});
}

TEST_F(DiaryMonth, KnowsTheNewestPublicDay) {
    EXPECT_EQ(diary().LatestPublicDay(), u"2004/05/31"_s);
    sql(u"UPDATE Contents SET Private = 1"_s);
    EXPECT_EQ(diary().LatestPublicDay(), std::nullopt);
    sql(u"DELETE FROM Contents"_s);
    EXPECT_EQ(diary().LatestPublicDay(), std::nullopt);
}

TEST_F(DiaryMonth, IsListedWhenItHasAnyEntry) {
    EXPECT_EQ(diary().months(), (QStringList{u"2004/04"_s, u"2004/05"_s, u"2004/06"_s}));
    sql(u"DELETE FROM Contents"_s);
    EXPECT_EQ(diary().months(), QStringList());
}

TEST_F(DiaryMonth, HasAllKeysNewestDayFirstAndLowestNumberFirst) {
    EXPECT_EQ(keysOf(diary().AllEntryKeys()),
              (QStringList{u"2004/06/01 1"_s, u"2004/05/31 1"_s, u"2004/05/31 2"_s, u"2004/05/02 1"_s,
                           u"2004/05/02 2"_s, u"2004/05/01 1"_s, u"2004/04/30 1"_s}));
    sql(u"UPDATE Contents SET Number = 1"_s);
    EXPECT_EQ(diary().AllEntryKeys().size(), 5U);
}

class DiaryExport : public DiaryMonth {
protected:
    /// The titles in the order in which they come; each says how many there are.
    QStringList exported(const Period& period, SortDirection direction) {
        QStringList titles;
        int told = 0;
        diary().ExportEntries(period, direction, [&](Entry& entry, int count) {
            titles += entry.title;
            told = count;
        });
        EXPECT_EQ(told, titles.size());
        return titles;
    }
};

TEST_F(DiaryExport, TakesAMonthInEitherDirection) {
    const Period month{Period::Kind::Month, m_month, {}};
    EXPECT_EQ(exported(month, SortDirection::Ascending),
              (QStringList{u"1 private"_s, u"2a"_s, u"2b private"_s, u"31a"_s, u"31b"_s}));
    EXPECT_EQ(exported(month, SortDirection::Descending),
              (QStringList{u"31a"_s, u"31b"_s, u"2a"_s, u"2b private"_s, u"1 private"_s}));
}

TEST_F(DiaryExport, TakesTheDaysBetweenTwoWithBoth) {
    const Period between{Period::Kind::Between, u"2004/04/30"_s, u"2004/05/02"_s};
    EXPECT_EQ(exported(between, SortDirection::Ascending),
              (QStringList{u"april"_s, u"1 private"_s, u"2a"_s, u"2b private"_s}));
    EXPECT_EQ(exported(between, SortDirection::Descending),
              (QStringList{u"2a"_s, u"2b private"_s, u"1 private"_s, u"april"_s}));
}

TEST_F(DiaryExport, TakesOneDayInTheOrderOfItsRows) {
    sql(u"UPDATE Contents SET Number = 3 - Number WHERE Day = '2004/05/02'"_s);
    for (const SortDirection direction : {SortDirection::Ascending, SortDirection::Descending})
        EXPECT_EQ(exported({Period::Kind::Day, u"2004/05/02"_s, {}}, direction),
                  (QStringList{u"2a"_s, u"2b private"_s}));
}

TEST_F(DiaryExport, EndsWithWhatIsThrownAndLeavesNoLock) {
    int read = 0;
    EXPECT_THROW(diary().ExportEntries({Period::Kind::Month, m_month, {}}, SortDirection::Ascending,
                                       [&](Entry&, int) {
                                           ++read;
                                           throw std::runtime_error("enough");
                                       }),
                 std::runtime_error);
    EXPECT_EQ(read, 1);
    write(m_month + u"/09"_s, u"behind"_s);
}

TEST_F(DiaryExport, ABackwardPeriodHasNoEntries) {
    EXPECT_EQ(exported({Period::Kind::Between, u"2004/05/02"_s, u"2004/04/30"_s}, SortDirection::Ascending),
              QStringList());
}

class SameDay : public TestHome {};

TEST_F(SameDay, CountsOtherYearsAndPrivateEntriesButNotTheDayItself) {
    for (const QString& day : {u"2002/05/06"_s, u"2003/05/06"_s, u"2003/05/06"_s, u"2004/05/06"_s, u"2004/06/05"_s,
                               u"2003/05/07"_s, u"2005/05/06"_s})
        write(day, u"x"_s);
    sql(u"UPDATE Contents SET Private = 1 WHERE Day = '2002/05/06'"_s);
    EXPECT_EQ(diary().SameDayInOtherYears(u"2004/05/06"_s), 4);
    EXPECT_EQ(diary().SameDayInOtherYears(u"2006/05/06"_s), 5);
    EXPECT_EQ(diary().SameDayInOtherYears(u"2004/05/08"_s), 0);
}

TEST_F(SameDay, OfALeapDayIsInOtherLeapYearsAlone) {
    for (const QString& day : {u"2000/02/29"_s, u"2001/02/28"_s, u"2001/03/01"_s, u"2004/02/29"_s})
        write(day, day);
    EXPECT_EQ(diary().SameDayInOtherYears(u"2004/02/29"_s), 1);
    EXPECT_EQ(titlesOf(diary().SameDayEntries(u"2004/02/29"_s)), QStringList{u"2000/02/29"_s});
}

TEST_F(SameDay, ShowsTheNewestYearFirstAndWithinADayTheLowestNumber) {
    write(u"2002/02/01"_s, u"2002"_s);
    write(u"2003/02/01"_s, u"2003 first"_s);
    write(u"2003/02/01"_s, u"2003 second"_s);
    write(u"2004/02/01"_s, u"itself"_s);
    EXPECT_EQ(titlesOf(diary().SameDayEntries(u"2004/02/01"_s)),
              (QStringList{u"2003 first"_s, u"2003 second"_s, u"2002"_s}));
}

TEST_F(SameDay, OfNoDayIsNothing) {
    write(u"2004/05/06"_s, u"x"_s);
    for (const QString& day : {u""_s, QString(), u"20"_s}) {
        EXPECT_EQ(diary().SameDayInOtherYears(day), 0);
        EXPECT_TRUE(diary().SameDayEntries(day).empty());
    }
}

} // namespace
} // namespace velloria::tests
