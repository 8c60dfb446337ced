// Posting, the posting page: which field gets what, and how the form is sent.
#include "desktop/blog_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

/// What a switch of the page must be with its flag on and off.
struct SwitchCase {
    QString name;
    QString flag;
    QByteArray field;
    QByteArray whenOn;
    QByteArray whenOff;
};

class BlogForm : public BlogHome {
protected:
    void SetUp() override {
        BlogHome::SetUp();
        site.set(u"login"_s, u"on"_s);
    }
    void expectSwitches(const std::vector<SwitchCase>& cases) {
        for (const SwitchCase& tried : cases) {
            for (const bool isOn : {true, false}) {
                for (const QString& flag : {u"Status"_s, u"AcceptComment"_s, u"AcceptTrackBack"_s})
                    setFlag(flag, flag == tried.flag ? isOn : !isOn); // the others say the opposite
                EXPECT_EQ(posted(tried.name).field(tried.field), isOn ? tried.whenOn : tried.whenOff)
                    << tried.name.toStdString() << ' ' << tried.field.toStdString() << ' ' << isOn;
            }
        }
    }
    void expectFailed(const QString& name, const QString& stage, const Changes& changes = {}) {
        useTemplate(name, changes);
        post();
        EXPECT_EQ(boxes(), QStringList{failedAt(stage)});
        EXPECT_EQ(statuses().last(), kFailedStatus);
        EXPECT_EQ(site.lines(), QList<QByteArray>{"GET /post"});
    }
};

TEST_F(BlogForm, T01TakesTheFieldsOfItsOwnForm) {
    const FakeBlog::Request post = posted(u"t01"_s);
    EXPECT_EQ(site.lines(), kLinesOfAPost);
    EXPECT_EQ(post.all("title"), QList<QByteArray>{kTitle.toUtf8()});
    EXPECT_EQ(post.all("body"), QList<QByteArray>{kBody.toUtf8()});
    EXPECT_EQ(post.field("post"), "post") << "an image of that name is none of the form's elements";
    EXPECT_FALSE(post.has("post.x"));
}

TEST_F(BlogForm, T02FindsFieldsByTheirPlaces) {
    site.set(u"v"_s, u"input"_s);
    const FakeBlog::Request post = posted(u"t02a"_s);
    EXPECT_EQ(post.field("title"), kTitle.toUtf8());
    EXPECT_EQ(post.field("body"), kBody.toUtf8());
    EXPECT_EQ(post.field("post"), "post");
    EXPECT_EQ(post.field("handler"), "ran");
}

TEST_F(BlogForm, T02APlaceThatIsNotThereEndsTheRun) {
    expectFailed(u"t02b"_s, u"タイトル挿入エラー"_s);
    for (const QString& place : {u"27"_s, u"-1"_s, u"title"_s, u""_s, u"32768"_s})
        expectFailed(u"t02b"_s, u"タイトル挿入エラー"_s, {{u"VALUE_Title"_s, place}});
    expectFailed(u"t02b"_s, u"本文挿入エラー"_s, {{u"VALUE_Title"_s, u"5"_s}, {u"VALUE_Body"_s, u"99"_s}});
    expectFailed(u"t02b"_s, u"投稿ボタンクリックエラー"_s, {{u"VALUE_Title"_s, u"5"_s}, {u"VALUE_Post"_s, u"99"_s}});
}

TEST_F(BlogForm, T02AnImageIsSentByItsPlace) {
    const FakeBlog::Request post = posted(u"t02a"_s, {{u"VALUE_Post"_s, u"23"_s}, {u"VALUE_Body"_s, u"6"_s}});
    EXPECT_TRUE(post.has("post.x"));
    EXPECT_FALSE(post.has("post"));
}

TEST_F(BlogForm, T03SendsFormsBehindThePagesBack) {
    site.set(u"confirm"_s, u"on"_s);
    const FakeBlog::Request post = posted(u"t03"_s);
    EXPECT_EQ(post.field("handler"), "");
    EXPECT_FALSE(post.has("post"));
    ASSERT_TRUE(isAsked("POST /confirm"));
    EXPECT_EQ(requests("POST /confirm").value(0).field("handler"), "");
}

