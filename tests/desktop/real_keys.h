// The windows under a window manager, worked by keys that the screen gives to whichever window has the keyboard.
#pragma once

#include "desktop/qt_desk.h"
#include "editor/forms/frmCalender.h"
#include "editor/forms/frmContents.h"
#include "support/desktop_home.h"

#include <QPointer>
#include <QProcess>
#include <QTimer>

#include <algorithm>
#include <list>
#include <utility>

namespace velloria::tests {

/// Fixture: the program's own desk, a day in the editor, the caret in its first pane.
class RealKeys : public TestHome {
protected:
    RealKeys() {
        qtDesk.setMainWindow(&top());
        qApp->installEventFilter(&spy);
    }
    ~RealKeys() override {
        EXPECT_TRUE(waitFor(isAllPressed)) << "the keys of this test must not go to the next one";
        presses.clear();
        tidyUp(context, home);
    }

    void SetUp() override {
        top().resize(1100, 800);
        top().show();
        top().activateWindow();
        ASSERT_TRUE(becomesActive(top()));
        calendar().place({0, 0, 279, 214});
        calendar().showChild();
        contents().place({285, 0, 420, 600});
        contents().day().openDay(QStringLiteral("2004/05/06"));
        pane().setFocus();
        settle();
    }

    shell::MDIFormTop& top() { return context.windows.get<shell::MDIFormTop>(); }
    editor::frmContents& contents() { return context.windows.get<editor::frmContents>(); }
    editor::frmCalender& calendar() { return context.windows.get<editor::frmCalender>(); }
    QPlainTextEdit& pane() { return *contents().findChild<QPlainTextEdit*>(QStringLiteral("txtContents")); }

    /// Starts pressing and comes back at once: what the keys do may wait in here for a box.
    static void begin(const QStringList& words) { presses.emplace_back().start(QStringLiteral("xdotool"), words); }
    /// Whether the screen has got all that was begun; the program gets it a little later.
    static bool isAllPressed() {
        return std::all_of(presses.begin(), presses.end(), [](QProcess& press) {
            return press.state() == QProcess::NotRunning || press.waitForFinished(0);
        });
    }
    /// Presses a key and waits until a window of the program got it.
    void press(const QString& key) {
        EXPECT_TRUE(waitFor(isAllPressed));
        spy.isDown = spy.isStroke = spy.isBlocked = false; // the release of an earlier key may still be on its way
        const auto pressed = [&] { begin({QStringLiteral("key"), key}); };
        EXPECT_TRUE(doUntil(pressed, [&] { return spy.isDown || spy.isStroke; })) << key.toStdString();
        // One that has come is not pressed again. The box that it opened may have kept its release from the windows.
        EXPECT_TRUE(waitFor([&] { return spy.isStroke || spy.isBlocked; })) << key.toStdString();
        settle();
    }
    /// Goes to the control as its window's own and presses a key there.
    void pressAt(QWidget& control, const QString& key) {
        control.setFocus();
        settle();
        press(key);
    }

    /// Once it has the keyboard, and a failure box after its first moment.
    static void leave(QDialog& dialog, const QString& key) {
        EXPECT_TRUE(becomesActive(dialog));
        const auto* box = qobject_cast<QMessageBox*>(&dialog);
        const bool isFailure = box && box->icon() == QMessageBox::Critical;
        pressWhileShown(&dialog, key, isFailure ? QStringLiteral("1.2") : QStringLiteral("0"));
    }
    /// Presses the key after so many seconds, and again while the dialog has not got it: nobody else ends its waiting.
    static void pressWhileShown(const QPointer<QDialog>& dialog, const QString& key, const QString& seconds) {
        constexpr int kSurelyLostMs = 10'000;
        begin({QStringLiteral("sleep"), seconds, QStringLiteral("key"), key});
        QTimer::singleShot(kSurelyLostMs, qApp, [dialog, key] {
            if (dialog && dialog->isVisible())
                pressWhileShown(dialog, key, QStringLiteral("0"));
        });
    }
    /// The next modal dialog is left by this key.
    template <class Dialog = QDialog>
    static void leaveNext(const QString& key) {
        whenShown<Dialog>([key](QDialog& dialog) { leave(dialog, key); });
    }

    /// What is typed now goes to this window.
    void expectKeysGoTo(QWidget& window, const QString& what,
                        const QStringList& keys = {QStringLiteral("x"), QStringLiteral("Down")}) {
        EXPECT_TRUE(becomesActive(window)) << what.toStdString();
        const QString before = pane().toPlainText();
        for (const QString& key : keys) {
            spy.window = nullptr;
            press(key);
            EXPECT_EQ(spy.window, &window) << what.toStdString() << " lost the key " << key.toStdString();
        }
        if (&window != &top()) {
            EXPECT_EQ(pane().toPlainText(), before) << what.toStdString();
        }
    }

    /// Notes which window the keys come to.
    struct Spy : QObject {
        /// The objects of the browser engine bring no type information that a sanitizer could read.
        [[gnu::no_sanitize("vptr")]] bool eventFilter(QObject* watched, QEvent* event) override {
            if (watched->isWidgetType() && event->type() == QEvent::KeyPress)
                window = static_cast<QWidget*>(watched)->window();
            if (!watched->isWindowType())
                return false;
            if (event->type() == QEvent::KeyPress)
                isDown = true;
            if (event->type() == QEvent::KeyRelease)
                isStroke = std::exchange(isDown, false) || isStroke;
            isBlocked = isBlocked || event->type() == QEvent::WindowBlocked;
            return false;
        }
        const QWidget* window = nullptr;
        bool isDown = false;
        bool isStroke = false;  ///< a key was pressed and released
        bool isBlocked = false; ///< a window was blocked by another one
    };

    static inline std::list<QProcess> presses; ///< that this test has begun
    Spy spy;
    desktop::QtDesk qtDesk;
    desktop::Context context{{session, clock, qtDesk}};
};

} // namespace velloria::tests
