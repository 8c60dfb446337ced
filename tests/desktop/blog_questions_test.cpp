// Posting, viewing and managing: what is asked and refused before any page, and the text that goes out.
#include "desktop/blog_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

namespace keys = core::keys::blog_user;

const QString kAskForPage = u"投稿画面のURLを入力してください。|"_s;
const QString kNoPostUrl = u"critical: 投稿URLの設定ができていないため日記の投稿を中止します。\r\n"
                           "URLの設定は、マニュアルもしくはホームページのBlog設定方法をご覧ください。"_s;
const QString kNoNextUrl = u"critical: URLの設定ができていないため日記の投稿を中止します。\r\n"
                           "URLの設定は、マニュアルもしくはホームページのBlog設定方法をご覧ください。"_s;
const QString kNoDay = u"critical: 投稿する日記が選択されていません。日記の投稿を中止します。"_s;
const QString kNoText = u"critical: タイトルもしくは本文が記入されていないため、日記の投稿を中止します。"_s;
const QString kIsPrivate = u"question: 非公開になっていますが、Blogに投稿しますか？"_s;

class BlogQuestions : public BlogHome {
protected:
    void SetUp() override {
        BlogHome::SetUp();
        site.set(u"login"_s, u"on"_s);
    }
    void expectStopped(const QString& box) {
        EXPECT_EQ(boxes(), QStringList{box});
        EXPECT_TRUE(site.lines().isEmpty());
        EXPECT_TRUE(statuses().isEmpty());
    }
};

TEST_F(BlogQuestions, T08TheFirstRunAsksAndTheSecondPosts) {
    useTemplate(u"t08"_s);
    desk.answers = {site.address(u"/post"_s)};
    post();
    EXPECT_EQ(prompts(), QStringList{kAskForPage});
    expectStopped(kNoPostUrl);
    EXPECT_EQ(stored(keys::kPostURL), site.address(u"/post"_s));
    posted();
    EXPECT_EQ(prompts(), QStringList());
    EXPECT_EQ(site.lines(), kLinesOfAPost);
}

TEST_F(BlogQuestions, T08ACancelledQuestionStoresNothing) {
    useTemplate(u"t08"_s);
    for (int time = 0; time < 2; ++time) {
        desk.answers = {QJsonValue()};
        post();
        EXPECT_EQ(prompts(), QStringList{kAskForPage});
        expectStopped(kNoPostUrl);
    }
    EXPECT_EQ(stored(keys::kPostURL), u""_s);
}

TEST_F(BlogQuestions, T09AsksAtEveryRunAndNeverPosts) {
    useTemplate(u"t09"_s);
    for (int time = 0; time < 2; ++time) {
        desk.answers = {site.address(u"/post"_s)};
        post();
        EXPECT_EQ(prompts(), QStringList{kAskForPage});
        expectStopped(kNoPostUrl);
        EXPECT_EQ(stored(keys::kPostURL), site.address(u"/post"_s));
    }
}

TEST_F(BlogQuestions, T10AsksForTheNextAddressAndGoesOn) {
    useTemplate(u"t10a"_s);
    desk.answers = {site.address(u"/next"_s)};
    posted();
    EXPECT_EQ(prompts(), QStringList{kAskForPage});
    EXPECT_EQ(stored(keys::kNextURL), site.address(u"/next"_s));
    posted();
    EXPECT_EQ(prompts(), QStringList()) << "the answer counts from the next run on";
}

TEST_F(BlogQuestions, T10AnAddressThatIsMissingIsAskedForEachTime) {
    useTemplate(u"t10b"_s);
    for (int time = 0; time < 2; ++time) {
        desk.answers = {u"x"_s};
        posted();
        EXPECT_EQ(prompts(), QStringList{kAskForPage});
        EXPECT_EQ(stored(keys::kNextURL), u"x"_s);
    }
}

TEST_F(BlogQuestions, T10AnAddressThatIsNoneIsNotAskedFor) {
    posted(u"t10c"_s);
    EXPECT_EQ(prompts(), QStringList());
}

TEST_F(BlogQuestions, TheAddressesAreAskedForBeforeAnythingElse) {
    useTemplate(u"t09"_s, {{u"NextURL"_s, QString()}});
    contents().Contents_Initialize();
    desk.answers = {u""_s, u""_s};
    post();
    EXPECT_EQ(prompts(), (QStringList{kAskForPage, kAskForPage}));
    expectStopped(kNoDay);
}

TEST_F(BlogQuestions, AnAddressThatStaysRequiredStopsTheRun) {
    useTemplate(u"t01"_s, {{u"PostURL"_s, u"Required"_s}});
    store(keys::kPostURL, u"Required"_s);
    post();
    expectStopped(kNoPostUrl);
    useTemplate(u"t01"_s, {{u"NextURL"_s, u"Required"_s}});
    store(keys::kNextURL, u"Required"_s);
    post();
    expectStopped(kNoNextUrl);
}

