#include "store/memo_store.h"

#include "store/memo_line.h"
#include "store/memo_rescue.h"
#include "store/optimize_command.h"
#include "support/test_home.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using store::Memo;
using store::MemoOutcome;
using store::MemoQuery;
using Kind = MemoOutcome::Kind;

class Memos : public TestHome {
protected:
    store::MemoStore memos() const { return store::MemoStore(run); }

    Memo add(const QString& title, const QString& text = u"text"_s, const QString& category = u""_s,
             bool isLocked = false) {
        Memo memo;
        memo.title = title;
        memo.text = text;
        memo.category = category;
        memo.isLocked = isLocked;
        const MemoOutcome outcome = memos().save(memo, std::nullopt, {});
        EXPECT_EQ(outcome.kind, Kind::Done);
        return outcome.memo;
    }
    /// The titles that a search finds, as the list has them.
    QStringList found(const MemoQuery& query) const {
        QStringList titles;
        for (const Memo& memo : memos().list(query))
            titles += memo.title;
        return titles;
    }
    /// All columns as a person would write them.
    QString rowOf(const QString& title) {
        return sqlValue(u"SELECT quote(PublishTime) || quote(Title) || quote(Memo) || quote(No) || quote(Category) || "
                        u"quote(IsPass) FROM Memo WHERE Title = '%1'"_s.arg(title));
    }
    QStringList copies() const {
        return {session.UserPath + u"diarymdb.bak"_s, session.UserPath + u"diarymdb.bak.1"_s};
    }
    void optimize() {
        desk.answers = {u"yes"_s};
        EXPECT_TRUE(store::optimizeCommand(run));
    }
};

TEST_F(Memos, KeepATextToItsLastCharacter) {
    const QString text = u"\uFEFF一\r\n\r\n  二\t\u00A0\u2028%_[]\"'\\ \U0001F600\r\n"_s;
    const Memo saved = add(u"題'\""_s, text, u"種類"_s, true);
    const auto loaded = memos().load(saved.row);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->text, text);
    EXPECT_EQ(loaded->title, u"題'\""_s);
    EXPECT_EQ(loaded->category, u"種類"_s);
    EXPECT_TRUE(loaded->isLocked);
    EXPECT_TRUE(store::holdSame(*loaded, saved));
}

TEST_F(Memos, GetTheTimeOfTheSaveAndTheNextNumber) {
    setNow(u"2026/11/23 07:08:09"_s);
    add(u"one"_s);
    EXPECT_EQ(rowOf(u"one"_s), u"'2026/11/23 07:08:09''one''text'1''0"_s);
    sql(u"UPDATE Memo SET No = 41"_s);
    EXPECT_EQ(add(u"two"_s).no, 42);
}

TEST_F(Memos, KeepTheirNumberWhenTheyAreSavedAgain) {
    const Memo first = add(u"first"_s);
    add(u"second"_s);
    Memo changed = first;
    changed.text = u"other"_s;
    changed.no = 99;
    EXPECT_EQ(memos().save(changed, first, {}).memo.no, 1);
    EXPECT_EQ(sqlValue(u"SELECT group_concat(No || Memo) FROM (SELECT * FROM Memo ORDER BY No)"_s), u"1other,2text"_s);
}

TEST_F(Memos, AreListedNewestFirstWithoutTheirTexts) {
    setNow(u"2026/11/01 00:00:00"_s);
    add(u"older"_s);
    setNow(u"2026/11/02 00:00:00"_s);
    add(u"newer"_s);
    sql(u"INSERT INTO Memo (Title) VALUES ('without time')"_s);
    EXPECT_EQ(found({}), (QStringList{u"newer"_s, u"older"_s, u"without time"_s}));
    EXPECT_TRUE(memos().list({}).front().text.isNull());
}

TEST_F(Memos, WithMissingValuesReadAsMissing) {
    sql(u"INSERT INTO Memo VALUES (NULL, NULL, NULL, NULL, NULL, 0)"_s);
    const auto listed = memos().list({});
    ASSERT_EQ(listed.size(), 1U);
    const auto memo = memos().load(listed.front().row);
    ASSERT_TRUE(memo);
    EXPECT_TRUE(memo->title.isNull() && memo->text.isNull() && memo->category.isNull() && memo->publishTime.isNull());
    EXPECT_FALSE(memo->no);
    Memo changed = *memo;
    changed.title = u"now"_s;
    EXPECT_EQ(memos().save(changed, memo, {}).kind, Kind::Done);
    EXPECT_EQ(sqlValue(u"SELECT quote(Title) || quote(Memo) || quote(No) FROM Memo"_s), u"'now'NULL1"_s);
}

