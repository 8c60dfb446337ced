#include "blog/blog_post.h"
#include "blog/blog_posting.h"
#include "convert/html_to_text.h"
#include "core/blog_keys.h"
#include "core/files.h"
#include "core/site_keys.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

namespace rows = core::keys::blog_user;
namespace defaults = core::keys::blog;

const QString kQuestion = u"Velloria? 投稿画面のURLを入力してください。"_s;
const QString kNoDay = u"critical: 投稿する日記が選択されていません。日記の投稿を中止します。"_s;
const QString kNoText = u"critical: タイトルもしくは本文が記入されていないため、日記の投稿を中止します。"_s;
const QString kManual = u"\r\nURLの設定は、マニュアルもしくはホームページのBlog設定方法をご覧ください。"_s;
const QString kNoPostUrl = u"critical: 投稿URLの設定ができていないため日記の投稿を中止します。"_s + kManual;
const QString kNoNextUrl = u"critical: URLの設定ができていないため日記の投稿を中止します。"_s + kManual;

class BlogOrder : public BlogPosting {
protected:
    void expectRefused(const QStringList& told) const {
        EXPECT_EQ(asked(), told);
        EXPECT_EQ(statuses(), QStringList());
        EXPECT_EQ(page.done, QStringList{u"stop"_s});
        EXPECT_EQ(desk.details, QStringList());
    }
};

TEST_F(BlogOrder, StopsTheBrowserBeforeAnyQuestion) {
    keys.remove(u"PostURL"_s);
    desk.answers = {u"http://x.test/"_s};
    qsizetype toldBefore = -1;
    desk.events = {};
    page.beforeCall = [&](const QString& call) {
        if (call == u"stop"_s)
            toldBefore = desk.events.size();
    };
    post();
    EXPECT_EQ(toldBefore, 0);
}

TEST_F(BlogOrder, AnAddressThatIsTypedCountsFromTheNextRunOn) {
    keys[u"PostURL"_s] = u"Required"_s;
    desk.answers = {postUrl};
    post();
    expectRefused({kQuestion, kNoPostUrl});
    EXPECT_EQ(user(rows::kPostURL), postUrl);
    post();
    EXPECT_EQ(page.calls(u"navigate"_s), QStringList{u"navigate "_s + postUrl});
    EXPECT_EQ(field(u"title"_s).value, entry.title);
}

TEST_F(BlogOrder, ATemplateWithoutAnAddressAsksForEver) {
    keys.remove(u"PostURL"_s);
    desk.answers = {postUrl, u"http://other.test/"_s};
    post();
    post();
    EXPECT_EQ(asked(), QStringList({kQuestion, kNoPostUrl, kQuestion, kNoPostUrl}));
    EXPECT_EQ(user(rows::kPostURL), u"http://other.test/"_s);
    EXPECT_EQ(page.calls(u"navigate"_s), QStringList());
}

TEST_F(BlogOrder, ACancelledQuestionStoresNothing) {
    keys[u"PostURL"_s] = u"Required"_s;
    desk.answers = {QJsonValue()};
    post();
    expectRefused({kQuestion, kNoPostUrl});
    EXPECT_EQ(user(rows::kPostURL), QString());
}

TEST_F(BlogOrder, TheSecondAddressIsAskedForInTheSameWordsAndThePostGoesOn) {
    keys.remove(u"NextURL"_s);
    desk.answers = {u"http://next.test/"_s, QJsonValue()};
    post();
    EXPECT_EQ(asked().first(), kQuestion);
    EXPECT_EQ(user(rows::kNextURL), u"http://next.test/"_s);
    EXPECT_EQ(page.calls(u"click"_s).size(), 1);
    post(); // what is stored is not what the template reads
    EXPECT_EQ(desk.answers.size(), 0);
    EXPECT_EQ(user(rows::kNextURL), u"http://next.test/"_s);
    EXPECT_EQ(page.calls(u"click"_s).size(), 2);
}

