// What becomes of a run whose page goes on by itself, hangs or dies, and of one whose windows go.
#include "desktop/engine_home.h"
#include "platform/launcher.h"

using namespace Qt::StringLiterals;
using namespace velloria::blog;

namespace velloria::tests {
namespace {

class BlogProcess : public EngineHome {
protected:
    /// Has the page run that, and waits until it is at it: it does nothing else then.
    void keepBusy(const QByteArray& forAWhile) {
        web.answerWith("/busy", "204 No Content");
        page.bringToFront(); // timers of a page that nobody sees are slow
        run(browser(), u"setTimeout(() => { const request = new XMLHttpRequest(); request.open('GET', '/busy', false);"
                       "request.send(); %1 }, 50)"_s.arg(QString::fromLatin1(forAWhile)));
        EXPECT_TRUE(waitFor([this] { return web.asked.contains("/busy"); }));
    }
    qint64 process() { return viewOf(browser()).page()->renderProcessPid(); }
};

TEST_F(BlogProcess, OfAPageThatLoadsItselfAgainAndAgainCanBeWaitedFor) {
    int loads = 0;
    web.answers["/again"] = [&](QTcpSocket& socket, const WebRequest&) {
        web.send(socket, ++loads < 200 ? kForm + "<script>onload = () => location.reload()</script>" : kForm);
    };
    open(u"/again"_s);
    while (loads < 200)
        EXPECT_LE(page.formCount(), 1);
    EXPECT_EQ(page.waitComplete(kLimit), PageEnd::Complete);
    EXPECT_EQ(page.formCount(), 1);
}

/// A page that is busy while another process brings the next one: what it is asked meanwhile is lost with it.
class LostAnswer : public BlogProcess {
protected:
    void beLeft() {
        web.pages["/next"] = "<title>there</title><form><input name=title></form><form></form>";
        show("<form><input name=title></form>");
        keepBusy("for (;;);");
        QTimer::singleShot(100, &top(), [this] {
            browser().Navigate(web.address(u"/next"_s).replace(u"127.0.0.1"_s, u"localhost"_s));
        });
    }
};

TEST_F(LostAnswer, ToAQuestionIsGivenByTheNextPage) {
    beLeft();
    EXPECT_EQ(page.formCount(), 2);
}

TEST_F(LostAnswer, ToAStepEndsItAndTheStepIsNotDoneTwice) {
    beLeft();
    EXPECT_TRUE(refusal([this] { page.setValue(named(u"title"_s), u"x"_s); }).contains(u"別のページ"_s));
    EXPECT_EQ(own(u"document.forms[0].title.value"_s), QString());
}

TEST_F(BlogProcess, AProcessThatDiesEndsAWaitAndACallAndNothingElse) {
    web.pages["/do"] = kForm;
    for (int time = 0; time < 3; ++time) {
        show(kForm);
        web.answerLate("/do", 30'000, {});
        page.click(named(u"go"_s));
        QTimer::singleShot(100, &top(), [this] { platform::endProcess(process()); });
        EXPECT_TRUE(refusal([this] { waited(kLimit); }).contains(u"プロセスが終了しました"_s));
        EXPECT_NE(refusal([this] { page.formCount(); }), QString());
        EXPECT_NE(refusal([this] { waited(kLimit); }), QString());
    }
    show(kForm);
    EXPECT_EQ(page.formCount(), 1);
    EnginePage second(context);
    second.navigate(QUrl(web.address(u"/page"_s)));
    EXPECT_EQ(second.waitComplete(kLimit), PageEnd::Complete);
    EXPECT_EQ(second.formCount(), 1);
}

/// Of a page whose script never ends.
class HungPage : public BlogProcess {
protected:
    void hang() {
        show("<title>hung</title>" + kForm);
        keepBusy("for (;;);"); // once it is there: one that hangs before never is
    }
    EnginePage hasty{context, std::chrono::milliseconds(1'500)};
};

TEST_F(HungPage, GivesNoAnswerAndTheBrowserShowsOthersAfterIt) {
    hang();
    EXPECT_TRUE(refusal([this] { hasty.formCount(); }).contains(u"ページが応答しません"_s));
    web.pages["/do"] = "<title>there</title>";
    browser().Navigate(web.address(u"/do"_s));
    EXPECT_TRUE(waitFor([this] { return title() == u"there"_s; }));
    open(u"/do"_s);
}

TEST_F(HungPage, MayBeOneThatAClickHangs) {
    show("<form onsubmit='for (;;);'><input type=submit name=go></form>");
    hasty.stop();
    EXPECT_TRUE(refusal([this] { hasty.click(named(u"go"_s)); }).contains(u"ページが応答しません"_s));
    show(kForm);
    EXPECT_EQ(page.formCount(), 1);
}

TEST_F(HungPage, ThatIsWaitedForIsLeftBehindToo) {
    hang();
    page.navigate(QUrl(web.address(u"/do"_s)));
    EXPECT_EQ(waited(std::chrono::seconds(7)), PageEnd::TimedOut);
    QTest::qWait(100);
    show(kForm);
    EXPECT_EQ(page.formCount(), 1);
}

TEST_F(HungPage, IsDroppedBySomebodyWhoClosesTheProgram) {
    hang();
    context.runs.run(desktop::LongRoutine::PostBlog, [this] {
        QTimer::singleShot(50, &top(), &QWidget::close);
        EXPECT_THROW(page.formCount(), ProgramEnds);
        EXPECT_THROW(page.click(named(u"go"_s)), ProgramEnds);
    });
}

TEST_F(HungPage, AnswersNobodyWhoIsGone) {
    hang();
    {
        EnginePage gone(context, std::chrono::milliseconds(100));
        EXPECT_NE(refusal([&] { gone.formCount(); }), QString());
    }
    QTest::qWait(300); // its process is ended, and what it was asked is answered with nothing
    show(kForm);
}

// ---- windows

TEST_F(BlogProcess, OfTheProgramEndAWaitBeforeThePageDoes) {
    web.answerLate("/slow", 30'000, {});
    show(kForm);
    context.runs.run(desktop::LongRoutine::PostBlog, [this] {
        page.navigate(QUrl(web.address(u"/slow"_s)));
        QTimer::singleShot(50, &top(), &QWidget::close);
        EXPECT_EQ(waited(kLimit), PageEnd::ProgramEnding);
        EXPECT_THROW(page.click(named(u"go"_s)), ProgramEnds);
        EXPECT_EQ(waited(), PageEnd::ProgramEnding);
    });
    EXPECT_EQ(web.requestsFor("/do").size(), 0);
}

TEST_F(BlogProcess, AWindowThatGoesMeanwhileIsAPageThatIsGone) {
    web.answerLate("/slow", 30'000, {});
    page.navigate(QUrl(web.address(u"/slow"_s)));
    QTimer::singleShot(100, &top(), [this] { context.windows.unload<browser::frmBrowser>(); });
    EXPECT_NE(refusal([this] { waited(kLimit); }), QString());
    EXPECT_NE(refusal([this] { page.formCount(); }), QString());
    EXPECT_NE(refusal([this] { page.navigate(QUrl(web.address())); }), QString());
    EXPECT_EQ(page.problem(), QString());
    page.endRun();
}

TEST_F(BlogProcess, AllWindowsMayGoMeanwhile) {
    web.answerLate("/slow", 30'000, {});
    page.beginRun({.credentials = [](const QUrl&) { return Credentials{}; }});
    page.navigate(QUrl(web.address(u"/slow"_s)));
    QTimer::singleShot(100, qApp, [this] { context.windows.closeAll(); });
    EXPECT_NE(refusal([this] { waited(kLimit); }), QString());
    EXPECT_NE(refusal([this] { page.click(named(u"go"_s)); }), QString());
}

TEST_F(BlogProcess, WhatTheBrowserWasToShowFirstIsDropped) {
    web.pages["/page"] = "page";
    browser().Navigate(web.address(u"/pending"_s)); // the engine does not run yet
    page.stop();
    open(u"/page"_s);
    EXPECT_FALSE(web.asked.contains("/pending"));
}

TEST_F(BlogProcess, ThePageComesToTheFront) {
    web.pages["/page"] = "page";
    browser().hide();
    page.bringToFront();
    EXPECT_TRUE(browser().isVisible());
    EXPECT_EQ(context.mdi->activeSubWindow(), &browser());
}

/// Fixture: the main window was never drawn.
class BlogEngineStart : public DesktopHome {
protected:
    ~BlogEngineStart() override {
        context.windows.closeAll();
        QTest::qWait(50);
    }
};

TEST_F(BlogEngineStart, NeedsNoDrawnWindow) {
    SmallWeb web;
    web.pages["/page"] = "<form></form>";
    EnginePage page(context);
    page.stop();
    page.beginRun({});
    page.navigate(QUrl(web.address(u"/page"_s)));
    EXPECT_EQ(page.waitComplete(std::chrono::milliseconds(kPatienceMs)), PageEnd::Complete);
    EXPECT_EQ(page.formCount(), 1);
}

} // namespace
} // namespace velloria::tests
