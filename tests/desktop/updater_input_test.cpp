// What a person does on a screen with frames while a database is updated.
#include "updating_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class DuringAnUpdate : public Updating {
protected:
    static void moveAndClick(const QPoint& place) {
        begin({u"mousemove"_s, QString::number(place.x()), QString::number(place.y()), u"click"_s, u"1"_s});
    }
    /// What the screen has got comes to the program within this.
    static constexpr int kOnItsWayMs = 500;
    /// Waits for that, and serves nothing meanwhile.
    static void standStill() {
        for (QProcess& press : presses)
            EXPECT_TRUE(press.state() == QProcess::NotRunning || press.waitForFinished(kPatienceMs));
        QThread::msleep(kOnItsWayMs);
    }
    static QMessageBox* box() { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()); }
};

TEST_F(DuringAnUpdate, KeysAndClicksDoNothingAndTheKeyboardStays) {
    QTest::keyClicks(&pane(), u"kept"_s);
    const QString caption = contents().windowTitle();
    QTimer::singleShot(200, &top(), [&] {
        begin({u"type"_s, u"--delay"_s, u"30"_s, u"abc def"_s});
        moveAndClick(calendar().mapToGlobal(QPoint(120, 120)));
    });
    bool hasBegunAll = false;
    QTimer::singleShot(700, &top(), [&] {
        begin({u"key"_s, u"ctrl+n"_s, u"key"_s, u"alt+d"_s, u"key"_s, u"F1"_s, u"key"_s, u"ctrl+f"_s});
        moveAndClick(top().mapToGlobal(QPoint(20, 10))); // a menu
        hasBegunAll = true;
    });
    EXPECT_TRUE(workUntil([&] { return hasBegunAll && isAllPressed(); }));
    work(kOnItsWayMs);
    qtDesk.closeUpdaterWindow();
    settle();
    EXPECT_EQ(pane().toPlainText(), u"kept"_s);
    EXPECT_EQ(contents().windowTitle(), caption);
    EXPECT_FALSE(QApplication::activePopupWidget());
    EXPECT_FALSE(box());
    EXPECT_TRUE(pane().hasFocus());
    EXPECT_TRUE(becomesActive(top()));
    press(u"x"_s);
    EXPECT_EQ(pane().toPlainText(), u"keptx"_s);
}

TEST_F(DuringAnUpdate, WhatWaitsAtItsEndReachesNeitherBoxNorText) {
    qtDesk.updaterWindow({u"1"_s});
    // Nothing is served from here on: all of it waits.
    begin({u"key"_s, u"a"_s, u"key"_s, u"space"_s, u"key"_s, u"Return"_s, u"key"_s, u"Escape"_s});
    standStill();
    bool stood = false;
    whenShown<QMessageBox>([&](QMessageBox& shown) {
        QTest::qWait(kOnItsWayMs);
        stood = box() == &shown;
        leave(shown, u"Return"_s);
    });
    qtDesk.message(platform::MessageKind::Plain, u"done"_s, u"Velloria"_s);
    EXPECT_TRUE(stood);
    begin({u"key"_s, u"b"_s});
    standStill();
    qtDesk.closeUpdaterWindow();
    settle();
    QTest::qWait(200);
    EXPECT_EQ(pane().toPlainText(), QString());
    EXPECT_TRUE(pane().hasFocus());
    expectKeysGoTo(top(), u"after the update"_s, {u"x"_s});
    EXPECT_EQ(pane().toPlainText(), u"x"_s);
}

TEST_F(DuringAnUpdate, TheFrameOfTheMainWindowClosesItAfterTheEnd) {
    QTest::keyClicks(&pane(), u"half"_s);
    QTimer::singleShot(200, &top(), [] { begin({u"key"_s, u"alt+F4"_s}); });
    EXPECT_TRUE(workUntil([] { return !presses.empty() && isAllPressed(); }));
    work(kOnItsWayMs);
    EXPECT_TRUE(top().isVisible());
    QString question;
    qtDesk.closeUpdaterWindow();
    whenShown<QMessageBox>([&](QMessageBox& shown) {
        question = shown.text();
        leave(shown, u"n"_s);
    });
    EXPECT_TRUE(waitFor([&] { return !top().isVisible(); }));
    EXPECT_EQ(question, u"変更されています。保存しますか？"_s);
}

} // namespace
} // namespace velloria::tests
