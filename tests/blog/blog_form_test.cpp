#include "blog/blog_posting.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

const QString kConfirmUrl = u"http://blog.test/confirm"_s;

class BlogForm : public BlogPosting {
protected:
    /// What is done to the posting page and behind it, without what is only looked at.
    QStringList formCalls() const {
        QStringList calls = page.done.mid(page.done.lastIndexOf(u"forms"_s) + 1);
        calls.removeIf(
            [](const QString& call) { return call.startsWith(u"has"_s) || call == u"location"_s || call == u"end"_s; });
        return calls;
    }
};

TEST_F(BlogForm, TitleAndBodyGoToTheirFieldsOfThePostingForm) {
    post();
    expectPosted();
    EXPECT_EQ(formCalls(), QStringList({u"set name=title form=1"_s, u"set name=body form=1"_s,
                                        u"click name=send form=1"_s, u"wait 30000"_s}));
    EXPECT_EQ(field(u"title"_s).value, entry.title);
    EXPECT_FALSE(field(u"body"_s).value.isEmpty());
    EXPECT_EQ(page.element(postUrl, 0, u"title"_s).value, QString());
}

TEST_F(BlogForm, TitleAndBodyAreFoundByNameOrPlace) {
    addField({.tag = u"TEXTAREA"_s, .name = u"area"_s});
    addField({.name = u"line"_s});
    for (const QString& element : {u"Title"_s, u"Body"_s}) {
        const QString key = u"VALUE_"_s + element;
        const QString typeKey = u"Type_"_s + element;
        const QString before = keys[key];
        keys[typeKey] = u"TEXTAREA"_s;
        keys[key] = u"1"_s;
        page.done.clear();
        post();
        EXPECT_TRUE(page.done.contains(u"set textarea=1"_s));
        EXPECT_FALSE(field(u"area"_s).value.isEmpty());
        for (const QString& word : {u"INPUT"_s, u"INDEX"_s, u"name"_s, u"textarea"_s, u""_s}) {
            keys[typeKey] = word;
            keys[key] = inputIndex(u"line"_s);
            field(u"line"_s).value.clear();
            post();
            EXPECT_FALSE(field(u"line"_s).value.isEmpty()) << word.toStdString();
        }
        keys[typeKey] = u"NAME"_s;
        keys[key] = before;
    }
}

TEST_F(BlogForm, FieldsThatAreNotThereAreToldByTheirStage) {
    const auto expectFailure = [this](const QString& element, const QString& type, const QString& value) {
        const QString before = keys[u"VALUE_"_s + element];
        keys[u"Type_"_s + element] = type;
        keys[u"VALUE_"_s + element] = value;
        desk.details.clear();
        post();
        expectStage(element == u"Title"_s ? u"タイトル挿入エラー"_s : u"本文挿入エラー"_s);
        EXPECT_TRUE(page.calls(u"click"_s).isEmpty());
        EXPECT_FALSE(page.isRunning);
        EXPECT_TRUE(protocol().section(u"段階: "_s, -1).contains(u"VALUE_"_s + element));
        keys[u"Type_"_s + element] = u"NAME"_s;
        keys[u"VALUE_"_s + element] = before;
    };
    for (const QString& element : {u"Title"_s, u"Body"_s}) {
        for (const QString& value : {u"missing"_s, u""_s})
            expectFailure(element, u"NAME"_s, value);
        for (const QString& type : {u"INPUT"_s, u"TEXTAREA"_s}) {
            for (const QString& value : {u"99"_s, u"-1"_s, u""_s, u"title"_s, u"32768"_s, u"-32769"_s, u"1,5x"_s})
                expectFailure(element, type, value);
        }
    }
}

TEST_F(BlogForm, NumbersOfPlacesAreReadAsPeopleWriteThem) {
    keys[u"Type_Title"_s] = u"INPUT"_s;
    const QString index = inputIndex(u"title"_s);
    for (const QString& form : {index, u'+' + index, index + u".2"_s, u"0"_s + index, u"&H"_s + index}) {
        keys[u"VALUE_Title"_s] = form;
        field(u"title"_s).value.clear();
        post();
        EXPECT_EQ(field(u"title"_s).value, entry.title) << form.toStdString();
    }
}