TEST_F(BlogForm, T04FillsTextAreasByTheirPlaces) {
    site.set(u"v"_s, u"area"_s);
    const FakeBlog::Request post = posted(u"t04"_s);
    EXPECT_EQ(post.field("title"), kTitle.toUtf8());
    EXPECT_EQ(post.field("body"), kBody.toUtf8());
    expectFailed(u"t04"_s, u"本文挿入エラー"_s, {{u"VALUE_Body"_s, u"4"_s}});
}

TEST_F(BlogForm, T04ChoosesTheCategoryUnlessItIsTheFirst) {
    site.set(u"v"_s, u"area"_s);
    const QMap<QString, QByteArray> chosen{{u"旅"_s, "旅"}, {u"一般"_s, "本"}, {u"猫"_s, "本"}, {u"旅 "_s, "本"}};
    for (const auto& [genre, value] : chosen.asKeyValueRange()) {
        openEntry(kBody, genre);
        EXPECT_EQ(posted(u"t04"_s).field("genre"), value) << genre.toStdString();
    }
}

TEST_F(BlogForm, T04AListThatIsNotThereEndsTheRun) {
    site.set(u"v"_s, u"area"_s);
    expectFailed(u"t04"_s, u"カテゴリ/ジャンル挿入エラー"_s, {{u"VALUE_Genre"_s, u"missing"_s}});
}

TEST_F(BlogForm, T05FillsTheCategorysFieldWithAndWithoutAnOption) {
    for (const QString& genre : {u"旅"_s, u"一般"_s, u"猫"_s}) {
        openEntry(kBody, genre);
        EXPECT_EQ(posted(u"t05"_s).field("genre2"), genre.toUtf8());
    }
}

TEST_F(BlogForm, T06CheckBoxesMeanTheSettingOrItsOpposite) {
    expectSwitches({{u"t06a"_s, u"Status"_s, "draft", "1", "(missing)"},
                    {u"t06a"_s, u"AcceptTrackBack"_s, "ping", "1", "(missing)"},
                    {u"t06b"_s, u"Status"_s, "nodraft", "(missing)", "1"},
                    {u"t06b"_s, u"AcceptComment"_s, "nocomment", "(missing)", "1"},
                    {u"t06b"_s, u"AcceptTrackBack"_s, "noping", "(missing)", "1"}});
}

TEST_F(BlogForm, T06ACheckBoxIsFoundBehindAFieldOfItsName) {
    for (const bool isOn : {true, false}) {
        setFlag(u"AcceptComment"_s, isOn);
        EXPECT_EQ(posted(u"t06a"_s).all("comment"), isOn ? (QList<QByteArray>{"0", "1"}) : QList<QByteArray>{"0"});
    }
}

TEST_F(BlogForm, T06RadioButtonsMeanTheSettingOrItsOpposite) {
    expectSwitches({{u"t06c"_s, u"Status"_s, "state", "public", "private"},
                    {u"t06d"_s, u"Status"_s, "state", "private", "public"}});
}

TEST_F(BlogForm, T06AWordThatIsNoneOfASwitchLeavesItAlone) {
    const FakeBlog::Request post = posted(u"t06c"_s);
    EXPECT_EQ(post.all("comment"), QList<QByteArray>{"0"});
    EXPECT_FALSE(post.has("nocomment"));
    EXPECT_FALSE(post.has("ping"));
    EXPECT_FALSE(post.has("noping"));
}

TEST_F(BlogForm, T06PairsByNameGetTheirValues) {
    expectSwitches({{u"t06e"_s, u"Status"_s, "draft_yes", "open", "shut"},
                    {u"t06e"_s, u"Status"_s, "draft_no", "shut", "open"},
                    {u"t06e"_s, u"AcceptComment"_s, "comment_yes", "open", "shut"},
                    {u"t06e"_s, u"AcceptComment"_s, "comment_no", "shut", "open"},
                    {u"t06e"_s, u"AcceptTrackBack"_s, "ping_yes", "1", "0"},
                    {u"t06e"_s, u"AcceptTrackBack"_s, "ping_no", "0", "1"}});
}

