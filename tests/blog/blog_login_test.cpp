#include "blog/blog_posting.h"
#include "core/blog_keys.h"
#include "core/files.h"
#include "platform/failure.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

namespace rows = core::keys::blog_user;

const QString kNoPostingPage = u"information: 投稿画面にならないので、投稿を中止します"_s;
const QString kWelcomeUrl = u"http://blog.test/welcome"_s;

class BlogLogin : public BlogPosting {
protected:
    BlogLogin() {
        page.isLoggedIn = false;
        page.documents[kWelcomeUrl] = {};
    }
    ScriptedElement& loginField(const QString& name) { return page.element(loginUrl, 0, name); }
    bool wasLoginTried() const { return page.done.contains(u"set name=id form=0"_s); }
    /// What a run does between its first page and the filling of the form, without what it only looks at.
    QStringList loginCalls() const {
        QStringList calls;
        for (const QString& call : page.done) {
            if (call.startsWith(u"set name=title"_s))
                break;
            if (call != u"location"_s && call != u"forms"_s && !call.startsWith(u"has"_s))
                calls += call;
        }
        return calls.mid(calls.indexOf(u"wait 30000"_s) + 1);
    }
};

// Five signs that the page is not the posting page, each alone.

TEST_F(BlogLogin, IsNotTriedOnThePostingPage) {
    page.isLoggedIn = true;
    keys[u"LoginURL"_s] = loginUrl;
    post();
    expectPosted();
    EXPECT_FALSE(wasLoginTried());
    EXPECT_FALSE(statuses().contains(u"試験ブログにログイン中"_s));
}

TEST_F(BlogLogin, IsNeededOnItsOwnPageWhateverIsThere) {
    page.documents[loginUrl].forms += page.documents[postUrl].forms; // as good as the posting page
    keys[u"LoginURL"_s] = loginUrl;
    keys[u"FORM_POST"_s] = u"2"_s;
    page.documents[postUrl].forms.prepend(ScriptedForm());
    post();
    expectPosted();
    EXPECT_TRUE(wasLoginTried());
}

TEST_F(BlogLogin, TheAddressOfItsPageComparesAsAWhole) {
    page.isLoggedIn = true;
    for (const QString& almost : {postUrl + u'/', postUrl.chopped(1), postUrl + u"?a=b"_s, postUrl.toUpper()}) {
        keys[u"LoginURL"_s] = almost;
        page.done.clear();
        post();
        EXPECT_FALSE(wasLoginTried()) << almost.toStdString();
    }
    keys[u"LoginURL"_s] = postUrl;
    post();
    EXPECT_EQ(boxes().last(), u"critical: エラーが発生しました。\r\nError_Code:ログイントライエラー"_s);
}

TEST_F(BlogLogin, AnEmptyAddressOfItsPageIsNoSign) {
    page.isLoggedIn = true;
    keys[u"LoginURL"_s] = u""_s;
    post();
    expectPosted();
}

TEST_F(BlogLogin, IsNeededOnAPageWithoutForms) {
    page.documents[postUrl].whenLoggedOut = kWelcomeUrl;
    keys[u"FORM_POST"_s] = u"-1"_s; // the other signs need a form
    keys[u"CheckObject"_s] = u""_s;
    keys[u"AutoLoginURL"_s] = u"FALSE"_s;
    keys[u"LoginURL"_s] = loginUrl;
    post();
    EXPECT_TRUE(wasLoginTried());
    EXPECT_TRUE(protocol().contains(u"フォームの数: 0。フォームがありません。"_s));
}

TEST_F(BlogLogin, IsNeededWhereOneFormIsAllAndAnotherOnePosts) {
    post();
    expectPosted();
    EXPECT_TRUE(wasLoginTried());
    EXPECT_TRUE(protocol().contains(u"フォームの数: 1。フォームがひとつだけです。"_s));
}

TEST_F(BlogLogin, OneFormMayBeThePostingForm) {
    page.isLoggedIn = true;
    page.documents[postUrl].forms.removeFirst();
    keys[u"FORM_POST"_s] = u"0"_s;
    post();
    expectPosted();
    EXPECT_FALSE(wasLoginTried());
}

