// The window that asks for user and password where a server wants them itself.
#include "browser/forms/frmAuthentication.h"
#include "desktop/engine_home.h"

#include <QAbstractButton>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>

using namespace Qt::StringLiterals;
using namespace velloria::blog;
using velloria::browser::frmAuthentication;

namespace velloria::tests {
namespace {

class LoginWindow : public EngineHome {
protected:
    LoginWindow() { guard("/secret", "The realm"); }

    /// Who has not said "u" and "p" gets no more than "out".
    void guard(const QByteArray& path, const QByteArray& realm) {
        web.answers[path] = [this, realm](QTcpSocket& socket, const WebRequest& request) {
            if (request.head.contains("Authorization: Basic " + QByteArray("u:p").toBase64()))
                web.send(socket, "<title>in</title>");
            else
                web.send(socket, "<title>out</title>", "401 Unauthorized",
                         "WWW-Authenticate: Basic realm=\"" + realm + "\"\r\n");
        };
    }
    /// Types into the window when it comes, and leaves it by a button.
    void answer(const QString& user, const QString& password, const QString& button = u"Btn_OK"_s) {
        whenShown<frmAuthentication>([=, this](frmAuthentication& window) {
            ++shown;
            control<QLineEdit>(window, u"txtUser"_s).setText(user);
            control<QLineEdit>(window, u"txtPassword"_s).setText(password);
            control<QAbstractButton>(window, button).click();
        });
    }
    static QString textOf(const frmAuthentication& window, const QString& label) {
        return control<QLabel>(window, label).text();
    }