TEST_F(BlogOrder, TheSecondAddressOfTheUserIsReadWhenItIsRequired) {
    keys[u"NextURL"_s] = u"Required"_s;
    setUser(rows::kNextURL, u"http://next.test/"_s);
    keys[u"VALUE_Next"_s] = u"next"_s;
    page.isLoggedIn = false;
    post();
    expectPosted();
    EXPECT_EQ(page.element(loginUrl, 0, u"next"_s).value, u"http://next.test/"_s);
}

TEST_F(BlogOrder, AskedInTheRunTheSecondAddressStaysEmptyInIt) {
    keys[u"NextURL"_s] = u"Required"_s;
    keys[u"VALUE_Next"_s] = u"next"_s;
    page.isLoggedIn = false;
    page.element(loginUrl, 0, u"next"_s).value = u"of the page"_s;
    desk.answers = {u"http://next.test/"_s};
    post();
    EXPECT_EQ(lastStatus(), u"日記投稿完了！画像ファイルは手動でアップロードして下さい。"_s);
    EXPECT_EQ(page.element(loginUrl, 0, u"next"_s).value, QString());
}

TEST_F(BlogOrder, NothingIsAWordAndAsksForNothing) {
    post();
    expectPosted();
    EXPECT_EQ(asked().size(), 1);
}

// Whatever is wrong besides, the first one of this order is told.
TEST_F(BlogOrder, BothQuestionsComeBeforeAnyRefusal) {
    keys.remove(u"PostURL"_s);
    keys.remove(u"NextURL"_s);
    entry = {};
    entry.isPrivate = true;
    desk.answers = {postUrl, u"http://next.test/"_s};
    post();
    expectRefused({kQuestion, kQuestion, kNoDay});
    EXPECT_EQ(user(rows::kPostURL), postUrl);
    EXPECT_EQ(user(rows::kNextURL), u"http://next.test/"_s);
}

TEST_F(BlogOrder, RefusesInTheOrderOfItsSteps) {
    setUser(rows::kPostURL, u"Required"_s);
    setUser(rows::kNextURL, u"Required"_s);
    keys[u"PostURL"_s] = keys[u"NextURL"_s] = u"Required"_s;
    entry.isPrivate = true;
    entry.isOpen = false;
    entry.title.clear();
    post();
    expectRefused({kNoDay});
    entry.isOpen = true;
    post();
    EXPECT_EQ(asked().last(), kNoText);
    entry.title = u"題"_s;
    post();
    EXPECT_EQ(asked().last(), kNoPostUrl);
    setUser(rows::kPostURL, postUrl);
    post();
    EXPECT_EQ(asked().last(), kNoNextUrl);
    EXPECT_EQ(asked().size(), 4);
    EXPECT_EQ(page.calls(u""_s), QStringList(4, u"stop"_s));
}

TEST_F(BlogOrder, WordsCountWithTheirCase) {
    keys[u"PostURL"_s] = u"required"_s;
    post(); // an address like any other
    EXPECT_EQ(page.calls(u"navigate"_s), QStringList{u"navigate http://required"_s});
}

TEST_F(BlogOrder, ATitleOrABodyIsMissing) {
    entry.body.clear();
    post();
    expectRefused({kNoText});
    entry.body = u" "_s;
    entry.title = u" "_s; // blanks are a text
    post();
    EXPECT_EQ(asked().size(), 2);
    EXPECT_EQ(page.calls(u"click"_s).size(), 1);
}

TEST_F(BlogOrder, AnAddressMayBeTypedWithBlanksAround) {
    keys[u"PostURL"_s] = u"Required"_s;
    desk.answers = {u"  "_s, u' ' + postUrl + u"\t "_s};
    for (const QString& stored : {QString(), postUrl}) {
        desk.events = {};
        page.done.clear();
        post();
        expectRefused({kQuestion, kNoPostUrl});
        EXPECT_EQ(user(rows::kPostURL), stored);
    }
    desk.events = {};
    post();
    expectPosted();
}

TEST_F(BlogOrder, AnAddressThatCanNotBeStoredEndsTheRun) {
    keys[u"PostURL"_s] = u"Required"_s;
    desk.answers = {u"http://x.test/"_s + QString(256, u'x')};
    post();
    expectStage(u"初期化エラー"_s);
    EXPECT_EQ(user(rows::kPostURL), QString());
    EXPECT_FALSE(protocol().contains(u"xxx"_s));
}

