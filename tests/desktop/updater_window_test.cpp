// The window of a database update, and what the windows around it do meanwhile.
#include "updating_home.h"

#include <QCloseEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>
#include <QtTest/qtestspontaneevent.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class UpdaterWindow : public Updating {
protected:
    void show(const QString& text, int max = 100, int value = 0) { qtDesk.updaterWindow({text, max, value}); }

    /// The request of the window's frame; whether it was obeyed.
    static bool closeByFrame(QWidget& window) {
        QCloseEvent request;
        QSpontaneKeyEvent::setSpontaneous(&request);
        qApp->notify(window.windowHandle(), &request);
        return request.isAccepted();
    }
    template <class Input, class... Values>
    static bool isTaken(QWidget& target, Values... values) {
        Input event(values...);
        QCoreApplication::sendEvent(&target, &event);
        return event.isAccepted();
    }
};

TEST_F(UpdaterWindow, ShowsWhatItIsTold) {
    show(u"アップデートを開始します。\r\n二"_s, 40, 3);
    ASSERT_TRUE(window());
    EXPECT_TRUE(becomesVisible(*window()));
    EXPECT_EQ(window()->windowTitle(), u"Velloria DB Updater"_s);
    EXPECT_EQ(status().toPlainText(), u"アップデートを開始します。\n二"_s);
    EXPECT_TRUE(status().isReadOnly());
    EXPECT_EQ(bar().maximum(), 40);
    EXPECT_EQ(bar().value(), 3);
    EXPECT_EQ(window()->windowModality(), Qt::NonModal);
    qtDesk.closeUpdaterWindow();
    EXPECT_FALSE(window());
}

TEST_F(UpdaterWindow, BeginsWithItsFirstLine) {
    const shell::frmDBUpdater fresh(context);
    EXPECT_EQ(control<QPlainTextEdit>(fresh, u"txtStatus"_s).toPlainText(), u"アップデートを開始します。"_s);
}

TEST_F(UpdaterWindow, ItsLastLineIsSeen) {
    QStringList lines;
    for (int i = 1; i <= 40; ++i) {
        lines += QString::number(i);
        show(lines.join(u"\r\n"_s));
    }
    const QScrollBar& scroll = *status().verticalScrollBar();
    EXPECT_GT(scroll.maximum(), 0);
    EXPECT_EQ(scroll.value(), scroll.maximum());
}

TEST_F(UpdaterWindow, ABarAboveItsMaximumIsFullAndOneWithoutMaximumEmpty) {
    show(u"1"_s, 3, 12);
    EXPECT_EQ(bar().value(), 3);
    show(u"2"_s, 0, 0);
    EXPECT_EQ(bar().maximum(), 1) << "0 would be the bar of work without an end";
    EXPECT_EQ(bar().value(), 0);
}

TEST_F(UpdaterWindow, StandsInTheMiddleAndTakesNoKeyboard) {
    show(u"1"_s);
    EXPECT_TRUE(workUntil([&] {
        const QPoint distance = window()->frameGeometry().center() - top().frameGeometry().center();
        return window()->isVisible() && distance.manhattanLength() < 60;
    }));
    work(100);
    EXPECT_TRUE(top().isActiveWindow());
    EXPECT_TRUE(pane().hasFocus());
    qtDesk.closeUpdaterWindow();
    EXPECT_TRUE(pane().hasFocus());
}

TEST_F(UpdaterWindow, HasTheHourglassUntilABoxComesUp) {
    show(u"1"_s);
    EXPECT_EQ(status().viewport()->cursor().shape(), Qt::WaitCursor);
    whenShown<QMessageBox>([&](QMessageBox& box) {
        EXPECT_EQ(window()->cursor().shape(), Qt::ArrowCursor);
        QTest::mouseClick(box.button(QMessageBox::Ok), Qt::LeftButton);
    });
    qtDesk.message(platform::MessageKind::Plain, u"text"_s, u"Velloria"_s);
    show(u"2"_s);
    EXPECT_EQ(window()->cursor().shape(), Qt::WaitCursor);
}

