#include "blog/blog_posting.h"

#include "blog/blog_post.h"
#include "blog/blog_protocol.h"
#include "blog/blog_template.h"
#include "blog/blog_user_data.h"
#include "core/blog_keys.h"
#include "platform/code_page.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {

namespace rows = core::keys::blog_user;

BlogPosting::BlogPosting() {
    keys = {{u"Blog"_s, u"試験ブログ"_s},     {u"PostURL"_s, postUrl},        {u"LoginURL"_s, u"Nothing"_s},
            {u"NextURL"_s, u"Nothing"_s},     {u"HTML2TXT"_s, u"HTML2TXT"_s}, {u"FORM_LOGIN"_s, u"0"_s},
            {u"FORM_POST"_s, u"1"_s},         {u"CheckObject"_s, u"check"_s}, {u"VALUE_LoginID"_s, u"id"_s},
            {u"VALUE_Password"_s, u"pass"_s}, {u"VALUE_Login"_s, u"in"_s},    {u"VALUE_Title"_s, u"title"_s},
            {u"VALUE_Body"_s, u"body"_s},     {u"VALUE_Post"_s, u"send"_s}};
    entry = {.isOpen = true,
             .day = u"2004/05/06"_s,
             .number = 1,
             .title = u"日記の題"_s,
             .body = u"本文の一行目\r\n二行目"_s,
             .genre = u"旅"_s};
    const ScriptedForm search{{{.name = u"title"_s}, {.name = u"body"_s}, {.name = u"send"_s, .type = u"submit"_s}}};
    const ScriptedForm posting{{{.name = u"check"_s, .type = u"hidden"_s},
                                {.name = u"title"_s},
                                {.tag = u"TEXTAREA"_s, .name = u"body"_s},
                                {.name = u"send"_s, .type = u"submit"_s, .leadsTo = {doneUrl}}},
                               {doneUrl}};
    const ScriptedForm login{{{.name = u"next"_s, .type = u"hidden"_s},
                              {.name = u"id"_s},
                              {.name = u"pass"_s, .type = u"password"_s},
                              {.name = u"in"_s, .type = u"submit"_s, .leadsTo = {postUrl}, .logsIn = true}},
                             {postUrl},
                             true};
    page.documents[postUrl] = {.forms = {search, posting}, .whenLoggedOut = loginUrl};
    page.documents[loginUrl] = {.forms = {login}};
    page.documents[doneUrl] = {};
    page.isLoggedIn = true;
    setUser(rows::kLoginID, u"hanako"_s);
    setUser(rows::kPassword, u"himitsu"_s);
}

QString BlogPosting::templatePath() const {
    return blog::templateFile(session, blogName);
}

void BlogPosting::writeTemplate() const {
    QString text = u"[General]\r\nBlog=%1\r\n[Simple]\r\n"_s.arg(keys[u"Blog"_s]);
    for (auto key = keys.begin(); key != keys.end(); ++key) {
        if (key.key() != u"Blog"_s)
            text += key.key() + u'=' + key.value() + u"\r\n"_s;
    }
    writeFile(templatePath(), platform::toCodePage(text));
}

void BlogPosting::post() {
    writeTemplate();
    blog::BlogPost(run, page).PostBlog(blogName, entry);
}

QString BlogPosting::inputIndex(const QString& name) {
    int index = 0;
    for (const ScriptedForm& form : page.documents[postUrl].forms) {
        for (const ScriptedElement& element : form.elements) {
            if (&form != &page.documents[postUrl].forms[0] && element.name == name)
                return QString::number(index);
            index += element.tag == u"INPUT"_s ? 1 : 0;
        }
    }
    throw std::logic_error("no such INPUT");
}

void BlogPosting::setUser(const core::Setting& row, const QString& value) const {
    blog::BlogUserData(session, blogName).store(row, value);
}

QString BlogPosting::user(const core::Setting& row) const {
    return blog::BlogUserData(session, blogName).value(row);
}

QString BlogPosting::protocol() const {
    return blog::lastProtocol(session).join(u'\n');
}

QStringList BlogPosting::asked() const {
    QStringList asked;
    for (const QJsonValue& event : desk.events) {
        if (event[u"event"_s] == u"message"_s)
            asked += event[u"kind"_s].toString() + u": "_s + event[u"text"_s].toString();
        else if (event[u"event"_s] == u"input"_s)
            asked += event[u"title"_s].toString() + u"? "_s + event[u"text"_s].toString();
    }
    return asked;
}

void BlogPosting::expectPosted() const {
    EXPECT_EQ(lastStatus(), u"日記投稿完了！画像ファイルは手動でアップロードして下さい。"_s);
    EXPECT_EQ(boxes(), QStringList{u"information: Blog投稿完了！\r\n画像ファイルは手動でアップロードしてください。"_s});
    EXPECT_EQ(desk.details, QStringList());
}

void BlogPosting::expectStage(const QString& stage) const {
    EXPECT_EQ(lastStatus(), u"日記投稿失敗！"_s);
    ASSERT_FALSE(boxes().isEmpty());
    EXPECT_EQ(boxes().last(), u"critical: エラーが発生しました。\r\nError_Code:"_s + stage);
    EXPECT_EQ(desk.details, QStringList{blog::lastProtocol(session).join(u"\r\n"_s)});
    EXPECT_TRUE(protocol().contains(u"段階: "_s + stage));
}

} // namespace velloria::tests
