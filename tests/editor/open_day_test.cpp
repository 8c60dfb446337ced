// The open day without a screen: what is opened, saved, dropped, and kept as a draft.
#include "editor/open_day.h"

#include "core/text_file.h"
#include "support/connection_count.h"
#include "support/patience.h"
#include "support/test_home.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

const QString kDay = u"2004/05/06"_s;
const QString kNextDay = u"2004/05/07"_s;

/// Who types: what an editor would hold in its boxes.
class Typist : public editor::EntryView {
public:
    void commitComposition() override { typed.title += std::exchange(composed, {}); }
    store::Entry fields() const override { return typed; }
    void replaceSelection(const std::function<QString(const QString&)>& replacement) override {
        typed.contents = replacement(typed.contents);
    }
    void insertAtCaret(const QString& text) override { typed.contents.prepend(text); }

    store::Entry typed;
    QString composed;
};

/// Timers need an application; one for all tests of this program.
void needApplication() {
    static int count = 1;
    static char name[] = "editor_tests";
    static char* arguments[] = {name, nullptr};
    static QCoreApplication application(count, arguments);
}

class OpenDay : public TestHome {
protected:
    OpenDay() {
        needApplication();
        begin();
    }
    /// A run with its editor; a second one begins as after a kill of the first.
    void begin() {
        if (day)
            day->detach(); // its draft stays
        typist = {};
        news.clear();
        day = std::make_unique<editor::OpenDay>(run);
        QObject::connect(day.get(), &editor::OpenDay::dayOpened, [this](const QString& opened, const auto& around) {
            news += u"day "_s + opened;
            daysAround = around;
        });
        QObject::connect(day.get(), &editor::OpenDay::entryShown, [this](const std::optional<store::Entry>& entry) {
            typist.typed = store::withDefaults(entry.value_or(store::Entry()));
            news += u"shown %1/%2 %3"_s.arg(day->number()).arg(day->count()).arg(typist.typed.title);
        });
        QObject::connect(day.get(), &editor::OpenDay::numbersChanged,
                         [this] { news += u"numbers %1/%2"_s.arg(day->number()).arg(day->count()); });
        QObject::connect(day.get(), &editor::OpenDay::entryWanted, [this] { news += u"wanted"_s; });
        QObject::connect(day.get(), &editor::OpenDay::closed, [this] {
            typist.typed = {};
            news += u"closed"_s;
        });
        QObject::connect(day.get(), &editor::OpenDay::diaryChanged, [this] { news += u"diary"_s; });
        QObject::connect(day.get(), &editor::OpenDay::genresChanged, [this] { news += u"genres"_s; });
        day->attach(typist);
        day->readGenres();
        news.clear();
    }
    void writeDay(const QStringList& titles, const QString& of = kDay) {
        for (const QString& title : titles)
            write(of, title);
    }
    void type(const QString& title) {
        typist.typed.title = title;
        day->edited();
    }
    /// Number and title of the day's rows, highest first.
    QStringList rows(const QString& of = kDay) {
        QStringList rows;
        for (const store::Entry& row : diary().LoadDay(of))
            rows += QString::number(row.number) + row.title;
        return rows;
    }
    QStringList titlesIn(const QString& name) {
        QStringList titles;
        if (exists(session.UserPath + name)) {
            for (const QByteArray& line : bytesOf(session.UserPath + name).trimmed().split('\n'))
                titles += QJsonDocument::fromJson(line).object()[u"Title"_s].toString();
        }
        return titles;
    }
    QStringList rescued() { return titlesIn(u"rescue.jsonl"_s); }
    QStringList drafts() { return titlesIn(u"draft.json"_s); }
    QStringList takenNews() { return std::exchange(news, {}); }
    void hideDiary() { ASSERT_TRUE(QFile::rename(session.databaseFile(), session.databaseFile() + u".away"_s)); }
    void bringDiaryBack() { ASSERT_TRUE(QFile::rename(session.databaseFile() + u".away"_s, session.databaseFile())); }

    Typist typist;
    QStringList news; ///< what the day has told
    store::DaysWithEntries daysAround;
    std::unique_ptr<editor::OpenDay> day;
};

