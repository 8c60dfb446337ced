// Posting, from the address to the posting page: how a login is noticed, tried and refused.
#include "browser/forms/frmAuthentication.h"
#include "desktop/blog_home.h"

#include <QDirIterator>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class BlogLogin : public BlogHome {
protected:
    /// Who was to be logged in, as the login page sent it.
    FakeBlog::Request login() const { return requests("POST /login").value(0); }
    bool isLoginTried() const { return !requests("POST /login").isEmpty(); }
    void expectPosted() {
        EXPECT_EQ(boxes(), QStringList{kPosted});
        EXPECT_EQ(requests("POST /do").size(), 1);
    }
    void expectRefused() {
        EXPECT_EQ(boxes(), QStringList{kNotThePage});
        EXPECT_TRUE(requests("POST /do").isEmpty());
    }
};

TEST_F(BlogLogin, T01LogsInPostsAndIsPublic) {
    useTemplate(u"t01"_s);
    post();
    EXPECT_EQ(site.lines(), kLinesWithLogin);
    EXPECT_EQ(login().field("id"), "writer");
    EXPECT_EQ(login().field("pass"), "pa%ss+w&rd");
    EXPECT_EQ(login().field("next"), "of the page");
    EXPECT_EQ(login().field("handler"), "ran");
    const FakeBlog::Request posted = requests("POST /do").value(0);
    EXPECT_EQ(posted.user, "writer");
    EXPECT_EQ(posted.field("title"), kTitle.toUtf8());
    EXPECT_EQ(posted.field("body"), kBody.toUtf8());
    EXPECT_EQ(posted.field("handler"), "ran");
    EXPECT_FALSE(posted.has("draft"));
    EXPECT_EQ(boxes(), QStringList{kPosted});
    EXPECT_EQ(statuses(),
              (QStringList{u"Fake Blogに接続中"_s, u"Fake Blogにログイン中"_s, u"Fake Blogに投稿中"_s, kPostedStatus}));
}

TEST_F(BlogLogin, T01TellsNoSecretAnywhere) {
    useTemplate(u"t01"_s);
    post();
    const QByteArray protocol = bytesOf(core::files::kBlogLog.in(session));
    EXPECT_TRUE(protocol.contains("/login")) << protocol.toStdString();
    for (const QByteArray& secret : {QByteArray("pa%ss"), kTitle.toUtf8(), kBody.toUtf8(), QByteArray("of the page")})
        EXPECT_FALSE(protocol.contains(secret)) << protocol.toStdString();
    for (const QJsonValue& event : desk.events)
        EXPECT_FALSE(QJsonDocument(event.toObject()).toJson().contains("pa%ss"));
    EXPECT_EQ(modeOf(core::files::kBlogLog.in(session)), 0600U);
    EXPECT_EQ(modeOf(core::files::kBlogUserData.in(session)), 0600U);
}

TEST_F(BlogLogin, T01LeavesThePasswordInNoFile) {
    const QString password = u"pa%ss+w&rd"_s;
    const QByteArray forms[] = {password.toUtf8(), QUrl::toPercentEncoding(password),
                                QByteArray(reinterpret_cast<const char*>(password.utf16()), password.size() * 2)};
    useTemplate(u"t01"_s);
    post();
    ASSERT_EQ(login().field("pass"), password.toUtf8());
    context.windows.closeAll();
    QTest::qWait(500); // the browser's own files are written when it has ended
    int files = 0;
    for (QDirIterator file(path({}), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories); file.hasNext();
         ++files) {
        const QByteArray bytes = bytesOf(file.next());
        for (const QByteArray& form : forms)
            EXPECT_FALSE(bytes.contains(form)) << file.filePath().toStdString();
    }
    EXPECT_GT(files, 50) << "with those of the browser";
}

TEST_F(BlogLogin, T02LogsInByPlaces) {
    site.set(u"login_page"_s, u"index"_s);
    site.set(u"v"_s, u"input"_s);
    useTemplate(u"t02a"_s);
    post();
    EXPECT_EQ(site.lines(), kLinesWithLogin);
    EXPECT_EQ(login().field("pass"), "pa%ss+w&rd");
    EXPECT_EQ(boxes(), QStringList{kPosted});
}

TEST_F(BlogLogin, T03LogsInWithoutAButton) {
    site.set(u"login_page"_s, u"submit"_s);
    useTemplate(u"t03"_s, {{u"VALUE_Confirm"_s, u""_s}});
    post();
    EXPECT_EQ(site.lines(), kLinesWithLogin);
    EXPECT_EQ(login().field("handler"), "") << "the page's handler is a matter of its buttons";
    EXPECT_EQ(boxes(), QStringList{kPosted});
}

