// The blog bar of the calendar and the commands of the menus that do the same.
#include "editor_home.h"

#include "blog/blog_user_data.h"
#include "blog/forms/frmBlogManager.h"
#include "blog/posted_entries.h"
#include "core/blog_keys.h"
#include "core/files.h"
#include "small_web.h"

#include <QTextDocumentFragment>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

const QString kNoBlog = u"ブログが選択されていません。"_s;
const QString kNoConversion = u"critical: Initializeファイル読み込みエラー"_s;

class BlogBar : public EditorHome {
protected:
    void SetUp() override {
        EditorHome::SetUp();
        for (const char* name : {"mixi", "other"})
            writeTemplate(QLatin1StringView(name), "[Simple]\r\nPostURL=Required\r\nNextURL=Nothing\r\n");
        calendar().fillBlogs();
    }
    void writeTemplate(const QString& name, const QByteArray& text) const {
        writeFile(session.DataPath + u"BlogTemplate/"_s + name + u".ini"_s, text);
    }
    desktop::Combo& blogs() { return control<desktop::Combo>(calendar(), u"cmbBlog"_s); }
    desktop::Combo& actions() { return control<desktop::Combo>(calendar(), u"cmbBlogAction"_s); }
    QPushButton& button() { return control<QPushButton>(calendar(), u"Btn_BlogControl"_s); }
    void press() { clickButton(u"Btn_BlogControl"_s); }
    QString tip() {
        const QString shown = button().toolTip();
        return Qt::mightBeRichText(shown) ? QTextDocumentFragment::fromHtml(shown).toPlainText() : shown;
    }
    QImage picture() { return button().icon().pixmap(16, 16).toImage(); }
    bool hasRun() const { return exists(core::files::kBlogLog.in(session)); }
    void remember(int number, const QString& entryTitle, const QString& blog) {
        blog::BlogEntry entry;
        entry.day = kDay;
        entry.number = number;
        entry.title = entryTitle;
        blog::rememberPost(run, entry, blog);
    }
    QString notice(const QString& entryTitle, const QString& blog) const {
        return u"\nこの日記は %1 に「%2」として%3へ投稿済みです。"_s.arg(clock.now().toString(u"yyyy/MM/dd HH:mm:ss"),
                                                                         entryTitle, blog);
    }
};

TEST_F(BlogBar, TheChoiceSetsTipAndPicture) {
    EXPECT_EQ(button().toolTip(), u"mixiに投稿します"_s) << "from the start on";
    QSet<QByteArray> pictures;
    const QStringList tips{u"に投稿します"_s, u"を閲覧します"_s, u"の管理画面を開きます"_s};
    for (int action = 0; action < 3; ++action) {
        pick(actions(), action);
        EXPECT_EQ(button().toolTip(), u"mixi"_s + tips[action]);
        const QImage drawn = picture();
        pictures += QByteArray(reinterpret_cast<const char*>(drawn.constBits()), drawn.sizeInBytes());
        pick(blogs(), blogs().findText(u"other"_s));
        EXPECT_EQ(button().toolTip(), u"other"_s + tips[action]);
        EXPECT_EQ(button().accessibleDescription(), button().toolTip());
        pick(blogs(), blogs().findText(u"mixi"_s));
    }
    EXPECT_EQ(pictures.size(), 3);
    EXPECT_FALSE(hasRun()) << "a choice does nothing";
}

TEST_F(BlogBar, ThePictureHasTheColourOfThePalette) {
    const QPalette before = QApplication::palette();
    const QImage usual = picture();
    QPalette other = before;
    other.setColor(QPalette::ButtonText, Qt::red);
    QApplication::setPalette(other);
    settle();
    EXPECT_NE(picture(), usual);
    QApplication::setPalette(before);
    settle();
    EXPECT_EQ(picture(), usual);
}

TEST_F(BlogBar, WithoutABlogEachActionOnlySaysSo) {
    blogs().setCurrentIndex(-1);
    EXPECT_EQ(tip(), u"選んだブログへの操作を実行します"_s);
    for (int action = 0; action < 3; ++action) {
        actions().setCurrentIndex(action);
        desk.events = {};
        press();
        EXPECT_EQ(told(), QStringList{u"status: "_s + kNoBlog});
    }
    for (const char* command : {"MnuBlogUp", "MnuBlogView", "MnuOpenBlogManagement"}) {
        desk.events = {};
        top().command(QLatin1StringView(command))->trigger();
        settle();
        EXPECT_EQ(told(), QStringList{u"status: "_s + kNoBlog}) << command;
    }
    EXPECT_FALSE(hasRun());
}