TEST_F(BlogForm, TextsReachThePageAsTheyAre) {
    keys[u"HTML2TXT"_s] = u""_s; // no conversion
    const QStringList texts{u"「\"」\\ & < > </script> ' `${x}`"_s,
                            u"\u2028\u2029\ufeff"_s,
                            u"a"_s + QChar(0) + u"b"_s,
                            QString(QChar(0xd83d)) + u"x"_s + QChar(0xde00),
                            u"\U0001F431 é"_s,
                            u"行\r\n行\r\r\n\n\t行"_s,
                            QString(3'000'000, u'長')};
    for (const QString& text : texts) {
        entry.title = entry.body = text;
        post();
        EXPECT_TRUE(field(u"title"_s).value == text);
        EXPECT_TRUE(field(u"body"_s).value == text);
        EXPECT_EQ(lastStatus(), u"日記投稿完了！画像ファイルは手動でアップロードして下さい。"_s);
    }
}

// The genre.

class BlogGenre : public BlogForm {
protected:
    BlogGenre() {
        keys[u"VALUE_Genre"_s] = u"genre"_s;
        addField(
            {.tag = u"SELECT"_s, .name = u"genre"_s, .options = {u"一般"_s, u"旅"_s, u"本"_s, u"旅"_s}, .selected = 2});
        addField({.name = u"genre2"_s, .type = u"hidden"_s, .value = u"of the page"_s});
    }
    QStringList genreCalls() const { return page.done.filter(u"genre"_s).mid(1); } // the first one looks for it
};

TEST_F(BlogGenre, TheFirstOptionOfThatTextIsSelected) {
    post();
    expectPosted();
    EXPECT_EQ(genreCalls(), QStringList({u"options anywhere=genre"_s, u"select 1 anywhere=genre"_s}));
    EXPECT_EQ(field(u"genre"_s).selected, 1);
    EXPECT_EQ(field(u"genre2"_s).value, u"of the page"_s);
}

TEST_F(BlogGenre, TheFirstOptionOfAllCanNotBeSelected) {
    entry.genre = u"一般"_s;
    post();
    expectPosted();
    EXPECT_EQ(genreCalls().last(), u"select 0 anywhere=genre"_s);
    EXPECT_EQ(field(u"genre"_s).selected, 2);
}

TEST_F(BlogGenre, WithoutAMatchNothingIsSelected) {
    for (const QString& genre : {u"映画"_s, u"旅 "_s, u""_s, u"一"_s}) {
        entry.genre = genre;
        page.done.clear();
        post();
        EXPECT_EQ(genreCalls(), QStringList{u"options anywhere=genre"_s});
        EXPECT_EQ(lastStatus(), u"日記投稿完了！画像ファイルは手動でアップロードして下さい。"_s);
    }
    EXPECT_EQ(field(u"genre"_s).selected, 2);
}

TEST_F(BlogGenre, MayBeWrittenBesideWithOrWithoutAMatch) {
    keys[u"Type_Genre"_s] = u"NAME"_s;
    keys[u"VALUE_Genre2"_s] = u"genre2"_s;
    for (const QString& genre : {u"旅"_s, u"一般"_s, u"映画"_s, u""_s}) {
        entry.genre = genre;
        post();
        EXPECT_EQ(field(u"genre2"_s).value, genre);
    }
    EXPECT_EQ(field(u"genre"_s).selected, 1);
    EXPECT_EQ(genreCalls().last(), u"set inputname=genre2"_s);
}

TEST_F(BlogGenre, AnyOtherWordAndNoNameAreNoGenre) {
    for (const QString& word : {u"INPUT"_s, u"select"_s, u"TEXTAREA"_s, u""_s}) {
        keys[u"Type_Genre"_s] = word;
        page.done.clear();
        post();
        EXPECT_EQ(genreCalls(), QStringList()) << word.toStdString();
    }
    keys[u"Type_Genre"_s] = u"NAME"_s;
    keys[u"VALUE_Genre"_s] = u""_s;
    keys[u"VALUE_Genre2"_s] = u"genre2"_s;
    page.done.clear();
    post();
    EXPECT_EQ(page.done.filter(u"genre"_s), QStringList());
    EXPECT_EQ(lastStatus(), u"日記投稿完了！画像ファイルは手動でアップロードして下さい。"_s);
}

