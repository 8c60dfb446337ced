// Which ends of loading a run waits for, and what happens when none comes.
#include "desktop/engine_home.h"

#include <QElapsedTimer>
#include <QScopeGuard>

using namespace Qt::StringLiterals;
using namespace velloria::blog;

namespace velloria::tests {
namespace {

class BlogEnds : public EngineHome {
protected:
    /// Clicks in a page with a form, after which nothing that counts comes.
    void expectNothingAfterClick(const QByteArray& body = kForm) {
        show(body);
        page.click(named(u"go"_s));
        EXPECT_EQ(waited(), PageEnd::TimedOut);
    }
};

TEST_F(BlogEnds, OfALoadThatWasStoppedCountNever) {
    web.answerLate("/slow", 300, "slow");
    page.navigate(QUrl(web.address(u"/slow"_s)));
    ASSERT_TRUE(waitFor([this] { return web.asked.contains("/slow"); }));
    page.stop();
    EXPECT_EQ(waited(), PageEnd::TimedOut);
}

TEST_F(BlogEnds, OfAPageThatWasStoppedHalfWayCountNever) {
    web.pages["/page"] = "half<img src=/slow>";
    web.answerLate("/slow", 30'000, "slow");
    page.navigate(QUrl(web.address(u"/page"_s)));
    ASSERT_TRUE(waitFor([this] { return web.asked.contains("/slow"); }));
    page.stop();
    EXPECT_EQ(waited(), PageEnd::TimedOut);
}

/// However the older load and the newer one come together: the engine tells the end of either then, of both or of none.
TEST_F(BlogEnds, OfAnOlderLoadCountNever) {
    web.pages["/new"] = "<form></form><form></form>";
    web.pages["/old"] = "<form></form>";
    for (int time = 0; time < 40; ++time) {
        browser().Navigate(web.address(u"/old"_s));
        QElapsedTimer sinceLoad;
        sinceLoad.start();
        while (sinceLoad.nsecsElapsed() < time * 750'000)
            QCoreApplication::processEvents();
        page.stop();
        page.navigate(QUrl(web.address(u"/new"_s)));
        ASSERT_EQ(page.waitComplete(kLimit), PageEnd::Complete) << time;
        EXPECT_EQ(page.formCount(), 2) << time;
        EXPECT_EQ(page.locationUrl(), web.address(u"/new"_s)) << time;
    }
}

TEST_F(BlogEnds, FromBeforeTheLastStepCountNever) {
    web.pages["/do"] = "<meta http-equiv=refresh content='0;url=/page?2'>";
    show("<title>1</title>" + kForm);
    clickAndWait(u"go"_s);
    ASSERT_TRUE(waitFor([this] { return web.asked.contains("/page?2") && title() == u"1"_s; }));
    ASSERT_TRUE(waitFor([this] { return browser().LocationURL() == web.address(u"/page?2"_s); }));
    web.answerWith("/do", "204 No Content");
    page.click(named(u"go"_s)); // with the end of the refreshed page unheard
    EXPECT_EQ(waited(), PageEnd::TimedOut);
}

TEST_F(BlogEnds, ThatComeBeforeTheWaitAreHeardByIt) {
    web.pages["/do"] = "<title>there</title>";
    show(kForm);
    page.click(named(u"go"_s));
    ASSERT_TRUE(waitFor([this] { return title() == u"there"_s; }));
    QTest::qWait(100);
    EXPECT_EQ(page.formCount(), 0);
    EXPECT_EQ(waited(kLimit), PageEnd::Complete);
    EXPECT_EQ(waited(), PageEnd::TimedOut) << "once";
}

TEST_F(BlogEnds, OfTwoHundredFastAnswersAreAllHeard) {
    web.pages["/do"] = kForm;
    show(kForm);
    QElapsedTimer watch;
    watch.start();
    for (int time = 0; time < 200; ++time)
        clickAndWait(u"go"_s);
    EXPECT_EQ(web.requestsFor("/do").size(), 200);
    RecordProperty("ms", int(watch.elapsed()));
}

TEST_F(BlogEnds, OfAPageThatGoesOnByItselfAreTwo) {
    web.pages["/do"] = "<meta http-equiv=refresh content='0;url=/done'>";
    web.pages["/done"] = "done";
    show(kForm);
    page.click(named(u"go"_s));
    EXPECT_EQ(waited(kLimit), PageEnd::Complete);
    EXPECT_EQ(waited(kLimit), PageEnd::Complete);
    EXPECT_EQ(page.locationUrl(), web.address(u"/done"_s));
    EXPECT_EQ(waited(), PageEnd::TimedOut);
}

TEST_F(BlogEnds, OfRedirectsAreOne) {
    web.redirects["/do?go=%E9%80%81%E4%BF%A1"] = "/next";
    web.redirects["/next"] = "/done";
    web.pages["/done"] = "done";
    show(kForm);
    clickAndWait(u"go"_s);
    EXPECT_EQ(page.locationUrl(), web.address(u"/done"_s));
    EXPECT_EQ(waited(), PageEnd::TimedOut);
}

TEST_F(BlogEnds, OfARedirectOutOfTheWebShowNothingOfIt) {
    writeFile(path(u"secret.htm"_s), "<title>secret</title>");
    for (const QByteArray& target :
         {QUrl::fromLocalFile(path(u"secret.htm"_s)).toEncoded(), QByteArray("data:text/html,<title>secret</title>"),
          QByteArray("javascript:document.title='secret'"), QByteArray("ftp://127.0.0.1/")}) {
        show(kForm);
        web.answerWith("/do", "302 Found", "Location: " + target + "\r\n");
        page.click(named(u"go"_s));
        waited(); // with an error page or none
        EXPECT_NE(title(), u"secret"_s) << target.toStdString();
        EXPECT_TRUE(page.locationUrl().startsWith(web.address())) << page.locationUrl().toStdString();
    }
}

TEST_F(BlogEnds, OfAPageThatTellsAnErrorCountAndSayWhich) {
    show(kForm);
    EXPECT_EQ(page.problem(), QString());
    for (const QByteArray& status : {QByteArray("404 Not Found"), QByteArray("500 Error"), QByteArray("503 Busy")}) {
        web.answerWith("/do", status, {}, kForm);
        clickAndWait(u"go"_s);
        EXPECT_EQ(page.problem(), u"HTTP "_s + QString::fromLatin1(status.left(3)));
    }
    web.answerWith("/do", "500 Error");
    clickAndWait(u"go"_s);
    EXPECT_EQ(page.problem(), u"HTTP 500"_s) << "without a page of the server's own";
    web.answers["/do"] = [](QTcpSocket& socket, const WebRequest&) { socket.abort(); };
    show(kForm);
    EXPECT_EQ(page.problem(), QString());
    clickAndWait(u"go"_s);
    EXPECT_TRUE(page.problem().startsWith(u"net::ERR_"_s)) << page.problem().toStdString();
    page.navigate(QUrl(u"http://127.0.0.1:9/"_s));
    EXPECT_EQ(waited(kLimit), PageEnd::Complete);
    EXPECT_TRUE(page.problem().startsWith(u"net::ERR_"_s)) << page.problem().toStdString();
}

TEST_F(BlogEnds, OfAnAnswerOfAnotherKindCount) {
    const QByteArray picture = QByteArray::fromBase64("R0lGODdhAQABAIAAAP8AAAAAACwAAAAAAQABAAACAkQBADs=");
    for (const auto& [kind, body] : std::initializer_list<std::pair<QByteArray, QByteArray>>{
             {"text/plain", "ok"},
             {"text/plain", ""},
             {"application/json", "{}"},
             {"text/xml", "<ok/>"},
             {"application/xml", "no xml"},
             {"image/gif", picture},
             {"image/svg+xml", "<svg xmlns='http://www.w3.org/2000/svg'/>"},
             {"text/html\r\nContent-Security-Policy: sandbox", "<script>document.title = 'x'</script>"},
             {"text/html\r\nRefresh: 60", "later"}}) {
        show(kForm);
        web.answers["/do"] = [&](QTcpSocket& socket, const WebRequest&) {
            socket.write("HTTP/1.1 200 OK\r\nContent-Type: " + kind + "\r\nContent-Length: " +
                         QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body);
            socket.disconnectFromHost();
        };
        page.click(named(u"go"_s));
        EXPECT_EQ(waited(kLimit), PageEnd::Complete) << kind.toStdString();
        EXPECT_EQ(refusal([this] { page.formCount(); }), QString()) << kind.toStdString();
    }
}

TEST_F(BlogEnds, OfWhatShowsNothingDoNotCome) {
    web.answerWith("/do", "204 No Content");
    expectNothingAfterClick();
    web.answerWith("/do", "200 OK", "Content-Disposition: attachment; filename=a.bin\r\n", "x");
    desk.answers = {QJsonValue()};
    expectNothingAfterClick();
    expectNothingAfterClick("<form onsubmit='location.hash = 1; return false'><input type=submit name=go></form>");
    expectNothingAfterClick("<form onsubmit='history.pushState({}, 0, 1); return false'><input type=submit name=go>"
                            "</form>");
    expectNothingAfterClick("<form onsubmit='return false'><input type=submit name=go></form>");
}

TEST_F(BlogEnds, OfAnAddressThatIsShownAlreadyComeAnew) {
    web.pages["/page"] = "page";
    for (const QString& address : {u"/page"_s, u"/page"_s, u"/page#a"_s, u"/page#b"_s, u"/page#b"_s, u"/page"_s}) {
        const qsizetype before = web.asked.count("/page");
        open(address);
        EXPECT_EQ(web.asked.count("/page"), before + 1) << address.toStdString();
    }
}

TEST_F(BlogEnds, OfAPageThatThePersonWentToCount) {
    web.pages["/other"] = "other";
    web.answerWith("/do", "204 No Content");
    show(kForm);
    page.click(named(u"go"_s));
    QTimer::singleShot(100, &top(), [this] { browser().Navigate(web.address(u"/other"_s)); });
    EXPECT_EQ(waited(kLimit), PageEnd::Complete);
    EXPECT_EQ(page.locationUrl(), web.address(u"/other"_s));
}

// ---- frames

TEST_F(BlogEnds, OfFramesWaitForThePageAround) {
    web.pages["/do"] = "<iframe src=/frame></iframe><img src=/slow>";
    web.pages["/frame"] = "<img src=/slow>";
    QList<QTcpSocket*> waiting;
    web.answers["/slow"] = [&](QTcpSocket& socket, const WebRequest&) { waiting += &socket; };
    show(kForm);
    browser().bDocumentComplete = false;
    page.click(named(u"go"_s));
    ASSERT_TRUE(waitFor([this] { return web.asked.contains("/frame"); }));
    QTest::qWait(200);
    EXPECT_FALSE(browser().bDocumentComplete);
    EXPECT_EQ(page.waitComplete(std::chrono::milliseconds(0)), PageEnd::TimedOut);
    web.answers.remove("/slow");
    for (QTcpSocket* socket : std::as_const(waiting))
        web.send(*socket, "slow");
    EXPECT_EQ(waited(kLimit), PageEnd::Complete);
    EXPECT_TRUE(browser().bDocumentComplete);
    EXPECT_EQ(waited(), PageEnd::TimedOut);
}

TEST_F(BlogEnds, OfAFrameInAPageThatIsCompleteCount) {
    web.pages["/frame"] = "frame";
    show("<iframe name=inner></iframe><form action=/frame target=inner><input type=submit name=go></form>");
    clickAndWait(u"go"_s);
    EXPECT_EQ(page.locationUrl(), web.address(u"/page"_s));
}

TEST_F(BlogEnds, OfAFrameInAPageThatIsBeingLeftDoNot) {
    web.pages["/frame"] = "<script>setTimeout(() => location.reload(), 30)</script>";
    web.answerLate("/do", 1'500, "<title>there</title>");
    show("<iframe src=/frame></iframe>" + kForm);
    clickAndWait(u"go"_s);
    EXPECT_EQ(title(), u"there"_s);
}

// ---- boxes

/// A person who takes their time.
class SlowDesk : public ScriptedDesk {
public:
    explicit SlowDesk(int ms)
        : m_ms(ms) {}
    void message(platform::MessageKind kind, const QString& text, const QString& title) override {
        QTest::qWait(m_ms);
        ScriptedDesk::message(kind, text, title);
    }

private:
    const int m_ms;
};

TEST_F(BlogEnds, TheTimeStandsWhileABoxIsOpen) {
    web.pages["/do"] = "<script>alert('b'); alert('c')</script>";
    web.pages["/page"] = "<form action=/do onsubmit='alert(1)'><input type=submit name=go></form>";
    EXPECT_TRUE(worksInSomeTime([&](int ms) {
        const int longer = ms + ms / 2;
        SlowDesk slowDesk(longer);
        desktop::Context slow{core::Run{session, clock, slowDesk}};
        slow.mdi = context.mdi;
        EnginePage slowPage(slow, std::chrono::milliseconds(ms));
        slowPage.navigate(QUrl(web.address(u"/page"_s)));
        EXPECT_EQ(slowPage.waitComplete(kLimit), PageEnd::Complete);
        const QString refused = refusal([&] { slowPage.click(named(u"go"_s)); }); // answered after the box
        return refused.isEmpty() && slowPage.waitComplete(std::chrono::milliseconds(2 * longer)) == PageEnd::Complete &&
               slowDesk.texts(u"message"_s) == QStringList{u"1"_s, u"b"_s, u"c"_s};
    }));
}

} // namespace
} // namespace velloria::tests