TEST_F(BlogBar, AnEntryThatWasPostedSaysSoInTheTip) {
    writeDay({u"一"_s, u"二"_s});
    remember(1, u"前の題"_s, u"mixi"_s);
    remember(2, u"二"_s, u"other"_s);
    EXPECT_EQ(tip(), u"mixiに投稿します"_s) << "no day is open";
    clickDay(6);
    EXPECT_EQ(tip(), u"mixiに投稿します"_s);
    pick(combo(u"ComboNumber"_s), 0);
    EXPECT_EQ(tip(), u"mixiに投稿します"_s + notice(u"前の題"_s, u"mixi"_s));
    EXPECT_EQ(button().accessibleDescription(), tip());
    pick(blogs(), blogs().findText(u"other"_s));
    EXPECT_EQ(tip(), u"otherに投稿します"_s);
    pick(combo(u"ComboNumber"_s), 1);
    EXPECT_EQ(tip(), u"otherに投稿します"_s + notice(u"二"_s, u"other"_s));
    pick(actions(), 1);
    EXPECT_EQ(tip(), u"otherを閲覧します"_s);
    pick(actions(), 0);
    clickButton(u"Btn_New"_s);
    EXPECT_EQ(tip(), u"otherに投稿します"_s);
    clickDay(6);
    answer(u"yes"_s);
    clickButton(u"Btn_Delete"_s);
    EXPECT_EQ(tip(), u"otherに投稿します"_s) << "no day is open any more";
}

TEST_F(BlogBar, ATitleThatLooksLikeATagIsShownAsItIs) {
    const QString odd = u"<b>a & b</b><img src=x> "_s + QString(200, u'長') + u"\u3042"_s;
    writeDay({odd});
    remember(1, odd, u"mixi"_s);
    clickDay(6);
    EXPECT_EQ(tip(), u"mixiに投稿します"_s + notice(odd, u"mixi"_s));
    EXPECT_EQ(button().accessibleDescription(), tip());
    writeTemplate(u"<i>x"_s, "");
    calendar().fillBlogs();
    blogs().setCurrentIndex(blogs().findText(u"<i>x"_s));
    EXPECT_EQ(tip(), u"<i>xに投稿します"_s);
}

TEST_F(BlogBar, WithoutADayAPostIsRefused) {
    blog::BlogUserData(session, u"mixi"_s).store(core::keys::blog_user::kPostURL, u"http://127.0.0.1:9/"_s);
    press();
    EXPECT_EQ(boxes(), QStringList{u"critical: 投稿する日記が選択されていません。日記の投稿を中止します。"_s});
    EXPECT_TRUE(hasRun());
}

TEST_F(BlogBar, APostTakesWhatTheEditorShowsSavedOrNot) {
    blog::BlogUserData(session, u"mixi"_s).store(core::keys::blog_user::kPostURL, u"http://127.0.0.1:9/"_s);
    clickDay(6);
    press();
    const QString empty = u"critical: タイトルもしくは本文が記入されていないため、日記の投稿を中止します。"_s;
    EXPECT_EQ(boxes(), QStringList{empty});
    keys(pane(), u"text"_s);
    keys(pane(1), u"not this one"_s);
    press();
    EXPECT_EQ(boxes(), (QStringList{empty, empty}));
    compose(title(), u"にっき"_s); // not committed yet
    pick(combo(u"ComboPrivate"_s), 1);
    answer(u"no"_s);
    press();
    EXPECT_EQ(boxes().size(), 3);
    EXPECT_EQ(questions(), QStringList{u"非公開になっていますが、Blogに投稿しますか？"_s});
    EXPECT_EQ(title().text(), u"にっき"_s);
    EXPECT_TRUE(contents().ChangeYesNo()) << "nothing is saved";
    EXPECT_TRUE(rows().isEmpty());
}

/// The page is sent by GET, so that the web of the test sees every field.
class BlogWeb : public BlogBar {
protected:
    void SetUp() override {
        BlogBar::SetUp();
        web.headers = "Content-Type: text/html; charset=utf-8\r\n";
        web.pages["/post"] = "<form action=/do><input name=title><textarea name=body></textarea>"
                             "<select name=genre><option>一般<option>旅</select>"
                             "<input type=submit name=go value=1></form>";
        web.pages["/view"] = web.pages["/manage"] = "<title>there</title>";
        writeTemplate(u"mixi"_s, "[General]\r\nBlog=Web\r\n[Simple]\r\nNextURL=Nothing\r\nVALUE_Title=title\r\n"
                                 "VALUE_Body=body\r\nVALUE_Genre=genre\r\nVALUE_Post=go\r\nPostURL=" +
                                     web.address(u"/post"_s).toUtf8() +
                                     "\r\nManageURL=" + web.address(u"/manage"_s).toUtf8() + "\r\n");
        blog::BlogUserData(session, u"mixi"_s).store(core::keys::blog_user::kAccessURL, web.address(u"/view"_s));
    }
    void writeEntry() {
        clickDay(6);
        keys(title(), u"a"_s);
        pane().setText(u"b\r\nc&"_s);
        combo(u"ComboGenre"_s).setEditText(u"旅"_s);
    }
    /// Waits until the browser has asked for it.
    bool isAsked(const QByteArray& path) {
        return waitFor([&] { return web.asked.contains(path); });
    }