TEST_F(UpdaterWindow, TheWindowsPaintAndTimersRun) {
    struct Drawn : QWidget {
        using QWidget::QWidget;
        int times = 0;
        void paintEvent(QPaintEvent*) override { ++times; }
    } drawn(&top());
    drawn.resize(20, 20);
    drawn.show();
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &drawn, qOverload<>(&QWidget::update));
    timer.start(20);
    settle();
    const int before = drawn.times;
    EXPECT_TRUE(workUntil([&] { return drawn.times > before + 5; }));
}

TEST_F(UpdaterWindow, ARowBetweenTwoPicturesCostsNextToNothing) {
    constexpr int kRows = 100'000;
    show(u"1"_s, kRows, 0);
    const QSignalSpy drawn(&bar(), &QProgressBar::valueChanged);
    QElapsedTimer timer;
    timer.start();
    for (int row = 1; row <= kRows; ++row)
        show(u"1"_s, kRows, row);
    const qint64 ms = timer.elapsed();
    RecordProperty("milliseconds", int(ms));
    EXPECT_LE(drawn.size(), ms / 25 + 1);
    show(u"2"_s, kRows, kRows);
    EXPECT_EQ(bar().value(), kRows) << "a new line is shown at once";
}

TEST_F(UpdaterWindow, WhatAChildProcessSendsIsReadByTheWorkAlone) {
    QProcess child;
    const QSignalSpy read(&child, &QIODevice::readyRead);
    child.start(u"echo"_s, {u"rows"_s});
    ASSERT_TRUE(child.waitForStarted());
    work(300);
    EXPECT_EQ(read.size(), 0);
    EXPECT_EQ(child.bytesAvailable(), 0);
    EXPECT_TRUE(child.waitForReadyRead());
    EXPECT_EQ(child.readAll(), "rows\n");
    qtDesk.closeUpdaterWindow();
    EXPECT_TRUE(waitFor([&] { return child.state() == QProcess::NotRunning; }));
}

TEST_F(UpdaterWindow, NothingThatAPersonDoesReachesTheProgram) {
    QTest::keyClicks(&pane(), u"kept"_s);
    QMimeData dropped;
    dropped.setText(u"dropped"_s);
    const auto doAll = [&] {
        QTest::keyClicks(&pane(), u"x"_s);
        QTest::keyClick(top().windowHandle(), 'n', Qt::ControlModifier);
        // The screen's clicks are the window's; one sent to a control takes the keyboard there first.
        const auto& button = control<QPushButton>(calendar(), u"Btn_New"_s);
        for (const QPoint place :
             {button.mapTo(&top(), button.rect().center()), calendar().mapTo(&top(), QPoint(120, 120))})
            QTest::mouseClick(top().windowHandle(), Qt::LeftButton, {}, place);
        QInputMethodEvent composed;
        composed.setCommitString(u"あ"_s);
        QCoreApplication::sendEvent(&pane(), &composed);
        const QPoint middle = pane().viewport()->rect().center();
        EXPECT_FALSE(isTaken<QDragEnterEvent>(*pane().viewport(), middle, Qt::CopyAction, &dropped, Qt::LeftButton,
                                              Qt::NoModifier));
        EXPECT_FALSE(
            isTaken<QDropEvent>(*pane().viewport(), middle, Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier));
    };
    bool isDone = false;
    QTimer::singleShot(50, &top(), [&] {
        doAll();
        isDone = true;
    });
    EXPECT_TRUE(workUntil([&] { return isDone; }));
    work(100);
    qtDesk.closeUpdaterWindow();
    settle();
    EXPECT_EQ(pane().toPlainText(), u"kept"_s);
    EXPECT_EQ(contents().windowTitle(), u"2004/05/06分の日記[1/1]"_s);
    EXPECT_TRUE(pane().hasFocus());
    QTest::keyClicks(&pane(), u"x"_s);
    EXPECT_EQ(pane().toPlainText(), u"keptx"_s) << "the same keys reach it again";
}