TEST_F(OpenDay, BeginsClosedAndClean) {
    EXPECT_FALSE(day->isOpen());
    EXPECT_FALSE(day->isDirty());
    EXPECT_EQ(day->number(), 0);
    EXPECT_EQ(day->genres(), QStringList{u"一般"_s});
}

TEST_F(OpenDay, OpensTheLastEntryOfADayAndTellsItInTurn) {
    writeDay({u"一"_s, u"二"_s, u"三"_s}, kNextDay);
    write(u"2003/05/07"_s, u"前年"_s);
    day->openDay(kNextDay);
    EXPECT_EQ(news, (QStringList{u"day "_s + kNextDay, u"shown 3/3 三"_s}));
    EXPECT_EQ(session.EnterDay, kNextDay);
    EXPECT_EQ(daysAround.all, QStringList{kNextDay});
    EXPECT_TRUE(day->isOpen());
    EXPECT_TRUE(day->isStored());
    EXPECT_TRUE(day->isInOtherYears());
    EXPECT_FALSE(day->isDirty());
}

TEST_F(OpenDay, ADayWithoutEntriesIsAnEmptyFirstOne) {
    day->openDay(kDay);
    EXPECT_EQ(news, (QStringList{u"day "_s + kDay, u"shown 1/1 "_s}));
    EXPECT_FALSE(day->isStored());
    EXPECT_FALSE(day->isInOtherYears());
}

TEST_F(OpenDay, OpensADayWithOneConnection) {
    writeDay({u"一"_s});
    const int before = openedConnections();
    day->openDay(kDay);
    EXPECT_EQ(openedConnections() - before, 1);
}

TEST_F(OpenDay, OpensOneEntryAndStaysAtTheOneThatIsOpen) {
    writeDay({u"一"_s, u"二"_s});
    day->openEntry(kDay, 1);
    EXPECT_EQ(takenNews().last(), u"shown 1/2 一"_s);
    type(u"編集"_s);
    day->openEntry(kDay, 1);
    EXPECT_EQ(takenNews(), QStringList{u"wanted"_s});
    EXPECT_EQ(typist.typed.title, u"編集"_s);
    desk.answers.append(u"no"_s);
    day->openEntry(kDay, 9);
    EXPECT_EQ(news.last(), u"shown 2/2 二"_s);
    EXPECT_EQ(lastStatus(), u"2004/05/06の9番目の日記は見つかりません。"_s);
}

TEST_F(OpenDay, ANewEntryIsTheNextNumberOfTheDay) {
    writeDay({u"一"_s});
    day->openDay(kDay);
    takenNews();
    day->openNewEntry();
    EXPECT_EQ(news, QStringList{u"shown 2/2 "_s}) << "the calendar stays where it is";
    EXPECT_FALSE(day->isStored());
}

TEST_F(OpenDay, ANewEntryNeedsADay) {
    session.EnterDay.clear();
    day->openNewEntry();
    EXPECT_EQ(lastStatus(), u"日付が選択されていないため日記の作成を中止しました。"_s);
    EXPECT_FALSE(day->isOpen());
}

TEST_F(OpenDay, WhatIsUnsavedIsAskedAboutOnceAndSavedUnderItsDayOnYes) {
    writeDay({u"一"_s});
    day->openDay(kDay);
    type(u"編集"_s);
    EXPECT_TRUE(day->isDirty());
    desk.answers.append(u"yes"_s);
    day->openDay(kNextDay);
    EXPECT_EQ(rows(), QStringList{u"1編集"_s});
    EXPECT_TRUE(rows(kNextDay).isEmpty());
    EXPECT_FALSE(day->isDirty());
    day->openDay(kDay); // an answer that is missing would fail
    EXPECT_EQ(typist.typed.title, u"編集"_s);
}

TEST_F(OpenDay, ANoDropsWhatIsUnsaved) {
    writeDay({u"一"_s});
    day->openDay(kDay);
    type(u"編集"_s);
    desk.answers.append(u"no"_s);
    day->openDay(kDay);
    EXPECT_EQ(rows(), QStringList{u"1一"_s});
    EXPECT_EQ(typist.typed.title, u"一"_s);
    EXPECT_TRUE(rescued().isEmpty());
}