TEST_F(Memos, AreFoundInTitleTextAndCategoryWithoutRegardToCaseWidthAndKana) {
    add(u"ＡＢＣ"_s, u"x"_s);
    add(u"t"_s, u"ｶﾞｷﾞｸﾞ"_s);
    add(u"c"_s, u"x"_s, u"買い物"_s);
    EXPECT_EQ(found({u"abc"_s, {}, false}), QStringList{u"ＡＢＣ"_s});
    EXPECT_EQ(found({u"がぎ"_s, {}, false}), QStringList{u"t"_s});
    EXPECT_EQ(found({u"買い"_s, {}, false}), QStringList{u"c"_s});
    EXPECT_EQ(found({u"nowhere"_s, {}, false}), QStringList());
}

TEST_F(Memos, AreSearchedForSignsAsTheyStand) {
    add(u"100%"_s, u"x"_s);
    add(u"[a"_s, u"x"_s);
    add(u"a_b"_s, u"x"_s);
    add(u"plain]"_s, u"x"_s);
    EXPECT_EQ(found({u"%"_s, {}, false}), QStringList{u"100%"_s});
    EXPECT_EQ(found({u"["_s, {}, false}), QStringList{u"[a"_s});
    EXPECT_EQ(found({u"_"_s, {}, false}), QStringList{u"a_b"_s});
    EXPECT_EQ(found({u"]"_s, {}, false}), QStringList{u"plain]"_s});
}

TEST_F(Memos, ThatAreLockedAreFoundByTheirTextOnlyWhenUnlocked) {
    add(u"secret"_s, u"word"_s, u"cat"_s, true);
    EXPECT_EQ(found({u"word"_s, {}, false}), QStringList());
    EXPECT_EQ(found({u"word"_s, {}, true}), QStringList{u"secret"_s});
    EXPECT_EQ(found({u"secr"_s, {}, false}), QStringList{u"secret"_s}) << "the title is shown in the list anyway";
    EXPECT_EQ(found({u"cat"_s, {}, false}), QStringList{u"secret"_s});
}

TEST_F(Memos, AreFilteredByCategory) {
    add(u"a"_s, u"x"_s, u"ABC"_s);
    add(u"b"_s, u"x"_s, u"ａｂｃ"_s);
    add(u"c"_s, u"x"_s, u"other"_s);
    add(u"none"_s);
    sql(u"INSERT INTO Memo (Title, Category) VALUES ('null', NULL)"_s);
    EXPECT_EQ(memos().categories(), (QStringList{u"ABC"_s, u"other"_s}));
    EXPECT_EQ(QSet<QString>({u"a"_s, u"b"_s}), [&] {
        const QStringList titles = found({{}, u"abc"_s, false});
        return QSet<QString>(titles.begin(), titles.end());
    }());
    EXPECT_EQ(found({{}, u""_s, false}), (QStringList{u"none"_s, u"null"_s}));
}

TEST_F(Memos, ThatSomebodyElseChangedAreNotOverwritten) {
    const Memo seen = add(u"mine"_s);
    sql(u"UPDATE Memo SET Memo = 'theirs'"_s);
    Memo typed = seen;
    typed.text = u"typed"_s;
    const MemoOutcome outcome =
        memos().save(typed, seen, [](const Memo&) { ADD_FAILURE() << "nothing is overwritten"; });
    EXPECT_EQ(outcome.kind, Kind::Changed);
    EXPECT_EQ(outcome.memo.text, u"theirs"_s);
    EXPECT_EQ(sqlValue(u"SELECT Memo FROM Memo"_s), u"theirs"_s);
    // With what they left known, it may be.
    QString lost;
    EXPECT_EQ(memos().save(typed, outcome.memo, [&](const Memo& memo) { lost = memo.text; }).kind, Kind::Done);
    EXPECT_EQ(lost, u"theirs"_s);
    EXPECT_EQ(sqlValue(u"SELECT Memo FROM Memo"_s), u"typed"_s);
}