TEST_F(UpdaterWindow, ABoxInTheMiddleIsAnsweredAsEver) {
    show(u"1"_s);
    whenShown<QMessageBox>([&](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Y); });
    EXPECT_TRUE(qtDesk.ask(u"text"_s, u"Velloria"_s));
    whenShown<QMessageBox>([&](QMessageBox& box) { QTest::mouseClick(box.button(QMessageBox::No), Qt::LeftButton); });
    EXPECT_FALSE(qtDesk.ask(u"text"_s, u"Velloria"_s));
}

TEST_F(UpdaterWindow, ItsFrameDoesNotCloseIt) {
    show(u"1"_s);
    EXPECT_FALSE(closeByFrame(*window()));
    EXPECT_TRUE(window()->isVisible());
    qtDesk.closeUpdaterWindow();
    settle();
    EXPECT_TRUE(top().isVisible()) << "nobody wished to close that one";
}

TEST_F(UpdaterWindow, TheWishToCloseTheMainWindowIsFulfilledAfterIt) {
    show(u"1"_s);
    EXPECT_FALSE(closeByFrame(top()));
    work(100);
    EXPECT_TRUE(top().isVisible());
    qtDesk.closeUpdaterWindow();
    EXPECT_TRUE(top().isVisible());
    settle();
    EXPECT_FALSE(top().isVisible());
}

TEST_F(UpdaterWindow, TheWishToCloseWaitsForTheLastBoxAndAsksForTheUnsavedText) {
    QTest::keyClicks(&pane(), u"half"_s);
    bool wasOpenUnderTheBox = false;
    context.runs.run(desktop::LongRoutine::Optimize, [&] {
        show(u"1"_s);
        closeByFrame(top());
        qtDesk.closeUpdaterWindow();
        whenShown<QMessageBox>([&](QMessageBox& box) {
            QTest::qWait(100);
            wasOpenUnderTheBox = top().isVisible() && QApplication::activeModalWidget() == &box;
            box.accept();
        });
        qtDesk.message(platform::MessageKind::Plain, u"done"_s, u"Velloria"_s);
    });
    EXPECT_TRUE(wasOpenUnderTheBox);
    QString question;
    whenShown<QMessageBox>([&](QMessageBox& box) {
        question = box.text();
        QTest::mouseClick(box.button(QMessageBox::No), Qt::LeftButton);
    });
    settle();
    EXPECT_EQ(question, u"変更されています。保存しますか？"_s);
    EXPECT_FALSE(top().isVisible());
}

TEST_F(UpdaterWindow, TheDraftIsKeptMeanwhile) {
    QTest::keyClicks(&pane(), u"half"_s);
    EXPECT_TRUE(workUntil([&] { return exists(session.UserPath + u"draft.json"_s); }));
}

TEST_F(UpdaterWindow, CloseWithoutAWindowIsNothing) {
    qtDesk.closeUpdaterWindow();
    EXPECT_FALSE(window());
    EXPECT_TRUE(top().isVisible());
}

class UpdaterAtTheStart : public FactoryHome {
protected:
    ~UpdaterAtTheStart() override { tidyUp(context, home); }
    desktop::Context context{run};
    shell::UpdaterView updates{context};
};

TEST_F(UpdaterAtTheStart, IsThereBeforeTheMainWindow) {
    updates.show({u"アップデートを開始します。"_s});
    auto* window = context.windows.find<shell::frmDBUpdater>();
    ASSERT_TRUE(window);
    EXPECT_TRUE(becomesVisible(*window));
    const QPoint distance = window->frameGeometry().center() - window->screen()->availableGeometry().center();
    EXPECT_LT(distance.manhattanLength(), 60);
    updates.makeWayForBox();
    updates.close();
    EXPECT_FALSE(context.windows.find<shell::frmDBUpdater>());
    EXPECT_FALSE(context.windows.find<shell::MDIFormTop>()) << "it makes none";
}

} // namespace
} // namespace velloria::tests
