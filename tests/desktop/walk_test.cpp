// A day with the program, from its start to the next one, on real input.
#include "browser/forms/frmBrowser.h"
#include "core/ini.h"
#include "editor_home.h"
#include "shell/forms/desktop_start.h"

#include <QWebEngineView>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Walk : public EditorHome {
protected:
    void SetUp() override { startAgain(); }

    void startAgain() {
        context.windows.closeAll();
        settle();
        desk.events = {};
        ASSERT_EQ(shell::startDesktop(context, home.path()), shell::StartResult::Ready);
        top().activateWindow();
        ASSERT_TRUE(becomesActive(top()));
        settle();
    }
    browser::frmBrowser& browser() { return context.windows.get<browser::frmBrowser>(); }

    /// Takes the browser where the commands sent it last, and gives the text that it shows then.
    QString shownPage() {
        browser().bDocumentComplete = false;
        browser().Navigate(desk.texts(u"navigate"_s).last());
        EXPECT_TRUE(waitFor([this] { return browser().bDocumentComplete; }));
        QString text;
        bool isDone = false;
        control<QWebEngineView>(browser(), u"WebBrowser"_s).page()->toPlainText([&](const QString& plain) {
            text = plain;
            isDone = true;
        });
        EXPECT_TRUE(waitFor([&] { return isDone; }));
        return text;
    }
    void press(const QString& name) {
        top().command(name)->trigger();
        settle();
    }
};

TEST_F(Walk, ThroughADayOfWriting) {
    // The first entry: the title by keys, the text by an input method, kana by kana.
    clickDay(6);
    keys(title(), u"first"_s);
    QTest::keyClick(&title(), Qt::Key_Return);
    settle();
    EXPECT_TRUE(pane().hasFocus());
    for (const QString& preedit : {u"に"_s, u"にっ"_s, u"にっき"_s, u"日記"_s})
        compose(pane(), preedit);
    compose(pane(), {}, u"日記"_s);
    QTest::keyClick(&pane(), Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(pane().text(), u"日記<BR>"_s);

    // Saved and seen.
    clickTool(u"SaveToMDB"_s);
    EXPECT_FALSE(isSavable());
    EXPECT_EQ(panel(), u"Webページ表示中..."_s);
    QString page = shownPage();
    EXPECT_TRUE(page.contains(u"first"_s)) << page.toStdString();
    EXPECT_TRUE(page.contains(u"日記"_s)) << page.toStdString();

    // A second entry of the day, with the new text in the preview.
    clickButton(u"Btn_New"_s);
    EXPECT_EQ(caption(), u"2004/05/06分の日記[2/2]"_s);
    keys(title(), u"二つ目"_s);
    QTest::keyClick(&title(), Qt::Key_P, Qt::ControlModifier); // save and preview
    settle();
    EXPECT_EQ(rows(), (QStringList{u"2二つ目"_s, u"1first"_s}));
    page = shownPage();
    EXPECT_TRUE(page.contains(u"二つ目"_s)) << page.toStdString();

    // Deleted again; the day is opened anew and changed, and the change undone.
    answer(u"yes"_s);
    clickButton(u"Btn_Delete"_s);
    EXPECT_EQ(caption(), u"日記作成"_s);
    EXPECT_EQ(rows(), QStringList{u"1first"_s});
    page = shownPage();
    EXPECT_FALSE(page.contains(u"二つ目"_s)) << page.toStdString();
    clickDay(6);
    clickPane();
    const QString before = pane().text();
    QTest::keyClick(&pane(), 'x');
    EXPECT_NE(pane().text(), before);
    QTest::keyClick(&pane(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(pane().text(), before);

    // The end asks for what the undo left marked as changed; the next start knows the day.
    answer(u"no"_s);
    press(u"MnuExit"_s);
    EXPECT_FALSE(top().isVisible());
    EXPECT_EQ(questions().last(), u"変更されています。保存しますか？"_s);
    EXPECT_FALSE(exists(session.UserPath + u"draft.json"_s));
    startAgain();
    EXPECT_EQ(caption(), u"日記作成"_s);
    clickDay(6);
    EXPECT_EQ(title().text(), u"first"_s);
    EXPECT_EQ(pane().text(), u"日記<BR>"_s);
    EXPECT_EQ(boxes(), QStringList());
}

} // namespace
} // namespace velloria::tests
