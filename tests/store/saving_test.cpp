#include "store/saving.h"

#include "store/entry_line.h"
#include "store/genre_list.h"
#include "support/test_home.h"

#include <QDir>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

const QString kDay = u"2004/05/06"_s;

class Saving : public TestHome {
protected:
    Saving() {
        store::MakeGenretxt(run);
        desk.events = {};
    }

    QString rescueFile() const { return session.UserPath + u"rescue.jsonl"_s; }
    /// The reason and title of each line of the rescue file.
    QStringList rescued() const {
        QStringList lines;
        for (const QByteArray& line : exists(rescueFile()) ? bytesOf(rescueFile()).split('\n') : QList<QByteArray>()) {
            const QJsonObject json = QJsonDocument::fromJson(line).object();
            if (!json.isEmpty())
                lines += json[u"Reason"_s].toString() + u' ' + json[u"Title"_s].toString();
        }
        return lines;
    }
    static store::EntryLine line(const QString& title, const QString& genre, int number = 0) {
        store::Entry entry = entryOf(kDay, title);
        entry.genre = genre;
        entry.number = number;
        return {entry};
    }
    QStringList titles() const {
        QStringList titles;
        for (const store::Entry& entry : diary().LoadDay(kDay))
            titles.prepend(entry.title);
        return titles;
    }
    QByteArray genres() const { return bytesOf(session.DataPath + u"Genre.csv"_s); }
};

TEST_F(Saving, LinesAreToldDayByDayAndTheirGenresListed) {
    const auto keys = store::saveLines(run, {line(u"one"_s, u"b"_s), line(u"two"_s, u"a"_s), line(u"three"_s, u"b"_s)},
                                       store::PublishTime::Now);
    ASSERT_EQ(keys.size(), 3U);
    EXPECT_EQ(keys.back().number, 3);
    EXPECT_EQ(titles(), (QStringList{u"one"_s, u"two"_s, u"three"_s}));
    EXPECT_EQ(told(), QStringList(3, u"status: 2004/05/06の日記を保存しました。"_s));
    EXPECT_TRUE(genres().endsWith("\r\nb\r\na\r\n")) << genres().toStdString();
    EXPECT_EQ(rescued(), QStringList());
}

TEST_F(Saving, WhatLinesOverwriteIsRescued) {
    write(kDay, u"old"_s);
    store::saveLines(run, {line(u"new"_s, u"一般"_s, 1)}, store::PublishTime::Now);
    EXPECT_EQ(titles(), QStringList{u"new"_s});
    EXPECT_EQ(rescued(), QStringList{u"上書き old"_s});
}

TEST_F(Saving, OneLineThatIsRefusedLeavesDiaryRescueFileAndGenres) {
    write(kDay, u"old"_s);
    refuseRows(u"Title = 'refused'"_s);
    const QByteArray before = genres();
    EXPECT_NE(
        failureOf([&] {
            store::saveLines(run, {line(u"new"_s, u"x"_s, 1), line(u"refused"_s, u"y"_s)}, store::PublishTime::Now);
        }),
        QString());
    EXPECT_EQ(titles(), QStringList{u"old"_s});
    EXPECT_EQ(rescued(), QStringList());
    EXPECT_EQ(genres(), before);
    EXPECT_EQ(told(), QStringList());
}

TEST_F(Saving, AFailureOfTheListOfGenresSaysThatTheEntriesAreSaved) {
    QFile::remove(session.DataPath + u"Genre.csv"_s);
    ASSERT_TRUE(QDir().mkdir(session.DataPath + u"Genre.csv"_s));
    const QString failure = failureOf([&] { store::saveLines(run, {line(u"a"_s, u"x"_s)}, store::PublishTime::Now); });
    EXPECT_TRUE(failure.startsWith(u"日記は保存しました: "_s)) << failure.toStdString();
    EXPECT_EQ(titles(), QStringList{u"a"_s});
    EXPECT_EQ(told(), QStringList{u"status: 2004/05/06の日記を保存しました。"_s});
}

TEST_F(Saving, ADeletedEntryIsRescuedAndItsDayClosesUp) {
    for (const QString& title : {u"a"_s, u"b"_s, u"c"_s})
        write(kDay, title);
    store::deleteEntry(run, kDay, 2);
    EXPECT_EQ(titles(), (QStringList{u"a"_s, u"c"_s}));
    EXPECT_EQ(diary().LoadEntry(kDay, 2)->title, u"c"_s);
    EXPECT_EQ(rescued(), QStringList{u"削除 b"_s});
}

TEST_F(Saving, ADeletionThatIsRefusedIsTakenBackFromTheRescueFile) {
    write(kDay, u"a"_s);
    write(kDay, u"b"_s);
    refuseRows(u"Number = 1 AND Title = 'b'"_s); // the day can't close up
    EXPECT_NE(failureOf([&] { store::deleteEntry(run, kDay, 1); }), QString());
    EXPECT_EQ(titles(), (QStringList{u"a"_s, u"b"_s}));
    EXPECT_EQ(rescued(), QStringList());
}

TEST_F(Saving, AnEntryThatIsNotThereLeavesNothingToRescue) {
    store::deleteEntry(run, kDay, 1);
    EXPECT_FALSE(exists(rescueFile()));
}

} // namespace
} // namespace velloria::tests