TEST_F(BlogLogin, IsTriedWithAWrongFormNumberEvenOnThePostingPage) {
    page.isLoggedIn = true;
    page.documents[postUrl].forms[0] = page.documents[loginUrl].forms[0];
    for (const QString& number : {u"2"_s, u"5"_s}) {
        keys[u"FORM_POST"_s] = number;
        page.done.clear();
        post();
        EXPECT_TRUE(wasLoginTried());
        EXPECT_EQ(boxes().last(), kNoPostingPage);
        EXPECT_FALSE(page.done.contains(u"set name=title form="_s + number));
    }
    EXPECT_EQ(statuses().last(), u"試験ブログにログイン中"_s);
    EXPECT_EQ(desk.details.last(), protocol().replace(u"\n"_s, u"\r\n"_s));
    EXPECT_TRUE(protocol().contains(u"FORM_POST (5)"_s));
    keys[u"FORM_POST"_s] = u"2"_s;
    keys[u"CheckObject"_s] = u""_s; // the number of the forms says enough
    post();
    EXPECT_EQ(boxes().last(), kNoPostingPage);
}

TEST_F(BlogLogin, IsNeededWithoutTheObjectThatProvesThePostingPage) {
    page.isLoggedIn = true;
    page.documents[postUrl].forms[0] = page.documents[loginUrl].forms[0];
    page.documents[postUrl].forms[0].elements += {.name = u"check"_s}; // in the wrong form
    postForm().elements.removeFirst();
    post();
    EXPECT_TRUE(wasLoginTried());
    EXPECT_EQ(boxes(), QStringList{kNoPostingPage});
    keys[u"CheckObject"_s] = u""_s;
    desk.events = {};
    desk.details.clear();
    post();
    expectPosted();
}

TEST_F(BlogLogin, AFormNumberBelowAllFormsProvesNothing) {
    page.isLoggedIn = true;
    keys[u"FORM_POST"_s] = u"-1"_s;
    page.documents[postUrl].forms[0] = page.documents[loginUrl].forms[0];
    post();
    EXPECT_EQ(boxes(), QStringList{kNoPostingPage});
}

TEST_F(BlogLogin, AWrongPasswordEndsOnTheLoginPage) {
    loginField(u"in"_s).logsIn = false;
    post();
    EXPECT_EQ(boxes(), QStringList{kNoPostingPage});
    EXPECT_EQ(statuses(), QStringList({u"試験ブログに接続中"_s, u"試験ブログにログイン中"_s}));
    EXPECT_EQ(desk.details.size(), 1);
    EXPECT_EQ(page.calls(u"click"_s), QStringList{u"click name=in form=0"_s}); // nothing is tried twice
    EXPECT_FALSE(page.isRunning);
}

// How the login page is reached, and what is waited for.

TEST_F(BlogLogin, IsReachedByTheServiceOrByTheRun) {
    for (const auto& [word, goesThere] : std::initializer_list<std::pair<QString, bool>>{{u"FALSE"_s, true},
                                                                                         {u"FALSERENAVIGATE"_s, true},
                                                                                         {u"TRUE"_s, false},
                                                                                         {u"false"_s, false},
                                                                                         {u"RENAVIGATE"_s, false},
                                                                                         {u"0"_s, false},
                                                                                         {u""_s, false}}) {
        keys[u"AutoLoginURL"_s] = word;
        keys[u"LoginURL"_s] = loginUrl;
        page.isLoggedIn = false;
        page.done.clear();
        post();
        const QStringList way{u"navigate "_s + loginUrl, u"wait 30000"_s};
        EXPECT_EQ(loginCalls().mid(0, 2) == way, goesThere) << word.toStdString();
        EXPECT_EQ(page.calls(u"wait"_s).size(), goesThere ? 4 : 3) << word.toStdString();
        EXPECT_EQ(lastStatus(), u"日記投稿完了！画像ファイルは手動でアップロードして下さい。"_s);
    }
    keys.remove(u"AutoLoginURL"_s);
    page.isLoggedIn = false;
    page.done.clear();
    post();
    EXPECT_EQ(page.calls(u"navigate"_s).size(), 1);
}

TEST_F(BlogLogin, GoesToAnAddressOfTheWebAlone) {
    keys[u"AutoLoginURL"_s] = u"FALSE"_s;
    for (const QString& address : {u""_s, u"javascript:alert(document.cookie)"_s, u"file:///etc/passwd"_s}) {
        desk.details.clear();
        keys[u"LoginURL"_s] = address;
        post();
        expectStage(u"ログイントライエラー"_s);
        EXPECT_TRUE(protocol().contains(u"http と https"_s));
    }
    EXPECT_EQ(page.calls(u"navigate"_s), QStringList(3, u"navigate "_s + postUrl));
}

const QStringList kFilled{u"set name=id form=0"_s, u"set name=pass form=0"_s, u"click name=in form=0"_s};