TEST_F(OpenDay, AYesWithoutATitleRescuesTheTextAndGoesOn) {
    day->openDay(kDay);
    typist.typed.contents = u"text"_s;
    type(u""_s);
    desk.answers.append(u"yes"_s);
    day->openDay(kNextDay);
    EXPECT_EQ(boxes().last(), u"critical: タイトルを入力してください！"_s);
    EXPECT_EQ(rescued(), QStringList{u""_s});
    EXPECT_EQ(session.EnterDay, kNextDay);
    EXPECT_FALSE(day->isDirty());
}

TEST_F(OpenDay, ADayThatCannotBeReadLeavesTheOldOneWholeAndUnsaved) {
    writeDay({u"一"_s});
    day->openDay(kDay);
    type(u"編集"_s);
    takenNews();
    hideDiary();
    for (const auto& open : std::initializer_list<std::function<void()>>{[this] { day->openDay(kNextDay); },
                                                                         [this] { day->openNewEntry(); },
                                                                         [this] { day->openEntry(kNextDay, 1); }}) {
        desk.answers.append(u"no"_s);
        EXPECT_THROW(open(), platform::Failure);
        EXPECT_EQ(session.EnterDay, kDay);
        EXPECT_TRUE(day->isDirty());
    }
    EXPECT_TRUE(news.isEmpty()) << news.join(u'\n').toStdString();
    bringDiaryBack();
    day->save();
    EXPECT_EQ(rows(), QStringList{u"1編集"_s});
}

TEST_F(OpenDay, ASaveThatFailsKeepsTheOldDay) {
    writeDay({u"一"_s});
    day->openDay(kDay);
    type(u"編集"_s);
    refuseRows(u"Title = '編集'"_s);
    desk.answers.append(u"yes"_s);
    EXPECT_THROW(day->openDay(kNextDay), platform::Failure);
    EXPECT_EQ(session.EnterDay, kDay);
    EXPECT_TRUE(day->isDirty());
    EXPECT_EQ(typist.typed.title, u"編集"_s);
}

TEST_F(OpenDay, TheChangesOfAYesGoToTheNumberThatWasPicked) {
    writeDay({u"一"_s, u"二"_s, u"三"_s});
    day->openDay(kDay);
    type(u"三の編集"_s);
    desk.answers.append(u"yes"_s);
    day->openNumber(1);
    EXPECT_EQ(rows(), (QStringList{u"3三"_s, u"2二"_s, u"1三の編集"_s}));
    EXPECT_EQ(news.last(), u"shown 1/3 三の編集"_s);
    EXPECT_EQ(rescued(), QStringList{u"一"_s});
}

TEST_F(OpenDay, ANumberThatCannotBeReadIsNotTheShownOne) {
    writeDay({u"一"_s, u"二"_s});
    day->openDay(kDay);
    type(u"編集"_s);
    takenNews();
    hideDiary();
    desk.answers.append(u"no"_s);
    EXPECT_THROW(day->openNumber(1), platform::Failure);
    EXPECT_EQ(news, QStringList{u"numbers 2/2"_s});
    EXPECT_EQ(day->number(), 2);
    EXPECT_TRUE(day->isDirty());
}

TEST_F(OpenDay, ANumberThatWasNeverSavedIsKeptUntilTheDayIsReadAnew) {
    writeDay({u"一"_s});
    day->openDay(kDay);
    day->openNewEntry();
    day->openNumber(1);
    EXPECT_EQ(news.last(), u"shown 1/2 一"_s);
    day->openNumber(2);
    EXPECT_EQ(news.last(), u"shown 2/2 "_s);
    day->openDay(kDay);
    EXPECT_EQ(news.last(), u"shown 1/1 一"_s);
}