TEST_F(BlogForm, T06PairsByPlaceGetTheirValues) {
    expectSwitches({{u"t06f"_s, u"Status"_s, "draft_yes", "open", "shut"},
                    {u"t06f"_s, u"Status"_s, "draft_no", "shut", "open"},
                    {u"t06f"_s, u"AcceptComment"_s, "comment_yes", "open", "shut"},
                    {u"t06f"_s, u"AcceptComment"_s, "comment_no", "shut", "open"},
                    {u"t06f"_s, u"AcceptTrackBack"_s, "ping_yes", "open", "shut"},
                    {u"t06f"_s, u"AcceptTrackBack"_s, "ping_no", "shut", "open"}});
}

TEST_F(BlogForm, T06ListsGetAnOptionButTheFirst) {
    expectSwitches({{u"t06g"_s, u"Status"_s, "status", "公開", "下書き"},
                    {u"t06g"_s, u"AcceptComment"_s, "comments", "受け付ける", "受け付けない"}});
}

TEST_F(BlogForm, T06AListWithoutANameEndsTheRun) {
    expectFailed(u"t06h"_s, u"公開設定エラー"_s);
    expectFailed(u"t06i"_s, u"コメント受け入れ設定エラー"_s);
}

TEST_F(BlogForm, T06SwitchesThatThePageDoesNotHaveEndTheRun) {
    expectFailed(u"t06a"_s, u"公開設定エラー"_s, {{u"VALUE_UnderWrite_Yes"_s, u"missing"_s}});
    expectFailed(u"t06a"_s, u"コメント受け入れ設定エラー"_s, {{u"VALUE_AcceptComment_Yes"_s, u"missing"_s}});
    expectFailed(u"t06a"_s, u"トラックバック受け入れ設定エラー"_s, {{u"VALUE_AcceptPing_Yes"_s, u"missing"_s}});
    expectFailed(u"t06f"_s, u"トラックバック受け入れ設定エラー"_s, {{u"VALUE_AcceptPing_No"_s, u"99"_s}});
}

TEST_F(BlogForm, T07DraftsHaveAButtonOfTheirOwn) {
    for (const QString& name : {u"t07a"_s, u"t07b"_s}) {
        setFlag(u"Status"_s, false);
        FakeBlog::Request post = posted(name);
        EXPECT_EQ(post.field("save"), "draft") << name.toStdString();
        EXPECT_FALSE(post.has("post"));
        setFlag(u"Status"_s, true);
        post = posted(name);
        EXPECT_EQ(post.field("post"), "post") << name.toStdString();
        EXPECT_FALSE(post.has("save"));
    }
}

TEST_F(BlogForm, T07AnElementIsFoundByItsId) {
    setFlag(u"Status"_s, false);
    EXPECT_EQ(posted(u"t07a"_s, {{u"VALUE_UnderWrite_Yes"_s, u"save-draft"_s}}).field("save"), "draft");
}

TEST_F(BlogForm, T15The26thLinkIsAskedBeforeTheFields) {
    site.set(u"submitall"_s, u"off"_s);
    site.set(u"links"_s, u"26"_s);
    const FakeBlog::Request post = posted(u"t15"_s);
    EXPECT_EQ(site.lines(), (QList<QByteArray>{"GET /post", "GET /link", "POST /do", "GET /done"}));
    EXPECT_EQ(requests("GET /link").value(0).query, "n=26");
    EXPECT_EQ(post.field("title"), kTitle.toUtf8()) << "the link changes it";
    EXPECT_EQ(statuses().first(), u"アメーバブログに接続中"_s);
}

TEST_F(BlogForm, T15WithoutA26thLinkTheRunEnds) {
    site.set(u"submitall"_s, u"off"_s);
    site.set(u"links"_s, u"25"_s);
    expectFailed(u"t15"_s, u"ログイン状態確認エラー"_s);
}

TEST_F(BlogForm, T16PostsByTheScriptLink) {
    const FakeBlog::Request post = posted(u"t16"_s);
    EXPECT_EQ(post.field("handler"), "script link");
    EXPECT_EQ(post.field("title"), kTitle.toUtf8());
}

TEST_F(BlogForm, T16WithoutTheLinkNothingIsClickedAndTheWaitRunsOut) {
    site.set(u"submitall"_s, u"off"_s);
    useTemplate(u"t16"_s);
    expectRunsOut({"GET /post"});
}

