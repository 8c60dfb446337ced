#include "memo/memo_book.h"

#include "memo_home.h"
#include "platform/waiting.h"
#include "store/memo_line.h"
#include "store/optimize_command.h"
#include "store/sqlite/connection.h"

#include <QCoreApplication>
#include <QDir>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using Kind = store::MemoOutcome::Kind;

class Book : public MemoHome {
protected:
    memo::MemoBook book{run};
};

TEST_F(Book, WithoutUsersHasNoPasswordAndLocksNothing) {
    const store::Memo memo = store(u"t"_s, u"text"_s, {}, true);
    EXPECT_FALSE(book.hasPassword());
    EXPECT_FALSE(book.isClosed(memo));
    EXPECT_EQ(book.load(memo.row)->text, u"text"_s);
    book.setLockedAsAWhole(true);
    EXPECT_FALSE(book.asksAtStart()) << "there is no password that could be asked for";
}

TEST_F(Book, OfAUserWithAnEmptyPasswordLocksNothing) {
    logIn(u""_s);
    EXPECT_FALSE(book.hasPassword());
    EXPECT_TRUE(book.isOpen());
}

TEST_F(Book, KeepsTheTextOfALockedMemoBackUntilThePasswordIsGiven) {
    logIn();
    const store::Memo memo = store(u"title"_s, u"secret"_s, {}, true);
    const store::Memo open = store(u"open"_s, u"seen"_s);
    EXPECT_TRUE(book.load(memo.row)->text.isNull());
    EXPECT_EQ(book.load(memo.row)->title, u"title"_s);
    EXPECT_EQ(book.load(open.row)->text, u"seen"_s);
    EXPECT_TRUE(book.list(u"secret"_s, {}).empty());
    EXPECT_FALSE(book.unlock(u"wrong"_s));
    EXPECT_TRUE(book.load(memo.row)->text.isNull());
    EXPECT_TRUE(book.unlock(u"abc"_s));
    EXPECT_EQ(book.load(memo.row)->text, u"secret"_s);
    EXPECT_EQ(book.list(u"secret"_s, {}).size(), 1U);
    book.lockAgain();
    EXPECT_TRUE(book.load(memo.row)->text.isNull());
}

TEST_F(Book, IsShutAgainByAWrongPassword) {
    logIn();
    EXPECT_TRUE(book.unlock(u"abc"_s));
    EXPECT_FALSE(book.unlock(u"wrong"_s));
    EXPECT_FALSE(book.isOpen());
}

TEST_F(Book, AsksAtTheStartWhereTheDiarySaysSo) {
    logIn();
    EXPECT_FALSE(book.asksAtStart());
    book.setLockedAsAWhole(true);
    EXPECT_TRUE(book.asksAtStart());
}

TEST_F(Book, KeepsWhatASaveOverwritesAndARemovalRemoves) {
    const store::Memo first = store(u"title"_s, u"first text"_s);
    EXPECT_EQ(rescued(), QByteArray());
    store::Memo typed = first;
    typed.text = u"second text"_s;
    const store::MemoOutcome outcome = book.save(typed, first);
    EXPECT_EQ(outcome.kind, Kind::Done);
    EXPECT_TRUE(rescued().contains("first text") && rescued().contains("上書き")) << rescued().toStdString();
    EXPECT_FALSE(rescued().contains("second text"));
    EXPECT_EQ(book.remove(outcome.memo).kind, Kind::Done);
    EXPECT_TRUE(rescued().contains("second text") && rescued().contains("削除")) << rescued().toStdString();
    const auto kept = store::parseMemoLine(rescued().split('\n').front());
    ASSERT_TRUE(kept);
    EXPECT_TRUE(store::holdSame(*kept, first));
}

TEST_F(Book, ChangesNothingWhereTheRescueFileRefuses) {
    const store::Memo memo = store(u"title"_s, u"text"_s);
    ASSERT_TRUE(QDir().mkdir(session.UserPath + u"memo_rescue.jsonl"_s));
    EXPECT_TRUE(failureOf([&] { book.remove(memo); }).contains(u"消える内容を控えに残せません。"_s));
    store::Memo typed = memo;
    typed.text = u"typed"_s;
    EXPECT_TRUE(failureOf([&] { book.save(typed, memo); }).contains(u"消える内容を控えに残せません。"_s));
    EXPECT_EQ(sqlValue(u"SELECT Memo FROM Memo"_s), u"text"_s);
}

