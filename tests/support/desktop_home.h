// A started program folder with the main window, as a person sees it after the start.
#pragma once

#include "desktop/context.h"
#include "shell/forms/MDIFormTop.h"
#include "support/test_home.h"
#include "support/waiting.h"

#include <QApplication>
#include <QMessageBox>
#include <QTimer>

namespace velloria::tests {

/// Fixture: session and scripted desk of TestHome, the windows on a screen. An address that logic sends the browser to
/// is an event ("navigate"); a test that wants the page goes on to the browser itself.
class DesktopHome : public TestHome {
protected:
    DesktopHome();
    ~DesktopHome() override;

    shell::MDIFormTop& top() { return context.windows.get<shell::MDIFormTop>(); }

    /// Shows the main window and waits until it takes keys.
    void showTop();

    /// The last text of the first status panel.
    QString panel() const;

    desktop::Context context;
};

/// Handles what is waiting, deferred deletes too.
void settle();

/// Waits until the window is the active one and stays so: word of another one may still be on its way.
bool becomesActive(QWidget& window);

/// The control of that object name below `window`; fails the test when there is none.
template <class Control = QWidget>
Control& control(const QWidget& window, const QString& name) {
    auto* found = window.findChild<Control*>(name);
    if (!found)
        throw std::runtime_error("no control " + name.toStdString());
    return *found;
}

/// The one window of this kind beside the main window, made if need be, where it has the keys.
template <class Window>
Window& shownWindow(desktop::Context& context) {
    auto& window = context.windows.get<Window>();
    window.showWindow();
    EXPECT_TRUE(becomesActive(window));
    settle();
    return window;
}

/// The message box on the screen, whether it blocks the other windows or not; none when there is none.
QMessageBox* visibleBox();

/// Runs `action` on the next message box on the screen, unless `owner` goes first.
template <typename Action>
void whenBoxIsVisible(QObject& owner, Action action) {
    QTimer::singleShot(20, &owner, [&owner, action] {
        if (QMessageBox* box = visibleBox())
            action(*box);
        else
            whenBoxIsVisible(owner, action);
    });
}

/// Closes the windows, removes the home once the browser engine has let it go, and forgets that a main window may have
/// ended the program.
void tidyUp(desktop::Context& context, QTemporaryDir& home);

/// Runs `action` on the next modal window of this kind.
template <typename Window, typename Action>
void whenShown(Action action) {
    QTimer::singleShot(20, [action] {
        if (auto* window = qobject_cast<Window*>(QApplication::activeModalWidget()))
            action(*window);
        else
            whenShown<Window>(action);
    });
}

} // namespace velloria::tests