// The box is looked for before anything is filled in; that it is not there counts when it is used.
TEST_F(BlogGenre, ABoxThatIsNotThereIsMissedWhenItIsUsed) {
    keys[u"VALUE_Genre"_s] = u"missing"_s;
    for (const QString& type : {u"SELECT"_s, u"NAME"_s}) {
        keys[u"Type_Genre"_s] = type;
        desk.details.clear();
        page.done.clear();
        post();
        expectStage(u"カテゴリ/ジャンル挿入エラー"_s);
        EXPECT_LT(page.done.indexOf(u"has anywhere=missing"_s), page.done.indexOf(u"set name=title form=1"_s));
        EXPECT_TRUE(page.done.contains(u"set name=body form=1"_s));
        EXPECT_TRUE(protocol().contains(u"VALUE_Genre の要素がありません。"_s));
    }
    keys[u"Type_Genre"_s] = u"INPUT"_s;
    desk.events = {};
    desk.details.clear();
    post();
    expectPosted();
}

TEST_F(BlogGenre, AFieldBesideThatIsNotThereEndsTheRun) {
    keys[u"Type_Genre"_s] = u"NAME"_s;
    for (const QString& name : {u"missing"_s, u""_s, u"body"_s}) { // a text area is no INPUT
        keys[u"VALUE_Genre2"_s] = name;
        page.element(postUrl, 0, u"body"_s).tag = u"TEXTAREA"_s;
        desk.details.clear();
        post();
        expectStage(u"カテゴリ/ジャンル挿入エラー"_s);
        EXPECT_EQ(field(u"genre"_s).selected, 1);
    }
}

// Two services with rules of their own, by their names.

TEST_F(BlogForm, OneServiceHasALinkBeforeItsForm) {
    keys[u"Blog"_s] = u"アメーバブログ"_s;
    keys[u"VALUE_Genre"_s] = u"genre"_s;
    addField({.tag = u"SELECT"_s, .name = u"genre"_s});
    page.documents[postUrl].links = QList<ScriptedLink>(26);
    post();
    expectPosted();
    const qsizetype link = page.done.indexOf(u"link 25"_s);
    EXPECT_EQ(page.done.mid(link - 1, 3),
              QStringList({u"has anywhere=genre"_s, u"link 25"_s, u"set name=title form=1"_s}));
    EXPECT_EQ(page.calls(u"link"_s).size(), 1);
}

TEST_F(BlogForm, WithoutThatLinkItsStageIsThatOfTheLoginTest) {
    keys[u"Blog"_s] = u"アメーバブログ"_s;
    page.documents[postUrl].links = QList<ScriptedLink>(25);
    post();
    expectStage(u"ログイン状態確認エラー"_s);
    EXPECT_TRUE(page.calls(u"set"_s).isEmpty());
}

TEST_F(BlogForm, ServicesWithOtherNamesHaveNoSuchLink) {
    page.documents[postUrl].links = QList<ScriptedLink>(30);
    for (const QString& name : {u"アメーバブログ2"_s, u"アメーバ"_s, u"yahoo!ブログ"_s, u"Yahoo!ブログ２"_s}) {
        keys[u"Blog"_s] = name;
        page.done.clear();
        post();
        EXPECT_TRUE(page.calls(u"link"_s).isEmpty()) << name.toStdString();
    }
}

TEST_F(BlogForm, OneServicePostsByAScriptLinkAlone) {
    keys[u"Blog"_s] = u"Yahoo!ブログ"_s;
    keys[u"Type_UnderWrite"_s] = u"DRAFTCLICKNAME"_s; // never looked at
    keys[u"VALUE_UnderWrite_Yes"_s] = u"missing"_s;
    keys[u"VALUE_Post"_s] = u"missing"_s;
    page.documents[postUrl].links = {
        {u"submitall()"_s}, {u"blog.test"_s}, {u"submitAll()"_s, {doneUrl}}, {u"submitAll()"_s}};
    post();
    expectPosted();
    EXPECT_EQ(page.calls(u"link "_s), QStringList{u"link 2"_s});
    EXPECT_TRUE(page.calls(u"click"_s).isEmpty());
}

TEST_F(BlogForm, WithoutItsLinkNothingIsClickedAndTheWaitRunsOut) {
    keys[u"Blog"_s] = u"Yahoo!ブログ"_s;
    page.documents[postUrl].links = {{u"submitAll"_s, {doneUrl}}, {u"SubmitAll()"_s, {doneUrl}}};
    post();
    EXPECT_EQ(boxes(), QStringList{u"critical: Blog投稿失敗！\r\nタイムアウト(60秒)です。"_s});
    EXPECT_EQ(lastStatus(), u"日記投稿失敗！"_s);
    EXPECT_TRUE(page.calls(u"click"_s).isEmpty());
    EXPECT_TRUE(page.calls(u"link "_s).isEmpty());
    EXPECT_EQ(page.done.last(), u"end"_s);
    EXPECT_EQ(page.calls(u"wait"_s).size(), 2);
}

