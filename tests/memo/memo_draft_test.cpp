#include "memo/memo_draft.h"

#include "memo_home.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using memo::MemoDraft;

class Draft : public MemoHome {
protected:
    static memo::Typed typed(const QString& text) {
        store::Memo memo;
        memo.title = u"題"_s;
        memo.text = text;
        memo.no = 5;
        memo.publishTime = u"2026/11/22 01:02:03"_s;
        memo.isLocked = true;
        return {memo, false};
    }
};

TEST_F(Draft, ComesBackInTheNextRun) {
    memo::Typed written = typed(u"\uFEFF一\r\n二"_s);
    for (const bool wasLocked : {false, true}) {
        written.wasLocked = wasLocked;
        MemoDraft(run).write(written);
        EXPECT_EQ(modeOf(draftFile()), 0600U);
        const auto found = MemoDraft(run).takeOver();
        ASSERT_TRUE(found);
        EXPECT_TRUE(store::holdSame(found->memo, written.memo));
        EXPECT_EQ(found->wasLocked, wasLocked);
    }
}

TEST_F(Draft, IsReplacedByTheNextOneAndGoesWithTheSave) {
    MemoDraft draft(run);
    draft.write(typed(u"first"_s));
    draft.write(typed(u"second"_s));
    EXPECT_EQ(bytesOf(draftFile()).count('\n'), 1);
    EXPECT_TRUE(bytesOf(draftFile()).contains("second"));
    draft.remove();
    EXPECT_FALSE(exists(draftFile()));
}

TEST_F(Draft, OfAnotherProgramAtWorkStaysItsOwn) {
    MemoDraft first(run);
    MemoDraft second(run);
    first.write(typed(u"first"_s));
    EXPECT_FALSE(second.takeOver()) << "somebody is typing it";
    second.write(typed(u"second"_s));
    EXPECT_EQ(bytesOf(draftFile()).count('\n'), 2);
    second.remove();
    EXPECT_TRUE(bytesOf(draftFile()).contains("first"));
}

TEST_F(Draft, ThatIsTakenOverIsReplacedAndTheOthersStay) {
    {
        MemoDraft first(run);
        MemoDraft second(run);
        first.write(typed(u"first"_s));
        second.write(typed(u"second"_s));
    }
    MemoDraft next(run);
    EXPECT_EQ(next.takeOver()->memo.text, u"second"_s);
    next.write(typed(u"third"_s));
    EXPECT_FALSE(bytesOf(draftFile()).contains("second"));
    EXPECT_TRUE(bytesOf(draftFile()).contains("first"));
    next.remove();
    EXPECT_TRUE(bytesOf(draftFile()).contains("first"));
}

TEST_F(Draft, ThatIsGivenBackIsFoundAgain) {
    MemoDraft(run).write(typed(u"first"_s));
    {
        MemoDraft next(run);
        EXPECT_TRUE(next.takeOver());
        next.giveBack();
        next.remove();
        next.write(typed(u"other"_s));
        next.remove();
    }
    EXPECT_EQ(MemoDraft(run).takeOver()->memo.text, u"first"_s);
}

TEST_F(Draft, ThatIsNotWantedGoesToTheRescueFile) {
    MemoDraft(run).write(typed(u"unwanted"_s));
    MemoDraft next(run);
    next.drop(*next.takeOver());
    EXPECT_FALSE(exists(draftFile()));
    EXPECT_TRUE(rescued().contains("unwanted") && rescued().contains("下書き")) << rescued().toStdString();
}

TEST_F(Draft, ThatIsNotWantedStaysLockedAsItsMemoWas) {
    memo::Typed opened = typed(u"secret"_s);
    opened.memo.isLocked = false;
    opened.wasLocked = true;
    MemoDraft(run).drop(opened);
    const std::vector<store::KeptMemo> kept = store::MemoRescue::all(run);
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_TRUE(kept.front().memo.isLocked);
}

TEST_F(Draft, ThatIsDamagedIsPassedOverAndStays) {
    writeFile(draftFile(), "{\"Memo\": \"cut\n\n[]\n");
    EXPECT_FALSE(MemoDraft(run).takeOver());
    MemoDraft draft(run);
    draft.write(typed(u"new"_s));
    draft.remove();
    EXPECT_TRUE(bytesOf(draftFile()).contains("cut"));
}

} // namespace
} // namespace velloria::tests