TEST_F(Book, KeepsNothingOfWhatTheDiaryRefused) {
    const store::Memo memo = store(u"title"_s, u"text"_s);
    sql(u"CREATE UNIQUE INDEX refuse ON Memo (Title)"_s);
    store(u"other"_s);
    store::Memo typed = memo;
    typed.title = u"other"_s;
    EXPECT_NE(failureOf([&] { book.save(typed, memo); }), QString());
    EXPECT_EQ(rescued(), QByteArray());
    EXPECT_EQ(sqlValue(u"SELECT Memo FROM Memo WHERE Title = 'title'"_s), u"text"_s);
}

TEST_F(Book, KeepsNothingAtAllForSomebodyWhoDeletesForPrivacy) {
    core::WriteIni(session.DiaryIniFile, u"ALL"_s, u"Rescue"_s, u"0"_s);
    EXPECT_EQ(book.remove(store(u"t"_s)).kind, Kind::Done);
    EXPECT_FALSE(exists(session.UserPath + u"memo_rescue.jsonl"_s));
}

TEST_F(Book, StillLocksWhatTheOptimisationOfTheDiaryUnlocks) {
    logIn();
    store(u"title"_s, u"secret"_s, u"cat"_s, true);
    desk.answers = {u"yes"_s};
    ASSERT_TRUE(store::optimizeCommand(run));
    ASSERT_EQ(sqlValue(u"SELECT IsPass FROM Memo"_s), u"0"_s);
    EXPECT_TRUE(book.list(u"secret"_s, {}).empty());
    const auto listed = book.list({}, u"cat"_s);
    ASSERT_EQ(listed.size(), 1U);
    EXPECT_TRUE(book.load(listed.front().row)->text.isNull());
}

TEST_F(Book, OpensNothingThatWasLockedBeforeTheOptimisation) {
    logIn();
    const store::Memo memo = store(u"title"_s, u"secret"_s, u"cat"_s, true);
    for (const auto& look : {std::function([&] { return book.load(memo.row)->text; }),
                             std::function([&] { return book.categories().join(u','); }),
                             std::function([&] { return QString::number(book.isClosed(memo.no)); })}) {
        const QString before = look();
        desk.answers = {u"yes"_s};
        ASSERT_TRUE(store::optimizeCommand(run));
        EXPECT_EQ(look(), before);
    }
}

TEST_F(Book, GivesANewMemoNoNumberThatTheOptimisationHasReset) {
    store(u"first"_s);
    store(u"second"_s, u"x"_s, u"cat"_s);
    desk.answers = {u"yes"_s};
    ASSERT_TRUE(store::optimizeCommand(run));
    store::Memo fresh;
    fresh.title = u"new"_s;
    EXPECT_EQ(book.save(fresh, std::nullopt).kind, Kind::Done);
    EXPECT_EQ(sqlValue(u"SELECT group_concat(Title || No || ifnull(Category, '')) FROM Memo"_s),
              u"first1,second2cat,new3"_s);
}

TEST_F(Book, FindsInTheDailyCopiesWhatTheOtherBackupsLack) {
    sql(u"INSERT INTO Contents (Day, Number, Title) VALUES ('2026/11/23', 1, 'entry')"_s);
    store(u"title"_s, u"x"_s, u"cat"_s, true);
    for (int day = 23; day < 28; ++day) {
        setNow(u"2026/11/%1 10:00:00"_s.arg(day));
        sql(u"UPDATE Contents SET Title = Title || '.'"_s); // each backup differs and takes the place of an older one
        desk.answers = {u"yes"_s};
        ASSERT_TRUE(store::optimizeCommand(run));
    }
    ASSERT_FALSE(exists(session.UserPath + u"diarymdb.bak.4"_s));
    book.list({}, {});
    EXPECT_EQ(sqlValue(u"SELECT Category || IsPass || No FROM Memo"_s), u"cat11"_s);
}

TEST_F(Book, KnowsByItsNumberWhetherATextIsLocked) {
    logIn();
    const store::Memo locked = store(u"t"_s, u"secret"_s, {}, true);
    const store::Memo open = store(u"t"_s);
    EXPECT_TRUE(book.isClosed(locked.no));
    EXPECT_FALSE(book.isClosed(open.no));
    EXPECT_FALSE(book.isClosed(std::nullopt));
    EXPECT_TRUE(book.unlock(u"abc"_s));
    EXPECT_FALSE(book.isClosed(locked.no));
}