// The post button.

TEST_F(BlogForm, IsSentAsTheTemplateSays) {
    const auto sent = [this](const QString& type, const QString& value) {
        keys[u"Type_Post"_s] = type;
        keys[u"VALUE_Post"_s] = value;
        page.done.clear();
        post();
        return formCalls().mid(2);
    };
    const QString wait = u"wait 30000"_s;
    EXPECT_EQ(sent(u"NAME"_s, u"send"_s), QStringList({u"click name=send form=1"_s, wait}));
    EXPECT_EQ(sent(u"SUBMIT"_s, u""_s), QStringList({u"submit 1"_s, wait}));
    for (const QString& word : {u"INPUT"_s, u"INDEX"_s, u"name"_s, u""_s}) {
        const QString index = inputIndex(u"send"_s);
        EXPECT_EQ(sent(word, index), QStringList({u"click input="_s + index, wait}));
    }
}

TEST_F(BlogForm, AButtonThatIsNotThereIsToldByItsStage) {
    for (const auto& [type, value] : std::initializer_list<std::pair<QString, QString>>{{u"NAME"_s, u"missing"_s},
                                                                                        {u"NAME"_s, u""_s},
                                                                                        {u"INPUT"_s, u"send"_s},
                                                                                        {u"INPUT"_s, u"99"_s},
                                                                                        {u"INPUT"_s, u""_s},
                                                                                        {u"INPUT"_s, u"40000"_s}}) {
        keys[u"Type_Post"_s] = type;
        keys[u"VALUE_Post"_s] = value;
        desk.details.clear();
        post();
        expectStage(u"投稿ボタンクリックエラー"_s);
        EXPECT_EQ(page.calls(u"wait"_s).size(), 1);
        page.done.clear();
    }
}

// The page that asks whether the post is right.

class BlogConfirmation : public BlogForm {
protected:
    BlogConfirmation() {
        keys[u"VALUE_Confirm"_s] = u"yes"_s;
        keys[u"FORM_CONFIRM"_s] = u"1"_s;
        const ScriptedElement button{.name = u"yes"_s, .type = u"submit"_s};
        page.documents[kConfirmUrl] = {.forms = {{{button}}, {{button}}}};
        field(u"send"_s).leadsTo = {kConfirmUrl};
    }
    QStringList confirmed(const QString& type, const QString& value) {
        keys[u"Type_Confirm"_s] = type;
        keys[u"VALUE_Confirm"_s] = value;
        page.done.clear();
        post();
        return formCalls().mid(4);
    }
};

TEST_F(BlogConfirmation, IsSentAsTheTemplateSaysAndNobodyWaitsForIt) {
    EXPECT_EQ(confirmed(u"NAME"_s, u"yes"_s), QStringList{u"click name=yes form=1"_s});
    expectPosted();
    EXPECT_EQ(confirmed(u"SUBMIT"_s, u"yes"_s), QStringList{u"submit 1"_s});
    for (const QString& word : {u"INPUT"_s, u"name"_s, u""_s})
        EXPECT_EQ(confirmed(word, u"1"_s), QStringList{u"click input=1"_s});
    EXPECT_EQ(confirmed(u"SUBMIT"_s, u""_s), QStringList()); // no such page
}

TEST_F(BlogConfirmation, WhatItLacksIsToldByItsStage) {
    for (const auto& [type, value] : std::initializer_list<std::pair<QString, QString>>{
             {u"NAME"_s, u"missing"_s}, {u"INPUT"_s, u"yes"_s}, {u"INPUT"_s, u"2"_s}, {u"INPUT"_s, u"-40000"_s}}) {
        desk.details.clear();
        confirmed(type, value);
        expectStage(u"確認画面クリックエラー"_s);
    }
    keys[u"FORM_CONFIRM"_s] = u"2"_s;
    desk.details.clear();
    confirmed(u"SUBMIT"_s, u"yes"_s);
    expectStage(u"確認画面クリックエラー"_s);
}

TEST_F(BlogConfirmation, ThePageThatDoesNotComeIsNotSent) {
    field(u"send"_s).leadsTo = {};
    EXPECT_EQ(confirmed(u"NAME"_s, u"yes"_s), QStringList());
    EXPECT_EQ(boxes(), QStringList{u"critical: Blog投稿失敗！\r\nタイムアウト(60秒)です。"_s});
}

} // namespace
} // namespace velloria::tests