TEST_F(BlogForm, T17ConfirmsWithoutWaiting) {
    site.set(u"confirm"_s, u"on"_s);
    for (const QString& name : {u"t17a"_s, u"t17b"_s, u"t17c"_s}) {
        site.set(u"delayed"_s, u"/confirm"_s);
        site.set(u"delay"_s, u"120"_s);
        posted(name);
        ASSERT_TRUE(isAsked("POST /confirm")) << name.toStdString();
        EXPECT_EQ(requests("POST /confirm").value(0).field("handler"), name == u"t17c"_s ? "" : "ran");
        EXPECT_TRUE(requests("POST /cancel").isEmpty());
        browser().Stop();
        site.set(u"delay"_s, u"0"_s);
    }
}

TEST_F(BlogForm, T17AConfirmationThatIsNotThereEndsTheRun) {
    for (const QString& name : {u"t17a"_s, u"t17b"_s, u"t17c"_s}) {
        useTemplate(name);
        post();
        EXPECT_EQ(boxes(), QStringList{failedAt(u"確認画面クリックエラー"_s)}) << name.toStdString();
        EXPECT_EQ(site.lines(), kLinesOfAPost);
    }
}

TEST_F(BlogForm, NamesOfThePageHideNothing) {
    site.set(u"v"_s, u"names"_s);
    FakeBlog::Request post = posted(u"t01"_s, {{u"VALUE_Post"_s, u"submit"_s}});
    EXPECT_EQ(post.field("TITLE"), kTitle.toUtf8());
    EXPECT_EQ(post.field("BODY"), kBody.toUtf8());
    EXPECT_EQ(post.field("submit"), "post");
    post = posted(u"t01"_s, {{u"Type_Post"_s, u"SUBMIT"_s}});
    EXPECT_EQ(post.field("TITLE"), kTitle.toUtf8());
    EXPECT_EQ(post.field("handler"), "");
}

TEST_F(BlogForm, ThePageHearsOfNothingUnlessTheTemplateWantsItTo) {
    EXPECT_EQ(posted(u"t05"_s).field("events"), "");
    EXPECT_EQ(posted(u"t05"_s, {{u"Events"_s, u"TRUE"_s}}).field("events"),
              "input title change title input body change body input genre change genre input genre2 change genre2 ");
}

TEST_F(BlogForm, ABodyThatThePageEmptiesIsToldOf) {
    const QString told = u"投稿しましたが、ページが本文を空にして送りました。ブログの本文を確かめてください。"_s;
    site.set(u"v"_s, u"editor"_s);
    for (const QString& name : {u"t05"_s, u"t01"_s}) {
        useTemplate(name);
        post();
        EXPECT_EQ(boxes(), QStringList{kPosted});
        EXPECT_EQ(statuses().mid(statuses().size() - 2), (QStringList{kPostedStatus, told}));
        EXPECT_EQ(requests("POST /do").value(0).field("body"), "");
    }
    EXPECT_EQ(posted(u"t05"_s, {{u"VALUE_Body"_s, u"events"_s}}).field("genre2"), "") << "a page may take a line back";
    EXPECT_EQ(posted(u"t01"_s, {{u"Type_Post"_s, u"SUBMIT"_s}}).field("body"), kBody.toUtf8());
}

TEST_F(BlogForm, AFormIsFoundBehindAThousand) {
    site.set(u"v"_s, u"many"_s);
    EXPECT_EQ(posted(u"t01"_s, {{u"FORM_POST"_s, u"1000"_s}}).field("title"), kTitle.toUtf8());
}

TEST_F(BlogForm, AWrongFormIsNotThePostingPage) {
    expectFailed(u"t01"_s, u"ログイントライエラー"_s, {{u"FORM_POST"_s, u"2"_s}});
}

TEST_F(BlogForm, AFormBeyondAllNumbersEndsTheRunAtOnce) {
    useTemplate(u"t01"_s, {{u"FORM_POST"_s, u"40000"_s}});
    post();
    EXPECT_EQ(boxes(), QStringList{failedAt(u"初期化エラー"_s)});
    EXPECT_TRUE(site.lines().isEmpty());
}

} // namespace
} // namespace velloria::tests