    int shown = 0;
};

TEST_F(LoginWindow, LetsThePageThatIsBehindItBeShown) {
    answer(u"u"_s, u"p"_s);
    open(u"/secret"_s);
    EXPECT_EQ(title(), u"in"_s);
    EXPECT_EQ(page.problem(), QString());
    open(u"/secret"_s);
    EXPECT_EQ(shown, 1) << "the engine knows the answer from here on";
}

TEST_F(LoginWindow, NamesTheHostAndThePlaceInPlainWords) {
    const auto look = [this](const QByteArray& realm, const QString& told) {
        guard("/named", realm);
        whenShown<frmAuthentication>([=, this](frmAuthentication& window) {
            ++shown;
            EXPECT_EQ(textOf(window, u"lblHost"_s).remove(QChar(0x200b)), QUrl(web.address()).authority());
            EXPECT_EQ(textOf(window, u"lblRealm"_s), told);
            EXPECT_EQ(control<QLabel>(window, u"lblRealm"_s).isVisible(), !told.isEmpty());
            EXPECT_EQ(control<QLabel>(window, u"lblRealm"_s).textFormat(), Qt::PlainText);
            EXPECT_EQ(control<QLineEdit>(window, u"txtPassword"_s).echoMode(), QLineEdit::Password);
            window.reject();
        });
        open(u"/named"_s);
    };
    look("The <b>realm</b>", u"The <b>realm</b>"_s);
    look(QByteArray(5000, 'W'), QString(300, u'W'));
    look("", QString());
    EXPECT_EQ(shown, 3);
}

TEST_F(LoginWindow, IsNoWiderForLongNames) {
    const QUrl longest(u"http://"_s + u"wwwwwwwwww."_s.repeated(20) + u"example:8080/"_s);
    frmAuthentication window(longest, QString(300, u'W'), &top());
    frmAuthentication other(QUrl(u"http://example/"_s), {}, &top());
    window.show();
    other.show();
    EXPECT_EQ(window.width(), other.width());
    EXPECT_GT(window.height(), other.height());
    EXPECT_GE(control<QLabel>(window, u"lblHost"_s).height(), 3 * window.fontMetrics().height());
}

TEST_F(LoginWindow, ComesWithWhatTheRunProposesForThatAddressAlone) {
    QList<QUrl> asked;
    page.beginRun({.credentials = [&](const QUrl& url) {
        asked += url;
        return url.path() == u"/secret"_s ? Credentials{u"u"_s, u"p"_s} : Credentials{};
    }});
    const auto look = [this](const QString& path, const QString& user, const QString& password, const QString& focus) {
        whenShown<frmAuthentication>([=, this](frmAuthentication& window) {
            ++shown;
            EXPECT_EQ(window.login().user, user);
            EXPECT_EQ(window.login().password, password);
            EXPECT_TRUE(becomesActive(window));
            ASSERT_TRUE(window.focusWidget());
            EXPECT_EQ(window.focusWidget()->objectName(), focus);
            window.reject();
        });
        open(path);
    };
    guard("/other", "Other");
    look(u"/other"_s, u""_s, u""_s, u"txtUser"_s);
    look(u"/secret"_s, u"u"_s, u"p"_s, u"Btn_OK"_s);
    {
        EnginePage other(context); // shows a page meanwhile
        other.stop();
    }
    look(u"/secret"_s, u"u"_s, u"p"_s, u"Btn_OK"_s);
    page.endRun();
    look(u"/secret"_s, u""_s, u""_s, u"txtUser"_s);
    EXPECT_EQ(shown, 4);
    EXPECT_EQ(asked, (QList<QUrl>{QUrl(web.address(u"/other"_s)), QUrl(web.address(u"/secret"_s)),
                                  QUrl(web.address(u"/secret"_s))}));
}

TEST_F(LoginWindow, ComesAgainAfterAWrongPassword) {
    answer(u"u"_s, u"wrong"_s);
    page.navigate(QUrl(web.address(u"/secret"_s)));
    ASSERT_TRUE(waitFor([this] { return web.asked.count("/secret") == 2 || shown == 2; }));
    answer(u"u"_s, u"p"_s);
    EXPECT_EQ(page.waitComplete(kLimit), PageEnd::Complete);
    EXPECT_EQ(title(), u"in"_s);
    EXPECT_EQ(shown, 2);
}

TEST_F(LoginWindow, ThatIsCancelledShowsWhatTheServerSays) {
    answer({}, {}, u"Btn_Cancel"_s);
    open(u"/secret"_s);
    EXPECT_EQ(title(), u"out"_s);
    EXPECT_EQ(page.problem(), u"HTTP 401"_s);
    answer(u"u"_s, u"p"_s);
    open(u"/secret"_s);
    EXPECT_EQ(title(), u"in"_s);
    EXPECT_EQ(shown, 2);
}

TEST_F(LoginWindow, ThatIsCancelledIsNotFollowedByOneForEachPicture) {
    web.pages["/page"] = "<img src=/secret><img src=/secret?2><img src=/secret?3>";
    answer({}, {}, u"Btn_Cancel"_s);
    open(u"/page"_s);
    EXPECT_EQ(shown, 1);
    answer({}, {}, u"Btn_Cancel"_s);
    open(u"/page"_s);
    EXPECT_EQ(shown, 2);
}

TEST_F(LoginWindow, ComesWhereSomebodyOnlyReads) {
    answer(u"u"_s, u"p"_s);
    browser().Navigate(web.address(u"/secret"_s));
    EXPECT_TRUE(waitFor([this] { return browser().LocationName() == u"in"_s; }));
}

TEST_F(LoginWindow, StopsTheTimeOfAWait) {
    show("page");
    EXPECT_TRUE(worksInSomeTime([this](int ms) {
        const QByteArray place = "/secret" + QByteArray::number(ms); // an answer is asked for once a place
        guard(place, place);
        bool isAnswered = false;
        whenShown<frmAuthentication>([&](frmAuthentication& window) {
            QTest::qWait(ms + ms / 2);
            window.propose({u"u"_s, u"p"_s});
            window.accept();
            isAnswered = true;
        });
        page.navigate(QUrl(web.address(QString::fromLatin1(place))));
        const PageEnd end = page.waitComplete(std::chrono::milliseconds(ms));
        EXPECT_TRUE(waitFor([&] { return isAnswered; }));
        return end == PageEnd::Complete && title() == u"in"_s;
    }));
}

TEST_F(LoginWindow, GoesWithTheProgramThatEndsDuringARun) {
    context.runs.run(desktop::LongRoutine::PostBlog, [this] {
        whenShown<frmAuthentication>([this](frmAuthentication&) { top().close(); });
        page.navigate(QUrl(web.address(u"/secret"_s)));
        EXPECT_EQ(page.waitComplete(kLimit), PageEnd::ProgramEnding);
    });
}

TEST_F(LoginWindow, GoesWithItsPage) {
    whenShown<frmAuthentication>([this](frmAuthentication&) { context.windows.unload<browser::frmBrowser>(); });
    page.navigate(QUrl(web.address(u"/secret"_s)));
    EXPECT_NE(refusal([this] { page.waitComplete(kLimit); }), QString());
    EXPECT_FALSE(QApplication::activeModalWidget());
}

TEST_F(LoginWindow, GoesWithAllWindows) {
    whenShown<frmAuthentication>([this](frmAuthentication&) { context.windows.closeAll(); });
    page.navigate(QUrl(web.address(u"/secret"_s)));
    EXPECT_NE(refusal([this] { page.waitComplete(kLimit); }), QString());
}

} // namespace
} // namespace velloria::tests
