// Posting, the waits: pages that come late, never, in pieces or again and again, and a program that goes on meanwhile.
#include "desktop/blog_home.h"

#include <QElapsedTimer>
#include <QTextDocumentFragment>

#include <csignal>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class BlogWaits : public BlogHome {
protected:
    void SetUp() override {
        BlogHome::SetUp();
        site.set(u"login"_s, u"on"_s);
        useTemplate(u"t01"_s);
    }
    static inline const QString kNever = u"300"_s; ///< longer than anything waits here

    void delay(const QString& paths, const QString& seconds) {
        site.set(u"delayed"_s, paths);
        site.set(u"delay"_s, seconds);
    }
    /// Ends the process that shows the page.
    void killPage() { ASSERT_EQ(::kill(pid_t(view().page()->renderProcessPid()), SIGKILL), 0); }
    QString tip() { return QTextDocumentFragment::fromHtml(button().toolTip()).toPlainText(); }
    bool isRemembered() const { return blog::lastPost(session, kDay, 1, templateName).has_value(); }
};

TEST_F(BlogWaits, APageThatIsLateWithinTheLimitIsWaitedFor) {
    delay(u"/post,/do"_s, u"1.5"_s);
    posted();
    EXPECT_EQ(site.lines(), kLinesOfAPost);
}

