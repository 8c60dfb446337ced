#include "store/backup_names.h"

#include "support/print.h"

#include <gtest/gtest.h>

#include <QSet>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using store::BackupName;
using store::surplusBackups;

QString nameOf(QDate day) {
    return BackupName{day}.text();
}

/// The names that lie there after a copy on each of these days, in turn.
QStringList afterCopiesOn(const QList<QDate>& days) {
    QStringList names;
    for (const QDate& day : days) {
        if (!names.contains(nameOf(day)))
            names += nameOf(day);
        for (const QString& surplus : surplusBackups(names, day))
            names.removeOne(surplus);
    }
    names.sort();
    return names;
}

TEST(BackupNames, AreOfDaysAndCopies) {
    EXPECT_EQ(nameOf({2004, 5, 6}), u"diary-20040506.mdb"_s);
    EXPECT_EQ((BackupName{{2004, 5, 6}, 4}.text()), u"diary-20040506-4.mdb"_s);
    for (const QString& name : {u"diary-20040506.mdb"_s, u"diary-20040229-2.mdb"_s, u"diary-19991231-4.mdb"_s}) {
        const auto backup = BackupName::parse(name);
        ASSERT_TRUE(backup) << name.toStdString();
        EXPECT_EQ(backup->text(), name);
    }
    for (const QString& name :
         {u"diary-20040231.mdb"_s, u"diary-20050229.mdb"_s, u"diary-00000101.mdb"_s, u"diary-20041301.mdb"_s,
          u"Diary-20040506.mdb"_s, u"diary-20040506.MDB"_s, u"diary-20040506-1.mdb"_s, u"diary-20040506-5.mdb"_s,
          u"diary-20040506-02.mdb"_s, u"diary-2004506.mdb"_s, u"diary-20040506.mdb.bak"_s, u"diary-20040506.mdb\n"_s,
          u" diary-20040506.mdb"_s, u"diary-２００４0506.mdb"_s, u"diary.mdb"_s, u"diary-backup.tmp"_s, u""_s})
        EXPECT_FALSE(BackupName::parse(name)) << name.toStdString();
}

TEST(BackupNames, OfAYearWithAStartADayFourteenDaysAndTwelveMonthsAreKept) {
    QList<QDate> days;
    for (QDate day(2004, 1, 1); day <= QDate(2004, 12, 31); day = day.addDays(1))
        days += day;
    QStringList expected;
    for (int month = 1; month <= 11; ++month)
        expected += nameOf(QDate(2004, month, QDate(2004, month, 1).daysInMonth()));
    for (int day = 18; day <= 31; ++day)
        expected += nameOf({2004, 12, day});
    EXPECT_EQ(afterCopiesOn(days), expected);
    days += QDate(2005, 1, 1);
    expected.removeFirst(); // the thirteenth month
    expected.removeOne(nameOf({2004, 12, 18}));
    expected += nameOf({2005, 1, 1});
    EXPECT_EQ(afterCopiesOn(days), expected);
}

TEST(BackupNames, DaysAreCountedAndNotTheTimeBetweenThem) {
    QList<QDate> days;
    for (int i = 0; i < 40; ++i)
        days += QDate(2001, 1, 15).addMonths(3 * i);
    QStringList expected;
    for (const QDate& day : days.sliced(40 - 14)) // of these the last 12 are newest of their month, too
        expected += nameOf(day);
    EXPECT_EQ(afterCopiesOn(days), expected);
}

TEST(BackupNames, OfDaysToComeStayAndCountForNothing) {
    QStringList names;
    for (int day = 1; day <= 20; ++day)
        names += {nameOf({2099, 1, day}), nameOf({2004, 5, day})};
    names += BackupName{{2099, 1, 3}, 2}.text();
    QStringList surplus;
    for (int day = 1; day <= 6; ++day)
        surplus += nameOf({2004, 5, day});
    EXPECT_EQ(surplusBackups(names, {2004, 5, 20}), surplus);
}

TEST(BackupNames, AClockThatGoesBackTakesNothingWithIt) {
    QList<QDate> days;
    for (QDate day(2004, 1, 1); day <= QDate(2004, 2, 28); day = day.addDays(1))
        days += day;
    const QStringList before = afterCopiesOn(days);
    QStringList expected = before;
    expected += nameOf({2003, 6, 1});
    expected.sort();
    days += QDate(2003, 6, 1);
    EXPECT_EQ(afterCopiesOn(days), expected);
}

TEST(BackupNames, WhatWasDisplacedGoesOnALaterDay) {
    const QStringList displaced{u"diary-20040506-2.mdb"_s, u"diary-20040506-3.mdb"_s, u"diary-20040506-4.mdb"_s};
    const QStringList names = displaced + QStringList{u"diary-20040506.mdb"_s};
    EXPECT_EQ(surplusBackups(names, {2004, 5, 6}), QStringList());
    EXPECT_EQ(surplusBackups(names, {2004, 5, 5}), QStringList());
    EXPECT_EQ(surplusBackups(names, {2004, 5, 7}), displaced);
}

TEST(BackupNames, OfOthersNeverGo) {
    QStringList names{u"diary-20010231.mdb"_s, u"diary-2001.mdb"_s, u"my diary.mdb"_s, u"diary-20010101.mdb.txt"_s,
                      u"diary-20010101-7.mdb"_s};
    for (int day = 1; day <= 31; ++day)
        names += nameOf({2004, 5, day});
    const QStringList surplus = surplusBackups(names, {2004, 5, 31});
    EXPECT_EQ(surplus.size(), 17);
    for (const QString& name : names.first(5))
        EXPECT_FALSE(surplus.contains(name)) << name.toStdString();
}

} // namespace
} // namespace velloria::tests