TEST_F(BlogOrder, DataThatCanNotBeWrittenEndTheRun) {
    keys[u"PostURL"_s] = u"Required"_s;
    QFile::setPermissions(core::files::kBlogUserData.in(session), QFile::ReadOwner);
    desk.answers = {postUrl};
    post();
    expectStage(u"初期化エラー"_s);
    EXPECT_EQ(page.done, QStringList{u"stop"_s});
}

TEST_F(BlogOrder, APrivateEntryIsPostedAfterAYesAsTheSettingsSay) {
    keys[u"Type_UnderWrite"_s] = u"NAMECHECKBOX"_s;
    keys[u"VALUE_UnderWrite_Yes"_s] = u"public"_s;
    keys[u"VALUE_UnderWrite_No"_s] = u"1"_s;
    addField({.name = u"public"_s, .type = u"checkbox"_s});
    entry.isPrivate = true;
    desk.answers = {u"yes"_s};
    post();
    EXPECT_EQ(asked().first(), u"question: 非公開になっていますが、Blogに投稿しますか？"_s);
    EXPECT_EQ(asked().size(), 2);
    EXPECT_TRUE(field(u"public"_s).isChecked);
}

TEST_F(BlogOrder, ANoToAPrivateEntryIsSilent) {
    entry.isPrivate = true;
    desk.answers = {u"no"_s};
    post();
    expectRefused({u"question: 非公開になっていますが、Blogに投稿しますか？"_s});
}

TEST_F(BlogOrder, TheQuestionOfAPrivateEntryComesBeforeTheConversion) {
    entry.isPrivate = true;
    keys[u"HTML2TXT"_s] = u"missing"_s;
    desk.answers = {u"yes"_s};
    post();
    EXPECT_EQ(asked().mid(0, 2), QStringList({u"question: 非公開になっていますが、Blogに投稿しますか？"_s,
                                              u"critical: Initializeファイル読み込みエラー"_s}));
}

TEST_F(BlogOrder, WithoutConversionSettingsTheBodyGoesOutAsItIs) {
    entry.body = u"<b>太字</b>\r\n二行目"_s;
    // The name of a file that is there, but not in the program's folder, counts as missing, too.
    writeFile(path(u"UserData/Own.ini"_s), "");
    for (const QString& name : {QString(), u"missing"_s, u"UserData/Own"_s, u"../HTML2TXT"_s, u"HTML2TXT.ini"_s}) {
        desk.events = {};
        keys[u"HTML2TXT"_s] = name;
        post();
        EXPECT_EQ(boxes().first(), u"critical: Initializeファイル読み込みエラー"_s) << name.toStdString();
        EXPECT_EQ(boxes().size(), 2);
        EXPECT_EQ(field(u"body"_s).value, entry.body);
    }
}

TEST_F(BlogOrder, ASettingsFileWithoutANameIsAFileToo) {
    keys[u"HTML2TXT"_s] = u""_s;
    writeFile(path(u".ini"_s), "[GENERAL]\r\nMODE=TEXT\r\n");
    post();
    expectPosted();
}

TEST_F(BlogOrder, TheBodyIsConvertedWithTheBreaksOfTheSettings) {
    entry.body = u"<p>一行目<br>\r\n二行目</p>\r\n\r\n<b>太字</b>&amp;\r\n"_s;
    const QString before = entry.body;
    QStringList posted;
    for (const QString& type : {u"0"_s, u"1"_s, u"2"_s}) {
        setSetting(defaults::kPandBRTag, type);
        post();
        convert::clsHTML2TEXT converter;
        ASSERT_TRUE(converter.Initialize(path(u"HTML2TXT.ini"_s)));
        converter.SetValue(u"PBR"_s, type);
        QString copy = entry.body;
        EXPECT_EQ(field(u"body"_s).value, converter.Execute(copy)) << type.toStdString();
        posted += field(u"body"_s).value;
    }
    EXPECT_EQ(entry.body, before);
    EXPECT_NE(posted[0], posted[1]);
    EXPECT_NE(posted[0], before);
}