TEST_F(BlogLogin, T10FillsTheNextAddress) {
    useTemplate(u"t10a"_s);
    store(core::keys::blog_user::kNextURL, site.address(u"/next?a=1&b=2"_s));
    post();
    EXPECT_EQ(login().field("next"), site.address(u"/next?a=1&b=2"_s).toLatin1());
    expectPosted();
}

TEST_F(BlogLogin, T10LeavesTheNextAddressThatIsNone) {
    for (const QString& word : {u"Nothing"_s, u""_s}) {
        site.set(u"login"_s, u"off"_s);
        useTemplate(u"t10c"_s, {{u"VALUE_Next"_s, word}});
        post();
        EXPECT_EQ(login().field("next"), "of the page");
        expectPosted();
    }
}

TEST_F(BlogLogin, T11GoesToTheLoginPageItself) {
    for (const QString& name : {u"t11a"_s, u"t11b"_s}) {
        for (const QString& mode : {u"noform"_s, u"oneform"_s, u"nocheck"_s, u"inline"_s}) {
            site.set(u"login"_s, u"off"_s);
            site.set(u"mode"_s, mode);
            useTemplate(name);
            post();
            EXPECT_EQ(site.lines(), kLinesWithLogin) << name.toStdString() << mode.toStdString();
            expectPosted();
        }
    }
}

TEST_F(BlogLogin, T11AnyOtherWordLeavesThatToTheService) {
    site.set(u"mode"_s, u"inline"_s);
    useTemplate(u"t11c"_s);
    post();
    EXPECT_FALSE(site.lines().contains("GET /login"));
    EXPECT_TRUE(isLoginTried());
    expectPosted();
}

TEST_F(BlogLogin, T12WaitsForOnePageMore) {
    site.set(u"after"_s, u"refresh"_s);
    useTemplate(u"t12a"_s);
    post();
    EXPECT_EQ(site.lines(), kLinesWithLogin);
    expectPosted();
}

TEST_F(BlogLogin, T12OnePageMoreThatDoesNotComeRunsOut) {
    useTemplate(u"t12a"_s);
    expectRunsOut(kLinesWithLogin.first(4), u"off"_s);
}

TEST_F(BlogLogin, T12APageBetweenThatIsNotToldOfIsNotThePostingPage) {
    site.set(u"after"_s, u"welcome"_s);
    useTemplate(u"t12a"_s, {{u"LoginRedirect"_s, u"true"_s}});
    post();
    expectRefused();
}

TEST_F(BlogLogin, T12GoesToThePostingPageAgain) {
    site.set(u"after"_s, u"welcome"_s);
    useTemplate(u"t12b"_s);
    post();
    EXPECT_EQ(site.lines(), (QList<QByteArray>{"GET /post", "GET /login", "POST /login", "GET /welcome", "GET /post",
                                               "POST /do", "GET /done"}));
    expectPosted();
}

TEST_F(BlogLogin, T13TheAddressReachedTellsTheLoginPage) {
    useTemplate(u"t13a"_s, {{u"VALUE_Post"_s, u"post"_s}});
    post();
    EXPECT_TRUE(isLoginTried());
    EXPECT_EQ(boxes(), QStringList{kPosted});
    const FakeBlog::Request search = requests("GET /search").value(0);
    EXPECT_TRUE(search.query.contains("title=%E9%A1%8C%E5%90%8D")) << search.query.toStdString();
}

TEST_F(BlogLogin, T13TheAddressReachedIsComparedWhole) {
    useTemplate(u"t13b"_s);
    post();
    EXPECT_FALSE(isLoginTried());
    EXPECT_EQ(boxes(), QStringList{failedAt(u"タイトル挿入エラー"_s)});
}

TEST_F(BlogLogin, T13TheNumberOfFormsTellsTheLoginPage) {
    useTemplate(u"t13c"_s);
    for (const QString& mode : {u"auto"_s, u"inline"_s}) {
        site.set(u"login"_s, u"off"_s);
        site.set(u"mode"_s, mode);
        post();
        EXPECT_TRUE(isLoginTried()) << mode.toStdString();
        expectPosted();
    }
}

TEST_F(BlogLogin, T13PagesThatHaveNothingToLogInWithEndTheRunThere) {
    for (const QString& mode : {u"noform"_s, u"oneform"_s, u"nocheck"_s}) {
        site.set(u"mode"_s, mode);
        useTemplate(u"t01"_s);
        post();
        EXPECT_EQ(site.lines(), QList<QByteArray>{"GET /post"}) << mode.toStdString();
        EXPECT_EQ(boxes(), QStringList{failedAt(u"ログイントライエラー"_s)}) << mode.toStdString();
        EXPECT_EQ(statuses().last(), kFailedStatus);
    }
}