TEST_F(BlogQuestions, ATemplateThatIsNoneKnowsNoAddress) {
    useTemplate(u"t01"_s);
    for (const QByteArray& bytes : {QByteArray(), QByteArrayLiteral("\0\xFF\n[Simple\0]\r\n=PostURL")}) {
        writeFile(blog::templateFile(session, templateName), bytes);
        desk.answers = {QJsonValue(), QJsonValue()};
        post();
        EXPECT_EQ(prompts(), (QStringList{kAskForPage, kAskForPage}));
        expectStopped(kNoPostUrl);
    }
}

TEST_F(BlogQuestions, AHugeTemplateIsRefused) {
    useTemplate(u"t01"_s);
    const QString file = blog::templateFile(session, templateName);
    writeFile(file, bytesOf(file) + QByteArray(10'000'000, ' '));
    post();
    EXPECT_EQ(boxes(), QStringList{failedAt(u"初期化エラー"_s)});
    EXPECT_TRUE(site.lines().isEmpty());
}

TEST_F(BlogQuestions, WithoutADayNothingIsPosted) {
    useTemplate(u"t01"_s);
    contents().Contents_Initialize();
    post();
    expectStopped(kNoDay);
}

TEST_F(BlogQuestions, WithoutATitleOrATextNothingIsPosted) {
    useTemplate(u"t01"_s);
    pane().setText(QString());
    post();
    expectStopped(kNoText);
    pane().setText(kBody);
    title().clear();
    post();
    expectStopped(kNoText);
}

TEST_F(BlogQuestions, TheTextIsTheEditorsSavedOrNot) {
    useTemplate(u"t01"_s);
    pane().setText(u"まだ保存していない"_s);
    pane(1).setText(u"追記"_s);
    const FakeBlog::Request post = posted();
    EXPECT_EQ(post.field("body"), "まだ保存していない");
    EXPECT_EQ(contents().ChangeYesNo(), true);
    EXPECT_EQ(pane().text(), u"まだ保存していない"_s);
}

TEST_F(BlogQuestions, APrivateEntryIsPostedAfterAYesAlone) {
    openEntry(kBody, u"旅"_s, true);
    useTemplate(u"t01"_s);
    answer(u"no"_s);
    post();
    expectStopped(kIsPrivate);
    answer(u"yes"_s);
    post();
    EXPECT_EQ(boxes(), (QStringList{kIsPrivate, kPosted}));
    EXPECT_FALSE(requests("POST /do").value(0).has("draft")) << "the flags are those of all posts";
}

TEST_F(BlogQuestions, T18AsksForTheManagementPage) {
    useTemplate(u"t18"_s);
    for (const QJsonValue& none : {QJsonValue(), QJsonValue(u""_s)}) {
        desk.events = {};
        desk.answers = {none};
        press(2);
        EXPECT_EQ(prompts(), QStringList{u"接続先URLを入力してください。|http://"_s});
        EXPECT_EQ(boxes(), QStringList{u"critical: 中止します。"_s});
    }
    desk.answers = {site.address(u"/manage"_s)};
    press(2);
    ASSERT_TRUE(isAsked("GET /manage"));
    EXPECT_EQ(stored(keys::kManagementURL), site.address(u"/manage"_s));
    site.forgetLog();
    press(2);
    ASSERT_TRUE(isAsked("GET /manage"));
}

TEST_F(BlogQuestions, T18AsksForTheAddressOfTheReaders) {
    useTemplate(u"t18"_s);
    desk.events = {};
    desk.answers = {QJsonValue()};
    press(1);
    EXPECT_EQ(prompts(), QStringList{u"接続先URLを入力してください。|http://"_s});
    EXPECT_EQ(boxes(), QStringList{u"critical: 中止します。"_s});
    desk.answers = {site.address(u"/view"_s)};
    press(1);
    ASSERT_TRUE(isAsked("GET /view"));
    EXPECT_EQ(stored(keys::kAccessURL), site.address(u"/view"_s));
    site.forgetLog();
    press(1);
    ASSERT_TRUE(isAsked("GET /view"));
}

TEST_F(BlogQuestions, ShowsTheManagementPageOfTheTemplate) {
    useTemplate(u"t01"_s);
    press(2);
    ASSERT_TRUE(isAsked("GET /manage"));
    EXPECT_TRUE(boxes().isEmpty());
}

TEST_F(BlogQuestions, T19WithoutAConversionTheTextGoesAsItIs) {
    openEntry(u"<b>一</b>\r\n二 &amp; 三"_s);
    for (const QString& name : {u"t19a"_s, u"t19b"_s}) {
        useTemplate(name);
        post();
        EXPECT_EQ(boxes(), (QStringList{u"critical: Initializeファイル読み込みエラー"_s, kPosted}));
        EXPECT_EQ(requests("POST /do").value(0).field("body"), "<b>一</b>\r\n二 &amp; 三");
    }
}