TEST_F(BlogLogin, UsuallyGivesOnePage) {
    for (const QString& word : {u"FALSE"_s, u"true"_s, u"NOTHING"_s, u""_s}) {
        keys[u"LoginRedirect"_s] = word;
        page.isLoggedIn = false;
        page.done.clear();
        post();
        EXPECT_EQ(loginCalls(), kFilled + QStringList{u"wait 30000"_s}) << word.toStdString();
    }
}

TEST_F(BlogLogin, MayGiveOnePageMore) {
    keys[u"LoginRedirect"_s] = u"TRUE"_s;
    loginField(u"in"_s).leadsTo = {kWelcomeUrl, postUrl};
    post();
    expectPosted();
    EXPECT_EQ(loginCalls(), kFilled + QStringList({u"wait 30000"_s, u"wait 30000"_s}));
}

TEST_F(BlogLogin, MayLeaveTheWayToThePostingPageToTheRun) {
    keys[u"LoginRedirect"_s] = u"RENAVIGATE"_s;
    loginField(u"in"_s).leadsTo = {kWelcomeUrl};
    post();
    expectPosted();
    EXPECT_EQ(loginCalls(), kFilled + QStringList({u"wait 30000"_s, u"navigate "_s + postUrl, u"wait 30000"_s}));
}

TEST_F(BlogLogin, APageThatDoesNotComeEndsTheRun) {
    const auto expectTimeOut = [this](const QString& redirect, const QStringList& leadsTo, int waits) {
        keys[u"LoginRedirect"_s] = redirect;
        page.isLoggedIn = false;
        page.done.clear();
        loginField(u"in"_s).leadsTo = leadsTo;
        post();
        EXPECT_EQ(boxes().last(), u"critical: Blog投稿失敗！\r\nタイムアウト(60秒)です。"_s);
        EXPECT_EQ(lastStatus(), u"日記投稿失敗！"_s);
        EXPECT_EQ(page.calls(u"wait"_s).size(), waits);
        EXPECT_FALSE(page.isRunning);
    };
    expectTimeOut(u"FALSE"_s, {}, 2);
    expectTimeOut(u"TRUE"_s, {}, 2);
    expectTimeOut(u"TRUE"_s, {kWelcomeUrl}, 3);
    expectTimeOut(u"RENAVIGATE"_s, {}, 2);
    keys[u"AutoLoginURL"_s] = u"FALSE"_s;
    keys[u"LoginURL"_s] = u"http://silent.test/"_s;
    expectTimeOut(u"FALSE"_s, {}, 2);
    EXPECT_EQ(desk.details.size(), 5);
}

// The form.

TEST_F(BlogLogin, FillsInNameAndPassword) {
    post();
    expectPosted();
    EXPECT_EQ(loginField(u"id"_s).value, u"hanako"_s);
    EXPECT_EQ(loginField(u"pass"_s).value, u"himitsu"_s);
    EXPECT_EQ(loginField(u"next"_s).value, QString());
    EXPECT_EQ(statuses(), QStringList({u"試験ブログに接続中"_s, u"試験ブログにログイン中"_s, u"試験ブログに投稿中"_s,
                                       u"日記投稿完了！画像ファイルは手動でアップロードして下さい。"_s}));
}

TEST_F(BlogLogin, AnyOtherWordThanNameIsAPlaceAmongTheInputs) {
    for (const QString& word : {u"INDEX"_s, u"INPUT"_s, u"name"_s, u"TEXTAREA"_s, u""_s}) {
        keys[u"Type_LoginID"_s] = keys[u"Type_Password"_s] = keys[u"Type_Next"_s] = word;
        keys[u"VALUE_LoginID"_s] = u"1"_s;
        keys[u"VALUE_Password"_s] = u"2"_s;
        keys[u"VALUE_Next"_s] = u"0"_s;
        keys[u"Type_Login"_s] = u"INPUT"_s;
        keys[u"VALUE_Login"_s] = u"3"_s;
        keys[u"NextURL"_s] = u"http://next.test/"_s;
        page.isLoggedIn = false;
        page.done.clear();
        post();
        EXPECT_EQ(loginCalls(), QStringList({u"set input=1"_s, u"set input=2"_s, u"set input=0"_s, u"click input=3"_s,
                                             u"wait 30000"_s}));
        EXPECT_EQ(loginField(u"next"_s).value, u"http://next.test/"_s);
    }
}

TEST_F(BlogLogin, TheNextAddressGoesOnlyWhereThereIsAFieldForIt) {
    keys[u"NextURL"_s] = u"http://next.test/"_s;
    for (const QString& none : {u""_s, u"Nothing"_s}) {
        keys[u"VALUE_Next"_s] = none;
        page.isLoggedIn = false;
        desk.events = {};
        post();
        expectPosted();
        EXPECT_EQ(loginField(u"next"_s).value, QString());
    }
    keys[u"VALUE_Next"_s] = u"next"_s;
    page.isLoggedIn = false;
    post();
    EXPECT_EQ(loginField(u"next"_s).value, u"http://next.test/"_s);
}