TEST_F(Memos, ThatSomebodyElseRemovedAreGone) {
    const Memo seen = add(u"mine"_s);
    sql(u"DELETE FROM Memo"_s);
    EXPECT_EQ(memos().save(seen, seen, {}).kind, Kind::Gone);
    EXPECT_EQ(memos().remove(seen, {}).kind, Kind::Gone);
    EXPECT_EQ(sqlValue(u"SELECT count(*) FROM Memo"_s), u"0"_s);
}

TEST_F(Memos, AreNotTakenForAnotherOneThatHasGotTheirRow) {
    add(u"one"_s);
    const Memo seen = add(u"two"_s);
    sql(u"DELETE FROM Memo WHERE Title = 'two'"_s);
    sql(u"INSERT INTO Memo VALUES ('', 'another', 'theirs', 7, '', 0)"_s);
    ASSERT_EQ(sqlValue(u"SELECT Title FROM Memo WHERE rowid = %1"_s.arg(seen.row)), u"another"_s);
    EXPECT_EQ(memos().save(seen, seen, {}).kind, Kind::Gone);
    EXPECT_EQ(memos().remove(seen, {}).kind, Kind::Gone);
    EXPECT_EQ(sqlValue(u"SELECT count(*) FROM Memo"_s), u"2"_s);
}

TEST_F(Memos, ThatGoAreSeenBefore) {
    const Memo seen = add(u"mine"_s, u"long text"_s);
    QString lost;
    EXPECT_EQ(memos().remove(seen, [&](const Memo& memo) { lost = memo.text; }).kind, Kind::Done);
    EXPECT_EQ(lost, u"long text"_s);
    EXPECT_EQ(sqlValue(u"SELECT count(*) FROM Memo"_s), u"0"_s);
}

TEST_F(Memos, StayWhenWhatKeepsThemFails) {
    const Memo seen = add(u"mine"_s);
    const auto refuse = [](const Memo&) { throw platform::Failure(u"refused"_s, {}, {}); };
    EXPECT_EQ(failureOf([&] { memos().remove(seen, refuse); }), u"refused"_s);
    Memo typed = seen;
    typed.text = u"typed"_s;
    EXPECT_EQ(failureOf([&] { memos().save(typed, seen, refuse); }), u"refused"_s);
    EXPECT_EQ(sqlValue(u"SELECT Memo FROM Memo"_s), u"text"_s);
}

TEST_F(Memos, AreLockedAsAWholeByTheFieldOfTheDiary) {
    EXPECT_FALSE(memos().isLockedAsAWhole());
    memos().setLockedAsAWhole(true);
    EXPECT_EQ(sqlValue(u"SELECT IsMemoPass || IsPass FROM DBInfo"_s), u"10"_s);
    EXPECT_TRUE(memos().isLockedAsAWhole());
    sql(u"UPDATE DBInfo SET IsMemoPass = -1"_s); // as older programs wrote it
    EXPECT_TRUE(memos().isLockedAsAWhole());
    memos().setLockedAsAWhole(false);
    EXPECT_FALSE(memos().isLockedAsAWhole());
}

TEST_F(Memos, GetBackWhatTheOptimisationResets) {
    add(u"plain"_s);
    add(u"secret"_s, u"x"_s, u"cat"_s, true);
    const QString before = rowOf(u"secret"_s);
    optimize();
    ASSERT_NE(rowOf(u"secret"_s), before) << "nothing was reset";
    EXPECT_TRUE(memos().takeBackReset(copies()));
    EXPECT_EQ(rowOf(u"secret"_s), before);
    EXPECT_EQ(sqlValue(u"SELECT No FROM Memo WHERE Title = 'plain'"_s), u"1"_s);
    EXPECT_FALSE(memos().takeBackReset(copies())) << "there is nothing left to do";
}

TEST_F(Memos, GetBackWhatWasResetTwice) {
    add(u"secret"_s, u"x"_s, u"cat"_s, true);
    const QString before = rowOf(u"secret"_s);
    optimize();
    optimize();
    EXPECT_TRUE(memos().takeBackReset(copies()));
    EXPECT_EQ(rowOf(u"secret"_s), before);
}

