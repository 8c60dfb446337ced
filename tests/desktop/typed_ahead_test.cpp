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
        qtDesk.beforeBox = [this] { waits.makeWay(); };
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
    QString stored() { return sqlValue(u"SELECT Contents FROM Contents"_s); }

    static constexpr int kInTheMiddleMs = 600;      ///< of a wait whose box is there
    static constexpr int kFarBeforeTheEndMs = 3000; ///< of such a wait
    static constexpr int kPauseMs = 2500;           ///< after which a key is none of the text any more

    desktop::WaitBox waits;
    std::optional<store::sqlite::Connection> holder;
    std::optional<store::sqlite::Transaction> lock;
};

TEST_F(TypedAhead, ReachesTheTextInItsOrderAndNotTheRunningSave) {
    const QString text = u"abcd efgh ijkl mnop qrst uvwx yz ABCD efgh ijkl mnop qrst"_s;
    bool wasShown = false;
    bool hadKeyboard = true;
    whenBoxIsVisible(waits, [&](QMessageBox& box) {
        wasShown = true;
        QTimer::singleShot(kInTheMiddleMs, &box, [&] {
            hadKeyboard = top().isActiveWindow();
            release();
        });
    });
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
        isSaid = true;
        if (isAllPressed() && !since.isValid())
            since.start();
        if (since.isValid() && since.hasExpired(kPauseMs)) { // nothing is typed any more
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
    QElapsedTimer sincePressed;
    whenBoxIsVisible(waits, [&](QMessageBox&) {
        sincePressed.start();
        begin({u"key"_s, u"Escape"_s});
    });
    bool isSaid = false;
    begin({u"key"_s, u"ctrl+u"_s});
    whenShown<QMessageBox>([&](QMessageBox& box) {
        EXPECT_EQ(box.icon(), QMessageBox::Critical);
        EXPECT_TRUE(sincePressed.isValid());
        EXPECT_LT(sincePressed.elapsed(), kFarBeforeTheEndMs);
        box.accept();
        isSaid = true;
    });
    EXPECT_TRUE(waitFor([&] { return isSaid; }));
    release();
    EXPECT_EQ(pane().toPlainText(), u"before "_s);
}

TEST_F(TypedAhead, TheMouseReachesTheBoxAlone) {
    QElapsedTimer sincePressed;
    whenBoxIsVisible(waits, [&](QMessageBox& box) {
        QTimer::singleShot(kInTheMiddleMs, &box, [&] { // where the window manager has put it
            const QPoint tool = top().mapToGlobal(QPoint(5, 5));
            const QPoint button = box.button(QMessageBox::Cancel)->mapToGlobal(QPoint(8, 8));
            sincePressed.start();
            begin({u"mousemove"_s, QString::number(tool.x()), QString::number(tool.y()), u"click"_s, u"1"_s,
                   u"mousemove"_s, QString::number(button.x()), QString::number(button.y()), u"click"_s, u"1"_s});
        });
    });
    bool isSaid = false;
    begin({u"key"_s, u"ctrl+u"_s});
    whenShown<QMessageBox>([&](QMessageBox& box) {
        EXPECT_EQ(box.icon(), QMessageBox::Critical);
        EXPECT_TRUE(sincePressed.isValid());
        EXPECT_LT(sincePressed.elapsed(), kFarBeforeTheEndMs);
        box.accept();
        isSaid = true;
    });
    EXPECT_TRUE(waitFor([&] { return isSaid; }));
    EXPECT_FALSE(QApplication::activePopupWidget());
    release();
}

TEST_F(TypedAhead, AFailureIsNotAnsweredByTheKeysOfItsFirstMoment) {
    release();
    QElapsedTimer timer;
    timer.start();
    whenShown<QMessageBox>([&](QMessageBox& box) {
        EXPECT_TRUE(becomesActive(box));
        begin({u"key"_s, u"space"_s, u"sleep"_s, u"0.1"_s, u"key"_s, kEnterKey, u"sleep"_s, u"0.1"_s, u"key"_s,
               u"Escape"_s, u"sleep"_s, u"1.5"_s, u"key"_s, kEnterKey});
    });
    qtDesk.failure(platform::Failure(u"text"_s, {}, {}));
    EXPECT_GE(timer.elapsed(), 1000) << "however late the keys come";
}

} // namespace
} // namespace velloria::tests