TEST_F(Book, ListsWhatItKeptTheNewestFirst) {
    EXPECT_TRUE(book.kept().empty());
    const store::Memo first = store(u"\uFEFF題"_s, u"一\r\n二"_s, u"cat"_s, true);
    book.remove(first);
    setNow(u"2026/11/23 11:00:00"_s);
    const store::Memo second = store(u"second"_s);
    book.save(second, second);
    QFile file(session.UserPath + u"memo_rescue.jsonl"_s);
    ASSERT_TRUE(file.open(QIODevice::Append));
    file.write("[]\n{\"Title\":\"no memo\"}\n{\"Memo\":\"cut");
    file.close();
    const std::vector<store::KeptMemo> kept = book.kept();
    ASSERT_EQ(kept.size(), 2U);
    EXPECT_TRUE(store::holdSame(kept[0].memo, second));
    EXPECT_EQ(kept[0].reason + kept[0].time, u"上書き2026/11/23 11:00:00"_s);
    EXPECT_TRUE(store::holdSame(kept[1].memo, first));
    EXPECT_EQ(kept[1].reason + kept[1].time, u"削除2026/11/23 10:00:00"_s);
}

TEST_F(Book, ListsADiaryThatCantBeWrittenTo) {
    store(u"title"_s);
    sql(u"UPDATE Memo SET No = 0"_s);
    // The engine computes it for each new number, and can't.
    sql(u"CREATE INDEX refuse ON Memo (abs(CASE WHEN No > 0 THEN -9223372036854775807 - 1 ELSE 0 END))"_s);
    ASSERT_NE(failureOf([&] { store::MemoStore(run).takeBackReset({}); }), QString());
    EXPECT_EQ(book.list({}, {}).size(), 1U);
}

TEST_F(Book, OpensNoMemoOfWhichNobodyKnowsWhetherItIsLocked) {
    logIn();
    const store::Memo memo = store(u"title"_s, u"secret"_s, {}, true);
    desk.answers = {u"yes"_s};
    ASSERT_TRUE(store::optimizeCommand(run));
    sql(u"CREATE INDEX refuse ON Memo (abs(CASE WHEN No > 0 THEN -9223372036854775807 - 1 ELSE 0 END))"_s);
    EXPECT_TRUE(book.load(memo.row)->text.isNull());
    EXPECT_TRUE(book.list(u"secret"_s, {}).empty());
    EXPECT_TRUE(book.unlock(u"abc"_s));
    EXPECT_EQ(book.load(memo.row)->text, u"secret"_s);
    EXPECT_EQ(book.list(u"secret"_s, {}).size(), 1U);
}

/// Gives each wait for another program up at once.
class Impatience : public QObject {
public:
    Impatience() { m_application.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == platform::Waiting::kType) {
            static_cast<platform::Waiting*>(event)->isGivenUp = true;
            ++waits;
        }
        return false;
    }
    int waits = 0;

private:
    int m_count = 0;
    QCoreApplication m_application{m_count, nullptr};
};

TEST_F(Book, WaitsOnceForAnotherProgram) {
    const store::Memo memo = store(u"title"_s);
    store::sqlite::Connection other(session.databaseFile(), store::sqlite::Access::ReadWrite);
    other.execute("BEGIN EXCLUSIVE");
    Impatience impatience;
    int wanted = 0;
    for (const auto& work :
         {std::function([&] { book.load(memo.row); }), std::function([&] { book.list({}, {}); }),
          std::function([&] { book.save(memo, memo); }), std::function([&] { book.remove(memo); })}) {
        EXPECT_TRUE(failureOf(work).contains(u"他のプログラムが使用中"_s));
        EXPECT_EQ(impatience.waits, ++wanted);
    }
    other.execute("ROLLBACK");
}

TEST_F(Book, FindsAMemoByNumberAndTime) {
    const store::Memo memo = store(u"title"_s);
    EXPECT_EQ(book.find(memo.no, memo.publishTime)->row, memo.row);
    EXPECT_FALSE(book.find(memo.no, u"2026/11/23 10:00:01"_s));
    EXPECT_FALSE(book.find(std::nullopt, memo.publishTime));
    EXPECT_FALSE(book.find(7, memo.publishTime));
}

} // namespace
} // namespace velloria::tests