TEST_F(BlogWaits, EachWaitHasTheWholeLimit) {
    open(u"/view"_s);
    EXPECT_TRUE(worksInSomeTime([this](int ms) {
        constexpr double kOfALimit = 0.3; // of each of the five answers
        site.set(u"login"_s, u"off"_s);
        limitWaits(ms);
        delay(u"/post,/login,/do"_s, QString::number(kOfALimit * ms / 1'000));
        post();
        return boxes() == QStringList{kPosted};
    }));
}

TEST_F(BlogWaits, APostingPageThatIsLaterEndsTheRun) {
    delay(u"/post"_s, kNever);
    expectRunsOut({"GET /post"});
    EXPECT_FALSE(context.runs.isAnyRunning());
    delay(u"/post"_s, u"0"_s);
    posted();
}

TEST_F(BlogWaits, AnAnswerThatIsLaterEndsTheRunAndIsNotRemembered) {
    delay(u"/do"_s, kNever);
    expectRunsOut({"GET /post", "POST /do"});
    EXPECT_FALSE(isRemembered());
}

TEST_F(BlogWaits, ThirtySecondsAreTheLimit) {
    EXPECT_EQ(limitAtStart, std::chrono::seconds(30));
    delay(u"/do"_s, kNever);
    open(u"/view"_s);
    limitWaits(3'000);
    QElapsedTimer timer;
    timer.start();
    post();
    EXPECT_EQ(boxes(), QStringList{kTimedOut});
    EXPECT_GE(timer.elapsed(), 3'000);
}

TEST_F(BlogWaits, TheEndOfAnOlderLoadIsNotThePostingPage) {
    open(u"/view"_s);
    browser().Navigate(site.address(u"/slow?s=300"_s));
    ASSERT_TRUE(isAsked("GET /slow"));
    delay(u"/post"_s, u"0.5"_s);
    post();
    EXPECT_EQ(boxes(), QStringList{kPosted});
    EXPECT_EQ(site.lines(), kLinesOfAPost);
}

TEST_F(BlogWaits, AnOlderLoadThatEndsAtThatMomentIsNotThePostingPage) {
    delay(u"/post"_s, u"0.3"_s);
    for (const int pauseMs : {0, 1, 3, 10, 30, 100}) {
        browser().Navigate(site.address(u"/slow?s=0.03"_s));
        QTest::qWait(pauseMs);
        post();
        EXPECT_EQ(boxes(), QStringList{kPosted}) << pauseMs;
        EXPECT_FALSE(site.lines().contains("GET /login"));
    }
}

TEST_F(BlogWaits, FastAnswersAreNeverMissed) {
    constexpr int kRuns = 200;
    int good = 0;
    for (int time = 0; time < kRuns; ++time) {
        post();
        good += int(site.lines() == kLinesOfAPost && boxes() == QStringList{kPosted});
    }
    EXPECT_EQ(good, kRuns);
}

TEST_F(BlogWaits, AFrameThatEndsFirstIsNotThePage) {
    site.set(u"v"_s, u"frame"_s);
    site.set(u"do"_s, u"frame"_s);
    site.set(u"confirm"_s, u"on"_s);
    useTemplate(u"t17a"_s);
    post();
    EXPECT_EQ(boxes(), QStringList{kPosted});
    ASSERT_TRUE(isAsked("POST /confirm"));
    EXPECT_FALSE(site.lines().contains("GET /login"));
}

TEST_F(BlogWaits, AFrameThatEndsAgainAndAgainEndsNoWaitOfTheAnswer) {
    site.set(u"v"_s, u"busy"_s);
    site.set(u"confirm"_s, u"on"_s);
    for (int time = 0; time < 5; ++time) {
        useTemplate(u"t17a"_s);
        post();
        EXPECT_EQ(boxes(), QStringList{kPosted});
    }
}

TEST_F(BlogWaits, AnAnswerThatGoesOnToTwoHundredPagesEndsWithTheFirst) {
    site.set(u"do"_s, u"hops"_s);
    posted();
    EXPECT_LT(site.lines().count("GET /hop"), 200);
    ASSERT_TRUE(waitFor([&] { return site.lines().count("GET /hop") == 200; }));
    EXPECT_EQ(boxes(), QStringList{kPosted});
    open(u"/view"_s);
}

TEST_F(BlogWaits, APageThatNeverEndsRunsOut) {
    site.set(u"v"_s, u"endless"_s);
    expectRunsOut({"GET /post"});
    site.set(u"v"_s, u""_s);
    site.set(u"do"_s, u"endless"_s);
    expectRunsOut({"GET /post", "POST /do"});
    site.set(u"do"_s, u"ok"_s);
    posted();
}

TEST_F(BlogWaits, AnAnswerWithoutAPageRunsOut) {
    site.set(u"do"_s, u"204"_s);
    expectRunsOut({"GET /post", "POST /do"});
    EXPECT_FALSE(isRemembered());
}

TEST_F(BlogWaits, APageThatTellsAnErrorIsAnAnswerButNoGoodOne) {
    site.set(u"do"_s, u"500"_s);
    post();
    EXPECT_EQ(boxes(), QStringList{kPosted});
    EXPECT_FALSE(isRemembered());
    EXPECT_TRUE(bytesOf(core::files::kBlogLog.in(session)).contains("500"));
    site.set(u"do"_s, u"ok"_s);
    posted();
    EXPECT_TRUE(isRemembered());
}

TEST_F(BlogWaits, ABrokenConnectionIsAnAnswerButNoGoodOne) {
    site.set(u"do"_s, u"reset"_s);
    post();
    EXPECT_EQ(boxes(), QStringList{kPosted});
    EXPECT_EQ(site.lines().count("POST /do"), 1);
    EXPECT_FALSE(isRemembered());
    site.set(u"do"_s, u"ok"_s);
    posted();
}

TEST_F(BlogWaits, BoxesOfThePageAreShownAndTheRunGoesOn) {
    site.set(u"v"_s, u"alert"_s);
    post();
    EXPECT_EQ(boxes(), (QStringList{u"plain: left?"_s, kPosted}));
    EXPECT_EQ(site.lines(), kLinesOfAPost);
    site.set(u"v"_s, u""_s);
    site.set(u"do"_s, u"alert"_s);
    useTemplate(u"t17a"_s);
    post();
    EXPECT_EQ(boxes(), (QStringList{u"plain: posted"_s, kPosted}));
    ASSERT_TRUE(isAsked("POST /confirm"));
}

TEST_F(BlogWaits, ASecondClickMeanwhileOnlyBeeps) {
    delay(u"/post"_s, u"1"_s);
    int clicks = 0;
    whenAsked("GET /post", [&] {
        EXPECT_TRUE(button().isEnabled());
        EXPECT_TRUE(context.runs.isAnyRunning());
        for (; clicks < 3; ++clicks)
            QTest::mouseClick(&button(), Qt::LeftButton);
    });
    posted();
    EXPECT_EQ(clicks, 3);
    EXPECT_EQ(site.lines(), kLinesOfAPost);
    EXPECT_FALSE(context.runs.isAnyRunning());
}

TEST_F(BlogWaits, OtherCommandsGoOnMeanwhile) {
    delay(u"/do"_s, u"1"_s);
    whenAsked("POST /do", [&] {
        QTest::keyClick(&calendar(), Qt::Key_Escape);
        clickDay(7);
        EXPECT_EQ(caption(), u"2004/05/07分の日記[1/1]"_s);
    });
    posted();
    EXPECT_TRUE(isRemembered()) << "the entry that was open at the start";
    EXPECT_FALSE(blog::lastPost(session, u"2004/05/07"_s, 1, u"t01"_s).has_value());
}

TEST_F(BlogWaits, APageThatComesWhileAnotherCommandHoldsTheWaitIsNotMissed) {
    for (const auto& [path, line] : {std::pair{u"/post"_s, "GET /post"}, std::pair{u"/do"_s, "POST /do"}}) {
        delay(path, u"0.5"_s);
        EXPECT_TRUE(worksInSomeTime([&](int ms) {
            limitWaits(ms);
            whenAsked(line, [ms] { QTest::qWait(2 * ms); }); // as a box that stays open, or an upload
            post();
            return boxes() == QStringList{kPosted};
        })) << line;
    }
}

TEST_F(BlogWaits, TheBrowsersWindowMayBeClosedMeanwhile) {
    delay(u"/post,/do"_s, u"0.5"_s);
    whenAsked("GET /post", [&] { browser().close(); });
    posted();
}

TEST_F(BlogWaits, ClosingTheMainWindowEndsTheRunAndThenTheProgram) {
    delay(u"/post"_s, kNever);
    QElapsedTimer sinceClosed;
    whenAsked("GET /post", [&] {
        sinceClosed.start();
        top().close();
        EXPECT_TRUE(top().isVisible());
    });
    post();
    EXPECT_TRUE(sinceClosed.isValid());
    EXPECT_LT(sinceClosed.elapsed(), kPatienceMs / 2);
    EXPECT_TRUE(boxes().isEmpty()) << boxes().join(u'\n').toStdString();
    EXPECT_EQ(statuses().last(), kFailedStatus);
    EXPECT_TRUE(waitFor([&] { return !top().isVisible(); }));
}

TEST_F(BlogWaits, ANavigationOfTheUserCountsAsTheAwaitedPage) {
    site.set(u"v"_s, u"endless"_s);
    whenAsked("GET /post", [&] {
        site.set(u"v"_s, u""_s);
        browser().Navigate(site.address(u"/post"_s));
    });
    post();
    EXPECT_EQ(boxes(), QStringList{kPosted});
}

TEST_F(BlogWaits, APageWhoseProcessDiesEndsTheRunAndNothingElse) {
    open(u"/view"_s);
    delay(u"/post"_s, kNever);
    whenAsked("GET /post", [&] { killPage(); });
    post();
    EXPECT_EQ(boxes(), QStringList{failedAt(u"Blog接続処理エラー"_s)});
    EXPECT_EQ(statuses().last(), kFailedStatus);
    delay(u"/do"_s, kNever);
    whenAsked("POST /do", [&] { killPage(); });
    post();
    EXPECT_EQ(boxes(), QStringList{failedAt(u"投稿ボタンクリックエラー"_s)});
    delay(u"/do"_s, u"0"_s);
    posted();
}

TEST_F(BlogWaits, ASecondPostOfTheSameEntrySaysSo) {
    const QString ownLine = u"t01に投稿します"_s;
    const QString said = u"この日記は 2004/05/06 08:05:09 に「題名」としてt01へ投稿済みです。"_s;
    EXPECT_EQ(tip(), ownLine);
    posted();
    EXPECT_EQ(tip(), ownLine + u'\n' + said);
    post();
    EXPECT_EQ(boxes(), QStringList{kPosted});
    EXPECT_EQ(statuses().value(0), u"Fake Blogに接続中"_s);
    EXPECT_EQ(statuses().value(1), said);
    clickDay(7);
    EXPECT_EQ(tip(), ownLine);
    clickDay(6);
    EXPECT_EQ(tip(), ownLine + u'\n' + said);
}

} // namespace
} // namespace velloria::tests