    SmallWeb web;
    const QByteArray sent = "/do?title=a&body=b%0D%0Ac%26&genre=%E6%97%85&go=1";
};

TEST_F(BlogWeb, APostSendsTheFieldsAndIsRememberedInTheTip) {
    web.pages[sent] = "done";
    writeEntry();
    EXPECT_EQ(tip(), u"mixiに投稿します"_s);
    press();
    EXPECT_TRUE(web.asked.contains(sent)) << web.asked.join(' ').toStdString();
    EXPECT_EQ(boxes(), (QStringList{kNoConversion, u"information: Blog投稿完了！\r\n"
                                                   u"画像ファイルは手動でアップロードしてください。"_s}));
    EXPECT_EQ(tip(), u"mixiに投稿します"_s + notice(u"a"_s, u"mixi"_s)) << "at once";
    EXPECT_EQ(title().text(), u"a"_s);
    EXPECT_TRUE(contents().ChangeYesNo());
    const qsizetype before = web.asked.count(sent);
    top().command(u"MnuBlogUp"_s)->trigger();
    settle();
    EXPECT_EQ(web.asked.count(sent), before + 1) << "the menu's command does the same, and a second time";
}

TEST_F(BlogWeb, ViewAndManagementGoToTheirPagesByButtonAndMenu) {
    actions().setCurrentIndex(1);
    press();
    EXPECT_TRUE(isAsked("/view"));
    actions().setCurrentIndex(2);
    press();
    EXPECT_TRUE(isAsked("/manage"));
    web.asked.clear();
    top().command(u"MnuBlogView"_s)->trigger();
    EXPECT_TRUE(isAsked("/view"));
    top().command(u"MnuOpenBlogManagement"_s)->trigger();
    EXPECT_TRUE(isAsked("/manage"));
    EXPECT_TRUE(boxes().isEmpty());
    EXPECT_FALSE(web.asked.contains("/post"));
}

TEST_F(BlogWeb, AnAnswerIsSeenInTheOpenManager) {
    auto& manager = shownWindow<blog::frmBlogManager>(context);
    auto& other = control<QComboBox>(manager, u"cmbBlog"_s);
    other.setCurrentIndex(other.findText(u"other"_s));
    Q_EMIT other.activated(other.currentIndex());
    blogs().setCurrentIndex(blogs().findText(u"other"_s));
    actions().setCurrentIndex(1);
    answer(web.address(u"/view"_s));
    press();
    EXPECT_TRUE(isAsked("/view"));
    EXPECT_EQ(control<QLineEdit>(manager, u"txtAccessURL"_s).text(), web.address(u"/view"_s));
    EXPECT_FALSE(control<QPushButton>(manager, u"Btn_Save"_s).isEnabled());
}

TEST_F(BlogWeb, AnAddressThatIsNotOfTheWebIsTold) {
    blog::BlogUserData(session, u"mixi"_s).store(core::keys::blog_user::kAccessURL, u"javascript:alert(1)"_s);
    actions().setCurrentIndex(1);
    press();
    expectedFailures = 1;
    EXPECT_TRUE(web.asked.isEmpty());
}

/// The second one would lead the page of the first one away under it.
TEST_F(BlogWeb, WhileOneOfThemRunsTheyOnlyBeep) {
    writeEntry();
    compose(title(), u"にっき"_s);
    context.runs.run(desktop::LongRoutine::PostBlog, [&] {
        for (int action = 0; action < 3; ++action) {
            actions().setCurrentIndex(action);
            desk.events = {};
            EXPECT_TRUE(button().isEnabled());
            press();
            for (const char* command : {"MnuBlogUp", "MnuBlogView", "MnuOpenBlogManagement"})
                top().command(QLatin1StringView(command))->trigger();
            EXPECT_EQ(told(), QStringList());
        }
    });
    EXPECT_FALSE(hasRun());
    EXPECT_TRUE(web.asked.isEmpty());
    actions().setCurrentIndex(1);
    press();
    EXPECT_TRUE(isAsked("/view")) << "afterwards they go on";
}

/// What a person does meanwhile does not end a post, nor does it start another one.
TEST_F(BlogWeb, APressDuringAPostStartsNoSecondOne) {
    web.pages[sent] = "done";
    writeEntry();
    int presses = 0;
    QTimer presser;
    QObject::connect(&presser, &QTimer::timeout, &presser, [&] {
        if (context.runs.isAnyRunning()) {
            ++presses;
            button().click();
        }
    });
    presser.start(1);
    press();
    presser.stop();
    EXPECT_GT(presses, 0);
    EXPECT_EQ(web.asked.count("/post"), 1);
    EXPECT_EQ(web.asked.count(sent), 1);
}

} // namespace
} // namespace velloria::tests