TEST_F(BlogLogin, IsSentAsTheTemplateSays) {
    const auto sent = [this](const QString& type, const QString& value) {
        keys[u"Type_Login"_s] = type;
        keys[u"VALUE_Login"_s] = value;
        page.isLoggedIn = false;
        page.done.clear();
        post();
        return loginCalls().mid(2);
    };
    const QString wait = u"wait 30000"_s;
    EXPECT_EQ(sent(u"NAME"_s, u"in"_s), QStringList({u"click name=in form=0"_s, wait}));
    EXPECT_EQ(sent(u"INPUT"_s, u"3"_s), QStringList({u"click input=3"_s, wait}));
    EXPECT_EQ(sent(u"SUBMIT"_s, u"in"_s), QStringList({u"submit 0"_s, wait}));
    // Any other word does nothing: whoever is there may do it by hand within the wait's time.
    for (const QString& word : {u"Name"_s, u"INDEX"_s, u""_s})
        EXPECT_EQ(sent(word, u"in"_s), QStringList({wait, u"end"_s}));
    EXPECT_EQ(boxes().last(), u"critical: Blog投稿失敗！\r\nタイムアウト(60秒)です。"_s);
}

TEST_F(BlogLogin, WhatThePageOrTheTemplateLacksIsToldByItsStage) {
    const auto expectFailure = [this](const QString& key, const QString& value) {
        const QString before = keys.value(key, u"NAME"_s);
        keys[key] = value;
        desk.details.clear();
        page.isLoggedIn = false;
        post();
        expectStage(u"ログイントライエラー"_s);
        EXPECT_FALSE(page.isRunning);
        keys[key] = before;
    };
    for (const QString& key : {u"VALUE_LoginID"_s, u"VALUE_Password"_s, u"VALUE_Next"_s, u"VALUE_Login"_s})
        expectFailure(key, u"missing"_s);
    for (const QString& key : {u"VALUE_LoginID"_s, u"VALUE_Password"_s, u"VALUE_Login"_s})
        expectFailure(key, u""_s);
    keys[u"VALUE_Next"_s] = u"next"_s;
    for (const QString& key : {u"Type_LoginID"_s, u"Type_Password"_s, u"Type_Next"_s})
        expectFailure(key, u"INDEX"_s); // the names are no numbers
    expectFailure(u"Type_Login"_s, u"INPUT"_s);
    keys[u"Type_LoginID"_s] = u"INPUT"_s;
    for (const QString& value : {u"4"_s, u"-1"_s, u"32768"_s, u"-32769"_s, u"99999999999999999999"_s, u"1e9"_s})
        expectFailure(u"VALUE_LoginID"_s, value);
    keys[u"Type_LoginID"_s] = u"NAME"_s;
    for (const QString& form : {u"1"_s, u"-1"_s})
        expectFailure(u"FORM_LOGIN"_s, form);
}

// The user's data.

TEST_F(BlogLogin, AsksForWhatIsNotStoredAndTheAnswersCountAtOnce) {
    setUser(rows::kLoginID, u""_s);
    setUser(rows::kPassword, u""_s);
    desk.answers = {u"taro"_s, u"aikotoba"_s};
    post();
    EXPECT_EQ(asked().mid(0, 2), QStringList({u"Velloria? 試験ブログユーザー名を入れてください"_s,
                                              u"Velloria? 試験ブログパスワードを入れてください"_s}));
    EXPECT_EQ(loginField(u"id"_s).value, u"taro"_s);
    EXPECT_EQ(loginField(u"pass"_s).value, u"aikotoba"_s);
    EXPECT_EQ(user(rows::kLoginID), u"taro"_s);
    EXPECT_EQ(user(rows::kPassword), u"aikotoba"_s);
    EXPECT_FALSE(bytesOf(core::files::kBlogUserData.in(session)).contains("aikotoba"));
    EXPECT_EQ(lastStatus(), u"日記投稿完了！画像ファイルは手動でアップロードして下さい。"_s);
    page.isLoggedIn = false;
    post();
    EXPECT_EQ(asked().size(), 4); // two questions, and a box at each end
}