TEST_F(Memos, OfOneTextGetBackEachItsOwn) {
    const Memo first = add(u"same"_s, u"x"_s, u"one"_s);
    add(u"same"_s, u"x"_s, u"two"_s, true);
    add(u"same"_s, u"x"_s, u"three"_s);
    optimize();
    Memo typed = first;
    typed.text = u"typed"_s;
    ASSERT_EQ(memos().save(typed, first, {}).kind, Kind::Done);
    EXPECT_TRUE(memos().takeBackReset(copies()));
    EXPECT_EQ(sqlValue(u"SELECT group_concat(Memo || No || Category || IsPass) FROM Memo"_s),
              u"typed1one0,x2two1,x3three0"_s);
}

TEST_F(Memos, AreLookedForInNoMoreCopiesThanItTakes) {
    add(u"title"_s, u"x"_s, u"cat"_s);
    optimize();
    const QString damaged = path(u"damaged"_s);
    writeFile(damaged, "no diary");
    EXPECT_TRUE(memos().takeBackReset(QStringList{damaged} + copies() + QStringList{path(u"none"_s)}));
    EXPECT_EQ(sqlValue(u"SELECT No || Category FROM Memo"_s), u"1cat"_s);
}

TEST_F(Memos, WithoutANumberGetOneThatNobodyHas) {
    sql(u"INSERT INTO Memo (Title, No) VALUES ('a', 2), ('b', 0), ('c', NULL), ('d', 1), ('e', 'x')"_s);
    EXPECT_TRUE(memos().takeBackReset({path(u"none"_s)}));
    EXPECT_EQ(sqlValue(u"SELECT group_concat(Title || No) FROM Memo"_s), u"a2,b3,c4,d1,e5"_s);
}

TEST_F(Memos, ThatTheOptimisationMovedAreStillTheSame) {
    add(u"gone"_s);
    const Memo seen = add(u"kept"_s, u"x"_s, u"cat"_s, true);
    sql(u"DELETE FROM Memo WHERE Title = 'gone'"_s);
    optimize();
    Memo typed = seen;
    typed.text = u"typed"_s;
    const MemoOutcome outcome = memos().save(typed, seen, {});
    EXPECT_EQ(outcome.kind, Kind::Done);
    EXPECT_EQ(sqlValue(u"SELECT count(*) || Memo || No || Category || IsPass FROM Memo"_s), u"1typed2cat1"_s);
}

TEST_F(Memos, AreRefusedByADiaryThatIsNotThere) {
    QFile::remove(session.databaseFile());
    EXPECT_TRUE(failureOf([&] { memos().list({}); }).contains(u"日記データベースがありません。"_s));
    EXPECT_FALSE(exists(session.databaseFile()));
}

TEST_F(Memos, ComeBackFromTheirLineToTheLetter) {
    Memo memo;
    memo.title = u"\uFEFF題"_s;
    memo.text = u"一\r\n\"二\"\t\U0001F600"_s;
    memo.no = 3'000'000'000;
    memo.isLocked = true;
    const auto same = store::parseMemoLine(QJsonDocument(store::toJson(memo)).toJson(QJsonDocument::Compact));
    ASSERT_TRUE(same);
    EXPECT_TRUE(store::holdSame(*same, memo));
    EXPECT_TRUE(same->category.isNull());
    for (const char* line : {"", "x", "[]", "{}", "{\"Memo\": 1}", "{\"Title\": \"t\"}", "{\"Memo\": \"cut"})
        EXPECT_FALSE(store::parseMemoLine(line)) << line;
}

TEST_F(Memos, KeepWhatGoesInAFileThatTheDiarysReaderNeverSees) {
    store::MemoRescue rescue(run);
    rescue.keep(add(u"kept"_s, u"its text"_s), u"削除"_s);
    const QByteArray line = bytesOf(session.UserPath + u"memo_rescue.jsonl"_s);
    EXPECT_TRUE(line.contains("its text") && line.contains("\"Reason\":\"削除\"") && line.endsWith("\n"))
        << line.toStdString();
    EXPECT_EQ(modeOf(session.UserPath + u"memo_rescue.jsonl"_s), 0600U);
    EXPECT_FALSE(exists(session.UserPath + u"rescue.jsonl"_s));
    rescue.forget();
    EXPECT_FALSE(exists(session.UserPath + u"memo_rescue.jsonl"_s));
}

} // namespace
} // namespace velloria::tests