TEST_F(OpenDay, ASaveWritesEveryFieldAndTellsWhoShowsTheDiary) {
    day->openDay(kDay);
    typist.typed = entryOf(kNextDay, u"題"_s); // the day is not the typist's to say
    typist.typed.number = 7;
    typist.typed.extend = QString();
    typist.typed.genre = u"旅行"_s;
    typist.typed.isPrivate = true;
    typist.composed = u"と尾"_s;
    day->edited();
    takenNews();
    EXPECT_EQ(day->save(), editor::SaveOutcome::Saved);
    EXPECT_EQ(news, (QStringList{u"diary"_s, u"genres"_s}));
    EXPECT_EQ(lastStatus(), u"2004/05/06の日記を保存しました。"_s);
    EXPECT_EQ(rows(), QStringList{u"1題と尾"_s});
    EXPECT_TRUE(diary().LoadEntry(kDay, 1)->isPrivate);
    EXPECT_EQ(sqlValue(u"SELECT Extend IS NULL FROM Contents"_s), u"0"_s) << "an empty box is no missing value";
    EXPECT_EQ(day->genres(), (QStringList{u"一般"_s, u"旅行"_s}));
    takenNews();
    day->save();
    EXPECT_EQ(news, QStringList{u"diary"_s}) << "the genre is there";
}

TEST_F(OpenDay, TellsWhatIsTypedWhetherItIsSavedOrNot) {
    EXPECT_EQ(day->typed(), std::nullopt);
    writeDay({u"一"_s, u"二"_s});
    day->openDay(kDay);
    EXPECT_EQ(day->typed()->title, u"二"_s);
    typist.typed.title = u"題"_s;
    typist.typed.day = kNextDay; // the day is not the typist's to say
    typist.composed = u"と尾"_s;
    day->edited();
    const std::optional<store::Entry> typed = day->typed();
    ASSERT_TRUE(typed);
    EXPECT_EQ(typed->day, kDay);
    EXPECT_EQ(typed->number, 2);
    EXPECT_EQ(typed->title, u"題と尾"_s) << "what an input method composes is part of it";
    EXPECT_TRUE(day->isDirty());
    EXPECT_EQ(rows(), (QStringList{u"2二"_s, u"1一"_s}));
    day->close();
    EXPECT_EQ(day->typed(), std::nullopt);
}

TEST_F(OpenDay, WithoutATitleNothingIsSaved) {
    day->openDay(kDay);
    typist.typed.contents = u"text"_s;
    day->edited();
    EXPECT_EQ(day->save(), editor::SaveOutcome::Refused);
    EXPECT_TRUE(day->isDirty());
    EXPECT_TRUE(rows().isEmpty());
}

TEST_F(OpenDay, AGenreListThatCannotBeWrittenLeavesTheSaveStanding) {
    day->openDay(kDay);
    typist.typed.genre = u"旅行"_s;
    type(u"題"_s);
    QFile::remove(session.DataPath + u"Genre.csv"_s);
    QDir().mkpath(session.DataPath + u"Genre.csv/x"_s);
    EXPECT_TRUE(failureOf([this] { day->save(); }).contains(u"日記は保存しました"_s));
    EXPECT_EQ(rows(), QStringList{u"1題"_s});
    EXPECT_FALSE(day->isDirty());
}

TEST_F(OpenDay, ANumberThatWasTakenMeanwhileBecomesTheNextOne) {
    writeDay({u"一"_s});
    day->openDay(kDay);
    day->openNewEntry();
    type(u"私"_s);
    write(kDay, u"他"_s);
    takenNews();
    day->save();
    EXPECT_EQ(news.first(), u"numbers 3/3"_s);
    EXPECT_EQ(rows(), (QStringList{u"3私"_s, u"2他"_s, u"1一"_s}));
    EXPECT_EQ(lastStatus(), u"2004/05/06の日記はほかのプログラムが変更していたため、3番目の日記として保存しました。"_s);
}

TEST_F(OpenDay, ADeletionClosesTheDayAndRescuesRowAndChanges) {
    writeDay({u"一"_s, u"二"_s});
    day->openEntry(kDay, 1);
    type(u"編集"_s);
    day->keepDraft();
    takenNews();
    day->deleteEntry();
    EXPECT_EQ(news, (QStringList{u"closed"_s, u"diary"_s}));
    EXPECT_EQ(rows(), QStringList{u"1二"_s});
    EXPECT_EQ(rescued(), (QStringList{u"編集"_s, u"一"_s}));
    EXPECT_TRUE(drafts().isEmpty());
    EXPECT_FALSE(day->isOpen());
    EXPECT_TRUE(day->isDirty()) << "the mark is left to what comes next";
}