TEST_F(BlogOrder, WithoutASettingTheBreaksAreThoseOfOne) {
    entry.body = u"<p>一行目\r\n二行目</p>\r\n\r\n三"_s;
    setSetting(defaults::kPandBRTag, u"1"_s);
    post();
    const QString body = field(u"body"_s).value;
    removeSetting(defaults::kPandBRTag);
    post();
    EXPECT_EQ(field(u"body"_s).value, body);
}

// Each is read at the start: nothing of the page is touched.
TEST_F(BlogOrder, NumbersBeyond16BitsEndTheRunAtItsStart) {
    const auto expectNumber = [this](const auto& set, const auto& restore) {
        desk.events = {};
        desk.details.clear();
        page.done.clear();
        set();
        post();
        expectStage(u"初期化エラー"_s);
        EXPECT_EQ(page.done, QStringList{u"stop"_s});
        restore();
    };
    for (const core::Setting& row :
         {defaults::kStatus, defaults::kAcceptComment, defaults::kAcceptTrackBack, defaults::kPandBRTag})
        expectNumber([&] { setSetting(row, u"40000"_s); }, [&] { removeSetting(row); });
    for (const QString& key : {u"FORM_LOGIN"_s, u"FORM_POST"_s, u"FORM_CONFIRM"_s}) {
        const QString before = keys.value(key);
        expectNumber([&] { keys[key] = u"32768"_s; }, [&] { keys[key] = before; });
    }
    const QByteArray conversion = bytesOf(path(u"HTML2TXT.ini"_s));
    expectNumber([&] { writeFile(path(u"HTML2TXT.ini"_s), "[GENERAL]\r\nENTER=32768\r\n"); },
                 [&] { writeFile(path(u"HTML2TXT.ini"_s), conversion); });
    desk.events = {};
    desk.details.clear();
    post();
    expectPosted();
}

TEST_F(BlogOrder, TemplatesThatCanNotBeReadEndTheRunAtItsStart) {
    writeFile(templatePath(), QByteArray(10'000'000, 'x'));
    blog::BlogPost(run, page).PostBlog(blogName, entry);
    expectStage(u"初期化エラー"_s);
    EXPECT_TRUE(protocol().contains(u"大きすぎます"_s));
    QFile::remove(templatePath());
    ASSERT_TRUE(QDir().mkpath(templatePath()));
    desk.details.clear();
    blog::BlogPost(run, page).PostBlog(blogName, entry);
    expectStage(u"初期化エラー"_s);
    EXPECT_EQ(page.done, QStringList({u"stop"_s, u"stop"_s}));
}

TEST_F(BlogOrder, ATemplateThatIsNotThereHasNoAddresses) {
    desk.answers = {QJsonValue(), QJsonValue()};
    blog::BlogPost(run, page).PostBlog(u"nowhere"_s, entry);
    expectRefused({kQuestion, kQuestion, kNoPostUrl});
    EXPECT_TRUE(protocol().contains(u"テンプレートのファイルがありません。"_s));
}

TEST_F(BlogOrder, NoBlogAtAllStoresNothing) {
    const QByteArray before = bytesOf(core::files::kBlogUserData.in(session));
    desk.answers = {postUrl};
    blog::BlogPost(run, page).PostBlog(QString(), entry);
    expectStage(u"初期化エラー"_s);
    EXPECT_EQ(bytesOf(core::files::kBlogUserData.in(session)), before);
}

TEST_F(BlogOrder, ABinaryTemplateIsOneWithoutAddresses) {
    QByteArray bytes;
    for (int at = 0; at < 5000; ++at)
        bytes += char(at * 7919 % 256);
    writeFile(templatePath(), bytes);
    desk.answers = {QJsonValue(), QJsonValue()};
    blog::BlogPost(run, page).PostBlog(blogName, entry);
    expectRefused({kQuestion, kQuestion, kNoPostUrl});
}

} // namespace
} // namespace velloria::tests