TEST_F(BlogLogin, T13WithoutACheckObjectTheFormsAloneCount) {
    site.set(u"mode"_s, u"nocheck"_s);
    useTemplate(u"t13c"_s);
    post();
    EXPECT_EQ(site.lines(), (QList<QByteArray>{"GET /post", "POST /do"}));
}

TEST_F(BlogLogin, T13MoreFormsThanThePageHasIsNoPostingPage) {
    useTemplate(u"t13d"_s);
    post();
    EXPECT_EQ(site.lines(), kLinesWithLogin.first(4));
    expectRefused();
    EXPECT_EQ(statuses().last(), u"Fake Blogにログイン中"_s) << "a refusal is no failure";
}

TEST_F(BlogLogin, T14AWrongPasswordIsTriedOnce) {
    useTemplate(u"t14"_s);
    store(core::keys::blog_user::kPassword, u"wrong"_s);
    post();
    EXPECT_EQ(site.lines(), (QList<QByteArray>{"GET /post", "GET /login", "POST /login"}));
    expectRefused();
    EXPECT_EQ(view().url().path(), u"/login"_s) << "the browser stays at the page reached";
}

TEST_F(BlogLogin, AsksForWhatIsMissingAndUsesItAtOnce) {
    useTemplate(u"t01"_s);
    store(core::keys::blog_user::kLoginID, u""_s);
    store(core::keys::blog_user::kPassword, u""_s);
    desk.answers = {u"writer"_s, u"pa%ss+w&rd"_s};
    post();
    EXPECT_EQ(prompts(),
              (QStringList{u"Fake Blogユーザー名を入れてください|"_s, u"Fake Blogパスワードを入れてください|"_s}));
    expectPosted();
    EXPECT_EQ(stored(core::keys::blog_user::kLoginID), u"writer"_s);
    EXPECT_EQ(stored(core::keys::blog_user::kPassword), u"pa%ss+w&rd"_s);
    EXPECT_FALSE(bytesOf(core::files::kBlogUserData.in(session)).contains("pa%ss"));
    EXPECT_FALSE(bytesOf(core::files::kBlogLog.in(session)).contains("pa%ss"));
}

TEST_F(BlogLogin, CancelledQuestionsLeaveTheFieldsEmpty) {
    useTemplate(u"t01"_s);
    store(core::keys::blog_user::kLoginID, u""_s);
    store(core::keys::blog_user::kPassword, u""_s);
    desk.answers = {QJsonValue(), QJsonValue()};
    post();
    EXPECT_EQ(login().field("id"), "");
    EXPECT_EQ(login().field("pass"), "");
    expectRefused();
}

TEST_F(BlogLogin, WordsForTheLoginButtonThatAreNoneSendNothing) {
    for (const QString& word : {u"name"_s, u"INDEX"_s}) {
        useTemplate(u"t01"_s, {{u"Type_Login"_s, word}});
        expectRunsOut(kLinesWithLogin.first(2), u"off"_s);
    }
}

TEST_F(BlogLogin, AServerThatAsksItselfIsAnsweredInAWindow) {
    open(u"/view"_s); // the engine runs from here on
    site.forgetLog();
    site.set(u"mode"_s, u"basic"_s);
    useTemplate(u"t01"_s);
    constexpr int kLimitMs = 10'000;
    limitWaits(kLimitMs);
    whenShown<browser::frmAuthentication>([](browser::frmAuthentication& window) {
        EXPECT_EQ(window.login().user, u"writer"_s);
        EXPECT_EQ(window.login().password, u"pa%ss+w&rd"_s);
        QTest::qWait(kLimitMs + 500); // the time stands meanwhile
        window.accept();
    });
    post();
    EXPECT_EQ(site.lines(), (QList<QByteArray>{"GET /post", "GET /post", "POST /do", "GET /done"}));
    expectPosted();
}

TEST_F(BlogLogin, AServersQuestionThatIsCancelledShowsItsPage) {
    site.set(u"mode"_s, u"basic"_s);
    useTemplate(u"t01"_s);
    whenShown<browser::frmAuthentication>([](browser::frmAuthentication& window) { window.reject(); });
    post();
    EXPECT_EQ(site.lines(), QList<QByteArray>{"GET /post"});
    EXPECT_EQ(boxes(), QStringList{failedAt(u"ログイントライエラー"_s)});
}

TEST_F(BlogLogin, FieldsAreFoundWhateverTheirCase) {
    site.set(u"login_page"_s, u"upper"_s);
    useTemplate(u"t01"_s);
    post();
    expectPosted();
}

TEST_F(BlogLogin, WhoIsLoggedInIsNotAskedAgain) {
    useTemplate(u"t01"_s);
    post();
    expectPosted();
    post();
    EXPECT_EQ(site.lines(), kLinesOfAPost);
    expectPosted();
}

} // namespace
} // namespace velloria::tests
