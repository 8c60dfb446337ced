// What is typed on while a command waits, by somebody who does not look at the screen.
#include "desktop/wait_box.h"
#include "platform/failure.h"
#include "real_keys.h"
#include "store/sqlite/connection.h"

#include <QElapsedTimer>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

const QString kEnterKey = u"Return"_s;

class TypedAhead : public RealKeys {
protected:
    TypedAhead() {
        qtDesk.beforeBox = [this] { waits.end(); };
    }
    void SetUp() override {
        RealKeys::SetUp();
        contents().findChild<QLineEdit*>(u"txtTitle"_s)->setText(u"title"_s);
        QTest::keyClicks(&pane(), u"before "_s);
        holder.emplace(session.databaseFile(), store::sqlite::Access::ReadWrite);
        lock.emplace(*holder);
    }
    void release() {
        lock.reset();
        holder.reset();
    }
    /// Saves and types on at once.
    static void saveAndType(const QString& text) {
        begin({u"key"_s, u"ctrl+u"_s, u"type"_s, u"--delay"_s, u"60"_s, text});
    }
    bool reads(const QString& text) {
        return waitFor([&] { return pane().toPlainText() == text; });
    }
    static QMessageBox* visibleBox() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            auto* box = qobject_cast<QMessageBox*>(window);
            if (box && box->isVisible())
                return box;
        }
        return nullptr;
    }
    QString stored() { return sqlValue(u"SELECT Contents FROM Contents"_s); }

    desktop::WaitBox waits;
    std::optional<store::sqlite::Connection> holder;
    std::optional<store::sqlite::Transaction> lock;
};

TEST_F(TypedAhead, ReachesTheTextInItsOrderAndNotTheRunningSave) {
    const QString text = u"abcd efgh ijkl mnop qrst uvwx yz ABCD efgh ijkl mnop qrst"_s;
    bool wasShown = false;
    bool hadKeyboard = true;
    QTimer::singleShot(1500, &waits, [&] {
        wasShown = visibleBox();
        hadKeyboard = top().isActiveWindow();
    });
    QTimer::singleShot(2200, &waits, [this] { release(); });
    saveAndType(text);
    EXPECT_TRUE(reads(u"before "_s + text)) << pane().toPlainText().toStdString();
    EXPECT_TRUE(wasShown);
    EXPECT_TRUE(hadKeyboard) << "an input method loses what it composes with the keyboard";
    EXPECT_FALSE(visibleBox());
    EXPECT_EQ(stored(), u"before "_s);
    press(u"ctrl+u"_s);
    EXPECT_EQ(stored(), u"before "_s + text);
}

TEST_F(TypedAhead, ReachesTheTextBehindAFailureThatNobodySawYet) {
    const QString text = u"abcd efgh ijkl mnop qrst uvwx yz ABCD efgh ijkl mnop qrst uvwx yz ABCD efgh ijkl mnop qrst "
                         "uvwx yz ABCD efgh ijkl mnop qrst"_s;
    bool isSaid = false;
    QElapsedTimer since;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
        const QMessageBox* box = visibleBox();
        if (!box || box->icon() != QMessageBox::Critical)
            return;
        if (!isSaid)
            since.start();
        isSaid = true;
        if (since.elapsed() > 5000) { // everything is typed, and it stands long enough to be read
            watch.stop();
            begin({u"key"_s, kEnterKey});
        }
    });
    watch.start(20);
    saveAndType(text);
    EXPECT_TRUE(reads(u"before "_s + text)) << pane().toPlainText().toStdString();
    EXPECT_TRUE(isSaid);
    EXPECT_FALSE(watch.isActive()) << "a blank that was typed must not answer it";
    release();
    EXPECT_EQ(stored(), QString());
}

TEST_F(TypedAhead, EscapeAloneLeavesTheWait) {
    QTimer::singleShot(1000, &waits, [] { begin({u"key"_s, u"Escape"_s}); });
    QElapsedTimer timer;
    timer.start();
    begin({u"key"_s, u"ctrl+u"_s});
    whenShown<QMessageBox>([&](QMessageBox& box) {
        EXPECT_EQ(box.icon(), QMessageBox::Critical);
        EXPECT_LT(timer.elapsed(), 4000);
        box.accept();
        timer.invalidate();
    });
    EXPECT_TRUE(waitFor([&] { return !timer.isValid(); }));
    release();
    EXPECT_EQ(pane().toPlainText(), u"before "_s);
}

TEST_F(TypedAhead, TheMouseReachesTheBoxAlone) {
    bool isPressed = false;
    QTimer::singleShot(1000, &waits, [&] {
        QMessageBox* box = visibleBox();
        ASSERT_TRUE(box);
        const QPoint tool = top().mapToGlobal(QPoint(5, 5));
        const QPoint button = box->button(QMessageBox::Cancel)->mapToGlobal(QPoint(8, 8));
        isPressed = true;
        begin({u"mousemove"_s, QString::number(tool.x()), QString::number(tool.y()), u"click"_s, u"1"_s, u"mousemove"_s,
               QString::number(button.x()), QString::number(button.y()), u"click"_s, u"1"_s});
    });
    bool isSaid = false;
    begin({u"key"_s, u"ctrl+u"_s});
    QElapsedTimer timer;
    timer.start();
    whenShown<QMessageBox>([&](QMessageBox& box) {
        isSaid = box.icon() == QMessageBox::Critical && timer.elapsed() < 4000;
        box.accept();
    });
    EXPECT_TRUE(waitFor([&] { return isSaid; }));
    EXPECT_TRUE(isPressed);
    EXPECT_FALSE(QApplication::activePopupWidget());
    release();
}

TEST_F(TypedAhead, AFailureIsNotAnsweredByTheKeysOfItsFirstMoment) {
    release();
    QElapsedTimer timer;
    whenShown<QMessageBox>([&](QMessageBox& box) {
        EXPECT_TRUE(becomesActive(box));
        timer.start();
        begin({u"key"_s, u"space"_s, u"sleep"_s, u"0.1"_s, u"key"_s, kEnterKey, u"sleep"_s, u"0.1"_s, u"key"_s,
               u"Escape"_s, u"sleep"_s, u"1.5"_s, u"key"_s, kEnterKey});
    });
    qtDesk.failure(platform::Failure(u"text"_s, {}, {}));
    EXPECT_GT(timer.elapsed(), 1500);
}

} // namespace
} // namespace velloria::tests