TEST_F(OpenDay, IsReadAnewWhenItsRowsWereChangedElsewhere) {
    writeDay({u"一"_s});
    day->openDay(kDay);
    takenNews();
    day->daysChanged({kNextDay});
    EXPECT_EQ(takenNews(), QStringList{u"diary"_s});
    sql(u"UPDATE Contents SET Title = '他'"_s);
    write(kDay, u"二"_s);
    day->daysChanged({kNextDay, kDay});
    EXPECT_EQ(takenNews(), (QStringList{u"diary"_s, u"shown 1/2 他"_s}));
    sql(u"DELETE FROM Contents"_s);
    day->daysChanged({kDay});
    EXPECT_EQ(takenNews().last(), u"shown 1/1 "_s);
}

TEST_F(OpenDay, UnsavedChangesStayWhenRowsWereChangedElsewhere) {
    writeDay({u"一"_s, u"二"_s});
    day->openDay(kDay);
    type(u"編集"_s);
    takenNews();
    diary().DeleteEntry(kDay, 1);
    day->daysChanged({kDay});
    EXPECT_EQ(news, (QStringList{u"diary"_s, u"numbers 1/1"_s}));
    EXPECT_EQ(typist.typed.title, u"編集"_s);
    EXPECT_TRUE(day->isDirty());
    EXPECT_EQ(lastStatus(), u"2004/05/06の日記は編集中のため、変更された内容を表示していません。"_s);
    day->save();
    EXPECT_EQ(rows(), QStringList{u"1編集"_s});
}

TEST_F(OpenDay, ClosingAsksSavesAndStays) {
    day->openDay(kDay);
    EXPECT_TRUE(day->mayClose());
    type(u"題"_s);
    desk.answers.append(u"yes"_s);
    EXPECT_TRUE(day->mayClose());
    EXPECT_EQ(rows(), QStringList{u"1題"_s});
    type(u""_s);
    desk.answers.append(u"yes"_s);
    EXPECT_FALSE(day->mayClose());
    EXPECT_TRUE(day->isDirty());
    desk.answers.append(u"no"_s);
    EXPECT_TRUE(day->mayClose());
    EXPECT_FALSE(day->isDirty());
}