TEST_F(BlogLogin, ACancelledQuestionWritesAnEmptyFieldAndStoresNothing) {
    setUser(rows::kLoginID, u""_s);
    setUser(rows::kPassword, u""_s);
    loginField(u"id"_s).value = loginField(u"pass"_s).value = u"of the page"_s;
    desk.answers = {QJsonValue(), QJsonValue()};
    post();
    EXPECT_EQ(loginField(u"id"_s).value, QString());
    EXPECT_EQ(loginField(u"pass"_s).value, QString());
    EXPECT_EQ(user(rows::kLoginID), QString());
}

TEST_F(BlogLogin, WhatWasTypedIsStoredBeforeThePageIsTouched) {
    setUser(rows::kLoginID, u""_s);
    setUser(rows::kPassword, u""_s);
    keys[u"VALUE_LoginID"_s] = u"missing"_s;
    desk.answers = {u"taro"_s, u"aikotoba"_s};
    post();
    expectStage(u"ログイントライエラー"_s);
    EXPECT_EQ(user(rows::kLoginID), u"taro"_s);
    EXPECT_EQ(user(rows::kPassword), u"aikotoba"_s);
}

TEST_F(BlogLogin, ANameThatIsTypedWithBlanksAroundGoesInWithoutThemAtOnce) {
    setUser(rows::kLoginID, u""_s);
    desk.answers = {u" taro "_s};
    post();
    expectPosted();
    EXPECT_EQ(page.element(loginUrl, 0, u"id"_s).value, u"taro"_s);
}

TEST_F(BlogLogin, WhatCanNotBeStoredEndsTheRunWithThePageUntouched) {
    setUser(rows::kPassword, u""_s);
    desk.answers = {u"\U0001F511"_s, u"aikotoba"_s}; // no file gives such a password back
    post();
    expectStage(u"ログイントライエラー"_s);
    EXPECT_FALSE(wasLoginTried());
    EXPECT_FALSE(protocol().contains(u"\U0001F511"_s));
    QFile::setPermissions(core::files::kBlogUserData.in(session), QFile::ReadOwner);
    desk.details.clear();
    post();
    expectStage(u"ログイントライエラー"_s);
    EXPECT_FALSE(wasLoginTried());
    EXPECT_FALSE(protocol().contains(u"aikotoba"_s));
}

TEST_F(BlogLogin, TheUsersDataAreReadOnlyWhenTheyAreNeeded) {
    const QString data = core::files::kBlogUserData.in(session);
    ASSERT_TRUE(QFile::remove(data));
    ASSERT_TRUE(QDir().mkpath(data)); // it can't be read
    page.isLoggedIn = true;
    post();
    expectPosted();
    page.isLoggedIn = false;
    post();
    expectStage(u"ログイントライエラー"_s);
}

// What the window for a login of the server itself is filled in with.

TEST_F(BlogLogin, TheServerOfThePostingPageAloneIsToldTheLogin) {
    QHash<QString, QString> told;
    page.beforeCall = [&](const QString& call) {
        if (!call.startsWith(u"wait"_s) || !told.isEmpty())
            return;
        for (const QString& address :
             {u"http://blog.test/post"_s, u"http://BLOG.test:80/other"_s, u"https://blog.test/post"_s,
              u"https://blog.test:80/post"_s, u"http://blog.test:8080/post"_s, u"http://test/post"_s,
              u"http://blog.test.evil.test/"_s, u""_s}) {
            const blog::Credentials credentials = page.run.credentials(QUrl(address));
            told[address] = credentials.loginId + u':' + credentials.password;
        }
    };
    post();
    EXPECT_EQ(told[u"http://blog.test/post"_s], u"hanako:himitsu"_s);
    EXPECT_EQ(told[u"http://BLOG.test:80/other"_s], u"hanako:himitsu"_s);
    for (const QString& address :
         {u"https://blog.test/post"_s, u"https://blog.test:80/post"_s, u"http://blog.test:8080/post"_s,
          u"http://test/post"_s, u"http://blog.test.evil.test/"_s, u""_s})
        EXPECT_EQ(told[address], u":"_s) << address.toStdString();
}

TEST_F(BlogLogin, DataThatCanNotBeReadFillInNothing) {
    const QString data = core::files::kBlogUserData.in(session);
    ASSERT_TRUE(QFile::remove(data));
    ASSERT_TRUE(QDir().mkpath(data));
    page.isLoggedIn = true;
    bool isAsked = false;
    page.beforeCall = [&](const QString& call) {
        if (call.startsWith(u"wait"_s)) {
            EXPECT_EQ(page.run.credentials(QUrl(postUrl)).loginId, QString());
            isAsked = true;
        }
    };
    post();
    EXPECT_TRUE(isAsked);
    expectPosted();
}

} // namespace
} // namespace velloria::tests