TEST_F(BlogQuestions, T20BreaksAndParagraphsFollowTheSetting) {
    writeFile(path(u"keep_all.ini"_s), "[GENERAL]\r\nMODE=HTML\r\n");
    openEntry(u"一\r\n二<br>三<p>四</p>"_s);
    const QMap<QString, QByteArray> bodies{
        {u"0"_s, "一\r\n二<br>三<p>四</p>"}, {u"1"_s, "一二<br>三<p>四</p>"}, {u"2"_s, "一二<BR>三<P>四</P>"}};
    for (const auto& [type, body] : bodies.asKeyValueRange()) {
        core::WriteIni(session.BlogIniFile, u"PandBRTag"_s, u"Type"_s, type);
        EXPECT_EQ(posted(u"t20"_s).field("body"), body) << type.toStdString();
        EXPECT_EQ(pane().text(), u"一\r\n二<br>三<p>四</p>"_s) << "the entry stays as it is";
    }
}

TEST_F(BlogQuestions, T20EveryCharacterArrives) {
    writeFile(path(u"keep_all.ini"_s), "[GENERAL]\r\nMODE=HTML\r\n");
    core::WriteIni(session.BlogIniFile, u"PandBRTag"_s, u"Type"_s, u"0"_s);
    QString text = u"「\"」' \\ \\n \u2028 \u00A0 😀 & &#65; %41 ${x} `y` <!-- </script><script>alert(1)</script>\r\n"_s;
    text += u"\r\n\tタブ —～①\r\n"_s;
    openEntry(text);
    const QString heading = u"「\"」' \\ 😀 & </script>"_s;
    title().setText(heading);
    const FakeBlog::Request post = posted(u"t20"_s);
    EXPECT_EQ(post.field("body"), text.toUtf8());
    EXPECT_EQ(post.field("title"), heading.toUtf8());
    title().setText(kTitle);
    answer(u"no"_s); // the day is opened anew
    const QString line = u"あいうえおかきくけこ「\"」\\😀&\r\n"_s;
    const QString large = line.repeated(100'000 / line.toUtf8().size() + 1);
    openEntry(large);
    EXPECT_EQ(posted(u"t20"_s).field("body"), large.toUtf8());
    site.set(u"v"_s, u"multipart"_s);
    EXPECT_EQ(posted().field("body"), large.toUtf8());
}

TEST_F(BlogQuestions, T20APageInShiftJisGetsReferencesForWhatItLacks) {
    writeFile(path(u"keep_all.ini"_s), "[GENERAL]\r\nMODE=HTML\r\n");
    core::WriteIni(session.BlogIniFile, u"PandBRTag"_s, u"Type"_s, u"0"_s);
    site.set(u"cs"_s, u"sjis"_s);
    openEntry(u"日\\①\r\n\u2028😀"_s, u"旅"_s);
    const FakeBlog::Request post = posted(u"t20"_s, {{u"VALUE_Genre"_s, u"genre"_s}, {u"Type_Genre"_s, u"SELECT"_s}});
    EXPECT_EQ(post.field("body"), "\x93\xFA\\\x87\x40\r\n&#8232;&#128512;");
    EXPECT_EQ(post.field("title"), "\x91\xE8\x96\xBC");
    EXPECT_EQ(post.field("genre"), "\x97\xB7");
}

TEST_F(BlogQuestions, T20ASingleLineLosesItsBreaks) {
    site.set(u"v"_s, u"input"_s);
    writeFile(path(u"keep_all.ini"_s), "[GENERAL]\r\nMODE=HTML\r\n");
    core::WriteIni(session.BlogIniFile, u"PandBRTag"_s, u"Type"_s, u"0"_s);
    openEntry(u"一\r\n二"_s);
    EXPECT_EQ(posted(u"t20"_s).field("body"), "一二");
}

TEST_F(BlogQuestions, AddressesLeadNowhereButToTheWeb) {
    for (const QString& address :
         {u"javascript:document.title='x'"_s, u"file:///etc/passwd"_s, u"data:text/html,x"_s}) {
        useTemplate(u"t01"_s, {{u"PostURL"_s, address}});
        post();
        EXPECT_EQ(boxes(), QStringList{failedAt(u"Blog接続処理エラー"_s)}) << address.toStdString();
        useTemplate(u"t11a"_s, {{u"LoginURL"_s, address}});
        site.set(u"login"_s, u"off"_s);
        site.set(u"mode"_s, u"noform"_s);
        post();
        EXPECT_EQ(boxes(), QStringList{failedAt(u"ログイントライエラー"_s)}) << address.toStdString();
    }
}

} // namespace
} // namespace velloria::tests