TEST_F(OpenDay, ADraftComesTwoSecondsAfterTheFirstChange) {
    day->openDay(kDay);
    QElapsedTimer timer;
    timer.start();
    while (drafts().isEmpty() && timer.elapsed() < kPatienceMs) {
        type(u"題"_s); // however long somebody types
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    EXPECT_GE(timer.elapsed(), 1900);
    EXPECT_EQ(drafts(), QStringList{u"題"_s});
}

TEST_F(OpenDay, AnUndoMakesNothingDirtyAndADirtyEntryHasItsDraft) {
    writeDay({u"一"_s});
    day->openDay(kDay);
    day->undone();
    EXPECT_FALSE(day->isDirty());
    day->keepDraft();
    EXPECT_TRUE(drafts().isEmpty());
    type(u"編集"_s);
    day->keepDraft();
    EXPECT_EQ(drafts(), QStringList{u"編集"_s});
}

TEST_F(OpenDay, TheDraftGoesWithASaveADropAndACleanEnd) {
    day->openDay(kDay);
    const auto keep = [this](const QString& title) {
        type(title);
        day->keepDraft();
        ASSERT_EQ(drafts(), QStringList{title});
    };
    keep(u"一"_s);
    day->save();
    EXPECT_TRUE(drafts().isEmpty());
    keep(u"二"_s);
    desk.answers.append(u"no"_s);
    day->openDay(kDay);
    EXPECT_TRUE(drafts().isEmpty());
    keep(u"三"_s);
    day->dropDraft();
    EXPECT_TRUE(drafts().isEmpty());
}

TEST_F(OpenDay, ADraftOfAKilledRunComesBackUnsaved) {
    writeDay({u"一"_s});
    day->openDay(kDay);
    type(u"編集"_s);
    day->keepDraft();
    begin();
    ASSERT_TRUE(day->hasDraft());
    EXPECT_FALSE(day->isOpen());
    session.EnterDay = kNextDay;
    day->restoreDraft();
    EXPECT_EQ(news, (QStringList{u"day "_s + kDay, u"shown 1/1 編集"_s}));
    EXPECT_EQ(session.EnterDay, kDay);
    EXPECT_TRUE(day->isDirty());
    EXPECT_FALSE(day->hasDraft());
    EXPECT_EQ(drafts(), QStringList{u"編集"_s}) << "it is unsaved still";
    EXPECT_EQ(lastStatus(), u"2004/05/06の下書きを復元しました。まだ保存されていません。"_s);
    day->save();
    EXPECT_EQ(rows(), QStringList{u"1編集"_s});
    EXPECT_TRUE(rescued().isEmpty());
    EXPECT_TRUE(drafts().isEmpty());
}

TEST_F(OpenDay, ADraftOfANewEntryOverwritesNothingThatCameMeanwhile) {
    day->openDay(kDay);
    type(u"私"_s);
    day->keepDraft();
    begin();
    write(kDay, u"他"_s);
    day->restoreDraft();
    day->save();
    EXPECT_EQ(rows(), (QStringList{u"2私"_s, u"1他"_s}));
}

TEST_F(OpenDay, ADraftThatWaitsStaysBesideTheNextOne) {
    day->openDay(kDay);
    type(u"first"_s);
    day->keepDraft();
    begin();
    day->openDay(kNextDay);
    type(u"second"_s);
    day->keepDraft();
    EXPECT_EQ(drafts(), (QStringList{u"first"_s, u"second"_s}));
    day->dropDraft();
    EXPECT_EQ(drafts(), QStringList{u"first"_s});
}

TEST_F(OpenDay, SavingTheEntryOfAWaitingDraftRescuesTheDraft) {
    day->openDay(kDay);
    type(u"draft"_s);
    day->keepDraft();
    begin();
    day->openDay(kDay);
    type(u"saved"_s);
    day->save();
    EXPECT_FALSE(day->hasDraft());
    EXPECT_TRUE(drafts().isEmpty());
    EXPECT_EQ(rescued(), QStringList{u"draft"_s});
}

TEST_F(OpenDay, ADraftThatCannotBeReadBackIsLeftWhereItIs) {
    day->openDay(kDay);
    type(u"draft"_s);
    day->keepDraft();
    begin();
    hideDiary();
    EXPECT_THROW(day->restoreDraft(), platform::Failure);
    EXPECT_TRUE(day->hasDraft());
    EXPECT_FALSE(day->isOpen());
    EXPECT_EQ(drafts(), QStringList{u"draft"_s});
}

TEST_F(OpenDay, ADraftThatCannotBeWrittenIsSaidOnThePanelAlone) {
    QDir().mkpath(session.UserPath + u"draft.json/x"_s);
    day->openDay(kDay);
    type(u"題"_s);
    day->keepDraft();
    EXPECT_TRUE(boxes().isEmpty());
    EXPECT_TRUE(lastStatus().startsWith(u"下書きを保存できません。"_s)) << lastStatus().toStdString();
    EXPECT_TRUE(day->isDirty());
}

TEST_F(OpenDay, MakersWriteIntoTheContentsOfAnOpenDay) {
    EXPECT_FALSE(day->insertAtCaretOfContents(u"<IMG>"_s));
    EXPECT_FALSE(day->insertIntoContents([](const QString&) { return u"<HR>"_s; }));
    EXPECT_EQ(lastStatus(), u"日記が開かれていないため、挿入しませんでした。"_s);
    day->openDay(kDay);
    typist.typed.contents = u"x"_s;
    EXPECT_TRUE(day->insertAtCaretOfContents(u"<IMG>"_s));
    EXPECT_TRUE(day->insertIntoContents([](const QString& selected) { return u"<B>"_s + selected + u"</B>"_s; }));
    EXPECT_EQ(typist.typed.contents, u"<B><IMG>x</B>"_s);
}

TEST_F(OpenDay, TheListOfGenresIsMadeAnewFromTheDiary) {
    store::Entry entry = entryOf(kDay, u"T"_s);
    entry.genre = u"旅行"_s;
    write(entry);
    core::writeLines(session.DataPath + u"Genre.csv"_s, {u"一般"_s, u"昔"_s});
    day->readGenres();
    EXPECT_EQ(day->genres().last(), u"昔"_s);
    day->MakeGenretxt();
    EXPECT_EQ(day->genres(), (QStringList{u"一般"_s, u"旅行"_s}));
}

} // namespace
} // namespace velloria::tests
